// The writers of tables for spreadsheets.
#include "exchange/SeparatedText.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <vector>

#include "analysis/BoardDraws.h"
#include "design/Connections.h"
#include "design/ElementNetworks.h"
#include "numbers/Formatfunctions.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr int ListedDigits = 4;       ///< decimals of a value's mantissa: five significant digits
constexpr int PercentDigits = 4;      ///< significant digits of a percentage and of Q
constexpr double AlikeWithin = 1e-9;  ///< relative: values that differ by less are one value

/// Lines of fields in one of the two forms.
class TableWriter {
public:
    explicit TableWriter(FieldSeparator form) : semicolons(form == FieldSeparator::Semicolon) {}

    void Text(const std::string& text) {
        const char separator = semicolons ? ';' : ',';
        if (!lineStart) out += separator;
        lineStart = false;
        if (text.find_first_of(std::string("\"\r\n") + separator) == std::string::npos) {
            out += text;
            return;
        }
        out += '"';
        for (const char c : text)
            out += c == '"' ? std::string("\"\"") : std::string(1, c);
        out += '"';
    }

    /// A number as text, its point made a comma where that is the form.
    void Numeral(std::string text) {
        if (semicolons) std::replace(text.begin(), text.end(), '.', ',');
        Text(text);
    }

    /// Empty for what is no number or not to be shown.
    void Number(double x) {
        Numeral(std::isfinite(x) && x != BlankMarker ? ExactNumber(x) : std::string());
    }

    void EndLine() {
        out += "\r\n";
        lineStart = true;
    }

    std::string out;

private:
    bool semicolons;
    bool lineStart = true;
};

/// One part of the list.
struct ListedPart {
    std::string Designator, Kind, Connection;
    ValueKind Unit;
    double Value;
    std::optional<double> Z0;  ///< of a line
    double Tolerance;          ///< fraction
};

const char* KindName(NetworkKind kind) {
    switch (kind) {
        case NetworkKind::Inductor:
            return "inductor";
        case NetworkKind::Capacitor:
            return "capacitor";
        case NetworkKind::Line:
            return "line";
        case NetworkKind::ShortedStub:
            return "shorted stub";
        case NetworkKind::OpenStub:
            return "open stub";
        case NetworkKind::InSeries:
        case NetworkKind::InParallel:
            break;
    }
    return "";
}

NetworkKind SymbolOfRow(const std::vector<Network>& networks, int row) {
    for (const Network& net : networks) {
        if (net.Members.empty() && net.Row == row) return net.Kind;
        const NetworkKind inside = SymbolOfRow(net.Members, row);
        if (inside != NetworkKind::InSeries) return inside;
    }
    return NetworkKind::InSeries;
}

std::vector<ListedPart> PartsOf(const FilterDesign& design) {
    std::vector<ListedPart> parts;
    const auto names = DesignatorsOf(design);
    for (int k = 1; k <= std::clamp(design.NumElements, 0, NumSlots - 1); ++k) {
        const CircuitElement& slot = design.Elements[k];
        for (int row = 0; row < 4; ++row) {
            const ValueKind unit = InfoOf(slot.Type).Values[row];
            if (unit == ValueKind::Unused || unit == ValueKind::Impedance) continue;
            ListedPart part{names[k][row],
                            KindName(SymbolOfRow(NetworksOf(slot.Type), row)),
                            ConnectionOfPart(slot.Type, names[k], row),
                            unit,
                            slot.Value(row),
                            {},
                            ToleranceAt(design, {k, row})};
            if (unit == ValueKind::LengthDegrees) part.Z0 = slot.Value(row + 1);
            const PairedPart* const pair = PairAt(design, {k, row});
            if (pair) {  // two to order
                part.Designator += "a";
                part.Value = pair->Larger;
            }
            parts.push_back(part);
            if (!pair) continue;
            part.Designator.back() = 'b';
            part.Value = pair->Smaller;
            parts.push_back(part);
        }
    }
    return parts;
}

/// Whether they are one part to order.
bool SamePart(const ListedPart& a, const ListedPart& b) {
    const auto alike = [](double x, double y) {
        return std::fabs(x - y) <= AlikeWithin * std::fabs(x);
    };
    return a.Kind == b.Kind && a.Tolerance == b.Tolerance && alike(a.Value, b.Value) &&
           alike(a.Z0.value_or(1), b.Z0.value_or(1));
}

/// As the program shows it, with a decimal point whatever the locale.
std::string WithPrefix(double value, ValueKind unit) {
    std::string text = FormatWithPrefix(value, ListedDigits, UnitOf(unit));
    std::replace(text.begin(), text.end(), ',', '.');
    return text;
}

/// Q of a real part at F0; nothing for ideal ones.
std::optional<double> QualityOf(const FilterDesign& design, const ListedPart& part) {
    const PartModel& model = design.PartModel;
    if (model.Choice == PartChoice::IdealParts) return {};
    if (part.Unit == ValueKind::Inductance) return model.IndQ;
    if (part.Unit == ValueKind::Capacitance && model.CapR > 0.0)
        return 1.0 / (TwoPi * design.F0 * part.Value * model.CapR);
    return {};
}

void WriteStandardValue(TableWriter& table, const PartModel& model, const ListedPart& part) {
    if (!IsPart(part.Unit)) {
        for (int i = 0; i < 3; ++i)
            table.Text("");
        return;
    }
    const bool inductor = part.Unit == ValueKind::Inductance;
    const double standard =
        SnapValue(model, inductor ? PartKind::Inductor : PartKind::Capacitor, part.Value);
    const double error = 100.0 * (standard - part.Value) / part.Value;
    table.Numeral(WithPrefix(standard, part.Unit));
    table.Numeral(std::isfinite(error) ? RoundedNumber(error, PercentDigits) : std::string());
    table.Numeral(RoundedNumber(100.0 * part.Tolerance, PercentDigits));
}

}  // namespace

std::string SweepTable(const FilterDesign& design, const DisplayQuantities& quantities,
                       const WorstCaseSpread& spread, FieldSeparator separator) {
    TableWriter table(separator);
    for (const char* name : {"Frequency (Hz)", "Transfer real", "Transfer imaginary",
                             "Magnitude (dB)", "Phase (deg)", "Group delay (s)", "Reflection (dB)"})
        table.Text(name);
    const bool hasSpread = spread.LowDb.size() == NumSweepPoints;
    if (hasSpread) {
        table.Text("Worst case lowest (dB)");
        table.Text("Worst case highest (dB)");
    }
    table.EndLine();
    for (int i = 0; i < NumSweepPoints; ++i) {
        for (const double x :
             {design.SweepFreqs[i], design.Response.TransferRe[i], design.Response.TransferIm[i],
              quantities.MagnitudeDb[i], quantities.PhaseDeg[i], quantities.GroupDelay[i],
              design.Response.ReflectionDb[i]})
            table.Number(x);
        if (hasSpread) {
            table.Number(spread.LowDb[i]);
            table.Number(spread.HighDb[i]);
        }
        table.EndLine();
    }
    return table.out;
}

std::string PartsList(const FilterDesign& design, FieldSeparator separator) {
    TableWriter table(separator);
    for (const char* name : {"Designator", "Kind", "Connection", "Value", "Exact value", "Unit",
                             "Z0 (ohm)", "Standard value", "Standard error (%)", "Tolerance (%)",
                             "Q", "Equal parts", "Order number"})
        table.Text(name);
    table.EndLine();
    const std::vector<ListedPart> parts = PartsOf(design);
    for (const ListedPart& part : parts) {
        for (const std::string& text : {part.Designator, part.Kind, part.Connection})
            table.Text(text);
        table.Numeral(WithPrefix(part.Value, part.Unit));
        table.Number(part.Value);
        table.Text(UnitOf(part.Unit));
        table.Numeral(part.Z0 ? ExactNumber(*part.Z0) : std::string());
        WriteStandardValue(table, design.PartModel, part);
        const std::optional<double> q = QualityOf(design, part);
        table.Numeral(q ? RoundedNumber(*q, PercentDigits) : std::string());
        table.Text(
            std::to_string(std::count_if(parts.begin(), parts.end(), [&](const ListedPart& other) {
                return SamePart(part, other);
            })));
        table.Text("");
        table.EndLine();
    }
    return table.out;
}

}  // namespace ladderwise
