// The ladder analysis: the kernels against the reference form, at any number of points and at every
// point left to the reference form; closed forms, power and guards. Then magnitude, phase, group
// delay, full scale and extremes: blanks, wraps, and the fast derivation against plain functions.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "analysis/Magphasefunctions.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

std::vector<KernelChoice> CompiledKernels() {
    std::vector<KernelChoice> kernels = AvailableKernels();
    kernels.erase(kernels.begin());
    return kernels;
}

/// Compares the kernels' sweeps with the reference form; NaN where it has NaN.
Swept ExpectAgreement(const FilterDesign& design, const std::vector<double>& freqs,
                      double tolerance, const std::string& what) {
    const Swept reference = Analyse(design, freqs, KernelChoice::Reference);
    for (const KernelChoice kernel : CompiledKernels()) {
        const Swept sweep = Analyse(design, freqs, kernel);
        for (std::size_t i = 0; i < freqs.size(); ++i) {
            SCOPED_TRACE(what + " kernel " + std::to_string(int(kernel)) + " point " +
                         std::to_string(i));
            EXPECT_EQ(std::isnan(sweep.Re[i]), std::isnan(reference.Re[i]));
            if (std::isnan(reference.Re[i])) continue;
            EXPECT_LE(std::abs(sweep.H(i) - reference.H(i)), tolerance * std::abs(reference.H(i)));
            EXPECT_NEAR(sweep.Reflection(i), reference.Reflection(i), tolerance);
        }
        if (testing::Test::HasFailure()) break;
    }
    return reference;
}

TEST(LadderKernel, LaddersOfEveryTypeAndLengthAgree) {
    std::mt19937 random(1);
    std::uniform_int_distribution<int> code(0, NumElementTypes - 2), length(1, NumSlots - 1);
    for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts})
        for (int type = 0; type < NumElementTypes - 1; ++type) {
            std::vector<CircuitElement> slots;
            for (int k = 0; k < 5; ++k)
                slots.push_back(RandomSlot(ElementType(type), random));
            const double tolerance = parts == PartChoice::IdealParts ? 1e-8 : 1e-12;
            ExpectAgreement(MakeDesign(slots, parts), LogGrid(600), tolerance,
                            InfoOf(ElementType(type)).Name);
        }
    for (const std::size_t count : {1u, 7u, 256u, 257u, 1024u, 2049u}) {
        std::vector<CircuitElement> slots(length(random));
        for (CircuitElement& slot : slots)
            slot = RandomSlot(ElementType(code(random)), random);
        FilterDesign design = MakeDesign(slots, PartChoice::RealParts);
        design.RSource = 10.0;
        design.RLoad = 300.0;
        ExpectAgreement(design, LogGrid(count), 1e-11, std::to_string(count) + " points");
    }
}

// Part values, lengths and coils far from any filter: infinities and zeros take the guarded path.
TEST(LadderKernel, ExtremeValuesAndFrequenciesAgree) {
    const std::vector<double> freqs = {0.0, 1.0, TestF0, 1e12, 1e300, NaN};
    for (int type = 0; type < NumElementTypes - 1; ++type)
        for (const double x : {0.0, 1e-30, 1e-12, 1e-3, 1e3, 1e50, 1e200, NaN})
            for (const double q : {0.0, 35.0, 1e12}) {
                const PartChoice parts = q == 0.0 ? PartChoice::IdealParts : PartChoice::RealParts;
                FilterDesign design = MakeDesign({{ElementType(type), x, x, x, x}}, parts);
                design.PartModel.IndQ = q;
                ExpectAgreement(design, freqs, 1e-8, std::to_string(type) + std::to_string(x));
            }
}

// Lines of many turns, and close to a resonance, where the kernel hands over in time.
TEST(LadderKernel, LongLinesAndNearResonancesAgree) {
    using enum ElementType;
    for (const double degrees :
         {0.0, 1e-4, 1.0, 89.999999, 90.0, 180.0, 12345.6, -720.5, 3e7, 1e12})
        for (const ElementType type : {SeriesTLIN, ShuntTLOC, ShuntTLSC, ShuntLTLOC})
            ExpectAgreement(MakeDesign({{type, degrees, 33.0, degrees, 20.0}}), LogGrid(400), 1e-12,
                            std::to_string(degrees) + " degrees");
    std::vector<double> freqs;
    for (int decade = -16; decade <= -1; ++decade)
        for (const int sign : {-1, 1})
            freqs.push_back((1.0 + sign * std::pow(10.0, decade)) /
                            (TwoPi * std::sqrt(TestL * TestC)));
    for (const ElementType type :
         {SeriesLC, ShuntLC, ShuntSerParLC, SerSerParLC, SeriesElliptic2, ShuntElliptic3})
        ExpectAgreement(MakeDesign({{type, TestL, TestC, TestL, TestC}}), freqs, 1e-8,
                        InfoOf(type).Name);
}

// F0 = 1 / 2 pi makes w exactly 1, where 1 H and 1 F resonate without remainder. Arms that divide
// by such a resonance have no value there, wherever the division stands; a shunt tank is no load.
TEST(LadderKernel, ExactResonances) {
    using enum ElementType;
    const std::vector<double> freqs = {0.5 * OneOverTwoPi, OneOverTwoPi, 2.0 * OneOverTwoPi};
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        FilterDesign design = MakeDesign({{ElementType(code), 1.0, 1.0, 1.0, 1.0}});
        design.F0 = OneOverTwoPi;
        design.RSource = design.RLoad = 1.0;
        const Swept swept = ExpectAgreement(design, freqs, 1e-8, InfoOf(ElementType(code)).Name);
        const auto is = [code](ElementType type) { return ElementType(code) == type; };
        if (is(SeriesLC) || is(ShuntLC) || is(ShuntSerParLC) || is(SerSerParLC)) {
            EXPECT_TRUE(std::isnan(swept.Re[1])) << code;
        } else if (is(ShuntParLC) || is(SeriesSerLC)) {
            EXPECT_EQ(swept.H(1), Complex(1.0, 0.0));
            EXPECT_EQ(Analyse(design, freqs).ReflectionDb[1], ZeroPowerDb);
        }
    }
}

TEST(LadderAnalysis, IdealLaddersConservePower) {
    std::mt19937 random(20240501);
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        std::vector<CircuitElement> slots;
        for (int k = 0; k < 3; ++k)
            for (const ElementType type : {ElementType(code), ElementType::SeriesTLIN})
                slots.push_back(RandomSlot(type, random));
        const Swept sweep = Analyse(MakeDesign(slots), LogGrid(200), KernelChoice::Reference);
        for (std::size_t i = 0; i < sweep.Re.size(); ++i)
            ASSERT_NEAR(std::norm(sweep.H(i)) + std::pow(sweep.Reflection(i), 2.0), 1.0, 1e-9)
                << "type " << code << " point " << i;
    }
}

TEST(LadderAnalysis, SmallLaddersInClosedForm) {
    for (const KernelChoice kernel : AvailableKernels()) {
        FilterDesign design = MakeDesign({});
        Swept sweep = Analyse(design, {TestF0, 0.0}, kernel);
        EXPECT_EQ(sweep.H(0), Complex(1.0, 0.0));
        EXPECT_EQ(sweep.ReflectionDb, std::vector<double>(2, ZeroPowerDb));
        design.RLoad = 100.0;
        sweep = Analyse(design, {TestF0}, kernel);
        EXPECT_DOUBLE_EQ(sweep.Re[0], 2.0 * std::sqrt(50.0 * 100.0) / 150.0);
        EXPECT_NEAR(sweep.Reflection(0), 50.0 / 150.0, 1e-15);
        // A quarter-wave line between unequal terminations.
        design = MakeDesign({{ElementType::SeriesTLIN, 90.0, std::sqrt(50.0 * 20.0)}});
        design.RLoad = 20.0;
        EXPECT_LT(std::abs(Analyse(design, {TestF0}, kernel).H(0) - Complex(0.0, -1.0)), 1e-14);
        // A full list and a count beyond it; 31 coils in a row are one of 31 times the inductance.
        design = MakeDesign(std::vector<CircuitElement>(31, {ElementType::SeriesInd, TestL / 31}));
        for (design.NumElements = 31; design.NumElements <= 33; ++design.NumElements)
            EXPECT_NEAR(std::norm(Analyse(design, {TestF0}, kernel).H(0)), 0.8, 1e-12);
        for (const double value : {0.0, -1.0, NaN}) {  // raised to the smallest part
            sweep = Analyse(MakeDesign({{ElementType::SeriesInd, value}}), {TestF0}, kernel);
            EXPECT_EQ(sweep.Re[0], 1.0);
            EXPECT_DOUBLE_EQ(sweep.Im[0], -TwoPi * TestF0 * SmallestPartValue / 100.0);
        }
    }
}

TEST(LadderAnalysis, UnknownCodeIsReportedOnceAndChangesNothing) {
    for (const int code : {26, 27, -1, 1 << 30}) {
        Recorder recorder;
        const Swept sweep =
            Analyse(MakeDesign({{ElementType::SeriesInd, TestL}, {ElementType(code), TestL}}),
                    LogGrid(20), KernelChoice::Automatic, recorder.Report());
        EXPECT_EQ(recorder.Messages,
                  std::vector<std::string>{"Error :  Default case in Circuit Analysis"});
        EXPECT_EQ(sweep.Re, std::vector<double>(20, 7.0));
        EXPECT_EQ(sweep.ReflectionDb, std::vector<double>(20, 7.0));
    }
}

TEST(LadderAnalysis, GuardedDivisionAndLevels) {
    EXPECT_EQ(GuardedDivide({1e300, 1e300}, {1e300, 1e300}), Complex(1.0, 0.0));
    EXPECT_EQ(GuardedDivide({5.0, 10.0}, {1.0, 2.0}), Complex(5.0, 0.0));
    EXPECT_EQ(GuardedDivide({-4.0, 2.0}, {0.0, 2.0}), Complex(1.0, 2.0));
    for (const Complex q : {GuardedDivide({1.0, 0.0}, {0.0, -0.0}),
                            GuardedDivide({NaN, 0.0}, {1.0, 0.0}), GuardedDivide(1.0, {1.0, NaN})})
        EXPECT_TRUE(std::isnan(q.real()) && std::isnan(q.imag()));
    EXPECT_EQ(ComplexToDb({1e-200, 0.0}), ZeroPowerDb);
    EXPECT_DOUBLE_EQ(ComplexToDb({-1e99, 0.0}), 200.0);
    EXPECT_DOUBLE_EQ(ComplexToDb({0.0, 1e99}), 200.0);
    EXPECT_TRUE(std::isnan(ComplexToDb({NaN, 1.0})));
}

using std::numbers::pi;

/// Polar transfers at 1 Hz steps from 1 Hz, with their phases (degrees) and delays (s).
struct Transfer {
    std::vector<double> Re{}, Im{}, Freqs{}, Phase{}, Delay{};

    void Add(double magnitude, double phase) {
        Re.push_back(magnitude * std::cos(phase));
        Im.push_back(magnitude * std::sin(phase));
        Freqs.push_back(1.0 + double(Freqs.size()));
    }
    void Derive(double threshold) {
        Phase.assign(Re.size(), 7.0);
        Delay = Phase;
        PhaseArray(Re, Im, Phase, threshold);
        GroupDelayArray(Re, Im, Delay, Freqs, threshold);
    }
};

/// The delays of magnitude 1 and the given phases (rad).
std::vector<double> DelaysOf(const std::vector<double>& phases) {
    Transfer t;
    for (const double phase : phases)
        t.Add(1.0, phase);
    t.Derive(-1e9);
    return t.Delay;
}

TEST(ResponseQuantities, LevelsAndPhasesOfSinglePoints) {
    EXPECT_EQ(PhaseDeg({0.0, 0.0}), 0.0);
    EXPECT_EQ(PhaseRad({-0.0, -0.0}), 0.0);
    const std::vector<double> re = {0.0, 1.0, 0.0, NaN}, im = {0.0, 0.0, 10.0, 0.0};
    std::vector<double> out(4);
    MagnitudeArray(re, im, out, MagnitudeMode::Decibels);
    EXPECT_TRUE(std::isnan(out[3]));
    out.pop_back();
    EXPECT_EQ(out, (std::vector<double>{ZeroPowerDb, 0.0, 20.0}));
    MagnitudeArray(re, im, out, MagnitudeMode::Linear);
    EXPECT_EQ(out, (std::vector<double>{-9.0, 0.0, 81.0}));
}

// The principal value turns a fall across -pi into a rise of nearly 2 pi, which comes back in steps
// of pi / 4: exactly for falls below pi / 4, to the next step below zero for others.
TEST(ResponseQuantities, PhaseSteps) {
    // clang-format off
    const struct { double From, Step, Expected; } cases[] = {  // rad; NaN: blank
        {0.3, 0.0, 0.0}, {0.0, -0.5, -0.5}, {1.5, -3.0, -3.0}, {0.0, 0.01, NaN},
        {-0.5, 0.78, NaN}, {3.1, -3.2, NaN}, {-3.0, TwoPi - 0.3, -0.3},
        {-2.5, TwoPi - 1.0, TwoPi - 1.0 - 7.0 * pi / 4.0}, {0.0, 0.8, 0.8 - 2.0 * pi / 4.0}};
    // clang-format on
    for (const auto& c : cases) {
        const std::vector<double> delay = DelaysOf({c.From, c.From + c.Step});
        const double wanted = std::isnan(c.Expected) ? BlankMarker : -c.Expected / TwoPi;
        EXPECT_NEAR(delay[1], wanted, wanted == BlankMarker ? 0.0 : 1e-15) << c.Step;
        EXPECT_EQ(delay[0], delay[1]);
    }
    EXPECT_EQ(DelaysOf({0.3, 0.3, 0.3}), std::vector<double>(3, 0.0));
    EXPECT_EQ(DelaysOf({0.5}), std::vector<double>{BlankMarker});
    EXPECT_TRUE(DelaysOf({}).empty());
    // H = exp(-j 2 pi f tau): the phase falls by 0.1 of a turn per step and wraps often.
    std::vector<double> phases;
    for (int i = 0; i < 700; ++i)
        phases.push_back(-TwoPi * 0.1 * i);
    for (const double delay : DelaysOf(phases))
        ASSERT_NEAR(delay, 0.1, 1e-12);
}

TEST(ResponseQuantities, BlanksBelowTheThresholdAndGapsAtNaN) {
    Transfer t;
    for (int i = 0; i < 300; ++i)
        t.Add(i % 3 == 0 ? 0.09 : 0.11, -0.01 * i);
    t.Derive(-20.0);
    for (std::size_t i = 1; i < t.Re.size(); ++i) {
        ASSERT_EQ(t.Phase[i] == BlankMarker, i % 3 == 0) << i;
        ASSERT_EQ(t.Delay[i] == BlankMarker, i % 3 == 0) << i;
    }
    t.Re[100] = t.Im[100] = NaN;
    t.Derive(-60.0);
    for (std::size_t i = 0; i < t.Re.size(); ++i) {
        EXPECT_EQ(std::isnan(t.Phase[i]), i == 100) << i;
        EXPECT_EQ(std::isnan(t.Delay[i]), i == 100 || i == 101) << i;
    }
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
    const Swept sweep = Analyse(MakeDesign(slots), freqs);
    SweepResponse response;
    auto &re = response.TransferRe, &im = response.TransferIm;
    std::copy(sweep.Re.begin(), sweep.Re.end(), re.begin());
    std::copy(sweep.Im.begin(), sweep.Im.end(), im.begin());
    std::size_t at = 100;
    for (const Complex odd :
         {Complex(NaN, NaN), {0, 0}, {1e-200, 0}, {3e11, 1}, {-0.0, -0.0}, {NaN, 0.2}}) {
        re[at] = odd.real();
        im[at] = odd.imag();
        at += 3;
    }
    std::vector<double> level(NumSweepPoints), phase(level), delay(level);
    MagnitudeArray(re, im, level, MagnitudeMode::Decibels);
    PhaseArray(re, im, phase, -30.0);
    GroupDelayArray(re, im, delay, freqs, -30.0);
    for (const KernelChoice kernel : AvailableKernels())
        for (const NeededQuantities needed :
             {NeededQuantities{}, {false, false, true}, {true, false, false}}) {
            const auto out = std::make_unique<DisplayQuantities>();
            out->PhaseDeg.fill(7.0);
            out->GroupDelay.fill(7.0);
            DeriveDisplayQuantities(response, freqs, -30.0, needed, *out, kernel);
            for (std::size_t i = 0; i < NumSweepPoints; ++i) {
                ExpectSame(out->MagnitudeDb[i], level[i], 1e-12, "level", i);
                ExpectSame(out->PhaseDeg[i], needed.Phase ? phase[i] : 7.0, 1e-12, "phase", i);
                ExpectSame(out->GroupDelay[i], needed.GroupDelay ? delay[i] : 7.0, 1e-17, "delay",
                           i);
            }
            EXPECT_DOUBLE_EQ(out->GDFullScale,
                             needed.GroupDelay ? GroupDelayFullScale(re, im, delay) : 0.0);
        }
}

TEST(ResponseQuantities, ExtremesOfManyRuns) {
    const std::size_t n = 37;
    std::vector<double> low(n), high(n), re(n), im(n);
    for (const KernelChoice kernel : AvailableKernels()) {
        ResetExtremes(low, high);
        for (const double magnitude : {0.5, NaN, 0.1, 1.0, 0.25}) {
            re.assign(n, 0.6 * magnitude);
            im.assign(n, -0.8 * magnitude);
            re[9] = NaN;
            re[10] = im[10] = 0.0;
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

}  // namespace
}  // namespace ladderwise
