// Starts, searches and what may be kept.
#include "boards/StandardParts.h"

#include <algorithm>
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

class Chooser {
public:
    Chooser(const FilterDesign& exactDesign, const ElementList& ideal, const StandardTask& given)
        : exact(exactDesign),
          task(given),
          judge(exact, ideal),
          parts(PartsToChoose(exact, task.Held, seriesReach)) {
        // What is no part with a value of its own is snapped as the nearest values are.
        base = std::make_unique<FilterDesign>(exact);
        SnapToStdValue(*base);
        const PartChoices nearest = NearestChoices(parts);
        ValueSearch scratch(*base, parts, {});
        *base = scratch.LadderOf(nearest);
        result.Nearest = base->Elements;
        result.NearestCost = judge.IsValid() ? judge.Cost(*base) : std::nan("");
        result.NearestDeviation = judge.IsValid() ? judge.WorstDeviation(*base) : std::nan("");
        Keep(nearest, result.NearestCost);
    }

    StandardParts Run() {
        if (judge.IsValid() && task.Method != StdMethod::Nearest) {
            const bool byYield = task.Method == StdMethod::Yield && !task.Limits.empty();
            SearchSingles(byYield ? FirstSafetyEvaluations : SearchEvaluations);
            if (task.Method == StdMethod::Pairs) SearchPairs();
            if (byYield) SearchYield();
        }
        return result;
    }

private:
    /// J and the worst deviation are those of `choices` from here on.
    void Keep(const PartChoices& choices, double cost) {
        ValueSearch scratch(*base, parts, {});
        const FilterDesign& ladder = scratch.LadderOf(choices);
        result.Chosen = ladder.Elements;
        result.ChosenCost = cost;
        result.ChosenDeviation = judge.IsValid() ? judge.WorstDeviation(ladder) : std::nan("");
        result.Parts.clear();
        for (std::size_t i = 0; i < parts.size(); ++i)
            result.Parts.push_back({parts[i].Place,
                                    parts[i].Choices[static_cast<std::size_t>(choices[i])],
                                    parts[i].Held});
    }

    int Spend(int usual) const { return std::max(1, static_cast<int>(task.Effort * usual)); }

    SearchTask TaskOf(int evaluations) {
        SearchTask search;
        search.Cost = [this](const FilterDesign& ladder) { return judge.Cost(ladder); };
        search.Allowed = [this](const FilterDesign& ladder) {
            return judge.WorstDeviation(ladder) <= result.NearestDeviation;
        };
        search.Evaluations = evaluations;
        search.Progress = task.Progress;
        return search;
    }

    void Take(const ValueSearch& search) {
        result.Evaluations += search.Evaluations();
        if (search.BestCost() < result.ChosenCost) Keep(search.Best(), search.BestCost());
    }

    void SearchSingles(int evaluations) {
        ValueSearch search(*base, parts, TaskOf(Spend(evaluations)));
        PartChoices start = NearestChoices(parts);
        const PartChoices tuned = ResonatorChoices(parts, RelativeWidth(exact));
        if (search.CostOf(tuned) < search.CostOf(start)) start = tuned;
        const PartChoices close = DescendFromLattice(exact, judge, parts, search);
        if (search.CostOf(close) < search.CostOf(start)) start = close;
        search.Wander(start);
        Take(search);
    }

    void SearchPairs() {
        std::vector<double> single;
        for (const ChosenPart& part : result.Parts)
            single.push_back(part.Value.Value);
        AddPairs(exact.PartModel, parts);
        ValueSearch search(*base, parts, TaskOf(Spend(SearchEvaluations)));
        DescendFromLattice(exact, judge, parts, search);
        PartChoices start;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto& choices = parts[i].Choices;
            start.push_back(
                static_cast<int>(std::min_element(choices.begin(), choices.end(),
                                                  [&](const SeriesValue& a, const SeriesValue& b) {
                                                      return std::abs(a.Value - single[i]) <
                                                             std::abs(b.Value - single[i]);
                                                  }) -
                                 choices.begin()));
        }
        search.Descend(start);
        Take(search);
    }

    /// The choices of the present result.
    PartChoices PresentChoices() const {
        PartChoices choices;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto& all = parts[i].Choices;
            const auto found = std::find_if(all.begin(), all.end(), [&](const SeriesValue& value) {
                return value.Value == result.Parts[i].Value.Value;
            });
            choices.push_back(static_cast<int>(found - all.begin()));
        }
        return choices;
    }

    void SearchYield() {
        SafetyJudge safety(*base, task.Limits);
        const auto cost = [&](const FilterDesign& ladder) { return safety.Cost(ladder); };
        const int evaluations = task.FirstAnswer ? FirstSafetyEvaluations : SafetyEvaluations;
        ValueSearch search(*base, parts, {cost, {}, Spend(evaluations), task.Progress});
        const PartChoices nearest = NearestChoices(parts), close = PresentChoices();
        search.Wander(search.CostOf(close) < search.CostOf(nearest) ? close : nearest);
        result.Evaluations += search.Evaluations();
        PartChoices best = search.Best().empty() ? close : search.Best();
        if (!task.FirstAnswer) best = BestOnBoards({nearest, close, best});
        result.ByYield = true;
        Keep(best, judge.Cost(search.LadderOf(best)));
    }

    /// From the best of the starts on boards that are the same for all; then ConfirmingBoards of
    /// new ones say whether it is better than the nearest values, which come first.
    PartChoices BestOnBoards(const std::vector<PartChoices>& starts) {
        FixedBoards boards(*base, task.Limits);
        const auto cost = [&](const FilterDesign& ladder) { return boards.Cost(ladder); };
        ValueSearch search(*base, parts, {cost, {}, Spend(FixedBoardEvaluations), task.Progress});
        PartChoices start = starts.front();
        for (const PartChoices& each : starts)
            if (search.CostOf(each) < search.CostOf(start)) start = each;
        search.Wander(start);
        result.Evaluations += search.Evaluations();
        const PartChoices& best = search.Best();
        const auto passed = [&](const PartChoices& choices) {
            return YieldOf(search.LadderOf(choices), {},
                           {task.Limits, Spend(ConfirmingBoards), confirmingSeed, {}})
                .Passed;
        };
        return passed(best) >= passed(starts.front()) ? best : starts.front();
    }

    const FilterDesign& exact;
    const StandardTask& task;
    Closeness judge;
    std::vector<PartToChoose> parts;
    std::unique_ptr<FilterDesign> base;
    StandardParts result;
};

}  // namespace

StandardParts ChooseStandardParts(const FilterDesign& exact, const ElementList& ideal,
                                  const StandardTask& task) {
    return Chooser(exact, ideal, task).Run();
}

}  // namespace ladderwise
