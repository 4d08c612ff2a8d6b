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
    BoardJudge(const FilterDesign& design, const LimitLines& limits);

    /// At BoardPoints, and where a margin between two of them might be negative although it is
    /// positive at all, at CloseBoardPoints.
    BoardVerdict Of(const FilterDesign& board);
    /// At CloseBoardPoints at once.
    BoardVerdict Closely(const FilterDesign& board);

private:
    struct Judge {
        Judge(const LimitLines& lines, double F0, int count);
        BoardVerdict Of(const FilterDesign& board, bool* narrow);

        JudgeGrid Grid;
        SweepTables Tables;
        bool Reflects = false;
        std::vector<double> Re, Im, Attenuation, Reflection, Margins;
    };

    Judge coarse, fine;
};

}  // namespace ladderwise
