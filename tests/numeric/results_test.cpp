// The figures of a finished design against closed forms of ideal ladders.
#include "analysis/Results.h"

#include <gtest/gtest.h>

#include "design/Designators.h"
#include "pipeline/Calculation.h"
#include "pipeline/ResultsText.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

FilterDesign Ladder(PassType pass, ResponseType response, int poles) {
    FilterDesign design;
    design.PassType = pass;
    design.ResponseType = response;
    design.NumPoles = poles;
    design.RippleDb = 0.1;
    design.SweepType = SweepType::TwoDecades;
    BuildLadder(design, {});
    return design;
}

/// Loss of a Butterworth of `poles` at x times its corner, dB.
double ButterworthLoss(double x, int poles) {
    return 10.0 * std::log10(1.0 + std::pow(x, 2 * poles));
}

TEST(Results, ButterworthOfEveryPassTypeMeetsItsClosedForm) {
    constexpr double f0 = 200e6, bw = 40e6;
    const double fc = std::sqrt(180e6 * 220e6);
    const auto mapped = [](double f, double centre) {
        return std::abs(f / centre - centre / f) * centre / bw;
    };
    const double notchUp = f0 * (std::sqrt(1.01) + 0.1), notchLow = f0 * f0 / notchUp;
    for (const auto& [pass, lower, upper] : {std::tuple{PassType::LowPass, 0.0, f0},
                                             {PassType::HighPass, f0, 0.0},
                                             {PassType::BandPassCanonical, 180e6, 220e6},
                                             {PassType::Notch, notchLow, notchUp}}) {
        const ResponseResults results = ResultsOf(Ladder(pass, ResponseType::Butterworth, 4));
        ASSERT_TRUE(results.Valid);
        EXPECT_NEAR(results.PeakLoss, 0.0, 1e-9);
        EXPECT_NEAR(results.Edges.Lower.value_or(0.0), lower, 1e-10 * lower);
        EXPECT_NEAR(results.Edges.Upper.value_or(0.0), upper, 1e-10 * upper);
        EXPECT_EQ(results.ShapeFactor.has_value(), lower > 0.0 && upper > 0.0);
        for (const AttenuationAt& at : results.Attenuations) {
            const double x = pass == PassType::LowPass    ? at.Frequency / f0
                             : pass == PassType::HighPass ? f0 / at.Frequency
                             : pass == PassType::Notch    ? 1.0 / mapped(at.Frequency, f0)
                                                          : mapped(at.Frequency, fc);
            EXPECT_NEAR(at.Attenuation, ButterworthLoss(x, 4), 1e-7) << at.Where;
        }
    }
    // Widths of a band-pass go as x: (10^6 - 1)^(1/8) over (10^0.6 - 1)^(1/8).
    EXPECT_NEAR(
        *ResultsOf(Ladder(PassType::BandPassCanonical, ResponseType::Butterworth, 4)).ShapeFactor,
        std::pow((1e6 - 1.0) / (std::pow(10.0, 0.6) - 1.0), 0.125), 1e-9);
}

TEST(Results, ReturnLossOfARippleFollowsFromIt) {
    const double rippleLimited = -10.0 * std::log10(1.0 - std::pow(10.0, -0.01));
    for (const PassType pass :
         {PassType::LowPass, PassType::HighPass, PassType::BandPassCanonical, PassType::Notch})
        for (const ResponseType response : {ResponseType::Chebyshev, ResponseType::EllipticC})
            EXPECT_NEAR(ResultsOf(Ladder(pass, response, 5)).WorstReturnLoss, rippleLimited, 1e-6);
    EXPECT_FALSE(ResultsOf(FilterDesign{}).Valid);
}

TEST(Results, DesignatorsRunFromTheSource) {
    FilterDesign design = MakeDesign({{ElementType::ShuntCap, 0, TestC, 0, 0},
                                      {ElementType::DualSeriesLC, TestL, TestC, TestL, TestC},
                                      {ElementType::ShuntTLSCC, 45, 50, 0, TestC}});
    const auto names = DesignatorsOf(design);
    EXPECT_EQ(names[1], (SlotDesignators{"", "C1", "", ""}));
    EXPECT_EQ(names[2], (SlotDesignators{"L2", "C3", "L4", "C5"}));
    EXPECT_EQ(names[3], (SlotDesignators{"TL6", "TL6", "", "C7"}));
    EXPECT_EQ(names[4], SlotDesignators{});
}

}  // namespace
}  // namespace ladderwise
