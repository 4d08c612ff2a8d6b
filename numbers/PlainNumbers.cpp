// Numbers by the locale-free conversions of the standard library.
#include "numbers/PlainNumbers.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>

namespace ladderwise {

namespace {

constexpr int RoundTripDecimals = 16;  ///< behind the first digit: 17 digits keep any double

template <typename... Form>
std::string NumberText(double x, Form... form) {
    std::array<char, 64> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x, form...).ptr;
    return {buffer.data(), end};
}

char Lower(char c) {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

/// Whether all of `digits` is of the form 12.5e-3; the library's reader takes hexadecimal, "nan"
/// and other words too.
bool HasOnlyNumberCharacters(std::string_view digits) {
    return std::all_of(digits.begin(), digits.end(), [](char c) {
        return (c >= '0' && c <= '9') || c == '.' || c == 'e' || c == 'E' || c == '+' || c == '-';
    });
}

}  // namespace

std::string ExactNumber(double x) {
    return NumberText(x == 0.0 ? 0.0 : x);
}

std::string AlignedNumber(double x) {
    const std::string text =
        NumberText(x == 0.0 ? 0.0 : x, std::chars_format::scientific, RoundTripDecimals);
    return text.front() == '-' ? text : " " + text;
}

std::string RoundedNumber(double x, int digits) {
    return NumberText(x, std::chars_format::general, digits);
}

NumberFault ReadPlainNumber(std::string_view text, double& x) {
    bool negative = false;
    if (!text.empty() && (text[0] == '+' || text[0] == '-')) {
        negative = text[0] == '-';
        text.remove_prefix(1);
    }
    std::string word(text.substr(0, 9));
    std::transform(word.begin(), word.end(), word.begin(), Lower);
    double magnitude = std::numeric_limits<double>::infinity();
    if (word != "inf" && word != "infinity") {
        if (text.empty() || text[0] == '-' || text[0] == '+' || !HasOnlyNumberCharacters(text))
            return NumberFault::NotANumber;
        const auto [end, error] =
            std::from_chars(text.data(), text.data() + text.size(), magnitude);
        if (end != text.data() + text.size() || error == std::errc::invalid_argument)
            return NumberFault::NotANumber;
        if (error == std::errc::result_out_of_range) {
            const std::size_t exponent = text.find_first_of("eE");
            const bool small = exponent == std::string_view::npos
                                   ? text[0] == '0' || text[0] == '.'
                                   : text.substr(exponent + 1, 1) == "-";
            if (!small) return NumberFault::TooLarge;
            magnitude = 0.0;
        }
    }
    x = negative ? -magnitude : magnitude;
    return NumberFault::None;
}

}  // namespace ladderwise
