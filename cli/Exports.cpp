// Exports by the command line.
#include "cli/Exports.h"

namespace ladderwise {

namespace {

ExportOptions OptionsOf(const ExportArguments& arguments) {
    ExportOptions options = arguments.Options;
    options.Reference = arguments.Reference.value_or(options.Reference);
    options.For = arguments.NetlistFor.value_or(options.For);
    return options;
}

ExportSource SourceOf(const Calculation& calculation) {
    const WorstCaseResult& worst = calculation.WorstCase;
    return {calculation.Design, calculation.Quantities, {worst.LowDb, worst.HighDb}, worst.Runs};
}

}  // namespace

std::string ExportUsageError(const ExportArguments& arguments, const Calculation& calculation) {
    if (!arguments.Any()) return {};
    const FilterDesign& design = calculation.Design;
    const ExportOptions options = OptionsOf(arguments);
    if (!options.Points.AsSweep()) {
        const std::string fault = FaultOf(RangeOf(ExportKind::Touchstone, options.Points, design));
        if (!fault.empty()) return "--from, --to, --points: " + fault;
    }
    if (options.Runs > calculation.WorstCase.Runs)
        return calculation.WorstCase.Runs == 0
                   ? "--touchstone-runs needs a worst case: --set worst-case=on"
                   : "--touchstone-runs: the worst case has " +
                         std::to_string(calculation.WorstCase.Runs) + " runs";
    const std::string fault = ExportFault(design);
    return fault.empty() ? fault : "nothing to export: " + fault;
}

bool WriteExports(const ExportArguments& arguments, const Calculation& calculation,
                  const std::vector<ElementList>& runs, const OutputCallback& write) {
    const ExportOptions options = OptionsOf(arguments);
    const ExportSource source = SourceOf(calculation);
    bool written = true;
    for (const auto& [kind, file] : arguments.Files) {
        written = write(file, ExportText(kind, options, source)) && written;
        if (kind != ExportKind::Touchstone) continue;
        int run = 0;
        for (const ElementList& ladder : runs) {
            ++run;
            written =
                write(RunFile(file, run), RunText(options, calculation.Design, ladder, run)) &&
                written;
        }
    }
    return written;
}

}  // namespace ladderwise
