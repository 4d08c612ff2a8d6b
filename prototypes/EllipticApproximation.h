// The elliptic low-pass function in the transformed variable z, where z^2 = 1 + 1/s^2: its traps,
// band edges, reflection zeros and natural modes. The pass band |w| < 1 is the imaginary axis of z,
// the stop band 0 < z < 1, infinite frequency z = 1. No polynomial is formed: everything is a
// product or a sum of angles, so that no digits are lost at any order.
//
// The extraction of a long ladder magnifies an error of its data a million times. Everything is
// therefore searched in double precision and finished by a step or two in EllipticReal, so that the
// last bits of a platform's elementary functions do not show in the parts.
//
//   symbol  here            meaning
//   e, e_s  Epsilon         ripple and stop-band loss are 1 + e^2 and 1 + e_s^2
//   a       ModeLevel       asinh(1 / e), of the natural modes
//   A_c     CornerLevel     acosh(1 / e), of the 3 dB point
//   A_v     ValleyLevel     acosh(e_s / e), of the stop-band minima
//   m_j     Traps[j]        transmission zeros, 0 < m < 1, the farthest (largest m) first
//   n_inf   ZerosAtInfinity transmission zeros at infinite frequency
//   n       Order()         2 Traps.size() + n_inf
//
// In the stop band the loss is 1 + e^2 cosh^2 A(z), A(z) = n_inf atanh(z) + sum 2 atanh(z / m_j)
// below the nearest trap; in the pass band cosh becomes the cosine of the sum of the angles.
// Source: Orchard and Temes, "Filter design using transformed variables", IEEE Trans. Circuit
// Theory CT-15 (1968); Lutovac, Tosic and Evans, "Filter Design for Signal Processing", 2001, for
// the sums.
#pragma once

#include <complex>
#include <vector>

namespace ladderwise {

/// 64 bits of mantissa where the platform has them (x86 but for Visual C++), else double.
using EllipticReal = long double;
using EllipticComplex = std::complex<EllipticReal>;

struct EllipticApproximation {
    int ZerosAtInfinity = 1;
    EllipticReal Epsilon = 0;
    EllipticReal ModeLevel = 0;
    EllipticReal CornerLevel = 0;
    EllipticReal ValleyLevel = 0;
    std::vector<EllipticReal> Traps{};

    int Order() const { return 2 * static_cast<int>(Traps.size()) + ZerosAtInfinity; }
};

/// The function of `traps` traps and 1 to 3 zeros at infinity with a ripple of rippleDb in the pass
/// band and minima of attenDb > rippleDb in the stop band. One zero at infinity is Cauer's own
/// function, two that of even order with its farthest pair of zeros moved to infinity, three needs
/// an iteration. Traps may come out as good as 0 (or NaN) when the two are close to each other.
EllipticApproximation ApproximateElliptic(int traps, int zerosAtInfinity, double rippleDb,
                                          double attenDb);

/// The z between the band edge and the nearest trap with A(z) = level.
EllipticReal EdgeAtLevel(const EllipticApproximation& made, EllipticReal level);

/// The y > 0 of the reflection zeros z = j y, ascending: of highest frequency first. floor(n / 2)
/// of them; an odd order has one more at zero frequency, y infinite.
std::vector<EllipticReal> ReflectionZeros(const EllipticApproximation& made);

/// The natural mode in the first quadrant of z that belongs to reflection zero k, y = zeros[k].
EllipticComplex NaturalMode(const EllipticApproximation& made, EllipticReal y, int k);

/// -s of the real natural mode of an odd order (band edge at 1 rad/s); 0 for an even one.
EllipticReal RealNaturalMode(const EllipticApproximation& made);

}  // namespace ladderwise
