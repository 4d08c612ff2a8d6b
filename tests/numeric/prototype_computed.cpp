// Butterworth and Chebyshev against published element values and their defining responses, and the
// dispatch from family to ladder slots.
#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

#include "prototypes/Mathfunctions.h"
#include "prototypes/Prototype.h"
#include "tests/numeric/prototype_ladder.h"

namespace ladderwise {
namespace {

using judge::PrototypeGain;

const double loadRatios[] = {1.0, 0.999, 1.001, 0.5, 2.0, 0.1, 10.0, 0.01, 100.0};

// 4t / (1 + t)^2: the share of the available power that a direct connection of the terminations
// lets through.
double DirectPower(const FilterDesign& design) {
    const double t = design.RLoad / design.RSource;
    return 4 * t / ((1 + t) * (1 + t));
}

bool StartsWithCapacitor(const FilterDesign& design) {
    return design.Elements[1].Type == ElementType::ShuntCap;
}

TEST(PrototypeComputed, ButterworthPublishedValues) {
    // Zverev, "Handbook of Filter Synthesis", table of Butterworth element values, CLC form:
    // source resistance for a 1-ohm load, then C1, L2, C3, ... of that filter.
    const struct {
        double RSource;
        std::vector<double> Values;
    } cases[] = {{1.0, {1, 2, 1}},
                 {2.0, {0.4483, 3.3461}},
                 {1 / 0.9, {1.0353, 1.8352}},
                 {0.8, {0.8442, 1.3840, 1.9259}},
                 {0.5, {1.1811, 0.7789, 3.2612}},
                 {0.1, {5.1672, 0.1377, 15.4554}},
                 {1 / 0.9, {0.4657, 1.5924, 1.7439, 1.4690}},
                 {2.0, {0.2175, 2.4524, 0.8826, 3.1868}},
                 {0.5, {0.6857, 0.4955, 3.0510, 0.9237, 3.1331}}};
    for (const auto& c : cases) {
        FilterDesign design;
        design.RSource = c.RSource;
        design.RLoad = 1.0;
        BuildPrototype(design, static_cast<int>(c.Values.size()), {});
        ASSERT_TRUE(StartsWithCapacitor(design));
        for (int k = 1; k <= design.NumElements; ++k) {
            const double unit = k % 2 != 0 ? 1 / c.RSource : c.RSource;
            EXPECT_NEAR(design.G[k] * unit, c.Values[k - 1], 6e-5) << c.RSource << " g" << k;
        }
    }
}

TEST(PrototypeComputed, ChebyshevPublishedValues) {
    // Matthaei, Young and Jones, "Microwave Filters", table 4.05-2(a): matched, ripple edge at
    // 1 rad/s, so the 3 dB normalisation is taken out. Even orders are matched when direct-coupled.
    const struct {
        double RippleDb;
        std::vector<double> Values;
    } cases[] = {{0.1, {0.3052}},
                 {0.1, {0.8430, 0.6220}},
                 {0.1, {1.0315, 1.1474, 1.0315}},
                 {0.1, {1.1468, 1.3712, 1.9750, 1.3712, 1.1468}},
                 {0.2, {1.3028, 1.2844, 1.9761, 0.8468}},
                 {0.5, {1.5963, 1.0967, 1.5963}},
                 {0.5, {1.6703, 1.1926, 2.3661, 0.8419}},
                 {1.0, {2.0236, 0.9941, 2.0236}},
                 {1.0, {2.1349, 1.0911, 3.0009, 1.0911, 2.1349}}};
    for (const auto& c : cases) {
        const int n = static_cast<int>(c.Values.size());
        FilterDesign design;
        design.ResponseType = ResponseType::Chebyshev;
        design.PassType = n % 2 == 0 ? PassType::DirectCoupled : PassType::LowPass;
        design.RippleDb = c.RippleDb;
        BuildPrototype(design, n, {});
        const double epsilon = std::sqrt(std::pow(10.0, c.RippleDb / 10) - 1);
        const double corner = std::cosh(std::acosh(1 / epsilon) / n);
        for (int k = 1; k <= n; ++k) {
            EXPECT_NEAR(design.G[k] / corner, c.Values[k - 1], 1.5e-4) << c.RippleDb << " g" << k;
        }
        EXPECT_FALSE(design.Flags.LoadMoved);
    }
}

TEST(PrototypeComputed, ButterworthResponseForAllTerminations) {
    for (double ratio : loadRatios) {
        for (int n = 1; n <= MaxPoles; ++n) {
            for (bool clc : {true, false}) {
                FilterDesign design;
                design.RLoad = ratio * design.RSource;
                design.FormCLC = clc;
                BuildPrototype(design, n, {});
                // A load above the source needs an element at the load end that shunts it.
                const bool form = ratio == 1.0 ? clc : (ratio > 1) == (n % 2 != 0);
                EXPECT_EQ(design.FormCLC, form) << ratio << " n " << n;
                EXPECT_EQ(design.Flags.FormForced, form != clc);
                for (double w = 0.03; w < 3; w *= 1.15) {
                    const double expected = DirectPower(design) / (1 + std::pow(w, 2 * n));
                    EXPECT_NEAR(PrototypeGain(design, w) / expected, 1, 1e-11)
                        << ratio << " n " << n << " w " << w;
                }
            }
        }
    }
}

void CheckChebyshev(FilterDesign design, int n) {
    const double wantedLoad = design.RLoad;
    const bool clc = design.FormCLC;
    BuildPrototype(design, n, {});
    const double epsilon = std::sqrt(std::pow(10.0, design.RippleDb / 10) - 1);
    const double limit = std::pow(std::sqrt(epsilon * epsilon + 1) - epsilon, 2);
    const double ratio = wantedLoad / design.RSource;
    const bool move = n % 2 == 0 && std::min(ratio, 1 / ratio) >= limit;
    EXPECT_EQ(design.Flags.LoadMoved, move);
    const double movedRatio = (design.FormCLC ? limit : 1 / limit);
    EXPECT_NEAR(design.RLoad / design.RSource / (move ? movedRatio : ratio), 1,
                move ? 1.001e-4 : 0);
    EXPECT_EQ(design.FormCLC, wantedLoad == design.RSource ? clc : wantedLoad < design.RSource);

    const double corner = std::cosh(std::acosh(1 / epsilon) / n);
    const double e2 = epsilon * epsilon;
    const double peak = DirectPower(design) * (n % 2 == 0 ? 1 + e2 : 1);
    for (double w = 0.03; w < 3; w *= 1.15) {
        const double x = w * corner;
        const double t = x <= 1 ? std::cos(n * std::acos(x)) : std::cosh(n * std::acosh(x));
        EXPECT_NEAR(PrototypeGain(design, w) * (1 + e2 * t * t) / peak, 1, 1e-11)
            << ratio << " n " << n << " w " << w << " ripple " << design.RippleDb;
    }
}

TEST(PrototypeComputed, ChebyshevResponseForAllTerminations) {
    for (double ratio : loadRatios) {
        for (int n = 1; n <= MaxPoles; ++n) {
            for (bool clc : {true, false}) {
                for (double ripple : {0.001, 0.1, 1.0, 3.0}) {
                    FilterDesign design;
                    design.ResponseType = ResponseType::Chebyshev;
                    design.RippleDb = ripple;
                    design.RLoad = ratio * design.RSource;
                    design.FormCLC = clc;
                    CheckChebyshev(design, n);
                }
            }
        }
    }
}

TEST(PrototypeComputed, ChebyshevRippleIsClamped) {
    const double table[][2] = {{5, 3}, {3, 3}, {0, 0.001}, {-1, 0.001}, {NAN, 0.001}, {1e-4, 1e-4}};
    for (const auto& [given, used] : table) {
        FilterDesign design;
        design.ResponseType = ResponseType::Chebyshev;
        design.RippleDb = given;
        BuildPrototype(design, 5, {});
        EXPECT_EQ(design.RippleDb, used);
        EXPECT_NEAR(PrototypeGain(design, 1.0), 0.5, 1e-9) << given;
    }
}

TEST(PrototypeComputed, EvenChebyshevLoadInOhms) {
    // 0.2 dB: rho = (sqrt(e^2 + 1) - e)^2 = 1 / 1.5386 (Matthaei, Young and Jones).
    FilterDesign design;
    design.ResponseType = ResponseType::Chebyshev;
    design.RippleDb = 0.2;
    BuildPrototype(design, 4, {});
    EXPECT_NEAR(design.RLoad, 50 / 1.5386 * 0.9999, 2e-3);
}

TEST(PrototypeComputed, DirectCoupledCountsAsMatched) {
    for (ResponseType family : {ResponseType::Butterworth, ResponseType::Chebyshev}) {
        for (int n : {3, 4}) {
            FilterDesign matched, design;
            design.ResponseType = matched.ResponseType = family;
            design.PassType = matched.PassType = PassType::DirectCoupled;
            design.RLoad = 300;
            BuildPrototype(matched, n, {});
            BuildPrototype(design, n, {});
            EXPECT_EQ(design.G, matched.G);
            EXPECT_EQ(design.RLoad, 300);
            // Chebyshev takes its form from the terminations even here; Butterworth does not.
            EXPECT_EQ(design.Flags.FormForced, family == ResponseType::Chebyshev);
        }
    }
}

TEST(PrototypeDispatch, SlotsFollowTheForm) {
    for (bool clc : {true, false}) {
        FilterDesign design;
        design.ResponseType = ResponseType::Gauss;
        design.FormCLC = clc;
        BuildPrototype(design, 4, {});
        EXPECT_EQ(design.NumElements, 4);
        for (int k = 1; k <= 4; ++k) {
            const CircuitElement& slot = design.Elements[k];
            const bool capacitor = (k % 2 != 0) == clc;
            EXPECT_EQ(slot.Type, capacitor ? ElementType::ShuntCap : ElementType::SeriesInd);
            EXPECT_EQ(capacitor ? slot.V2 : slot.V1, design.G[k]);
            for (double unused : {capacitor ? slot.V1 : slot.V2, slot.V3, slot.V4}) {
                EXPECT_EQ(unused, UnusedValue);
            }
        }
        EXPECT_EQ(design.Elements[5].Type, ElementType::errorBitMap);
    }
}

TEST(PrototypeDispatch, FamiliesThatFallBack) {
    const struct {
        ResponseType Family;
        const char* Messages;
    } cases[] = {
        {ResponseType::CoefficientsFile, "Error|The file read failed. \n Defaulted to Butterworth"},
        {static_cast<ResponseType>(12), ""},
        {static_cast<ResponseType>(-4), ""}};
    for (const auto& c : cases) {
        FilterDesign design;
        design.ResponseType = c.Family;
        std::string messages;
        BuildPrototype(design, 3, [&](const std::string& caption, const std::string& text) {
            messages += caption + "|" + text;
        });
        EXPECT_EQ(messages, c.Messages);
        EXPECT_EQ(design.ResponseType, ResponseType::Butterworth);
        EXPECT_NEAR(design.Elements[2].V1, 2.0, 1e-15);
    }
}

TEST(PrototypeDispatch, CoefficientsFileRowIsTaken) {
    FilterDesign design;
    design.ResponseType = ResponseType::CoefficientsFile;
    design.CoefFileRead = true;
    design.CoefficientTable[3] = {0.5, 1.5, 2.5, 9.9};
    BuildPrototype(design, 3, {});
    EXPECT_EQ(design.ResponseType, ResponseType::CoefficientsFile);
    EXPECT_EQ(design.Elements[1].V2, 0.5);
    EXPECT_EQ(design.Elements[2].V1, 1.5);
    EXPECT_EQ(design.Elements[3].V2, 2.5);
    EXPECT_EQ(design.G[4], 0);
}

TEST(PrototypeDispatch, EmptyLadders) {
    for (int code = 7; code <= 11; ++code) {
        FilterDesign design;
        design.ResponseType = static_cast<ResponseType>(code);
        design.NumElements = 5;
        BuildPrototype(design, 3, {});
        EXPECT_EQ(design.NumElements, 0);
        EXPECT_EQ(design.Flags.Missing, MissingStage::EllipticPrototype);
        EXPECT_EQ(design.Elements[1].Type, ElementType::errorBitMap);
    }
    for (int n : {-1, 0, NumSlots}) {
        FilterDesign design;
        BuildPrototype(design, n, {});
        EXPECT_EQ(design.NumElements, 0);
    }
}

}  // namespace
}  // namespace ladderwise
