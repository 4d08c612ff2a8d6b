// The four scattering parameters of a ladder at any reference resistances, and their change from
// one pair of reference resistances to another. For the exchange with network analysers. No Qt.
//
// Unlike the transfer alone this needs the whole chain matrix. It is carried without any division,
// every impedance as a ratio of two numbers, so that an exact resonance is a point like any other.
#pragma once

#include <span>
#include <vector>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {

/// Scattering parameters of a two-port: b1 = S11 a1 + S12 a2, b2 = S21 a1 + S22 a2.
struct SParameters {
    Complex S11, S21, S12, S22;
};

/// Two reference resistances, ohm, of the ports at the source and at the load.
struct PortResistances {
    double Source = 50.0;
    double Load = 50.0;

    bool operator==(const PortResistances&) const = default;
};

/// The S-parameters of the ladder of `design` at each of `freqs` (Hz, above 0), port 1 at the
/// source, between `ports`. With the design's own terminations S21 is the transfer H and S11 the
/// input reflection. S12 equals S21, since every part is reciprocal. NaN for a slot that holds no
/// element or a value that is NaN or infinite.
std::vector<SParameters> AnalyseSParameters(const FilterDesign& design,
                                            std::span<const double> freqs, PortResistances ports);

/// The same two-port seen between other resistances (Kurokawa, "Power waves and the scattering
/// matrix", IEEE Trans. MTT-13 (1965), eq. 10 ff., of real references):
/// S' = A^-1 (S - G) (1 - G S)^-1 A with the diagonals G = (R' - R) / (R' + R) and
/// A = 2 sqrt(R R') / (R + R'). NaN where 1 - G S is singular.
SParameters Renormalised(const SParameters& s, PortResistances from, PortResistances to);

}  // namespace ladderwise
