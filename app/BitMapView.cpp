// The plot image on the screen.
#include "app/BitMapView.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

BitMapView::BitMapView(const Plot& plot, QWidget* parent) : QWidget(parent), plot(plot) {
    setObjectName("BitMap");
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void BitMapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    const QImage& image = plot.Image();
    const QSize size = image.deviceIndependentSize().toSize();
    // A picture that waits for its new size may be smaller.
    if (width() > size.width() || height() > size.height())
        painter.fillRect(rect(), ToQColor(BackgroundColour));
    painter.drawImage(0, 0, image);
}

}  // namespace ladderwise
