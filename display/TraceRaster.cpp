// Lines by Bresenham's algorithm with a square brush.
// Source: J. E. Bresenham, "Algorithm for computer control of a digital plotter", IBM Systems
// Journal 4 (1965) 25-30, in its symmetric form with one error term for all octants.
#include "display/TraceRaster.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>

namespace ladderwise {

namespace {

struct DevicePoint {
    int X;
    int Y;
};

// The brush, and how far along the dash pattern it is.
struct Pen {
    const PixelTarget& Target;
    std::uint32_t Value;
    int Size;          // device pixels; a square Size x Size, right and below of where it is put
    int On;            // device pixels drawn
    int Period;        // On plus what is left out; 0 for a solid line
    int Position = 0;  // 0 .. Period - 1

    void Put(int x, int y) {
        if (Period > 0) {
            const bool drawn = Position < On;
            Position = Position + 1 == Period ? 0 : Position + 1;
            if (!drawn) return;
        }
        std::uint32_t* row = Target.Pixels + static_cast<std::ptrdiff_t>(y) * Target.Stride + x;
        for (int j = 0; j < Size; ++j, row += Target.Stride) {
            for (int i = 0; i < Size; ++i)
                row[i] = Value;
        }
    }
};

// The brush is centred on the scaled point, as the toolkit centres the lines of the frame.
DevicePoint ToDevice(int x, int y, const Pen& pen) {
    const double ratio = pen.Target.PixelRatio;
    const int back = pen.Size / 2;
    return {std::clamp(static_cast<int>(x * ratio + 0.5) - back, 0, pen.Target.Width - pen.Size),
            std::clamp(static_cast<int>(y * ratio + 0.5) - back, 0, pen.Target.Height - pen.Size)};
}

// Draws from a to b, without b itself: the next line begins there.
void DrawLine(DevicePoint a, DevicePoint b, Pen& pen) {
    const int dx = std::abs(b.X - a.X);
    const int dy = -std::abs(b.Y - a.Y);
    const int stepX = a.X < b.X ? 1 : -1;
    const int stepY = a.Y < b.Y ? 1 : -1;
    int error = dx + dy;
    while (a.X != b.X || a.Y != b.Y) {
        pen.Put(a.X, a.Y);
        const int twice = 2 * error;
        if (twice >= dy) {
            error += dy;
            a.X += stepX;
        }
        if (twice <= dx) {
            error += dx;
            a.Y += stepY;
        }
    }
}

}  // namespace

void DrawRuns(const TracePoints& points, PlotColour colour, const PixelTarget& target) {
    const int size = std::max(1, static_cast<int>(std::lround(target.PixelRatio)));
    if (target.Width < size || target.Height < size) return;
    const std::uint32_t value = 0xff000000u | static_cast<std::uint32_t>(colour.Red) << 16 |
                                static_cast<std::uint32_t>(colour.Green) << 8 | colour.Blue;
    for (int r = 0; r < points.NumRuns; ++r) {
        const TraceRun& run = points.Runs[static_cast<std::size_t>(r)];
        const bool dashed = run.Style == RunStyle::Dashed;
        Pen pen{target, value, size, DashPixels * size,
                dashed ? (DashPixels + DashGapPixels) * size : 0};
        DevicePoint from = ToDevice(points.X[run.First], points.Y[run.First], pen);
        for (int n = run.First + 1; n <= run.Last; ++n) {
            const DevicePoint to = ToDevice(points.X[n], points.Y[n], pen);
            DrawLine(from, to, pen);
            from = to;
        }
        pen.Put(from.X, from.Y);
    }
}

}  // namespace ladderwise
