// S-parameters by chain matrices in homogeneous form.
//
//   Z = N / D     an arm's impedance as a ratio, ohm : 1
//   M / P         the chain matrix; P is the product of all denominators
//   R1, R2        reference resistances, ohm
#include "analysis/SParameters.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "design/ElementNetworks.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

/// Where two ideal resonances of one slot meet exactly, 0 / 0 is left. A step of this part of the
/// frequency, thousands of roundings wide and far below any resolution, leads out of it.
constexpr double StepAside = 1e-12;

/// The larger part of a complex number, as a measure of size that cannot overflow.
double SizeOf(Complex z) {
    return std::max(std::fabs(z.real()), std::fabs(z.imag()));
}

/// The power of two that brings `size` to about 1; scaling by it rounds nothing.
double ScaleFor(double size) {
    return size > 0.0 && std::isfinite(size) ? std::ldexp(1.0, -std::ilogb(size)) : 1.0;
}

ImpedanceRatio Scaled(ImpedanceRatio z) {
    const double scale = ScaleFor(std::max(SizeOf(z.N), SizeOf(z.D)));
    return {z.N * scale, z.D * scale};
}

/// A slot with its networks, which are the same at all frequencies.
struct SlotNetworks {
    const CircuitElement& Slot;
    ElementArm Arm;
    std::vector<Network> Networks;
};

/// One frequency and what the part models need.
struct FrequencyPoint {
    PartContext Parts;
    Complex S;
    double F;
};

ImpedanceRatio RatioOf(const FrequencyPoint& at, const CircuitElement& slot, const Network& net) {
    const double value = ValueOf(slot, net);
    const auto stub = [&](bool isOpen) -> ImpedanceRatio {
        const double angle = LineAngle(at.Parts.F0, at.F, value);
        const double Z0 = slot.Value(net.Row + 1);
        const double c = GuardedCos(angle), s = GuardedSin(angle);
        if (isOpen) return {Z0 * c, Complex(0.0, s)};
        return {Complex(0.0, Z0 * s), c};
    };
    switch (net.Kind) {
        case NetworkKind::Inductor:
            return Scaled(InductorRatio(at.Parts, at.S, at.F, value));
        case NetworkKind::Capacitor:
            return Scaled(CapacitorRatio(at.Parts, at.S, value));
        case NetworkKind::ShortedStub:
            return Scaled(stub(false));
        case NetworkKind::OpenStub:
            return Scaled(stub(true));
        case NetworkKind::InSeries: {
            ImpedanceRatio sum{0.0, 1.0};
            for (const Network& member : net.Members) {
                const auto [n, d] = RatioOf(at, slot, member);
                sum = Scaled({sum.N * d + n * sum.D, sum.D * d});
            }
            return sum;
        }
        case NetworkKind::InParallel: {
            ImpedanceRatio sum{1.0, 0.0};
            for (const Network& member : net.Members) {
                const auto [n, d] = RatioOf(at, slot, member);
                sum = Scaled({sum.N * n, sum.N * d + n * sum.D});
            }
            return sum;
        }
        case NetworkKind::Line:  // no impedance of its own
            break;
    }
    constexpr double none = std::numeric_limits<double>::quiet_NaN();
    return {none, none};
}

/// The product so far: the chain matrix is M / P, both scaled alike so that neither overflows.
struct HomogeneousChain {
    ChainMatrix M;
    Complex P = 1.0;

    /// Takes the section S / p behind what is there.
    void Multiply(const ChainMatrix& S, Complex p) {
        Chain chain{M, S};
        ChainMultiply(chain);
        M = chain.Running;
        P *= p;
        const double size = std::max({SizeOf(M.A), SizeOf(M.B), SizeOf(M.C), SizeOf(M.D)});
        const double scale = ScaleFor(size);
        M = {M.A * scale, M.B * scale, M.C * scale, M.D * scale};
        P *= scale;
    }
};

void MultiplyNetworks(const FrequencyPoint& at, const SlotNetworks& slot, HomogeneousChain& chain) {
    if (slot.Arm == ElementArm::Line)
        chain.Multiply(LineSection(at.Parts.F0, at.F, slot.Slot.V1, slot.Slot.V2), 1.0);
    for (const Network& net : slot.Networks) {
        if (slot.Arm == ElementArm::Shunt) {
            const auto [N, D] = RatioOf(at, slot.Slot, net);
            chain.Multiply({N, 0.0, D, N}, N);
        } else if (slot.Arm == ElementArm::Series) {
            const auto [N, D] = RatioOf(at, slot.Slot, net);
            chain.Multiply({D, N, 0.0, D}, D);
        }
    }
}

/// From the chain matrix M / P (Frickey, "Conversions between S, Z, Y, h, ABCD and T parameters
/// which are valid for complex source and load impedances", IEEE Trans. MTT-42 (1994), table I);
/// its determinant is 1, so that S12 = S21.
SParameters FromChain(const HomogeneousChain& chain, PortResistances ports) {
    const auto& [A, B, C, D] = chain.M;
    const double R1 = ports.Source, R2 = ports.Load;
    const Complex a = A * R2, c = C * (R1 * R2), d = D * R1;
    const Complex sum = a + B + c + d;
    const Complex through = GuardedDivide(2.0 * GuardedSqrt(R1 * R2) * chain.P, sum);
    return {GuardedDivide(a + B - c - d, sum), through, through, GuardedDivide(B + d - a - c, sum)};
}

SParameters AnalyseAt(const std::vector<SlotNetworks>& slots, const FilterDesign& design, double f,
                      PortResistances ports) {
    const FrequencyPoint at{{design.PartModel, design.F0}, Complex(0.0, TwoPi * f), f};
    HomogeneousChain chain;
    for (const SlotNetworks& slot : slots)
        MultiplyNetworks(at, slot, chain);
    return FromChain(chain, ports);
}

bool IsNumber(const SParameters& s) {
    return std::isfinite(SizeOf(s.S11)) && std::isfinite(SizeOf(s.S21)) &&
           std::isfinite(SizeOf(s.S22));
}

bool HasUsableValues(const CircuitElement& slot) {
    for (int row = 0; row < 4; ++row)
        if (InfoOf(slot.Type).Values[row] != ValueKind::Unused && !std::isfinite(slot.Value(row)))
            return false;
    return IsElement(slot.Type);
}

}  // namespace

std::vector<SParameters> AnalyseSParameters(const FilterDesign& design,
                                            std::span<const double> freqs, PortResistances ports) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    std::vector<SParameters> result(freqs.size(), {nan, nan, nan, nan});
    std::vector<SlotNetworks> slots;
    for (int k = 1; k <= std::clamp(design.NumElements, 0, NumSlots - 1); ++k) {
        const CircuitElement& slot = design.Elements[k];
        if (!HasUsableValues(slot)) return result;
        slots.push_back({slot, InfoOf(slot.Type).Arm, BuiltNetworksOf(design, k)});
        // Members of a series arm are sections of their own: two of them may be open at once.
        std::vector<Network>& nets = slots.back().Networks;
        if (slots.back().Arm == ElementArm::Series && nets.front().Kind == NetworkKind::InSeries)
            nets = std::vector<Network>(nets.front().Members);
    }
    for (std::size_t i = 0; i < freqs.size(); ++i) {
        result[i] = AnalyseAt(slots, design, freqs[i], ports);
        if (!IsNumber(result[i]))
            result[i] = AnalyseAt(slots, design, freqs[i] * (1.0 + StepAside), ports);
    }
    return result;
}

SParameters Renormalised(const SParameters& s, PortResistances from, PortResistances to) {
    if (from == to) return s;
    const double g1 = (to.Source - from.Source) / (to.Source + from.Source);
    const double g2 = (to.Load - from.Load) / (to.Load + from.Load);
    // The product of the diagonal entries of A, by which S21 and S12 change: m21 = S21 (1 - g2^2).
    const double a1a2 = 4.0 * GuardedSqrt(to.Source * from.Source * to.Load * from.Load) /
                        ((to.Source + from.Source) * (to.Load + from.Load));
    // With K = (1 - G S)^-1 = [1 - g2 S22, g1 S12; g2 S21, 1 - g1 S11] / det, and (S - G) K.
    const Complex det = (1.0 - g1 * s.S11) * (1.0 - g2 * s.S22) - g1 * g2 * s.S12 * s.S21;
    const Complex m11 = (s.S11 - g1) * (1.0 - g2 * s.S22) + g2 * s.S12 * s.S21;
    const Complex m22 = (s.S22 - g2) * (1.0 - g1 * s.S11) + g1 * s.S12 * s.S21;
    return {GuardedDivide(m11, det), GuardedDivide(s.S21 * a1a2, det),
            GuardedDivide(s.S12 * a1a2, det), GuardedDivide(m22, det)};
}

}  // namespace ladderwise
