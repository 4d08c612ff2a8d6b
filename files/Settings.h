// The settings file "Settings.txt" as text: what the program remembers from one run to the next.
// No Qt, no disk.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "design/Messages.h"
#include "files/RecentFiles.h"

namespace ladderwise {

/// More than any settings file needs; what lies beyond is not read.
inline constexpr std::size_t MaxSettingsBytes = 100'000;

/// What the file holds. The texts are those of controls.
struct ProgramSettings {
    std::string Version;            ///< of the program that wrote the file
    std::string SamplingFrequency;  ///< of a hidden box, kept for the layout of the file
    std::string Threshold;          ///< of GDPhaseThresholdBox, dB
    bool ReadOutMenu = false;       ///< check of a hidden menu item, kept for the layout
    RecentFiles Recent;
};

/// The lines of the file: "identifier , value , key". Paths that cannot stand in one line are left
/// out.
std::string SettingsText(const ProgramSettings& settings);

/// Reads the lines of a file over `settings`. A text of fewer than 5 lines is reported as
/// "Incomplete ini File" and changes nothing. A line that cannot be read costs only itself; however
/// many there are, "Error on INI File Read function. \nHave an invalid identifier." is reported
/// once.
void ReadSettingsText(std::string_view text, ProgramSettings& settings,
                      const MessageCallback& report);

}  // namespace ladderwise
