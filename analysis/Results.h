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

/// The two crossings of a level about the pass band (of a notch: the stop band), Hz; a low-pass has
/// only the upper, a high-pass only the lower. Empty where the response does not cross the level.
struct ResponseEdges {
    std::optional<double> Lower;
    std::optional<double> Upper;

    /// Upper less lower; of a low-pass the upper edge itself. Empty for a high-pass.
    std::optional<double> Width(PassType pass) const;
};

/// Where a response has its least loss. A low-pass or notch that loses least towards 0 Hz has its
/// peak at 0, the ideal high-pass and notch that lose least towards ever higher frequencies at
/// infinity.
struct ResponsePeak {
    double Frequency = 0.0;  ///< Hz
    double Loss = 0.0;       ///< dB
};

/// Why the skirts have no width at 60 dB.
struct SpoiledSkirt {
    double Frequency = 0.0;    ///< Hz, where they rise over it once more, or where the look ends
    double Attenuation = 0.0;  ///< below the peak there, dB
};

/// Two frequencies (Hz) between which an attenuation holds. An end that the look did not come to
/// is empty.
struct HeldBand {
    std::optional<double> From;
    std::optional<double> To;
};

struct ResponseResults {
    bool Valid = false;     ///< false for an empty ladder or one without a response
    double LossAtF0 = 0.0;  ///< dB
    /// Of the pass band about F0; of a notch the least loss of all. Empty where the response has no
    /// interior maximum there or one more than 200 dB down, where rounding decides, and then
    /// nothing has that is measured from it.
    std::optional<ResponsePeak> Peak;
    ResponseEdges Edges;  ///< at half power below the peak
    /// How far the band lies from where it was asked for, as a fraction of F0, negative below it:
    /// of the peak where F0 itself lies beyond the edges, else of the middle of the edges if that
    /// is off by more than a quarter of BandWidth. Band-passes alone; empty where the band is
    /// right.
    std::optional<double> BandOffset;
    /// Of a band-pass or low-pass: the highest pass band beside that about F0, if it loses no more
    /// than 6 dB more.
    std::optional<ResponsePeak> OtherBand;
    double WorstReturnLoss = 0.0;         ///< dB, the smallest within the return-loss band
    double WorstReturnLossAt = 0.0;       ///< Hz
    ResponseEdges ReturnLossBand;         ///< of a notch the band that is left out
    std::optional<double> ShapeFactor;    ///< of a band-pass: width at 60 dB over that at 6 dB
    std::optional<SpoiledSkirt> NoShape;  ///< of a band-pass: why there is no ShapeFactor
    double StopAttenuation = 0.0;         ///< dB, that of an elliptic design; 0: none asked for
    /// Where this ladder holds it: one band of a low-pass, high-pass or notch, the lower and the
    /// upper one of a band-pass, or one that holds the peak too. Empty where it nowhere does.
    std::vector<HeldBand> StopBands;
    std::vector<AttenuationAt> Attenuations;  ///< those below 0 Hz are left out
};

/// Part of the frequencies, Hz.
struct BandRange {
    double Low = 0.0;
    double High = 0.0;

    bool Holds(double f) const { return f >= Low && f <= High; }
};

/// Where a response lies that belongs to F0: parasitics make a band sink, by no more than an
/// octave, and what lies more than half as much again above F0 is a band of its own. Bands that
/// were asked for wider are taken whole. A low-pass may have its peak up to 2 F0, a high-pass from
/// F0 / 2.
BandRange BandAboutF0(const FilterDesign& design);

/// How far the return-loss band reaches, as a fraction of the way to the 3 dB corner of the
/// low-pass prototype: the ripple band of a Chebyshev or elliptic response; for the families
/// without ripple the inner half, because close to their corner they reflect by nature.
double ReturnLossBandEdge(const FilterDesign& design);

/// Analyses the ladder of `design` at and around F0. `bandEdge` is ReturnLossBandEdge, or the
/// ripple-band edge of a prototype that knows better. What is looked for is bracketed by
/// TakeSamples, then found on the analysis itself (edges to about 1e-12 relative, peaks to 1e-11 of
/// their width).
/// - The peak is the highest interior maximum in BandAboutF0, of a high-pass or notch as far up as
///   the pass band above F0 goes (until it has fallen by 6 dB or has risen by 3 dB once more); of a
///   band-pass that has none there, the maximum nearest to F0 between F0 / 10 and 10 F0.
/// - An edge is the crossing next to the peak; of a notch, next to its deepest place in
/// BandAboutF0.
/// - The return-loss band is that of the design, wherever the ladder has its own; of a high-pass or
///   notch it ends at 3 F0, or an octave above its lower end.
/// - The skirts count at 60 dB where they stay below it as far as F0 / 10 and 10 F0: the flank of a
///   trap is no width.
/// - A stop band is the widest one in which the attenuation asked for holds, as far as F0 / 10 and
///   10 F0, of a notch between its edges.
ResponseResults ComputeResults(const FilterDesign& design, double bandEdge);

}  // namespace ladderwise
