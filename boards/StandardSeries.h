// The values that each part of a ladder can be bought in: single preferred numbers, and for
// capacitors the sums of two in parallel. No Qt.
#pragma once

#include <vector>

#include "analysis/PartValues.h"
#include "analysis/Sensitivities.h"

namespace ladderwise {

/// One value that can be had.
struct SeriesValue {
    double Value = 0.0;   ///< H or F; of a pair the sum
    double Larger = 0.0;  ///< of a pair; 0: a single part
    double Smaller = 0.0;

    bool IsPair() const { return Larger > 0.0; }
};

/// A part of a ladder with the values that it can have, in ascending order.
struct PartToChoose {
    ValuePlace Place{};
    PartKind Kind = PartKind::Inductor;
    double Exact = 0.0;  ///< what the synthesis asks for, H or F
    bool Held = false;
    std::vector<SeriesValue> Choices{};
    int Nearest = 0;  ///< index of the choice that SnapValue takes
};

/// The coils and capacitors of `exact` with a value that a part can have, each with `reach` values
/// of its series to either side of the nearest; a held part has one choice.
std::vector<PartToChoose> PartsToChoose(const DesignState& exact, const std::vector<HeldPart>& held,
                                        int reach);

/// Adds to the choices of the capacitors all sums of two values of their series that lie within
/// PairReach of the exact value, the smaller one at least SmallestOfPair of the larger. Sums that
/// agree to rounding are taken once, a single value before a pair.
void AddPairs(const PartModel& model, std::vector<PartToChoose>& parts);

inline constexpr double PairReach = 0.15;       ///< of the exact value, to either side
inline constexpr double SmallestOfPair = 0.02;  ///< of the larger one

}  // namespace ladderwise
