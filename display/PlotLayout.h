// Where the plot, the schematic strip and the value grid lie in the window: whole pixels from the
// top left of the client area. Plain structs, no Qt.
#pragma once

#include "display/TraceKinds.h"
#include "schematic/Shapes.h"

namespace ladderwise {

inline constexpr int PlotDivisions = 10;     ///< horizontal divisions of the plot
inline constexpr int SmallestPlotWidth = 8;  ///< a client too narrow still gets this, in pixels

/// What the plot is laid out in, all in logical pixels.
struct ClientExtent {
    int ClientWidth = 0;
    int ClientHeight = 0;
    int PanelHeight = 0;   ///< input panel above the plot; 0 in exported files
    int GridTop = 0;       ///< y of the value grid's top edge
    int LegendHeight = 0;  ///< of a legend between the plot's labels and the strip; 0: none there
};

/// The plot's rectangle. A trace maps into PlotLeft .. PlotRight, PlotTop .. PlotBottom, edges
/// included. PlotHeight is always a multiple of PlotDivisions and at least PlotDivisions.
struct PlotLayout {
    ClientExtent Area;
    int PlotLeft = 0;
    int PlotRight = 0;
    int PlotTop = 0;
    int PlotBottom = 0;
    int PlotWidth = 0;
    int PlotHeight = 0;
};

/// Lays out the plot. The left margin widens when group delay and the 10 dB magnitude both need a
/// column of scale marks, the one below the plot when the pulse trace needs its time axis. The
/// bottom moves down to whole divisions, by a full division even when the height already was whole.
/// A client too small gives the smallest plot, partly off the client.
PlotLayout ComputePlotLayout(const ClientExtent& area, const TraceChoices& choices);

/// y of the top of a legend below the plot, above which the plot's labels end: without one that of
/// the strip.
int LegendTop(const PlotLayout& layout);

/// The same layout in the pixels of a picture with `ratio` of them to a logical one. Its area is
/// not scaled.
PlotLayout ScaledLayout(const PlotLayout& layout, double ratio);

/// The group-delay scale box: left of the plot, vertically centred on its top edge.
PlotRect ScaleBoxRect(const PlotLayout& layout, int boxHeight);

/// Width in pixels of the value grid of a ladder: a label column and one column per element.
int ValueGridWidth(int numElements);

/// Width in pixels from the window's left edge to the end of the load's text or of the value grid,
/// whichever is further right: what has to be scrolled where it is wider than the client.
int LadderWidth(int numElements);

}  // namespace ladderwise
