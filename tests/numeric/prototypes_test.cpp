// The prototypes against the functions that define their families, and the dispatch from family to
// ladder slots. Then scaling, which must not change the response, only move it.
#include <gtest/gtest.h>

#include <utility>

#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"
#include "scaling/Protoscaler.h"
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

/// |p(jw)|^2 of the polynomial with coefficients c[0] + c[1] s + ...
double PowerAt(const std::vector<double>& c, double w) {
    Complex sum = 0.0;
    for (std::size_t k = c.size(); k-- > 0;)
        sum = sum * Complex(0.0, w) + c[k];
    return std::norm(sum);
}

/// The reverse Bessel polynomial, whose filter has a delay of 1 s: theta_n = (2n - 1) theta_(n - 1)
/// + s^2 theta_(n - 2). Thomson, "Delay networks having maximally flat frequency characteristics",
/// Proc. IEE 96 (1949).
std::vector<double> BesselPolynomial(int n) {
    std::vector<double> before = {1.0}, now = {1.0, 1.0};
    for (int k = 2; k <= n; ++k) {
        std::vector<double> next(now.size() + 1, 0.0);
        for (std::size_t i = 0; i < now.size(); ++i)
            next[i] = (2 * k - 1) * now[i];
        for (std::size_t i = 0; i < before.size(); ++i)
            next[i + 2] += before[i];
        before = std::exchange(now, next);
    }
    return now;
}

/// L_n(w^2), the steepest monotonic characteristic: the integral of v(x)^2 from -1 to 2 w^2 - 1,
/// times x + 1 for even n, scaled to L(1) = 1; v is a sum of Legendre polynomials P_i with weights
/// 2 i + 1, every other one for even n. Papoulis, "Optimum filters with monotonic response", Proc.
/// IRE 46 (1958), and Fukada, "Optimum filters of even orders with monotonic response", IRE Trans.
/// CT-6 (1959). Simpson's rule over 4000 steps is exact to 1e-13 for these polynomials.
double PapoulisLoss(int n, double w) {
    const int k = (n - 1) / 2;
    const auto density = [&](double x) {
        double p0 = 1.0, p1 = x, v = 0.0;
        for (int i = 0; i <= k; ++i) {
            if (n % 2 != 0 || (k - i) % 2 == 0) v += (2 * i + 1) * p0;
            const double p2 = ((2 * i + 3) * x * p1 - (i + 1) * p0) / (i + 2);
            p0 = std::exchange(p1, p2);
        }
        return v * v * (n % 2 != 0 ? 1.0 : x + 1.0);
    };
    const auto integral = [&](double end) {
        constexpr int steps = 4000;
        const double h = (end + 1.0) / steps;
        double sum = density(-1.0) + density(end);
        for (int i = 1; i < steps; ++i)
            sum += (i % 2 == 0 ? 2 : 4) * density(-1.0 + i * h);
        return sum * h / 3.0;
    };
    return 1.0 + integral(2.0 * w * w - 1.0) / integral(1.0);
}

// The tenth Bessel rows carry fewer correct digits than they print; a three-pole Papoulis takes the
// four-pole row.
TEST(Prototypes, BesselAndPapoulisFollowTheirPolynomials) {
    for (int n = 1; n <= MaxPoles; ++n) {
        SCOPED_TRACE(n);
        const std::vector<double> p = BesselPolynomial(n);
        double corner = 0.1;  // where the loss is 3 dB: bisection
        for (double step = 8.0; step > 1e-15; step /= 2)
            if (PowerAt(p, corner + step) < 2.0 * p[0] * p[0]) corner += step;
        const auto loss = [&](double w) { return PowerAt(p, w) / (p[0] * p[0]); };
        const double limit = n == 10 ? 1e-3 : 5e-7;
        EXPECT_LT(WorstError(Build(ResponseType::BesselDelay, n), loss), limit);
        EXPECT_LT(WorstError(Build(ResponseType::BesselFreq, n),
                             [&](double w) { return loss(w * corner); }),
                  limit);
        if (n == 3) continue;
        EXPECT_LT(WorstError(Build(ResponseType::Papoulis, n),
                             [n](double w) { return PapoulisLoss(n, w); }),
                  1e-6);
    }
    EXPECT_EQ(Build(ResponseType::Papoulis, 3).G, Build(ResponseType::Papoulis, 4).G);
}

// The two families without a closed form: 3 dB at 1 rad/s to the four decimals of their tables.
TEST(Prototypes, GaussAndLinearChebyshevAreThreeDbDown) {
    for (int n = 1; n <= MaxPoles; ++n)
        for (const ResponseType family : {ResponseType::Gauss, ResponseType::LinearChebyshev})
            EXPECT_NEAR(PrototypeGain(Build(family, n), 1.0), 0.5, 5e-5) << n;
}

TEST(PrototypeDispatch, FamiliesThatFallBackAndTheFilesRow) {
    for (const int code : {13, 12, -4}) {
        Recorder recorder;
        FilterDesign design;
        design.ResponseType = static_cast<ResponseType>(code);
        BuildPrototype(design, 3, recorder.Report());
        EXPECT_EQ(recorder.Messages.size(), code == 13 ? 1u : 0u);
        EXPECT_EQ(design.ResponseType, ResponseType::Butterworth);
        EXPECT_NEAR(design.Elements[2].V1, 2.0, 1e-15);
    }
    FilterDesign given;
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
    for (const int n : {-1, 0, NumSlots}) {
        EXPECT_EQ(Build(ResponseType::Gauss, n).NumElements, 0);
        EXPECT_EQ(Build(ResponseType::EllipticE, n).NumElements, 0);
    }
}

using enum ElementType;

/// Gain of the scaled ladder at f against that of the prototype at the frequency it came from.
template <typename Origin>
void ExpectMoved(const FilterDesign& prototype, void (*scale)(FilterDesign&),
                 const Origin& origin) {
    FilterDesign scaled = prototype;
    scale(scaled);
    for (double f = 0.0501e9; f < 0.3e9; f *= 1.037)
        EXPECT_NEAR(std::norm(AnalysePoint(scaled, scaled.F0, f).Transfer) /
                        PrototypeGain(prototype, std::abs(origin(f))),
                    1, 1e-9)
            << f;
    const CircuitElement& beyond = scaled.Elements[scaled.NumElements + 1];
    EXPECT_EQ(beyond.V1, UnusedValue);
    EXPECT_EQ(beyond.Type, errorBitMap);
}

// Five slots with every kind of prototype slot, then every elliptic family; a trap's form must not
// change its impedance.
TEST(Scaling, ResponsesKeepTheirShape) {
    std::mt19937 random(20240229);
    std::uniform_real_distribution<double> decade(-0.5, 0.5);
    for (int i = 0; i < 120; ++i) {
        SCOPED_TRACE(i);
        FilterDesign p = MakeDesign({{ShuntCap, UnusedValue, 1.2},
                                     {SeriesLC, std::pow(10, decade(random)), 0.4},
                                     {ShuntLC, 0.2, std::pow(10, decade(random))},
                                     {SeriesInd, 1.1, UnusedValue},
                                     {ShuntCap, UnusedValue, 0.8}});
        p.RSource = 75;
        p.RLoad = i % 2 == 0 ? 75 : 300;
        if (i >= 60) {
            p.Elements = {};
            p = Build(ResponseType(7 + i % 5), 1 + i % 9, p);
        }
        const double f0 = p.F0 = 120e6, bw = p.BandWidth = i % 3 == 0 ? 30e6 : 200e6;
        p.TrapType = i % 6;
        const int form = p.TrapType >= 1 && p.TrapType <= 4 ? p.TrapType - 1 : 0;
        const double centre2 = (f0 - bw / 2) * (f0 + bw / 2);
        ExpectMoved(p, ScaleLowPass, [=](double f) { return f / f0; });
        ExpectMoved(p, ScaleHighPass, [=](double f) { return f0 / f; });
        ExpectMoved(p, ScaleBandPass, [=](double f) { return (f - centre2 / f) / bw; });
        ExpectMoved(p, ScaleNotch, [=](double f) { return bw / (f - f0 * f0 / f); });
        if (i >= 60) continue;  // the slots below are those of the five
        constexpr ElementType series[] = {SerSerParLC, SeriesElliptic2, SeriesElliptic3,
                                          DualSeriesLC};
        constexpr ElementType shunt[] = {ShuntSerParLC, ShuntElliptic2, ShuntElliptic3,
                                         DualShuntLC};
        for (const auto scale : {ScaleBandPass, ScaleNotch}) {
            FilterDesign scaled = p;
            scale(scaled);
            EXPECT_EQ(scaled.Elements[2].Type, series[form]);
            EXPECT_EQ(scaled.Elements[3].Type, shunt[form]);
        }
    }
}

TEST(Scaling, OtherTypesAreLeftAlone) {
    for (const auto scale : {ScaleHighPass, ScaleBandPass, ScaleNotch}) {
        FilterDesign design = MakeDesign({{SeriesTLIN, 90, 50, 3, 4}});
        scale(design);
        EXPECT_EQ(design.Elements[1].Type, SeriesTLIN);
        EXPECT_EQ(design.Elements[1].V1, 90);
        EXPECT_EQ(design.Elements[1].V4, 4);
    }
}

}  // namespace
}  // namespace ladderwise
