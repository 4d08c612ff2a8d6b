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
#include "design/ElementNetworks.h"

namespace ladderwise {
namespace {

constexpr int MostPowers = 16;          // of s: a slot has six parts with a parasitic each
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

    OnePort Of(const Network& network) const {
        switch (network.Kind) {
            case NetworkKind::Inductor:
                return L(ValueOf(Slot, network));
            case NetworkKind::Capacitor:
                return C(ValueOf(Slot, network));
            case NetworkKind::InSeries:
                return Joined(network.Members, InSeries);
            case NetworkKind::InParallel:
                return Joined(network.Members, InParallel);
            case NetworkKind::Line:
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                break;
        }
        return {};
    }

private:
    template <typename Join>
    OnePort Joined(const std::vector<Network>& members, Join join) const {
        OnePort port = Of(members.front());
        for (std::size_t k = 1; k < members.size(); ++k)
            port = join(port, Of(members[k]));
        return port;
    }
};

/// Calls `take(member)` for the parts of a network that have its resonances: members joined by
/// `kind` have their own, which stay exact so where two lie close together.
template <typename Take>
void ForEveryMember(const Network& network, NetworkKind kind, Take take) {
    if (network.Kind != kind) return take(network);
    for (const Network& member : network.Members)
        ForEveryMember(member, kind, take);
}

/// The zeros of the reactance of a network, Hz: in parallel those of every member.
void AddZeros(const SlotParts& parts, const Network& network, std::vector<double>& zeros) {
    ForEveryMember(network, NetworkKind::InParallel, [&](const Network& member) {
        AddRoots(parts.Of(member).N, parts.Design.F0, zeros);
    });
}

/// Its poles: in series those of every member.
void AddPoles(const SlotParts& parts, const Network& network, std::vector<double>& poles) {
    ForEveryMember(network, NetworkKind::InSeries, [&](const Network& member) {
        AddRoots(parts.Of(member).D, parts.Design.F0, poles);
    });
}

bool IsLine(const Network& network) {
    return network.Kind == NetworkKind::Line || network.Kind == NetworkKind::ShortedStub ||
           network.Kind == NetworkKind::OpenStub;
}

/// A line of more half waves is not looked at beyond them: a length of 1e12 degrees, which can be
/// typed, would fill the memory.
constexpr double MostHalfWaves = 200.0;

/// Adds the frequencies up to `highest` (Hz) at which a line of `length` (degrees at F0) is
/// `first`, first + 1, ... half waves long, at most MostHalfWaves; none for a length of zero.
void AddHalfWaves(double F0, double length, double first, double highest,
                  std::vector<double>& places) {
    if (!(length > 0.0)) return;
    const double half = F0 * HalfTurn / length;
    for (double turns = first; turns * half <= highest && turns <= MostHalfWaves; turns += 1.0)
        places.push_back(turns * half);
}

/// The susceptance of a shunt slot with stubs, and where it has its poles. It rises between them.
struct StubSlot {
    const FilterDesign& Design;
    bool Real = Design.PartModel.Choice != PartChoice::IdealParts;
    double Shorted = 0.0, ShortedZ = 1.0, Open = 0.0, OpenZ = 1.0;  ///< degrees at F0, ohm; 0: none
    std::vector<double> Capacitors{};                               ///< F
    double L = 0.0;                                                 ///< H; 0: none

    StubSlot(const FilterDesign& design, int number) : Design(design) {
        const CircuitElement& slot = design.Elements[static_cast<std::size_t>(number)];
        for (const Network& network : BuiltNetworksOf(design, number)) {
            const double value = slot.Value(network.Row);
            if (network.Kind == NetworkKind::ShortedStub)
                Shorted = value, ShortedZ = slot.Value(network.Row + 1);
            if (network.Kind == NetworkKind::OpenStub)
                Open = value, OpenZ = slot.Value(network.Row + 1);
            if (network.Kind == NetworkKind::Capacitor) Capacitors = {GuardedPartValue(value)};
            if (network.Kind == NetworkKind::InParallel)  // two capacitors that make one value
                for (const Network& member : network.Members)
                    Capacitors.push_back(GuardedPartValue(ValueOf(slot, member)));
            if (network.Kind == NetworkKind::Inductor) L = GuardedPartValue(value);
        }
    }

    double Susceptance(double f) const {
        const double w = TwoPi * f;
        double b = 0.0;
        if (Shorted > 0.0) b -= 1.0 / (ShortedZ * std::tan(LineAngle(Design.F0, f, Shorted)));
        if (Open > 0.0) b += std::tan(LineAngle(Design.F0, f, Open)) / OpenZ;
        for (const double C : Capacitors)
            b += w * C / (1.0 - (Real ? w * w * C * Design.PartModel.CapL : 0.0));
        if (L > 0.0) b += (Real ? w * Design.PartModel.IndC : 0.0) - 1.0 / (w * L);
        return b;
    }

    std::vector<double> PolesUpTo(double highest) const {
        std::vector<double> poles;
        AddHalfWaves(Design.F0, Shorted, 1.0, highest, poles);
        AddHalfWaves(Design.F0, Open, 0.5, highest, poles);
        for (const double C : Capacitors)
            if (Real && Design.PartModel.CapL > 0.0)
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

/// Calls `take(arm, parts, network)` for every network of the slots without lines.
template <typename Take>
void ForEveryNetwork(const FilterDesign& design, Take take) {
    for (int slot = 1; slot <= std::min(design.NumElements, NumSlots - 1); ++slot) {
        const CircuitElement& element = design.Elements[slot];
        const std::vector<Network> networks = BuiltNetworksOf(design, slot);
        if (std::any_of(networks.begin(), networks.end(), IsLine)) continue;
        for (const Network& network : networks)
            take(InfoOf(element.Type).Arm, SlotParts{design, element}, network);
    }
}

}  // namespace

std::vector<double> ElementResonances(const FilterDesign& design) {
    std::vector<double> resonances;
    ForEveryNetwork(design, [&](ElementArm, const SlotParts& parts, const Network& network) {
        AddZeros(parts, network, resonances);
        AddPoles(parts, network, resonances);
    });
    KeepOnce(resonances);
    return resonances;
}

std::vector<double> LineResonances(const FilterDesign& design, double highest) {
    std::vector<double> resonances;
    for (int k = 1; k <= std::min(design.NumElements, NumSlots - 1); ++k) {
        const CircuitElement& element = design.Elements[k];
        if (element.Type == ElementType::SeriesTLIN)
            AddHalfWaves(design.F0, element.V1, 1.0, highest, resonances);
        const StubSlot slot(design, k);
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

std::vector<TransmissionZero> TransmissionZeros(const FilterDesign& design) {
    std::vector<TransmissionZero> zeros;
    ForEveryNetwork(design, [&](ElementArm arm, const SlotParts& real, const Network& network) {
        SlotParts ideal = real;
        ideal.Real = false;
        const auto add = [&](auto resonances, const Network& member) {
            std::vector<double> before, now;
            resonances(ideal, member, before);
            resonances(real, member, now);
            for (std::size_t k = 0; k < std::min(before.size(), now.size()); ++k)
                zeros.push_back({before[k], now[k]});
        };
        if (arm == ElementArm::Series)
            ForEveryMember(network, NetworkKind::InSeries,
                           [&](const Network& member) { add(AddPoles, member); });
        if (arm == ElementArm::Shunt)
            ForEveryMember(network, NetworkKind::InParallel,
                           [&](const Network& member) { add(AddZeros, member); });
    });
    return zeros;
}

}  // namespace ladderwise
