// The main window: shows the inputs, runs the calculation after every user action and shows its
// result. All mathematics lives below; this class moves texts, checks and pictures.
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>
#include <QTimer>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/FileDialogs.h"
#include "app/MainMenus.h"
#include "app/MainPanel.h"
#include "display/Plot.h"
#include "files/Directories.h"
#include "files/FileReadSave.h"
#include "files/Settings.h"
#include "pipeline/Choices.h"
#include "pipeline/Keystrokes.h"
#include "pipeline/ReferenceDesign.h"
#include "schematic/ValueGridContent.h"
#include "windows/NortonWindow.h"

class QMenu;
class QProgressBar;
class QScrollArea;
class QScrollBar;
class QTableWidget;
class QTableWidgetItem;
class QToolButton;

namespace ladderwise {

class BitMapView;
class DirectCoupledWindow;
class ElidedLabel;
class EllipticPanel;
class HelpWindow;
class MathErrWindow;
class OptionsWindow;
class PartDefinitionsWindow;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Replaces the modal message boxes, for tests: every message then goes to `report`.
    void SetMessageCallback(MessageCallback report);

    /// Replaces the dialogs about files, for tests.
    void SetFileDialogs(FileDialogs replacement);

    /// The end of start-up, after the window was shown: reads the settings in the folders found and
    /// opens the design file named on the command line, if any. Without it nothing is remembered.
    void Start(const Folders& found, const std::string& design);

    /// Opens a design file (UTF-8, full path), or, with an empty path, the one chosen in a dialog.
    /// A file that is no design file changes nothing.
    void OpenDesign(std::string path);

    const Calculation& State() const { return calculation; }
    const MarkerState& Markers() const { return markers; }

    /// Draws now what waits to be drawn. Steps that follow each other quickly are calculated one
    /// by one up to the worst case; the worst case runs when no more input waits.
    void FinishDrawing();

    /// Takes what stands in the controls and recalculates.
    void CalcButtonClick();

    /// One handler for all menu entries, radio buttons and check boxes. No sender: control states
    /// and calculation only, as at start-up.
    void FilterMenuClick(const QObject* sender);

    /// A function key; the window sees it before its controls.
    void FormKeyDown(FormKey key);

    /// Enter on the value grid: simulates what stands in its cells.
    void SimulateGrid();

signals:
    /// The window has been closed: the program ends, whatever else is open.
    void Closed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // MainWindow.cpp: building and handlers
    void BuildClient();
    void BuildStatusLine();
    void ConnectCommands();
    void Draw();  ///< at once, or as soon as no more input waits
    void BringBack();
    void FixSeed(bool fix);
    void AskForSeed();
    void Recalculate();  ///< the whole pipeline: every user action ends here
    InputActions Actions();
    NortonActions ActionsOfNorton();
    void UseNorton(NortonControl control, const QObject* chosen);
    void StepBox(InputId id, bool up);
    void RunCommand(const QString& name);
    void ShowPartDefinitions();
    void ShowOptions();
    void ShowMessage(const std::string& caption, const std::string& text);

    // MainWindowHelp.cpp: help, the About window and print screen
    void BuildHelp();
    void ShowHelp();
    void ShowAbout();
    void PrintPage();

    // MainWindowSync.cpp: controls to inputs and back
    void StoreInputs();
    void ShowInputs();
    void ShowLabels();
    void ShowStatus();
    void ShowCommands();
    void SetControlStates();

    // MainWindowFiles.cpp: design files, recent files, coefficients files, settings
    DesignRecord Record();  ///< the design as its file would hold it
    void CalcIfTyped();     ///< what was typed and not yet read counts
    void ShowTitle();
    void ShowRecentFiles();
    bool WriteDesignFile(const std::string& path);
    bool SaveDesign();      ///< to its file; without one as SaveDesignAs
    bool SaveDesignAs();    ///< true if it was saved
    bool MayLeaveDesign();  ///< false: the user wants to keep a design that is not saved
    void TakeRecord(const DesignRecord& record);  ///< controls from a record, and the calculation
    void ChooseCoefficientsFile();
    void ReadSettings();
    ProgramSettings PresentSettings() const;
    void WriteSettings();

    // MainWindowPlot.cpp: picture and value grid
    void PlotRun(const AnalysedRun& run);
    PlotRunCallback Painter();
    void PlotPrepared();  ///< the second half of a calculation, with the nominal design on top
    void ShowProgress(int run);
    void LayOutClient();
    void SizePlot(double pixelRatio);
    void ResizePlot();
    void PlaceGroupDelayControls();
    void ShowValueGrid();
    void ScrollStrip(int position);
    void RevealColumn(int column);
    PlotPlacement Placement() const;
    int GridTop() const;

    // MainWindowMarkers.cpp: cursor, markers, reference, links between strip and grid
    void ConnectPlot();
    PlotContent Content() const;
    std::vector<PlotLayer> ReferenceLayers() const;
    bool ReferenceShown() const;
    void SetReference();
    void ExchangeWithReference();
    void FollowMouse(QPoint at);
    void StepCursor(int points);
    void ShowCursor();
    void OpenMarkerMenu(QPoint at);
    void RunMarkerCommand(const QString& name);
    void Replot();
    void UpdateMarkerMenu(bool bandPass);
    void LightPart(int slot, int row = -1);
    void OpenGridMenu(QPoint at);
    bool StepCell(QPoint at, int angle);

    // MainWindowKeys.cpp: keyboard and grid
    bool HandleKey(QObject* target, int key);
    CellPosition SelectedCell();
    void ReadGrid();
    bool ReadCell(int slot, int row);
    void MarkCell(QTableWidgetItem* item, const GridCell& cell, CellPosition at);
    std::string RejectedText() const;
    void AnalyseAndDraw();

    Calculation calculation;
    InputBinder binder;
    Plot plot;
    MessageCallback report;
    FileDialogs dialogs;
    std::optional<Folders> folders;
    ProgramSettings settings;
    ProgramSettings settingsRead;  ///< as they were after start-up
    std::string currentFile;                  ///< full path; empty: the design has no file yet
    std::optional<DesignRecord> savedRecord;  ///< as it was saved, opened or started with
    bool started = false;
    QTimer drawing;            ///< runs out when no more input waits
    bool resized = false;      ///< the picture has another size than the client area
    bool showingGrid = false;  ///< cells change because the program writes them
    QElapsedTimer sinceRepaint;

    /// Where the crosshair stands: sweep point and height, in pixels.
    struct PlotCursor {
        int Index;
        int Y;
    };
    std::optional<PlotCursor> cursor;
    MarkerState markers;
    std::unique_ptr<ReferenceDesign> reference;  ///< none until the first "Set Ref"
    bool wasBandPass = false;                    ///< at the last look at the choices
    int comingRuns = 0;  ///< of the worst case that is drawn, or about to be
    int litSlot = 0;     ///< ladder slot that is pointed at; 0: none
    int litRow = -1;     ///< value that is pointed at; -1: the whole slot

    /// A text in the value grid that is no value: it stays to be seen until the next calculation.
    struct RejectedCell {
        CellPosition At;
        QString Text;
    };
    std::vector<RejectedCell> rejected;

    QScrollArea* clientView;  ///< scrolls the client area on a screen too low for it
    QWidget* client;
    BitMapView* bitMap;
    MainPanel* panel;
    QScrollArea* panelView;  ///< scrolls the panel where the window is too narrow for it
    QTableWidget* valueGrid;
    QScrollBar* stripBar;
    EllipticPanel* ellipticPanel;
    NumberEdit* scaleBox;
    QMenu* markerMenu;
    ElidedLabel* statusLabel;
    QToolButton* mathErrorButton;  ///< in the status line, when there is an error to list
    QProgressBar* progress;
    PartDefinitionsWindow* partDefinitions;
    HelpWindow* help;
    DirectCoupledWindow* directCoupled;
    MathErrWindow* mathErrors;
    NortonWindow* norton;
    OptionsWindow* options;
};

}  // namespace ladderwise
