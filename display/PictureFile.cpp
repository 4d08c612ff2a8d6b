// Pictures as PNG, SVG or PDF.
#include "display/PictureFile.h"

#include <QBuffer>
#include <QFileInfo>
#include <QFontInfo>
#include <QFontMetrics>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <cmath>

#include "display/PictureLayout.h"

namespace ladderwise {

namespace {

constexpr double pointsPerInch = 72.0;
constexpr int svgDotsPerInch = 2540;  // whole hundredths of a millimetre
constexpr int pdfDotsPerInch = 1200;
constexpr const char* programName = "Ladderwise";

bool WritePng(QIODevice& file, const PictureSource& source) {
    const QImage image = source.Pixels();
    return !image.isNull() && image.save(&file, "PNG");
}

bool PaintOnto(QPaintDevice& device, double scale, const PictureSource& source) {
    QPainter painter;
    if (!painter.begin(&device)) return false;
    painter.scale(scale, scale);
    source.Paint(painter);
    return painter.end();
}

bool WriteSvg(QIODevice& file, const PictureSource& source) {
    QSvgGenerator svg;
    svg.setOutputDevice(&file);
    svg.setResolution(svgDotsPerInch);
    svg.setSize((source.Extent * svgDotsPerInch / LogicalDotsPerInch).toSize());
    svg.setViewBox(QRectF(QPointF(0.0, 0.0), source.Extent));
    svg.setTitle(QString::fromStdString(source.Title));
    return PaintOnto(svg, 1.0, source);
}

bool WritePdf(QIODevice& file, const PictureSource& source) {
    QPdfWriter pdf(&file);
    pdf.setCreator(QString::fromLatin1(programName));
    pdf.setTitle(QString::fromStdString(source.Title));
    pdf.setResolution(pdfDotsPerInch);
    pdf.setPageSize(QPageSize(source.Extent * pointsPerInch / LogicalDotsPerInch, QPageSize::Point,
                              QString(), QPageSize::ExactMatch));
    pdf.setPageMargins(QMarginsF(0, 0, 0, 0));
    return PaintOnto(pdf, pdfDotsPerInch / LogicalDotsPerInch, source);
}

}  // namespace

QFont InPixels(const QFont& font) {
    QFont pixels = font;
    pixels.setPixelSize(QFontInfo(font).pixelSize());
    return pixels;
}

PlotFile MakePictureFile(const std::string& path, const PictureSource& source) {
    const auto failed = [&path](const std::string& reason) {
        return PlotFile{{}, "cannot write " + path + ": " + reason};
    };
    const QString ending = QFileInfo(QString::fromStdString(path)).suffix().toLower();
    const auto write = ending == QLatin1String("png")   ? WritePng
                       : ending == QLatin1String("svg") ? WriteSvg
                       : ending == QLatin1String("pdf") ? WritePdf
                                                        : nullptr;
    if (!write) return failed("a plot is a .png, .svg or .pdf file");
    if (!QFontMetrics(source.Font).inFont(QLatin1Char('0')))
        return failed("no font is installed, and a plot needs one (DejaVu Sans, for example)");
    QByteArray bytes;
    QBuffer memory(&bytes);
    memory.open(QIODevice::WriteOnly);
    if (source.Extent.isEmpty() || !write(memory, source))
        return failed("no memory for a picture of " +
                      std::to_string(std::lround(source.Extent.width())) + " x " +
                      std::to_string(std::lround(source.Extent.height())) + " pixels");
    return {bytes.toStdString(), {}};
}

}  // namespace ladderwise
