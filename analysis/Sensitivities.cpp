// The adjoint of a ladder over blocks of frequencies.
//
//   s = j w        rad/s              V, I    behind each arm, towards the load (load: V = RL, I =
//   1) Z, Y           of an arm          E       V + RS I at the source; H is proportional to 1 / E
//   B              V - RS I           (pV, pI)  the row with E = pV V + pI I behind an arm, over E
//   series arm     V := V + Z I       d ln E = pV I dZ,  pI := pI + pV Z
//   shunt arm      I := I + Y V       d ln E = pI V dY,  pV := pV + pI Y
//
// Within an arm of several parts the derivative runs back the same way, from the arm's immittance
// to those of its members.
#include "analysis/Sensitivities.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "analysis/Circuitanalysis.h"
#include "analysis/VectorLoops.h"
#include "design/ElementNetworks.h"

namespace ladderwise {

namespace {

constexpr double DbPerNeper = 8.685889638065036;  ///< 20 / ln 10
constexpr std::size_t SlopeBlock = 32;            ///< frequencies that are done together

/// Complex numbers at the frequencies of a block, in two rows that the compiler can work on.
struct Block {
    alignas(32) std::array<double, SlopeBlock> Re;
    alignas(32) std::array<double, SlopeBlock> Im;
};

/// out[i] = f(i) over the block; f returns real and imaginary part.
template <typename Function>
inline void Fill(Block& out, const Function& f) {
    LADDER_INDEPENDENT
    for (std::size_t i = 0; i < SlopeBlock; ++i) {
        const auto [re, im] = f(i);
        out.Re[i] = re;
        out.Im[i] = im;
    }
}

struct Pair {
    double Re, Im;
};

inline Pair At(const Block& z, std::size_t i) {
    return {z.Re[i], z.Im[i]};
}
inline Pair operator+(Pair a, Pair b) {
    return {a.Re + b.Re, a.Im + b.Im};
}
inline Pair operator*(Pair a, Pair b) {
    return {a.Re * b.Re - a.Im * b.Im, a.Re * b.Im + a.Im * b.Re};
}
inline Pair operator*(double x, Pair b) {
    return {x * b.Re, x * b.Im};
}
inline Pair Inverse(Pair z) {
    const double size = 1.0 / (z.Re * z.Re + z.Im * z.Im);
    return {z.Re * size, -z.Im * size};
}

/// A part or a group of parts in an arm. It has an impedance or an admittance, whichever it is
/// asked for: members in series add impedances, members in parallel admittances.
struct ArmNode {
    NetworkKind Kind = NetworkKind::InSeries;
    bool AsAdmittance = false;  ///< what it is asked for
    int Place = -1;             ///< of a part: index of its value; lines and stubs: the length
    double Value = 0.0;         ///< of a part: H, F; of a stub its length at F0, rad
    double Z0 = 0.0;            ///< of a stub, ohm
    std::vector<std::size_t> Members{};  ///< of a group
    Block Immittance;                    ///< as asked for
    Block Slope;                         ///< its derivative with respect to ln(value)
    Block Slope0;                        ///< of a stub: with respect to ln(Z0)
    Block Weight;                        ///< d ln E / d Immittance
};

/// One arm of the ladder: its nodes, members before the group that they are in.
struct Arm {
    ElementArm Kind = ElementArm::None;
    std::vector<ArmNode> Nodes{};
    Block V, I;             ///< behind it
    CircuitElement Line{};  ///< of a line: length (rad at F0) and impedance
};

/// What the part models need at the frequencies of a block.
struct BlockPoints {
    std::array<double, SlopeBlock> Omega;     ///< rad/s
    std::array<double, SlopeBlock> Resist;    ///< R / L of a coil, ohm/H
    std::array<double, SlopeBlock> Relative;  ///< f / F0
};

constexpr double RadiansOf(double degrees) {
    return degrees * (TwoPi / 360.0);
}

class SlopeLadder {
public:
    SlopeLadder(const DesignState& design, const std::vector<ValuePlace>& places)
        : model(design.PartModel), source(design.RSource), load(design.RLoad) {
        for (int slot = 1; slot <= SlotsInUse(design); ++slot)
            AddSlot(design, slot, places);
    }

    /// Adds the slopes of the block to out(place, point offset); `reflected` may be null.
    void Run(const BlockPoints& points, double* attenuation, double* reflected, std::size_t stride,
             std::size_t count) {
        at = &points;
        Block E, B;
        TowardsSource(E, B);
        Descend(E, source, attenuation, 1.0, stride, count);
        if (!reflected) return;
        // d ln |Gamma| = d ln |B| - d ln |E|
        Descend(E, source, reflected, 1.0, stride, count);
        Descend(B, -source, reflected, -1.0, stride, count);
    }

private:
    void AddSlot(const DesignState& design, int number, const std::vector<ValuePlace>& places) {
        const CircuitElement& slot = design.Elements[static_cast<std::size_t>(number)];
        const ElementInfo& info = InfoOf(slot.Type);
        for (const Network& network : BuiltNetworksOf(design, number)) {
            Arm& arm = arms.emplace_back();
            arm.Kind = info.Arm;
            if (info.Arm == ElementArm::Line)
                arm.Line = {slot.Type, RadiansOf(slot.V1), slot.V2, 0.0, 0.0};
            AddNode(arm, network, info.Arm == ElementArm::Shunt, slot, number, places);
        }
    }

    std::size_t AddNode(Arm& arm, const Network& network, bool asAdmittance,
                        const CircuitElement& slot, int number,
                        const std::vector<ValuePlace>& places) {
        ArmNode node;
        node.Kind = network.Kind;
        node.AsAdmittance = asAdmittance;
        for (const Network& member : network.Members)
            node.Members.push_back(AddNode(arm, member, network.Kind == NetworkKind::InParallel,
                                           slot, number, places));
        if (network.Members.empty()) {
            const auto place =
                std::find(places.begin(), places.end(), ValuePlace{number, network.Row});
            if (place != places.end()) node.Place = static_cast<int>(place - places.begin());
            const double value = ValueOf(slot, network);
            const bool part =
                network.Kind == NetworkKind::Inductor || network.Kind == NetworkKind::Capacitor;
            node.Value = part ? GuardedPartValue(value) : RadiansOf(value);
            if (!part) node.Z0 = slot.Value(network.Row + 1);
        }
        arm.Nodes.push_back(std::move(node));
        return arm.Nodes.size() - 1;
    }

    bool IsIdeal() const { return model.Choice == PartChoice::IdealParts; }

    void EvaluateInductor(ArmNode& node) const {
        const double L = node.Value, C = model.IndC;
        if (IsIdeal()) {
            const double sign = node.AsAdmittance ? -1.0 : 1.0;
            Fill(node.Immittance, [&](std::size_t i) {
                const double x = at->Omega[i] * L;
                return Pair{0.0, node.AsAdmittance ? -1.0 / x : x};
            });
            Fill(node.Slope, [&](std::size_t i) { return sign * At(node.Immittance, i); });
            return;
        }
        const auto coil = [&](std::size_t i) { return Pair{at->Resist[i] * L, at->Omega[i] * L}; };
        const auto shunted = [&](std::size_t i) {
            const Pair z = coil(i);
            const double b = at->Omega[i] * C;
            return Inverse({1.0 - b * z.Im, b * z.Re});
        };
        if (node.AsAdmittance) {
            Fill(node.Slope, [&](std::size_t i) { return -1.0 * Inverse(coil(i)); });
            Fill(node.Immittance, [&](std::size_t i) {
                return Pair{-node.Slope.Re[i], at->Omega[i] * C - node.Slope.Im[i]};
            });
        } else {
            Fill(node.Immittance, [&](std::size_t i) { return coil(i) * shunted(i); });
            Fill(node.Slope, [&](std::size_t i) { return At(node.Immittance, i) * shunted(i); });
        }
    }

    void EvaluateCapacitor(ArmNode& node) const {
        const double C = node.Value;
        const double R = IsIdeal() ? 0.0 : model.CapR, L = IsIdeal() ? 0.0 : model.CapL;
        if (IsIdeal() && node.AsAdmittance) {
            Fill(node.Immittance, [&](std::size_t i) { return Pair{0.0, at->Omega[i] * C}; });
            node.Slope = node.Immittance;
            return;
        }
        const auto impedance = [&](std::size_t i) {
            return Pair{R, at->Omega[i] * L - 1.0 / (at->Omega[i] * C)};
        };
        if (!node.AsAdmittance) {
            Fill(node.Immittance, impedance);
            Fill(node.Slope, [&](std::size_t i) { return Pair{0.0, 1.0 / (at->Omega[i] * C)}; });
            return;
        }
        Fill(node.Immittance, [&](std::size_t i) { return Inverse(impedance(i)); });
        Fill(node.Slope, [&](std::size_t i) {
            const Pair y = At(node.Immittance, i);
            return y * y * Pair{0.0, -1.0 / (at->Omega[i] * C)};
        });
    }

    /// Of a stub of angle u: shorted Z = j Z0 tan u, open Y = j tan u / Z0.
    void EvaluateStub(ArmNode& node) const {
        const bool open = node.Kind == NetworkKind::OpenStub;
        const double unit = open ? 1.0 / node.Z0 : node.Z0;
        for (std::size_t i = 0; i < SlopeBlock; ++i) {
            const double u = node.Value * at->Relative[i];
            const double x = unit * std::tan(u);
            const double slope = unit * u * (1.0 + std::tan(u) * std::tan(u));
            const bool inverted = open != node.AsAdmittance;
            node.Immittance.Re[i] = node.Slope.Re[i] = node.Slope0.Re[i] = 0.0;
            node.Immittance.Im[i] = inverted ? -1.0 / x : x;
            node.Slope.Im[i] = inverted ? slope / (x * x) : slope;
            node.Slope0.Im[i] = (open == inverted ? 1.0 : -1.0) * node.Immittance.Im[i];
        }
    }

    void EvaluateGroup(Arm& arm, ArmNode& node) const {
        const bool parallel = node.Kind == NetworkKind::InParallel;
        node.Immittance = arm.Nodes[node.Members.front()].Immittance;
        for (std::size_t m = 1; m < node.Members.size(); ++m) {
            const Block& member = arm.Nodes[node.Members[m]].Immittance;
            Fill(node.Immittance,
                 [&](std::size_t i) { return At(node.Immittance, i) + At(member, i); });
        }
        if (parallel != node.AsAdmittance)
            Fill(node.Immittance, [&](std::size_t i) { return Inverse(At(node.Immittance, i)); });
    }

    void Evaluate(Arm& arm, ArmNode& node) const {
        switch (node.Kind) {
            case NetworkKind::Inductor:
                return EvaluateInductor(node);
            case NetworkKind::Capacitor:
                return EvaluateCapacitor(node);
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                return EvaluateStub(node);
            case NetworkKind::InSeries:
            case NetworkKind::InParallel:
                return EvaluateGroup(arm, node);
            case NetworkKind::Line:
                break;  // has a chain matrix instead
        }
    }

    /// The chain matrix of a line at point i, all but C and B real: {A = D, Im B, Im C}.
    std::array<double, 3> MatrixOf(const CircuitElement& line, std::size_t i) const {
        const double u = line.V1 * at->Relative[i];
        return {std::cos(u), line.V2 * std::sin(u), std::sin(u) / line.V2};
    }

    void TowardsSource(Block& E, Block& B) {
        Block V, I;
        Fill(V, [&](std::size_t) { return Pair{load, 0.0}; });
        Fill(I, [&](std::size_t) { return Pair{1.0, 0.0}; });
        for (auto arm = arms.rbegin(); arm != arms.rend(); ++arm) {
            for (ArmNode& node : arm->Nodes)
                Evaluate(*arm, node);
            arm->V = V;
            arm->I = I;
            const Block& X = arm->Nodes.back().Immittance;
            if (arm->Kind == ElementArm::Series)
                Fill(V, [&](std::size_t i) { return At(V, i) + At(X, i) * At(I, i); });
            else if (arm->Kind == ElementArm::Shunt)
                Fill(I, [&](std::size_t i) { return At(I, i) + At(X, i) * At(V, i); });
            else
                for (std::size_t i = 0; i < SlopeBlock; ++i) {
                    const auto [a, b, c] = MatrixOf(arm->Line, i);
                    const Pair v = At(V, i), j = At(I, i);
                    const Pair v1 = a * v + Pair{0.0, b} * j, i1 = Pair{0.0, c} * v + a * j;
                    V.Re[i] = v1.Re, V.Im[i] = v1.Im, I.Re[i] = i1.Re, I.Im[i] = i1.Im;
                }
        }
        Fill(E, [&](std::size_t i) { return At(V, i) + source * At(I, i); });
        Fill(B, [&](std::size_t i) { return At(V, i) + -source * At(I, i); });
    }

    /// Carries the row (1, resistance) / whole towards the load and adds what it finds: a
    /// value that two parts make has the slopes of both.
    void Descend(const Block& whole, double resistance, double* out, double sign,
                 std::size_t stride, std::size_t count) {
        Block pV, pI;
        Fill(pV, [&](std::size_t i) { return Inverse(At(whole, i)); });
        Fill(pI, [&](std::size_t i) { return resistance * At(pV, i); });
        const auto store = [&](int place, const Block& weight, const Block& slope) {
            if (place < 0) return;
            std::array<double, SlopeBlock> db;
            LADDER_INDEPENDENT
            for (std::size_t i = 0; i < SlopeBlock; ++i)
                db[i] =
                    sign * DbPerNeper * (weight.Re[i] * slope.Re[i] - weight.Im[i] * slope.Im[i]);
            double* const to = out + static_cast<std::size_t>(place) * stride;
            for (std::size_t i = 0; i < count; ++i)
                to[i] += db[i];
        };
        for (Arm& arm : arms) {
            if (arm.Kind == ElementArm::Line) {
                DescendLine(arm, pV, pI, store);
                continue;
            }
            const bool series = arm.Kind == ElementArm::Series;
            Block& from = series ? pV : pI;
            Block& to = series ? pI : pV;
            const Block& state = series ? arm.I : arm.V;
            ArmNode& root = arm.Nodes.back();
            Fill(root.Weight, [&](std::size_t i) { return At(from, i) * At(state, i); });
            Fill(to,
                 [&](std::size_t i) { return At(to, i) + At(from, i) * At(root.Immittance, i); });
            for (std::size_t n = arm.Nodes.size(); n-- > 0;)
                Distribute(arm, arm.Nodes[n], store);
        }
    }

    /// The weight of a node to its members, or that of a part into the output.
    template <typename Store>
    void Distribute(Arm& arm, ArmNode& node, const Store& store) const {
        if (node.Members.empty()) {
            store(node.Place, node.Weight, node.Slope);
            if (node.Z0 != 0.0 && node.Place >= 0) store(node.Place + 1, node.Weight, node.Slope0);
            return;
        }
        if ((node.Kind == NetworkKind::InParallel) != node.AsAdmittance)  // d(1/x) = -(1/x)^2 dx
            Fill(node.Weight, [&](std::size_t i) {
                const Pair x = At(node.Immittance, i);
                return -1.0 * (At(node.Weight, i) * x * x);
            });
        for (const std::size_t member : node.Members)
            arm.Nodes[member].Weight = node.Weight;
    }

    template <typename Store>
    void DescendLine(Arm& arm, Block& pV, Block& pI, const Store& store) const {
        const int place = arm.Nodes.back().Place;
        Block ofLength, ofZ0, one;
        for (std::size_t i = 0; i < SlopeBlock; ++i) {
            const auto [a, b, c] = MatrixOf(arm.Line, i);
            const double u = arm.Line.V1 * at->Relative[i];
            const double z0 = arm.Line.V2;
            const Pair v = At(arm.V, i), j = At(arm.I, i), p = At(pV, i), q = At(pI, i);
            // d(A, B, C)/du = (-sin u, j Z0 cos u, j cos u / Z0), times u
            const double da = -u * c * z0, db = u * a * z0, dc = u * a / z0;
            const Pair length = p * (da * v + Pair{0.0, db} * j) + q * (Pair{0.0, dc} * v + da * j);
            const Pair ohms = p * (Pair{0.0, b} * j) + q * (Pair{0.0, -c} * v);
            const Pair p2 = a * p + Pair{0.0, c} * q, q2 = Pair{0.0, b} * p + a * q;
            ofLength.Re[i] = length.Re, ofLength.Im[i] = length.Im;
            ofZ0.Re[i] = ohms.Re, ofZ0.Im[i] = ohms.Im;
            pV.Re[i] = p2.Re, pV.Im[i] = p2.Im, pI.Re[i] = q2.Re, pI.Im[i] = q2.Im;
            one.Re[i] = 1.0, one.Im[i] = 0.0;
        }
        if (place < 0) return;
        store(place, ofLength, one);
        store(place + 1, ofZ0, one);
    }

    const PartModel& model;
    double source, load;
    std::vector<Arm> arms;
    const BlockPoints* at = nullptr;
};

}  // namespace

std::vector<ValuePlace> ValuesInUse(const DesignState& design) {
    std::vector<ValuePlace> places;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        const CircuitElement& element = design.Elements[static_cast<std::size_t>(slot)];
        const ElementInfo& info = InfoOf(element.Type);
        for (int row = 0; row < 4; ++row)
            if (info.Values[static_cast<std::size_t>(row)] != ValueKind::Unused &&
                !(element.Value(row) > NotUsedLimit))
                places.push_back({slot, row});
    }
    return places;
}

LadderSlopes SlopesOf(const DesignState& design, std::span<const double> freqs, bool returnLoss) {
    LadderSlopes slopes;
    slopes.Places = ValuesInUse(design);
    slopes.Points = freqs.size();
    slopes.Attenuation.resize(slopes.Places.size() * freqs.size());
    if (returnLoss) slopes.ReturnLoss.resize(slopes.Attenuation.size());
    if (freqs.empty()) return slopes;
    SlopeLadder ladder(design, slopes.Places);
    BlockPoints points;
    for (std::size_t first = 0; first < freqs.size(); first += SlopeBlock) {
        const std::size_t count = std::min(SlopeBlock, freqs.size() - first);
        for (std::size_t i = 0; i < SlopeBlock; ++i) {
            const double f = freqs[first + std::min(i, count - 1)];
            points.Omega[i] = TwoPi * f;
            points.Resist[i] = TwoPi * std::sqrt(design.F0 * f) / design.PartModel.IndQ;
            points.Relative[i] = f / design.F0;
        }
        ladder.Run(points, slopes.Attenuation.data() + first,
                   returnLoss ? slopes.ReturnLoss.data() + first : nullptr, freqs.size(), count);
    }
    return slopes;
}

}  // namespace ladderwise
