// The tabulated low-pass prototypes: Bessel by frequency and by delay, Papoulis, Gauss to 3 dB and
// Linear Chebyshev, for orders 1 to 10 and equal terminations.
#pragma once

#include <array>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Copies the tabulated g-values of `family` and order n into g[1 .. n] (1-ohm terminations; 3 dB
/// at 1 rad/s, for Bessel (Delay) a delay of 1 s at zero frequency instead). Nothing is written for
/// a family without a table or for n outside 1 .. MaxPoles. A three-pole Papoulis also writes g[4].
/// Source: standard tables of low-pass element values, e.g. Zverev, "Handbook of Filter Synthesis",
/// Wiley 1967, ch. 8.
void CopyCoefficients(ResponseType family, int n, std::array<double, NumGValues>& g);

}  // namespace ladderwise
