// The pass band of a direct-coupled band-pass without losses, beside the one that was asked for:
// the synthesis corrects its band by rules of thumb, and where these do not fit nothing else tells.
// No Qt.
#pragma once

#include <optional>
#include <string>

#include "design/FilterDesign.h"

namespace ladderwise {

/// A pass band in four numbers.
struct PassBand {
    double Centre = 0.0;  ///< middle of the half-power edges, Hz
    double Width = 0.0;   ///< between them, Hz
    /// From the peak down to the lowest level between two peaks or, of a Chebyshev response, within
    /// the part of the width that is its ripple band, dB.
    double RippleDb = 0.0;
    double PeakLossDb = 0.0;  ///< dB
};

/// A low-pass prototype, rad/s with the corner at 1.
struct PrototypeFigures {
    double CornerLossDb = 0.0;  ///< at 1 rad/s below the peak, dB
    double HalfPower = 1.0;     ///< where the outermost half-power point lies
    double RippleDb = 0.0;      ///< as that of a PassBand
};

/// Figures of the ladder G[1 .. NumPoles] between 1-ohm ends, which only the tabulated families and
/// those of a coefficients file need: the others are exact by their formulas.
PrototypeFigures MeasurePrototype(const FilterDesign& design);

/// What the family, F0 and BandWidth of a design ask for. The edges lie where the prototype of the
/// family is at half power, for most families at F0 -+ BandWidth / 2; a tabulated one or one of a
/// coefficients file is measured between 1-ohm ends.
PassBand AskedBand(const FilterDesign& design);

/// The pass band about F0 that the ladder `elements` makes between the terminations of `design`
/// without losses. It is the one with the highest peak within F0 -+ BandWidth or, where there is
/// none, the next one uphill from there, and reaches as far as the level stays within 10 dB of the
/// peak. All peaks and dips are found on the analysis itself (parabolic steps to 1e-7 of the
/// frequency), so that the edges are the outermost half-power crossings of that band. Empty where
/// no such band ends on both sides.
std::optional<PassBand> MeasureBand(const FilterDesign& design, const ElementList& elements);

/// In what a band without losses misses the one asked for by more than 5 % of the width, in centre
/// or width, or 0.5 dB, in ripple or mismatch: "44.8 MHz wide, not 40 MHz (12 % more), ..."; empty
/// if in nothing.
std::string MissText(const PassBand& asked, const std::optional<PassBand>& made);

}  // namespace ladderwise
