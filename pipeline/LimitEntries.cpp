// Rows of limits and their texts.
#include "pipeline/LimitEntries.h"

#include <algorithm>

#include "limits/LimitTable.h"

namespace ladderwise {

namespace {

LimitEntry EntryOf(const LimitLine& line) {
    return {line.Kind, {FromText(line), ToText(line), ValueText(line)}, line, {}};
}

}  // namespace

LimitLines LimitEntries::Lines() const {
    LimitLines lines;
    for (const LimitEntry& entry : rows)
        if (entry.InForce) lines.push_back(*entry.InForce);
    return lines;
}

void LimitEntries::Show(const LimitLines& lines) {
    std::vector<LimitEntry> shown;
    std::size_t next = 0;
    for (const LimitEntry& entry : rows) {
        if (!entry.InForce)
            shown.push_back(entry);
        else if (next < lines.size() && *entry.InForce == lines[next])
            shown.push_back(entry), ++next;
        else if (next < lines.size())
            shown.push_back(EntryOf(lines[next++]));
    }
    while (next < lines.size())
        shown.push_back(EntryOf(lines[next++]));
    rows = std::move(shown);
}

/// True if the limit in force is another one now.
bool LimitEntries::Read(LimitEntry& entry) {
    LimitLine line;
    entry.Fault = ReadLimit(entry.Kind, entry.Texts, line);
    if (entry.Fault.empty() && !entry.InForce && Lines().size() >= MaxLimitLines)
        entry.Fault = "there are too many limits";
    if (!entry.Fault.empty() || entry.InForce == line) return false;
    entry.InForce = line;
    return true;
}

bool LimitEntries::SetKind(std::size_t row, LimitKind kind) {
    rows[row].Kind = kind;
    return Read(rows[row]);
}

bool LimitEntries::SetText(std::size_t row, std::size_t which, const std::string& text) {
    // What is shown may be shorter than what is in force.
    if (rows[row].Texts[which] == text) return false;
    rows[row].Texts[which] = text;
    return Read(rows[row]);
}

void LimitEntries::Add() {
    rows.emplace_back();
    Read(rows.back());
}

void LimitEntries::Remove(const std::set<std::size_t>& which) {
    for (auto row = which.rbegin(); row != which.rend(); ++row)
        rows.erase(rows.begin() + static_cast<std::ptrdiff_t>(*row));
}

std::string LimitEntries::Paste(const std::string& text) {
    const LimitTable table = ReadPastedLimits(text);
    if (!table.Error.empty()) return table.Error;
    if (Lines().size() + table.Lines.size() > MaxLimitLines) return "there are too many limits";
    for (const LimitLine& line : table.Lines)
        rows.push_back(EntryOf(line));
    return {};
}

}  // namespace ladderwise
