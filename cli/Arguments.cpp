// Command-line words to Arguments.
#include "cli/Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "cli/BoardOutput.h"
#include "numbers/PlainNumbers.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {

namespace {

constexpr double Megahertz = 1e6;
constexpr int MostChosenRows = 5000;

const std::vector<std::string> options = {
    "--set",           "--table",      "--json",       "--plot",
    "--size",          "--save",       "--help",       "--version",
    "--touchstone",    "--reference",  "--netlist",    "--touchstone-version",
    "--netlist-for",   "--subckt",     "--schematic",  "--touchstone-runs",
    "--csv",           "--limits",     "--parts-list", "--measured",
    "--csv-separator", "--from",       "--to",         "--points",
    "--spacing",       "--picture",    "--white",      "--choose",
    "--only",          "--read-board", "--free",       "--boards",
    "--hold",          "--tolerance"};

/// "1280x800" or "297x210mm".
bool ParseSize(std::string text, PictureSize& size) {
    const std::string unit = "mm";
    PictureSize read;
    read.Millimetres = text.ends_with(unit);
    if (read.Millimetres) text.resize(text.size() - unit.size());
    const auto cross = text.find('x');
    if (cross == std::string::npos) return false;
    const auto number = [](const char* first, const char* last, double& value) {
        int whole = 0;
        const auto result = std::from_chars(first, last, whole);
        value = whole;
        return result.ec == std::errc() && result.ptr == last;
    };
    const char* const start = text.data();
    if (!number(start, start + cross, read.Width) ||
        !number(start + cross + 1, start + text.size(), read.Height) || !FaultOf(read).empty())
        return false;
    size = read;
    return true;
}

/// A positive number with a decimal point, or a comma as some locales have it.
bool ReadPositive(std::string text, double& x) {
    if (text.find('.') == std::string::npos) std::replace(text.begin(), text.end(), ',', '.');
    double read = 0.0;
    if (ReadPlainNumber(text, read) != NumberFault::None || !(read > 0.0) || !std::isfinite(read))
        return false;
    x = read;
    return true;
}

std::string TakeNumber(std::optional<double>& number, const std::string& option,
                       const std::string& value, double unit) {
    double x = 0.0;
    if (!ReadPositive(value, x)) return option + " takes a positive number, not \"" + value + "\"";
    number = x * unit;
    return {};
}

std::string TakeCount(int& count, const std::string& option, const std::string& value,
                      int most = MostExportPoints) {
    int n = 0;
    const char* const end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, n);
    if (result.ec != std::errc() || result.ptr != end || n < 1 || n > most)
        return option + " takes a number from 1 to " + std::to_string(most) + ", not \"" + value +
               "\"";
    count = n;
    return {};
}

/// One of several words; the reason if it is none of them.
template <typename Value, typename Target>
std::string TakeWord(Target& target, const std::string& option, const std::string& word,
                     const std::vector<std::pair<std::string, Value>>& words) {
    std::string all;
    for (const auto& [name, value] : words) {
        if (name == word) {
            target = value;
            return {};
        }
        all += (all.empty() ? "" : " or ") + name;
    }
    return option + " takes " + all + ", not \"" + word + "\"";
}

/// The file of an option that names one; null for another option.
std::string* FileOf(Arguments& arguments, const std::string& option) {
    const std::pair<const char*, std::string*> files[] = {{"--save", &arguments.SaveFile},
                                                          {"--json", &arguments.JsonFile},
                                                          {"--plot", &arguments.PlotFile},
                                                          {"--limits", &arguments.LimitsFile},
                                                          {"--read-board", &arguments.BoardFile}};
    constexpr std::pair<const char*, ExportKind> kinds[] = {
        {"--touchstone", ExportKind::Touchstone},
        {"--netlist", ExportKind::Netlist},
        {"--schematic", ExportKind::Schematic},
        {"--csv", ExportKind::Sweep},
        {"--parts-list", ExportKind::PartsList}};
    for (const auto& [name, file] : files)
        if (option == name) return file;
    for (const auto& [name, kind] : kinds)
        if (option == name) return &arguments.Exports.Files[kind];
    return nullptr;
}

/// The value of an option about exports; the reason if it is unfit.
std::string TakeExportValue(ExportArguments& exports, const std::string& option,
                            const std::string& value) {
    ExportPoints& points = exports.Options.Points;
    if (option == "--touchstone-version")
        return TakeWord<TouchstoneVersion>(
            exports.Options.Version, option, value,
            {{"1", TouchstoneVersion::One}, {"2", TouchstoneVersion::Two}});
    if (option == "--netlist-for")
        return TakeWord<SpiceDialect>(
            exports.NetlistFor, option, value,
            {{"ngspice", SpiceDialect::Ngspice}, {"ltspice", SpiceDialect::Ltspice}});
    if (option == "--csv-separator")
        return TakeWord<FieldSeparator>(
            exports.Options.Separator, option, value,
            {{",", FieldSeparator::Comma}, {";", FieldSeparator::Semicolon}});
    if (option == "--spacing")
        return TakeWord<bool>(points.Logarithmic, option, value,
                              {{"linear", false}, {"logarithmic", true}});
    if (option == "--touchstone-runs") return TakeCount(exports.Options.Runs, option, value);
    if (option == "--points") return TakeCount(points.Points.emplace(0), option, value);
    if (option == "--from") return TakeNumber(points.From, option, value, Megahertz);
    if (option == "--to") return TakeNumber(points.To, option, value, Megahertz);
    return TakeNumber(exports.Reference, option, value, 1.0);
}

/// What the options about exports lack or have too much; empty if nothing.
std::string ExportConflict(const ExportArguments& exports) {
    if (exports.Reference && exports.Options.Version == TouchstoneVersion::Two)
        return "--reference is of version 1: version 2 has the terminations as its references";
    if (exports.Files.count(ExportKind::Netlist) > 0 && !exports.NetlistFor)
        return "--netlist needs --netlist-for ngspice or --netlist-for ltspice";
    const auto touchstone = exports.Files.find(ExportKind::Touchstone);
    if (exports.Options.Runs > 0 &&
        (touchstone == exports.Files.end() || touchstone->second == "-"))
        return "--touchstone-runs needs the file name of --touchstone";
    return {};
}

/// The same of the picture.
std::string PictureConflict(const Arguments& arguments) {
    if (!arguments.Picture && arguments.White) return "--white needs --picture";
    if (!arguments.Picture && arguments.Size.Millimetres) return "--size in mm needs --picture";
    if (arguments.Picture && arguments.PlotFile.empty())
        return "--picture needs the file name of --plot";
    return {};
}

/// What the list of filters lacks; empty if nothing.
std::string ChoosingConflict(const Arguments& arguments) {
    if (arguments.ChosenRows > 0 && arguments.LimitsFile.empty() && arguments.DesignFile.empty())
        return NoLimitsToChooseBy;
    if (arguments.ChosenRows == 0 && arguments.Only != WhatCounts::AsSet)
        return "--only is about the list of --choose N";
    return {};
}

/// An option's value into its place; the reason if it is unfit.
std::string TakeValue(Arguments& arguments, const std::string& option, const std::string& value) {
    if (option == "--set") {
        const auto equals = value.find('=');
        if (equals == std::string::npos) return "--set takes NAME=VALUE, not \"" + value + "\"";
        arguments.Settings.emplace_back(value.substr(0, equals), value.substr(equals + 1));
    } else if (std::string* const file = FileOf(arguments, option)) {
        *file = value;
    } else if (option == "--measured") {
        arguments.MeasuredFiles.push_back(value);
    } else if (IsBoardOption(option)) {
        return TakeBoardValue(arguments.Boards, option, value);
    } else if (option == "--choose") {
        return TakeCount(arguments.ChosenRows, option, value, MostChosenRows);
    } else if (option == "--only") {
        return TakeWord<WhatCounts>(arguments.Only, option, value,
                                    {{"ideal", WhatCounts::Ideal},
                                     {"parts", WhatCounts::Parts},
                                     {"std", WhatCounts::Standard}});
    } else if (option == "--free") {
        arguments.FreedomNamed = true;
        return ReadFreedom(value, arguments.Freedom);
    } else if (option == "--picture") {
        return TakeWord<PictureParts>(arguments.Picture, option, value,
                                      {{"plot", PictureParts::Plot},
                                       {"schematic", PictureParts::Schematic},
                                       {"both", PictureParts::Both}});
    } else if (option != "--size") {
        return TakeExportValue(arguments.Exports, option, value);
    } else if (!ParseSize(value, arguments.Size)) {
        return "--size takes WIDTHxHEIGHT, each from 200 to 16384, or from 53 to 1387 with mm "
               "behind it, not \"" +
               value + "\"";
    }
    return {};
}

}  // namespace

Arguments ParseArguments(const std::vector<std::string>& words) {
    Arguments arguments;
    for (std::size_t i = 0; i < words.size() && arguments.Error.empty(); ++i) {
        const std::string& word = words[i];
        if (word == "--table") {
            arguments.Table = true;
        } else if (word == "--subckt") {
            arguments.Exports.Options.Subcircuit = true;
        } else if (word == "--white") {
            arguments.White = true;
        } else if (word == "--help" || word == "-h") {
            arguments.Help = true;
        } else if (word == "--version") {
            arguments.Version = true;
        } else if (!word.empty() && word[0] != '-') {
            if (!arguments.DesignFile.empty())
                arguments.Error = "two design files, \"" + arguments.DesignFile + "\" and \"" +
                                  word + "\"; one can be opened";
            arguments.DesignFile = word;
        } else if (std::find(options.begin(), options.end(), word) == options.end()) {
            arguments.Error = "unknown option \"" + word + "\"; the nearest valid one is \"" +
                              NearestWord(word, options) + "\"";
        } else if (i + 1 == words.size() || words[i + 1].empty()) {
            arguments.Error = word + " needs a value";
        } else {
            arguments.Error = TakeValue(arguments, word, words[++i]);
        }
    }
    if (arguments.Error.empty()) arguments.Error = ExportConflict(arguments.Exports);
    if (arguments.Error.empty()) arguments.Error = PictureConflict(arguments);
    if (arguments.Error.empty()) arguments.Error = ChoosingConflict(arguments);
    if (arguments.Error.empty() && arguments.FreedomNamed && arguments.BoardFile.empty())
        arguments.Error = "--free needs --read-board";
    if (arguments.JsonFile.empty() && arguments.PlotFile.empty() && arguments.SaveFile.empty() &&
        !arguments.Exports.Any())
        arguments.Table = true;
    return arguments;
}

std::string UsageText() {
    std::string text =
        "usage: ladderwise-cli [DESIGN] [--set NAME=VALUE]... [--table] [--json FILE]"
        " [--plot FILE]\n"
        "                      [--size WxH] [--save FILE] [EXPORT]...\n"
        "  DESIGN        a design file, opened before anything is set\n"
        "  --table       the part table on standard output (meant if no output is named)\n"
        "  --json FILE   inputs, elements, sweep and notes as JSON; - is standard output\n"
        "  --plot FILE   the plot as .png, .svg or .pdf\n"
        "  --size WxH    size of the plot in pixels (1280x800); 297x210mm with --picture\n"
        "  --picture plot|schematic|both\n"
        "                --plot for a report: with a drawn schematic and the results; --white\n"
        "  --save FILE   the inputs as a design file (*.tk_ldfilt)\n"
        "  --limits FILE.csv            what the design must do, judged in table, JSON and plot\n"
        "  --boards N                   how many of N boards keep the limits, in table and JSON\n"
        "  --hold PART=VALUE            with standard values: a part that is there, C3=1e-10; "
        "again\n"
        "                               for more\n"
        "  --tolerance PART=PERCENT     a part with a tolerance of its own, C3=1; again for more\n"
        "  --choose N                   the N best filters that keep the limits, of the pass type, "
        "the\n"
        "                               resistances and the parts that are set; --only "
        "ideal|parts|std\n"
        "                               (std: the nearest standard values)\n"
        "  --measured FILE.s2p          a measured network into the JSON, judged by the limits;\n"
        "                               again for more\n"
        "  --read-board FILE.s2p        every part's actual value from what was measured, and what "
        "to\n"
        "                               turn; --free q,coil-c,cap-l,cap-r,ports (all): fitted "
        "too\n"
        "  --touchstone FILE.s2p        S-parameters; --touchstone-version 2, --reference OHMS "
        "(50)\n"
        "  --touchstone-runs N          files of worst-case runs 1 to N too: FILE-run1.s2p\n"
        "  --netlist FILE               with --netlist-for ngspice or ltspice; --subckt: without\n"
        "                               source and load\n"
        "  --schematic FILE.asc         a schematic\n"
        "  --csv FILE                   the sweep as a table; --csv-separator , or ;\n"
        "  --parts-list FILE            the parts to order, in the same form\n"
        "  --from MHZ --to MHZ --points N --spacing linear|logarithmic\n"
        "                               of S-parameters, netlist and schematic (the sweep)\n"
        "  --help        this text\n"
        "  --version     the version\n"
        "NAME and its values:\n";
    for (const SettingHelp& setting : SettingsHelp()) {
        std::string name = "  " + setting.Name;
        name.resize(18, ' ');
        text += name + setting.Values + "\n";
    }
    return text;
}

}  // namespace ladderwise
