// The writer of netlists.
#include "exchange/Netlist.h"

#include <algorithm>
#include <cmath>

#include "exchange/SpiceCircuit.h"
#include "numbers/Matherrmain.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

/// An open circuit's voltage of this many volts makes V(out) the transfer: H = 2 V / E of equal
/// ends.
constexpr double SourceVolts = 2.0;

/// Below this part of the sweep's start the loss of a coil no longer falls; at 0 Hz, where a
/// simulator finds its operating point, it must not vanish.
constexpr double SkinFloor = 0.5;

/// Commands that are comments to all other simulators: a table in batch mode, else a plot.
constexpr const char* NgspiceCommands =
    "*#run\n*#if $?batchmode\n*#print v(out)\n*#else\n*#plot vdb(out)\n*#end\n";

constexpr const char* SubcircuitName = "ladderwise";

std::string PartLine(const SpicePart& part, const FilterDesign& design,
                     const NetlistOptions& options) {
    const std::string nodes = part.Name + " " + part.A + " " + part.B + " ";
    const std::string value = ExactNumber(part.Value);
    const bool ngspice = options.For == SpiceDialect::Ngspice;
    switch (part.Kind) {
        case SpiceKind::Inductor:
            return nodes + value + (ngspice ? "" : " Rser=0");
        case SpiceKind::SkinResistor:
            if (!ngspice) return nodes + value;
            return nodes + "R='" + value + "*sqrt(max(hertz," +
                   ExactNumber(SkinFloor * options.Sweep.From) + ")/" + ExactNumber(design.F0) +
                   ")'";
        case SpiceKind::Line:
            return part.Name + " " + part.A + " 0 " + part.B + " 0 Z0=" + value +
                   " TD=" + ExactNumber(part.Delay);
        case SpiceKind::Resistor:
        case SpiceKind::Capacitor:
        case SpiceKind::Wire:
            break;
    }
    return nodes + value;
}

std::string SweepLine(const FrequencyRange& sweep) {
    const std::string ends = " " + ExactNumber(sweep.From) + " " + ExactNumber(sweep.To) + "\n";
    if (!sweep.Logarithmic || !(sweep.To > sweep.From))
        return ".ac lin " + std::to_string(sweep.Points) + ends;
    const double perDecade = (sweep.Points - 1) / std::log10(sweep.To / sweep.From);
    return ".ac dec " + std::to_string(std::max(1L, std::lround(perDecade))) + ends;
}

/// What a reader of the netlist has to know.
std::string NetlistComments(const FilterDesign& design, const SpiceCircuit& circuit,
                            const NetlistOptions& options) {
    std::string text;
    const std::vector<std::string> lines = DesignComments(design);
    for (const std::string& line : lines)
        text += "* " + line + "\n";
    const auto isSkin = [](const SpicePart& part) { return part.Kind == SpiceKind::SkinResistor; };
    if (options.For == SpiceDialect::Ltspice &&
        std::any_of(circuit.Parts.begin(), circuit.Parts.end(), isSkin))
        text +=
            "* The inductors' series resistances are those at F0; in the design they grow with "
            "the root of the frequency.\n";
    if (!options.Subcircuit && design.RSource == design.RLoad)
        text += "* V(out) is S21.\n";
    else if (!options.Subcircuit)
        text += "* S21 is V(out) times " + ExactNumber(GuardedSqrt(design.RSource / design.RLoad)) +
                ".\n";
    for (const std::string& remark : circuit.Remarks)
        text += "* " + remark + ".\n";
    return text;
}

}  // namespace

FrequencyRange SweepOf(const FilterDesign& design) {
    return {design.SweepFreqs.front(), design.SweepFreqs.back(), NumSweepPoints,
            design.SweepType != SweepType::Linear};
}

std::string NetlistText(const FilterDesign& design, const NetlistOptions& options) {
    if (!ExportFault(design).empty()) return {};
    const SpiceCircuit circuit = CircuitOf(design, !options.Subcircuit, options.Subcircuit);
    std::string text = NetlistComments(design, circuit, options);
    if (options.Subcircuit) {
        text += std::string(".subckt ") + SubcircuitName + " in out\n";
    } else {
        // Without a part in the line the only node is "out".
        const bool hasIn =
            std::any_of(circuit.Parts.begin(), circuit.Parts.end(),
                        [](const SpicePart& part) { return part.A == "in" || part.B == "in"; });
        text += "Vsource src 0 DC 0 AC " + ExactNumber(SourceVolts) + "\nRsource src " +
                (hasIn ? "in " : "out ") + ExactNumber(design.RSource) + "\n";
    }
    for (const SpicePart& part : circuit.Parts)
        text += PartLine(part, design, options) + "\n";
    if (options.Subcircuit) return text + ".ends " + SubcircuitName + "\n";
    text += "Rload out 0 " + ExactNumber(design.RLoad) + "\n" + SweepLine(options.Sweep);
    if (options.For == SpiceDialect::Ngspice) text += NgspiceCommands;
    return text + ".end\n";
}

}  // namespace ladderwise
