// Paints and edits the cells of a value grid so that no text is ever cut, and hands a typed text
// over before its editor goes.
#pragma once

#include <QStyledItemDelegate>

namespace ladderwise {

/// `font`, or the largest smaller size of it in which `text` is no wider than `width` and a line no
/// higher than `height`, in pixels.
QFont FontThatFits(QFont font, const QString& text, double width, double height);

/// Data of a cell that has a padlock in its corner: true.
inline constexpr int HeldRole = Qt::UserRole + 1;
/// Data of a cell that has a small text in its lower corner.
inline constexpr int BadgeRole = HeldRole + 1;

/// A cell's text is drawn in the largest size up to the view's font at which it fits; nothing is
/// elided. The current cell has a frame, so that the colour that marks it stays to be seen. Enter
/// in an editor commits at once: the toolkit's delegate does so from the event queue, where a key
/// or a recalculation in between may have closed the editor already. A text that was typed is taken
/// as typed even if it is the same as before: the cell's UserRole, which holds the program's own
/// text, is cleared.
class FittedCells : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter* painter, const QStyleOptionViewItem& option,
               const QModelIndex& index) const override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model,
                      const QModelIndex& index) const override;
    bool eventFilter(QObject* object, QEvent* event) override;
};

}  // namespace ladderwise
