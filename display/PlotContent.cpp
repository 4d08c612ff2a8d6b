// From a calculated design to the layers of a plot.
#include "display/PlotContent.h"

#include "design/ChoiceNames.h"

namespace ladderwise {

bool ShowsRuns(const FilterDesign& design) {
    return design.Overlay != OverlayLook::Bands;
}

bool ShowsBands(const FilterDesign& design) {
    return design.Overlay != OverlayLook::Runs;
}

PlotTraces TracesOf(const DisplayQuantities& quantities, const SweepResponse& response) {
    PlotTraces traces;
    traces.MagnitudeDb = quantities.MagnitudeDb;
    traces.PhaseDeg = quantities.PhaseDeg;
    traces.GroupDelay = quantities.GroupDelay;
    traces.Pulse = quantities.Pulse;
    traces.ReturnLossDb = response.ReflectionDb;
    return traces;
}

PlotLayer LayerOf(const FilterDesign& design, const DisplayQuantities& quantities, LayerRole role,
                  const std::string& name) {
    const bool reference = role == LayerRole::Reference;
    return {TracesOf(quantities, design.Response),
            reference ? ReferenceColours : CurrentColours,
            role,
            name,
            reference ? "Ref" : "",
            {design.SweepFreqs, design.PulseTimeStep, design.PassType, BandAboutF0(design)}};
}

PlotContent ContentOf(const FilterDesign& design, const TraceChoices& choices,
                      const DisplayQuantities& quantities, const std::vector<PlotLayer>& others) {
    PlotContent content{design, choices, {}, {}};
    content.Layers.push_back(LayerOf(design, quantities, LayerRole::Design, DesignTitle(design)));
    content.Layers.insert(content.Layers.end(), others.begin(), others.end());
    return content;
}

}  // namespace ladderwise
