// Draws, counts and their interval.
#include "boards/Yield.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace ladderwise {

namespace {

constexpr double halfWidth95 = 1.959963984540054;  ///< of a standard normal distribution

}  // namespace

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
        result.WorstPairs = board->Pairs;
    }
    result.Interval = WilsonInterval(result.Passed, result.Boards);
}

YieldResult YieldOf(const FilterDesign& design, const YieldTask& task) {
    BoardCount count(design, task.Limits, task.Seed);
    count.Build(task.Boards);
    return count.Result();
}

}  // namespace ladderwise
