// The folders that the program works with. QtCore.
#pragma once

#include <optional>
#include <string>

#include "design/Messages.h"
#include "files/PlatformFolders.h"

namespace ladderwise {

/// Bytes that the expansion of a folder variable may have, its terminator included.
inline constexpr std::size_t VariableBufferSize = 4096;
inline constexpr const char* SettingsFileName = "Settings.txt";

/// Full names with slashes, UTF-8.
struct Folders {
    std::string ProgramFolder;  ///< of the executable
    std::string RunTimeFolder;  ///< "RunTime Files": examples and help texts; required
    std::string DesktopFolder;
    std::string DesignFolder;    ///< where designs lie by default; empty if none can be written
    std::string SettingsFolder;  ///< holds "Settings.txt"
    std::string StateFolder;     ///< holds unsaved work; empty if it cannot be written
};

/// Finds the folders. Reports why, caption "Error", and gives nothing if the program cannot go on:
/// an expansion that is too long, no "RunTime Files" beside the program or with its shared data.
///
/// Designs lie in the user's documents, "Tarnwick/Ladderwise/Files"; where that cannot be made and
/// written, in "Files" under the program folder; where not even that can, in "Temp" under the
/// user's profile. Unsaved work lies in "Ladderwise" in the folder where the system wants the state
/// of the user's programs. Settings lie beside the program or, where that cannot be written, in
/// "Ladderwise" in the user's configuration folder. Missing folders are created.
std::optional<Folders> FindFolders(const SystemPlaces& places, const MessageCallback& report);

/// "RunTime Files" beside the program or with its shared data; empty if it is at neither place.
std::string FindRunTimeFolder(const SystemPlaces& places);

/// FindFolders of this system; makes DesignFolder the current directory.
std::optional<Folders> EnterFolders(const MessageCallback& report);

/// `path` from the current directory as a full name; an empty one stays empty.
std::string FullPath(const std::string& path);

/// The full name of the folder that `path` lies in.
std::string FolderOf(const std::string& path);

bool FileExists(const std::string& path);

}  // namespace ladderwise
