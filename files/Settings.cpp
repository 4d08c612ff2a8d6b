// The settings file as text.
#include "files/Settings.h"

#include <algorithm>
#include <charconv>
#include <optional>

#include "numbers/Formatfunctions.h"
#include "numbers/TextLines.h"

namespace ladderwise {

namespace {

constexpr std::string_view separator = " , ";
constexpr std::size_t fewestLines = 5;
constexpr std::size_t longestValue = 4096;  ///< bytes; anything longer is damage

/// Identifiers of the lines.
enum class Line {
    Version = 1,
    SamplingFrequency = 10,
    Threshold = 12,
    ReadOutMenu = 30,
    Previous = 50
};

std::string LineText(Line line, std::string_view value, std::string_view key) {
    std::string text = std::to_string(static_cast<int>(line));
    for (const std::string_view part : {separator, value, separator, key})
        text += part;
    return text + "\n";
}

/// Nothing in it would end a line or a text.
bool FitsOneLine(std::string_view value) {
    return value.size() <= longestValue &&
           value.find_first_of(std::string_view("\r\n\0", 3)) == std::string_view::npos;
}

/// A number's text with another decimal separator; a point and a comma count alike.
std::string WithSeparator(std::string text, char separator) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '.' || c == ','; }, separator);
    return text;
}

/// An identifier and its value.
struct Entry {
    int Identifier = 0;
    std::string Value;
};

/// The parts of a line. A value may hold the separator; the key is what follows the last one.
std::optional<Entry> EntryOf(std::string_view line) {
    const std::size_t first = line.find(separator);
    const std::size_t last = line.rfind(separator);
    if (first == std::string_view::npos || last < first + separator.size()) return {};
    Entry entry;
    const std::string_view identifier = Trimmed(line.substr(0, first));
    const auto [end, fault] =
        std::from_chars(identifier.data(), identifier.data() + identifier.size(), entry.Identifier);
    if (fault != std::errc() || end != identifier.data() + identifier.size()) return {};
    const std::size_t start = first + separator.size();
    entry.Value = line.substr(start, last - start);
    if (!FitsOneLine(entry.Value)) return {};
    return entry;
}

/// Takes an entry over; false if its identifier is unknown. Recent files are collected.
bool Take(const Entry& entry, ProgramSettings& settings, std::vector<std::string>& previous) {
    switch (static_cast<Line>(entry.Identifier)) {
        case Line::Version:
            settings.Version = entry.Value;
            return true;
        case Line::SamplingFrequency:
            settings.SamplingFrequency = entry.Value;
            return true;
        case Line::Threshold:
            settings.Threshold =
                WithSeparator(entry.Value, SystemFormatSettings().DecimalSeparator);
            return true;
        case Line::ReadOutMenu:
            settings.ReadOutMenu = entry.Value == "0";
            return true;
        case Line::Previous:
            if (!entry.Value.empty()) previous.push_back(entry.Value);
            return true;
    }
    return false;
}

}  // namespace

std::string SettingsText(const ProgramSettings& settings) {
    const auto fit = [](const std::string& value) { return FitsOneLine(value) ? value : ""; };
    std::string text =
        LineText(Line::Version, fit(settings.Version), "Version String") +
        LineText(Line::SamplingFrequency, fit(settings.SamplingFrequency), "Sampling Frequency") +
        LineText(Line::Threshold, WithSeparator(fit(settings.Threshold), '.'), "Plot Threshold") +
        LineText(Line::ReadOutMenu, settings.ReadOutMenu ? "0" : "1", "Mouse Read Out Menu");
    std::vector<std::string> paths = settings.Recent.Paths();
    std::erase_if(paths, [](const std::string& path) { return !FitsOneLine(path); });
    paths.resize(MaxRecentFiles);  // lines of unused places keep the file complete
    for (const std::string& path : paths)
        text += LineText(Line::Previous, path, "Previous File");
    return text;
}

bool ReadSettingsText(std::string_view text, ProgramSettings& settings,
                      const MessageCallback& report) {
    auto lines = LinesOf(text.substr(0, MaxSettingsBytes));
    std::erase_if(lines, [](std::string_view line) { return Trimmed(line).empty(); });
    if (lines.size() < fewestLines) {
        report("Error", "Incomplete ini File");
        return false;
    }
    bool damaged = false;
    std::vector<std::string> previous;
    for (const std::string_view line : lines) {
        const auto entry = EntryOf(line);
        if (!entry || !Take(*entry, settings, previous)) damaged = true;
    }
    if (damaged) report("Error", "Error on INI File Read function. \nHave an invalid identifier.");
    // The first in the file is the most recent, whatever follows after four.
    if (!previous.empty()) settings.Recent.MergeInto(previous);
    return true;
}

ProgramSettings MergedSettings(const ProgramSettings& own, const ProgramSettings& read,
                               const ProgramSettings& kept) {
    ProgramSettings merged = own;
    const auto keep = [&](auto member) {
        if (own.*member == read.*member) merged.*member = kept.*member;
    };
    keep(&ProgramSettings::SamplingFrequency);
    keep(&ProgramSettings::Threshold);
    keep(&ProgramSettings::ReadOutMenu);
    merged.Recent.MergeInto(kept.Recent.Paths());
    return merged;
}

}  // namespace ladderwise
