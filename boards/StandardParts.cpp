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
constexpr int PairStartEvaluations = 3000;  ///< of single values, before pairs
constexpr double pairsHelp = 0.5;    ///< of their cost; above it single values are searched further
constexpr double leadInLucks = 0.5;  ///< by which another set beats the nearest values
constexpr double pairStage = 0.6;    ///< of the time: single values, before the pairs
constexpr std::array<double, 2> yieldStages = {0.1, 0.4};  ///< likewise, at their ends

/// A search on boards: its evaluations, what a violation of 1 dB counts beside a board that fails,
/// and where the stage ends. Where most boards fail, the sum of the violations would rule: what
/// fails by less need not pass more often.
struct BoardStage {
    int Evaluations;
    double ViolationShare;
    double To;
};
constexpr std::array<BoardStage, 2> boardStages = {
    {{FixedBoardEvaluations / 2, 0.2, 0.7}, {FixedBoardEvaluations / 2, 0.02, 0.95}}};

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
        exact->Pairs.clear();
        base->Pairs.clear();
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
        Slices singles = SearchSingles(byYield ? StartEvaluations
                                       : pairs ? PairStartEvaluations
                                               : SearchEvaluations,
                                       byYield ? yieldStages[0]
                                       : pairs ? pairStage
                                               : 1.0);
        while (singles.Advance())
            co_yield Pause;
        if (pairs) {
            const std::vector<PartToChoose> single = parts;
            const double before = Result.ChosenCost;
            Slices paired = SearchPairs();
            while (paired.Advance())
                co_yield Pause;
            if (Result.ChosenCost > pairsHelp * before) {
                parts = single;
                Slices again = SearchSingles(SearchEvaluations, 1.0);
                while (again.Advance())
                    co_yield Pause;
                Slices last = SearchPairs();
                while (last.Advance())
                    co_yield Pause;
            }
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
        SearchTask search;
        search.Cost = [&by](const FilterDesign& ladder) { return by.Cost(ladder); };
        search.Evaluations = Spend(evaluations);
        search.InSlice = inSlice;
        return search;
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
        const double plain = search.CostOf(start);  // first: what may be kept depends on it
        if (search.CostOf(tuned) < plain) start = tuned;
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
                Slices race = BestOf({nearest, first}, FirstConfirmingBoards, leadInLucks);
                while (race.Advance())
                    co_yield Pause;
                KeepYield();
            }
            if (goesOn) co_yield Pause;
        }
        Result.Evaluations += search.Evaluations();
        EndStage();
        if (task.FirstAnswer) co_return;
        std::vector<PartChoices> starts;
        for (const auto& [cost, choices] : search.Ranked())
            starts.push_back(choices);
        starts.push_back(close);
        Slices boards = SearchBoards(nearest, starts);
        while (boards.Advance())
            co_yield Pause;
        KeepYield();
    }

    /// What won the last race.
    void KeepYield() {
        ValueSearch scratch(*base, parts, {});
        Result.ByYield = true;
        Keep(winner, judge.Cost(scratch.LadderOf(winner)));
    }

    /// On boards that are the same for all: first to where they fail by little, then for as many as
    /// possible that do not. What passed most often meets the nearest values on new boards.
    Slices SearchBoards(const PartChoices& nearest, std::vector<PartChoices> starts) {
        starts.push_back(nearest);
        std::vector<std::pair<double, PartChoices>> passed;  // descending
        // By number: the frame of a coroutine holds no iterator over a file's own type.
        for (std::size_t n = 0; n < boardStages.size(); ++n) {
            FixedBoards boards(*base, task.Limits, boardStages[n].ViolationShare);
            Slices stage =
                SearchStage(boards, boardStages[n].Evaluations, boardStages[n].To, starts, passed);
            while (stage.Advance())
                co_yield Pause;
            starts.clear();
            for (const auto& [share, choices] : passed)
                starts.push_back(choices);
            starts.push_back(reached);
            starts.push_back(nearest);
        }
        starts.pop_back();
        Slices first = BestOf(starts, FirstConfirmingBoards, 0.0);
        while (first.Advance())
            co_yield Pause;
        std::vector<PartChoices> last{nearest};
        if (winner != nearest) last.push_back(winner);
        Slices confirming = BestOf(last, ConfirmingBoards, leadInLucks);
        while (confirming.Advance())
            co_yield Pause;
    }

    /// From the best of the starts; `reached` is what is best in the end.
    Slices SearchStage(FixedBoards& boards, int evaluations, double to,
                       const std::vector<PartChoices>& starts,
                       std::vector<std::pair<double, PartChoices>>& passed) {
        SearchTask byBoards = TaskOf(boards, evaluations, 1);
        const ValueSearch* looking = nullptr;
        byBoards.Cost = [&](const FilterDesign& ladder) {
            const double cost = boards.Cost(ladder);
            Note(boards.PassedShare(), looking->Looked(), passed);
            return cost;
        };
        byBoards.Enough = 0.0;  // all of them pass
        ValueSearch search(*base, parts, byBoards);
        looking = &search;
        BeginStage(&search, to);
        PartChoices start = starts.front();
        for (const PartChoices& other : starts) {
            if (search.CostOf(other) < search.CostOf(start)) start = other;
            if (search.IsDone()) break;
            co_yield Pause;
        }
        Slices wandering = search.Wander(start);
        while (wandering.Advance())
            co_yield Pause;
        Result.Evaluations += search.Evaluations();
        reached = search.Best();
        EndStage();
    }

    /// Keeps the Finalists with the largest shares.
    static void Note(double share, const PartChoices& choices,
                     std::vector<std::pair<double, PartChoices>>& passed) {
        std::erase_if(passed, [&](const auto& one) { return one.second == choices; });
        const auto after = std::find_if(passed.begin(), passed.end(),
                                        [share](const auto& one) { return share > one.first; });
        passed.emplace(after, share, choices);
        if (passed.size() > Finalists) passed.pop_back();
    }

    /// Builds the same `count` boards of each; `winner` is the first one of them unless another
    /// leads it by so many times the boards' luck, the one that leads most.
    Slices BestOf(std::vector<PartChoices> runners, int count, double lucks) {
        ValueSearch scratch(*base, parts, {});
        std::vector<BoardCount> races;
        for (const PartChoices& choices : runners)
            races.emplace_back(scratch.LadderOf(choices), task.Limits, confirmingSeed);
        for (int left = Spend(count); left > 0; left -= boardsInSlice) {
            for (BoardCount& race : races) {
                race.Build(std::min(left, boardsInSlice));
                co_yield Pause;
            }
        }
        winner = runners.front();
        const YieldResult& plain = races.front().Result();
        int most = plain.Passed;
        for (std::size_t i = 1; i < races.size(); ++i) {
            const YieldResult& found = races[i].Result();
            // At most so much is the deviation of the difference on the same boards.
            const double luck =
                std::sqrt(static_cast<double>(2 * plain.Boards - plain.Passed - found.Passed));
            if (found.Passed <= most || found.Passed < plain.Passed + lucks * luck) continue;
            most = found.Passed;
            winner = runners[i];
        }
    }

    std::unique_ptr<FilterDesign> exact;
    StandardTask task;
    Closeness judge;
    std::vector<PartToChoose> parts;
    std::unique_ptr<FilterDesign> base;
    const ValueSearch* running = nullptr;
    double stageFrom = 0.0, stageTo = 0.0;
    PartChoices winner;   ///< of the last race of boards
    PartChoices reached;  ///< by the last search on boards
    Slices work;          ///< the last: it needs all the others
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
