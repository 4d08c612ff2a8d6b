// Scaling must not change the response, only move it; and a trap's form must not change its
// impedance.
#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"
#include "scaling/Protoscaler.h"
#include "tests/numeric/prototype_ladder.h"

namespace ladderwise {
namespace {

using judge::PrototypeGain;
using judge::Transfer;

// A five-slot prototype with every kind of prototype slot; the resonators are traps outside the
// pass band.
FilterDesign MixedPrototype(double rLoad) {
    FilterDesign design;
    design.RSource = 75;
    design.RLoad = rLoad;
    design.F0 = 120e6;
    design.BandWidth = 30e6;
    design.NumElements = 5;
    const auto put = [&design](int k, ElementType type, double gL, double gC) {
        design.Elements[k] = {type, gL, gC, UnusedValue, UnusedValue};
    };
    put(1, ElementType::ShuntCap, UnusedValue, 1.2);
    put(2, ElementType::SeriesLC, 0.9, 0.4);
    put(3, ElementType::ShuntLC, 0.2, 1.7);
    put(4, ElementType::SeriesInd, 1.1, UnusedValue);
    put(5, ElementType::ShuntCap, UnusedValue, 0.8);
    return design;
}

// Gain of the scaled ladder at f against that of the prototype at the frequency it came from.
template <typename Scale, typename Origin>
void ExpectMoved(const FilterDesign& prototype, const Scale& scale, const Origin& origin) {
    FilterDesign scaled = prototype;
    scale(scaled);
    for (double f = 0.0501e9; f < 0.3e9; f *= 1.037) {
        const double expected = PrototypeGain(prototype, std::abs(origin(f)));
        EXPECT_NEAR(std::norm(Transfer(scaled, TwoPi * f)) / expected, 1, 1e-9) << f;
    }
    for (int k = prototype.NumElements + 1; k < NumSlots; ++k) {
        EXPECT_EQ(scaled.Elements[k].V1, UnusedValue);
        EXPECT_EQ(scaled.Elements[k].Type, ElementType::errorBitMap);
    }
}

TEST(Scaling, ResponsesKeepTheirShape) {
    for (double rLoad : {75.0, 20.0, 300.0}) {
        FilterDesign p = MixedPrototype(rLoad);
        const double f0 = p.F0, bw = p.BandWidth;
        const double centre2 = (f0 - bw / 2) * (f0 + bw / 2);
        ExpectMoved(p, ScaleLowPass, [=](double f) { return f / f0; });
        ExpectMoved(p, ScaleHighPass, [=](double f) { return f0 / f; });
        for (p.TrapType = 0; p.TrapType <= 5; ++p.TrapType) {
            ExpectMoved(p, ScaleBandPass, [=](double f) { return (f - centre2 / f) / bw; });
            ExpectMoved(p, ScaleNotch, [=](double f) { return bw / (f - f0 * f0 / f); });
        }
    }
}

TEST(Scaling, ThreePoleButterworthInHenriesAndFarads) {
    const double half = 1 / (2 * 3.14159265358979 * 200e6);  // 1 / w0
    FilterDesign lowPass;
    BuildPrototype(lowPass, 3, {});
    FilterDesign highPass = lowPass, bandPass = lowPass, notch = lowPass;
    ScaleLowPass(lowPass);
    EXPECT_NEAR(lowPass.Elements[1].V2, 15.915e-12, 1e-15);
    EXPECT_NEAR(lowPass.Elements[2].V1, 79.58e-9, 5e-12);
    ScaleHighPass(highPass);
    EXPECT_EQ(highPass.Elements[3].Type, ElementType::ShuntInd);
    EXPECT_NEAR(highPass.Elements[3].V1, 50 * half, 1e-20);
    EXPECT_EQ(highPass.Elements[2].Type, ElementType::SeriesCap);
    EXPECT_NEAR(highPass.Elements[2].V2, half / 2 / 50, 1e-24);
    ScaleBandPass(bandPass);
    EXPECT_EQ(bandPass.Elements[2].Type, ElementType::SeriesSerLC);
    EXPECT_NEAR(bandPass.Elements[2].V1, 397.9e-9, 5e-11);
    ScaleNotch(notch);
    for (int k = 1; k <= 3; ++k) {
        const auto resonance = [k](const FilterDesign& d) {
            return 1 / (TwoPi * std::sqrt(d.Elements[k].V1 * d.Elements[k].V2));
        };
        EXPECT_NEAR(resonance(bandPass), std::sqrt(180e6 * 220e6), 1e-3);
        EXPECT_NEAR(resonance(notch), 200e6, 1e-3);
    }
    EXPECT_EQ(bandPass.Elements[1].Type, ElementType::ShuntParLC);
    EXPECT_EQ(notch.Elements[1].Type, ElementType::ShuntLC);
    EXPECT_EQ(notch.Elements[2].Type, ElementType::SeriesLC);
}

TEST(Scaling, OtherTypesAreLeftAlone) {
    for (auto scale : {ScaleHighPass, ScaleBandPass, ScaleNotch}) {
        FilterDesign design;
        design.NumElements = 1;
        design.Elements[1] = {ElementType::SeriesTLIN, 90, 50, 3, 4};
        scale(design);
        EXPECT_EQ(design.Elements[1].Type, ElementType::SeriesTLIN);
        EXPECT_EQ(design.Elements[1].V1, 90);
        EXPECT_EQ(design.Elements[1].V4, 4);
    }
}

const ElementType trapTypes[2][4] = {{ElementType::SerSerParLC, ElementType::SeriesElliptic2,
                                      ElementType::SeriesElliptic3, ElementType::DualSeriesLC},
                                     {ElementType::ShuntSerParLC, ElementType::ShuntElliptic2,
                                      ElementType::ShuntElliptic3, ElementType::DualShuntLC}};

// The four forms of one trap against each other from a tenth to ten times F0.
void CompareTrapForms(const FilterDesign& prototype, void (*scale)(FilterDesign&), int arm) {
    FilterDesign section = prototype;
    section.TrapType = 1;
    scale(section);
    ASSERT_EQ(section.Elements[1].Type, trapTypes[arm][0]);
    for (int trapType = 2; trapType <= 4; ++trapType) {
        FilterDesign design = prototype;
        design.TrapType = trapType;
        scale(design);
        const CircuitElement& trap = design.Elements[1];
        ASSERT_EQ(trap.Type, trapTypes[arm][trapType - 1]);
        for (int row = 0; row < 4; ++row)
            EXPECT_GT(trap.Value(row), 0);
        // Of the dual forms the first resonator is the higher one.
        if (trapType == 4) {
            EXPECT_LT(trap.V1 * trap.V2, trap.V3 * trap.V4);
        }
        for (double f = 0.1 * design.F0; f < 10 * design.F0; f *= 1.0873) {
            const judge::Complex s(0, TwoPi * f);
            const auto expected = judge::ArmImpedance(section.Elements[1], s);
            EXPECT_LT(std::abs(judge::ArmImpedance(trap, s) - expected), 1e-9 * std::abs(expected))
                << "arm " << arm << " trap " << trapType << " f " << f;
        }
    }
}

TEST(Scaling, TrapFormsHaveTheSameImpedance) {
    std::mt19937 generator(20240229);
    const auto draw = [&generator] {  // 0.1 .. 10, evenly in the logarithm
        return std::pow(10.0, generator() / 2147483648.0 - 1);
    };
    for (double relativeWidth : {0.02, 0.2, 1.9}) {
        for (int i = 0; i < 50; ++i) {
            FilterDesign design;
            design.BandWidth = relativeWidth * design.F0;
            design.NumElements = 1;
            design.Elements[1].V1 = draw();
            design.Elements[1].V2 = draw();
            for (int arm : {0, 1}) {
                design.Elements[1].Type = arm == 0 ? ElementType::SeriesLC : ElementType::ShuntLC;
                CompareTrapForms(design, ScaleBandPass, arm);
                CompareTrapForms(design, ScaleNotch, arm);
            }
        }
    }
}

}  // namespace
}  // namespace ladderwise
