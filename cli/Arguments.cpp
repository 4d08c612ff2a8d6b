// Command-line words to Arguments.
#include "cli/Arguments.h"

#include <algorithm>
#include <charconv>
#include <cmath>

#include "numbers/PlainNumbers.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {

namespace {

constexpr int SmallestPlot = 200;  ///< pixels; below it there is no room for the scale marks
constexpr int LargestPlot = 16384;

constexpr double Megahertz = 1e6;
constexpr int MostPoints = 1'000'000;  ///< of an export

const std::vector<std::string> options = {
    "--set",         "--table",      "--json",      "--plot",
    "--size",        "--save",       "--help",      "--version",
    "--touchstone",  "--reference",  "--netlist",   "--touchstone-version",
    "--netlist-for", "--subckt",     "--schematic", "--touchstone-runs",
    "--csv",         "--parts-list", "--measured",  "--csv-separator",
    "--from",        "--to",         "--points",    "--spacing"};

bool ParseSize(const std::string& text, int& width, int& height) {
    const auto cross = text.find('x');
    if (cross == std::string::npos) return false;
    const auto number = [](const char* first, const char* last, int& value) {
        const auto result = std::from_chars(first, last, value);
        return result.ec == std::errc() && result.ptr == last && value >= SmallestPlot &&
               value <= LargestPlot;
    };
    const char* const start = text.data();
    return number(start, start + cross, width) &&
           number(start + cross + 1, start + text.size(), height);
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

std::string TakeCount(int& count, const std::string& option, const std::string& value) {
    int n = 0;
    const char* const end = value.data() + value.size();
    const auto result = std::from_chars(value.data(), end, n);
    if (result.ec != std::errc() || result.ptr != end || n < 1 || n > MostPoints)
        return option + " takes a number from 1 to " + std::to_string(MostPoints) + ", not \"" +
               value + "\"";
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
    ExportArguments& exports = arguments.Exports;
    const std::pair<const char*, std::string*> files[] = {
        {"--save", &arguments.SaveFile},     {"--json", &arguments.JsonFile},
        {"--plot", &arguments.PlotFile},     {"--touchstone", &exports.TouchstoneFile},
        {"--netlist", &exports.NetlistFile}, {"--schematic", &exports.SchematicFile},
        {"--csv", &exports.CsvFile},         {"--parts-list", &exports.PartsListFile}};
    for (const auto& [name, file] : files)
        if (option == name) return file;
    return nullptr;
}

/// The value of an option about exports; the reason if it is unfit.
std::string TakeExportValue(ExportArguments& exports, const std::string& option,
                            const std::string& value) {
    if (option == "--touchstone-version")
        return TakeWord<TouchstoneVersion>(
            exports.Version, option, value,
            {{"1", TouchstoneVersion::One}, {"2", TouchstoneVersion::Two}});
    if (option == "--netlist-for")
        return TakeWord<SpiceDialect>(
            exports.NetlistFor, option, value,
            {{"ngspice", SpiceDialect::Ngspice}, {"ltspice", SpiceDialect::Ltspice}});
    if (option == "--csv-separator")
        return TakeWord<FieldSeparator>(
            exports.Separator, option, value,
            {{",", FieldSeparator::Comma}, {";", FieldSeparator::Semicolon}});
    if (option == "--spacing")
        return TakeWord<bool>(exports.Logarithmic, option, value,
                              {{"linear", false}, {"logarithmic", true}});
    if (option == "--touchstone-runs") return TakeCount(exports.TouchstoneRuns, option, value);
    if (option == "--points") return TakeCount(exports.Points.emplace(0), option, value);
    if (option == "--from") return TakeNumber(exports.From, option, value, Megahertz);
    if (option == "--to") return TakeNumber(exports.To, option, value, Megahertz);
    return TakeNumber(exports.Reference, option, value, 1.0);
}

/// What the options about exports lack or have too much; empty if nothing.
std::string ExportConflict(const ExportArguments& exports) {
    if (exports.Reference && exports.Version == TouchstoneVersion::Two)
        return "--reference is of version 1: version 2 has the terminations as its references";
    if (!exports.NetlistFile.empty() && !exports.NetlistFor)
        return "--netlist needs --netlist-for ngspice or --netlist-for ltspice";
    if (exports.TouchstoneRuns > 0 &&
        (exports.TouchstoneFile.empty() || exports.TouchstoneFile == "-"))
        return "--touchstone-runs needs the file name of --touchstone";
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
    } else if (option != "--size") {
        return TakeExportValue(arguments.Exports, option, value);
    } else if (!ParseSize(value, arguments.Width, arguments.Height)) {
        return "--size takes WIDTHxHEIGHT, each from 200 to 16384, not \"" + value + "\"";
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
            arguments.Exports.Subcircuit = true;
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
        "  --size WxH    size of the plot in pixels (1280x800)\n"
        "  --save FILE   the inputs as a design file (*.tk_ldfilt)\n"
        "  --measured FILE.s2p          a measured network into the JSON; again for more\n"
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
