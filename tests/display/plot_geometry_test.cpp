// The plot's geometry without painting: layout, frame, value grid and schematic strip.
#include <gtest/gtest.h>

#include "display/PlotFrame.h"
#include "display/SchematicStrip.h"
#include "display/ValueGridContent.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr int Panel = 150;
// Client 1280 wide with a raw plot height of 390, which becomes 400: PlotTop 185, PlotBottom 585.
constexpr PlotArea Area{1280, 800, Panel, 701};

// Six pixels a character, so that alignment can be told by hand.
PlotFrame FrameOf(const FilterDesign& design, const TraceChoices& choices, PlotArea area = Area) {
    const TextMetrics metrics{
        [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};
    return BuildPlotFrame(design, choices, ComputePlotLayout(area, choices), metrics);
}

TEST(PlotLayout, HeightGrowsToWholeDivisionsAndMarginsFollowTheScales) {
    for (const auto& [raw, rounded] :
         {std::pair{390, 400}, {391, 400}, {400, 410}, {1, 10}, {0, 10}, {-57, 10}}) {
        const PlotLayout layout = ComputePlotLayout({1280, 800, Panel, Panel + 161 + raw}, {});
        EXPECT_EQ(layout.PlotHeight, rounded) << raw;
        EXPECT_EQ(layout.PlotTop, 185);
        EXPECT_EQ(layout.PlotBottom, 185 + rounded);
    }
    TraceChoices choices;
    choices.GroupDelay = true;
    EXPECT_EQ(ComputePlotLayout(Area, choices).PlotLeft, 85);
    choices.Mag10dB = false;
    const PlotLayout layout = ComputePlotLayout(Area, choices);
    EXPECT_EQ(layout.PlotLeft, 60);
    EXPECT_EQ(layout.PlotWidth, 1160);
    EXPECT_EQ(ScaleBoxRect(layout, 21), (PlotRect{1, 175, 58, 21}));
    EXPECT_GT(ComputePlotLayout({3, 2, Panel, -20}, choices).PlotWidth, 0);
    EXPECT_EQ(ValueGridWidth(3), 262);
    EXPECT_FALSE(ValueGridNeedsScrollBar(3, 312));
    EXPECT_TRUE(ValueGridNeedsScrollBar(3, 311));
}

TEST(PlotFrame, LinesPerSweepTypeAndTheBlackZeroDbLine) {
    // Decades: x0 + round(log10(k) 1160 / N), here k = 1 .. 9 with N = 2.
    const std::pair<SweepType, std::vector<int>> cases[] = {
        {SweepType::Linear, {176, 292, 408, 524, 640, 756, 872, 988, 1104}},
        {SweepType::OneOctave, {60, 640}},
        {SweepType::TwoOctaves, {60, 350, 640, 930}},
        {SweepType::ThreeOctaves, {60, 253, 446, 640, 833, 1026}},
        {SweepType::OneDecade,
         {60, 235, 337, 409, 465, 511, 550, 584, 613, 640, 815, 917, 989, 1045, 1091, 1130, 1164,
          1193}}};
    for (const auto& [sweep, x] : cases) {
        std::vector<int> drawn;
        for (const PlotLine& line : FrameOf(MakeButterworth(sweep).Design, {}).Lines) {
            if (line.X1 != line.X2) continue;
            drawn.push_back(line.X1);
            EXPECT_EQ(line.Y1, 585);
            EXPECT_EQ(line.Y2, 185);
        }
        EXPECT_EQ(drawn, x) << static_cast<int>(sweep);
    }
    FilterDesign design = MakeButterworth(SweepType::TwoDecades).Design;
    EXPECT_EQ(FrameOf(design, {}).Lines.size(), 9u + 36u);
    const auto black = [&](bool mag10, double top) {
        TraceChoices choices;
        choices.Mag10dB = mag10;
        design.MagTopRef = top;
        std::vector<int> y;
        for (const PlotLine& line : FrameOf(design, choices).Lines)
            if (line.Colour == Black) y.push_back(line.Y1);
        return y;
    };
    EXPECT_EQ(black(true, 10.0), std::vector<int>{225});
    EXPECT_EQ(black(true, 30.0), std::vector<int>{305});
    EXPECT_TRUE(black(true, 12.5).empty());
    EXPECT_TRUE(black(false, 10.0).empty());
}

TEST(PlotFrame, LabelsMarksAndTitle) {
    FilterDesign design = MakeButterworth(SweepType::OneDecade).Design;
    TraceChoices choices;
    const auto expectText = [](const PlotText& text, const char* wanted, int x, int y) {
        EXPECT_EQ(text.Text, wanted);
        EXPECT_EQ(text.X, x) << wanted;
        EXPECT_EQ(text.Y, y) << wanted;
    };
    const PlotFrame plain = FrameOf(design, choices);
    ASSERT_EQ(plain.FrequencyLabels.size(), 3u);
    expectText(plain.FrequencyLabels[0], "20.0 MHz", 60, 590);
    expectText(plain.FrequencyLabels[1], "200 MHz", 640 - 21, 590);
    expectText(plain.FrequencyLabels[2], "2.00 GHz", 1220 - 48, 590);
    expectText(plain.Title, "3 Pole Butterworth LPF", 640 - 66, Panel + 11);
    EXPECT_EQ(plain.Border, (PlotRect{60, 185, 1160, 401}));

    choices.Phase = choices.GroupDelay = true;
    const PlotFrame both = FrameOf(design, choices);
    ASSERT_EQ(both.MagnitudeMarks.size(), 11u);
    ASSERT_EQ(both.PhaseMarks.size(), 11u);
    ASSERT_EQ(both.GroupDelayMarks.size(), 11u);
    expectText(both.MagnitudeMarks[1], "0", 85 - 22, 225 - 13 + 5);
    expectText(both.MagnitudeMarks[10], "-90", 85 - 22, 585 - 13 + 5);
    expectText(both.PhaseMarks[10], "-180", 1226, 577);
    expectText(both.GroupDelayMarks[0], "6.0 ns", 85 - 30 - 36, 177);
    EXPECT_EQ(both.GroupDelayMarks[9].Text, "600 ps");
    // 5 pixels a division leave room for every second mark, 1 pixel for the first and the last.
    EXPECT_EQ(FrameOf(design, choices, {1280, 800, Panel, 356}).PhaseMarks.size(), 6u);
    EXPECT_EQ(FrameOf(design, choices, {1280, 800, Panel, 0}).PhaseMarks.size(), 2u);

    choices.Mag10dB = choices.Phase = false;
    design.GDFullScale = 0.0;
    const PlotFrame alone = FrameOf(design, choices);
    EXPECT_TRUE(alone.MagnitudeMarks.empty());
    EXPECT_TRUE(alone.PhaseMarks.empty());
    expectText(alone.GroupDelayMarks[0], "1.0 ns", 60 - 8 - 36, 177);

    // clang-format off
    const struct { int Response, Pass; const char* Title; } titles[] = {
        {6, 1, "3 Pole Linear Cheby HPF"}, {11, 3, "3 Pole Elliptic E NOTCH"},
        {3, 5, "3 Pole Bessel Delay Norton BPF"}, {13, 4, "3 Pole Coefficients File Direct BPF"},
        {5, 2, "3 Pole Gauss BPF"}, {12, 0, "3 Pole Butterworth LPF"}};
    // clang-format on
    for (const auto& c : titles) {
        design.ResponseType = static_cast<ResponseType>(c.Response);
        design.PassType = static_cast<PassType>(c.Pass);
        EXPECT_EQ(PlotTitle(design), c.Title);
    }
}

TEST(ValueGrid, CellsPerElementType) {
    const CircuitElement part{ElementType::SeriesInd, 79.5775e-9, 15.9155e-12, 1e-6, 1e50};
    const CircuitElement line{ElementType::SeriesTLIN, 90.0, 50.0, 45.3, 75.0};
    // clang-format off
    const struct { int Type; CircuitElement Values; const char* Texts[4]; } cases[] = {
        {0, part, {"79.6E-9", "", "", ""}}, {4, part, {"", "15.9E-12", "", ""}},
        {7, part, {"79.6E-9", "15.9E-12", "1.00E-6", "Not Used"}},
        {10, line, {"90.0 deg", "50.0 ohm", "", ""}}, {26, part, {"", "", "", ""}},
        {13, line, {"90.0 deg", "50.0 ohm", "45.3 deg", "75.0 ohm"}}, {-7, part, {"", "", "", ""}}};
    // clang-format on
    for (const auto& c : cases) {
        CircuitElement element = c.Values;
        element.Type = static_cast<ElementType>(c.Type);
        for (int row = 0; row < 4; ++row)
            EXPECT_EQ(CellOf(element, row).Text, c.Texts[row]) << c.Type << " row " << row;
    }
    EXPECT_EQ(CellOf(part, 0).ToolTip, "L = 79.5775 nH");
    EXPECT_EQ(CellOf(part, 1).ToolTip, "");
    EXPECT_EQ(CellOf(line, 1).ToolTip, "Z0 = 50.0000 ohm");
}

TEST(SchematicStrip, PicturesStandAboveTheirColumns) {
    FilterDesign design = MakeButterworth(SweepType::OneDecade).Design;
    design.Elements[3].Type = static_cast<ElementType>(1234);
    const auto placed = PlaceSchematics(design, 701, 20);
    ASSERT_EQ(placed.size(), 3u);
    EXPECT_EQ(placed[0].X, 50 + 64 - 20);
    EXPECT_EQ(placed[2].X, 50 + 3 * 64 - 20);
    EXPECT_EQ(placed[0].Y, 605);
    EXPECT_EQ(placed[1].Type, ElementType::SeriesInd);
    EXPECT_EQ(placed[2].Type, ElementType::errorBitMap);
    for (const int count : {-1, 0, 31, 32, 4000}) {
        design.NumElements = count;
        const auto slots = static_cast<std::size_t>(std::clamp(count, 0, 31));
        EXPECT_EQ(PlaceSchematics(design, 701, 0).size(), slots);
        EXPECT_EQ(BuildValueGrid(design).size(), slots);
    }
}

}  // namespace
}  // namespace ladderwise
