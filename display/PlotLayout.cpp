// The plot's margins and the rounding of its height to whole divisions.
#include "display/PlotLayout.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

namespace {

constexpr int leftMargin = 60;
constexpr int leftMarginTwoScales = 85;
constexpr int rightMargin = 60;
constexpr int topMargin = 35;        // between the panel and the plot: the title
constexpr int labelMargin = 30;      // between the plot and the strip: the frequency labels
constexpr int timeLabelMargin = 18;  // more where time labels stand below those
constexpr int namesGap = 4;          // between a legend below the plot and the strip's names
constexpr int loadRoom = 78;         // the load and its text, right of the last picture
constexpr int gridBorder = 67;       // the label column and the grid's own border

}  // namespace

PlotLayout ComputePlotLayout(const ClientExtent& area, const TraceChoices& choices) {
    PlotLayout layout;
    layout.Area = area;
    layout.PlotLeft = choices.GroupDelay && choices.Mag10dB ? leftMarginTwoScales : leftMargin;
    layout.PlotRight =
        std::max(area.ClientWidth - rightMargin, layout.PlotLeft + SmallestPlotWidth);
    layout.PlotTop = area.PanelHeight + topMargin;
    const int margin = labelMargin + (choices.Pulse ? timeLabelMargin : 0) + area.LegendHeight;
    layout.PlotBottom = std::max(area.GridTop - SchematicHeight - margin, layout.PlotTop);
    layout.PlotWidth = layout.PlotRight - layout.PlotLeft;
    layout.PlotHeight = layout.PlotBottom - layout.PlotTop;
    layout.PlotBottom += PlotDivisions - layout.PlotHeight % PlotDivisions;
    layout.PlotHeight = layout.PlotBottom - layout.PlotTop;
    return layout;
}

int LegendTop(const PlotLayout& layout) {
    const int legend = layout.Area.LegendHeight;
    return layout.Area.GridTop - SchematicHeight - (legend > 0 ? legend + namesGap : 0);
}

PlotLayout ScaledLayout(const PlotLayout& layout, double ratio) {
    const auto scaled = [ratio](int logical) {
        return static_cast<int>(std::lround(logical * ratio));
    };
    PlotLayout pixels = layout;
    pixels.PlotLeft = scaled(layout.PlotLeft);
    pixels.PlotRight = scaled(layout.PlotRight);
    pixels.PlotTop = scaled(layout.PlotTop);
    pixels.PlotBottom = scaled(layout.PlotBottom);
    pixels.PlotWidth = pixels.PlotRight - pixels.PlotLeft;
    pixels.PlotHeight = pixels.PlotBottom - pixels.PlotTop;
    return pixels;
}

PlotRect ScaleBoxRect(const PlotLayout& layout, int boxHeight) {
    return {1, layout.PlotTop - boxHeight / 2, layout.PlotLeft - 2, boxHeight};
}

int ValueGridWidth(int numElements) {
    return ValueGridPitch * numElements + gridBorder;
}

int LadderWidth(int numElements) {
    return std::max(ValueGridLeft + ValueGridWidth(numElements),
                    ValueGridLeft + SchematicWidth * (numElements + 1) + loadRoom);
}

}  // namespace ladderwise
