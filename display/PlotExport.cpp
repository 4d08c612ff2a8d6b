// Writing the plot as PNG, SVG or PDF.
#include "display/PlotExport.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontMetrics>
#include <QImage>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <algorithm>
#include <memory>

#include "design/ChoiceNames.h"
#include "display/AnnotationPainter.h"
#include "display/Annotations.h"
#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr int dotsPerInch = 96;
constexpr int dotsPerMeter = 3780;  // 96 / 0.0254
constexpr double pointsPerInch = 72.0;
constexpr int bottomMargin = 10;  // below the table of values
constexpr const char* programName = "Ladderwise";

bool WritePng(QIODevice& file, QSize size, const PlotContent& content, const QFont& font) {
    QImage image(size, QImage::Format_RGB32);
    if (image.isNull()) return false;
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
    QPainter painter(&image);
    PaintPlot(painter, size, content, font);
    painter.end();
    return image.save(&file, "PNG");
}

bool PaintOnto(QPaintDevice& device, QSize size, const PlotContent& content, const QFont& font) {
    QPainter painter;
    if (!painter.begin(&device)) return false;
    PaintPlot(painter, size, content, font);
    return painter.end();
}

bool WriteSvg(QIODevice& file, QSize size, const PlotContent& content, const QFont& font) {
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setResolution(dotsPerInch);
    svg.setSize(size);
    svg.setViewBox(QRect(QPoint(0, 0), size));
    svg.setTitle(QString::fromStdString(DesignTitle(content.Design)));
    return PaintOnto(svg, size, content, font);
}

bool WritePdf(QIODevice& file, QSize size, const PlotContent& content, const QFont& font) {
    QPdfWriter pdf(&file);
    pdf.setCreator(QString::fromLatin1(programName));
    pdf.setTitle(QString::fromStdString(DesignTitle(content.Design)));
    pdf.setResolution(dotsPerInch);
    pdf.setPageSize(QPageSize(QSizeF(size) * pointsPerInch / dotsPerInch, QPageSize::Point,
                              QString(), QPageSize::ExactMatch));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    return PaintOnto(pdf, size, content, font);
}

/// The picture that the painter paints pixel by pixel, or nullptr for a vector picture.
QImage* PixelsOf(const QPainter& painter) {
    QPaintDevice* const device = painter.device();
    return device->devType() == QInternal::Image ? static_cast<QImage*>(device) : nullptr;
}

}  // namespace

int TableTop(QSize size, const FilterDesign& design) {
    return size.height() - RowsInUse(BuildValueGrid(design)) * TableRowHeight - bottomMargin;
}

void PaintPlot(QPainter& painter, QSize size, const PlotContent& content, const QFont& font) {
    const int gridTop = TableTop(size, content.Design);
    const PlotLayout layout = ComputePlotLayout(
        {size.width(), size.height(), 0, gridTop, LegendHeightBelow(content)}, content.Choices);
    painter.setFont(font);
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(BackgroundColour));
    PaintFrame(painter,
               BuildPlotFrame(content.Design, content.Choices, layout, MetricsOf(painter)));
    const PlotScales scales = ScalesOf(content.Design);
    const auto work = std::make_unique<OverlayWork>();
    QImage* const image = PixelsOf(painter);
    const auto paintLayers = [&](LayerLook look) {
        for (const PlotLayer& layer : content.Layers) {
            if (image)
                PaintLayerPixels(*image, layer, content.Design, content.Choices, layout, scales,
                                 look, *work);
            else
                PaintLayer(painter, layer, content.Design, content.Choices, layout, scales, look,
                           work->Points);
        }
    };
    const PlotAnnotations annotations =
        BuildAnnotations(content, layout, scales, MetricsOf(painter), work->Points);
    paintLayers(LayerLook::Plain);
    for (const PlotTraces& run : content.Overlays) {
        if (image)
            PaintOverlayRun(*image, run, content.Choices, layout, scales, *work);
        else
            PaintLayer(painter, {run}, content.Design, content.Choices, layout, scales,
                       LayerLook::Plain, work->Points);
    }
    if (!content.Overlays.empty()) paintLayers(LayerLook::Darker);
    PaintMarkers(painter, annotations.Markers);
    PaintLegend(painter, annotations.Key);

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
    const auto failed = [&path](const std::string& reason) {
        return PlotFile{{}, "cannot write " + path + ": " + reason};
    };
    const QString ending = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    const auto write = ending == QLatin1String("png")   ? WritePng
                       : ending == QLatin1String("svg") ? WriteSvg
                       : ending == QLatin1String("pdf") ? WritePdf
                                                        : nullptr;
    if (!write) return failed("a plot is a .png, .svg or .pdf file");
    if (!QFontMetrics(font).inFont(QLatin1Char('0')))
        return failed("no font is installed, and a plot needs one (DejaVu Sans, for example)");
    QByteArray bytes;
    QBuffer memory(&bytes);
    memory.open(QIODevice::WriteOnly);
    if (size.isEmpty() || !write(memory, size, content, font))
        return failed("no memory for a picture of " + std::to_string(size.width()) + " x " +
                      std::to_string(size.height()) + " pixels");
    return {bytes.toStdString(), {}};
}

}  // namespace ladderwise
