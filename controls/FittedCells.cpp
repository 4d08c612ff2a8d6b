// Cells whose text fits.
#include "controls/FittedCells.h"

#include <QApplication>
#include <QFontMetricsF>
#include <QKeyEvent>
#include <QLineEdit>
#include <QPainter>
#include <QStyle>
#include <QWidget>
#include <algorithm>

namespace ladderwise {

namespace {

constexpr int CurrentFrame = 2;            ///< pixels, around the current cell
constexpr double SmallestPointSize = 4.0;  ///< below it nobody can read a text anyway

/// In the upper right corner, in the colour of the text.
void PaintPadlock(QPainter* painter, const QStyleOptionViewItem& option) {
    constexpr int width = 7, height = 5, bow = 4, margin = 3;
    const QRect body(option.rect.right() - margin - width, option.rect.top() + margin + bow, width,
                     height);
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    painter->fillRect(body, option.palette.text());
    painter->setPen(QPen(option.palette.text(), 1.5));
    constexpr int halfTurn = 180 * 16;  // sixteenths of a degree
    painter->drawArc(QRectF(body.left() + 1.5, body.top() - bow + 0.5, width - 3.0, 2.0 * bow), 0,
                     halfTurn);
    painter->restore();
}

/// Small, at the lower right; the number itself stands higher.
void PaintBadge(QPainter* painter, const QStyleOptionViewItem& option, const QString& text) {
    constexpr double scale = 0.7;
    painter->save();
    QFont font = option.font;
    font.setPointSizeF(std::max(SmallestPointSize, scale * font.pointSizeF()));
    painter->setFont(font);
    painter->setPen(option.palette.color(QPalette::Link));
    painter->drawText(option.rect.adjusted(0, 0, -2, 0), Qt::AlignRight | Qt::AlignBottom, text);
    painter->restore();
}

}  // namespace

QFont FontThatFits(QFont font, const QString& text, double width, double height) {
    // Sizes do not scale exactly, so the first guess may need another step.
    while (font.pointSizeF() > SmallestPointSize) {
        const QFontMetricsF metrics(font);
        const double scale = std::min(width / std::max(metrics.horizontalAdvance(text), 1.0),
                                      height / std::max(metrics.height(), 1.0));
        if (scale >= 1.0) break;
        font.setPointSizeF(std::min(font.pointSizeF() * scale, font.pointSizeF() - 0.25));
    }
    return font;
}

void FittedCells::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    const QStyle* const style = option->widget ? option->widget->style() : QApplication::style();
    const int margin = 1 + style->pixelMetric(QStyle::PM_FocusFrameHMargin, option, option->widget);
    option->font = FontThatFits(option->font, option->text, option->rect.width() - 2.0 * margin,
                                option->rect.height());
    option->fontMetrics = QFontMetrics(option->font);
    option->textElideMode = Qt::ElideNone;
}

void FittedCells::paint(QPainter* painter, const QStyleOptionViewItem& option,
                        const QModelIndex& index) const {
    QStyleOptionViewItem plain = option;
    plain.state &= ~(QStyle::State_Selected | QStyle::State_HasFocus);
    painter->fillRect(option.rect, option.palette.base());  // the view has painted a selection
    // Most cells of a ladder are empty; the style takes as long for those as for a text.
    const QVariant background = index.data(Qt::BackgroundRole);
    if (!index.data().toString().isEmpty())
        QStyledItemDelegate::paint(painter, plain, index);
    else if (background.isValid())
        painter->fillRect(option.rect, background.value<QBrush>());
    if (index.data(HeldRole).toBool()) PaintPadlock(painter, option);
    const QString badge = index.data(BadgeRole).toString();
    if (!badge.isEmpty()) PaintBadge(painter, option, badge);
    if (!(option.state & QStyle::State_Selected)) return;
    const bool focused = option.state & QStyle::State_HasFocus;
    painter->setPen(
        QPen(option.palette.color(focused ? QPalette::Highlight : QPalette::Mid), CurrentFrame));
    painter->drawRect(option.rect.adjusted(1, 1, -1, -1));
}

void FittedCells::setModelData(QWidget* editor, QAbstractItemModel* model,
                               const QModelIndex& index) const {
    const auto* const line = qobject_cast<QLineEdit*>(editor);
    if (line && line->isModified() && line->text() == index.data().toString())
        model->setData(index, QVariant(), Qt::UserRole);
    else
        QStyledItemDelegate::setModelData(editor, model, index);
}

bool FittedCells::eventFilter(QObject* object, QEvent* event) {
    auto* const editor = qobject_cast<QWidget*>(object);
    if (editor && event->type() == QEvent::KeyPress) {
        const int key = static_cast<QKeyEvent*>(event)->key();
        if (key == Qt::Key_Return || key == Qt::Key_Enter) {
            emit commitData(editor);
            emit closeEditor(editor, QAbstractItemDelegate::NoHint);
            return true;
        }
    }
    return QStyledItemDelegate::eventFilter(object, event);
}

}  // namespace ladderwise
