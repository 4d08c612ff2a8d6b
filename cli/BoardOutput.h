// What a measured board says, as a table for people and as the JSON's member; docs/json.md
// describes that.
#pragma once

#include <string>

#include "measured/BoardReading.h"

namespace ladderwise {

/// The unknowns named in "q,coil-c,cap-l,cap-r,ports" are free, the others held; "none" holds all.
/// Gives the reason if a name is none of them, else an empty text.
std::string ReadFreedom(const std::string& names, BoardFreedom& freedom);

/// One JSON object.
std::string BoardObject(const BoardReading& reading);

/// What was found, a line for each part with its interval, and what to turn.
std::string BoardTable(const BoardReading& reading, const std::string& file);

}  // namespace ladderwise
