// The main window's menus: which menu shows which choices and commands.
#pragma once

#include <QAction>
#include <QMenu>
#include <vector>

class QMainWindow;

namespace ladderwise {

class InputBinder;

/// Builds the whole menu bar of `window`. Entries of choices are bound by `binder`; the commands,
/// named by their component names, are returned for the window to connect.
std::vector<QAction*> BuildMenus(QMainWindow* window, InputBinder& binder);

/// Builds the pop-up menu of the graph: "Set Ref to Fo, 0dB" and the other marker commands.
QMenu* BuildMarkerMenu(QMainWindow* window);

}  // namespace ladderwise
