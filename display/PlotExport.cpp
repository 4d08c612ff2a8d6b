// The plot of the window as a file.
#include "display/PlotExport.h"

#include <algorithm>
#include <memory>

#include "design/ChoiceNames.h"
#include "display/AnnotationPainter.h"
#include "display/Annotations.h"
#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr int dotsPerMeter = 3780;  // 96 / 0.0254
constexpr int bottomMargin = 10;    // below the table of values

/// The picture that the painter paints pixel by pixel, or nullptr for a vector picture.
QImage* PixelsOf(const QPainter& painter) {
    QPaintDevice* const device = painter.device();
    return device->devType() == QInternal::Image ? static_cast<QImage*>(device) : nullptr;
}

QImage PlotImage(QSize size, const PlotContent& content, const QFont& font) {
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return image;
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QPainter painter(&image);
    PaintPlot(painter, size, content, font);
    return image;
}

/// Grid, layers and the runs of a worst case within the plot, as pixels: as vectors, a thousand
/// runs would be a file of many megabytes and of no other look.
void PaintRunsAsPixels(QPainter& painter, const PlotContent& content, const PlotLayout& layout,
                       const PlotFrame& frame, PlotColour background) {
    constexpr double density = 4.0;  // 384 to the inch
    const QRect plot(layout.PlotLeft, layout.PlotTop, layout.PlotWidth, layout.PlotHeight);
    QImage image(plot.size() * density, QImage::Format_RGB32);
    if (image.isNull()) return;
    image.setDevicePixelRatio(density);
    image.fill(ToQColor(background));
    PlotLayout within = layout;
    within.PlotLeft = within.PlotTop = 0;
    within.PlotRight = layout.PlotWidth;
    within.PlotBottom = layout.PlotHeight;
    PlotFrame lines;
    for (PlotLine line : frame.Lines) {
        line.X1 -= plot.left();
        line.X2 -= plot.left();
        line.Y1 -= plot.top();
        line.Y2 -= plot.top();
        lines.Lines.push_back(line);
    }
    lines.Border = {-1, -1, plot.width() + 2, plot.height() + 2};
    QPainter pixels(&image);
    PaintFrame(pixels, lines);
    pixels.end();
    const PlotScales scales = ScalesOf(content.Design);
    const auto work = std::make_unique<OverlayWork>();
    for (const PlotLayer& layer : content.Layers)
        PaintLayerPixels(image, layer, content.Design, content.Choices, within, scales,
                         LayerLook::Plain, *work, background);
    for (const PlotTraces& run : content.Overlays)
        PaintOverlayRun(image, run, content.Choices, within, scales, *work);
    painter.save();
    painter.setRenderHint(QPainter::LosslessImageRendering);
    painter.drawImage(QRectF(plot), image, QRectF(image.rect()));
    painter.restore();
    PlotFrame border;  // half of which the image covers
    border.Border = frame.Border;
    PaintFrame(painter, border);
}

}  // namespace

int TableTop(QSize size, const FilterDesign& design) {
    return size.height() - RowsInUse(BuildValueGrid(design)) * TableRowHeight - bottomMargin;
}

void PaintResponse(QPainter& painter, const PlotContent& content, const PlotLayout& layout,
                   bool titles, PlotColour background) {
    PlotFrame frame = BuildPlotFrame(content.Design, content.Choices, layout, MetricsOf(painter));
    if (!titles) frame.Title = frame.Subtitle = {};
    PaintFrame(painter, frame);
    const PlotScales scales = ScalesOf(content.Design);
    const auto work = std::make_unique<OverlayWork>();
    QImage* const image = PixelsOf(painter);
    const auto paintLayers = [&](LayerLook look) {
        for (const PlotLayer& layer : content.Layers) {
            if (image)
                PaintLayerPixels(*image, layer, content.Design, content.Choices, layout, scales,
                                 look, *work, background);
            else
                PaintLayer(painter, layer, content.Design, content.Choices, layout, scales, look,
                           work->Points);
        }
    };
    const PlotAnnotations annotations =
        BuildAnnotations(content, layout, scales, MetricsOf(painter), work->Points);
    const bool runs = !content.Overlays.empty() && ShowsRuns(content.Design);
    if (image || !runs) paintLayers(LayerLook::Plain);
    if (image && runs)
        for (const PlotTraces& run : content.Overlays)
            PaintOverlayRun(*image, run, content.Choices, layout, scales, *work);
    else if (runs)
        PaintRunsAsPixels(painter, content, layout, frame, background);
    if (content.Bands && image)
        PaintBandPixels(*image, *content.Bands, content.Choices, layout, scales, *work, background);
    else if (content.Bands)
        PaintBands(painter, *content.Bands, content.Choices, layout, scales, work->Points,
                   background);
    if (runs || content.Bands) paintLayers(LayerLook::Darker);
    PaintLimits(painter, annotations.Limits);
    PaintMarkers(painter, annotations.Markers, background);
    PaintLegend(painter, annotations.Key, background);
}

void PaintPlot(QPainter& painter, QSize size, const PlotContent& content, const QFont& font) {
    const int gridTop = TableTop(size, content.Design);
    const PlotLayout layout = ComputePlotLayout(
        {size.width(), size.height(), 0, gridTop, LegendHeightBelow(content)}, content.Choices);
    painter.setFont(font);
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(BackgroundColour));
    PaintResponse(painter, content, layout, true, BackgroundColour);
    const std::vector<GridColumn> columns = BuildValueGrid(content.Design);
    const int needed = 2 * ValueGridLeft + (static_cast<int>(columns.size()) + 1) * TablePitch;
    const double shrink = std::min(1.0, static_cast<double>(size.width()) / needed);
    SchematicPictures pictures;
    painter.save();
    // About the line between strip and table, so that the strip stays below the plot's labels.
    painter.translate(0, gridTop);
    painter.scale(shrink, shrink);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, shrink < 1.0);
    PaintStrip(painter, content.Design, 0, 0, {true, true}, pictures);
    PaintValueTable(painter, columns, 0);
    painter.restore();
}

PlotFile PaintPlotFile(const std::string& path, QSize size, const PlotContent& content,
                       const QFont& font) {
    const QFont pixels = InPixels(font);
    return MakePictureFile(path,
                           {QSizeF(size), DesignTitle(content.Design), pixels,
                            [&](QPainter& painter) { PaintPlot(painter, size, content, pixels); },
                            [&] { return PlotImage(size, content, pixels); }});
}

}  // namespace ladderwise
