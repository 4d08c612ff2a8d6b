// From the complex transfer to what a plot draws: magnitude, phase, group delay and the full scale
// of the delay axis; and the extremes of many runs over one grid. No Qt.
//
// Arrays are split into real and imaginary parts, indexed from 0, of equal length; outputs are the
// caller's. NaN in the transfer comes out as NaN, never as a blank.
#pragma once

#include <array>
#include <span>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {

/// atan2(im, re) in degrees, -180 .. +180; 0 when both parts are exactly zero.
double PhaseDeg(Complex z);

/// atan2(im, re) in radians; 0 when both parts are exactly zero.
double PhaseRad(Complex z);

/// sqrt(re^2 + im^2)
double Magnitude(Complex z);

/// How MagnitudeArray maps |H|.
enum class MagnitudeMode : int {
    Decibels = 0,
    Linear = 1,  ///< 9 |H| - 9: |H| = 1 lands on 0, |H| = 0 on -9
};

/// out[i] = ComplexToDb(H[i]) or the linear mapping.
void MagnitudeArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                    MagnitudeMode mode);

/// out[i] = PhaseDeg(H[i]), or BlankMarker where the level is below `threshold` (dB).
void PhaseArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                double threshold);

/// Group delay in seconds, -(phase step) / (2 pi (f[i] - f[i-1])), f in Hz. BlankMarker where the
/// level is below `threshold` (dB), where the phase rises by less than pi/4 and where it falls by
/// more than pi. Larger rises count as a wrap and are reduced to zero or below in steps of pi/4.
/// out[0] = out[1]; a single point is blank.
void GroupDelayArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                     std::span<const double> freqs, double threshold);

/// The delay (s) that the full height of a plot stands for, rounded to 2 digits: 5 times the
/// smallest delay within 3 dB of the peak level; but if the largest delay within 20 dB itself
/// exceeds that, 1.25 times the largest. Blank points take part with the value of their marker.
double GroupDelayFullScale(std::span<const double> re, std::span<const double> im,
                           std::span<const double> groupDelay);

/// Which quantities a plot needs; group delay brings its full scale.
struct NeededQuantities {
    bool Magnitude = true;
    bool Phase = true;
    bool GroupDelay = true;
};

/// The derived quantities of one sweep. Entries that were not needed keep their old values.
struct DisplayQuantities {
    std::array<double, NumSweepPoints> MagnitudeDb{};
    std::array<double, NumSweepPoints> PhaseDeg{};    ///< degrees or BlankMarker
    std::array<double, NumSweepPoints> GroupDelay{};  ///< s or BlankMarker
    double GDFullScale = 0.0;                         ///< s, as computed
    std::array<double, NumSweepPoints> Pulse{};       ///< 0 .. 1, see PulseResponse.h
    std::array<double, NumSweepPoints> Angle{};       ///< rad; work array
};

/// Fills the needed quantities as the functions above do, from one level and one angle per point.
/// `freqs` holds NumSweepPoints frequencies (Hz); fewer shorten the result. MagnitudeDb is filled
/// with any of them, because the threshold (dB) needs it.
void DeriveDisplayQuantities(const SweepResponse& response, std::span<const double> freqs,
                             double threshold, NeededQuantities needed, DisplayQuantities& out,
                             KernelChoice choice = KernelChoice::Automatic);

/// Makes low and high ready for AccumulateExtremes.
void ResetExtremes(std::span<double> lowPower, std::span<double> highPower);

/// Widens the range lowPower .. highPower of each point to |H|^2; NaN points change nothing.
void AccumulateExtremes(std::span<const double> re, std::span<const double> im,
                        std::span<double> lowPower, std::span<double> highPower,
                        KernelChoice choice = KernelChoice::Automatic);

/// The level in dB of accumulated powers: ZeroPowerDb for zero power, NaN for a point that no run
/// has reached. `power` and `db` may be the same.
void ExtremesToDb(std::span<const double> power, std::span<double> db);

}  // namespace ladderwise
