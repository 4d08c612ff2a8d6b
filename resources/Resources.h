// The pictures compiled into the programs: schematic bitmaps, icon and part-model drawings.
// The resource system finds them under ":/schematics", ":/icons" and ":/models".
#pragma once

#include <QString>

#include "design/ElementCatalogue.h"

namespace ladderwise {

/// Makes the pictures available. They live in a static library, from which the linker takes only
/// what is asked for, so every program and test that uses them calls this first. Repeated calls do
/// no harm.
void InitResources();

/// The path of a type's schematic bitmap, as in ":/schematics/0SeriesInd.bmp". A code outside
/// 0 .. 26 gives that of errorBitMap. The same picture for screens of twice the density has "@2x"
/// before the ending; loaded under that name it has a device pixel ratio of 2, so both forms are
/// drawn 64 wide and 96 high. QIcon chooses between the two by itself, QPixmap only when the
/// application's screen is dense.
QString SchematicPath(ElementType type);

}  // namespace ladderwise
