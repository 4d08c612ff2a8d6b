// Changes of the ladder's part values between scaling and analysis: allowance for parasitics,
// preferred numbers, and random variation within the tolerances for worst-case runs.
#pragma once

#include <array>
#include <random>
#include <string>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The two kinds of part, each with its own tolerance and preferred-number series.
enum class PartKind { Inductor, Capacitor };

inline constexpr int NumStandardValues = 110;
/// The preferred numbers of one decade: entries 0 .. 95 are E24 (IEC 60063) with three equally
/// spaced values in each interval, 96 .. 109 are 10.0, so that strides 1, 2, 4 and 8 (E12) all end
/// on 10.
extern const std::array<double, NumStandardValues> StandardValues;

/// In the worst-case draw, values from here up are no part: line lengths (degrees), line impedances
/// (ohm) and unused positions.
inline constexpr double LargestRandomisedValue = 0.1;

/// Steps of a draw: -100 .. +100 hundredths of the tolerance.
inline constexpr int NumToleranceSteps = 201;

/// Reduces every L and C of slots 1 .. NumElements, so that the part with its parasitics PartModel
/// IndC and CapL resonates at F0 where the ideal one would: L / (1 + w0^2 L IndC) and
/// C / (1 + w0^2 C CapL), w0 = 2 pi F0. Lines and stubs stay. Positions that the type does not use
/// are treated alike.
void DeEmbedParts(FilterDesign& design);

/// The preferred number nearest to x (H or F) in the series of `kind`; the smaller one on a tie. An
/// x that is not positive, not a number or not in use (NotUsedLimit) is returned unchanged; a
/// stride below 1 counts as 1.
double SnapValue(const PartModel& model, PartKind kind, double x);

/// SnapValue for every L and C of slots 1 .. NumElements. Lines and stubs stay. Positions that the
/// type does not use are treated alike.
void SnapToStdValue(FilterDesign& design);

/// Sets the tolerance of `kind` and the stride of its series from 1, 2, 5 or 10 percent. Any other
/// number changes nothing.
void SetTolerance(PartModel& model, PartKind kind, int percent);

/// Both tolerances for the label in the main window, e.g. "C 5%    L 10%".
std::string ToleranceText(const PartModel& model);

/// One draw from `generator`: 100 - (R mod 201), -100 .. +100, all equally likely.
int DrawToleranceStep(std::mt19937& generator);

}  // namespace ladderwise
