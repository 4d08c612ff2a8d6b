// The main window: building it and the handlers of its controls.
#include "app/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGroupBox>
#include <QHeaderView>
#include <QInputDialog>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableWidget>
#include <QToolButton>
#include <algorithm>
#include <utility>

#include "controls/BitMapView.h"
#include "controls/ElidedLabel.h"
#include "controls/FittedCells.h"
#include "controls/WindowPlacement.h"
#include "windows/DirectCoupledWindow.h"
#include "windows/EllipticPanel.h"
#include "windows/HelpWindow.h"
#include "windows/MathErrWindow.h"
#include "windows/OptionsWindow.h"
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

namespace {

constexpr int GridRowHeight = 22;      ///< pixels of a row of the value grid, at least
constexpr int CellMargin = 2;          ///< pixels above and below a cell's text
constexpr double GridFontScale = 0.9;  ///< of the normal font: "-15.9E-12" fits its cell
constexpr int ProgressWidth = 200;
/// The choice that needs a file first.
bool IsCoefficientsFile(const ChoiceCode& chosen) {
    return chosen.Id == ChoiceId::Response &&
           chosen.Code == static_cast<int>(ResponseType::CoefficientsFile);
}

constexpr QSize StartSize(1240, 760);
constexpr QSize SmallestSize(640, 560);
constexpr int SmallestClientHeight = 480;  ///< a lower client area is scrolled

}  // namespace

MainWindow::MainWindow() : binder(calculation.Inputs, Actions()) {
    setObjectName("MainForm");
    setWindowTitle("Ladderwise");
    report = [this](const std::string& caption, const std::string& text) {
        ShowMessage(caption, text);
    };
    dialogs = StandardFileDialogs(this);
    SeedFromClock(calculation);
    calculation.PulseInWorstCase = false;
    ConnectCommands();
    markerMenu = BuildMarkerMenu(this);
    BuildClient();
    ellipticPanel = new EllipticPanel(binder, client);
    ellipticPanel->hide();
    BuildStatusLine();
    ConnectPlot();
    partDefinitions = new PartDefinitionsWindow(calculation.Inputs, Actions(), this);
    BuildHelp();
    drawing.setSingleShot(true);
    connect(&drawing, &QTimer::timeout, this, [this] {
        drawing.start();  // it has run out, but the drawing is still to be done
        FinishDrawing();
    });
    directCoupled =
        new DirectCoupledWindow(calculation.Inputs, calculation.Design, Actions(), this);
    options = new OptionsWindow(calculation.Inputs, Actions(), this);
    mathErrors = new MathErrWindow(this);
    norton = new NortonWindow(calculation.Inputs, calculation.Design, ActionsOfNorton(), this);
    connect(panel->CalcButton, &QPushButton::clicked, this, &MainWindow::CalcButtonClick);
    qApp->installEventFilter(this);
    ShowInputs();
    ShowRecentFiles();
    // The window's frame comes on top of what is set here.
    const QSize room = RoomOnScreen(this);
    setMinimumSize(SmallestSize.boundedTo(room));
    panel->FitInto(room.width());
    // Where the screen has room for it the whole input panel is seen, whatever the font.
    resize(StartSize.expandedTo({panel->minimumSizeHint().width(), 0}).boundedTo(room));
}

MainWindow::~MainWindow() {
    // Hiding takes the focus from a box with an unread text, which asks for a calculation: that
    // must happen while there is something to calculate with.
    hide();
}

void MainWindow::SetMessageCallback(MessageCallback newReport) {
    report = std::move(newReport);
}

void MainWindow::BuildClient() {
    client = new QWidget(this);
    client->setObjectName("Client");
    client->setMinimumHeight(SmallestClientHeight);
    clientView = new QScrollArea(this);
    clientView->setObjectName("ClientView");
    clientView->setFrameShape(QFrame::NoFrame);
    clientView->setFocusPolicy(Qt::NoFocus);
    clientView->setWidgetResizable(true);
    clientView->setWidget(client);
    setCentralWidget(clientView);
    bitMap = new BitMapView(plot, client);
    panel = new MainPanel(binder, client);
    panelView = new QScrollArea(client);
    panelView->setObjectName("PanelView");
    panelView->setFrameShape(QFrame::NoFrame);
    panelView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panelView->setWidgetResizable(true);
    panelView->setFocusPolicy(Qt::NoFocus);
    panelView->setWidget(panel);
    valueGrid = new QTableWidget(ValueGridRows, 1, client);
    valueGrid->setObjectName("ValueGrid");
    valueGrid->horizontalHeader()->hide();
    valueGrid->verticalHeader()->hide();
    valueGrid->horizontalHeader()->setMinimumSectionSize(SchematicWidth);
    valueGrid->horizontalHeader()->setDefaultSectionSize(SchematicWidth);
    valueGrid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    valueGrid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    valueGrid->setFrameShape(QFrame::NoFrame);
    valueGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    valueGrid->setTabKeyNavigation(false);
    valueGrid->setAccessibleName("Part values");
    valueGrid->setItemDelegate(new FittedCells(valueGrid));
    QFont cellFont = valueGrid->font();
    cellFont.setPointSizeF(cellFont.pointSizeF() * GridFontScale);
    // One size for all usual values; the delegate makes longer ones smaller.
    valueGrid->setFont(
        FontThatFits(cellFont, "15.9E-12", SchematicWidth - 4 * CellMargin, QWIDGETSIZE_MAX));
    const int rowHeight =
        std::max(GridRowHeight, valueGrid->fontMetrics().height() + 2 * CellMargin);
    valueGrid->verticalHeader()->setMinimumSectionSize(rowHeight);
    valueGrid->verticalHeader()->setDefaultSectionSize(rowHeight);
    QPalette beyondCells = valueGrid->viewport()->palette();
    beyondCells.setColor(QPalette::Base, ToQColor(BackgroundColour));
    valueGrid->viewport()->setPalette(beyondCells);
    connect(valueGrid, &QTableWidget::itemChanged, this, [this] {
        if (!showingGrid) SimulateGrid();
    });
    connect(valueGrid, &QTableWidget::currentCellChanged, this,
            [this](int, int column) { RevealColumn(column); });
    stripBar = new QScrollBar(Qt::Horizontal, client);
    stripBar->setObjectName("StripScrollBar");
    stripBar->setAccessibleName("Schematic and part values");
    connect(stripBar, &QScrollBar::valueChanged, this, &MainWindow::ScrollStrip);
    scaleBox = binder.AddBox(client, InputId::Scale);  // as wide as the plot's left margin
    scaleBox->setMinimumWidth(0);
    scaleBox->setMaximumWidth(QWIDGETSIZE_MAX);
    scaleBox->hide();
}

void MainWindow::BuildStatusLine() {
    statusLabel = new ElidedLabel(this);
    progress = new QProgressBar(this);
    progress->setObjectName("WorstCaseProgress");
    progress->setFixedWidth(ProgressWidth);
    progress->setFormat("Worst case %v of %m");
    progress->hide();
    statusBar()->addWidget(statusLabel, 1);
    mathErrorButton = new QToolButton(this);
    mathErrorButton->setObjectName("MathErrorButton");
    mathErrorButton->setAutoRaise(true);
    mathErrorButton->setFocusPolicy(Qt::TabFocus);
    mathErrorButton->setToolTip("Lists the math errors of this run of the program");
    mathErrorButton->hide();
    connect(mathErrorButton, &QToolButton::clicked, this, [this] { mathErrors->ShowLog(); });
    statusBar()->addPermanentWidget(progress);
    statusBar()->addPermanentWidget(mathErrorButton);
    statusBar()->setSizeGripEnabled(false);
    // What comes and goes in it must not move the plot.
    statusBar()->setFixedHeight(
        std::max({statusBar()->sizeHint().height(), statusLabel->sizeHint().height(),
                  progress->sizeHint().height(), mathErrorButton->sizeHint().height()}));
}

InputActions MainWindow::Actions() {
    return {[this] { CalcButtonClick(); }, [this](InputId id, bool up) { StepBox(id, up); },
            [this](const QObject* sender) { FilterMenuClick(sender); }};
}

NortonActions MainWindow::ActionsOfNorton() {
    return {[this](InputId id, double step) {
                StoreInputs();
                StepNortonInput(id, step, calculation.Inputs, calculation.Design, report);
                ApplyNortonControl(NortonControl::SpinButton, calculation.Inputs,
                                   calculation.Design);
                Recalculate();
            },
            [this](NortonControl control, const QObject* chosen) { UseNorton(control, chosen); }};
}

void MainWindow::UseNorton(NortonControl control, const QObject* chosen) {
    StoreInputs();
    if (const auto choice = chosen ? ChosenBy(chosen) : std::nullopt)
        Choose(calculation.Inputs, calculation.Design, choice->Id, choice->Code);
    if (ApplyNortonControl(control, calculation.Inputs, calculation.Design))
        Recalculate();
    else
        ShowInputs();
}

void MainWindow::ConnectCommands() {
    for (QAction* const action : BuildMenus(this, binder)) {
        if (action->objectName() == "BringBackMenu") action->setShortcut(QKeySequence("Ctrl+B"));
        action->setCheckable(action->objectName() == "FixSeedMenu");
        connect(action, &QAction::triggered, this,
                [this, action] { RunCommand(action->objectName()); });
    }
    // Shown nowhere: the settings file has a line for its check, and keeps its layout.
    auto* const readOut = new QAction("Here for File Read Save", this);
    readOut->setObjectName("MouseReadOutMenu");
    readOut->setCheckable(true);
    readOut->setVisible(false);
}

void MainWindow::StepBox(InputId id, bool up) {
    StoreInputs();
    const bool ctrl = QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
    const SpinStep step{up ? SpinDirection::Up : SpinDirection::Down, ctrl};
    StepInput(id, calculation.Inputs, calculation.Design, step, report);
    Recalculate();
}

void MainWindow::CalcButtonClick() {
    StoreInputs();
    Recalculate();
}

void MainWindow::Recalculate() {
    drawing.stop();  // a message box in the middle must not draw a design half made
    statusLabel->EndNotice();
    rejected.clear();
    PrepareCalculation(calculation, report);
    ShowInputs();
    Draw();
}

/// What takes no longer than a step is drawn with it. A worst case waits until all input that has
/// come in the meantime is taken: keys held down would pile up behind it otherwise.
void MainWindow::Draw() {
    drawing.start();
    if (!calculation.PendingSeed) return FinishDrawing();
    ShowValueGrid();
}

void MainWindow::FinishDrawing() {
    if (!drawing.isActive()) return;
    drawing.stop();
    if (std::exchange(resized, false)) SizePlot(devicePixelRatioF());
    PlotPrepared();
    ShowCursor();
    ShowStatus();
    ShowCommands();
    ShowTitle();
}

void MainWindow::FilterMenuClick(const QObject* sender) {
    StoreInputs();
    const auto chosen = sender ? ChosenBy(sender) : std::nullopt;
    if (chosen && IsCoefficientsFile(*chosen)) return ChooseCoefficientsFile();
    if (chosen) Choose(calculation.Inputs, calculation.Design, chosen->Id, chosen->Code);
    SetControlStates();
    Recalculate();
    const bool passChosen = !sender || (chosen && chosen->Id == ChoiceId::Pass);
    if (passChosen && calculation.Design.PassType == PassType::DirectCoupled)
        ShowCentredOnOwner(directCoupled);
    if (passChosen && calculation.Design.PassType == PassType::Norton) norton->ShowBesideOwner();
}

void MainWindow::RunCommand(const QString& name) {
    if (name == "OpenMenu") OpenDesign({});
    if (name == "SaveMenu") SaveDesign();
    if (name == "SaveAsMenu") SaveDesignAs();
    for (std::size_t i = 0; i < settings.Recent.Paths().size(); ++i)
        if (name == QString("PrevFile%1Menu").arg(i)) return OpenDesign(settings.Recent.Paths()[i]);
    if (name == "ExitMenu") close();
    if (name == "OptionsWindowMenu") ShowOptions();
    if (name == "PartDefinitionsMenu") ShowPartDefinitions();
    if (name == "PrintMenu") PrintPage();
    if (name == "HelpWindowMenu") ShowHelp();
    if (name == "MathErrMenu") mathErrors->ShowLog();
    if (name == "AboutMenu") ShowAbout();
    if (name == "BringBackMenu") BringBack();
    if (name == "FixSeedMenu") FixSeed(!calculation.FixedSeed);
    if (name == "SetSeedMenu") AskForSeed();
}

void MainWindow::BringBack() {
    StoreInputs();
    rejected.clear();
    if (BringBackEdits(calculation)) AnalyseAndDraw();
}

/// Keeps the draws of the worst case on the screen for the calculations to come, or frees them.
void MainWindow::FixSeed(bool fix) {
    FinishDrawing();
    if (!fix)
        calculation.FixedSeed.reset();
    else if (calculation.WorstCase.Runs > 0)
        calculation.FixedSeed = calculation.WorstCase.Seed;
    else
        calculation.FixedSeed = static_cast<std::uint32_t>(calculation.SeedSource());
    ShowCommands();
}

void MainWindow::AskForSeed() {
    FinishDrawing();
    const std::uint32_t present = calculation.FixedSeed.value_or(
        calculation.WorstCase.Runs > 0 ? calculation.WorstCase.Seed : 1);
    bool accepted = false;
    const QString text = QInputDialog::getText(
        this, "Worst-Case Seed", "Seed of the random draws, 0 to 4294967295:", QLineEdit::Normal,
        QString::number(present), &accepted);
    if (!accepted) return;
    bool whole = false;
    const uint seed = text.trimmed().toUInt(&whole);
    if (!whole)
        return report("Error", "\"" + text.toStdString() +
                                   "\" is no seed: a whole number from 0 to 4294967295 is.");
    calculation.FixedSeed = seed;
    CalcButtonClick();
    ShowCommands();
}

void MainWindow::ShowPartDefinitions() {
    ShowInputs();
    partDefinitions->ShowBesideOwner();
}

void MainWindow::ShowOptions() {
    ShowInputs();
    options->show();
    options->raise();
    options->activateWindow();
}

void MainWindow::ShowMessage(const std::string& caption, const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, this);
    box.exec();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (!MayLeaveDesign()) return event->ignore();
    WriteSettings();
    partDefinitions->close();
    help->close();
    directCoupled->close();
    mathErrors->close();
    norton->close();
    options->close();
    QMainWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    drawing.stop();
    emit Closed();
}

}  // namespace ladderwise
