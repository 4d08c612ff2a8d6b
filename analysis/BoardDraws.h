// Boards as they are built: every part somewhere within its tolerance. No Qt.
#pragma once

#include <random>
#include <vector>

#include "design/FilterDesign.h"
#include "design/ValuePlace.h"

namespace ladderwise {

/// The tolerance of a value of design.Elements, a fraction: its own, or that of its kind, or, of a
/// small capacitor, the absolute one. 0 for lines.
double ToleranceAt(const DesignState& design, const ValuePlace& place);

/// The same as it counts in a spread: 0 for what is never drawn. Two capacitors in parallel, each
/// drawn by itself, vary by less than one would, by sqrt((t1 C1)^2 + (t2 C2)^2) / (C1 + C2).
double SpreadAt(const DesignState& design, const ValuePlace& place);

/// Standard deviation of a draw, in tolerances.
double DeviationOfDraw(const BoardDraw& options);

/// Draws boards of a ladder, for a yield as for the runs of a worst case: every value below
/// LargestRandomisedValue of slots 1 .. NumElements becomes value + draw x tolerance x value, with
/// one draw from -1 to 1 for each, in slot order and V1 to V4 within a slot. V1 and V3 take the
/// inductors' tolerance, V2 and V4 the capacitors', a part with one of its own that. Without the
/// options of BoardDraw a draw is DrawToleranceStep / 100.
class BoardDrawer {
public:
    /// Capacitors that are two in parallel are drawn each by itself.
    explicit BoardDrawer(const FilterDesign& design);

    /// The next board, into board.Elements.
    void Draw(std::mt19937& generator, FilterDesign& board);

    /// Single things that are drawn, pairs counted as two.
    int Count() const { return static_cast<int>(members.size()); }
    /// The board of given draws from -1 to 1, one for each thing. board.Pairs, those of the design
    /// at first, become the drawn ones.
    void Place(const std::vector<double>& draws, FilterDesign& board) const;
    /// For each thing the first one of its value, itself if there is none before it.
    const std::vector<int>& FirstOfValue() const { return first; }
    const BoardDraw& Options() const { return options; }

private:
    struct Member {
        ValuePlace Place{};
        double Value = 0.0;
        double Spread = 0.0;     ///< what a draw of 1 adds, H or F
        bool Continues = false;  ///< the second of a pair
        int Pair = -1;           ///< index in Pairs; -1: single
    };

    double DrawOne(std::mt19937& generator) const;

    BoardDraw options;
    std::vector<Member> members;
    std::vector<int> first;
    std::vector<double> draws;
};

/// One worst-case variant of NominalElements into Elements. Pairs stay those of the nominal values.
void RandomiseParts(FilterDesign& design, std::mt19937& generator);

}  // namespace ladderwise
