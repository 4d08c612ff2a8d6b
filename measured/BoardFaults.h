// Gross faults of a board as hypotheses: which of them explains what was measured. No Qt.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "measured/BoardReading.h"

namespace ladderwise {

/// A ladder that was fitted: the design's own, or the design with a fault.
struct BoardExplanation {
    DesignState Design{};  ///< its nominal values, the fault's included
    std::unique_ptr<BoardModel> Model{};
    BoardData Data{};
    BoardSolution Solution{};
    std::optional<BoardFault> Fault{};
    /// Faults of several kinds, each of which explains the data far better than none: in words.
    std::string Suspicion{};

    bool Holds() const { return Explains(Solution); }
};

/// The best explanation of the data. Faults are tried where the design as it is does not explain
/// them, or only with parts farther from nominal than any tolerance. Parts of one branch are alike,
/// and so are a swap of mirrored parts and swapped ports: then the fault names both.
BoardExplanation Explain(const DesignState& design, const BoardData& data,
                         const BoardFreedom& freedom,
                         const std::function<void(double)>& progress = {});

}  // namespace ladderwise
