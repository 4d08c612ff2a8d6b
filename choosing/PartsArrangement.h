// Parts that can be bought, or that make up for their parasitics, in the place of calculated ones:
// the same for window and console. No Qt.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "boards/StandardParts.h"
#include "design/LimitLine.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// What the choice of parts is to keep beside the settings of the design.
struct PartsTask {
    std::vector<std::pair<std::string, double>> Held{};  ///< designator, H or F
    LimitLines Limits{};                                 ///< for the highest yield
};

struct ArrangedParts {
    std::vector<PartsRemark> Remarks{};
    std::optional<StandardParts> Standard{};  ///< where standard values are on
    std::string Error{};                      ///< a part to be held that there is not
};

/// Puts into Design.Elements what its settings ask for (Calculation::ArrangeParts): parasitics
/// absorbed, then standard values by its method.
ArrangedParts ArrangeParts(Calculation& calculation, const PartsTask& asked);

/// The first half: absorbs parasitics if that is asked for, and notes ExactElements. What the
/// method of the standard values lacks is remarked too.
std::vector<PartsRemark> PrepareParts(Calculation& calculation, const LimitLines& limits);

}  // namespace ladderwise
