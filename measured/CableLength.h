// The electrical length of a cable as people type and read it. No Qt.
#pragma once

#include <optional>
#include <string>

namespace ladderwise {

/// Longest cable that a text may name, one way, s: 30 m of air.
inline constexpr double LongestCableDelay = 100e-9;

/// The delay in s of "150" (ps), "0.15 ns", "45 mm" or "0.045 m" (of air); a negative one adds a
/// cable. Nothing for what is no number, or longer than LongestCableDelay.
std::optional<double> ReadCableDelay(const std::string& text);

/// The delay in ps, "150".
std::string CableText(double delay);

}  // namespace ladderwise
