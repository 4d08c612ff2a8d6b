// The bounded readers: what they take, what they replace, and how a box shows it.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "files/NumberBox.h"
#include "tests/numeric/format_separator.h"

namespace ladderwise {
namespace {

struct ReadCase {
    const char* Typed;
    double Value;
    const char* Shown;  ///< text of the box afterwards
    bool Replaced;
};

/// Reads each text twice: the second read finds a clean box, whose colour goes back.
template <typename Reader>
void ExpectReads(const std::vector<ReadCase>& cases, Reader read) {
    for (const ReadCase& c : cases) {
        SCOPED_TRACE(c.Typed);
        NumberBox box;
        box.Type(c.Typed);
        EXPECT_EQ(read(box), c.Value);
        EXPECT_EQ(box.Text, c.Shown);
        EXPECT_EQ(box.Colour, c.Replaced ? BoxColour::Silver : BoxColour::Normal);
        EXPECT_EQ(box.ReplacedText.has_value(), c.Replaced);
        EXPECT_EQ(box.ReplacedText.value_or(c.Typed), c.Typed);
        EXPECT_EQ(read(box), c.Value);
        EXPECT_EQ(box.Colour, BoxColour::Normal);
        EXPECT_FALSE(box.ReplacedText);
    }
}

TEST(NumberBoxes, RealNumbersWithinBounds) {
    const std::vector<ReadCase> cases = {
        {"0.5", 0.5, "0.5", false},        {"199", 199.0, "199", false},
        {" 1e1 ", 10.0, " 1e1 ", false},   {"0.4999999", 0.5, "0.5", true},
        {"199.00001", 199, "199.0", true}, {"-1e400", 0.5, "0.5", true},
        {"1e400", 199.0, "199.0", true},   {"", 10.0, "10.0", true},
        {"ten", 10.0, "10.0", true},       {"nan", 10.0, "10.0", true},
        {"1,5", 10.0, "10.0", true}};
    const auto read = [](NumberBox& box) {
        return EditBoxToDouble(box, "0.5", "10.0", "199.0", {});
    };
    ExpectReads(cases, read);
    const SeparatorScope comma(',');  // limit texts keep their points
    ExpectReads({{"1,5", 1.5, "1,5", false}, {"1.5", 1.5, "1.5", false}, {"0,4", 0.5, "0.5", true}},
                read);
}

TEST(NumberBoxes, WholeNumbersWithinBounds) {
    ExpectReads({{"1", 1, "1", false},
                 {" +10 ", 10, " +10 ", false},
                 {"0", 1, "1", true},
                 {"11", 10, "10", true},
                 {"-5", 1, "1", true},
                 {"3.5", 3, "3", true},
                 {"", 3, "3", true},
                 {"99999999999", 3, "3", true}},
                [](NumberBox& box) { return EditBoxToInt(box, "1", "3", "10", {}); });
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
    EXPECT_EQ(box.Text, "199.96");
    EXPECT_EQ(box.ReplacedText, "200");
    box.WriteText("four", 4.0);
    EXPECT_EQ(read(box), 4.0);
    EXPECT_EQ(EditBoxToInt(box, "1", "3", "10", {}), 4);
}

TEST(NumberBoxes, UnreadableLimitsAreReportedAndCountAsOne) {
    std::vector<std::string> messages;
    const MessageCallback record = [&](const std::string& caption, const std::string& text) {
        messages.push_back(caption + ": " + text);
    };
    NumberBox box{"0.5"};
    EXPECT_EQ(EditBoxToDouble(box, "low", "2", "9", record), 1.0);
    EXPECT_EQ(box.Text, "low");
    box.Type("5");
    EXPECT_EQ(EditBoxToInt(box, "0", "2.5", "", record), 1);
    box.Type("5");
    EXPECT_EQ(EditBoxToDouble(box, "0", "default", "9", {}), 5.0);
    const std::vector<std::string> wanted = {
        "Error: Invalid String Argument in EditBoxToDouble function.",
        "Error: Invalid String Argument in EditBoxToInt function."};
    EXPECT_EQ(messages, wanted);
}

TEST(NumberBoxes, StoredTexts) {
    const struct {
        const char* Text;
        double Value;
    } cases[] = {{"5", 5}, {"1", 1}, {"9", 9}, {"0.9", 1}, {"9.1", 9}, {"x", 3}, {"-1e999", 1}};
    for (const auto& c : cases)
        EXPECT_EQ(StringToDouble(c.Text, 1, 3, 9), c.Value) << c.Text;
    EXPECT_EQ(StringToDouble("x", 1, 30, 9), 9.0);
}

}  // namespace
}  // namespace ladderwise
