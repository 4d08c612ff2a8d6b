// Spans of a trace in each pixel column, and their filling.
#include "display/TraceSpans.h"

#include <algorithm>

namespace ladderwise {

namespace {

/// Logical pixels to picture pixels. The points of a trace are not negative where a picture is, so
/// cutting after adding a half rounds.
inline int Scaled(int logical, double pixelRatio) {
    return static_cast<int>(logical * pixelRatio + 0.5);
}

std::uint32_t PixelOf(PlotColour colour) {
    constexpr std::uint32_t opaque = 0xff000000u;
    return opaque | std::uint32_t{colour.Red} << 16 | std::uint32_t{colour.Green} << 8 |
           colour.Blue;
}

inline void FillColumn(const PixelRows& picture, int x, int top, int bottom, std::uint32_t pixel) {
    top = std::max(top, 0);
    bottom = std::min(bottom, picture.Height - 1);
    std::uint32_t* at = picture.Pixels + top * picture.Stride + x;
    for (int y = top; y <= bottom; ++y, at += picture.Stride)
        *at = pixel;
}

}  // namespace

inline void TraceSpans::Start(int x, int y) {
    top[static_cast<std::size_t>(x)] = y;
    bottom[static_cast<std::size_t>(x)] = y;
}

inline void TraceSpans::Include(int x, int y) {
    int& upper = top[static_cast<std::size_t>(x)];
    int& lower = bottom[static_cast<std::size_t>(x)];
    upper = std::min(upper, y);
    lower = std::max(lower, y);
}

/// The columns after x0 up to x1 and, of x0 itself, what belongs to this step. A flat step has one
/// pixel in each column. A steep one (more pixels down than across) leaves column x0 + k halfway to
/// the next, at y0 + (k + 1/2) (y1 - y0) / (x1 - x0), and enters that one a pixel further.
inline void TraceSpans::CoverStep(int x0, int y0, int x1, int y1) {
    const int across = x1 - x0;
    const int down = y1 - y0;
    const int direction = down < 0 ? -1 : 1;
    if (across == 0) return Include(x1, y1);
    if (down * direction <= across) {
        for (int k = 1; k < across; ++k)
            Start(x0 + k, y0 + (2 * down * k + direction * across) / (2 * across));
        return Start(x1, y1);
    }
    for (int k = 0; k < across; ++k) {
        const int left = y0 + (across == 1 ? down / 2 : down * (2 * k + 1) / (2 * across));
        Include(x0 + k, left);
        Start(x0 + k + 1, left + direction);
    }
    Include(x1, y1);
}

void TraceSpans::CoverRun(const TracePoints& points, const TraceRun& run, double pixelRatio) {
    int x = Scaled(points.X[run.First], pixelRatio);
    int y = Scaled(points.Y[run.First], pixelRatio);
    first = x;
    Start(x, y);
    for (int n = run.First + 1; n <= run.Last; ++n) {
        const int nextX = Scaled(points.X[n], pixelRatio);
        const int nextY = Scaled(points.Y[n], pixelRatio);
        CoverStep(x, y, nextX, nextY);
        x = nextX;
        y = nextY;
    }
    last = x;
}

/// Joins every column with the `extraColumns` columns before it, as a pen of that much more width
/// does.
void TraceSpans::WidenBy(int extraColumns) {
    for (int extra = 0; extra < extraColumns; ++extra) {
        ++last;
        Start(last, top[static_cast<std::size_t>(last) - 1]);
        for (int x = last; x > first; --x) {
            Include(x, top[static_cast<std::size_t>(x) - 1]);
            Include(x, bottom[static_cast<std::size_t>(x) - 1]);
        }
    }
}

void TraceSpans::Fill(const TracePoints& points, double pixelRatio, PlotColour colour,
                      const PixelRows& picture) {
    if (points.NumPoints == 0) return;
    const int penSize = std::max(1, Scaled(1, pixelRatio));
    const int back = penSize / 2;  // of the pen's pixels lie left of a point and above it
    const int columns = Scaled(points.X[points.NumPoints - 1], pixelRatio) + penSize;
    if (static_cast<int>(top.size()) < columns) {
        top.resize(static_cast<std::size_t>(columns));
        bottom.resize(top.size());
    }
    const std::uint32_t pixel = PixelOf(colour);
    for (int r = 0; r < points.NumRuns; ++r) {
        CoverRun(points, points.Runs[static_cast<std::size_t>(r)], pixelRatio);
        WidenBy(penSize - 1);
        const int end = std::min(last, picture.Width - 1 + back);
        for (int x = std::max(first, back); x <= end; ++x) {
            const auto column = static_cast<std::size_t>(x);
            FillColumn(picture, x - back, top[column] - back, bottom[column] - back + penSize - 1,
                       pixel);
        }
    }
}

}  // namespace ladderwise
