// Which part of a board to adjust, and by how much. No Qt.
#pragma once

#include <span>
#include <vector>

#include "measured/BoardReading.h"

namespace ladderwise {

/// The parts of a fitted board that bring it nearest to its aim, one after the other: each by the
/// change within +-25 % that lessens the largest deviation most, of the level over the frequencies
/// where the aim is within 6 dB of its peak; or that widens the least margin to the limits. At the
/// terminations of `design`, without cables. `parts` are the ladder's, as they were found.
std::vector<BoardTurn> TurnsFor(const FilterDesign& design, const BoardModel& board,
                                std::span<const double> x, const std::vector<double>& freqs,
                                const std::vector<BoardPart>& parts, const BoardOptions& options);

}  // namespace ladderwise
