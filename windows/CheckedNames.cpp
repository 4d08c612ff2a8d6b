// Check marks by component name.
#include "windows/CheckedNames.h"

#include <QAction>
#include <QMenu>
#include <QRadioButton>
#include <QSignalBlocker>

namespace ladderwise {

void SetButtonCheckedSilently(QObject* owner, const QString& componentName, bool checked) {
    auto* const button = owner->findChild<QRadioButton*>(componentName);
    if (!button) return;
    const QSignalBlocker blocker(button);
    button->setChecked(checked);
}

void SetMenuCheckedSilently(QObject* owner, const QString& componentName, bool checked) {
    auto* const action = owner->findChild<QAction*>(componentName);
    if (!action) return;
    const QSignalBlocker blocker(action);
    action->setChecked(checked);
}

QString CheckedItemName(const QWidget* menu, const QAction* item) {
    if (!menu->actions().contains(const_cast<QAction*>(item))) return {};
    if (item->menu()) {
        for (const QAction* entry : item->menu()->actions())
            if (entry->isChecked()) return entry->objectName();
    }
    return QStringLiteral(" ");
}

}  // namespace ladderwise
