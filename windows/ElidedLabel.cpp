// Elided label.
#include "windows/ElidedLabel.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

namespace {
constexpr int MiddleLightness = 128;
const QColor warningOnLight(176, 0, 0);
const QColor warningOnDark(255, 120, 110);
constexpr int LabelMargin = 6;  ///< pixels left and right of the text
}  // namespace

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
    const bool dark = palette().window().color().lightness() < MiddleLightness;
    if (warning) painter.setPen(dark ? warningOnDark : warningOnLight);
    const QRect area = rect().adjusted(LabelMargin, 0, -LabelMargin, 0);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
}

}  // namespace ladderwise
