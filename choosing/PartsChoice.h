// The standard values of the design in hand while its user goes on typing: the nearest ones at
// once, better ones as there is time. No Qt.
#pragma once

#include <memory>
#include <vector>

#include "boards/StandardParts.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

class PartsChoice {
public:
    /// Which standard values stand in the design.
    enum class Shown {
        Unchosen,     ///< none, or each the nearest because that is asked for
        Nearest,      ///< until a better one is found
        FirstAnswer,  ///< of the highest yield, by slopes
        Choice,       ///< what the search came to
    };

    /// Calculation::ArrangeParts of a window: parasitics absorbed, then the nearest standard values
    /// or, where they are known already, the chosen ones. A search for better ones begins; `whole`:
    /// and ends before this returns.
    std::vector<PartsRemark> Arrange(Calculation& calculation, const LimitLines& limits,
                                     bool whole);

    /// The design is one of before, or its limits are others, or values in it were edited by hand,
    /// which ends the search. True if Put has to follow, because other values are known of it.
    bool Resume(const Calculation& calculation, const LimitLines& limits);

    bool IsSearching() const { return search != nullptr; }
    double DoneShare() const { return search ? search->DoneShare() : 1.0; }

    /// Searches for a few milliseconds. True if Put has to follow.
    bool Advance();

    /// Puts the best set found into the calculated design, which is to be analysed then.
    void Put(Calculation& calculation) const;

    /// The set that stands in the design; null if Unchosen.
    const StandardParts* Present() const { return IsChosen() ? &present : nullptr; }
    Shown Showing() const { return shown; }

private:
    bool IsChosen() const { return shown != Shown::Unchosen; }
    void Begin(const Calculation& calculation, const LimitLines& limits);
    void Stop();
    void Finish();

    /// A choice that was made, and what it depends on.
    struct Known {
        std::vector<double> Key;
        StandardParts Parts;
    };
    std::vector<Known> known;  ///< the latest at the end
    std::vector<double> key;   ///< of the design in hand
    std::unique_ptr<StandardSearch> search;
    StandardParts present;
    Shown shown = Shown::Unchosen;
};

}  // namespace ladderwise
