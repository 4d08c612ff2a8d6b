// Places markers and legend over the traces of a plot.
#include "display/Annotations.h"

namespace ladderwise {

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
    for (const PlotLayer& layer : content.Layers)
        for (const TraceKind kind : TraceDrawOrder) {
            if (!IsChosen(content.Choices, kind)) continue;
            MapLayerTrace(layer, kind, content.Design, layout, scales, work);
            cover.AddTrace(work);
        }
    annotations.Key = PlaceLegend(BuildLegendRows(content), metrics, cover);
    const MarkedSweep sweep = SweepOf(content, layout, scales);
    if (!content.Layers.empty())
        AppendMarkerLines(content.Markers, sweep, content.Layers.front().Values.MagnitudeDb,
                          metrics, cover, annotations.Markers);
    for (const PlotLayer& layer : content.Layers)
        AppendTraceMarkers(content.Markers, sweep, layer, metrics, cover, annotations.Markers);
    return annotations;
}

}  // namespace ladderwise
