// From the analysed sweep to the arrays that the traces show, and the full scale of the group-delay
// axis. Shared by the window's plot and the console program's output. No Qt.
#pragma once

#include "analysis/Magphasefunctions.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// Derives the display quantities of the sweep in `calculation`. Run 0 derives them all and settles
/// the group-delay scale; a worst-case run only derives what its traces draw, and keeps run 0's
/// scale, which is the one that the plot's marks show.
void DerivePlotQuantities(Calculation& calculation, int run, DisplayQuantities& quantities,
                          const MessageCallback& report);

/// Settles GDFullScale: with auto scale the computed value, which is also written into ScaleBox;
/// otherwise what ScaleBox holds, bounded by a hundredth and a hundred times the computed value.
void SettleGroupDelayScale(DesignInputs& inputs, FilterDesign& design, double computed,
                           const MessageCallback& report);

}  // namespace ladderwise
