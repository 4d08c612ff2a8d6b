// Painting of the value plot; every position comes from the plain structs.
#include "display/NortonValuePainter.h"

#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

void PaintMark(QPainter& painter, const ValuePoint& point) {
    const int half = ValueMarkSize / 2;
    const QRect box(point.X - half, point.Y - half, ValueMarkSize, ValueMarkSize);
    const QColor colour = ToQColor(point.Colour);
    painter.setPen(QPen(colour, 1));
    painter.setBrush(colour);
    switch (point.Mark) {
        case ValueMark::Capacitor:
            painter.drawRect(box.adjusted(0, 0, -1, -1));
            return;
        case ValueMark::Inductor:
            painter.drawEllipse(box);
            return;
        case ValueMark::LeftOut:
            painter.setBrush(ToQColor(BackgroundColour));
            painter.drawEllipse(box);
            return;
        case ValueMark::Unrealisable:
            painter.setPen(QPen(ToQColor(UnrealisableColour), 2));
            painter.drawLine(box.topLeft(), box.bottomRight());
            painter.drawLine(box.topRight(), box.bottomLeft());
            return;
    }
}

}  // namespace

void PaintNortonValuePlot(QPainter& painter, const NortonValuePlot& plot, QSize size) {
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(QRect(QPoint(0, 0), size), ToQColor(BackgroundColour));
    for (const PlotLine& line : plot.Lines) {
        painter.setPen(QPen(ToQColor(line.Colour), 1));
        painter.drawLine(line.X1, line.Y1, line.X2, line.Y2);
    }
    painter.setPen(QPen(ToQColor(Black), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot.Border.Left, plot.Border.Top, plot.Border.Width, plot.Border.Height);
    painter.setRenderHint(QPainter::Antialiasing, true);
    for (const ValuePoint& point : plot.Points)
        PaintMark(painter, point);
    for (const PlotText& text : plot.Texts) {
        painter.setPen(ToQColor(text.Colour));
        painter.drawText(text.X, text.Y + painter.fontMetrics().ascent(),
                         QString::fromStdString(text.Text));
    }
}

}  // namespace ladderwise
