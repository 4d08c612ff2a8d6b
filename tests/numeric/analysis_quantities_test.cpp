// Magnitude, phase, group delay, full scale and extremes: closed forms, blanks and wraps, and the
// fast derivation against the plain functions.
#include "analysis/Magphasefunctions.h"

#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <utility>

#include "tests/numeric/analysis_support.h"

namespace ladderwise::testing {
namespace {

using std::numbers::pi;

constexpr double Everything = -1e9;  ///< a threshold below every level
const double nan = std::nan("");

/// A transfer in split arrays with its frequencies.
struct Transfer {
    std::vector<double> Re, Im, Freqs;

    void Add(Complex H, double f) {
        Re.push_back(H.real());
        Im.push_back(H.imag());
        Freqs.push_back(f);
    }
    std::size_t size() const { return Re.size(); }
    std::vector<double> Phase(double threshold = Everything) const {
        std::vector<double> out(size());
        PhaseArray(Re, Im, out, threshold);
        return out;
    }
    std::vector<double> Delay(double threshold = Everything) const {
        std::vector<double> out(size(), 7.0);
        GroupDelayArray(Re, Im, out, Freqs, threshold);
        return out;
    }
};

/// A transfer of given phases (rad) at 1 Hz steps from 1 Hz, magnitude 1.
Transfer OfPhases(const std::vector<double>& phases) {
    Transfer t;
    for (std::size_t i = 0; i < phases.size(); ++i)
        t.Add(std::polar(1.0, phases[i]), 1.0 + double(i));
    return t;
}

TEST(ResponseQuantities, PhaseAndMagnitudeOfOnePoint) {
    EXPECT_EQ(PhaseDeg({0.0, 0.0}), 0.0);
    EXPECT_EQ(PhaseRad({-0.0, -0.0}), 0.0);
    EXPECT_DOUBLE_EQ(PhaseDeg({0.0, 2.0}), 90.0);
    EXPECT_DOUBLE_EQ(PhaseDeg({-1.0, 0.0}), 180.0);
    EXPECT_DOUBLE_EQ(PhaseRad({-1.0, -1.0}), -0.75 * pi);
    EXPECT_DOUBLE_EQ(Magnitude({3.0, -4.0}), 5.0);
}

TEST(ResponseQuantities, MagnitudeModes) {
    const std::vector<double> re = {0.0, 1.0, 0.0, nan}, im = {0.0, 0.0, 10.0, 0.0};
    std::vector<double> out(4);
    MagnitudeArray(re, im, out, MagnitudeMode::Decibels);
    EXPECT_EQ(out[0], ZeroPowerDb);
    EXPECT_EQ(out[1], 0.0);
    EXPECT_DOUBLE_EQ(out[2], 20.0);
    EXPECT_TRUE(std::isnan(out[3]));
    MagnitudeArray(re, im, out, MagnitudeMode::Linear);
    EXPECT_EQ(out[0], -9.0);
    EXPECT_EQ(out[1], 0.0);
    EXPECT_EQ(out[2], 81.0);
}

// H = exp(-j 2 pi f tau), 1 Hz steps: the phase falls by 0.1 of a turn per step and wraps often.
TEST(ResponseQuantities, PureDelayIsExact) {
    std::vector<double> phases;
    for (int i = 0; i < 700; ++i)
        phases.push_back(-TwoPi * 0.1 * i);
    for (const double delay : OfPhases(phases).Delay())
        ASSERT_NEAR(delay, 0.1, 1e-12);
}

struct StepCase {
    double Step;  ///< rad from point 0, at phase `From`
    double From;
    double Expected;  ///< reduced step, rad; NaN: blank
};

// The principal value turns a fall across -pi into a rise of nearly 2 pi, which comes back in steps
// of pi / 4: exactly for falls below pi / 4, to the next step below zero for others.
TEST(ResponseQuantities, PhaseSteps) {
    const StepCase cases[] = {
        {0.0, 0.3, 0.0},
        {-0.5, 0.0, -0.5},
        {-3.0, 1.5, -3.0},
        {0.01, 0.0, nan},
        {0.78, -0.5, nan},
        {-3.2, 3.1, nan},
        {TwoPi - 0.3, -3.0, -0.3},
        {TwoPi - 1.0, -2.5, TwoPi - 1.0 - 7.0 * pi / 4.0},
        {0.8, 0.0, 0.8 - 2.0 * pi / 4.0},
    };
    for (const StepCase& c : cases) {
        const std::vector<double> delay = OfPhases({c.From, c.From + c.Step}).Delay();
        if (std::isnan(c.Expected))
            EXPECT_EQ(delay[1], BlankMarker) << c.Step;
        else
            EXPECT_NEAR(delay[1], -c.Expected / TwoPi, 1e-15) << c.Step;
        EXPECT_EQ(delay[0], delay[1]);
    }
    const std::vector<double> constant = OfPhases({0.3, 0.3, 0.3}).Delay();
    EXPECT_EQ(constant, std::vector<double>(3, 0.0));
}

TEST(ResponseQuantities, BlanksBelowTheThreshold) {
    Transfer t;
    for (int i = 0; i < 300; ++i)
        t.Add(std::polar(i % 3 == 0 ? 0.09 : 0.11, -0.01 * i), 1.0 + i);
    const std::vector<double> phase = t.Phase(-20.0), delay = t.Delay(-20.0);
    for (std::size_t i = 1; i < t.size(); ++i) {
        ASSERT_EQ(phase[i] == BlankMarker, i % 3 == 0) << i;
        ASSERT_EQ(delay[i] == BlankMarker, i % 3 == 0) << i;
    }
    EXPECT_EQ(t.Delay(0.0), std::vector<double>(t.size(), BlankMarker));
    EXPECT_EQ(t.Phase(0.0), std::vector<double>(t.size(), BlankMarker));
}

TEST(ResponseQuantities, NaNStaysNaNAndIsNoBlank) {
    Transfer t = OfPhases({0.0, -0.1, -0.2, -0.3, -0.4});
    t.Re[2] = t.Im[2] = nan;
    const std::vector<double> phase = t.Phase(0.0 - 3.0), delay = t.Delay(-3.0);
    for (std::size_t i = 0; i < 5; ++i) {
        EXPECT_EQ(std::isnan(phase[i]), i == 2) << i;
        EXPECT_EQ(std::isnan(delay[i]), i == 2 || i == 3) << i;
    }
}

TEST(ResponseQuantities, FullScale) {
    // Flat delay of 1 us: 10 * 1 us / 2.
    std::vector<double> re(40, 1.0), im(40, 0.0), delay(40, 1e-6);
    EXPECT_DOUBLE_EQ(GroupDelayFullScale(re, im, delay), 5e-6);
    // A peak 10 dB down counts with 10 / 8 of its height, once that is more.
    re[30] = std::pow(10.0, -0.5);
    delay[30] = 3.9e-6;
    EXPECT_DOUBLE_EQ(GroupDelayFullScale(re, im, delay), 5e-6);
    delay[30] = 8.16e-6;
    EXPECT_DOUBLE_EQ(GroupDelayFullScale(re, im, delay), 1e-5);
    // More than 20 dB down it does not count, nor does point 0.
    re[30] = 0.09;
    delay[0] = 1e-9;
    EXPECT_DOUBLE_EQ(GroupDelayFullScale(re, im, delay), 5e-6);
    // A blank within 3 dB of the peak takes part with its marker.
    delay[7] = BlankMarker;
    delay[30] = 0.0;
    delay[20] = 1.6e-6;
    EXPECT_DOUBLE_EQ(GroupDelayFullScale(re, im, delay), 2e-6);
}

// The delay of a Butterworth low-pass of order 3 at f << fc is (g1 + g2 + g3) / (2 wc) = 2 / wc.
TEST(ResponseQuantities, ButterworthDelay) {
    FilterDesign design = MakeDesign({{ElementType::ShuntCap, UnusedValue, TestC},
                                      {ElementType::SeriesInd, 2.0 * TestL},
                                      {ElementType::ShuntCap, UnusedValue, TestC}});
    const std::vector<double> freqs = {1e4, 2e4, 3e4};
    const Sweep sweep = Analyse(design, freqs);
    std::vector<double> delay(3);
    GroupDelayArray(sweep.Re, sweep.Im, delay, freqs, -20.0);
    EXPECT_NEAR(delay[1] * TwoPi * TestF0, 2.0, 1e-6);
}

void ExpectSame(double a, double b, double tolerance, const char* what, std::size_t i) {
    if (std::isnan(b) || b == BlankMarker || b == ZeroPowerDb)
        ASSERT_TRUE(a == b || (std::isnan(a) && std::isnan(b))) << what << " " << i;
    else
        ASSERT_NEAR(a, b, tolerance) << what << " " << i;
}

TEST(ResponseQuantities, DerivationAgreesWithThePlainFunctions) {
    std::mt19937 random(7);
    std::vector<CircuitElement> slots;
    for (int k = 0; k < 9; ++k)
        slots.push_back(RandomSlot(k % 2 ? ElementType::ShuntCap : ElementType::SeriesInd, random));
    const std::vector<double> freqs = LogGrid(NumSweepPoints);
    const Sweep sweep = Analyse(MakeDesign(slots), freqs);
    SweepResponse response;
    std::copy(sweep.Re.begin(), sweep.Re.end(), response.TransferRe.begin());
    std::copy(sweep.Im.begin(), sweep.Im.end(), response.TransferIm.begin());
    const std::pair<double, double> odd[] = {{nan, nan}, {0.0, 0.0},   {1e-200, 0.0},
                                             {3e11, 1},  {-0.0, -0.0}, {nan, 0.2}};
    for (std::size_t i = 0; i < std::size(odd); ++i) {
        response.TransferRe[100 + 3 * i] = odd[i].first;
        response.TransferIm[100 + 3 * i] = odd[i].second;
    }
    const auto& re = response.TransferRe;
    const auto& im = response.TransferIm;
    std::vector<double> level(NumSweepPoints), phase(level), delay(level);
    MagnitudeArray(re, im, level, MagnitudeMode::Decibels);
    PhaseArray(re, im, phase, -30.0);
    GroupDelayArray(re, im, delay, freqs, -30.0);
    const double fullScale = GroupDelayFullScale(re, im, delay);
    for (const KernelChoice kernel : AvailableKernels()) {
        const auto out = std::make_unique<DisplayQuantities>();
        DeriveDisplayQuantities(response, freqs, -30.0, {}, *out, kernel);
        for (std::size_t i = 0; i < NumSweepPoints; ++i) {
            ExpectSame(out->MagnitudeDb[i], level[i], 1e-12, "level", i);
            ExpectSame(out->PhaseDeg[i], phase[i], 1e-12, "phase", i);
            ExpectSame(out->GroupDelay[i] * TestF0, delay[i] * TestF0, 1e-9, "delay", i);
        }
        EXPECT_DOUBLE_EQ(out->GDFullScale, fullScale);
    }
}

TEST(ResponseQuantities, OnlyWhatIsNeededIsTouched) {
    SweepResponse response;
    response.TransferRe.fill(1.0);
    const auto out = std::make_unique<DisplayQuantities>();
    out->PhaseDeg.fill(7.0);
    out->GroupDelay.fill(7.0);
    out->MagnitudeDb.fill(7.0);
    DeriveDisplayQuantities(response, LogGrid(NumSweepPoints), -20.0, {true, false, false}, *out);
    EXPECT_EQ(out->MagnitudeDb[1023], 0.0);
    EXPECT_EQ(out->PhaseDeg[0], 7.0);
    EXPECT_EQ(out->GroupDelay[5], 7.0);
}

TEST(ResponseQuantities, ExtremesOfManyRuns) {
    const std::size_t n = 37;
    std::vector<double> low(n), high(n), re(n), im(n);
    for (const KernelChoice kernel : AvailableKernels()) {
        ResetExtremes(low, high);
        for (const double magnitude : {0.5, nan, 0.1, 1.0, 0.25}) {
            for (std::size_t i = 0; i < n; ++i) {
                re[i] = i == 9 ? nan : i == 10 ? 0.0 : 0.6 * magnitude;
                im[i] = i == 9 ? nan : i == 10 ? 0.0 : -0.8 * magnitude;
            }
            AccumulateExtremes(re, im, low, high, kernel);
        }
        ExtremesToDb(low, low);
        ExtremesToDb(high, high);
        EXPECT_NEAR(low[0], -20.0, 1e-12);
        EXPECT_NEAR(high[36], 0.0, 1e-12);
        EXPECT_TRUE(std::isnan(low[9]) && std::isnan(high[9]));
        EXPECT_EQ(high[10], ZeroPowerDb);
    }
}

TEST(ResponseQuantities, ShortArrays) {
    EXPECT_TRUE(OfPhases({}).Delay().empty());
    EXPECT_EQ(OfPhases({0.5}).Delay(), std::vector<double>{BlankMarker});
    const auto out = std::make_unique<DisplayQuantities>();
    DeriveDisplayQuantities({}, {}, -20.0, {}, *out);
}

}  // namespace
}  // namespace ladderwise::testing
