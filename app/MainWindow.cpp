// The main window: building it and the handlers of its controls.
#include "app/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableWidget>

#include "app/BitMapView.h"
#include "windows/ElidedLabel.h"
#include "windows/HelpWindow.h"
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

namespace {

constexpr int GridRowHeight = 22;      ///< pixels of a row of the value grid
constexpr double GridFontScale = 0.9;  ///< of the normal font: "-15.9E-12" fits its cell
constexpr int ProgressWidth = 200;
constexpr QSize StartSize(1240, 760);
constexpr QSize SmallestSize(640, 560);

}  // namespace

MainWindow::MainWindow() : binder(calculation.Inputs, Actions()) {
    setObjectName("MainForm");
    setWindowTitle("Ladderwise");
    report = [this](const std::string& caption, const std::string& text) {
        ShowMessage(caption, text);
    };
    SeedFromClock(calculation);
    ConnectCommands();
    markerMenu = BuildMarkerMenu(this);
    BuildClient();
    BuildEllipticPanel();
    BuildStatusLine();
    partDefinitions = new PartDefinitionsWindow(calculation.Inputs, Actions(), this);
    BuildHelp();
    norton = new NortonWindow(calculation.Inputs, calculation.Design, ActionsOfNorton(), this);
    connect(panel->CalcButton, &QPushButton::clicked, this, &MainWindow::CalcButtonClick);
    qApp->installEventFilter(this);
    ShowInputs();
    setMinimumSize(SmallestSize);
    resize(StartSize);
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
    setCentralWidget(client);
    bitMap = new BitMapView(plot, client);
    bitMap->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(bitMap, &QWidget::customContextMenuRequested, this,
            [this](const QPoint& at) { markerMenu->popup(bitMap->mapToGlobal(at)); });
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
    valueGrid->verticalHeader()->setMinimumSectionSize(GridRowHeight);
    valueGrid->verticalHeader()->setDefaultSectionSize(GridRowHeight);
    valueGrid->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    valueGrid->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    valueGrid->setFrameShape(QFrame::NoFrame);
    valueGrid->setSelectionMode(QAbstractItemView::SingleSelection);
    valueGrid->setTabKeyNavigation(false);
    QFont cellFont = valueGrid->font();
    cellFont.setPointSizeF(cellFont.pointSizeF() * GridFontScale);
    valueGrid->setFont(cellFont);
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
    connect(stripBar, &QScrollBar::valueChanged, this, &MainWindow::ScrollStrip);
    scaleBox = binder.AddBox(client, InputId::Scale);  // as wide as the plot's left margin
    scaleBox->setMinimumWidth(0);
    scaleBox->setMaximumWidth(QWIDGETSIZE_MAX);
    scaleBox->hide();
}

void MainWindow::BuildEllipticPanel() {
    ellipticPanel = new QWidget(client);
    ellipticPanel->setObjectName("EllipticPanel");
    ellipticPanel->setAutoFillBackground(true);
    auto* const grid = new QGridLayout(ellipticPanel);
    grid->setContentsMargins(2, 1, 0, 1);
    grid->setSpacing(1);
    NumberEdit* const box = binder.AddBox(ellipticPanel, InputId::TrapType);
    QLabel* const label = binder.AddLabel(ellipticPanel, InputId::TrapType);
    label->setFont(valueGrid->font());
    UpDownButton* const arrows =
        binder.AddArrows(ellipticPanel, InputId::TrapType, "EllipticFormUpDown");
    box->setMinimumWidth(0);
    box->setMaximumWidth(QWIDGETSIZE_MAX);
    grid->addWidget(label, 0, 0, 1, 2);
    grid->addWidget(box, 1, 0);
    grid->addWidget(arrows, 1, 1);
    ellipticPanel->setFixedWidth(SchematicWidth);  // left of the first schematic picture
    ellipticPanel->adjustSize();
    ellipticPanel->hide();
}

void MainWindow::BuildStatusLine() {
    statusLabel = new ElidedLabel(this);
    progress = new QProgressBar(this);
    progress->setObjectName("WorstCaseProgress");
    progress->setFixedWidth(ProgressWidth);
    progress->setFormat("Worst case %v of %m");
    progress->hide();
    statusBar()->addWidget(statusLabel, 1);
    statusBar()->addPermanentWidget(progress);
    statusBar()->setSizeGripEnabled(false);
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
    for (QAction* const action : BuildMenus(this, binder))
        connect(action, &QAction::triggered, this,
                [this, action] { RunCommand(action->objectName()); });
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
    Calculate(calculation, report, Painter());
    ShowInputs();
    ShowStatus();
}

void MainWindow::FilterMenuClick(const QObject* sender) {
    StoreInputs();
    if (sender)
        if (const auto chosen = ChosenBy(sender))
            Choose(calculation.Inputs, calculation.Design, chosen->Id, chosen->Code);
    SetControlStates();
    Recalculate();
    if (sender && sender->objectName() == "NortonMenu") norton->ShowBesideOwner();
}

void MainWindow::RunCommand(const QString& name) {
    if (name == "ExitMenu") close();
    if (name == "PartDefinitionsMenu") ShowPartDefinitions();
    if (name == "PrintMenu") PrintPage();
    if (name == "HelpWindowMenu") ShowHelp();
    if (name == "AboutMenu") ShowAbout();
}

void MainWindow::ShowPartDefinitions() {
    ShowInputs();
    partDefinitions->ShowBesideOwner();
}

void MainWindow::ShowMessage(const std::string& caption, const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, this);
    box.exec();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    partDefinitions->close();
    help->close();
    norton->close();
    QMainWindow::closeEvent(event);
}

}  // namespace ladderwise
