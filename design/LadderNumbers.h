// What of a design its response depends on, for those who keep what they have calculated of it.
#pragma once

#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// All numbers of a design that the response of its ladder depends on, and those that the searches
/// on it start from.
std::vector<double> LadderNumbers(const FilterDesign& design);

/// Bit by bit: what is no number is the same as itself.
bool SameLadderNumbers(const std::vector<double>& a, const std::vector<double>& b);

}  // namespace ladderwise
