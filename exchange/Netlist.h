// The ladder as a netlist for circuit simulators. No Qt, no disk.
#pragma once

#include <string>

#include "exchange/Touchstone.h"

namespace ladderwise {

/// Whose text is written: no single one is exact in both.
enum class SpiceDialect { Ngspice, Ltspice };

struct NetlistOptions {
    SpiceDialect For = SpiceDialect::Ngspice;
    bool Subcircuit = false;  ///< ports in and out alone: no terminations, no analysis
    FrequencyRange Sweep{};
};

/// The sweep of a design as a range for a simulator.
FrequencyRange SweepOf(const FilterDesign& design);

/// The netlist: source of 2 V with the source resistance, the parts, the load, so that V(out) is
/// S21 of equal terminations. The inductors' loss, which grows with the root of the frequency, is
/// exact for ngspice and that at F0 for LTspice. Empty after ExportFault.
std::string NetlistText(const FilterDesign& design, const NetlistOptions& options);

}  // namespace ladderwise
