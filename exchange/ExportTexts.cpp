// Exports by kind.
#include "exchange/ExportTexts.h"

#include <memory>

#include "exchange/SchematicFile.h"

namespace ladderwise {

namespace {

/// Points where ends are given but not their number: with both ends steps of a thousandth.
constexpr int UsualPoints = 1001;

TouchstoneOptions TouchstoneOptionsOf(const ExportOptions& options, int run) {
    return {options.Version, options.Reference, run};
}

std::vector<double> FrequenciesOf(const ExportPoints& points, const FilterDesign& design) {
    if (points.AsSweep()) return {design.SweepFreqs.begin(), design.SweepFreqs.end()};
    return PointsOf(RangeOf(ExportKind::Touchstone, points, design));
}

}  // namespace

bool HasPoints(ExportKind kind) {
    return kind != ExportKind::Sweep && kind != ExportKind::PartsList;
}

FrequencyRange RangeOf(ExportKind kind, const ExportPoints& points, const FilterDesign& design) {
    FrequencyRange range = SweepOf(design);
    if (!HasPoints(kind) || points.AsSweep()) return range;
    range.From = points.From.value_or(range.From);
    range.To = points.To.value_or(range.To);
    range.Points = points.Points.value_or(UsualPoints);
    range.Logarithmic = points.Logarithmic.value_or(false);
    return range;
}

std::string ExportFaultOf(ExportKind kind, const ExportOptions& options,
                          const ExportSource& source) {
    const std::string fault = ExportFault(source.Design);
    if (!fault.empty()) return fault;
    if (kind == ExportKind::Touchstone && options.Runs > source.WorstCaseRuns)
        return source.WorstCaseRuns == 0
                   ? "there is no worst case"
                   : "the worst case has " + std::to_string(source.WorstCaseRuns) + " runs";
    return HasPoints(kind) ? FaultOf(RangeOf(kind, options.Points, source.Design)) : std::string();
}

std::string ExportText(ExportKind kind, const ExportOptions& options, const ExportSource& source) {
    if (!ExportFaultOf(kind, options, source).empty()) return {};
    const FilterDesign& design = source.Design;
    const FrequencyRange range = RangeOf(kind, options.Points, design);
    switch (kind) {
        case ExportKind::Touchstone:
            return TouchstoneText(design, FrequenciesOf(options.Points, design),
                                  TouchstoneOptionsOf(options, 0));
        case ExportKind::Netlist:
            return NetlistText(design, {options.For, options.Subcircuit, range});
        case ExportKind::Schematic:
            return SchematicFileText(design, range);
        case ExportKind::Sweep:
            return SweepTable(design, source.Quantities, source.Spread, options.Separator);
        case ExportKind::PartsList:
            return PartsList(design, options.Separator);
    }
    return {};
}

std::string RunText(const ExportOptions& options, const FilterDesign& design,
                    const ElementList& ladder, int run) {
    const auto varied = std::make_unique<FilterDesign>(design);
    varied->Elements = ladder;
    varied->CalculatedElements = ladder;  // drawn, not edited
    return TouchstoneText(*varied, FrequenciesOf(options.Points, design),
                          TouchstoneOptionsOf(options, run));
}

std::string RunFile(const std::string& file, int run) {
    const std::size_t dot = file.find_last_of("./\\");
    const bool hasEnding = dot != std::string::npos && dot > 0 && file[dot] == '.';
    const std::size_t at = hasEnding ? dot : file.size();
    return file.substr(0, at) + "-run" + std::to_string(run) + file.substr(at);
}

}  // namespace ladderwise
