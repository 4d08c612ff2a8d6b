// The slots of the ladder.
#include "directcoupled/Emission.h"

#include <cmath>

#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

/// The tapping capacitor of an untapped tank, F: so large that it vanishes.
constexpr double TransparentCapacitor = 10.0;
/// |1 - w0^2 L C| up to which a line tank counts as resonant.
constexpr double ResonanceTolerance = 0.001;
constexpr double DegreesPerRadian = 360.0 / TwoPi;

/// The parts of the three-element tanks: Main and Tap are of the kind that taps, Other is not.
struct TappedTank {
    double Main;
    double Other;
    double Tap;
};

/// Tapped by a capacitor: L / F and the tap in series, C beside them.
TappedTank TapByCapacitor(const Tank& tank, double factor, double w0) {
    const double tap =
        factor == 1.0 ? TransparentCapacitor : 1.0 / (w0 * w0 * (1.0 / factor - 1.0) * tank.L);
    return {tank.C, tank.L / factor, tap};
}

/// Tapped by an inductor: C F and the tap in series, L beside them.
TappedTank TapByInductor(const Tank& tank, double factor, double w0) {
    return {tank.L, tank.C * factor, (1.0 - factor) / (w0 * w0 * tank.C * factor)};
}

/// A shorted stub of about a quarter wave: longer where the tank has to resonate lower.
void PutShortedLine(CircuitElement& slot, const Tank& tank, double w0) {
    const double theta = TwoPi / 4.0 * w0 * GuardedSqrt(tank.L * tank.C);
    const double reactance = w0 * tank.L;
    const double detuning = 1.0 - w0 * w0 * tank.L * tank.C;
    slot.Type = ElementType::ShuntTLSC;
    slot.V1 = theta * DegreesPerRadian;
    slot.V2 = std::abs(detuning) > ResonanceTolerance ? reactance / GuardedTan(theta) / detuning
                                                      : reactance * (TwoPi / 8.0);
}

/// The stubs that stand for an L or a C at w0.
double ShortedStubImpedance(const Tank& tank, const CoupledBand& band) {
    return band.W0 * tank.L / std::tan(band.Shorted);
}
double OpenStubImpedance(const Tank& tank, const CoupledBand& band) {
    return std::tan(band.Open) / (band.W0 * tank.C);
}

/// False if there is no such tank type.
bool PutTank(CircuitElement& slot, const DirectCoupledSettings& settings, const Tank& tank,
             const CoupledBand& band) {
    const double factor = settings.TankFactor;
    switch (settings.TankType) {
        case TankType::SeriesLC:
        case TankType::ShuntLC:
            slot.Type = settings.TankType == TankType::SeriesLC ? ElementType::SeriesSerLC
                                                                : ElementType::ShuntParLC;
            slot.V1 = tank.L;
            slot.V2 = tank.C;
            return true;
        case TankType::ShuntIndOpenLine:
            slot.Type = ElementType::ShuntLTLOC;
            slot.V1 = tank.L;
            slot.V3 = settings.TLOCLength;
            slot.V4 = OpenStubImpedance(tank, band);
            return true;
        case TankType::ShuntCapShortedLine:
            slot.Type = ElementType::ShuntTLSCC;
            slot.V1 = settings.TLSCLength;
            slot.V2 = ShortedStubImpedance(tank, band);
            slot.V4 = tank.C;
            return true;
        case TankType::OpenAndShortedLines:
            slot = {ElementType::ShuntTLSCTLOC, settings.TLSCLength,
                    ShortedStubImpedance(tank, band), settings.TLOCLength,
                    OpenStubImpedance(tank, band)};
            return true;
        case TankType::ShuntCSeriesLC: {
            const TappedTank t = TapByCapacitor(tank, factor, band.W0);
            slot = {ElementType::ThreeShuntCapSerLC, t.Other, t.Main, UnusedValue, t.Tap};
            return true;
        }
        case TankType::ShuntLSeriesLC: {
            const TappedTank t = TapByInductor(tank, factor, band.W0);
            slot = {ElementType::ThreeShuntIndSerLC, t.Main, t.Other, t.Tap, UnusedValue};
            return true;
        }
        // The two tapped forms have the same admittance as the forms before at every frequency.
        case TankType::TappedByC: {
            const TappedTank t = TapByCapacitor(tank, factor, band.W0);
            const double sum = t.Main + t.Tap;
            slot = {ElementType::ThreeShuntTappedC, t.Other * t.Tap * t.Tap / (sum * sum),
                    sum * t.Main / t.Tap, UnusedValue, sum};
            return true;
        }
        case TankType::TappedByL: {
            const TappedTank t = TapByInductor(tank, factor, band.W0);
            const double sum = t.Main + t.Tap;
            slot = {ElementType::ThreeShuntTappedL, t.Main * t.Main / sum,
                    sum * sum * t.Other / (t.Main * t.Main), t.Main * t.Tap / sum, UnusedValue};
            return true;
        }
        case TankType::ShortedLine:
            PutShortedLine(slot, tank, band.W0);
            return true;
    }
    return false;
}

/// False if there is no such inverter type.
bool PutInverter(CircuitElement& slot, InverterType type, double value, double lengthDegrees) {
    switch (type) {
        case InverterType::SeriesInductor:
        case InverterType::ShuntInductor:
            slot.Type = IsShuntInverter(type) ? ElementType::ShuntInd : ElementType::SeriesInd;
            slot.V1 = value;
            return true;
        case InverterType::SeriesCapacitor:
        case InverterType::ShuntCapacitor:
            slot.Type = IsShuntInverter(type) ? ElementType::ShuntCap : ElementType::SeriesCap;
            slot.V2 = value;
            return true;
        case InverterType::SeriesLine:
            slot.Type = ElementType::SeriesTLIN;
            slot.V1 = lengthDegrees;
            slot.V2 = value;
            return true;
    }
    return false;
}

}  // namespace

void EmitLadder(FilterDesign& design, const CoupledBand& band, const TankList& tanks,
                const InverterList& inverters, const MessageCallback& report) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    const int n = design.NumPoles;
    bool invertersKnown = true;
    bool tanksKnown = true;
    design.NumElements = 2 * n + 1;
    for (int k = 0; k <= n; ++k) {
        const InverterType type = k == 0 || k == n ? EndTypeOf(settings) : settings.InverterType;
        invertersKnown &=
            PutInverter(design.Elements[2 * k + 1], type, inverters[k], settings.TLINLength);
    }
    for (int k = 1; k <= n; ++k)
        tanksKnown &= PutTank(design.Elements[2 * k], settings, tanks[k], band);
    if (!report) return;
    if (!invertersKnown) report("Error", "Default case in Inverter Schematic in DirectCoupled");
    if (!tanksKnown) report("Error", "Default case in Tank Schematic in DirectCoupled");
}

}  // namespace ladderwise
