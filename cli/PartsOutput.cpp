// From the boards' room to the console.
#include "cli/PartsOutput.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <utility>

#include "choosing/PartsArrangement.h"
#include "choosing/PartsChoice.h"
#include "design/Designators.h"
#include "exchange/Json.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr std::uint32_t usualSeed = 1;

std::string StdObject(const Calculation& calculation, const BoardWork& work) {
    const StandardParts& parts = *work.Standard;
    const auto names = DesignatorsOf(calculation.Design);
    const auto both = [](double nearest, double chosen) {
        return "{\"nearest\": " + JsonNumber(nearest) + ", \"chosen\": " + JsonNumber(chosen) + "}";
    };
    std::string text =
        "{\"worst_deviation_db\": " + both(parts.NearestDeviation, parts.ChosenDeviation);
    if (work.Yield && work.NearestYield)
        text += ", \"yield\": " + both(work.NearestYield->Share(), work.Yield->Share());
    text += ",\n    \"parts\": [";
    for (const ChosenPart& part : parts.Parts) {
        const auto slot = static_cast<std::size_t>(part.Place.Slot);
        const auto row = static_cast<std::size_t>(part.Place.Row);
        if (&part != &parts.Parts.front()) text += ", ";
        text += "{\"designator\": " + JsonQuoted(names[slot][row]) +
                ", \"slot\": " + std::to_string(slot) + ", \"row\": " + std::to_string(row + 1);
        text += part.Value.IsPair() ? ", \"pair\": [" + JsonNumber(part.Value.Larger) + ", " +
                                          JsonNumber(part.Value.Smaller) + "]}"
                                    : ", \"value\": " + JsonNumber(part.Value.Value) + "}";
    }
    return text + "]}";
}

std::string YieldObject(const YieldResult& result) {
    std::string text = "{\"boards\": " + std::to_string(result.Boards) +
                       ", \"passed\": " + std::to_string(result.Passed) +
                       ", \"share\": " + JsonNumber(result.Share()) +
                       ", \"low\": " + JsonNumber(result.Interval.Low) +
                       ", \"high\": " + JsonNumber(result.Interval.High) + ", \"failures\": [";
    for (std::size_t i = 0; i < result.Failures.size(); ++i)
        text += (i > 0 ? ", " : "") + std::string("{\"limit\": ") + std::to_string(i + 1) +
                ", \"boards\": " + std::to_string(result.Failures[i]) + "}";
    return text + "]}";
}

/// Parts with a tolerance of their own; empty without any.
std::string ToleranceList(const FilterDesign& design) {
    constexpr double percent = 100.0;
    const auto names = DesignatorsOf(design);
    std::string text;
    for (const auto& [place, value, tolerance] : design.Held) {
        if (!(tolerance > 0.0)) continue;
        const auto slot = static_cast<std::size_t>(place.Slot);
        const auto row = static_cast<std::size_t>(place.Row);
        text += (text.empty() ? "[" : ", ") + ("{\"designator\": " + JsonQuoted(names[slot][row])) +
                ", \"slot\": " + std::to_string(slot) + ", \"row\": " + std::to_string(row + 1) +
                ", \"tolerance\": " + JsonNumber(percent * tolerance) + "}";
    }
    return text.empty() ? text : text + "]";
}

/// The standard values in the design; each the nearest, they took no choice.
StandardParts StandardOf(const Calculation& calculation, const PartsChoice& choice) {
    if (choice.Present()) return *choice.Present();
    const auto exact = std::make_unique<FilterDesign>(calculation.Design);
    exact->Elements = calculation.ExactElements;
    return ChooseStandardParts(*exact, calculation.IdealElements, {});
}

}  // namespace

void ChooseParts(Calculation& calculation, BoardWork& work) {
    if (work.Asked.Boards > 0 && work.Limits.empty())
        work.Error = "--boards needs what a board must do: --limits FILE.csv";
    calculation.ArrangeParts = [&work](Calculation& of) {
        const std::string error = SettleNamed(of, work.Asked.Held);
        if (!error.empty()) work.Error = error;
        PartsChoice choice;
        std::vector<PartsRemark> remarks = choice.Arrange(of, work.Limits, true);
        if (of.Design.StdLCValues) work.Standard = StandardOf(of, choice);
        return remarks;
    };
}

void BuildBoards(const Calculation& calculation, BoardWork& work) {
    if (work.Asked.Boards < 1) return;
    YieldTask task;
    task.Limits = work.Limits;
    task.Boards = work.Asked.Boards;
    task.Seed = calculation.FixedSeed.value_or(usualSeed);
    work.Yield = YieldOf(calculation.Design, task);
    if (!work.Standard) return;
    auto nearest = std::make_unique<FilterDesign>(calculation.Design);
    nearest->Elements = work.Standard->Nearest;
    work.NearestYield = YieldOf(*nearest, task);
}

std::vector<std::pair<std::string, std::string>> BoardMembers(const Calculation& calculation,
                                                              const BoardWork& work) {
    std::vector<std::pair<std::string, std::string>> members;
    if (work.Standard) members.emplace_back("std", StdObject(calculation, work));
    if (work.Yield) members.emplace_back("yield", YieldObject(*work.Yield));
    const std::string tolerances = ToleranceList(calculation.Design);
    if (!tolerances.empty()) members.emplace_back("tolerances", tolerances);
    return members;
}

std::string BoardText(const BoardWork& work) {
    if (!work.Yield) return {};
    constexpr int decimals = 1;
    const auto percent = [](double share) { return FormatFixed(100.0 * share, decimals); };
    const YieldResult& result = *work.Yield;
    std::string text = std::to_string(result.Passed) + " of " + std::to_string(result.Boards) +
                       " boards pass: " + percent(result.Share()) + " % (" +
                       percent(result.Interval.Low) + " to " + percent(result.Interval.High) +
                       " %)";
    if (work.NearestYield && work.NearestYield->Passed != result.Passed)
        text += "; of the nearest standard values " + percent(work.NearestYield->Share()) + " %";
    return text + "\n";
}

}  // namespace ladderwise
