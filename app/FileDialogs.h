// What the main window asks about files. Tests answer in its place.
#pragma once

#include <QString>
#include <QStringList>
#include <functional>
#include <string>

#include "pipeline/UnsavedWork.h"

class QWidget;

namespace ladderwise {

/// The words of an open or save dialog.
struct FileDialogTexts {
    QString Title;
    QString Filter;             ///< "Design Files (*.tk_ldfilt)"
    QString Extension;          ///< added to a name without one; empty: none
    QString Start;              ///< folder, with the proposed file name when saving
    bool AsksToReplace = true;  ///< a file that is there; else whoever writes it does
};

/// What to do with a design that differs from its file.
enum class UnsavedAnswer { Save, Discard, Cancel };

/// What to do with a design whose file another window or program has changed meanwhile.
enum class ChangedAnswer { Overwrite, Reload, SaveAs, Cancel };

/// What to do with work that a program left that did not come to its normal end.
enum class RecoveryAnswer { Accept, Delete, Later };

/// Empty names: cancelled.
struct FileDialogs {
    std::function<QString(const FileDialogTexts&)> NameToOpen;
    std::function<QString(const FileDialogTexts&)> NameToSave;
    std::function<UnsavedAnswer(const QString& design)> AskUnsaved;
    std::function<RecoveryAnswer(const UnsavedWork&)> AskRecovery{};  ///< none: later
    std::function<ChangedAnswer(const QString& file)> AskChanged{};   ///< none: cancel
    std::function<bool(const QStringList& files)> AskReplace{};       ///< none: no
    std::function<QStringList(const FileDialogTexts&)> NamesToOpen{};
};

/// A path as captions show it, shortened.
QString FileCaption(const std::string& path);

/// What the title bar says of a design and its file (empty: none yet); "[*]" within is escaped.
QString DesignCaption(const std::string& file, const std::string& title);

/// A modal box with a text and OK.
void ShowMessageBox(QWidget* parent, const std::string& caption, const std::string& text);

/// The toolkit's dialogs over a window.
FileDialogs StandardFileDialogs(QWidget* window);

}  // namespace ladderwise
