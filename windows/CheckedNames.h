// Check marks by component name, for choices that are saved and restored by name.
#pragma once

#include <QString>

class QAction;
class QObject;
class QWidget;

namespace ladderwise {

/// Sets the check of the radio button named `componentName` below `owner` without firing its click
/// handler. No such radio button: nothing happens.
void SetButtonCheckedSilently(QObject* owner, const QString& componentName, bool checked);

/// The same for a menu item.
void SetMenuCheckedSilently(QObject* owner, const QString& componentName, bool checked);

/// The component name of the first checked entry of the sub-menu that `item` of `menu` opens: a
/// single blank if none is checked or there is no sub-menu, an empty text if `item` is not in
/// `menu`.
QString CheckedItemName(const QWidget* menu, const QAction* item);

}  // namespace ladderwise
