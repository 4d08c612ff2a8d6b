// The figures of a finished design in words: one line for a status bar, a list for a console. No
// Qt.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "analysis/Results.h"

namespace ladderwise {

/// The results of a design as its prototype's pass band asks for them.
ResponseResults ResultsOf(const FilterDesign& design);

/// Name and value of each figure: {"Loss at F0", "3.01 dB"}, {"-3 dB edge", "200 MHz"}, ... Empty
/// for an empty ladder.
using ResultTexts = std::vector<std::pair<std::string, std::string>>;
ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results);

/// Resonances of the traps that an elliptic ladder is made for, Hz, in their order from the source;
/// of a band-pass or notch two of each. Empty for other designs.
std::vector<double> TrapFrequencies(const FilterDesign& design);

/// The same for people: {"traps", "240.12 MHz, 301.5 MHz"}, or none. Of parts that are not the
/// ideal ones they are those "as designed".
ResultTexts DescribeTraps(const FilterDesign& design);

/// All figures as one line: "Loss at F0 3.01 dB, -3 dB edge 200 MHz, ...", for band-passes and
/// notches a shorter one.
std::string ResultsLine(const FilterDesign& design, const ResponseResults& results);

/// The three figures that matter most as one line: "Loss at F0 3.01 dB, -3 dB edge 200 MHz, return
/// loss at least 18.13 dB". Empty for an empty ladder.
std::string ChiefFigures(const FilterDesign& design, const ResponseResults& results);

}  // namespace ladderwise
