// The plot as a file: a pixel image or a vector picture with frame, traces, schematic strip and a
// table of the part values.
#pragma once

#include <QFont>
#include <QSize>
#include <string>

#include "display/PlotContent.h"

class QPainter;

namespace ladderwise {

/// Paints the whole plot into 0, 0 .. size: the title at the top, no input panel, the table of
/// values at the bottom. A ladder too long for the width is shrunk to fit, strip and table
/// together.
void PaintPlot(QPainter& painter, QSize size, const PlotContent& content, const QFont& font);

/// Where a picture of this size has the table of values of a design: its top edge.
int TableTop(QSize size, const FilterDesign& design);

/// A picture file in memory, or why there is none, as a sentence for the user.
struct PlotFile {
    std::string Bytes;
    std::string Error;
};

/// Paints the plot as a file of the kind that the ending of `path` names: .png, .svg or .pdf (in
/// any case of letters). One logical pixel is 1/96 inch. Nothing is written to the disk. Fails for
/// another ending, an empty size, a picture that the memory cannot hold, and where no font is
/// installed: a response without scales is worse than none.
PlotFile PaintPlotFile(const std::string& path, QSize size, const PlotContent& content,
                       const QFont& font);

}  // namespace ladderwise
