// The edit box and the pair of arrows of a stepped input.
#pragma once

#include <QLineEdit>
#include <QWidget>
#include <string>

#include "numbers/NumberBox.h"

namespace ladderwise {

/// An edit box that shows a NumberBox. The Up and Down keys and the mouse wheel step it while it
/// has the focus; Enter, and leaving it with a changed text, ask for a calculation; Escape takes
/// back what was typed and is not read yet. What is typed replaces the whole number wherever the
/// user has not put the cursor into it. A bar at its left edge tells that the program moved the
/// value.
class NumberEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit NumberEdit(const QString& name, QWidget* parent = nullptr);

    /// Puts the text into the box as typed if the user has touched it since the last time: then
    /// no exact value stands behind it, even if it is the same text. It counts as read from now on,
    /// so that losing the focus asks for nothing until the user changes it again. What the user
    /// has not touched is left alone: the box knows better.
    void Take(NumberBox& box);

    /// Shows a box's text and colour without any signal. A text that is the same is left alone, so
    /// that the cursor stays where the user put it.
    void Show(const NumberBox& box);

signals:
    void StepRequested(bool up);
    void CalculationRequested();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void SelectNumber();
    void TakeBack();

    QString shown;       ///< what the program wrote last
    bool moved = false;  ///< the program's value stands in the box
    int wheelRest = 0;   ///< eighths of a degree not yet turned into a step
};

/// True if the box with the focus has a text that was typed and not yet read.
bool IsTypingUnread();

/// An edit takes the keys of undo and redo for itself even where it has nothing to undo. True if
/// this is such a key on its way into `target`, and the design's undo should have it.
bool IsUndoOfDesign(const QObject* target, const QKeyEvent& key);

/// Two small arrows beside an edit box. They take no focus: the keyboard steps in the box itself.
class UpDownButton : public QWidget {
    Q_OBJECT

public:
    explicit UpDownButton(const QString& name, QWidget* parent = nullptr);

    /// Names the arrows for a screen reader after what they step.
    void Describe(const QString& input);

signals:
    void StepRequested(bool up);
};

}  // namespace ladderwise
