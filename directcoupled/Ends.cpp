// End levels, read-outs and end inverters.
#include "directcoupled/Ends.h"

#include <cmath>

#include "numbers/Formatfunctions.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

/// Taken off the ratio of levels in place of 1, so that a level that equals the termination gives a
/// small real root whatever rounding does.
constexpr double NearlyOne = 0.9999;
constexpr int ReadoutDigits = 2;  ///< decimals: three significant digits

/// One end: the termination R (ohm), and the tank next to it with its prototype value.
struct End {
    double R;
    int Number;  ///< of the tank, 1 or N
    double G;
};

/// "Min L1 = 9.95E-9": the end tank's value at which its level equals the termination.
std::string LimitText(const End& end, const CoupledBand& band, KnownPart known, bool shunt) {
    const double qg = band.Q * end.G;
    const auto text = [&](const char* what, double value) {
        return what + std::to_string(end.Number) + " = " + FormatEngineering(value, ReadoutDigits);
    };
    if (!shunt) {
        switch (known) {
            case KnownPart::Inductance:
                return text("Min L", end.R / (band.W0 * qg));
            case KnownPart::Capacitance:
                return text("Max C", qg / (band.W0 * end.R));
            case KnownPart::Level:
                return text("Min R", end.R);
        }
    }
    if (known == KnownPart::Capacitance) return text("Min C", 1.0 / (end.R * band.W0 * qg));
    return text("Max L", end.R * qg / band.W0);
}

/// Matches level r1 to the termination with an L or C inverter: the value, and the tank detuned.
double MatchByReactance(InverterType type, const End& end, double r1, double w0, KnownPart known,
                        Tank& tank) {
    if (IsShuntInverter(type)) {
        const double n = GuardedSqrt(end.R / r1 - NearlyOne);
        Detune(tank, type, n * r1, w0, known);
        return ValueOfReactance(type, end.R / n, w0);
    }
    const double n = GuardedSqrt(r1 / end.R - NearlyOne);
    Detune(tank, type, n / r1, w0, known);
    return ValueOfReactance(type, n * end.R, w0);
}

/// The same with a line of length theta. The admittance of the line Z0 that ends in R is
///   1/R1 + j B,  1/R1 = R / (R^2 cos^2 theta + Z0^2 sin^2 theta),
///   B = sin theta cos theta (R^2 - Z0^2) / (Z0 R1 R).
/// The first gives Z0; B is taken out of the tank.
double MatchByLine(const End& end, double r1, const CoupledBand& band, KnownPart known,
                   Tank& tank) {
    const double r = end.R;
    const double sine = std::sin(band.Inverter);
    const double cosine = std::cos(band.Inverter);
    const double z0 = GuardedSqrt(r * (r1 - r * cosine * cosine)) / sine;
    const double b = sine * cosine * (r * r - z0 * z0) / (z0 * r1 * r);
    tank.AddSusceptance(-b, band.W0, known);
    return z0;
}

}  // namespace

DirectCoupledResult MatchEnds(const FilterDesign& design, const CoupledBand& band, TankList& tanks,
                              InverterList& inverters) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    const KnownPart known = KnownPartOf(settings.TankUnits);
    const bool shunt = IsShuntInverter(settings.InverterType);
    const int n = design.NumPoles;
    const End ends[] = {{design.RSource, 1, design.G[1]}, {design.RLoad, n, design.G[n]}};

    DirectCoupledResult result;
    double levels[2];
    for (const std::size_t at : {SourceEnd, LoadEnd}) {
        const End& end = ends[at];
        double& level = levels[at];
        level = LevelOf(tanks[end.Number], end.G, band, known, shunt);
        // What was entered, without the rounding of the way through L.
        if (known == KnownPart::Level && !shunt) level = settings.TankValues[end.Number - 1];
        result.Clamped[at] = shunt ? level > end.R : level < end.R;
        if (result.Clamped[at]) level = end.R;
        result.WarningShown[at] = level > band.Q * end.R;
        result.Readouts[at] = LimitText(end, band, known, shunt);
    }
    // With a single tank the second end finds it detuned by the first.
    const InverterType type = EndTypeOf(settings);
    for (const std::size_t at : {SourceEnd, LoadEnd}) {
        Tank& tank = tanks[ends[at].Number];
        inverters[at == SourceEnd ? 0 : n] =
            type == InverterType::SeriesLine
                ? MatchByLine(ends[at], levels[at], band, known, tank)
                : MatchByReactance(type, ends[at], levels[at], band.W0, known, tank);
    }
    return result;
}

}  // namespace ladderwise
