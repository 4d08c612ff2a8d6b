// Tank values as a list and their keys.
#include "pipeline/TankValues.h"

#include <algorithm>
#include <vector>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

/// The bounds of the keys: narrower than those of the box.
const BoxLimits keyLimits = {"0.001", "50", "10000"};
constexpr double SmallestWithTwoDecimals = 0.1;
constexpr int ListDigits = 15;  ///< significant, of a value in use

}  // namespace

std::optional<std::string> TypeTankValues(DesignInputs& inputs, std::string_view list) {
    std::vector<std::string> items;
    for (std::size_t start = 0; start <= list.size();) {
        const std::size_t comma = std::min(list.find(',', start), list.size());
        items.emplace_back(list.substr(start, comma - start));
        start = comma + 1;
    }
    if (items.size() > MaxTanks)
        return "tank-values takes at most " + std::to_string(MaxTanks) + " values, not " +
               std::to_string(items.size());
    for (std::size_t i = 0; i < items.size(); ++i)
        inputs.Box(TankValueId(static_cast<int>(i) + 1)).Type(items[i]);
    return {};
}

std::string TankValueList(const FilterDesign& design) {
    std::string list;
    for (int tank = 1; tank <= design.NumPoles; ++tank) {
        std::string value = FormatPlain(design.DirectCoupled.TankValues[tank - 1], ListDigits);
        std::replace(value.begin(), value.end(), ',', '.');  // the comma parts the list
        list += (tank > 1 ? "," : "") + value;
    }
    return list;
}

void FillEmptyTankValues(DesignInputs& inputs) {
    for (int tank = 1; tank <= MaxTanks; ++tank) {
        const InputId id = TankValueId(tank);
        NumberBox& box = inputs.Box(id);
        if (box.Text.find_first_not_of(" \t") == std::string::npos)
            box.Type(RowOf(id, inputs).Initial);
    }
}

void StepTankValue(DesignInputs& inputs, const FilterDesign& design, int tank, bool larger,
                   const MessageCallback& report) {
    UnderstandUnit(TankValueId(tank), inputs);
    NumberBox& box = inputs.Box(TankValueId(tank));
    const double read =
        EditBoxToDouble(box, keyLimits.Minimum, keyLimits.Default, keyLimits.Maximum, report);
    const double factor = 1.0 + design.KeyStepFraction;
    const double value = larger ? read * factor : read / factor;
    box.WriteText(
        value < SmallestWithTwoDecimals ? FormatPlain(value, BoxDigits) : FormatFixed(value, 2),
        value);
}

void SetAllTanks(DesignInputs& inputs, int tank) {
    const NumberBox box = inputs.Box(TankValueId(tank));
    for (int other = 1; other <= MaxTanks; ++other)
        inputs.Box(TankValueId(other)) = box;
}

}  // namespace ladderwise
