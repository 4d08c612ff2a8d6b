// What the operating system says about folders, the limits that it sets, files that one process
// holds, and signals: the one place below the programs that differs between systems. QtCore.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
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
    std::string State;       ///< of the user's programs, what a backup need not keep
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

/// A file that one process at a time can hold. The system lets go of it when that process ends,
/// however it ends.
class HeldFile {
public:
    HeldFile() = default;
    HeldFile(HeldFile&& other) noexcept;
    HeldFile& operator=(HeldFile&& other) noexcept;
    ~HeldFile();

    /// Creates the file if it is not there, and tries to hold it.
    explicit HeldFile(const std::string& path);

    explicit operator bool() const { return handle != NoHandle; }

private:
    static constexpr std::intptr_t NoHandle = -1;
    std::intptr_t handle = NoHandle;
};

/// Calls `keep` once, from the event loop, when the program is told to terminate, and then ends it
/// as the system would have at once. On Windows, which has no such signals, a session's end is told
/// by the toolkit alone.
void KeepBeforeTermination(std::function<void()> keep);

/// Lets a windowed program write to the terminal that it was started from, on systems where it
/// would have none.
void UseCallersTerminal();

}  // namespace ladderwise
