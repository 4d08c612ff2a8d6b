// The kernels against the reference form and against the C library: every element, every part
// model, any number of points, and the points that they leave to the reference form.
#include <gtest/gtest.h>

#include <algorithm>

#include "tests/numeric/analysis_support.h"

namespace ladderwise::testing {
namespace {

std::vector<KernelChoice> CompiledKernels() {
    std::vector<KernelChoice> kernels = AvailableKernels();
    kernels.erase(kernels.begin());
    return kernels;
}

/// Compares a kernel's sweep with the reference form, point by point.
void ExpectAgreement(const FilterDesign& design, const std::vector<double>& freqs, double tolerance,
                     const std::string& what) {
    const Sweep reference = Analyse(design, freqs, KernelChoice::Reference);
    for (const KernelChoice kernel : CompiledKernels()) {
        const Sweep sweep = Analyse(design, freqs, kernel);
        for (std::size_t i = 0; i < freqs.size(); ++i) {
            const double size = std::abs(reference.H(i));
            if (std::isnan(size) && std::isnan(sweep.Re[i])) continue;
            ASSERT_LE(std::abs(sweep.H(i) - reference.H(i)), tolerance * size)
                << what << " kernel " << int(kernel) << " point " << i;
            ASSERT_NEAR(sweep.Reflection(i), reference.Reflection(i), tolerance)
                << what << " kernel " << int(kernel) << " point " << i;
        }
    }
}

TEST(LadderKernel, EveryTypeAgreesWithTheReference) {
    std::mt19937 random(1);
    const std::vector<double> freqs = LogGrid(600);
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
            for (int repeat = 0; repeat < 4; ++repeat) {
                std::vector<CircuitElement> slots;
                for (int k = 0; k < 5; ++k)
                    slots.push_back(RandomSlot(ElementType(code), random));
                const double tolerance = parts == PartChoice::IdealParts ? 1e-8 : 1e-12;
                ExpectAgreement(MakeDesign(slots, parts), freqs, tolerance,
                                InfoOf(ElementType(code)).Name);
            }
        }
    }
}

TEST(LadderKernel, MixedLaddersOfAnyLengthAgree) {
    std::mt19937 random(2);
    std::uniform_int_distribution<int> code(0, NumElementTypes - 2), length(1, NumSlots - 1);
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

// A full list, the largest NumElements that the list can hold and one beyond it.
TEST(LadderKernel, ElementCountIsClampedToTheList) {
    std::mt19937 random(3);
    FilterDesign design = MakeDesign(
        std::vector<CircuitElement>(NumSlots - 1, RandomSlot(ElementType::ShuntCap, random)));
    const Sweep full = Analyse(design, LogGrid(10));
    design.NumElements = NumSlots + 5;
    EXPECT_EQ(Analyse(design, LogGrid(10)).Re, full.Re);
}

// Part values and lengths far from any filter: infinities and zeros take the guarded path.
TEST(LadderKernel, ExtremeValuesBehaveAsTheReference) {
    const double values[] = {0.0, 1e-30, 1e-12, 1e-3, 1e3, 1e50, 1e200, std::nan("")};
    const std::vector<double> freqs = {0.0, 1.0, TestF0, 1e12, 1e300, std::nan("")};
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        for (const double value : values) {
            for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
                const CircuitElement slot{ElementType(code), value, value, value, value};
                const FilterDesign design = MakeDesign({slot}, parts);
                const Sweep reference = Analyse(design, freqs, KernelChoice::Reference);
                for (const KernelChoice kernel : CompiledKernels()) {
                    const Sweep sweep = Analyse(design, freqs, kernel);
                    for (std::size_t i = 0; i < freqs.size(); ++i) {
                        ASSERT_EQ(std::isnan(sweep.Re[i]), std::isnan(reference.Re[i]))
                            << "type " << code << " value " << value << " point " << i;
                        if (std::isnan(reference.Re[i])) continue;
                        ASSERT_LE(std::abs(sweep.H(i) - reference.H(i)),
                                  1e-8 * std::abs(reference.H(i)))
                            << "type " << code << " value " << value << " point " << i;
                    }
                }
            }
        }
    }
}

// F0 = 1 / 2 pi makes w exactly 1, where 1 H and 1 F resonate without remainder. Arms that divide
// by such a resonance have no value there, wherever the division stands; a shunt tank is no load.
TEST(LadderKernel, ExactResonances) {
    const double f = OneOverTwoPi;
    ASSERT_EQ(TwoPi * f, 1.0);
    const std::vector<double> freqs = {0.5 * f, f, 2.0 * f};
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        FilterDesign design = MakeDesign({{ElementType(code), 1.0, 1.0, 1.0, 1.0}});
        design.F0 = f;
        design.RSource = design.RLoad = 1.0;
        const Sweep reference = Analyse(design, freqs, KernelChoice::Reference);
        for (const KernelChoice kernel : CompiledKernels()) {
            const Sweep sweep = Analyse(design, freqs, kernel);
            for (std::size_t i = 0; i < freqs.size(); ++i) {
                ASSERT_EQ(std::isnan(sweep.Re[i]), std::isnan(reference.Re[i]))
                    << "type " << code << " point " << i;
            }
        }
        switch (ElementType(code)) {
            case ElementType::SeriesLC:
            case ElementType::ShuntLC:
            case ElementType::ShuntSerParLC:
            case ElementType::SerSerParLC:
                EXPECT_TRUE(std::isnan(reference.Re[1])) << code;
                break;
            case ElementType::ShuntParLC:
            case ElementType::SeriesSerLC:
                EXPECT_EQ(reference.H(1), Complex(1.0, 0.0));
                EXPECT_EQ(Analyse(design, freqs).ReflectionDb[1], ZeroPowerDb);
                break;
            default:
                break;
        }
    }
}

// Close to a resonance the kernel hands over to the reference form before its digits run out.
TEST(LadderKernel, NeighbourhoodOfAResonance) {
    std::vector<double> freqs;
    const double resonance = 1.0 / (TwoPi * std::sqrt(TestL * TestC));
    for (int decade = -16; decade <= -1; ++decade) {
        freqs.push_back(resonance * (1.0 + std::pow(10.0, decade)));
        freqs.push_back(resonance * (1.0 - std::pow(10.0, decade)));
    }
    for (const ElementType type :
         {ElementType::SeriesLC, ElementType::ShuntLC, ElementType::ShuntSerParLC,
          ElementType::SerSerParLC, ElementType::SeriesElliptic2, ElementType::ShuntElliptic3}) {
        const FilterDesign design = MakeDesign({{type, TestL, TestC, TestL, TestC}});
        ExpectAgreement(design, freqs, 1e-8, InfoOf(type).Name);
    }
}

TEST(LadderKernel, ReflectionIsOptional) {
    std::mt19937 random(4);
    const FilterDesign design = MakeDesign({RandomSlot(ElementType::ShuntParLC, random)});
    const std::vector<double> freqs = LogGrid(300);
    const Sweep full = Analyse(design, freqs);
    SweepTables tables;
    BuildSweepTables(tables, freqs, design.F0);
    std::vector<double> re(freqs.size()), im(freqs.size());
    AnalyseLadder(design, tables, {}, re, im, {});
    EXPECT_EQ(re, full.Re);
    EXPECT_EQ(im, full.Im);
}

// Lines of many turns: the kernel's own sine and cosine against the library's.
TEST(LadderKernel, LongLines) {
    for (const double degrees : {1e-4, 1.0, 89.999999, 90.0, 180.0, 12345.6, -720.5, 3e7, 1e12}) {
        for (const ElementType type :
             {ElementType::SeriesTLIN, ElementType::ShuntTLOC, ElementType::ShuntTLSC}) {
            const FilterDesign design = MakeDesign({{type, degrees, 33.0}});
            ExpectAgreement(design, LogGrid(400), 1e-12, std::to_string(degrees) + " degrees");
        }
    }
}

/// Largest error of a kernel's levels and angles in units of 1e-16 of the value.
struct Errors {
    double Level = 0.0, Angle = 0.0;
};

Errors ErrorsOf(KernelChoice kernel, const std::vector<double>& re, const std::vector<double>& im) {
    std::vector<double> db(re.size()), angle(re.size());
    EXPECT_FALSE(ReadyKernel(kernel).LevelsAndAngles(re.data(), im.data(), int(re.size()),
                                                     db.data(), angle.data()));
    Errors worst;
    for (std::size_t i = 0; i < re.size(); ++i) {
        const long double a = std::atan2((long double)im[i], (long double)re[i]);
        if (im[i] == 0.0) {  // the power is then one rounded square, the same in any order
            const long double level = 10.0L * std::log10((long double)(re[i] * re[i]));
            const double error = double(std::fabs(db[i] - level));
            worst.Level =
                std::max(worst.Level, level == 0 ? error * 1e99 : error / double(std::fabs(level)));
        }
        const double error = double(std::fabs(angle[i] - a));
        worst.Angle = std::max(worst.Angle, a == 0 ? error * 1e99 : error / double(std::fabs(a)));
    }
    return {worst.Level * 1e16, worst.Angle * 1e16};
}

TEST(LadderKernel, LevelsAreExactToAFewUlp) {
    std::vector<double> re;
    for (double x = 1e-149; x < 1e9; x *= 1.0137)
        re.push_back(x);
    for (int k = 1; k <= 51; ++k) {  // near 0 dB the relative error must hold as well
        re.push_back(1.0 + std::ldexp(1.0, -k));
        re.push_back(1.0 - std::ldexp(1.0, -k));
    }
    re.push_back(1.0);
    const std::vector<double> im(re.size(), 0.0);
    for (const KernelChoice kernel : CompiledKernels())
        EXPECT_LT(ErrorsOf(kernel, re, im).Level, 8.0);
}

TEST(LadderKernel, AnglesAreExactToAFewUlp) {
    std::mt19937 random(6);
    std::uniform_real_distribution<double> exponent(-12.0, 9.0);
    std::vector<double> re, im;
    for (int i = 0; i < 20000; ++i) {
        re.push_back(std::pow(10.0, exponent(random)) * (random() % 2 ? 1.0 : -1.0));
        im.push_back(std::pow(10.0, exponent(random)) * (random() % 2 ? 1.0 : -1.0));
    }
    for (int i = 0; i <= 2000; ++i) {  // all the way round
        re.push_back(std::cos(i * 0.0031415926));
        im.push_back(std::sin(i * 0.0031415926));
    }
    for (const double x : {-1.0, -0.0, 0.0, 1.0}) {
        for (const double y : {-1.0, -0.0, 0.0, 1.0}) {
            if (x == 0.0 && y == 0.0) continue;
            re.push_back(x);
            im.push_back(y);
        }
    }
    for (const KernelChoice kernel : CompiledKernels())
        EXPECT_LT(ErrorsOf(kernel, re, im).Angle, 5.0);
}

}  // namespace
}  // namespace ladderwise::testing
