// Printing with a preview: the toolkit's dialogs, to paper or, where there is no printer, to a PDF.
#pragma once

#include <QPageLayout>
#include <QString>
#include <functional>

class QPrinter;
class QWidget;

namespace ladderwise {

/// Shows the preview of what `paint` draws, from which the user prints; `name` names the job and
/// the file that is proposed. Returns when the preview is closed.
void PrintWithPreview(QWidget* owner, const QString& name, QPageLayout::Orientation orientation,
                      const std::function<void(QPrinter&)>& paint);

}  // namespace ladderwise
