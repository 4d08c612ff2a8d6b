// Elided label.
#include "controls/ElidedLabel.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

namespace {
constexpr int MiddleLightness = 128;
const QColor warningOnLight(176, 0, 0);
const QColor warningOnDark(255, 120, 110);
constexpr int LabelMargin = 6;  ///< pixels left and right of the text
}  // namespace

QColor WarningColour(const QPalette& palette) {
    const bool dark = palette.window().color().lightness() < MiddleLightness;
    return dark ? warningOnDark : warningOnLight;
}

ElidedLabel::ElidedLabel(QWidget* parent) : QWidget(parent) {
    setObjectName("StatusLabel");
    noticeTime.setSingleShot(true);
    connect(&noticeTime, &QTimer::timeout, this, &ElidedLabel::EndNotice);
}

void ElidedLabel::SetText(const QString& newText, bool isWarning, const QString& list) {
    text = newText;
    warning = isWarning;
    setToolTip(list);
    setAccessibleName(Text());
    update();
}

void ElidedLabel::ShowNotice(const QString& newNotice, int duration) {
    notice = newNotice;
    setAccessibleName(Text());
    noticeTime.start(duration);
    update();
}

void ElidedLabel::EndNotice() {
    notice.clear();
    noticeTime.stop();
    setAccessibleName(Text());
    update();
}

QSize ElidedLabel::sizeHint() const {
    return {100, fontMetrics().height() + 4};
}

void ElidedLabel::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    if (warning && notice.isEmpty()) painter.setPen(WarningColour(palette()));
    const QRect area = rect().adjusted(LabelMargin, 0, -LabelMargin, 0);
    painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                     fontMetrics().elidedText(Text(), Qt::ElideRight, area.width()));
}

}  // namespace ladderwise
