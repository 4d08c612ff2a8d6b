// Ripple and attenuation of a group where it does best, beside those of the raster. No Qt.
#pragma once

#include <functional>
#include <optional>
#include <utility>
#include <vector>

#include "choosing/ChoosingMemory.h"
#include "choosing/MarginClimb.h"
#include "choosing/PlacementSearch.h"

namespace ladderwise {

using PlacedCandidate = std::pair<Candidate, Placement>;

class Refinement {
public:
    /// Searches the place of a candidate to the last hundredths of a dB, from a start where there
    /// is one; what comes to no more than `worthDb` is given up.
    using PlaceFunction =
        std::function<Placement(Candidate&, const Placement* start, double worthDb)>;

    /// `maker`, `grid` and `memory` of the list. With `standard`, margins go in steps: they are
    /// searched step by step where others are climbed.
    Refinement(LadderMaker& maker, LimitGrid& grid, ChoosingMemory& memory, PassType pass,
               bool standard, PlaceFunction place);

    /// The best of what is reached from `starts`, all of one group, the best of them first; no
    /// value if nothing does better than that. Left in the memory for the next list.
    std::optional<PlacedCandidate> Refine(const std::vector<PlacedCandidate>& starts);

    /// That refining may come to, dB.
    double LargestRipple() const { return largestRipple; }

    /// How many ladders were analysed so far, but for those of `place`.
    long Analyses() const { return climb.Analyses() + analyses; }

private:
    bool TakeIfBetter(PlacedCandidate& best, Candidate what, const Placement* start);
    bool TakeNeedItself(PlacedCandidate& best);
    bool TakeRefined(PlacedCandidate& best, bool& better);
    bool ClimbFrom(PlacedCandidate& best, const PlacedCandidate& start);
    bool SearchAround(PlacedCandidate& best, double share);

    LadderMaker& maker;
    LimitGrid& grid;
    ChoosingMemory& memory;
    const bool standard, narrowStops;
    const double largestRipple, largestInside, need;
    const PlaceFunction place;
    MarginClimb climb;
    long analyses = 0;
};

}  // namespace ladderwise
