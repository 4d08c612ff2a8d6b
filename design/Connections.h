// How the parts of a slot are connected, in words: one wording for tables, parts lists and
// messages. Ground floor, no Qt.
#pragma once

#include "design/Designators.h"

namespace ladderwise {

/// "parallel L3 C4 in the line", "series L5 C6 to ground", "series C1 (parallel L2 C3) to ground",
/// "shorted TL1 to ground, C2 to ground": all arms of a slot of `type` whose parts have these
/// names.
std::string ConnectionText(ElementType type, const SlotDesignators& names);

/// The same of the one arm that holds the part of value row 0 .. 3; empty for a row not in use.
std::string ConnectionOfPart(ElementType type, const SlotDesignators& names, int row);

}  // namespace ladderwise
