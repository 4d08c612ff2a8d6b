// Painting with the toolkit; every position comes from the plain structs.
#include "display/PlotPainter.h"

#include <algorithm>
#include <cmath>

#include <QFontMetrics>
#include <QPen>
#include <QPolygon>

#include "design/ChoiceNames.h"
#include "resources/Resources.h"

namespace ladderwise {

namespace {

constexpr int cellPadding = 4;  // between a table cell's text and its right edge
constexpr QColor tableColour(255, 255, 255);

void DrawTextAt(QPainter& painter, const PlotText& text) {
    painter.setPen(ToQColor(text.Colour));
    painter.drawText(text.X, text.Y + painter.fontMetrics().ascent(),
                     QString::fromStdString(text.Text));
}

void DrawTexts(QPainter& painter, const std::vector<PlotText>& texts) {
    for (const PlotText& text : texts)
        DrawTextAt(painter, text);
}

void DrawMissingPicture(QPainter& painter, const StripPicture& place) {
    const QRect box(place.X, place.Y, SchematicWidth - 1, SchematicHeight - 1);
    painter.setPen(ToQColor(Black));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(box);
    painter.drawText(box.adjusted(2, 2, -2, -2), Qt::AlignCenter | Qt::TextWrapAnywhere,
                     QString::fromLatin1(InfoOf(place.Type).Name));
}

}  // namespace

const QImage& SchematicPictures::Of(ElementType type, bool doubled) {
    const auto code = static_cast<std::size_t>(IsElement(type) ? type : ElementType::errorBitMap);
    Entry& entry = entries[doubled ? 1 : 0][code];
    if (!entry.Read) {
        InitResources();
        QString path = SchematicPath(type);
        if (doubled) path.insert(path.lastIndexOf(QLatin1Char('.')), QStringLiteral("@2x"));
        entry.Picture = QImage(path);
        entry.Read = true;
    }
    return entry.Picture;
}

QColor ToQColor(PlotColour colour) {
    return QColor(colour.Red, colour.Green, colour.Blue);
}

TextMetrics MetricsOf(const QPainter& painter) {
    const QFontMetrics metrics = painter.fontMetrics();
    return {[metrics](const std::string& text) {
                return metrics.horizontalAdvance(QString::fromStdString(text));
            },
            metrics.height()};
}

void PaintFrame(QPainter& painter, const PlotFrame& frame, QSize size) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(BackgroundColour));
    for (const PlotLine& line : frame.Lines) {
        painter.setPen(QPen(ToQColor(line.Colour), 1));
        painter.drawLine(line.X1, line.Y1, line.X2, line.Y2);
    }
    DrawTexts(painter, frame.FrequencyLabels);
    painter.setPen(QPen(ToQColor(Black), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(frame.Border.Left, frame.Border.Top, frame.Border.Width, frame.Border.Height);
    DrawTexts(painter, frame.GroupDelayMarks);
    DrawTexts(painter, frame.MagnitudeMarks);
    DrawTexts(painter, frame.PhaseMarks);
    DrawTextAt(painter, frame.Title);
}

void PaintTrace(QPainter& painter, const TracePoints& points, PlotColour colour,
                double pixelRatio) {
    const int penSize = std::max(1, static_cast<int>(std::lround(pixelRatio)));
    painter.setRenderHint(QPainter::Antialiasing, false);
    QPen solid(ToQColor(colour), 1, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin);
    QPen dashed = solid;
    dashed.setDashPattern({qreal(DashPixels * penSize), qreal(DashGapPixels * penSize)});
    std::array<QPoint, NumSweepPoints> polyline;
    for (int r = 0; r < points.NumRuns; ++r) {
        const TraceRun& run = points.Runs[static_cast<std::size_t>(r)];
        painter.setPen(run.Style == RunStyle::Dashed ? dashed : solid);
        for (int pixel = 0; pixel < penSize * penSize; ++pixel) {
            const QPoint offset(pixel % penSize - penSize / 2, pixel / penSize - penSize / 2);
            for (int n = run.First; n <= run.Last; ++n)
                polyline[static_cast<std::size_t>(n)] =
                    QPoint(points.X[n], points.Y[n]) * pixelRatio + offset;
            painter.drawPolyline(&polyline[static_cast<std::size_t>(run.First)],
                                 run.Last - run.First + 1);
        }
    }
}

void PaintLayer(QPainter& painter, const PlotLayer& layer, const TraceChoices& choices,
                const PlotLayout& layout, const PlotScales& scales, TracePoints& work,
                double pixelRatio) {
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(choices, kind)) continue;
        MapTrace(ValuesOf(layer.Values, kind), kind, layer.Dashed, layout, scales, work);
        PaintTrace(painter, work, layer.Colours[static_cast<std::size_t>(kind)], pixelRatio);
    }
}

void PaintOverlayRun(QImage& image, const PlotTraces& run, const TraceChoices& choices,
                     const PlotLayout& layout, const PlotScales& scales, OverlayWork& work) {
    const auto bytesPerPixel = static_cast<qsizetype>(sizeof(std::uint32_t));
    const PixelRows picture{reinterpret_cast<std::uint32_t*>(image.bits()), image.width(),
                            image.height(), image.bytesPerLine() / bytesPerPixel};
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(choices, kind)) continue;
        MapTrace(ValuesOf(run, kind), kind, false, layout, scales, work.Points);
        work.Spans.Fill(work.Points, image.devicePixelRatio(), TraceColour(kind), picture);
    }
}

void PaintStrip(QPainter& painter, const FilterDesign& design, int gridTop, int scroll,
                bool doubled, SchematicPictures& pictures) {
    const std::string notice = MissingStageText(design.Flags.Missing);
    if (!notice.empty()) {
        painter.setPen(ToQColor(Black));
        painter.drawText(ValueGridLeft + SchematicWidth, gridTop - SchematicHeight / 2,
                         QString::fromStdString(notice));
        return;
    }
    for (const StripPicture& place : PlaceSchematics(design, gridTop, scroll)) {
        const QImage& picture = pictures.Of(place.Type, doubled);
        if (picture.isNull()) {
            DrawMissingPicture(painter, place);
        } else {
            painter.drawImage(QRect(place.X, place.Y, SchematicWidth, SchematicHeight), picture);
        }
    }
}

void PaintValueTable(QPainter& painter, const std::vector<GridColumn>& columns, int gridTop) {
    const auto cell = [&](int column, int row, Qt::Alignment align, const QString& text) {
        const QRect box(ValueGridLeft + column * TablePitch, gridTop + row * TableRowHeight,
                        TablePitch, TableRowHeight);
        painter.setPen(ToQColor(GridColour));
        painter.setBrush(column == 0 ? ToQColor(BackgroundColour) : tableColour);
        painter.drawRect(box);
        painter.setPen(ToQColor(Black));
        painter.drawText(box.adjusted(0, 0, -cellPadding, 0),
                         static_cast<int>(align | Qt::AlignVCenter), text);
    };
    for (int row = 0; row < ValueGridRows; ++row) {
        const auto r = static_cast<std::size_t>(row);
        cell(0, row, Qt::AlignLeft, QString::fromLatin1(GridRowLabels[r]));
        for (std::size_t k = 0; k < columns.size(); ++k) {
            cell(static_cast<int>(k) + 1, row, Qt::AlignRight,
                 QString::fromStdString(columns[k][r].Text));
        }
    }
}

}  // namespace ladderwise
