// Edges of limits from the axes of the plot, and back.
#include "display/LimitEdges.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "display/PlotAxis.h"

namespace ladderwise {

namespace {

constexpr int hatchStep = 6;    // from one stroke to the next
constexpr int failingStep = 3;  // of one that fails
constexpr int pointHalf = 6;    // pixels to either side of a limit at one frequency
constexpr int gripReach = 4;    // pixels above and below an edge
constexpr int endReach = 6;     // pixels to either side of an end
constexpr double fullPlace = NumSweepPoints;

/// The height of a value, unclamped, in pixels.
double HeightOf(double value, const TraceScale& scale) {
    return scale.Origin - (value - scale.Reference) * scale.Factor;
}

/// Places beyond the axis are its ends; 0 Hz lies below every one.
double PlaceOnAxis(double f, const PlotAxis& axis) {
    const double place = AxisPlace(f, axis);
    return std::isnan(place) ? -1.0 : place;
}

double FrequencyAtPlace(double place, const PlotAxis& axis) {
    const double share = place / fullPlace;
    if (axis.Linear) return axis.Start + share * (axis.Stop - axis.Start);
    return axis.Start * std::pow(axis.Stop / axis.Start, share);
}

std::vector<TraceKind> AxesOf(LimitKind kind) {
    switch (kind) {
        case LimitKind::AttenMin:
        case LimitKind::AttenMax:
            return {TraceKind::Mag10dB, TraceKind::Mag1dB};
        case LimitKind::ReturnLossMin:
            return {TraceKind::ReturnLoss};
        case LimitKind::DelayVariationMax:
            return {TraceKind::GroupDelay};
    }
    return {};
}

/// The values of an axis at which a limit has its edges, and which side of each is forbidden.
struct EdgeValue {
    double Value;
    bool ForbidsAbove;
};
std::vector<EdgeValue> EdgeValuesOf(const LimitMargin& limit) {
    switch (limit.Line.Kind) {
        case LimitKind::AttenMin:
        case LimitKind::ReturnLossMin:
            return {{-limit.Line.Value, true}};
        case LimitKind::AttenMax:
            return {{-limit.Line.Value, false}};
        case LimitKind::DelayVariationMax:
            return {{limit.Middle + 0.5 * limit.Line.Value, true},
                    {limit.Middle - 0.5 * limit.Line.Value, false}};
    }
    return {};
}

/// Half as bright as the trace.
PlotColour EdgeColourOf(TraceKind kind) {
    const PlotColour trace = TraceColour(kind);
    const auto half = [](std::uint8_t part) { return static_cast<std::uint8_t>(part / 2); };
    return {half(trace.Red), half(trace.Green), half(trace.Blue)};
}

void AddHatch(LimitEdge& edge, const PlotLayout& layout) {
    const int side = edge.ForbidsAbove ? -1 : 1;
    const int room = edge.ForbidsAbove ? edge.Y - layout.PlotTop : layout.PlotBottom - edge.Y;
    const int depth = std::min(LimitHatchDepth, room);
    const int step = edge.Fails ? failingStep : hatchStep;
    for (int x = edge.Left; x < edge.Right; x += step) {
        const int run = std::min(depth, edge.Right - x);
        edge.Hatch.push_back({x, edge.Y, x + run, edge.Y + side * run, edge.Colour});
    }
    const auto addEnd = [&](bool has, int x) {
        if (has) edge.Hatch.push_back({x, edge.Y, x, edge.Y + side * depth, edge.Colour});
    };
    addEnd(edge.HasFrom, edge.Left);
    addEnd(edge.HasTo, edge.Right);
}

/// Nothing where no part of the limit lies on the plot.
std::optional<LimitEdge> EdgeOn(const PlotAxis& axis, const LimitLine& line,
                                const PlotLayout& layout) {
    const double from = PlaceOnAxis(line.From, axis), to = PlaceOnAxis(line.To, axis);
    if (!(to >= 0.0) || !(from <= fullPlace)) return {};
    LimitEdge edge;
    edge.HasFrom = IsOnPlot(from);
    edge.HasTo = IsOnPlot(to);
    edge.Left = MapPlace(from, layout);
    edge.Right = MapPlace(to, layout);
    if (edge.Right - edge.Left >= 2 * pointHalf) return edge;
    const int middle = (edge.Left + edge.Right) / 2;
    edge.Left = std::max(middle - pointHalf, layout.PlotLeft);
    edge.Right = std::min(middle + pointHalf, layout.PlotRight);
    return edge;
}

/// The largest of 1, 2 and 5 times a power of ten that is no more than `most`.
double StepWithin(double most) {
    const double power = std::pow(10.0, std::floor(std::log10(most)));
    for (const double factor : {5.0, 2.0})
        if (factor * power <= most) return factor * power;
    return power;
}

/// x as a multiple of a step; through a division by a whole number where that is exact in decimals.
double Rounded(double x, double step) {
    if (!(step > 0.0) || !std::isfinite(step)) return x;
    const double count = std::round(x / step);
    return step < 1.0 ? count / std::round(1.0 / step) : count * step;
}

double DraggedValue(const LimitDrag& drag, const PlotLayout& layout, const PlotScales& scales) {
    const LimitLine& line = drag.Before.Line;
    const TraceScale scale = ScaleOf(drag.Grip.Edge.Axis, layout, scales);
    const double step = StepWithin(1.0 / scale.Factor);
    const double up = -drag.DeltaY / scale.Factor;
    if (line.Kind != LimitKind::DelayVariationMax)
        return std::max(Rounded(line.Value - up, step),
                        line.Kind == LimitKind::AttenMax ? 0.0 : step);
    // The other edge goes as far the other way.
    const double apart = line.Value + 2.0 * (drag.Grip.Edge.ForbidsAbove ? up : -up);
    constexpr double nanoseconds = 1e9;
    const double least = step * nanoseconds;
    return std::max(Rounded(apart * nanoseconds, least), least) / nanoseconds;
}

/// A frequency so many pixels beside another.
double DraggedFrequency(double f, int pixels, const PlotAxis& axis, const PlotLayout& layout) {
    constexpr double megahertz = 1e6;
    const double perPixel = fullPlace / layout.PlotWidth;
    const double place = std::clamp(PlaceOnAxis(f, axis) + pixels * perPixel, 0.0, fullPlace);
    const double moved = FrequencyAtPlace(place, axis);
    const double pixel = FrequencyAtPlace(place + perPixel, axis) - moved;
    return Rounded(moved / megahertz, StepWithin(pixel / megahertz)) * megahertz;
}

}  // namespace

std::vector<LimitEdge> BuildLimitEdges(const PlotContent& content, const PlotLayout& layout,
                                       const PlotScales& scales) {
    std::vector<LimitEdge> edges;
    const PlotAxis axis = AxisOf(content.Design);
    for (std::size_t i = 0; i < content.Limits.Rows.size(); ++i) {
        const LimitMargin& limit = content.Limits.Rows[i];
        const auto place = EdgeOn(axis, limit.Line, layout);
        for (const TraceKind kind : AxesOf(limit.Line.Kind)) {
            if (!place || !IsChosen(content.Choices, kind)) continue;
            const TraceScale scale = ScaleOf(kind, layout, scales);
            for (const EdgeValue& value : EdgeValuesOf(limit)) {
                const double y = HeightOf(value.Value, scale);
                if (!(y >= layout.PlotTop) || !(y <= layout.PlotBottom)) continue;
                LimitEdge edge = *place;
                edge.Limit = i;
                edge.Axis = kind;
                edge.Y = static_cast<int>(std::lround(y));
                edge.ForbidsAbove = value.ForbidsAbove;
                edge.Fails = limit.Margin < 0.0;
                edge.Colour = EdgeColourOf(kind);
                AddHatch(edge, layout);
                edges.push_back(std::move(edge));
            }
        }
    }
    return edges;
}

std::optional<LimitGrip> GripAt(const std::vector<LimitEdge>& edges, int x, int y) {
    std::optional<LimitGrip> nearest;
    int least = 0;
    for (const LimitEdge& edge : edges) {
        const int beside = std::max({edge.Left - x, x - edge.Right, 0});
        const int distance = std::abs(y - edge.Y);
        if (distance > gripReach || beside > endReach) continue;
        // Of a short edge the middle third moves the value.
        const int reach = std::min(endReach, (edge.Right - edge.Left) / 3);
        const bool from = edge.HasFrom && x <= edge.Left + reach;
        const bool to = edge.HasTo && x >= edge.Right - reach;
        if (beside > 0 && !from && !to) continue;
        if (nearest && distance + beside >= least) continue;
        least = distance + beside;
        nearest = LimitGrip{edge, from ? LimitGripPart::From
                                  : to ? LimitGripPart::To
                                       : LimitGripPart::Value};
    }
    return nearest;
}

LimitLine DraggedLimit(const LimitDrag& drag, const FilterDesign& design, const PlotLayout& layout,
                       const PlotScales& scales) {
    LimitLine line = drag.Before.Line;
    const PlotAxis axis = AxisOf(design);
    const auto moved = [&](double f) { return DraggedFrequency(f, drag.DeltaX, axis, layout); };
    // A delay varies between two frequencies.
    const auto beside = [&](double f, int pixels) {
        const bool apart = line.Kind == LimitKind::DelayVariationMax;
        return apart ? DraggedFrequency(f, pixels, axis, layout) : f;
    };
    switch (drag.Grip.Part) {
        case LimitGripPart::Value:
            if (drag.DeltaY != 0) line.Value = DraggedValue(drag, layout, scales);
            break;
        case LimitGripPart::From:
            if (drag.DeltaX != 0) line.From = std::min(moved(line.From), beside(line.To, -1));
            break;
        case LimitGripPart::To:
            if (drag.DeltaX != 0) line.To = std::max(moved(line.To), beside(line.From, +1));
            break;
    }
    return FaultOf(line).empty() ? line : drag.Before.Line;
}

}  // namespace ladderwise
