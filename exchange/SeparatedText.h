// Tables for spreadsheets: the sweep, and the list of parts. Fields separated by commas as RFC 4180
// has it, or by semicolons with decimal commas; lines end in CR LF. No Qt, no disk.
#pragma once

#include <span>
#include <string>

#include "analysis/Magphasefunctions.h"
#include "analysis/PartValues.h"

namespace ladderwise {

enum class FieldSeparator { Comma, Semicolon };

/// What a worst case adds to a sweep; empty for none.
struct WorstCaseSpread {
    std::span<const double> LowDb{}, HighDb{};
};

/// A line for each point of the design's sweep: frequency (Hz), transfer, magnitude (dB), phase
/// (deg), group delay (s), reflection at source (dB), and the extremes of a worst case. A cell is
/// empty where there is no number. The names of the columns are fixed.
std::string SweepTable(const FilterDesign& design, const DisplayQuantities& quantities,
                       const WorstCaseSpread& spread, FieldSeparator separator);

/// A line for each part of the ladder: designator, kind, connection, value with prefix, exact value
/// and its unit, impedance of a line, nearest standard value and its error (%), tolerance (%), Q at
/// F0 of real parts, how many parts have this value, and an empty column for the order number.
std::string PartsList(const FilterDesign& design, FieldSeparator separator);

}  // namespace ladderwise
