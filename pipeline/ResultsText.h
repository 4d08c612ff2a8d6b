// The figures of a finished design in words: one line for a status bar, rows for a panel or a
// console. No Qt.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "analysis/Results.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// The results of a design as its prototype's pass band asks for them.
ResponseResults ResultsOf(const FilterDesign& design);

/// Name and value of each figure: {"loss at Fo", "3.01 dB"}, {"attenuation at 2 Fo", "18.13 dB"},
/// ... Names say what was measured and hold no value, so that those of two designs can be put
/// beside each other. An elliptic design has its stop band as this ladder holds it, where values or
/// losses have moved it also that of ideal parts, its width over that of the -3 dB band (the larger
/// over the smaller), and its traps. Empty for an empty ladder.
using ResultTexts = std::vector<std::pair<std::string, std::string>>;
ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results);

/// What a worst case came to: {"worst case", "100 runs, seed 7"}, the largest loss in the pass band
/// and the spread at F0. Empty if there was none.
ResultTexts DescribeWorstCase(const WorstCaseResult& result);

/// Resonances of the traps that an elliptic ladder is made for, Hz, in their order from the source;
/// of a band-pass or notch two of each. Empty for other designs.
std::vector<double> TrapFrequencies(const FilterDesign& design);

/// The same as the values and parasitics of this ladder place them: where the arm of each trap lets
/// nothing pass but for losses, however far that is.
std::vector<double> MeasuredTraps(const FilterDesign& design);

/// The three figures that matter most as one line: "Loss at Fo 3.01 dB, -3 dB edge 200 MHz, return
/// loss at least 18.13 dB". Empty for an empty ladder.
std::string ChiefFigures(const FilterDesign& design, const ResponseResults& results);

}  // namespace ladderwise
