// A board as it was built from a design: the ladder with a value and parasitics of its own for
// every part, and with what no drawn ladder has: pads, vias, cables and the residue of a
// calibration. Its S-parameters with their derivatives by everything that can be unknown. No Qt.
#pragma once

#include <span>
#include <vector>

#include "analysis/SParameters.h"
#include "design/ElementNetworks.h"

namespace ladderwise {

/// What an unknown of a board is; all but values of parts are in SI units.
enum class BoardUnknownKind {
    Value,            ///< ln of a part's value, or of a line's length or impedance, over nominal
    CoilLoss,         ///< 1 / Q of a coil at F0
    CoilCapacitance,  ///< across a coil, or across the place of a part that is missing
    CapacitorInductance,  ///< in line with a capacitor, or of a short in the place of a part
    CapacitorResistance,  ///< in line with a capacitor
    Pad,                  ///< capacitance of a node to ground
    Via,                  ///< inductance between a shunt arm and ground
    PortDelay,            ///< one way, of the cable at a port
    Calibration,          ///< real or imaginary part of an error of the analyser
};

/// One unknown: where it belongs, and what is known of it before anything is measured.
struct BoardUnknown {
    BoardUnknownKind Kind;
    int Slot = 0;         ///< of a part or an arm; of a pad its node, of a port 0 or 1
    int Row = 0;          ///< of a part: 0 .. 3
    double Mean = 0.0;    ///< it is expected about here,
    double Spread = 1.0;  ///< give or take this much (one standard deviation)
    bool Free = true;     ///< else it stays at its mean
    int Common = -1;      ///< index of the unknown to which it is added: what all of its kind have
    double Share = 1.0;   ///< and how much of that
};

/// Gross faults of a single part.
enum class PartFault { None, Missing, Shorted };

/// A part by its place in the ladder.
struct PartPlace {
    int Slot = 0;  ///< 1 .. NumElements
    int Row = 0;   ///< 0 .. 3

    bool operator==(const PartPlace&) const = default;
};

/// What is fitted beside the values of the parts; what is not stays as the design has it.
struct BoardFreedom {
    bool CoilQ = true;
    bool CoilCapacitance = true;
    bool CapacitorInductance = true;
    bool CapacitorResistance = true;
    bool Ports = true;
};

/// A board's S11, S21 (which is S12) and S22 as an analyser shows them.
struct BoardPoint {
    Complex S11, S21, S22;
};

/// Derivatives of a point by each unknown, in their order.
struct BoardSlopes {
    std::vector<Complex> S11, S21, S22;
    std::vector<char> Wanted{};  ///< whose are asked for; empty: those of all free unknowns
};

/// What an analyser's errors are expected to be before anything is known of it: -51 dB.
inline constexpr double UsualCalibrationSpread = 2e-3;

class BoardModel {
public:
    /// The ladder of `design` between `ports`, with one part at fault or none.
    BoardModel(const DesignState& design, PortResistances ports, const BoardFreedom& freedom,
               PartFault fault = PartFault::None, PartPlace faulty = {});

    const std::vector<BoardUnknown>& Unknowns() const { return unknowns; }
    /// Every unknown at its mean.
    std::vector<double> Means() const;

    /// The board at f (Hz, above 0) with the unknowns x. `slopes`, if asked for, are those of free
    /// unknowns that are wanted, and 0 for others that are held. With `bare` there are no cables
    /// and no analyser's errors.
    BoardPoint At(std::span<const double> x, double f, BoardSlopes* slopes = nullptr,
                  bool bare = false) const;

    /// Index of the unknown value of a part or line; -1 if there is none.
    int ValueAt(PartPlace place) const;
    double Nominal(int unknown) const { return nominals[static_cast<std::size_t>(unknown)]; }
    /// The unknown that counts as part of the value: a pad beside a capacitor to ground, a via in
    /// line with a coil to ground; -1 if there is none.
    int MountedWith(int unknown) const { return mounted[static_cast<std::size_t>(unknown)]; }
    /// An unknown with what all of its kind have in common.
    double Whole(std::span<const double> x, int unknown) const {
        const auto i = static_cast<std::size_t>(unknown);
        const int common = unknowns[i].Common;
        return x[i] + (common < 0 ? 0.0 : unknowns[i].Share * x[static_cast<std::size_t>(common)]);
    }

    /// A coil and a capacitor that resonate: indices of their values.
    struct Resonator {
        int Slot = 0;
        int Coil = 0;
        int Capacitor = 0;
    };
    const std::vector<Resonator>& Resonators() const { return resonators; }

    /// What is expected of each real or imaginary part of the analyser's errors.
    void SetCalibrationSpread(double spread);

    /// Moves the references for other terminations.
    void SetPorts(PortResistances resistances) { ports = resistances; }

private:
    /// A leaf or a joint of an arm; parents stand before their members.
    struct Node {
        NetworkKind Kind;
        int Parent = -1;  ///< index in `nodes`
        int First = -1;   ///< index of its first unknown: value, then parasitics
        PartFault Fault = PartFault::None;
    };
    /// What stands between two nodes of the ladder, or between one and ground.
    struct Section {
        ElementArm Arm;
        int FirstNode = 0, EndNode = 0;  ///< range in `nodes`; a line has one, a pad none
        int Extra = -1;                  ///< unknown: of a pad itself, of a shunt arm its via
    };
    struct Scratch;

    int Add(const BoardUnknown& unknown, double nominal = 1.0);
    void AddNetwork(const Network& network, int slot, int parent);
    int AddLeaf(const Network& network, int slot);
    void AddCommon();
    void AddPorts();
    void AddArm(ElementArm arm, const Network& network, int slot);
    void AddShunt(const Network& network, int slot);
    void AddSlot(int slot);
    void AddPad(bool inner);
    void FindResonators(const Network& network, int slot);
    Complex LeafImpedance(const Node& node, std::span<const double> x, double f,
                          Complex* slopes) const;
    void SetArmImpedance(const Section& section, std::span<const double> x, double f,
                         Scratch& scratch) const;
    void SetSections(std::span<const double> x, double f, Scratch& scratch) const;
    void Travel(Scratch& scratch) const;
    bool IsWanted(const BoardSlopes& slopes, int unknown) const;
    void AddSlopes(const Scratch& scratch, std::span<const double> x, double f,
                   BoardSlopes& slopes) const;
    void AddSlope(int unknown, const BoardPoint& slope, BoardSlopes& slopes) const;
    void AddArmSlopes(const Section& section, std::size_t index, const Scratch& scratch, double w,
                      BoardSlopes& slopes) const;
    void AddLineSlopes(const Section& section, std::size_t index, const Scratch& scratch,
                       std::span<const double> x, double f, BoardSlopes& slopes) const;
    BoardPoint Seen(const BoardPoint& point, std::span<const double> x, double f,
                    BoardSlopes* slopes) const;

    DesignState design;
    PortResistances ports;
    BoardFreedom freedom;
    PartFault fault;
    PartPlace faulty;
    std::vector<BoardUnknown> unknowns;
    std::vector<double> nominals;
    std::vector<int> mounted;
    std::vector<Node> nodes;
    std::vector<Section> sections;
    std::vector<Resonator> resonators;
    int node = 0;      ///< of the ladder, while it is built
    int freePad = -1;  ///< of that node, while no capacitor has it
    int firstOfPorts = 0;
    int firstOfCalibration = 0;
};

}  // namespace ladderwise
