// How attenuation and return loss follow each value of a ladder: all derivatives at a frequency
// from one pass towards the source and one back, however many parts there are. No Qt.
//
// After S. W. Director and R. A. Rohrer, "The generalized adjoint network and network
// sensitivities", IEEE Trans. Circuit Theory CT-16 (1969) 318-323; the adjoint of a ladder is the
// row vector that the source carries towards the load.
#pragma once

#include <cstddef>
#include <span>
#include <vector>

#include "design/FilterDesign.h"
#include "design/ValuePlace.h"

namespace ladderwise {

/// The values in use of slots 1 .. NumElements from the source to the load, those of lines too;
/// none for what is "Not Used".
std::vector<ValuePlace> ValuesInUse(const DesignState& design);

/// Slopes at `Points` frequencies, in dB for a change of ln(value) by 1: a hundredth of it is what
/// 1 % more does. Entry place * Points + point.
struct LadderSlopes {
    std::vector<ValuePlace> Places{};  ///< ValuesInUse
    std::size_t Points = 0;
    std::vector<double> Attenuation{};  ///< of -20 log10 |H|
    std::vector<double> ReturnLoss{};   ///< of -20 log10 |Gamma|; empty if it was not asked for

    std::span<const double> AttenuationOf(std::size_t place) const {
        return {Attenuation.data() + place * Points, Points};
    }
    std::span<const double> ReturnLossOf(std::size_t place) const {
        return {ReturnLoss.data() + place * Points, Points};
    }
};

/// The slopes of the ladder of `design` at `freqs` (Hz) under its part model: when an inductance
/// grows, so does its resistance, as the analysis has it. Not finite exactly at a resonance of
/// ideal parts, where the analysis divides by zero, and for the return loss at a perfect match.
/// Agrees with central differences of the analysis to what their rounding leaves (about 1e-8).
LadderSlopes SlopesOf(const DesignState& design, std::span<const double> freqs,
                      bool returnLoss = false);

}  // namespace ladderwise
