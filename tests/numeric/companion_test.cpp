// The file beside a design: what is kept, what is damaged, and edited values.
#include <gtest/gtest.h>

#include "exchange/DesignCompanion.h"
#include "support.h"

namespace ladderwise {
namespace {

TEST(Companion, KeepsWhatItKnowsAndWhatItDoesNot) {
    const std::string text = R"({
  "ladderwise_companion": 1,
  "later": [{"from": 1e6, "exact": 0.10000000000000000001}],
  "measured": [{"file": "Gr\u00f6\u00dfe 50 \ud83d\ude00.s2p", "note": "red", "hidden": true,
                "port_delay_s": [1e-10, 0]}],
  "edited": [{"slot": 2, "row": 1, "type": "SeriesInd", "calculated": 1e-7, "value": 1.2e-7}]
})";
    const CompanionResult read = ReadCompanion(text);
    ASSERT_EQ(read.Error, "");
    const DesignCompanion& companion = read.Companion;
    ASSERT_EQ(companion.Measured.size(), 1u);
    EXPECT_EQ(companion.Measured[0].Path,
              "Gr\xc3\xb6\xc3\x9f"
              "e 50 \xf0\x9f\x98\x80.s2p");
    EXPECT_TRUE(companion.Measured[0].Hidden);
    EXPECT_EQ(companion.Measured[0].SourceDelay, 1e-10);
    ASSERT_EQ(companion.Edited.size(), 1u);
    EXPECT_EQ(companion.Edited[0].Row, 0);
    const std::string again = CompanionText(companion);
    for (const char* kept : {"0.10000000000000000001", "\"note\": \"red\"", "1.2e-07"})
        EXPECT_NE(again.find(kept), std::string::npos) << again;
    EXPECT_EQ(CompanionText(ReadCompanion(again).Companion), again);
}

TEST(Companion, OfTheLimitsOnlyTheDamagedOnesAreLeftOut) {
    const LimitLines lines = {{LimitKind::AttenMax, 0.0, 30e6, 0.1},
                              {LimitKind::DelayVariationMax, 1.8e6, 29.7e6, 7.3e-9}};
    DesignCompanion companion;
    companion.Limits = lines;
    companion.Held = {{{3, 1}, 4.7e-11}, {{1, 0}, 0.0, 0.01}, {{2, 0}, 1e-9, 0.02}};
    std::string text = CompanionText(companion);
    EXPECT_EQ(ReadCompanion(text).Companion.Held, companion.Held);
    EXPECT_EQ(ReadCompanion(text).Companion.Limits, lines);
    text.insert(text.find('[') + 1, R"({"kind": "atten-min", "from_hz": 2, "to_hz": 1,
        "value_db": 3}, {"kind": "odd"}, 7, )");
    const CompanionResult read = ReadCompanion(text);
    EXPECT_EQ(
        read.Error + "; " + read.Remark,
        "; limit 1 is left out, because it ends below its beginning; limit 2 is left out, "
        "because its kind \"odd\" is not known; limit 3 is left out, because it is no object");
    EXPECT_EQ(read.Companion.Limits, lines);
    EXPECT_EQ(ReadCompanion(R"({"ladderwise_companion": 1, "limits": {}})").Remark,
              "its limits are not a list");
}

TEST(Companion, FilesWithoutAColourDiffer) {
    const MeasuredFiles files =
        ReadCompanion(
            "{\"ladderwise_companion\": 1, \"measured\": [{\"file\": \"a.s2p\"}, "
            "{\"file\": \"b.s2p\", \"colour\": \"pink\"}, "
            "{\"file\": \"c.s2p\", \"colour\": \"teal\"}]}")
            .Companion.Measured;
    ASSERT_EQ(files.size(), 3u);
    EXPECT_NE(files[0].Colour, files[1].Colour);
    EXPECT_STREQ(ColourOf(files[2]).Name, "teal");
}

TEST(Companion, DamageIsSaid) {
    const struct {
        std::string Text;
        const char* Error;
    } cases[] = {
        {"", "line 1: this is no value"},
        {"{\n\"ladderwise_companion\": 1,\n\"measured\": [}", "line 3: "},
        {"[]", "the file is no object"},
        {"{}", "ladderwise_companion of the file is not a number"},
        {"{\"ladderwise_companion\": 2}", "it is of a later version"},
        {"{\"ladderwise_companion\": 1, \"measured\": [{}]}",
         "file of a measured file is not a text"},
        {"{\"ladderwise_companion\": 1, \"edited\": [{\"slot\": 32}]}", "slot of an edited value"},
        {std::string(1000, '['), "line 1: it is nested too deeply"},
        {"{\"ladderwise_companion\": 1} x", "line 1: something stands behind the end"},
    };
    for (const auto& c : cases)
        EXPECT_TRUE(ReadCompanion(c.Text).Error.starts_with(c.Error))
            << c.Text << "\n"
            << ReadCompanion(c.Text).Error;
}

TEST(Companion, EditedValuesBelongToTheirLadderAlone) {
    FilterDesign design =
        MakeDesign({{ElementType::ShuntCap, UnusedValue, TestC}, {ElementType::SeriesInd, TestL}});
    design.CalculatedElements = design.Elements;
    design.Elements[2].V1 *= 1.1;
    const std::vector<EditedValue> edits = EditsOf(design);
    ASSERT_EQ(edits.size(), 1u);
    FilterDesign fresh = design;
    fresh.Elements = *design.CalculatedElements;
    EXPECT_TRUE(ApplyEdits(fresh, edits));
    EXPECT_EQ(fresh.Elements[2].V1, design.Elements[2].V1);
    fresh.Elements = *design.CalculatedElements;
    fresh.Elements[2].V1 *= 2.0;
    EXPECT_FALSE(ApplyEdits(fresh, edits));
    EXPECT_EQ(fresh.Elements[2].V1, 2.0 * TestL);
}

TEST(Companion, PathsFollowTheDesign) {
    DesignCompanion companion;
    companion.Measured.push_back(NewMeasuredFile("/home/a/filters/board.s2p", {}));
    companion.Measured.push_back(
        NewMeasuredFile("/home/a/data/Gr\xc3\xb6\xc3\x9f"
                        "e.s2p",
                        companion.Measured));
    MakePathsRelative(companion, "/home/a/filters");
    EXPECT_EQ(companion.Measured[0].Path, "board.s2p");
    EXPECT_EQ(companion.Measured[1].Path,
              "../data/Gr\xc3\xb6\xc3\x9f"
              "e.s2p");
    MakePathsAbsolute(companion, "/mnt/b/filters");
    EXPECT_EQ(companion.Measured[1].Path,
              "/mnt/b/data/Gr\xc3\xb6\xc3\x9f"
              "e.s2p");
}

}  // namespace
}  // namespace ladderwise
