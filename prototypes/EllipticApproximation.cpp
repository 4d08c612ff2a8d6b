// Closed sums for one or two zeros at infinity, a Newton iteration for three; root searches along
// the real and the imaginary axis of z, and a path from there to each natural mode.
#include "prototypes/EllipticApproximation.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace ladderwise {

namespace {

using Complex = std::complex<double>;
using std::numbers::pi;

/// e of a loss of `db` decibels: the loss is 1 + e^2.
double LossFactor(double db) {
    return std::sqrt(std::expm1(db * std::numbers::ln10 / 10));
}

double ArithmeticGeometricMean(double a, double b) {
    while (std::abs(a - b) > 1e-15 * a) {
        const double mean = (a + b) / 2;
        b = std::sqrt(a * b);
        a = mean;
    }
    return a;
}

/// A function's value and derivative at one place.
struct Slope {
    double Value = 0;
    double Derivative = 0;
};

/// The root of the increasing function f (giving a Slope) between low and high, to the last bits:
/// Newton's steps as long as they stay inside and halve, else bisection.
template <typename Function>
double FindRoot(double low, double high, const Function& f) {
    double x = low + (high - low) / 2;
    double step = high - low;
    for (;;) {
        const Slope at = f(x);
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

/// Traps of the equal-minima function of order n (odd, or even with one pair of zeros moved to
/// infinity), e/e_s = k1. They are dn(u K', k')-values, which in the nome of k1 are the fast sums
/// S(u) = sum over all integers i of sech(lambda (u - 2 i)).
std::vector<double> EqualMinimaTraps(int n, double k1) {
    const double complement = std::sqrt((1 - k1) * (1 + k1));
    const double lambda =
        pi * n / 2 * ArithmeticGeometricMean(1, k1) / ArithmeticGeometricMean(1, complement);
    const auto sum = [lambda](double u) {
        double total = 1 / std::cosh(lambda * u);
        for (int i = 1;; ++i) {
            const double pair =
                1 / std::cosh(lambda * (2 * i - u)) + 1 / std::cosh(lambda * (2 * i + u));
            total += pair;
            if (!(pair > 1e-18 * total)) return total;
        }
    };
    const double first = n % 2 == 0 ? 1.0 / n : 0.0;
    std::vector<double> traps((n - 1) / 2);
    for (int i = 0; i < static_cast<int>(traps.size()); ++i)
        traps[i] = sum(first + 2.0 * (i + 1) / n) / sum(first);
    return traps;
}

// Traps for any number of zeros at infinity, in g = -ln m: the attenuation measure is then
//   A(g) = -sum ln tanh(|g - g_i| / 2) - n_inf/2 ln tanh(g / 2),
// poles at the g_i, one minimum below each.

double Attenuation(const std::vector<double>& traps, int zerosAtInfinity, double g) {
    double sum = -zerosAtInfinity / 2.0 * std::log(std::tanh(g / 2));
    for (const double trap : traps)
        sum -= std::log(std::tanh(std::abs(g - trap) / 2));
    return sum;
}

/// The minimum below each trap.
std::vector<double> MinimaBelow(const std::vector<double>& traps, int zerosAtInfinity) {
    std::vector<double> minima(traps.size());
    for (size_t i = 0; i < traps.size(); ++i)
        minima[i] = FindRoot(i == 0 ? 0.0 : traps[i - 1], traps[i], [&](double t) {
            Slope slope{};
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
std::vector<double> Solve(std::vector<std::vector<double>> rows) {
    const size_t n = rows.size();
    for (size_t k = 0; k < n; ++k) {
        const auto pivot = std::max_element(
            rows.begin() + k, rows.end(),
            [k](const auto& a, const auto& b) { return std::abs(a[k]) < std::abs(b[k]); });
        std::swap(rows[k], *pivot);
        for (size_t i = k + 1; i < n; ++i) {
            const double factor = rows[i][k] / rows[k][k];
            for (size_t j = k; j <= n; ++j)
                rows[i][j] -= factor * rows[k][j];
        }
    }
    std::vector<double> x(n);
    for (size_t i = n; i-- > 0;) {
        x[i] = rows[i][n];
        for (size_t j = i + 1; j < n; ++j)
            x[i] -= rows[i][j] * x[j];
        x[i] /= rows[i][i];
    }
    return x;
}

/// Moves the traps by `step`, halved until no gap between neighbours (and to 0) shrinks below 30 %.
void MoveTraps(std::vector<double>& traps, const std::vector<double>& step) {
    constexpr double leastGapKept = 0.3;
    const auto keepsGaps = [&](double share) {
        double last = 0, lastMoved = 0;
        for (size_t i = 0; i < traps.size(); ++i) {
            const double moved = traps[i] + share * step[i];
            if (moved - lastMoved < leastGapKept * (traps[i] - last)) return false;
            last = traps[i];
            lastMoved = moved;
        }
        return true;
    };
    double share = 1;
    while (share > 0 && !keepsGaps(share))
        share /= 2;
    for (size_t i = 0; i < traps.size(); ++i)
        traps[i] += share * step[i];
}

/// Newton iteration from `traps` to the ones whose minima all equal `valley`: moving trap j by d
/// lifts the minimum at t_i by d / sinh(t_i - g_j).
std::vector<double> BalanceTraps(std::vector<double> traps, int zerosAtInfinity, double valley) {
    constexpr int mostPasses = 5000;
    constexpr double exact = 1e-14;   // of valley: as good as it gets
    constexpr double settled = 1e-9;  // of valley: good once it no longer improves
    for (double& trap : traps)
        trap = -std::log(trap);
    double lastError = std::numeric_limits<double>::infinity();
    for (int pass = 0; pass < mostPasses; ++pass) {
        const std::vector<double> minima = MinimaBelow(traps, zerosAtInfinity);
        std::vector<std::vector<double>> rows;
        double error = 0;
        for (const double t : minima) {
            std::vector<double> row;
            for (const double trap : traps)
                row.push_back(1 / std::sinh(t - trap));
            row.push_back(valley - Attenuation(traps, zerosAtInfinity, t));
            error = std::max(error, std::abs(row.back()));
            rows.push_back(std::move(row));
        }
        if (!(error >= exact * valley) || (error < settled * valley && error >= lastError)) break;
        lastError = error;
        MoveTraps(traps, Solve(std::move(rows)));
    }
    for (double& trap : traps)
        trap = std::exp(-trap);
    return traps;
}

/// Theta(z) = n_inf/2 ln((1 + z)/(1 - z)) + sum ln((m_i + z)/(m_i - z)) less `target`. The branch
/// of the logarithms is the one nearest to the target.
Complex ThetaError(const EllipticApproximation& made, Complex z, Complex target) {
    const double radius2 = std::norm(z);
    // (m + z)/(m - z) = (m^2 - |z|^2 + 2 j m Im z) / |m - z|^2
    const auto ratio = [z, radius2](double m) {
        return Complex(m * m - radius2, 2 * m * z.imag()) / std::norm(m - z);
    };
    const auto log = [](Complex value) {
        return Complex(std::log(std::norm(value)) / 2, std::arg(value));
    };
    Complex product = 1;
    for (const double m : made.Traps)
        product *= ratio(m);
    const Complex error = made.ZerosAtInfinity / 2.0 * log(ratio(1)) + log(product) - target;
    return {error.real(), std::remainder(error.imag(), 2 * pi)};
}

/// z dTheta/dz, the derivative by ln z.
Complex ThetaSlope(const EllipticApproximation& made, Complex z) {
    const Complex z2 = z * z;
    const auto inverse = [](Complex value) { return std::conj(value) / std::norm(value); };
    Complex sum = static_cast<double>(made.ZerosAtInfinity) * inverse(1.0 - z2);
    for (const double m : made.Traps)
        sum += 2 * m * inverse(m * m - z2);
    return z * sum;
}

}  // namespace

EllipticApproximation ApproximateElliptic(int traps, int zerosAtInfinity, double rippleDb,
                                          double attenDb) {
    EllipticApproximation made;
    made.ZerosAtInfinity = zerosAtInfinity;
    made.Epsilon = LossFactor(rippleDb);
    const double k1 = made.Epsilon / LossFactor(attenDb);
    made.ModeLevel = std::asinh(1 / made.Epsilon);
    made.CornerLevel = std::acosh(1 / made.Epsilon);
    made.ValleyLevel = std::acosh(1 / k1);
    if (zerosAtInfinity == 2) {
        made.Traps = EqualMinimaTraps(2 * traps + 2, k1);
    } else {
        made.Traps = EqualMinimaTraps(2 * traps + 1, k1);
        if (zerosAtInfinity > 2)
            made.Traps = BalanceTraps(made.Traps, zerosAtInfinity, made.ValleyLevel);
    }
    return made;
}

double EdgeAtLevel(const EllipticApproximation& made, double level) {
    const double nearest = made.Traps.back();
    return nearest * FindRoot(0, 1, [&](double q) {
               const double z = q * nearest;
               Slope area{made.ZerosAtInfinity * std::atanh(z) - level,
                          made.ZerosAtInfinity * nearest / ((1 - z) * (1 + z))};
               for (const double m : made.Traps) {
                   area.Value += 2 * std::atanh(z / m);
                   area.Derivative += 2 * m * nearest / ((m - z) * (m + z));
               }
               return area;
           });
}

// n_inf atan(y) + 2 sum atan(y / m_i) = (k + 1/2) pi.
std::vector<double> ReflectionZeros(const EllipticApproximation& made) {
    constexpr double farthest = 50;  // of |ln y|; zeros lie within a few units of the traps
    std::vector<double> zeros(made.Order() / 2);
    for (size_t k = 0; k < zeros.size(); ++k)
        zeros[k] = std::exp(FindRoot(-farthest, farthest, [&](double logY) {
            const double y = std::exp(logY);
            Slope angle{made.ZerosAtInfinity * std::atan(y) - (k + 0.5) * pi,
                        made.ZerosAtInfinity * y / (1 + y * y)};
            for (const double m : made.Traps) {
                angle.Value += 2 * std::atan(y / m);
                angle.Derivative += 2 * m * y / (m * m + y * y);
            }
            return angle;
        }));
    return zeros;
}

// Theta(z) = a + j (k + 1/2) pi, followed in ln z from the reflection zero, where Theta has no real
// part.
Complex NaturalMode(const EllipticApproximation& made, double y, int k) {
    constexpr int steps = 40;
    constexpr int corrections = 2;
    constexpr int lastCorrections = 12;
    const double step = made.ModeLevel / steps;
    Complex w(std::log(y), pi / 2);
    for (int i = 1; i <= steps; ++i) {
        w += step / ThetaSlope(made, std::exp(w));
        const Complex target(i * step, (k + 0.5) * pi);
        for (int j = 0; j < (i == steps ? lastCorrections : corrections); ++j) {
            const Complex z = std::exp(w);
            w -= ThetaError(made, z, target) / ThetaSlope(made, z);
        }
    }
    return std::exp(w);
}

double RealNaturalMode(const EllipticApproximation& made) {
    if (made.Order() % 2 == 0) return 0;
    const double q = FindRoot(0, 1, [&](double z) {  // the mode lies at 1/z
        Slope area{made.ZerosAtInfinity * std::atanh(z) - made.ModeLevel,
                   made.ZerosAtInfinity / ((1 - z) * (1 + z))};
        for (const double m : made.Traps) {
            area.Value += 2 * std::atanh(z * m);
            area.Derivative += 2 * m / ((1 - z * m) * (1 + z * m));
        }
        return area;
    });
    return q / std::sqrt((1 - q) * (1 + q));
}

}  // namespace ladderwise
