// Numbers with a prefix and a unit behind them.
#include "numbers/UnitTexts.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <string>
#include <utility>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

/// Units that take a prefix, and how people write them.
constexpr std::pair<std::string_view, std::string_view> baseUnits[] = {
    {"Hz", "Hz"}, {"H", "H"}, {"F", "F"}, {"ohm", "ohms"}, {"ohm", "ohm"}, {"ohm", "\u03a9"}};

/// Takes a unit and the blanks around it off the end of a text.
std::string_view Without(std::string_view text, std::string_view unit) {
    const auto trim = [&text] {
        while (!text.empty() && text.back() == ' ')
            text.remove_suffix(1);
    };
    trim();
    if (text.size() > unit.size() && text.ends_with(unit)) text.remove_suffix(unit.size());
    trim();
    return text;
}

/// Beyond the prefixes the grid itself writes a blank and an exponent: "2.34 E-18F".
bool TryParseSpacedExponent(std::string_view text, double& value) {
    std::string joined(text);
    const auto blank = joined.find(" E");
    if (blank != std::string::npos) joined.erase(blank, 1);
    return TryParseDouble(joined, value);
}

}  // namespace

bool TryParseWithPrefix(std::string_view text, std::string_view unit, double& value) {
    text = Without(text, "");
    if (TryParseDouble(text, value)) return true;
    text = Without(text, unit);
    constexpr std::array<std::pair<char, double>, 8> prefixes = {{{'f', 1e-15},
                                                                  {'p', 1e-12},
                                                                  {'n', 1e-9},
                                                                  {'u', 1e-6},
                                                                  {'m', 1e-3},
                                                                  {'k', 1e3},
                                                                  {'M', 1e6},
                                                                  {'G', 1e9}}};
    for (const auto& [prefix, scale] : prefixes)
        if (!text.empty() && text.back() == prefix) {
            double number = 0.0;
            if (!TryParseDouble(text.substr(0, text.size() - 1), number)) return false;
            value = number * scale;
            return true;
        }
    return TryParseSpacedExponent(text, value);
}

bool TryParseInUnit(std::string_view text, std::string_view unit, double factor, double& value) {
    text = Without(text, "");
    const std::string_view tail = text.substr(text.size() - std::min(unit.size(), text.size()));
    const bool named = std::equal(
        tail.begin(), tail.end(), unit.begin(), unit.end(),
        [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
    if (named && TryParseDouble(text.substr(0, text.size() - unit.size()), value)) return true;
    for (const auto& [base, spelling] : baseUnits) {
        if (!unit.ends_with(base) || !TryParseWithPrefix(text, spelling, value)) continue;
        // Through its 15 digits: no rounding of the conversion is left.
        return TryParseDouble(FormatGeneral(value / factor), value);
    }
    return false;
}

bool TryParsePartValue(std::string_view text, double& value) {
    for (const std::string_view unit : {"ohms", "ohm", "deg", "H", "F"})
        if (Without(text, unit) != Without(text, "")) return TryParseWithPrefix(text, unit, value);
    return TryParseWithPrefix(text, "", value);
}

}  // namespace ladderwise
