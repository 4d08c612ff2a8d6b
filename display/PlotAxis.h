// The frequency axis of the plot, and the traces of layers that have a sweep of their own: each
// point stands where its own frequency, or time, lies on the axis. Plain structs, no Qt.
#pragma once

#include <functional>

#include "display/TraceMap.h"

namespace ladderwise {

/// The axis from the plot's left edge (Start) to its right edge (Stop).
struct PlotAxis {
    bool Linear = false;  ///< else logarithmic
    double Start = 0.0;   ///< Hz
    double Stop = 0.0;    ///< Hz
};

PlotAxis AxisOf(const FilterDesign& design);

/// Where a frequency lies on the axis, in points of the plot's sweep: 0 at Start, NumSweepPoints at
/// Stop, below and above that off the plot. Not a number where the axis has no place for it.
double AxisPlace(double f, const PlotAxis& axis);

/// True for the places from one edge of the plot to the other.
bool IsOnPlot(double place);

/// x of a place on the plot, as MapIndex maps whole ones; other places go to the nearest edge.
int MapPlace(double place, const PlotLayout& layout);

/// True if a layer's points lie at those of the sweep that the plot shows.
bool HasPlotSweep(const LayerSweep& sweep, std::span<const double> plotFreqs);

/// MapTrace of a layer's trace on the axes of `design`, the one that the plot shows. Where the
/// layer's sweep (for the pulse, its time step) is that of the plot, point n stands at point n.
/// Otherwise each point stands at its own frequency or time; lines that leave the plot end at its
/// edge, and what lies beyond is not drawn. Dashes of short steps change every fourth point of the
/// plot's sweep then. A sweep of more points than `points` has room for is mapped piece by piece,
/// and `use` called after each; neighbouring pieces share a point.
void MapLayerTrace(const PlotLayer& layer, TraceKind kind, const FilterDesign& design,
                   const PlotLayout& layout, const PlotScales& scales, TracePoints& points,
                   const std::function<void()>& use);

}  // namespace ladderwise
