// The plot image on the screen, with what follows the mouse.
#include "controls/BitMapView.h"

#include <QContextMenuEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>

#include "display/AnnotationPainter.h"

namespace ladderwise {

namespace {

constexpr QColor litColour(255, 200, 0, 70);
constexpr int readOutGap = 16;  ///< pixels between two read-outs
constexpr int farStep = 10;     ///< sweep points of an arrow key with Ctrl

}  // namespace

BitMapView::BitMapView(const Plot& plot, QWidget* parent) : QWidget(parent), plot(plot) {
    setObjectName("BitMap");
    setAccessibleName("Response plot");
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
}

void BitMapView::ShowReadOuts(std::optional<CursorReadOuts> newReadOuts) {
    if (!readOuts && !newReadOuts) return;
    readOuts = std::move(newReadOuts);
    update();
}

void BitMapView::Light(const QRect& part) {
    if (part == lit) return;
    lit = part;
    update();
}

void BitMapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawImage(0, 0, plot.Image());
    if (!lit.isEmpty()) painter.fillRect(lit, litColour);
    if (readOuts) PaintReadOuts(painter);
}

void BitMapView::PaintReadOuts(QPainter& painter) {
    const PlotLayout& layout = plot.Layout();
    PaintCrosshair(painter, *readOuts, layout);
    painter.setFont(plot.Font());
    const TextMetrics metrics = MetricsOf(painter);
    const int top = layout.Area.PanelHeight, height = layout.PlotTop - top;
    painter.fillRect(layout.PlotLeft, top, layout.PlotWidth + 1, height,
                     ToQColor(BackgroundColour));
    std::vector<ReadOutText> texts = readOuts->Cursor;
    for (const TraceReadOut& trace : readOuts->Traces)
        texts.push_back(trace.Text);
    for (PlotText text : FlowTexts(texts, layout.PlotWidth, height, readOutGap, metrics)) {
        text.X += layout.PlotLeft;
        text.Y += top;
        if (text.Y < layout.PlotTop) PaintText(painter, text);
    }
}

void BitMapView::mouseMoveEvent(QMouseEvent* event) {
    emit Hovered(event->position().toPoint(), event->buttons().testFlag(Qt::LeftButton));
}

void BitMapView::mousePressEvent(QMouseEvent* event) {
    emit Pressed(event->position().toPoint(), event->button() == Qt::LeftButton);
}

void BitMapView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) emit Released(event->position().toPoint());
}

void BitMapView::leaveEvent(QEvent*) {
    emit Left();
}

void BitMapView::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape) emit Escaped();
    const int step = event->key() == Qt::Key_Left ? -1 : event->key() == Qt::Key_Right ? 1 : 0;
    if (step == 0) return QWidget::keyPressEvent(event);
    emit Stepped(event->modifiers().testFlag(Qt::ControlModifier) ? farStep * step : step);
}

void BitMapView::focusInEvent(QFocusEvent* event) {
    const auto reason = event->reason();
    if (reason == Qt::TabFocusReason || reason == Qt::BacktabFocusReason) emit Stepped(0);
}

void BitMapView::focusOutEvent(QFocusEvent*) {
    emit Left();
}

void BitMapView::contextMenuEvent(QContextMenuEvent* event) {
    // A mouse button has opened the menu by itself.
    if (event->reason() != QContextMenuEvent::Keyboard) return;
    const PlotLayout& layout = plot.Layout();
    emit Pressed(readOuts ? QPoint(readOuts->X, readOuts->Y)
                          : QPoint(layout.PlotLeft + layout.PlotWidth / 2,
                                   layout.PlotTop + layout.PlotHeight / 2),
                 false);
}

}  // namespace ladderwise
