// The console program's arguments.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "choosing/FilterChoices.h"
#include "cli/BoardArguments.h"
#include "display/PictureLayout.h"
#include "exchange/ExportTexts.h"
#include "measured/BoardModel.h"

namespace ladderwise {

/// The exports that were asked for; file names as in Arguments.
struct ExportArguments {
    std::map<ExportKind, std::string> Files;
    ExportOptions Options;
    std::optional<double> Reference;  ///< ohm
    std::optional<SpiceDialect> NetlistFor;

    bool Any() const { return !Files.empty(); }
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
    std::string LimitsFile;
    BoardArguments Boards;
    int ChosenRows = 0;  ///< --choose; 0: no list
    WhatCounts Only = WhatCounts::AsSet;
    std::string BoardFile;  ///< measured, to be read
    BoardFreedom Freedom;   ///< of its fit
    bool FreedomNamed = false;
    ExportArguments Exports;
    PictureSize Size;                     ///< of the plot
    std::optional<PictureParts> Picture;  ///< not the window's plot: a picture for reports
    bool White = false;                   ///< its background
    std::string Error;                    ///< not empty: a usage error
};

/// What --choose says where neither the command line nor the design has limits.
inline constexpr const char* NoLimitsToChooseBy =
    "--choose needs --limits FILE.csv, which says what the filter must do";

/// Reads the arguments after the program's name. With no output option, --table is meant.
Arguments ParseArguments(const std::vector<std::string>& words);

/// The usage text with every name of --set.
std::string UsageText();

}  // namespace ladderwise
