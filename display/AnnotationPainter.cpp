// Limits, markers, legend and crosshair with the toolkit.
#include "display/AnnotationPainter.h"

#include <QPen>

#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr int patchAlpha = 200;  // of 255: what lies below a text stays visible
constexpr int dotRadius = 3;     // pixels, of a marker on a trace
constexpr int ringRadius = 4;    // pixels, of the crosshair on a trace
constexpr int holdingEdge = 2;   // pixels, of a limit
constexpr int failingEdge = 3;
constexpr QColor crosshairColour(64, 64, 64);

QColor PatchColour(PlotColour background) {
    QColor colour = ToQColor(background);
    colour.setAlpha(patchAlpha);
    return colour;
}

void DrawLine(QPainter& painter, const PlotLine& line, Qt::PenStyle style) {
    painter.setPen(QPen(ToQColor(line.Colour), 1, style));
    painter.drawLine(line.X1, line.Y1, line.X2, line.Y2);
}

void DrawDot(QPainter& painter, const MarkerDot& dot) {
    const QPoint at(dot.X, dot.Y), right(dotRadius, 0), down(0, dotRadius);
    QPolygon shape;
    switch (dot.Kind) {
        case TraceKind::Mag1dB:
        case TraceKind::Mag10dB:
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            painter.fillRect(dot.X - dotRadius, dot.Y - dotRadius, 2 * dotRadius + 1,
                             2 * dotRadius + 1, ToQColor(dot.Colour));
            return;
        case TraceKind::ReturnLoss:
            painter.setRenderHint(QPainter::Antialiasing);
            painter.setPen(Qt::NoPen);
            painter.setBrush(ToQColor(dot.Colour));
            painter.drawEllipse(QPointF(at) + QPointF(0.5, 0.5), dotRadius + 0.5, dotRadius + 0.5);
            painter.setRenderHint(QPainter::Antialiasing, false);
            return;
        case TraceKind::Phase:
            shape << at - 2 * down + down / 2 << at - right + down << at + right + down;
            break;
        case TraceKind::GroupDelay:
            shape << at - down - down / 2 << at + right + right / 2 << at + down + down / 2
                  << at - right - right / 2;
            break;
    }
    painter.setPen(ToQColor(dot.Colour));
    painter.setBrush(ToQColor(dot.Colour));
    painter.drawPolygon(shape);
}

}  // namespace

void PaintLimits(QPainter& painter, const std::vector<LimitEdge>& edges) {
    for (const LimitEdge& edge : edges) {
        const QColor colour = ToQColor(edge.Colour);
        const int width = edge.Fails ? failingEdge : holdingEdge;
        painter.fillRect(edge.Left, edge.ForbidsAbove ? edge.Y - width + 1 : edge.Y,
                         edge.Right - edge.Left + 1, width, colour);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(colour, 1.0));
        for (const PlotLine& line : edge.Hatch)
            painter.drawLine(QPointF(line.X1 + 0.5, line.Y1 + 0.5),
                             QPointF(line.X2 + 0.5, line.Y2 + 0.5));
        painter.setRenderHint(QPainter::Antialiasing, false);
    }
}

void PaintMarkers(QPainter& painter, const MarkerDrawing& drawing, PlotColour background) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const PlotLine& line : drawing.Lines)
        DrawLine(painter, line, Qt::DotLine);
    const QFontMetrics metrics = painter.fontMetrics();
    for (const PlotText& label : drawing.Labels)
        painter.fillRect(label.X, label.Y,
                         metrics.horizontalAdvance(QString::fromStdString(label.Text)),
                         metrics.height(), PatchColour(background));
    for (const PlotLine& line : drawing.Leaders)
        DrawLine(painter, line, Qt::SolidLine);
    for (const MarkerDot& dot : drawing.Dots)
        DrawDot(painter, dot);
    for (const PlotText& label : drawing.Labels)
        PaintText(painter, label);
}

void PaintLegend(QPainter& painter, const Legend& legend, PlotColour background) {
    if (legend.Texts.empty()) return;
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRect box(legend.Box.Left, legend.Box.Top, legend.Box.Width, legend.Box.Height);
    painter.setPen(QPen(ToQColor(GridColour), 1));
    painter.setBrush(PatchColour(background));
    painter.drawRect(box.adjusted(0, 0, -1, -1));
    painter.setBrush(Qt::NoBrush);
    for (const Legend::Sample& sample : legend.Samples) {
        QPen pen(ToQColor(sample.Line.Colour), 2);
        if (sample.Dashed) pen.setDashPattern({DashPixels / 2.0, DashGapPixels / 2.0});
        painter.setPen(pen);
        painter.drawLine(sample.Line.X1, sample.Line.Y1, sample.Line.X2, sample.Line.Y2);
    }
    for (const PlotText& text : legend.Texts)
        PaintText(painter, text);
}

void PaintCrosshair(QPainter& painter, const CursorReadOuts& readOuts, const PlotLayout& layout) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(crosshairColour, 1, Qt::DashLine));
    painter.drawLine(readOuts.X, layout.PlotTop, readOuts.X, layout.PlotBottom);
    painter.drawLine(layout.PlotLeft, readOuts.Y, layout.PlotRight, readOuts.Y);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setBrush(Qt::NoBrush);
    for (const TraceReadOut& trace : readOuts.Traces) {
        painter.setPen(QPen(ToQColor(trace.Text.Colour), 1.5));
        painter.drawEllipse(QPointF(readOuts.X + 0.5, trace.Y + 0.5), ringRadius, ringRadius);
    }
}

}  // namespace ladderwise
