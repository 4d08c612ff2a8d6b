// Inputs and choices by name, made of their two tables.
#include "pipeline/NamedSettings.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <numeric>

#include "files/CoefficientsFile.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Choices.h"
#include "pipeline/TankValues.h"

namespace ladderwise {

namespace {

constexpr const char* AutoScaleWord = "auto";
constexpr const char* NoTracesWord = "none";
constexpr int On = 1;

/// The traces in the order in which the console lists them.
constexpr ChoiceId traceIds[] = {ChoiceId::TraceMag1dB, ChoiceId::TraceMag10dB,
                                 ChoiceId::TracePhase,  ChoiceId::TraceGroupDelay,
                                 ChoiceId::TracePulse,  ChoiceId::TraceReturnLoss};

using Reason = std::optional<std::string>;

std::vector<std::string> WordsOf(const ChoiceTable& table) {
    std::vector<std::string> words;
    for (const ChoiceRow& row : table.Rows)
        words.emplace_back(row.Word);
    return words;
}

std::vector<std::string> TraceWords() {
    std::vector<std::string> words;
    for (const ChoiceId id : traceIds)
        words.emplace_back(FindRow(id, On)->Word);
    return words;
}

std::string Joined(const std::vector<std::string>& words) {
    std::string list;
    for (const std::string& word : words)
        list += (list.empty() ? "" : ", ") + word;
    return list;
}

Reason UnknownWord(std::string_view name, std::string_view value,
                   const std::vector<std::string>& words) {
    return "unknown value \"" + std::string(value) + "\" of " + std::string(name) +
           "; the nearest valid one is \"" + NearestWord(value, words) + "\"";
}

Reason SetTraces(Calculation& calculation, std::string_view list) {
    std::array<int, NumChoices> chosen = calculation.Inputs.Choices;
    for (const ChoiceId id : traceIds)
        chosen[static_cast<std::size_t>(id)] = 0;
    for (std::size_t start = 0; list != NoTracesWord && start <= list.size();) {
        const std::size_t comma = std::min(list.find(',', start), list.size());
        const std::string_view item = list.substr(start, comma - start);
        const auto found = std::find_if(std::begin(traceIds), std::end(traceIds),
                                        [&](ChoiceId id) { return FindRow(id, On)->Word == item; });
        if (found == std::end(traceIds)) return UnknownWord("traces", item, TraceWords());
        chosen[static_cast<std::size_t>(*found)] = On;
        start = comma + 1;
    }
    calculation.Inputs.Choices = chosen;
    return {};
}

SettingValue TracesInUse(const Calculation& c) {
    std::string list;
    for (const ChoiceId id : traceIds)
        if (c.Inputs.IsOn(id))
            list += (list.empty() ? "" : ",") + std::string(FindRow(id, On)->Word);
    return list.empty() ? std::string(NoTracesWord) : list;
}

Reason SetSeed(Calculation& calculation, std::string_view value) {
    std::uint32_t seed = 0;
    const auto result = std::from_chars(value.data(), value.data() + value.size(), seed);
    if (result.ec != std::errc() || result.ptr != value.data() + value.size())
        return "seed takes a whole number from 0 to 4294967295, not \"" + std::string(value) + "\"";
    calculation.FixedSeed = seed;
    return {};
}

SettingValue SeedInUse(const Calculation& c) {
    if (c.WorstCase.Runs > 0) return static_cast<double>(c.WorstCase.Seed);
    if (c.FixedSeed) return static_cast<double>(*c.FixedSeed);
    return {};
}

Reason SetScale(Calculation& calculation, std::string_view value) {
    const bool automatic = value == AutoScaleWord;
    calculation.Inputs.Choice(ChoiceId::AutoScale) = automatic;
    if (!automatic) calculation.Inputs.Box(InputId::Scale).Type(std::string(value));
    return {};
}

SettingValue ScaleInUse(const Calculation& c) {
    if (c.Inputs.IsOn(ChoiceId::AutoScale)) return std::string(AutoScaleWord);
    return c.Design.GDFullScale;
}

Reason SetCoefficients(Calculation&, std::string_view) {
    return "a coefficients file cannot be read here";
}

/// The orders read from a coefficients file, as long as its response is the one in use.
SettingValue CoefficientsInUse(const Calculation& c) {
    std::string orders;
    const bool used = c.Design.ResponseType == ResponseType::CoefficientsFile;
    for (int n = 1; used && c.Design.CoefFileRead && n <= MaxPoles; ++n)
        if (HasOrder(c.Design.CoefficientTable, n))
            orders += (orders.empty() ? "" : ",") + std::to_string(n);
    if (orders.empty()) return {};
    return orders;
}

std::string TraceHelp() {
    return "comma list of " + Joined(TraceWords()) + "; or " + NoTracesWord;
}

/// A setting that is neither one box nor one choice.
struct SpecialRow {
    const char* Name;
    Reason (*Set)(Calculation&, std::string_view value);
    SettingValue (*InUse)(const Calculation&);
    std::string (*Help)();
};

Reason SetTankValues(Calculation& calculation, std::string_view list) {
    return TypeTankValues(calculation.Inputs, list);
}

SettingValue TankValuesInUse(const Calculation& c) {
    return TankValueList(c.Design);
}

const SpecialRow specials[] = {
    {"tank-values", SetTankValues, TankValuesInUse,
     [] { return std::string("comma list, one value for each pole [50]"); }},
    {"traces", SetTraces, TracesInUse, TraceHelp},
    {"gd-scale", SetScale, ScaleInUse, [] { return std::string("auto, or seconds"); }},
    {CoefficientsSetting, SetCoefficients, CoefficientsInUse,
     [] { return std::string("file of g-values; the orders read are shown"); }},
    {"seed", SetSeed, SeedInUse, [] { return std::string("0 to 4294967295"); }},
};

const SpecialRow* FindSpecial(std::string_view name) {
    for (const SpecialRow& row : specials)
        if (row.Name == name) return &row;
    return nullptr;
}

/// The choice or, null, none of a console name.
const ChoiceTable* FindChoice(std::string_view name) {
    for (const ChoiceTable& table : ChoiceTables())
        if (table.Form != ConsoleForm::Hidden && table.Name == name) return &table;
    return nullptr;
}

const InputRow* FindInput(std::string_view name) {
    for (const InputRow& row : InputRows())
        if (row.Name == name) return &row;
    return nullptr;
}

SettingValue ChoiceInUse(const ChoiceTable& table, const Calculation& c) {
    const int code = table.InUse ? table.InUse(c.Design) : c.Inputs.Choice(table.Id);
    if (table.Form == ConsoleForm::Number) return static_cast<double>(code);
    const ChoiceRow* const row = FindRow(table.Id, code);
    return row ? std::string(row->Word) : std::string();
}

std::string InputHelp(const InputRow& row) {
    const Calculation fresh;
    const BoxLimits limits = LimitsOf(row, fresh.Inputs, fresh.Design);
    std::string help = RangeText(limits) + (*row.Unit ? " " + std::string(row.Unit) : "");
    if (row.ComputedLimits && row.UnitCode >= 0) help += " at the F0 of a fresh program";
    double preset = 0.0;
    if (TryParseDouble(row.Initial, preset)) help += " [" + FormatPlain(preset, 6) + "]";
    return std::string(row.Meaning) + ": " + help;
}

std::string ChoiceHelp(const ChoiceTable& table) {
    const ChoiceRow* const preset = FindRow(table.Id, table.Initial);
    return Joined(WordsOf(table)) + " [" + (preset ? preset->Word : "") + "]";
}

std::vector<std::string> AllNames() {
    std::vector<std::string> names;
    for (const SettingHelp& setting : SettingsHelp())
        names.push_back(setting.Name);
    return names;
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

std::optional<std::string> ApplySetting(Calculation& calculation, std::string_view name,
                                        std::string_view value, const MessageCallback& report) {
    DesignInputs& inputs = calculation.Inputs;
    if (const SpecialRow* const special = FindSpecial(name))
        return special->Set(calculation, value);
    if (const ChoiceTable* const table = FindChoice(name)) {
        const auto code = CodeOfWord(table->Id, value);
        if (!code) return UnknownWord(name, value, WordsOf(*table));
        Choose(inputs, calculation.Design, table->Id, *code);
        ForbidEllipticCoupling(inputs, report);
        return {};
    }
    if (const InputRow* const row = FindInput(name)) {
        if (row->UnitCode >= 0) inputs.Choice(ChoiceId::BandWidthUnit) = row->UnitCode;
        inputs.Box(row->Id).Type(std::string(value));
        return {};
    }
    return "unknown name \"" + std::string(name) + "\"; the nearest valid one is \"" +
           NearestWord(name, AllNames()) + "\"";
}

std::vector<SettingInUse> SettingsInUse(const Calculation& calculation) {
    std::vector<SettingInUse> inUse;
    for (const ChoiceTable& table : ChoiceTables())
        if (table.Form != ConsoleForm::Hidden)
            inUse.push_back({table.Name, ChoiceInUse(table, calculation)});
    for (const InputRow& row : InputRows())
        if (!FindSpecial(row.Name)) inUse.push_back({row.Name, row.Get(calculation.Design)});
    for (const SpecialRow& row : specials)
        inUse.push_back({row.Name, row.InUse(calculation)});
    return inUse;
}

std::vector<SettingHelp> SettingsHelp() {
    std::vector<SettingHelp> help;
    for (const ChoiceTable& table : ChoiceTables())
        if (table.Form != ConsoleForm::Hidden) help.push_back({table.Name, ChoiceHelp(table)});
    for (const InputRow& row : InputRows())
        if (!FindSpecial(row.Name)) help.push_back({row.Name, InputHelp(row)});
    for (const SpecialRow& row : specials)
        help.push_back({row.Name, row.Help()});
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
