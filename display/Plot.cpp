// The plot's off-screen image.
#include "display/Plot.h"

#include <algorithm>
#include <cmath>

#include "display/AnnotationPainter.h"

namespace ladderwise {

Plot::Plot() {
    Resize(1, 1);
}

void Plot::Resize(int clientWidth, int clientHeight, double devicePixelRatio) {
    const double ratio = devicePixelRatio > 1.0 ? devicePixelRatio : 1.0;
    const auto pixels = [ratio](int logical) {
        return static_cast<int>(std::ceil(std::max(logical, 1) * ratio));
    };
    image = QImage(pixels(clientWidth), pixels(clientHeight), QImage::Format_RGB32);
    image.setDevicePixelRatio(ratio);
    image.fill(ToQColor(BackgroundColour));
    layout = ComputePlotLayout({clientWidth, clientHeight, 0, clientHeight}, choices);
}

void Plot::SetFont(const QFont& labelFont) {
    font = labelFont;
}

void Plot::PaintContent(const PlotContent& content, const PlotPlacement& newPlacement) {
    choices = content.Choices;
    placement = newPlacement;
    PaintBackground(content.Design);
    for (const PlotLayer& layer : content.Layers)
        PaintLayerPixels(image, layer, content.Design, choices, layout, scales, LayerLook::Plain,
                         work);
    QPainter painter(&image);
    painter.setFont(font);
    annotations = BuildAnnotations(content, layout, scales, MetricsOf(painter), work.Points);
    painter.end();
    PaintAnnotations();
}

void Plot::FinishOverlay(const PlotContent& content) {
    LayerLook look = LayerLook::Darker;
    for (const PlotLayer& layer : content.Layers) {
        PaintLayerPixels(image, layer, content.Design, choices, layout, scales, look, work);
        look = LayerLook::Plain;
    }
    PaintAnnotations();
}

void Plot::PaintAnnotations() {
    QPainter painter(&image);
    painter.setFont(font);
    PaintMarkers(painter, annotations.Markers);
    PaintLegend(painter, annotations.Key);
}

void Plot::PaintBackground(const FilterDesign& design) {
    const QSize size = image.deviceIndependentSize().toSize();
    layout = ComputePlotLayout(
        {size.width(), size.height(), placement.PanelHeight, placement.GridTop}, choices);
    scales = ScalesOf(design);
    image.fill(ToQColor(BackgroundColour));  // the painter would wake threads for it
    QPainter painter(&image);
    painter.setFont(font);
    PaintFrame(painter, BuildPlotFrame(design, choices, layout, MetricsOf(painter)));
    PaintStrip(painter, design, placement.GridTop, placement.StripScroll, Doubled(), pictures);
}

void Plot::PaintOverlay(const PlotTraces& run) {
    PaintOverlayRun(image, run, choices, layout, scales, work);
}

void Plot::ScrollStrip(const FilterDesign& design, int scroll) {
    placement.StripScroll = scroll;
    const QSize size = image.deviceIndependentSize().toSize();
    const QRect band(0, placement.GridTop - SchematicHeight, size.width(), SchematicHeight);
    QPainter painter(&image);
    painter.setFont(font);
    painter.setClipRect(band);
    painter.fillRect(band, ToQColor(BackgroundColour));
    PaintStrip(painter, design, placement.GridTop, scroll, Doubled(), pictures);
}

}  // namespace ladderwise
