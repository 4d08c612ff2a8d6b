// What a calculation does with its parts before standard values are chosen for them. No Qt.
#pragma once

#include <string>
#include <vector>

#include "design/LimitLine.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// Absorbs parasitics if that is asked for, and notes ExactElements: what comes before standard
/// values in the middle of a calculation. What their method lacks is remarked too.
std::vector<PartsRemark> PrepareParts(Calculation& calculation, const LimitLines& limits);

/// A part named by its designator, and what is to be settled about it; 0: nothing.
struct NamedPart {
    std::string Name;
    double Value = 0.0;      ///< H or F
    double Tolerance = 0.0;  ///< fraction
};

/// Settles that about parts of the ladder in hand, in the place of what was before. What is wrong
/// with them; empty if nothing is.
std::string SettleNamed(Calculation& calculation, const std::vector<NamedPart>& named);

}  // namespace ladderwise
