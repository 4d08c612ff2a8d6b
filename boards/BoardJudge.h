// Whether a ladder keeps its limits, judged at a fixed number of points, fast enough for a hundred
// thousand ladders. No Qt.
#pragma once

#include <vector>

#include "analysis/SweepTables.h"
#include "design/FilterDesign.h"
#include "design/LimitLine.h"

namespace ladderwise {

inline constexpr int BoardPoints = 256;        ///< over all limits, their ends included
inline constexpr int CloseBoardPoints = 1024;  ///< for a board that passes narrowly
inline constexpr int RoughBoardPoints = 64;    ///< to tell ladders apart, not to judge them

/// About `count` frequencies over the limits, Hz: as many in each, both ends included and denser
/// towards them; one in a limit at a single frequency. A limit from 0 Hz begins at F0 LowestX.
struct JudgeGrid {
    JudgeGrid(const LimitLines& lines, double F0, int count);

    struct Row {
        LimitLine Line;
        std::size_t First = 0, Count = 0;  ///< in Freqs; of a delay two frequencies for each point
    };
    std::vector<Row> Rows;
    std::vector<double> Freqs;
};

/// What became of one ladder.
struct BoardVerdict {
    int Row = -1;         ///< of the smallest margin, from 0; -1: there are no limits
    double Margin = 0.0;  ///< dB there; of a delay variation ten times the share that is left
    double Hz = 0.0;      ///< where it is smallest; 0: of a delay variation

    bool Passes() const { return Margin >= 0.0; }  // NaN does not
};

/// Judges ladders of one design by limits: attenuation is that of the power that the source can
/// give.
class BoardJudge {
public:
    BoardJudge(const FilterDesign& design, const LimitLines& limits, int points = BoardPoints);

    /// At the points given, and where a margin between two of them might be negative although it is
    /// positive at all, at CloseBoardPoints.
    BoardVerdict Of(const FilterDesign& board);
    /// At CloseBoardPoints at once.
    BoardVerdict Closely(const FilterDesign& board);
    /// At the points given, whatever may lie between them.
    BoardVerdict Roughly(const FilterDesign& board);

private:
    struct Judge {
        Judge(const LimitLines& lines, double F0, int count);
        BoardVerdict Of(const FilterDesign& board);
        /// Whether a margin of the ladder judged last, all positive, may be negative between
        /// points.
        bool MayFailBetween() const;

    private:
        double DelayMargin(const JudgeGrid::Row& row) const;
        double LeastMargin(const JudgeGrid::Row& row, const FilterDesign& board);
        double LeastByLevels(const JudgeGrid::Row& row, const FilterDesign& board);
        double MarginAt(const JudgeGrid::Row& row, std::size_t point) const;
        bool MayDip(const JudgeGrid::Row& row) const;
        double HzOf(const JudgeGrid::Row& row, double margin) const;

        JudgeGrid grid;
        SweepTables tables;
        std::vector<double> re, im, reflection;
        std::vector<double> rising;  ///< by frequency: grows with the margin (see LeastMargin)
        std::vector<double> leasts;  ///< by row
    };

    Judge coarse, fine;
};

}  // namespace ladderwise
