// The ladder as a schematic file (.asc) for a drawing simulator. No Qt, no disk.
#pragma once

#include <string>

#include "exchange/Netlist.h"

namespace ladderwise {

/// The ladder drawn with its source, load and analysis: series arms on a line from the left to the
/// right, shunt arms below it. Values have nine digits; the parasitics of real parts are attributes
/// of the parts themselves, with the inductors' loss at F0. V(out) is as in NetlistText. Empty
/// after ExportFault.
std::string SchematicFileText(const FilterDesign& design, const FrequencyRange& sweep);

}  // namespace ladderwise
