// Finds the least misfit of a board: one fit from the nominal values where the band is wide, and
// where it is narrow, a part off by more than the bandwidth, the ways that lead past wrong minima.
// No Qt.
#pragma once

#include <utility>
#include <vector>

#include "measured/BoardFit.h"

namespace ladderwise {

/// How a fit came out.
struct BoardSolution {
    BoardState State{};
    double Excess = 0.0;  ///< rms of model minus data, in units of the noise
    /// Solutions with other values that explain the data as well.
    std::vector<BoardState> Equals{};
};

/// A fit with more than this Excess does not explain the data: noise, and what no model has.
inline constexpr double LargestExcess = 2.0;
/// Nor does one that needs unknowns so far from where they are expected.
inline constexpr double LargestPull = 150.0;

/// True if a fit explains the data.
inline bool Explains(const BoardSolution& solution) {
    return solution.Excess <= LargestExcess && solution.State.Pull <= LargestPull;
}

/// Puts `other` in the place of `best` if its cost is less.
void KeepBetter(BoardSolution& best, BoardSolution other);

/// True if the pass band of a design is narrow enough for parts to be off by more than it is wide.
bool IsNarrow(const DesignState& design);

class BoardSearch {
public:
    BoardSearch(const DesignState& built, const BoardModel& fitted, const BoardData& measured);

    /// A first look with the parasitics held, on few points: what the values must be about. In a
    /// narrow band, or if asked for, from smoothed data to the data themselves.
    BoardState Glance(std::vector<double> start, bool smoothed = false) const;
    /// The end of a glance: from values near those to be found.
    BoardState Settled(BoardState state) const;
    /// A glance from the nominal values, briefer yet: what tells a likely ladder from others.
    BoardState Screened() const;
    /// The same from values near those to be found: never smoothed.
    BoardState Screened(std::vector<double> start) const;
    /// A glance with everything free, still on few points.
    BoardState Roughed(const BoardState& glance) const;
    /// From a rough state to the end on all points; what is hopeless is only judged.
    BoardSolution Finished(const BoardState& rough) const;
    /// The short ways: from the nominal values, parasitics as expected or none; in wide bands from
    /// smoothed data too, and with traps in another order.
    BoardSolution Solve() const;
    /// The long ways: from random starts, and in narrow bands with slots exchanged, until something
    /// explains the data.
    void SolveThoroughly(BoardSolution& best) const;
    /// Finds solutions beside the best that explain the data as well, and a better one if there is.
    void AddEquals(BoardSolution& solution) const;
    /// A start fitted to the end.
    BoardSolution From(std::vector<double> start, bool smoothed = false) const {
        return Finished(Roughed(Glance(std::move(start), smoothed)));
    }

    /// From the ladder as it is drawn, without any parasitics.
    BoardSolution FromBare() const { return From(WithoutParasitics()); }

private:
    std::vector<double> WithoutParasitics() const;
    std::vector<BoardState> BestOfRandom(const BoardState& best) const;
    std::vector<std::vector<double>> Exchanged(const BoardState& state, bool commuting) const;

    const DesignState& design;
    const BoardModel& model;
    const BoardData& data;
};

}  // namespace ladderwise
