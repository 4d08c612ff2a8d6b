// The table of named inputs.
#include "pipeline/NamedSettings.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

#include "pipeline/Choices.h"

namespace ladderwise {

namespace {

/// A word of the console and the code that it stands for.
struct Word {
    const char* Text;
    int Code;
};
using Words = std::vector<Word>;

constexpr int PrototypePassCode = 6;  ///< "low-pass-prototype": a menu entry, not a PassType
constexpr const char* AutoScaleWord = "auto";
constexpr const char* NoTracesWord = "none";

const Words passWords = {{"low-pass", 0},
                         {"high-pass", 1},
                         {"band-pass", 2},
                         {"notch", 3},
                         {"direct-coupled", 4},
                         {"norton", 5},
                         {"low-pass-prototype", PrototypePassCode}};
const Words responseWords = {{"butterworth", 0},      {"chebyshev", 1},   {"bessel-freq", 2},
                             {"bessel-delay", 3},     {"papoulis", 4},    {"gauss", 5},
                             {"linear-chebyshev", 6}, {"elliptic-a", 7},  {"elliptic-b", 8},
                             {"elliptic-c", 9},       {"elliptic-d", 10}, {"elliptic-e", 11},
                             {"coefficients", 13}};
const Words formWords = {{"clc", 1}, {"lcl", 0}};
const Words sweepWords = {{"linear", 0},    {"1-octave", 1}, {"2-octaves", 2},
                          {"3-octaves", 3}, {"1-decade", 4}, {"2-decades", 5}};
const Words partsWords = {{"ideal", 0}, {"real", 1}, {"deembed", 2}};
const Words switchWords = {{"on", 1}, {"off", 0}};
const Words toleranceWords = {{"1", 1}, {"2", 2}, {"5", 5}, {"10", 10}};
const Words traceWords = {{"mag1", 0}, {"mag10", 1}, {"phase", 2},
                          {"gd", 3},   {"pulse", 4}, {"rl", 5}};

std::vector<std::string> Texts(const Words& words) {
    std::vector<std::string> texts;
    for (const Word& word : words)
        texts.emplace_back(word.Text);
    return texts;
}

std::string TextOf(const Words& words, int code) {
    const auto found =
        std::find_if(words.begin(), words.end(), [&](const Word& w) { return w.Code == code; });
    return found == words.end() ? std::string() : found->Text;
}

std::optional<int> CodeOf(const Words& words, std::string_view text) {
    const auto found =
        std::find_if(words.begin(), words.end(), [&](const Word& w) { return w.Text == text; });
    if (found == words.end()) return {};
    return found->Code;
}

bool& TraceSwitch(TraceChoices& traces, int code) {
    bool* const switches[] = {&traces.Mag1dB,     &traces.Mag10dB, &traces.Phase,
                              &traces.GroupDelay, &traces.Pulse,   &traces.ReturnLoss};
    return *switches[code];
}

using Reason = std::optional<std::string>;

Reason UnknownWord(std::string_view name, std::string_view value, const Words& words) {
    return "unknown value \"" + std::string(value) + "\" of " + std::string(name) +
           "; the nearest valid one is \"" + NearestWord(value, Texts(words)) + "\"";
}

Reason SetTraces(DesignInputs& inputs, std::string_view list) {
    TraceChoices traces;
    traces.Mag10dB = false;
    for (std::size_t start = 0; list != NoTracesWord && start <= list.size();) {
        const std::size_t comma = std::min(list.find(',', start), list.size());
        const std::string_view item = list.substr(start, comma - start);
        const auto code = CodeOf(traceWords, item);
        if (!code) return UnknownWord("traces", item, traceWords);
        TraceSwitch(traces, *code) = true;
        start = comma + 1;
    }
    inputs.Traces = traces;
    return {};
}

Reason SetSeed(Calculation& calculation, std::string_view value) {
    std::uint32_t seed = 0;
    const auto result = std::from_chars(value.data(), value.data() + value.size(), seed);
    if (result.ec != std::errc() || result.ptr != value.data() + value.size())
        return "seed takes a whole number from 0 to 4294967295, not \"" + std::string(value) + "\"";
    calculation.FixedSeed = seed;
    return {};
}

void SetPass(Calculation& calculation, int code, const MessageCallback& report) {
    if (code == PrototypePassCode)
        ChooseLowPassPrototype(calculation.Inputs, calculation.Design);
    else
        ChoosePassType(calculation.Inputs, calculation.Design, static_cast<PassType>(code));
    ForbidEllipticCoupling(calculation.Design, report);
}

void SetBandWidth(DesignInputs& inputs, std::string_view value, bool inPercent) {
    inputs.BandWidthInPercent = inPercent;
    inputs.BandWidthBox.Type(std::string(value));
}

/// One named input: how it is set, what it accepts and what is in use.
struct Row {
    const char* Name;
    const Words* Accepts;  ///< the valid words; null where a box or a list is filled
    const char* Unit;      ///< of the value typed, for the usage text
    void (*SetWord)(Calculation&, int code, const MessageCallback&);
    NumberBox DesignInputs::*Box;
    SettingValue (*InUse)(const Calculation&);
};

std::string SwitchText(bool on) {
    return on ? "on" : "off";
}

using Calc = Calculation;
using Report = MessageCallback;

SettingValue PassInUse(const Calc& c) {
    return TextOf(passWords, c.Inputs.LowPassPrototype ? PrototypePassCode
                                                       : static_cast<int>(c.Design.PassType));
}

SettingValue TracesInUse(const Calc& c) {
    TraceChoices traces = c.Inputs.Traces;
    std::string list;
    for (const Word& word : traceWords)
        if (TraceSwitch(traces, word.Code))
            list += (list.empty() ? "" : ",") + std::string(word.Text);
    return list.empty() ? std::string(NoTracesWord) : list;
}

SettingValue SeedInUse(const Calc& c) {
    if (c.WorstCase.Runs > 0) return static_cast<double>(c.WorstCase.Seed);
    if (c.FixedSeed) return static_cast<double>(*c.FixedSeed);
    return {};
}

SettingValue ScaleInUse(const Calc& c) {
    if (c.Inputs.AutoScale) return std::string(AutoScaleWord);
    return c.Design.GDFullScale;
}

// clang-format off
const std::vector<Row> rows = {
    {"pass", &passWords, "", SetPass, nullptr, PassInUse},
    {"response", &responseWords, "", [](Calc& c, int code, const Report& report) {
         ChooseResponse(c.Design, static_cast<ResponseType>(code));
         ForbidEllipticCoupling(c.Design, report);
     }, nullptr, [](const Calc& c) -> SettingValue { return TextOf(responseWords, static_cast<int>(c.Design.ResponseType)); }},
    {"form", &formWords, "", [](Calc& c, int code, const Report&) { c.Design.FormCLC = code != 0; }, nullptr,
     [](const Calc& c) -> SettingValue { return TextOf(formWords, c.Design.FormCLC); }},
    {"poles", nullptr, "1 to 10 poles or traps", nullptr, &DesignInputs::NumPolesBox,
     [](const Calc& c) -> SettingValue { return static_cast<double>(c.Design.NumPoles); }},
    {"ripple", nullptr, "dB", nullptr, &DesignInputs::RippleBox, [](const Calc& c) -> SettingValue { return c.Design.RippleDb; }},
    {"f0", nullptr, "MHz", nullptr, &DesignInputs::F0Box, [](const Calc& c) -> SettingValue { return c.Design.F0; }},
    {"bw", nullptr, "MHz", nullptr, nullptr, [](const Calc& c) -> SettingValue { return c.Design.BandWidth; }},
    {"bw-percent", nullptr, "% of F0", nullptr, nullptr,
     [](const Calc& c) -> SettingValue { return c.Design.BandWidth / c.Design.F0 * 100.0; }},
    {"r-source", nullptr, "ohm", nullptr, &DesignInputs::RSBox, [](const Calc& c) -> SettingValue { return c.Design.RSource; }},
    {"r-load", nullptr, "ohm", nullptr, &DesignInputs::RLBox, [](const Calc& c) -> SettingValue { return c.Design.RLoad; }},
    {"atten", nullptr, "dB", nullptr, &DesignInputs::EllipticAttenBox,
     [](const Calc& c) -> SettingValue { return c.Design.EllipticAtten; }},
    {"trap", nullptr, "1 to 4", nullptr, &DesignInputs::TrapTypeBox,
     [](const Calc& c) -> SettingValue { return static_cast<double>(c.Design.TrapType); }},
    {"sweep", &sweepWords, "", [](Calc& c, int code, const Report&) { c.Design.SweepType = static_cast<SweepType>(code); }, nullptr,
     [](const Calc& c) -> SettingValue { return TextOf(sweepWords, static_cast<int>(c.Design.SweepType)); }},
    {"parts", &partsWords, "", [](Calc& c, int code, const Report&) { c.Inputs.Parts = static_cast<PartChoice>(code); }, nullptr,
     [](const Calc& c) -> SettingValue { return TextOf(partsWords, static_cast<int>(c.Inputs.Parts)); }},
    {"ind-q", nullptr, "Q at F0", nullptr, &DesignInputs::IndQBox, [](const Calc& c) -> SettingValue { return c.Design.PartModel.IndQ; }},
    {"ind-c", nullptr, "pF", nullptr, &DesignInputs::IndCBox, [](const Calc& c) -> SettingValue { return c.Design.PartModel.IndC; }},
    {"cap-r", nullptr, "ohm", nullptr, &DesignInputs::CapRBox, [](const Calc& c) -> SettingValue { return c.Design.PartModel.CapR; }},
    {"cap-l", nullptr, "nH", nullptr, &DesignInputs::CapLBox, [](const Calc& c) -> SettingValue { return c.Design.PartModel.CapL; }},
    {"std", &switchWords, "", [](Calc& c, int code, const Report&) { c.Inputs.StdLCValues = code != 0; }, nullptr,
     [](const Calc& c) -> SettingValue { return SwitchText(c.Inputs.StdLCValues); }},
    {"cap-tol", &toleranceWords, "%", [](Calc& c, int code, const Report&) { c.Inputs.CapTolerancePercent = code; }, nullptr,
     [](const Calc& c) -> SettingValue { return static_cast<double>(c.Inputs.CapTolerancePercent); }},
    {"ind-tol", &toleranceWords, "%", [](Calc& c, int code, const Report&) { c.Inputs.IndTolerancePercent = code; }, nullptr,
     [](const Calc& c) -> SettingValue { return static_cast<double>(c.Inputs.IndTolerancePercent); }},
    {"worst-case", &switchWords, "", [](Calc& c, int code, const Report&) { c.Inputs.WorstCase = code != 0; }, nullptr,
     [](const Calc& c) -> SettingValue { return SwitchText(c.Inputs.WorstCase); }},
    {"runs", nullptr, "1 to 1000", nullptr, &DesignInputs::WorstCaseSimsBox,
     [](const Calc& c) -> SettingValue { return static_cast<double>(c.Design.PartModel.MonteCarloRuns); }},
    {"seed", nullptr, "0 to 4294967295", nullptr, nullptr, SeedInUse},
    {"threshold", nullptr, "dB", nullptr, &DesignInputs::GDPhaseThresholdBox,
     [](const Calc& c) -> SettingValue { return c.Design.PhaseGDThreshold; }},
    {"traces", nullptr, "comma list of mag1, mag10, phase, gd, pulse, rl; or none", nullptr, nullptr, TracesInUse},
    {"gd-scale", nullptr, "auto, or seconds", nullptr, nullptr, ScaleInUse},
};
// clang-format on

/// The rows that are neither a word nor a plain box.
Reason SetSpecial(Calculation& calculation, std::string_view name, std::string_view value) {
    DesignInputs& inputs = calculation.Inputs;
    if (name == "traces") return SetTraces(inputs, value);
    if (name == "seed") return SetSeed(calculation, value);
    if (name == "bw" || name == "bw-percent") {
        SetBandWidth(inputs, value, name == "bw-percent");
    } else if (name == "gd-scale") {
        inputs.AutoScale = value == AutoScaleWord;
        if (!inputs.AutoScale) inputs.ScaleBox.Type(std::string(value));
    }
    return {};
}

/// Levenshtein distance: insertions, deletions and replacements of single characters.
std::size_t EditDistance(std::string_view a, std::string_view b) {
    std::vector<std::size_t> row(b.size() + 1);
    std::iota(row.begin(), row.end(), std::size_t{0});
    for (std::size_t i = 1; i <= a.size(); ++i) {
        std::size_t diagonal = row[0];
        row[0] = i;
        for (std::size_t j = 1; j <= b.size(); ++j) {
            const std::size_t replaced = diagonal + (a[i - 1] == b[j - 1] ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, replaced});
        }
    }
    return row.back();
}

}  // namespace

std::vector<NamedBox> NamedBoxes(const DesignInputs& inputs) {
    return {{"poles", "Poles", &inputs.NumPolesBox},
            {"ripple", "Ripple dB", &inputs.RippleBox},
            {"f0", "Fo MHz", &inputs.F0Box},
            {inputs.BandWidthInPercent ? "bw-percent" : "bw",
             inputs.BandWidthInPercent ? "BW %" : "BW MHz", &inputs.BandWidthBox},
            {"atten", "Elliptic Atten", &inputs.EllipticAttenBox},
            {"trap", "Trap Type", &inputs.TrapTypeBox},
            {"r-source", "R Source", &inputs.RSBox},
            {"r-load", "R Load", &inputs.RLBox},
            {"ind-q", "Inductor Q", &inputs.IndQBox},
            {"ind-c", "Inductor C pF", &inputs.IndCBox},
            {"cap-l", "Capacitor L nH", &inputs.CapLBox},
            {"cap-r", "Capacitor R", &inputs.CapRBox},
            {"runs", "Monte Carlo runs", &inputs.WorstCaseSimsBox},
            {"threshold", "Phase and delay threshold dB", &inputs.GDPhaseThresholdBox},
            {"gd-scale", "Group delay scale s", &inputs.ScaleBox},
            {"percent-change", "% Change", &inputs.PercentChangeBox}};
}

std::optional<std::string> ApplySetting(Calculation& calculation, std::string_view name,
                                        std::string_view value, const MessageCallback& report) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const Row& r) { return r.Name == name; });
    if (row == rows.end()) {
        std::vector<std::string> names;
        for (const Row& r : rows)
            names.emplace_back(r.Name);
        return "unknown name \"" + std::string(name) + "\"; the nearest valid one is \"" +
               NearestWord(name, names) + "\"";
    }
    if (row->Accepts) {
        const auto code = CodeOf(*row->Accepts, value);
        if (!code) return UnknownWord(name, value, *row->Accepts);
        row->SetWord(calculation, *code, report);
        return {};
    }
    if (!row->Box) return SetSpecial(calculation, name, value);
    (calculation.Inputs.*row->Box).Type(std::string(value));
    return {};
}

std::vector<SettingInUse> SettingsInUse(const Calculation& calculation) {
    std::vector<SettingInUse> inUse;
    for (const Row& row : rows)
        inUse.push_back({row.Name, row.InUse(calculation)});
    return inUse;
}

std::vector<SettingHelp> SettingsHelp() {
    std::vector<SettingHelp> help;
    for (const Row& row : rows) {
        std::string values = row.Accepts ? "" : row.Unit;
        if (row.Accepts)
            for (const Word& word : *row.Accepts)
                values += (values.empty() ? "" : ", ") + std::string(word.Text);
        help.push_back({row.Name, values});
    }
    return help;
}

std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates) {
    std::string nearest;
    std::size_t best = std::numeric_limits<std::size_t>::max();
    for (const std::string& candidate : candidates) {
        const std::size_t distance = EditDistance(word, candidate);
        if (distance < best) {
            best = distance;
            nearest = candidate;
        }
    }
    return nearest;
}

}  // namespace ladderwise
