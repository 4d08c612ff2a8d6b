// Slopes by the adjoint against central differences of the reference analysis, and the shares of
// parts in the spread.
#include <gtest/gtest.h>

#include <map>

#include "analysis/Sensitivities.h"
#include "pipeline/PartShares.h"
#include "pipeline/ResultsText.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

/// Attenuation and return loss of the reference form, dB.
std::pair<double, double> LossesAt(const FilterDesign& design, double f) {
    const LadderPoint point = AnalysePoint(design, design.F0, f);
    return {-20.0 * std::log10(std::abs(point.Transfer)),
            -20.0 * std::log10(std::abs(point.Reflection))};
}

TEST(Sensitivities, OfEveryElementAgreeWithDifferences) {
    std::mt19937 random(7);
    constexpr double step = 1e-5;
    int compared = 0;
    for (const PartChoice parts :
         {PartChoice::IdealParts, PartChoice::RealParts, PartChoice::DeEmbed}) {
        for (int run = 0; run < 80; ++run) {
            std::vector<CircuitElement> slots;
            for (int k = 0; k < 6; ++k)  // every type comes in turn, among others
                slots.push_back(RandomSlot(static_cast<ElementType>((run + k * 11) % 26), random));
            FilterDesign design = MakeDesign(slots, parts);
            design.RLoad = 20.0 + 10.0 * (run % 9);
            std::vector<double> freqs;
            for (int i = 0; i < 37; ++i)  // more than a block
                freqs.push_back(TestF0 * std::exp(0.04 * (i - 18) + 1e-3 * run));
            const LadderSlopes slopes = SlopesOf(design, freqs, true);
            for (std::size_t p = 0; p < slopes.Places.size(); ++p) {
                const auto [slot, row] = slopes.Places[p];
                double& value = design.Elements[static_cast<std::size_t>(slot)].Value(row);
                for (std::size_t i = run % 5; i < freqs.size(); i += 5) {
                    const double kept = value;
                    const auto at = [&](double by) {
                        value = kept * std::exp(by);
                        const auto losses = LossesAt(design, freqs[i]);
                        value = kept;
                        return losses;
                    };
                    const auto more = at(step), less = at(-step), twice = at(2 * step),
                               half = at(-2 * step);
                    const auto slope = [&](auto which) {  // of fourth order
                        return (8.0 * (more.*which - less.*which) - twice.*which + half.*which) /
                               (12.0 * step);
                    };
                    using Losses = std::pair<double, double>;
                    for (const auto& [made, wanted] :
                         {std::pair{slopes.AttenuationOf(p)[i], slope(&Losses::first)},
                          std::pair{slopes.ReturnLossOf(p)[i], slope(&Losses::second)}}) {
                        // Next to an ideal resonance differences themselves are off.
                        if (!(std::abs(wanted) < 1e3)) continue;
                        EXPECT_NEAR(made, wanted, 1e-5 * std::max(1.0, std::abs(wanted)))
                            << InfoOf(design.Elements[static_cast<std::size_t>(slot)].Type).Name
                            << " row " << row << " at " << freqs[i];
                        ++compared;
                    }
                }
            }
        }
    }
    EXPECT_GT(compared, 50000);
}

std::vector<PartShare> SharesIn(const Calculation& calculation, const LimitLines& limits = {}) {
    return SharesOf(calculation.Design, calculation.Results,
                    JudgeLimits(calculation.Design, limits));
}

TEST(PartShares, AddUpToOneAtEveryFrequency) {
    const Settings designs[] = {{{"response", "chebyshev"}, {"poles", "5"}},
                                {{"pass", "band-pass"}, {"parts", "real"}, {"poles", "4"}},
                                {{"pass", "notch"}, {"response", "elliptic-c"}, {"poles", "2"}},
                                {{"pass", "direct-coupled"}, {"tank", "7"}, {"parts", "deembed"}}};
    const std::size_t frequencies[] = {1, 3, 2, 3};  // a low-pass has its edge at F0
    for (std::size_t d = 0; d < std::size(designs); ++d) {
        const auto calculation = Designed(designs[d]);
        std::map<double, double> sums;
        for (const PartShare& share : SharesIn(*calculation))
            sums[share.At] += share.Share;
        EXPECT_EQ(sums.size(), frequencies[d]) << d;
        for (const auto& [at, sum] : sums)
            EXPECT_NEAR(sum, 1.0, 1e-12) << at;
    }
}

// Where a matched filter loses nothing no part has a slope, however much it matters (Orchard 1966):
// there the spread is a matter of samples. The parts of a symmetric ladder matter alike.
TEST(PartShares, AreSampledWhereTheResponseHasNoSlope) {
    const auto calculation =
        Designed({{"pass", "band-pass"}, {"poles", "3"}, {"f0", "100"}, {"bw", "20"}});
    const double f0 = calculation->Design.F0;
    const double centre = std::sqrt((f0 - 10e6) * (f0 + 10e6));
    const LimitLines limits = {{LimitKind::AttenMax, centre, centre, 1.0}};
    const std::vector<PartShare> shares = SharesIn(*calculation, limits);
    ASSERT_EQ(shares.size(), 6u);
    for (const PartShare& share : shares)
        EXPECT_TRUE(share.BySamples);
    EXPECT_EQ(shares[0].Designator, "L1");
    EXPECT_NEAR(shares[0].Share, shares[4].Share, 1e-6);
    EXPECT_GT(shares[0].Share, 4.0 * shares[1].Share);  // twice the tolerance of a capacitor
    const std::vector<PartShare> edges = SharesIn(*calculation);
    for (const PartShare& share : edges)
        EXPECT_EQ(share.BySamples, std::abs(share.At - f0) < 5e6) << share.At;
}

// Two coils of 50 nH on lines, far above where they resonate: at Fo the lines alone count. What the
// other parts do to 100 dB is next to nothing, and of it alike ones still have alike shares.
TEST(PartShares, OfNextToNothingAreNoRounding) {
    const auto calculation = Designed({{"pass", "direct-coupled"},
                                       {"response", "linear-chebyshev"},
                                       {"poles", "2"},
                                       {"inverter", "line"},
                                       {"tank", "1"},
                                       {"ripple", "0.25648"},
                                       {"r-source", "0.41311"},
                                       {"r-load", "0.41311"},
                                       {"f0", "0.0034267841"},
                                       {"bw-percent", "188.65153"}});
    const double f0 = calculation->Design.F0;
    const LimitLines limits = {{LimitKind::AttenMax, f0, f0, 1.0}};
    const std::vector<PartShare> shares = SharesIn(*calculation, limits);
    ASSERT_EQ(shares.size(), 10u);
    for (const std::size_t part : {2u, 3u}) {
        EXPECT_LT(shares[part].DbPerPercent, 1e-8) << shares[part].Designator;
        EXPECT_NEAR(shares[part].Share, shares[part + 4].Share, 1e-4) << shares[part].Designator;
    }
}

// A delay can be limited too; its slopes are those of the judged variation.
TEST(PartShares, OfALimitedDelay) {
    const auto calculation = Designed({{"response", "chebyshev"}, {"poles", "5"}, {"f0", "30"}});
    const std::vector<PartShare> shares =
        SharesIn(*calculation, {{LimitKind::DelayVariationMax, 5e6, 29e6, 10e-9}});
    ASSERT_EQ(shares.size(), 5u);
    double sum = 0.0;
    for (const PartShare& share : shares)
        sum += share.Share;
    EXPECT_NEAR(sum, 1.0, 1e-12);
    EXPECT_NEAR(shares[1].DbPerPercent, shares[3].DbPerPercent, 1e-3);  // of a symmetric ladder
}

}  // namespace
}  // namespace ladderwise
