// The part table: what a builder puts on the board.
#pragma once

#include <string>

#include "pipeline/Calculation.h"
#include "pipeline/LimitMargins.h"

namespace ladderwise {

/// Title, terminations and one line per slot with its values in SI prefixes, its figures, what
/// became of the limits, and the notes in a sentence each.
std::string TableText(const Calculation& calculation, const LimitReport& limits = {});

}  // namespace ladderwise
