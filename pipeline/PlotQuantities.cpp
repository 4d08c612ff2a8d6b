// Display quantities of one run.
#include "pipeline/PlotQuantities.h"

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {
constexpr int ScaleDigits = 1;          ///< decimals of the texts of ScaleBox
constexpr double LeastScale = 0.01;     ///< of ScaleBox, in computed scales
constexpr double LargestScale = 100.0;  ///< of ScaleBox, in computed scales
}  // namespace

void SettleGroupDelayScale(DesignInputs& inputs, FilterDesign& design, double computed,
                           const MessageCallback& report) {
    const std::string text = FormatEngineering(computed, ScaleDigits);
    if (inputs.AutoScale) {
        inputs.ScaleBox.WriteText(text, computed);
        inputs.ScaleBox.Colour = BoxColour::Normal;
        inputs.ScaleBox.ReplacedText.reset();
        design.GDFullScale = computed;
        return;
    }
    design.GDFullScale =
        EditBoxToDouble(inputs.ScaleBox, FormatEngineering(LeastScale * computed, ScaleDigits),
                        text, FormatEngineering(LargestScale * computed, ScaleDigits), report);
}

void DerivePlotQuantities(Calculation& calculation, int run, DisplayQuantities& quantities,
                          const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    const TraceChoices& traces = calculation.Inputs.Traces;
    const bool all = run < 1;
    NeededQuantities needed;
    needed.Magnitude = all || traces.Mag1dB || traces.Mag10dB;
    needed.Phase = all || traces.Phase;
    needed.GroupDelay = all || traces.GroupDelay;
    DeriveDisplayQuantities(design.Response, design.SweepFreqs, design.PhaseGDThreshold, needed,
                            quantities);
    if (all) SettleGroupDelayScale(calculation.Inputs, design, quantities.GDFullScale, report);
}

}  // namespace ladderwise
