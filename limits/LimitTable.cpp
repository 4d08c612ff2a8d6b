// One table of kinds; everything else reads it.
#include "limits/LimitTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

#include "numbers/Formatfunctions.h"
#include "numbers/PlainNumbers.h"
#include "numbers/TextLines.h"

namespace ladderwise {

namespace {

constexpr double Megahertz = 1e6;
constexpr double HighestHz = 1e15;  // beyond every filter of coils and capacitors
constexpr int ShownDigits = 5;      // after the first, of a frequency for people
constexpr std::size_t NumFields = 4;
constexpr const char* Header[NumFields] = {"kind", "from_mhz", "to_mhz", "value"};

struct KindRow {
    LimitKind Kind;
    const char* Name;
    const char* Caption;
    const char* Unit;
    double Factor;
};

constexpr std::array<KindRow, 4> kinds = {{
    {LimitKind::AttenMin, "atten-min", "attenuation at least", "dB", 1.0},
    {LimitKind::AttenMax, "atten-max", "attenuation at most", "dB", 1.0},
    {LimitKind::ReturnLossMin, "return-loss-min", "return loss at least", "dB", 1.0},
    {LimitKind::DelayVariationMax, "delay-variation-max", "delay variation at most", "ns", 1e-9},
}};

const KindRow& RowOf(LimitKind kind) {
    return kinds[static_cast<std::size_t>(kind)];
}

/// Semicolons and tabs stand only between fields, commas perhaps within them.
char SeparatorOf(std::string_view line) {
    for (const char separator : {'\t', ';'})
        if (line.find(separator) != std::string_view::npos) return separator;
    return ',';
}

std::vector<std::string> FieldsOf(std::string_view line, char separator) {
    std::vector<std::string> fields;
    for (std::size_t start = 0; start <= line.size();) {
        const std::size_t end = std::min(line.find(separator, start), line.size());
        std::string_view field = Trimmed(line.substr(start, end - start));
        const bool quoted = field.size() > 1 && field.front() == '"' && field.back() == '"';
        if (quoted) field = Trimmed(field.substr(1, field.size() - 2));
        fields.emplace_back(field);
        start = end + 1;
    }
    while (fields.size() > NumFields && fields.back().empty())
        fields.pop_back();  // of a spreadsheet's empty columns
    return fields;
}

bool IsHeader(const std::vector<std::string>& fields) {
    const auto same = [](const std::string& field, const char* name) {
        return std::equal(field.begin(), field.end(), name, name + std::string_view(name).size(),
                          [](char a, char b) { return (a >= 'A' && a <= 'Z' ? a + 32 : a) == b; });
    };
    return fields.size() == NumFields &&
           std::equal(fields.begin(), fields.end(), std::begin(Header), same);
}

/// The reason if the fields are no limit.
std::string TakeLine(const std::vector<std::string>& fields, char separator, LimitLine& line) {
    if (fields.size() != NumFields)
        return std::to_string(fields.size()) + " fields, not kind, from, to and value";
    const auto kind = LimitKindNamed(fields[0]);
    if (!kind) {
        std::string names;
        for (const KindRow& row : kinds)
            names += (names.empty() ? "" : ", ") + std::string(row.Name);
        return "\"" + fields[0] + "\" is none of " + names;
    }
    std::array<double, NumFields - 1> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        std::string text = fields[i + 1];
        if (separator != ',') std::replace(text.begin(), text.end(), ',', '.');
        if (ReadPlainNumber(text, numbers[i]) != NumberFault::None)
            return "\"" + fields[i + 1] + "\" is no number";
    }
    line = {*kind, numbers[0] * Megahertz, numbers[1] * Megahertz, numbers[2] * UnitFactor(*kind)};
    return FaultOf(line);
}

/// A number times a power of ten without the digits that the product brings along.
std::string Scaled(double x, double factor) {
    double shortest = 0.0;
    const double quotient = x / factor;
    const std::string rounded = RoundedNumber(quotient, 15);
    ReadPlainNumber(rounded, shortest);
    return shortest * factor == x ? rounded : ExactNumber(quotient);
}

}  // namespace

const char* NameOf(LimitKind kind) {
    return RowOf(kind).Name;
}

std::optional<LimitKind> LimitKindNamed(std::string_view name) {
    for (const KindRow& row : kinds)
        if (row.Name == name) return row.Kind;
    return std::nullopt;
}

const char* CaptionOf(LimitKind kind) {
    return RowOf(kind).Caption;
}

const char* UnitOf(LimitKind kind) {
    return RowOf(kind).Unit;
}

double UnitFactor(LimitKind kind) {
    return RowOf(kind).Factor;
}

std::string TextOf(const LimitLine& line) {
    const auto hz = [](double f) { return FormatWithPrefix(f, ShownDigits, "Hz"); };
    const std::string where = line.From == line.To
                                  ? " at " + hz(line.From)
                                  : " from " + hz(line.From) + " to " + hz(line.To);
    return std::string(CaptionOf(line.Kind)) + " " + Scaled(line.Value, UnitFactor(line.Kind)) +
           " " + UnitOf(line.Kind) + where;
}

std::string FaultOf(const LimitLine& line) {
    if (!(line.From >= 0.0) || !(line.To <= HighestHz) || !(line.To > 0.0))
        return "a frequency is out of range";
    if (!(line.From <= line.To)) return "it ends below its beginning";
    if (!std::isfinite(line.Value)) return "its value is no number";
    if (line.Kind == LimitKind::DelayVariationMax && line.From == line.To)
        return "a delay varies between two frequencies";
    if (!(line.Value > 0.0) && line.Kind != LimitKind::AttenMax) return "its value is not above 0";
    if (line.Value < 0.0) return "its value is below 0";
    return {};
}

LimitTable ReadLimitTable(std::string_view text) {
    LimitTable table;
    const auto fail = [](std::size_t number, const std::string& reason) {
        return LimitTable{{}, "line " + std::to_string(number) + ": " + reason};
    };
    bool begun = false;
    std::size_t number = 0;
    for (const std::string_view whole : LinesOf(text)) {
        ++number;
        const std::string_view line = Trimmed(whole);
        if (line.empty() || line.front() == '#') continue;
        const char separator = SeparatorOf(whole);
        const std::vector<std::string> fields = FieldsOf(line, separator);
        if (!begun) {
            if (!IsHeader(fields)) return fail(number, "no header kind,from_mhz,to_mhz,value");
            begun = true;
            continue;
        }
        LimitLine limit;
        const std::string reason = TakeLine(fields, separator, limit);
        if (!reason.empty()) return fail(number, reason);
        if (table.Lines.size() == MaxLimitLines) return fail(number, "too many limits");
        table.Lines.push_back(limit);
    }
    return begun ? table : fail(1, "no header kind,from_mhz,to_mhz,value");
}

std::string LimitTableText(const LimitLines& lines, char separator) {
    std::string text;
    for (const char* const name : Header)
        text += (text.empty() ? "" : std::string(1, separator)) + name;
    text += "\n";
    for (const LimitLine& line : lines) {
        std::string numbers;
        for (const std::string& number : {Scaled(line.From, Megahertz), Scaled(line.To, Megahertz),
                                          Scaled(line.Value, UnitFactor(line.Kind))})
            numbers += separator + number;
        if (separator == ';') std::replace(numbers.begin(), numbers.end(), '.', ',');
        text += NameOf(line.Kind) + numbers + "\n";
    }
    return text;
}

}  // namespace ladderwise
