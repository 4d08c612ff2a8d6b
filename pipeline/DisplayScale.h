// The full scale of the group-delay axis: computed or typed. No Qt.
#pragma once

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// Settles GDFullScale: with auto scale the computed value, which is also written into its box;
/// otherwise what the box holds, bounded by a hundredth and a hundred times the computed value.
void SettleGroupDelayScale(DesignInputs& inputs, FilterDesign& design, double computed,
                           const MessageCallback& report);

}  // namespace ladderwise
