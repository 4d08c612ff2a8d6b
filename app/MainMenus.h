// The main window's menus: which menu shows which choices and commands, under which names and keys.
#pragma once

#include <QAction>
#include <QMenu>
#include <map>
#include <string>
#include <vector>

#include "app/Commands.h"
#include "display/Markers.h"

class QMainWindow;

namespace ladderwise {

class DesignDocument;
class InputBinder;

class MainMenus : public QObject {
    Q_OBJECT

public:
    /// Builds the whole menu bar of `window` and the pop-up menu of the plot. Entries of choices
    /// are bound by `binder`.
    MainMenus(QMainWindow* window, InputBinder& binder);

    /// Opens the pop-up menu of the plot.
    void PopUpMarkers(QPoint global) { markerMenu->popup(global); }

    /// Which commands the document has something for, and what they say of it.
    void ShowCommands(const DesignDocument& document);

    /// What can be undone and redone, by name; empty: nothing.
    void ShowSteps(const std::string& undo, const std::string& redo);

    /// The entries of the files used last, most recent first.
    void ShowRecentFiles(const std::vector<std::string>& paths);

signals:
    void Chosen(Command command);
    void MarkerChosen(MarkerCommand command);

private:
    void AddCommands(QMainWindow* window, InputBinder& binder);
    void AddMarkerCommands(QMainWindow* window);

    std::map<Command, QAction*> actions;
    std::map<MarkerCommand, QAction*> markerActions;
    QMenu* markerMenu;
};

}  // namespace ladderwise
