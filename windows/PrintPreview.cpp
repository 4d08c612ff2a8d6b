// Printing with a preview.
#include "windows/PrintPreview.h"

#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QPrinterInfo>
#include <QRegularExpression>
#include <QScreen>

namespace ladderwise {

void PrintWithPreview(QWidget* owner, const QString& name, QPageLayout::Orientation orientation,
                      const std::function<void(QPrinter&)>& paint) {
    QPrinter printer(QPrinter::HighResolution);
    printer.setDocName(name);
    printer.setPageOrientation(orientation);
    if (QPrinterInfo::availablePrinterNames().isEmpty()) {
        static const QRegularExpression notInFileNames(R"([/\\:*?"<>|])");
        printer.setOutputFormat(QPrinter::PdfFormat);
        printer.setOutputFileName(QString(name).replace(notInFileNames, "-") + ".pdf");
    }
    QPrintPreviewDialog preview(&printer, owner);
    preview.setObjectName("PrintPreview");
    preview.setWindowTitle("Print - " + name);
    QObject::connect(&preview, &QPrintPreviewDialog::paintRequested,
                     [&paint](QPrinter* paper) { paint(*paper); });
    preview.resize(QSize(1000, 720).boundedTo(owner->screen()->availableSize() - QSize(40, 60)));
    preview.exec();
}

}  // namespace ladderwise
