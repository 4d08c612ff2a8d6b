// Printing.
#include "windows/PrintScreen.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QPrinter>
#include <QWidget>

#include "windows/PrintPreview.h"

namespace ladderwise {

namespace {

constexpr double FootLines = 1.6;  ///< height of the line at the foot, in lines of its text

}  // namespace

void PaintPage(QPrinter& printer, const PictureContent& content, const PrintCaption& caption) {
    QPainter painter(&printer);
    if (!painter.isActive()) return;
    const double scale = printer.resolution() / LogicalDotsPerInch;
    painter.scale(scale, scale);
    const QSizeF page(printer.pageLayout().paintRectPixels(printer.resolution()).size() / scale);
    const QFont font = InPixels(QApplication::font());
    painter.setFont(font);
    const QFontMetrics metrics = painter.fontMetrics();
    const double foot = FootLines * metrics.height();
    PaintPicture(painter, {page.width(), page.height() - foot}, content, {PictureParts::Both, true},
                 font);
    painter.setFont(font);
    painter.setPen(Qt::black);
    const QString right = caption.Date + "   " + QApplication::applicationName() + ' ' +
                          QApplication::applicationVersion();
    const QString left = caption.FileName.isEmpty() ? "Not saved to a file" : caption.FileName;
    const int room = static_cast<int>(page.width()) - metrics.horizontalAdvance(right + "   ");
    const QRectF line(0.0, page.height() - foot, page.width(), foot);
    painter.drawText(line, Qt::AlignRight | Qt::AlignBottom, right);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignBottom,
                     metrics.elidedText(left, Qt::ElideMiddle, room));
}

void PrintScreen(QWidget* owner, const PictureContent& content, const QString& title,
                 const QString& fileName) {
    const PrintCaption caption{
        QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat), fileName};
    PrintWithPreview(owner, title, QPageLayout::Landscape,
                     [&](QPrinter& printer) { PaintPage(printer, content, caption); });
}

}  // namespace ladderwise
