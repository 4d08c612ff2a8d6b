// Notes for the builder.
#include "pipeline/Notes.h"

#include <cmath>

#include "design/ChoiceNames.h"
#include "files/CoefficientsFile.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/NoteSources.h"
#include "pipeline/ResultsText.h"

namespace ladderwise {

namespace {

constexpr int ReplacedDigits = 11;  ///< significant digits of a bound
constexpr int LoadDigits = 5;       ///< significant digits of a load
constexpr int AttenDigits = 2;      ///< decimals of an attenuation, dB

void AddHandMade(const Calculation& calculation, std::vector<Note>& notes) {
    if (HasEdits(calculation.Design))
        notes.push_back({NoteKind::Edited, "elements",
                         "Part values are edited by hand; the next calculation discards them."});
    if (calculation.DiscardedNow)
        notes.push_back({NoteKind::Discarded, "elements",
                         "This calculation discarded values edited by hand; Ctrl+B brings them "
                         "back."});
}

void AddMovedLoad(const DesignInputs& inputs, const FilterDesign& design,
                  std::vector<Note>& notes) {
    const NumberBox& box = inputs.Box(InputId::RLoad);
    if (!box.Moved) return;
    const auto ohms = [](double value) { return FormatPlain(value, LoadDigits); };
    const std::string typed = ohms(box.Moved->Wanted), used = ohms(box.ExactValue.value_or(0.0));
    const std::string text =
        LoadToBringBack(inputs, design)
            ? "R Load is still the " + used + " ohm of " + MoverOf(*box.Moved) + "; " + typed +
                  " ohm was asked for, and Ctrl+L brings it back."
            : "R Load was moved to " + used + " ohm, " + TextOf(box.Moved->Why) + "; " + typed +
                  " ohm was asked for.";
    notes.push_back({NoteKind::LoadMoved, RowOf(InputId::RLoad, inputs).Name, text, typed, box.Text,
                     box.Colour});
}

/// True for a K or M that nobody typed: the search has written it.
bool IsOfSearch(const InputRow& row, const NumberBox& box) {
    return (row.Id == InputId::NortonK || row.Id == InputId::NortonM) && !box.ReplacedTyped;
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
            if (IsOfSearch(row, box))
                return std::string("The search chose ") + row.Component + " " + *box.ReplacedText +
                       ", but it goes no higher than " + instead + used;
            return typed + " is above " + instead + used;
        case Unfit::NotOffered:
            return typed + " is not possible for a Norton band-pass" + used;
    }
    return typed;
}

/// What the prototype took in place of the inputs.
void AddOverrides(const FilterDesign& design, std::vector<Note>& notes) {
    if (design.Elliptic.AttenRaised) {
        const std::string used = FormatFixed(design.Elliptic.AttenUsedDb, AttenDigits);
        notes.push_back({NoteKind::AttenRaised, "atten",
                         "Attenuation " + used + " dB used: no ladder with positive parts below.",
                         "", used});
    }
    if (design.Flags.FormForced && design.PassType != PassType::DirectCoupled)
        notes.push_back({NoteKind::FormForced, "form",
                         std::string("The terminations ask for the form ") +
                             (design.FormCLC ? "CLC" : "LCL") + "."});
}

/// What the number beside the family counts, where it has just come to count something else.
void AddCount(const Calculation& calculation, std::vector<Note>& notes) {
    if (!calculation.CountChanged) return;
    const FilterDesign& design = calculation.Design;
    const std::string number = std::to_string(design.NumPoles);
    const bool many = design.NumPoles > 1;
    Note note{NoteKind::Advice, "poles",
              IsElliptic(design.ResponseType)
                  ? "The number counts traps now: " + OrderText(design) + "."
                  : "The number counts poles again: " + number + (many ? " poles." : " pole.")};
    note.Advice = true;
    notes.push_back(note);
}

/// Why a coefficients file that was read is not in use: it lacks the order.
void AddMissingOrder(const FilterDesign& design, std::vector<Note>& notes) {
    if (!design.Flags.FellBack || !design.CoefFileRead ||
        HasOrder(design.CoefficientTable, design.NumPoles))
        return;
    std::string orders;
    int count = 0;
    for (int n = 1; n <= MaxPoles; ++n)
        if (HasOrder(design.CoefficientTable, n)) {
            orders += (count++ > 0 ? ", " : "") + std::to_string(n);
        }
    notes.push_back({NoteKind::NoSuchOrder, "coefficients",
                     "The coefficients file has no order " + std::to_string(design.NumPoles) +
                         ", only " + (count == 1 ? "order " : "the orders ") + orders +
                         ": this is a Butterworth response."});
}

/// An M of less than its bound that nobody typed is the one for 3 poles, where it plays no part.
bool IsLeftoverM(const InputRow& row, const NumberBox& box) {
    return row.Id == InputId::NortonM && !box.ReplacedTyped && box.Reason == Unfit::BelowMinimum;
}

void AddReplacedBoxes(const DesignInputs& inputs, std::vector<Note>& notes) {
    for (int id = 0; id < NumInputs; ++id) {
        const InputRow& row = RowOf(static_cast<InputId>(id), inputs);
        const NumberBox& box = inputs.Box(row.Id);
        if (!box.ReplacedText || IsLeftoverM(row, box)) continue;
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
        case NoteKind::Missed:
            return "missed";
        case NoteKind::TooLossy:
            return "too-lossy";
        case NoteKind::Advice:
            return "advice";
        case NoteKind::NotOptimised:
            return "not-optimised";
        case NoteKind::NoSuchOrder:
            return "no-such-order";
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
    const bool hopeless = AddFaultyParts(design, notes);
    AddMissingOrder(design, notes);
    AddHandMade(calculation, notes);
    AddNotVaried(calculation, notes);
    AddMovedLoad(calculation.Inputs, design, notes);
    AddOverrides(design, notes);
    AddCount(calculation, notes);
    if (const std::string text = NortonSearchText(design); !text.empty())
        notes.push_back({NoteKind::NotOptimised, "auto-optimize", text});
    AddResponseNotes(calculation, !hopeless, notes);
    for (const PartsRemark& remark : calculation.Remarks) {
        Note note{remark.Wrong ? NoteKind::TooLossy : NoteKind::Advice, remark.Name, remark.Text};
        note.Advice = !remark.Wrong;
        notes.push_back(note);
    }
    AddReplacedBoxes(calculation.Inputs, notes);
    return notes;
}

StatusLine DescribeStatus(const Calculation& calculation) {
    StatusLine status;
    for (const Note& note : CollectNotes(calculation)) {
        if (note.Idle) continue;
        std::string& text = note.Advice ? status.Hints : status.Warnings;
        text += (text.empty() ? "" : "  ") + note.Text;
    }
    return status;
}

}  // namespace ladderwise
