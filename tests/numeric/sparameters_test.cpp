// S-parameters: against the analysis, by conservation of power, and between reference resistances.
#include <gtest/gtest.h>

#include "analysis/SParameters.h"
#include "support.h"

namespace ladderwise {
namespace {

FilterDesign RandomLadder(std::mt19937& random, PartChoice parts) {
    std::uniform_int_distribution<int> type(0, 25), count(1, 9);
    std::vector<CircuitElement> slots(count(random));
    for (CircuitElement& slot : slots)
        slot = RandomSlot(static_cast<ElementType>(type(random)), random);
    FilterDesign design = MakeDesign(slots, parts);
    design.RLoad = 200.0;
    return design;
}

TEST(SParameters, BetweenTheTerminationsAreTransferAndReflection) {
    std::mt19937 random(20);
    const std::vector<double> freqs = LogGrid(301);
    for (int trial = 0; trial < 200; ++trial) {
        const FilterDesign design =
            RandomLadder(random, trial % 2 ? PartChoice::RealParts : PartChoice::IdealParts);
        const auto s = AnalyseSParameters(design, freqs, {50.0, 200.0});
        for (std::size_t i = 0; i < freqs.size(); ++i) {
            const LadderPoint point = AnalysePoint(design, design.F0, freqs[i]);
            ASSERT_LT(std::abs(s[i].S21 - point.Transfer), 1e-9 * std::abs(s[i].S21) + 1e-12);
            ASSERT_LT(std::abs(s[i].S11 - point.Reflection), 1e-9);
            ASSERT_EQ(s[i].S12, s[i].S21);
        }
    }
}

TEST(SParameters, LosslessLaddersKeepAllPower) {
    std::mt19937 random(21);
    const std::vector<double> freqs = LogGrid(301);
    for (int trial = 0; trial < 200; ++trial) {
        const FilterDesign design = RandomLadder(random, PartChoice::IdealParts);
        for (const SParameters& s : AnalyseSParameters(design, freqs, {75.0, 20.0})) {
            ASSERT_NEAR(std::norm(s.S11) + std::norm(s.S21), 1.0, 1e-10);
            ASSERT_NEAR(std::norm(s.S12) + std::norm(s.S22), 1.0, 1e-10);
            ASSERT_LT(std::abs(s.S11 * std::conj(s.S12) + s.S21 * std::conj(s.S22)), 1e-10);
        }
    }
}

TEST(SParameters, ExactResonancesAreNumbers) {
    // 1 / (2 pi) Hz, 1 H and 1 F: w L = 1 / (w C) in every bit. Both arms short or open at once.
    for (const ElementType type : {ElementType::SeriesLC, ElementType::ShuntLC,
                                   ElementType::DualSeriesLC, ElementType::DualShuntLC}) {
        FilterDesign design = MakeDesign({{type, 1.0, 1.0, 1.0, 1.0}});
        const double f = OneOverTwoPi;
        const auto s = AnalyseSParameters(design, std::vector<double>{f}, {})[0];
        EXPECT_LT(std::abs(s.S21), 1e-9);
        EXPECT_NEAR(s.S11.real(), InfoOf(type).Arm == ElementArm::Series ? 1.0 : -1.0, 1e-9);
        EXPECT_NEAR(s.S22.real(), s.S11.real(), 1e-9);
    }
}

TEST(SParameters, RenormalisedAreThoseOfTheOtherResistances) {
    std::mt19937 random(22);
    const std::vector<double> freqs = LogGrid(101);
    const PortResistances from{50.0, 50.0}, to{12.5, 470.0};
    for (int trial = 0; trial < 50; ++trial) {
        const FilterDesign design = RandomLadder(random, PartChoice::RealParts);
        const auto s = AnalyseSParameters(design, freqs, from);
        const auto wanted = AnalyseSParameters(design, freqs, to);
        for (std::size_t i = 0; i < freqs.size(); ++i) {
            const SParameters got = Renormalised(s[i], from, to);
            ASSERT_LT(std::abs(got.S11 - wanted[i].S11), 1e-11);
            ASSERT_LT(std::abs(got.S21 - wanted[i].S21), 1e-11);
            ASSERT_LT(std::abs(got.S22 - wanted[i].S22), 1e-11);
        }
    }
}

}  // namespace
}  // namespace ladderwise
