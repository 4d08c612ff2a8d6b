// The ladder analysis against closed forms: single arms, matched and lossless ladders, textbook
// filters, and its guards.
#include <gtest/gtest.h>

#include <functional>
#include <utility>

#include "tests/numeric/analysis_support.h"

namespace ladderwise::testing {
namespace {

using std::numbers::pi;

constexpr Complex J{0.0, 1.0};
constexpr double V1L = 1.3 * TestL, V2C = 0.7 * TestC, V3L = 0.45 * TestL, V4C = 1.9 * TestC;

/// Impedances of the four values as inductor or capacitor, in unguarded arithmetic.
struct Arm {
    Complex L1, C2, L3, C4;
    double F;

    Complex Tan(double deg) const { return J * std::tan(deg * pi / 180.0 * F / TestF0); }
};

Complex Parallel(Complex a, Complex b) {
    return a * b / (a + b);
}

struct ArmCase {
    ElementType Type;
    bool Series;
    std::function<Complex(const Arm&)> Z;  ///< impedance of the arm
};

// Each arm drawn as series and parallel connections of its parts.
const ArmCase armCases[] = {
    {ElementType::SeriesInd, true, [](const Arm& a) { return a.L1; }},
    {ElementType::SeriesCap, true, [](const Arm& a) { return a.C2; }},
    {ElementType::SeriesLC, true, [](const Arm& a) { return Parallel(a.L1, a.C2); }},
    {ElementType::ShuntInd, false, [](const Arm& a) { return a.L1; }},
    {ElementType::ShuntCap, false, [](const Arm& a) { return a.C2; }},
    {ElementType::ShuntLC, false, [](const Arm& a) { return a.L1 + a.C2; }},
    {ElementType::ShuntParLC, false, [](const Arm& a) { return Parallel(a.L1, a.C2); }},
    {ElementType::ShuntSerParLC, false,
     [](const Arm& a) { return a.L1 + a.C2 + Parallel(a.L3, a.C4); }},
    {ElementType::SeriesSerLC, true, [](const Arm& a) { return a.L1 + a.C2; }},
    {ElementType::SerSerParLC, true,
     [](const Arm& a) { return Parallel(a.L1 + a.C2, Parallel(a.L3, a.C4)); }},
    {ElementType::DualShuntLC, false,
     [](const Arm& a) { return Parallel(a.L1 + a.C2, a.L3 + a.C4); }},
    {ElementType::DualSeriesLC, true,
     [](const Arm& a) { return Parallel(a.L1, a.C2) + Parallel(a.L3, a.C4); }},
    {ElementType::SeriesElliptic2, true,
     [](const Arm& a) { return Parallel(a.C4, a.L3 + Parallel(a.L1, a.C2)); }},
    {ElementType::SeriesElliptic3, true,
     [](const Arm& a) { return Parallel(a.L3, a.C2 + Parallel(a.L1, a.C4)); }},
    {ElementType::ShuntElliptic2, false,
     [](const Arm& a) { return a.L1 + Parallel(a.C2, a.L3 + a.C4); }},
    {ElementType::ShuntElliptic3, false,
     [](const Arm& a) { return a.C2 + Parallel(a.L1, a.L3 + a.C4); }},
    {ElementType::ThreeShuntCapSerLC, false,
     [](const Arm& a) { return Parallel(a.C2, a.L1 + a.C4); }},
    {ElementType::ThreeShuntIndSerLC, false,
     [](const Arm& a) { return Parallel(a.L1, a.L3 + a.C2); }},
    {ElementType::ThreeShuntTappedC, false,
     [](const Arm& a) { return a.C4 + Parallel(a.L1, a.C2); }},
    {ElementType::ThreeShuntTappedL, false,
     [](const Arm& a) { return a.L3 + Parallel(a.L1, a.C2); }},
    // Stubs: 40 degrees of 30 ohm first, 25 degrees of 80 ohm second.
    {ElementType::ShuntTLSCC, false,
     [](const Arm& a) { return Parallel(30.0 * a.Tan(40.0), a.C4); }},
    {ElementType::ShuntLTLOC, false,
     [](const Arm& a) { return Parallel(80.0 / a.Tan(25.0), a.L1); }},
    {ElementType::ShuntTLSCTLOC, false,
     [](const Arm& a) { return Parallel(30.0 * a.Tan(40.0), 80.0 / a.Tan(25.0)); }},
    {ElementType::ShuntTLOC, false, [](const Arm& a) { return 30.0 / a.Tan(40.0); }},
    {ElementType::ShuntTLSC, false, [](const Arm& a) { return 30.0 * a.Tan(40.0); }},
};

CircuitElement SlotOf(ElementType type) {
    const double parts[] = {V1L, V2C, V3L, V4C}, lines[] = {40.0, 30.0, 25.0, 80.0};
    CircuitElement slot;
    slot.Type = type;
    for (int row = 0; row < 4; ++row) {
        const ValueKind kind = InfoOf(type).Values[row];
        const bool line = kind == ValueKind::LengthDegrees || kind == ValueKind::Impedance;
        if (kind != ValueKind::Unused) slot.Value(row) = line ? lines[row] : parts[row];
    }
    return slot;
}

/// The parts of the arm under a model: a coil R + j w L shunted by IndC, R = w0 L sqrt(f / F0) / Q;
/// a capacitor with CapL and CapR in series.
Arm ArmAt(const FilterDesign& design, double f) {
    const PartModel& m = design.PartModel;
    const Complex s = J * (2.0 * pi * f);
    const bool ideal = m.Choice == PartChoice::IdealParts;
    const auto coil = [&](double L) {
        const Complex wound = 2.0 * pi * std::sqrt(TestF0 * f) * L / m.IndQ + s * L;
        return ideal ? s * L : Parallel(wound, 1.0 / (s * m.IndC));
    };
    const auto cap = [&](double C) { return 1.0 / (s * C) + (ideal ? 0.0 : s * m.CapL + m.CapR); };
    return {coil(V1L), cap(V2C), coil(V3L), cap(V4C), f};
}

// A single series arm: H = 2 sqrt(RS RL) / (RS + RL + Z); a single shunt arm divides the same by
// RS + RL + RS RL / Z. Off the grid's resonances plain arithmetic is good to 1e-12.
TEST(LadderAnalysis, SingleArmsMatchTheirCircuit) {
    const std::vector<double> freqs = LogGrid(37);
    for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts}) {
        for (const ArmCase& c : armCases) {
            FilterDesign design = MakeDesign({SlotOf(c.Type)}, parts);
            design.RSource = 40.0;
            design.RLoad = 75.0;
            for (const KernelChoice kernel : AvailableKernels()) {
                const Sweep sweep = Analyse(design, freqs, kernel);
                for (std::size_t i = 0; i < freqs.size(); ++i) {
                    const Complex Z = c.Z(ArmAt(design, freqs[i]));
                    const Complex across = c.Series ? Z : 40.0 * 75.0 / Z;
                    const Complex H = 2.0 * std::sqrt(40.0 * 75.0) / (115.0 + across);
                    const Complex Zin = c.Series ? Z + 75.0 : Parallel(Z, 75.0);
                    const double gamma = std::abs((Zin - 40.0) / (Zin + 40.0));
                    ASSERT_LT(std::abs(sweep.H(i) - H), 1e-12 * std::abs(H))
                        << InfoOf(c.Type).Name << " kernel " << int(kernel) << " point " << i;
                    ASSERT_NEAR(sweep.Reflection(i), gamma, 1e-12) << InfoOf(c.Type).Name;
                }
            }
        }
    }
}

// Butterworth of order 3, g = 1, 2, 1 (Zverev, Handbook of Filter Synthesis, 1967):
// |H|^2 = 1 / (1 + (f / fc)^6), and what is not transmitted is reflected.
TEST(LadderAnalysis, ButterworthLowPass) {
    const FilterDesign design = MakeDesign({{ElementType::ShuntCap, UnusedValue, TestC},
                                            {ElementType::SeriesInd, 2.0 * TestL},
                                            {ElementType::ShuntCap, UnusedValue, TestC}});
    const std::vector<double> freqs = LogGrid(101);
    const Sweep sweep = Analyse(design, freqs);
    for (std::size_t i = 0; i < freqs.size(); ++i) {
        const double x6 = std::pow(freqs[i] / TestF0, 6.0);
        ASSERT_NEAR(std::norm(sweep.H(i)) * (1.0 + x6), 1.0, 1e-12);
        ASSERT_NEAR(std::pow(sweep.Reflection(i), 2.0) * (1.0 + 1.0 / x6), 1.0, 1e-8);
    }
}

TEST(LadderAnalysis, IdealLaddersConservePower) {
    std::mt19937 random(20240501);
    const std::vector<double> freqs = LogGrid(200);
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        std::vector<CircuitElement> slots;
        for (int k = 0; k < 3; ++k) {
            slots.push_back(RandomSlot(ElementType(code), random));
            slots.push_back(RandomSlot(ElementType::SeriesTLIN, random));
        }
        for (const KernelChoice kernel : AvailableKernels()) {
            const Sweep sweep = Analyse(MakeDesign(slots), freqs, kernel);
            for (std::size_t i = 0; i < freqs.size(); ++i)
                ASSERT_NEAR(std::norm(sweep.H(i)) + std::pow(sweep.Reflection(i), 2.0), 1.0, 1e-9)
                    << "type " << code << " kernel " << int(kernel) << " point " << i;
        }
    }
}

TEST(LadderAnalysis, EmptyLadderIsTheTerminationsAlone) {
    FilterDesign design = MakeDesign({});
    for (const KernelChoice kernel : AvailableKernels()) {
        design.RLoad = 100.0;
        Sweep sweep = Analyse(design, {TestF0}, kernel);
        EXPECT_DOUBLE_EQ(sweep.Re[0], 2.0 * std::sqrt(50.0 * 100.0) / 150.0);
        EXPECT_NEAR(sweep.Reflection(0), 50.0 / 150.0, 1e-15);
        design.RLoad = 50.0;
        sweep = Analyse(design, {TestF0, 0.0}, kernel);
        EXPECT_EQ(sweep.H(0), Complex(1.0, 0.0));
        EXPECT_EQ(sweep.ReflectionDb[0], ZeroPowerDb);
        EXPECT_EQ(sweep.ReflectionDb[1], ZeroPowerDb);
    }
}

TEST(LadderAnalysis, QuarterWaveLineMatchesUnequalTerminations) {
    FilterDesign design = MakeDesign({{ElementType::SeriesTLIN, 90.0, std::sqrt(50.0 * 20.0)}});
    design.RLoad = 20.0;
    for (const KernelChoice kernel : AvailableKernels()) {
        const Sweep sweep = Analyse(design, {TestF0}, kernel);
        EXPECT_NEAR(std::abs(sweep.H(0)), 1.0, 1e-14);
        EXPECT_NEAR(std::arg(sweep.H(0)), -pi / 2.0, 1e-14);
    }
}

TEST(LadderAnalysis, SmallAndMissingValuesAreRaised) {
    for (const double value : {0.0, -1.0, std::nan("")}) {
        for (const KernelChoice kernel : AvailableKernels()) {
            const Sweep sweep =
                Analyse(MakeDesign({{ElementType::SeriesInd, value}}), {TestF0}, kernel);
            EXPECT_EQ(sweep.Re[0], 1.0);
            EXPECT_DOUBLE_EQ(sweep.Im[0], -TwoPi * TestF0 * SmallestPartValue / 100.0);
        }
    }
}

TEST(LadderAnalysis, CoilHasItsQAtF0) {
    PartModel model;
    model.Choice = PartChoice::RealParts;
    model.IndQ = 35.0;
    model.IndC = 0.0;
    const Complex Z = InductorZ({model, TestF0}, J * (TwoPi * TestF0), TestF0, TestL);
    EXPECT_NEAR(Z.imag() / Z.real(), 35.0, 1e-12);
}

TEST(LadderAnalysis, IdealPartsIgnoreTheModel) {
    std::mt19937 random(5);
    FilterDesign design = MakeDesign({RandomSlot(ElementType::ShuntSerParLC, random),
                                      RandomSlot(ElementType::SerSerParLC, random)});
    const std::vector<double> freqs = LogGrid(50);
    const Sweep before = Analyse(design, freqs);
    design.PartModel.IndQ = design.PartModel.CapR = 0.0;
    design.PartModel.IndC = design.PartModel.CapL = 1.0;
    const Sweep after = Analyse(design, freqs);
    EXPECT_EQ(before.Re, after.Re);
    EXPECT_EQ(before.ReflectionDb, after.ReflectionDb);
}

TEST(LadderAnalysis, UnknownCodeIsReportedOnceAndChangesNothing) {
    for (const int code : {26, 27, -1, 1 << 30}) {
        const FilterDesign design =
            MakeDesign({{ElementType::SeriesInd, TestL}, {ElementType(code), TestL, TestC}});
        std::vector<std::pair<std::string, std::string>> messages;
        const Sweep sweep = Analyse(design, LogGrid(20), KernelChoice::Automatic,
                                    [&](const std::string& caption, const std::string& text) {
                                        messages.emplace_back(caption, text);
                                    });
        ASSERT_EQ(messages.size(), 1u) << code;
        EXPECT_EQ(messages[0].first, "Error ");
        EXPECT_EQ(messages[0].second, " Default case in Circuit Analysis");
        EXPECT_EQ(sweep.Re, std::vector<double>(20, 7.0));
        EXPECT_EQ(sweep.ReflectionDb, std::vector<double>(20, 7.0));
    }
}

TEST(LadderAnalysis, GuardedDivision) {
    const double nan = std::nan(""), big = 1e300;
    EXPECT_EQ(GuardedDivide({big, big}, {big, big}), Complex(1.0, 0.0));
    EXPECT_EQ(GuardedDivide({5.0, 10.0}, {1.0, 2.0}), Complex(5.0, 0.0));
    EXPECT_EQ(GuardedDivide({-4.0, 2.0}, {0.0, 2.0}), Complex(1.0, 2.0));
    const std::pair<Complex, Complex> undefined[] = {
        {{1.0, 0.0}, {0.0, -0.0}}, {{nan, 0.0}, {1.0, 0.0}}, {{1.0, 0.0}, {1.0, nan}}};
    for (const auto& [num, den] : undefined) {
        const Complex q = GuardedDivide(num, den);
        EXPECT_TRUE(std::isnan(q.real()) && std::isnan(q.imag()));
    }
}

TEST(LadderAnalysis, LevelsAreClamped) {
    EXPECT_EQ(ComplexToDb(0.0), ZeroPowerDb);
    EXPECT_EQ(ComplexToDb({1e-200, 0.0}), ZeroPowerDb);
    EXPECT_DOUBLE_EQ(ComplexToDb({0.0, -10.0}), 20.0);
    EXPECT_DOUBLE_EQ(ComplexToDb({-1e99, 0.0}), 200.0);
    EXPECT_TRUE(std::isnan(ComplexToDb({std::nan(""), 1.0})));
}

}  // namespace
}  // namespace ladderwise::testing
