// Numbers with a prefix and a unit behind them, as people type them. No Qt.
#pragma once

#include <string_view>

namespace ladderwise {

/// Reads a part value as typed into the grid: a number, then an optional SI prefix and an optional
/// unit ("12E-9", "12n", "12 nH", "50 ohm", "45 deg"). False if it is none.
bool TryParsePartValue(std::string_view text, double& value);

/// The same for one unit: "500n", "500 ns" and "500E-9" for seconds.
bool TryParseWithPrefix(std::string_view text, std::string_view unit, double& value);

/// Reads what a box for numbers in `unit` ("MHz", `factor` 1e6 of its SI unit) understands beyond
/// a plain number: the unit itself ("145.825 MHz", "5 %"), and for hertz, henries, farads and ohms
/// another prefix ("145825k", "0.145825 GHz"). `value` is then in `unit`. False if it is neither.
bool TryParseInUnit(std::string_view text, std::string_view unit, double factor, double& value);

}  // namespace ladderwise
