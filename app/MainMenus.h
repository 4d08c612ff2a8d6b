// The main window's menus as one table: component name, caption, what the entry chooses.
#pragma once

#include <QString>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;

namespace ladderwise {

/// What an entry sets when it is clicked.
enum class MenuChoice {
    PassType,   ///< Code is a PassType
    Prototype,  ///< "Low Pass Prototype"
    Response,   ///< Code is a ResponseType
    Form,       ///< Code 1: CLC, 0: LCL
    Sweep,      ///< Code is a SweepType
    Command,    ///< opens a window or ends the program; the main window connects it by name
};

/// One menu entry. Component names are stored in design files and never change.
struct MenuEntry {
    const char* Name;
    const char* Caption;
    MenuChoice Choice;
    int Code;
    const char* Later;  ///< not empty: disabled for now, and this tool tip says what it will do
};

/// An entry with the action that shows it.
struct MenuAction {
    MenuEntry Entry;
    QAction* Action;
};

/// Builds the whole menu bar of `window` and returns every entry in menu order.
std::vector<MenuAction> BuildMenus(QMainWindow* window);

/// Builds the pop-up menu of the graph: "Set Ref to Fo, 0dB" and the other marker commands.
QMenu* BuildMarkerMenu(QMainWindow* window);

}  // namespace ladderwise
