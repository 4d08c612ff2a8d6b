// The folders that the program works with: found, created where missing.
#include "files/Directories.h"

#include <QDir>
#include <QFileInfo>
#include <QTemporaryFile>
#include <array>

namespace ladderwise {

namespace {

constexpr const char* RunTimeName = "/RunTime Files";
constexpr const char* SettingsSubfolder = "/Ladderwise";
constexpr const char* StateSubfolder = "/Ladderwise";
constexpr std::array DesignLevels = {"/Tarnwick", "/Ladderwise", "/Files"};

QString Name(const std::string& path) {
    return QString::fromStdString(path);
}

bool FolderExists(const std::string& path) {
    return !path.empty() && QFileInfo(Name(path)).isDir();
}

/// True if the folder is there or could be created below an existing one.
bool Ensure(const std::string& path) {
    return FolderExists(path) || QDir().mkdir(Name(path));
}

/// Whether files can be created there is only known by creating one.
bool IsWritable(const std::string& path) {
    return FolderExists(path) && QTemporaryFile(Name(path + "/probe")).open();
}

/// The documents folder's own levels.
std::optional<std::string> DocumentsDesignFolder(const SystemPlaces& places) {
    const std::string older = places.Of(FolderVariable::UserProfile) + "/My Documents";
    std::string folder = FolderExists(older) ? older : places.Documents;
    if (!Ensure(folder)) return {};
    for (const char* const level : DesignLevels) {
        folder += level;
        if (!Ensure(folder)) return {};
    }
    if (!IsWritable(folder)) return {};
    return folder;
}

std::string FindDesignFolder(const SystemPlaces& places) {
    if (const auto folder = DocumentsDesignFolder(places)) return *folder;
    for (const std::string& folder :
         {places.Executable + "/Files", places.Of(FolderVariable::UserProfile) + "/Temp"})
        if (Ensure(folder) && IsWritable(folder)) return folder;
    return {};
}

std::string FindSettingsFolder(const SystemPlaces& places) {
    if (IsWritable(places.Executable)) return places.Executable;
    const std::string folder = places.Of(FolderVariable::AppData) + SettingsSubfolder;
    QDir().mkpath(Name(folder));
    return folder;
}

std::string FindStateFolder(const SystemPlaces& places) {
    const std::string folder = places.State + StateSubfolder;
    if (places.State.empty() || !QDir().mkpath(Name(folder)) || !IsWritable(folder)) return {};
    return folder;
}

}  // namespace

std::string FindRunTimeFolder(const SystemPlaces& places) {
    for (const std::string& place : {places.Executable, places.SharedData})
        if (FolderExists(place + RunTimeName)) return place + RunTimeName;
    return {};
}

std::optional<Folders> FindFolders(const SystemPlaces& places, const MessageCallback& report) {
    for (std::size_t i = 0; i < FolderVariables.size(); ++i) {
        if (places.Variables[i].size() < VariableBufferSize) continue;
        report("Error", std::string("Buffer too small to expand  ") + FolderVariables[i] +
                            " \nThe application will be closed.");
        return {};
    }
    Folders folders;
    folders.ProgramFolder = places.Executable;
    folders.RunTimeFolder = FindRunTimeFolder(places);
    if (folders.RunTimeFolder.empty()) {
        report("Error",
               "Error. The RunTime Files directory is missing. \nYou must reinstall the program. "
               "\nThe application will be closed.");
        return {};
    }
    folders.DesktopFolder = places.Of(FolderVariable::UserProfile) + "/Desktop";
    folders.DesignFolder = FindDesignFolder(places);
    folders.SettingsFolder = FindSettingsFolder(places);
    folders.StateFolder = FindStateFolder(places);
    return folders;
}

std::optional<Folders> EnterFolders(const MessageCallback& report) {
    auto folders = FindFolders(AskSystem(), report);
    if (folders && !folders->DesignFolder.empty()) QDir::setCurrent(Name(folders->DesignFolder));
    return folders;
}

std::string FullPath(const std::string& path) {
    return path.empty() ? path
                        : QDir::cleanPath(QFileInfo(Name(path)).absoluteFilePath()).toStdString();
}

std::string FolderOf(const std::string& path) {
    return QDir::cleanPath(QFileInfo(Name(path)).absolutePath()).toStdString();
}

bool FileExists(const std::string& path) {
    return QFileInfo::exists(Name(path));
}

}  // namespace ladderwise
