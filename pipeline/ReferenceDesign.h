// A design that is kept for comparison: its inputs, its ladder and its response. No Qt.
#pragma once

#include <optional>
#include <string>

#include "files/FileReadSave.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// All of a calculated design that a comparison needs; the arrays are those of its own sweep.
struct ReferenceDesign {
    DesignRecord Record{};   ///< its inputs, as a file would hold them
    ElementList Elements{};  ///< with what was changed by hand
    std::optional<ElementList> CalculatedElements{};
    int NumElements = 0;
    DisplayQuantities Quantities{};
    SweepResponse Response{};
    double SweepF1 = 0.0;  ///< Hz
    double SweepF2 = 0.0;  ///< Hz
    SweepType Sweep = SweepType::OneDecade;
    std::string Title;
};

/// "Set Ref": the nominal design of a finished calculation.
ReferenceDesign StoreReference(const Calculation& calculation);

/// "Exhange Ref": the inputs of the reference are loaded as from a file, and the design in hand
/// becomes the reference, values changed by hand included. A full calculation has to follow. Doing
/// so twice returns to the first design.
void ExchangeReference(ReferenceDesign& reference, Calculation& calculation);

/// Analyses the reference ladder between the terminations and over the sweep in hand, and takes the
/// first four bytes of the fresh transfer and input reflection into the stored arrays. The traces
/// of the reference stay those stored with it; the analysis of the design in hand is not touched.
void RefreshReference(ReferenceDesign& reference, const Calculation& calculation,
                      const MessageCallback& report);

/// Name in the legend: "Ref: 5 Pole Chebyshev LPF", and its sweep where that is another one, since
/// the reference is drawn point by point.
std::string ReferenceName(const ReferenceDesign& reference, const FilterDesign& design);

}  // namespace ladderwise
