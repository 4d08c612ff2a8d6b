// The exports of the console program: from the calculated design to files for other programs.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "cli/Arguments.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// Writes bytes under a name; false if that failed, which has then been said.
using OutputCallback = std::function<bool(const std::string& name, const std::string& bytes)>;

/// What the arguments ask for and this design cannot give: frequencies in the wrong order, runs
/// without a worst case. Empty if nothing; to be asked after the calculation.
std::string ExportUsageError(const ExportArguments& arguments, const Calculation& calculation);

/// Writes all exports that were asked for; `runs` are the ladders of the first worst-case runs.
/// False if a file was not written.
bool WriteExports(const ExportArguments& arguments, const Calculation& calculation,
                  const std::vector<ElementList>& runs, const OutputCallback& write);

}  // namespace ladderwise
