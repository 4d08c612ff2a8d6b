// The ten boxes of the tank values as a list: for the console, and for the keys of the window's
// grid. No Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// The box of tank 1 .. MaxTanks.
constexpr InputId TankValueId(int tank) {
    return static_cast<InputId>(static_cast<int>(InputId::TankValue1) + tank - 1);
}

/// Types a comma list into the boxes from tank 1 on; the boxes beyond it stay as they are. Gives
/// the reason if the list is longer than MaxTanks; nothing is changed then.
std::optional<std::string> TypeTankValues(DesignInputs& inputs, std::string_view list);

/// The values in use of tanks 1 .. NumPoles as a comma list, in the unit of the tanks.
std::string TankValueList(const FilterDesign& design);

/// Fills empty boxes with the initial value.
void FillEmptyTankValues(DesignInputs& inputs);

/// The keys F1 (smaller) and F2 (larger) on the value of a tank: reads it up to 10000, divides or
/// multiplies it by 1 + KeyStepFraction and writes it back with two decimals, or with three
/// significant digits where two decimals would not tell it.
void StepTankValue(DesignInputs& inputs, const FilterDesign& design, int tank, bool larger,
                   const MessageCallback& report);

/// Puts what stands in the box of a tank into the boxes of all ten.
void SetAllTanks(DesignInputs& inputs, int tank);

}  // namespace ladderwise
