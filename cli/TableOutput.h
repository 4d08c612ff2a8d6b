// The part table: what a builder puts on the board.
#pragma once

#include <string>

#include "pipeline/Calculation.h"

namespace ladderwise {

/// Title, terminations and one line per slot with its values in SI prefixes, then the notes and
/// the worst case in a sentence each.
std::string TableText(const Calculation& calculation);

}  // namespace ladderwise
