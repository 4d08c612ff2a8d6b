// Coefficients files: text to g-values, with messages for their author.
#include "files/CoefficientsFile.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <optional>
#include <vector>

#include "numbers/TextLines.h"

namespace ladderwise {

namespace {

constexpr std::size_t longestEcho = 20;  ///< characters of a wrong entry that a message repeats

/// One row, its lines counted from 1.
struct Row {
    int Line = 0;
    int Order = 0;
    std::vector<double> Values;
};

std::string_view WithoutComment(std::string_view line) {
    return Trimmed(line.substr(0, line.find('#')));
}

/// The entries of a row without the empty ones at its end, which spreadsheets add.
std::vector<std::string> Entries(std::string_view row) {
    const bool semicolons = row.find(';') != std::string_view::npos;
    std::vector<std::string> entries;
    for (std::size_t start = 0; start <= row.size();) {
        const std::size_t end = std::min(row.find(semicolons ? ';' : ',', start), row.size());
        std::string entry(Trimmed(row.substr(start, end - start)));
        if (semicolons) std::replace(entry.begin(), entry.end(), ',', '.');
        entries.push_back(std::move(entry));
        start = end + 1;
    }
    while (!entries.empty() && entries.back().empty())
        entries.pop_back();
    return entries;
}

/// A whole entry as a number above zero.
template <typename Number>
std::optional<Number> Positive(std::string_view entry) {
    if (entry.starts_with('+')) entry.remove_prefix(1);
    Number value{};
    const auto [end, fault] = std::from_chars(entry.data(), entry.data() + entry.size(), value);
    if (fault != std::errc() || end != entry.data() + entry.size()) return {};
    if (!(value > Number{}) || !std::isfinite(static_cast<double>(value))) return {};
    return value;
}

/// The entry between quotation marks, cut if it is long, its control characters shown as "?".
std::string Echo(const std::string& entry) {
    std::string shown = entry.substr(0, longestEcho);
    // Never half of a UTF-8 sequence.
    while (shown.size() < entry.size() && !shown.empty() && (entry[shown.size()] & 0xc0) == 0x80)
        shown.pop_back();
    std::replace_if(
        shown.begin(), shown.end(), [](char c) { return (c >= 0 && c < ' ') || c == 0x7f; }, '?');
    return "\"" + shown + (shown.size() < entry.size() ? "...\"" : "\"");
}

/// Fills `row` from a line's entries; gives what is wrong with them.
std::string ReadRow(const std::vector<std::string>& entries, Row& row) {
    const auto order = Positive<int>(entries.front());
    if (!order || *order > MaxCoefficients)
        return "the row starts with " + Echo(entries.front()) + " instead of an order from 1 to " +
               std::to_string(MaxCoefficients);
    row.Order = *order;
    for (std::size_t i = 1; i < entries.size(); ++i) {
        const auto value = Positive<double>(entries[i]);
        if (!value) return "g" + std::to_string(i) + " is no positive number: " + Echo(entries[i]);
        row.Values.push_back(*value);
    }
    const int count = static_cast<int>(row.Values.size());
    if (count < row.Order)
        return "order " + std::to_string(row.Order) + " needs " + std::to_string(row.Order) +
               " values, but the row has " + std::to_string(count);
    if (count > MaxCoefficients)
        return "the row has " + std::to_string(count) + " values, more than " +
               std::to_string(MaxCoefficients);
    return {};
}

CoefficientsResult Failure(int line, const std::string& reason) {
    return {{}, "Line " + std::to_string(line) + ": " + reason + "."};
}

}  // namespace

CoefficientsResult ReadCoefficients(std::string_view text) {
    if (text.size() > MaxCoefficientsBytes) return {{}, "The file is too large."};
    CoefficientsResult result;
    std::array<int, MaxCoefficients + 1> lineOfOrder{};
    int number = 0;
    for (const std::string_view line : LinesOf(text)) {
        ++number;
        const std::vector<std::string> entries = Entries(WithoutComment(line));
        if (entries.empty()) continue;
        Row row;
        const std::string fault = ReadRow(entries, row);
        if (!fault.empty()) return Failure(number, fault);
        int& seen = lineOfOrder[static_cast<std::size_t>(row.Order)];
        if (seen != 0)
            return Failure(number, "order " + std::to_string(row.Order) + " stands in line " +
                                       std::to_string(seen) + " already");
        seen = number;
        if (row.Order <= MaxPoles)
            std::copy(row.Values.begin(), row.Values.end(),
                      result.Rows[static_cast<std::size_t>(row.Order)].begin());
    }
    if (std::all_of(lineOfOrder.begin(), lineOfOrder.end(), [](int seen) { return seen == 0; }))
        return {{}, "The file has no row of g-values."};
    return result;
}

bool HasOrder(const CoefficientRows& rows, int order) {
    return order >= 1 && order <= MaxPoles && rows[static_cast<std::size_t>(order)][0] > 0.0;
}

}  // namespace ladderwise
