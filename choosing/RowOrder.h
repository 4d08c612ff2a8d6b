// What is better among rows, misses and what came near. No Qt.
#pragma once

#include <set>
#include <vector>

#include "choosing/FilterChoices.h"

namespace ladderwise {

/// No more inductors and no more parts; Fewer: and less of one.
bool AtLeastAsFew(const PartCounts& a, const PartCounts& b);
bool Fewer(const PartCounts& a, const PartCounts& b);

/// The fewest inductors and parts of both kinds of rows, into the list.
void CountFewest(FilterList& list);

/// A row is folded if one of those before it is at least as good in parts, cost, margin and loss at
/// the same kind of load. Rows that are alike in all leave the first.
void FoldDominated(std::vector<FilterChoice>& choices);

/// The most that a limit has to yield, dB; of delays ten times the share.
double LargestRelaxed(const FilterChoice& row);

/// Of every group that is not `known` what came nearest in the last search and not below
/// `leastMarginDb`, those of low order first.
std::vector<ChoosingMemory::Remembered> NearestOfGroups(
    const ChoosingMemory& memory, const std::set<ChoosingMemory::Group>& known,
    double leastMarginDb);

}  // namespace ladderwise
