// The mapping of traces. The clamp comes before the rounding, so that any magnitude fits an int.
#include "display/TraceMap.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr int longStepSquared = 36;   // steps of 6 pixels and more carry a dash pattern
constexpr int pointsPerDash = 4;      // points in a run of a finely stepped dashed trace
constexpr double degreesShown = 360;  // over the plot height
constexpr double topPhase = 180;      // degrees at the top of the plot
constexpr double firstPlace = 0.0;    // of the left edge, in points of the plot's sweep
constexpr double lastPlace = NumSweepPoints;

// Pixels from `origin` towards the inside of the plot, 0 .. height. The comparisons let NaN fall
// to 0; adding a half and cutting rounds half away from zero because the number is not negative.
inline int PixelsInside(double pixels, double height) {
    const double inside = pixels > 0.0 ? (pixels < height ? pixels : height) : 0.0;
    return static_cast<int>(inside + 0.5);
}

// The same for downward (+1, from the top) and upward (-1, from the bottom) kinds.
inline int MapInto(double value, const TraceScale& scale, int direction, double height) {
    const double up = (value - scale.Reference) * scale.Factor;
    return scale.Origin + direction * PixelsInside(-direction * up, height);
}

int DirectionOf(const TraceScale& scale, const PlotLayout& layout) {
    return scale.Origin == layout.PlotTop ? 1 : -1;
}

void MapPoints(std::span<const double> values, const TraceScale& scale, const PlotLayout& layout,
               TracePoints& points) {
    const int count = points.NumPoints;
    const int direction = DirectionOf(scale, layout);
    const double height = layout.PlotHeight;
    const double step = static_cast<double>(layout.PlotWidth) / count;
    for (int n = 0; n < count; ++n) {
        const double v = values[static_cast<std::size_t>(n)];
        points.X[n] = layout.PlotLeft + static_cast<int>(n * step + 0.5);
        points.Y[n] = MapInto(v, scale, direction, height);
        points.Shown[n] = !std::isnan(v);
    }
}

// Appends the step n - 1 .. n, lengthening the last run when it ends there in the same style.
inline void AddStep(TracePoints& points, int n, RunStyle style) {
    if (points.NumRuns > 0) {
        TraceRun& last = points.Runs[points.NumRuns - 1];
        if (last.Last == n - 1 && last.Style == style) {
            last.Last = n;
            return;
        }
    }
    points.Runs[points.NumRuns++] = {n - 1, n, style};
}

bool IsLongStep(const TracePoints& points, int n) {
    const int dx = points.X[n] - points.X[n - 1];
    const int dy = points.Y[n] - points.Y[n - 1];
    return dx * dx + dy * dy >= longStepSquared;
}

// Short steps of a dashed trace are drawn in every other group of points of the plot's sweep.
bool IsInDash(int n, std::span<const double> places) {
    const int point =
        places.empty() ? n : static_cast<int>(std::clamp(places[n], firstPlace, lastPlace));
    return (point / pointsPerDash) % 2 == 1;
}

// `longestStep`: a vertical step of more pixels is a jump of the quantity and is not drawn.
void FindRuns(TracePoints& points, bool dashed, int longestStep, std::span<const double> places) {
    points.NumRuns = 0;
    for (int n = 1; n < points.NumPoints; ++n) {
        if (!points.Shown[n] || !points.Shown[n - 1]) continue;
        if (std::abs(points.Y[n] - points.Y[n - 1]) > longestStep) continue;
        if (!dashed) {
            AddStep(points, n, RunStyle::Solid);
        } else if (IsLongStep(points, n)) {
            AddStep(points, n, RunStyle::Dashed);
        } else if (IsInDash(n, places)) {
            AddStep(points, n, RunStyle::Solid);
        }
    }
}

void HideBlanks(std::span<const double> values, TraceKind kind, TracePoints& points) {
    if (kind != TraceKind::Phase && kind != TraceKind::GroupDelay) return;
    for (int n = 0; n < points.NumPoints; ++n)
        if (values[static_cast<std::size_t>(n)] == BlankMarker) points.Shown[n] = false;
}

// More than half a turn of phase between two points is the wrap from -180 to 180 degrees.
int LongestStep(TraceKind kind, const PlotLayout& layout) {
    return kind == TraceKind::Phase ? layout.PlotHeight / 2 : layout.PlotHeight;
}

// The value at an edge of the plot of the line from point `n` outside to `inner`; not a number
// where that lies outside too, on the same side.
double ValueAtEdge(std::span<const double> places, std::span<const double> values, int n, int inner,
                   double edge) {
    const double share = (edge - places[n]) / (places[inner] - places[n]);
    return share < 1.0 ? values[n] + share * (values[inner] - values[n]) : std::nan("");
}

}  // namespace

PlotScales ScalesOf(const FilterDesign& design) {
    PlotScales scales;
    scales.MagTopRef = design.MagTopRef;
    if (design.GDFullScale > 0.0 && std::isfinite(design.GDFullScale)) {
        scales.GDFullScale = design.GDFullScale;
    }
    return scales;
}

TraceScale ScaleOf(TraceKind kind, const PlotLayout& layout, const PlotScales& scales) {
    const double height = layout.PlotHeight;
    switch (kind) {
        case TraceKind::Mag1dB:
            return {height * 0.1, 0.1 * scales.MagTopRef, layout.PlotTop};
        case TraceKind::Mag10dB:
        case TraceKind::ReturnLoss:
            return {height * 0.01, scales.MagTopRef, layout.PlotTop};
        case TraceKind::Phase:
            return {height / degreesShown, topPhase, layout.PlotTop};
        case TraceKind::GroupDelay:
            return {height / scales.GDFullScale, 0.0, layout.PlotBottom};
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            return {height, 0.0, layout.PlotBottom};
    }
    return {height, 0.0, layout.PlotBottom};
}

int MapValue(double value, const TraceScale& scale, const PlotLayout& layout) {
    return MapInto(value, scale, DirectionOf(scale, layout), layout.PlotHeight);
}

int MapIndex(int n, int count, const PlotLayout& layout) {
    return layout.PlotLeft + NearestInt(n * (static_cast<double>(layout.PlotWidth) / count));
}

void MapTrace(std::span<const double> values, TraceKind kind, bool dashed, const PlotLayout& layout,
              const PlotScales& scales, TracePoints& points) {
    points.NumPoints = static_cast<int>(std::min<std::size_t>(values.size(), NumSweepPoints));
    MapPoints(values, ScaleOf(kind, layout, scales), layout, points);
    HideBlanks(values, kind, points);
    FindRuns(points, dashed, LongestStep(kind, layout), {});
}

void MapTraceAt(std::span<const double> places, std::span<const double> values, TraceKind kind,
                bool dashed, const PlotLayout& layout, const PlotScales& scales,
                TracePoints& points) {
    points.NumPoints = static_cast<int>(
        std::min({values.size(), places.size(), static_cast<std::size_t>(NumSweepPoints)}));
    const TraceScale scale = ScaleOf(kind, layout, scales);
    MapPoints(values, scale, layout, points);
    HideBlanks(values, kind, points);
    const double step = static_cast<double>(layout.PlotWidth) / NumSweepPoints;
    for (int n = 0; n < points.NumPoints; ++n) {
        const double inside = std::clamp(places[n], firstPlace, lastPlace);
        if (std::isnan(places[n])) points.Shown[n] = false;
        points.X[n] =
            layout.PlotLeft + (points.Shown[n] ? static_cast<int>(inside * step + 0.5) : 0);
    }
    for (int n = 0; n < points.NumPoints; ++n) {
        const double edge = places[n] < firstPlace ? firstPlace : lastPlace;
        const int inner = places[n] < firstPlace ? n + 1 : n - 1;
        if (!points.Shown[n] || (places[n] >= firstPlace && places[n] <= lastPlace)) continue;
        const double value = inner >= 0 && inner < points.NumPoints && points.Shown[inner]
                                 ? ValueAtEdge(places, values, n, inner, edge)
                                 : std::nan("");
        const bool wraps = kind == TraceKind::Phase && !std::isnan(value) &&
                           std::abs(values[n] - values[inner]) > degreesShown / 2;
        points.Shown[n] = !std::isnan(value) && !wraps;
        if (points.Shown[n]) points.Y[n] = MapValue(value, scale, layout);
    }
    FindRuns(points, dashed, LongestStep(kind, layout), places);
}

}  // namespace ladderwise
