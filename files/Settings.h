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

/// What the file holds. The texts are those of controls, with the decimal separator of the system.
struct ProgramSettings {
    std::string Version;            ///< of the program that wrote the file
    std::string SamplingFrequency;  ///< of a hidden box, kept for the layout of the file
    std::string Threshold;          ///< of GDPhaseThresholdBox, dB
    bool ReadOutMenu = false;       ///< check of a hidden menu item, kept for the layout
    RecentFiles Recent;
};

/// The lines of the file: "identifier , value , key". Paths that cannot stand in one line are left
/// out. The threshold stands there with a decimal point whatever the system's separator is, or a
/// file would change its meaning with the locale.
std::string SettingsText(const ProgramSettings& settings);

/// Reads the lines of a file over `settings`. False for a text of fewer than 5 lines: reported as
/// "Incomplete ini File" and changes nothing; lines without anything in them do not count. A line
/// that cannot be read costs only itself; however many there are, "Error on INI File Read function.
/// \nHave an invalid identifier." is reported once. The threshold is read with a point or a comma.
bool ReadSettingsText(std::string_view text, ProgramSettings& settings,
                      const MessageCallback& report);

/// What an instance writes that has read `read`, now has `own`, and finds `kept` in the file, which
/// other instances have written meanwhile: its own version, of every other text its own if it was
/// changed here, and the recent files of both, its own on top.
ProgramSettings MergedSettings(const ProgramSettings& own, const ProgramSettings& read,
                               const ProgramSettings& kept);

}  // namespace ladderwise
