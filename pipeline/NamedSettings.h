// The design inputs by name, for the console program's --set and its list of inputs in use. No Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "pipeline/Calculation.h"

namespace ladderwise {

/// The setting whose value is a file, which its program reads and hands to UseCoefficients.
inline constexpr const char* CoefficientsSetting = "coefficients";

/// Sets an input as a user would type or choose it. Gives the reason if the name or the word is
/// unknown, naming the nearest valid one; nothing is changed then. Numbers are not judged here: the
/// bounded readers do that when the calculation reads the boxes.
std::optional<std::string> ApplySetting(Calculation& calculation, std::string_view name,
                                        std::string_view value, const MessageCallback& report);

/// A value in use: a number in SI units, a word, or nothing.
using SettingValue = std::variant<std::monostate, double, std::string>;

struct SettingInUse {
    std::string Name;
    SettingValue Value;
};

/// Every name with the value that the last calculation used.
std::vector<SettingInUse> SettingsInUse(const Calculation& calculation);

/// The names that ApplySetting knows, each with its valid words or its unit, for the usage text.
struct SettingHelp {
    std::string Name;
    std::string Values;
};
std::vector<SettingHelp> SettingsHelp();

/// The candidate with the smallest edit distance to `word`.
std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace ladderwise
