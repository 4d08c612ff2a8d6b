// Where the schematic picture of each ladder element stands. No Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"
#include "schematic/Shapes.h"

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

/// What stands around and beside the pictures: the source with its resistor on the left, the load
/// on the right, and the designators of the parts, above shunt elements and below series ones.
struct StripSigns {
    std::vector<PlotLine> Wires;
    std::vector<PlotRect> Resistors;  ///< outlines
    PlotRect Source;                  ///< of the circle
    std::vector<PlotText> Texts;
};

/// Empty for an empty ladder. `withValues` adds the value to the designators of elements with one
/// or two parts: "L1 79.6 nH".
StripSigns BuildStripSigns(const FilterDesign& design, int gridTop, int scroll, bool withValues,
                           const TextMetrics& metrics);

/// What part of something a value has, 0 to 1.
struct StripShare {
    int Slot = 0;  ///< from 1
    int Row = 0;   ///< 0 .. 3 for V1 .. V4
    double Share = 0.0;
};

/// A bar for each value at the right edge of its picture, in the order of rows: the largest share
/// is ShareBarHeight high, others in proportion. Empty where nothing has a share.
inline constexpr int ShareBarHeight = 30;
inline constexpr PlotColour ShareBarColour{196, 96, 0};
std::vector<PlotRect> BuildShareBars(const std::vector<StripShare>& shares, int gridTop,
                                     int scroll);

/// The slot whose picture lies at x, y; 0 if none does.
int SlotAt(int x, int y, const FilterDesign& design, int gridTop, int scroll);

}  // namespace ladderwise
