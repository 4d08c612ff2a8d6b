// From tanks and inverters to ladder slots. No Qt.
#pragma once

#include "design/Messages.h"
#include "directcoupled/Inverters.h"

namespace ladderwise {

/// The ladder element of a tank or inverter; errorBitMap if there is no such type.
ElementType ElementOf(TankType type);
ElementType ElementOf(InverterType type);

/// Writes inverter k - 1 into slot 2 k - 1 (k = 1 .. N + 1) and tank k into slot 2 k (k = 1 .. N)
/// and sets NumElements. The slots have to be cleared before: a tank or inverter type that does not
/// exist is reported once and leaves its slots as they are.
void EmitLadder(FilterDesign& design, const CoupledBand& band, const TankList& tanks,
                const InverterList& inverters, const MessageCallback& report);

}  // namespace ladderwise
