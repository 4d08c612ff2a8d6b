// The drawn ladder with a QPainter.
#include "schematic/DrawingPainter.h"

#include <QFontMetrics>
#include <QPainterPath>

namespace ladderwise {

namespace {

QRectF Rect(const DrawnRect& rect) {
    return {rect.Left, rect.Top, rect.Width, rect.Height};
}

QPointF Point(DrawnPoint point) {
    return {point.X, point.Y};
}

void PaintShapes(QPainter& painter, const SchematicDrawing& drawing) {
    QPainterPath path;  // one path: nothing is darker where two strokes meet
    for (const auto* const lines : {&drawing.Wires, &drawing.Lines})
        for (const DrawnLine& line : *lines) {
            path.moveTo(Point(line.From));
            path.lineTo(Point(line.To));
        }
    for (const DrawnArc& arc : drawing.Arcs) {
        path.arcMoveTo(Rect(arc.Frame), arc.Start);
        path.arcTo(Rect(arc.Frame), arc.Start, arc.Span);
    }
    for (const DrawnRect& box : drawing.Boxes)
        path.addRect(Rect(box));
    painter.setPen(QPen(Qt::black, drawing.Stroke, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::black);
    for (const DrawnPoint& dot : drawing.Dots)
        painter.drawEllipse(Point(dot), drawing.DotRadius, drawing.DotRadius);
}

}  // namespace

QFont DrawingFont(const QFont& font) {
    QFont drawing = font;
    drawing.setPixelSize(DrawingPixels);
    drawing.setHintingPreference(QFont::PreferNoHinting);
    return drawing;
}

TextMetrics DrawingMetrics(const QFont& font) {
    const QFontMetrics metrics(DrawingFont(font));
    return {[metrics](const std::string& text) {
                return metrics.horizontalAdvance(QString::fromStdString(text));
            },
            metrics.height()};
}

void PaintDrawing(QPainter& painter, const SchematicDrawing& drawing, QPointF at, double scale,
                  const QFont& font) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(at);
    painter.scale(scale, scale);
    PaintShapes(painter, drawing);
    painter.setPen(Qt::black);
    painter.setFont(DrawingFont(font));
    const int ascent = QFontMetrics(painter.font()).ascent();
    for (const DrawnText& text : drawing.Texts)
        painter.drawText(QPointF(text.Place.Left, text.Place.Top + ascent),
                         QString::fromStdString(text.Text));
    painter.restore();
}

}  // namespace ladderwise
