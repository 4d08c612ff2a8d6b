// Low-pass and high-pass scaling: the normalised ladder becomes henries and farads in place.
#pragma once

#include "design/FilterDesign.h"

namespace ladderwise {

/// Slots 1 .. NumElements from 1 ohm and 1 rad/s to RSource (ohm) and F0 (Hz):
/// L = g R / (2 pi F0) in V1 and C = g / (2 pi F0 R) in V2. Types, V3 and V4 stay. A value that is
/// not in use is scaled too: it stays huge but mostly falls below NotUsedLimit, so that only the
/// catalogue (InfoOf) tells that it means nothing.
void ScaleLowPass(FilterDesign& design);

/// Slots 1 .. NumElements by s -> 1/s to a high pass with corner F0 (Hz) and source RSource (ohm):
/// SeriesInd becomes SeriesCap and ShuntCap becomes ShuntInd; SeriesLC and ShuntLC keep their type
/// and exchange the roles of their values. Other types stay as they are.
void ScaleHighPass(FilterDesign& design);

}  // namespace ladderwise
