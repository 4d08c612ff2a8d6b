// A design that is kept for comparison: its inputs, its ladder, its response over its own sweep and
// its figures. No Qt.
#pragma once

#include <string>

#include "files/FileReadSave.h"
#include "limits/LimitMargin.h"
#include "pipeline/Calculation.h"
#include "pipeline/ResultsText.h"

namespace ladderwise {

/// All of a calculated design that a comparison needs.
struct ReferenceDesign {
    DesignRecord Record{};  ///< its inputs, as a file would hold them
    /// As it stood: the ladder with what was changed by hand, its own sweep frequencies, response
    /// and pulse time step.
    FilterDesign Design{};
    DisplayQuantities Quantities{};  ///< at those frequencies, the pulse included
    ResponseResults Results{};
    HeldParts Held{};  ///< no part of a record
    /// What its calculation had and left beside the design: values changed by hand belong to these.
    DesignInputs UsedInputs{};
    ElementList IdealElements{};
    std::uint64_t SynthesisMathErrors = 0;
    std::vector<PartsRemark> Remarks{};
};

/// "Set Ref": the nominal design of a finished calculation. Its pulse is calculated whether the
/// plot shows one or not: the trace may be asked for later.
ReferenceDesign StoreReference(const Calculation& calculation, const MessageCallback& report);

/// "Exhange Ref": the inputs of the reference are loaded as from a file, and the design in hand
/// becomes the reference, values changed by hand included. A full calculation has to follow. Doing
/// so twice returns to the first design.
void ExchangeReference(ReferenceDesign& reference, Calculation& calculation,
                       const MessageCallback& report);

/// Analyses the reference ladder between the terminations and over the sweep in hand, and takes the
/// first four bytes of the fresh transfer and input reflection into the stored arrays. The traces
/// of the reference stay those stored with it; the analysis of the design in hand is not touched.
void RefreshReference(ReferenceDesign& reference, const Calculation& calculation,
                      const MessageCallback& report);

/// Name in the legend: "Ref: 5 Pole Chebyshev LPF", and the range of its sweep where that is
/// another one than the plot's, since nothing is known of the reference outside of it.
std::string ReferenceName(const ReferenceDesign& reference, const FilterDesign& design);

/// A figure of the design in hand and the same of the reference; empty where one has none.
struct ComparedResult {
    std::string Name;
    std::string OfDesign;
    std::string OfReference;
};

/// The figures side by side, in the order of DescribeResults. What F0 and bandwidth they refer to
/// stands before them: each design's figures are those about its own.
std::vector<ComparedResult> CompareResults(const FilterDesign& design,
                                           const ResponseResults& results,
                                           const ReferenceDesign& reference);

/// The rows of the results of a design, with those of a reference beside them, if there is one.
std::vector<ComparedResult> ResultRows(const FilterDesign& design, const ResponseResults& results,
                                       const ReferenceDesign* reference);

/// How something measured keeps limits.
struct NamedReport {
    std::string Name;
    LimitReport Report{};
};

/// What became of limits as rows of the results: all of them together, and each; beside the
/// design's those of a reference, if there is one, and below them those of what was measured.
std::vector<ComparedResult> CompareLimits(const LimitReport& design, const LimitReport* reference,
                                          const std::vector<NamedReport>& measured);
std::vector<ComparedResult> CompareEachLimit(const LimitReport& design,
                                             const LimitReport* reference,
                                             const std::vector<NamedReport>& measured);

}  // namespace ladderwise
