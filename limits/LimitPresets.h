// Ready-made limits for usual tasks. No Qt.
#pragma once

#include "design/LimitLine.h"

namespace ladderwise {

/// A band of frequencies, Hz, from the lower to the upper edge.
struct LimitBand {
    double From = 0.0;
    double To = 0.0;
};

/// What a transmitter in `band` asks of the filter behind it: at most `loss` dB in the band, at
/// least `attenuation` dB over its second and third harmonics.
LimitLines HarmonicsOfTransmitter(LimitBand band, double loss, double attenuation);

/// What a superheterodyne receiver for `signal` asks of the filter before its mixer: at most `loss`
/// dB in the band, at least `attenuation` dB over its image, two intermediate frequencies above it
/// (below it with the oscillator low; left out where that reaches 0 Hz), and at the intermediate
/// frequency itself. Hz, dB.
LimitLines ImageAndIntermediate(LimitBand signal, double intermediate, bool oscillatorHigh,
                                double loss, double attenuation);

/// What a design promises: at most `loss` dB over its pass bands, at least `attenuation` dB (0:
/// none is promised) at twice and three times the operating frequency, Hz.
LimitLines PromiseOfDesign(const std::vector<LimitBand>& pass, double loss, double operating,
                           double attenuation);

}  // namespace ladderwise
