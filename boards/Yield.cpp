// Draws, counts and their interval.
#include "boards/Yield.h"

#include <algorithm>
#include <cmath>
#include <memory>

#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"

namespace ladderwise {

namespace {

constexpr double halfWidth95 = 1.959963984540054;  ///< of a standard normal distribution
constexpr double deviationOfNormal = 1.0 / 3.0;    ///< of the tolerance
constexpr double generatorRange = 4294967296.0;

/// 0 < u < 1
double UnitDraw(std::mt19937& generator) {
    return (generator() + 0.5) / generatorRange;
}

/// A standard normal number (Box and Muller, Ann. Math. Stat. 29 (1958)).
double NormalDraw(std::mt19937& generator) {
    const double radius = std::sqrt(-2.0 * std::log(UnitDraw(generator)));
    return radius * std::cos(TwoPi * UnitDraw(generator));
}

}  // namespace

BoardDrawer::BoardDrawer(const FilterDesign& design) : options(design.Boards) {
    const PartModel& model = design.PartModel;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValuePlace place{slot, row};
            const double whole = design.Elements[static_cast<std::size_t>(slot)].Value(row);
            if (!(whole < LargestRandomisedValue)) continue;
            const bool coil = row % 2 == 0;
            const auto add = [&](double value, bool continues) {
                const bool absolute =
                    !coil && options.CapAbsolute > 0.0 && value < BoardDraw::SmallCapacitor;
                const double tolerance = coil ? model.IndTolerance : model.CapTolerance;
                members.push_back(
                    {place, value, absolute ? options.CapAbsolute : tolerance * value, continues});
            };
            const PairedPart* const pair = PairAt(design, place);
            add(pair ? pair->Larger : whole, false);
            if (pair) add(pair->Smaller, true);
        }
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto same = std::find_if(members.begin(), members.end(), [&](const Member& m) {
            return m.Value == members[i].Value && m.Place.Row % 2 == members[i].Place.Row % 2;
        });
        first.push_back(static_cast<int>(same - members.begin()));
    }
    draws.resize(members.size());
}

double BoardDrawer::DrawOne(std::mt19937& generator) const {
    if (!options.Normal) return 0.01 * DrawToleranceStep(generator);
    for (;;) {
        const double t = deviationOfNormal * NormalDraw(generator);
        if (std::abs(t) <= 1.0) return t;
    }
}

void BoardDrawer::Draw(std::mt19937& generator, FilterDesign& board) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        draws[i] = DrawOne(generator);
        if (options.Reel > 0.0 && UnitDraw(generator) < options.Reel)
            draws[i] = draws[static_cast<std::size_t>(first[i])];
    }
    Place(draws, board);
}

void BoardDrawer::Place(const std::vector<double>& given, FilterDesign& board) const {
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Member& member = members[i];
        double& value =
            board.Elements[static_cast<std::size_t>(member.Place.Slot)].Value(member.Place.Row);
        const double drawn = std::max(SmallestPartValue, member.Value + given[i] * member.Spread);
        value = member.Continues ? value + drawn : drawn;
    }
}

ShareInterval WilsonInterval(int passed, int boards) {
    if (boards < 1) return {};
    const double n = boards, p = passed / n, z2 = halfWidth95 * halfWidth95;
    const double centre = (p + z2 / (2.0 * n)) / (1.0 + z2 / n);
    const double half =
        halfWidth95 * std::sqrt(p * (1.0 - p) / n + z2 / (4.0 * n * n)) / (1.0 + z2 / n);
    return {passed == 0 ? 0.0 : std::max(0.0, centre - half),
            passed == boards ? 1.0 : std::min(1.0, centre + half)};
}

BoardCount::BoardCount(const FilterDesign& design, const LimitLines& limits, std::uint32_t seed)
    : drawer(design),
      judge(design, limits),
      generator(seed),
      board(std::make_unique<FilterDesign>(design)),
      canBuild(!limits.empty() && design.NumElements >= 1 && design.F0 > 0.0) {
    result.Failures.assign(limits.size(), 0);
    result.FailureHz.assign(limits.size(), 0.0);
    places.resize(limits.size());
}

void BoardCount::NoteFailure(const BoardVerdict& verdict) {
    const auto row = static_cast<std::size_t>(verdict.Row);
    ++result.Failures[row];
    const int here = ++places[row][verdict.Hz];
    if (here >= places[row][result.FailureHz[row]]) result.FailureHz[row] = verdict.Hz;
}

void BoardCount::Build(int boards) {
    for (int k = 0; canBuild && k < boards; ++k) {
        drawer.Draw(generator, *board);
        const BoardVerdict verdict = judge.Of(*board);
        if (verdict.Passes())
            ++result.Passed;
        else
            NoteFailure(verdict);
        if (result.Boards++ > 0 && verdict.Margin >= result.WorstVerdict.Margin) continue;
        result.WorstVerdict = verdict;
        result.Worst = board->Elements;
    }
    result.Interval = WilsonInterval(result.Passed, result.Boards);
}

YieldResult YieldOf(const FilterDesign& design, const YieldTask& task) {
    BoardCount count(design, task.Limits, task.Seed);
    count.Build(task.Boards);
    return count.Result();
}

}  // namespace ladderwise
