// Distances to the limits by slopes, and boards that are always the same.
#include "boards/YieldSearch.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>

#include "analysis/Circuitanalysis.h"
#include "analysis/ResponseSamples.h"
#include "analysis/Sensitivities.h"

namespace ladderwise {

namespace {

constexpr double farShare = 0.05;
constexpr double lowestZ = -3.0;
constexpr double highestZ = 6.0;
constexpr double mostViolationDb = 20.0;  ///< a board counts no worse
constexpr int boardsInBlock = 64;
/// Times the root of the boards built: on the same boards about twice the deviation of a
/// difference.
constexpr double clearlyWorse = 1.0;

LimitLines WithoutDelays(LimitLines lines) {
    std::erase_if(lines,
                  [](const LimitLine& line) { return line.Kind == LimitKind::DelayVariationMax; });
    return lines;
}

/// The first `count` prime numbers.
std::vector<int> Primes(int count) {
    std::vector<int> primes;
    for (int n = 2; static_cast<int>(primes.size()) < count; ++n)
        if (std::none_of(primes.begin(), primes.end(), [&](int p) { return n % p == 0; }))
            primes.push_back(n);
    return primes;
}

/// The draw, -1 to 1 in tolerances, that is exceeded with probability 1 - u.
double Quantile(bool normal, double u) {
    if (!normal) return 2.0 * u - 1.0;
    const auto below = [](double t) { return std::erf(3.0 * t / std::sqrt(2.0)); };
    double low = -1.0, high = 1.0;
    for (int k = 0; k < 40; ++k) {
        const double middle = 0.5 * (low + high);
        (below(middle) < (2.0 * u - 1.0) * below(1.0) ? low : high) = middle;
    }
    return 0.5 * (low + high);
}

}  // namespace

SafetyJudge::SafetyJudge(const FilterDesign& design, const LimitLines& limits)
    : grid(WithoutDelays(limits), design.F0, SlopePoints),
      re(grid.Freqs.size()),
      im(re.size()),
      attenuation(re.size()) {
    BuildSweepTables(tables, grid.Freqs, design.F0);
    for (const JudgeGrid::Row& row : grid.Rows)
        reflects = reflects || row.Line.Kind == LimitKind::ReturnLossMin;
    if (reflects) reflection.resize(re.size());
}

double SafetyJudge::Cost(const FilterDesign& ladder) {
    AnalyseLadder(ladder, tables, {}, re, im, reflection);
    const LadderSlopes slopes = SlopesOf(ladder, grid.Freqs, reflects);
    std::vector<double> tolerances;
    for (const ValuePlace& place : slopes.Places)
        tolerances.push_back(SpreadAt(ladder, place));
    const double variance = std::pow(DeviationOfDraw(ladder.Boards), 2);
    double least = highestZ, far = 0.0;
    for (const JudgeGrid::Row& row : grid.Rows)
        for (std::size_t i = row.First; i < row.First + row.Count; ++i) {
            const bool reflected = row.Line.Kind == LimitKind::ReturnLossMin;
            const double value = reflected ? -reflection[i] : -ComplexToDb({re[i], im[i]});
            const double sign = row.Line.Kind == LimitKind::AttenMax ? -1.0 : 1.0;
            double squares = 0.0;
            for (std::size_t k = 0; k < tolerances.size(); ++k) {
                const double slope =
                    (reflected ? slopes.ReturnLossOf(k) : slopes.AttenuationOf(k))[i];
                if (tolerances[k] > 0.0) squares += std::pow(slope * tolerances[k], 2);
            }
            const double z = sign * (value - row.Line.Value) /
                             std::sqrt(variance * squares + SpreadFloorDb * SpreadFloorDb);
            if (std::isnan(z)) return std::numeric_limits<double>::infinity();
            least = std::min(least, z);
            far += std::exp(-std::clamp(z, lowestZ, highestZ));
        }
    return farShare * far - least;
}

FixedBoards::FixedBoards(const FilterDesign& design, const LimitLines& limits, double share)
    : judge(design, limits, RoughBoardPoints),
      violationShare(share),
      bestSums(Count / boardsInBlock, std::numeric_limits<double>::max()),
      board(std::make_unique<FilterDesign>(design)) {
    const int things = BoardDrawer(design).Count();
    const std::vector<int> primes = Primes(2 * things);
    for (int k = 0; k < Count; ++k) {  // Richtmyer's sequence: multiples of roots of primes
        const auto unit = [&](int dimension) {
            const double x = (k + 0.5) * std::sqrt(primes[static_cast<std::size_t>(dimension)]);
            return x - std::floor(x);
        };
        draws.emplace_back();
        reels.emplace_back();
        for (int i = 0; i < things; ++i) {
            draws.back().push_back(Quantile(design.Boards.Normal, unit(i)));
            reels.back().push_back(unit(things + i));
        }
    }
}

double FixedBoards::Cost(const FilterDesign& ladder) {
    const BoardDrawer drawer(ladder);
    const double reel = drawer.Options().Reel;
    *board = ladder;
    std::vector<double> sums, drawn;
    double sum = 0.0;
    int passed = 0;
    passedShare = 0.0;
    for (std::size_t k = 0; k < draws.size(); ++k) {
        drawn = draws[k];
        for (std::size_t i = 0; i < drawn.size(); ++i)
            if (reels[k][i] < reel)
                drawn[i] = drawn[static_cast<std::size_t>(drawer.FirstOfValue()[i])];
        drawer.Place(drawn, *board);
        const BoardVerdict verdict = judge.Roughly(*board);
        if (verdict.Passes())
            ++passed;
        else
            sum += 1.0 + violationShare * (verdict.Margin < 0.0
                                               ? std::min(-verdict.Margin, mostViolationDb)
                                               : mostViolationDb);
        const double built = static_cast<double>(k + 1);
        if ((k + 1) % boardsInBlock != 0) continue;
        if (sum > bestSums[sums.size()] + clearlyWorse * std::sqrt(built)) return sum / built;
        sums.push_back(sum);
    }
    if (sum < bestSums.back()) bestSums = sums;
    passedShare = static_cast<double>(passed) / Count;
    return sum / Count;
}

}  // namespace ladderwise
