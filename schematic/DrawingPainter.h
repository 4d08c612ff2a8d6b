// Paints the drawn ladder on any device, at any size.
#pragma once

#include <QFont>
#include <QPainter>

#include "schematic/SchematicDrawing.h"

namespace ladderwise {

/// The size of the font that a drawing is laid out in and scaled with: its metrics in whole units
/// are then exact to a hundredth, whatever the device.
inline constexpr int DrawingPixels = 100;

/// The same family in that size, and what its texts measure.
QFont DrawingFont(const QFont& font);
TextMetrics DrawingMetrics(const QFont& font);

/// Paints a drawing that was laid out with DrawingMetrics of `font`, in black on what is there, its
/// left top corner at `at`, `scale` units of the painter for one of its own.
void PaintDrawing(QPainter& painter, const SchematicDrawing& drawing, QPointF at, double scale,
                  const QFont& font);

}  // namespace ladderwise
