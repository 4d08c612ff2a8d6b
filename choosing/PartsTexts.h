// What the choice of parts and the boards built of them come to, for people. No Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "boards/StandardParts.h"
#include "boards/Yield.h"
#include "choosing/PartsChoice.h"
#include "choosing/YieldWatch.h"
#include "pipeline/ReferenceDesign.h"

namespace ladderwise {

/// "92.3 % (90.5 to 93.8)": the share that passes and its 95 % interval.
std::string ShareText(const YieldResult& boards);

/// "71 % at 60 MHz, 29 % at 27 MHz": where the boards failed, the limit with most of them first;
/// empty if none did.
std::string FailuresText(const YieldResult& boards, const LimitLines& limits);

/// "47 pF and 1.5 pF in parallel"
std::string PairText(const PairedPart& pair);

/// Rows for the panel of results: which standard values stand in the design, and how far they and
/// the nearest ones are off the response of the exact values. None where they are not chosen.
std::vector<ComparedResult> DescribeParts(const FilterDesign& design, const PartsChoice& choice);

/// Rows likewise: how many boards pass, of the nearest values too where others are chosen, where
/// the others fail, and the worst one. None without limits.
std::vector<ComparedResult> DescribeBoards(const YieldWatch& yields, const LimitLines& limits);

/// From here on a response is no longer the one that was asked for, by the largest deviation of its
/// pass band from that of the exact values, dB: the ripple of a Chebyshev or elliptic one, which
/// then is twice as much, but no less than LeastShapeDb, or no standard values would keep a small
/// one; half of the 1 dB that bounds the pass band of the others.
double ShapeBoundDb(const FilterDesign& design);
inline constexpr double LeastShapeDb = 0.1;

/// "no longer a Butterworth response", if the chosen values make it none.
std::optional<PartsRemark> ShapeRemark(const FilterDesign& design, const StandardParts& parts);

}  // namespace ladderwise
