// The bounded readers: bad input is never refused, it is replaced and shown as replaced.
#include "numbers/NumberBox.h"

#include <cmath>
#include <utility>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

/// How far a value may lie beyond a bound and count as the bound, as a part of it: the texts of
/// computed limits have 15 digits, and so have values that were computed by another way.
constexpr double LimitSlack = 1e-14;

/// A smaller value is shown with a power of ten, "159E-9".
constexpr double SmallestPlain = 1e-4;

bool Touches(double value, double bound) {
    return std::abs(value - bound) <= LimitSlack * std::abs(bound);
}

/// The steps that both readers share; T is double or int and `parse` reads a text as T.
template <typename T, typename Parse>
T ReadBounded(NumberBox& box, const std::string& minText, const std::string& defaultText,
              const std::string& maxText, const char* readerName, Parse parse,
              const MessageCallback& report) {
    T minimum = 1, fallback = 1, maximum = 1;  // a limit that cannot be read stays 1
    const bool read[] = {parse(minText, minimum), parse(defaultText, fallback),
                         parse(maxText, maximum)};
    if (!(read[0] && read[1] && read[2]) && report)
        report("Error", std::string("Invalid String Argument in ") + readerName + " function.");

    box.Colour = BoxColour::Normal;
    box.ReplacedText.reset();
    if (!box.HoldsExactValue()) box.Moved.reset();
    const auto replace = [&box](const std::string& text, Unfit reason) {
        // A value of the program's that lies out of bounds is nobody's entry.
        if (!box.ReplacedText && !box.Moved) {
            box.ReplacedText = box.Text;
            box.ReplacedTyped = box.Typed;
            box.Reason = reason;
        }
        box.Text = text;
        box.Colour = BoxColour::Silver;
    };
    T value = fallback;
    if (box.HoldsExactValue())
        value = static_cast<T>(*box.ExactValue);
    else if (!parse(box.Text, value))
        replace(defaultText, Unfit::NotANumber);
    if (value < minimum && !Touches(value, minimum)) {
        value = minimum;
        replace(minText, Unfit::BelowMinimum);
    }
    if (value > maximum && !Touches(value, maximum)) {
        value = maximum;
        replace(maxText, Unfit::AboveMaximum);
    }
    box.ReplacedBy = static_cast<double>(value);
    if (box.ReplacedText) box.Typed = false;
    return value;
}

}  // namespace

void NumberBox::Type(std::string text) {
    Text = std::move(text);
    Typed = true;
    ExactValue.reset();
    Moved.reset();
}

void NumberBox::WriteValue(double value) {
    // A box has no room for the zeros of a very small value.
    const bool tiny = value != 0.0 && std::abs(value) < SmallestPlain;
    WriteText(tiny ? FormatEngineering(value, BoxDigits - 1) : FormatPlain(value, BoxDigits),
              value);
}

void NumberBox::WriteText(std::string text, double value) {
    Text = std::move(text);
    Typed = false;
    WrittenText = Text;
    ExactValue = value;
}

void NumberBox::MoveTo(double value, LoadReason why) {
    const double held = ExactValue.value_or(value);
    const double wanted = Moved ? Moved->Wanted : held;
    WriteValue(value);
    Moved.reset();
    if (value != wanted) Moved = MovedEntry{wanted, why, held};
}

void NumberBox::Replace(double value, const std::string& text) {
    if (!ReplacedText) {
        ReplacedText = Text;
        ReplacedTyped = Typed;
    }
    Reason = Unfit::NotOffered;
    ReplacedBy = value;
    Colour = BoxColour::Silver;
    WriteText(text, value);
}

bool SameEntry(const NumberBox& a, const NumberBox& b) {
    const auto number = [](const NumberBox& box) {
        double value = 0.0;
        if (box.HoldsExactValue()) return *box.ExactValue;
        return TryParseDouble(box.Text, value) ? value : 0.0;
    };
    return a.Text == b.Text && number(a) == number(b);
}

double EditBoxToDouble(NumberBox& box, const std::string& minText, const std::string& defaultText,
                       const std::string& maxText, const MessageCallback& report) {
    return ReadBounded<double>(box, minText, defaultText, maxText, "EditBoxToDouble",
                               TryParseDouble, report);
}

int EditBoxToInt(NumberBox& box, const std::string& minText, const std::string& defaultText,
                 const std::string& maxText, const MessageCallback& report) {
    return ReadBounded<int>(box, minText, defaultText, maxText, "EditBoxToInt", TryParseInt,
                            report);
}

}  // namespace ladderwise
