// From the response family to the normalised ladder: picks the prototype and fills the slots.
#pragma once

#include "design/FilterDesign.h"
#include "design/Messages.h"

namespace ladderwise {

/// Builds the normalised low-pass prototype of order n: G[1 .. n] (henries and farads for a 1-ohm
/// source and a 1 rad/s corner), NumElements = n, and slots 1 .. n with SeriesInd and ShuntCap in
/// turn, the first by FormCLC. Only a slot's type and the value it uses are written.
///
/// For an elliptic family n counts traps (1 .. MaxPoles) and the ladder is that of
/// EllipticPrototype.h: NumElements is its number of slots, G[k] the single value of a slot or the
/// inductance of a trap, Elliptic tells what was reached, and RLoad is set to the load that the
/// ladder is built for (Flags.LoadOfFamily for A to C).
///
/// May change ResponseType (an unknown code, or a coefficients file that has not been read, becomes
/// Butterworth; the latter is told through `report`), FormCLC, RLoad and RippleDb (see
/// Mathfunctions.h), and sets - never resets - Flags. An n that no ladder has room for (outside
/// 1 .. NumSlots - 1) leaves an empty ladder (NumElements = 0). A tabulated family leaves G as it
/// was for n > MaxPoles.
void BuildPrototype(FilterDesign& design, int n, const MessageCallback& report);

}  // namespace ladderwise
