// Resonances of lossless one-ports of coils and capacitors, and of stubs.
//
// The impedance of such an arm is N(s) / D(s), N and D with alternately missing powers of s, so
// that apart from a factor s they are polynomials of s^2. All their roots are real and negative
// (R. M. Foster, "A reactance theorem", Bell Syst. Tech. J. 3 (1924) 259).
//
//   s   complex frequency over 2 pi F0
//   u   -s^2, (f / F0)^2 at a real frequency f
#include "analysis/Resonances.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {
namespace {

constexpr int MostPowers = 12;          // of s: a slot has four parts with a parasitic each
constexpr int MostRootIterations = 60;  // a guard: five are usual
constexpr double RootPrecision = 1e-13;
constexpr double SameResonance = 1e-9;  // relative: closer ones are one

constexpr double HalfTurn = 180.0;   // degrees
constexpr double BesidePole = 1e-9;  // of the distance of two poles

/// Coefficients of the powers of s from 0.
using PowersOfS = std::array<double, MostPowers>;

PowersOfS Product(const PowersOfS& a, const PowersOfS& b) {
    PowersOfS product{};
    for (int i = 0; i < MostPowers; ++i)
        for (int k = 0; a[i] != 0.0 && i + k < MostPowers; ++k)
            product[i + k] += a[i] * b[k];
    return product;
}

PowersOfS Sum(PowersOfS a, const PowersOfS& b) {
    for (int i = 0; i < MostPowers; ++i)
        a[i] += b[i];
    return a;
}

/// An impedance N / D.
struct OnePort {
    PowersOfS N{}, D{};
};

OnePort InSeries(const OnePort& a, const OnePort& b) {
    return {Sum(Product(a.N, b.D), Product(b.N, a.D)), Product(a.D, b.D)};
}

OnePort InParallel(const OnePort& a, const OnePort& b) {
    return {Product(a.N, b.N), Sum(Product(a.N, b.D), Product(b.N, a.D))};
}

/// Adds F0 sqrt(u) for every root u of a polynomial, smallest first, by the method of Laguerre,
/// which from below all of them finds the smallest of real roots; then one root less is left.
void AddRoots(const PowersOfS& powers, double F0, std::vector<double>& resonances) {
    std::array<double, MostPowers / 2> a{};  // of the powers of u
    const int odd = powers[0] == 0.0 ? 1 : 0;
    int degree = 0;
    for (int k = 0; 2 * k + odd < MostPowers; ++k) {
        a[k] = (k % 2 ? -1.0 : 1.0) * powers[2 * k + odd];
        if (a[k] != 0.0) degree = k;
    }
    double u = 0.0;
    for (; degree > 0; --degree) {
        const double n = degree;
        for (int step = 0; step < MostRootIterations; ++step) {
            double p = a[degree], p1 = 0.0, p2 = 0.0;  // value, slope, half the curvature
            for (int k = degree - 1; k >= 0; --k) {
                p2 = p2 * u + p1;
                p1 = p1 * u + p;
                p = p * u + a[k];
            }
            if (p == 0.0) break;
            const double g = p1 / p, h = g * g - 2.0 * p2 / p;
            const double root = std::sqrt(std::max(0.0, (n - 1.0) * (n * h - g * g)));
            const double change = n / (g < 0.0 ? g - root : g + root);
            u -= change;
            if (!(std::abs(change) > RootPrecision * std::abs(u))) break;
        }
        if (!(u > 0.0) || !std::isfinite(u)) return;  // parts that are none: nothing resonates
        resonances.push_back(F0 * std::sqrt(u));
        double carry = a[degree];  // synthetic division by the root
        for (int k = degree - 1; k >= 0; --k)
            carry = std::exchange(a[k], carry) + carry * u;
    }
}

/// The parts of one slot as one-ports.
struct SlotParts {
    const FilterDesign& Design;
    const CircuitElement& Slot;
    double W0 = TwoPi * Design.F0;
    bool Real = Design.PartModel.Choice != PartChoice::IdealParts;

    OnePort L(double henries) const {
        const double x = W0 * GuardedPartValue(henries);
        OnePort coil;
        coil.N[1] = x;
        coil.D[0] = 1.0;
        if (Real) coil.D[2] = x * W0 * Design.PartModel.IndC;
        return coil;
    }
    OnePort C(double farads) const {
        const double b = W0 * GuardedPartValue(farads);
        OnePort capacitor;
        capacitor.N[0] = 1.0;
        if (Real) capacitor.N[2] = b * W0 * Design.PartModel.CapL;
        capacitor.D[1] = b;
        return capacitor;
    }
    OnePort Pair(double l, double c) const { return InSeries(L(l), C(c)); }
    OnePort Tank(double l, double c) const { return InParallel(L(l), C(c)); }
};

/// The one-ports of a slot: two of a slot that is two sections, none of one with lines.
std::vector<OnePort> ArmsOf(const SlotParts& p) {
    const auto& [type, V1, V2, V3, V4] = p.Slot;
    switch (type) {
        case ElementType::SeriesInd:
        case ElementType::ShuntInd:
            return {p.L(V1)};
        case ElementType::SeriesCap:
        case ElementType::ShuntCap:
            return {p.C(V2)};
        case ElementType::SeriesLC:
        case ElementType::ShuntParLC:
            return {p.Tank(V1, V2)};
        case ElementType::ShuntLC:
        case ElementType::SeriesSerLC:
            return {p.Pair(V1, V2)};
        case ElementType::ShuntSerParLC:
            return {InSeries(p.Pair(V1, V2), p.Tank(V3, V4))};
        case ElementType::SerSerParLC:
            return {InParallel(p.Pair(V1, V2), p.Tank(V3, V4))};
        case ElementType::DualShuntLC:
            return {p.Pair(V1, V2), p.Pair(V3, V4)};
        case ElementType::DualSeriesLC:
            return {p.Tank(V1, V2), p.Tank(V3, V4)};
        case ElementType::SeriesElliptic2:
            return {InParallel(p.C(V4), InSeries(p.L(V3), p.Tank(V1, V2)))};
        case ElementType::SeriesElliptic3:
            return {InParallel(p.L(V3), InSeries(p.C(V2), p.Tank(V1, V4)))};
        case ElementType::ShuntElliptic2:
            return {InSeries(p.L(V1), InParallel(p.C(V2), p.Pair(V3, V4)))};
        case ElementType::ShuntElliptic3:
            return {InSeries(p.C(V2), InParallel(p.L(V1), p.Pair(V3, V4)))};
        case ElementType::ThreeShuntCapSerLC:
            return {InParallel(p.C(V2), p.Pair(V1, V4))};
        case ElementType::ThreeShuntIndSerLC:
            return {InParallel(p.L(V1), p.Pair(V3, V2))};
        case ElementType::ThreeShuntTappedC:
            return {InSeries(p.C(V4), p.Tank(V1, V2))};
        case ElementType::ThreeShuntTappedL:
            return {InSeries(p.L(V3), p.Tank(V1, V2))};
        case ElementType::SeriesTLIN:
        case ElementType::ShuntTLSCC:
        case ElementType::ShuntLTLOC:
        case ElementType::ShuntTLSCTLOC:
        case ElementType::ShuntTLOC:
        case ElementType::ShuntTLSC:
        case ElementType::errorBitMap:
            return {};
    }
    return {};
}

/// The susceptance of a shunt slot with stubs, and where it has its poles. It rises between them.
struct StubSlot {
    const FilterDesign& Design;
    const CircuitElement& Slot;
    bool Real = Design.PartModel.Choice != PartChoice::IdealParts;
    double Shorted = 0.0, ShortedZ = 1.0, Open = 0.0, OpenZ = 1.0;  ///< degrees at F0, ohm; 0: none
    double C = 0.0, L = 0.0;                                        ///< F, H; 0: none

    StubSlot(const FilterDesign& design, const CircuitElement& slot) : Design(design), Slot(slot) {
        const auto& [type, V1, V2, V3, V4] = slot;
        if (type == ElementType::ShuntTLSCC || type == ElementType::ShuntTLSCTLOC ||
            type == ElementType::ShuntTLSC)
            Shorted = V1, ShortedZ = V2;
        if (type == ElementType::ShuntTLSCTLOC || type == ElementType::ShuntLTLOC)
            Open = V3, OpenZ = V4;
        if (type == ElementType::ShuntTLOC) Open = V1, OpenZ = V2;
        if (type == ElementType::ShuntTLSCC) C = GuardedPartValue(V4);
        if (type == ElementType::ShuntLTLOC) L = GuardedPartValue(V1);
    }

    double Susceptance(double f) const {
        const double w = TwoPi * f;
        double b = 0.0;
        if (Shorted > 0.0) b -= 1.0 / (ShortedZ * std::tan(LineAngle(Design.F0, f, Shorted)));
        if (Open > 0.0) b += std::tan(LineAngle(Design.F0, f, Open)) / OpenZ;
        if (C > 0.0) b += w * C / (1.0 - (Real ? w * w * C * Design.PartModel.CapL : 0.0));
        if (L > 0.0) b += (Real ? w * Design.PartModel.IndC : 0.0) - 1.0 / (w * L);
        return b;
    }

    std::vector<double> PolesUpTo(double highest) const {
        std::vector<double> poles;
        const auto add = [&](double length, double first) {
            if (!(length > 0.0)) return;
            const double half = Design.F0 * HalfTurn / length;
            for (double turns = first; turns * half <= highest; turns += 1.0)
                poles.push_back(turns * half);
        };
        add(Shorted, 1.0);
        add(Open, 0.5);
        if (C > 0.0 && Real && Design.PartModel.CapL > 0.0)
            poles.push_back(1.0 / (TwoPi * std::sqrt(C * Design.PartModel.CapL)));
        return poles;
    }
};

/// Where the susceptance is zero between two of its poles; nothing where it is not.
void AddZeroBetween(const StubSlot& slot, double low, double high, std::vector<double>& zeros) {
    low += (high - low) * BesidePole;
    high -= (high - low) * BesidePole;
    if (!(slot.Susceptance(low) < 0.0 && slot.Susceptance(high) > 0.0)) return;
    while (high - low > SameResonance * high) {
        const double middle = 0.5 * (low + high);
        (slot.Susceptance(middle) < 0.0 ? low : high) = middle;
    }
    zeros.push_back(0.5 * (low + high));
}

/// Ascending, each once.
void KeepOnce(std::vector<double>& resonances) {
    std::sort(resonances.begin(), resonances.end());
    const auto same = [](double a, double b) { return b - a <= SameResonance * b; };
    resonances.erase(std::unique(resonances.begin(), resonances.end(), same), resonances.end());
}

/// Calls `take(arm, one-port)` for every arm.
template <typename Take>
void ForEveryArm(const FilterDesign& design, Take take) {
    for (int slot = 1; slot <= std::min(design.NumElements, NumSlots - 1); ++slot)
        for (const OnePort& port : ArmsOf({design, design.Elements[slot]}))
            take(InfoOf(design.Elements[slot].Type).Arm, port);
}

}  // namespace

std::vector<double> ElementResonances(const FilterDesign& design) {
    std::vector<double> resonances;
    ForEveryArm(design, [&](ElementArm, const OnePort& port) {
        AddRoots(port.N, design.F0, resonances);
        AddRoots(port.D, design.F0, resonances);
    });
    KeepOnce(resonances);
    return resonances;
}

std::vector<double> LineResonances(const FilterDesign& design, double highest) {
    std::vector<double> resonances;
    for (int k = 1; k <= std::min(design.NumElements, NumSlots - 1); ++k) {
        const StubSlot slot(design, design.Elements[k]);
        if (!(slot.Shorted > 0.0) && !(slot.Open > 0.0)) continue;
        std::vector<double> poles = slot.PolesUpTo(highest);
        std::sort(poles.begin(), poles.end());
        double before = 0.0;
        for (const double pole : poles) {
            AddZeroBetween(slot, before, pole, resonances);
            resonances.push_back(before = pole);
        }
        AddZeroBetween(slot, before, highest, resonances);
    }
    KeepOnce(resonances);
    return resonances;
}

std::vector<double> TransmissionZeros(const FilterDesign& design) {
    std::vector<double> zeros;
    ForEveryArm(design, [&](ElementArm arm, const OnePort& port) {
        if (arm == ElementArm::Series) AddRoots(port.D, design.F0, zeros);
        if (arm == ElementArm::Shunt) AddRoots(port.N, design.F0, zeros);
    });
    KeepOnce(zeros);
    return zeros;
}

}  // namespace ladderwise
