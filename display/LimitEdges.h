// Limits on the plot: hatched edges on the axes of the traces that they limit, and what the mouse
// does with them. Plain structs, no Qt.
#pragma once

#include <optional>
#include <vector>

#include "display/PlotContent.h"
#include "display/TraceMap.h"

namespace ladderwise {

inline constexpr int LimitHatchDepth = 8;  ///< pixels off the edge

/// One edge of a limit on one axis, in pixels of the plot. The side that is forbidden is hatched.
struct LimitEdge {
    std::size_t Limit = 0;  ///< its place in the list of limits
    TraceKind Axis = TraceKind::Mag10dB;
    int Y = 0;
    int Left = 0;          ///< x of its lower end, or the plot's edge
    int Right = 0;         ///< x of its upper end, or the plot's edge
    bool HasFrom = false;  ///< its lower end lies on the plot
    bool HasTo = false;
    bool ForbidsAbove = false;
    bool Fails = false;
    PlotColour Colour;
    std::vector<PlotLine> Hatch{};  ///< with the ends of the limit
};

/// The edges of the limits of a content, in their order, on every axis whose trace is shown and
/// that reaches so far: attenuation on those of the magnitude, return loss on its own. A delay
/// variation is a pair of edges, its value apart, about the middle between the largest and the
/// smallest delay of the design. A limit at one frequency is a few pixels wide.
std::vector<LimitEdge> BuildLimitEdges(const PlotContent& content, const PlotLayout& layout,
                                       const PlotScales& scales);

/// What of a limit the mouse holds.
enum class LimitGripPart { Value, From, To };

struct LimitGrip {
    LimitEdge Edge;
    LimitGripPart Part = LimitGripPart::Value;
};

/// The grip at a point, a few pixels around an edge or its ends; the nearest one.
std::optional<LimitGrip> GripAt(const std::vector<LimitEdge>& edges, int x, int y);

/// Where the mouse went while it held a limit, in pixels.
struct LimitDrag {
    LimitGrip Grip;
    LimitMargin Before{};  ///< the limit as it was taken
    int DeltaX = 0;
    int DeltaY = 0;
};

/// The limit that a drag makes of the one that was taken, on the axes of `design`. Numbers are
/// rounded to 1, 2 or 5 times a power of ten that is no more than a pixel. An end goes no further
/// than the other, a value no further than it can be demanded.
LimitLine DraggedLimit(const LimitDrag& drag, const FilterDesign& design, const PlotLayout& layout,
                       const PlotScales& scales);

}  // namespace ladderwise
