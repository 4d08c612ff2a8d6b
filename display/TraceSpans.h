// Traces as vertical spans of pixels, one for each pixel column: the quick way to lay a thousand
// worst-case runs over each other. No Qt.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "display/TraceMap.h"

namespace ladderwise {

/// The bare pixels of a picture, 32 bits each (0xffRRGGBB), row by row.
struct PixelRows {
    std::uint32_t* Pixels = nullptr;
    int Width = 0;
    int Height = 0;
    std::ptrdiff_t Stride = 0;  ///< pixels from one row to the next
};

/// Draws traces by filling, in each pixel column, the span of y that the trace crosses there. The
/// pixels are those of a toolkit's line of width 1: neighbours touch at corners at least, and a
/// flat piece is one pixel high. Everything is opaque.
class TraceSpans {
public:
    /// Fills the runs of `points` as solid lines. `pixelRatio` (pixels per logical pixel, at least
    /// 1) scales the points; the pen is a square of as many whole pixels. What lies outside the
    /// picture is left out. Memory is taken by the first call for a width alone.
    void Fill(const TracePoints& points, double pixelRatio, PlotColour colour,
              const PixelRows& picture);

private:
    void CoverRun(const TracePoints& points, const TraceRun& run, double pixelRatio);
    void CoverStep(int x0, int y0, int x1, int y1);
    void WidenBy(int extraColumns);
    void Start(int x, int y);
    void Include(int x, int y);

    // Of the run in work, by x; columns first .. last are in use.
    std::vector<int> top;     ///< y of the uppermost pixel
    std::vector<int> bottom;  ///< y of the lowest pixel
    int first = 0;
    int last = 0;
};

}  // namespace ladderwise
