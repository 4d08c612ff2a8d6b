// The main window: building and connecting.
#include "app/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStatusBar>
#include <QWindow>
#include <utility>

#include "app/ClientArea.h"
#include "app/InputFilter.h"
#include "app/MainMenus.h"
#include "app/MainPanel.h"
#include "app/PlotArea.h"
#include "app/Recovery.h"
#include "app/ResultsPanel.h"
#include "app/StatusView.h"
#include "app/ValueGrid.h"
#include "controls/WindowPlacement.h"
#include "design/ChoiceNames.h"

namespace ladderwise {

namespace {

constexpr QSize StartSize(1240, 760);
constexpr QSize SmallestSize(640, 560);
constexpr int RoomBelowPanel = 580;  ///< pixels at start for plot, strip, grid and bars

constexpr const char* PartValuesName = "PartValuesMenu";  ///< its state is remembered

}  // namespace

MainWindow::MainWindow()
    : session(report), binder(session.Document.Work.Inputs, session.Actions()) {
    setObjectName("MainForm");
    setWindowTitle("Ladderwise");
    setAcceptDrops(true);
    report = [this](const std::string& caption, const std::string& text) {
        ShowMessageBox(this, caption, text);
    };
    Build();
    Connect();
    ConnectClient();
    session.Attach({&binder, client, windows.get(), status},
                   [this] { return files->ChooseCoefficients(); });
    menus->ShowRecentFiles({});
    SetSizes();
}

MainWindow::~MainWindow() {
    // Hiding takes the focus from a box with an unread text, which asks for a calculation: that
    // must happen while there is something to calculate with.
    hide();
}

void MainWindow::Build() {
    menus = new MainMenus(this, binder);
    auto* const clientView = new QScrollArea(this);  // scrolls on a screen too low for the client
    clientView->setObjectName("ClientView");
    clientView->setFrameShape(QFrame::NoFrame);
    clientView->setFocusPolicy(Qt::NoFocus);
    clientView->setWidgetResizable(true);
    const DesignDocument& document = session.Document;
    client = new ClientArea(
        binder, document.Work.Design, [this] { return session.Content(); },
        [this](std::vector<GridColumn>& columns) { session.Annotate(columns); }, this);
    clientView->setWidget(client);
    setCentralWidget(clientView);
    status = new StatusView(statusBar());
    client->SetTabOrder(status->MathErrorButton());
    files = std::make_unique<FileCommands>(session.Document, HostOfFiles(), report, this);
    measured = std::make_unique<MeasuredCommands>(session, *files, report);
    limits = std::make_unique<LimitCommands>(session, *files, report);
    LimitActions ofLimits = limits->Actions();
    ofLimits.Choose = [this] { commands->Run(Command::Choices); };
    BoardActions board = session.ActionsOfBoard();
    board.Add = measured->Actions().Add;
    windows = std::make_unique<SecondaryWindows>(
        session.Document.Work.Inputs, document.Work.Design, session.Actions(),
        session.ActionsOfNorton(), measured->Actions(), ofLimits,
        [this](const std::vector<ShareRow>& rows) { client->ShowShares(rows); },
        session.ActionsOfChoices(), board, this);
    recovery = std::make_unique<Recovery>(session.Document);
    filter = std::make_unique<InputFilter>(this, *client->Grid(), *windows);
    commands = std::make_unique<MenuCommands>(session, *files, *windows, *client, report, this);
}

void MainWindow::SetSizes() {
    // The window's frame comes on top of what is set here.
    const QSize room = RoomOnScreen(this);
    setMinimumSize(SmallestSize.boundedTo(room));
    client->Panel()->FitInto(room.width());
    // Where the screen has room for it the whole input panel is seen, whatever the font.
    const QSize panel = client->Panel()->minimumSizeHint() + QSize(0, RoomBelowPanel);
    resize(StartSize.expandedTo(panel).boundedTo(room));
}

void MainWindow::Connect() {
    connect(&session, &DesignSession::Drawn, this, &MainWindow::ShowCommands);
    connect(&session, &DesignSession::Noted, recovery.get(), &Recovery::NoteChange);
    connect(qApp, &QGuiApplication::commitDataRequest, this, &MainWindow::EndSession,
            Qt::DirectConnection);
    connect(findChild<QMenu*>("EditMenu"), &QMenu::aboutToShow, this, &MainWindow::ShowSteps);
    connect(menus, &MainMenus::Chosen, this, [this](Command command) {
        if (command == Command::Exit) return Leave();
        commands->Run(command);
    });
    connect(menus, &MainMenus::MarkerChosen, this,
            [this](MarkerCommand command) { commands->RunMarkerCommand(command); });
    connect(status, &StatusView::MathErrorsAsked, this, [this] { windows->ShowMathErrors(); });
    connect(filter.get(), &InputFilter::FormKeyPressed, this, &MainWindow::FormKeyDown);
    connect(filter.get(), &InputFilter::GridEntered, &session, &DesignSession::SimulateGrid);
    connect(filter.get(), &InputFilter::DesignDropped, this, &MainWindow::OpenDesign);
    connect(filter.get(), &InputFilter::MeasuredDropped, this, &MainWindow::AddMeasured);
}

void MainWindow::ConnectClient() {
    const MainPanel* const panel = client->Panel();
    connect(panel->CalcButton, &QAbstractButton::clicked, this, &MainWindow::CalcButtonClick);
    connect(panel->PlotReferenceBox, &QAbstractButton::clicked, this,
            [this](bool shown) { commands->ShowReference(shown); });
    connect(panel->SetRefButton, &QAbstractButton::clicked, this,
            [this] { commands->SetReference(); });
    connect(panel->ExchangeRefButton, &QAbstractButton::clicked, this,
            [this] { commands->ExchangeWithReference(); });
    connect(client, &ClientArea::Resized, this, [this] {
        if (!client->Area()->Fits()) session.Redraw();
    });
    connect(client->Area(), &PlotArea::Pressed, this, [this](QPoint at, QPoint global) {
        commands->PressAt(at);
        menus->PopUpMarkers(global);
    });
    connect(client->Area(), &PlotArea::LimitDragged, &session, &DesignSession::DragLimit);
    connect(client->Area(), &PlotArea::LimitDropped, &session, &DesignSession::DropLimit);
    connect(client->Results(), &ResultsPanel::Unfolded, &session, &DesignSession::ShowResults);
    const ValueGrid* const grid = client->Grid();
    connect(grid, &ValueGrid::Edited, &session, &DesignSession::SimulateGrid);
    connect(grid, &ValueGrid::Stepped, this, &MainWindow::FormKeyDown);
    connect(grid, &ValueGrid::HoldAsked, this, [this](int slot, int row, bool on) {
        session.HoldPart({slot, row}, on);
    });
    connect(grid, &ValueGrid::ToleranceAsked, this, [this](int slot, int row, double fraction) {
        session.SetTolerance({slot, row}, fraction);
    });
    connect(status, &StatusView::BoardsStopped, &session, &DesignSession::StopBoards);
    connect(grid, &ValueGrid::PartsTableAsked, this, [this] { commands->CopyPartsTable(); });
}

FileHost MainWindow::HostOfFiles() {
    return {[this] {
                session.ReadEntries();
                session.FinishChoosing();
            },
            [this](const std::function<bool()>& amend) {
                session.Measured().Clear();  // files may have changed since they were read
                session.ShowLoaded({}, amend);
            },
            [this] {
                ShowTitle();
                recovery->Write();
            },
            [this] { menus->ShowRecentFiles(files->RecentFiles()); },
            [this](const QString& notice, int ms) { status->ShowNotice(notice, ms); },
            [this] { session.TellMeasuredFaults(); }};
}

void MainWindow::Remember(const Folders& found) {
    remembered.Open(QString::fromStdString(found.SettingsFolder));
    remembered.RestoreSize(this);
    files->RestoreExport(remembered);
    for (QWidget* const window : windows->All())
        remembered.RestoreSize(window);
}

void MainWindow::WriteRemembered() {
    remembered.StoreSize(this);
    files->KeepExport(remembered);
    for (const QWidget* const window : windows->All())
        remembered.StoreSize(window);
    remembered.Store(PartValuesName, findChild<QAction*>(PartValuesName)->isChecked());
}

void MainWindow::Start(const Folders& found, const std::string& design) {
    files->ReadSettings(found);
    if (remembered.Value(PartValuesName).toBool()) findChild<QAction*>(PartValuesName)->trigger();
    // Unsaved work is the later state of its own file.
    const bool recovered = OfferUnsavedWork(found.StateFolder);
    if (recovered && session.Document.File() == design) return;
    if (!design.empty()) OpenDesign(design);
}

bool MainWindow::OfferUnsavedWork(const std::string& folder) {
    const auto work = recovery->Start(
        folder, [this](const UnsavedWork& found) { return files->AskRecovery(found); });
    if (!work) return false;
    const PassType shown = session.Document.Work.Design.PassType;
    const bool fits = session.Recover(*work);
    session.ShowRestored(shown);
    session.FinishDrawing();
    if (!fits) report("Program Info", EditsLostText);
    session.TellMeasuredFaults();
    return true;
}

void MainWindow::KeepWork() {
    const auto silent = [](const std::string&, const std::string&) {};
    const MessageCallback asked = std::exchange(report, silent);
    client->Grid()->FinishEditing();
    session.ReadEntries();
    recovery->Write();
    files->WriteSettings();
    WriteRemembered();
    report = asked;
}

void MainWindow::ShowCommands() {
    menus->ShowCommands(session.Document);
    ShowSteps();
    ShowTitle();
}

void MainWindow::ShowSteps() {
    if (IsTypingUnread()) return menus->ShowSteps("Typing", {});
    menus->ShowSteps(session.Document.UndoName(), session.Document.RedoName());
}

void MainWindow::EndSession() {
    KeepWork();
    recovery->EndSession();
}

void MainWindow::ShowTitle() {
    const DesignDocument& document = session.Document;
    const QString title = DesignCaption(document.File(), DesignTitle(document.Work.Design));
    const bool modified = document.Modified();
    if (!modified) setWindowModified(false);
    setWindowTitle(modified ? title + "[*]" : title);  // the toolkit puts its mark there
    if (modified) setWindowModified(true);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    // A screen of another density needs a picture of another density.
    connect(windowHandle(), &QWindow::screenChanged, &session, &DesignSession::Redraw,
            Qt::UniqueConnection);
    session.Begin();
}

/// Asks whether the design may be left; while the question stands, everything else that wants to
/// leave is refused.
bool MainWindow::MayLeave() {
    if (asking) return false;
    const QScopedValueRollback<bool> stands(asking, true);
    return files->MayLeaveDesign();
}

/// Asks before it closes: a window that is being closed takes a second request to close, of its
/// title bar, for a closing that was agreed to.
void MainWindow::Leave() {
    if (!MayLeave()) return;
    const QScopedValueRollback<bool> answer(mayLeave, true);
    close();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    const bool kept = recovery->SessionEnded();
    if (!kept && !mayLeave && !MayLeave()) return event->ignore();
    files->WriteSettings();
    WriteRemembered();
    windows->CloseAll();
    QMainWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    session.DrawNothing();
    if (!kept) recovery->Finish();
    emit Closed();
}

}  // namespace ladderwise
