// Design files and coefficients files of the console program.
#pragma once

#include <string>

#include "pipeline/Calculation.h"

namespace ladderwise {

/// Puts a design file's inputs into the calculation. Gives the reason if it cannot be read or is no
/// design file; nothing is changed then.
std::string OpenDesignFile(Calculation& calculation, const std::string& path);

/// Writes the inputs as a design file. Gives the reason if that failed.
std::string SaveDesignFile(const Calculation& calculation, const std::string& path,
                           const MessageCallback& report);

/// Chooses the response of a coefficients file. Gives the reason if the file cannot be read or
/// holds no valid table.
std::string UseCoefficientsFile(Calculation& calculation, const std::string& path);

}  // namespace ladderwise
