// Where the notes come from: the parts of the ladder, and the design as a whole. No Qt.
#pragma once

#include <vector>

#include "pipeline/Notes.h"

namespace ladderwise {

/// Values that cannot be built and parts that are no more than a wire, each kind of fault in one
/// note with the designators of all parts that have it and, where it is known, the cause. True if
/// the ladder cannot be built: something is wrong beside the wires that a factor of 1 leaves.
bool AddFaultyParts(const FilterDesign& design, std::vector<Note>& notes);

/// Parts that the draws of a worst case take for something else, because they are so large.
void AddNotVaried(const Calculation& calculation, std::vector<Note>& notes);

/// What the response is beside what was asked for: a prototype that is not at 3 dB at its corner,
/// the mismatch of unequal ends, coils too lossy for the width. Of a direct-coupled band-pass that
/// can be built (`buildable`) the pass band that misses what was asked for; and its end tanks. Of a
/// band-pass that has moved, with its parts as they are: how far, and why as far as it is known.
void AddResponseNotes(const Calculation& calculation, bool buildable, std::vector<Note>& notes);

}  // namespace ladderwise
