// The elliptic prototypes: what they promise, measured on their ladders by chain matrices over all
// that the boxes allow, and their elements against values computed with 50 digits.
#include <gtest/gtest.h>

#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"
#include "scaling/Protoscaler.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

FilterDesign Build(char family, int traps, double rippleDb, double attenDb) {
    FilterDesign design;
    design.ResponseType = ResponseType(int(ResponseType::EllipticA) + family - 'A');
    design.RippleDb = rippleDb;
    design.EllipticAtten = attenDb;
    design.RSource = 1;
    BuildPrototype(design, traps, {});
    return design;
}

double LossDb(const FilterDesign& design, double w) {
    return -10 * std::log10(std::norm(AnalysePoint(design, 1, w * OneOverTwoPi).Transfer));
}

/// The maximum of f between a and b, where it has only one: golden sections.
template <typename Function>
double Summit(double a, double b, const Function& f) {
    const double section = (std::sqrt(5.0) - 1) / 2;
    double c = b - section * (b - a), d = a + section * (b - a), fc = f(c), fd = f(d);
    for (int i = 0; i < 25; ++i) {
        if (fc > fd) {
            b = d, d = c, fd = fc;
            fc = f(c = b - section * (b - a));
        } else {
            a = c, c = d, fc = fd;
            fd = f(d = a + section * (b - a));
        }
    }
    return std::max(fc, fd);
}

/// Largest loss in the pass band, dB. In ln y, w^2 (1 + y^2) = 1, the ripples lie evenly.
double PassBandMaximum(const FilterDesign& design) {
    constexpr int points = 150;
    const auto loss = [&](double logY) {
        return LossDb(design, design.Elliptic.PassBandEdge / std::hypot(1, std::exp(logY)));
    };
    const auto place = [](int i) { return -9.0 + 15.0 * i / points; };
    double level[points + 1];
    for (int i = 0; i <= points; ++i)
        level[i] = loss(place(i));
    double most = std::max(LossDb(design, design.Elliptic.PassBandEdge), level[points]);
    for (int i = 1; i < points; ++i)
        if (level[i] >= std::max(level[i - 1], level[i + 1]))
            most = std::max(most, Summit(place(i - 1), place(i + 1), loss));
    return most;
}

/// Smallest loss in the stop band, dB: at its edge or in the valleys between and beyond the traps.
double StopBandMinimum(const FilterDesign& design) {
    std::vector<double> traps(design.Elliptic.TrapFreqs.begin(),
                              design.Elliptic.TrapFreqs.begin() + design.Elliptic.NumTraps);
    std::sort(traps.begin(), traps.end());
    traps.push_back(1000 * traps.back());
    double least = LossDb(design, design.Elliptic.StopBandEdge);
    for (std::size_t i = 1; i < traps.size(); ++i)
        least = std::min(least, -Summit(1 / traps[i], 1 / traps[i - 1],
                                        [&](double u) { return -LossDb(design, 1 / u); }));
    return least;
}

/// The values that the slots use, from the source, inductance first.
std::vector<double> ValuesOf(const FilterDesign& design) {
    std::vector<double> values;
    for (int k = 1; k <= design.NumElements; ++k)
        for (int row = 0; row < 4; ++row)
            if (InfoOf(design.Elements[k].Type).Values[row] != ValueKind::Unused)
                values.push_back(design.Elements[k].Value(row));
    return values;
}

// Ripple, least attenuation and 3 dB corner are those asked for or said to be used.
TEST(Elliptic, TheWholeRangeMeetsItsRequest) {
    for (const char family : {'A', 'B', 'C', 'D', 'E'})
        for (int traps = 1; traps <= MaxPoles; ++traps)
            for (const double ripple : {0.001, 0.01, 0.1, 0.2, 0.5, 1.0})
                for (const double atten : {5, 10, 20, 40, 60, 80, 100}) {
                    SCOPED_TRACE(testing::Message()
                                 << family << traps << " " << ripple << " " << atten);
                    const FilterDesign design = Build(family, traps, ripple, atten);
                    const EllipticResult& result = design.Elliptic;
                    ASSERT_EQ(design.NumElements, 2 * traps + (family == 'C'   ? 1
                                                               : family == 'E' ? 3
                                                                               : 2));
                    EXPECT_EQ(result.AttenRaised, result.AttenUsedDb > atten);
                    EXPECT_FALSE(result.AttenRaised && atten >= 40);
                    EXPECT_EQ(design.Flags.LoadOfFamily, family <= 'C');
                    for (const double value : ValuesOf(design))
                        ASSERT_TRUE(value > 0 && std::isfinite(value)) << value;
                    ASSERT_NEAR(PassBandMaximum(design), ripple, 1e-6);
                    ASSERT_NEAR(StopBandMinimum(design), result.AttenUsedDb, 1e-6);
                    ASSERT_NEAR(LossDb(design, 1), 10 * std::log10(2), 1e-6);
                }
}

// Computed with 50 digits by extracting the whole ladder from the source, in mpmath.
TEST(Elliptic, ElementsOfExactArithmetic) {
    const auto check = [](char family, int traps, double ripple, double atten, double load,
                          const std::vector<double>& exact) {
        SCOPED_TRACE(family);
        const FilterDesign design = Build(family, traps, ripple, atten);
        const std::vector<double> values = ValuesOf(design);
        ASSERT_EQ(values.size(), exact.size());
        for (std::size_t i = 0; i < values.size(); ++i)
            EXPECT_NEAR(values[i] / exact[i], 1, 1e-11) << i;
        EXPECT_NEAR(design.RLoad, load, 1e-11);
        EXPECT_EQ(design.G[1], values[0]);
        EXPECT_EQ(design.G[design.NumElements], values.back());
    };
    // clang-format off
    check('C', 2, 0.1, 40, 1, {1.09670075192, 1.29382243655, 0.193694542748, 1.72197272602, 0.94826943451,
                               0.578024291148, 0.831308930741});
    check('B', 1, 0.2, 40, 1 / 1.53855270982, {1.27292565583, 1.20355003488, 0.246699995817, 2.07217934417,
                                               0.970639369652});
    check('A', 3, 0.2, 50, 1.53855270982, {1.08414959644, 0.395297510063, 1.03467077525, 1.33861429764,
                                           1.41359323855, 0.596626157931, 1.10430285356, 0.95452843559,
                                           0.755803729422, 1.5626832208, 0.921040771848});
    check('D', 2, 0.2, 50, 1, {1.00591917587, 1.28935096021, 0.254959645802, 1.45312868617, 1.24667464595,
                               0.452413183396, 1.30605566242, 1.2290779183});
    check('E', 2, 0.2, 50, 1, {1.42654060349, 1.18739089357, 0.303094769769, 1.64043042657, 0.976958424765,
                               0.579646072081, 1.21570200059, 1.04210980994, 1.42654060349});
    // clang-format on
    EXPECT_NEAR(Build('C', 3, 0.1, 10).Elliptic.AttenUsedDb, 16.04, 1e-9);
}

// The edges said to be reached, moved to where every pass type has them, in every trap form.
TEST(Elliptic, EdgesOfTheScaledFilter) {
    for (const char family : {'A', 'B', 'C', 'D', 'E'})
        for (int i = 0; i < 16; ++i) {
            SCOPED_TRACE(testing::Message() << family << i);
            FilterDesign design = Build(family, 3, 0.2, 50);
            design.PassType = static_cast<PassType>(i % 4);
            design.TrapType = 1 + i / 4;
            constexpr void (*scalers[])(FilterDesign&) = {ScaleLowPass, ScaleHighPass,
                                                          ScaleBandPass, ScaleNotch};
            scalers[i % 4](design);
            const auto lossesAt = [&](double w) {
                std::vector<double> losses;
                for (const double f : ScaledFrequencies(design, w))
                    losses.push_back(LossDb(design, TwoPi * f));
                return losses;
            };
            for (const double loss : lossesAt(design.Elliptic.PassBandEdge))
                EXPECT_NEAR(loss, 0.2, 1e-6);
            for (const double loss : lossesAt(design.Elliptic.StopBandEdge))
                EXPECT_NEAR(loss, 50, 1e-6);
        }
}

// What no box lets through still makes a ladder.
TEST(Elliptic, RequestsOutOfBoundsAreBrought) {
    for (const double bad : {-1.0, 0.0, 300.0, Infinity, NaN}) {
        EXPECT_GT(Build('E', 3, bad, 40).NumElements, 0);
        EXPECT_GE(Build('D', 3, 0.2, bad).Elliptic.AttenUsedDb, 5);
    }
    EXPECT_EQ(Build('B', MaxPoles + 1, 0.2, 40).NumElements, 0);
}

}  // namespace
}  // namespace ladderwise
