// Paints what lies over the traces: limits, markers, legend, and the crosshair of the cursor. Every
// position comes from the plain structs.
#pragma once

#include <QPainter>

#include "display/Legend.h"
#include "display/LimitEdges.h"
#include "display/Markers.h"
#include "display/ReadOuts.h"

namespace ladderwise {

/// Edges two pixels wide, on the side that is forbidden, three of limits that fail, and hatches.
void PaintLimits(QPainter& painter, const std::vector<LimitEdge>& edges);

/// Dotted marker lines, leaders, dots and labels; each label on a faint patch of background.
void PaintMarkers(QPainter& painter, const MarkerDrawing& drawing,
                  PlotColour background = BackgroundColour);

/// The legend on a patch of background that lets strong traces shine through.
void PaintLegend(QPainter& painter, const Legend& legend, PlotColour background = BackgroundColour);

/// The crosshair within the plot, with a ring on each trace.
void PaintCrosshair(QPainter& painter, const CursorReadOuts& readOuts, const PlotLayout& layout);

}  // namespace ladderwise
