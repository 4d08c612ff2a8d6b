// What a filter must do, as lines over frequency.
#pragma once

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ladderwise {

/// Which quantity a line limits, and to which side.
enum class LimitKind {
    AttenMin,           ///< insertion loss at least, dB
    AttenMax,           ///< insertion loss at most, dB
    ReturnLossMin,      ///< return loss at the source at least, dB
    DelayVariationMax,  ///< largest less smallest group delay at most, s
};

inline constexpr std::array<LimitKind, 4> AllLimitKinds = {LimitKind::AttenMin, LimitKind::AttenMax,
                                                           LimitKind::ReturnLossMin,
                                                           LimitKind::DelayVariationMax};

/// "atten-min", "atten-max", "return-loss-min", "delay-variation-max".
const char* NameOf(LimitKind kind);
std::optional<LimitKind> LimitKindNamed(std::string_view name);

/// "attenuation at least", ... for people.
const char* CaptionOf(LimitKind kind);

/// "atten \u2265", ... for a plot.
const char* SymbolOf(LimitKind kind);

/// The unit of a value in tables, windows and JSON, "dB" or "ns", and how many SI units it is.
const char* UnitOf(LimitKind kind);
double UnitFactor(LimitKind kind);

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

/// Why a line is none: an end that is no frequency or in the wrong order, a value that is no
/// number or cannot be demanded. Empty if it is one.
std::string FaultOf(const LimitLine& line);

/// More than these are no limits but a mistake.
inline constexpr std::size_t MaxLimitLines = 200;

}  // namespace ladderwise
