// What a list of filters leaves for the next one. No Qt.
#pragma once

#include <map>
#include <tuple>
#include <vector>

#include "choosing/Candidate.h"
#include "choosing/PlacementSearch.h"
#include "design/LimitLine.h"

namespace ladderwise {

/// What a search leaves for the next one: elliptic prototypes, and where each candidate did best,
/// so that a list after a change of one limit begins there. A memory of other terminations, parts
/// or pass types is begun anew.
struct ChoosingMemory {
    struct Remembered {
        Candidate What{};
        Placement At{};
        /// What the margin has grown by at most since it was searched, dB: the sum of what values
        /// of limits have changed by. No limit where their frequencies have.
        double Grown = 0.0;
    };
    using Group = decltype(GroupOf(Candidate{}));
    /// By group, index of ripple and of attenuation.
    using Key = std::tuple<Group, int, int>;
    PrototypeStore Prototypes{};
    std::map<Key, Remembered> Places{};
    /// Ripple and attenuation beside the raster, and the limits that they were found for.
    struct RefinedPlace {
        Candidate What{};
        Placement At{};
        double LargestRippleDb = 0.0;
        double NeedDb = 0.0;
        double Grown = 0.0;  ///< as above
    };
    std::map<Group, RefinedPlace> Refined{};
    std::map<Group, PartCounts> Parts{};
    /// Where misses do best with either kind of limits kept.
    std::map<std::tuple<Group, double, double, KeptLimits>, Placement> Misses{};
    std::vector<double> Signature{};  ///< of what must not have changed
    LimitLines Limits{};              ///< of the last list
};

/// Makes a memory ready for a list of other limits: what was found for other terminations, parts or
/// pass types than those of `base` is forgotten, and what is kept learns what it may have gained.
void TakeUp(ChoosingMemory& memory, const FilterDesign& base, const LimitLines& limits);

}  // namespace ladderwise
