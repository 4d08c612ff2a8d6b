// What the program takes before the control that it goes to: function keys, Enter on the value
// grid, the keys of undo, and files that are dropped.
#pragma once

#include <QObject>
#include <string>
#include <vector>

#include "pipeline/Keystrokes.h"

class QDropEvent;
class QKeyEvent;
class QWidget;

namespace ladderwise {

class SecondaryWindows;
class ValueGrid;

class InputFilter : public QObject {
    Q_OBJECT

public:
    /// Sees the events of the whole program; acts on those of `window` and of windows with inputs
    /// of the design.
    InputFilter(QWidget* window, const ValueGrid& grid, const SecondaryWindows& windows);

signals:
    void FormKeyPressed(FormKey key);
    void GridEntered();                           ///< Enter on the grid, no editor being open
    void DesignDropped(const std::string& path);  ///< when the program that it came from is free
    void MeasuredDropped(const std::vector<std::string>& paths);  ///< likewise

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool TakeKey(const QWidget* target, const QKeyEvent& event);
    bool TakeDrop(QDropEvent& event);
    bool HasInputs(const QWidget* target) const;

    QWidget* window;
    const ValueGrid& grid;
    const SecondaryWindows& windows;
};

}  // namespace ladderwise
