// Where the schematic picture of each ladder element stands. No Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"
#include "display/PlotLayout.h"

namespace ladderwise {

/// One picture of SchematicWidth x SchematicHeight pixels with its left top corner at X, Y.
struct StripPicture {
    ElementType Type = ElementType::errorBitMap;  ///< always one of the catalogue's
    int X = 0;
    int Y = 0;
};

/// The pictures of slots 1 .. NumElements, right above the value grid: slot i stands 64 i pixels
/// right of the grid's left edge. A code that is no element shows as errorBitMap. `scroll` pixels
/// move the strip left, as the scroll bar moves the grid.
std::vector<StripPicture> PlaceSchematics(const FilterDesign& design, int gridTop, int scroll);

}  // namespace ladderwise
