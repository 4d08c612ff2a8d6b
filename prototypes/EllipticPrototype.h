// The computed elliptic (Cauer) low-pass prototypes A to E: equal ripple in the pass band, equal
// minima in the stop band, ladders whose traps are parallel resonators in series arms (B, C, D) or
// series resonators in shunt arms (A, E).
#pragma once

#include "design/FilterDesign.h"

namespace ladderwise {

/// Bounds of what an elliptic prototype is asked for; anything outside, NaN included, is brought to
/// the nearest.
inline constexpr double SmallestEllipticAttenDb = 5.0;
inline constexpr double LargestEllipticAttenDb = 100.0;
/// A raised attenuation is the requested one and a multiple of this, dB.
inline constexpr double EllipticAttenStepDb = 0.01;

/// The arm that an elliptic family has its traps in: shunt for A and E.
ElementArm TrapArm(ResponseType family);

/// What is asked of an elliptic prototype.
struct EllipticRequest {
    ResponseType Family = ResponseType::EllipticC;  ///< EllipticA .. EllipticE
    int Traps = 3;                                  ///< 1 .. MaxPoles
    double RippleDb = 0.2;  ///< SmallestRippleDb .. LargestRippleDb of Mathfunctions.h
    double AttenDb = 40.0;  ///< SmallestEllipticAttenDb .. LargestEllipticAttenDb
};

/// The ladder in slots 1 .. NumElements from the source (henries and farads for a 1-ohm source) and
/// what it came to. Traps are SeriesLC or ShuntLC with L in V1 and C in V2.
struct EllipticLadder {
    ElementList Elements{};
    int NumElements = 0;
    EllipticResult Result{};
};

/// The ladder of N = Traps traps, a 1-ohm source and 3 dB (from the matched peak) at 1 rad/s:
///
///   family  order  ladder from source to load                              load, ohm
///   A       2N+2   SeriesInd, N x (ShuntLC, SeriesInd), ShuntCap           r
///   B       2N+2   ShuntCap, N x (SeriesLC, ShuntCap), SeriesInd           1/r
///   C       2N+1   ShuntCap, N x (SeriesLC, ShuntCap)                      1
///   D       2N+2   as B                                                    1
///   E       2N+3   ShuntCap, SeriesInd, N x (ShuntLC, SeriesInd), ShuntCap 1
///
/// with r = (sqrt(1 + e^2) + e)^2, e^2 = 10^(RippleDb / 10) - 1. A and B lose the ripple at zero
/// frequency (type b: one pair of transmission zeros moved to infinity); D has a peak there (type
/// c: moreover a reflection zero moved to zero); E has three zeros at infinity beside its traps.
///
/// Where the ladder of the attenuation asked for would need a negative or a vanishing part, the
/// lowest greater one of its EllipticAttenStepDb raster is used that has a good ladder, and
/// Result.AttenRaised says so. No ladder (NumElements = 0) for another family or number of traps.
///
/// Values agree with exact arithmetic to about 1e-12 (1e-9 where long double is double), the
/// response with the request to 1e-7 dB. Source: transmission zeros and reflection zeros in the
/// variable z^2 = 1 + 1/s^2 after Orchard and Temes, "Filter design using transformed variables",
/// IEEE Trans. Circuit Theory CT-15 (1968); families after Saal, "Handbook of Filter Design",
/// AEG-Telefunken 1979.
EllipticLadder BuildEllipticLadder(const EllipticRequest& request);

}  // namespace ladderwise
