// Inner inverters.
#include "directcoupled/Inverters.h"

#include <cmath>

#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

constexpr bool IsInductor(InverterType type) {
    return type == InverterType::SeriesInductor || type == InverterType::ShuntInductor;
}

}  // namespace

InverterType DualOf(InverterType type) {
    switch (type) {
        case InverterType::SeriesInductor:
            return InverterType::SeriesCapacitor;
        case InverterType::SeriesCapacitor:
            return InverterType::SeriesInductor;
        case InverterType::ShuntInductor:
            return InverterType::ShuntCapacitor;
        case InverterType::ShuntCapacitor:
            return InverterType::ShuntInductor;
        case InverterType::SeriesLine:
            return InverterType::SeriesLine;
    }
    return type;
}

InverterType EndTypeOf(const DirectCoupledSettings& settings) {
    return settings.AlternateMatch ? DualOf(settings.InverterType) : settings.InverterType;
}

double ValueOfReactance(InverterType type, double x, double w0) {
    return IsInductor(type) ? x / w0 : 1.0 / (w0 * x);
}

void Detune(Tank& tank, InverterType type, double size, double w0, KnownPart known) {
    // The opposite of a series inductor is a positive susceptance, that of a shunt inductor a
    // negative reactance.
    const double signedSize = IsInductor(type) ? size : -size;
    if (IsShuntInverter(type))
        tank.AddReactance(-signedSize, w0, known);
    else
        tank.AddSusceptance(signedSize, w0, known);
}

void CoupleTanks(const FilterDesign& design, const CoupledBand& band, TankList& tanks,
                 InverterList& inverters) {
    const InverterType type = design.DirectCoupled.InverterType;
    const KnownPart known = KnownPartOf(design.DirectCoupled.TankUnits);
    const bool shunt = IsShuntInverter(type);
    for (int i = 1; i < design.NumPoles; ++i) {
        const double s = GuardedSqrt(LevelOf(tanks[i], design.G[i], band, known, shunt) *
                                     LevelOf(tanks[i + 1], design.G[i + 1], band, known, shunt));
        switch (type) {
            case InverterType::SeriesInductor:
            case InverterType::SeriesCapacitor:
            case InverterType::ShuntInductor:
            case InverterType::ShuntCapacitor:
                inverters[i] = ValueOfReactance(type, s, band.W0);
                for (Tank* const tank : {&tanks[i], &tanks[i + 1]})
                    Detune(*tank, type, shunt ? s : 1.0 / s, band.W0, known);
                break;
            case InverterType::SeriesLine:
                // Seen as a pi circuit the line has the shunt susceptance -cos theta / S at both
                // ends.
                inverters[i] = s / std::sin(band.Inverter);
                for (Tank* const tank : {&tanks[i], &tanks[i + 1]})
                    tank->AddSusceptance(std::cos(band.Inverter) / s, band.W0, known);
                break;
        }
    }
}

}  // namespace ladderwise
