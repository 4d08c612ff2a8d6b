// Iterated local search over indices.
#include "boards/ValueSearch.h"

#include <algorithm>
#include <cmath>
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
constexpr int startsAfresh = 20;       ///< with all resonators retuned
constexpr int mostRetuned = 2;         ///< resonators
constexpr int kicksWithoutNews = 400;  ///< all known: there is nothing left to be found

/// A number for the choice of one part, as if it were drawn; those of all parts are joined by
/// exclusive or, so that a step changes a key by two of them (A. L. Zobrist, "A new hashing method
/// with application for game playing", ICCA Journal 13 (1990) 69-73). Mixed as by S. Vigna's
/// splitmix64.
std::uint64_t KeyOfChoice(std::size_t part, int choice) {
    std::uint64_t x =
        (static_cast<std::uint64_t>(part + 1) << 32) + static_cast<std::uint64_t>(choice + 1);
    x *= 0x9e3779b97f4a7c15u;
    x = (x ^ (x >> 30)) * 0xbf58476d1ce4e5b9u;
    x = (x ^ (x >> 27)) * 0x94d049bb133111ebu;
    return x ^ (x >> 31);
}

std::uint64_t KeyOf(const PartChoices& choices) {
    std::uint64_t key = 0;
    for (std::size_t part = 0; part < choices.size(); ++part)
        key ^= KeyOfChoice(part, choices[part]);
    return key;
}

/// The coils that have a capacitor of their own, which follows them.
std::vector<int> TunedCoils(const std::vector<PartToChoose>& parts) {
    std::vector<int> coils;
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        const ValuePlace &coil = parts[i].Place, &next = parts[i + 1].Place;
        if (coil.Row % 2 == 0 && next == ValuePlace{coil.Slot, coil.Row + 1})
            coils.push_back(static_cast<int>(i));
    }
    return coils;
}

std::size_t Below(std::mt19937& random, std::size_t count) {
    return static_cast<std::size_t>(random() % count);
}

}  // namespace

std::pair<KnownCosts::Entry*, bool> KnownCosts::Find(std::uint64_t key) {
    key = key == 0 ? 1 : key;
    if (2 * used > entries.size()) Grow();
    const std::size_t mask = entries.size() - 1;
    for (std::size_t at = key & mask;; at = (at + 1) & mask) {
        Entry& entry = entries[at];
        if (entry.Key == key) return {&entry, false};
        if (entry.Key != 0) continue;
        entry.Key = key;
        ++used;
        return {&entry, true};
    }
}

void KnownCosts::Grow() {
    std::vector<Entry> old(4 * entries.size());
    std::swap(old, entries);
    used = 0;
    for (const Entry& entry : old)
        if (entry.Key != 0) *Find(entry.Key).first = entry;
}

ValueSearch::ValueSearch(const FilterDesign& design, const std::vector<PartToChoose>& toChoose,
                         SearchTask given)
    : work(std::make_unique<FilterDesign>(design)),
      parts(toChoose),
      task(std::move(given)),
      bestCost(std::numeric_limits<double>::infinity()) {}

const FilterDesign& ValueSearch::LadderOf(const PartChoices& choices) {
    work->Pairs.clear();
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const ValuePlace& place = parts[i].Place;
        const SeriesValue& value = parts[i].Choices[static_cast<std::size_t>(choices[i])];
        work->Elements[static_cast<std::size_t>(place.Slot)].Value(place.Row) = value.Value;
        if (value.IsPair())
            work->Pairs.push_back({place, value.Value, value.Larger, value.Smaller});
    }
    return *work;
}

double ValueSearch::CostOf(const PartChoices& choices) {
    return CostOf(choices, KeyOf(choices));
}

double ValueSearch::CostOf(const PartChoices& choices, std::uint64_t key) {
    const auto [entry, isNew] = known.Find(key);
    if (!isNew) return entry->Cost;
    const FilterDesign& ladder = LadderOf(choices);
    looked = choices;
    double cost = task.Cost(ladder);
    const bool better = cost < bestCost;
    // What may not be kept is no way down either: the best allowed ones lie beside it, not below.
    if (better && task.Allowed && !task.Allowed(ladder)) {
        cost = bestCost;
    } else if (better) {
        bestCost = cost;
        best = choices;
    }
    entry->Cost = cost;
    ++evaluations;
    Rank(choices, cost);
    return cost;
}

void ValueSearch::Rank(const PartChoices& choices, double cost) {
    if (ranked.size() == RankedCount && !(cost < ranked.back().first)) return;
    if (ranked.size() == RankedCount) ranked.pop_back();
    const auto after = std::find_if(ranked.begin(), ranked.end(),
                                    [cost](const auto& one) { return cost < one.first; });
    ranked.emplace(after, cost, choices);
}

bool ValueSearch::CanMove(const PartChoices& choices, int part, int move) const {
    const auto at = static_cast<std::size_t>(part);
    const int to = choices[at] + move;
    return to >= 0 && to < static_cast<int>(parts[at].Choices.size());
}

bool ValueSearch::TrySteps(PartChoices& choices, double& cost, std::initializer_list<Step> steps) {
    for (const auto& [part, move] : steps)
        if (!CanMove(choices, part, move)) return false;
    std::uint64_t next = key;
    for (const auto& [part, move] : steps) {
        const auto at = static_cast<std::size_t>(part);
        next ^= KeyOfChoice(at, choices[at]) ^ KeyOfChoice(at, choices[at] + move);
        choices[at] += move;
    }
    const double tried = CostOf(choices, next);
    if (tried < cost) {
        cost = tried;
        key = next;
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
    key = KeyOf(choices);
    double cost = CostOf(choices, key);
    for (bool improved = true; improved && !IsDone() && !known.Find(key).first->IsValley;) {
        improved = false;
        Slices singles = ImproveBySingles(choices, cost, improved);
        while (singles.Advance())
            co_yield Pause;
        if (improved) continue;
        Slices pairs = ImproveByPairs(choices, cost, improved);
        while (pairs.Advance())
            co_yield Pause;
        if (!improved && !IsDone()) known.Find(key).first->IsValley = true;
    }
}

void ValueSearch::Kick(PartChoices& choices, std::mt19937& random) const {
    const std::size_t count = fewestKicked + Below(random, mostKicked - fewestKicked + 1);
    for (std::size_t k = 0; k < count; ++k) {
        const int part = static_cast<int>(Below(random, parts.size()));
        const int move = Below(random, 2) == 0 ? -1 : 1;
        if (CanMove(choices, part, move)) choices[static_cast<std::size_t>(part)] += move;
    }
}

void ValueSearch::Retune(PartChoices& choices, int coil, std::mt19937& random) const {
    const auto at = static_cast<std::size_t>(coil);
    const PartToChoose &inductor = parts[at], &capacitor = parts[at + 1];
    const std::size_t l = Below(random, inductor.Choices.size());
    const double wanted = inductor.Exact * capacitor.Exact / inductor.Choices[l].Value;
    const auto& all = capacitor.Choices;
    const auto above = std::find_if(all.begin(), all.end() - 1,
                                    [wanted](const SeriesValue& c) { return c.Value >= wanted; });
    const auto c = above - all.begin();
    choices[at] = static_cast<int>(l);
    choices[at + 1] = static_cast<int>(c > 0 && Below(random, 2) == 0 ? c - 1 : c);
}

Slices ValueSearch::Wander(PartChoices choices) {
    std::mt19937 random(kickSeed);
    Slices first = Descend(choices);
    while (first.Advance())
        co_yield Pause;
    if (parts.empty()) co_return;
    const std::vector<int> coils = TunedCoils(parts);
    int afresh = coils.empty() ? 0 : startsAfresh;
    for (int idle = 0; !IsDone() && (idle < kicksWithoutNews || afresh > 0); ++idle) {
        const int before = evaluations;
        if (idle >= kicksWithoutNews) {
            --afresh;
            idle = 0;
            for (const int coil : coils)
                Retune(choices, coil, random);
            Slices start = Descend(choices);
            while (start.Advance())
                co_yield Pause;
        }
        PartChoices kicked = choices;
        if (!coils.empty() && Below(random, 2) == 0)
            for (std::size_t k = 1 + Below(random, mostRetuned); k > 0; --k)
                Retune(kicked, coils[Below(random, coils.size())], random);
        else
            Kick(kicked, random);
        Slices next = Descend(kicked);
        while (next.Advance())
            co_yield Pause;
        if (evaluations > before) idle = 0;
        const double cost = CostOf(choices);
        if (CostOf(kicked) < cost + KickTolerance * std::abs(cost)) choices = kicked;
    }
}

double ValueSearch::DoneShare() const {
    if (IsDone()) return 1.0;
    return std::min(1.0, static_cast<double>(evaluations) / std::max(1, task.Evaluations));
}

bool ValueSearch::IsPauseDue() {
    if (evaluations < nextPause) return false;
    nextPause = evaluations + task.InSlice;
    return true;
}

}  // namespace ladderwise
