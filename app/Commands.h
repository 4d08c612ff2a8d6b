// The commands of the menus. Their captions, keys and component names stand in one table, in
// MainMenus.cpp.
#pragma once

namespace ladderwise {

enum class Command {
    Open,
    Save,
    SaveAs,
    OpenRecent0,  ///< the most recent file; the other three follow
    OpenRecent1,
    OpenRecent2,
    OpenRecent3,
    Print,
    Exit,
    PartDefinitions,
    BringBack,
    Options,
    FixSeed,
    SetSeed,
    Help,
    MathErrors,
    About,
};

}  // namespace ladderwise
