// The low-pass to band-pass and low-pass to band-stop transforms and the four trap forms.
#include "scaling/BandScaler.h"

#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

// The numbers of one transform: W = 2 pi BandWidth (rad/s), R = RSource (ohm), W02 = the square of
// the resonance (rad^2/s^2).
struct BandTransform {
    double W;
    double R;
    double W02;
};

struct Resonator {
    double L;
    double C;
};

// The trap section: a series resonator L1, C1 with a parallel one L2, C2. The two stand in parallel
// in a series arm and in series in a shunt arm.
struct TrapSection {
    double L1;
    double C1;
    double L2;
    double C2;
};

// What the inductor gL and the capacitor gC become.
Resonator BandPassOfInductor(const BandTransform& b, double gL) {
    return {gL / b.W * b.R, b.W / b.R / gL / b.W02};
}
Resonator BandPassOfCapacitor(const BandTransform& b, double gC) {
    return {b.W * b.R / gC / b.W02, gC / b.W / b.R};
}
Resonator NotchOfInductor(const BandTransform& b, double gL) {
    return {gL * b.W * b.R / b.W02, 1 / b.W / b.R / gL};
}
Resonator NotchOfCapacitor(const BandTransform& b, double gC) {
    return {b.R / b.W / gC, gC * b.W / b.R / b.W02};
}

// Square of the frequency that a band pass with the edges F0 -+ BandWidth / 2 resonates at, Hz^2.
double BandPassCentre2(const FilterDesign& design) {
    const double halfBand = design.BandWidth / 2;
    return (design.F0 - halfBand) * (design.F0 + halfBand);
}

using TrapValues = std::array<double, 4>;  // V1 .. V4

// Each form has the same impedance as the section itself at every frequency. Type 4 is the Foster
// form, types 2 and 3 are mixed forms that take one pole out first.
//
// The Foster forms are partial fractions of the section's immittance, whose two resonances are the
// roots of x^2 - S x + P = 0 in x = 1 / w^2. With S = L2 C2 + L1 C1 + m and P = L1 C1 L2 C2 their
// difference D and the distances of the larger root X from L1 C1 and L2 C2 are written so that
// nothing cancels where the sections of a narrow band resonate alike: m is what separates the
// roots.
struct TwoResonances {
    double X;            // the larger root, s^2
    double Y;            // P - X^2
    double AboveFirst;   // X - L1 C1
    double AboveSecond;  // X - L2 C2
};

TwoResonances ResonancesOf(const TrapSection& t, double m) {
    const double first = t.L1 * t.C1, second = t.L2 * t.C2;
    const double apart = second - first;
    const double d = std::sqrt(apart * apart + m * (2 * (first + second) + m));
    const double x = (first + second + m + d) / 2;
    return {x, -x * d, (apart + m + d) / 2, (m - apart + d) / 2};
}

TrapValues SeriesTrap(const TrapSection& t, int trapType) {
    const double l1 = t.L1, c1 = t.C1, l2 = t.L2, c2 = t.C2;
    if (trapType == 2) {
        const double sum = l1 + l2;
        const double ratio = sum / l2;
        return {l2 * l2 / sum, c1 * (ratio * ratio), l1 * l2 / sum, c2};
    }
    if (trapType == 3) {
        const double sum = c1 + c2;
        return {l1 * (c1 * c1) / (sum * sum), sum, l2, (c2 / c1 + 1) * c2};
    }
    if (trapType == 4) {
        const auto [x, y, aboveFirst, aboveSecond] = ResonancesOf(t, l2 * c1);
        const double p = l1 * c1 * l2 * c2;
        const double first = -l1 * l2 * c1 * aboveSecond;
        const double second = -l2 * aboveFirst;
        return {first / y, y * p / x / first, second * x / y, y / second};
    }
    return {l1, c1, l2, c2};
}

TrapValues ShuntTrap(const TrapSection& t, int trapType) {
    const double l1 = t.L1, c1 = t.C1, l2 = t.L2, c2 = t.C2;
    if (trapType == 2) {
        const double ratio = c2 / c1 + 1;
        return {l1, c1 * c2 / (c1 + c2), l2 * (ratio * ratio), c1 / ratio};
    }
    if (trapType == 3) {
        const double ratio = l2 / (l1 + l2);
        return {l1 + l2, c1, (l1 / l2 + 1) * l1, c2 * (ratio * ratio)};
    }
    if (trapType == 4) {
        const auto [x, y, aboveFirst, aboveSecond] = ResonancesOf(t, l2 * c1);
        const double p = l1 * c1 * l2 * c2;
        const double first = -l2 * c2 * c1 * aboveFirst;
        const double second = -c1 * aboveSecond;
        return {y * p / x / first, first / y, y / second, second * x / y};
    }
    return {l1, c1, l2, c2};
}

void Put(CircuitElement& slot, ElementType type, const Resonator& resonator) {
    slot.Type = type;
    slot.V1 = resonator.L;
    slot.V2 = resonator.C;
}

// Makes a prototype resonator a trap. seriesResonator is the one with its L and C in series,
// parallelTank the other: in a band pass they come from gL and gC, in a notch from gC and gL.
void PutTrap(CircuitElement& slot, const Resonator& seriesResonator, const Resonator& parallelTank,
             int trapType) {
    const TrapSection trap{seriesResonator.L, seriesResonator.C, parallelTank.L, parallelTank.C};
    const bool series = slot.Type == ElementType::SeriesLC;
    if (!series && slot.Type != ElementType::ShuntLC) return;
    const TrapValues v = series ? SeriesTrap(trap, trapType) : ShuntTrap(trap, trapType);
    const int form = trapType >= 1 && trapType <= 4 ? trapType : 1;
    slot = {TrapForms(series ? ElementArm::Series : ElementArm::Shunt)[form - 1], v[0], v[1], v[2],
            v[3]};
}

}  // namespace

const std::array<ElementType, 4>& TrapForms(ElementArm arm) {
    static constexpr std::array series{ElementType::SerSerParLC, ElementType::SeriesElliptic2,
                                       ElementType::SeriesElliptic3, ElementType::DualSeriesLC};
    static constexpr std::array shunt{ElementType::ShuntSerParLC, ElementType::ShuntElliptic2,
                                      ElementType::ShuntElliptic3, ElementType::DualShuntLC};
    return arm == ElementArm::Series ? series : shunt;
}

std::vector<double> ScaledFrequencies(const FilterDesign& design, double w) {
    // The pair f1, f2 with f2 - f1 = width and f1 f2 = centre2.
    const auto pair = [](double width, double centre2) {
        const double upper = width / 2 + std::sqrt(width * width / 4 + centre2);
        return std::vector<double>{centre2 / upper, upper};
    };
    switch (design.PassType) {
        case PassType::LowPass:
            return {w * design.F0};
        case PassType::HighPass:
            return {design.F0 / w};
        case PassType::BandPassCanonical:
            return pair(design.BandWidth * w, BandPassCentre2(design));
        case PassType::Notch:
            return pair(design.BandWidth / w, design.F0 * design.F0);
        case PassType::DirectCoupled:
        case PassType::Norton:
            return {};
    }
    return {};
}

void ScaleBandPass(FilterDesign& design) {
    const BandTransform b{TwoPi * design.BandWidth, design.RSource,
                          TwoPiSquared * BandPassCentre2(design)};
    for (int k = 1; k <= design.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        const Resonator ofL = BandPassOfInductor(b, slot.V1);
        const Resonator ofC = BandPassOfCapacitor(b, slot.V2);
        if (slot.Type == ElementType::SeriesInd) {
            Put(slot, ElementType::SeriesSerLC, ofL);
        } else if (slot.Type == ElementType::ShuntCap) {
            Put(slot, ElementType::ShuntParLC, ofC);
        } else {
            PutTrap(slot, ofL, ofC, design.TrapType);
        }
    }
}

void ScaleNotch(FilterDesign& design) {
    const BandTransform b{TwoPi * design.BandWidth, design.RSource,
                          TwoPiSquared * (design.F0 * design.F0)};
    for (int k = 1; k <= design.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        const Resonator ofL = NotchOfInductor(b, slot.V1);
        const Resonator ofC = NotchOfCapacitor(b, slot.V2);
        if (slot.Type == ElementType::SeriesInd) {
            Put(slot, ElementType::SeriesLC, ofL);
        } else if (slot.Type == ElementType::ShuntCap) {
            Put(slot, ElementType::ShuntLC, ofC);
        } else {
            PutTrap(slot, ofC, ofL, design.TrapType);
        }
    }
}

}  // namespace ladderwise
