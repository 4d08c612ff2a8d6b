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

/// The four values of a tank; a tank of no known type has none.
void PutTank(CircuitElement& slot, const DirectCoupledSettings& settings, const Tank& tank,
             const CoupledBand& band) {
    const TappedTank byC = TapByCapacitor(tank, settings.TankFactor, band.W0);
    const TappedTank byL = TapByInductor(tank, settings.TankFactor, band.W0);
    slot.Type = ElementOf(settings.TankType);
    switch (settings.TankType) {
        case TankType::SeriesLC:
        case TankType::ShuntLC:
            slot.V1 = tank.L;
            slot.V2 = tank.C;
            return;
        case TankType::ShuntIndOpenLine:
            slot.V1 = tank.L;
            slot.V3 = settings.TLOCLength;
            slot.V4 = OpenStubImpedance(tank, band);
            return;
        case TankType::ShuntCapShortedLine:
            slot.V1 = settings.TLSCLength;
            slot.V2 = ShortedStubImpedance(tank, band);
            slot.V4 = tank.C;
            return;
        case TankType::OpenAndShortedLines:
            slot.V1 = settings.TLSCLength;
            slot.V2 = ShortedStubImpedance(tank, band);
            slot.V3 = settings.TLOCLength;
            slot.V4 = OpenStubImpedance(tank, band);
            return;
        case TankType::ShuntCSeriesLC:
            slot.V1 = byC.Other;
            slot.V2 = byC.Main;
            slot.V4 = byC.Tap;
            return;
        case TankType::ShuntLSeriesLC:
            slot.V1 = byL.Main;
            slot.V2 = byL.Other;
            slot.V3 = byL.Tap;
            return;
        // The two tapped forms have the same admittance as the forms before at every frequency.
        case TankType::TappedByC: {
            const double sum = byC.Main + byC.Tap;
            slot.V1 = byC.Other * byC.Tap * byC.Tap / (sum * sum);
            slot.V2 = sum * byC.Main / byC.Tap;
            slot.V4 = sum;
            return;
        }
        case TankType::TappedByL: {
            const double sum = byL.Main + byL.Tap;
            slot.V1 = byL.Main * byL.Main / sum;
            slot.V2 = sum * sum * byL.Other / (byL.Main * byL.Main);
            slot.V3 = byL.Main * byL.Tap / sum;
            return;
        }
        case TankType::ShortedLine:
            return PutShortedLine(slot, tank, band.W0);
    }
}

void PutInverter(CircuitElement& slot, InverterType type, double value, double lengthDegrees) {
    slot.Type = ElementOf(type);
    switch (type) {
        case InverterType::SeriesInductor:
        case InverterType::ShuntInductor:
            slot.V1 = value;
            return;
        case InverterType::SeriesCapacitor:
        case InverterType::ShuntCapacitor:
            slot.V2 = value;
            return;
        case InverterType::SeriesLine:
            slot.V1 = lengthDegrees;
            slot.V2 = value;
            return;
    }
}

}  // namespace

ElementType ElementOf(TankType type) {
    switch (type) {
        case TankType::SeriesLC:
            return ElementType::SeriesSerLC;
        case TankType::ShuntLC:
            return ElementType::ShuntParLC;
        case TankType::ShuntIndOpenLine:
            return ElementType::ShuntLTLOC;
        case TankType::ShuntCapShortedLine:
            return ElementType::ShuntTLSCC;
        case TankType::OpenAndShortedLines:
            return ElementType::ShuntTLSCTLOC;
        case TankType::ShuntCSeriesLC:
            return ElementType::ThreeShuntCapSerLC;
        case TankType::ShuntLSeriesLC:
            return ElementType::ThreeShuntIndSerLC;
        case TankType::TappedByC:
            return ElementType::ThreeShuntTappedC;
        case TankType::TappedByL:
            return ElementType::ThreeShuntTappedL;
        case TankType::ShortedLine:
            return ElementType::ShuntTLSC;
    }
    return ElementType::errorBitMap;
}

ElementType ElementOf(InverterType type) {
    switch (type) {
        case InverterType::SeriesInductor:
            return ElementType::SeriesInd;
        case InverterType::SeriesCapacitor:
            return ElementType::SeriesCap;
        case InverterType::ShuntInductor:
            return ElementType::ShuntInd;
        case InverterType::ShuntCapacitor:
            return ElementType::ShuntCap;
        case InverterType::SeriesLine:
            return ElementType::SeriesTLIN;
    }
    return ElementType::errorBitMap;
}

void EmitLadder(FilterDesign& design, const CoupledBand& band, const TankList& tanks,
                const InverterList& inverters, const MessageCallback& report) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    const int n = design.NumPoles;
    design.NumElements = 2 * n + 1;
    for (int k = 0; k <= n; ++k) {
        const InverterType type = k == 0 || k == n ? EndTypeOf(settings) : settings.InverterType;
        PutInverter(design.Elements[2 * k + 1], type, inverters[k], settings.TLINLength);
    }
    for (int k = 1; k <= n; ++k)
        PutTank(design.Elements[2 * k], settings, tanks[k], band);
    if (!report) return;
    if (!IsElement(ElementOf(settings.InverterType)))
        report("Error", "Default case in Inverter Schematic in DirectCoupled");
    if (!IsElement(ElementOf(settings.TankType)))
        report("Error", "Default case in Tank Schematic in DirectCoupled");
}

}  // namespace ladderwise
