// Companions from and to the disk.
#include "measured/CompanionFile.h"

#include <filesystem>

#include "files/DiskFile.h"

namespace ladderwise {

namespace {

std::filesystem::path SystemPath(const std::string& utf8) {
    return std::filesystem::path(std::u8string(utf8.begin(), utf8.end()));
}

/// The folder of a file as an absolute path in UTF-8.
std::string FolderOf(const std::string& path) {
    std::error_code ignored;
    const auto whole = std::filesystem::absolute(SystemPath(path), ignored).lexically_normal();
    const std::u8string folder = whole.parent_path().generic_u8string();
    return {folder.begin(), folder.end()};
}

}  // namespace

DesignCompanion OpenCompanion(const std::string& designPath, const MessageCallback& report) {
    const std::string path = CompanionPath(designPath);
    std::error_code ignored;
    if (!std::filesystem::exists(SystemPath(path), ignored)) return {};
    const FileContent file = ReadWholeFile(path, MaxCompanionBytes + 1);
    CompanionResult result = ReadCompanion(file.Bytes);
    if (!file.Error.empty())
        report("Error", file.Error);
    else if (!result.Error.empty())
        report("Error", path + ": " + result.Error +
                            "; the design is opened without what stands in that file");
    MakePathsAbsolute(result.Companion, FolderOf(designPath));
    return result.Companion;
}

std::string SaveCompanion(DesignCompanion companion, const std::string& designPath) {
    const std::string path = CompanionPath(designPath);
    if (!companion.IsEmpty()) {
        MakePathsAbsolute(companion, FolderOf("file"));  // as named from where the program runs
        MakePathsRelative(companion, FolderOf(designPath));
        return WriteWholeFile(path, CompanionText(companion));
    }
    std::error_code error;
    std::filesystem::remove(SystemPath(path), error);
    return error ? "cannot remove " + path + ": " + error.message() : "";
}

}  // namespace ladderwise
