// Placement of secondary windows.
#include "controls/WindowPlacement.h"

#include <QLayout>
#include <QScreen>
#include <QWidget>
#include <algorithm>

#include "controls/ScrolledContent.h"

namespace ladderwise {

namespace {

constexpr QSize FrameAllowance(12, 40);  ///< title bar and borders of most desktops

/// What the frame adds. A window not yet shown does not know its frame; its owner's is as thick at
/// least.
QSize FrameOf(const QWidget* window) {
    const QWidget* const owner = window->parentWidget()->window();
    return owner->frameGeometry().size() - owner->size();
}

void LayOut(const QWidget* window) {
    if (auto* const inside = window->findChild<ScrolledContent*>()) inside->FitToScreen();
    window->layout()->activate();
}

}  // namespace

QSize RoomOnScreen(const QWidget* window) {
    return window->screen()->availableSize() - FrameAllowance;
}

void ShowOnScreen(QWidget* window, QPoint at) {
    LayOut(window);
    const bool wasThere = window->testAttribute(Qt::WA_Moved);
    if (wasThere) at = window->pos();
    const QWidget* const placed = wasThere ? window : window->parentWidget();
    const QRect screen = placed->screen()->availableGeometry();
    const QSize frame = FrameOf(window);
    window->resize(window->size().boundedTo(screen.size() - frame));
    const QSize outer = window->size() + frame;
    const int rightmost = std::max(screen.left(), screen.right() + 1 - outer.width());
    const int lowest = std::max(screen.top(), screen.bottom() + 1 - outer.height());
    window->move(std::clamp(at.x(), screen.left(), rightmost),
                 std::clamp(at.y(), screen.top(), lowest));
    window->show();
    window->raise();
    window->activateWindow();
}

void ShowCentredOnOwner(QWidget* window) {
    LayOut(window);
    const QRect owner = window->parentWidget()->window()->frameGeometry();
    const QSize outer = window->size() + FrameOf(window);
    ShowOnScreen(window, owner.center() - QPoint(outer.width() / 2, outer.height() / 2));
}

}  // namespace ladderwise
