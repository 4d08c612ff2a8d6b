// Command-line words to Arguments.
#include "cli/Arguments.h"

#include <algorithm>
#include <charconv>

#include "pipeline/NamedSettings.h"

namespace ladderwise {

namespace {

constexpr int SmallestPlot = 200;  ///< pixels; below it there is no room for the scale marks
constexpr int LargestPlot = 16384;

const std::vector<std::string> options = {"--set",  "--table", "--json", "--plot",
                                          "--size", "--save",  "--help", "--version"};

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

/// An option's value into its place; the reason if it is unfit.
std::string TakeValue(Arguments& arguments, const std::string& option, const std::string& value) {
    if (option == "--set") {
        const auto equals = value.find('=');
        if (equals == std::string::npos) return "--set takes NAME=VALUE, not \"" + value + "\"";
        arguments.Settings.emplace_back(value.substr(0, equals), value.substr(equals + 1));
    } else if (option == "--save") {
        arguments.SaveFile = value;
    } else if (option == "--json") {
        arguments.JsonFile = value;
    } else if (option == "--plot") {
        arguments.PlotFile = value;
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
    if (arguments.JsonFile.empty() && arguments.PlotFile.empty() && arguments.SaveFile.empty())
        arguments.Table = true;
    return arguments;
}

std::string UsageText() {
    std::string text =
        "usage: ladderwise-cli [DESIGN] [--set NAME=VALUE]... [--table] [--json FILE]"
        " [--plot FILE]\n"
        "                      [--size WxH] [--save FILE]\n"
        "  DESIGN        a design file, opened before anything is set\n"
        "  --table       the part table on standard output (meant if no output is named)\n"
        "  --json FILE   inputs, elements, sweep and notes as JSON; - is standard output\n"
        "  --plot FILE   the plot as .png, .svg or .pdf\n"
        "  --size WxH    size of the plot in pixels (1280x800)\n"
        "  --save FILE   the inputs as a design file (*.tk_ldfilt)\n"
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
