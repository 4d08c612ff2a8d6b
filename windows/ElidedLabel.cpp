// Elided label.
#include "windows/ElidedLabel.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

namespace {
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
    if (warning) painter.setPen(WarningColour);
    const QRect area = rect().adjusted(LabelMargin, 0, -LabelMargin, 0);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
}

}  // namespace ladderwise
