// From where a candidate does well to where it does best in everything that can be varied. No Qt.
#pragma once

#include <vector>

#include "choosing/Candidate.h"
#include "choosing/LimitGrid.h"
#include "choosing/MinimaxStep.h"

namespace ladderwise {

/// A candidate with its frequencies and the smallest of its margins at the points of a grid.
struct ClimbPlace {
    Candidate What{};
    double F0 = 0.0;         ///< Hz
    double BandWidth = 0.0;  ///< Hz; of low-pass and high-pass not in use
    double Margin = HopelessDb;
};

/// Where the smallest of many margins is largest, as many of them are alike as there are unknowns
/// and one: a search of one unknown after the other ends on any crease where two meet. Here all
/// margins are linearised in F0, bandwidth, the logarithm of the ripple and the attenuation, and
/// the best step within a box is taken, which grows where it does what it promised and shrinks
/// where not: few analyses for each step, whatever the direction of the crease.
/// Source: K. Madsen, H. Schjaer-Jacobsen, "Linearly constrained minimax optimization",
/// Mathematical Programming 14 (1978).
class MarginClimb {
public:
    /// `maker` with the part model that counts, without standard values. Ripples stay within
    /// FinestRippleDb and `largestRipple`.
    MarginClimb(LadderMaker& maker, LimitGrid& grid, double largestRipple);

    /// The best place that is reached from `start`, no worse than that; ripple and attenuation
    /// rounded to what is typed.
    ClimbPlace From(const ClimbPlace& start);

    /// How many ladders were analysed so far.
    long Analyses() const { return analyses; }

private:
    /// `from` moved by steps in units of a whole box.
    ClimbPlace Moved(const ClimbPlace& from, const std::array<double, MostUnknowns>& step) const;
    /// Margins of `place` at all points, into `margins`; false if it cannot be built.
    bool Judge(ClimbPlace& place, std::vector<double>& margins);
    /// False if no unknown can be varied.
    bool Linearise(const ClimbPlace& at, const std::vector<double>& margins);

    LadderMaker& maker;
    LimitGrid& grid;
    const double mostRipple;
    std::vector<LinearFunction> functions;
    std::vector<double> beside;
    std::array<double, MostUnknowns> free{};  ///< 1 for what can be varied, else 0
    long analyses = 0;
};

}  // namespace ladderwise
