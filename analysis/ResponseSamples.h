// The response of a ladder sampled so densely that every peak, dip and crossing lies between two
// neighbouring samples, and the searches that then find them on the analysis itself. No Qt.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The end of the samples of a low-pass or notch towards 0 Hz, as a fraction of F0: there a
/// response is as good as at 0 Hz. Ideal high-passes and notches reach F0 over this.
inline constexpr double LowestX = 1e-6;

/// Figures that follow a response outwards, and the look for other pass bands, end at F0 over this
/// and F0 times this.
inline constexpr double ScanReach = 10.0;

/// f on the scale of the prototype, x = f / F0 for low-pass and high-pass, and for band-pass and
/// notch x = (f / Fc - Fc / f) Fc / BandWidth, negative below Fc: F0 of a notch, of a band-pass the
/// geometric mean of its edges F0 -+ BandWidth / 2. Corners lie at |x| = 1. Hz.
double FrequencyOf(const FilterDesign& design, double x);

/// Level and input reflection at f (Hz), dB. Exactly on a resonance of ideal parts, where the
/// analysis divides by zero, they are taken beside it.
double LevelAt(const FilterDesign& design, double f);
double ReflectionAt(const FilterDesign& design, double f);

/// Samples in ascending order of frequency.
struct ResponseSamples {
    std::vector<double> F;           ///< Hz
    std::vector<double> Level;       ///< 20 log10 |H|, dB
    std::vector<double> Reflection;  ///< 20 log10 |Gamma|, dB
    std::vector<double> Angle;       ///< of H, rad

    int Count() const { return static_cast<int>(F.size()); }
    /// Index of the first sample at or above f; Count() if there is none.
    int At(double f) const;
};

/// Samples about F0 on the scale of the prototype, from F0 / ScanReach to ScanReach F0, and about
/// every resonance of an arm; then more wherever the phase of H turns by more than a resonance may
/// between two samples; then some at the tops of all maxima of level and reflection, so that only
/// the highest of them need be looked at more closely. `places` (Hz) are sampled too.
ResponseSamples TakeSamples(const FilterDesign& design, const std::vector<double>& places = {});

/// A local maximum of a sampled quantity: the sample next to it, and what it comes to at most. A
/// lobe rises over its sample by about as much as the parabola through it and its neighbours, and
/// by no more than four times as much.
struct Lobe {
    int Index = 0;
    double Reach = 0.0;  ///< dB
    double Top = 0.0;    ///< Hz, of the parabola
};

/// The lobe of `values`, sampled at `freqs`, at sample i; none if i is no interior maximum.
std::optional<Lobe> LobeAt(const std::vector<double>& freqs, const std::vector<double>& values,
                           int i);

/// The lobes at the samples `first` to `last`.
std::vector<Lobe> LobesBetween(const std::vector<double>& freqs, const std::vector<double>& values,
                               int first, int last);

/// Keeps the lobes that may be the highest.
void KeepHighest(std::vector<Lobe>& lobes, const std::vector<double>& values);

/// Where `value` is largest between the frequencies a and b, to about 1e-4 of their distance.
double LargestWithin(double a, double b, const std::function<double(double)>& value);

/// The place within `reach` (Hz) of `f` at which the slope of the level vanishes, to about 1e-11 of
/// the peak's width; `f` itself where the maximum is flat. `width` (Hz) is that of the peak.
double PolishedPeak(const FilterDesign& design, double f, double reach, double width);

/// The frequency between a and b at which the level crosses `target` (dB), to about 1e-14; none if
/// it has no change of sign there.
std::optional<double> CrossingWithin(const FilterDesign& design, double a, double b, double target);

/// The crossing of `target` next to the frequency `from` in steps of `direction` (+1, -1);
/// `falling`: downwards. Traps whose flanks both lie between two samples are found by looking into
/// each deep dip.
std::optional<double> FirstCrossing(const FilterDesign& design, const ResponseSamples& samples,
                                    double from, int direction, double target, bool falling);

}  // namespace ladderwise
