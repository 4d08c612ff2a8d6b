// Numbers to text and back. The decimal handling is fixed bit for bit (binary exponent times
// log10(2), truncated), because a rounding tie decides which text a builder reads.
#include "numbers/Formatfunctions.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <limits>
#include <locale>
#include <optional>
#include <stdexcept>

#include "design/FilterDesign.h"

namespace ladderwise {

namespace {

constexpr double Log10Of2 = 0.3010299956639812;
constexpr int MaxFixedDigits = 18;     ///< decimals of fixed notation
constexpr int MaxMantissaDigits = 15;  ///< decimals of a mantissa: a double holds no more
constexpr double ShownAsZero = 1e-18;  ///< labels and grids show less than this as 0
constexpr std::string_view Blanks = " \t\r\n";

std::optional<FormatSettings> settingsInForce;

FormatSettings SettingsOfDefaultLocale() {
    try {
        const char point = std::use_facet<std::numpunct<char>>(std::locale("")).decimal_point();
        return {point == ',' ? ',' : '.'};
    } catch (const std::runtime_error&) {
        return {};  // the environment names a locale that this machine does not have
    }
}

std::string_view Trimmed(std::string_view text) {
    const auto first = text.find_first_not_of(Blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(Blanks) - first + 1);
}

/// True for [sign] digits [separator digits] [E [sign] digits] with at least one mantissa digit.
bool IsNumberText(std::string_view text, char separator) {
    std::size_t i = 0;
    const auto skipDigits = [&] {
        const std::size_t start = i;
        while (i < text.size() && text[i] >= '0' && text[i] <= '9')
            ++i;
        return i - start;
    };
    const auto skipSign = [&] {
        if (i < text.size() && (text[i] == '+' || text[i] == '-')) ++i;
    };
    skipSign();
    std::size_t digits = skipDigits();
    if (i < text.size() && text[i] == separator) {
        ++i;
        digits += skipDigits();
    }
    if (digits == 0) return false;
    if (i < text.size() && (text[i] == 'e' || text[i] == 'E')) {
        ++i;
        skipSign();
        if (skipDigits() == 0) return false;
    }
    return i == text.size();
}

/// True when a number text beyond the range of double is too large rather than too small: the
/// decimal position of its first significant digit, moved by its exponent, tells.
bool IsOverflow(std::string_view text) {
    const auto e = std::min(text.find_first_of("eE"), text.size());
    const auto point = std::min(text.find('.'), e);
    const auto first = std::min(text.find_first_of("123456789"), e);
    const double position = static_cast<double>(point) - static_cast<double>(first);
    double exponent = 0.0;
    for (const char digit : text.substr(std::min(e + 1, text.size())))
        if (digit >= '0' && digit <= '9') exponent = 10.0 * exponent + (digit - '0');
    const bool negative = e + 1 < text.size() && text[e + 1] == '-';
    return position + (negative ? -exponent : exponent) > 0.0;
}

bool ParseWithSeparator(std::string_view text, char separator, double& value) {
    text = Trimmed(text);
    if (!IsNumberText(text, separator)) return false;
    std::string plain(text.front() == '+' ? text.substr(1) : text);
    std::replace(plain.begin(), plain.end(), separator, '.');
    double parsed = 0.0;
    const auto result = std::from_chars(plain.data(), plain.data() + plain.size(), parsed);
    if (result.ec == std::errc::result_out_of_range) {
        parsed = IsOverflow(plain) ? HUGE_VAL : 0.0;
        if (plain.front() == '-') parsed = -parsed;
    } else if (result.ec != std::errc()) {
        return false;
    }
    value = parsed;
    return true;
}

/// Fixed notation with a point whatever the locale, and words for what is no number.
std::string PointFixed(double x, int digits) {
    if (std::isnan(x)) return "NAN";
    if (std::isinf(x)) return x > 0 ? "INF" : "-INF";
    std::array<char, 400> buffer;  // 309 digits, a point, 18 decimals and a sign fit
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x,
                                   std::chars_format::fixed, digits)
                         .ptr;
    return {buffer.data(), end};
}

std::string Localised(std::string text) {
    std::replace(text.begin(), text.end(), '.', SystemFormatSettings().DecimalSeparator);
    return text;
}

/// Brings a mantissa that shows as 10 or more with `digits` decimals back below 10.
void CarryMantissa(double& mantissa, int& exponent, int digits) {
    const std::string shown = PointFixed(mantissa, digits);
    double readBack = 0.0;
    if (!ParseWithSeparator(shown, '.', readBack)) return;
    if (readBack >= 10.0 || readBack <= -10.0) {
        mantissa *= 0.1;
        exponent += 1;
    }
}

/// Lowers the exponent to a multiple of 3 and scales the mantissa; the number of steps, 0 to 2.
int LowerToMultipleOf3(double& mantissa, int& exponent) {
    int steps = 0;
    while (exponent % 3 != 0) {
        exponent -= 1;
        mantissa *= 10.0;
        ++steps;
    }
    return steps;
}

std::string PrefixOf(int exponent) {
    switch (exponent) {
        case 9:
            return "G";
        case 6:
            return "M";
        case 3:
            return "k";
        case 0:
            return "";
        case -3:
            return "m";
        case -6:
            return "u";
        case -9:
            return "n";
        case -12:
            return "p";
        case -15:
            return "f";
        default:
            return "E" + std::to_string(exponent);
    }
}

}  // namespace

const FormatSettings& SystemFormatSettings() {
    if (!settingsInForce) settingsInForce = SettingsOfDefaultLocale();
    return *settingsInForce;
}

void SetSystemFormatSettings(FormatSettings settings) {
    if (settings.DecimalSeparator != ',') settings.DecimalSeparator = '.';
    settingsInForce = settings;
}

bool TryParseDouble(std::string_view text, double& value) {
    const char separator = SystemFormatSettings().DecimalSeparator;
    std::string local(text);
    if (separator == ',') {
        const auto point = local.find('.');
        if (point != std::string::npos) local[point] = ',';
    }
    return ParseWithSeparator(local, separator, value);
}

double ParseDoubleDef(std::string_view text, double fallback) {
    double value = fallback;
    ParseWithSeparator(text, SystemFormatSettings().DecimalSeparator, value);
    return value;
}

bool TryParseInt(std::string_view text, int& value) {
    text = Trimmed(text);
    if (!text.empty() && text.front() == '+') {
        text.remove_prefix(1);
        if (!text.empty() && text.front() == '-') return false;  // one sign at most
    }
    int parsed = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), parsed);
    if (result.ec != std::errc() || result.ptr != text.data() + text.size()) return false;
    value = parsed;
    return true;
}

double StringToDouble(std::string_view text, double minimum, double fallback, double maximum) {
    const double value = ParseDoubleDef(text, fallback);
    return value < minimum ? minimum : value > maximum ? maximum : value;
}

double PowerOfTen(int n) {
    constexpr int LargestExact = 22;  // 5 to the 23rd needs more than 53 bits
    if (std::abs(n) > LargestExact) return std::pow(10.0, n);
    double power = 1.0;
    for (int i = 0; i < std::abs(n); ++i)
        power *= 10.0;
    return n < 0 ? 1.0 / power : power;
}

double DecomposeDecimal(double x, int& exponent) {
    exponent = 0;
    if (x == 0.0 || !std::isfinite(x)) return x;
    int binaryExponent = 0;
    const double binaryMantissa = std::frexp(x, &binaryExponent);  // in [0.5, 1)
    const double decimal = binaryExponent * Log10Of2;
    exponent = static_cast<int>(decimal);
    double mantissa = binaryMantissa * std::pow(10.0, decimal - exponent);
    while (mantissa > -1.0 && mantissa < 1.0) {
        mantissa *= 10.0;
        exponent -= 1;
    }
    return mantissa;
}

double RoundToSignificant(double x, int digits) {
    digits = std::clamp(digits, 1, MaxMantissaDigits);
    int exponent = 0;
    double mantissa = DecomposeDecimal(x, exponent) * PowerOfTen(digits - 1);
    mantissa = mantissa < 0.0 ? std::ceil(mantissa - 0.5) : std::floor(mantissa + 0.5);
    return mantissa * PowerOfTen(exponent - (digits - 1));
}

std::string FormatFixed(double x, int digits) {
    return Localised(PointFixed(x, std::clamp(digits, 0, MaxFixedDigits)));
}

std::string FormatNumber(double x, int digits) {
    digits = std::clamp(digits, 0, MaxFixedDigits);
    if (std::abs(x) <= ShownAsZero) return FormatFixed(0.0, digits);
    if (std::abs(x) < PowerOfTen(-digits)) return FormatScientific(x, digits);
    return FormatFixed(x, digits);
}

std::string FormatScientific(double x, int digits) {
    digits = std::clamp(digits, 0, MaxMantissaDigits);
    if (!std::isfinite(x)) return FormatFixed(x, digits);
    int exponent = 0;
    double mantissa = DecomposeDecimal(x, exponent);
    CarryMantissa(mantissa, exponent, digits);
    return FormatFixed(mantissa, digits) + "E" + std::to_string(exponent);
}

std::string FormatEngineering(double x, int digits) {
    digits = std::clamp(digits, 0, MaxMantissaDigits);
    if (!std::isfinite(x)) return FormatFixed(x, digits);
    int exponent = 0;
    double mantissa = DecomposeDecimal(x, exponent);
    CarryMantissa(mantissa, exponent, digits);
    int steps = LowerToMultipleOf3(mantissa, exponent);
    if (digits - steps < 0) {
        steps = digits;
        mantissa = RoundToSignificant(mantissa, digits + 1);
    }
    return FormatFixed(mantissa, digits - steps) + "E" + std::to_string(exponent);
}

std::string FormatWithPrefix(double x, int digits, std::string_view unit) {
    if (x > NotUsedLimit) return "Not Used";
    if (!std::isfinite(x)) return FormatFixed(x, 0) + " " + std::string(unit);
    digits = std::clamp(digits, 0, MaxMantissaDigits);
    const int significant = digits + 1;
    int exponent = 0;
    double mantissa = DecomposeDecimal(RoundToSignificant(x, significant), exponent);
    CarryMantissa(mantissa, exponent, digits);
    int steps = LowerToMultipleOf3(mantissa, exponent);
    if (significant - steps - 1 < 0) steps = digits;
    return FormatFixed(mantissa, significant - steps - 1) + " " + PrefixOf(exponent) +
           std::string(unit);
}

std::string FormatPlain(double x, int digits) {
    const double rounded = RoundToSignificant(x, digits);
    int exponent = 0;
    DecomposeDecimal(rounded, exponent);
    std::string text = PointFixed(rounded, std::max(0, std::clamp(digits, 1, 15) - 1 - exponent));
    if (text.find('.') != std::string::npos) {
        text.erase(text.find_last_not_of('0') + 1);
        if (text.back() == '.') text.pop_back();
    }
    return Localised(text);
}

std::string FormatGeneral(double x) {
    if (!std::isfinite(x)) return PointFixed(x, 0);
    std::array<char, 64> buffer;
    const auto end = std::to_chars(buffer.data(), buffer.data() + buffer.size(), x,
                                   std::chars_format::general, MaxMantissaDigits)
                         .ptr;
    std::string text(buffer.data(), end);
    if (const auto e = text.find('e'); e != std::string::npos) {
        const bool negative = text[e + 1] == '-';
        text = text.substr(0, e) + (negative ? "E-" : "E") +
               text.substr(text.find_first_of("123456789", e));
    }
    return Localised(text);
}

std::string FormatFullPrecision(double x) {
    if (!std::isfinite(x)) return PointFixed(x, 0);
    std::array<char, 400> buffer;  // as in PointFixed; a subnormal has up to 325 decimals
    char* const begin = buffer.data();
    char* const end = begin + buffer.size();
    const auto rounded = std::to_chars(begin, end, x, std::chars_format::scientific,
                                       std::numeric_limits<double>::digits10 - 1);
    std::from_chars(begin, rounded.ptr, x);
    return Localised({begin, std::to_chars(begin, end, x, std::chars_format::fixed).ptr});
}

std::string WithDecimalPoints(std::string text) {
    const auto isDigit = [&](std::size_t i) { return text[i] >= '0' && text[i] <= '9'; };
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        const bool starts = i == 0 || isDigit(i - 1) || text[i - 1] == ' ' || text[i - 1] == '-';
        if (text[i] == ',' && starts && isDigit(i + 1)) text[i] = '.';
    }
    return text;
}

}  // namespace ladderwise
