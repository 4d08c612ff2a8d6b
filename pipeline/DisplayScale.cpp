// Full scale of the group-delay axis.
#include "pipeline/DisplayScale.h"

#include "numbers/Formatfunctions.h"
#include "numbers/UnitTexts.h"

namespace ladderwise {

namespace {
constexpr int ScaleDigits = 1;          ///< decimals of the texts of the box
constexpr double LeastScale = 0.01;     ///< of the box, in computed scales
constexpr double LargestScale = 100.0;  ///< of the box, in computed scales
}  // namespace

void SettleGroupDelayScale(DesignInputs& inputs, FilterDesign& design, double computed,
                           const MessageCallback& report) {
    const std::string text = FormatEngineering(computed, ScaleDigits);
    NumberBox& box = inputs.Box(InputId::Scale);
    if (inputs.IsOn(ChoiceId::AutoScale)) {
        box.WriteText(text, computed);
        box.Colour = BoxColour::Normal;
        box.ReplacedText.reset();
        design.GDFullScale = computed;
        return;
    }
    // "500n" and "0.5 us" are as good as "500E-9"; the text stays as it was typed.
    double typed = 0.0;
    if (!box.HoldsExactValue() && !TryParseDouble(box.Text, typed) &&
        TryParseWithPrefix(box.Text, "s", typed))
        box.WriteText(box.Text, typed);
    // Bounds around a scale that is no positive number would mean nothing: nothing is replaced.
    if (!(computed > 0.0)) {
        if (box.HoldsExactValue()) typed = *box.ExactValue;
        design.GDFullScale = typed > 0.0 ? typed : computed;
        return;
    }
    design.GDFullScale =
        EditBoxToDouble(box, FormatEngineering(LeastScale * computed, ScaleDigits), text,
                        FormatEngineering(LargestScale * computed, ScaleDigits), report);
}

}  // namespace ladderwise
