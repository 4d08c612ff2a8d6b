// The plot's off-screen image.
#include "display/Plot.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "display/AnnotationPainter.h"

namespace ladderwise {

namespace {

double Density(double devicePixelRatio) {
    return devicePixelRatio > 1.0 ? devicePixelRatio : 1.0;
}

QSize PixelsOf(int width, int height, double ratio) {
    const auto pixels = [ratio](int logical) {
        return static_cast<int>(std::ceil(std::max(logical, 1) * ratio));
    };
    return {pixels(width), pixels(height)};
}

}  // namespace

Plot::Plot() {
    Resize(1, 1);
}

void Plot::Resize(int clientWidth, int clientHeight, double devicePixelRatio) {
    const double ratio = Density(devicePixelRatio);
    traces = QImage(PixelsOf(clientWidth, clientHeight, ratio), QImage::Format_RGB32);
    traces.setDevicePixelRatio(ratio);
    traces.fill(ToQColor(BackgroundColour));
    annotations = {};
    composed = false;
    layout = ComputePlotLayout({clientWidth, clientHeight, 0, clientHeight}, choices);
}

bool Plot::HasSize(int clientWidth, int clientHeight, double devicePixelRatio) const {
    const double ratio = Density(devicePixelRatio);
    return traces.devicePixelRatio() == ratio &&
           traces.size() == PixelsOf(clientWidth, clientHeight, ratio);
}

void Plot::SetFont(const QFont& labelFont) {
    font = labelFont;
}

void Plot::PaintContent(const PlotContent& content, const PlotPlacement& newPlacement) {
    choices = content.Choices;
    runsShown = ShowsRuns(content.Design);
    placement = newPlacement;
    PaintBackground(content);
    for (const PlotLayer& layer : content.Layers)
        PaintLayerPixels(traces, layer, content.Design, choices, layout, scales, LayerLook::Plain,
                         work);
    Annotate(content);
}

void Plot::FinishOverlay(const PlotContent& content) {
    if (content.Bands) PaintBandPixels(traces, *content.Bands, choices, layout, scales, work);
    for (const PlotLayer& layer : content.Layers)
        PaintLayerPixels(traces, layer, content.Design, choices, layout, scales, LayerLook::Darker,
                         work);
    composed = false;
}

void Plot::Annotate(const PlotContent& content) {
    QPainter painter(&traces);
    painter.setFont(font);
    annotations = BuildAnnotations(content, layout, scales, MetricsOf(painter), work.Points);
    composed = false;
}

const QImage& Plot::Image() const {
    if (std::exchange(composed, true)) return image;
    if (image.size() == traces.size() && image.isDetached())
        std::memcpy(image.bits(), traces.constBits(),
                    static_cast<std::size_t>(traces.sizeInBytes()));
    else
        image = traces.copy();
    image.setDevicePixelRatio(traces.devicePixelRatio());
    QPainter painter(&image);
    painter.setFont(font);
    PaintLimits(painter, annotations.Limits);
    PaintMarkers(painter, annotations.Markers);
    PaintLegend(painter, annotations.Key);
    return image;
}

void Plot::PaintBackground(const PlotContent& content) {
    const FilterDesign& design = content.Design;
    const QSize size = traces.deviceIndependentSize().toSize();
    layout = ComputePlotLayout({size.width(), size.height(), placement.PanelHeight,
                                placement.GridTop, LegendHeightBelow(content)},
                               choices);
    scales = ScalesOf(design);
    traces.fill(ToQColor(BackgroundColour));  // the painter would wake threads for it
    QPainter painter(&traces);
    painter.setFont(font);
    PaintFrame(painter, BuildPlotFrame(design, choices, layout, MetricsOf(painter)));
    PaintStrip(painter, design, placement.GridTop, placement.StripScroll,
               {Doubled(), partValues, shares}, pictures);
}

void Plot::PaintOverlay(const PlotTraces& run) {
    if (!runsShown) return;
    PaintOverlayRun(traces, run, choices, layout, scales, work);
    composed = false;
}

void Plot::ScrollStrip(const FilterDesign& design, int scroll) {
    placement.StripScroll = scroll;
    composed = false;
    const QSize size = traces.deviceIndependentSize().toSize();
    const QRect band(0, placement.GridTop - SchematicHeight - StripOverhang, size.width(),
                     SchematicHeight + StripOverhang);
    QPainter painter(&traces);
    painter.setFont(font);
    painter.setClipRect(band);
    painter.fillRect(band, ToQColor(BackgroundColour));
    PaintStrip(painter, design, placement.GridTop, scroll, {Doubled(), partValues, shares},
               pictures);
}

}  // namespace ladderwise
