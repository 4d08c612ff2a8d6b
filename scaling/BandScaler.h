// Canonical band-pass and notch scaling: every prototype element becomes a resonator, every
// resonator a section of two, in one of the four trap forms. Also, for every pass type, where a
// frequency of the prototype goes. Sources: Matthaei, Young, Jones,
// "Microwave Filters, Impedance-Matching Networks, and Coupling Structures", Artech House 1980,
// chapters 8 and 12 (transforms); Foster, "A reactance theorem", Bell Syst. Tech. J. 3 (1924), and
// Guillemin, "Synthesis of Passive Networks", Wiley 1957 (the trap forms: equivalent networks of
// one reactance).
#pragma once

#include <array>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Where w > 0 (rad/s) of the normalised low pass comes to lie in the scaled filter: one frequency
/// for a low pass or high pass, two for a canonical band pass or notch, below and above the centre.
/// Hz, ascending. None for the pass types that are not scaled from the prototype's ladder.
std::vector<double> ScaledFrequencies(const FilterDesign& design, double w);

/// The forms of a band pass's or notch's trap in a series or shunt arm: element [t - 1] is that of
/// trap type t, 1 .. 4.
const std::array<ElementType, 4>& TrapForms(ElementArm arm);

/// Slots 1 .. NumElements to a band pass of source RSource (ohm) with the edges F0 -+ BandWidth / 2
/// (Hz), so that every resonance lies at the edges' geometric mean, slightly below F0. SeriesInd
/// becomes SeriesSerLC, ShuntCap ShuntParLC; SeriesLC and ShuntLC become the section of TrapType
/// (1 .. 4; any other number counts as 1). Other types stay as they are.
void ScaleBandPass(FilterDesign& design);

/// As ScaleBandPass for a notch, whose resonances lie at F0 itself: SeriesInd becomes SeriesLC and
/// ShuntCap becomes ShuntLC. Sections of two resonators and trap forms are those of the band pass.
void ScaleNotch(FilterDesign& design);

}  // namespace ladderwise
