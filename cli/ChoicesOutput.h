// The list of filters that meet the limits, as JSON and as a table for people.
#pragma once

#include <string>

#include "choosing/FilterChoices.h"
#include "cli/JsonPieces.h"

namespace ladderwise {

/// The members "choices", "nearest_misses" and "fewest_parts" (docs/json.md).
JsonMembers ChoicesMembers(const ChoosingRequest& request, const FilterList& list);

/// One line for each row that no other is better than, and what they are; where nothing meets the
/// limits the nearest misses with what has to be relaxed.
std::string ChoicesTable(const ChoosingRequest& request, const FilterList& list);

}  // namespace ladderwise
