// How a measured network keeps limits, over its own frequencies alone. No Qt.
#pragma once

#include "limits/LimitMargin.h"
#include "measured/MeasuredTraces.h"

namespace ladderwise {

/// Judges traces as they are drawn: level, return loss and delay straight between the points of the
/// file, so that their extremes lie at its points and at the ends of a limit. What lies outside of
/// the file's frequencies, or is a quantity that it does not have, is not judged, and the reach
/// tells so.
LimitReport JudgeMeasured(const MeasuredTraces& traces, const LimitLines& lines);

}  // namespace ladderwise
