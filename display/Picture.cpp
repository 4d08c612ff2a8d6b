// The picture for reports.
#include "display/Picture.h"

#include <algorithm>
#include <cmath>

#include "design/ChoiceNames.h"
#include "display/PlotExport.h"
#include "display/PlotPainter.h"
#include "schematic/DrawingPainter.h"

namespace ladderwise {

namespace {

constexpr PlotColour paperWhite{255, 255, 255};
constexpr QSizeF screenExtent(1280.0, 800.0);  // beyond which a picture is enlarged
constexpr double metresPerInch = 0.0254;
constexpr double titleScale = 1.35;                     // of the body's text
constexpr double mostColumns = 52.0, mostLines = 30.0;  // of the body's text in a small picture
constexpr int smallestText = 5;                         // pixels

struct PictureFonts {
    QFont Title, Body;
};

PictureFonts FontsFor(QSizeF extent, const QFont& font) {
    PictureFonts fonts{InPixels(font), InPixels(font)};
    const double most = std::min(extent.width() / mostColumns, extent.height() / mostLines);
    const int pixels =
        std::max(smallestText, std::min(fonts.Body.pixelSize(), static_cast<int>(most)));
    fonts.Body.setPixelSize(pixels);
    fonts.Title.setPixelSize(static_cast<int>(std::lround(pixels * titleScale)));
    fonts.Title.setBold(true);
    return fonts;
}

/// How much larger than a screen a picture is, each way.
double EnlargementOf(QSizeF extent) {
    return std::max(1.0, std::min(extent.width() / screenExtent.width(),
                                  extent.height() / screenExtent.height()));
}

/// At its own size.
void PaintPage(QPainter& painter, QSizeF extent, const PictureContent& content,
               const PictureLook& look, const QFont& font) {
    const PictureFonts fonts = FontsFor(extent, font);
    painter.setFont(fonts.Title);
    PictureMetrics metrics;
    metrics.Title = MetricsOf(painter);
    painter.setFont(fonts.Body);
    metrics.Body = MetricsOf(painter);
    metrics.Ladder = DrawingMetrics(font);
    metrics.LadderScale = static_cast<double>(fonts.Body.pixelSize()) / DrawingPixels;
    const PictureLayout layout =
        LayOutPicture(content, look.Parts, static_cast<int>(std::floor(extent.width())),
                      static_cast<int>(std::floor(extent.height())), metrics);
    const PlotColour background = look.White ? paperWhite : BackgroundColour;
    painter.fillRect(QRectF(QPointF(0.0, 0.0), extent), ToQColor(background));
    if (layout.HasPlot) PaintResponse(painter, content.Plot, layout.Plot, false, background);
    painter.setRenderHint(QPainter::Antialiasing);
    for (const PictureLine& line : layout.Lines) {
        painter.setFont(line.IsTitle ? fonts.Title : fonts.Body);
        PaintText(painter, {line.X, line.Y, line.Text, Black, line.Scale});
    }
    PaintDrawing(painter, layout.Ladder, {layout.LadderLeft, layout.LadderTop}, layout.LadderScale,
                 font);
}

}  // namespace

QSizeF ExtentOf(const PictureSize& size) {
    return QSizeF(size.Width, size.Height) *
           (size.Millimetres ? LogicalDotsPerInch / MillimetresPerInch : 1.0);
}

QSize PixelsOf(const PictureSize& size) {
    const double scale = size.Millimetres ? DotsOfMillimetres / MillimetresPerInch : 1.0;
    return {static_cast<int>(std::lround(size.Width * scale)),
            static_cast<int>(std::lround(size.Height * scale))};
}

void PaintPicture(QPainter& painter, QSizeF extent, const PictureContent& content,
                  const PictureLook& look, const QFont& font) {
    const double scale = EnlargementOf(extent);
    painter.save();
    painter.scale(scale, scale);
    PaintPage(painter, extent / scale, content, look, font);
    painter.restore();
}

QImage PictureImage(QSizeF extent, QSize pixels, const PictureContent& content,
                    const PictureLook& look, const QFont& font) {
    QImage image(pixels, QImage::Format_RGB32);
    if (image.isNull()) return image;
    // The enlargement is the picture's density: traces are drawn in its own pixels.
    const double scale = EnlargementOf(extent);
    const double density = pixels.width() / extent.width();
    const int dots = static_cast<int>(std::lround(density * LogicalDotsPerInch / metresPerInch));
    image.setDotsPerMeterX(dots);
    image.setDotsPerMeterY(dots);
    image.setDevicePixelRatio(density * scale);
    image.fill(Qt::white);
    QPainter painter(&image);
    PaintPage(painter, extent / scale, content, look, font);
    painter.end();
    image.setDevicePixelRatio(1.0);
    return image;
}

PlotFile PaintPictureFile(const std::string& path, const PictureSize& size,
                          const PictureContent& content, const PictureLook& look,
                          const QFont& font) {
    const QSizeF extent = ExtentOf(size);
    return MakePictureFile(
        path, {extent, DesignTitle(content.Plot.Design), font,
               [&](QPainter& painter) { PaintPicture(painter, extent, content, look, font); },
               [&] { return PictureImage(extent, PixelsOf(size), content, look, font); }});
}

}  // namespace ladderwise
