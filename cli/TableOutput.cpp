// The part table as text.
#include "cli/TableOutput.h"

#include <algorithm>

#include "cli/Terminal.h"
#include "design/ChoiceNames.h"
#include "design/Connections.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Notes.h"
#include "pipeline/ResultsText.h"

namespace ladderwise {

namespace {

constexpr std::size_t resultNameWidth = 26;
constexpr int PartDigits = 4;  ///< decimals of the shown mantissa: five significant digits

const char* PartsText(PartChoice choice) {
    switch (choice) {
        case PartChoice::IdealParts:
            return "ideal parts";
        case PartChoice::RealParts:
            return "real parts";
        case PartChoice::DeEmbed:
            return "real parts, values adjusted for parasitics";
    }
    return "";
}

std::string Padded(std::string text, std::size_t width) {
    if (text.size() < width) text.resize(width, ' ');
    return text;
}

std::string SlotLine(const CircuitElement& element, int slot, const SlotDesignators& names,
                     std::size_t width) {
    const ElementInfo& info = InfoOf(element.Type);
    const std::string number = std::to_string(slot);
    std::string line = std::string(4 - number.size(), ' ') + number + "  " +
                       Padded(ConnectionText(element.Type, names), width);
    for (int row = 0; row < 4; ++row) {
        const ValueKind kind = info.Values[row];
        if (kind == ValueKind::Unused) continue;
        const std::string name = kind == ValueKind::Impedance ? SymbolOf(kind) : names[row];
        line += Padded(
            name + " = " + FormatWithPrefix(element.Value(row), PartDigits, UnitOf(kind)), 20);
    }
    return line.substr(0, line.find_last_not_of(' ') + 1) + "\n";
}

/// A line for each slot, the connections in a column as wide as the longest.
std::string SlotLines(const FilterDesign& design) {
    const auto names = DesignatorsOf(design);
    std::size_t width = std::string("Connection").size();
    for (int slot = 1; slot <= design.NumElements; ++slot)
        width = std::max(width, ConnectionText(design.Elements[slot].Type, names[slot]).size());
    width += 2;
    std::string text = "Slot  " + Padded("Connection", width) + "Values, source to load\n";
    for (int slot = 1; slot <= design.NumElements; ++slot)
        text += SlotLine(design.Elements[slot], slot, names[slot], width);
    return text;
}

}  // namespace

std::string TableText(const Calculation& calculation, const LimitReport& limits,
                      const std::vector<NamedReport>& measured) {
    const FilterDesign& design = calculation.Design;
    const auto shown = [](double value, const char* unit) {
        return FormatWithPrefix(value, PartDigits, unit);
    };
    const std::string order = OrderText(design);
    std::string text = DesignTitle(design);
    if (!order.empty()) text += ", " + order;
    text += "\nFo " + shown(design.F0, "Hz");
    if (design.PassType != PassType::LowPass && design.PassType != PassType::HighPass)
        text += ", bandwidth " + shown(design.BandWidth, "Hz");
    text += ", R source " + shown(design.RSource, "ohm") + ", R load " +
            shown(design.RLoad, "ohm") + ", " + PartsText(design.PartModel.Choice) +
            (design.StdLCValues ? ", standard values" : "") + "\n";
    if (design.NumElements > 0) text += SlotLines(design);
    for (const auto& [name, value] : DescribeResults(design, calculation.Results))
        text += Padded(name, resultNameWidth) + value + "\n";
    for (const auto& [name, value] : DescribeWorstCase(calculation.WorstCase))
        text += Padded(name, resultNameWidth) + value + "\n";
    const auto addLimits = [&text](const LimitReport& report, const std::string& of) {
        for (const LimitMargin& row : report.Rows)
            text += TextOf(row.Line) + of + ": " + TextOf(row) + "\n";
    };
    addLimits(limits, "");
    for (const NamedReport& other : measured)
        addLimits(other.Report, ", measured in " + other.Name);
    for (const Note& note : CollectNotes(calculation))
        if (!note.Idle) text += Printable(note.Text) + "\n";
    return text;
}

}  // namespace ladderwise
