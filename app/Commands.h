// The commands of the menus. Their captions, keys and component names stand in one table, in
// MainMenus.cpp.
#pragma once

#include <cstddef>

namespace ladderwise {

enum class Command {
    Open,
    Save,
    SaveAs,
    MeasuredData,
    OpenRecent0,  ///< the most recent file; the other three follow
    OpenRecent1,
    OpenRecent2,
    OpenRecent3,
    Export,
    CopyPicture,
    Print,
    Exit,
    Undo,
    Redo,
    PartDefinitions,
    BringBack,      ///< values edited by hand
    BringBackLoad,  ///< the load that the user asked for
    PartValues,     ///< shown at the designators
    PartShares,     ///< which part matters
    Board,          ///< read a measured one
    Options,
    Limits,
    Choices,     ///< which filter
    ManyBoards,  ///< built, to see how many pass
    WorstBoard,  ///< of them, into the grid
    FixSeed,
    SetSeed,
    Help,
    MathErrors,
    About,
};

/// The command of the file used `index` files ago, and back.
constexpr Command RecentCommand(std::size_t index) {
    return static_cast<Command>(static_cast<std::size_t>(Command::OpenRecent0) + index);
}
constexpr std::size_t RecentIndex(Command command) {
    return static_cast<std::size_t>(command) - static_cast<std::size_t>(Command::OpenRecent0);
}

}  // namespace ladderwise
