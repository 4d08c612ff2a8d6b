// Keys and drops, before any control sees them.
#include "app/InputFilter.h"

#include <QApplication>
#include <QDir>
#include <QDropEvent>
#include <QKeyEvent>
#include <QMimeData>
#include <QRegularExpression>
#include <QUrl>
#include <QWidget>
#include <optional>

#include "app/SecondaryWindows.h"
#include "app/ValueGrid.h"
#include "controls/NumberEdit.h"

namespace ladderwise {

namespace {

std::optional<FormKey> FormKeyOf(int key) {
    constexpr FormKey keys[] = {FormKey::F1, FormKey::F2, FormKey::F3, FormKey::F4,
                                FormKey::F5, FormKey::F6, FormKey::F7, FormKey::F8};
    if (key < Qt::Key_F1 || key > Qt::Key_F8) return {};
    return keys[key - Qt::Key_F1];
}

/// The files that a drag carries; nothing if it carries a text. Some programs give no addresses but
/// their paths as a text, a line each.
std::optional<QList<QUrl>> FilesIn(const QMimeData& data) {
    if (data.hasUrls()) return data.urls();
    QList<QUrl> files;
    for (const QString& line : data.text().split('\n', Qt::SkipEmptyParts)) {
        const QString name = line.trimmed();
        if (name.startsWith("file:"))
            files << QUrl(name);
        else if (QDir::isAbsolutePath(name))
            files << QUrl::fromLocalFile(name);
    }
    if (files.isEmpty()) return {};
    return files;
}

/// Edits take Ctrl+E for the end of their line on some desktops; they have the End key for that.
bool IsExportKey(const QKeyEvent& key) {
    return key.key() == Qt::Key_E && key.modifiers() == Qt::ControlModifier;
}

bool IsDrop(QEvent::Type type) {
    return type == QEvent::DragEnter || type == QEvent::DragMove || type == QEvent::Drop;
}

/// By its ending: .ts, .s2p, and .s3p too, whose reader says what is wrong with it.
bool IsMeasured(const QString& path) {
    static const QRegularExpression endings("\\.(ts|s[0-9]+p)$",
                                            QRegularExpression::CaseInsensitiveOption);
    return endings.match(path).hasMatch();
}

}  // namespace

InputFilter::InputFilter(QWidget* window, const ValueGrid& grid, const SecondaryWindows& windows)
    : window(window), grid(grid), windows(windows) {
    qApp->installEventFilter(this);
}

bool InputFilter::eventFilter(QObject* watched, QEvent* event) {
    const QEvent::Type type = event->type();
    if (type == QEvent::ShortcutOverride) {
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (IsUndoOfDesign(watched, key) || IsExportKey(key)) {
            event->ignore();
            return true;
        }
    }
    if (!watched->isWidgetType()) return false;
    const auto* const widget = static_cast<QWidget*>(watched);
    if (type == QEvent::KeyPress) return TakeKey(widget, *static_cast<QKeyEvent*>(event));
    const bool ours = widget->window() == window || windows.TakesFiles(widget->window());
    return IsDrop(type) && ours && TakeDrop(*static_cast<QDropEvent*>(event));
}

/// True for the controls of the main window and of those that set inputs of the design.
bool InputFilter::HasInputs(const QWidget* target) const {
    return target->window() == window || windows.HasInputs(target->window());
}

bool InputFilter::TakeKey(const QWidget* target, const QKeyEvent& event) {
    const bool ours = target->window() == window;
    // Of another window with inputs, what none of its controls has a use for.
    const bool taken = ours || windows.HasInputs(target);
    if (!taken || (event.modifiers() & ~Qt::KeypadModifier)) return false;
    if (const auto formKey = FormKeyOf(event.key())) {
        emit FormKeyPressed(*formKey);
        return true;
    }
    const bool enter = event.key() == Qt::Key_Return || event.key() == Qt::Key_Enter;
    if (!ours || !enter || !grid.TakesEnter(target)) return false;
    emit GridEntered();
    return true;
}

/// A file over any of these windows is a design to open, or measured data to add, never a text for
/// a box. The question about the present design waits until the program that the file comes from
/// is free again.
bool InputFilter::TakeDrop(QDropEvent& event) {
    const auto files = FilesIn(*event.mimeData());
    if (!files) return false;
    std::vector<std::string> paths;
    bool local = !files->isEmpty(), measured = true;
    for (const QUrl& file : *files) {
        local = local && file.isLocalFile();
        measured = measured && IsMeasured(file.toLocalFile());
        paths.push_back(file.toLocalFile().toStdString());
    }
    const bool taken = local && (measured || files->size() == 1);
    event.setDropAction(taken ? Qt::CopyAction : Qt::IgnoreAction);
    event.setAccepted(taken);
    if (taken && event.type() == QEvent::Drop)
        QMetaObject::invokeMethod(
            this,
            [this, paths, measured] {
                if (measured)
                    emit MeasuredDropped(paths);
                else
                    emit DesignDropped(paths.front());
            },
            Qt::QueuedConnection);
    return true;
}

}  // namespace ladderwise
