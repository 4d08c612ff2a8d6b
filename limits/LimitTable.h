// Limit lines as a table of text: a file of comma-separated values, what is copied from a
// spreadsheet and pasted, and what people read. No Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "design/LimitLine.h"

namespace ladderwise {

/// "atten-min", "atten-max", "return-loss-min", "delay-variation-max".
const char* NameOf(LimitKind kind);
std::optional<LimitKind> LimitKindNamed(std::string_view name);

/// "attenuation at least", ... for people.
const char* CaptionOf(LimitKind kind);

/// The unit of a value in tables, windows and JSON, "dB" or "ns", and how many SI units it is.
const char* UnitOf(LimitKind kind);
double UnitFactor(LimitKind kind);

/// "attenuation at least 45 dB from 288 MHz to 296 MHz".
std::string TextOf(const LimitLine& line);

/// Why a line is none: an end that is no frequency or in the wrong order, a value that is no
/// number or cannot be demanded. Empty if it is one.
std::string FaultOf(const LimitLine& line);

struct LimitTable {
    LimitLines Lines{};
    std::string Error{};  ///< with the number of the line; Lines is then empty
};

/// Reads a table: a header line "kind,from_mhz,to_mhz,value" in any case, then a line for each
/// limit (MHz; dB or ns). The fields may be separated by commas, semicolons or tabs, the numbers
/// have a point, or between semicolons and tabs also a comma. Blank lines and those that begin with
/// # are passed over.
LimitTable ReadLimitTable(std::string_view text);

/// The same as text, numbers as short as they read back the same.
std::string LimitTableText(const LimitLines& lines, char separator = ',');

}  // namespace ladderwise
