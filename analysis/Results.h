// The figures that an engineer asks of a finished design: loss, edges, return loss, attenuation off
// the pass band. All come from the analysis at the very frequencies, not from sweep points. No Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The edges of a response lie at half power, 10 log10(2) dB below its peak: there a prototype has
/// its corner, so that the edge of an ideal Butterworth low-pass is F0.
inline constexpr double HalfPowerDb = 3.0102999566398120;

/// An attenuation at a frequency that people ask for.
struct AttenuationAt {
    std::string Where;       ///< "2 F0", "F0 / 2", "F0 + BW", "F0 - 2 BW", ...
    double Frequency = 0;    ///< Hz
    double Attenuation = 0;  ///< -20 log10 |H|, dB
};

/// The two crossings of a level about F0, Hz; a low-pass has only the upper, a high-pass only the
/// lower. Empty where the response does not cross the level.
struct ResponseEdges {
    std::optional<double> Lower;
    std::optional<double> Upper;

    /// Upper less lower; of a low-pass the upper edge itself. Empty for a high-pass.
    std::optional<double> Width(PassType pass) const;
};

struct ResponseResults {
    bool Valid = false;                 ///< false for an empty ladder or one without a response
    double LossAtF0 = 0.0;              ///< dB
    double PeakFrequency = 0.0;         ///< Hz, of the least loss in the pass band
    double PeakLoss = 0.0;              ///< dB
    ResponseEdges Edges;                ///< at half power below the peak
    double WorstReturnLoss = 0.0;       ///< dB, the smallest within the return-loss band
    double WorstReturnLossAt = 0.0;     ///< Hz
    ResponseEdges ReturnLossBand;       ///< of a notch the band that is left out
    std::optional<double> ShapeFactor;  ///< width 60 dB below the peak over that at 6 dB
    std::vector<AttenuationAt> Attenuations;  ///< those below 0 Hz are left out
};

/// How far the return-loss band reaches, as a fraction of the way to the 3 dB corner of the
/// low-pass prototype: the ripple band of a Chebyshev or elliptic response; for the families
/// without ripple the inner half, because close to their corner they reflect by nature.
double ReturnLossBandEdge(const FilterDesign& design);

/// Analyses the ladder of `design` at and around F0. `bandEdge` is ReturnLossBandEdge, or the
/// ripple-band edge of a prototype that knows better. Peak and edges are bracketed on a grid of
/// 1024 points laid out by F0 and BandWidth, then found on the analysis itself (edges to about
/// 1e-12 relative). An edge is the crossing nearest to the peak (of a notch: nearest to its
/// minimum). The return-loss band of a high-pass or notch ends at 3 F0, or an octave above its
/// lower end. The shape factor is given for band-passes and notches whose 60 dB points lie within
/// the sweep.
ResponseResults ComputeResults(const FilterDesign& design, double bandEdge);

}  // namespace ladderwise
