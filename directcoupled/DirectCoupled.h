// Direct-coupled band-passes: resonators joined by impedance inverters, from the low-pass prototype
// and freely chosen tanks. No Qt.
#pragma once

#include "design/FilterDesign.h"
#include "design/Messages.h"

namespace ladderwise {

/// Replaces the prototype in Elements by a band pass of NumPoles tanks and NumPoles + 1 inverters
/// between RSource and RLoad (ohm), centre F0 and width BandWidth (Hz), from G[1 .. NumPoles] and
/// the settings DirectCoupled; writes Elements (slots 1 .. 2 NumPoles + 1, the rest unused),
/// NumElements and DirectCoupledLimits.
///
/// Values come out negative or not finite where the choices cannot be built: a band as wide as its
/// centre frequency, a stub of 90 degrees or more, a line inverter of 180 degrees, a tank that is
/// detuned by more than it holds. Roots of negative numbers are logged as math errors. Guards: 1 <=
/// NumPoles <= MaxTanks. A tank or inverter type that does not exist is reported and its slots stay
/// unused.
///
/// After S. B. Cohn, "Direct-Coupled-Resonator Filters", Proc. IRE 45 (1957) 187-196, with
/// empirical corrections of centre and bandwidth.
void CalcDirectCoupled(FilterDesign& design, const MessageCallback& report);

}  // namespace ladderwise
