// The texts of the value grid: one column per ladder slot, one row per element value. No Qt.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "design/FilterDesign.h"
#include "schematic/Shapes.h"

namespace ladderwise {

struct GridCell {
    std::string Text;     ///< short, as it stands in the cell; can be read back as a number
    bool Edited = false;  ///< changed by hand since the last calculation
    bool Held = false;    ///< its value is not chosen
    bool MayBeHeld = false;
    double Tolerance = 0.0;  ///< of a coil or capacitor, a fraction
    bool HasOwnTolerance = false;
    std::string ToolTip;  ///< symbol, six digits and unit: "L = 79.5775 nH"
};

/// Texts of column 0, top to bottom.
inline constexpr std::array<const char*, ValueGridRows> GridRowLabels = {"    Ind", "    Cap ",
                                                                         "    Ind", "    Cap "};

/// Rows 0 .. 3 of a slot hold its values 1 .. 4.
using GridColumn = std::array<GridCell, ValueGridRows>;

/// The cell of one value (row 0 .. 3). Inductances and capacitances stand in engineering notation
/// ("79.6E-9"), lines with their unit ("50.0 ohm", "90.0 deg"). A value that the type does not use
/// gives empty texts; a used one above NotUsedLimit reads "Not Used".
GridCell CellOf(const CircuitElement& element, int row);

/// The columns of slots 1 .. SlotsInUse; entry k - 1 is slot k, column k of the grid.
std::vector<GridColumn> BuildValueGrid(const FilterDesign& design);

/// Whether any column has a value in this row (0 .. 3).
bool IsRowUsed(const std::vector<GridColumn>& columns, int row);

/// The first rows that are shown: those up to the last one with a value, two at least.
int RowsInUse(const std::vector<GridColumn>& columns);

/// The parts from the source to the load, one a line with tabs between the columns: designator,
/// value with prefix, value in SI units with all its digits.
std::string PartsTableText(const FilterDesign& design);

}  // namespace ladderwise
