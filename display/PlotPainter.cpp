// Painting with the toolkit; every position comes from the plain structs.
#include "display/PlotPainter.h"

#include <algorithm>
#include <cmath>

#include <QFontInfo>
#include <QFontMetrics>
#include <QHash>
#include <QPen>
#include <QPolygon>

#include "design/ChoiceNames.h"
#include "resources/Resources.h"

namespace ladderwise {

namespace {

constexpr double thinWidth = 0.7;         // logical pixels of a measured trace
constexpr double finerThanPixels = 16.0;  // paper shows what pixels of a screen would hide
constexpr int cellPadding = 4;            // between a table cell's text and its right edge
constexpr QColor tableColour(255, 255, 255);

void DrawTexts(QPainter& painter, const std::vector<PlotText>& texts) {
    for (const PlotText& text : texts)
        PaintText(painter, text);
}

void DrawLines(QPainter& painter, const std::vector<PlotLine>& lines) {
    // Between whole densities a line of one logical pixel would be one pixel wide or two.
    const double ratio = painter.device()->devicePixelRatio();
    for (const PlotLine& line : lines) {
        QPen pen(ToQColor(line.Colour), ratio > 1.0 ? std::floor(ratio) : 1.0);
        pen.setCosmetic(ratio > 1.0);
        painter.setPen(pen);
        painter.drawLine(line.X1, line.Y1, line.X2, line.Y2);
    }
}

PixelRows PixelsOf(QImage& image) {
    const auto bytesPerPixel = static_cast<qsizetype>(sizeof(std::uint32_t));
    return {reinterpret_cast<std::uint32_t*>(image.bits()), image.width(), image.height(),
            image.bytesPerLine() / bytesPerPixel};
}

// Dark and wide enough to stand out from a cloud of runs in the colour itself.
PlotColour ColourOf(PlotColour colour, LayerLook look) {
    if (look != LayerLook::Darker) return colour;
    const auto darker = [](std::uint8_t part) { return static_cast<std::uint8_t>(part / 2); };
    return {darker(colour.Red), darker(colour.Green), darker(colour.Blue)};
}

double WidthOf(LayerLook look) {
    switch (look) {
        case LayerLook::Plain:
            return 1.0;
        case LayerLook::Darker:
            return 2.0;
        case LayerLook::Thin:
            return thinWidth;
    }
    return 1.0;
}

struct BandStroke {
    BandLine Line;
    bool Dashed;
};
constexpr std::array<BandStroke, NumBandLines> bandStrokes = {{{BandLine::Lowest, false},
                                                               {BandLine::Highest, false},
                                                               {BandLine::Low, true},
                                                               {BandLine::High, true}}};
constexpr double haloWidth = 3.0;  // logical pixels of background under a dashed line

/// Calls `draw` with values, kind, stroke, width and colour of each line of the bands, from the
/// bottom to the top.
template <typename Draw>
void ForBandLines(const TraceBands& bands, const TraceChoices& choices, PlotColour background,
                  const Draw& draw) {
    for (const bool halo : {true, false})
        for (const BandStroke& stroke : bandStrokes) {
            if (halo && !stroke.Dashed) continue;
            const PlotTraces values = bands.Line(stroke.Line);
            for (const TraceKind kind : TraceDrawOrder)
                if (IsChosen(choices, kind))
                    draw(ValuesOf(values, kind), kind, stroke.Dashed && !halo,
                         halo ? haloWidth : 1.0, halo ? background : BandColour(kind));
        }
}

/// On top of a worst case a reference stays as it is, and what is measured is no longer thin, so as
/// to be seen.
LayerLook LookOf(const PlotLayer& layer, LayerLook look) {
    switch (layer.Role) {
        case LayerRole::Design:
            return look;
        case LayerRole::Reference:
            return LayerLook::Plain;
        case LayerRole::Measurement:
            return look == LayerLook::Darker ? LayerLook::Plain : LayerLook::Thin;
    }
    return look;
}

void DrawMissingPicture(QPainter& painter, const StripPicture& place) {
    const QRect box(place.X, place.Y, SchematicWidth - 1, SchematicHeight - 1);
    painter.setPen(ToQColor(Black));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box);
    painter.drawText(box.adjusted(2, 2, -2, -2), Qt::AlignCenter | Qt::TextWrapAnywhere,
                     QString::fromLatin1(InfoOf(place.Type).Name));
}

// The ink of the schematic pictures, and the size of the names beside their symbols.
constexpr QColor stripInk(24, 28, 36);
constexpr int designatorPixels = 10;  // at least; in a large font five sixths of it
constexpr int schematicStroke = 2;

// Source and load around the pictures, and the names of the parts.
void PaintStripSigns(QPainter& painter, const FilterDesign& design, int gridTop, int scroll,
                     bool withValues) {
    painter.save();
    QFont font = painter.font();
    font.setPixelSize(std::max(designatorPixels, QFontInfo(font).pixelSize() * 5 / 6));
    painter.setFont(font);
    const StripSigns signs =
        BuildStripSigns(design, gridTop, scroll, withValues, MetricsOf(painter));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(stripInk, schematicStroke, Qt::SolidLine, Qt::FlatCap));
    painter.setBrush(Qt::NoBrush);
    for (const PlotLine& wire : signs.Wires)
        painter.drawLine(wire.X1, wire.Y1, wire.X2, wire.Y2);
    for (const PlotRect& box : signs.Resistors)
        painter.drawRect(box.Left, box.Top, box.Width, box.Height);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.drawEllipse(signs.Source.Left, signs.Source.Top, signs.Source.Width,
                        signs.Source.Height);
    DrawTexts(painter, signs.Texts);
    painter.restore();
}

// Rows of pixels from the line of 0 dB within which a trace runs along it: a pass band with 1 dB of
// ripple is three rows high on the scale of 10 dB.
constexpr int besideZero = 4;

/// The black line of 0 dB gives way where a trace runs along it: a pass band that is now on the
/// line's row and now below it would flicker between the two colours.
void ClearZeroLine(const TracePoints& points, const PlotLayout& pixels, int zeroY, double ratio,
                   PlotColour background, PixelRows picture) {
    const int reach = static_cast<int>(std::ceil(ratio));
    const int frame = pixels.PlotLeft + reach;  // which stays black
    const std::uint32_t black = ToQColor(Black).rgb(), clear = ToQColor(background).rgb();
    const int near = besideZero * reach;
    const int top = std::max(zeroY - reach, 0),
              bottom = std::min(zeroY + reach, picture.Height - 1);
    for (int n = 1; n < points.NumPoints; ++n) {
        const bool along = points.Shown[n - 1] && points.Shown[n] &&
                           std::abs(points.Y[n - 1] - zeroY) <= near &&
                           std::abs(points.Y[n] - zeroY) <= near;
        for (int x = std::max(points.X[n - 1], frame);
             along && x < std::min(points.X[n], picture.Width); ++x)
            for (int y = top; y <= bottom; ++y) {
                std::uint32_t& pixel = picture.Pixels[y * picture.Stride + x];
                if (pixel == black) pixel = clear;
            }
    }
}

}  // namespace

const QImage& SchematicPictures::Of(ElementType type, bool doubled) {
    const auto code = static_cast<std::size_t>(IsElement(type) ? type : ElementType::errorBitMap);
    Entry& entry = entries[doubled ? 1 : 0][code];
    if (!entry.Read) {
        InitResources();
        QString path = SchematicPath(type);
        if (doubled) path.insert(path.lastIndexOf(QLatin1Char('.')), QStringLiteral("@2x"));
        // In another format than the plot's each painting would convert it anew, in threads.
        entry.Picture = QImage(path).convertToFormat(QImage::Format_RGB32);
        entry.Read = true;
    }
    return entry.Picture;
}

void PaintText(QPainter& painter, const PlotText& text) {
    if (text.Text.empty()) return;
    const QFont font = painter.font();
    if (text.Scale < 1.0) {
        QFont smaller = font;
        if (font.pixelSize() > 0)
            smaller.setPixelSize(static_cast<int>(font.pixelSize() * text.Scale));
        else
            smaller.setPointSizeF(font.pointSizeF() * text.Scale);
        painter.setFont(smaller);
    }
    painter.setPen(ToQColor(text.Colour));
    painter.drawText(text.X, text.Y + painter.fontMetrics().ascent(),
                     QString::fromStdString(text.Text));
    if (text.Scale < 1.0) painter.setFont(font);
}

QColor ToQColor(PlotColour colour) {
    return QColor(colour.Red, colour.Green, colour.Blue);
}

TextMetrics MetricsOf(const QPainter& painter) {
    // Legend, marks and axes measure the same texts in picture after picture; to lay out a text
    // takes the toolkit many times as long as to find its width here.
    constexpr qsizetype MostWidths = 5000;
    static thread_local QHash<QString, int> widths;
    const QFontMetrics metrics = painter.fontMetrics();
    const QString font =
        painter.font().key() + QString::number(painter.device()->logicalDpiX()) + QChar('\n');
    return {[metrics, font](const std::string& text) {
                const QString line = QString::fromStdString(text);
                const auto known = widths.constFind(font + line);
                if (known != widths.constEnd()) return *known;
                if (widths.size() >= MostWidths) widths.clear();
                return *widths.insert(font + line, metrics.horizontalAdvance(line));
            },
            metrics.height()};
}

void PaintFrame(QPainter& painter, const PlotFrame& frame) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    DrawLines(painter, frame.Lines);
    DrawTexts(painter, frame.FrequencyLabels);
    DrawTexts(painter, frame.TimeLabels);
    DrawTexts(painter, frame.MoreFrequencyLabels);
    painter.setPen(QPen(ToQColor(Black), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.Border.Left, frame.Border.Top, frame.Border.Width, frame.Border.Height);
    DrawLines(painter, frame.TimeTicks);
    DrawTexts(painter, frame.GroupDelayMarks);
    DrawTexts(painter, frame.MagnitudeMarks);
    DrawTexts(painter, frame.PhaseMarks);
    DrawTexts(painter, frame.AxisUnits);
    PaintText(painter, frame.Title);
    PaintText(painter, frame.Subtitle);
}

void PaintTrace(QPainter& painter, const TracePoints& points, PlotColour colour, LayerLook look,
                double width) {
    QPen solid(ToQColor(ColourOf(colour, look)), width * WidthOf(look), Qt::SolidLine, Qt::FlatCap,
               Qt::RoundJoin);
    QPen dashed = solid;
    dashed.setDashPattern({qreal(DashPixels), qreal(DashGapPixels)});
    std::array<QPoint, NumSweepPoints> polyline;
    for (int r = 0; r < points.NumRuns; ++r) {
        const TraceRun& run = points.Runs[static_cast<std::size_t>(r)];
        painter.setPen(run.Style == RunStyle::Dashed ? dashed : solid);
        for (int n = run.First; n <= run.Last; ++n)
            polyline[static_cast<std::size_t>(n)] = QPoint(points.X[n], points.Y[n]);
        painter.drawPolyline(&polyline[static_cast<std::size_t>(run.First)],
                             run.Last - run.First + 1);
    }
}

void PaintLayer(QPainter& painter, const PlotLayer& layer, const FilterDesign& design,
                const TraceChoices& choices, const PlotLayout& layout, const PlotScales& scales,
                LayerLook look, TracePoints& work) {
    const PlotLayout fine = ScaledLayout(layout, finerThanPixels);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 / finerThanPixels, 1.0 / finerThanPixels);
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(choices, kind)) continue;
        MapLayerTrace(layer, kind, design, fine, scales, work, [&] {
            PaintTrace(painter, work, layer.Colours[static_cast<std::size_t>(kind)],
                       LookOf(layer, look), finerThanPixels);
        });
    }
    painter.restore();
}

void PaintLayerPixels(QImage& image, const PlotLayer& layer, const FilterDesign& design,
                      const TraceChoices& choices, const PlotLayout& layout,
                      const PlotScales& scales, LayerLook look, OverlayWork& work,
                      PlotColour background) {
    const double ratio = image.devicePixelRatio();
    const PlotLayout pixels = ScaledLayout(layout, ratio);
    const PixelRows picture = PixelsOf(image);
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(choices, kind)) continue;
        const int zeroY = MapValue(0.0, ScaleOf(kind, pixels, scales), pixels);
        const bool within = zeroY > pixels.PlotTop && zeroY < pixels.PlotBottom;
        const bool clear = kind == TraceKind::Mag10dB && layer.Role == LayerRole::Design && within;
        const PlotColour colour = layer.Colours[static_cast<std::size_t>(kind)];
        const LayerLook own = LookOf(layer, look);
        MapLayerTrace(layer, kind, design, pixels, scales, work.Points, [&] {
            if (clear) ClearZeroLine(work.Points, pixels, zeroY, ratio, background, picture);
            work.Strokes.Draw(work.Points, WidthOf(own) * ratio, ColourOf(colour, own), picture);
        });
    }
}

void PaintOverlayRun(QImage& image, const PlotTraces& run, const TraceChoices& choices,
                     const PlotLayout& layout, const PlotScales& scales, OverlayWork& work) {
    const PixelRows picture = PixelsOf(image);
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(choices, kind)) continue;
        MapTrace(ValuesOf(run, kind), kind, false, layout, scales, work.Points);
        work.Spans.Fill(work.Points, image.devicePixelRatio(), TraceColour(kind), picture);
    }
}

void PaintBands(QPainter& painter, const TraceBands& bands, const TraceChoices& choices,
                const PlotLayout& layout, const PlotScales& scales, TracePoints& work,
                PlotColour background) {
    const PlotLayout fine = ScaledLayout(layout, finerThanPixels);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(1.0 / finerThanPixels, 1.0 / finerThanPixels);
    ForBandLines(bands, choices, background,
                 [&](std::span<const double> values, TraceKind kind, bool dashed, double width,
                     PlotColour colour) {
                     MapTrace(values, kind, dashed, fine, scales, work);
                     PaintTrace(painter, work, colour, LayerLook::Plain, width * finerThanPixels);
                 });
    painter.restore();
}

void PaintBandPixels(QImage& image, const TraceBands& bands, const TraceChoices& choices,
                     const PlotLayout& layout, const PlotScales& scales, OverlayWork& work,
                     PlotColour background) {
    const double ratio = image.devicePixelRatio();
    const PlotLayout pixels = ScaledLayout(layout, ratio);
    const PixelRows picture = PixelsOf(image);
    ForBandLines(bands, choices, background,
                 [&](std::span<const double> values, TraceKind kind, bool dashed, double width,
                     PlotColour colour) {
                     MapTrace(values, kind, dashed, pixels, scales, work.Points);
                     work.Strokes.Draw(work.Points, width * ratio, colour, picture);
                 });
}

void PaintStrip(QPainter& painter, const FilterDesign& design, int gridTop, int scroll,
                const StripLook& look, SchematicPictures& pictures) {
    for (const StripPicture& place : PlaceSchematics(design, gridTop, scroll)) {
        const QImage& picture = pictures.Of(place.Type, look.Doubled);
        if (picture.isNull()) {
            DrawMissingPicture(painter, place);
        } else {
            painter.drawImage(QRect(place.X, place.Y, SchematicWidth, SchematicHeight), picture);
        }
    }
    PaintStripSigns(painter, design, gridTop, scroll, look.WithValues);
    for (const PlotRect& bar : BuildShareBars(look.Shares, gridTop, scroll))
        painter.fillRect(bar.Left, bar.Top, bar.Width, bar.Height, ToQColor(ShareBarColour));
}

void PaintValueTable(QPainter& painter, const std::vector<GridColumn>& columns, int gridTop) {
    const QColor background = ToQColor(BackgroundColour);
    for (int row = 0; row < RowsInUse(columns); ++row) {
        const auto r = static_cast<std::size_t>(row);
        const bool used = IsRowUsed(columns, row);
        const auto cell = [&](int column, Qt::Alignment align, const QString& text) {
            const QRect box(ValueGridLeft + column * TablePitch, gridTop + row * TableRowHeight,
                            TablePitch, TableRowHeight);
            painter.setPen(ToQColor(GridColour));
            painter.setBrush(column == 0 || !used ? background : tableColour);
            painter.drawRect(box);
            painter.setPen(ToQColor(used ? Black : UnusedLabelColour));
            painter.drawText(box.adjusted(0, 0, -cellPadding, 0),
                             static_cast<int>(align | Qt::AlignVCenter), text);
        };
        cell(0, Qt::AlignLeft, QString::fromLatin1(GridRowLabels[r]));
        for (std::size_t k = 0; k < columns.size(); ++k)
            cell(static_cast<int>(k) + 1, Qt::AlignRight,
                 QString::fromStdString(columns[k][r].Text));
    }
}

}  // namespace ladderwise
