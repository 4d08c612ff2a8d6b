// The prototypes against published values and the functions that define their families, and the
// dispatch from family to ladder slots.
#include <gtest/gtest.h>

#include "prototypes/Prototype.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

FilterDesign Build(ResponseType family, int n, FilterDesign design = {}) {
    design.ResponseType = family;
    BuildPrototype(design, n, {});
    return design;
}

/// 4t / (1 + t)^2: the share of the available power that a direct connection lets through.
double DirectPower(const FilterDesign& design) {
    const double t = design.RLoad / design.RSource;
    return 4 * t / ((1 + t) * (1 + t));
}

/// Largest |gain x loss - 1| over pass band and stop band; loss(w) is 1 / |H|^2 of the family.
template <typename Loss>
double WorstError(const FilterDesign& design, const Loss& loss) {
    double worst = 0;
    for (double w = 0.03; w < 3; w *= 1.15)
        worst = std::max(worst, std::abs(PrototypeGain(design, w) * loss(w) - 1));
    return worst;
}

// |H|^2 = P / (1 + w^2n) and P / (1 + e^2 T_n(w cosh(acosh(1 / e) / n))^2) at any termination.
TEST(Prototypes, ButterworthAndChebyshevForAllTerminations) {
    for (const double ratio : {1.0, 0.999, 1.001, 0.5, 2.0, 0.1, 10.0, 0.01, 100.0})
        for (int n = 1; n <= MaxPoles; ++n)
            for (const bool clc : {true, false})
                for (const double ripple : {0.0, 0.001, 0.1, 1.0, 3.0}) {  // 0: Butterworth
                    SCOPED_TRACE(testing::Message() << ratio << " n " << n << " " << ripple);
                    FilterDesign given;
                    given.RLoad = ratio * given.RSource;
                    given.FormCLC = clc;
                    given.RippleDb = ripple;
                    const bool odd = n % 2 != 0, butterworth = ripple == 0.0;
                    const FilterDesign design = Build(ResponseType(butterworth ? 0 : 1), n, given);
                    // A load above the source needs an element at the load end that shunts it; a
                    // Chebyshev starts with a capacitor when the load is below the source.
                    const bool form = ratio == 1.0  ? clc
                                      : butterworth ? (ratio > 1) == odd
                                                    : ratio < 1;
                    EXPECT_EQ(design.FormCLC, form);
                    EXPECT_EQ(design.Flags.FormForced, form != clc);
                    const double e2 = std::pow(10.0, ripple / 10) - 1, e = std::sqrt(e2);
                    const double limit = std::pow(std::sqrt(e2 + 1) - e, 2);
                    const bool move = !butterworth && !odd && std::min(ratio, 1 / ratio) >= limit;
                    EXPECT_EQ(design.Flags.LoadMoved, move);
                    const double load =
                        move ? (form ? limit * 0.9999 : 1 / (limit * 0.9999)) : ratio;
                    EXPECT_NEAR(design.RLoad / design.RSource / load, 1, 1e-11);
                    const double peak = DirectPower(design) * (odd ? 1 : 1 + e2);
                    const double corner = std::cosh(std::acosh(1 / e) / n);
                    const auto loss = [&](double w) {
                        if (butterworth) return (1 + std::pow(w, 2 * n)) / DirectPower(design);
                        const double x = w * corner;
                        const double t =
                            x <= 1 ? std::cos(n * std::acos(x)) : std::cosh(n * std::acosh(x));
                        return (1 + e2 * t * t) / peak;
                    };
                    ASSERT_LT(WorstError(design, loss), 1e-11);
                }
}

TEST(Prototypes, DirectCoupledFiltersAreMatchedWhateverTheLoad) {
    for (const ResponseType family : {ResponseType::Butterworth, ResponseType::Chebyshev})
        for (const int n : {3, 4}) {
            FilterDesign matched;
            matched.PassType = PassType::DirectCoupled;
            FilterDesign given = matched;
            given.RLoad = 300;
            const FilterDesign design = Build(family, n, given);
            EXPECT_EQ(design.G, Build(family, n, matched).G);
            EXPECT_EQ(design.RLoad, 300);
            // A Chebyshev takes its form from the terminations even here.
            EXPECT_EQ(design.Flags.FormForced, family == ResponseType::Chebyshev);
        }
    // Matthaei, Young and Jones, "Microwave Filters", table 4.05-2(a): 0.2 dB, 4 poles, ripple edge
    // at 1 rad/s.
    FilterDesign given;
    given.PassType = PassType::DirectCoupled;
    given.RippleDb = 0.2;
    const double corner = std::cosh(std::acosh(1 / std::sqrt(std::pow(10.0, 0.02) - 1)) / 4);
    const FilterDesign design = Build(ResponseType::Chebyshev, 4, given);
    for (const auto& [k, g] : {std::pair{1, 1.3028}, {2, 1.2844}, {3, 1.9761}, {4, 0.8468}})
        EXPECT_NEAR(design.G[k] / corner, g, 1.5e-4);
}

TEST(Prototypes, ChebyshevRippleIsClamped) {
    const double table[][2] = {{5, 3}, {3, 3}, {0, 0.001}, {-1, 0.001}, {NaN, 0.001}, {1e-4, 1e-4}};
    for (const auto& [typed, used] : table) {
        FilterDesign given;
        given.RippleDb = typed;
        const FilterDesign design = Build(ResponseType::Chebyshev, 5, given);
        EXPECT_EQ(design.RippleDb, used);
        EXPECT_NEAR(PrototypeGain(design, 1.0), 0.5, 1e-9) << typed;
    }
}

/// The argument at which an increasing loss reaches 2.
template <typename Loss>
double HalfPowerPoint(const Loss& loss) {
    double low = 0, high = 20;
    for (int i = 0; i < 100; ++i) {
        const double middle = (low + high) / 2;
        (loss(middle) > 2 ? high : low) = middle;
    }
    return low;
}

// |theta_n(j w) / theta_n(0)|^2 of the reverse Bessel polynomial
// theta_k = (2k - 1) theta_(k-1) + s^2 theta_(k-2).
double BesselLoss(int n, double w) {
    const Complex s(0, w);
    Complex previous = 1, theta = 1.0 + s;
    double atZero = 1;
    for (int k = 2; k <= n; ++k) {
        previous = std::exchange(theta, (2.0 * k - 1) * theta + s * s * previous);
        atZero *= 2 * k - 1;
    }
    return std::norm(theta) / (atZero * atZero);
}

TEST(PrototypeTables, FamiliesFollowTheirFunctions) {
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE(n);
        // The rows of order 8 to 10 carry fewer correct digits than they print.
        const double tolerance = n == 10 ? 2e-3 : n >= 8 ? 2e-6 : 1e-8;
        const double corner = HalfPowerPoint([n](double w) { return BesselLoss(n, w); });
        const FilterDesign delay = Build(ResponseType::BesselDelay, n);
        EXPECT_LT(WorstError(Build(ResponseType::BesselFreq, n),
                             [=](double w) { return BesselLoss(n, w * corner); }),
                  tolerance);
        EXPECT_LT(WorstError(delay, [=](double w) { return BesselLoss(n, w); }), tolerance);
        // A Gaussian magnitude is the exponential series cut after n terms, 3 dB at 1 rad/s.
        const auto series = [n](double x) {
            double sum = 1, term = 1;
            for (int k = 1; k <= n; ++k)
                sum += term *= x / k;
            return sum;
        };
        const double scale = HalfPowerPoint(series);
        EXPECT_LT(WorstError(Build(ResponseType::Gauss, n),
                             [&](double w) { return series(scale * w * w); }),
                  1e-3);
        const FilterDesign linear = Build(ResponseType::LinearChebyshev, n);
        EXPECT_NEAR(PrototypeGain(linear, 1.0), 0.5, 5e-5);
        const double papoulis = PrototypeGain(Build(ResponseType::Papoulis, n), 1.0);
        EXPECT_EQ(std::abs(papoulis - 0.5) < 1e-6, n != 3);  // see below
    }
}

// Polynomials L_n(w^2) of the steepest monotonic filters: Papoulis, Proc. IRE 46 (1958), 606-609;
// Fukada, IRE Trans. CT-6 (1959), 277-281. Coefficients of w^2, w^4, ...
TEST(PrototypeTables, PapoulisFollowsItsPolynomials) {
    const std::vector<double> polynomials[] = {{0, 3, -8, 6},
                                               {1, -8, 28, -40, 20},
                                               {0, 6, -40, 105, -120, 50},
                                               {1, -15, 105, -355, 615, -525, 175}};
    for (const auto& p : polynomials) {
        const auto loss = [&p](double w) {
            double sum = 0;
            for (std::size_t k = p.size(); k-- > 0;)
                sum = (sum + p[k]) * w * w;
            return 1 + sum;
        };
        EXPECT_LT(WorstError(Build(ResponseType::Papoulis, int(p.size())), loss), 5e-6);
    }
    const FilterDesign three = Build(ResponseType::Papoulis, 3);  // takes the four-pole row
    const FilterDesign four = Build(ResponseType::Papoulis, 4);
    EXPECT_EQ(three.G, four.G);
    EXPECT_EQ(three.NumElements, 3);
}

TEST(PrototypeDispatch, FamiliesThatFallBackAndTheFilesRow) {
    FilterDesign given;
    for (const int code : {13, 12, -4}) {
        Recorder recorder;
        FilterDesign design;
        design.ResponseType = static_cast<ResponseType>(code);
        BuildPrototype(design, 3, recorder.Report());
        EXPECT_EQ(recorder.Messages.size(), code == 13 ? 1u : 0u);
        for (const std::string& message : recorder.Messages)
            EXPECT_EQ(message, "Error: The file read failed. \n Defaulted to Butterworth");
        EXPECT_EQ(design.ResponseType, ResponseType::Butterworth);
        EXPECT_NEAR(design.Elements[2].V1, 2.0, 1e-15);
    }
    given.CoefFileRead = true;
    given.FormCLC = false;
    given.CoefficientTable[3] = {0.5, 1.5, 2.5, 9.9};
    const FilterDesign design = Build(ResponseType::CoefficientsFile, 3, given);
    EXPECT_EQ(design.ResponseType, ResponseType::CoefficientsFile);
    EXPECT_EQ(design.Elements[1].V1, 0.5);
    EXPECT_EQ(design.Elements[2].V2, 1.5);
    EXPECT_EQ(design.Elements[3].V1, 2.5);
    EXPECT_EQ(design.G[4], 0);
}

TEST(PrototypeDispatch, EmptyLadders) {
    for (int code = 7; code <= 11; ++code) {
        const FilterDesign design = Build(static_cast<ResponseType>(code), 3);
        EXPECT_EQ(design.NumElements, 0);
        EXPECT_EQ(design.Flags.Missing, MissingStage::EllipticPrototype);
        EXPECT_EQ(design.Elements[1].Type, ElementType::errorBitMap);
    }
    for (const int n : {-1, 0, NumSlots})
        for (const ResponseType family : {ResponseType::Butterworth, ResponseType::Gauss})
            EXPECT_EQ(Build(family, n).NumElements, 0);
}

}  // namespace
}  // namespace ladderwise
