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

/// The chief ones as one line: "Loss at Fo 3.01 dB, -3 dB edge 200 MHz, ..."; for band-passes and
/// notches the attenuations of both sides are in one.
std::string ResultsLine(const FilterDesign& design, const ResponseResults& results);

/// The traps of an elliptic ladder as its values and parasitics place them, Hz: of each frequency
/// that the prototype asks for the nearest at which an arm lets nothing pass. Empty for other
/// designs.
std::vector<double> TrapFrequencies(const FilterDesign& design);

/// The stop band of an elliptic design as this ladder holds it, and its shape factor (width of stop
/// band and -3 dB band, the larger over the smaller), in one sentence; where values or losses have
/// moved it, the edges of ideal parts too. Empty for other designs.
std::string EllipticText(const FilterDesign& design, const ResponseResults& results);

}  // namespace ladderwise
