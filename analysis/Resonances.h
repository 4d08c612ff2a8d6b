// Where the arms of a ladder resonate by themselves: the frequencies at which a response has its
// traps, and next to which its narrow peaks stand. No Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The resonances of the arms of coils and capacitors in slots 1 .. NumElements, Hz, ascending and
/// each once: zeros and poles of the reactance of each arm, with IndC and CapL but without losses
/// where the part model has them. Lines and stubs, which resonate without end, are left out.
std::vector<double> ElementResonances(const FilterDesign& design);

/// The resonances up to `highest` (Hz) of the tanks and stubs of lines, and where a line in the way
/// is a multiple of half a wave long: there such a filter passes or stops again and again.
/// Ascending, each once.
std::vector<double> LineResonances(const FilterDesign& design, double highest);

/// A resonance that lets nothing pass: a pole of a series arm or a zero of a shunt arm.
struct TransmissionZero {
    double Ideal = 0.0;      ///< Hz, of the same values without parasitics
    double Frequency = 0.0;  ///< Hz, under the part model in use
};

/// Those of the arms of coils and capacitors, slot by slot, as many as the arms have without
/// parasitics. What IndC and CapL add comes down from infinity, and the resonances of a reactance
/// never cross: the lowest ones are those that were there before.
std::vector<TransmissionZero> TransmissionZeros(const FilterDesign& design);

}  // namespace ladderwise
