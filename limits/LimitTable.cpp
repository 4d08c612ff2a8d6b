// One table of kinds; everything else reads it.
#include "limits/LimitTable.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>
#include <vector>

#include "numbers/Formatfunctions.h"
#include "numbers/PlainNumbers.h"
#include "numbers/TextLines.h"

namespace ladderwise {

namespace {

constexpr double Megahertz = 1e6;
constexpr int ShownDigits = 6;  // significant, of a frequency for people
constexpr std::size_t NumFields = 4;
constexpr const char* Header[NumFields] = {"kind", "from_mhz", "to_mhz", "value"};

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

bool SameLetters(std::string_view a, std::string_view b) {
    const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(a.begin(), a.end(), b.begin(), b.end(),
                      [&](char x, char y) { return small(x) == small(y); });
}

bool IsHeader(const std::vector<std::string>& fields) {
    return fields.size() == NumFields &&
           std::equal(fields.begin(), fields.end(), std::begin(Header), SameLetters);
}

/// By its name, or as people read it.
std::optional<LimitKind> KindIn(std::string_view field) {
    for (const LimitKind kind : AllLimitKinds)
        if (SameLetters(field, NameOf(kind)) || SameLetters(field, CaptionOf(kind))) return kind;
    return std::nullopt;
}

/// The reason if the fields are no limit. Between commas a number has none of its own.
std::string TakeLine(const std::vector<std::string>& fields, char separator, LimitLine& line) {
    if (fields.size() != NumFields)
        return std::to_string(fields.size()) + " fields, not kind, from, to and value";
    const auto kind = KindIn(fields[0]);
    if (!kind) {
        std::string names;
        for (const LimitKind one : AllLimitKinds)
            names += (names.empty() ? "" : ", ") + std::string(NameOf(one));
        return "\"" + fields[0] + "\" is none of " + names;
    }
    for (std::size_t i = 1; i < fields.size() && separator == ','; ++i)
        if (fields[i].find(',') != std::string::npos) return "\"" + fields[i] + "\" is no number";
    return ReadLimit(*kind, {fields[1], fields[2], fields[3]}, line);
}

/// True for a line that names columns: nothing in it is a number.
bool IsCaption(const std::vector<std::string>& fields) {
    double x = 0.0;
    return std::none_of(fields.begin(), fields.end(), [&](std::string field) {
        std::replace(field.begin(), field.end(), ',', '.');
        return ReadPlainNumber(field, x) == NumberFault::None;
    });
}

struct FrequencyUnit {
    const char* Name;
    double Hz;
};
FrequencyUnit UnitFor(double f) {
    for (const FrequencyUnit unit :
         {FrequencyUnit{"GHz", 1e9}, FrequencyUnit{"MHz", 1e6}, FrequencyUnit{"kHz", 1e3}})
        if (f >= unit.Hz) return unit;
    return {"Hz", 1.0};
}

/// A frequency in MHz without the digits that the quotient brings along.
std::string MegahertzText(double f) {
    double shortest = 0.0;
    const double quotient = f / Megahertz;
    const std::string rounded = RoundedNumber(quotient, 15);
    ReadPlainNumber(rounded, shortest);
    return shortest * Megahertz == f ? rounded : ExactNumber(quotient);
}

}  // namespace

std::string PlainFrequency(double f) {
    const FrequencyUnit unit = UnitFor(f);
    return FormatPlain(f / unit.Hz, ShownDigits) + " " + unit.Name;
}

std::string TextOf(const LimitLine& line) {
    std::string text = CaptionOf(line.Kind);
    text.append(" ").append(ValueText(line)).append(" ").append(UnitOf(line.Kind));
    if (line.From == line.To) return text + " at " + PlainFrequency(line.From);
    return text + " from " + PlainFrequency(line.From) + " to " + PlainFrequency(line.To);
}

std::string DemandOf(const LimitLine& line) {
    std::string text = SymbolOf(line.Kind);
    return text.append(" ").append(ValueText(line)).append(" ").append(UnitOf(line.Kind));
}

std::string ShortTextOf(const LimitLine& line) {
    const std::string to = PlainFrequency(line.To), demand = DemandOf(line);
    if (line.From == line.To) return demand + ", " + to;
    const FrequencyUnit unit = UnitFor(line.To);
    const bool same = line.From == 0.0 || UnitFor(line.From).Hz == unit.Hz;
    const std::string from =
        same ? FormatPlain(line.From / unit.Hz, ShownDigits) : PlainFrequency(line.From);
    return demand + ", " + from + " to " + to;
}

std::string FromText(const LimitLine& line) {
    return MegahertzText(line.From);
}

std::string ToText(const LimitLine& line) {
    return MegahertzText(line.To);
}

std::string ValueText(const LimitLine& line) {
    // By a whole number, which is exact where a power of ten below one is not.
    const double units = std::round(1.0 / UnitFactor(line.Kind));
    const std::string rounded = RoundedNumber(line.Value * units, 15);
    double shortest = 0.0;
    ReadPlainNumber(rounded, shortest);
    return shortest / units == line.Value ? rounded : ExactNumber(line.Value * units);
}

std::string ReadLimit(LimitKind kind, const std::array<std::string, 3>& texts, LimitLine& line) {
    std::array<double, 3> numbers{};
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        std::string text(Trimmed(texts[i]));
        std::replace(text.begin(), text.end(), ',', '.');
        if (ReadPlainNumber(text, numbers[i]) != NumberFault::None)
            return text.empty() ? "a number is missing" : "\"" + texts[i] + "\" is no number";
    }
    line = {kind, numbers[0] * Megahertz, numbers[1] * Megahertz,
            numbers[2] / std::round(1.0 / UnitFactor(kind))};
    return FaultOf(line);
}

LimitTable ReadPastedLimits(std::string_view text) {
    LimitTable table;
    std::size_t number = 0;
    bool begun = false;
    for (const std::string_view whole : LinesOf(text)) {
        ++number;
        const std::string_view line = Trimmed(whole);
        if (line.empty() || line.front() == '#') continue;
        const char separator = SeparatorOf(whole);
        std::vector<std::string> fields = FieldsOf(whole, separator);
        if (!std::exchange(begun, true) && IsCaption(fields)) continue;
        // What stands beside the table in a spreadsheet is not meant.
        if (separator == '\t' && fields.size() > NumFields) fields.resize(NumFields);
        LimitLine limit;
        const std::string reason = TakeLine(fields, separator, limit);
        if (!reason.empty()) return {{}, "line " + std::to_string(number) + ": " + reason};
        table.Lines.push_back(limit);
    }
    if (table.Lines.empty()) table.Error = "there is no limit in it";
    return table;
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

std::string LimitTableText(const LimitLines& lines, char separator, char decimal) {
    std::string text;
    for (const char* const name : Header)
        text += (text.empty() ? "" : std::string(1, separator)) + name;
    text += "\n";
    for (const LimitLine& line : lines) {
        std::string numbers;
        for (const std::string& number : {FromText(line), ToText(line), ValueText(line)})
            numbers += separator + number;
        if (separator == ';' || (decimal == ',' && separator == '\t'))
            std::replace(numbers.begin(), numbers.end(), '.', ',');
        text += NameOf(line.Kind) + numbers + "\n";
    }
    return text;
}

}  // namespace ladderwise
