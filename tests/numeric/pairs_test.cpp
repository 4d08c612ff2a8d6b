// Two capacitors in the place of one, each with its own parasitics.
#include <gtest/gtest.h>

#include "analysis/BoardDraws.h"
#include "analysis/SParameters.h"
#include "analysis/Sensitivities.h"
#include "boards/Closeness.h"
#include "boards/StandardParts.h"
#include "exchange/SpiceCircuit.h"
#include "support.h"

namespace ladderwise {
namespace {

constexpr double WholeR = 0.4, WholeL = 0.6e-9;

FilterDesign RealDesign(const std::vector<CircuitElement>& slots, double share) {
    FilterDesign design = MakeDesign(slots, PartChoice::RealParts);
    design.PartModel.IndQ = 60.0;
    design.PartModel.CapR = share * WholeR;
    design.PartModel.CapL = share * WholeL;
    return design;
}

/// Every capacitor of the ladder as two, the larger one with `share` of it.
void PairAll(FilterDesign& design, double share) {
    for (const ValuePlace& place : ValuesInUse(design)) {
        const CircuitElement& slot = design.Elements[static_cast<std::size_t>(place.Slot)];
        const double whole = slot.Value(place.Row);
        if (InfoOf(slot.Type).Values[static_cast<std::size_t>(place.Row)] == ValueKind::Capacitance)
            design.Pairs.push_back({place, whole, share * whole, whole - share * whole});
    }
}

/// Y of C, R and L in series at f.
Complex Branch(double f, double C, double R, double L) {
    const double w = TwoPi * f;
    return 1.0 / Complex(R, w * L - 1.0 / (w * C));
}

}  // namespace

// In every element, by every form of the analysis, and in the slopes.
TEST(Pairs, TwoHalvesAreOneCapacitorWithHalfTheParasitics) {
    std::mt19937 random(3);
    const std::vector<double> freqs = LogGrid(70);
    for (int type = 0; IsElement(static_cast<ElementType>(type)); ++type) {
        const std::vector<CircuitElement> slots = {
            RandomSlot(static_cast<ElementType>(type), random),
            RandomSlot(ElementType::SeriesInd, random),
            RandomSlot(static_cast<ElementType>(type), random)};
        FilterDesign pairs = RealDesign(slots, 1.0);
        PairAll(pairs, 0.5);
        const FilterDesign halves = RealDesign(slots, 0.5);
        const LadderSlopes slopes = SlopesOf(pairs, freqs, true);
        const LadderSlopes wanted = SlopesOf(halves, freqs, true);
        const auto S = AnalyseSParameters(pairs, freqs, {50.0, 50.0});
        const Swept truth = Analyse(halves, freqs, KernelChoice::Reference);
        for (const KernelChoice kernel : AvailableKernels()) {
            const Swept swept = Analyse(pairs, freqs, kernel);
            for (std::size_t i = 0; i < freqs.size(); ++i) {
                EXPECT_LT(std::abs(swept.H(i) - truth.H(i)), 1e-9 * std::abs(truth.H(i))) << type;
                EXPECT_NEAR(swept.Reflection(i), truth.Reflection(i), 1e-9) << type;
                EXPECT_LT(std::abs(S[i].S21 - truth.H(i)), 1e-9 * std::abs(truth.H(i))) << type;
            }
        }
        for (std::size_t k = 0; k < wanted.Attenuation.size(); ++k) {
            const double close = 1e-7 * (1.0 + std::abs(wanted.Attenuation[k]));
            EXPECT_NEAR(slopes.Attenuation[k], wanted.Attenuation[k], close) << type;
            EXPECT_NEAR(slopes.ReturnLoss[k], wanted.ReturnLoss[k],
                        1e-6 * (1.0 + std::abs(wanted.ReturnLoss[k])))
                << type;
        }
    }
}

TEST(Pairs, UnequalCapacitorsHaveTheAdmittanceOfBothAndAreBothInTheNetlist) {
    const double whole = 100e-12, larger = 82e-12, smaller = 18e-12;
    for (const double R : {WholeR, 0.0})
        for (const ElementType type : {ElementType::ShuntCap, ElementType::SeriesCap}) {
            FilterDesign design = RealDesign({SlotOf(type, [&](ValueKind) { return whole; })}, 1.0);
            design.PartModel.CapR = R;
            design.Pairs = {{{1, 1}, whole, larger, smaller}};
            const std::vector<double> freqs = LogGrid(70);
            for (const KernelChoice kernel : AvailableKernels()) {
                const Swept swept = Analyse(design, freqs, kernel);
                for (std::size_t i = 0; i < freqs.size(); ++i) {
                    const Complex Y =
                        Branch(freqs[i], larger, R, WholeL) + Branch(freqs[i], smaller, R, WholeL);
                    const Complex H = type == ElementType::ShuntCap
                                          ? 2.0 / (2.0 + 50.0 * Y)
                                          : 2.0 / (2.0 + 1.0 / (50.0 * Y));
                    EXPECT_LT(std::abs(swept.H(i) - H), 1e-9 * std::abs(H)) << freqs[i];
                }
            }
            design.Elements[1].V2 = 1.01 * whole;  // edited: one part again
            EXPECT_EQ(CircuitOf(design, true, false).Parts[0].Name, "C1");
        }
    FilterDesign design =
        RealDesign({SlotOf(ElementType::ShuntCap, [&](ValueKind) { return whole; })}, 1.0);
    design.Pairs = {{{1, 1}, whole, larger, smaller}};
    std::string parts;
    for (const SpicePart& part : CircuitOf(design, true, false).Parts)
        parts += part.Name + " ";
    EXPECT_EQ(parts, "C1a LC1a RC1a C1b LC1b RC1b ");
}

// A board's pair is analysed as drawn; what is chosen, with the parasitics of both.
TEST(Pairs, AreJudgedAsTheyAreBuilt) {
    FilterDesign design =
        RealDesign({SlotOf(ElementType::ShuntCap, [](ValueKind) { return 100e-12; })}, 1.0);
    design.Pairs = {{{1, 1}, 100e-12, 82e-12, 18e-12}};
    FilterDesign board = design;
    BoardDrawer(design).Place({1.0, -1.0}, board);
    const double f = 3.0 * TestF0;
    const Complex Y =
        Branch(f, 1.05 * 82e-12, WholeR, WholeL) + Branch(f, 0.95 * 18e-12, WholeR, WholeL);
    EXPECT_LT(std::abs(AnalysePoint(board, TestF0, f).Transfer - 2.0 / (2.0 + 50.0 * Y)), 1e-12);

    const auto calculation = Designed({{"pass", "band-pass"},
                                       {"bw-percent", "20"},
                                       {"poles", "2"},
                                       {"cap-tol", "5"},
                                       {"ind-tol", "5"},
                                       {"parts", "real"},
                                       {"cap-l", "2"}});
    StandardTask task;
    task.Method = StdMethod::Pairs;
    task.Effort = 0.2;
    const StandardParts parts =
        ChooseStandardParts(calculation->Design, calculation->IdealElements, task);
    Closeness judge(calculation->Design, calculation->IdealElements);
    FilterDesign chosen = calculation->Design;
    TakeParts(chosen, parts);
    ASSERT_FALSE(chosen.Pairs.empty());
    EXPECT_NEAR(judge.WorstDeviation(chosen), parts.ChosenDeviation, 1e-9);
    chosen.Pairs.clear();
    EXPECT_GT(judge.WorstDeviation(chosen), 2.0 * parts.ChosenDeviation);
}

}  // namespace ladderwise
