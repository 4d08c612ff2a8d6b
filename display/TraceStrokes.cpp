// Coverage of pixels by the distance to a line, then one blend.
#include "display/TraceStrokes.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

namespace {

constexpr int fullCover = 255;
constexpr double flat = 1e-9;      // a squared length or step below this is none
constexpr double straight = 0.02;  // pixels beside a line that count as on it

// The library's floor and ceil are calls on a plain x86-64.
int FloorOf(double x) {
    const int whole = static_cast<int>(x);
    return x < whole ? whole - 1 : whole;
}

int CeilOf(double x) {
    const int whole = static_cast<int>(x);
    return x > whole ? whole + 1 : whole;
}

std::uint32_t Mixed(std::uint32_t below, PlotColour colour, int cover) {
    const auto channel = [&](int shift, int value) {
        const int old = static_cast<int>(below >> shift & 0xff);
        const int mixed = old + ((value - old) * cover + (value >= old ? 127 : -127)) / fullCover;
        return static_cast<std::uint32_t>(mixed) << shift;
    };
    return 0xff000000u | channel(16, colour.Red) | channel(8, colour.Green) |
           channel(0, colour.Blue);
}

}  // namespace

void TraceStrokes::Draw(const TracePoints& points, double width, PlotColour colour,
                        const PixelRows& picture) {
    if (columnCount != picture.Width || rowCount != picture.Height) {
        columnCount = picture.Width;
        rowCount = picture.Height;
        cover.assign(static_cast<std::size_t>(columnCount) * rowCount, 0);
        columns.assign(static_cast<std::size_t>(columnCount), {rowCount, -1});
    }
    reach = 0.5 * width + 0.5;
    dash = DashPixels * width;
    gap = DashGapPixels * width;
    // A line of an even number of pixels lies between two rows of them.
    const double offset = std::lround(width) % 2 == 0 ? -0.5 : 0.0;
    for (int r = 0; r < points.NumRuns; ++r) {
        const TraceRun& run = points.Runs[static_cast<std::size_t>(r)];
        if (run.Style == RunStyle::Dashed) {
            CoverDashed(points, run, offset);
            continue;
        }
        CoverSolid(points, run, offset);
    }
    Blend(colour, picture);
}

// Neighbouring points that lie on one straight line are drawn as that line: pieces of a pixel's
// length would compute most pixels three times. `lowest` and `highest` are the slopes that keep
// every point passed over within `straight` of the line.
void TraceStrokes::CoverSolid(const TracePoints& points, const TraceRun& run, double offset) {
    for (int start = run.First; start < run.Last;) {
        const double x0 = points.X[start], y0 = points.Y[start];
        double lowest = -HUGE_VAL, highest = HUGE_VAL;
        int end = start + 1;
        while (end < run.Last) {
            const double dx = points.X[end] - x0, dy = points.Y[end] - y0;
            const double nextDx = points.X[end + 1] - x0;
            if (!(dx > flat) || !(nextDx > dx)) break;
            lowest = std::max(lowest, (dy - straight) / dx);
            highest = std::min(highest, (dy + straight) / dx);
            const double slope = (points.Y[end + 1] - y0) / nextDx;
            if (!(slope >= lowest && slope <= highest)) break;
            ++end;
        }
        Cover(x0 + offset, y0 + offset, points.X[end] + offset, points.Y[end] + offset);
        start = end;
    }
}

void TraceStrokes::CoverDashed(const TracePoints& points, const TraceRun& run, double offset) {
    double phase = 0.0;  // since the last dash began
    for (int n = run.First + 1; n <= run.Last; ++n) {
        const double x = points.X[n - 1] + offset, y = points.Y[n - 1] + offset;
        const double dx = points.X[n] - points.X[n - 1], dy = points.Y[n] - points.Y[n - 1];
        const double length = std::hypot(dx, dy);
        for (double at = 0.0; at < length;) {
            const bool drawn = phase < dash;
            const double step = std::min((drawn ? dash : dash + gap) - phase, length - at);
            if (drawn)
                Cover(x + dx * at / length, y + dy * at / length, x + dx * (at + step) / length,
                      y + dy * (at + step) / length);
            at += step;
            phase += step;
            if (phase >= dash + gap - flat) phase = 0.0;
        }
    }
}

void TraceStrokes::Cover(double x0, double y0, double x1, double y1) {
    if (x0 > x1) std::swap(x0, x1), std::swap(y0, y1);
    const double dx = x1 - x0, dy = y1 - y0;
    const double squared = dx * dx + dy * dy;
    const double perSquared = squared > flat ? 1.0 / squared : 0.0;
    const double perX = dx > flat ? 1.0 / dx : 0.0;
    const double outer = reach * reach;
    // Nothing is covered whole by a line that is thinner than a pixel.
    const double inner = reach > 1.0 ? (reach - 1.0) * (reach - 1.0) : -1.0;
    const int first = std::max(CeilOf(x0 - reach), 0);
    const int last = std::min(FloorOf(x1 + reach), columnCount - 1);
    for (int x = first; x <= last; ++x) {
        // The piece of the line that can reach this column bounds the rows.
        const double from = std::clamp((x - reach - x0) * perX, 0.0, 1.0);
        const double to = dx > flat ? std::clamp((x + reach - x0) * perX, 0.0, 1.0) : 1.0;
        const double ya = y0 + from * dy, yb = y0 + to * dy;
        const int top = std::max(CeilOf(std::min(ya, yb) - reach), 0);
        const int bottom = std::min(FloorOf(std::max(ya, yb) + reach), rowCount - 1);
        if (top > bottom) continue;
        Column& column = columns[static_cast<std::size_t>(x)];
        column.Top = std::min(column.Top, top);
        column.Bottom = std::max(column.Bottom, bottom);
        std::uint8_t* const pixels = &cover[static_cast<std::size_t>(x) * rowCount];
        for (int y = top; y <= bottom; ++y) {
            const double px = x - x0, py = y - y0;
            const double t = std::clamp((px * dx + py * dy) * perSquared, 0.0, 1.0);
            const double ex = px - t * dx, ey = py - t * dy;
            const double distance = ex * ex + ey * ey;  // squared
            if (distance >= outer) continue;
            const double share = distance <= inner ? 1.0 : reach - std::sqrt(distance);
            pixels[y] = std::max(pixels[y], static_cast<std::uint8_t>(share * fullCover + 0.5));
        }
    }
}

void TraceStrokes::Blend(PlotColour colour, const PixelRows& picture) {
    for (int x = 0; x < columnCount; ++x) {
        Column& column = columns[static_cast<std::size_t>(x)];
        std::uint8_t* const covered = &cover[static_cast<std::size_t>(x) * rowCount];
        for (int y = column.Top; y <= column.Bottom; ++y) {
            if (covered[y] == 0) continue;
            std::uint32_t& pixel = picture.Pixels[y * picture.Stride + x];
            pixel = Mixed(pixel, colour, covered[y]);
            covered[y] = 0;
        }
        column = {rowCount, -1};
    }
}

}  // namespace ladderwise
