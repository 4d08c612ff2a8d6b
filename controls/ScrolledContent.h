// The inside of a window of fixed size, which is scrolled where the screen has no room for it.
#pragma once

#include <QScrollArea>

namespace ladderwise {

/// Fills `window`, which follows the size of Content() as far as its screen allows.
class ScrolledContent : public QScrollArea {
    Q_OBJECT

public:
    explicit ScrolledContent(QWidget* window);

    /// For the layout of the window's controls. Its size is what that layout needs.
    QWidget* Content() const { return widget(); }

    /// Gives the window its size; needed before it is placed, and done by itself while it is shown.
    void FitToScreen();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
};

}  // namespace ladderwise
