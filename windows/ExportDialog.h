// The dialog "Export": the kind of file, its options, a preview of what will be written, and its
// way to a file or the clipboard.
#pragma once

#include <QDialog>
#include <QString>
#include <QStringList>
#include <functional>
#include <string>
#include <vector>

#include "display/Picture.h"
#include "pipeline/Calculation.h"
#include "windows/ExportChoice.h"

class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QStackedWidget;
class QTimer;

namespace ladderwise {

class ElidedLabel;
class ExportPages;
class PicturePreview;

/// The design that is exported; it stays as it is while the dialog is open.
struct ExportSubject {
    const Calculation& Work;
    std::function<PictureContent()> Picture;
    std::function<std::vector<ElementList>(int runs)> Ladders;  ///< of the first worst-case runs
    QString Name;                                               ///< of a file, without its ending
};

/// What the dialog asks and tells.
struct ExportHost {
    /// The full name of a file to write, empty for none: filter, ending, proposed name.
    std::function<QString(const QString& filter, const QString& ending, const QString& start)>
        NameToSave;
    std::function<bool(const QStringList& files)> MayReplace;  ///< files that are there already
    MessageCallback Report;
};

/// Puts a picture on the clipboard: pixels, and vectors for programs that take them.
void CopyPicture(const PictureContent& content, const ExportChoice& choice);

class ExportDialog : public QDialog {
    Q_OBJECT

public:
    ExportDialog(const ExportSubject& subject, const ExportHost& host, const ExportChoice& choice,
                 const QString& folder, QWidget* parent);

    const ExportChoice& Choice() const { return choice; }
    const QString& Folder() const { return folder; }  ///< of the last file written, or as given

private:
    void Build();
    QWidget* BuildPreview();
    void ChoosePage(int row);
    void Refresh();
    std::string ShowText();  ///< empty, or why there is none
    std::string ShowPicture();
    ExportOptions OptionsInForce() const;
    ExportSource Source() const;
    QString ContentText() const;
    PlotFile PictureBytes(const std::string& path) const;
    QStringList FilesFor(const QString& path) const;
    bool Write(const QStringList& files);
    void Save();
    void Copy();

    const ExportSubject& subject;
    const ExportHost& host;
    ExportChoice choice;
    QString folder;
    std::string bytes;  ///< of what is shown; empty: nothing can be written
    QListWidget* kinds;
    ExportPages* pages;
    QStackedWidget* preview;
    QPlainTextEdit* text;
    PicturePreview* picture;
    QLabel* extent;
    ElidedLabel* reason;
    QPushButton *save, *copy;
    QTimer* refresh;
};

}  // namespace ladderwise
