// The main window: shows the inputs, runs the calculation after every user action and shows its
// result. All mathematics lives below; this class moves texts, checks and pictures.
#pragma once

#include <QElapsedTimer>
#include <QMainWindow>

#include "app/MainMenus.h"
#include "app/MainPanel.h"
#include "display/Plot.h"
#include "pipeline/Choices.h"
#include "pipeline/Keystrokes.h"
#include "windows/NortonWindow.h"

class QMenu;
class QProgressBar;
class QScrollArea;
class QScrollBar;
class QTableWidget;

namespace ladderwise {

class ElidedLabel;
class HelpWindow;
class PartDefinitionsWindow;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Replaces the modal message boxes, for tests: every message then goes to `report`.
    void SetMessageCallback(MessageCallback report);

    const Calculation& State() const { return calculation; }

    /// Takes what stands in the controls and recalculates.
    void CalcButtonClick();

    /// One handler for all menu entries, radio buttons and check boxes. No sender: control states
    /// and calculation only, as at start-up.
    void FilterMenuClick(const QObject* sender);

    /// A function key; the window sees it before its controls.
    void FormKeyDown(FormKey key);

    /// Enter on the value grid: simulates what stands in its cells.
    void SimulateGrid();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // MainWindow.cpp: building and handlers
    void BuildClient();
    void BuildEllipticPanel();
    void BuildStatusLine();
    void ConnectCommands();
    void Recalculate();  ///< the whole pipeline: every user action ends here
    InputActions Actions();
    NortonActions ActionsOfNorton();
    void UseNorton(NortonControl control, const QObject* chosen);
    void StepBox(InputId id, bool up);
    void RunCommand(const QString& name);
    void ShowPartDefinitions();
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
    void SetControlStates();

    // MainWindowPlot.cpp: picture and value grid
    void PlotRun(const AnalysedRun& run);
    PlotRunCallback Painter();
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

    // MainWindowKeys.cpp: keyboard and grid
    bool HandleKey(QObject* target, int key);
    CellPosition SelectedCell();
    void ReadGrid();
    bool ReadCell(int slot, int row);
    void AnalyseAsItStands();

    Calculation calculation;
    InputBinder binder;
    Plot plot;
    MessageCallback report;
    bool started = false;
    bool showingGrid = false;  ///< cells change because the program writes them
    QElapsedTimer sinceRepaint;

    QWidget* client;
    QWidget* bitMap;
    MainPanel* panel;
    QScrollArea* panelView;  ///< scrolls the panel where the window is too narrow for it
    QTableWidget* valueGrid;
    QScrollBar* stripBar;
    QWidget* ellipticPanel;
    NumberEdit* scaleBox;
    QMenu* markerMenu;
    ElidedLabel* statusLabel;
    QProgressBar* progress;
    PartDefinitionsWindow* partDefinitions;
    HelpWindow* help;
    NortonWindow* norton;
};

}  // namespace ladderwise
