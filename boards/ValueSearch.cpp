// Iterated local search over indices.
#include "boards/ValueSearch.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <memory>
#include <random>
#include <utility>

namespace ladderwise {

namespace {

constexpr std::uint32_t kickSeed = 1;  ///< the choice is the same every time
constexpr int fewestKicked = 2;
constexpr int mostKicked = 4;
constexpr int kicksWithoutNews = 400;  ///< all known: there is nothing left to be found

std::uint64_t KeyOf(const PartChoices& choices) {
    std::uint64_t key = 0xcbf29ce484222325u;  // FNV-1a over the indices
    for (const int choice : choices)
        key = (key ^ static_cast<std::uint64_t>(choice + 1)) * 0x100000001b3u;
    return key;
}

std::size_t Below(std::mt19937& random, std::size_t count) {
    return static_cast<std::size_t>(random() % count);
}

}  // namespace

ValueSearch::ValueSearch(const FilterDesign& design, const std::vector<PartToChoose>& toChoose,
                         SearchTask given)
    : work(std::make_unique<FilterDesign>(design)),
      parts(toChoose),
      task(std::move(given)),
      bestCost(std::numeric_limits<double>::infinity()) {}

const FilterDesign& ValueSearch::LadderOf(const PartChoices& choices) {
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const PartToChoose& part = parts[i];
        work->Elements[static_cast<std::size_t>(part.Place.Slot)].Value(part.Place.Row) =
            part.Choices[static_cast<std::size_t>(choices[i])].Value;
    }
    return *work;
}

double ValueSearch::CostOf(const PartChoices& choices) {
    const auto [place, isNew] = known.try_emplace(KeyOf(choices), 0.0);
    if (!isNew) return place->second;
    const FilterDesign& ladder = LadderOf(choices);
    const double cost = task.Cost(ladder);
    place->second = cost;
    ++evaluations;
    if (cost < bestCost && (!task.Allowed || task.Allowed(ladder))) {
        bestCost = cost;
        best = choices;
    }
    return cost;
}

bool ValueSearch::CanMove(const PartChoices& choices, int part, int move) const {
    const auto at = static_cast<std::size_t>(part);
    const int to = choices[at] + move;
    return to >= 0 && to < static_cast<int>(parts[at].Choices.size());
}

bool ValueSearch::TrySteps(PartChoices& choices, double& cost, const std::vector<Step>& steps) {
    for (const auto& [part, move] : steps)
        if (!CanMove(choices, part, move)) return false;
    for (const auto& [part, move] : steps)
        choices[static_cast<std::size_t>(part)] += move;
    const double tried = CostOf(choices);
    if (tried < cost) {
        cost = tried;
        return true;
    }
    for (const auto& [part, move] : steps)
        choices[static_cast<std::size_t>(part)] -= move;
    return false;
}

Slices ValueSearch::ImproveBySingles(PartChoices& choices, double& cost, bool& improved) {
    for (int i = 0; i < static_cast<int>(parts.size()); ++i)
        for (int move = -1; move <= 1; move += 2)
            while (!IsDone() && TrySteps(choices, cost, {{i, move}})) {
                improved = true;
                if (IsPauseDue()) co_yield Pause;
            }
}

/// Until the first pair that helps.
Slices ValueSearch::ImproveByPairs(PartChoices& choices, double& cost, bool& improved) {
    const int count = static_cast<int>(parts.size());
    for (int i = 0; i < count; ++i)
        for (int j = i + 1; j < count; ++j) {
            const int apart = parts[static_cast<std::size_t>(j)].Place.Slot -
                              parts[static_cast<std::size_t>(i)].Place.Slot;
            if (apart > 1) break;
            for (int a = -1; a <= 1; a += 2)
                for (int sign = -1; sign <= 1; sign += 2) {  // against each other first
                    if (IsDone()) co_return;
                    improved = TrySteps(choices, cost, {{i, a}, {j, sign * a}});
                    if (improved) co_return;
                    if (IsPauseDue()) co_yield Pause;
                }
        }
}

Slices ValueSearch::Descend(PartChoices& choices) {
    double cost = CostOf(choices);
    for (bool improved = true; improved && !IsDone();) {
        improved = false;
        Slices singles = ImproveBySingles(choices, cost, improved);
        while (singles.Advance())
            co_yield Pause;
        if (improved) continue;
        Slices pairs = ImproveByPairs(choices, cost, improved);
        while (pairs.Advance())
            co_yield Pause;
    }
}

Slices ValueSearch::Wander(PartChoices choices) {
    std::mt19937 random(kickSeed);
    Slices first = Descend(choices);
    while (first.Advance())
        co_yield Pause;
    if (parts.empty()) co_return;
    for (int idle = 0; !IsDone() && idle < kicksWithoutNews; ++idle) {
        const int before = evaluations;
        PartChoices kicked = choices;
        const std::size_t count = fewestKicked + Below(random, mostKicked - fewestKicked + 1);
        for (std::size_t k = 0; k < count; ++k) {
            const int part = static_cast<int>(Below(random, parts.size()));
            const int move = Below(random, 2) == 0 ? -1 : 1;
            if (CanMove(kicked, part, move)) kicked[static_cast<std::size_t>(part)] += move;
        }
        Slices next = Descend(kicked);
        while (next.Advance())
            co_yield Pause;
        if (evaluations > before) idle = 0;
        if (CostOf(kicked) < KickTolerance * CostOf(choices)) choices = kicked;
    }
}

double ValueSearch::DoneShare() const {
    return std::min(1.0, static_cast<double>(evaluations) / std::max(1, task.Evaluations));
}

bool ValueSearch::IsPauseDue() {
    if (evaluations < nextPause) return false;
    nextPause = evaluations + task.InSlice;
    return true;
}

}  // namespace ladderwise
