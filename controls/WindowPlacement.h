// Where secondary windows appear: near their owner, and always on its screen.
#pragma once

#include <QPoint>
#include <QSize>

class QWidget;

namespace ladderwise {

inline constexpr int ExplanationWidth = 330;  ///< pixels of a wrapped explaining text

/// What a window may take of its screen inside its frame.
QSize RoomOnScreen(const QWidget* window);

/// Shows a window with its left top corner at `at` (screen coordinates, frame included), moved and
/// made smaller as far as needed to lie on the screen of its owner. A window that was there before
/// comes back to its place instead, on whichever screen that is.
void ShowOnScreen(QWidget* window, QPoint at);

/// The same, centred on its owner.
void ShowCentredOnOwner(QWidget* window);

}  // namespace ladderwise
