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

/// Not a number where the layer has none.
double ValueAtFrequency(const PlotLayer& layer, TraceKind kind, double f,
                        const FilterDesign& design) {
    const auto place = PlaceOf(f, FreqsOf(layer, design));
    return place ? LayerValueAt(layer, kind, place->Index) : std::nan("");
}

std::string TextOrNone(TraceKind kind, double value) {
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

/// Where the runs of a worst case lie, in rows of their own.
void AddRanges(const TraceBands& bands, TraceKind kind, double index, const std::string& trace,
               std::vector<MarkerReading>& rows) {
    const auto [most, all] = BandTextsAt(bands, kind, index);
    for (const std::string& text : {most, all}) {
        const auto colon = text.find(": ");
        if (colon == std::string::npos) continue;
        rows.push_back({trace + ", " + text.substr(0, colon), text.substr(colon + 2), ""});
    }
}

/// The rows of one trace at a frequency: the design's with the reference's, then the measured ones.
void AddValues(const PlotContent& content, const std::string& name, TraceKind kind, double f,
               std::vector<MarkerReading>& rows) {
    const FilterDesign& design = content.Design;
    const double own = ValueAtFrequency(content.Layers.front(), kind, f, design);
    const std::string trace = name + ", " + TraceShortName(kind);
    const std::size_t first = rows.size();
    rows.push_back({trace, TextOrNone(kind, own), ""});
    const auto place = PlaceOf(f, design.SweepFreqs);
    if (content.Bands && place) AddRanges(*content.Bands, kind, place->Index, trace, rows);
    for (const PlotLayer& layer : content.Layers) {
        if (layer.Role == LayerRole::Design) continue;
        const double value = ValueAtFrequency(layer, kind, f, design);
        std::string text = TextOrNone(kind, value);
        if (layer.Role == LayerRole::Reference) {
            rows[first].OfReference = text;
            continue;
        }
        if (!std::isnan(value - own)) text += " (" + DifferenceText(kind, value - own) + " off)";
        rows.push_back({trace + ", " + layer.ShortName, text, ""});
    }
}

void AddCrossings(const PlotContent& content, const std::string& name, double relative,
                  std::vector<MarkerReading>& rows) {
    const std::size_t first = rows.size();
    for (const PlotLayer& layer : content.Layers) {
        const std::string text = CrossingsText(layer, relative, content.Design);
        if (layer.Role == LayerRole::Reference)
            rows[first].OfReference = text;
        else
            rows.push_back(
                {name + (layer.ShortName.empty() ? "" : ", ") + layer.ShortName, text, ""});
    }
}

}  // namespace

std::vector<MarkerReading> BuildMarkerTable(const PlotContent& content) {
    std::vector<MarkerReading> rows;
    if (content.Layers.empty() || content.Design.NumElements < 1) return rows;
    const MarkerState& markers = content.Markers;
    const FilterDesign& design = content.Design;
    for (int k = 1; k <= markers.FreqMarkerCount; ++k) {
        const double f = markers.FreqMarkers[static_cast<std::size_t>(k)];
        const std::string name =
            FrequencyMarkerName(k) + " " + SweepFrequencyText(f, design.SweepFreqs);
        for (const TraceKind kind : TraceDrawOrder) {
            if (!IsChosen(content.Choices, kind) || kind == TraceKind::Pulse) continue;
            // Both magnitudes are one quantity, read on the finer scale where both are shown.
            if (kind == TraceKind::Mag10dB && content.Choices.Mag1dB) continue;
            AddValues(content, name, kind, f, rows);
        }
    }
    for (int k = 1; k <= markers.DbMarkerCount; ++k) {
        const double relative = markers.DbMarkers[static_cast<std::size_t>(k)];
        AddCrossings(content, LevelMarkerName(k) + " " + FormatNumber(relative, 2) + " dB",
                     relative, rows);
    }
    return rows;
}

}  // namespace ladderwise
