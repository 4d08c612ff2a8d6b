// Keeping, exchanging and naming the reference design.
#include "pipeline/ReferenceDesign.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "analysis/Circuitanalysis.h"
#include "analysis/PulseResponse.h"
#include "design/ChoiceNames.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

constexpr std::size_t RefreshedBytes = 4;  ///< of each array, at its beginning
constexpr int sweepDigits = 2;             ///< after the first, of the sweep's limits in the name
constexpr int figureDigits = 6;            ///< after the first, of F0 and bandwidth

std::string BasisText(double f) {
    return FormatWithPrefix(f, figureDigits, "Hz");
}

/// What the figures of a design refer to, then the figures.
ResultTexts FiguresOf(const FilterDesign& design, const ResponseResults& results) {
    ResultTexts texts = {{"Design", DesignTitle(design)}, {"Fo", BasisText(design.F0)}};
    if (HasBandWidth(design.PassType)) texts.emplace_back("BW", BasisText(design.BandWidth));
    const ResultTexts figures = DescribeResults(design, results);
    texts.insert(texts.end(), figures.begin(), figures.end());
    return texts;
}

}  // namespace

ReferenceDesign StoreReference(const Calculation& calculation, const MessageCallback& report) {
    ReferenceDesign stored{RecordOf(calculation),     calculation.Design,
                           calculation.Quantities,    ResultsOf(calculation.Design),
                           calculation.Inputs.Held,   calculation.UsedInputs,
                           calculation.IdealElements, calculation.SynthesisMathErrors,
                           calculation.Remarks};
    // The tables of the pulse in hand may be those of another F0.
    PulseWork work;
    CalcPulseResponse(stored.Design, PulseWidth, work, stored.Quantities.Pulse, report);
    return stored;
}

void ExchangeReference(ReferenceDesign& reference, Calculation& calculation,
                       const MessageCallback& report) {
    ReferenceDesign inHand = StoreReference(calculation, report);
    LoadRecord(reference.Record, calculation);
    calculation.Inputs.Held = reference.Held;
    // The calculation to follow discards what it finds in hand, with its own terminations and
    // inputs: Ctrl+B brings both back together.
    static_cast<DesignState&>(calculation.Design) = reference.Design;
    calculation.UsedInputs = reference.UsedInputs;
    calculation.IdealElements = reference.IdealElements;
    calculation.SynthesisMathErrors = reference.SynthesisMathErrors;
    calculation.Remarks = reference.Remarks;
    reference = std::move(inHand);
}

void RefreshReference(ReferenceDesign& reference, const Calculation& calculation,
                      const MessageCallback& report) {
    const auto work = std::make_unique<FilterDesign>(calculation.Design);
    work->Elements = reference.Design.Elements;
    work->NumElements = reference.Design.NumElements;
    AnalyseLadder(*work, calculation.Tables, report);
    std::memcpy(reference.Design.Response.TransferRe.data(), work->Response.TransferRe.data(),
                RefreshedBytes);
    std::memcpy(reference.Design.Response.ReflectionDb.data(), work->Response.ReflectionDb.data(),
                RefreshedBytes);
}

std::string ReferenceName(const ReferenceDesign& reference, const FilterDesign& design) {
    const FilterDesign& own = reference.Design;
    const std::string name = "Ref: " + DesignTitle(own);
    if (own.SweepF1 == design.SweepF1 && own.SweepF2 == design.SweepF2) return name;
    const bool seen = own.SweepF1 < design.SweepF2 && design.SweepF1 < own.SweepF2;
    return name + (seen ? ", swept " : ", outside this plot: ") +
           FormatWithPrefix(own.SweepFreqs.front(), sweepDigits, "Hz") + " to " +
           FormatWithPrefix(own.SweepF2, sweepDigits, "Hz");
}

std::vector<ComparedResult> CompareResults(const FilterDesign& design,
                                           const ResponseResults& results,
                                           const ReferenceDesign& reference) {
    std::vector<ComparedResult> rows;
    for (const auto& [name, value] : FiguresOf(design, results))
        rows.push_back({name, value, {}});
    std::ptrdiff_t next = 0;  // where a figure that only the reference has comes in
    for (const auto& figure : FiguresOf(reference.Design, reference.Results)) {
        auto row = std::find_if(rows.begin(), rows.end(),
                                [&](const auto& other) { return other.Name == figure.first; });
        if (row == rows.end()) row = rows.insert(rows.begin() + next, {figure.first, {}, {}});
        row->OfReference = figure.second;
        next = row - rows.begin() + 1;
    }
    return rows;
}

std::vector<ComparedResult> ResultRows(const FilterDesign& design, const ResponseResults& results,
                                       const ReferenceDesign* reference) {
    if (reference) return CompareResults(design, results, *reference);
    std::vector<ComparedResult> rows;
    for (const auto& [name, value] : DescribeResults(design, results))
        rows.push_back({name, value, {}});
    return rows;
}

std::vector<ComparedResult> CompareLimits(const LimitReport& design, const LimitReport* reference,
                                          const std::vector<NamedReport>& measured) {
    std::vector<ComparedResult> rows;
    if (design.Rows.empty()) return rows;
    rows.push_back({"limits", SummaryOf(design), reference ? SummaryOf(*reference) : ""});
    for (const NamedReport& other : measured)
        rows.push_back({"limits, " + other.Name, SummaryOf(other.Report), ""});
    return rows;
}

std::vector<ComparedResult> CompareEachLimit(const LimitReport& design,
                                             const LimitReport* reference,
                                             const std::vector<NamedReport>& measured) {
    std::vector<ComparedResult> rows;
    for (std::size_t i = 0; i < design.Rows.size(); ++i) {
        const std::string name = ShortTextOf(design.Rows[i].Line);
        rows.push_back({name, TextOf(design.Rows[i]), reference ? TextOf(reference->Rows[i]) : ""});
        for (const NamedReport& other : measured)
            rows.push_back({name + ", " + other.Name, TextOf(other.Report.Rows[i]), ""});
    }
    return rows;
}

}  // namespace ladderwise
