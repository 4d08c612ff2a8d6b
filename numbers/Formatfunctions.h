// Numbers to text and back, with the decimal separator of the system: the one way in which every
// number passes between the user and the design. No Qt.
#pragma once

#include <string>
#include <string_view>

namespace ladderwise {

/// Number-format settings of the system's default locale; only the decimal separator matters.
struct FormatSettings {
    char DecimalSeparator = '.';
};

/// The settings in force. Built from the C++ library's default locale at the first call, unless a
/// program has set them before (the window and console programs take Qt's system locale).
const FormatSettings& SystemFormatSettings();

/// Replaces the settings in force. Any separator but a comma is taken as a point.
void SetSystemFormatSettings(FormatSettings settings);

/// Settings for the length of a scope.
class FormatSettingsScope {
public:
    explicit FormatSettingsScope(FormatSettings settings) : before(SystemFormatSettings()) {
        SetSystemFormatSettings(settings);
    }
    ~FormatSettingsScope() { SetSystemFormatSettings(before); }
    FormatSettingsScope(const FormatSettingsScope&) = delete;
    FormatSettingsScope& operator=(const FormatSettingsScope&) = delete;

private:
    const FormatSettings before;
};

/// A text with every comma between digits, or before one at the start of a number, turned into a
/// point: what was written in a comma locale for readers that know no locale.
std::string WithDecimalPoints(std::string text);

/// Reads a text in the system's locale: blanks around it, a sign, digits with one separator, an
/// exponent. In a comma locale the first "." is taken as ",". False if it is not a number; `value`
/// is then left alone. A magnitude beyond the range of double reads as +-HUGE_VAL or 0.
bool TryParseDouble(std::string_view text, double& value);

/// As TryParseDouble, but without the point replacement; `fallback` for what is not a number.
double ParseDoubleDef(std::string_view text, double fallback);

/// Reads a whole number (blanks, a sign, digits). False if it is none or leaves the range of int.
bool TryParseInt(std::string_view text, int& value);

/// ParseDoubleDef, then clamped into [minimum, maximum]; nothing is shown to the user.
double StringToDouble(std::string_view text, double minimum, double fallback, double maximum);

/// 10 raised to n, correctly rounded for -22 <= n <= 22 on every platform. The pow() of some C
/// libraries is not, and a power that is off in its last bits turns 50 into 50.0000000000001.
double PowerOfTen(int n);

/// Mantissa m and exponent e with x = m 10^e and 1 <= |m| < 10; zero and non-finite x give e = 0
/// and m = x. The last bit of m follows the binary exponent times log10(2), truncated.
double DecomposeDecimal(double x, int& exponent);

/// x rounded half away from zero to `digits` significant digits (clamped to 1 .. 15).
double RoundToSignificant(double x, int digits);

/// Fixed notation with `digits` decimals (clamped to 0 .. 18).
std::string FormatFixed(double x, int digits);

/// For labels and grids: "0", "0.00" for |x| <= 1e-18; scientific where fixed would show nothing;
/// otherwise fixed. `digits` is clamped to 0 .. 18.
std::string FormatNumber(double x, int digits);

/// Mantissa with `digits` decimals (clamped to 0 .. 15), "E", exponent: "1.25E-8".
std::string FormatScientific(double x, int digits);

/// As FormatScientific with an exponent that is a multiple of 3: "12.5E-9".
std::string FormatEngineering(double x, int digits);

/// digits + 1 significant digits with an SI prefix and the unit: "15.9 MHz"; "Not Used" above 1e47.
std::string FormatWithPrefix(double x, int digits, std::string_view unit);

/// RoundToSignificant(x, digits) in its shortest plain text, without exponent: "0.21", "200",
/// "39.8".
std::string FormatPlain(double x, int digits);

/// Up to 15 significant digits without trailing zeros, with an exponent where the plain text would
/// be long: "2", "0.1", "1.5707963267949", "-1E99".
std::string FormatGeneral(double x);

/// x rounded to 15 significant digits (the most that every double keeps), in its shortest plain
/// text, without exponent: for limits that are computed, 0.005 * 35 being "0.175".
std::string FormatFullPrecision(double x);

}  // namespace ladderwise
