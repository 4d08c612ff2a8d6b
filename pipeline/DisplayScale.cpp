// Full scale of the group-delay axis.
#include "pipeline/DisplayScale.h"

#include "numbers/Formatfunctions.h"

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
    design.GDFullScale =
        EditBoxToDouble(box, FormatEngineering(LeastScale * computed, ScaleDigits), text,
                        FormatEngineering(LargestScale * computed, ScaleDigits), report);
}

}  // namespace ladderwise
