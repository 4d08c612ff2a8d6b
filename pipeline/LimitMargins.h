// How far a design keeps its limits, and where it is tightest. No Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "design/FilterDesign.h"
#include "design/LimitLine.h"

namespace ladderwise {

/// A margin below this (dB) is said to be close.
inline constexpr double CloseMarginDb = 0.01;

/// One limit and what became of it.
struct LimitMargin {
    LimitLine Line;
    double Margin = 0.0;  ///< dB, or s of a delay variation; negative: fails; NaN: nothing to judge
    double At = 0.0;      ///< Hz, where it is tightest; of a delay variation the largest delay

    bool Holds() const { return Margin >= 0.0; }
    /// It holds, but by less than CloseMarginDb.
    bool Close() const {
        return Holds() && Line.Kind != LimitKind::DelayVariationMax && Margin < CloseMarginDb;
    }
};

struct LimitReport {
    std::vector<LimitMargin> Rows{};  ///< in the order of the limits

    bool Met() const;
    /// The row with the smallest margin, of the delays as dB of its limit's share of ten; none
    /// without limits.
    const LimitMargin* Tightest() const;
};

/// Judges the ladder of `design` as it stands, on the analysis itself: at both ends of each limit,
/// and at every extreme between them (TakeSamples brackets it; the look ends at 1e-4 of the
/// bracket). Attenuation is that of the power that the source can give. A limit that begins at 0 Hz
/// is judged from F0 LowestX. NaN margins for an empty ladder.
LimitReport JudgeLimits(const FilterDesign& design, const LimitLines& lines);

/// Group delay of the ladder at f (Hz), s: the phase's slope over f (1 +- 1e-6), without the jumps
/// at ideal traps.
double GroupDelayAt(const FilterDesign& design, double f);

/// "holds by 3.21 dB at 288 MHz", "fails by 0.40 dB at 144 MHz", and where it is close so much.
std::string TextOf(const LimitMargin& margin);

}  // namespace ladderwise
