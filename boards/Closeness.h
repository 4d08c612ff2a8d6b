// How close a ladder of other values comes to the response of the exact ones. No Qt.
#pragma once

#include <vector>

#include "analysis/SweepTables.h"
#include "boards/BoardPoints.h"
#include "design/FilterDesign.h"

namespace ladderwise {

/// A ladder of `design` analysed again and again over one grid.
class LadderGrid {
public:
    LadderGrid(std::vector<double> freqs, double F0);

    /// Attenuation in dB at every frequency, at most DeepestDb; valid until the next call.
    const std::vector<double>& AttenuationOf(const FilterDesign& design);
    const std::vector<double>& Freqs() const { return freqs; }

    /// What lies deeper counts as this: no instrument tells it, and a trap has no finite depth.
    static constexpr double DeepestDb = 120.0;

private:
    std::vector<double> freqs;
    SweepTables tables;
    std::vector<double> re, im, attenuation;
};

/// Judges ladders by the design that they are made for.
///   A, T    attenuation of a ladder and of the exact values, under the design's part model, dB
///   A0      of the ideal ladder less its least, dB
///   limit   the ripple of a Chebyshev or elliptic response, 1 dB of others
///   J       max + 0.2 rms of w |A - T|, w = 1 / (1 + max(0, A0 - limit) / 3)
class Closeness {
public:
    /// `exact` holds the exact values in Elements, `ideal` is the ladder as it was scaled.
    Closeness(const FilterDesign& exact, const ElementList& ideal);

    /// False where the ideal ladder has no pass band to be compared.
    bool IsValid() const { return band.IsValid(); }

    /// J of a ladder of the same types, dB. Infinite for a response that is no number.
    double Cost(const FilterDesign& ladder);

    /// The largest |A - T| where A0 <= limit (of a notch out to five bandwidths), dB.
    double WorstDeviation(const FilterDesign& ladder);

    const DesignBand& Band() const { return band; }
    double LimitDb() const { return limit; }
    /// T at each of Grid().Freqs(), dB.
    const std::vector<double>& Target() const { return target; }
    /// w at each of Grid().Freqs().
    const std::vector<double>& Weights() const { return weights; }
    LadderGrid& Grid() { return grid; }

private:
    Closeness(const FilterDesign& exact, const FilterDesign& ideal);

    DesignBand band;
    double limit;
    LadderGrid grid, pass;
    std::vector<double> weights, target, passTarget;
};

}  // namespace ladderwise
