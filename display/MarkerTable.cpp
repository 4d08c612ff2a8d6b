// Values at markers as texts.
#include "display/MarkerTable.h"

#include <cmath>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr const char* noValue = "none";

std::span<const double> FreqsOf(const PlotLayer& layer, const FilterDesign& design) {
    return layer.Sweep.Freqs.empty() ? std::span<const double>(design.SweepFreqs)
                                     : layer.Sweep.Freqs;
}

std::string ValueAtFrequency(const PlotLayer& layer, TraceKind kind, double f,
                             const FilterDesign& design) {
    const auto place = PlaceOf(f, FreqsOf(layer, design));
    if (!place) return noValue;
    const double value = ValueAt(ValuesOf(layer.Values, kind), kind, place->Index);
    return std::isnan(value) ? noValue : TraceValueText(kind, value);
}

std::string CrossingsText(const PlotLayer& layer, double relative, const FilterDesign& design) {
    const std::span<const double> levels = layer.Values.MagnitudeDb;
    const std::span<const double> freqs = FreqsOf(layer, design);
    if (levels.size() < 2 || levels.size() != freqs.size()) return noValue;
    const double peak = levels[static_cast<std::size_t>(PeakIndex(levels))];
    std::string text;
    for (const SweepPlace& place : LevelCrossings(levels, freqs, peak + relative))
        text += (text.empty() ? "" : ", ") + SweepFrequencyText(place.Frequency, freqs);
    return text.empty() ? noValue : text;
}

}  // namespace

std::vector<MarkerReading> BuildMarkerTable(const PlotContent& content) {
    std::vector<MarkerReading> rows;
    if (content.Layers.empty() || content.Design.NumElements < 1) return rows;
    const MarkerState& markers = content.Markers;
    const FilterDesign& design = content.Design;
    const PlotLayer* const other = content.Layers.size() > 1 ? &content.Layers[1] : nullptr;
    for (int k = 1; k <= markers.FreqMarkerCount; ++k) {
        const double f = markers.FreqMarkers[static_cast<std::size_t>(k)];
        const std::string name =
            FrequencyMarkerName(k) + " " + SweepFrequencyText(f, design.SweepFreqs);
        for (const TraceKind kind : TraceDrawOrder) {
            if (!IsChosen(content.Choices, kind) || kind == TraceKind::Pulse) continue;
            // Both magnitudes are one quantity, read on the finer scale where both are shown.
            if (kind == TraceKind::Mag10dB && content.Choices.Mag1dB) continue;
            rows.push_back({name + ", " + TraceShortName(kind),
                            ValueAtFrequency(content.Layers.front(), kind, f, design),
                            other ? ValueAtFrequency(*other, kind, f, design) : ""});
        }
    }
    for (int k = 1; k <= markers.DbMarkerCount; ++k) {
        const double relative = markers.DbMarkers[static_cast<std::size_t>(k)];
        rows.push_back({LevelMarkerName(k) + " " + FormatNumber(relative, 2) + " dB",
                        CrossingsText(content.Layers.front(), relative, design),
                        other ? CrossingsText(*other, relative, design) : ""});
    }
    return rows;
}

}  // namespace ladderwise
