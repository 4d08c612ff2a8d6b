// Draws mapped traces straight into the pixels of the off-screen image. A worst-case overlay draws
// a thousand traces of a thousand points: a third of the time of the toolkit's polyline at one
// device pixel per pixel, and a sixtieth at two, where the toolkit strokes outlines
// (bench/plot_bench.cpp). No Qt.
#pragma once

#include <cstdint>

#include "display/TraceMap.h"

namespace ladderwise {

/// 32-bit pixels 0xffRRGGBB, row by row from the top left.
struct PixelTarget {
    std::uint32_t* Pixels = nullptr;
    int Width = 0;            ///< device pixels
    int Height = 0;           ///< device pixels
    int Stride = 0;           ///< device pixels from one row to the next
    double PixelRatio = 1.0;  ///< device pixels per logical pixel
};

/// Draws the runs of a trace, one logical pixel wide, without antialiasing. Points outside the
/// target are moved to its edge. Nothing is allocated.
void DrawRuns(const TracePoints& points, PlotColour colour, const PixelTarget& target);

}  // namespace ladderwise
