// The Norton-transformed band-pass within the calculation, step by step, and what the controls of
// its window do: boxes and choices to A, K and M, the form that a structure asks for, the ladder,
// the search. No Qt.
#pragma once

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// Reads A, K and, for 5 poles, M, after ReadInputs. Poles other than 3 and 5 become 3, and the box
/// says so. With 3 poles M plays no part, and of other filters none of them does: what such a box
/// says is taken as it is, without a mark.
void ReadNortonInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report);

/// Before the prototype: the form of the structure, series resonators first for a T, shunt ones for
/// a pi; and one message if the terminations, which decide the form of a Butterworth or Chebyshev
/// prototype with unequal ends, ask for the other form.
void SetNortonForm(FilterDesign& design, const MessageCallback& report);

/// After the prototype: the canonical band-pass, kept in NortonBaseElements, and its transform.
void BuildNortonLadder(FilterDesign& design);

/// While "Auto Optimize" is on, which no change outside the Norton window obeys: looks for the K
/// and M of its search and keeps them beside the ones in use, in NortonResult.
void LookForEvenest(const DesignInputs& inputs, FilterDesign& design);

/// "K 2.00 is not optimised, although Auto Optimize is on: ... gives K 12.82.": that the last
/// Norton ladder is not the optimised one, and how to get it. Empty if it is, or nobody wants it.
std::string NortonSearchText(const FilterDesign& design);

/// Why the last Norton ladder cannot be built, or does not do what is asked for; empty if it can.
std::string NortonFault(const FilterDesign& design);

/// A press of a spin button of the box A, K or M: reads the box, adds the step, holds A at no less
/// than 1 and K and M at no less than 1.001, and writes the boxes back with two decimals.
void StepNortonInput(InputId id, double step, DesignInputs& inputs, FilterDesign& design,
                     const MessageCallback& report);

/// Searches K and M for the ladder that the boxes and choices ask for, and writes both boxes with
/// two decimals; M reads "1.00" for 3 poles. Nothing else is touched or marked.
void OptimizeNorton(DesignInputs& inputs, const FilterDesign& design);

/// What is used in the Norton window.
enum class NortonControl {
    SpinButton,  ///< or the type menu, which acts like one
    OptimizeButton,
    AutoOptimizeBox,
    GoalButton,
    Box,  ///< typed into; another A acts like a spin button, but a search would undo another K or M
};

/// Runs the search if the control asks for it at the present state of "Auto Optimize". False if the
/// control does nothing at all then, not even a calculation.
bool ApplyNortonControl(NortonControl control, DesignInputs& inputs, const FilterDesign& design);

}  // namespace ladderwise
