// Values refitted so that a ladder of lossy parts has the shape of the ideal one. No Qt.
#pragma once

#include "design/FilterDesign.h"

namespace ladderwise {

/// A refitted ladder.
struct AbsorbedLadder {
    ElementList Elements{};  ///< as they were where the refit brought nothing
    double LossDb = 0.0;     ///< constant loss beside the ideal ladder, c
    double MissDb = 0.0;     ///< largest |A - A0 - c| of the pass band, NaN if it has none
    double MissedDb = 0.0;   ///< the same before the refit
    double NeededQ = 0.0;    ///< with which it comes within ShapeKeptDb; 0: it has, or none does

    static constexpr double ShapeKeptDb = 0.5;
};

/// Fits coils and capacitors of `design`, within LargestRefit of their values in Elements, so that
/// under its part model the attenuation becomes that of the ideal ladder and a constant:
///   sum (w (A - A0 - c))^2 is least, w as Closeness has it,
/// c the lower quartile of A - A0 over the pass band. Levenberg-Marquardt with the slopes of the
/// adjoint. Where the Q is too low for the shape, NeededQ tells the lowest that is not, in steps of
/// a quarter.
AbsorbedLadder AbsorbParasitics(const FilterDesign& design, const ElementList& ideal);

inline constexpr double LargestRefit = 1.3;  ///< factor, up and down
inline constexpr int RefitSteps = 12;

}  // namespace ladderwise
