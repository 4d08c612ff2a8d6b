// The reference form of the ladder analysis and the sweep around the kernel.
//
//   M     running chain matrix, source to load      s   j w, rad/s
//   S     matrix of one section                     f   frequency, Hz
//   k     slot, 1 .. NumElements                    i   sweep point from 0
#include "analysis/Circuitanalysis.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "numbers/Matherrmain.h"

namespace ladderwise {
namespace {

constexpr double RadiansPerDegree = std::numbers::pi / 180.0;
constexpr double QuietNaN = std::numeric_limits<double>::quiet_NaN();

/// Above this Q (or at a Q that is no positive number) a coil counts as lossless, and the kernel's
/// form for lossy parts, which leaves exact resonances unchecked, is not used.
constexpr double LargestKernelQ = 1e9;

Complex Reciprocal(Complex z) {
    return GuardedDivide(1.0, z);
}

/// V2 or V4 of a slot: a number, and the two capacitors that it is built of if that matters.
struct SecondValue {
    double Value;
    const PairedPart* Pair;

    operator double() const { return Value; }
};

/// A slot as it is built.
struct BuiltSlot {
    ElementType Type;
    double V1;
    SecondValue V2;
    double V3;
    SecondValue V4;
};

/// With ideal parts two capacitors are one.
const PairedPart* PairOf(const DesignState& design, int slot, int row) {
    const bool split = !design.Pairs.empty() && design.PartModel.Choice != PartChoice::IdealParts;
    return split ? PairAt(design, {slot, row}) : nullptr;
}

BuiltSlot BuiltSlotOf(const DesignState& design, int k) {
    const CircuitElement& slot = design.Elements[static_cast<std::size_t>(k)];
    return {slot.Type,
            slot.V1,
            {slot.V2, PairOf(design, k, 1)},
            slot.V3,
            {slot.V4, PairOf(design, k, 3)}};
}

/// One slot at one frequency: the part models bound to it, and the arms its sections fill.
struct SlotAtPoint {
    BuiltSlot Slot;
    PartContext Parts;
    Complex S;
    double F;
    Chain& M;

    Complex ZL(double L) const { return InductorZ(Parts, S, F, L); }
    Complex YL(double L) const { return InductorY(Parts, S, F, L); }
    Complex ZC(const SecondValue& C) const {
        return C.Pair ? Reciprocal(YC(C)) : CapacitorZ(Parts, S, F, C);
    }
    Complex YC(const SecondValue& C) const {
        if (!C.Pair) return CapacitorY(Parts, S, F, C);
        return CapacitorY(Parts, S, F, C.Pair->Larger) + CapacitorY(Parts, S, F, C.Pair->Smaller);
    }
    double Tan(double lengthDeg) const { return GuardedTan(LineAngle(Parts.F0, F, lengthDeg)); }
    Complex ShortedStubZ(double lengthDeg, double Z0) const { return {0.0, Z0 * Tan(lengthDeg)}; }
    Complex OpenStubZ(double lengthDeg, double Z0) const {
        return GuardedDivide(Complex(0.0, -Z0), Tan(lengthDeg));
    }

    void Series(Complex Z) const {
        M.Section.B = Z;
        ChainMultiply(M);
    }
    void Shunt(Complex Y) const {
        M.Section.C = Y;
        ChainMultiply(M);
    }
};

void MultiplyNested(const SlotAtPoint& p) {
    const auto& [type, V1, V2, V3, V4] = p.Slot;
    if (type == ElementType::ShuntSerParLC)
        p.Shunt(Reciprocal(p.ZL(V1) + p.ZC(V2) + Reciprocal(p.YL(V3) + p.YC(V4))));
    else if (type == ElementType::SerSerParLC)
        p.Series(Reciprocal(Reciprocal(p.ZL(V1) + p.ZC(V2)) + p.YL(V3) + p.YC(V4)));
    else if (type == ElementType::SeriesElliptic2)
        p.Series(Reciprocal(p.YC(V4) + Reciprocal(p.ZL(V3) + Reciprocal(p.YL(V1) + p.YC(V2)))));
    else if (type == ElementType::SeriesElliptic3)
        p.Series(Reciprocal(p.YL(V3) + Reciprocal(p.ZC(V2) + Reciprocal(p.YL(V1) + p.YC(V4)))));
    else if (type == ElementType::ShuntElliptic2)
        p.Shunt(Reciprocal(p.ZL(V1) + Reciprocal(p.YC(V2) + Reciprocal(p.ZL(V3) + p.ZC(V4)))));
    else if (type == ElementType::ShuntElliptic3)
        p.Shunt(Reciprocal(p.ZC(V2) + Reciprocal(p.YL(V1) + Reciprocal(p.ZL(V3) + p.ZC(V4)))));
    else if (type == ElementType::ThreeShuntTappedC)
        p.Shunt(Reciprocal(p.ZC(V4) + Reciprocal(p.YL(V1) + p.YC(V2))));
    else if (type == ElementType::ThreeShuntTappedL)
        p.Shunt(Reciprocal(p.ZL(V3) + Reciprocal(p.YL(V1) + p.YC(V2))));
}

void MultiplyLine(const SlotAtPoint& p) {
    const auto& [type, V1, V2, V3, V4] = p.Slot;
    if (type == ElementType::SeriesTLIN) {
        p.M.Section = LineSection(p.Parts.F0, p.F, V1, V2);
        ChainMultiply(p.M);
    } else if (type == ElementType::ShuntTLSCC) {
        p.Shunt(Reciprocal(p.ShortedStubZ(V1, V2)) + p.YC(V4));
    } else if (type == ElementType::ShuntLTLOC) {
        p.Shunt(Reciprocal(p.OpenStubZ(V3, V4)) + p.YL(V1));
    } else if (type == ElementType::ShuntTLSCTLOC) {
        p.Shunt(Reciprocal(p.ShortedStubZ(V1, V2)) + Reciprocal(p.OpenStubZ(V3, V4)));
    } else if (type == ElementType::ShuntTLOC) {
        p.Shunt(GuardedDivide(Complex(0.0, p.Tan(V1)), V2.Value));
    } else if (type == ElementType::ShuntTLSC) {
        p.Shunt(Reciprocal(p.ShortedStubZ(V1, V2)));
    }
}

void MultiplySlot(const SlotAtPoint& p) {
    const auto& [type, V1, V2, V3, V4] = p.Slot;
    switch (type) {
        case ElementType::SeriesInd:
            return p.Series(p.ZL(V1));
        case ElementType::SeriesCap:
            return p.Series(p.ZC(V2));
        case ElementType::SeriesLC:
            return p.Series(Reciprocal(p.YL(V1) + p.YC(V2)));
        case ElementType::ShuntInd:
            return p.Shunt(p.YL(V1));
        case ElementType::ShuntCap:
            return p.Shunt(p.YC(V2));
        case ElementType::ShuntLC:
            return p.Shunt(Reciprocal(p.ZL(V1) + p.ZC(V2)));
        case ElementType::ShuntParLC:
            return p.Shunt(p.YL(V1) + p.YC(V2));
        case ElementType::SeriesSerLC:
            return p.Series(p.ZL(V1) + p.ZC(V2));
        case ElementType::DualShuntLC:
            p.Shunt(Reciprocal(p.ZL(V1) + p.ZC(V2)));
            return p.Shunt(Reciprocal(p.ZL(V3) + p.ZC(V4)));
        case ElementType::DualSeriesLC:
            p.Series(Reciprocal(p.YL(V1) + p.YC(V2)));
            return p.Series(Reciprocal(p.YL(V3) + p.YC(V4)));
        case ElementType::ThreeShuntCapSerLC:
            return p.Shunt(p.YC(V2) + Reciprocal(p.ZL(V1) + p.ZC(V4)));
        case ElementType::ThreeShuntIndSerLC:
            return p.Shunt(p.YL(V1) + Reciprocal(p.ZL(V3) + p.ZC(V2)));
        case ElementType::ShuntSerParLC:
        case ElementType::SerSerParLC:
        case ElementType::SeriesElliptic2:
        case ElementType::SeriesElliptic3:
        case ElementType::ShuntElliptic2:
        case ElementType::ShuntElliptic3:
        case ElementType::ThreeShuntTappedC:
        case ElementType::ThreeShuntTappedL:
            return MultiplyNested(p);
        case ElementType::SeriesTLIN:
        case ElementType::ShuntTLSCC:
        case ElementType::ShuntLTLOC:
        case ElementType::ShuntTLSCTLOC:
        case ElementType::ShuntTLOC:
        case ElementType::ShuntTLSC:
            return MultiplyLine(p);
        case ElementType::errorBitMap:
            break;
    }
}

/// One value as the kernel takes it.
KernelValue PrepareValue(ValueKind kind, double value) {
    switch (kind) {
        case ValueKind::Inductance:
        case ValueKind::Capacitance:
            value = GuardedPartValue(value);
            break;
        case ValueKind::LengthDegrees:
            value *= RadiansPerDegree;
            break;
        case ValueKind::Impedance:
        case ValueKind::Unused:
            break;
    }
    return {value, 1.0 / value, 0.0, 1.0 / value};
}

KernelValue PrepareSecond(ValueKind kind, const SecondValue& value) {
    if (!value.Pair) return PrepareValue(kind, value);
    KernelValue larger = PrepareValue(kind, value.Pair->Larger);
    larger.Others = 1.0;
    larger.OtherInv = PrepareValue(kind, value.Pair->Smaller).Inv;
    return larger;
}

KernelSlot PrepareSlot(const BuiltSlot& slot) {
    const ElementInfo& info = InfoOf(slot.Type);
    return {static_cast<int>(slot.Type), PrepareValue(info.Values[0], slot.V1),
            PrepareSecond(info.Values[1], slot.V2), PrepareValue(info.Values[2], slot.V3),
            PrepareSecond(info.Values[3], slot.V4)};
}

void AnalyseByReference(const FilterDesign& design, const SweepTables& tables, std::size_t i,
                        std::span<double> re, std::span<double> im,
                        std::span<double> reflectionDb) {
    const LadderPoint point = AnalysePoint(design, tables.F0, tables.Frequency[i]);
    re[i] = point.Transfer.real();
    im[i] = point.Transfer.imag();
    if (!reflectionDb.empty()) reflectionDb[i] = ComplexToDb(point.Reflection);
}

/// The kernel's sweep of `count` points; true if some are left to the reference form.
bool SweepByKernel(const FilterDesign& design, const SweepTables& tables, std::size_t count,
                   std::span<double> re, std::span<double> im, std::span<double> reflectionDb,
                   KernelChoice choice) {
    std::array<KernelSlot, NumSlots> slots;
    const int numSlots = SlotsInUse(design);
    for (int k = 1; k <= numSlots; ++k)
        slots[k - 1] = PrepareSlot(BuiltSlotOf(design, k));
    const PartModel& model = design.PartModel;
    KernelSweep sweep{};
    sweep.Paired = std::any_of(slots.begin(), slots.begin() + numSlots, [](const KernelSlot& slot) {
        return slot.V2.Others > 0.0 || slot.V4.Others > 0.0;
    });
    sweep.Slots = slots.data();
    sweep.NumSlots = numSlots;
    sweep.Ideal = model.Choice == PartChoice::IdealParts;
    sweep.RSource = design.RSource;
    sweep.RLoad = design.RLoad;
    sweep.TwiceRoot = 2.0 * GuardedSqrt(design.RSource * design.RLoad);
    sweep.InvIndQ = 1.0 / model.IndQ;
    sweep.IndC = model.IndC;
    sweep.CapR = model.CapR;
    sweep.CapL = model.CapL;
    sweep.Omega = tables.Omega.data();
    sweep.InvOmega = tables.InvOmega.data();
    sweep.SkinOmega = tables.SkinOmega.data();
    sweep.RelativeF = tables.RelativeF.data();
    sweep.ZeroOrNaN = tables.ZeroOrNaN.data();
    sweep.Count = static_cast<int>(count);
    sweep.TransferRe = re.data();
    sweep.TransferIm = im.data();
    sweep.ReflectionDb = reflectionDb.empty() ? nullptr : reflectionDb.data();
    return ReadyKernel(choice).Sweep(sweep);
}

bool KernelFits(const PartModel& model) {
    return model.Choice == PartChoice::IdealParts ||
           (model.IndQ > 0.0 && model.IndQ <= LargestKernelQ);
}

bool AllSlotsHoldElements(const FilterDesign& design) {
    const auto first = design.Elements.begin() + 1;
    return std::all_of(first, first + SlotsInUse(design),
                       [](const CircuitElement& slot) { return IsElement(slot.Type); });
}

}  // namespace

Complex GuardedDivide(Complex num, Complex den) {
    const double a = num.real(), b = num.imag(), c = den.real(), d = den.imag();
    if ((c == 0.0 && d == 0.0) || std::isnan(a) || std::isnan(b) || std::isnan(c) || std::isnan(d))
        return {QuietNaN, QuietNaN};
    if (std::fabs(c) >= std::fabs(d)) {
        const double r = d / c, m = c + d * r;
        return {(a + b * r) / m, (b - a * r) / m};
    }
    const double r = c / d, m = c * r + d;
    return {(a * r + b) / m, (b * r - a) / m};
}

double ComplexToDb(Complex z) {
    const double re = std::clamp(z.real(), -LargestLevelPart, LargestLevelPart);
    const double im = std::clamp(z.imag(), -LargestLevelPart, LargestLevelPart);
    const double power = re * re + im * im;
    if (std::isnan(power)) return power;
    return power > 0.0 ? 10.0 * GuardedLog10(power) : ZeroPowerDb;
}

ImpedanceRatio InductorRatio(const PartContext& parts, Complex s, double f, double L) {
    L = GuardedPartValue(L);
    const PartModel& model = parts.Model;
    if (model.Choice == PartChoice::IdealParts) return {s * L, 1.0};
    const double R = GuardedSqrt(parts.F0 * f) * TwoPi * L / model.IndQ;
    return {R + s * L, 1.0 + s * (R * model.IndC) + s * s * (L * model.IndC)};
}

Complex InductorZ(const PartContext& parts, Complex s, double f, double L) {
    const ImpedanceRatio z = InductorRatio(parts, s, f, L);
    return parts.Model.Choice == PartChoice::IdealParts ? z.N : GuardedDivide(z.N, z.D);
}

Complex InductorY(const PartContext& parts, Complex s, double f, double L) {
    return Reciprocal(InductorZ(parts, s, f, L));
}

Complex CapacitorZ(const PartContext& parts, Complex s, double, double C) {
    C = GuardedPartValue(C);
    const Complex Z = Reciprocal(s * C);
    const PartModel& model = parts.Model;
    if (model.Choice == PartChoice::IdealParts) return Z;
    return Z + s * model.CapL + model.CapR;
}

ImpedanceRatio CapacitorRatio(const PartContext& parts, Complex s, double C) {
    C = GuardedPartValue(C);
    const PartModel& model = parts.Model;
    if (model.Choice == PartChoice::IdealParts) return {1.0, s * C};
    return {1.0 + s * C * (s * model.CapL + model.CapR), s * C};
}

Complex CapacitorY(const PartContext& parts, Complex s, double f, double C) {
    return Reciprocal(CapacitorZ(parts, s, f, C));
}

void ChainMultiply(Chain& chain) {
    const ChainMatrix& m = chain.Running;
    const ChainMatrix& s = chain.Section;
    chain.Running = {m.A * s.A + m.B * s.C, m.A * s.B + m.B * s.D, m.C * s.A + m.D * s.C,
                     m.C * s.B + m.D * s.D};
    chain.Section = {};
}

double LineAngle(double F0, double f, double lengthDeg) {
    return lengthDeg * RadiansPerDegree * (f / F0);
}

ChainMatrix LineSection(double F0, double f, double lengthDeg, double Z0) {
    const double angle = LineAngle(F0, f, lengthDeg);
    const double c = GuardedCos(angle), s = GuardedSin(angle);
    return {c, Complex(0.0, Z0 * s), Complex(0.0, s / Z0), c};
}

LadderPoint AnalysePoint(const FilterDesign& design, double F0, double f) {
    const Complex s(0.0, TwoPi * f);
    Chain chain;
    for (int k = 1; k <= SlotsInUse(design); ++k)
        MultiplySlot({BuiltSlotOf(design, k), {design.PartModel, F0}, s, f, chain});
    const auto& [A, B, C, D] = chain.Running;
    const double RS = design.RSource, RL = design.RLoad;
    const Complex Zin = GuardedDivide(A * RL + B, C * RL + D);
    return {GuardedDivide(2.0 * GuardedSqrt(RS * RL), (A + C * RS) * RL + B + D * RS),
            GuardedDivide(Zin - RS, Zin + RS)};
}

bool AnalyseLadder(const FilterDesign& design, const SweepTables& tables,
                   const MessageCallback& report, std::span<double> re, std::span<double> im,
                   std::span<double> reflectionDb, KernelChoice choice) {
    if (!AllSlotsHoldElements(design)) {
        if (report) report("Error ", " Default case in Circuit Analysis");
        return false;
    }
    std::size_t count = std::min({tables.Count, re.size(), im.size()});
    if (!reflectionDb.empty()) count = std::min(count, reflectionDb.size());
    const bool byKernel = choice != KernelChoice::Reference && KernelFits(design.PartModel);
    if (byKernel && !SweepByKernel(design, tables, count, re, im, reflectionDb, choice))
        return true;
    for (std::size_t i = 0; i < count; ++i) {
        if (!byKernel || std::isnan(re[i]))
            AnalyseByReference(design, tables, i, re, im, reflectionDb);
    }
    return true;
}

void AnalyseLadder(FilterDesign& design, const SweepTables& tables, const MessageCallback& report) {
    SweepResponse& out = design.Response;
    AnalyseLadder(design, tables, report, out.TransferRe, out.TransferIm, out.ReflectionDb);
}

}  // namespace ladderwise
