// How far a design keeps its limits, and where it is tightest. No Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"
#include "limits/LimitMargin.h"

namespace ladderwise {

/// Judges the ladder of `design` as it stands, on the analysis itself: at both ends of each limit,
/// and at every extreme between them (TakeSamples brackets it; the look ends at 1e-4 of the
/// bracket). Attenuation is that of the power that the source can give. A limit that begins at 0 Hz
/// is judged from F0 LowestX. What it misses by 1e-9 (dB; of a delay variation relative) is kept.
/// NaN margins for an empty ladder.
LimitReport JudgeLimits(const FilterDesign& design, const LimitLines& lines);

/// Group delay of the ladder at f (Hz), s: the phase's slope over f (1 +- 1e-6), without the jumps
/// at ideal traps.
double GroupDelayAt(const FilterDesign& design, double f);

/// Judges one design again and again: only limits that were not judged before, or all where the
/// ladder has become another.
class LimitJudge {
public:
    const LimitReport& Judge(const FilterDesign& design, const LimitLines& lines);

private:
    std::vector<double> numbers;
    LimitReport report;
};

}  // namespace ladderwise
