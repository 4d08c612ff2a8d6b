// Places of frequencies and times on the axes of the plot.
#include "display/PlotAxis.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr double notANumber = std::numeric_limits<double>::quiet_NaN();

using Places = std::array<double, NumSweepPoints>;

/// Where at most as many frequencies as there is room for lie.
std::span<const double> PlacesOf(std::span<const double> freqs, const PlotAxis& axis,
                                 Places& places) {
    const std::size_t count = std::min(freqs.size(), places.size());
    for (std::size_t n = 0; n < count; ++n)
        places[n] = AxisPlace(freqs[n], axis);
    return {places.data(), count};
}

/// The points on the axis, and one more on each side of it, to which a line leads.
struct PointRange {
    std::size_t First = 0;
    std::size_t End = 0;
};
PointRange SeenPoints(std::span<const double> freqs, const PlotAxis& axis) {
    const auto from = std::lower_bound(freqs.begin(), freqs.end(), axis.Start);
    const auto to = std::upper_bound(from, freqs.end(), axis.Stop);
    return {static_cast<std::size_t>(from - freqs.begin()) - (from != freqs.begin() ? 1 : 0),
            static_cast<std::size_t>(to - freqs.begin()) + (to != freqs.end() ? 1 : 0)};
}

std::span<const double> TimePlacesOf(const LayerSweep& sweep, const FilterDesign& design,
                                     Places& places) {
    if (sweep.PulseTimeStep <= 0.0 || sweep.PulseTimeStep == design.PulseTimeStep) return {};
    for (std::size_t n = 0; n < places.size(); ++n)
        places[n] = design.PulseTimeStep > 0.0
                        ? static_cast<double>(n) * sweep.PulseTimeStep / design.PulseTimeStep
                        : notANumber;
    return places;
}

}  // namespace

PlotAxis AxisOf(const FilterDesign& design) {
    return {design.SweepType == SweepType::Linear, design.SweepF1, design.SweepF2};
}

double AxisPlace(double f, const PlotAxis& axis) {
    if (!(axis.Stop > axis.Start)) return notANumber;
    if (axis.Linear) return NumSweepPoints * ((f - axis.Start) / (axis.Stop - axis.Start));
    if (!(axis.Start > 0.0) || !(f > 0.0)) return notANumber;
    return NumSweepPoints * (std::log(f / axis.Start) / std::log(axis.Stop / axis.Start));
}

bool IsOnPlot(double place) {
    return place >= 0.0 && place <= NumSweepPoints;
}

int MapPlace(double place, const PlotLayout& layout) {
    const double step = static_cast<double>(layout.PlotWidth) / NumSweepPoints;
    return layout.PlotLeft +
           NearestInt(std::clamp(place, 0.0, static_cast<double>(NumSweepPoints)) * step);
}

bool HasPlotSweep(const LayerSweep& sweep, std::span<const double> plotFreqs) {
    return sweep.Freqs.empty() ||
           std::equal(sweep.Freqs.begin(), sweep.Freqs.end(), plotFreqs.begin(), plotFreqs.end());
}

void MapLayerTrace(const PlotLayer& layer, TraceKind kind, const FilterDesign& design,
                   const PlotLayout& layout, const PlotScales& scales, TracePoints& points,
                   const std::function<void()>& use) {
    Places work;
    const std::span<const double> values = ValuesOf(layer.Values, kind);
    const bool pulse = kind == TraceKind::Pulse;
    const auto times = pulse ? TimePlacesOf(layer.Sweep, design, work) : std::span<const double>();
    if (!times.empty()) {
        MapTraceAt(times, values, kind, layer.Dashed(), layout, scales, points);
        return use();
    }
    if (pulse || HasPlotSweep(layer.Sweep, design.SweepFreqs)) {
        MapTrace(values, kind, layer.Dashed(), layout, scales, points);
        return use();
    }
    const PlotAxis axis = AxisOf(design);
    const std::span<const double> freqs = layer.Sweep.Freqs;
    const PointRange seen = SeenPoints(freqs, axis);
    const std::size_t end = std::min(seen.End, values.size());
    for (std::size_t first = seen.First; first < end; first += work.size() - 1) {
        const std::size_t count = std::min(work.size(), end - first);
        MapTraceAt(PlacesOf(freqs.subspan(first, count), axis, work), values.subspan(first, count),
                   kind, layer.Dashed(), layout, scales, points);
        use();
        if (first + count == end) break;
    }
}

}  // namespace ladderwise
