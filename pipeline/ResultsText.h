// The figures of a finished design in words: one line for a status bar, rows for a panel or a
// console. No Qt.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "analysis/Results.h"

namespace ladderwise {

/// The results of a design as its prototype's pass band asks for them.
ResponseResults ResultsOf(const FilterDesign& design);

/// Name and value of each figure: {"Loss at Fo", "3.01 dB"}, {"attenuation at 2 Fo", "18.13 dB"},
/// ... Names say what was measured and hold no value, so that those of two designs can be put
/// beside each other. Empty for an empty ladder.
using ResultTexts = std::vector<std::pair<std::string, std::string>>;
ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results);

/// Resonances of the traps that an elliptic ladder is made for, Hz, in their order from the source;
/// of a band-pass or notch two of each. Empty for other designs.
std::vector<double> TrapFrequencies(const FilterDesign& design);

/// The same as the values and parasitics of this ladder place them: of each the nearest frequency
/// at which an arm lets nothing pass but for losses.
std::vector<double> MeasuredTraps(const FilterDesign& design);

/// Those for people: {"traps", "240.12 MHz, 301.5 MHz"}, or none.
ResultTexts DescribeTraps(const FilterDesign& design);

/// The order of an elliptic design, its stop band as this ladder holds it, and its shape factor
/// (width of stop band and -3 dB band, the larger over the smaller), in one sentence; where values
/// or losses have moved it, the edges of ideal parts too. Empty for other designs.
std::string EllipticText(const FilterDesign& design, const ResponseResults& results);

/// The three figures that matter most as one line: "Loss at Fo 3.01 dB, -3 dB edge 200 MHz, return
/// loss at least 18.13 dB". Empty for an empty ladder.
std::string ChiefFigures(const FilterDesign& design, const ResponseResults& results);

}  // namespace ladderwise
