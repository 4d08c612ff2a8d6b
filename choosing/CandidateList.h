// Which filters may do at all: families, orders, forms, ripples and attenuations for a need. No Qt.
#pragma once

#include <vector>

#include "choosing/Candidate.h"
#include "design/LimitLine.h"

namespace ladderwise {

/// Smallest and largest ripple (dB) and attenuation that the boxes take.
inline constexpr double FinestRippleDb = 0.001;
inline constexpr double CoarsestRippleDb = 1.0;
inline constexpr double LeastNeedDb = 5.0;
inline constexpr double MostNeedDb = 100.0;

/// A ripple or an attenuation (dB) as it is typed into its box: five digits.
double RoundedTyped(double decibels);

/// A candidate with its place in the raster of ripples and attenuations of its group, which stays
/// when a limit changes.
struct ListedCandidate {
    Candidate What{};
    int RippleIndex = 0;
    int AttenIndex = 0;
};

/// The largest ripple that the pass limits allow, dB; CoarsestRippleDb without any. With
/// `widestOnly` by those limits alone that reach over most of the pass band: a valley of the ripple
/// may lie beside a narrower one.
double LargestRippleFor(const LimitLines& limits, PassType pass, bool widestOnly);

/// The largest attenuation at least that is asked for, dB; 40 dB without any.
double LargestNeedOf(const LimitLines& limits);

/// All families of orders 1 to 10 (elliptic ones of up to `mostTraps` traps and no fewer than
/// `fewestTraps`, of which only those if it is above 1), both forms, six ripples from the largest
/// that the limits allow (above it those that the widest alone allow), and six attenuations from 12
/// dB below the largest asked for to 10 dB above. Of a band-pass, whatever its structure, the
/// canonical one with its traps in form 1, and where the limits of the pass band are no more than a
/// quarter apart also direct-coupled and Norton ones.
std::vector<ListedCandidate> ListCandidates(const FilterDesign& base, const LimitLines& limits,
                                            int fewestTraps, int mostTraps);

}  // namespace ladderwise
