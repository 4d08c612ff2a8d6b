// What a builder must know after a calculation: values that cannot be built, a load that was moved,
// an attenuation that was raised, a form that was forced, boxes that were replaced, a stage that is
// missing. No Qt.
#pragma once

#include <string>
#include <vector>

#include "pipeline/Calculation.h"

namespace ladderwise {

enum class NoteKind {
    Replaced,
    LoadMoved,
    AttenRaised,
    FormForced,
    EndTank,
    Unrealisable,
    MathError,
    Edited,
    Discarded,
    NotVaried,
    NoBand,
    BandMoved,
    Missed,
    TooLossy,
    Advice,
    NotOptimised,
    NoSuchOrder,
};

/// One note. Name is the console program's name of the input, or the designators of the parts,
/// "L4, L8".
struct Note {
    NoteKind Kind;
    std::string Name;
    std::string Text;                      ///< one sentence for people
    std::string Typed{};                   ///< of a replaced or moved box: what stood in it
    std::string InUse{};                   ///< of a replaced, moved or raised input: what is in use
    BoxColour Colour = BoxColour::Normal;  ///< of a replaced or moved box
    bool Idle = false;    ///< of a replaced box: disabled, it plays no part in the present design
    bool Advice = false;  ///< good to know; nothing is wrong, and nothing is coloured
};

/// "replaced", "load-moved", "atten-raised", "form-forced", "end-tank", "unrealisable",
/// "math-error", "edited", "discarded", "not-varied", "no-band", "band-moved", "missed",
/// "too-lossy", "advice", "not-optimised", "no-such-order".
const char* NameOf(NoteKind kind);

/// The notes of the last calculation, the ones that matter most first.
std::vector<Note> CollectNotes(const Calculation& calculation);

/// What the status line says: the notes without those on idle boxes. All empty: nothing out of the
/// ordinary.
struct StatusLine {
    std::string Warnings;  ///< replaced, moved, cannot be built, misses what was asked for
    std::string Hints;     ///< advice
};
StatusLine DescribeStatus(const Calculation& calculation);

}  // namespace ladderwise
