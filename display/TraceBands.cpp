// Order statistics over the runs, a few sweep points at a time.
#include "display/TraceBands.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "display/Markers.h"

namespace ladderwise {

namespace {

/// The kind that stands for a quantity, in the order of the members of PlotTraces.
constexpr std::array<TraceKind, 5> quantityKinds = {TraceKind::Mag10dB, TraceKind::Phase,
                                                    TraceKind::GroupDelay, TraceKind::Pulse,
                                                    TraceKind::ReturnLoss};

constexpr double missing = std::numeric_limits<double>::quiet_NaN();

std::size_t QuantityOf(TraceKind kind) {
    const TraceKind own = IsMagnitude(kind) ? TraceKind::Mag10dB : kind;
    return static_cast<std::size_t>(std::find(quantityKinds.begin(), quantityKinds.end(), own) -
                                    quantityKinds.begin());
}

bool IsQuantityChosen(const TraceChoices& choices, std::size_t quantity) {
    const TraceKind kind = quantityKinds[quantity];
    return IsChosen(choices, kind) || (IsMagnitude(kind) && choices.Mag1dB);
}

/// The value that a share of `values` lies below, which it puts into another order.
double Percentile(std::vector<float>& values, double share) {
    const double place = share * static_cast<double>(values.size() - 1);
    const auto below = static_cast<std::ptrdiff_t>(place);
    const auto at = values.begin() + below;
    std::nth_element(values.begin(), at, values.end());
    const double rest = place - static_cast<double>(below);
    if (rest == 0.0) return *at;
    const double next = *std::min_element(at + 1, values.end());
    return *at + rest * (next - *at);
}

}  // namespace

PlotTraces TraceBands::Line(BandLine line) const {
    const auto of = [&](TraceKind kind) -> std::span<const double> {
        return lines[QuantityOf(kind)][static_cast<std::size_t>(line)];
    };
    PlotTraces traces;
    traces.MagnitudeDb = of(TraceKind::Mag10dB);
    traces.PhaseDeg = of(TraceKind::Phase);
    traces.GroupDelay = of(TraceKind::GroupDelay);
    traces.Pulse = of(TraceKind::Pulse);
    traces.ReturnLossDb = of(TraceKind::ReturnLoss);
    return traces;
}

void BandCollector::Begin(const TraceChoices& chosen) {
    choices = chosen;
    runs = 0;
    for (auto& values : taken)
        values.clear();
}

void BandCollector::Take(const PlotTraces& run) {
    ++runs;
    for (std::size_t q = 0; q < taken.size(); ++q) {
        if (!IsQuantityChosen(choices, q)) continue;
        const std::span<const double> values = ValuesOf(run, quantityKinds[q]);
        for (const double value : values)
            taken[q].push_back(static_cast<float>(
                ValueAt({&value, 1}, quantityKinds[q], 0.0)));  // no number where it is blank
    }
}

TraceBands BandCollector::Finish(const PlotTraces& nominal) const {
    TraceBands bands;
    bands.runs = runs;
    std::vector<float> column;
    for (std::size_t q = 0; q < taken.size(); ++q) {
        const bool phase = quantityKinds[q] == TraceKind::Phase;
        const std::span<const double> centre = ValuesOf(nominal, quantityKinds[q]);
        const std::size_t points = runs > 0 ? taken[q].size() / static_cast<std::size_t>(runs) : 0;
        for (auto& line : bands.lines[q])
            line.assign(points, missing);
        for (std::size_t i = 0; i < points; ++i) {
            const double from =
                phase ? (i < centre.size() ? ValueAt(centre, TraceKind::Phase, double(i)) : missing)
                      : 0.0;
            column.clear();
            for (std::size_t at = i; at < taken[q].size(); at += points) {
                const double value = phase ? std::remainder(taken[q][at] - from, WholeTurn)
                                           : static_cast<double>(taken[q][at]);
                if (!std::isnan(value)) column.push_back(static_cast<float>(value));
            }
            if (column.empty() || 2 * column.size() < static_cast<std::size_t>(runs)) continue;
            const auto put = [&](BandLine line, double value) {
                bands.lines[q][static_cast<std::size_t>(line)][i] =
                    phase ? std::remainder(from + value, WholeTurn) : value;
            };
            const auto [least, most] = std::minmax_element(column.begin(), column.end());
            put(BandLine::Lowest, *least);
            put(BandLine::Highest, *most);
            put(BandLine::Low, Percentile(column, LowBandShare));
            put(BandLine::High, Percentile(column, HighBandShare));
        }
    }
    return bands;
}

BandTexts BandTextsAt(const TraceBands& bands, TraceKind kind, double index) {
    const auto range = [&](const char* name, BandLine low, BandLine high) -> std::string {
        const double from = ValueAt(ValuesOf(bands.Line(low), kind), kind, index);
        const double to = ValueAt(ValuesOf(bands.Line(high), kind), kind, index);
        if (std::isnan(from) || std::isnan(to)) return {};
        std::string first = TraceValueText(kind, from);
        const std::string last = TraceValueText(kind, to);
        const auto unit = first.rfind(' '), other = last.rfind(' ');
        if (unit != std::string::npos && other != std::string::npos &&
            first.substr(unit) == last.substr(other))
            first.resize(unit);  // once is enough
        return name + std::string(": ") + first + " \u2026 " + last;
    };
    return {range(MostRunsName, BandLine::Low, BandLine::High),
            range(AllRunsName, BandLine::Lowest, BandLine::Highest)};
}

}  // namespace ladderwise
