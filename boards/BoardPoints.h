// The frequencies at which two ladders of one design are compared. No Qt.
#pragma once

#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// The pass band of a design as its ideal ladder has it.
struct DesignBand {
    PassType Pass = PassType::LowPass;
    double Lower = 0.0;  ///< 3 dB below the least loss, Hz; of a notch the edges of its stop band
    double Upper = 0.0;  ///< of a low-pass the only one, of a high-pass unused
    double SkirtLow = 0.0;   ///< 40 dB below it, on the prototype's scale: at least 1
    double SkirtHigh = 0.0;  ///< above the band
    double LeastLoss = 0.0;  ///< dB

    bool IsValid() const { return SkirtHigh > 0.0; }
};

/// The pass band of `ideal`, whose Elements and part model are those of the ideal ladder; not valid
/// where it has none.
DesignBand DesignBandOf(const FilterDesign& ideal);

/// `count` frequencies in the pass band, ascending: at equal angles t of p = cos t, p the frequency
/// of the low-pass prototype, -1 to 1 between the 3 dB edges; of a notch out to five bandwidths.
std::vector<double> PassBandPoints(const DesignBand& band, int count);

/// `count` frequencies of the skirts from 3 to 40 dB below the least loss, in geometric steps of p.
std::vector<double> SkirtPoints(const DesignBand& band, int count);

}  // namespace ladderwise
