// The ladder analysis: the kernels against the reference form and the C library, at any number of
// points and at every point left to the reference form; closed forms, power and guards.
#include <gtest/gtest.h>

#include <algorithm>

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
        for (const ElementType type : {SeriesTLIN, ShuntTLOC, ShuntTLSC, ShuntTLSCTLOC})
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

// Of the level in dB where the power is one rounded square, and of the angle; in units of 1e-16.
TEST(LadderKernel, LevelsAndAnglesAreExactToAFewUlp) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> exponent(-12.0, 9.0);
    std::vector<double> re = {1.0, -1.0, 0.0, 0.0, -0.0, 1.0, -1.0},
                        im = {0.0, 0.0, 1.0, -1.0, 1.0, -0.0, -0.0};
    const auto add = [&](double x, double y) {
        re.push_back(x);
        im.push_back(y);
    };
    for (double x = 1e-149; x < 1e9; x *= 1.0137)
        add(x, 0.0);
    for (int k = 1; k <= 51; ++k)  // near 0 dB the relative error must hold as well
        for (const int sign : {-1, 1})
            add(1.0 + sign * std::ldexp(1.0, -k), 0.0);
    for (int i = 0; i < 20000; ++i)
        add(std::pow(10.0, exponent(random)) * (random() % 2 ? 1.0 : -1.0),
            std::pow(10.0, exponent(random)) * (random() % 2 ? 1.0 : -1.0));
    std::vector<double> db(re.size()), angle(re.size());
    const auto error = [](double got, long double wanted) {
        return double(std::fabs(got - wanted) / (wanted == 0 ? 1e-99L : std::fabs(wanted))) * 1e16;
    };
    for (const KernelChoice kernel : CompiledKernels()) {
        EXPECT_FALSE(ReadyKernel(kernel).LevelsAndAngles(re.data(), im.data(), int(re.size()),
                                                         db.data(), angle.data()));
        for (std::size_t i = 0; i < re.size(); ++i) {
            ASSERT_LT(error(angle[i], std::atan2((long double)im[i], (long double)re[i])), 5.0);
            if (im[i] != 0.0) continue;
            ASSERT_LT(error(db[i], 10.0L * std::log10((long double)(re[i] * re[i]))), 8.0);
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

TEST(LadderAnalysis, ReflectionIsOptional) {
    const FilterDesign design = MakeDesign({{ElementType::ShuntCap, UnusedValue, TestC}});
    const std::vector<double> freqs = LogGrid(300);
    const Swept full = Analyse(design, freqs);
    SweepTables tables;
    BuildSweepTables(tables, freqs, design.F0);
    std::vector<double> re(freqs.size()), im(freqs.size());
    AnalyseLadder(design, tables, {}, re, im, {});
    EXPECT_EQ(re, full.Re);
    EXPECT_EQ(im, full.Im);
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
    EXPECT_EQ(ComplexToDb(0.0), ZeroPowerDb);
    EXPECT_EQ(ComplexToDb({1e-200, 0.0}), ZeroPowerDb);
    EXPECT_DOUBLE_EQ(ComplexToDb({0.0, -10.0}), 20.0);
    EXPECT_DOUBLE_EQ(ComplexToDb({-1e99, 0.0}), 200.0);
    EXPECT_DOUBLE_EQ(ComplexToDb({0.0, 1e99}), 200.0);
    EXPECT_TRUE(std::isnan(ComplexToDb({NaN, 1.0})));
}

}  // namespace
}  // namespace ladderwise
