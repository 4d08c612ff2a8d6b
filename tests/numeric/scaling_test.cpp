// Scaling must not change the response, only move it; and a trap's form must not change its
// impedance.
#include <gtest/gtest.h>

#include "scaling/BandScaler.h"
#include "scaling/Protoscaler.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

using enum ElementType;

/// A five-slot prototype with every kind of prototype slot; the resonators are traps outside the
/// pass band.
FilterDesign MixedPrototype(double rLoad, int trapType) {
    FilterDesign design = MakeDesign({{ShuntCap, UnusedValue, 1.2},
                                      {SeriesLC, 0.9, 0.4},
                                      {ShuntLC, 0.2, 1.7},
                                      {SeriesInd, 1.1, UnusedValue},
                                      {ShuntCap, UnusedValue, 0.8}});
    design.RSource = 75;
    design.RLoad = rLoad;
    design.F0 = 120e6;
    design.BandWidth = 30e6;
    design.TrapType = trapType;
    return design;
}

/// Gain of the scaled ladder at f against that of the prototype at the frequency it came from.
template <typename Origin>
void ExpectMoved(const FilterDesign& prototype, void (*scale)(FilterDesign&),
                 const Origin& origin) {
    FilterDesign scaled = prototype;
    scale(scaled);
    for (double f = 0.0501e9; f < 0.3e9; f *= 1.037)
        EXPECT_NEAR(std::norm(AnalysePoint(scaled, scaled.F0, f).Transfer) /
                        PrototypeGain(prototype, std::abs(origin(f))),
                    1, 1e-9)
            << f;
    EXPECT_EQ(scaled.Elements[6].V1, UnusedValue);
    EXPECT_EQ(scaled.Elements[6].Type, errorBitMap);
}

TEST(Scaling, ResponsesKeepTheirShape) {
    for (const double rLoad : {75.0, 20.0, 300.0})
        for (int trapType = 0; trapType <= 5; ++trapType) {
            const FilterDesign p = MixedPrototype(rLoad, trapType);
            const double f0 = p.F0, bw = p.BandWidth;
            const double centre2 = (f0 - bw / 2) * (f0 + bw / 2);
            ExpectMoved(p, ScaleLowPass, [=](double f) { return f / f0; });
            ExpectMoved(p, ScaleHighPass, [=](double f) { return f0 / f; });
            ExpectMoved(p, ScaleBandPass, [=](double f) { return (f - centre2 / f) / bw; });
            ExpectMoved(p, ScaleNotch, [=](double f) { return bw / (f - f0 * f0 / f); });
        }
}

TEST(Scaling, OtherTypesAreLeftAlone) {
    for (const auto scale : {ScaleHighPass, ScaleBandPass, ScaleNotch}) {
        FilterDesign design = MakeDesign({{SeriesTLIN, 90, 50, 3, 4}});
        scale(design);
        EXPECT_EQ(design.Elements[1].Type, SeriesTLIN);
        EXPECT_EQ(design.Elements[1].V1, 90);
        EXPECT_EQ(design.Elements[1].V4, 4);
    }
}

// The four forms of random traps against each other from a tenth to ten times F0, by the transfer
// of the lone arm between terminations of the size of its impedance.
TEST(Scaling, TrapFormsHaveTheSameImpedance) {
    const ElementType types[2][4] = {{SerSerParLC, SeriesElliptic2, SeriesElliptic3, DualSeriesLC},
                                     {ShuntSerParLC, ShuntElliptic2, ShuntElliptic3, DualShuntLC}};
    std::mt19937 random(20240229);
    std::uniform_real_distribution<double> decade(-1.0, 1.0);
    for (int i = 0; i < 300; ++i) {
        const int arm = i % 2;
        FilterDesign prototype =
            MakeDesign({{arm == 0 ? SeriesLC : ShuntLC, std::pow(10.0, decade(random)),
                         std::pow(10.0, decade(random))}});
        prototype.RSource = prototype.RLoad = 1.0;  // keeps all parts above the smallest value
        prototype.BandWidth = prototype.F0 * (i % 3 == 0 ? 0.02 : i % 3 == 1 ? 0.2 : 1.9);
        for (const auto scale : {ScaleBandPass, ScaleNotch}) {
            FilterDesign forms[4];
            for (int trapType = 1; trapType <= 4; ++trapType) {
                FilterDesign& form = forms[trapType - 1] = prototype;
                form.TrapType = trapType;
                scale(form);
                const CircuitElement& trap = form.Elements[1];
                ASSERT_EQ(trap.Type, types[arm][trapType - 1]);
                for (int row = 0; row < 4; ++row)
                    EXPECT_GT(trap.Value(row), 0);
                // Of the dual forms the first resonator is the higher one.
                EXPECT_TRUE(trapType != 4 || trap.V1 * trap.V2 < trap.V3 * trap.V4);
                for (double f = 0.1 * TestF0; f < 10 * TestF0; f *= 1.0873)
                    EXPECT_LT(std::abs(AnalysePoint(form, TestF0, f).Transfer -
                                       AnalysePoint(forms[0], TestF0, f).Transfer),
                              1e-9)
                        << "arm " << arm << " trap " << trapType << " f " << f;
            }
        }
    }
}

}  // namespace
}  // namespace ladderwise
