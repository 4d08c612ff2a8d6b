// What windows remember from run to run.
#pragma once

#include <QSettings>
#include <QString>
#include <QVariant>
#include <initializer_list>
#include <memory>

class QWidget;

namespace ladderwise {

/// Sizes of windows, what a dialog was last used for: all that a user would set anew at each start,
/// and that belongs neither to a design nor to the settings. In a file of its own, "Windows.ini" of
/// the folder of the settings; several instances share it, each member as it was stored last.
class Remembered {
public:
    /// Reads what stands in `folder`; from then on what is stored goes there.
    void Open(const QString& folder);
    /// `otherwise` before a folder is open, or if nothing of that name was stored.
    QVariant Value(const QString& name, const QVariant& otherwise = {}) const;
    void Store(const QString& name, const QVariant& value);

    /// The size that a window of this object name had when it was last stored, never smaller than
    /// it needs and never larger than its screen; nothing for one that was not stored.
    void RestoreSize(QWidget* window) const;
    /// Its size unless maximised, and whether it is that. A window that was never shown has none.
    void StoreSize(const QWidget* window);

private:
    std::unique_ptr<QSettings> file;
};

}  // namespace ladderwise
