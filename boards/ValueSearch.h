// Search over the values that parts can be bought in: small moves downhill, and kicks out of the
// valleys. The same moves serve every aim. No Qt.
//
// After P. Lourenco et al., "Iterated local search", in Handbook of Metaheuristics, Kluwer 2003.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "boards/Slices.h"
#include "boards/StandardSeries.h"
#include "design/FilterDesign.h"

namespace ladderwise {

/// The choice of every part, by its index.
using PartChoices = std::vector<int>;

/// What a search is allowed and asked.
struct SearchTask {
    std::function<double(const FilterDesign&)> Cost;  ///< to be made small
    /// Whether a new best one may be kept; null: all may.
    std::function<bool(const FilterDesign&)> Allowed{};
    int Evaluations = 0;
    int InSlice = 1;  ///< evaluations between two pauses, at least
};

/// Searches from the parts' choices for `design`, whose other values stay as they are.
class ValueSearch {
public:
    ValueSearch(const FilterDesign& design, const std::vector<PartToChoose>& parts,
                SearchTask task);

    /// The cost of the choices; looked up if it was found before, else evaluated. Also keeps the
    /// best allowed.
    double CostOf(const PartChoices& choices);

    /// Single steps, then pairs of steps within a slot and in adjacent slots, until none helps or
    /// the evaluations are used up.
    Slices Descend(PartChoices& choices);

    /// Kicks 2 to 4 parts by one step and descends, again and again; what is worse than the current
    /// by less than KickTolerance becomes the current.
    Slices Wander(PartChoices choices);

    bool IsDone() const { return evaluations >= task.Evaluations; }
    /// Share of the evaluations that are used up.
    double DoneShare() const;
    /// True once in so many evaluations as a slice has.
    bool IsPauseDue();
    int Evaluations() const { return evaluations; }
    const PartChoices& Best() const { return best; }
    double BestCost() const { return bestCost; }

    /// The ladder with these choices; valid until the next call of anything here.
    const FilterDesign& LadderOf(const PartChoices& choices);

    static constexpr double KickTolerance = 1.05;

private:
    struct Step {
        int Part, Move;
    };

    bool TrySteps(PartChoices& choices, double& cost, const std::vector<Step>& steps);
    Slices ImproveBySingles(PartChoices& choices, double& cost, bool& improved);
    Slices ImproveByPairs(PartChoices& choices, double& cost, bool& improved);
    bool CanMove(const PartChoices& choices, int part, int move) const;

    std::unique_ptr<FilterDesign> work;
    const std::vector<PartToChoose>& parts;
    SearchTask task;
    std::unordered_map<std::uint64_t, double> known;
    PartChoices best;
    double bestCost;
    int evaluations = 0;
    int nextPause = 0;  ///< in evaluations
};

}  // namespace ladderwise
