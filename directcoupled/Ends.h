// The two ends of a direct-coupled band-pass: the limits of the end tanks and the inverters that
// match them to the terminations. No Qt.
#pragma once

#include "directcoupled/Inverters.h"

namespace ladderwise {

/// The inverters 0 and N, which match the levels of tanks 1 and N to RSource and RLoad and detune
/// the tanks; to be called when the inner inverters have detuned them. A series or line inverter
/// can only match a level above the termination, a shunt inverter one below it; a level on the
/// wrong side counts as the termination itself.
///
/// Returns for each end the limit of the tank's value as a text in SI units, whether the level was
/// taken as the termination, and whether it exceeds Q times the termination, as
/// that of most good designs does.
DirectCoupledResult MatchEnds(const FilterDesign& design, const CoupledBand& band, TankList& tanks,
                              InverterList& inverters);

}  // namespace ladderwise
