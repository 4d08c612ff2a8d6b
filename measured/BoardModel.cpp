// Chain of sections and its derivatives.
//
//   V, I    voltage and current (to the right) between two sections, for a wave of unit power at
//           port 1 or at port 2; the network is reciprocal, so by Tellegen's theorem a change dZ
//           of an impedance that carries the currents I1 and I2 changes
//             dS_ij = I_i I_j dZ / 2
//           (Penfield, Spence, Duinker, "Tellegen's Theorem and Electrical Networks", 1970, ch. 7)
//   s       j w, rad/s
//   x       the unknowns
#include "measured/BoardModel.h"

#include <array>
#include <cmath>
#include <numbers>

namespace ladderwise {

namespace {

// What is expected of a board before it is measured.
constexpr double partSpread = 0.12;  // of ln value: a pull that only matters where data tell little
constexpr double lineSpread = 0.1;
// All pads of a board, and all its vias, are about as large as each other; how large depends on how
// it is built, down to none at all, which a calculated file has.
constexpr double padMean = 0.2e-12, padSpread = 0.2e-12, padDiffers = 0.12e-12;  // F
constexpr double viaMean = 0.4e-9, viaSpread = 0.4e-9, viaDiffers = 0.25e-9;     // H
constexpr double innerShare = 0.5;  // of a pad within a slot, which may not be there
constexpr double gapMean = 0.03e-12, gapSpread = 0.03e-12;  // across a missing part
constexpr double shortMean = 0.3e-9, shortSpread = 0.3e-9;

/// How far a parasitic of the parts is from what the design counts on: of all parts together, and
/// of one from the others. The shares are of the design's figure, but no spread is below the least.
struct ParasiticSpread {
    double CommonShare, CommonLeast, OwnShare, OwnLeast;

    /// A design with ideal parts counts on nothing: then the figure is a guess.
    double Common(const PartModel& model, double figure) const {
        const double share = model.Choice == PartChoice::IdealParts ? 1.0 : CommonShare;
        return std::max(share * figure, CommonLeast);
    }
    double Own(double figure) const { return std::max(OwnShare * figure, OwnLeast); }
};
constexpr ParasiticSpread coilCapacitance{0.28, 0.05e-12, 0.12, 0.02e-12};  // F
constexpr ParasiticSpread capacitorInductance{0.2, 0.1e-9, 0.15, 0.05e-9};  // H
constexpr ParasiticSpread capacitorResistance{0.5, 0.05, 0.2, 0.03};        // ohm
constexpr double shortResistance = 0.02;                                    // ohm
constexpr double delaySpread = 1e-9;                                        // s

constexpr double smallestAdmittance = 1e-14;  ///< S, of an arm at an exact resonance
constexpr double smallestImpedance = 1e-9;    ///< ohm
constexpr double lineLoss = 1e-9;  ///< of a line's angle, so that no stub is exactly open

/// The product without the library's search for infinities, which costs more than the product.
inline Complex Times(Complex a, Complex b) {
    return {a.real() * b.real() - a.imag() * b.imag(), a.real() * b.imag() + a.imag() * b.real()};
}

inline Complex Inverse(Complex z) {
    const double scale = 1.0 / (z.real() * z.real() + z.imag() * z.imag());
    return {z.real() * scale, -z.imag() * scale};
}

inline Complex NotZero(Complex z, double least) {
    return std::fabs(z.real()) + std::fabs(z.imag()) < least ? Complex(least, 0.0) : z;
}

// The unknowns that all parts of a kind have in common stand first.
enum {
    commonCoilCapacitance,
    commonCapacitorInductance,
    commonCapacitorResistance,
    commonPad,
    commonVia
};

bool IsLeaf(NetworkKind kind) {
    return kind != NetworkKind::InSeries && kind != NetworkKind::InParallel;
}

/// The part of a kind that is the network itself, or a direct member of a `joint`; null: none.
const Network* DirectPart(const Network& network, NetworkKind kind, NetworkKind joint) {
    if (network.Kind == kind) return &network;
    if (network.Kind != joint) return nullptr;
    for (const Network& member : network.Members)
        if (member.Kind == kind) return &member;
    return nullptr;
}

/// An analyser's errors, to first order: of S11 and S22 directivity, tracking and match, and the
/// tracking of S21 (Dunsmore, "Handbook of Microwave Component Measurements", 2012, ch. 3).
enum CalibrationError { Directivity1, Directivity2, Tracking1, Tracking2, Match1, Match2, Through };
constexpr int numCalibrationErrors = 7;

}  // namespace

/// The quantities of one frequency.
struct BoardModel::Scratch {
    std::vector<Complex> Z;                    ///< of the nodes
    std::vector<std::array<Complex, 3>> Leaf;  ///< derivatives of Z by a leaf's unknowns
    std::vector<Complex> Arm;                  ///< impedance of each section's arm, via included
    std::array<std::vector<Complex>, 2> V, I;  ///< at the sections' left ends, by port
    std::array<Complex, 2> Scale;              ///< to unit waves
    std::vector<ChainMatrix> Lines;            ///< of sections that are lines
};

BoardModel::BoardModel(const DesignState& built, PortResistances resistances,
                       const BoardFreedom& fitted, PartFault partFault, PartPlace place)
    : design(built), ports(resistances), freedom(fitted), fault(partFault), faulty(place) {
    AddCommon();
    AddPad(false);
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        AddSlot(slot);
    AddPorts();
}

int BoardModel::Add(const BoardUnknown& unknown, double nominal) {
    unknowns.push_back(unknown);
    nominals.push_back(nominal);
    mounted.push_back(-1);
    return static_cast<int>(unknowns.size()) - 1;
}

/// What all coils have in common, and all capacitors: the design's parasitics, about which those
/// of a single part lie.
void BoardModel::AddCommon() {
    using Kind = BoardUnknownKind;
    const PartModel& model = design.PartModel;
    Add({Kind::CoilCapacitance, 0, 0, model.IndC, coilCapacitance.Common(model, model.IndC),
         freedom.CoilCapacitance});
    Add({Kind::CapacitorInductance, 0, 0, model.CapL, capacitorInductance.Common(model, model.CapL),
         freedom.CapacitorInductance});
    Add({Kind::CapacitorResistance, 0, 0, model.CapR, capacitorResistance.Common(model, model.CapR),
         freedom.CapacitorResistance});
    Add({Kind::Pad, 0, 0, padMean, padSpread});
    Add({Kind::Via, 0, 0, viaMean, viaSpread});
}

void BoardModel::AddPorts() {
    using Kind = BoardUnknownKind;
    firstOfPorts = static_cast<int>(unknowns.size());
    for (const int port : {0, 1})
        Add({Kind::PortDelay, port, 0, 0.0, delaySpread, freedom.Ports});
    firstOfCalibration = static_cast<int>(unknowns.size());
    for (int part = 0; part < 2 * numCalibrationErrors; ++part)
        Add({Kind::Calibration, part / 2, part % 2, 0.0, UsualCalibrationSpread});
}

/// A pad at a node between two slots, or within one, where it is smaller.
void BoardModel::AddPad(bool inner) {
    freePad = Add({BoardUnknownKind::Pad, node++, 0, 0.0, padDiffers, true, commonPad,
                   inner ? innerShare : 1.0});
    sections.push_back({ElementArm::None, 0, 0, freePad});
}

/// The unknowns of a leaf; gives the index of the first.
int BoardModel::AddLeaf(const Network& network, int slot) {
    using Kind = BoardUnknownKind;
    const int row = network.Row;
    const PartModel& model = design.PartModel;
    const double value = design.Elements[slot].Value(row);
    const bool isPart =
        network.Kind == NetworkKind::Inductor || network.Kind == NetworkKind::Capacitor;
    if (isPart && !(value > SmallestPartValue)) {  // a wire, or nothing: held, and not listed
        const BoardUnknown held{Kind::CapacitorResistance, slot, row, 0.0, 1.0, false};
        const int first = Add(held, SmallestPartValue);
        Add(held);
        Add(held);
        return first;
    }
    const bool faulted = fault != PartFault::None && faulty == PartPlace{slot, row};
    const int first =
        Add({Kind::Value, slot, row, 0.0, isPart ? partSpread : lineSpread, !faulted}, value);
    if (faulted && fault == PartFault::Missing) {
        Add({Kind::CoilCapacitance, slot, row, gapMean, gapSpread});
    } else if (faulted) {
        Add({Kind::CapacitorInductance, slot, row, shortMean, shortSpread});
    } else if (network.Kind == NetworkKind::Inductor) {
        const double loss = model.IndQ > 0.0 ? 1.0 / model.IndQ : 0.0;
        Add({Kind::CoilLoss, slot, row, loss, std::max(loss, 0.02), freedom.CoilQ});
        Add({Kind::CoilCapacitance, slot, row, 0.0, coilCapacitance.Own(model.IndC),
             freedom.CoilCapacitance, commonCoilCapacitance});
    } else if (network.Kind == NetworkKind::Capacitor) {
        Add({Kind::CapacitorInductance, slot, row, 0.0, capacitorInductance.Own(model.CapL),
             freedom.CapacitorInductance, commonCapacitorInductance});
        Add({Kind::CapacitorResistance, slot, row, 0.0, capacitorResistance.Own(model.CapR),
             freedom.CapacitorResistance, commonCapacitorResistance});
    } else {
        Add({Kind::Value, slot, row + 1, 0.0, lineSpread}, design.Elements[slot].Value(row + 1));
    }
    return first;
}

void BoardModel::AddNetwork(const Network& network, int slot, int parent) {
    const int index = static_cast<int>(nodes.size());
    nodes.push_back({network.Kind, parent});
    if (IsLeaf(network.Kind)) {
        nodes.back().First = AddLeaf(network, slot);
        if (faulty == PartPlace{slot, network.Row}) nodes.back().Fault = fault;
    }
    for (const Network& member : network.Members)
        AddNetwork(member, slot, index);
}

void BoardModel::AddArm(ElementArm arm, const Network& network, int slot) {
    const int first = static_cast<int>(nodes.size());
    AddNetwork(network, slot, -1);
    sections.push_back({arm, first, static_cast<int>(nodes.size()), -1});
}

void BoardModel::AddShunt(const Network& network, int slot) {
    AddArm(ElementArm::Shunt, network, slot);
    const int via = Add({BoardUnknownKind::Via, slot, 0, 0.0, viaDiffers, true, commonVia});
    sections.back().Extra = via;
    const auto healthy = [&](const Network* part) {
        return part && ValueAt({slot, part->Row}) >= 0 &&
               (fault == PartFault::None || faulty != PartPlace{slot, part->Row});
    };
    const Network* const coil = DirectPart(network, NetworkKind::Inductor, NetworkKind::InSeries);
    if (healthy(coil)) mounted[static_cast<std::size_t>(ValueAt({slot, coil->Row}))] = via;
    const Network* const capacitor =
        DirectPart(network, NetworkKind::Capacitor, NetworkKind::InParallel);
    if (!healthy(capacitor) || freePad < 0) return;
    mounted[static_cast<std::size_t>(ValueAt({slot, capacitor->Row}))] = freePad;
    freePad = -1;
}

void BoardModel::AddSlot(int slot) {
    const ElementType type = design.Elements[slot].Type;
    const ElementArm arm = InfoOf(type).Arm;
    for (const Network& network : NetworksOf(type)) {
        if (arm == ElementArm::Shunt) {
            AddShunt(network, slot);
        } else if (network.Kind == NetworkKind::InSeries) {
            for (const Network& member : network.Members) {
                AddArm(arm, member, slot);
                AddPad(&member != &network.Members.back());
            }
        } else {
            AddArm(arm, network, slot);
            AddPad(false);
        }
        FindResonators(network, slot);
    }
}

/// A joint with one coil and one capacitor among its members is a resonator.
void BoardModel::FindResonators(const Network& network, int slot) {
    int coil = -1, capacitor = -1;
    for (const Network& member : network.Members) {
        FindResonators(member, slot);
        if (member.Kind == NetworkKind::Inductor) coil = ValueAt({slot, member.Row});
        if (member.Kind == NetworkKind::Capacitor) capacitor = ValueAt({slot, member.Row});
    }
    if (coil >= 0 && capacitor >= 0) resonators.push_back({slot, coil, capacitor});
}

std::vector<double> BoardModel::Means() const {
    std::vector<double> means;
    for (const BoardUnknown& unknown : unknowns)
        means.push_back(unknown.Mean);
    return means;
}

void BoardModel::SetCalibrationSpread(double spread) {
    for (std::size_t i = static_cast<std::size_t>(firstOfCalibration); i < unknowns.size(); ++i)
        unknowns[i].Spread = spread;
}

int BoardModel::ValueAt(PartPlace place) const {
    for (std::size_t i = 0; i < unknowns.size(); ++i)
        if (unknowns[i].Kind == BoardUnknownKind::Value && unknowns[i].Slot == place.Slot &&
            unknowns[i].Row == place.Row)
            return static_cast<int>(i);
    return -1;
}

/// Impedance of a leaf and its derivatives by its unknowns.
Complex BoardModel::LeafImpedance(const Node& leaf, std::span<const double> x, double f,
                                  Complex* slopes) const {
    const auto i = static_cast<std::size_t>(leaf.First);
    const double w = TwoPi * f, value = nominals[i] * std::exp(x[i]);
    const Complex s(0.0, w);
    if (leaf.Fault == PartFault::Missing) {
        const Complex Z = Inverse({smallestAdmittance, w * x[i + 1]});
        slopes[1] = -Times(Times(Z, Z), s);
        return Z;
    }
    if (leaf.Fault == PartFault::Shorted) {
        slopes[1] = s;
        return {shortResistance, w * x[i + 1]};
    }
    if (leaf.Kind == NetworkKind::Inductor) {
        const double skin = TwoPi * std::sqrt(design.F0 * f) * value;  // R / loss
        const Complex coil(skin * x[i + 1], w * value);
        const Complex Z = Times(coil, Inverse(1.0 + Times(s, coil) * Whole(x, leaf.First + 2)));
        const Complex ratio = Times(Z, Inverse(coil));
        slopes[0] = Times(ratio, Z);
        slopes[1] = Times(ratio, ratio) * skin;
        slopes[2] = -Times(Times(Z, Z), s);
        return Z;
    }
    if (leaf.Kind == NetworkKind::Capacitor) {
        const Complex Z(0.0, -1.0 / (w * value));
        slopes[0] = -Z;
        slopes[1] = s;
        slopes[2] = 1.0;
        return Z + s * Whole(x, leaf.First + 1) + Whole(x, leaf.First + 2);
    }
    const double Z0 = nominals[i + 1] * std::exp(x[i + 1]);
    const Complex angle = LineAngle(design.F0, f, value) * Complex(1.0, -lineLoss);
    const Complex sine = std::sin(angle), cosine = std::cos(angle), j(0.0, 1.0);
    const bool shorted = leaf.Kind == NetworkKind::ShortedStub;
    const Complex Z = shorted ? j * Z0 * (sine / cosine) : -j * Z0 * (cosine / sine);
    slopes[0] = j * Z0 * angle / (shorted ? cosine * cosine : sine * sine);
    slopes[1] = Z;
    return Z;
}

/// Impedances of all nodes of an arm, and of the arm with its via.
void BoardModel::SetArmImpedance(const Section& section, std::span<const double> x, double f,
                                 Scratch& scratch) const {
    for (int k = section.FirstNode; k < section.EndNode; ++k)
        scratch.Z[static_cast<std::size_t>(k)] = 0.0;
    for (int k = section.EndNode - 1; k >= section.FirstNode; --k) {
        const auto at = static_cast<std::size_t>(k);
        const Node& part = nodes[at];
        Complex& Z = scratch.Z[at];  // of a joint the sum over its members so far
        if (IsLeaf(part.Kind)) Z = LeafImpedance(part, x, f, scratch.Leaf[at].data());
        if (part.Kind == NetworkKind::InParallel) Z = Inverse(NotZero(Z, smallestAdmittance));
        Z = NotZero(Z, smallestImpedance);
        if (part.Parent < 0) continue;
        const auto parent = static_cast<std::size_t>(part.Parent);
        scratch.Z[parent] += nodes[parent].Kind == NetworkKind::InParallel ? Inverse(Z) : Z;
    }
}

/// What every section is at f: an impedance in the line, an admittance to ground, a line's matrix.
void BoardModel::SetSections(std::span<const double> x, double f, Scratch& scratch) const {
    const double w = TwoPi * f;
    scratch.Z.resize(nodes.size());
    scratch.Leaf.resize(nodes.size());
    scratch.Arm.resize(sections.size());
    scratch.Lines.resize(sections.size());
    for (std::size_t k = 0; k < sections.size(); ++k) {
        const Section& section = sections[k];
        const double extra = section.Extra < 0 ? 0.0 : Whole(x, section.Extra);
        if (section.Arm == ElementArm::None) {
            scratch.Arm[k] = Complex(0.0, w * extra);
            continue;
        }
        const auto first = static_cast<std::size_t>(section.FirstNode);
        if (section.Arm == ElementArm::Line) {
            const auto i = static_cast<std::size_t>(nodes[first].First);
            scratch.Lines[k] = LineSection(design.F0, f, nominals[i] * std::exp(x[i]),
                                           nominals[i + 1] * std::exp(x[i + 1]));
            continue;
        }
        SetArmImpedance(section, x, f, scratch);
        const Complex Z = scratch.Z[first] + Complex(0.0, w * extra);
        scratch.Arm[k] =
            section.Arm == ElementArm::Series ? Z : Inverse(NotZero(Z, smallestImpedance));
    }
}

/// Voltages and currents of both waves between all sections: that of port 1 from the load
/// backwards, that of port 2 from the source forwards, both away from their termination, which is
/// the direction in which rounding does not grow.
void BoardModel::Travel(Scratch& scratch) const {
    const std::size_t count = sections.size();
    for (const std::size_t port : {0u, 1u}) {
        scratch.V[port].resize(count + 1);
        scratch.I[port].resize(count + 1);
    }
    auto& [V1, V2] = scratch.V;
    auto& [I1, I2] = scratch.I;
    V1[count] = ports.Load, I1[count] = 1.0;
    for (std::size_t k = count; k-- > 0;) {
        const ChainMatrix& m = scratch.Lines[k];
        V1[k] = V1[k + 1], I1[k] = I1[k + 1];
        if (sections[k].Arm == ElementArm::Series) {
            V1[k] += Times(scratch.Arm[k], I1[k]);
        } else if (sections[k].Arm == ElementArm::Line) {
            V1[k] = m.A * V1[k + 1] + m.B * I1[k + 1];
            I1[k] = m.C * V1[k + 1] + m.D * I1[k + 1];
        } else {
            I1[k] += Times(scratch.Arm[k], V1[k]);
        }
    }
    V2[0] = ports.Source, I2[0] = -1.0;
    for (std::size_t k = 0; k < count; ++k) {
        const ChainMatrix& m = scratch.Lines[k];
        V2[k + 1] = V2[k], I2[k + 1] = I2[k];
        if (sections[k].Arm == ElementArm::Series) {
            V2[k + 1] -= Times(scratch.Arm[k], I2[k]);
        } else if (sections[k].Arm == ElementArm::Line) {
            V2[k + 1] = m.D * V2[k] - m.B * I2[k];
            I2[k + 1] = m.A * I2[k] - m.C * V2[k];
        } else {
            I2[k + 1] -= Times(scratch.Arm[k], V2[k]);
        }
    }
    scratch.Scale = {2.0 * std::sqrt(ports.Source) * Inverse(V1[0] + ports.Source * I1[0]),
                     2.0 * std::sqrt(ports.Load) * Inverse(V2[count] - ports.Load * I2[count])};
}

BoardPoint BoardModel::At(std::span<const double> x, double f, BoardSlopes* slopes,
                          bool bare) const {
    static thread_local Scratch scratch;  // an evaluation allocates nothing
    SetSections(x, f, scratch);
    Travel(scratch);
    const Complex V1 = scratch.V[0].front(), I1 = ports.Source * scratch.I[0].front();
    const Complex V2 = scratch.V[1].back(), I2 = ports.Load * scratch.I[1].back();
    const BoardPoint point{Times(V1 - I1, Inverse(V1 + I1)),
                           scratch.Scale[0] * std::sqrt(ports.Load),
                           Times(V2 + I2, Inverse(V2 - I2))};
    if (slopes) {
        for (std::vector<Complex>* const list : {&slopes->S11, &slopes->S21, &slopes->S22})
            list->assign(unknowns.size(), 0.0);
        if (!bare)  // the waves behind the cables
            for (const std::size_t port : {0u, 1u})
                scratch.Scale[port] = Times(
                    scratch.Scale[port],
                    std::polar(1.0, -TwoPi * f * x[static_cast<std::size_t>(firstOfPorts) + port]));
        AddSlopes(scratch, x, f, *slopes);
    }
    return bare ? point : Seen(point, x, f, slopes);
}

bool BoardModel::IsWanted(const BoardSlopes& slopes, int unknown) const {
    const auto i = static_cast<std::size_t>(unknown);
    return slopes.Wanted.empty() ? unknowns[i].Free : slopes.Wanted[i] != 0;
}

/// Adds the derivatives of all sections.
void BoardModel::AddSlopes(const Scratch& scratch, std::span<const double> x, double f,
                           BoardSlopes& slopes) const {
    const double w = TwoPi * f;
    const auto half = [](Complex a) { return 0.5 * a; };
    for (std::size_t k = 0; k < sections.size(); ++k) {
        if (sections[k].Arm == ElementArm::None) {
            if (!IsWanted(slopes, sections[k].Extra)) continue;
            const Complex v1 = Times(scratch.V[0][k], scratch.Scale[0]);
            const Complex v2 = Times(scratch.V[1][k], scratch.Scale[1]);
            const Complex minusS(0.0, -w);
            AddSlope(sections[k].Extra,
                     {half(Times(Times(v1, v1), minusS)), half(Times(Times(v1, v2), minusS)),
                      half(Times(Times(v2, v2), minusS))},
                     slopes);
        } else if (sections[k].Arm == ElementArm::Line) {
            AddLineSlopes(sections[k], k, scratch, x, f, slopes);
        } else {
            AddArmSlopes(sections[k], k, scratch, w, slopes);
        }
    }
}

/// Adds a derivative by an unknown, and by what it has in common with others.
void BoardModel::AddSlope(int unknown, const BoardPoint& slope, BoardSlopes& slopes) const {
    const auto add = [&](int to, double share) {
        const auto i = static_cast<std::size_t>(to);
        slopes.S11[i] += share * slope.S11;
        slopes.S21[i] += share * slope.S21;
        slopes.S22[i] += share * slope.S22;
    };
    add(unknown, 1.0);
    const BoardUnknown& own = unknowns[static_cast<std::size_t>(unknown)];
    if (own.Common >= 0) add(own.Common, own.Share);
}

/// Of an arm: the current through every leaf of it, then I I dZ / 2.
void BoardModel::AddArmSlopes(const Section& section, std::size_t index, const Scratch& scratch,
                              double w, BoardSlopes& slopes) const {
    static thread_local std::vector<Complex> share;  // of the arm's current
    share.resize(nodes.size());
    std::array<Complex, 2> arm;
    for (const std::size_t port : {0u, 1u})
        arm[port] =
            Times(scratch.Scale[port], section.Arm == ElementArm::Series
                                           ? scratch.I[port][index]
                                           : Times(scratch.V[port][index], scratch.Arm[index]));
    const Complex s11 = 0.5 * Times(arm[0], arm[0]), s21 = 0.5 * Times(arm[0], arm[1]),
                  s22 = 0.5 * Times(arm[1], arm[1]);
    const auto add = [&](int unknown, Complex dZ) {
        if (IsWanted(slopes, unknown))
            AddSlope(unknown, {Times(s11, dZ), Times(s21, dZ), Times(s22, dZ)}, slopes);
    };
    if (section.Extra >= 0) add(section.Extra, Complex(0.0, w));
    for (int k = section.FirstNode; k < section.EndNode; ++k) {
        const auto at = static_cast<std::size_t>(k);
        const Node& part = nodes[at];
        share[at] = 1.0;
        if (part.Parent >= 0) {
            const auto parent = static_cast<std::size_t>(part.Parent);
            share[at] = share[parent];
            if (nodes[parent].Kind == NetworkKind::InParallel)
                share[at] = Times(share[at], Times(scratch.Z[parent], Inverse(scratch.Z[at])));
        }
        if (!IsLeaf(part.Kind)) continue;
        const bool isPart =
            part.Kind == NetworkKind::Inductor || part.Kind == NetworkKind::Capacitor;
        const int count = part.Fault == PartFault::None && isPart ? 3 : 2;
        const Complex square = Times(share[at], share[at]);
        for (int i = 0; i < count; ++i)
            add(part.First + i, Times(square, scratch.Leaf[at][static_cast<std::size_t>(i)]));
    }
}

/// Of a line: the change dM of its chain matrix is a source of voltage e and one of current g at
/// its left end, dS_ij = (I_i e_j - V_i g_j) / 2.
void BoardModel::AddLineSlopes(const Section& section, std::size_t index, const Scratch& scratch,
                               std::span<const double> x, double f, BoardSlopes& slopes) const {
    const auto i =
        static_cast<std::size_t>(nodes[static_cast<std::size_t>(section.FirstNode)].First);
    const ChainMatrix& m = scratch.Lines[index];
    const double angle = LineAngle(design.F0, f, nominals[i] * std::exp(x[i]));
    const double Z0 = nominals[i + 1] * std::exp(x[i + 1]);
    const Complex quarter = m.B / Z0 * Complex(0.0, 1.0);  // - sin
    const Complex turned = m.A * Complex(0.0, 1.0);        // j cos
    const ChainMatrix byLength{angle * quarter, angle * Z0 * turned, angle / Z0 * turned,
                               angle * quarter};
    const ChainMatrix byZ0{0.0, m.B, -m.C, 0.0};
    const auto by = [&](const ChainMatrix& d, std::size_t first, std::size_t second) {
        const auto& V = scratch.V;
        const auto& I = scratch.I;
        const Complex e = d.A * V[second][index + 1] + d.B * I[second][index + 1];
        const Complex g = d.C * V[second][index + 1] + d.D * I[second][index + 1];
        return 0.5 * scratch.Scale[first] * scratch.Scale[second] *
               (I[first][index] * e - V[first][index] * g);
    };
    const std::array<const ChainMatrix*, 2> changes{&byLength, &byZ0};
    for (const std::size_t k : {0u, 1u}) {
        slopes.S11[i + k] += by(*changes[k], 0, 0);
        slopes.S21[i + k] += by(*changes[k], 0, 1);
        slopes.S22[i + k] += by(*changes[k], 1, 1);
    }
}

/// The board behind its cables, through the analyser's errors. In derivatives those, which are
/// small, only enter to zeroth order.
BoardPoint BoardModel::Seen(const BoardPoint& point, std::span<const double> x, double f,
                            BoardSlopes* slopes) const {
    const auto delay = static_cast<std::size_t>(firstOfPorts);
    const double w = TwoPi * f;
    const Complex one = std::polar(1.0, -w * x[delay]), two = std::polar(1.0, -w * x[delay + 1]);
    const Complex S11 = point.S11 * one * one, S21 = point.S21 * one * two,
                  S22 = point.S22 * two * two;
    const auto error = [&](CalibrationError which) {
        const auto at = static_cast<std::size_t>(firstOfCalibration + 2 * which);
        return Complex(x[at], x[at + 1]);
    };
    const Complex match1 = error(Match1), match2 = error(Match2);
    if (slopes) {
        const Complex turn(0.0, -w);
        slopes->S11[delay] = 2.0 * turn * S11;
        slopes->S22[delay + 1] = 2.0 * turn * S22;
        slopes->S21[delay] = slopes->S21[delay + 1] = turn * S21;
        const auto set = [&](std::vector<Complex>& list, CalibrationError which, Complex slope) {
            const auto at = static_cast<std::size_t>(firstOfCalibration + 2 * which);
            list[at] = slope;
            list[at + 1] = Complex(-slope.imag(), slope.real());
        };
        set(slopes->S11, Directivity1, 1.0);
        set(slopes->S22, Directivity2, 1.0);
        set(slopes->S11, Tracking1, S11);
        set(slopes->S22, Tracking2, S22);
        set(slopes->S11, Match1, S11 * S11);
        set(slopes->S11, Match2, S21 * S21);
        set(slopes->S22, Match1, S21 * S21);
        set(slopes->S22, Match2, S22 * S22);
        set(slopes->S21, Match1, S21 * S11);
        set(slopes->S21, Match2, S21 * S22);
        set(slopes->S21, Through, S21);
    }
    return {error(Directivity1) + S11 * (1.0 + error(Tracking1)) + match1 * S11 * S11 +
                match2 * S21 * S21,
            S21 * (1.0 + error(Through) + match1 * S11 + match2 * S22),
            error(Directivity2) + S22 * (1.0 + error(Tracking2)) + match2 * S22 * S22 +
                match1 * S21 * S21};
}

}  // namespace ladderwise
