// Exports by the command line.
#include "cli/Exports.h"

#include <memory>

#include "exchange/SchematicFile.h"

namespace ladderwise {

namespace {

/// Points of an export whose ends are given but not their number: with both ends steps of a
/// thousandth.
constexpr int UsualPoints = 1001;

bool HasRange(const ExportArguments& arguments) {
    return arguments.From || arguments.To || arguments.Points || arguments.Logarithmic;
}

FrequencyRange RangeOf(const ExportArguments& arguments, const FilterDesign& design) {
    FrequencyRange range = SweepOf(design);
    if (!HasRange(arguments)) return range;
    range.From = arguments.From.value_or(range.From);
    range.To = arguments.To.value_or(range.To);
    range.Points = arguments.Points.value_or(UsualPoints);
    range.Logarithmic = arguments.Logarithmic.value_or(false);
    return range;
}

/// "filter.s2p" of run 3 is "filter-run3.s2p".
std::string RunFile(const std::string& file, std::size_t run) {
    const std::size_t dot = file.find_last_of("./\\");
    const bool hasEnding = dot != std::string::npos && dot > 0 && file[dot] == '.';
    const std::size_t at = hasEnding ? dot : file.size();
    return file.substr(0, at) + "-run" + std::to_string(run) + file.substr(at);
}

bool WriteTouchstone(const ExportArguments& arguments, const FilterDesign& design,
                     const std::vector<ElementList>& runs, const OutputCallback& write) {
    std::vector<double> freqs(design.SweepFreqs.begin(), design.SweepFreqs.end());
    if (HasRange(arguments)) freqs = PointsOf(RangeOf(arguments, design));
    TouchstoneOptions options;
    options.Version = arguments.Version;
    options.Reference = arguments.Reference.value_or(options.Reference);
    bool written = write(arguments.TouchstoneFile, TouchstoneText(design, freqs, options));
    const auto varied = std::make_unique<FilterDesign>(design);
    for (std::size_t run = 1; run <= runs.size(); ++run) {
        varied->Elements = runs[run - 1];
        varied->CalculatedElements = varied->Elements;  // drawn, not edited
        options.WorstCaseRun = static_cast<int>(run);
        written = write(RunFile(arguments.TouchstoneFile, run),
                        TouchstoneText(*varied, freqs, options)) &&
                  written;
    }
    return written;
}

}  // namespace

std::string ExportUsageError(const ExportArguments& arguments, const Calculation& calculation) {
    if (!arguments.Any()) return {};
    const FilterDesign& design = calculation.Design;
    if (HasRange(arguments)) {
        const std::string fault = FaultOf(RangeOf(arguments, design));
        if (!fault.empty()) return "--from, --to, --points: " + fault;
    }
    if (arguments.TouchstoneRuns > calculation.WorstCase.Runs)
        return calculation.WorstCase.Runs == 0
                   ? "--touchstone-runs needs a worst case: --set worst-case=on"
                   : "--touchstone-runs: the worst case has " +
                         std::to_string(calculation.WorstCase.Runs) + " runs";
    const std::string fault = ExportFault(design);
    return fault.empty() ? fault : "nothing to export: " + fault;
}

bool WriteExports(const ExportArguments& arguments, const Calculation& calculation,
                  const std::vector<ElementList>& runs, const OutputCallback& write) {
    const FilterDesign& design = calculation.Design;
    const FrequencyRange range = RangeOf(arguments, design);
    bool written = true;
    if (!arguments.TouchstoneFile.empty())
        written = WriteTouchstone(arguments, design, runs, write);
    if (!arguments.NetlistFile.empty())
        written = write(arguments.NetlistFile,
                        NetlistText(design, {arguments.NetlistFor.value_or(SpiceDialect::Ngspice),
                                             arguments.Subcircuit, range})) &&
                  written;
    if (!arguments.SchematicFile.empty())
        written = write(arguments.SchematicFile, SchematicFileText(design, range)) && written;
    if (!arguments.CsvFile.empty())
        written = write(arguments.CsvFile,
                        SweepTable(design, calculation.Quantities,
                                   {calculation.WorstCase.LowDb, calculation.WorstCase.HighDb},
                                   arguments.Separator)) &&
                  written;
    if (!arguments.PartsListFile.empty())
        written = write(arguments.PartsListFile, PartsList(design, arguments.Separator)) && written;
    return written;
}

}  // namespace ladderwise
