// The session on a document: what happens after every user action, in which order. Entries of all
// controls go into the document, the document is calculated, all controls show it again, and what
// has to be drawn is drawn when no more input waits.
#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>
#include <functional>
#include <optional>

#include "choosing/PartsChoice.h"
#include "choosing/YieldWatch.h"
#include "controls/InputBinder.h"
#include "display/PictureLayout.h"
#include "display/PlotContent.h"
#include "measured/MeasuredSet.h"
#include "pipeline/DesignDocument.h"
#include "pipeline/Keystrokes.h"
#include "pipeline/LimitMargins.h"
#include "pipeline/PartShares.h"
#include "schematic/ValueGridContent.h"
#include "windows/BoardWindow.h"
#include "windows/ChoicesWindow.h"
#include "windows/NortonWindow.h"

namespace ladderwise {

class ClientArea;
class SecondaryWindows;
class StatusView;

/// All that shows the document.
struct SessionViews {
    InputBinder* Binder = nullptr;  ///< of the main window's own controls
    ClientArea* Client = nullptr;
    SecondaryWindows* Windows = nullptr;
    StatusView* Status = nullptr;
};

class DesignSession : public QObject {
    Q_OBJECT

public:
    /// Every message goes to `report`, which may be replaced at any time.
    explicit DesignSession(MessageCallback& report);

    /// What the controls of all windows do.
    InputActions Actions();
    NortonActions ActionsOfNorton();
    ChoiceActions ActionsOfChoices();
    BoardActions ActionsOfBoard();

    /// The views, built with these actions. `askForCoefficients` asks for a coefficients file and
    /// uses it; false: none was chosen.
    void Attach(const SessionViews& all, std::function<bool()> askForCoefficients);

    /// The window is seen: the first calculation.
    void Begin();

    DesignDocument Document;

    // --- entries and controls

    void StoreInputs();  ///< the entries of all boxes into the document
    void ReadEntries();  ///< what was typed and not yet read counts; "% Change" only for the keys
    void ShowInputs();   ///< the document in all controls
    void ShowStatus();
    void ShowResults();  ///< figures and markers, in the panel or as the chief ones

    // --- user actions; each begins with StoreInputs and ends in a calculation

    void Calculate();
    /// Enter in a box, or its focus goes with what was typed. Nothing but what a calculation reads
    /// discards values edited by hand: they are analysed otherwise.
    void Enter(InputId id);
    /// A menu entry, radio button or check box; no sender: control states and calculation only.
    void Choose(const QObject* sender);
    void Step(InputId id, bool up);
    void PressKey(FormKey key);
    void SimulateGrid();

    // --- from the document, whatever stands in the controls

    /// `amend` may change the calculated ladder; true if it did.
    void Recalculate(const std::function<bool()>& amend = {});
    /// A design that was loaded as a whole. The window of its pass type comes with it, unless
    /// `shown` is that pass type: then it is open, or was closed.
    void ShowLoaded(std::optional<PassType> shown = {}, const std::function<bool()>& amend = {});
    /// A design that was edited by hand, with the inputs that it belongs to.
    void ShowBroughtBack();
    /// Values that were edited, as they stand.
    void AnalyseAndDraw();
    /// What the end of the program left, in the place of the document.
    bool Recover(const UnsavedWork& work);

    // --- standard values beyond the nearest ones

    /// Whoever takes the ladder away, or edits it, gets the values that the search comes to.
    void FinishChoosing();

    /// Holds the value of a part as it stands, or lets it go.
    void HoldPart(ValuePlace place, bool hold);
    /// A tolerance of its own, a fraction; 0: that of its kind.
    void SetTolerance(ValuePlace place, double tolerance);

    /// What is known of the values in the grid beside themselves.
    void Annotate(std::vector<GridColumn>& columns) const;

    // --- boards that are built, while there are limits

    void BuildManyBoards();
    void StopBoards();
    /// Its values into the grid, one step.
    void TakeWorstBoard();

    // --- history

    /// One step back, or forth again. Typing that no calculation has read is what came last: it is
    /// taken back first, and ends what could be redone.
    void Undo();
    void Redo();

    /// Shows a document that was restored as a whole, without calculating it. `shown` as of
    /// ShowLoaded.
    void ShowRestored(std::optional<PassType> shown);

    // --- drawing

    void DrawMarkers();    ///< over traces that stay
    void Redraw();         ///< the same calculation once more, a worst case with the same draws
    void FinishDrawing();  ///< now
    void DrawNothing();    ///< of what waits: the window goes

    /// The whole picture at once, at the size and density that it has.
    void Paint();

    /// What the plot shows of the document.
    PlotContent Content() const;

    /// The same with figures and markers, for paper, files and the clipboard. `runs`, if empty,
    /// takes the traces of the worst case, which has to be drawn; it outlives the content.
    PictureContent Picture(std::vector<OverlayRun>& runs);

    /// The ladders of the first `count` runs of the worst case that is drawn.
    std::vector<ElementList> WorstCaseLadders(int count);

    /// Which part matters, in words.
    std::vector<ShareTable> ShareTables() const;
    // --- limits

    /// The limits that are shown and judged: the document's, or what a drag makes of them.
    const LimitLines& ShownLimits() const;

    /// One of them is being dragged: shown and judged at once, but no step and nothing to save.
    void DragLimit(std::size_t limit, const LimitLine& line);
    /// The drag ends; if it is taken, it is one step.
    void DropLimit(bool taken);

    /// What becomes of the shown limits in the design, the reference and the measured files.
    const LimitReport& Judged() const;
    struct JudgedLimits {
        const LimitReport& Design;
        const LimitReport* Reference;  ///< null: none is shown
        std::vector<NamedReport> Measured;
    };
    JudgedLimits JudgeShown() const;

    /// Other limits in their place, one step.
    void ChangeLimits(const LimitLines& lines);

    // --- measured data

    /// The networks of the document's files, which are read when they are to be drawn.
    MeasuredSet& Measured() { return measured; }

    /// What there is to say about the document's measured files.
    std::vector<MeasuredSummary> MeasuredSummaries() const;

    /// Says which files could not be read since this was last asked, if any.
    void TellMeasuredFaults();

signals:
    /// What was done has been noted: it may be a step, and there may be more to save.
    void Noted();
    /// Everything has been drawn.
    void Drawn();

private:
    /// What waits to be drawn, each including what stands before it.
    enum class Waiting {
        FirstShow,  ///< nothing is drawn before the window is seen
        Nothing,
        Markers,
        Traces,  ///< everything, at the size of the client area
    };

    void TakeInputs(const DesignInputs& inputs);
    void CompareWith(const DesignInputs* inputs);
    void ShowBeside(const std::unique_ptr<Calculation>& other, const std::string& name);
    const ReferenceDesign* Beside() const;
    std::optional<BoardReading> ReadBoardFile(const std::string& path, Adjustable turned,
                                              const std::function<void(double)>& progress);
    void ShowNextStep(const BoardReading* reading);
    void NoteBoardDesign();
    bool StoreChanges();
    std::vector<PictureRow> Answers() const;
    void RepeatRuns(const PlotRunCallback& run);
    void SettleControls();
    void Hold();
    void Note();
    void WorkOn();
    void WorkOnBoards();
    const YieldWatch& Boards() const;
    void ArrangeDocument();
    void SettlePart(const HeldPart& part);
    void PutChosen();
    void TakeChosen();
    void ShowChoosing();
    void ShowBoards();
    void ReadMeasured();
    void Draw(Waiting what);
    void PlotRun(const AnalysedRun& run);
    void FinishBands();
    void UseNorton(NortonControl control, const QObject* chosen);
    void StepNorton(InputId id, double step);

    MessageCallback& report;
    SessionViews views;
    std::function<bool()> askForCoefficients;
    Waiting waiting = Waiting::FirstShow;
    /// Limits being dragged, and those of the document when that began.
    struct DraggedLimits {
        LimitLines Now, Before;
    };
    std::optional<DraggedLimits> dragged;
    mutable LimitJudge judge;                   ///< keeps what it has judged of the design
    mutable LimitJudge referenceJudge;          ///< and of the reference
    std::unique_ptr<ReferenceDesign> compared;  ///< shown beside the design for a moment
    std::string comparedName;
    std::vector<double> boardOf;   ///< the ladder that a board was read for
    mutable MeasuredSet measured;  ///< keeps what it has calculated of its files
    std::string measuredFaults;    ///< that nobody has been told
    PartsChoice parts;             ///< standard values of the document's design
    mutable YieldWatch yields;     ///< boards of what is shown
    bool choosesAtOnce = false;    ///< a calculation ends with the values that the search comes to
    /// Of the worst case that is drawn, and what it depends on.
    BandCollector collector;
    std::shared_ptr<const TraceBands> bands;
    std::vector<double> bandsOf;
    QElapsedTimer building;  ///< since the boards were shown last
    QElapsedTimer choosing;  ///< since the search in hand began
    QTimer noInputWaits;     ///< runs out when all input that has come is taken
    QTimer noEventWaits;     ///< likewise, for the search
    QElapsedTimer clock;     ///< of the history
};

}  // namespace ladderwise
