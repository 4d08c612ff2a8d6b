// Companions from and to the disk.
#include "measured/CompanionFile.h"

#include "files/Directories.h"
#include "files/DiskFile.h"

namespace ladderwise {

DesignCompanion OpenCompanion(const std::string& designPath, const MessageCallback& report) {
    const std::string path = CompanionPath(designPath);
    if (!FileExists(path)) return {};
    const FileContent file = ReadRegularFile(path, MaxCompanionBytes + 1);
    CompanionResult result = ReadCompanion(file.Bytes);
    if (!file.Error.empty())
        report("Error", file.Error);
    else if (!result.Error.empty())
        report("Error", path + ": " + result.Error +
                            "; the design is opened without what stands in that file");
    else if (!result.Remark.empty())
        report("Program Info", path + ": " + result.Remark);
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
    return RemoveFile(path);
}

}  // namespace ladderwise
