// The resonators of a direct-coupled band-pass: the corrected band, the inductance and capacitance
// of every tank, and how inverters detune them. No Qt.
//
// | symbol | here     | unit  | meaning                                             |
// |--------|----------|-------|-----------------------------------------------------|
// | Q      | Band.Q   |       | centre over bandwidth, corrected                    |
// | w0     | Band.W0  | rad/s | angular centre frequency, corrected                 |
// | g[i]   | G[i]     |       | prototype, i = 1 .. N                               |
// | L, C   | tanks[i] | H, F  | resonator i = 1 .. N; slot 0 is not used            |
// | a      | LevelOf  | ohm   | resistance that loads resonator i to the Q of Q g[i] |
#pragma once

#include <array>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Which part of the tanks the user gives; the other one takes up the detuning of the inverters.
enum class KnownPart { Inductance, Capacitance, Level };

KnownPart KnownPartOf(TankUnits units);

/// The band as the synthesis uses it, and the line lengths in radians at F0.
struct CoupledBand {
    double Q = 0.0;
    double W0 = 0.0;        ///< rad/s
    double Inverter = 0.0;  ///< length of a line inverter, rad
    double Shorted = 0.0;   ///< length of a shorted stub, rad
    double Open = 0.0;      ///< length of an open stub, rad
};

/// Centre and Q of the design's band, moved by what the chosen inverters and tanks do to a real
/// filter: an inverter of one L or C inverts at one frequency only and skews the band, a stub
/// stores more energy than the part in whose place it stands. The corrections are empirical.
/// Results are negative or not finite where the band is too wide or a stub is a quarter wave long.
CoupledBand BandOf(const FilterDesign& design);

struct Tank {
    double L = 0.0;  ///< H
    double C = 0.0;  ///< F

    /// Puts the susceptance b (S at w0 rad/s) in parallel, into the part that is not known.
    void AddSusceptance(double b, double w0, KnownPart known);
    /// Puts the reactance x (ohm at w0 rad/s) in series, into the part that is not known.
    void AddReactance(double x, double w0, KnownPart known);
};

using TankList = std::array<Tank, MaxTanks + 1>;

/// The resonators 1 .. NumPoles from the values of the settings, all resonant at band.W0. With
/// DeEmbed an entered L or C stands for the part that can be bought, and is raised or lowered to
/// what it acts as at F0.
TankList TanksOf(const FilterDesign& design, const CoupledBand& band);

/// The level of a tank with the prototype value g: Q g w0 L for a tank across the line (a shunt
/// tank), w0 L / (Q g) for one in the line (a series tank), either from the part that is known.
double LevelOf(const Tank& tank, double g, const CoupledBand& band, KnownPart known,
               bool seriesTank);

}  // namespace ladderwise
