// The printed page: the picture for reports, with file name and date beneath.
#pragma once

#include <QString>

#include "display/Picture.h"

class QPrinter;
class QWidget;

namespace ladderwise {

/// The texts beneath the picture.
struct PrintCaption {
    QString Date;      ///< as the user's country writes it
    QString FileName;  ///< of the design; empty if it has none
};

/// Paints one page: plot, ladder and results on white, as vectors, in the form of the paper.
void PaintPage(QPrinter& printer, const PictureContent& content, const PrintCaption& caption);

/// Previews and prints the picture of a design over the window `owner`.
void PrintScreen(QWidget* owner, const PictureContent& content, const QString& title,
                 const QString& fileName);

}  // namespace ladderwise
