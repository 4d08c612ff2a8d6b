// The impedance inverters of a direct-coupled band-pass: their kinds and duals, their values, and
// what each does to the tanks beside it. No Qt.
//
// An inverter of one L or C needs two more parts of the opposite sign beside it (a series element
// X two shunt elements -X, a shunt element X two series ones). Those are taken out of the tanks,
// which is why inverters detune them. After S. B. Cohn, "Direct-Coupled-Resonator Filters",
// Proc. IRE 45 (1957) 187-196.
#pragma once

#include <array>

#include "directcoupled/Tanks.h"

namespace ladderwise {

/// True for the inverters that stand across the line, between series tanks.
constexpr bool IsShuntInverter(InverterType type) {
    return type == InverterType::ShuntInductor || type == InverterType::ShuntCapacitor;
}

/// Inductor and capacitor change places; a line is its own dual. Series never turns into shunt.
InverterType DualOf(InverterType type);

/// The inverter of the first and last slot: the dual where the settings ask for it.
InverterType EndTypeOf(const DirectCoupledSettings& settings);

/// Element values 0 .. N from the source: inductance (H), capacitance (F) or line impedance (ohm).
using InverterList = std::array<double, MaxTanks + 1>;

/// The value of an L or C inverter with the reactance x (ohm at w0 rad/s); not for lines.
double ValueOfReactance(InverterType type, double x, double w0);

/// Takes the opposite of an L or C inverter out of a tank: a susceptance of magnitude `size` (S)
/// beside a series inverter, a reactance of that magnitude (ohm) beside a shunt one.
void Detune(Tank& tank, InverterType type, double size, double w0, KnownPart known);

/// The inverters 1 .. N - 1 between neighbours, which detune both. An inverter between the levels
/// a and b has the size S = sqrt(a b); a line of length theta has the impedance S / sin theta.
/// Not finite where a line is a multiple of 180 degrees long. Inverters 0 and N are left alone.
void CoupleTanks(const FilterDesign& design, const CoupledBand& band, TankList& tanks,
                 InverterList& inverters);

}  // namespace ladderwise
