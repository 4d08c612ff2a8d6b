// The calculation as one JSON object; docs/json.md describes it.
#pragma once

#include <string>
#include <vector>

#include "cli/JsonPieces.h"
#include "measured/MeasuredSet.h"
#include "pipeline/Calculation.h"
#include "pipeline/LimitMargins.h"
#include "pipeline/ReferenceDesign.h"

namespace ladderwise {

/// A message that the window would show in a box.
struct RecordedMessage {
    std::string Caption;
    std::string Text;
};

/// Numbers have 17 significant digits and a point whatever the locale; NaN, infinities, blank
/// points and values that are not in use are null. `more` stands behind the limits;
/// `measuredLimits` tells how each of the measured networks keeps them.
std::string JsonText(const Calculation& calculation, const std::vector<RecordedMessage>& messages,
                     const std::vector<MeasuredNetwork>& measured = {},
                     const LimitReport& limits = {}, const JsonMembers& more = {},
                     const std::vector<NamedReport>& measuredLimits = {});

}  // namespace ladderwise
