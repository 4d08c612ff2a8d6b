// What became of limits: margins, and what is said about them. No Qt.
#pragma once

#include <string>
#include <vector>

#include "design/LimitLine.h"

namespace ladderwise {

/// A margin below this (dB) is said to be close.
inline constexpr double CloseMarginDb = 0.01;

/// How much of a limit's frequencies was judged: of a measurement no more than it has.
enum class LimitReach { Whole, Part, Nothing };

/// One limit and what became of it.
struct LimitMargin {
    LimitLine Line;
    double Margin = 0.0;  ///< dB, or s of a delay variation; negative: fails; NaN: nothing to judge
    double At = 0.0;      ///< Hz, where it is tightest; of a delay variation the largest delay

    double Middle = 0.0;  ///< s, of a delay variation between the largest and the smallest delay
    LimitReach Reach = LimitReach::Whole;

    /// As far as it was judged.
    bool Holds() const { return Margin >= 0.0; }
    /// It holds, but by less than CloseMarginDb.
    bool Close() const {
        return Holds() && Line.Kind != LimitKind::DelayVariationMax && Margin < CloseMarginDb;
    }
};

struct LimitReport {
    std::vector<LimitMargin> Rows{};  ///< in the order of the limits

    bool Met() const;  ///< all hold, as far as they reach
    /// The row with the smallest margin, of the delays as dB of its limit's share of ten; none
    /// without limits.
    const LimitMargin* Tightest() const;
};

/// "holds by 3.21 dB", "fails by 0.40 dB", "holds by less than 0.01 dB", "not measured there",
/// "cannot be judged".
std::string VerdictOf(const LimitMargin& margin);

/// The same with the place, what it comes to where it is close, and how far it was judged:
/// "holds by 3.21 dB at 288 MHz".
std::string TextOf(const LimitMargin& margin);

/// All in one line: "all hold by 3.21 dB at 288 MHz", "2 of 3 fail, the worst by 0.40 dB at
/// 144 MHz". Empty without limits.
std::string SummaryOf(const LimitReport& report);

}  // namespace ladderwise
