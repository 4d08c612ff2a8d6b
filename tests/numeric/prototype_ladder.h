// A second, deliberately plain evaluation of an ideal LC ladder, as the judge of prototypes and
// scalers: complex chain matrices, immittances written down from the circuits themselves.
#pragma once

#include <array>
#include <complex>
#include <stdexcept>

#include "app/design/FilterDesign.h"

namespace ladderwise::judge {

using Complex = std::complex<double>;

inline Complex Parallel(Complex a, Complex b) {
    return 1.0 / (1.0 / a + 1.0 / b);
}

/// Impedance of the arm (series or shunt) of a lumped element at s = j w.
inline Complex ArmImpedance(const CircuitElement& e, Complex s) {
    const Complex l1 = s * e.V1, c1 = 1.0 / (s * e.V2), l2 = s * e.V3, c2 = 1.0 / (s * e.V4);
    switch (static_cast<int>(e.Type)) {  // the catalogue's codes; lines are not judged here
        case 0:
        case 3:
            return l1;
        case 1:
        case 4:
            return c1;
        case 2:
        case 6:
            return Parallel(l1, c1);
        case 5:
        case 8:
            return l1 + c1;
        case 7:
            return l1 + c1 + Parallel(l2, c2);
        case 9:
            return Parallel(l1 + c1, Parallel(l2, c2));
        case 15:
            return Parallel(l1 + c1, l2 + c2);
        case 16:
            return Parallel(l1, c1) + Parallel(l2, c2);
        case 17:
            return Parallel(c2, l2 + Parallel(l1, c1));
        case 18:
            return Parallel(l2, c1 + Parallel(l1, c2));
        case 19:
            return l1 + Parallel(c1, l2 + c2);
        case 20:
            return c1 + Parallel(l1, l2 + c2);
    }
    throw std::logic_error("no lumped element");
}

/// Voltage at the load over the available source voltage, 1 for a lossless match, at w (rad/s).
inline Complex Transfer(const FilterDesign& design, double w) {
    Complex a = 1, b = 0, c = 0, d = 1;
    for (int k = 1; k <= design.NumElements; ++k) {
        const CircuitElement& e = design.Elements[k];
        const Complex z = ArmImpedance(e, Complex(0, w));
        if (InfoOf(e.Type).Arm == ElementArm::Series) {
            b += a * z;
            d += c * z;
        } else {
            a += b / z;
            c += d / z;
        }
    }
    const double rs = design.RSource, rl = design.RLoad;
    return 2 * std::sqrt(rs * rl) / (a * rl + b + (c * rl + d) * rs);
}

/// |Transfer|^2 of a normalised ladder: the load is referred to a 1-ohm source.
inline double PrototypeGain(FilterDesign design, double w) {
    design.RLoad /= design.RSource;
    design.RSource = 1.0;
    return std::norm(Transfer(design, w));
}

}  // namespace ladderwise::judge
