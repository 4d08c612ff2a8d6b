// The legend of the plot: which trace is which, at what scale, and what lies over or under it.
// Stands in the corner where it hides least. Plain structs, no Qt.
#pragma once

#include <string>
#include <vector>

#include "display/PlotContent.h"
#include "display/PlotCover.h"
#include "display/PlotFrame.h"

namespace ladderwise {

/// A short piece of line as the trace itself is drawn.
struct LegendSample {
    PlotColour Colour;
    bool Dashed = false;
};

/// One row: one or more samples (none: a remark), and what they are.
struct LegendRow {
    std::vector<LegendSample> Samples;
    std::string Text;
};

/// "Mag 10 dB/div", "Group delay 1.2 ns/div", ...
std::string TraceLegendText(TraceKind kind, const PlotScales& scales);

/// Points of the sweep within the bandwidth of a band-pass or notch; NumSweepPoints for others.
int PointsInBandWidth(const FilterDesign& design);

/// Fewer points than this in the bandwidth draw a coarse picture of it.
inline constexpr int FewestBandWidthPoints = 25;

/// A row for each chosen trace, one for a worst case, one for each further layer by its name, and a
/// hint where the sweep is too coarse for the bandwidth.
std::vector<LegendRow> BuildLegendRows(const PlotContent& content);

/// A legend with its place: texts and sample lines in pixels of the plot.
struct Legend {
    struct Sample {
        PlotLine Line;
        bool Dashed = false;
    };
    PlotRect Box;
    std::vector<Sample> Samples;
    std::vector<PlotText> Texts;
};

/// Height in pixels of the room below the plot that the legend of a content stands in, one line or
/// two: with six traces, or one design beside another, it would hide too much of the plot. 0: it
/// stands in the plot.
int LegendHeightBelow(const PlotContent& content);

/// Lays the rows out in one line, or two if there is the room, between the labels of the plot and
/// the strip, smaller where that is too long; empty where it would be too small, or a layout has no
/// line for it.
Legend LayLegendBelow(const std::vector<LegendRow>& rows, const PlotLayout& layout,
                      const TextMetrics& metrics);

/// Lays the rows out and finds their corner: in one column, or in two or three, or in a
/// large font smaller, where only that hides no trace. The box is empty without rows, and in a plot
/// too small for them.
Legend PlaceLegend(const std::vector<LegendRow>& rows, const TextMetrics& metrics,
                   PlotCover& cover);

}  // namespace ladderwise
