// The main window: building and connecting.
#include "app/MainWindow.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDropEvent>
#include <QMessageBox>
#include <QMimeData>
#include <QScopedValueRollback>
#include <QScrollArea>
#include <QStatusBar>
#include <QUrl>
#include <QWindow>
#include <utility>

#include "app/ClientArea.h"
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

constexpr const char* EditsLostText =
    "This version does not know the elements that were edited by hand. All values are calculated.";

std::optional<FormKey> FormKeyOf(int key) {
    constexpr FormKey keys[] = {FormKey::F1, FormKey::F2, FormKey::F3, FormKey::F4,
                                FormKey::F5, FormKey::F6, FormKey::F7, FormKey::F8};
    if (key < Qt::Key_F1 || key > Qt::Key_F8) return {};
    return keys[key - Qt::Key_F1];
}

}  // namespace

MainWindow::MainWindow()
    : session(report), binder(session.Document.Work.Inputs, session.Actions()) {
    setObjectName("MainForm");
    setWindowTitle("Ladderwise");
    setAcceptDrops(true);
    report = [this](const std::string& caption, const std::string& text) {
        ShowMessage(caption, text);
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
        binder, document.Work.Design, [this] { return session.Content(); }, this);
    clientView->setWidget(client);
    setCentralWidget(clientView);
    status = new StatusView(statusBar());
    client->SetTabOrder(status->MathErrorButton());
    windows =
        std::make_unique<SecondaryWindows>(session.Document.Work.Inputs, document.Work.Design,
                                           session.Actions(), session.ActionsOfNorton(), this);
    files = std::make_unique<FileCommands>(session.Document, HostOfFiles(), report, this);
    recovery = std::make_unique<Recovery>(session.Document);
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
    qApp->installEventFilter(this);
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
    connect(client->Results(), &ResultsPanel::Unfolded, &session, &DesignSession::ShowResults);
    const ValueGrid* const grid = client->Grid();
    connect(grid, &ValueGrid::Edited, &session, &DesignSession::SimulateGrid);
    connect(grid, &ValueGrid::Stepped, this, &MainWindow::FormKeyDown);
    connect(grid, &ValueGrid::PartsTableAsked, this, [this] { commands->CopyPartsTable(); });
}

FileHost MainWindow::HostOfFiles() {
    return {[this] { session.ReadEntries(); },
            [this](const std::function<bool()>& amend) { session.ShowLoaded({}, amend); },
            [this] {
                ShowTitle();
                recovery->Write();
            },
            [this] { menus->ShowRecentFiles(files->RecentFiles()); },
            [this](const QString& notice, int ms) { status->ShowNotice(notice, ms); }};
}

void MainWindow::SetMessageCallback(MessageCallback newReport) {
    report = std::move(newReport);
}

void MainWindow::SetFileDialogs(FileDialogs replacement) {
    files->SetDialogs(std::move(replacement));
}

void MainWindow::Start(const Folders& found, const std::string& design) {
    files->ReadSettings(found);
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
    const bool fits = session.Document.Recover(*work, report);
    session.ShowRestored(shown);
    session.FinishDrawing();
    if (!fits) report("Program Info", EditsLostText);
    return true;
}

void MainWindow::KeepWork() {
    const auto silent = [](const std::string&, const std::string&) {};
    const MessageCallback asked = std::exchange(report, silent);
    client->Grid()->FinishEditing();
    session.ReadEntries();
    recovery->Write();
    files->WriteSettings();
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
    const QString design = QString::fromStdString(DesignTitle(document.Work.Design));
    QString title = document.File().empty() ? design + QStringLiteral(" \u2014 Ladderwise")
                                            : FileCaption(document.File());
    title.replace("[*]", "[*][*]");
    const bool modified = document.Modified();
    if (!modified) setWindowModified(false);
    setWindowTitle(modified ? title + "[*]" : title);  // the toolkit puts its mark there
    if (modified) setWindowModified(true);
}

void MainWindow::ShowMessage(const std::string& caption, const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, this);
    box.exec();
}

bool MainWindow::HandleKey(QObject* target, int key) {
    if (const auto formKey = FormKeyOf(key)) {
        FormKeyDown(*formKey);
        return true;
    }
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    if (!enter || !client->Grid()->TakesEnter(target)) return false;
    session.SimulateGrid();
    return true;
}

/// A file over any part of the window is a design to open, never a text for a box. The question
/// about the present design waits until the program that the file comes from is free again.
bool MainWindow::TakeDrop(QDropEvent* event) {
    if (!event->mimeData()->hasUrls()) return false;
    const QList<QUrl> urls = event->mimeData()->urls();
    const bool one = urls.size() == 1 && urls[0].isLocalFile();
    event->setDropAction(one ? Qt::CopyAction : Qt::IgnoreAction);
    event->setAccepted(one);
    if (one && event->type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this, [this, path = urls[0].toLocalFile().toStdString()] { OpenDesign(path); },
            Qt::QueuedConnection);
    return true;
}

bool MainWindow::TakeKey(QWidget* target, const QKeyEvent* event) {
    if (event->modifiers() & ~Qt::KeypadModifier) return false;
    if (target->window() == this) return HandleKey(target, event->key());
    // Of a window with inputs of its own, what none of its controls has a use for.
    const auto formKey = FormKeyOf(event->key());
    if (!formKey || !windows || !windows->HasInputs(target)) return false;
    FormKeyDown(*formKey);
    return true;
}

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::ShortcutOverride &&
        IsUndoOfDesign(watched, *static_cast<QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    if (watched->isWidgetType()) {
        auto* const widget = static_cast<QWidget*>(watched);
        const QEvent::Type type = event->type();
        if (type == QEvent::KeyPress && TakeKey(widget, static_cast<QKeyEvent*>(event)))
            return true;
        const bool drop =
            type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
        const bool ours =
            widget->window() == this || (windows && windows->HasInputs(widget->window()));
        if (drop && ours && TakeDrop(static_cast<QDropEvent*>(event))) return true;
    }
    return QMainWindow::eventFilter(watched, event);
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
    windows->CloseAll();
    QMainWindow::closeEvent(event);
    if (!event->isAccepted()) return;
    session.DrawNothing();
    if (!kept) recovery->Finish();
    emit Closed();
}

}  // namespace ladderwise
