// Numbers to text and back in both locales, texts that are no numbers, and the bounded readers:
// what they take, what they replace, and how a box shows it.
#include <gtest/gtest.h>

#include <bit>
#include <optional>

#include "numbers/NumberBox.h"
#include "numbers/UtilityFunctions.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

TEST(Format, EdgesOfDigitsAndValues) {
    // clang-format off
    const struct { double X; int Digits; const char *Scientific, *Engineering, *Prefixed; }
    cases[] = {
        {145.825e6, 2, "1.46E8", "146E6", "146 MH"}, {15.9e-12, 2, "1.59E-11", "15.9E-12", "15.9 pH"},
        {-4.7e-15, 3, "-4.700E-15", "-4.700E-15", "-4.700 fH"}, {33e3, 2, "3.30E4", "33.0E3", "33.0 kH"},
        {1.26e-8, 0, "1E-8", "10E-9", "10 nH"}, {9.6e-7, 0, "1E-6", "1E-6", "1 uH"}, {1.5e-9, -4, "2E-9", "2E-9", "2 nH"},
        {1.25e-9, 99, "1.250000000000000E-9", "1.250000000000000E-9", nullptr},
        {-9.996e-9, 2, "-1.00E-8", "-10.0E-9", "-10.0 nH"},
        {0.0, 2, "0.00E0", "0.00E0", "0.00 H"}, {1e12, 2, "1.00E12", "1.00E12", "1.00 E12H"},
        {UnusedValue, 2, "1.00E50", "100E48", "Not Used"},
        {NotUsedLimit, 2, "1.00E47", "100E45", "100 E45H"},
        {-UnusedValue, 2, "-1.00E50", "-100E48", "-100 E48H"}, {NaN, 2, "NAN", "NAN", "NAN H"},
        {Infinity, 2, "INF", "INF", "Not Used"}, {-Infinity, 2, "-INF", "-INF", "-INF H"}};
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(FormatScientific(c.X, c.Digits), c.Scientific);
        EXPECT_EQ(FormatEngineering(c.X, c.Digits), c.Engineering);
        // The sixteenth digit is that of the system's pow.
        std::string prefixed = FormatWithPrefix(c.X, c.Digits, "H");
        if (!c.Prefixed) prefixed.replace(prefixed.size() - 4, 1, "_");
        EXPECT_EQ(prefixed, c.Prefixed ? c.Prefixed : "1.25000000000000_ nH");
    }
    EXPECT_EQ(FormatNumber(-1e-18, 2), "0.00");
    EXPECT_EQ(FormatNumber(-Infinity, 2), "-INF");
    EXPECT_EQ(FormatPlain(0.0, 3), "0");
    EXPECT_EQ(FormatPlain(NaN, 3), "NAN");
    EXPECT_EQ(FormatFixed(-2.0 / 3.0, 40), "-0.666666666666666630");
    EXPECT_EQ(FormatFixed(0.75, -1), "1");
}

TEST(Format, DecimalComma) {
    {
        const SeparatorScope comma(',');
        EXPECT_EQ(FormatWithPrefix(9.9999e6, 2, "Hz"), "10,0 MHz");
        EXPECT_EQ(FormatPlain(0.2099, 3), "0,21");
        EXPECT_EQ(FormatFullPrecision(145.825), "145,825");
    }
    const SeparatorScope neither('\'');
    EXPECT_EQ(FormatFixed(-1.25, 2), "-1.25");
}

using Read = std::optional<double>;  ///< empty: no number

TEST(Parse, TextsInBothLocales) {
    const std::string zeros(5000, '0'), nines(5000, '9');
    // clang-format off
    std::vector<std::pair<std::string, Read>> cases = {
        {std::string("1\0", 2), {}}, {"+3", 3.0}, {" 12 ", 12.0}, {"\t-4\r\n", -4.0},
        {"1e400", Infinity}, {"-" + nines, -Infinity}, {"1e-" + nines, 0.0},
        {"0." + zeros + "1e5001", 1.0}};
    // clang-format on
    // clang-format off
    for (const char* const text :
         {"", ".", "-.", "e5", "1e+", "1.2.3", "--1", "0x10", "nan", "-INF", "1 e5", "1.234,5"})
        // clang-format on
        cases.push_back({text, {}});
    for (const char* const text : {".5", "5.", "1E+3", "-0.25e2", "4.9e-324"})
        cases.push_back({text, std::strtod(text, nullptr)});
    for (const char separator : {'.', ','}) {
        const SeparatorScope scope(separator);
        const bool comma = separator == ',';
        cases.push_back({"1,5", comma ? Read(1.5) : Read()});
        for (const auto& [text, wanted] : cases) {
            SCOPED_TRACE("\"" + text.substr(0, 20) + "\" with " + separator);
            double value = -77.0;
            EXPECT_EQ(TryParseDouble(text, value), wanted.has_value());
            EXPECT_EQ(value, wanted.value_or(-77.0));
            // The reader of stored texts takes no point for a comma.
            const bool replaced = comma && text.find('.') != std::string::npos;
            EXPECT_EQ(ParseDoubleDef(text, -77.0), replaced ? -77.0 : wanted.value_or(-77.0));
        }
        cases.pop_back();
    }
}

TEST(Parse, WholeNumbers) {
    // clang-format off
    const std::pair<const char*, std::optional<int>> cases[] = {
        {"+7", 7}, {" -3 ", -3}, {"2147483648", {}}, {"", {}}, {"+-5", {}}, {"3.0", {}},
        {"-2147483648", std::numeric_limits<int>::min()}};
    // clang-format on
    for (const auto& [text, wanted] : cases) {
        int value = -77;
        EXPECT_EQ(TryParseInt(text, value), wanted.has_value()) << text;
        EXPECT_EQ(value, wanted.value_or(-77)) << text;
    }
}

TEST(Parse, FullPrecisionHasFifteenDigitsAndNoExponent) {
    EXPECT_EQ(FormatFullPrecision(0.005 * 35), "0.175");
    EXPECT_EQ(FormatFullPrecision(1.99 * 57), "113.43");
    std::mt19937_64 bits(20);
    const SeparatorScope comma(',');
    for (int i = 0; i < 4000; ++i) {
        const double x = std::bit_cast<double>(bits());
        if (!std::isnormal(x)) continue;
        const std::string text = FormatFullPrecision(x);
        double back = 0.0;
        ASSERT_TRUE(TryParseDouble(text, back) && std::abs(back - x) <= 5e-15 * std::abs(x))
            << text;
        ASSERT_EQ(text.find('e'), std::string::npos) << text;
    }
}

TEST(NearestInteger, HalvesAwayFromZeroAndASymmetricLimit) {
    // clang-format off
    const std::pair<double, int> cases[] = {
        {2.4, 2}, {2.5, 3}, {-2.4, -2}, {-2.5, -3}, {NaN, 0}, {2147483646.5, 2147483647},
        {2147483647.0, 2147483647}, {3e9, 2147483647}, {-2147483648.0, -2147483647},
        {-Infinity, -2147483647}};
    // clang-format on
    Recorder recorder;
    const MessageCallback once = OnceOnly(recorder.Report());
    for (const auto& [x, nearest] : cases)
        EXPECT_EQ(NearestInt(x, once), nearest) << x;
    EXPECT_EQ(recorder.Messages.size(), 1u);
}

struct ReadCase {
    const char* Typed;
    double Value;
    const char* Shown;  ///< text of the box afterwards; another one is silver
};

/// Reads each text twice: the second read finds a clean box, whose colour goes back.
template <typename Reader>
void ExpectReads(const std::vector<ReadCase>& cases, Reader read) {
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.Typed);
        const bool replaced = std::string(c.Typed) != c.Shown;
        NumberBox box;
        box.Type(c.Typed);
        EXPECT_EQ(read(box), c.Value);
        EXPECT_EQ(box.Text, c.Shown);
        EXPECT_EQ(box.Colour, replaced ? BoxColour::Silver : BoxColour::Normal);
        EXPECT_EQ(box.ReplacedText.value_or("-"), replaced ? c.Typed : "-");
        EXPECT_EQ(read(box), c.Value);
        EXPECT_EQ(box.Colour, BoxColour::Normal);
        EXPECT_FALSE(box.ReplacedText);
    }
}

TEST(NumberBoxes, NumbersWithinBounds) {
    const auto read = [](NumberBox& box) {
        return EditBoxToDouble(box, "0.5", "10.0", "199.0", {});
    };
    // clang-format off
    ExpectReads({{"0.5", 0.5, "0.5"}, {" 1e1 ", 10, " 1e1 "}, {"0.4999999", 0.5, "0.5"},
                 {"1e400", 199, "199.0"}, {"1,5", 10, "10.0"}}, read);
    // clang-format on
    const SeparatorScope comma(',');  // limit texts keep their points
    ExpectReads({{"1,5", 1.5, "1,5"}, {"1.5", 1.5, "1.5"}, {"0,4", 0.5, "0.5"}}, read);
    // clang-format off
    ExpectReads({{" +10 ", 10, " +10 "}, {"0", 1, "1"}, {"11", 10, "10"}, {"3.5", 3, "3"}},
                [](NumberBox& box) { return EditBoxToInt(box, "1", "3", "10", {}); });
    // clang-format on
    const std::pair<const char*, double> stored[] = {
        {"5", 5}, {"0,9", 1}, {"9,1", 9}, {"x", 3}, {"-1e999", 1}};
    for (const auto& [text, value] : stored)
        EXPECT_EQ(StringToDouble(text, 1, 3, 9), value) << text;
    EXPECT_EQ(StringToDouble("x", 1, 30, 9), 9.0);
}

TEST(NumberBoxes, TheExactValueStandsBehindTheProgramsOwnText) {
    const auto read = [](NumberBox& box) { return EditBoxToDouble(box, "1", "50", "199.96", {}); };
    NumberBox box;
    box.WriteValue(145.825);
    EXPECT_EQ(box.Text, "146");
    EXPECT_EQ(read(box), 145.825);
    box.Text = "147";  // edited in place
    EXPECT_EQ(read(box), 147.0);
    box.Text = "146";  // and back to what the program wrote
    EXPECT_EQ(read(box), 145.825);
    box.Type("146");  // typed anew: now it means 146
    EXPECT_EQ(read(box), 146.0);
    box.WriteValue(199.96);  // shows 200, beyond the bound, but is not
    EXPECT_EQ(read(box), 199.96);
    EXPECT_EQ(box.Colour, BoxColour::Normal);
    box.WriteValue(199.97);
    EXPECT_EQ(read(box), 199.96);
    EXPECT_EQ(box.ReplacedText, "200");
    box.WriteText("four", 4.0);
    EXPECT_EQ(EditBoxToInt(box, "1", "3", "10", {}), 4);
}

TEST(NumberBoxes, UnreadableLimitsAreReportedAndCountAsOne) {
    Recorder recorder;
    NumberBox box{"0.5"};
    EXPECT_EQ(EditBoxToDouble(box, "low", "2", "9", recorder.Report()), 1.0);
    box.Type("5");
    EXPECT_EQ(EditBoxToInt(box, "0", "2.5", "", recorder.Report()), 1);
    ASSERT_EQ(recorder.Messages.size(), 2u);
    EXPECT_EQ(recorder.Messages[1], "Error: Invalid String Argument in EditBoxToInt function.");
}

}  // namespace
}  // namespace ladderwise
