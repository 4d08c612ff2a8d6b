// What a filter must do, as lines over frequency.
#pragma once

#include <cstddef>
#include <vector>

namespace ladderwise {

/// Which quantity a line limits, and to which side.
enum class LimitKind {
    AttenMin,           ///< insertion loss at least, dB
    AttenMax,           ///< insertion loss at most, dB
    ReturnLossMin,      ///< return loss at the source at least, dB
    DelayVariationMax,  ///< largest less smallest group delay at most, s
};

/// One demand from one frequency to another, both included; at one frequency alone where they are
/// equal.
struct LimitLine {
    LimitKind Kind = LimitKind::AttenMin;
    double From = 0.0;   ///< Hz
    double To = 0.0;     ///< Hz
    double Value = 0.0;  ///< dB, or s

    bool operator==(const LimitLine&) const = default;
};

using LimitLines = std::vector<LimitLine>;

/// More than these are no limits but a mistake.
inline constexpr std::size_t MaxLimitLines = 200;

}  // namespace ladderwise
