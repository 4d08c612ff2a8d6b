// A measured file that is shown with a design: where it lies, how it was connected and how it is
// drawn. Its numbers are read elsewhere.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace ladderwise {

/// A colour of measured traces, apart from those of the design and its reference also to the
/// colour-blind: by its lightness where not by its hue.
struct MeasuredColour {
    const char* Name;  ///< in companion files, which never change it
    std::uint8_t Red, Green, Blue;
};
inline constexpr std::array<MeasuredColour, 6> MeasuredColours = {{{"teal", 0, 128, 128},
                                                                   {"brown", 140, 80, 20},
                                                                   {"violet", 110, 40, 190},
                                                                   {"black", 0, 0, 0},
                                                                   {"grey", 105, 105, 105},
                                                                   {"olive", 110, 120, 0}}};
inline constexpr int NumMeasuredColours = static_cast<int>(MeasuredColours.size());

struct MeasuredFile {
    std::string Path;  ///< full, UTF-8
    bool PortsSwapped = false;
    double SourceDelay = 0.0;  ///< electrical length of a cable at the source, s, one way
    double LoadDelay = 0.0;    ///< and at the load
    bool Hidden = false;
    int Colour = 0;        ///< index of MeasuredColours
    std::string Others{};  ///< members of a companion file that are not known, as its text

    bool operator==(const MeasuredFile&) const = default;
};
using MeasuredFiles = std::vector<MeasuredFile>;

/// Its colour; of an index that the table does not have the first.
inline const MeasuredColour& ColourOf(const MeasuredFile& file) {
    const bool known = file.Colour >= 0 && file.Colour < NumMeasuredColours;
    return MeasuredColours[known ? static_cast<std::size_t>(file.Colour) : 0];
}

/// The first colour that the files use least.
inline int FreeColour(const MeasuredFiles& files) {
    std::array<int, NumMeasuredColours> uses{};
    for (const MeasuredFile& file : files)
        if (file.Colour >= 0 && file.Colour < NumMeasuredColours)
            ++uses[static_cast<std::size_t>(file.Colour)];
    return static_cast<int>(std::min_element(uses.begin(), uses.end()) - uses.begin());
}

/// A file as it joins others.
inline MeasuredFile NewMeasuredFile(const std::string& path, const MeasuredFiles& others) {
    MeasuredFile file;
    file.Path = path;
    file.Colour = FreeColour(others);
    return file;
}

}  // namespace ladderwise
