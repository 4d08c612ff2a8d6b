// The values of single coils and paired capacitors that come closest to first order: a nearest
// point of a lattice. No Qt.
#pragma once

#include <vector>

#include "boards/Closeness.h"
#include "boards/ValueSearch.h"

namespace ladderwise {

/// Descends, with the moves of `search` over `parts`, from the choices that bring the residuals of
///   E = 1 / H  and  K = Gamma / H
/// nearest to those of the exact values to first order in the change of ln(value). With the QR
/// decomposition of their derivatives the sum of squares builds up part by part: the LatticeWidth
/// best beginnings are each continued by the LatticeChildren next values about what the residual
/// asks for. The coils are decided first, because the capacitors are fine enough to make up for
/// them. After L. Babai, Combinatorica 6 (1986) 1-13, and E. Agrell et al., "Closest point search
/// in lattices", IEEE Trans. Inf. Theory 48 (2002) 2201-2214. The best choices found go to `best`.
Slices DescendFromLattice(const FilterDesign& exact, Closeness& judge,
                          const std::vector<PartToChoose>& parts, ValueSearch& search,
                          PartChoices& best);

inline constexpr int LatticeWidth = 1000;
inline constexpr int LatticeChildren = 6;
inline constexpr int LatticeDescents = 5;

}  // namespace ladderwise
