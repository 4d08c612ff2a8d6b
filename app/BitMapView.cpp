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
    painter.drawImage(0, 0, plot.Image());
}

}  // namespace ladderwise
