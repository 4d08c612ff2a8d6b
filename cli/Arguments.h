// The console program's arguments.
#pragma once

#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "exchange/Netlist.h"
#include "exchange/SeparatedText.h"

namespace ladderwise {

/// The exports that were asked for; file names as in Arguments.
struct ExportArguments {
    std::string TouchstoneFile;
    TouchstoneVersion Version = TouchstoneVersion::One;
    std::optional<double> Reference;  ///< ohm
    int TouchstoneRuns = 0;           ///< files of worst-case runs beside TouchstoneFile
    std::string NetlistFile;
    std::optional<SpiceDialect> NetlistFor;
    bool Subcircuit = false;
    std::string SchematicFile;
    std::string CsvFile;
    std::string PartsListFile;
    FieldSeparator Separator = FieldSeparator::Comma;
    std::optional<double> From, To;  ///< Hz; the sweep's where not given
    std::optional<int> Points;
    std::optional<bool> Logarithmic;

    bool Any() const {
        return !(TouchstoneFile.empty() && NetlistFile.empty() && SchematicFile.empty() &&
                 CsvFile.empty() && PartsListFile.empty());
    }
};

/// What was asked for on the command line. An empty file name: not asked for; "-": standard output.
struct Arguments {
    std::vector<std::pair<std::string, std::string>> Settings;  ///< --set NAME=VALUE, in order
    bool Table = false;
    bool Help = false;
    bool Version = false;
    std::string DesignFile;  ///< to open first
    std::string SaveFile;    ///< to save to
    std::string JsonFile;
    std::string PlotFile;
    std::vector<std::string> MeasuredFiles;
    ExportArguments Exports;
    int Width = 1280;  ///< of the plot, pixels
    int Height = 800;
    std::string Error;  ///< not empty: a usage error
};

/// Reads the arguments after the program's name. With no output option, --table is meant.
Arguments ParseArguments(const std::vector<std::string>& words);

/// The usage text with every name of --set.
std::string UsageText();

}  // namespace ladderwise
