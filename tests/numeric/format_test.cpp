// Numbers to text and back: every decade that occurs in a design, carries, words for what is no
// number, both decimal separators, and texts that are no numbers.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "app/design/FilterDesign.h"
#include "files/UtilityFunctions.h"
#include "tests/numeric/format_separator.h"

namespace ladderwise {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double nan = std::numeric_limits<double>::quiet_NaN();

std::string WithPoint(const std::string& digits, int before) {
    const std::string decimals = digits.substr(before);
    return digits.substr(0, before) + (decimals.empty() ? "" : "." + decimals);
}

/// The prefixes of the SI from 1e-15 to 1e9; beyond them the exponent itself.
std::string SiPrefix(int exponent) {
    if (exponent < -15 || exponent > 9) return "E" + std::to_string(exponent);
    const std::string prefixes = "fpnum kMG";
    const std::string prefix(1, prefixes[(exponent + 15) / 3]);
    return prefix == " " ? "" : prefix;
}

/// What C's printf makes of a number: an independent fixed notation.
std::string PrintedFixed(double x, int digits) {
    char buffer[400];
    std::snprintf(buffer, sizeof buffer, "%.*f", digits, x);
    return buffer;
}

// The expected texts are made by moving a point through three digits, without arithmetic.
void ExpectThreeDigits(const std::string& typed, const std::string& digits, int decade) {
    SCOPED_TRACE(typed);
    const double x = std::strtod(typed.c_str(), nullptr);
    const int thousand = decade - ((decade + 30) % 3);
    const std::string sign = x < 0 ? "-" : "";
    const std::string engineering = sign + WithPoint(digits, decade - thousand + 1);
    const std::string scientific = sign + WithPoint(digits, 1) + "E" + std::to_string(decade);
    EXPECT_EQ(FormatWithPrefix(x, 2, "Hz"), engineering + " " + SiPrefix(thousand) + "Hz");
    EXPECT_EQ(FormatEngineering(x, 2), engineering + "E" + std::to_string(thousand));
    EXPECT_EQ(FormatScientific(x, 2), scientific);
    EXPECT_EQ(FormatNumber(x, 2), std::abs(x) <= 1e-18 ? "0.00"
                                  : std::abs(x) < 0.01 ? scientific
                                                       : PrintedFixed(x, 2));

    const double rounded = std::strtod(scientific.c_str(), nullptr);
    EXPECT_NEAR(RoundToSignificant(x, 3), rounded, 1e-15 * std::abs(rounded) * 4);
    const std::string plain = FormatPlain(x, 3);
    EXPECT_EQ(plain.find_first_not_of("-.0123456789"), std::string::npos) << plain;
    EXPECT_EQ(std::strtod(plain.c_str(), nullptr), rounded) << plain;
    EXPECT_TRUE(plain.find('.') == std::string::npos || plain.back() != '0') << plain;

    int exponent = 0;
    const double mantissa = DecomposeDecimal(x, exponent);
    EXPECT_GE(std::abs(mantissa), 1.0);
    EXPECT_LT(std::abs(mantissa), 10.0);
    EXPECT_NEAR(mantissa * std::pow(10.0, exponent) / x, 1.0, 4e-15);
}

TEST(Format, EveryDecadeWithCarries) {
    const struct {
        const char* Mantissa;
        const char* Digits;  ///< three significant digits of it
        int Carry;           ///< decades that rounding moves it up
    } cases[] = {{"1", "100", 0},      {"1.0049", "100", 0}, {"1.594", "159", 0},
                 {"2", "200", 0},      {"4.7", "470", 0},    {"9.994", "999", 0},
                 {"9.9951", "100", 1}, {"9.996", "100", 1},  {"9.9999", "100", 1}};
    for (int decade = -18; decade <= 15; ++decade)
        for (const auto& c : cases)
            for (const std::string sign : {"", "-"})
                ExpectThreeDigits(sign + c.Mantissa + "e" + std::to_string(decade), c.Digits,
                                  decade + c.Carry);
}

TEST(Format, FewerDigitsThanTheEngineeringExponentLeaves) {
    const struct {
        double X;
        int Digits;
        const char* Engineering;
        const char* Prefixed;
    } cases[] = {
        {1.2e-7, 1, "120E-9", "120 nF"},
        {1.26e-7, 1, "130E-9", "130 nF"},
        {9.96e-8, 1, "100E-9", "100 nF"},
        {1.26e-8, 0, "10E-9", "10 nF"},
        {1.6e-7, 0, "200E-9", "200 nF"},
        {9.6e-7, 0, "1E-6", "1 uF"},
        {1.5e-9, -4, "2E-9", "2 nF"},
        {1.25e-9, 99, "1.250000000000000E-9", "1.250000000000000 nF"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FormatEngineering(c.X, c.Digits), c.Engineering);
        EXPECT_EQ(FormatWithPrefix(c.X, c.Digits, "F"), c.Prefixed);
    }
}

TEST(Format, FixedNotationLikePrintf) {
    for (const double x : {0.1, -2.0 / 3.0, 12345.678, 1e15 / 7.0, -1e-5})
        for (int digits = 0; digits <= 18; ++digits)
            EXPECT_EQ(FormatFixed(x, digits), PrintedFixed(x, digits));
    EXPECT_EQ(FormatFixed(0.1, 40), PrintedFixed(0.1, 18));
    EXPECT_EQ(FormatFixed(0.75, -1), "1");
}

TEST(Format, SpecialValues) {
    const struct {
        double X;
        const char *Scientific, *Engineering, *Prefixed;  ///< with 2 digits
    } cases[] = {
        {0.0, "0.00E0", "0.00E0", "0.00 Hz"},
        {1e-18, "1.00E-18", "1.00E-18", "1.00 E-18Hz"},
        {1e12, "1.00E12", "1.00E12", "1.00 E12Hz"},
        {UnusedValue, "1.00E50", "100E48", "Not Used"},
        {NotUsedLimit, "1.00E47", "100E45", "100 E45Hz"},
        {-UnusedValue, "-1.00E50", "-100E48", "-100 E48Hz"},
        {infinity, "INF", "INF", "Not Used"},
        {-infinity, "-INF", "-INF", "-INF Hz"},
        {nan, "NAN", "NAN", "NAN Hz"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(FormatScientific(c.X, 2), c.Scientific);
        EXPECT_EQ(FormatEngineering(c.X, 2), c.Engineering);
        EXPECT_EQ(FormatWithPrefix(c.X, 2, "Hz"), c.Prefixed);
    }
    EXPECT_EQ(FormatNumber(0.0, 0), "0");
    EXPECT_EQ(FormatNumber(-1e-18, 2), "0.00");
    EXPECT_EQ(FormatNumber(0.004, 0), "4E-3");
    EXPECT_EQ(FormatNumber(nan, 2), "NAN");
    EXPECT_EQ(FormatNumber(-infinity, 2), "-INF");
    EXPECT_EQ(FormatPlain(0.0, 3), "0");
    EXPECT_EQ(FormatPlain(nan, 3), "NAN");
    EXPECT_EQ(FormatPlain(infinity, 3), "INF");
}

TEST(Format, DecimalComma) {
    {
        const SeparatorScope comma(',');
        EXPECT_EQ(FormatFixed(-1.25, 2), "-1,25");
        EXPECT_EQ(FormatNumber(0.0, 2), "0,00");
        EXPECT_EQ(FormatScientific(9.996e-9, 2), "1,00E-8");
        EXPECT_EQ(FormatEngineering(12.5e-9, 2), "12,5E-9");
        EXPECT_EQ(FormatWithPrefix(9.9999e6, 2, "Hz"), "10,0 MHz");
        EXPECT_EQ(FormatPlain(0.2099, 3), "0,21");
        EXPECT_EQ(FormatFullPrecision(145.825), "145,825");
    }
    EXPECT_EQ(FormatFixed(-1.25, 2), "-1.25");
    const SeparatorScope neither('\'');
    EXPECT_EQ(FormatFixed(-1.25, 2), "-1.25");
}

struct ParseCase {
    std::string Text;
    std::optional<double> Point;  ///< read in a locale with a decimal point; empty: no number
    std::optional<double> Comma;  ///< in a locale with a decimal comma
};

std::vector<ParseCase> ParseCases() {
    std::vector<ParseCase> cases = {{"1,5", {}, 1.5}, {"1.234,5", {}, {}}, {",5", {}, 0.5}};
    const auto both = [&](const std::string& text, std::optional<double> value) {
        cases.push_back({text, value, value});
    };
    for (const char* const text :
         {"",    " ",    ".",     ",",     "+",    "-",     "-.",   "e5",
          "1e",  "1e+",  "1e5.0", "1.2.3", "--1",  "+-1",   "0x10", "nan",
          "inf", "-INF", "INF",   "1 2",   "1 e5", "12 nH", "1f",   "\xef\xbc\x91"})
        both(text, {});
    both(std::string("1\0", 2), {});
    for (const char* const text :
         {".5", "5.", "1e-9", "1E+3", "-0.25e2", "4.9e-324", "-7", "0e999"})
        both(text, std::strtod(text, nullptr));
    both("+3", 3.0);
    both(" 12 ", 12.0);
    both("\t-4\r\n", -4.0);
    both("1e400", infinity);
    both("-1e400", -infinity);
    both("1e-400", 0.0);
    both("-1e-400", 0.0);
    const std::string zeros(5000, '0'), nines(5000, '9');
    both(nines, infinity);
    both("-" + nines, -infinity);
    both("1e" + nines, infinity);
    both("1e-" + nines, 0.0);
    both("0." + zeros + "1", 0.0);
    both("0." + zeros + "1e5001", 1.0);
    both("1" + zeros + "e-5000", 1.0);
    both(zeros + "7", 7.0);
    return cases;
}

TEST(Parse, TextsInBothLocales) {
    for (const char separator : {'.', ','}) {
        const SeparatorScope scope(separator);
        for (const ParseCase& c : ParseCases()) {
            SCOPED_TRACE("\"" + c.Text.substr(0, 20) + "\" with " + separator);
            const std::optional<double>& wanted = separator == '.' ? c.Point : c.Comma;
            double value = -77.0;
            EXPECT_EQ(TryParseDouble(c.Text, value), wanted.has_value());
            EXPECT_EQ(value, wanted.value_or(-77.0));
            // The reader of stored texts takes no point for a comma.
            const bool replaced = separator == ',' && c.Text.find('.') != std::string::npos;
            EXPECT_EQ(ParseDoubleDef(c.Text, -77.0), replaced ? -77.0 : wanted.value_or(-77.0));
        }
    }
}

TEST(Parse, WholeNumbers) {
    const struct {
        const char* Text;
        std::optional<int> Value;
    } cases[] = {{"7", 7},
                 {"+7", 7},
                 {" -3 ", -3},
                 {"2147483647", 2147483647},
                 {"-2147483648", std::numeric_limits<int>::min()},
                 {"2147483648", {}},
                 {"99999999999999999999", {}},
                 {"", {}},
                 {"+", {}},
                 {"++5", {}},
                 {"+-5", {}},
                 {"3.0", {}},
                 {"1e3", {}},
                 {"3 4", {}}};
    for (const auto& c : cases) {
        int value = -77;
        EXPECT_EQ(TryParseInt(c.Text, value), c.Value.has_value()) << c.Text;
        EXPECT_EQ(value, c.Value.value_or(-77)) << c.Text;
    }
}

TEST(Parse, FullPrecisionSurvivesTheWayToTextAndBack) {
    std::mt19937_64 bits(20);
    for (const char separator : {'.', ','}) {
        const SeparatorScope scope(separator);
        for (int i = 0; i < 4000; ++i) {
            // Every second one from the range of frequencies and bandwidths, the others from all.
            const double wide = std::bit_cast<double>(bits());
            const double x = i % 2 == 0 ? static_cast<double>(bits() >> 11) * 1e-12 : wide;
            if (!std::isfinite(x)) continue;
            const std::string text = FormatFullPrecision(x);
            double back = 0.0;
            ASSERT_TRUE(TryParseDouble(text, back)) << text;
            ASSERT_EQ(back, x) << text;
            ASSERT_EQ(text.find('e'), std::string::npos) << text;
        }
    }
}

TEST(NearestInteger, HalvesAwayFromZeroAndASymmetricLimit) {
    const struct {
        double X;
        int Nearest;
    } cases[] = {{0.0, 0},
                 {2.4, 2},
                 {2.5, 3},
                 {-2.4, -2},
                 {-2.5, -3},
                 {nan, 0},
                 {2147483646.5, 2147483647},
                 {2147483647.0, 2147483647},
                 {3e9, 2147483647},
                 {-2147483648.0, -2147483647},
                 {infinity, 2147483647},
                 {-infinity, -2147483647}};
    std::vector<std::string> messages;
    for (const auto& c : cases)
        EXPECT_EQ(NearestInt(c.X, [&](const std::string&,
                                      const std::string& text) { messages.push_back(text); }),
                  c.Nearest)
            << c.X;
    const std::vector<std::string> once = {
        "ERROR: Value out of range in NearestInt() UtilityFunctions.cpp"};
    EXPECT_EQ(messages, once);
}

}  // namespace
}  // namespace ladderwise
