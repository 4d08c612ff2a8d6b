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

/// Where the points of a layer lie; empty if they are those of the plot.
std::span<const double> PlacesOf(const LayerSweep& sweep, const FilterDesign& design,
                                 Places& places) {
    if (HasPlotSweep(sweep, design.SweepFreqs)) return {};
    const PlotAxis axis = AxisOf(design);
    const std::size_t count = std::min(sweep.Freqs.size(), places.size());
    for (std::size_t n = 0; n < count; ++n)
        places[n] = AxisPlace(sweep.Freqs[n], axis);
    return {places.data(), count};
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
                   const PlotLayout& layout, const PlotScales& scales, TracePoints& points) {
    Places work;
    const std::span<const double> places = kind == TraceKind::Pulse
                                               ? TimePlacesOf(layer.Sweep, design, work)
                                               : PlacesOf(layer.Sweep, design, work);
    const std::span<const double> values = ValuesOf(layer.Values, kind);
    if (places.empty()) return MapTrace(values, kind, layer.Dashed, layout, scales, points);
    MapTraceAt(places, values, kind, layer.Dashed, layout, scales, points);
}

}  // namespace ladderwise
