// Closed sums for one or two zeros at infinity, a Newton iteration for three; root searches along
// the real and the imaginary axis of z, and a path from there to each natural mode.
#include "prototypes/EllipticApproximation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace ladderwise {

namespace {

constexpr EllipticReal pi = std::numbers::pi_v<EllipticReal>;
constexpr EllipticReal epsilon = std::numeric_limits<EllipticReal>::epsilon();

/// e of a loss of `db` decibels: the loss is 1 + e^2.
EllipticReal LossFactor(double db) {
    return std::sqrt(std::expm1(db * std::numbers::ln10_v<EllipticReal> / 10));
}

EllipticReal ArithmeticGeometricMean(EllipticReal a, EllipticReal b) {
    while (std::abs(a - b) > 4 * epsilon * a) {
        const EllipticReal mean = (a + b) / 2;
        b = std::sqrt(a * b);
        a = mean;
    }
    return a;
}

/// A function's value and derivative at one place.
template <typename Real>
struct Slope {
    Real Value = 0;
    Real Derivative = 0;
};

/// The numbers in double precision, for the searches.
std::vector<double> Rounded(const std::vector<EllipticReal>& values) {
    return {values.begin(), values.end()};
}

/// The root of the increasing function f (giving a Slope) between low and high, to the last bits:
/// Newton's steps as long as they stay inside and halve, else bisection.
template <typename Function>
double FindRoot(double low, double high, const Function& f) {
    double x = low + (high - low) / 2;
    double step = high - low;
    for (;;) {
        const Slope<double> at = f(x);
        (at.Value < 0 ? low : high) = x;
        double next = x - at.Value / at.Derivative;
        if (!(low < next && next < high && std::abs(next - x) < step / 2))
            next = low + (high - low) / 2;
        if (!(low < next && next < high)) return x;
        step = std::abs(next - x);
        if (step <= std::numeric_limits<double>::epsilon() / 2 * std::abs(next)) return next;
        x = next;
    }
}

/// Newton's steps double the digits: after one below this share of the root the next is in vain.
constexpr EllipticReal lastStep = 1e-11L;
constexpr int mostLastSteps = 4;

/// The root of f(traps, x), increasing in x: found in double precision, then finished.
template <typename Function>
EllipticReal FindRoot(const std::vector<EllipticReal>& traps, double low, double high,
                      const Function& f) {
    const std::vector<double> rounded = Rounded(traps);
    EllipticReal x = FindRoot(low, high, [&](double at) { return f(rounded, at); });
    for (int i = 0; i < mostLastSteps; ++i) {
        const Slope<EllipticReal> at = f(traps, x);
        const EllipticReal step = at.Value / at.Derivative;
        if (!(std::abs(step) < std::sqrt(lastStep) * std::abs(x))) break;  // NaN; nothing to mend
        x -= step;
        if (std::abs(step) < lastStep * std::abs(x)) break;
    }
    return x;
}

/// Traps of the equal-minima function of order n (odd, or even with one pair of zeros moved to
/// infinity), e/e_s = k1. They are dn(u K', k')-values, which in the nome of k1 are the fast sums
/// S(u) = sum over all integers i of sech(lambda (u - 2 i)).
std::vector<EllipticReal> EqualMinimaTraps(int n, EllipticReal k1) {
    const EllipticReal complement = std::sqrt((1 - k1) * (1 + k1));
    const EllipticReal lambda =
        pi * n / 2 * ArithmeticGeometricMean(1, k1) / ArithmeticGeometricMean(1, complement);
    const auto sum = [lambda](EllipticReal u) {
        EllipticReal total = 1 / std::cosh(lambda * u);
        for (int i = 1;; ++i) {
            const EllipticReal pair =
                1 / std::cosh(lambda * (2 * i - u)) + 1 / std::cosh(lambda * (2 * i + u));
            total += pair;
            if (!(pair > epsilon / 64 * total)) return total;
        }
    };
    const EllipticReal first = n % 2 == 0 ? EllipticReal(1) / n : 0;
    const EllipticReal farthest = sum(first);
    std::vector<EllipticReal> traps((n - 1) / 2);
    for (int i = 0; i < static_cast<int>(traps.size()); ++i)
        traps[i] = sum(first + EllipticReal(2 * (i + 1)) / n) / farthest;
    return traps;
}

// Traps for any number of zeros at infinity, in g = -ln m: the attenuation measure is then
//   A(g) = -sum ln tanh(|g - g_i| / 2) - n_inf/2 ln tanh(g / 2),
// poles at the g_i, one minimum below each.

template <typename Real>
Real Attenuation(const std::vector<Real>& traps, int zerosAtInfinity, Real g) {
    Real sum = -zerosAtInfinity / Real(2) * std::log(std::tanh(g / 2));
    for (const Real trap : traps)
        sum -= std::log(std::tanh(std::abs(g - trap) / 2));
    return sum;
}

/// The minimum below each trap, to double precision: where the slope vanishes that is enough.
std::vector<double> MinimaBelow(const std::vector<double>& traps, int zerosAtInfinity) {
    std::vector<double> minima(traps.size());
    for (size_t i = 0; i < traps.size(); ++i)
        minima[i] = FindRoot(i == 0 ? 0.0 : traps[i - 1], traps[i], [&](double t) {
            Slope<double> slope{};
            const auto add = [&](double weight, double distance) {
                const double sine = std::sinh(distance);
                slope.Value -= weight / sine;
                slope.Derivative += weight * std::sqrt(1 + sine * sine) / (sine * sine);
            };
            add(zerosAtInfinity / 2.0, t);
            for (const double trap : traps)
                add(1, t - trap);
            return slope;
        });
    return minima;
}

/// Solves M x = b in place by elimination with partial pivoting; row i of M ends in b[i].
template <typename Real>
std::vector<Real> Solve(std::vector<std::vector<Real>> rows) {
    const size_t n = rows.size();
    for (size_t k = 0; k < n; ++k) {
        const auto pivot = std::max_element(
            rows.begin() + k, rows.end(),
            [k](const auto& a, const auto& b) { return std::abs(a[k]) < std::abs(b[k]); });
        std::swap(rows[k], *pivot);
        for (size_t i = k + 1; i < n; ++i) {
            const Real factor = rows[i][k] / rows[k][k];
            for (size_t j = k; j <= n; ++j)
                rows[i][j] -= factor * rows[k][j];
        }
    }
    std::vector<Real> x(n);
    for (size_t i = n; i-- > 0;) {
        x[i] = rows[i][n];
        for (size_t j = i + 1; j < n; ++j)
            x[i] -= rows[i][j] * x[j];
        x[i] /= rows[i][i];
    }
    return x;
}

/// Moves the traps by `step`, halved until no gap between neighbours (and to 0) shrinks below 30 %.
template <typename Real>
void MoveTraps(std::vector<Real>& traps, const std::vector<Real>& step) {
    constexpr Real leastGapKept = Real(0.3);
    const auto keepsGaps = [&](Real share) {
        Real last = 0, lastMoved = 0;
        for (size_t i = 0; i < traps.size(); ++i) {
            const Real moved = traps[i] + share * step[i];
            if (moved - lastMoved < leastGapKept * (traps[i] - last)) return false;
            last = traps[i];
            lastMoved = moved;
        }
        return true;
    };
    Real share = 1;
    while (share > 0 && !keepsGaps(share))
        share /= 2;
    for (size_t i = 0; i < traps.size(); ++i)
        traps[i] += share * step[i];
}

/// Newton iteration from `traps` (as g) to the ones whose minima all equal `valley`: moving trap j
/// by d lifts the minimum at t_i by d / sinh(t_i - g_j).
template <typename Real>
void BalanceTraps(std::vector<Real>& traps, int zerosAtInfinity, Real valley) {
    constexpr int mostPasses = 5000;
    constexpr Real exact = 50 * std::numeric_limits<Real>::epsilon();  // of valley: as good as can
    constexpr Real settled = Real(1e-9);  // of valley: good once it no longer improves
    Real lastError = std::numeric_limits<Real>::infinity();
    for (int pass = 0; pass < mostPasses; ++pass) {
        const std::vector<double> minima =
            MinimaBelow({traps.begin(), traps.end()}, zerosAtInfinity);
        std::vector<std::vector<Real>> rows;
        Real error = 0;
        for (const double t : minima) {
            std::vector<Real> row;
            for (const Real trap : traps)
                row.push_back(1 / std::sinh(t - trap));
            row.push_back(valley - Attenuation(traps, zerosAtInfinity, Real(t)));
            error = std::max(error, std::abs(row.back()));
            rows.push_back(std::move(row));
        }
        if (!(error >= exact * valley) || (error < settled * valley && error >= lastError)) break;
        lastError = error;
        MoveTraps(traps, Solve(std::move(rows)));
    }
}

/// `traps` moved until all minima equal `valley`.
std::vector<EllipticReal> BalancedTraps(std::vector<EllipticReal> traps, int zerosAtInfinity,
                                        EllipticReal valley) {
    for (EllipticReal& trap : traps)
        trap = -std::log(trap);
    std::vector<double> searched = Rounded(traps);
    BalanceTraps(searched, zerosAtInfinity, static_cast<double>(valley));
    traps.assign(searched.begin(), searched.end());
    BalanceTraps(traps, zerosAtInfinity, valley);
    for (EllipticReal& trap : traps)
        trap = std::exp(-trap);
    return traps;
}

/// Theta(z) = n_inf/2 ln((1 + z)/(1 - z)) + sum ln((m_i + z)/(m_i - z)) less `target`. The branch
/// of the logarithms is the one nearest to the target.
template <typename Real>
std::complex<Real> ThetaError(const std::vector<Real>& traps, int zerosAtInfinity,
                              std::complex<Real> z, std::complex<Real> target) {
    using Complex = std::complex<Real>;
    const Real radius2 = std::norm(z);
    // (m + z)/(m - z) = (m^2 - |z|^2 + 2 j m Im z) / |m - z|^2
    const auto ratio = [z, radius2](Real m) {
        return Complex(m * m - radius2, 2 * m * z.imag()) / std::norm(m - z);
    };
    const auto log = [](Complex value) {
        return Complex(std::log(std::norm(value)) / 2, std::arg(value));
    };
    Complex product = 1;
    for (const Real m : traps)
        product *= ratio(m);
    const Complex error = zerosAtInfinity / Real(2) * log(ratio(1)) + log(product) - target;
    return {error.real(), std::remainder(error.imag(), 2 * std::numbers::pi_v<Real>)};
}

/// z dTheta/dz, the derivative by ln z.
template <typename Real>
std::complex<Real> ThetaSlope(const std::vector<Real>& traps, int zerosAtInfinity,
                              std::complex<Real> z) {
    using Complex = std::complex<Real>;
    const Complex z2 = z * z;
    const auto inverse = [](Complex value) { return std::conj(value) / std::norm(value); };
    Complex sum = static_cast<Real>(zerosAtInfinity) * inverse(Real(1) - z2);
    for (const Real m : traps)
        sum += 2 * m * inverse(m * m - z2);
    return z * sum;
}

/// ln z of natural mode k in double precision, followed from the reflection zero, where Theta has
/// no real part.
std::complex<double> FollowedMode(const std::vector<double>& traps, int zerosAtInfinity,
                                  double modeLevel, double logY, double angle) {
    constexpr int steps = 40;
    constexpr int corrections = 2;
    const double step = modeLevel / steps;
    std::complex<double> w(logY, std::numbers::pi / 2);
    for (int i = 1; i <= steps; ++i) {
        w += step / ThetaSlope(traps, zerosAtInfinity, std::exp(w));
        const std::complex<double> target(i * step, angle);
        for (int j = 0; j < corrections; ++j) {
            const std::complex<double> z = std::exp(w);
            w -= ThetaError(traps, zerosAtInfinity, z, target) /
                 ThetaSlope(traps, zerosAtInfinity, z);
        }
    }
    return w;
}

}  // namespace

EllipticApproximation ApproximateElliptic(int traps, int zerosAtInfinity, double rippleDb,
                                          double attenDb) {
    EllipticApproximation made;
    made.ZerosAtInfinity = zerosAtInfinity;
    made.Epsilon = LossFactor(rippleDb);
    const EllipticReal k1 = made.Epsilon / LossFactor(attenDb);
    made.ModeLevel = std::asinh(1 / made.Epsilon);
    made.CornerLevel = std::acosh(1 / made.Epsilon);
    made.ValleyLevel = std::acosh(1 / k1);
    if (zerosAtInfinity == 2) {
        made.Traps = EqualMinimaTraps(2 * traps + 2, k1);
    } else {
        made.Traps = EqualMinimaTraps(2 * traps + 1, k1);
        if (zerosAtInfinity > 2)
            made.Traps = BalancedTraps(made.Traps, zerosAtInfinity, made.ValleyLevel);
    }
    return made;
}

EllipticReal EdgeAtLevel(const EllipticApproximation& made, EllipticReal level) {
    const auto area = [&]<typename Real>(const std::vector<Real>& traps, Real q) {
        const Real nearest = traps.back();
        const Real z = q * nearest;
        Slope<Real> slope{made.ZerosAtInfinity * std::atanh(z) - static_cast<Real>(level),
                          made.ZerosAtInfinity * nearest / ((1 - z) * (1 + z))};
        for (const Real m : traps) {
            slope.Value += 2 * std::atanh(z / m);
            slope.Derivative += 2 * m * nearest / ((m - z) * (m + z));
        }
        return slope;
    };
    return made.Traps.back() * FindRoot(made.Traps, 0, 1, area);
}

// n_inf atan(y) + 2 sum atan(y / m_i) = (k + 1/2) pi.
std::vector<EllipticReal> ReflectionZeros(const EllipticApproximation& made) {
    constexpr double farthest = 50;  // of |ln y|; zeros lie within a few units of the traps
    std::vector<EllipticReal> zeros(made.Order() / 2);
    for (size_t k = 0; k < zeros.size(); ++k) {
        const auto excess = [&]<typename Real>(const std::vector<Real>& traps, Real logY) {
            const Real y = std::exp(logY);
            Slope<Real> angle{
                made.ZerosAtInfinity * std::atan(y) - (k + Real(0.5)) * std::numbers::pi_v<Real>,
                made.ZerosAtInfinity * y / (1 + y * y)};
            for (const Real m : traps) {
                angle.Value += 2 * std::atan(y / m);
                angle.Derivative += 2 * m * y / (m * m + y * y);
            }
            return angle;
        };
        zeros[k] = std::exp(FindRoot(made.Traps, -farthest, farthest, excess));
    }
    return zeros;
}

// Theta(z) = a + j (k + 1/2) pi.
EllipticComplex NaturalMode(const EllipticApproximation& made, EllipticReal y, int k) {
    constexpr int mostCorrections = 12;
    const EllipticComplex target(made.ModeLevel, (k + EllipticReal(0.5)) * pi);
    EllipticComplex w =
        FollowedMode(Rounded(made.Traps), made.ZerosAtInfinity, static_cast<double>(made.ModeLevel),
                     static_cast<double>(std::log(y)), static_cast<double>(target.imag()));
    for (int i = 0; i < mostCorrections; ++i) {
        const EllipticComplex z = std::exp(w);
        const EllipticComplex step = ThetaError(made.Traps, made.ZerosAtInfinity, z, target) /
                                     ThetaSlope(made.Traps, made.ZerosAtInfinity, z);
        w -= step;
        if (std::norm(step) < lastStep * lastStep) break;
    }
    return std::exp(w);
}

EllipticReal RealNaturalMode(const EllipticApproximation& made) {
    if (made.Order() % 2 == 0) return 0;
    const auto area = [&]<typename Real>(const std::vector<Real>& traps, Real z) {
        Slope<Real> slope{made.ZerosAtInfinity * std::atanh(z) - static_cast<Real>(made.ModeLevel),
                          made.ZerosAtInfinity / ((1 - z) * (1 + z))};  // the mode lies at 1/z
        for (const Real m : traps) {
            slope.Value += 2 * std::atanh(z * m);
            slope.Derivative += 2 * m / ((1 - z * m) * (1 + z * m));
        }
        return slope;
    };
    const EllipticReal q = FindRoot(made.Traps, 0, 1, area);
    return q / std::sqrt((1 - q) * (1 + q));
}

}  // namespace ladderwise
