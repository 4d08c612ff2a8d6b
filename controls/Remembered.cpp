// An initialisation file of the toolkit, which writes it whole and merges it under a lock.
#include "controls/Remembered.h"

#include <QWidget>

#include "controls/WindowPlacement.h"

namespace ladderwise {

namespace {

QString SizeName(const QWidget* window) {
    return "Size/" + window->objectName();
}

QString MaximisedName(const QWidget* window) {
    return "Maximised/" + window->objectName();
}

}  // namespace

void Remembered::Open(const QString& folder) {
    file = std::make_unique<QSettings>(folder + "/Windows.ini", QSettings::IniFormat);
}

QVariant Remembered::Value(const QString& name, const QVariant& otherwise) const {
    return file ? file->value(name, otherwise) : otherwise;
}

void Remembered::Store(const QString& name, const QVariant& value) {
    if (file) file->setValue(name, value);
}

void Remembered::RestoreSize(QWidget* window) const {
    const QSize size = Value(SizeName(window)).toSize();
    if (size.isValid())
        window->resize(size.expandedTo(window->minimumSizeHint()).boundedTo(RoomOnScreen(window)));
    if (Value(MaximisedName(window)).toBool())
        window->setWindowState(window->windowState() | Qt::WindowMaximized);
}

void Remembered::StoreSize(const QWidget* window) {
    if (!window->testAttribute(Qt::WA_WState_Created)) return;
    Store(MaximisedName(window), window->isMaximized());
    if (!window->isMaximized() && !window->isFullScreen()) Store(SizeName(window), window->size());
}

}  // namespace ladderwise
