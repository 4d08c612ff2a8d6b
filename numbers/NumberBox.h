// An input box without a screen: its text, its colour and the exact value behind what the program
// wrote into it. Windows show these boxes, the console program fills them from its arguments, and
// the bounded readers below clean what stands in them. No Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "design/Messages.h"

namespace ladderwise {

/// Background of a box: silver tells that the entry was replaced, yellow that a stage moved it.
enum class BoxColour { Normal, Silver, Yellow };

/// Significant digits of a number that the program writes into a box.
inline constexpr int BoxDigits = 3;

/// Why a read replaced what stood in a box.
enum class Unfit { NotANumber, BelowMinimum, AboveMaximum, NotOffered };

/// Why the program's load may stand in the place of the user's. The numbers stand in design files.
enum class LoadReason : int {
    Equal = 1,      ///< the response needs the source's
    Twice = 2,      ///< twice the source's
    Half = 3,       ///< half of the source's
    Chebyshev = 4,  ///< the limit of an even order
    Elliptic = 5,   ///< what an elliptic ladder needs
};

/// What a box held before the program put a value of its own in its place.
struct MovedEntry {
    double Wanted;   ///< the user's value
    LoadReason Why;  ///< the reason of the last move
    double Held;     ///< what stood in the box before the last move; often Wanted
};

/// One input box. As long as Text is what the program wrote, ExactValue stands behind it, so that
/// showing 145.825 as "146" loses nothing.
struct NumberBox {
    std::string Text;
    BoxColour Colour = BoxColour::Normal;
    bool Typed = false;                         ///< Text is a user's
    std::string WrittenText{};                  ///< what the program wrote last
    std::optional<double> ExactValue{};         ///< the value that WrittenText stands for
    std::optional<std::string> ReplacedText{};  ///< what the last read found unfit and replaced
    bool ReplacedTyped = false;                 ///< that was a user's entry
    Unfit Reason = Unfit::NotANumber;           ///< of that replacement
    double ReplacedBy = 0.0;                    ///< what it took in the place of ReplacedText
    std::optional<MovedEntry> Moved{};          ///< set while a value of the program's stands here

    /// Puts a text into the box as a user types it: no exact value stands behind it.
    void Type(std::string text);

    /// Puts a value into the box with BoxDigits significant digits and keeps it exactly behind.
    void WriteValue(double value);

    /// Puts a text into the box that stands for exactly `value`.
    void WriteText(std::string text, double value);

    /// Puts a value of the program's in the place of the value that was read, and keeps in Moved
    /// what that was and why it moved, until the user types. A value that is the user's own again
    /// ends the move.
    void MoveTo(double value, LoadReason why);

    /// Replaces what was read by a value that the design in hand offers, marked as a bound would
    /// be.
    void Replace(double value, const std::string& text);

    /// True while the text in the box is the program's own and an exact value stands behind it.
    bool HoldsExactValue() const { return ExactValue && Text == WrittenText; }
};

/// True if two boxes show the same text and the same number stands behind it.
bool SameEntry(const NumberBox& a, const NumberBox& b);

/// Reads a box through its three limit texts. Unreadable text is replaced by the default, a value
/// outside [minimum, maximum] by the bound; the box then holds that limit's text, turns silver and
/// keeps what was typed in ReplacedText. Otherwise the box turns to the normal colour.
/// A limit text that is no number is a programming error: it is reported and counts as 1.0.
double EditBoxToDouble(NumberBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText, const MessageCallback& report);

/// As EditBoxToDouble for whole numbers.
int EditBoxToInt(NumberBox& box, const std::string& minText, const std::string& defaultText,
                 const std::string& maxText, const MessageCallback& report);

}  // namespace ladderwise
