// The computed low-pass prototypes, both for unequal terminations: Butterworth and Chebyshev.
// Closed forms of Takahasi and of Green; see Weinberg, "Network Analysis and Synthesis",
// McGraw-Hill 1962.
#pragma once

#include "design/FilterDesign.h"

namespace ladderwise {

/// Chebyshev ripple in dB that stands in for one that is zero, negative or not a number.
inline constexpr double SmallestRippleDb = 0.001;
/// Largest Chebyshev ripple, dB: beyond it the 3 dB corner would lie inside the ripple.
inline constexpr double LargestRippleDb = 3.0;

/// Butterworth g-values of order n (1 .. NumSlots - 1) into G[1 .. n]: 1-ohm source, load
/// RLoad / RSource, 3 dB below the largest transfer at 1 rad/s. Unequal terminations decide FormCLC
/// (Flags.FormForced tells that it changed). A direct-coupled band pass counts as equally
/// terminated, because its inverters do the matching. G[n + 1] may be written as a by-product.
void ButterworthPrototype(FilterDesign& design, int n);

/// Chebyshev g-values of order n (1 .. NumSlots - 1) into G[1 .. n], with 3 dB (not the ripple
/// band's edge) at 1 rad/s. RippleDb is brought into SmallestRippleDb .. LargestRippleDb. Unequal
/// terminations decide FormCLC (Flags.FormForced). For even n, direct-coupled band pass excepted, a
/// load too close to RSource is moved to the nearest one that can be realised (Flags.LoadMoved).
/// G[n + 1] may be written as a by-product.
void ChebyshevPrototype(FilterDesign& design, int n);

}  // namespace ladderwise
