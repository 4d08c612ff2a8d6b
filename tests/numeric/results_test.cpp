// The figures of a finished design against closed forms of ideal ladders.
#include "analysis/Results.h"

#include <gtest/gtest.h>

#include "analysis/PartValues.h"
#include "analysis/Resonances.h"
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
        ASSERT_TRUE(results.Peak);
        EXPECT_NEAR(results.Peak->Loss, 0.0, 1e-9);
        EXPECT_NEAR(results.Edges.Lower.value_or(0.0), lower, 1e-10 * lower);
        EXPECT_NEAR(results.Edges.Upper.value_or(0.0), upper, 1e-10 * upper);
        EXPECT_EQ(results.ShapeFactor.has_value(), pass == PassType::BandPassCanonical);
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

/// A band-pass by the inputs of its boxes: of every kind, detuned, lossy and snapped.
struct BandPass {
    PassType Pass;
    ResponseType Response;
    int Poles;
    double F0, Width;  ///< MHz, %
    PartChoice Parts;
    double Q;
    bool Std;
    TankType Tank = TankType::ShuntLC;
    InverterType Inverter = InverterType::SeriesInductor;
};

FilterDesign LadderOf(const BandPass& given) {
    FilterDesign design;
    design.PassType = given.Pass;
    design.ResponseType = given.Response;
    design.NumPoles = given.Poles;
    design.F0 = 1e6 * given.F0;
    design.BandWidth = 0.01 * given.Width * design.F0;
    design.PartModel.Choice = given.Parts;
    design.PartModel.IndQ = given.Q;
    design.DirectCoupled.TankType = given.Tank;
    design.DirectCoupled.InverterType = given.Inverter;
    design.DirectCoupled.TankUnits = TankUnits::TankZ;
    BuildLadder(design, {});
    if (given.Parts == PartChoice::DeEmbed) DeEmbedParts(design);
    if (given.Std) SnapToStdValue(design);
    return design;
}

/// The level between F0 / 10 and 10 F0 at points so close to each other that nothing is missed, by
/// the reference form alone.
struct DenseScan {
    static constexpr int Points = 20000;
    const FilterDesign& Design;
    std::vector<double> F, Level;

    explicit DenseScan(const FilterDesign& design) : Design(design) {
        for (int i = 0; i < Points; ++i) {
            F.push_back(design.F0 * std::pow(100.0, double(i) / (Points - 1) - 0.5));
            Level.push_back(At(F.back()));
        }
    }
    double At(double f) const { return ComplexToDb(AnalysePoint(Design, Design.F0, f).Transfer); }

    /// Where the maximum about point i is: its two neighbours drawn together.
    double TopAbout(int i) const {
        double low = F[i - 1], high = F[i + 1];
        while (high - low > 1e-9 * low) {
            const double a = low + (high - low) / 3.0, b = high - (high - low) / 3.0;
            (At(a) > At(b) ? high : low) = At(a) > At(b) ? b : a;
        }
        return 0.5 * (low + high);
    }
    /// The crossing of `target` next to `from`, by halving; 0: none.
    double Edge(double from, int direction, double target) const {
        int i = static_cast<int>(std::lower_bound(F.begin(), F.end(), from) - F.begin());
        double above = from;
        for (i -= direction < 0; i >= 0 && i < Points && Level[i] >= target; i += direction)
            above = F[i];
        if (i < 0 || i >= Points) return 0.0;
        double below = F[i];
        for (int half = 0; half < 60; ++half)
            (At(0.5 * (above + below)) >= target ? above : below) = 0.5 * (above + below);
        return above;
    }
};

TEST(Results, FiguresOfDetunedBandPassesAreThoseOfADenseScan) {
    constexpr auto real = PartChoice::RealParts, adjusted = PartChoice::DeEmbed;
    constexpr auto canonical = PassType::BandPassCanonical, coupled = PassType::DirectCoupled;
    constexpr auto butterworth = ResponseType::Butterworth, chebyshev = ResponseType::Chebyshev;
    const BandPass cases[] = {
        {canonical, butterworth, 3, 200, 5, real, 30, false},
        {PassType::Norton, butterworth, 3, 400, 5, real, 100, false},
        {canonical, chebyshev, 7, 240, 12, real, 800, false},
        {canonical, ResponseType::Gauss, 7, 390, 3.3, real, 590, true},
        {canonical, ResponseType::EllipticC, 3, 350, 14, real, 660, true},
        {canonical, ResponseType::EllipticB, 4, 73, 2.2, adjusted, 720, true},
        {PassType::Norton, butterworth, 3, 170, 24, adjusted, 60, true},
        {coupled, butterworth, 6, 37, 5, real, 650, true, TankType::ShuntCSeriesLC},
        {coupled, chebyshev, 5, 470, 5.6, real, 20, false, TankType::ShortedLine},
        {coupled, butterworth, 5, 90, 24, real, 620, false, TankType::ShortedLine,
         InverterType::SeriesLine},
        {coupled, chebyshev, 7, 300, 3.9, real, 155, false, TankType::OpenAndShortedLines,
         InverterType::SeriesCapacitor},
        {coupled, chebyshev, 3, 990, 25, adjusted, 90, false, TankType::SeriesLC},
    };
    for (const BandPass& given : cases) {
        SCOPED_TRACE(testing::Message() << "case " << &given - cases);
        const FilterDesign design = LadderOf(given);
        const ResponseResults results = ResultsOf(design);
        const DenseScan scan(design);
        const BandRange band = BandAboutF0(design);
        int highest = 0;
        for (int i = 1; i + 1 < DenseScan::Points; ++i)
            if (band.Holds(scan.F[i]) && scan.Level[i] > scan.Level[i - 1] &&
                scan.Level[i] >= scan.Level[i + 1] &&
                (highest == 0 || scan.Level[i] > scan.Level[highest]))
                highest = i;
        ASSERT_GT(highest, 0);
        ASSERT_TRUE(results.Peak);
        const double level = scan.At(scan.TopAbout(highest)), peak = results.Peak->Frequency;
        EXPECT_NEAR(-results.Peak->Loss, level, 1e-6);
        EXPECT_NEAR(scan.At(peak), level, 1e-6);
        const double edge = -results.Peak->Loss - HalfPowerDb;
        const double lower = scan.Edge(peak, -1, edge), upper = scan.Edge(peak, +1, edge);
        EXPECT_NEAR(results.Edges.Lower.value_or(0.0), lower, 1e-9 * lower);
        EXPECT_NEAR(results.Edges.Upper.value_or(0.0), upper, 1e-9 * upper);
        const double half = 0.5 * design.BandWidth;
        const double asked = std::sqrt((design.F0 - half) * (design.F0 + half));
        const bool moved = design.F0 < lower || design.F0 > upper ||
                           std::abs(std::sqrt(lower * upper) - asked) > 0.5 * half;
        EXPECT_EQ(results.BandOffset.has_value(), moved);
        // Outside the skirts of a shape factor there is nothing within 60 dB of the peak.
        if (!results.ShapeFactor) continue;
        double low = peak, high = peak;
        for (int i = 0; i < DenseScan::Points; ++i)
            if (scan.Level[i] > level - 60.0) low = std::min(low, scan.F[i]), high = scan.F[i];
        const double width = *results.ShapeFactor *
                             (scan.Edge(peak, +1, level - 6.0) - scan.Edge(peak, -1, level - 6.0));
        EXPECT_NEAR(width, high - low, 1e-3 * peak);
    }
}

TEST(Results, StopBandsCountOnlyWhereTheyHold) {
    for (const PassType pass : {PassType::LowPass, PassType::HighPass, PassType::BandPassCanonical})
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
            const FilterDesign design =
                LadderOf({pass, ResponseType::EllipticC, 3, 100, 30, parts, 30, false});
            const ResponseResults results = ResultsOf(design);
            ASSERT_EQ(results.StopBands.size(), pass == PassType::BandPassCanonical ? 2u : 1u);
            const DenseScan scan(design);
            for (const HeldBand& held : results.StopBands) {
                const double from = held.From.value_or(0.0), to = held.To.value_or(Infinity);
                for (int i = 0; i < DenseScan::Points; ++i)
                    if (scan.F[i] > from && scan.F[i] < to) {
                        EXPECT_LT(scan.Level[i], 1e-5 - design.Elliptic.AttenUsedDb) << scan.F[i];
                    }
                for (const auto& edge : {held.From, held.To})
                    if (edge) {
                        EXPECT_NEAR(-scan.At(*edge), design.Elliptic.AttenUsedDb, 1e-6);
                    }
            }
            if (parts == PartChoice::IdealParts && pass == PassType::LowPass) {
                EXPECT_NEAR(*results.StopBands[0].From, 1e8 * design.Elliptic.StopBandEdge, 1.0);
            }
        }
}

TEST(Results, FiguresDoNotEndWithTheSamples) {
    // The loss of coils goes with the root of the frequency, to nothing at 0 Hz.
    const ResponseResults low = ResultsOf(LadderOf({PassType::LowPass, ResponseType::Butterworth, 3,
                                                    100, 30, PartChoice::RealParts, 1, false}));
    ASSERT_TRUE(low.Peak);
    EXPECT_EQ(low.Peak->Frequency, 0.0);
    EXPECT_NEAR(low.Peak->Loss, 0.0, 1e-6);
    // The least loss of a high-pass lies 200 F0 above; that of parasitics far above it does not
    // count. The stop band of a lossy band-pass ends just below 10 F0.
    for (const double q : {24.0, 997.0}) {
        const FilterDesign design = LadderOf({PassType::HighPass, ResponseType::Chebyshev, 7, 1.7,
                                              30, PartChoice::RealParts, q, false});
        const ResponseResults high = ResultsOf(design);
        ASSERT_TRUE(high.Peak && high.Edges.Lower);
        EXPECT_NEAR(*high.Edges.Lower, design.F0, 0.2 * design.F0);
        for (double f = 2.0 * design.F0; f < 1e3 * design.F0; f *= 1.001) {
            const double level = ComplexToDb(AnalysePoint(design, design.F0, f).Transfer);
            if (level < -high.Peak->Loss - 6.0) break;
            ASSERT_LE(level, 1e-9 - high.Peak->Loss) << f;
        }
    }
    FilterDesign design;
    design.PassType = PassType::BandPassCanonical;
    design.ResponseType = ResponseType::EllipticE;
    design.NumPoles = 1;
    design.TrapType = 3;
    design.F0 = 537.843e6;
    design.BandWidth = 42.22351e6;
    design.RippleDb = 0.4773;
    design.EllipticAtten = 43.3;
    BuildLadder(design, {});
    design.PartModel = {162.2, 0.25e-12, 0.25, 0.5e-9, PartChoice::RealParts};
    const ResponseResults band = ResultsOf(design);
    ASSERT_EQ(band.StopBands.size(), 2u);
    ASSERT_TRUE(band.StopBands[1].To);
    EXPECT_NEAR(*band.StopBands[1].To, 5302.064e6, 0.1e6);
}

TEST(Results, ALobeBetweenTwoSamplesIsFound) {
    // 0.15 dB over the 60 dB line, 0.4 % wide, on a slope: losses leave little turn of the phase.
    FilterDesign design;
    design.PassType = PassType::BandPassCanonical;
    design.ResponseType = ResponseType::EllipticE;
    design.NumPoles = 5;
    design.TrapType = 2;
    design.F0 = 177.947e6;
    design.BandWidth = 0.121914 * design.F0;
    design.RippleDb = 0.284;
    design.EllipticAtten = 24.74;
    BuildLadder(design, {});
    design.PartModel.Choice = PartChoice::RealParts;
    design.PartModel.IndQ = 164.4;
    const ResponseResults results = ResultsOf(design);
    ASSERT_TRUE(results.Peak && results.ShapeFactor);
    const DenseScan scan(design);
    const double peak = results.Peak->Frequency, level = -results.Peak->Loss;
    const auto above = [&](double at) { return at > level - 60.0; };
    const auto first = std::find_if(scan.Level.begin(), scan.Level.end(), above);
    const auto last = std::find_if(scan.Level.rbegin(), scan.Level.rend(), above);
    const double low = scan.F[first - scan.Level.begin()];
    const double high = scan.F[scan.Level.rend() - last - 1];
    const double width = *results.ShapeFactor *
                         (scan.Edge(peak, +1, level - 6.0) - scan.Edge(peak, -1, level - 6.0));
    EXPECT_NEAR(width, high - low, 1e-3 * high);
}

TEST(Results, ALineOfAnyLengthIsJudged) {
    // Typed into the grid; every half wave of it up to 10 F0 once filled the memory.
    FilterDesign design = LadderOf({PassType::DirectCoupled, ResponseType::Butterworth, 3, 90, 24,
                                    PartChoice::RealParts, 620, false,
                                    TankType::OpenAndShortedLines, InverterType::SeriesLine});
    int lines = 0;
    for (const double degrees : {1e12, 1e47, 1e300}) {
        for (CircuitElement& element : design.Elements)
            for (int row = 0; row < 4; ++row)
                if (InfoOf(element.Type).Values[row] == ValueKind::LengthDegrees)
                    element.Value(row) = degrees, ++lines;
        EXPECT_LT(LineResonances(design, 10.0 * design.F0).size(), 1e4);
        ResultsOf(design);
    }
    EXPECT_GE(lines, 3 * 5);
}

TEST(Results, TrapsResonateWhereTheirArmsLetNothingPass) {
    for (int trap = 1; trap <= 4; ++trap)
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
            FilterDesign design;
            design.PassType = PassType::BandPassCanonical;
            design.ResponseType = ResponseType::EllipticC;
            design.TrapType = trap;
            BuildLadder(design, {});
            design.PartModel.Choice = parts;
            design.PartModel.IndQ = 1e8;
            design.PartModel.CapR = 0.0;
            const std::vector<double> traps = MeasuredTraps(design);
            ASSERT_EQ(traps.size(), 6u);
            for (const double f : traps)
                EXPECT_LT(ComplexToDb(AnalysePoint(design, design.F0, f * (1.0 + 1e-9)).Transfer),
                          -120.0)
                    << f;
        }
}

TEST(Results, TrapsAreFollowedHoweverFarTheyMove) {
    // Small parts and large ones beside the parasitics: coils in the line resonate among the traps.
    FilterDesign design = LadderOf({PassType::BandPassCanonical, ResponseType::EllipticE, 2, 170,
                                    2.3, PartChoice::IdealParts, 60, false});
    design.PartModel.Choice = PartChoice::RealParts;
    const PartModel full = design.PartModel;
    std::vector<double> before = TrapFrequencies(design);
    ASSERT_EQ(before.size(), 4u);
    constexpr int steps = 200;
    for (int k = 0; k <= steps; ++k) {
        design.PartModel.IndC = full.IndC * k / steps;
        design.PartModel.CapL = full.CapL * k / steps;
        const std::vector<double> traps = MeasuredTraps(design);
        for (std::size_t i = 0; i < 4; ++i)
            ASSERT_NEAR(traps[i], before[i], 0.01 * before[i]) << "trap " << i << ", step " << k;
        before = traps;
    }
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
