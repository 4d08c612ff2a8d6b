// The ladder as a circuit of single parts between numbered nodes, made fit for a nodal simulator:
// what netlists and schematics are written from. No Qt.
#pragma once

#include <string>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

enum class SpiceKind {
    Resistor,      ///< Value in ohm
    SkinResistor,  ///< Value in ohm at F0, growing with the root of the frequency
    Inductor,      ///< Value in H
    Capacitor,     ///< Value in F
    Line,          ///< Value is Z0 in ohm; both ports have node 0 as their return
    Wire,          ///< no voltage at all; Value is 0
};

struct SpicePart {
    SpiceKind Kind;
    std::string Name;  ///< begins with the letter of its kind
    std::string A, B;  ///< nodes; "0" is ground
    double Value;
    double Delay = 0.0;  ///< of a line, s
};

struct SpiceCircuit {
    std::vector<SpicePart> Parts;
    std::vector<std::string> Remarks;  ///< what the circuit has otherwise than the ladder, and why
};

/// Conductances below this one a simulator may take for zero; so no resistor is larger, ohm.
inline constexpr double LargestResistor = 1e12;

/// The part of its reactance at F0 that an inductor gets in series where a loop of inductors alone
/// would leave its direct current open.
inline constexpr double LoopLoss = 1e-9;

/// The circuit of the ladder of `design` from node "in" to node "out", parasitics as parts of their
/// own, named by the designators. Without a part in the line "in" is "out", unless `bothPorts` asks
/// for two nodes with a wire between them. Values up to SmallestPartValue, to which the analysis
/// raises all that are less, count as zero: such an inductor is a wire, such a capacitor is absent.
/// Every node has a path for direct current; no loop is of inductors and lines alone but one of
/// lines. The terminations are not included, but `terminated` tells that in and out have them.
SpiceCircuit CircuitOf(const FilterDesign& design, bool terminated, bool bothPorts);

}  // namespace ladderwise
