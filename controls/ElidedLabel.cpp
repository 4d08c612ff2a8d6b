// Elided label.
#include "controls/ElidedLabel.h"

#include <QPaintEvent>
#include <QPainter>

namespace ladderwise {

namespace {
constexpr int MiddleLightness = 128;
const QColor warningOnLight(176, 0, 0);
const QColor warningOnDark(255, 120, 110);
constexpr int LabelMargin = 6;    ///< pixels left and right of the text
constexpr char Between[] = "  ";  ///< warnings and hints
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

QString ElidedLabel::Text() const {
    if (!notice.isEmpty()) return notice;
    return warnings + (warnings.isEmpty() || hints.isEmpty() ? "" : Between) + hints;
}

void ElidedLabel::SetText(const QString& newWarnings, const QString& newHints) {
    warnings = newWarnings;
    hints = newHints;
    setToolTip(Text());
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
    QRect area = rect().adjusted(LabelMargin, 0, -LabelMargin, 0);
    const auto draw = [&](const QString& text) {
        painter.drawText(area, Qt::AlignLeft | Qt::AlignVCenter,
                         fontMetrics().elidedText(text, Qt::ElideRight, area.width()));
        area.setLeft(area.left() + fontMetrics().horizontalAdvance(text));
    };
    if (!notice.isEmpty()) return draw(notice);
    painter.setPen(WarningColour(palette()));
    draw(warnings + (warnings.isEmpty() || hints.isEmpty() ? "" : Between));
    painter.setPen(palette().color(QPalette::WindowText));
    if (area.width() > 0) draw(hints);
}

}  // namespace ladderwise
