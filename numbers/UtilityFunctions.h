// Small helpers that several floors share. No Qt.
#pragma once

#include "design/Messages.h"

namespace ladderwise {

inline constexpr double Percent = 100.0;  ///< per unit

/// Nearest integer, half away from zero. |x| > 2147483647 reports
/// "ERROR: Value out of range in NearestInt() UtilityFunctions.cpp" through `report` (if given; by
/// OnceOnly where one message in a run of the program is enough) and gives +-2147483647; the lowest
/// integer is never returned. NaN gives 0.
int NearestInt(double x, const MessageCallback& report = {});

}  // namespace ladderwise
