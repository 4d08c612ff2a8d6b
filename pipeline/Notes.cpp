// Notes for the builder.
#include "pipeline/Notes.h"

#include <cmath>

#include "design/ChoiceNames.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NortonSequence.h"

namespace ladderwise {

namespace {

constexpr int NoteDigits = 2;  ///< decimals of values in notes

/// Why a value cannot be built; empty if it can.
std::string Fault(ValueKind kind, double value) {
    if (std::isnan(value)) return "is not a number";
    if (value < 0.0) return "is negative";
    if (value > NotUsedLimit) return "is not finite";
    if (value == 0.0) return "is zero";
    if ((kind == ValueKind::Inductance || kind == ValueKind::Capacitance) &&
        value < SmallestPartValue)
        return "is too small to build";
    return {};
}

/// The L-sections at the ends of a Norton band-pass at the level of its terminations: no parts.
bool IsLeftOut(const FilterDesign& design, int slot, double value) {
    return design.PassType == PassType::Norton && value == 0.0 &&
           (slot == 1 || slot == design.NumElements);
}

void AddUnrealisable(const FilterDesign& design, std::vector<Note>& notes) {
    for (int slot = 1; slot <= design.NumElements; ++slot) {
        const CircuitElement& element = design.Elements[slot];
        const ElementInfo& info = InfoOf(element.Type);
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = info.Values[row];
            if (kind == ValueKind::Unused || IsLeftOut(design, slot, element.Value(row))) continue;
            const std::string fault = Fault(kind, element.Value(row));
            if (fault.empty()) continue;
            const std::string name = "slot " + std::to_string(slot);
            const std::string shown =
                FormatWithPrefix(element.Value(row), NoteDigits, UnitOf(kind));
            notes.push_back({NoteKind::Unrealisable, name,
                             "Slot " + std::to_string(slot) + " " + info.Name + ": " +
                                 SymbolOf(kind) + " = " + shown + " " + fault + "."});
        }
    }
}

void AddReplacedBoxes(const DesignInputs& inputs, std::vector<Note>& notes) {
    for (int id = 0; id < NumInputs; ++id) {
        const InputRow& row = RowOf(static_cast<InputId>(id), inputs);
        const NumberBox& box = inputs.Box(row.Id);
        if (!box.ReplacedText) continue;
        Note note{
            NoteKind::Replaced, row.Name,
            PlainLabel(row) + ": \"" + *box.ReplacedText + "\" was replaced by " + box.Text + ".",
            *box.ReplacedText, box.Text};
        note.Idle = !IsEnabled(row, inputs);
        notes.push_back(note);
    }
}

}  // namespace

const char* NameOf(NoteKind kind) {
    switch (kind) {
        case NoteKind::Replaced:
            return "replaced";
        case NoteKind::LoadMoved:
            return "load-moved";
        case NoteKind::FormForced:
            return "form-forced";
        case NoteKind::Unrealisable:
            return "unrealisable";
        case NoteKind::Missing:
            return "missing";
    }
    return "";
}

std::vector<Note> CollectNotes(const Calculation& calculation) {
    const FilterDesign& design = calculation.Design;
    std::vector<Note> notes;
    if (design.Flags.Missing != MissingStage::None)
        notes.push_back(
            {NoteKind::Missing,
             design.Flags.Missing == MissingStage::EllipticPrototype ? "response" : "pass",
             MissingStageText(design.Flags.Missing)});
    if (calculation.Inputs.IsOn(ChoiceId::TracePulse))
        notes.push_back(
            {NoteKind::Missing, "traces", "This version draws no square-pulse response yet."});
    if (const std::string fault = NortonFault(design); !fault.empty())
        notes.push_back({NoteKind::Unrealisable, "norton-type", fault});
    AddUnrealisable(design, notes);
    if (design.Flags.LoadMoved)
        notes.push_back({NoteKind::LoadMoved, "r-load",
                         "R Load was moved to " + FormatWithPrefix(design.RLoad, 4, "ohm") +
                             ", the limit of an even-order Chebyshev.",
                         "", calculation.Inputs.Box(InputId::RLoad).Text});
    if (design.Flags.FormForced)
        notes.push_back({NoteKind::FormForced, "form",
                         std::string("The terminations ask for the form ") +
                             (design.FormCLC ? "CLC" : "LCL") + "."});
    AddReplacedBoxes(calculation.Inputs, notes);
    return notes;
}

StatusLine DescribeStatus(const Calculation& calculation) {
    StatusLine status;
    for (const Note& note : CollectNotes(calculation)) {
        if (note.Idle) continue;
        status.Text += (status.Text.empty() ? "" : "  ") + note.Text;
        status.Warning = true;
    }
    const std::string worstCase = WorstCaseText(calculation.WorstCase);
    if (!worstCase.empty()) status.Text = worstCase + (status.Warning ? "  " + status.Text : "");
    return status;
}

std::string WorstCaseText(const WorstCaseResult& result) {
    if (result.Runs == 0) return {};
    return "Worst case of " + std::to_string(result.Runs) + " runs (seed " +
           std::to_string(result.Seed) + "): pass-band loss up to " +
           FormatFixed(result.PassBandLossDb, 2) + " dB, spread at F0 " +
           FormatFixed(result.SpreadAtF0Db, 2) + " dB.";
}

}  // namespace ladderwise
