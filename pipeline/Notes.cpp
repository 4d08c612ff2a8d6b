// Notes for the builder.
#include "pipeline/Notes.h"

#include <cmath>

#include "analysis/PartValues.h"
#include "design/ChoiceNames.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/ResultsText.h"

namespace ladderwise {

namespace {

constexpr int NoteDigits = 2;       ///< decimals of values in notes
constexpr int ReplacedDigits = 11;  ///< significant digits of a bound
constexpr int LoadDigits = 5;       ///< significant digits of a load
constexpr int AttenDigits = 2;      ///< decimals of an attenuation, dB
constexpr int OffsetDigits = 1;     ///< decimals of how far a band has moved, %

/// No part has more henries or farads, not even in a prototype for 1 ohm and 1 rad/s.
constexpr double LargestPartValue = 100.0;

/// Line impedances beyond these, ohm, come of a line of 180 or a stub of 90 degrees, whose tangent
/// or sine rounding keeps from infinity or zero.
constexpr double HighestLineImpedance = 1e9;
constexpr double LowestLineImpedance = 1e-9;

std::string Shown(ValueKind kind, double value) {
    return std::string(SymbolOf(kind)) + " = " + FormatWithPrefix(value, NoteDigits, UnitOf(kind));
}

/// Why a value cannot be built, as a sentence without its stop; empty if it can.
std::string Fault(ValueKind kind, double value) {
    const std::string symbol = SymbolOf(kind);
    if (std::isnan(value)) return symbol + " has no value: the calculation gave no number";
    if (value > NotUsedLimit) return symbol + " has no value: it grew beyond all bounds";
    const std::string shown = Shown(kind, value);
    if (value < 0.0) return shown + " is negative";
    if (value == 0.0) return shown + " is zero";
    if (kind == ValueKind::Impedance && value > HighestLineImpedance)
        return shown + " is too high to build";
    if (kind == ValueKind::Impedance && value < LowestLineImpedance)
        return shown + " is too low to build";
    if (!IsPart(kind)) return {};
    if (value < SmallestPartValue)
        return shown + " is too small to build; the response counts it as 1E-18";
    if (value > LargestPartValue)
        return shown + " is beyond reach (a value is typed as 400p or 400E-12)";
    return {};
}

/// The L-sections at the ends of a Norton band-pass at the level of its terminations: no parts.
bool IsLeftOut(const FilterDesign& design, int slot, double value) {
    return design.PassType == PassType::Norton && value == 0.0 &&
           (slot == 1 || slot == design.NumElements);
}

std::string SlotText(const FilterDesign& design, int slot) {
    return "Slot " + std::to_string(slot) + " " + InfoOf(design.Elements[slot].Type).Name + ": ";
}

/// Calls `take(slot, kind, value)` for every value that the ladder uses.
template <typename Take>
void ForEveryValue(const FilterDesign& design, Take take) {
    for (int slot = 1; slot <= design.NumElements; ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = InfoOf(design.Elements[slot].Type).Values[row];
            if (kind != ValueKind::Unused) take(slot, kind, design.Elements[slot].Value(row));
        }
}

void AddUnrealisable(const FilterDesign& design, std::vector<Note>& notes) {
    ForEveryValue(design, [&](int slot, ValueKind kind, double value) {
        const std::string fault = Fault(kind, value);
        if (fault.empty() || IsLeftOut(design, slot, value)) return;
        notes.push_back({NoteKind::Unrealisable, "slot " + std::to_string(slot),
                         SlotText(design, slot) + fault + "."});
    });
}

/// Parts that the draws of a worst case take for something else, because they are so large.
void AddNotVaried(const Calculation& calculation, std::vector<Note>& notes) {
    if (calculation.WorstCase.Runs == 0) return;
    ForEveryValue(calculation.Design, [&](int slot, ValueKind kind, double value) {
        if (!IsPart(kind) || !(value >= LargestRandomisedValue) || value > NotUsedLimit) return;
        notes.push_back({NoteKind::NotVaried, "slot " + std::to_string(slot),
                         SlotText(calculation.Design, slot) + Shown(kind, value) +
                             " does not vary in a worst case: only values below 0.1 do."});
    });
}

void AddHandMade(const Calculation& calculation, std::vector<Note>& notes) {
    if (HasEdits(calculation.Design))
        notes.push_back({NoteKind::Edited, "elements",
                         "Part values are edited by hand; the next calculation discards them."});
    if (calculation.DiscardedNow)
        notes.push_back({NoteKind::Discarded, "elements",
                         "This calculation discarded values edited by hand; Ctrl+B brings them "
                         "back."});
}

void AddMovedLoad(const DesignInputs& inputs, std::vector<Note>& notes) {
    const NumberBox& box = inputs.Box(InputId::RLoad);
    if (!box.Moved) return;
    const auto ohms = [](double value) { return FormatPlain(value, LoadDigits); };
    const std::string typed = ohms(box.Moved->Wanted);
    notes.push_back({NoteKind::LoadMoved, RowOf(InputId::RLoad, inputs).Name,
                     "R Load was moved to " + ohms(box.ExactValue.value_or(0.0)) + " ohm, " +
                         box.Moved->Why + "; " + typed + " ohm was asked for.",
                     typed, box.Text, box.Colour});
}

/// "Ripple 5 dB is above 1 dB: 1 dB used."
std::string ReplacedText(const InputRow& row, const NumberBox& box) {
    const std::string unit = *row.Unit ? std::string(" ") + row.Unit : std::string();
    std::string name = PlainLabel(row);
    if (!unit.empty() && name.size() > unit.size() && name.ends_with(unit))
        name.resize(name.size() - unit.size());
    // Boxes that round show less than the bound has.
    const std::string instead =
        (row.Back == WriteBack::Significant ? FormatPlain(box.ReplacedBy, ReplacedDigits)
                                            : box.Text) +
        unit;
    const std::string used = ": " + instead + " used.";
    const std::string typed = name + " " + *box.ReplacedText + unit;
    switch (box.Reason) {
        case Unfit::NotANumber:
            return name + " \"" + *box.ReplacedText + "\" is no " +
                   (row.Back == WriteBack::Whole ? "whole number" : "number") + used;
        case Unfit::BelowMinimum:
            return typed + " is below " + instead + used;
        case Unfit::AboveMaximum:
            return typed + " is above " + instead + used;
        case Unfit::NotOffered:
            return typed + " is not possible for a Norton band-pass" + used;
    }
    return typed;
}

/// What the synthesis says about the end tanks, in the words of the window.
void AddEndTanks(const FilterDesign& design, std::vector<Note>& notes) {
    const DirectCoupledResult& limits = design.DirectCoupledLimits;
    for (const std::size_t end : {SourceEnd, LoadEnd}) {
        const std::string name = end == SourceEnd ? "First" : "Last";
        if (limits.Clamped[end])
            notes.push_back({NoteKind::EndTank, "tank-values",
                             name + " tank: its value is beyond " + limits.Readouts[end] +
                                 ", so it is not matched."});
        if (limits.WarningShown[end])
            notes.push_back({NoteKind::EndTank, "tank-values", name + " Tank Z is Large."});
    }
}

/// What the prototype took in place of the inputs.
void AddOverrides(const FilterDesign& design, std::vector<Note>& notes) {
    if (design.Elliptic.AttenRaised) {
        const std::string used = FormatFixed(design.Elliptic.AttenUsedDb, AttenDigits);
        notes.push_back({NoteKind::AttenRaised, "atten",
                         "Attenuation " + used + " dB used: no ladder with positive parts below.",
                         "", used});
    }
    if (design.Flags.FormForced)
        notes.push_back({NoteKind::FormForced, "form",
                         std::string("The terminations ask for the form ") +
                             (design.FormCLC ? "CLC" : "LCL") + "."});
}

/// True if the band of a design that changed in nothing but its values or parts is where it was
/// asked for.
bool IsInPlace(const FilterDesign& design) {
    const ResponseResults results = ResultsOf(design);
    return results.Peak && !results.BandOffset;
}

/// Why a band has moved, as far as a calculation without the cause brings it back.
std::string CauseOfMove(const Calculation& calculation) {
    FilterDesign trial = calculation.Design;
    if (HasEdits(trial)) {
        trial.Elements = *trial.CalculatedElements;
        return IsInPlace(trial) ? ": values edited by hand" : "";
    }
    const auto place = [&](PartChoice parts, bool std) {
        trial.Elements = calculation.IdealElements;
        trial.PartModel.Choice = parts;
        if (parts == PartChoice::DeEmbed) DeEmbedParts(trial);
        if (std) SnapToStdValue(trial);
        return IsInPlace(trial);
    };
    const PartChoice parts = calculation.Design.PartModel.Choice;
    const bool std = calculation.Design.StdLCValues;
    if (parts == PartChoice::RealParts && place(PartChoice::IdealParts, std))
        return place(PartChoice::DeEmbed, std) ? ": parasitics; DeEmbed brings it back"
                                               : ": parasitics";
    if (std && place(parts, false)) return ": standard values";
    return "";
}

/// Where the pass band of a band-pass is, if not where it was asked for.
void AddBand(const Calculation& calculation, std::vector<Note>& notes) {
    const ResponseResults& results = calculation.Results;
    const PassType pass = calculation.Design.PassType;
    if (!results.Valid || !HasBandWidth(pass) || pass == PassType::Notch) return;
    if (!results.Peak)
        notes.push_back({NoteKind::NoBand, "f0",
                         "There is no pass band about Fo: the loss has no minimum there."});
    if (!results.BandOffset) return;
    const double offset = *results.BandOffset;
    notes.push_back({NoteKind::BandMoved, "f0",
                     "Band lies " + FormatFixed(100.0 * std::abs(offset), OffsetDigits) +
                         (offset < 0.0 ? " % low" : " % high") + CauseOfMove(calculation) + "."});
}

void AddReplacedBoxes(const DesignInputs& inputs, std::vector<Note>& notes) {
    for (int id = 0; id < NumInputs; ++id) {
        const InputRow& row = RowOf(static_cast<InputId>(id), inputs);
        const NumberBox& box = inputs.Box(row.Id);
        if (!box.ReplacedText) continue;
        Note note{NoteKind::Replaced, row.Name, ReplacedText(row, box),
                  *box.ReplacedText,  box.Text, box.Colour};
        note.Idle = !IsEnabled(row, inputs);
        if (note.Idle && !box.ReplacedTyped) continue;  // of no concern, and nobody's entry
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
        case NoteKind::AttenRaised:
            return "atten-raised";
        case NoteKind::FormForced:
            return "form-forced";
        case NoteKind::EndTank:
            return "end-tank";
        case NoteKind::Unrealisable:
            return "unrealisable";
        case NoteKind::MathError:
            return "math-error";
        case NoteKind::Edited:
            return "edited";
        case NoteKind::Discarded:
            return "discarded";
        case NoteKind::NotVaried:
            return "not-varied";
        case NoteKind::NoBand:
            return "no-band";
        case NoteKind::BandMoved:
            return "band-moved";
    }
    return "";
}

std::vector<Note> CollectNotes(const Calculation& calculation) {
    const FilterDesign& design = calculation.Design;
    std::vector<Note> notes;
    if (const std::uint64_t count = MathErrorCount(calculation); count > 0)
        notes.push_back({NoteKind::MathError, "math",
                         std::to_string(count) + (count == 1 ? " math error" : " math errors") +
                             ": the values of this design are doubtful."});
    if (const std::string fault = NortonFault(design); !fault.empty())
        notes.push_back({NoteKind::Unrealisable, "norton-type", fault});
    AddUnrealisable(design, notes);
    AddHandMade(calculation, notes);
    AddNotVaried(calculation, notes);
    AddMovedLoad(calculation.Inputs, notes);
    AddOverrides(design, notes);
    if (design.PassType == PassType::DirectCoupled) AddEndTanks(design, notes);
    AddBand(calculation, notes);
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
    const std::string elliptic = EllipticText(calculation.Design, calculation.Results);
    if (!elliptic.empty()) status.Text += (status.Text.empty() ? "" : "  ") + elliptic;
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
