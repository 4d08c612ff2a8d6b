// What follows what.
#include "app/DesignSession.h"

#include <QGuiApplication>
#include <QScopedValueRollback>
#include <algorithm>
#include <utility>

#include "app/ClientArea.h"
#include "app/MainPanel.h"
#include "app/PlotArea.h"
#include "app/ResultsPanel.h"
#include "app/SecondaryWindows.h"
#include "app/StatusView.h"
#include "app/ValueGrid.h"
#include "choosing/PartsTexts.h"
#include "display/MarkerTable.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

constexpr double SecondsPerMs = 1e-3;

/// The choice that needs a file first.
bool IsCoefficientsFile(const ChoiceCode& chosen) {
    return chosen.Id == ChoiceId::Response &&
           chosen.Code == static_cast<int>(ResponseType::CoefficientsFile);
}

}  // namespace

DesignSession::DesignSession(MessageCallback& report) : report(report) {
    SeedFromClock(Document.Work);
    Document.Work.PulseInWorstCase = false;
    ArrangeDocument();
    clock.start();
    choosing.start();
    building.start();
    noInputWaits.setSingleShot(true);
    connect(&noInputWaits, &QTimer::timeout, this, &DesignSession::FinishDrawing);
    noEventWaits.setSingleShot(true);
    connect(&noEventWaits, &QTimer::timeout, this, &DesignSession::WorkOn);
}

InputActions DesignSession::Actions() {
    return {[this] { Calculate(); }, [this](InputId id, bool up) { Step(id, up); },
            [this](const QObject* sender) { Choose(sender); }, [this](InputId id) { Enter(id); }};
}

NortonActions DesignSession::ActionsOfNorton() {
    return {[this](InputId id, double step) { StepNorton(id, step); },
            [this](NortonControl control, const QObject* chosen) { UseNorton(control, chosen); }};
}

void DesignSession::Attach(const SessionViews& all, std::function<bool()> ask) {
    views = all;
    askForCoefficients = std::move(ask);
    ShowInputs();
}

void DesignSession::Begin() {
    if (waiting != Waiting::FirstShow) return;
    waiting = Waiting::Nothing;
    Choose(nullptr);
    Document.Begin();
}

// --- entries and controls

void DesignSession::StoreInputs() {
    views.Windows->FinishEditing();
    views.Binder->StoreInputs();
    views.Windows->StoreInputs();
}

/// Stores them; true if one that a calculation reads holds something else now.
bool DesignSession::StoreChanges() {
    const DesignInputs before = Document.Work.Inputs;
    StoreInputs();
    for (const InputRow& row : InputRows())
        if (row.Id != InputId::PercentChange &&
            !SameEntry(before.Box(row.Id), Document.Work.Inputs.Box(row.Id)))
            return true;
    return false;
}

void DesignSession::ReadEntries() {
    if (StoreChanges()) Recalculate();
}

void DesignSession::ShowInputs() {
    const Calculation& work = Document.Work;
    views.Binder->ShowInputs(work.Design);
    views.Windows->ShowInputs();
    MainPanel* const panel = views.Client->Panel();
    panel->ShowControls(Document.Controls(), work.Inputs);
    panel->ShowPartModel(work.Design.PartModel);
    panel->ShowReference(Document.Reference() != nullptr, Document.ReferenceShown());
    views.Client->ShowTraps(Document.Controls().TrapPanelVisible);
    const std::string& step = work.Inputs.Box(InputId::PercentChange).Text;
    views.Client->Grid()->SetStepText(QString::fromStdString(step));
}

void DesignSession::ShowStatus() {
    const std::string rejected = views.Client->Grid()->RejectedText(Document.Work.Design);
    views.Status->Show(Document.Work, rejected);
    ShowResults();
    views.Windows->RefreshMathErrors();
    views.Windows->RefreshLimits(Judged());
    if (views.Windows->ShowsMeasuredData())
        views.Windows->RefreshMeasuredData(Document.Measured, MeasuredSummaries());
    if (views.Windows->ShowsShares()) views.Windows->RefreshShares(ShareTables());
    if (!compared) views.Windows->RefreshChoices();
    NoteBoardDesign();
    ShowChoosing();
}

/// Figures and markers.
std::vector<PictureRow> DesignSession::Answers() const {
    const Calculation& work = Document.Work;
    std::vector<PictureRow> rows;
    const auto add = [&rows](const auto& figures) {
        for (const auto& row : figures)
            rows.push_back({row.Name, row.OfDesign, row.OfReference});
    };
    if (compared) rows.push_back({"", "the design in hand", comparedName});
    const JudgedLimits limits = JudgeShown();
    add(CompareLimits(limits.Design, limits.Reference, limits.Measured));
    add(DescribeBoards(Boards(), ShownLimits()));
    add(DescribeParts(work.Design, parts));
    add(ResultRows(work.Design, work.Results, Beside()));
    add(CompareEachLimit(limits.Design, limits.Reference, limits.Measured));
    for (const auto& [name, value] : DescribeWorstCase(work.WorstCase))
        rows.push_back({name, value, {}});
    add(BuildMarkerTable(Content()));
    return rows;
}

void DesignSession::ShowResults() {
    std::vector<ComparedResult> rows;
    for (const PictureRow& row : Answers())
        rows.push_back({row.Name, row.OfDesign, row.OfReference});
    ResultsPanel* const panel = views.Client->Results();
    panel->ShowRows(rows);
    const Calculation& work = Document.Work;
    std::string figures = panel->IsOpen() ? "" : ChiefFigures(work.Design, work.Results);
    if (!figures.empty() && !ShownLimits().empty()) figures += ", limits: " + SummaryOf(Judged());
    const YieldResult* const boards = yields.Result();
    if (!figures.empty() && boards) figures += ", boards that pass: " + ShareText(*boards);
    views.Status->ShowFigures(figures);
    ShowBoards();
}

void DesignSession::SettleControls() {
    Document.SettleControls(report);
    views.Windows->CloseOthers(Document.Work.Inputs.Pass());
}

// --- user actions

void DesignSession::Calculate() {
    StoreInputs();
    Recalculate();
}

void DesignSession::Enter(InputId id) {
    const bool changed = StoreChanges();
    if (changed || (id != InputId::PercentChange && !HasEdits(Document.Work.Design)))
        return Recalculate();
    if (id != InputId::PercentChange) return AnalyseAndDraw();
    ReadPercentChange(Document.Work.Inputs, Document.Work.Design, report);
    ShowInputs();
    Draw(Waiting::Markers);
}

void DesignSession::Choose(const QObject* sender) {
    StoreInputs();
    const auto chosen = sender ? ChosenBy(sender) : std::nullopt;
    if (chosen && IsCoefficientsFile(*chosen)) {
        if (!askForCoefficients()) return ShowInputs();  // the check goes back
    } else if (chosen) {
        Document.Choose(*chosen);
    }
    SettleControls();
    Recalculate();
    if (!sender || (chosen && chosen->Id == ChoiceId::Pass))
        views.Windows->ShowFor(Document.Work.Design.PassType);
}

void DesignSession::Step(InputId id, bool up) {
    StoreInputs();
    const bool ctrl = QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
    const SpinStep step{up ? SpinDirection::Up : SpinDirection::Down, ctrl};
    StepInput(id, Document.Work.Inputs, Document.Work.Design, step, report);
    Recalculate();
}

void DesignSession::StepNorton(InputId id, double step) {
    StoreInputs();
    Calculation& work = Document.Work;
    StepNortonInput(id, step, work.Inputs, work.Design, report);
    ApplyNortonControl(NortonControl::SpinButton, work.Inputs, work.Design);
    Recalculate();
}

void DesignSession::UseNorton(NortonControl control, const QObject* chosen) {
    const bool changed = StoreChanges();
    if (control == NortonControl::Box && !changed && HasEdits(Document.Work.Design))
        return AnalyseAndDraw();
    if (const auto choice = chosen ? ChosenBy(chosen) : std::nullopt) Document.Choose(*choice);
    if (ApplyNortonControl(control, Document.Work.Inputs, Document.Work.Design))
        return Recalculate();
    ShowInputs();
    Note();
    emit Drawn();
}

void DesignSession::PressKey(FormKey key) {
    ValueGrid* const grid = views.Client->Grid();
    grid->FinishEditing();
    StoreInputs();
    if (ChangesValue(key)) FinishChoosing();
    switch (ApplyFormKey(Document.Work, key, grid->SelectedCell(), report)) {
        case KeyOutcome::Nothing:
            ShowInputs();
            Note();
            ShowStatus();
            emit Drawn();
            return;
        case KeyOutcome::Analyse:
            grid->ForgetRejected();
            return AnalyseAndDraw();
        case KeyOutcome::FullCalculate:
            SettleControls();
            return Recalculate();
    }
}

void DesignSession::SimulateGrid() {
    StoreInputs();
    const auto typed = views.Client->Grid()->TakeTyped();
    if (!typed.empty()) FinishChoosing();
    for (const auto& [at, value] : typed)
        Document.Edit(at.Slot, at.Row, value);
    AnalyseAndDraw();
}

// --- from the document

/// A message box in the middle of a calculation must not draw a design half made.
void DesignSession::Hold() {
    waiting = std::min(waiting, Waiting::Nothing);
}

void DesignSession::Recalculate(const std::function<bool()>& amend) {
    Hold();
    views.Status->EndNotice();
    views.Client->Grid()->ForgetRejected();
    // What amends a design was made for its final values.
    const QScopedValueRollback<bool> whole(choosesAtOnce, choosesAtOnce || amend);
    Document.Prepare(report, amend);
    ShowInputs();
    Draw(Waiting::Traces);
}

void DesignSession::ShowLoaded(std::optional<PassType> shown, const std::function<bool()>& amend) {
    SettleControls();
    Recalculate(amend);
    const PassType pass = Document.Work.Design.PassType;
    if (pass != shown) views.Windows->ShowFor(pass);
    FinishDrawing();
}

void DesignSession::ShowBroughtBack() {
    SettleControls();
    AnalyseAndDraw();
}

void DesignSession::AnalyseAndDraw() {
    Hold();
    Document.AnalyseEdits(report);
    parts.Resume(Document.Work, Document.Limits);
    ShowInputs();
    Draw(Waiting::Traces);
}

// --- history

void DesignSession::Note() {
    Document.NoteStep(static_cast<double>(clock.elapsed()) * SecondsPerMs);
    emit Noted();
}

void DesignSession::Undo() {
    views.Client->Grid()->FinishEditing();
    const PassType shown = Document.Work.Design.PassType;
    if (IsTypingUnread()) return ShowInputs();
    if (Document.Undo()) ShowRestored(shown);
    TellMeasuredFaults();
}

void DesignSession::Redo() {
    views.Client->Grid()->FinishEditing();
    const PassType shown = Document.Work.Design.PassType;
    if (!IsTypingUnread() && Document.Redo()) ShowRestored(shown);
    TellMeasuredFaults();
}

void DesignSession::ShowRestored(std::optional<PassType> shown) {
    Hold();
    views.Status->EndNotice();
    views.Client->Grid()->ForgetRejected();
    views.Windows->CloseOthers(Document.Work.Inputs.Pass());
    // Undone to a moment when its values were still being chosen.
    if (parts.Resume(Document.Work, Document.Limits)) PutChosen();
    ShowInputs();
    Draw(Waiting::Traces);
    const PassType pass = Document.Work.Design.PassType;
    if (pass != shown) views.Windows->ShowFor(pass);
}

// --- drawing

/// What takes no longer than a step is drawn with it. A worst case waits until all input that has
/// come in the meantime is taken: keys held down would pile up behind it otherwise.
void DesignSession::Draw(Waiting what) {
    if (waiting == Waiting::FirstShow) return;
    ReadMeasured();
    Note();
    if (parts.IsSearching()) noEventWaits.start(0);
    waiting = std::max(waiting, what);
    if (!Document.Work.PendingSeed) return FinishDrawing();
    noInputWaits.start();
    views.Client->ShowValues();
}

void DesignSession::DrawMarkers() {
    Draw(Waiting::Markers);
}

void DesignSession::Redraw() {
    if (waiting == Waiting::FirstShow) return;
    AskForRepeat(Document.Work);
    Draw(Waiting::Traces);
}

void DesignSession::DrawNothing() {
    Hold();
}

void DesignSession::FinishDrawing() {
    ClientArea& client = *views.Client;
    switch (waiting) {
        case Waiting::FirstShow:
        case Waiting::Nothing:
            return;
        case Waiting::Markers:
            client.Area()->ShowMarkers();
            break;
        case Waiting::Traces:
            if (!client.Area()->Fits()) client.SizePicture();
            Paint();
            break;
    }
    waiting = Waiting::Nothing;
    client.Area()->ShowCursor();
    ShowStatus();
    emit Drawn();
}

void DesignSession::Paint() {
    FinishCalculation(Document.Work, report, [this](const AnalysedRun& run) { PlotRun(run); });
    if (Document.Work.WorstCase.Runs < 1) return;
    FinishBands();
    views.Client->Area()->FinishOverlay();
}

void DesignSession::PlotRun(const AnalysedRun& run) {
    const DesignInputs& inputs = Document.Work.Inputs;
    if (run.Number == 0) Document.RefreshReference(report);
    if (run.Number == 0) {
        bands.reset();
        collector.Begin(ShownTraces(Document.Work));
    } else if (ShowsBands(Document.Work.Design)) {
        collector.Take(TracesOf(run.Quantities, run.Response));
    }
    views.Client->PlotRun(run, inputs.IsOn(ChoiceId::TraceGroupDelay),
                          inputs.IsOn(ChoiceId::AutoScale));
    if (run.Number > 0 && views.Status->ShowProgress(run.Number, Document.Work.WorstCase.Runs))
        views.Client->Area()->RepaintNow();
}

}  // namespace ladderwise
