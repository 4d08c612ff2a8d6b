// Names of the single parts of a ladder, as they stand in schematics and parts lists. Ground floor,
// no Qt.
#pragma once

#include <array>
#include <string>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Designators of one slot by value row; empty for a row that the type does not use. The two rows
/// of a transmission line are one part and carry one name.
using SlotDesignators = std::array<std::string, 4>;

/// The designators of slots 1 .. NumElements (entry k is slot k, entry 0 is empty): L, C or TL and
/// a number that runs over all parts from the source to the load, so that no two parts share it:
/// C1, L2, C3. Within a slot the parts count from V1 to V4.
std::array<SlotDesignators, NumSlots> DesignatorsOf(const DesignState& design);

}  // namespace ladderwise
