// From a kind of file and its options to the text: what the console writes and the dialog shows and
// saves. No Qt, no disk.
#pragma once

#include <optional>
#include <string>

#include "exchange/Netlist.h"
#include "exchange/SeparatedText.h"

namespace ladderwise {

enum class ExportKind { Touchstone, Netlist, Schematic, Sweep, PartsList };

/// Frequencies as they are asked for: what is not given is the sweep's, or 1001 linear points.
struct ExportPoints {
    std::optional<double> From, To;  ///< Hz
    std::optional<int> Points;
    std::optional<bool> Logarithmic;

    /// True if nothing is asked for: the sweep as it is.
    bool AsSweep() const { return !From && !To && !Points && !Logarithmic; }
};

struct ExportOptions {
    TouchstoneVersion Version = TouchstoneVersion::One;
    double Reference = 50.0;  ///< ohm, of version 1
    int Runs = 0;             ///< files of worst-case runs beside that of the nominal design
    SpiceDialect For = SpiceDialect::Ngspice;
    bool Subcircuit = false;
    FieldSeparator Separator = FieldSeparator::Comma;
    ExportPoints Points{};
};

/// The finished design, and what a worst case found.
struct ExportSource {
    const FilterDesign& Design;
    const DisplayQuantities& Quantities;
    WorstCaseSpread Spread{};
    int WorstCaseRuns = 0;
};

/// True for S-parameters, netlist and schematic: the others have the sweep, or no frequencies.
bool HasPoints(ExportKind kind);

/// The points of an export of this kind; those of the sweep itself have its spacing.
FrequencyRange RangeOf(ExportKind kind, const ExportPoints& points, const FilterDesign& design);

/// Why a file of this kind cannot be written, as a sentence without its end; empty if it can.
std::string ExportFaultOf(ExportKind kind, const ExportOptions& options,
                          const ExportSource& source);

/// The file of the nominal design. Empty after ExportFaultOf.
std::string ExportText(ExportKind kind, const ExportOptions& options, const ExportSource& source);

/// The S-parameters of worst-case run 1 .. N with its ladder.
std::string RunText(const ExportOptions& options, const FilterDesign& design,
                    const ElementList& ladder, int run);

/// The name of its file: of run 3 of "filter.s2p" it is "filter-run3.s2p".
std::string RunFile(const std::string& file, int run);

}  // namespace ladderwise
