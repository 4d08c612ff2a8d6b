// The plot as the window shows it, as a file: frame, traces, schematic strip and a table of the
// part values. Pictures for reports are in Picture.
#pragma once

#include <QFont>
#include <QSize>
#include <string>

#include "display/PictureFile.h"
#include "display/PlotContent.h"
#include "display/PlotLayout.h"

namespace ladderwise {

/// The response of a content in its place: frame, with its titles or without, traces, markers and
/// legend, in the painter's font on a background that is there. On an image of Format_RGB32 the
/// traces are drawn pixel by pixel, as on the screen.
void PaintResponse(QPainter& painter, const PlotContent& content, const PlotLayout& layout,
                   bool titles, PlotColour background);

/// Paints the whole plot into 0, 0 .. size: the title at the top, no input panel, the table of
/// values at the bottom. A ladder too long for the width is shrunk to fit, strip and table
/// together.
void PaintPlot(QPainter& painter, QSize size, const PlotContent& content, const QFont& font);

/// Where a picture of this size has the table of values of a design: its top edge.
int TableTop(QSize size, const FilterDesign& design);

/// Paints the plot as a file, as MakePictureFile does; one logical pixel is 1/96 inch.
PlotFile PaintPlotFile(const std::string& path, QSize size, const PlotContent& content,
                       const QFont& font);

}  // namespace ladderwise
