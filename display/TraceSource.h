// The arrays of a plot from an analysed sweep. No Qt.
#pragma once

#include <vector>

#include "analysis/Magphasefunctions.h"
#include "display/TraceKinds.h"

namespace ladderwise {

/// The arrays of a design whose quantities and sweep outlive the result.
inline PlotTraces TracesOf(const DisplayQuantities& quantities, const SweepResponse& response) {
    PlotTraces traces;
    traces.MagnitudeDb = quantities.MagnitudeDb;
    traces.PhaseDeg = quantities.PhaseDeg;
    traces.GroupDelay = quantities.GroupDelay;
    traces.ReturnLossDb = response.ReflectionDb;
    return traces;
}

/// A worst-case run kept for a picture that is painted later.
struct OverlayRun {
    DisplayQuantities Quantities;
    SweepResponse Response;

    PlotTraces Traces() const { return TracesOf(Quantities, Response); }
};

}  // namespace ladderwise
