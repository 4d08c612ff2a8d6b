// Natural modes of prototypes.
#include "prototypes/NaturalModes.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "prototypes/EllipticPrototype.h"

namespace ladderwise {

namespace {

using Complex = std::complex<double>;

constexpr int MostIterations = 200;      ///< a guard: a dozen or two are usual
constexpr double ModeTolerance = 1e-13;  ///< relative step at which a mode has settled
constexpr double AcceptedStep = 1e-8;    ///< the same, beyond which nothing was found

/// A polynomial of s and its derivative.
struct Jet {
    Complex X;
    Complex D;

    Jet operator+(const Jet& b) const { return {X + b.X, D + b.D}; }
    Jet operator*(const Jet& b) const { return {X * b.X, D * b.X + X * b.D}; }
};

/// V + I at the source, for V = load and I = 1 at the load; traps multiply both by 1 + s^2 L C.
/// X is empty for a type that is no prototype's.
bool Characteristic(const ElementList& elements, int numElements, double load, Complex s,
                    Jet& sum) {
    Jet v{load, 0.0}, i{1.0, 0.0};
    for (int slot = numElements; slot >= 1; --slot) {
        const CircuitElement& e = elements[slot];
        const Jet l{s * e.V1, e.V1}, c{s * e.V2, e.V2};
        const Jet trap{1.0 + s * s * e.V1 * e.V2, 2.0 * s * e.V1 * e.V2};
        if (e.Type == ElementType::SeriesInd) {
            v = v + l * i;
        } else if (e.Type == ElementType::ShuntCap) {
            i = i + c * v;
        } else if (e.Type == ElementType::SeriesLC) {
            v = trap * v + l * i;
            i = trap * i;
        } else if (e.Type == ElementType::ShuntLC) {
            i = trap * i + c * v;
            v = trap * v;
        } else {
            return false;
        }
    }
    sum = v + i;
    return true;
}

/// The least damping of given modes; `inverse`: of their inverses.
double LeastOf(const std::vector<Complex>& modes, bool inverse) {
    double least = modes.empty() ? 0.0 : HUGE_VAL;
    for (const Complex s : modes)
        least = std::min(least, -(inverse ? 1.0 / s : s).real());
    return std::max(least, 0.0);
}

/// Butterworth: on the unit circle. Chebyshev: on an ellipse, scaled to 3 dB at 1 rad/s.
std::vector<Complex> ModesOnEllipse(int n, double real, double imaginary) {
    std::vector<Complex> modes;
    for (int k = 0; k < n; ++k) {
        const double theta = std::numbers::pi * (2 * k + 1) / (2 * n);
        modes.emplace_back(-real * std::sin(theta), imaginary * std::cos(theta));
    }
    return modes;
}

std::vector<Complex> ChebyshevModes(const FilterDesign& design) {
    const int n = design.NumPoles;
    const double inverse = 1.0 / std::sqrt(std::pow(10.0, 0.1 * design.RippleDb) - 1.0);
    const double a = std::asinh(inverse) / n;
    const double corner = std::cosh(std::acosh(std::max(inverse, 1.0)) / n);
    return ModesOnEllipse(n, std::sinh(a) / corner, std::cosh(a) / corner);
}

/// The order of an elliptic ladder or of one of g-values, and its modes.
std::vector<Complex> LadderModes(const FilterDesign& design) {
    if (IsElliptic(design.ResponseType)) {
        const EllipticLadder ladder = BuildEllipticLadder(
            {design.ResponseType, design.NumPoles, design.RippleDb, design.EllipticAtten});
        return NaturalModes(ladder.Elements, ladder.NumElements, ladder.Result.LoadRatio,
                            OrderOf(design.ResponseType, design.NumPoles));
    }
    ElementList elements{};
    for (int k = 1; k <= design.NumPoles; ++k) {
        elements[k].Type = k % 2 != 0 ? ElementType::ShuntCap : ElementType::SeriesInd;
        elements[k].V1 = elements[k].V2 = design.G[k];
    }
    return NaturalModes(elements, design.NumPoles, 1.0, design.NumPoles);
}

}  // namespace

std::vector<Complex> NaturalModes(const ElementList& elements, int numElements, double load,
                                  int order) {
    std::vector<Complex> modes;
    for (int k = 0; k < order; ++k)  // anywhere in the left half-plane, and not in pairs
        modes.push_back(std::polar(1.0, std::numbers::pi * (0.5 + (k + 0.4) / order)));
    double largest = HUGE_VAL;
    for (int n = 0; n < MostIterations && largest > ModeTolerance; ++n) {
        largest = 0.0;
        for (std::size_t k = 0; k < modes.size(); ++k) {
            Complex& s = modes[k];
            Jet sum{};
            if (!Characteristic(elements, numElements, load, s, sum)) return {};
            Complex repulsion = 0.0;
            for (std::size_t j = 0; j < modes.size(); ++j)
                if (j != k && modes[j] != s) repulsion += 1.0 / (s - modes[j]);
            const Complex newton = sum.X / sum.D;
            const Complex step = newton / (1.0 - newton * repulsion);
            if (!std::isfinite(step.real()) || !std::isfinite(step.imag())) return {};
            s -= step;
            largest = std::max(largest, std::abs(step) / std::max(std::abs(s), 1e-3));
        }
    }
    if (largest > AcceptedStep) return {};
    return modes;
}

double LeastDamping(const FilterDesign& design) {
    const bool notch = design.PassType == PassType::Notch;
    if (design.NumPoles < 1) return 0.0;
    if (design.ResponseType == ResponseType::Butterworth)
        return LeastOf(ModesOnEllipse(design.NumPoles, 1.0, 1.0), notch);
    if (design.ResponseType == ResponseType::Chebyshev)
        return LeastOf(ChebyshevModes(design), notch);
    return LeastOf(LadderModes(design), notch);
}

}  // namespace ladderwise
