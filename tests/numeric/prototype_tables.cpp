// The tabulated prototypes against the functions that define their families.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

#include "prototypes/Coefficients.h"
#include "prototypes/Prototype.h"
#include "tests/numeric/prototype_ladder.h"

namespace ladderwise {
namespace {

using judge::Complex;
using judge::PrototypeGain;

FilterDesign Build(ResponseType family, int n) {
    FilterDesign design;
    design.ResponseType = family;
    BuildPrototype(design, n, {});
    return design;
}

// Largest |gain x loss - 1| over the pass band and the first octave above it, where loss(w) is
// 1 / |H|^2 of the family.
template <typename Loss>
double WorstError(const FilterDesign& design, const Loss& loss) {
    double worst = 0;
    for (double w = 0.1; w < 2; w *= 1.05) {
        worst = std::max(worst, std::abs(PrototypeGain(design, w) * loss(w) - 1));
    }
    return worst;
}

// The argument at which an increasing loss reaches 2.
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
        const Complex next = (2.0 * k - 1) * theta + s * s * previous;
        previous = theta;
        theta = next;
        atZero *= 2 * k - 1;
    }
    return std::norm(theta) / (atZero * atZero);
}

// The rows of order 8 to 10 carry fewer correct digits than they print.
double BesselTolerance(int n) {
    return n == 10 ? 5e-4 : n >= 8 ? 5e-7 : 5e-9;
}

TEST(PrototypeTables, HalfPowerAtOneRadian) {
    const struct {
        ResponseType Family;
        double Tolerance;  // ten-digit and four-digit tables
    } cases[] = {{ResponseType::BesselFreq, 1e-7},
                 {ResponseType::Papoulis, 1e-6},
                 {ResponseType::Gauss, 5e-5},
                 {ResponseType::LinearChebyshev, 5e-5}};
    for (const auto& c : cases) {
        for (int n = 1; n <= MaxPoles; ++n) {
            if (c.Family == ResponseType::Papoulis && n == 3) continue;
            const bool poorRow = c.Family == ResponseType::BesselFreq && n == 10;
            EXPECT_NEAR(PrototypeGain(Build(c.Family, n), 1.0), 0.5, poorRow ? 1e-4 : c.Tolerance)
                << static_cast<int>(c.Family) << " n " << n;
        }
    }
}

TEST(PrototypeTables, BesselFollowsTheBesselPolynomials) {
    for (int n = 1; n <= MaxPoles; ++n) {
        const double halfPower = HalfPowerPoint([n](double w) { return BesselLoss(n, w); });
        const auto byFrequency = [=](double w) { return BesselLoss(n, w * halfPower); };
        const auto byDelay = [n](double w) { return BesselLoss(n, w); };
        const FilterDesign delay = Build(ResponseType::BesselDelay, n);
        EXPECT_LT(WorstError(Build(ResponseType::BesselFreq, n), byFrequency), BesselTolerance(n))
            << n;
        EXPECT_LT(WorstError(delay, byDelay), BesselTolerance(n)) << n;
        // Delay at zero frequency between equal terminations: half the sum of all g.
        double sum = 0;
        for (int k = 1; k <= n; ++k)
            sum += delay.G[k];
        EXPECT_NEAR(sum / 2, 1.0, BesselTolerance(n)) << n;
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
        const int n = static_cast<int>(p.size());
        const auto loss = [&p](double w) {
            double sum = 0;
            for (std::size_t k = p.size(); k-- > 0;)
                sum = (sum + p[k]) * w * w;
            return 1 + sum;
        };
        EXPECT_LT(WorstError(Build(ResponseType::Papoulis, n), loss), 2e-6) << n;
    }
}

TEST(PrototypeTables, ThreePolePapoulisTakesTheFourPoleRow) {
    const FilterDesign design = Build(ResponseType::Papoulis, 3);
    EXPECT_EQ(design.NumElements, 3);
    EXPECT_EQ(design.G[1], 1.5643787973);
    EXPECT_EQ(design.G[2], 1.958519286);
    EXPECT_EQ(design.G[3], 1.4768461419);
    EXPECT_EQ(design.G[4], 1.082681197);
}

// A Gaussian magnitude is the exponential series cut after n terms, scaled to 3 dB at 1 rad/s.
TEST(PrototypeTables, GaussFollowsTheExponentialSeries) {
    for (int n = 1; n <= MaxPoles; ++n) {
        const auto series = [n](double x) {
            double sum = 1, term = 1;
            for (int k = 1; k <= n; ++k)
                sum += term *= x / k;
            return sum;
        };
        const double scale = HalfPowerPoint(series);
        const auto loss = [&](double w) { return series(scale * w * w); };
        EXPECT_LT(WorstError(Build(ResponseType::Gauss, n), loss), 5e-4) << n;
    }
}

// Linear phase with equal ripple: up to the corner the phase stays within half a degree of a
// straight line through the origin.
TEST(PrototypeTables, LinearChebyshevPhaseRipplesByHalfADegree) {
    for (int n = 2; n <= MaxPoles; ++n) {
        FilterDesign design = Build(ResponseType::LinearChebyshev, n);
        design.RSource = design.RLoad = 1;
        std::vector<double> lag;  // at w = 0.01, 0.02, ... 1.00
        double total = 0;
        Complex last = 1;
        for (int i = 1; i <= 100; ++i) {
            const Complex h = judge::Transfer(design, 0.01 * i);
            total -= std::arg(h / last);
            last = h;
            lag.push_back(total);
        }
        double least = 1;
        for (double delay = 1.3; delay < 4.2; delay += 0.001) {
            double worst = 0;
            for (int i = 1; i <= 100; ++i) {
                worst = std::max(worst, std::abs(lag[i - 1] - delay * 0.01 * i));
            }
            least = std::min(least, worst);
        }
        EXPECT_NEAR(least * 180 / std::numbers::pi, 0.5, 0.06) << n;
    }
}

TEST(PrototypeTables, OtherOrdersAndFamiliesWriteNothing) {
    std::array<double, NumGValues> g;
    g.fill(7);
    const auto untouched = g;
    for (int n : {-1, 0, MaxPoles + 1})
        CopyCoefficients(ResponseType::Gauss, n, g);
    CopyCoefficients(ResponseType::Butterworth, 3, g);
    EXPECT_EQ(g, untouched);
}

}  // namespace
}  // namespace ladderwise
