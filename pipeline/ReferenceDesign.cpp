// Keeping, exchanging and naming the reference design.
#include "pipeline/ReferenceDesign.h"

#include <cstring>
#include <memory>

#include "analysis/Circuitanalysis.h"
#include "design/ChoiceNames.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

constexpr std::size_t RefreshedBytes = 4;  ///< of each array, at its beginning
constexpr int sweepDigits = 2;             ///< decimals of the sweep's limits in the name

}  // namespace

ReferenceDesign StoreReference(const Calculation& calculation) {
    const FilterDesign& design = calculation.Design;
    return {RecordOf(calculation), design.Elements,        design.CalculatedElements,
            design.NumElements,    calculation.Quantities, design.Response,
            design.SweepF1,        design.SweepF2,         design.SweepType,
            DesignTitle(design)};
}

void ExchangeReference(ReferenceDesign& reference, Calculation& calculation) {
    ReferenceDesign inHand = StoreReference(calculation);
    LoadRecord(reference.Record, calculation);
    calculation.Design.Elements = reference.Elements;
    calculation.Design.CalculatedElements = reference.CalculatedElements;
    calculation.Design.NumElements = reference.NumElements;
    reference = std::move(inHand);
}

void RefreshReference(ReferenceDesign& reference, const Calculation& calculation,
                      const MessageCallback& report) {
    const auto work = std::make_unique<FilterDesign>(calculation.Design);
    work->Elements = reference.Elements;
    work->NumElements = reference.NumElements;
    AnalyseLadder(*work, calculation.Tables, report);
    std::memcpy(reference.Response.TransferRe.data(), work->Response.TransferRe.data(),
                RefreshedBytes);
    std::memcpy(reference.Response.ReflectionDb.data(), work->Response.ReflectionDb.data(),
                RefreshedBytes);
}

std::string ReferenceName(const ReferenceDesign& reference, const FilterDesign& design) {
    const std::string name = "Ref: " + reference.Title;
    if (reference.Sweep == design.SweepType && reference.SweepF1 == design.SweepF1 &&
        reference.SweepF2 == design.SweepF2)
        return name;
    return name + ", swept " + FormatWithPrefix(reference.SweepF1, sweepDigits, "Hz") + " to " +
           FormatWithPrefix(reference.SweepF2, sweepDigits, "Hz");
}

}  // namespace ladderwise
