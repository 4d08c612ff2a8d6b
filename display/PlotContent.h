// What a plot shows of a calculation, for the window and for exported pictures alike. No Qt.
#pragma once

#include <memory>
#include <vector>

#include "analysis/Magphasefunctions.h"
#include "design/MarkerState.h"
#include "display/TraceBands.h"
#include "display/TraceKinds.h"
#include "limits/LimitMargin.h"

namespace ladderwise {

/// All that is shown of a design: its frame and strip come from Design, its traces from the layers,
/// the first of which is the design in hand; then the runs of a worst case over them.
struct PlotContent {
    const FilterDesign& Design;
    TraceChoices Choices;
    std::vector<PlotLayer> Layers;
    std::vector<PlotTraces> Overlays;
    int WorstCaseRuns = 0;  ///< that lie, or will lie, over the layers
    /// Of the runs that are drawn; null: of none, or the design's look does not have them.
    std::shared_ptr<const TraceBands> Bands{};
    MarkerState Markers{};
    LimitReport Limits{};  ///< of the design in hand
};

/// True if runs, or their bands, lie over the traces of a worst case of this design.
bool ShowsRuns(const FilterDesign& design);
bool ShowsBands(const FilterDesign& design);

/// The arrays of a design whose quantities and sweep outlive the result.
PlotTraces TracesOf(const DisplayQuantities& quantities, const SweepResponse& response);

/// The layer of a calculated design over its own sweep; both outlive the result.
PlotLayer LayerOf(const FilterDesign& design, const DisplayQuantities& quantities, LayerRole role,
                  const std::string& name);

/// The content of a calculated design. `others` are drawn beside it: a reference, a measurement.
PlotContent ContentOf(const FilterDesign& design, const TraceChoices& choices,
                      const DisplayQuantities& quantities, const std::vector<PlotLayer>& others);

/// A worst-case run kept for a picture that is painted later.
struct OverlayRun {
    DisplayQuantities Quantities;
    SweepResponse Response;

    PlotTraces Traces() const { return TracesOf(Quantities, Response); }
};

}  // namespace ladderwise
