// Standard values for the most boards that keep the limits. No Qt.
//
// R. S. Soin and R. Spence, "Statistical exploration approach to design centring", IEE Proc. G 127
// (1980) 260-269; K. J. Antreich, H. E. Graeb and C. U. Wieser, "Circuit analysis and optimization
// driven by worst-case distances", IEEE Trans. CAD 13 (1994) 57-71.
#pragma once

#include <memory>
#include <vector>

#include "boards/BoardJudge.h"
#include "boards/StandardSeries.h"
#include "boards/ValueSearch.h"
#include "boards/Yield.h"

namespace ladderwise {

/// How safely a ladder keeps its limits, in standard deviations of its boards to first order:
///   z_i = margin_i / sqrt(s^2 sum (S_ik t_k)^2 + SpreadFloorDb^2)
/// at SlopePoints frequencies, S the slopes in ln(value), t the tolerances, s the standard
/// deviation of a draw. Delay variations have no part in it.
class SafetyJudge {
public:
    SafetyJudge(const FilterDesign& design, const LimitLines& limits);

    /// min z - 0.05 sum exp(-z), z within -3 and 6, with the sign turned: to be made small.
    double Cost(const FilterDesign& ladder);

    static constexpr int SlopePoints = 32;
    static constexpr double SpreadFloorDb = 0.03;

private:
    JudgeGrid grid;
    SweepTables tables;
    bool reflects = false;
    std::vector<double> re, im, attenuation, reflection;
};

/// The same boards for every ladder: draws of low discrepancy, so that two ladders are told apart
/// by far fewer boards than their own luck would need.
class FixedBoards {
public:
    /// A violation of 1 dB counts as `violationShare` of a board that fails.
    FixedBoards(const FilterDesign& design, const LimitLines& limits, double violationShare);

    /// Share of the boards that fail, with their violations, at RoughBoardPoints. A ladder that is
    /// clearly worse than the best so far is given up early; its cost is then that of the boards
    /// built.
    double Cost(const FilterDesign& ladder);

    /// The share that passed of the ladder whose cost was asked for last; 0: given up.
    double PassedShare() const { return passedShare; }

    static constexpr int Count = 1024;

private:
    BoardJudge judge;
    double violationShare;
    std::vector<std::vector<double>> draws;
    std::vector<std::vector<double>> reels;  ///< 0 to 1
    std::vector<double> bestSums;            ///< of the best ladder, after each block
    double passedShare = 0.0;
    std::unique_ptr<FilterDesign> board;
};

inline constexpr int StartEvaluations = 1500;  ///< of the closeness, for a start
inline constexpr int SafetyEvaluations = 10000;
inline constexpr int FirstSafetyEvaluations = 2000;  ///< of an answer that is shown at once
inline constexpr int FixedBoardEvaluations = 300;
inline constexpr int ConfirmingBoards = 10000;
inline constexpr int FirstConfirmingBoards = 1000;
inline constexpr int Finalists = 5;  ///< that meet on boards of FirstConfirmingBoards

}  // namespace ladderwise
