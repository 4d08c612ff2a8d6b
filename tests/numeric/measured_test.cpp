// Measured networks at the design's terminations: a board made of the design itself.
#include <gtest/gtest.h>

#include "measured/MeasuredTraces.h"
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

}  // namespace
}  // namespace ladderwise
