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
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

namespace {

constexpr int GridRowHeight = 22;      ///< pixels of a row of the value grid
constexpr double GridFontScale = 0.9;  ///< of the normal font: "-15.9E-12" fits its cell
constexpr int ProgressWidth = 200;
constexpr QSize StartSize(1240, 760);
constexpr QSize SmallestSize(640, 560);

}  // namespace

MainWindow::MainWindow() {
    setObjectName("MainForm");
    setWindowTitle("Ladderwise");
    setWindowIcon(QIcon(":/icons/ladderwise.png"));
    report = [this](const std::string& caption, const std::string& text) {
        ShowMessage(caption, text);
    };
    SeedFromClock(calculation);
    menuActions = BuildMenus(this);
    markerMenu = BuildMarkerMenu(this);
    BuildClient();
    BuildEllipticPanel();
    BuildStatusLine();
    partDefinitions = new PartDefinitionsWindow(
        calculation.Inputs, [this] { CalcButtonClick(); }, this);
    ConnectPanel();
    ConnectMenus();
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
    panel = new MainPanel(client);
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
    scaleBox = new NumberEdit("ScaleBox", client);
    scaleBox->hide();
}

void MainWindow::BuildEllipticPanel() {
    ellipticPanel = new QWidget(client);
    ellipticPanel->setObjectName("EllipticPanel");
    ellipticPanel->setAutoFillBackground(true);
    auto* const grid = new QGridLayout(ellipticPanel);
    grid->setContentsMargins(2, 1, 0, 1);
    grid->setSpacing(1);
    auto* const label = new QLabel("Trap T&ype", ellipticPanel);
    label->setFont(valueGrid->font());
    trapTypeBox = new NumberEdit("TrapTypeBox", ellipticPanel);
    label->setBuddy(trapTypeBox);
    ellipticFormUpDown = new UpDownButton("EllipticFormUpDown", ellipticPanel);
    ellipticFormUpDown->setFixedHeight(trapTypeBox->sizeHint().height());
    grid->addWidget(label, 0, 0, 1, 2);
    grid->addWidget(trapTypeBox, 1, 0);
    grid->addWidget(ellipticFormUpDown, 1, 1);
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

void MainWindow::ConnectPanel() {
    using Inputs = DesignInputs;
    boxes = {
        {panel->F0Box, &Inputs::F0Box, panel->F0UpDown, F0UpDownClick},
        {panel->BandWidthBox, &Inputs::BandWidthBox, panel->BandWidthUpDown, BandWidthUpDownClick},
        {panel->NumPolesBox, &Inputs::NumPolesBox, panel->NumPolesUpDown, NumPolesUpDownClick},
        {panel->RippleBox, &Inputs::RippleBox, panel->RippleUpDown, RippleUpDownClick},
        {panel->EllipticAttenBox, &Inputs::EllipticAttenBox, panel->EllipticAttenUpDown,
         EllipticAttenUpDownClick},
        {trapTypeBox, &Inputs::TrapTypeBox, ellipticFormUpDown, EllipticFormUpDownClick},
        {panel->RSBox, &Inputs::RSBox, nullptr, nullptr},
        {panel->RLBox, &Inputs::RLBox, nullptr, nullptr},
        {panel->PercentChangeBox, &Inputs::PercentChangeBox, nullptr, nullptr},
        {scaleBox, &Inputs::ScaleBox, nullptr, nullptr},
    };
    for (const BoundBox& bound : boxes) {
        connect(bound.Edit, &NumberEdit::CalculationRequested, this, &MainWindow::CalcButtonClick);
        if (!bound.Handler) continue;
        const auto step = [this, bound](bool up) { StepBox(bound, up); };
        connect(bound.Edit, &NumberEdit::StepRequested, this, step);
        connect(bound.Arrows, &UpDownButton::StepRequested, this, step);
    }
    DesignInputs& inputs = calculation.Inputs;
    TraceChoices& traces = inputs.Traces;
    switches = {
        {panel->StdValuesBox, &inputs.StdLCValues},    {panel->WorstCaseBox, &inputs.WorstCase},
        {panel->AutoScaleCheckBox, &inputs.AutoScale}, {panel->PlotMag1dBBox, &traces.Mag1dB},
        {panel->PlotMagBox, &traces.Mag10dB},          {panel->PlotPhaseBox, &traces.Phase},
        {panel->PlotGDBox, &traces.GroupDelay},        {panel->PlotPulseBox, &traces.Pulse},
        {panel->PlotReturnLossBox, &traces.ReturnLoss}};
    connect(panel->CalcButton, &QPushButton::clicked, this, &MainWindow::CalcButtonClick);
    for (auto* const button : panel->findChildren<QAbstractButton*>())
        if (qobject_cast<QRadioButton*>(button) || qobject_cast<QCheckBox*>(button))
            connect(button, &QAbstractButton::clicked, this,
                    [this, button] { FilterMenuClick(button); });
}

void MainWindow::ConnectMenus() {
    for (const MenuAction& item : menuActions) {
        const QAction* const action = item.Action;
        if (item.Entry.Choice == MenuChoice::Command)
            connect(action, &QAction::triggered, this,
                    [this, action] { RunCommand(action->objectName()); });
        else
            connect(action, &QAction::triggered, this, [this, action] { FilterMenuClick(action); });
    }
    // Shown nowhere: the settings file has a line for its check, and keeps its layout.
    auto* const readOut = new QAction("Here for File Read Save", this);
    readOut->setObjectName("MouseReadOutMenu");
    readOut->setCheckable(true);
    readOut->setVisible(false);
}

void MainWindow::StepBox(const BoundBox& bound, bool up) {
    StoreInputs();
    const bool ctrl = QGuiApplication::keyboardModifiers().testFlag(Qt::ControlModifier);
    const SpinStep step{up ? SpinDirection::Up : SpinDirection::Down, ctrl};
    bound.Handler(calculation.Inputs, calculation.Design, step, report);
    Recalculate();
}

void MainWindow::CalcButtonClick() {
    StoreInputs();
    Recalculate();
}

void MainWindow::Recalculate() {
    ReadInputs(calculation.Inputs, calculation.Design, report);
    Calculate(calculation, report, [this](int run) { PlotRun(run); });
    ShowInputs();
    ShowStatus();
}

void MainWindow::FilterMenuClick(const QObject* sender) {
    StoreInputs();
    if (sender) ApplySender(sender);
    SetControlStates();
    Recalculate();
}

void MainWindow::ApplySender(const QObject* sender) {
    for (const MenuAction& item : menuActions)
        if (item.Action == sender) ApplyMenuEntry(item.Entry);
    if (sender == panel->BWMHzButton || sender == panel->BWPercentButton) {
        const bool percent = sender == panel->BWPercentButton;
        if (percent != calculation.Inputs.BandWidthInPercent)
            ChooseBandWidthUnit(calculation.Inputs, calculation.Design, percent);
    }
}

void MainWindow::ApplyMenuEntry(const MenuEntry& entry) {
    FilterDesign& design = calculation.Design;
    switch (entry.Choice) {
        case MenuChoice::PassType:
            return ChoosePassType(calculation.Inputs, design, static_cast<PassType>(entry.Code));
        case MenuChoice::Prototype:
            return ChooseLowPassPrototype(calculation.Inputs, design);
        case MenuChoice::Response:
            return ChooseResponse(design, static_cast<ResponseType>(entry.Code));
        case MenuChoice::Form:
            design.FormCLC = entry.Code != 0;
            return;
        case MenuChoice::Sweep:
            design.SweepType = static_cast<SweepType>(entry.Code);
            return;
        case MenuChoice::Command:
            return;
    }
}

void MainWindow::RunCommand(const QString& name) {
    if (name == "ExitMenu") close();
    if (name == "PartDefinitionsMenu") ShowPartDefinitions();
    if (name == "AboutMenu") ShowAbout();
}

void MainWindow::ShowPartDefinitions() {
    partDefinitions->ShowInputs();
    partDefinitions->ShowBesideOwner();
}

void MainWindow::ShowAbout() {
    QMessageBox::about(this, "About Ladderwise",
                       "<b>Ladderwise</b> " + QApplication::applicationVersion() +
                           "<p>Designs and simulates radio-frequency LC filters.</p>"
                           "<p>The Ladderwise developers, MIT licence.</p>");
}

void MainWindow::ShowMessage(const std::string& caption, const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, this);
    box.exec();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    partDefinitions->close();
    QMainWindow::closeEvent(event);
}

}  // namespace ladderwise
