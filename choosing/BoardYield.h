// The share of boards that keep the limits. No Qt.
#pragma once

#include <cstdint>

#include "choosing/LimitGrid.h"

namespace ladderwise {

/// Judges `boards` boards of the ladder in `design`, as BoardDrawer draws them,
/// and gives the share of those that keep all limits. A board that keeps or fails them by less than
/// 0.1 dB on `coarse` is judged on `fine`. The ladder is nominal again afterwards.
double PassingShare(FilterDesign& design, LimitGrid& coarse, LimitGrid& fine, int boards,
                    std::uint32_t seed);

}  // namespace ladderwise
