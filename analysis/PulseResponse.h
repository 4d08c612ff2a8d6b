// The time response of the ladder to a square pulse, by way of the frequency domain. No Qt.
//
//   Fs = 20 F0     span of the pulse grid, Hz; f[k] = k Fs / 2048, k = 0 .. 2048
//   tau            length of the pulse, s: W / (80 F0), 12.8 / F0 for W = 1024
//   dt             time between two samples, s: (W / 2048) / Fs, 1 / (40 F0) for W = 1024
//
// The transfer H(f) is multiplied by the transform of a unit pulse, (1 - exp(-s tau)) / s, made
// conjugate-symmetric and transformed to 4096 points in time, of which the first 1024 are kept: the
// pulse and as much again after it. What lies above Fs is missing, so that a filter that lets
// much of it pass shows the ringing of an ideal cut-off at the edges of the pulse.
#pragma once

#include <span>
#include <vector>

#include "analysis/FFTFunctions.h"
#include "analysis/SweepTables.h"
#include "design/FilterDesign.h"
#include "design/Messages.h"

namespace ladderwise {

/// The width W of the pulse that the plot asks for: half of the time that it shows.
inline constexpr int PulseWidth = NumSweepPoints;

inline constexpr int NumPulseFreqs = 2049;   ///< frequencies of the pulse grid
inline constexpr int NumPulsePoints = 4096;  ///< points of its two-sided spectrum

/// What stays the same from one pulse response to the next, allocated once, and work space. The
/// tables hold for one F0 and width, so that all runs of a worst case share them.
struct PulseWork {
    SweepTables Tables{};
    std::vector<double> PulseRe{}, PulseIm{};        ///< (1 - exp(-s tau)) / s, s
    std::vector<double> TransferRe{}, TransferIm{};  ///< H over the pulse grid
    std::vector<double> Spectrum{};  ///< NumPulsePoints complex numbers, interleaved
    FFTPlan Plan{};
    double F0 = 0.0;  ///< Hz; 0: nothing is tabulated
    int Width = 0;
};

/// Fills `samples` with the pulse response of the ladder of `design` as the plot shows it, 0 .. 1
/// from its lower to its upper edge: 0.6 v + 0.2 where zero frequency passes (low-pass and notch),
/// 0.6 v + 0.5 elsewhere, with v = 1 for the pulse through a lossless match; and sets
/// PulseTimeStep. The sweep in design.Response is not touched. Want of memory is reported and
/// leaves the samples as they were; so does, without a report because the sweep has made one, a
/// slot that holds no element. Allocates only when `work` is used the first time.
void CalcPulseResponse(FilterDesign& design, int width, PulseWork& work,
                       std::span<double, NumSweepPoints> samples, const MessageCallback& report);

/// v of a height on the plot: 1 for the pulse through a lossless match, where the response of a
/// low-pass settles, 0 before it.
double PulseLevel(PassType pass, double height);

}  // namespace ladderwise
