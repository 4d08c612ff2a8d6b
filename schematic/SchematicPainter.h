// Draws the schematic picture of a ladder element from its networks, at any whole scale.
// Pictures placed edge to edge join to one circuit: the through line crosses both edges at one
// height.
#pragma once

#include <QColor>
#include <QImage>
#include <QRect>
#include <array>

#include "design/ElementCatalogue.h"
#include "schematic/Shapes.h"

namespace ladderwise {

/// Height of the through line's axis below the top edge. The line covers one unit on each side.
inline constexpr int ThroughLineY = 22;
/// The background of the pictures; the same as that of the response plot.
inline constexpr QColor SchematicBackground{234, 234, 234};

/// The picture of a type, SchematicWidth x SchematicHeight logical units at scale pixels per unit.
/// A code outside 0 .. 26 gives the picture of errorBitMap. Guards: scale >= 1.
QImage DrawSchematic(ElementType type, int scale);

/// Where the symbol of each value stands in the picture, logical units; an empty rectangle for a
/// value that the type does not use. Length and impedance of a line share its symbol.
using SymbolRects = std::array<QRect, ValueGridRows>;
SymbolRects SymbolsOf(ElementType type);

}  // namespace ladderwise
