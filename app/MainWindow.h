// The main window: builds its parts and connects them. The document knows the design, the session
// orders what happens to it, the widgets show it, the commands act on it.
#pragma once

#include <QMainWindow>
#include <memory>
#include <string>
#include <utility>

#include "app/DesignSession.h"
#include "app/FileCommands.h"
#include "app/LimitCommands.h"
#include "app/MeasuredCommands.h"
#include "app/MenuCommands.h"
#include "app/SecondaryWindows.h"
#include "controls/InputBinder.h"
#include "controls/Remembered.h"

namespace ladderwise {

class ClientArea;
class InputFilter;
class MainMenus;
class Recovery;
class StatusView;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    MainWindow();
    ~MainWindow() override;

    /// Replaces the modal message boxes, for tests: every message then goes to `newReport`.
    void SetMessageCallback(MessageCallback newReport) { report = std::move(newReport); }

    /// Replaces the dialogs about files, for tests.
    void SetFileDialogs(FileDialogs replacement) { files->SetDialogs(std::move(replacement)); }

    /// Before the window is shown: what windows remember from earlier runs, in the folders found.
    void Remember(const Folders& found);

    /// The end of start-up, after the window was shown: reads the settings in the folders found and
    /// opens the design file named on the command line, if any. Without it nothing is remembered.
    void Start(const Folders& found, const std::string& design);

    /// Writes unsaved work and the settings, without a question: the program is about to be ended.
    void KeepWork();

    /// The desktop's session ends: as KeepWork, and closing asks nothing until something is done.
    void EndSession();

    /// Opens a design file (UTF-8, full path), or, with an empty path, the one chosen in a dialog.
    void OpenDesign(const std::string& path) { files->OpenDesign(path); }

    /// Adds measured files (UTF-8, full paths) to those shown with the design.
    void AddMeasured(const std::vector<std::string>& paths) { measured->Add(paths); }

    const Calculation& State() const { return session.Document.Work; }
    const MarkerState& Markers() const { return session.Document.Markers; }
    const LimitLines& Limits() const { return session.Document.Limits; }
    const MeasuredFiles& Measured() const { return session.Document.Measured; }
    PlotContent Content() const { return session.Content(); }

    /// Draws now what waits to be drawn. Steps that follow each other quickly are calculated one
    /// by one up to the worst case; the worst case runs when no more input waits.
    void FinishDrawing() {
        session.FinishChoosing();
        session.FinishDrawing();
    }

    /// Takes what stands in the controls and recalculates.
    void CalcButtonClick() { session.Calculate(); }

    /// One handler for all menu entries, radio buttons and check boxes. No sender: control states
    /// and calculation only, as at start-up.
    void FilterMenuClick(const QObject* sender) { session.Choose(sender); }

    /// A function key; the window sees it before its controls.
    void FormKeyDown(FormKey key) { session.PressKey(key); }

signals:
    /// The window has been closed: the program ends, whatever else is open.
    void Closed();

protected:
    void showEvent(QShowEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    void Build();
    void Connect();
    void ConnectClient();
    void SetSizes();
    void WriteRemembered();
    FileHost HostOfFiles();
    bool OfferUnsavedWork(const std::string& folder);
    void ShowTitle();
    void ShowCommands();
    void ShowSteps();
    bool MayLeave();
    void Leave();

    bool asking = false;    ///< whether the design may be left
    bool mayLeave = false;  ///< the answer
    MessageCallback report;
    DesignSession session;
    InputBinder binder;
    Remembered remembered;
    MainMenus* menus;
    ClientArea* client;
    StatusView* status;
    std::unique_ptr<SecondaryWindows> windows;
    std::unique_ptr<FileCommands> files;
    std::unique_ptr<MeasuredCommands> measured;
    std::unique_ptr<LimitCommands> limits;
    std::unique_ptr<MenuCommands> commands;
    std::unique_ptr<Recovery> recovery;
    std::unique_ptr<InputFilter> filter;  ///< goes first: it looks at grid and windows
};

}  // namespace ladderwise
