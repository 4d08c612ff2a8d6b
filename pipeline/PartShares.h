// Which part matters: the share that each value of a ladder has in the spread of its response. No
// Qt.
#pragma once

#include <string>
#include <vector>

#include "analysis/Results.h"
#include "design/FilterDesign.h"
#include "pipeline/LimitMargins.h"

namespace ladderwise {

/// One value at one frequency.
struct PartShare {
    std::string Designator;
    int Slot = 0;        ///< from 1
    int Row = 0;         ///< 0 .. 3 for V1 .. V4
    double Share = 0.0;  ///< (S tol)^2 over the sum; all of one frequency add up to 1
    /// What 1 % more does to the attenuation (of a tightest limit of return loss, to that), dB; of
    /// a limited delay variation to ten times its share of the limit. By samples: the standard
    /// deviation that the part makes alone, over that of a part of 1 %.
    double DbPerPercent = 0.0;
    double At = 0.0;  ///< Hz
    bool BySamples = false;
    double Tolerance = 0.0;  ///< SpreadAt
};

/// The shares of all values in use at the tightest limit or, without limits, at the -3 dB edges and
/// at F0, of a notch at its edges only; frequency by frequency, values from the source to the load.
/// Tolerances are those of the parts (SpreadAt); lines have none and a share of 0. Where the linear
/// estimate of the standard deviation is less than half of that of 1 000 boards drawn by
/// BoardDrawer, as where the attenuation is at its least, the shares are those of the parts varied
/// one by one. All shares are 0 where nothing moves the response.
std::vector<PartShare> SharesOf(const FilterDesign& design, const ResponseResults& results,
                                const LimitReport& limits);

/// One part of a table of shares, in words.
struct ShareRow {
    PartShare Share;
    std::string Value;       ///< "79.6 nH"
    std::string Tolerance;   ///< "10 %"
    std::string Percent;     ///< of the spread: "42.3 %"
    std::string PerPercent;  ///< what 1 % more does: "-0.031 dB"
    std::string WithOne;     ///< the spread with a part of 1 % there: "±0.21 dB"
};

/// The shares at one frequency, the largest first.
struct ShareTable {
    std::string Place;   ///< "13.2 MHz, -3 dB edge"
    std::string Spread;  ///< "95 % of the boards lie within ±0.52 dB"
    std::vector<ShareRow> Rows;
};

/// The shares of a design by frequency, as SharesOf gave them. Of a limited delay variation there
/// are shares alone. The spread is that of two standard deviations.
std::vector<ShareTable> DescribeShares(const FilterDesign& design, const ResponseResults& results,
                                       const LimitReport& limits,
                                       const std::vector<PartShare>& shares);

}  // namespace ladderwise
