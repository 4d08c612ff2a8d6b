// The toolkit's dialogs about files.
#include "app/FileDialogs.h"

#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QLocale>
#include <QMessageBox>
#include <QPushButton>
#include <algorithm>

#include "files/RecentFiles.h"

namespace ladderwise {

namespace {

QStringList AskNames(QWidget* window, const FileDialogTexts& texts, QFileDialog::AcceptMode mode,
                     QFileDialog::FileMode files) {
    QFileDialog dialog(window, texts.Title);
    dialog.setAcceptMode(mode);
    dialog.setFileMode(files);
    dialog.setNameFilters({texts.Filter, "All Files (*)"});
    dialog.setDefaultSuffix(texts.Extension);
    dialog.setOption(QFileDialog::DontConfirmOverwrite, !texts.AsksToReplace);
    const QFileInfo start(texts.Start);
    dialog.setDirectory(start.isDir() ? start.filePath() : start.path());
    if (!start.isDir()) dialog.selectFile(start.fileName());
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles() : QStringList();
}

UnsavedAnswer AskUnsaved(QWidget* window, const QString& design) {
    QMessageBox box(QMessageBox::Question, "Ladderwise",
                    QString("The design \"%1\" has changes that are not saved.").arg(design),
                    QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, window);
    box.setDefaultButton(QMessageBox::Save);
    const int answer = box.exec();
    if (answer == QMessageBox::Save) return UnsavedAnswer::Save;
    return answer == QMessageBox::Discard ? UnsavedAnswer::Discard : UnsavedAnswer::Cancel;
}

ChangedAnswer AskChanged(QWidget* window, const QString& file) {
    QMessageBox box(
        QMessageBox::Warning, "Ladderwise",
        QString("The file \"%1\" was changed by another window or program since it was opened or "
                "saved here.")
            .arg(file),
        QMessageBox::Cancel, window);
    box.setInformativeText(
        "Overwrite replaces what it holds now. Reload drops the changes made here.");
    const auto* const overwrite = box.addButton("&Overwrite", QMessageBox::DestructiveRole);
    const auto* const reload = box.addButton("&Reload", QMessageBox::ActionRole);
    QPushButton* const saveAs = box.addButton("Save &As...", QMessageBox::AcceptRole);
    box.setDefaultButton(saveAs);
    box.setEscapeButton(QMessageBox::Cancel);
    box.exec();
    if (box.clickedButton() == overwrite) return ChangedAnswer::Overwrite;
    if (box.clickedButton() == reload) return ChangedAnswer::Reload;
    return box.clickedButton() == saveAs ? ChangedAnswer::SaveAs : ChangedAnswer::Cancel;
}

bool AskReplace(QWidget* window, const QStringList& files) {
    constexpr qsizetype MostNamed = 5;
    QStringList names;
    for (const QString& file : files.first(std::min(files.size(), MostNamed)))
        names << QDir::toNativeSeparators(file);
    if (files.size() > MostNamed) names << QString("and %1 more").arg(files.size() - MostNamed);
    QMessageBox box(QMessageBox::Warning, "Ladderwise",
                    files.size() == 1 ? QString("This file exists already. Replace it?")
                                      : QString("These files exist already. Replace them?"),
                    QMessageBox::Cancel, window);
    box.setInformativeText(names.join('\n'));
    const auto* const replace = box.addButton("&Replace", QMessageBox::AcceptRole);
    box.exec();
    return box.clickedButton() == replace;
}

RecoveryAnswer AskRecovery(QWidget* window, const UnsavedWork& work) {
    const QString time =
        QLocale::system().toString(QDateTime::fromSecsSinceEpoch(work.Time), QLocale::LongFormat);
    const QString file = work.File.empty()
                             ? QString("It has no file yet.")
                             : "Its file is " +
                                   QDir::toNativeSeparators(QString::fromStdString(work.File)) +
                                   ", which has not been changed.";
    QMessageBox box(QMessageBox::Question, "Ladderwise",
                    QString("The design \"%1\" was not saved when the program ended.")
                        .arg(QString::fromStdString(work.Name)),
                    QMessageBox::NoButton, window);
    box.setTextFormat(Qt::PlainText);
    box.setInformativeText("This is how it stood on " + time + ". " + file);
    const auto* const accept = box.addButton("&Restore", QMessageBox::AcceptRole);
    const auto* const remove = box.addButton("&Delete", QMessageBox::DestructiveRole);
    box.setEscapeButton(box.addButton("Ask &Later", QMessageBox::RejectRole));
    box.exec();
    if (box.clickedButton() == accept) return RecoveryAnswer::Accept;
    return box.clickedButton() == remove ? RecoveryAnswer::Delete : RecoveryAnswer::Later;
}

}  // namespace

QString FileCaption(const std::string& path) {
    const QString native = QDir::toNativeSeparators(QString::fromStdString(path));
    return QString::fromStdString(ShortenedPath(native.toStdString()));
}

QString DesignCaption(const std::string& file, const std::string& title) {
    const QString caption =
        file.empty() ? QString::fromStdString(title) + QStringLiteral(" \u2014 Ladderwise")
                     : FileCaption(file);
    return QString(caption).replace("[*]", "[*][*]");
}

void ShowMessageBox(QWidget* parent, const std::string& caption, const std::string& text) {
    QMessageBox box(QMessageBox::NoIcon, QString::fromStdString(caption),
                    QString::fromStdString(text), QMessageBox::Ok, parent);
    box.exec();
}

FileDialogs StandardFileDialogs(QWidget* window) {
    return {
        [window](const FileDialogTexts& texts) {
            return AskNames(window, texts, QFileDialog::AcceptOpen, QFileDialog::ExistingFile)
                .value(0);
        },
        [window](const FileDialogTexts& texts) {
            return AskNames(window, texts, QFileDialog::AcceptSave, QFileDialog::AnyFile).value(0);
        },
        [window](const QString& design) { return AskUnsaved(window, design); },
        [window](const UnsavedWork& work) { return AskRecovery(window, work); },
        [window](const QString& file) { return AskChanged(window, file); },
        [window](const QStringList& files) { return AskReplace(window, files); },
        [window](const FileDialogTexts& texts) {
            return AskNames(window, texts, QFileDialog::AcceptOpen, QFileDialog::ExistingFiles);
        }};
}

}  // namespace ladderwise
