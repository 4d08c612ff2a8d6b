// Paints the value plot of a Norton-transformed ladder with a QPainter onto any device.
#pragma once

#include <QPainter>
#include <QSize>

#include "display/NortonValuePlot.h"

namespace ladderwise {

/// Background over the whole size, then grid, traces, marks and texts, in the painter's font.
void PaintNortonValuePlot(QPainter& painter, const NortonValuePlot& plot, QSize size);

}  // namespace ladderwise
