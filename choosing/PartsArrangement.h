// What a calculation does with its parts before standard values are chosen for them. No Qt.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "design/LimitLine.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// Absorbs parasitics if that is asked for, and notes ExactElements: what comes before standard
/// values in the middle of a calculation. What their method lacks is remarked too.
std::vector<PartsRemark> PrepareParts(Calculation& calculation, const LimitLines& limits);

/// Holds the parts of the ladder in hand that are named by their designators, with their values (H
/// or F), in the place of what is held there. What is wrong with them; empty if nothing is.
std::string HoldNamed(Calculation& calculation,
                      const std::vector<std::pair<std::string, double>>& named);

}  // namespace ladderwise
