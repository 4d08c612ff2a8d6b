// Touchstone files: S-parameters over the frequency as text, version 1 and 2.0. Writing here,
// reading in TouchstoneReader. No Qt, no disk.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "analysis/SParameters.h"

namespace ladderwise {

enum class TouchstoneVersion { One = 1, Two = 2 };

/// The frequencies of an export: the sweep of the design, or `Points` from `From` to `To` (Hz).
struct FrequencyRange {
    double From = 0.0;
    double To = 0.0;
    int Points = 0;
    bool Logarithmic = false;
};

/// The most points of an export.
inline constexpr int MostExportPoints = 1'000'000;

/// The points of a range, both ends exactly among them; one point is `From`.
std::vector<double> PointsOf(const FrequencyRange& range);

/// What a range lacks, as a sentence; empty if nothing.
std::string FaultOf(const FrequencyRange& range);

/// The frequencies as they are written: rounded to whole hertz, or all as they are where rounding
/// would make two equal or one zero.
std::vector<double> WrittenFrequencies(std::span<const double> freqs);

struct TouchstoneOptions {
    TouchstoneVersion Version = TouchstoneVersion::One;
    double Reference = 50.0;  ///< ohm, of both ports; version 2 has the terminations instead
    int WorstCaseRun = 0;     ///< 0: the nominal design; else said in a comment
};

/// Why the ladder of `design` cannot leave the program: it is empty, or a value is no number.
/// Empty if it can.
std::string ExportFault(const FilterDesign& design);

/// The lines that say what a file holds, without comment signs: design, terminations, parts model.
std::vector<std::string> DesignComments(const FilterDesign& design);

/// The ladder of `design` as a Touchstone file of two ports, port 1 at the source. S is computed at
/// the very frequencies that are written. Empty after ExportFault.
std::string TouchstoneText(const FilterDesign& design, std::span<const double> freqs,
                           const TouchstoneOptions& options);

}  // namespace ladderwise
