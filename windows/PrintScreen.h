// The printed page of the main window: its picture with title, date and file name.
#pragma once

#include <QString>

class QPainter;
class QPrinter;
class QWidget;

namespace ladderwise {

/// The texts around the picture.
struct PrintCaption {
    QString Title;     ///< what is designed
    QString Date;      ///< as the user's country writes it
    QString FileName;  ///< of the design; empty if it has none
};

/// Paints one page: `picture` as it looks now, scaled to the page. Texts and frames stay sharp on
/// paper.
void PaintScreenPage(QPrinter& printer, QWidget& picture, const PrintCaption& caption);

/// Previews and prints `picture` of the window `owner`.
void PrintScreen(QWidget* owner, QWidget& picture, const QString& title, const QString& fileName);

}  // namespace ladderwise
