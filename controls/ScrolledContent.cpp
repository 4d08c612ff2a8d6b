// Scrolled content.
#include "controls/ScrolledContent.h"

#include <QEvent>
#include <QScrollBar>
#include <QVBoxLayout>

#include "controls/WindowPlacement.h"

namespace ladderwise {

ScrolledContent::ScrolledContent(QWidget* window) : QScrollArea(window) {
    setFrameShape(QFrame::NoFrame);
    setFocusPolicy(Qt::NoFocus);
    setWidget(new QWidget);
    auto* const column = new QVBoxLayout(window);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSizeConstraint(QLayout::SetFixedSize);
    column->addWidget(this);
}

bool ScrolledContent::eventFilter(QObject* watched, QEvent* event) {
    const bool stop = QScrollArea::eventFilter(watched, event);
    if (watched == widget() && event->type() == QEvent::Resize) FitToScreen();
    return stop;
}

void ScrolledContent::FitToScreen() {
    widget()->layout()->activate();
    QSize room = RoomOnScreen(this);
    if (const QWidget* const menu = window()->layout()->menuBar())
        room.rheight() -= menu->sizeHint().height();
    QSize size = widget()->size();
    const bool high = size.height() > room.height(), wide = size.width() > room.width();
    if (high) size.rwidth() += verticalScrollBar()->sizeHint().width();
    if (wide) size.rheight() += horizontalScrollBar()->sizeHint().height();
    setFixedSize(size.boundedTo(room));
}

}  // namespace ladderwise
