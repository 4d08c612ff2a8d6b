// The plot as a file: a pixel image or a vector picture with frame, traces, schematic strip and a
// table of the part values.
#pragma once

#include <QFont>
#include <QSize>
#include <QString>

#include "display/PlotContent.h"

class QPainter;

namespace ladderwise {

/// Paints the whole plot into 0, 0 .. size: the title at the top, no input panel, the table of
/// values at the bottom. A ladder too long for the width is shrunk to fit, strip and table
/// together.
void PaintPlot(QPainter& painter, QSize size, const PlotContent& content, const QFont& font);

/// Where a picture of this size has the table of values: its top edge.
int TableTop(QSize size);

/// Writes the plot to `path` by its ending: .png, .svg or .pdf (in any case of letters). One
/// logical pixel is 1/96 inch. False for another ending, an empty size, or a file that cannot be
/// written.
bool WritePlotFile(const QString& path, QSize size, const PlotContent& content, const QFont& font);

}  // namespace ladderwise
