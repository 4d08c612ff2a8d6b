// What distinguishes two states, and the list of them.
#include "pipeline/DesignHistory.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "design/ChoiceNames.h"
#include "design/Designators.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int ValueDigits = 2;  ///< after the first, of a part value in a step's name
constexpr int EntryDigits = 6;  ///< significant, of a box's number there

bool SameBits(double a, double b) {
    return a == b || (std::isnan(a) && std::isnan(b));
}

/// A caption without its mnemonic, which may be a letter of its own in brackets, and without blanks
/// that stand there for the layout only.
std::string Plain(const std::string& caption) {
    constexpr std::size_t lettersToBracket = 3;  // "(&K)"
    const std::size_t own = caption.find("(&");
    const bool hasOwn =
        own != std::string::npos && caption.find(')', own) == own + lettersToBracket;
    std::string plain;
    for (const char c : caption.substr(0, hasOwn ? own : std::string::npos))
        if (c != '&' && !(c == ' ' && (plain.empty() || plain.back() == ' '))) plain += c;
    while (!plain.empty() && plain.back() == ' ')
        plain.pop_back();
    return plain;
}

/// "Low Pass"; of a switch "on" or "off", or its way of being on.
std::string CodeText(ChoiceId id, int code) {
    const ChoiceRow* const row = FindRow(id, code);
    if (IsSwitch(id)) return code == 0 ? "off" : code == 1 || !row ? "on" : row->Word;
    return row ? Plain(row->Caption) : std::to_string(code);
}

std::string ThingOf(ChoiceId id) {
    if (IsSwitch(id)) return Plain(FindRow(id, 1)->Caption);
    std::string name = TableOf(id).Name;
    if (!name.empty() && name[0] >= 'a' && name[0] <= 'z')
        name[0] = static_cast<char>(name[0] - 'a' + 'A');
    return name;
}

std::optional<StepLabel> ChoiceStep(const DesignInputs& before, const DesignInputs& after) {
    for (const ChoiceTable& table : ChoiceTables()) {
        const int was = before.Choice(table.Id), is = after.Choice(table.Id);
        if (was != is)
            return StepLabel{ThingOf(table.Id), CodeText(table.Id, was), CodeText(table.Id, is)};
    }
    return {};
}

std::string EntryText(const NumberBox& box) {
    return box.HoldsExactValue() ? FormatPlain(*box.ExactValue, EntryDigits) : box.Text;
}

std::optional<StepLabel> BoxStep(const DesignInputs& before, const DesignInputs& after) {
    for (int i = 0; i < NumInputs; ++i) {
        const auto id = static_cast<InputId>(i);
        // What the response alone decides is nobody's entry.
        if (id == InputId::Scale && after.IsOn(ChoiceId::AutoScale)) continue;
        const NumberBox &was = before.Box(id), &is = after.Box(id);
        if (SameEntry(was, is)) continue;
        return StepLabel{PlainLabel(RowOf(id, after)), EntryText(was), EntryText(is), true};
    }
    return {};
}

bool SameLadder(const DesignState& a, const DesignState& b) {
    if (a.NumElements != b.NumElements) return false;
    for (int slot = 1; slot <= a.NumElements; ++slot) {
        if (a.Elements[slot].Type != b.Elements[slot].Type) return false;
        for (int row = 0; row < 4; ++row)
            if (!SameBits(a.Elements[slot].Value(row), b.Elements[slot].Value(row))) return false;
    }
    return true;
}

/// The part whose value differs, the first of a resonator; more than that, or a calculation over
/// edited values, in other words.
std::optional<StepLabel> LadderStep(const DesignState& before, const DesignState& after) {
    if (SameLadder(before, after)) return {};
    if (!HasEdits(after)) return StepLabel{"Calculated Values", "", ""};
    const auto names = DesignatorsOf(after);
    std::optional<StepLabel> step;
    int resonator = -1;  // four rows of a slot are two of them
    for (int slot = 1; slot <= after.NumElements; ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = InfoOf(after.Elements[slot].Type).Values[row];
            const double was = before.Elements[slot].Value(row);
            const double is = after.Elements[slot].Value(row);
            if (kind == ValueKind::Unused || SameBits(was, is)) continue;
            if (step && resonator != 2 * slot + row / 2) return StepLabel{"Edited Values", "", ""};
            resonator = 2 * slot + row / 2;
            const auto text = [&](double value) {
                return FormatWithPrefix(value, ValueDigits, UnitOf(kind));
            };
            if (!step) step = StepLabel{names[slot][row], text(was), text(is), true};
        }
    return step;
}

bool SameMarks(const MarkerState& a, const MarkerState& b) {
    if (a.FreqMarkerCount != b.FreqMarkerCount || a.DbMarkerCount != b.DbMarkerCount) return false;
    return a.FreqMarkers == b.FreqMarkers && a.DbMarkers == b.DbMarkers;
}

bool SameReadOutReference(const MarkerState& a, const MarkerState& b) {
    return a.RefFreq == b.RefFreq && a.RefDb == b.RefDb && a.RefAtPeak == b.RefAtPeak;
}

std::optional<StepLabel> MarkerStep(const MarkerState& before, const MarkerState& after) {
    if (!SameMarks(before, after)) {
        const bool cleared = after.FreqMarkerCount == 0 && after.DbMarkerCount == 0;
        return StepLabel{cleared ? "Clear Markers" : "Marker", "", ""};
    }
    if (!SameReadOutReference(before, after))
        return StepLabel{after.HasReference() ? "Set Ref" : "Clear Reference", "", ""};
    return {};
}

/// "Hold C3", "Release C3", "Tolerance C3": the first part about which something else is settled.
std::optional<StepLabel> HeldStep(const DesignSnapshot& before, const DesignSnapshot& after) {
    HeldParts parts = before.Inputs.Held;
    parts.insert(parts.end(), after.Inputs.Held.begin(), after.Inputs.Held.end());
    for (const HeldPart& part : parts) {
        const HeldPart was = SettledAt(before.Inputs.Held, part.Place);
        const HeldPart is = SettledAt(after.Inputs.Held, part.Place);
        if (was == is) continue;
        const auto slot = static_cast<std::size_t>(part.Place.Slot);
        const auto row = static_cast<std::size_t>(part.Place.Row);
        const bool there = part.Place.Slot <= SlotsInUse(after.Design);
        const std::string name = DesignatorsOf(there ? after.Design : before.Design)[slot][row];
        if (was.Value == is.Value) return StepLabel{"Tolerance " + name, "", ""};
        return StepLabel{(is.HoldsValue() ? "Hold " : "Release ") + name, "", ""};
    }
    return {};
}

std::string FileName(const std::string& path) {
    return path.substr(path.find_last_of("/\\") + 1);
}

std::optional<StepLabel> DocumentStep(const DesignSnapshot& before, const DesignSnapshot& after) {
    if (before.Tie != after.Tie) return StepLabel{"Open " + FileName(after.Tie->Path), "", ""};
    if (before.Reference != after.Reference) {
        const bool set = !before.Reference || !BoxStep(before.Inputs, after.Inputs);
        return StepLabel{set ? "Set Ref" : "Exchange Ref", "", ""};
    }
    return {};
}

/// The file that only one of two lists has, or the first whose options differ.
std::optional<StepLabel> MeasuredStep(const MeasuredFiles& before, const MeasuredFiles& after) {
    if (before == after) return {};
    const auto differs = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
    const bool more = after.size() > before.size(), fewer = after.size() < before.size();
    const MeasuredFile& file = fewer ? *differs.first : *differs.second;
    return StepLabel{(more    ? "Add "
                      : fewer ? "Remove "
                              : "Measured Data ") +
                         FileName(file.Path),
                     "", "", !more && !fewer};
}

/// "Limits 2 -> 3" counts them.
std::optional<StepLabel> LimitStep(const LimitLines& before, const LimitLines& after) {
    if (before == after) return {};
    if (before.size() != after.size())
        return StepLabel{"Limits", std::to_string(before.size()), std::to_string(after.size())};
    const auto [was, is] = std::mismatch(before.begin(), before.end(), after.begin());
    const bool single = std::equal(was + 1, before.end(), is + 1, after.end());
    return StepLabel{single ? "Limit to " + TextOf(*is) : "Limits", "", ""};
}

std::optional<StepLabel> SmallStep(const DesignSnapshot& before, const DesignSnapshot& after) {
    if (auto step = MeasuredStep(before.Measured, after.Measured)) return step;
    if (before.ShowReference != after.ShowReference)
        return StepLabel{"Plot Ref", before.ShowReference ? "on" : "off",
                         after.ShowReference ? "on" : "off"};
    if (before.FixedSeed != after.FixedSeed) return StepLabel{"Worst-Case Seed", "", ""};
    if (before.Design.CoefFileRead != after.Design.CoefFileRead ||
        before.Design.CoefficientTable != after.Design.CoefficientTable)
        return StepLabel{"Coefficients File", "", ""};
    return {};
}

}  // namespace

std::string StepLabel::Text() const {
    return After.empty() && Before.empty() ? Thing : Thing + " " + Before + " \u2192 " + After;
}

std::optional<StepLabel> DescribeStep(const DesignSnapshot& before, const DesignSnapshot& after) {
    if (auto step = DocumentStep(before, after)) return step;
    if (auto step = ChoiceStep(before.Inputs, after.Inputs)) return step;
    if (auto step = BoxStep(before.Inputs, after.Inputs)) return step;
    if (auto step = HeldStep(before, after)) return step;
    // Values of the highest yield follow the limits.
    if (auto step = LimitStep(before.Limits, after.Limits)) return step;
    if (auto step = LadderStep(before.Design, after.Design)) return step;
    if (auto step = MarkerStep(before.Markers, after.Markers)) return step;
    return SmallStep(before, after);
}

bool DesignHistory::MergesWithPresent(const StepLabel& step, double seconds) const {
    if (present == 0 || present + 1 != entries.size()) return false;
    const Entry& last = entries[present];
    return step.Merges && last.Step.Merges && last.Step.Thing == step.Thing &&
           seconds - last.Seconds <= MergeSeconds;
}

void DesignHistory::Note(State state, double seconds) {
    if (entries.empty()) return entries.push_back({std::move(state), {}, seconds});
    auto step = DescribeStep(*entries[present].After, *state);
    if (!step) {
        entries[present].After = std::move(state);
        return;
    }
    if (MergesWithPresent(*step, seconds)) {
        entries.pop_back();
        --present;
        step = DescribeStep(*entries[present].After, *state);
        if (!step) {  // there and back
            entries[present].After = std::move(state);
            return;
        }
    }
    entries.resize(present + 1);
    entries.push_back({std::move(state), *step, seconds});
    if (entries.size() > MostUndoSteps + 1) entries.erase(entries.begin());
    present = entries.size() - 1;
}

void DesignHistory::Amend(State state) {
    if (!entries.empty()) entries[present].After = std::move(state);
}

DesignHistory::State DesignHistory::Undo() {
    return present > 0 ? entries[--present].After : nullptr;
}

DesignHistory::State DesignHistory::Redo() {
    return present + 1 < entries.size() ? entries[++present].After : nullptr;
}

std::string DesignHistory::UndoName() const {
    return present > 0 ? entries[present].Step.Text() : std::string();
}

std::string DesignHistory::RedoName() const {
    return present + 1 < entries.size() ? entries[present + 1].Step.Text() : std::string();
}

}  // namespace ladderwise
