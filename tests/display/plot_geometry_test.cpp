// The plot's geometry without painting: layout, frame, value grid and schematic strip.
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

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
TextMetrics FixedMetrics() {
    return {[](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};
}

PlotFrame FrameOf(const FilterDesign& design, const TraceChoices& choices) {
    return BuildPlotFrame(design, choices, ComputePlotLayout(Area, choices), FixedMetrics());
}

TEST(PlotLayout, HeightIsRoundedUpToWholeDivisionsAndAlwaysGrows) {
    const struct {
        int Raw, Rounded;
    } cases[] = {{390, 400}, {391, 400}, {399, 400}, {400, 410}, {1, 10}, {0, 10}, {-57, 10}};
    for (const auto& c : cases) {
        const PlotLayout layout =
            ComputePlotLayout({1280, 800, Panel, Panel + 35 + c.Raw + 126}, {});
        EXPECT_EQ(layout.PlotHeight, c.Rounded) << c.Raw;
        EXPECT_EQ(layout.PlotTop, 185);
        EXPECT_EQ(layout.PlotBottom, 185 + c.Rounded);
    }
}

TEST(PlotLayout, MarginsFollowTheScalesShown) {
    TraceChoices choices;
    EXPECT_EQ(ComputePlotLayout(Area, choices).PlotLeft, 60);
    choices.GroupDelay = true;
    EXPECT_EQ(ComputePlotLayout(Area, choices).PlotLeft, 85);
    choices.Mag10dB = false;
    choices.Mag1dB = true;
    const PlotLayout layout = ComputePlotLayout(Area, choices);
    EXPECT_EQ(layout.PlotLeft, 60);
    EXPECT_EQ(layout.PlotWidth, 1160);
    EXPECT_EQ(ScaleBoxRect(layout, 21), (PlotRect{1, 175, 58, 21}));
    EXPECT_GT(ComputePlotLayout({3, 2, Panel, -20}, choices).PlotWidth, 0);
}

TEST(PlotLayout, ValueGridScrollsWhenItPassesTheClient) {
    EXPECT_EQ(ValueGridWidth(3), 262);
    EXPECT_FALSE(ValueGridNeedsScrollBar(3, 312));
    EXPECT_TRUE(ValueGridNeedsScrollBar(3, 311));
}

TEST(PlotFrame, VerticalLinesPerSweepType) {
    // Decades: x0 + round(log10(k) 1160 / N), here k = 1 .. 9 with N = 2.
    const std::vector<int> decade = {60, 235, 337, 409, 465, 511, 550, 584, 613};
    std::vector<int> oneDecade = decade;
    for (int x : decade)
        oneDecade.push_back(x + 580);
    const struct {
        SweepType Sweep;
        std::vector<int> X;
    } cases[] = {
        {SweepType::Linear, {176, 292, 408, 524, 640, 756, 872, 988, 1104}},
        {SweepType::OneOctave, {60, 640}},
        {SweepType::TwoOctaves, {60, 350, 640, 930}},
        {SweepType::ThreeOctaves, {60, 253, 446, 640, 833, 1026}},
        {SweepType::OneDecade, oneDecade},
    };
    for (const auto& c : cases) {
        const PlotFrame frame = FrameOf(MakeButterworth(c.Sweep).Design, {});
        std::vector<int> drawn;
        for (const PlotLine& line : frame.Lines) {
            if (line.X1 != line.X2) continue;
            drawn.push_back(line.X1);
            EXPECT_EQ(line.Y1, 585);
            EXPECT_EQ(line.Y2, 185);
        }
        EXPECT_EQ(drawn, c.X) << static_cast<int>(c.Sweep);
    }
    EXPECT_EQ(FrameOf(MakeButterworth(SweepType::TwoDecades).Design, {}).Lines.size(), 9u + 36u);
}

TEST(PlotFrame, ZeroDbLineIsBlackOnlyWithTheTenDbScale) {
    ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    const auto blackLines = [&](bool mag10, double top) {
        TraceChoices choices;
        choices.Mag10dB = mag10;
        made.Design.MagTopRef = top;
        std::vector<int> y;
        for (const PlotLine& line : FrameOf(made.Design, choices).Lines) {
            if (line.Colour == Black) y.push_back(line.Y1);
        }
        return y;
    };
    EXPECT_EQ(blackLines(true, 10.0), std::vector<int>{225});
    EXPECT_EQ(blackLines(true, 30.0), std::vector<int>{305});
    EXPECT_TRUE(blackLines(true, 12.5).empty());
    EXPECT_TRUE(blackLines(false, 10.0).empty());
}

TEST(PlotFrame, FrequencyLabelsAreAlignedToThePlot) {
    const PlotFrame frame = FrameOf(MakeButterworth(SweepType::OneDecade).Design, {});
    ASSERT_EQ(frame.FrequencyLabels.size(), 3u);
    const struct {
        const char* Text;
        int X;
    } expected[] = {{"20.0 MHz", 60}, {"200 MHz", 640 - 21}, {"2.00 GHz", 1220 - 48}};
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(frame.FrequencyLabels[i].Text, expected[i].Text);
        EXPECT_EQ(frame.FrequencyLabels[i].X, expected[i].X);
        EXPECT_EQ(frame.FrequencyLabels[i].Y, 590);
    }
    EXPECT_EQ(frame.Border, (PlotRect{60, 185, 1160, 401}));
}

TEST(PlotFrame, ScaleMarks) {
    ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    TraceChoices choices;
    choices.Phase = choices.GroupDelay = true;
    const PlotFrame both = FrameOf(made.Design, choices);
    ASSERT_EQ(both.MagnitudeMarks.size(), 11u);
    ASSERT_EQ(both.PhaseMarks.size(), 11u);
    ASSERT_EQ(both.GroupDelayMarks.size(), 11u);
    EXPECT_EQ(both.MagnitudeMarks[1].Text, "0");
    EXPECT_EQ(both.MagnitudeMarks[10].Text, "-90");
    EXPECT_EQ(both.MagnitudeMarks[10].X, 85 - 22);
    EXPECT_EQ(both.MagnitudeMarks[10].Y, 585 - 13 + 5);
    EXPECT_EQ(both.PhaseMarks[0].Text, "180");
    EXPECT_EQ(both.PhaseMarks[10].Text, "-180");
    EXPECT_EQ(both.PhaseMarks[0].X, 1226);
    EXPECT_EQ(both.GroupDelayMarks[0].Text, "6.0 ns");
    EXPECT_EQ(both.GroupDelayMarks[9].Text, "600 ps");
    EXPECT_EQ(both.GroupDelayMarks[0].X, 85 - 30 - 36);

    choices.Mag10dB = choices.Phase = false;
    made.Design.GDFullScale = 0.0;
    const PlotFrame alone = FrameOf(made.Design, choices);
    EXPECT_TRUE(alone.MagnitudeMarks.empty());
    EXPECT_TRUE(alone.PhaseMarks.empty());
    EXPECT_EQ(alone.GroupDelayMarks[0].Text, "1.0 ns");
    EXPECT_EQ(alone.GroupDelayMarks[0].X, 60 - 8 - 36);
}

TEST(PlotFrame, Titles) {
    const struct {
        int Poles;
        ResponseType Response;
        PassType Pass;
        const char* Title;
    } cases[] = {
        {3, ResponseType::Butterworth, PassType::LowPass, "3 Pole Butterworth LPF"},
        {10, ResponseType::LinearChebyshev, PassType::HighPass, "10 Pole Linear Cheby HPF"},
        {2, ResponseType::EllipticE, PassType::Notch, "2 Pole Elliptic E NOTCH"},
        {5, ResponseType::BesselDelay, PassType::Norton, "5 Pole Bessel Delay Norton BPF"},
        {4, ResponseType::CoefficientsFile, PassType::DirectCoupled,
         "4 Pole Coefficients File Direct BPF"},
        {1, ResponseType::Gauss, PassType::BandPassCanonical, "1 Pole Gauss BPF"},
        {1, static_cast<ResponseType>(12), PassType::LowPass, "1 Pole Butterworth LPF"},
    };
    FilterDesign design;
    for (const auto& c : cases) {
        design.NumPoles = c.Poles;
        design.ResponseType = c.Response;
        design.PassType = c.Pass;
        EXPECT_EQ(PlotTitle(design), c.Title);
    }
    const PlotText title = FrameOf(MakeButterworth(SweepType::Linear).Design, {}).Title;
    EXPECT_EQ(title.X, 640 - 66);
    EXPECT_EQ(title.Y, Panel + 11);
}

TEST(ValueGrid, CellsPerElementType) {
    const CircuitElement part{ElementType::SeriesInd, 79.5775e-9, 15.9155e-12, 1e-6, 1e50};
    const CircuitElement line{ElementType::SeriesInd, 90.0, 50.0, 45.3, 75.0};
    const struct {
        ElementType Type;
        const CircuitElement& Values;
        std::array<const char*, 4> Texts;
    } cases[] = {
        {ElementType::SeriesInd, part, {"79.6E-9", "", "", ""}},
        {ElementType::ShuntCap, part, {"", "15.9E-12", "", ""}},
        {ElementType::ShuntSerParLC, part, {"79.6E-9", "15.9E-12", "1.00E-6", "Not Used"}},
        {ElementType::ThreeShuntIndSerLC, part, {"79.6E-9", "15.9E-12", "1.00E-6", ""}},
        {ElementType::SeriesTLIN, line, {"90.0 deg", "50.0 ohm", "", ""}},
        {ElementType::ShuntTLSCTLOC, line, {"90.0 deg", "50.0 ohm", "45.3 deg", "75.0 ohm"}},
        {ElementType::errorBitMap, part, {"", "", "", ""}},
        {static_cast<ElementType>(-7), part, {"", "", "", ""}},
    };
    for (const auto& c : cases) {
        CircuitElement element = c.Values;
        element.Type = c.Type;
        for (int row = 0; row < 4; ++row) {
            EXPECT_EQ(CellOf(element, row).Text, c.Texts[static_cast<std::size_t>(row)])
                << static_cast<int>(c.Type) << " row " << row;
        }
    }
    EXPECT_EQ(CellOf(part, 0).ToolTip, "L = 79.5775 nH");
    EXPECT_EQ(CellOf(part, 1).ToolTip, "");
    CircuitElement tlin = line;
    tlin.Type = ElementType::SeriesTLIN;
    EXPECT_EQ(CellOf(tlin, 1).ToolTip, "Z0 = 50.0000 ohm");
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

    for (int count : {-1, 0, 31, 32, 4000}) {
        design.NumElements = count;
        const auto slots = static_cast<std::size_t>(std::clamp(count, 0, 31));
        EXPECT_EQ(PlaceSchematics(design, 701, 0).size(), slots);
        EXPECT_EQ(BuildValueGrid(design).size(), slots);
    }
}

}  // namespace
}  // namespace ladderwise
