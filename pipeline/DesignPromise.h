// What a design promises, as limits that it is held to: where its pass band is, what it may lose
// there, and where its user works. No Qt.
#pragma once

#include <vector>

#include "limits/LimitPresets.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

struct DesignPromise {
    std::vector<LimitBand> Pass{};  ///< of a notch two; empty where the response has none
    double Loss = 1.0;              ///< dB
    double Operating = 0.0;         ///< Hz
    /// Whether its harmonics are kept off: of a low-pass or band-pass.
    bool HoldsHarmonics = false;
};

/// The ripple of a Chebyshev or elliptic response in its ripple band, of others 1 dB where the
/// ladder has fallen by no more than that below its peak; the operating frequency is F0. High-pass
/// and notch have no upper end: their bands end where their return loss is taken, an octave above
/// the lower end or at 3 F0.
DesignPromise PromiseOf(const Calculation& calculation);

}  // namespace ladderwise
