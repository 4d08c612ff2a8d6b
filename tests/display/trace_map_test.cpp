// The mapping of traces to points and runs, and the lines drawn through them.
#include <gtest/gtest.h>

#include <limits>
#include <memory>

#include "display/TraceMap.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr double NaN = std::numeric_limits<double>::quiet_NaN();
constexpr double Inf = std::numeric_limits<double>::infinity();

// PlotLeft 60, PlotWidth 1160, PlotTop 185, PlotBottom 585.
const PlotLayout layout = ComputePlotLayout({1280, 800, 150, 701}, {});
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

TEST(TraceMap, PointsSpreadOverThePlotWidth) {
    const auto points = Mapped(std::vector<double>(NumSweepPoints, 0.0), TraceKind::Mag10dB);
    // 60 + n / 1024 1160
    for (const auto& [n, x] : {std::pair{0, 60}, {512, 640}, {1023, 1219}}) {
        EXPECT_EQ(points->X[n], x);
        EXPECT_EQ(MapIndex(n, NumSweepPoints, layout), x);
    }
}

TEST(TraceMap, FullScaleIsAlwaysUsable) {
    FilterDesign design;
    for (double bad : {0.0, -1e-9, NaN, Inf}) {
        design.GDFullScale = bad;
        EXPECT_EQ(ScalesOf(design).GDFullScale, FallbackGDFullScale);
    }
    design.GDFullScale = 5e-7;
    EXPECT_EQ(ScalesOf(design).GDFullScale, 5e-7);
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

}  // namespace
}  // namespace ladderwise
