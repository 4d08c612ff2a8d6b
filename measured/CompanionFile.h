// The companion of a design file on the disk, as window and console open and save it. QtCore.
#pragma once

#include <string>

#include "design/Messages.h"
#include "exchange/DesignCompanion.h"

namespace ladderwise {

/// The companion of a design file (UTF-8), its measured files as absolute paths. Empty where there
/// is none; what is wrong with it is reported, as "Program Info" where only limits are.
DesignCompanion OpenCompanion(const std::string& designPath, const MessageCallback& report);

/// Writes the companion of a design file, or removes the one there if nothing is to be kept. Gives
/// the reason if that failed.
std::string SaveCompanion(DesignCompanion companion, const std::string& designPath);

}  // namespace ladderwise
