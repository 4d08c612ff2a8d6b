// The settings file on the disk, which several instances of the program share. QtCore.
#pragma once

#include <optional>
#include <string>

#include "files/Settings.h"

namespace ladderwise {

/// The settings in the file `path`; nothing if there is no such file that can be read, as in the
/// first run. What an incomplete or damaged file lacks is empty.
std::optional<ProgramSettings> ReadSettingsFile(const std::string& path,
                                                const MessageCallback& report);

/// Writes the file `path`: `own`, merged with what other instances have written since `read` was
/// read. A second instance waits until this one is done. Returns an empty text or why it failed.
std::string WriteSettingsFile(const std::string& path, const ProgramSettings& own,
                              const ProgramSettings& read);

}  // namespace ladderwise
