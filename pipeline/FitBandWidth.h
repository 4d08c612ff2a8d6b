// What the synthesis is given, adjusted until the ladder has the pass band that was asked for. No
// Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// Builds the ladder of a band-pass anew, with other F0 and BandWidth, until the middle of its
/// half-power edges and their distance are those of AskedBand to FitTolerance; F0 and BandWidth
/// themselves stay. With lossy parts the edges are those with the losses, after DeEmbed where that
/// is chosen. Lines keep their lengths in metres, so that their degrees are those at F0. Where it
/// comes to nothing the ladder stays as BuildLadder leaves it, and the remark says which Q it
/// takes, if any does. `design` as BuildLadder has left it; other pass types have no remark.
std::vector<PartsRemark> FitBandWidth(FilterDesign& design);

inline constexpr double FitTolerance = 1e-6;  ///< relative, of centre and width

}  // namespace ladderwise
