// How many of the boards that are built keep the limits. No Qt.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "analysis/BoardDraws.h"
#include "boards/BoardJudge.h"

namespace ladderwise {

/// A range that holds a share with 95 % probability.
struct ShareInterval {
    double Low = 0.0;
    double High = 1.0;
};

/// The interval for a share of which `passed` of `boards` are known. E. B. Wilson, "Probable
/// inference, the law of succession, and statistical inference", J. Amer. Stat. Assoc. 22 (1927)
/// 209-212; on how well it covers L. D. Brown, T. T. Cai and A. DasGupta, Statistical Science 16
/// (2001) 101-133.
ShareInterval WilsonInterval(int passed, int boards);

struct YieldTask {
    LimitLines Limits{};
    int Boards = 1000;
    std::uint32_t Seed = 1;  ///< repeats the boards
};

struct YieldResult {
    int Boards = 0;  ///< that were built
    int Passed = 0;
    ShareInterval Interval{};
    std::vector<int> Failures{};  ///< by limit: boards that failed, each once at its worst limit
    std::vector<double> FailureHz{};       ///< by limit: where most of them failed; 0: of a delay
    ElementList Worst{};                   ///< the board with the smallest margin
    std::vector<PairedPart> WorstPairs{};  ///< its capacitors that are two in parallel
    BoardVerdict WorstVerdict{};

    double Share() const { return Boards > 0 ? static_cast<double>(Passed) / Boards : 0.0; }
};

/// Boards of one ladder, built and judged as many at a time as the caller has time for.
class BoardCount {
public:
    /// Of the ladder in design.Elements. Nothing is built of a ladder
    /// without elements, or without limits.
    BoardCount(const FilterDesign& design, const LimitLines& limits, std::uint32_t seed);

    /// The next boards; the first thousand of ten thousand are the same as a thousand.
    void Build(int boards);
    const YieldResult& Result() const { return result; }
    bool CanBuild() const { return canBuild; }

private:
    void NoteFailure(const BoardVerdict& verdict);

    BoardDrawer drawer;
    BoardJudge judge;
    std::mt19937 generator;
    std::unique_ptr<FilterDesign> board;
    bool canBuild;
    std::vector<std::map<double, int>> places;  ///< by limit: how many failed at a frequency
    YieldResult result;
};

/// Builds boards of the ladder in design.Elements and judges them.
YieldResult YieldOf(const FilterDesign& design, const YieldTask& task);

}  // namespace ladderwise
