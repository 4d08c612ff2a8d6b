// Plot image and elided label.
#include "app/BitMapView.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

namespace {
const QColor warningColour(176, 0, 0);
constexpr int LabelMargin = 6;  ///< pixels left and right of the text
}  // namespace

BitMapView::BitMapView(const Plot& plot, QWidget* parent) : QWidget(parent), plot(plot) {
    setObjectName("BitMap");
    setAttribute(Qt::WA_OpaquePaintEvent);
}

void BitMapView::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.drawImage(0, 0, plot.Image());
}

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
    setObjectName("StatusLabel");
}

void ElidedLabel::SetText(const QString& newText, bool isWarning) {
    text = newText;
    warning = isWarning;
    setToolTip(text);
    setAccessibleName(text);
    update();
}

QSize ElidedLabel::sizeHint() const {
    return {100, fontMetrics().height() + 4};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (warning) painter.setPen(warningColour);
    const QRect area = rect().adjusted(LabelMargin, 0, -LabelMargin, 0);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
}

}  // namespace ladderwise
