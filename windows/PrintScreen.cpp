// Print screen.
#include "windows/PrintScreen.h"

#include <QApplication>
#include <QDateTime>
#include <QLocale>
#include <QPainter>
#include <QPrinter>
#include <QWidget>

#include "display/PrintLayout.h"
#include "windows/PrintPreview.h"

namespace ladderwise {

namespace {

constexpr double TitlePoints = 13.0, FootPoints = 9.0;

QRect RectOf(const PlotRect& rect) {
    return {rect.Left, rect.Top, rect.Width, rect.Height};
}

/// Two texts of one line, at its ends; the left one gives way.
void PaintLine(QPainter& painter, const QRect& line, const QString& left, const QString& right,
               double points, bool bold) {
    QFont font = QApplication::font();
    font.setPointSizeF(points);
    painter.setFont(font);
    painter.drawText(line, Qt::AlignRight | Qt::AlignVCenter, right);
    const int gap = painter.fontMetrics().horizontalAdvance("    ");
    const int room = line.width() - painter.fontMetrics().horizontalAdvance(right) - gap;
    font.setBold(bold);
    painter.setFont(font);
    painter.drawText(line, Qt::AlignLeft | Qt::AlignVCenter,
                     painter.fontMetrics().elidedText(left, Qt::ElideMiddle, room));
}

}  // namespace

void PaintScreenPage(QPrinter& printer, QWidget& picture, const PrintCaption& caption) {
    QPainter painter(&printer);
    if (!painter.isActive()) return;
    painter.setRenderHints(QPainter::Antialiasing | QPainter::SmoothPixmapTransform);
    const QSize page = printer.pageLayout().paintRectPixels(printer.resolution()).size();
    const int line = static_cast<int>(1.6 * TitlePoints / 72.0 * printer.resolution());
    const PrintLayout layout =
        LayOutPrint(page.width(), page.height(), picture.width(), picture.height(), line);
    PaintLine(painter, RectOf(layout.Header), caption.Title, caption.Date, TitlePoints, true);
    const QString program =
        QApplication::applicationName() + ' ' + QApplication::applicationVersion();
    PaintLine(painter, RectOf(layout.Footer),
              caption.FileName.isEmpty() ? "Not saved to a file" : caption.FileName, program,
              FootPoints, false);
    const QRect place = RectOf(layout.Picture);
    painter.save();
    painter.translate(place.topLeft());
    painter.scale(double(place.width()) / picture.width(),
                  double(place.height()) / picture.height());
    painter.setClipRect(picture.rect());
    picture.render(&painter, QPoint(), QRegion(),
                   QWidget::DrawWindowBackground | QWidget::DrawChildren);
    painter.restore();
    painter.setPen(Qt::gray);
    painter.drawRect(place);
}

void PrintScreen(QWidget* owner, QWidget& picture, const QString& title, const QString& fileName) {
    const PrintCaption caption{
        title, QLocale().toString(QDateTime::currentDateTime(), QLocale::ShortFormat), fileName};
    PrintWithPreview(owner, title, QPageLayout::Landscape,
                     [&](QPrinter& printer) { PaintScreenPage(printer, picture, caption); });
}

}  // namespace ladderwise
