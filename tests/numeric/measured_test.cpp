// Measured networks at the design's terminations: a board made of the design itself.
#include <gtest/gtest.h>

#include "display/Markers.h"
#include "measured/CableLength.h"
#include "measured/MeasuredSet.h"
#include "support.h"

namespace ladderwise {
namespace {

/// The design as an instrument of 50 ohm sees it through cables of two lengths.
NetworkData Measured(const FilterDesign& design, double delay1, double delay2, bool swapped) {
    NetworkData network;
    network.Hz = LogGrid(201);
    network.S = AnalyseSParameters(design, network.Hz, {50.0, 50.0});
    for (std::size_t i = 0; i < network.Hz.size(); ++i) {
        const double w = TwoPi * network.Hz[i];
        const Complex one = std::polar(1.0, -w * delay1), two = std::polar(1.0, -w * delay2);
        SParameters& s = network.S[i];
        s = {s.S11 * one * one, s.S21 * one * two, s.S12 * one * two, s.S22 * two * two};
        if (swapped) s = {s.S22, s.S12, s.S21, s.S11};
    }
    return network;
}

TEST(MeasuredTraces, OfTheDesignItselfLieOnItsTraces) {
    FilterDesign design = MakeDesign(
        {{ElementType::ShuntCap, UnusedValue, TestC}, {ElementType::SeriesLC, TestL, 0.3 * TestC}},
        PartChoice::RealParts);
    design.RLoad = 200.0;
    for (const bool swapped : {false, true}) {
        for (const bool onePath : {false, true}) {
            NetworkData network = Measured(design, 1e-9, 0.3e-9, swapped);
            network.OnePath = onePath;
            for (SParameters& s : network.S)
                if (onePath) s.S12 = s.S22 = 0.0;
            const MeasuredTraces traces =
                TracesBetweenTerminations(network, {swapped, 1e-9, 0.3e-9}, design);
            EXPECT_EQ(traces.Notes.size(), onePath ? 1u : 0u);
            EXPECT_EQ(traces.Reflection.empty(), onePath && swapped);
            for (std::size_t i = 0; i < network.Hz.size(); ++i) {
                const LadderPoint point = AnalysePoint(design, design.F0, network.Hz[i]);
                ASSERT_LT(std::abs(traces.Transfer[i] - point.Transfer), 1e-10);
                if (!traces.Reflection.empty()) {
                    ASSERT_LT(std::abs(traces.Reflection[i] - point.Reflection), 1e-10);
                }
            }
        }
    }
}

TEST(MeasuredTraces, BetweenPointsMagnitudeAndPhaseAreStraight) {
    const std::vector<double> freqs = {1.0, 2.0, 4.0};
    const std::vector<Complex> values = {std::polar(1.0, 3.0), std::polar(3.0, -3.0), 1.0};
    const Complex middle = *InterpolatedAt(freqs, values, 1.5);
    EXPECT_NEAR(std::abs(middle), 2.0, 1e-14);
    EXPECT_NEAR(middle.real(), -2.0, 1e-14);  // across 180 degrees, not back through 0
    EXPECT_EQ(InterpolatedAt(freqs, values, 4.0), Complex(1.0));
    EXPECT_FALSE(InterpolatedAt(freqs, values, 0.999));
    EXPECT_FALSE(InterpolatedAt(freqs, values, 4.001));
}

/// An attenuator of 20 dB with a cable of 2 ns behind it, of a few points far apart.
NetworkData Attenuator() {
    NetworkData network;
    network.Hz = {50e6, 100e6, 150e6, 400e6};
    for (const double f : network.Hz) {
        const Complex through = 0.1 * std::polar(1.0, -TwoPi * f * 2e-9);
        network.S.push_back({0.0, through, through, 0.0});
    }
    return network;
}

TEST(MeasuredLayers, ReadBetweenTheirPointsWhatTheTracesSay) {
    FilterDesign design = MakeDesign({{ElementType::SeriesLC, TestL, 0.3 * TestC}});
    NetworkData network = Measured(design, 0.0, 0.0, false);
    MeasuredTraces traces = TracesBetweenTerminations(network, {}, design);
    const MeasuredArrays arrays = ArraysOf(traces, -30.0);
    const PlotLayer layer = LayerOf(arrays, {}, "a.s2p", "a");
    for (double f = 10.1e6; f < 900e6; f *= 1.013) {
        const double at = PlaceOf(f, arrays.Hz)->Index;
        const Complex through = *InterpolatedAt(traces.Hz, traces.Transfer, f);
        const Complex back = *InterpolatedAt(traces.Hz, traces.Reflection, f);
        ASSERT_NEAR(LayerValueAt(layer, TraceKind::Mag10dB, at), ComplexToDb(through), 1e-9) << f;
        ASSERT_NEAR(LayerValueAt(layer, TraceKind::ReturnLoss, at), ComplexToDb(back), 1e-9) << f;
        const double phase = LayerValueAt(layer, TraceKind::Phase, at);
        const bool blank = ComplexToDb(through) < -30.0;
        if (!std::isnan(phase)) {
            ASSERT_NEAR(std::remainder(phase - std::arg(through) * 360.0 / TwoPi, 360.0), 0.0,
                        1e-9);
        }
        ASSERT_FALSE(blank && !std::isnan(phase)) << f;
    }
    // A line's delay is its own, however far apart the points are, while less than half a turn is.
    const MeasuredArrays line =
        ArraysOf(TracesBetweenTerminations(Attenuator(), {}, design), -90.0);
    for (std::size_t i = 0; i < line.Hz.size() && line.Hz[i] < 100e6; ++i)
        ASSERT_NEAR(line.GroupDelay[i], 2e-9, 1e-18) << line.Hz[i];
    EXPECT_TRUE(ArraysOf({{1e6}, {}, {0.5}, {}}, -90.0).MagnitudeDb.empty());
}

TEST(MeasuredSets, FollowTheDesignAndTheirOptions) {
    FilterDesign design = MakeDesign({{ElementType::ShuntCap, UnusedValue, TestC}});
    MeasuredSet set;
    set.Put({"/a/board.s2p", Attenuator(), {}});
    set.Put({"/a/bad.s2p", {}, "/a/bad.s2p: line 3: ..."});
    MeasuredFiles files = {NewMeasuredFile("/a/board.s2p", {})};
    for (const char* path : {"/a/bad.s2p", "/b/board.s2p"})
        files.push_back(NewMeasuredFile(path, files));
    EXPECT_EQ(ShortNamesOf(files), (std::vector<std::string>{"board", "bad", "board 2"}));
    EXPECT_NE(files[0].Colour, files[1].Colour);
    const auto level = [&] { return set.LayersOf(files, design)[0].Values.MagnitudeDb[0]; };
    ASSERT_EQ(set.LayersOf(files, design).size(), 1u);
    EXPECT_NEAR(level(), -20.0, 1e-12);
    // Into 200 ohm what a matched attenuator gives is reflected by 0.6: 10 log 0.64 is lost.
    design.RLoad = 200.0;
    EXPECT_NEAR(level(), -20.0 + 10.0 * std::log10(0.64), 1e-9);
    files[0].PortsSwapped = true;
    design.RLoad = 50.0;
    EXPECT_NEAR(level(), -20.0, 1e-12);
    const double* const kept = set.LayersOf(files, design)[0].Values.MagnitudeDb.data();
    EXPECT_EQ(set.LayersOf(files, design)[0].Values.MagnitudeDb.data(), kept);
    // The reflection that a one-path instrument does not measure is the design's own.
    NetworkData onePath = Attenuator();
    onePath.OnePath = true;
    for (SParameters& s : onePath.S)
        s.S12 = s.S22 = 0.0;
    set.Put({"/a/board.s2p", onePath, {}});
    files[0].PortsSwapped = false;
    design.RLoad = 200.0;
    const double before = level();
    design.Elements[1].V2 *= 3.0;
    EXPECT_GT(std::fabs(level() - before), 0.1);
    files[0].Hidden = true;
    EXPECT_TRUE(set.LayersOf(files, design).empty());
    const auto summaries = set.Describe(files, design);
    EXPECT_EQ(summaries[0].Data, "4 points, 50.0 MHz to 400 MHz, two ports at 50 \u03a9");
    EXPECT_EQ(summaries[0].Remarks[1],
              "S22 is not measured; for the design's terminations that of the design was used.");
    EXPECT_FALSE(summaries[1].IsUsable || summaries[2].IsUsable);
}

TEST(CableLengths, AreTimesOrLengthsOfAir) {
    const struct {
        const char* Text;
        std::optional<double> Delay;
    } cases[] = {{"150", 150e-12},
                 {"0.15 ns", 150e-12},
                 {"150p", 150e-12},
                 {"-20", -20e-12},
                 {"29.9792458 mm", 100e-12},
                 {"0.0299792458m", 100e-12},
                 {"", {}},
                 {"long", {}},
                 {"1 us", {}},
                 {"31 m", {}}};
    for (const auto& c : cases) {
        const auto read = ReadCableDelay(c.Text);
        ASSERT_EQ(read.has_value(), c.Delay.has_value()) << c.Text;
        if (read) {
            EXPECT_NEAR(*read, *c.Delay, 1e-20) << c.Text;
        }
    }
    EXPECT_EQ(CableText(150e-12), "150");
}

}  // namespace
}  // namespace ladderwise
