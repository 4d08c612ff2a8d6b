// The names of choices for people. Ground floor, no Qt.
#pragma once

#include <string>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Why the ladder is empty: "The ladder is empty: ..."; an empty text when no stage is missing.
std::string MissingStageText(MissingStage missing);

}  // namespace ladderwise
