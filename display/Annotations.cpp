// Places limits, markers and legend over the traces of a plot.
#include "display/Annotations.h"

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <utility>

#include "limits/LimitTable.h"

namespace ladderwise {

namespace {

/// Where a trace ends, and its name there.
struct TraceEnd {
    std::string Name;
    MarkerDot At;
};

/// The end of what is mapped of a trace; empty if nothing is drawn of it.
std::optional<TraceEnd> EndOf(const PlotLayer& layer, TraceKind kind, const TracePoints& points) {
    if (points.NumRuns < 1) return {};
    const int last = points.Runs[static_cast<std::size_t>(points.NumRuns - 1)].Last;
    return TraceEnd{
        layer.ShortName + (layer.ShortName.empty() ? "" : " ") + TraceShortName(kind),
        {points.X[last], points.Y[last], layer.Colours[static_cast<std::size_t>(kind)], kind}};
}

constexpr PlotColour failingColour{200, 0, 0};

/// Edges and hatches must not be hidden; what stands at them is placed later.
void CoverEdges(const std::vector<LimitEdge>& edges, PlotCover& cover) {
    for (const LimitEdge& edge : edges)
        for (const PlotLine& line : edge.Hatch)
            cover.AddBlock({std::min(line.X1, line.X2), std::min(line.Y1, line.Y2),
                            std::abs(line.X2 - line.X1), std::abs(line.Y2 - line.Y1)});
}

/// What each limit demands and whether that holds, at its first edge.
void LabelEdges(const PlotContent& content, const std::vector<LimitEdge>& edges,
                const TextMetrics& metrics, PlotCover& cover, MarkerDrawing& drawing) {
    for (std::size_t n = 0; n < edges.size(); ++n) {
        const LimitEdge& edge = edges[n];
        if (n > 0 && edges[n - 1].Limit == edge.Limit) continue;
        const LimitMargin& limit = content.Limits.Rows[edge.Limit];
        const std::string text = DemandOf(limit.Line) + ": " + VerdictOf(limit);
        const int clear = edge.ForbidsAbove ? -LimitHatchDepth : LimitHatchDepth;
        const PlotRect place = cover.PlaceLabel((edge.Left + edge.Right) / 2, edge.Y + clear,
                                                metrics.Width(text), metrics.Height);
        drawing.Labels.push_back(
            {place.Left, place.Top, text, edge.Fails ? failingColour : edge.Colour});
    }
}

}  // namespace

MarkedSweep SweepOf(const PlotContent& content, const PlotLayout& layout,
                    const PlotScales& scales) {
    return {content.Design.PassType,
            content.Design.SweepFreqs,
            content.Choices,
            layout,
            scales,
            content.Design.PulseTimeStep,
            AxisOf(content.Design),
            BandAboutF0(content.Design)};
}

PlotAnnotations BuildAnnotations(const PlotContent& content, const PlotLayout& layout,
                                 const PlotScales& scales, const TextMetrics& metrics,
                                 TracePoints& work) {
    PlotAnnotations annotations;
    // An empty ladder has no response to speak of.
    if (content.Design.NumElements < 1) return annotations;
    PlotCover cover(layout);
    std::vector<TraceEnd> ends;
    for (const PlotLayer& layer : content.Layers)
        for (const TraceKind kind : TraceDrawOrder) {
            if (!IsChosen(content.Choices, kind)) continue;
            std::optional<TraceEnd> end;
            MapLayerTrace(layer, kind, content.Design, layout, scales, work, [&] {
                cover.AddTrace(work);
                if (auto here = EndOf(layer, kind, work)) end = std::move(here);
            });
            if (end) ends.push_back(*std::move(end));
        }
    annotations.Limits = BuildLimitEdges(content, layout, scales);
    CoverEdges(annotations.Limits, cover);
    const std::vector<LegendRow> rows = BuildLegendRows(content);
    annotations.Key = LayLegendBelow(rows, layout, metrics);
    if (annotations.Key.Texts.empty()) annotations.Key = PlaceLegend(rows, metrics, cover);
    const MarkedSweep sweep = SweepOf(content, layout, scales);
    if (!content.Layers.empty())
        AppendMarkerLines(content.Markers, sweep, content.Layers.front().Values.MagnitudeDb,
                          metrics, cover, annotations.Markers);
    LabelEdges(content, annotations.Limits, metrics, cover, annotations.Markers);
    for (const PlotLayer& layer : content.Layers)
        AppendTraceMarkers(content.Markers, sweep, layer, &layer == &content.Layers.front(),
                           metrics, cover, annotations.Markers);
    // A trace alone needs no name.
    for (const TraceEnd& end : ends)
        if (ends.size() > 1) AppendTraceName(end.Name, end.At, metrics, cover, annotations.Markers);
    return annotations;
}

}  // namespace ladderwise
