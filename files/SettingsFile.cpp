// The settings file on the disk.
#include "files/SettingsFile.h"

#include <QLockFile>

#include "files/DiskFile.h"

namespace ladderwise {

namespace {

constexpr int LongestWait = 2000;  ///< ms, for an instance that is just writing

}  // namespace

std::optional<ProgramSettings> ReadSettingsFile(const std::string& path,
                                                const MessageCallback& report) {
    const FileContent file = ReadRegularFile(path, MaxSettingsBytes);
    if (!file.Error.empty()) return {};
    ProgramSettings settings;
    ReadSettingsText(file.Bytes, settings, report);
    return settings;
}

std::string WriteSettingsFile(const std::string& path, const ProgramSettings& own,
                              const ProgramSettings& read) {
    // Windows that a logout closes all at once would read the same file and write one after the
    // other. Where no lock can be made, the settings are written all the same.
    QLockFile lock(QString::fromStdString(path + ".lock"));
    lock.tryLock(LongestWait);
    const FileContent file = ReadRegularFile(path, MaxSettingsBytes);
    ProgramSettings kept = read;
    kept.Recent = {};
    const auto silent = [](const std::string&, const std::string&) {};
    const bool whole = file.Error.empty() && ReadSettingsText(file.Bytes, kept, silent);
    return WriteWholeFile(path, SettingsText(whole ? MergedSettings(own, read, kept) : own));
}

}  // namespace ladderwise
