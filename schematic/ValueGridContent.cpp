// Formats the ladder's values for the value grid.
#include "schematic/ValueGridContent.h"

#include <algorithm>

#include "design/Designators.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int cellDigits = 2;
constexpr int toolTipDigits = 5;

}  // namespace

GridCell CellOf(const CircuitElement& element, int row) {
    const ValueKind kind = InfoOf(element.Type).Values[static_cast<std::size_t>(row)];
    if (kind == ValueKind::Unused) return {};
    const double value = element.Value(row);
    // Parts have powers of ten to be typed over; a line's unit tells what the number means.
    const bool part = kind == ValueKind::Inductance || kind == ValueKind::Capacitance;
    GridCell cell;
    cell.Text = part && !(value > NotUsedLimit) ? FormatEngineering(value, cellDigits)
                                                : FormatWithPrefix(value, cellDigits, UnitOf(kind));
    cell.ToolTip =
        std::string(SymbolOf(kind)) + " = " + FormatWithPrefix(value, toolTipDigits, UnitOf(kind));
    return cell;
}

std::vector<GridColumn> BuildValueGrid(const FilterDesign& design) {
    std::vector<GridColumn> columns(static_cast<std::size_t>(SlotsInUse(design)));
    for (std::size_t k = 0; k < columns.size(); ++k) {
        for (int row = 0; row < ValueGridRows; ++row) {
            GridCell& cell = columns[k][static_cast<std::size_t>(row)];
            cell = CellOf(design.Elements[k + 1], row);
            cell.Edited = IsEdited(design, static_cast<int>(k) + 1, row);
            if (cell.Edited) cell.ToolTip += ", edited by hand";
        }
    }
    return columns;
}

bool IsRowUsed(const std::vector<GridColumn>& columns, int row) {
    return std::any_of(columns.begin(), columns.end(), [row](const GridColumn& column) {
        return !column[static_cast<std::size_t>(row)].Text.empty();
    });
}

int RowsInUse(const std::vector<GridColumn>& columns) {
    constexpr int fewest = 2;
    int rows = ValueGridRows;
    while (rows > fewest && !IsRowUsed(columns, rows - 1))
        --rows;
    return rows;
}

std::string PartsTableText(const FilterDesign& design) {
    std::string table = "Part\tValue\tExact\n";
    const auto designators = DesignatorsOf(design);
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        const CircuitElement& element = design.Elements[static_cast<std::size_t>(slot)];
        for (int row = 0; row < ValueGridRows; ++row) {
            const ValueKind kind = InfoOf(element.Type).Values[static_cast<std::size_t>(row)];
            if (kind == ValueKind::Unused) continue;
            const double value = element.Value(row);
            const std::string& name =
                designators[static_cast<std::size_t>(slot)][static_cast<std::size_t>(row)];
            const auto add = [&](const std::string& part, double one) {
                table += part + "\t" + FormatWithPrefix(one, cellDigits, UnitOf(kind)) + "\t" +
                         FormatGeneral(one) + "\n";
            };
            const PairedPart* const pair = PairAt(design, {slot, row});
            add(pair ? name + "a" : name, pair ? pair->Larger : value);
            if (pair) add(name + "b", pair->Smaller);
        }
    }
    return table;
}

}  // namespace ladderwise
