// The menu table and the menus made of it.
#include "app/MainMenus.h"

#include <QDir>
#include <QMainWindow>
#include <QMenuBar>
#include <variant>

#include "app/FileDialogs.h"
#include "controls/InputBinder.h"
#include "files/RecentFiles.h"
#include "pipeline/DesignDocument.h"

namespace ladderwise {

namespace {

/// The entries of a choice with codes First .. Last, in the order of its table.
struct ChoiceRange {
    ChoiceId Id;
    int First;
    int Last;
};

/// A command with its component name, which never changes, and its caption.
struct CommandRow {
    Command Id;
    const char* Name;
    const char* Caption;
    QKeySequence::StandardKey Key = QKeySequence::UnknownKey;
    const char* OwnKey = "";  ///< works on every desktop, whatever its standard key is
};

/// A separating line.
struct Line {};

/// A piece of a menu.
using MenuPart = std::variant<CommandRow, ChoiceRange, Line>;

/// One menu of the bar.
struct MenuTable {
    const char* Name;
    const char* Caption;
    std::vector<MenuPart> Parts;
};

// clang-format off
const std::vector<MenuTable>& MenuTables() {
    using enum Command;
    using C = CommandRow;
    using R = ChoiceRange;
    constexpr auto NoKey = QKeySequence::UnknownKey;
    static const std::vector<MenuTable> menus = {
    {"FileMenu", "&File", {
        C{Open, "OpenMenu", "&Open...", QKeySequence::Open},
        C{Save, "SaveMenu", "&Save", QKeySequence::Save},
        C{SaveAs, "SaveAsMenu", "Save &As...", QKeySequence::SaveAs, "Ctrl+Shift+S"},
        Line{},
        C{MeasuredData, "MeasuredDataMenu", "&Measured Data..."},
        Line{},
        C{OpenRecent0, "PrevFile0Menu", ""},
        C{OpenRecent1, "PrevFile1Menu", ""},
        C{OpenRecent2, "PrevFile2Menu", ""},
        C{OpenRecent3, "PrevFile3Menu", ""},
        Line{},
        C{Export, "ExportMenu", "&Export...", NoKey, "Ctrl+E"},
        C{CopyPicture, "CopyPictureMenu", "Cop&y Picture"},
        C{Print, "PrintMenu", "&Print Screen...", QKeySequence::Print},
        Line{},
        C{Exit, "ExitMenu", "E&xit", QKeySequence::Quit, "Ctrl+Q"}}},
    {"EditMenu", "Edit (&Z)", {
        C{Undo, "UndoMenu", "&Undo", QKeySequence::Undo},
        C{Redo, "RedoMenu", "&Redo", QKeySequence::Redo, "Ctrl+Shift+Z"}}},
    {"PassMenu", "&Pass", {R{ChoiceId::Pass, 0, 5}, Line{}, R{ChoiceId::Pass, PrototypePassCode, PrototypePassCode}}},
    {"ResponseMenu", "Response F&4", {R{ChoiceId::Response, 0, 6}, R{ChoiceId::Response, 13, 13}, Line{}, R{ChoiceId::Form, 0, 1}}},
    {"EllipticMenu", "&Elliptic", {R{ChoiceId::Response, 7, 11}}},
    {"SweepMenu", "Sweep F&7", {R{ChoiceId::Sweep, 0, 5}}},
    {"PartsMenu", "P&arts", {
        C{PartDefinitions, "PartDefinitionsMenu", "Part &Definitions"},
        C{BringBack, "BringBackMenu", "Bring Back &Edited Values", NoKey, "Ctrl+B"},
        C{BringBackLoad, "BringBackLoadMenu", "Bring Back R &Load", NoKey, "Ctrl+L"},
        C{PartValues, "PartValuesMenu", "Show &Values at the Symbols"},
        C{PartShares, "PartSharesMenu", "&Which Part Matters..."},
        C{Board, "BoardMenu", "&Read the Board...", NoKey, "F11"}}},
    {"OptionsMenu", "&Options", {
        C{Options, "OptionsWindowMenu", "&Options..."},
        C{Limits, "LimitsMenu", "&Limits...", NoKey, "F9"},
        C{Choices, "ChoicesMenu", "&Which Filter...", NoKey, "F10"},
        C{ManyBoards, "ManyBoardsMenu", "Build 100 000 &Boards"},
        C{WorstBoard, "WorstBoardMenu", "Worst Boa&rd into the Grid"},
        C{FixSeed, "FixSeedMenu", "&Fix Worst-Case Seed"},
        C{SetSeed, "SetSeedMenu", "Worst-Case &Seed..."}}},
    {"HelpMenu", "&Help", {
        C{Help, "HelpWindowMenu", "&Help...", QKeySequence::UnknownKey},
        C{MathErrors, "MathErrMenu", "&Math Err..."},
        C{About, "AboutMenu", "&About..."}}},
    };
    return menus;
}

struct MarkerRow {
    MarkerCommand Id;
    const char* Name;
    const char* Caption;
};
constexpr MarkerRow markerRows[] = {
    {MarkerCommand::SetRefToF0, "SetRefF0Menu", "Set Ref to &Fo, 0dB"},
    {MarkerCommand::SetRefAtPeak, "SetRefPeakMenu", "Set Ref at BPF &Peak"},
    {MarkerCommand::SetRefAtCursor, "SetRefCursorMenu", "Set Ref at &Cursor"},
    {MarkerCommand::ClearReference, "ClearRefMenu", "Clear &Reference"},
    {MarkerCommand::AddFreqMarker, "FreqMarkerMenu", "Fre&q Marker"},
    {MarkerCommand::AddDbMarker, "DbMarkerMenu", "dB &Level Marker"},
    {MarkerCommand::ClearMarkers, "ClearMarkersMenu", "Clear &Markers"}};
// clang-format on

/// Adds an entry. Its keys work in every window, unless that has its own use for them.
QAction* AddEntry(QMenu* menu, const char* name, const char* caption) {
    auto* const action = menu->addAction(QString::fromLatin1(caption));
    action->setObjectName(QString::fromLatin1(name));
    action->setShortcutContext(Qt::ApplicationShortcut);
    return action;
}

QAction* AddCommand(QMenu* menu, const CommandRow& row) {
    QAction* const action = AddEntry(menu, row.Name, row.Caption);
    if (row.Key != QKeySequence::UnknownKey) action->setShortcuts(row.Key);
    // The help window prints its own page.
    if (row.Key == QKeySequence::Print) action->setShortcutContext(Qt::WindowShortcut);
    const QKeySequence own(QString::fromLatin1(row.OwnKey));
    if (!own.isEmpty() && !action->shortcuts().contains(own))
        action->setShortcuts(action->shortcuts() << own);
    action->setCheckable(row.Id == Command::FixSeed || row.Id == Command::PartValues);
    return action;
}

void AddChoices(QMenu* menu, const ChoiceRange& range, InputBinder& binder) {
    for (const ChoiceRow& row : TableOf(range.Id).Rows)
        if (row.Code >= range.First && row.Code <= range.Last)
            binder.AddChoice(menu->addAction(QString::fromLatin1(row.Caption)), range.Id, row.Code);
}

}  // namespace

MainMenus::MainMenus(QMainWindow* window, InputBinder& binder) : QObject(window) {
    AddCommands(window, binder);
    // Shown nowhere: the settings file has a line for its check, and keeps its layout.
    auto* const readOut = new QAction("Here for File Read Save", window);
    readOut->setObjectName("MouseReadOutMenu");
    readOut->setCheckable(true);
    readOut->setVisible(false);
    AddMarkerCommands(window);
}

void MainMenus::AddCommands(QMainWindow* window, InputBinder& binder) {
    for (const MenuTable& table : MenuTables()) {
        QMenu* const menu = window->menuBar()->addMenu(QString::fromLatin1(table.Caption));
        menu->setObjectName(QString::fromLatin1(table.Name));
        menu->setToolTipsVisible(true);
        for (const MenuPart& part : table.Parts) {
            if (const auto* const range = std::get_if<ChoiceRange>(&part)) {
                AddChoices(menu, *range, binder);
            } else if (const auto* const row = std::get_if<CommandRow>(&part)) {
                actions[row->Id] = AddCommand(menu, *row);
                connect(actions[row->Id], &QAction::triggered, this,
                        [this, id = row->Id] { emit Chosen(id); });
            } else {
                menu->addSeparator();
            }
        }
    }
}

void MainMenus::AddMarkerCommands(QMainWindow* window) {
    markerMenu = new QMenu(window);
    markerMenu->setObjectName("MarkerPopupMenu");
    markerMenu->setToolTipsVisible(true);
    for (const MarkerRow& row : markerRows) {
        markerActions[row.Id] = AddEntry(markerMenu, row.Name, row.Caption);
        connect(markerActions[row.Id], &QAction::triggered, this,
                [this, id = row.Id] { emit MarkerChosen(id); });
    }
    markerMenu->addSeparator();
    markerMenu->addAction(actions[Command::CopyPicture]);
}

void MainMenus::ShowCommands(const DesignDocument& document) {
    const Calculation& work = document.Work;
    EnableFor(actions[Command::BringBack], work.Discarded.has_value(),
              "after a calculation that discarded values changed by hand");
    const auto load = LoadToBringBack(work.Inputs, work.Design);
    QAction* const bringBackLoad = actions[Command::BringBackLoad];
    EnableFor(bringBackLoad, load.has_value(), "after the program moved it");
    bringBackLoad->setText("Bring Back R &Load" +
                           (load ? QString(" of %1 ohm").arg(*load) : QString()));
    for (const Command command : {Command::ManyBoards, Command::WorstBoard})
        EnableFor(actions[command], !document.Limits.empty() && SlotsInUse(work.Design) > 0,
                  "with limits");
    EnableFor(markerActions[MarkerCommand::SetRefAtPeak], document.Controls().RefAtPeakEnabled,
              "for band-pass");
    QAction* const fix = actions[Command::FixSeed];
    fix->setChecked(work.FixedSeed.has_value());
    const bool known = work.FixedSeed || work.WorstCase.Runs > 0;
    const std::uint32_t seed = work.FixedSeed.value_or(work.WorstCase.Seed);
    fix->setText("&Fix Worst-Case Seed" + (known ? QString(" (%1)").arg(seed) : QString()));
}

void MainMenus::ShowSteps(const std::string& undo, const std::string& redo) {
    const auto show = [this](Command command, const char* caption, const std::string& step) {
        const QString name = QString::fromStdString(step).replace("&", "&&");
        actions[command]->setText(QString::fromLatin1(caption) + " " + name);
        actions[command]->setEnabled(!step.empty());
    };
    show(Command::Undo, "&Undo", undo);
    show(Command::Redo, "&Redo", redo);
}

void MainMenus::ShowRecentFiles(const std::vector<std::string>& paths) {
    for (std::size_t i = 0; i < MaxRecentFiles; ++i) {
        QAction* const item = actions[RecentCommand(i)];
        const bool used = i < paths.size();
        QString caption = used ? FileCaption(paths[i]) : QString();
        item->setText(QString("&%1 ").arg(i + 1) + caption.replace("&", "&&"));
        item->setToolTip(used ? QDir::toNativeSeparators(QString::fromStdString(paths[i]))
                              : QString());
        item->setVisible(used);
    }
}

}  // namespace ladderwise
