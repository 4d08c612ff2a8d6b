// What the operating system says about folders, and the limits that it sets: the one place below
// the programs that differs between systems. QtCore.
#pragma once

#include <array>
#include <string>

namespace ladderwise {

/// The variables that name folders, in the order of SystemPlaces::Variables.
inline constexpr std::array FolderVariables = {
    "%USERPROFILE%",        "%TEMP%",     "%APPDATA%", "%PROGRAMFILES%", "%ALLUSERSPROFILE%",
    "%COMMONPROGRAMFILES%", "%HOMEDRIVE%"};
enum class FolderVariable {
    UserProfile,
    Temp,
    AppData,
    ProgramFiles,
    AllUsers,
    CommonFiles,
    HomeDrive
};

/// Folders as UTF-8 texts with slashes, without one at the end.
struct SystemPlaces {
    /// The expansions of FolderVariables; on systems without them their counterparts: home folder,
    /// temporary folder, the user's configuration folder, the folders of programs and shared data.
    std::array<std::string, FolderVariables.size()> Variables;
    std::string Executable;  ///< folder of the program's executable
    std::string SharedData;  ///< where an installed program's data lie
    std::string Documents;   ///< the user's documents where the profile has no "My Documents"

    const std::string& Of(FolderVariable variable) const {
        return Variables[static_cast<std::size_t>(variable)];
    }
};

/// Asks the system. A QCoreApplication must exist.
SystemPlaces AskSystem();

/// Lets a limit of the system for the size of files fail a write, as a full disk does; otherwise it
/// would end the program without a word. For the start of a program.
void OutliveFileLimits();

/// Lets a windowed program write to the terminal that it was started from, on systems where it
/// would have none.
void UseCallersTerminal();

}  // namespace ladderwise
