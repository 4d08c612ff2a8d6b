// The plot's geometry without painting: layout, frame, value grid and schematic strip; the mapping
// of traces to points and runs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <tuple>

#include "display/PlotCover.h"
#include "display/PlotFrame.h"
#include "display/TraceMap.h"
#include "display/TraceStrokes.h"
#include "schematic/SchematicStrip.h"
#include "schematic/ValueGridContent.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr int Panel = 150;
// Client 1280 wide with a raw plot height of 390, which becomes 400: PlotTop 185, PlotBottom 585.
constexpr ClientExtent Area{1280, 800, Panel, 701};

// Six pixels a character, so that alignment can be told by hand.
PlotFrame FrameOf(const FilterDesign& design, const TraceChoices& choices,
                  ClientExtent area = Area) {
    const TextMetrics metrics{
        [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};
    return BuildPlotFrame(design, choices, ComputePlotLayout(area, choices), metrics);
}

TEST(PlotLayout, HeightGrowsToWholeDivisionsAndMarginsFollowTheScales) {
    for (const auto& [raw, rounded] : {std::pair{391, 400}, {400, 410}, {-57, 10}})
        EXPECT_EQ(ComputePlotLayout({1280, 800, Panel, Panel + 161 + raw}, {}).PlotHeight, rounded);
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
    EXPECT_EQ(LadderWidth(3), 50 + 4 * 64 + 78);
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
    // Labels never run into each other, however narrow the plot.
    for (const int width : {200, 333, 600, 1280})
        for (const auto sweep :
             {SweepType::Linear, SweepType::ThreeOctaves, SweepType::TwoDecades}) {
            PlotFrame frame =
                FrameOf(MakeButterworth(sweep).Design, choices, {width, 800, Panel, 701});
            auto labels = frame.FrequencyLabels;
            if (width < 300) labels.clear();  // the three fixed ones have no choice
            const auto& more = frame.MoreFrequencyLabels;
            labels.insert(labels.end(), more.begin(), more.end());
            for (const PlotText& a : labels)
                for (const PlotText& b : labels)
                    EXPECT_TRUE(&a == &b || b.X < a.X || b.X >= a.X + 6 * int(a.Text.size()) + 10)
                        << width << ": " << a.Text << " and " << b.Text;
            EXPECT_TRUE(!more.empty() || width < 1280);
        }

    choices.Phase = choices.GroupDelay = true;
    const PlotFrame both = FrameOf(design, choices);
    ASSERT_EQ(both.MagnitudeMarks.size(), 11u);
    ASSERT_EQ(both.PhaseMarks.size(), 11u);
    ASSERT_EQ(both.GroupDelayMarks.size(), 11u);
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
        EXPECT_EQ(DesignTitle(design), c.Title);
    }
}

TEST(PlotFrame, TheTimeAxisOfThePulse) {
    FilterDesign design = MakeButterworth(SweepType::OneDecade).Design;
    TraceChoices choices;
    choices.Pulse = true;
    for (const double bad : {0.0, double(NAN), double(INFINITY)}) {
        design.PulseTimeStep = bad;
        EXPECT_TRUE(FrameOf(design, choices).TimeLabels.empty());
    }
    design.PulseTimeStep = 125e-12;  // 128 ns across 1160 pixels
    const PlotFrame frame = FrameOf(design, choices);
    ASSERT_EQ(frame.TimeLabels.size(), 13u);
    EXPECT_EQ(frame.TimeLabels[0].Text, "0 s");
    EXPECT_EQ(frame.TimeLabels[12].Text, "120 ns");
    EXPECT_EQ(frame.TimeTicks[12].X1, 60 + 1088);  // 120 / 128 of 1160 is 1087.5
    EXPECT_GT(frame.TimeLabels[0].Y, frame.FrequencyLabels[0].Y + 12);
    EXPECT_LE(frame.TimeLabels[0].Y + 13, Area.GridTop - SchematicHeight);
    choices.Pulse = false;
    EXPECT_TRUE(FrameOf(design, choices).TimeLabels.empty());
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
    FilterDesign design;
    design.Elements[1] = {ElementType::ShuntCap, UnusedValue, 15.91549430918953e-12};
    design.Elements[2] = line;
    design.NumElements = 2;
    EXPECT_EQ(PartsTableText(design),
              "Part\tValue\tExact\nC1\t15.9 pF\t1.59154943091895E-11\n"
              "TL2\t90.0 deg\t90\nTL2\t50.0 ohm\t50\n");
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
}

TEST(SchematicStrip, ValuesStandAtTheNames) {
    FilterDesign design = MakeButterworth(SweepType::OneDecade).Design;
    const TextMetrics metrics{
        [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};
    const auto has = [&](const char* text, bool withValues) {
        const StripSigns signs = BuildStripSigns(design, 701, 0, withValues, metrics);
        return std::any_of(signs.Texts.begin(), signs.Texts.end(),
                           [&](const PlotText& sign) { return sign.Text == text; });
    };
    EXPECT_TRUE(has("L2", false) && has("C1", false));
    EXPECT_TRUE(has("L2 79.6 nH", true) && has("C1 15.9 pF", true));
    EXPECT_FALSE(has("L2 79.6 nH", false) || has("L2", true));
}

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// PlotLeft 60, PlotWidth 1160.
const PlotLayout layout = ComputePlotLayout(Area, {});
const PlotScales scales{10.0, 4e-9};

std::unique_ptr<TracePoints> Mapped(const std::vector<double>& values, TraceKind kind,
                                    bool dashed = false) {
    auto points = std::make_unique<TracePoints>();
    MapTrace(values, kind, dashed, layout, scales, *points);
    return points;
}

std::vector<std::pair<int, int>> RunsOf(const TracePoints& points) {
    std::vector<std::pair<int, int>> runs;
    for (int r = 0; r < points.NumRuns; ++r) {
        runs.emplace_back(points.Runs[r].First, points.Runs[r].Last);
    }
    return runs;
}

TEST(TraceMap, KnownValuesOfEachKind) {
    using enum TraceKind;
    // clang-format off
    const struct { TraceKind Kind; double Value; int Y; } cases[] = {
        {Mag10dB, 10, 185}, {Mag10dB, 0, 225}, {Mag10dB, -3.0103, 237}, {Mag10dB, -90, 585},
        {Mag10dB, 9.875, 186},  // half a pixel rounds away from zero
        {Mag10dB, -1000, 585}, {Mag10dB, 1e300, 185}, {ReturnLoss, -20, 305},
        {ReturnLoss, -Inf, 585}, {Mag1dB, 1, 185}, {Mag1dB, -0.5, 245}, {Mag1dB, -9, 585},
        {Phase, 180, 185}, {Phase, -45, 435}, {Phase, -180, 585}, {GroupDelay, 0, 585},
        {GroupDelay, 1e-9, 485}, {GroupDelay, 1, 185}, {GroupDelay, -1e-9, 585},
        {GroupDelay, Inf, 185}, {Pulse, 0.25, 485}, {Pulse, 1.2, 185}, {Normalised, 0.5, 385},
        {Pulse, -0.1, 585}};
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(MapValue(c.Value, ScaleOf(c.Kind, layout, scales), layout), c.Y)
            << static_cast<int>(c.Kind) << ": " << c.Value;
        EXPECT_EQ(Mapped({c.Value, c.Value}, c.Kind)->Y[1], c.Y);
    }
}

TEST(TraceMap, NotANumberAndBlankPointsLeaveGaps) {
    using Runs = std::vector<std::pair<int, int>>;
    const double b = BlankMarker;
    // clang-format off
    const struct { TraceKind Kind; std::vector<double> Values; Runs Expected; } cases[] = {
        {TraceKind::Mag10dB, {0, -1, NaN, -2, -3}, {{0, 1}, {3, 4}}},
        {TraceKind::Mag10dB, {NaN, -1, -2, -3, NaN}, {{1, 3}}},
        {TraceKind::Mag10dB, {NaN, 1, NaN, 2, NaN}, {}},
        {TraceKind::Mag10dB, {0, b, 0, b}, {{0, 3}}},  // a level like any other
        {TraceKind::Phase, {9, 8, b, b, 5, 4}, {{0, 1}, {4, 5}}},
        {TraceKind::Phase, {170, 175, -178, -170}, {{0, 1}, {2, 3}}},  // over the edge
        {TraceKind::Mag10dB, {0, -80, 0}, {{0, 2}}},  // as steep as it may be
        {TraceKind::GroupDelay, {b, b, 1e-9, 2e-9, b, NaN, 1e-9, 1e-9}, {{2, 3}, {6, 7}}},
        {TraceKind::GroupDelay, {b, b, b}, {}}, {TraceKind::Pulse, {}, {}},
        {TraceKind::Pulse, {0.5}, {}},
        {TraceKind::Pulse, std::vector<double>(3000, 0.5), {{0, NumSweepPoints - 1}}}};
    // clang-format on
    for (const auto& c : cases) {
        EXPECT_EQ(RunsOf(*Mapped(c.Values, c.Kind)), c.Expected) << static_cast<int>(c.Kind);
    }
}

TEST(TraceMap, DashesOfTheReference) {
    const auto flat = Mapped(std::vector<double>(NumSweepPoints, 0.0), TraceKind::Mag10dB, true);
    ASSERT_EQ(flat->NumRuns, 128);  // 1024 points, every other four
    EXPECT_EQ(RunsOf(*flat)[1], (std::pair<int, int>{11, 15}));
    EXPECT_EQ(flat->Runs[1].Style, RunStyle::Solid);

    // Few points lie far apart: every step is long, and the trace one dashed line.
    const auto sparse = Mapped({0, 0, 0, 0, 0, -10, -10, -10}, TraceKind::Mag10dB, true);
    EXPECT_EQ(RunsOf(*sparse), (std::vector<std::pair<int, int>>{{0, 7}}));

    // Step 5 alone is long (40 pixels); its neighbours are in the drawn group 4 .. 7.
    std::vector<double> dense(NumSweepPoints, 0.0);
    std::fill(dense.begin() + 5, dense.end(), -10.0);
    const auto edge = Mapped(dense, TraceKind::Mag10dB, true);
    const auto runs = RunsOf(*edge);
    EXPECT_EQ(runs[0], (std::pair<int, int>{3, 4}));
    EXPECT_EQ(runs[1], (std::pair<int, int>{4, 5}));
    EXPECT_EQ(runs[2], (std::pair<int, int>{5, 7}));
    EXPECT_EQ(edge->Runs[1].Style, RunStyle::Dashed);
}

// A dash and its gap are 9 widths long, and a third of them is blank but for the dash's round ends.
TEST(TraceStrokes, DashesAndGapsGrowWithTheWidth) {
    for (const int width : {1, 2, 4}) {
        const auto points = std::make_unique<TracePoints>();
        points->NumPoints = 2;
        points->NumRuns = 1;
        points->X = {0, 200};
        points->Y = {10, 10};
        points->Runs[0] = {0, 1, RunStyle::Dashed};
        constexpr std::uint32_t paper = 0xffffffff;
        std::vector<std::uint32_t> pixels(200 * 20, paper);
        TraceStrokes().Draw(*points, width, Black, {pixels.data(), 200, 20, 200});
        std::vector<int> begins, ends;
        for (int x = 10 * 200 + 1; x < 11 * 200; ++x) {
            if (pixels[x] != paper && pixels[x - 1] == paper) begins.push_back(x);
            if (pixels[x] == paper && pixels[x - 1] != paper) ends.push_back(x);
        }
        ASSERT_GT(begins.size(), 4u) << width;
        EXPECT_EQ(begins[4] - begins[3], 9 * width);
        const int gap = begins[3] - ends[3];
        EXPECT_LE(gap, 3 * width);
        EXPECT_GE(gap, 2 * width - 1) << width;
    }
}

// Every pixel is covered by as much as the line reaches into it, counted from its axis, which for
// an even width lies between two rows; the picture's edges cut off what is beyond.
TEST(TraceStrokes, CoverWhatLiesAtTheirAxis) {
    constexpr int wide = 90, high = 60, stride = 100;
    constexpr std::uint32_t paper = 0xff406080, beside = 0x11223344;
    const std::vector<std::pair<int, int>> shapes[] = {
        {{5, 30}, {40, 30}, {41, 5}, {42, 55}, {60, 40}, {85, 10}},  // flat, steep, oblique
        {{10, 20}, {10, 50}, {30, 50}, {31, 50}, {32, 49}, {33, 47}, {60, 3}},
        {{0, 0}, {89, 59}, {89, 59}, {80, 59}, {-20, 40}, {120, 20}},
        {{2, 58}, {3, 57}, {4, 56}, {6, 54}, {20, 40}, {21, 40}, {40, 21}, {41, 21}}};
    TraceStrokes strokes;
    for (const double width : {0.7, 1.0, 2.0, 3.0, 4.0})
        for (const RunStyle style : {RunStyle::Solid, RunStyle::Dashed})
            for (const auto& shape : shapes) {
                const auto points = std::make_unique<TracePoints>();
                points->NumPoints = static_cast<int>(shape.size());
                for (std::size_t n = 0; n < shape.size(); ++n)
                    std::tie(points->X[n], points->Y[n]) = shape[n];
                points->NumRuns = 1;
                points->Runs[0] = {0, points->NumPoints - 1, style};
                std::vector<std::uint32_t> pixels(stride * high, beside);
                for (int y = 0; y < high; ++y)
                    std::fill_n(&pixels[y * stride], wide, paper);
                strokes.Draw(*points, width, {250, 10, 200}, {pixels.data(), wide, high, stride});
                // Squared distances to the axis, by its points a twentieth of a pixel apart.
                const double offset = std::lround(width) % 2 == 0 ? -0.5 : 0.0;
                std::vector<double> nearest(stride * high, 1e9);
                const auto note = [&](double ax, double ay) {
                    constexpr int reach = 4;
                    for (int y = std::max(0, int(ay) - reach); y < std::min(high, int(ay) + reach);
                         ++y)
                        for (int x = std::max(0, int(ax) - reach);
                             x < std::min(stride, int(ax) + reach); ++x) {
                            double& least = nearest[y * stride + x];
                            least = std::min(least, (ax - x) * (ax - x) + (ay - y) * (ay - y));
                        }
                };
                double run = 0.0;  // along the line, of the dashes
                for (std::size_t n = 1; n < shape.size(); ++n) {
                    const double dx = shape[n].first - shape[n - 1].first;
                    const double dy = shape[n].second - shape[n - 1].second;
                    const double length = std::hypot(dx, dy);
                    for (double at = 0.0; at < length; at += 0.05)
                        if (style == RunStyle::Solid || std::fmod(run + at, 9 * width) < 6 * width)
                            note(shape[n - 1].first + offset + dx * at / length,
                                 shape[n - 1].second + offset + dy * at / length);
                    run += length;
                }
                for (int y = 0; y < high; ++y)
                    for (int x = 0; x < stride; ++x) {
                        const double share = std::clamp(
                            0.5 * width + 0.5 - std::sqrt(nearest[y * stride + x]), 0.0, 1.0);
                        const std::uint32_t seen = pixels[y * stride + x];
                        const auto mixed = [share](int below, int colour) {
                            return below + share * (colour - below);
                        };
                        if (x >= wide) {
                            ASSERT_EQ(seen, beside);
                            continue;
                        }
                        ASSERT_EQ(seen >> 24, 0xffu);
                        ASSERT_NEAR(seen >> 16 & 0xff, mixed(0x40, 250), 11) << x << " " << y;
                        ASSERT_NEAR(seen >> 8 & 0xff, mixed(0x60, 10), 7) << x << " " << y;
                        ASSERT_NEAR(seen & 0xff, mixed(0x80, 200), 5) << x << " " << y;
                    }
            }
}

// A channel 60 pixels wide is free above and below an anchor: a label of 50 stands in its middle.
TEST(PlotCover, ALabelGoesWhereItHidesLeast) {
    for (const bool below : {false, true}) {
        PlotCover cover(layout);
        cover.AddBlock({60, 185, 610, 400});
        cover.AddBlock({730, 185, 490, 400});
        if (!below) cover.AddBlock({670, 385, 60, 200});
        if (below) cover.AddBlock({670, 185, 60, 200});
        const PlotRect label = cover.PlaceLabel(700, 385, 50, 13);
        EXPECT_NEAR(label.Left + 25, 700, 5);
        EXPECT_LE(std::abs(label.Top + 6 - 385), 70 + 13);
        EXPECT_EQ(label.Top > 385, below);
        EXPECT_GT(cover.Cost(label), 0);  // taken from now on
    }
}

}  // namespace
}  // namespace ladderwise
