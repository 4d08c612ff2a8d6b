// How much loss a prototype bears: the damping of its natural modes. No Qt.
#pragma once

#include <complex>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The natural modes (poles of the transfer) of a lossless ladder of SeriesInd, ShuntCap, SeriesLC
/// and ShuntLC in slots 1 .. numElements, between 1 ohm and `load` ohms; rad/s, all of them,
/// complex pairs both. `order` is their number; empty if another type is met or the search does not
/// settle. They are the zeros of a polynomial that is evaluated along the ladder and never written
/// out, by the simultaneous iteration of Ehrlich (Comm. ACM 10 (1967) 107) and Aberth (Math. Comp.
/// 27 (1973) 339).
std::vector<std::complex<double>> NaturalModes(const ElementList& elements, int numElements,
                                               double load, int order);

/// The least damping d of the low-pass prototype of a design, rad/s with the corner at 1. If every
/// element is made lossy so that s becomes s + d - which coils of a quality Q do to the resonators
/// of a band-pass of the width BW, with d = F0 / (BW Q) - the mode nearest to the band edge is
/// damped twice as much as it should be: the shape is lost. Its inverse is the least normalised
/// quality of the tables of predistorted filters (A. I. Zverev, "Handbook of Filter Synthesis",
/// Wiley 1967). Of a notch, whose resonators turn 1/s into 1/s + d, it is that of the modes of 1/s.
/// 0 where it is not known.
double LeastDamping(const FilterDesign& design);

}  // namespace ladderwise
