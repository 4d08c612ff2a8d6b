// Starts, searches and what may be kept.
#include "boards/StandardParts.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <memory>

#include "boards/Closeness.h"
#include "boards/PairLattice.h"
#include "boards/YieldSearch.h"

namespace ladderwise {

namespace {

constexpr int seriesReach = 10;  ///< values to either side of the nearest
constexpr double narrowestRelative = 0.01;
constexpr std::uint32_t confirmingSeed = 20;  ///< no board of the choice itself
constexpr int closenessesInSlice = 200;       ///< a millisecond or two
constexpr int safetiesInSlice = 100;
constexpr int boardsInSlice = 250;
constexpr double pairStage = 0.6;  ///< of the time: single values, before the pairs
constexpr std::array<double, 3> yieldStages = {0.1, 0.4, 0.95};  ///< likewise, at their ends

/// The choices nearest to the exact values.
PartChoices NearestChoices(const std::vector<PartToChoose>& parts) {
    PartChoices choices;
    for (const PartToChoose& part : parts)
        choices.push_back(part.Nearest);
    return choices;
}

double Misfit(const PartToChoose& part, int choice) {
    return std::log(part.Choices[static_cast<std::size_t>(choice)].Value / part.Exact);
}

/// For each resonator the coil and capacitor that keep its frequency, as narrow as the band is:
/// (2 / w)^2 (dlnL + dlnC)^2 + (dlnL - dlnC)^2 is least, w the relative bandwidth.
PartChoices ResonatorChoices(const std::vector<PartToChoose>& parts, double relativeWidth) {
    const double resonance = std::pow(2.0 / std::max(narrowestRelative, relativeWidth), 2);
    PartChoices choices = NearestChoices(parts);
    for (std::size_t i = 0; i + 1 < parts.size(); ++i) {
        const PartToChoose &coil = parts[i], &capacitor = parts[i + 1];
        const bool resonator = coil.Place.Slot == capacitor.Place.Slot && coil.Place.Row % 2 == 0 &&
                               capacitor.Place.Row == coil.Place.Row + 1;
        if (!resonator) continue;
        double least = std::numeric_limits<double>::infinity();
        for (int l = 0; l < static_cast<int>(coil.Choices.size()); ++l)
            for (int c = 0; c < static_cast<int>(capacitor.Choices.size()); ++c) {
                const double dL = Misfit(coil, l), dC = Misfit(capacitor, c);
                const double cost = resonance * (dL + dC) * (dL + dC) + (dL - dC) * (dL - dC);
                if (cost >= least) continue;
                least = cost;
                choices[i] = l;
                choices[i + 1] = c;
            }
    }
    return choices;
}

double RelativeWidth(const FilterDesign& design) {
    return HasBandWidth(design.PassType) ? design.BandWidth / design.F0 : 1.0;
}

}  // namespace

/// The stages, each with the share of the time that it takes.
class StandardSearch::Chooser {
public:
    Chooser(const FilterDesign& exactDesign, const ElementList& ideal, StandardTask given)
        : exact(std::make_unique<FilterDesign>(exactDesign)),
          task(std::move(given)),
          judge(*exact, ideal),
          parts(PartsToChoose(*exact, task.Held, seriesReach)),
          base(std::make_unique<FilterDesign>(*exact)),
          work(Run()) {
        // What is no part with a value of its own is snapped as the nearest values are.
        SnapToStdValue(*base);
        const PartChoices nearest = NearestChoices(parts);
        ValueSearch scratch(*base, parts, {});
        *base = scratch.LadderOf(nearest);
        Result.Nearest = base->Elements;
        Result.NearestCost = judge.IsValid() ? judge.Cost(*base) : std::nan("");
        Result.NearestDeviation = judge.IsValid() ? judge.WorstDeviation(*base) : std::nan("");
        Keep(nearest, Result.NearestCost);
        Result.Final = !IsSearched();
    }

    bool Advance() { return work.Advance(); }
    double DoneShare() const {
        return running ? stageFrom + (stageTo - stageFrom) * running->DoneShare() : stageFrom;
    }

    StandardParts Result;

private:
    bool IsSearched() const { return judge.IsValid() && task.Method != StdMethod::Nearest; }

    Slices Run() {
        if (!IsSearched()) co_return;
        const bool byYield = task.Method == StdMethod::Yield && !task.Limits.empty();
        const bool pairs = task.Method == StdMethod::Pairs;
        Slices singles = SearchSingles(byYield ? FirstSafetyEvaluations : SearchEvaluations,
                                       byYield ? yieldStages[0]
                                       : pairs ? pairStage
                                               : 1.0);
        while (singles.Advance())
            co_yield Pause;
        if (pairs) {
            Slices paired = SearchPairs();
            while (paired.Advance())
                co_yield Pause;
        }
        if (byYield) {
            Slices safest = SearchYield();
            while (safest.Advance())
                co_yield Pause;
        }
        Result.Final = true;
    }

    /// From here on `search` tells how far the stage is that ends with `to` of the whole.
    void BeginStage(const ValueSearch* search, double to) {
        running = search;
        stageFrom = stageTo;
        stageTo = to;
    }
    void EndStage() {
        running = nullptr;
        stageFrom = stageTo;
    }

    /// J and the worst deviation are those of `choices` from here on.
    void Keep(const PartChoices& choices, double cost) {
        ValueSearch scratch(*base, parts, {});
        const FilterDesign& ladder = scratch.LadderOf(choices);
        Result.Chosen = ladder.Elements;
        Result.ChosenCost = cost;
        Result.ChosenDeviation = judge.IsValid() ? judge.WorstDeviation(ladder) : std::nan("");
        Result.Parts.clear();
        for (std::size_t i = 0; i < parts.size(); ++i)
            Result.Parts.push_back({parts[i].Place,
                                    parts[i].Choices[static_cast<std::size_t>(choices[i])],
                                    parts[i].Held});
    }

    int Spend(int usual) const { return std::max(1, static_cast<int>(task.Effort * usual)); }

    /// For the highest yield, by one of the judges that have a Cost.
    template <typename Judge>
    SearchTask TaskOf(Judge& by, int evaluations, int inSlice) const {
        return {[&by](const FilterDesign& ladder) { return by.Cost(ladder); },
                {},
                Spend(evaluations),
                inSlice};
    }

    /// For the closest response.
    SearchTask TaskOf(int evaluations) {
        SearchTask search;
        search.Cost = [this](const FilterDesign& ladder) { return judge.Cost(ladder); };
        search.Allowed = [this](const FilterDesign& ladder) {
            return judge.WorstDeviation(ladder) <= Result.NearestDeviation;
        };
        search.Evaluations = Spend(evaluations);
        search.InSlice = closenessesInSlice;
        return search;
    }

    void Take(const ValueSearch& search) {
        EndStage();
        Result.Evaluations += search.Evaluations();
        if (search.BestCost() < Result.ChosenCost) Keep(search.Best(), search.BestCost());
    }

    Slices SearchSingles(int evaluations, double share) {
        ValueSearch search(*base, parts, TaskOf(evaluations));
        BeginStage(&search, share);
        PartChoices start = NearestChoices(parts);
        const PartChoices tuned = ResonatorChoices(parts, RelativeWidth(*exact));
        if (search.CostOf(tuned) < search.CostOf(start)) start = tuned;
        PartChoices close;
        Slices lattice = DescendFromLattice(*exact, judge, parts, search, close);
        while (lattice.Advance())
            co_yield Pause;
        if (search.CostOf(close) < search.CostOf(start)) start = close;
        Slices wandering = search.Wander(start);
        while (wandering.Advance())
            co_yield Pause;
        Take(search);
    }

    Slices SearchPairs() {
        std::vector<double> single;
        for (const ChosenPart& part : Result.Parts)
            single.push_back(part.Value.Value);
        AddPairs(exact->PartModel, parts);
        ValueSearch search(*base, parts, TaskOf(SearchEvaluations));
        BeginStage(&search, 1.0);
        PartChoices close;
        Slices lattice = DescendFromLattice(*exact, judge, parts, search, close);
        while (lattice.Advance())
            co_yield Pause;
        PartChoices start;
        for (std::size_t i = 0; i < parts.size(); ++i)
            start.push_back(ChoiceNear(parts[i], single[i]));
        Slices descent = search.Descend(start);
        while (descent.Advance())
            co_yield Pause;
        Take(search);
    }

    /// The choice of a part whose value is nearest to `value`.
    static int ChoiceNear(const PartToChoose& part, double value) {
        const auto& choices = part.Choices;
        const auto nearest = std::min_element(
            choices.begin(), choices.end(), [value](const SeriesValue& a, const SeriesValue& b) {
                return std::abs(a.Value - value) < std::abs(b.Value - value);
            });
        return static_cast<int>(nearest - choices.begin());
    }

    /// The choices of the present result.
    PartChoices PresentChoices() const {
        PartChoices choices;
        for (std::size_t i = 0; i < parts.size(); ++i)
            choices.push_back(ChoiceNear(parts[i], Result.Parts[i].Value.Value));
        return choices;
    }

    Slices SearchYield() {
        SafetyJudge safety(*base, task.Limits);
        const int evaluations = task.FirstAnswer ? FirstSafetyEvaluations : SafetyEvaluations;
        ValueSearch search(*base, parts, TaskOf(safety, evaluations, safetiesInSlice));
        BeginStage(&search, yieldStages[1]);
        const PartChoices nearest = NearestChoices(parts), close = PresentChoices();
        Slices wandering =
            search.Wander(search.CostOf(close) < search.CostOf(nearest) ? close : nearest);
        bool answered = false;
        for (bool goesOn = true; goesOn;) {
            goesOn = wandering.Advance();
            if (!answered && (!goesOn || search.Evaluations() >= Spend(FirstSafetyEvaluations))) {
                answered = true;
                const PartChoices first = search.Best().empty() ? close : search.Best();
                const bool better = Passed(search, first, FirstConfirmingBoards) >=
                                    Passed(search, nearest, FirstConfirmingBoards);
                KeepLadder(search, better ? first : nearest);
            }
            if (goesOn) co_yield Pause;
        }
        Result.Evaluations += search.Evaluations();
        EndStage();
        if (task.FirstAnswer) co_return;
        PartChoices best = search.Best().empty() ? close : search.Best();
        Slices boards = SearchBoards(nearest, close, best);
        while (boards.Advance())
            co_yield Pause;
        KeepLadder(search, best);
    }

    void KeepLadder(ValueSearch& search, const PartChoices& choices) {
        Result.ByYield = true;
        Keep(choices, judge.Cost(search.LadderOf(choices)));
    }

    int Passed(ValueSearch& search, const PartChoices& choices, int boards) const {
        return YieldOf(search.LadderOf(choices), {task.Limits, Spend(boards), confirmingSeed})
            .Passed;
    }

    /// From the best of the starts on boards that are the same for all; then ConfirmingBoards of
    /// new ones say whether it is better than the nearest values. `best` is the last start and what
    /// it comes to.
    Slices SearchBoards(const PartChoices& nearest, const PartChoices& close, PartChoices& best) {
        FixedBoards boards(*base, task.Limits);
        ValueSearch search(*base, parts, TaskOf(boards, FixedBoardEvaluations, 1));
        BeginStage(&search, yieldStages[2]);
        PartChoices start = nearest;
        if (search.CostOf(close) < search.CostOf(start)) start = close;
        co_yield Pause;
        if (search.CostOf(best) < search.CostOf(start)) start = best;
        Slices wandering = search.Wander(start);
        while (wandering.Advance())
            co_yield Pause;
        Result.Evaluations += search.Evaluations();
        EndStage();
        BoardCount found(search.LadderOf(search.Best()), task.Limits, confirmingSeed);
        BoardCount plain(search.LadderOf(nearest), task.Limits, confirmingSeed);
        for (int left = Spend(ConfirmingBoards); left > 0; left -= boardsInSlice) {
            const int next = std::min(left, boardsInSlice);
            found.Build(next);
            plain.Build(next);
            co_yield Pause;
        }
        best = found.Result().Passed >= plain.Result().Passed ? search.Best() : nearest;
    }

    std::unique_ptr<FilterDesign> exact;
    StandardTask task;
    Closeness judge;
    std::vector<PartToChoose> parts;
    std::unique_ptr<FilterDesign> base;
    const ValueSearch* running = nullptr;
    double stageFrom = 0.0, stageTo = 0.0;
    Slices work;  ///< the last: it needs all the others
};

void TakeParts(DesignState& design, const StandardParts& parts) {
    design.Elements = parts.Chosen;
    design.Pairs.clear();
    for (const auto& [place, value, held] : parts.Parts)
        if (value.IsPair())
            design.Pairs.push_back({place, value.Value, value.Larger, value.Smaller});
}

StandardSearch::StandardSearch(const FilterDesign& exact, const ElementList& ideal,
                               const StandardTask& task)
    : chooser(std::make_unique<Chooser>(exact, ideal, task)) {}

StandardSearch::~StandardSearch() = default;

bool StandardSearch::Advance() {
    return chooser->Advance();
}

const StandardParts& StandardSearch::Present() const {
    return chooser->Result;
}

double StandardSearch::DoneShare() const {
    return chooser->DoneShare();
}

StandardParts ChooseStandardParts(const FilterDesign& exact, const ElementList& ideal,
                                  const StandardTask& task) {
    StandardSearch search(exact, ideal, task);
    while (search.Advance()) {
    }
    return search.Present();
}

}  // namespace ladderwise
