// Search over the values that parts can be bought in: small moves downhill, and kicks out of the
// valleys. The same moves serve every aim. No Qt.
//
// After P. Lourenco et al., "Iterated local search", in Handbook of Metaheuristics, Kluwer 2003.
#pragma once

#include <cstdint>
#include <functional>
#include <initializer_list>
#include <limits>
#include <memory>
#include <random>
#include <utility>
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
    double Enough = -std::numeric_limits<double>::infinity();  ///< no cost is below it
    int InSlice = 1;  ///< evaluations between two pauses, at least
};

/// The costs of choices that were evaluated, by a key; open addressing in one array, because they
/// are looked up far more often than found anew.
class KnownCosts {
public:
    struct Entry {
        std::uint64_t Key = 0;  ///< 0: free
        double Cost = 0.0;
        bool IsValley = false;  ///< no step from here helps
    };

    /// The entry of a key, made if there is none: then second is true. Valid until the next call.
    std::pair<Entry*, bool> Find(std::uint64_t key);

private:
    void Grow();

    std::vector<Entry> entries = std::vector<Entry>(1024);  ///< a power of 2
    std::size_t used = 0;
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

    /// Kicks 2 to 4 parts by one step, or one or two resonators to another ratio of L to C, and
    /// descends, again and again; what is worse than the current by less than the share
    /// KickTolerance becomes the current. Where nothing new is found any more it starts afresh with
    /// all resonators retuned.
    Slices Wander(PartChoices choices);

    /// The evaluations are used up, or nothing better can be found.
    bool IsDone() const { return evaluations >= task.Evaluations || bestCost <= task.Enough; }
    /// Share of the evaluations that are used up.
    double DoneShare() const;
    /// True once in so many evaluations as a slice has.
    bool IsPauseDue();
    int Evaluations() const { return evaluations; }
    const PartChoices& Best() const { return best; }
    double BestCost() const { return bestCost; }
    /// The choices whose cost is being, or was last, evaluated.
    const PartChoices& Looked() const { return looked; }
    /// The choices of the least costs that were evaluated, at most RankedCount, ascending; whether
    /// they are allowed was not asked.
    const std::vector<std::pair<double, PartChoices>>& Ranked() const { return ranked; }

    /// The ladder with these choices; valid until the next call of anything here.
    const FilterDesign& LadderOf(const PartChoices& choices);

    static constexpr double KickTolerance = 0.05;
    static constexpr std::size_t RankedCount = 16;

private:
    struct Step {
        int Part, Move;
    };

    bool TrySteps(PartChoices& choices, double& cost, std::initializer_list<Step> steps);
    double CostOf(const PartChoices& choices, std::uint64_t key);
    void Rank(const PartChoices& choices, double cost);
    Slices ImproveBySingles(PartChoices& choices, double& cost, bool& improved);
    Slices ImproveByPairs(PartChoices& choices, double& cost, bool& improved);
    void Kick(PartChoices& choices, std::mt19937& random) const;
    /// Gives a coil any of its choices, and its capacitor one that keeps the resonance.
    void Retune(PartChoices& choices, int coil, std::mt19937& random) const;
    bool CanMove(const PartChoices& choices, int part, int move) const;

    std::unique_ptr<FilterDesign> work;
    const std::vector<PartToChoose>& parts;
    SearchTask task;
    KnownCosts known;
    std::vector<std::pair<double, PartChoices>> ranked;
    PartChoices best;
    PartChoices looked;
    double bestCost;
    std::uint64_t key = 0;  ///< of the choices that descend
    int evaluations = 0;
    int nextPause = 0;  ///< in evaluations
};

}  // namespace ladderwise
