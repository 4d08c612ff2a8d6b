// Butterworth and Chebyshev g-values by the recurrences for unequal terminations.
#include "prototypes/Mathfunctions.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

// How far inside the limit an even Chebyshev's load is moved, so that its transfer factor stays
// below 1. The second is 1 / 0.9999.
constexpr double loadBelowLimit = 0.9999;
constexpr double loadAboveLimit = 1.000100010001;

// j pi / (2n): half the angle between two poles of an n-th order filter, j times.
double HalfAngle(int j, int n) {
    return j * std::numbers::pi / (2 * n);
}

void SetForm(FilterDesign& design, bool formCLC) {
    if (design.FormCLC == formCLC) return;
    design.FormCLC = formCLC;
    design.Flags.FormForced = true;
}

void ClampRipple(FilterDesign& design) {
    if (!(design.RippleDb > 0.0)) design.RippleDb = SmallestRippleDb;
    if (design.RippleDb > LargestRippleDb) design.RippleDb = LargestRippleDb;
}

// An even Chebyshev of ripple factor epsilon loses the ripple at zero frequency, so its
// terminations must differ by at least the ratio rho = (sqrt(epsilon^2 + 1) - epsilon)^2 < 1.
void MoveEvenLoad(FilterDesign& design, double epsilon) {
    const double e2 = epsilon * epsilon;
    const double b = 4 * (e2 + 1) - 2;
    const double rho = (2 * e2 + 1) - GuardedSqrt(b * b - 4) / 2;
    if (design.FormCLC && design.RLoad / design.RSource >= rho) {
        design.RLoad = design.RSource * rho * loadBelowLimit;
        design.Flags.LoadMoved = true;
    } else if (!design.FormCLC && design.RSource / design.RLoad >= rho) {
        design.RLoad = design.RSource / rho * loadAboveLimit;
        design.Flags.LoadMoved = true;
    }
}

// Largest power transfer relative to a match: 4t / (t + 1)^2 at zero frequency, where an odd order
// has a peak and an even one a trough, epsilon^2 + 1 below the peaks.
double TransferFactor(const FilterDesign& design, int n, double epsilon) {
    if (design.PassType == PassType::DirectCoupled) return 1.0;
    const bool even = n % 2 == 0;
    const double t =
        even && !design.FormCLC ? design.RSource / design.RLoad : design.RLoad / design.RSource;
    const double peak = even ? epsilon * epsilon + 1 : 1.0;
    return peak * (4 * t) / ((t + 1) * (t + 1));
}

}  // namespace

void ButterworthPrototype(FilterDesign& design, int n) {
    auto& g = design.G;
    const double r =
        design.PassType == PassType::DirectCoupled ? 1.0 : design.RSource / design.RLoad;
    const double alpha = GuardedPow(r < 1 ? (1 - r) / (1 + r) : (r - 1) / (r + 1), 1.0 / n);
    const auto sine = [n](int j) { return std::sin(HalfAngle(j, n)); };
    const auto divisor = [n, alpha](int j) {
        return 1 - 2 * alpha * std::cos(HalfAngle(j, n)) + alpha * alpha;
    };

    g[1] = 2 * sine(1) / (1 - alpha);
    for (int m = 1; m <= n / 2; ++m) {
        g[2 * m] = 4 * sine(4 * m - 3) * sine(4 * m - 1) / divisor(4 * m - 2) / g[2 * m - 1];
        g[2 * m + 1] = 4 * sine(4 * m - 1) * sine(4 * m + 1) / divisor(4 * m) / g[2 * m];
    }
    std::reverse(g.begin() + 1, g.begin() + n + 1);

    // The recurrence yields one of two dual ladders, and the other has the inverse resistance
    // ratio: take the one whose ratio is r.
    const bool odd = n % 2 != 0;
    if (r < 1) SetForm(design, odd);
    if (r > 1) SetForm(design, !odd);

    // The values so far belong to a 1-ohm load: refer them to the 1-ohm source.
    for (int k = 1; k <= n; ++k) {
        const bool capacitor = (k % 2 != 0) == design.FormCLC;
        g[k] = capacitor ? r * g[k] : g[k] / r;
    }
}

void ChebyshevPrototype(FilterDesign& design, int n) {
    auto& g = design.G;
    if (design.RLoad < design.RSource) SetForm(design, true);
    if (design.RLoad > design.RSource) SetForm(design, false);
    ClampRipple(design);
    const double epsilon = GuardedSqrt(GuardedPow(10.0, 0.1 * design.RippleDb) - 1);
    const double e2 = epsilon * epsilon;
    if (n % 2 == 0 && design.PassType != PassType::DirectCoupled) MoveEvenLoad(design, epsilon);

    // Rounding may take the factor of a match a last bit above 1.
    const double loss = std::max(0.0, 1 - TransferFactor(design, n, epsilon)) / e2;
    const double a = GuardedPow(1 / epsilon + GuardedSqrt(1 / e2 + 1), 1.0 / n);
    const double b = GuardedPow(GuardedSqrt(loss) + GuardedSqrt(loss + 1), 1.0 / n);
    const double gamma = a - 1 / a;
    const double delta = b - 1 / b;
    const auto sine = [n](int j) { return std::sin(HalfAngle(j, n)); };
    const auto divisor = [n, gamma, delta](int j) {
        const double phi = j * std::numbers::pi / n;
        return gamma * gamma - 2 * gamma * delta * std::cos(phi) + delta * delta +
               4 * std::sin(phi) * std::sin(phi);
    };

    g[1] = 4 * sine(1) / (gamma - delta);
    for (int m = 1; m <= n / 2; ++m) {
        g[2 * m] =
            4 * (2 * sine(4 * m - 3)) * (2 * sine(4 * m - 1)) / divisor(2 * m - 1) / g[2 * m - 1];
        g[2 * m + 1] =
            4 * (2 * sine(4 * m - 1)) * (2 * sine(4 * m + 1)) / divisor(2 * m) / g[2 * m];
    }

    // From the ripple band's edge to the 3 dB point: cosh(acosh(1 / epsilon) / n).
    const double edge = GuardedLog(GuardedSqrt(std::max(0.0, 1 / e2 - 1)) + 1 / epsilon) / n;
    for (int k = 1; k <= n; ++k) {
        g[k] = GuardedCosh(edge) * g[k];
    }
}

}  // namespace ladderwise
