// The corrected band and the tanks.
#include "directcoupled/Tanks.h"

#include <cmath>

#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

constexpr double RadiansPerDegree = TwoPi / 360.0;

/// Q of tanks of known inductance with series inductors between them: the band comes out narrower.
constexpr double SeriesInductorQ = 0.8;

/// Henries or farads of one TankUnits.
double ScaleOf(TankUnits units) {
    switch (units) {
        case TankUnits::nH:
        case TankUnits::nF:
            return 1e-9;
        case TankUnits::uH:
            return 1e-6;
        case TankUnits::pF:
            return 1e-12;
        case TankUnits::TankZ:
            return 1.0;
    }
    return 1.0;
}

/// The frequency at which tanks are tuned, so that the inverters' skew puts the pass band at F0.
double TunedCentre(const DirectCoupledSettings& settings, double f0, double f1, double f2) {
    const double geometric = GuardedSqrt(f1 * f2);
    const double width = f2 - f1;
    switch (settings.InverterType) {
        case InverterType::SeriesInductor:
            if (settings.TankType == TankType::SeriesLC || settings.TankType == TankType::ShuntLC)
                return 2.0 * f0 - geometric;
            return 2.0 * (f0 - geometric) + f0;
        case InverterType::SeriesCapacitor:
        case InverterType::ShuntInductor:
            return f1 + f2 - GuardedSqrt(f1 * f2 + width * width);
        case InverterType::ShuntCapacitor:
            return 2.0 * f0 - geometric;
        case InverterType::SeriesLine:
            return f0;
    }
    return f0;
}

/// Q for the inverter and the part that is known: where the inverter is of the kind of the known
/// part, its reactance moves with the tanks', which widens or narrows the band.
double InverterQ(const DirectCoupledSettings& settings, double f0, double width, double centre,
                 double skewedQ) {
    const KnownPart known = KnownPartOf(settings.TankUnits);
    const bool ofL = known == KnownPart::Inductance;
    const bool ofC = known == KnownPart::Capacitance;
    switch (settings.InverterType) {
        case InverterType::SeriesInductor:
            return ofL ? SeriesInductorQ * centre / width : skewedQ;
        case InverterType::SeriesCapacitor:
            return ofC ? centre / width - 1.0 : skewedQ;
        case InverterType::ShuntInductor:
            return ofL ? f0 / width - 1.0 : skewedQ;
        case InverterType::ShuntCapacitor:
            return ofC ? f0 / width - 1.0 : skewedQ;
        case InverterType::SeriesLine:
            return ofC ? f0 / width : f0 / width - 1.0;
    }
    return f0 / width;
}

/// What the tanks do to Q. The susceptance slope of a tank with stubs over that of L and C is
/// (theta + sin theta cos theta) / sin 2 theta for a stub beside a lumped part, and the sum of
/// theta / sin 2 theta for two stubs; Q is divided by it.
double TankQFactor(const DirectCoupledSettings& settings, const CoupledBand& band) {
    const auto beside = [](double theta) {
        return std::sin(2.0 * theta) / (std::sin(theta) * std::cos(theta) + theta);
    };
    switch (settings.TankType) {
        case TankType::ShuntIndOpenLine:
            return beside(band.Open);
        case TankType::ShuntCapShortedLine:
            return beside(band.Shorted);
        case TankType::OpenAndShortedLines: {
            const double open = std::sin(2.0 * band.Open);
            const double shorted = std::sin(2.0 * band.Shorted);
            return open * shorted / (open * band.Shorted + shorted * band.Open);
        }
        case TankType::ShuntCSeriesLC:
        case TankType::ShuntLSeriesLC:
        case TankType::TappedByC:
        case TankType::TappedByL:
            return settings.TankFactor;
        case TankType::SeriesLC:
        case TankType::ShuntLC:
        case TankType::ShortedLine:
            return 1.0;
    }
    return 1.0;
}

}  // namespace

KnownPart KnownPartOf(TankUnits units) {
    switch (units) {
        case TankUnits::nH:
        case TankUnits::uH:
            return KnownPart::Inductance;
        case TankUnits::pF:
        case TankUnits::nF:
            return KnownPart::Capacitance;
        case TankUnits::TankZ:
            return KnownPart::Level;
    }
    return KnownPart::Level;
}

CoupledBand BandOf(const FilterDesign& design) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    const double f0 = design.F0;
    const double width = design.BandWidth;
    const double f1 = f0 - width / 2.0;
    const double f2 = f0 + width / 2.0;
    const double centre = TunedCentre(settings, f0, f1, f2);
    const double skewedWidth = (centre / f1 - centre / f2) * centre;

    CoupledBand band;
    band.W0 = TwoPi * centre;
    band.Inverter = settings.TLINLength * RadiansPerDegree;
    band.Shorted = settings.TLSCLength * RadiansPerDegree;
    band.Open = settings.TLOCLength * RadiansPerDegree;
    band.Q =
        InverterQ(settings, f0, width, centre, centre / skewedWidth) * TankQFactor(settings, band);
    return band;
}

void Tank::AddSusceptance(double b, double w0, KnownPart known) {
    if (known == KnownPart::Capacitance)
        L = 1.0 / (1.0 / L - b * w0);
    else
        C += b / w0;
}

void Tank::AddReactance(double x, double w0, KnownPart known) {
    if (known == KnownPart::Capacitance)
        L += x / w0;
    else
        C = 1.0 / (1.0 / C - x * w0);
}

TankList TanksOf(const FilterDesign& design, const CoupledBand& band) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    const double w0Squared = band.W0 * band.W0;
    const bool deEmbed = design.PartModel.Choice == PartChoice::DeEmbed;
    const auto bought = [&](double value, double parasitic) {
        return deEmbed ? value / (1.0 - value * TwoPiSquared * design.F0 * design.F0 * parasitic)
                       : value;
    };
    TankList tanks{};
    for (int i = 1; i <= design.NumPoles; ++i) {
        const double value = settings.TankValues[i - 1] * ScaleOf(settings.TankUnits);
        Tank& tank = tanks[i];
        switch (KnownPartOf(settings.TankUnits)) {
            case KnownPart::Inductance:
                tank.L = bought(value, design.PartModel.IndC);
                tank.C = 1.0 / (w0Squared * tank.L);
                break;
            case KnownPart::Capacitance:
                tank.C = bought(value, design.PartModel.CapL);
                tank.L = 1.0 / (w0Squared * tank.C);
                break;
            case KnownPart::Level:
                tank.C = design.G[i] * band.Q / (band.W0 * value);
                tank.L = value / (design.G[i] * band.Q * band.W0);
                break;
        }
    }
    return tanks;
}

double LevelOf(const Tank& tank, double g, const CoupledBand& band, KnownPart known,
               bool seriesTank) {
    const double reactance =
        known == KnownPart::Capacitance ? 1.0 / (tank.C * band.W0) : tank.L * band.W0;
    return seriesTank ? reactance / (band.Q * g) : reactance * (band.Q * g);
}

}  // namespace ladderwise
