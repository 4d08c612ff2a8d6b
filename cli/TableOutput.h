// The part table: what a builder puts on the board.
#pragma once

#include <string>

#include "pipeline/Calculation.h"
#include "pipeline/LimitMargins.h"
#include "pipeline/ReferenceDesign.h"

namespace ladderwise {

/// Title, terminations and one line per slot with its values in SI prefixes, its figures, what
/// became of the limits, of measured networks too, and the notes in a sentence each.
std::string TableText(const Calculation& calculation, const LimitReport& limits = {},
                      const std::vector<NamedReport>& measured = {});

}  // namespace ladderwise
