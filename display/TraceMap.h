// From the arrays of a sweep to points of the plot: whole pixels in plain arrays that are reused
// run after run, with the gaps and dashes described as runs of points. No Qt.
#pragma once

#include <array>
#include <span>

#include "design/FilterDesign.h"
#include "display/PlotLayout.h"

namespace ladderwise {

/// Group delay that the plot height stands for when the full scale is no positive number, s.
inline constexpr double FallbackGDFullScale = 1e-9;

/// A dashed piece of a trace: this many pixels drawn, then this many left out.
inline constexpr int DashPixels = 6;
inline constexpr int DashGapPixels = 3;

/// The vertical scales in force; worst-case runs keep those of the frame they are drawn over.
struct PlotScales {
    double MagTopRef = 10.0;                   ///< dB at the top of the 10 dB scale
    double GDFullScale = FallbackGDFullScale;  ///< seconds
};

/// The scales of a design; a full scale that is zero, negative or not finite becomes
/// FallbackGDFullScale.
PlotScales ScalesOf(const FilterDesign& design);

/// Vertical mapping of one kind: y = Origin - round((v - Reference) Factor), clamped to the plot.
struct TraceScale {
    double Factor = 1.0;     ///< pixels per unit of the kind
    double Reference = 0.0;  ///< value at Origin
    int Origin = 0;          ///< y of Reference: PlotTop, or PlotBottom for what rises from 0
};

/// Mapping of a kind: 10 dB (1 dB scale), 100 dB (10 dB scale, return loss), 360 degrees, the
/// group-delay full scale or 1 (pulse) over the plot height.
TraceScale ScaleOf(TraceKind kind, const PlotLayout& layout, const PlotScales& scales);

/// y of a value, rounded half away from zero and clamped to PlotTop .. PlotBottom. NaN lies at the
/// top edge; callers leave it out.
int MapValue(double value, const TraceScale& scale, const PlotLayout& layout);

/// x of point n of `count`: PlotLeft + round(n PlotWidth / count); the right edge would be point
/// `count`.
int MapIndex(int n, int count, const PlotLayout& layout);

enum class RunStyle { Solid, Dashed };

/// Points First .. Last (both included, Last > First) joined by lines of one style.
struct TraceRun {
    int First = 0;
    int Last = 0;
    RunStyle Style = RunStyle::Solid;
};

/// One mapped trace. Fixed arrays: nothing is allocated when a trace is mapped. What lies between
/// two runs is not drawn.
struct TracePoints {
    int NumPoints = 0;
    int NumRuns = 0;
    std::array<int, NumSweepPoints> X{};
    std::array<int, NumSweepPoints> Y{};
    std::array<bool, NumSweepPoints> Shown{};  ///< false for NaN and blank points
    std::array<TraceRun, NumSweepPoints> Runs{};
};

/// Maps `values` (at most NumSweepPoints are taken) into `points`. A NaN of any kind, and the
/// BlankMarker of phase and group delay, leaves a gap to both neighbours; so does a wrap of the
/// phase between the two points of the step. `dashed` is for the
/// reference design: short steps are drawn four points on, four points off, steps of 6 pixels or
/// more with a dash pattern.
void MapTrace(std::span<const double> values, TraceKind kind, bool dashed, const PlotLayout& layout,
              const PlotScales& scales, TracePoints& points);

/// The same with value n at places[n], ascending, in points from the plot's left edge (0) to its
/// right edge (NumSweepPoints). Of what lies outside only the line to the next point inside is
/// drawn, from the edge on: its outer point stands at the edge, at the value that a straight line
/// has there.
void MapTraceAt(std::span<const double> places, std::span<const double> values, TraceKind kind,
                bool dashed, const PlotLayout& layout, const PlotScales& scales,
                TracePoints& points);

}  // namespace ladderwise
