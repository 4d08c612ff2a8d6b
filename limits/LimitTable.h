// Limit lines as a table of text: a file of comma-separated values, what is copied from a
// spreadsheet and pasted, and what people read. No Qt.
#pragma once

#include <array>
#include <string>
#include <string_view>

#include "design/LimitLine.h"

namespace ladderwise {

/// A frequency for people, six significant digits without trailing zeros: "288 MHz", "0 Hz".
std::string PlainFrequency(double f);

/// "attenuation at least 45 dB from 288 MHz to 296 MHz".
std::string TextOf(const LimitLine& line);

/// What it demands, for a plot: "atten \u2265 45 dB"; and in a column "atten \u2265 45 dB, 288 to
/// 296 MHz".
std::string DemandOf(const LimitLine& line);
std::string ShortTextOf(const LimitLine& line);

/// The numbers of a line in MHz and dB or ns as short as they read back the same.
std::string FromText(const LimitLine& line);
std::string ToText(const LimitLine& line);
std::string ValueText(const LimitLine& line);

struct LimitTable {
    LimitLines Lines{};
    std::string Error{};  ///< with the number of the line; Lines is then empty
};

/// Reads a table: a header line "kind,from_mhz,to_mhz,value" in any case, then a line for each
/// limit (MHz; dB or ns). The fields may be separated by commas, semicolons or tabs, the numbers
/// have a point, or between semicolons and tabs also a comma. Blank lines and those that begin with
/// # are passed over.
LimitTable ReadLimitTable(std::string_view text);

/// The same as text, numbers as short as they read back the same; with `decimal` a comma between
/// tabs, as always between semicolons, they have one.
std::string LimitTableText(const LimitLines& lines, char separator = ',', char decimal = '.');

/// What was copied from a table: as ReadLimitTable, but with any first line of captions or none,
/// kinds by name or caption, and between tabs more columns behind, which do not count. Nothing is
/// an error.
LimitTable ReadPastedLimits(std::string_view text);

/// A limit from the texts of its ends (MHz) and its value (dB or ns), with point or comma. The
/// reason if it is none.
std::string ReadLimit(LimitKind kind, const std::array<std::string, 3>& texts, LimitLine& line);

}  // namespace ladderwise
