// The menu table and the menus made of it.
#include "app/MainMenus.h"

#include <QMainWindow>
#include <QMenuBar>
#include <optional>

#include "controls/InputBinder.h"

namespace ladderwise {

namespace {

/// The entries of a choice with codes First .. Last, in the order of its table.
struct ChoiceRange {
    ChoiceId Id;
    int First;
    int Last;
};

/// A piece of a menu: a command, the entries of a choice, or (with neither) a separating line.
/// Component names of commands never change.
struct MenuPart {
    const char* Name;
    const char* Caption;
    std::optional<ChoiceRange> Choice;
    QKeySequence::StandardKey Key = QKeySequence::UnknownKey;
};

/// One menu of the bar.
struct MenuTable {
    const char* Name;
    const char* Caption;
    std::vector<MenuPart> Parts;
};

const MenuPart Line = {"", "", {}};

MenuPart Choices(ChoiceId id, int first, int last) {
    return {"", "", ChoiceRange{id, first, last}};
}

using ChoiceId::Form;
using ChoiceId::Pass;
using ChoiceId::Response;
using ChoiceId::Sweep;

// clang-format off
const std::vector<MenuTable> menus = {
    {"FileMenu", "&File", {
        {"OpenMenu", "&Open...", {}, QKeySequence::Open},
        {"SaveMenu", "&Save", {}, QKeySequence::Save},
        {"SaveAsMenu", "Save &As...", {}, QKeySequence::SaveAs},
        Line,
        {"PrevFile0Menu", "", {}},
        {"PrevFile1Menu", "", {}},
        {"PrevFile2Menu", "", {}},
        {"PrevFile3Menu", "", {}},
        Line,
        {"PrintMenu", "&Print Screen...", {}, QKeySequence::Print},
        Line,
        {"ExitMenu", "E&xit", {}, QKeySequence::Quit}}},
    {"PassMenu", "&Pass", {Choices(Pass, 0, 5), Line, Choices(Pass, PrototypePassCode, PrototypePassCode)}},
    {"ResponseMenu", "Response F&4", {Choices(Response, 0, 6), Choices(Response, 13, 13), Line, Choices(Form, 0, 1)}},
    {"EllipticMenu", "&Elliptic", {Choices(Response, 7, 11)}},
    {"SweepMenu", "Sweep F&7", {Choices(Sweep, 0, 5)}},
    {"PartsMenu", "P&arts", {
        {"PartDefinitionsMenu", "Part &Definitions", {}},
        {"BringBackMenu", "Bring Back &Edited Values", {}}}},
    {"OptionsMenu", "&Options", {
        {"OptionsWindowMenu", "&Options...", {}},
        {"FixSeedMenu", "&Fix Worst-Case Seed", {}},
        {"SetSeedMenu", "Worst-Case &Seed...", {}}}},
    {"HelpMenu", "&Help", {
        {"HelpWindowMenu", "&Help...", {}},
        {"MathErrMenu", "&Math Err...", {}},
        {"AboutMenu", "&About...", {}}}},
};

const std::vector<MenuPart> markerParts = {
    {"SetRefF0Menu", "Set Ref to &Fo, 0dB", {}},
    {"SetRefPeakMenu", "Set Ref at BPF &Peak", {}},
    {"SetRefCursorMenu", "Set Ref at &Cursor", {}},
    {"ClearRefMenu", "Clear &Reference", {}},
    {"FreqMarkerMenu", "Fre&q Marker", {}},
    {"DbMarkerMenu", "dB &Level Marker", {}},
    {"ClearMarkersMenu", "Clear &Markers", {}}};
// clang-format on

QAction* AddCommand(QMenu* menu, const MenuPart& part) {
    auto* const action = menu->addAction(QString::fromLatin1(part.Caption));
    action->setObjectName(QString::fromLatin1(part.Name));
    if (part.Key != QKeySequence::UnknownKey) action->setShortcuts(part.Key);
    // Saving and the like from every window; the help window prints its own page.
    if (part.Key != QKeySequence::Print) action->setShortcutContext(Qt::ApplicationShortcut);
    // Some desktops have no standard key for it.
    if (part.Key == QKeySequence::SaveAs && action->shortcuts().isEmpty())
        action->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S));
    return action;
}

void AddChoices(QMenu* menu, const ChoiceRange& range, InputBinder& binder) {
    for (const ChoiceRow& row : TableOf(range.Id).Rows)
        if (row.Code >= range.First && row.Code <= range.Last)
            binder.AddChoice(menu->addAction(QString::fromLatin1(row.Caption)), range.Id, row.Code);
}

}  // namespace

std::vector<QAction*> BuildMenus(QMainWindow* window, InputBinder& binder) {
    std::vector<QAction*> commands;
    for (const MenuTable& table : menus) {
        QMenu* const menu = window->menuBar()->addMenu(QString::fromLatin1(table.Caption));
        menu->setObjectName(QString::fromLatin1(table.Name));
        menu->setToolTipsVisible(true);
        for (const MenuPart& part : table.Parts) {
            if (part.Choice)
                AddChoices(menu, *part.Choice, binder);
            else if (!*part.Name)
                menu->addSeparator();
            else
                commands.push_back(AddCommand(menu, part));
        }
    }
    return commands;
}

QMenu* BuildMarkerMenu(QMainWindow* window) {
    auto* const menu = new QMenu(window);
    menu->setObjectName("MarkerPopupMenu");
    menu->setToolTipsVisible(true);
    for (const MenuPart& part : markerParts)
        AddCommand(menu, part);
    return menu;
}

}  // namespace ladderwise
