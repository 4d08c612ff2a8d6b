// Edit box and arrows of a stepped input.
#include "controls/NumberEdit.h"

#include <QApplication>
#include <QKeyEvent>
#include <QPainter>
#include <QPalette>
#include <QSignalBlocker>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace ladderwise {

namespace {

constexpr int WheelNotch = 120;   ///< eighths of a degree of one notch of a mouse wheel
constexpr int ArrowWidth = 18;    ///< pixels
constexpr int MovedBarWidth = 4;  ///< pixels
const QColor movedBarColour(224, 128, 0);

QColor ColourOf(BoxColour colour, const QPalette& normal) {
    switch (colour) {
        case BoxColour::Normal:
            return normal.color(QPalette::Base);
        case BoxColour::Silver:
            return {192, 192, 192};
        case BoxColour::Yellow:
            return {255, 255, 0};
    }
    return normal.color(QPalette::Base);
}

}  // namespace

NumberEdit::NumberEdit(const QString& name, QWidget* parent) : QLineEdit(parent) {
    setObjectName(name);
    connect(this, &QLineEdit::returnPressed, this, &NumberEdit::CalculationRequested);
}

void NumberEdit::Take(NumberBox& box) {
    if (isModified()) {
        box.Type(text().toStdString());
        // From now on it is the design's undo that takes it back.
        const QSignalBlocker blocker(this);
        const int place = cursorPosition();
        setText(text());
        setCursorPosition(place);
    }
    setModified(false);
}

/// Selects all, with the cursor at the front: the leading digits count when a text is longer than
/// the box.
void NumberEdit::SelectNumber() {
    const int length = static_cast<int>(text().length());
    setSelection(length, -length);
}

void NumberEdit::Show(const NumberBox& box) {
    const QSignalBlocker blocker(this);
    shown = QString::fromStdString(box.Text);
    if (text() != shown) {
        setText(shown);
        SelectNumber();
        if (!hasFocus()) setCursorPosition(0);
    }
    if (moved != box.Moved.has_value()) update();
    moved = box.Moved.has_value();
    // Margins and palettes repaint the box even where they stay the same.
    const QMargins margins(moved ? MovedBarWidth : 0, 0, 0, 0);
    if (textMargins() != margins) setTextMargins(margins);
    setModified(false);
    QPalette colours;
    colours.setColor(QPalette::Base, ColourOf(box.Colour, colours));
    if (box.Colour != BoxColour::Normal) colours.setColor(QPalette::Text, Qt::black);
    const auto shows = [&](QPalette::ColorRole role) {
        return palette().color(QPalette::Active, role) == colours.color(QPalette::Active, role) &&
               palette().color(QPalette::Disabled, role) == colours.color(QPalette::Disabled, role);
    };
    if (!shows(QPalette::Base) || !shows(QPalette::Text)) setPalette(colours);
}

void NumberEdit::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Up || event->key() == Qt::Key_Down)
        emit StepRequested(event->key() == Qt::Key_Up);
    else if (event->key() == Qt::Key_Escape && isModified())
        TakeBack();
    else
        QLineEdit::keyPressEvent(event);
    // Enter has asked for a calculation; a dialog's default button must not ask for a second one,
    // which would take the mark off a replaced entry.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        SelectNumber();
        event->accept();
    }
}

void NumberEdit::TakeBack() {
    setText(shown);  // which is no longer a modified text
    SelectNumber();
}

void NumberEdit::wheelEvent(QWheelEvent* event) {
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    // A held Ctrl or Alt turns a vertical wheel into a horizontal one on some systems.
    const QPoint angle = event->angleDelta();
    wheelRest += angle.y() != 0 ? angle.y() : angle.x();
    for (; wheelRest >= WheelNotch; wheelRest -= WheelNotch)
        emit StepRequested(true);
    for (; wheelRest <= -WheelNotch; wheelRest += WheelNotch)
        emit StepRequested(false);
    event->accept();
}

void NumberEdit::focusInEvent(QFocusEvent* event) {
    QLineEdit::focusInEvent(event);
    const Qt::FocusReason reason = event->reason();
    // The menu bar has taken the selection; a menu of the box's own leaves it as it is.
    const bool placed = reason == Qt::MouseFocusReason || reason == Qt::PopupFocusReason;
    if (!placed && !isModified()) SelectNumber();
}

void NumberEdit::mouseDoubleClickEvent(QMouseEvent* event) {
    QLineEdit::mouseDoubleClickEvent(event);
    SelectNumber();  // the toolkit takes "146" of "146.5"
}

void NumberEdit::paintEvent(QPaintEvent* event) {
    QLineEdit::paintEvent(event);
    if (!moved) return;
    QPainter painter(this);
    painter.fillRect(1, 1, MovedBarWidth, height() - 2, movedBarColour);
}

void NumberEdit::focusOutEvent(QFocusEvent* event) {
    QLineEdit::focusOutEvent(event);
    // Menus take the focus for a moment only, and their entries calculate by themselves.
    const Qt::FocusReason reason = event->reason();
    const bool menu = reason == Qt::PopupFocusReason || reason == Qt::MenuBarFocusReason;
    if (isModified() && !menu) emit CalculationRequested();
}

bool IsTypingUnread() {
    const auto* const box = qobject_cast<const NumberEdit*>(QApplication::focusWidget());
    return box && box->isModified();
}

bool IsUndoOfDesign(const QObject* target, const QKeyEvent& key) {
    const auto* const edit = qobject_cast<const QLineEdit*>(target);
    if (!edit) return false;
    if (key.matches(QKeySequence::Undo)) return !edit->isModified() || !edit->isUndoAvailable();
    return key.matches(QKeySequence::Redo) && !edit->isRedoAvailable();
}

UpDownButton::UpDownButton(const QString& name, QWidget* parent) : QWidget(parent) {
    setObjectName(name);
    setFixedWidth(ArrowWidth);
    auto* const column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    for (const bool up : {true, false}) {
        auto* const arrow = new QToolButton(this);
        arrow->setObjectName(name + (up ? "Up" : "Down"));
        arrow->setArrowType(up ? Qt::UpArrow : Qt::DownArrow);
        arrow->setAutoRepeat(true);
        arrow->setFocusPolicy(Qt::NoFocus);
        arrow->setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Ignored);
        column->addWidget(arrow);
        connect(arrow, &QToolButton::clicked, this, [this, up] { emit StepRequested(up); });
    }
}

void UpDownButton::Describe(const QString& input) {
    for (auto* const arrow : findChildren<QToolButton*>())
        arrow->setAccessibleName(input + (arrow->arrowType() == Qt::UpArrow ? " up" : " down"));
}

}  // namespace ladderwise
