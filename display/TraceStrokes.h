// Traces as smooth lines laid straight onto the pixels of a picture: many times as fast as the
// toolkit's antialiased lines of the same width. No Qt.
#pragma once

#include <cstdint>
#include <vector>

#include "display/TraceSpans.h"

namespace ladderwise {

class TraceStrokes {
public:
    /// Draws the runs of `points`, which count pixels of the picture, `width` pixels wide. A pixel
    /// is covered by as much as the line lies within it (to the distance from its axis), and no
    /// more where pieces of the line join. Dashes are DashPixels and DashGapPixels times `width`.
    /// Memory is taken by the first call for a size alone.
    void Draw(const TracePoints& points, double width, PlotColour colour, const PixelRows& picture);

private:
    struct Column {
        int Top;  ///< first and last row touched; none while Top > Bottom
        int Bottom;
    };

    void Cover(double x0, double y0, double x1, double y1);
    void CoverSolid(const TracePoints& points, const TraceRun& run, double offset);
    void CoverDashed(const TracePoints& points, const TraceRun& run, double offset);
    void Blend(PlotColour colour, const PixelRows& picture);

    int columnCount = 0;
    int rowCount = 0;
    double reach = 1.0;               ///< pixels from the axis at which nothing is covered
    double dash = 0.0;                ///< pixels drawn
    double gap = 0.0;                 ///< pixels left out
    std::vector<std::uint8_t> cover;  ///< of each pixel, 0 .. 255, column by column; kept clear
    std::vector<Column> columns;
};

}  // namespace ladderwise
