// All that lies over the traces of a plot: limits, markers with their labels, and the legend, each
// where it hides least. Plain structs, no Qt.
#pragma once

#include "display/Legend.h"
#include "display/LimitEdges.h"
#include "display/Markers.h"
#include "display/PlotContent.h"

namespace ladderwise {

struct PlotAnnotations {
    std::vector<LimitEdge> Limits;
    MarkerDrawing Markers;
    Legend Key;
};

/// What markers of a content refer to.
MarkedSweep SweepOf(const PlotContent& content, const PlotLayout& layout, const PlotScales& scales);

/// Places the annotations of a content. `work` maps its traces.
PlotAnnotations BuildAnnotations(const PlotContent& content, const PlotLayout& layout,
                                 const PlotScales& scales, const TextMetrics& metrics,
                                 TracePoints& work);

}  // namespace ladderwise
