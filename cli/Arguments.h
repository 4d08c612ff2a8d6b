// The console program's arguments.
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace ladderwise {

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
    int Width = 1280;  ///< of the plot, pixels
    int Height = 800;
    std::string Error;  ///< not empty: a usage error
};

/// Reads the arguments after the program's name. With no output option, --table is meant.
Arguments ParseArguments(const std::vector<std::string>& words);

/// The usage text with every name of --set.
std::string UsageText();

}  // namespace ladderwise
