// Looks up the traces under the cursor.
#include "display/ReadOuts.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/PulseResponse.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr const char* delta = "\u0394";
constexpr double LargestShownVswr = 999.0;
constexpr double smallestReadOutScale = 0.5;  // of the font of the read-outs
constexpr double readOutScaleStep = 0.05;

/// "Mag ", whichever of the two magnitude traces it is.
std::string NameIn(TraceKind kind) {
    return TraceShortName(IsMagnitude(kind) ? TraceKind::Mag10dB : kind) + std::string(" ");
}

std::string TextOf(TraceKind kind, double value) {
    const std::string text = NameIn(kind);
    if (kind != TraceKind::ReturnLoss) return text + TraceValueText(kind, value);
    const double vswr = VswrOf(value);
    return text + TraceValueText(kind, value) + ", VSWR " +
           (vswr <= LargestShownVswr ? FormatFixed(vswr, 2) : std::string("\u221e"));
}

/// Where a layer's trace of a kind lies under the cursor, in points of its own; empty outside of
/// its frequencies, of the pulse outside of its time.
std::optional<double> PlaceUnderCursor(const CursorReadOuts& out, const MarkedSweep& sweep,
                                       const PlotLayer& layer, TraceKind kind) {
    const double step = layer.Sweep.PulseTimeStep;
    if (kind == TraceKind::Pulse) {
        if (step <= 0.0 || step == sweep.PulseTimeStep) return out.Index;
        return out.Index * sweep.PulseTimeStep / step;
    }
    if (HasPlotSweep(layer.Sweep, sweep.Freqs)) return out.Index;
    const auto place = PlaceOf(out.Frequency, layer.Sweep.Freqs);
    if (!place) return std::nullopt;
    return place->Index;
}

/// "board1 Mag -3.10 dB (-0.09 dB off)": a measured value, and how far it is from the design's.
std::string MeasuredText(const CursorReadOuts& out, TraceKind kind, double value) {
    std::string text = NameIn(kind) + TraceValueText(kind, value);
    for (const TraceReadOut& trace : out.Traces)
        if (trace.Layer == 0 && trace.Kind == kind)
            return text + " (" + DifferenceText(kind, value - trace.Value) + " off)";
    return text;
}

/// " (5–95 %: -3.40 … -2.71 dB; all runs: -4.12 … -2.50 dB)"
std::string BandRemark(const TraceBands& bands, TraceKind kind, double index) {
    const auto [most, all] = BandTextsAt(bands, kind, index);
    return most.empty() ? "" : " (" + most + "; " + all + ")";
}

void AddTraces(CursorReadOuts& out, const MarkedSweep& sweep, const PlotLayer& layer, int number,
               const TraceBands* bands) {
    bool magnitudeShown = false;
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(sweep.Choices, kind)) continue;
        const auto place = PlaceUnderCursor(out, sweep, layer, kind);
        const double value = place ? LayerValueAt(layer, kind, *place) : std::nan("");
        if (std::isnan(value)) continue;
        // Both magnitude traces show one quantity: it is told once.
        const bool magnitude = IsMagnitude(kind);
        std::string text;
        if (!magnitude || !magnitudeShown)
            text = layer.ShortName + (layer.ShortName.empty() ? "" : " ") +
                   (layer.Role == LayerRole::Measurement ? MeasuredText(out, kind, value)
                    : kind == TraceKind::Pulse
                        ? TextOf(kind, PulseLevel(layer.Sweep.Pass.value_or(sweep.Pass), value))
                        : TextOf(kind, value));
        if (kind == TraceKind::Pulse)
            text += " at " + FormatWithPrefix(out.Index * sweep.PulseTimeStep, 3, "s");
        if (magnitude && !magnitudeShown && number == 0 && out.DeltaDb) {
            const double off = value - (out.LevelDb - *out.DeltaDb);
            text += " (" + std::string(delta) + SignedText(off, FormatFixed(off, 2)) + ")";
        }
        if (bands && number == 0 && !text.empty()) text += BandRemark(*bands, kind, *place);
        magnitudeShown = magnitudeShown || magnitude;
        const int y = MapValue(value, ScaleOf(kind, sweep.Layout, sweep.Scales), sweep.Layout);
        out.Traces.push_back(
            {kind, number, value, y, {text, layer.Colours[static_cast<std::size_t>(kind)]}});
    }
}

std::vector<PlotText> InRows(const std::vector<ReadOutText>& texts, int width, int gap,
                             const TextMetrics& metrics) {
    std::vector<PlotText> placed;
    int x = 0, y = 0;
    for (const ReadOutText& text : texts) {
        if (text.Text.empty()) continue;
        const int own = metrics.Width(text.Text);
        if (x > 0 && x + own > width) {
            x = 0;
            y += metrics.Height;
        }
        placed.push_back({x, y, text.Text, text.Colour});
        x += own + gap;
    }
    return placed;
}

}  // namespace

double VswrOf(double reflectionDb) {
    const double rho = std::pow(10.0, reflectionDb / 20.0);
    if (!(rho < 1.0)) return std::numeric_limits<double>::infinity();
    return (1.0 + rho) / (1.0 - rho);
}

CursorReadOuts ReadCursor(int index, int y, const MarkedSweep& sweep,
                          std::span<const PlotLayer> layers,
                          const std::optional<ReadOutReference>& readOutReference,
                          const TraceBands* bands) {
    const int count = static_cast<int>(sweep.Freqs.size());
    CursorReadOuts out;
    if (count < 1) return out;
    const TraceKind scaleKind = LevelScaleKind(sweep.Choices);
    out.Index = std::clamp(index, 0, count - 1);
    out.X = MapIndex(out.Index, count, sweep.Layout);
    out.Y = std::clamp(y, sweep.Layout.PlotTop, sweep.Layout.PlotBottom);
    out.Frequency = sweep.Freqs[static_cast<std::size_t>(out.Index)];
    out.LevelDb = LevelAtY(out.Y, sweep);
    out.Cursor.push_back({SweepFrequencyText(out.Frequency, sweep.Freqs), Black});
    out.Cursor.push_back({TraceValueText(scaleKind, out.LevelDb) + " at the cursor", Black});
    if (readOutReference) {
        out.DeltaFrequency = out.Frequency - readOutReference->Frequency;
        out.DeltaDb = out.LevelDb - readOutReference->LevelDb;
        out.Cursor.push_back(
            {delta + std::string("f ") +
                 SignedText(*out.DeltaFrequency, FormatWithPrefix(*out.DeltaFrequency, 3, "Hz")),
             Black});
        out.Cursor.push_back(
            {delta + SignedText(*out.DeltaDb, TraceValueText(scaleKind, *out.DeltaDb)), Black});
    }
    for (std::size_t n = 0; n < layers.size(); ++n)
        AddTraces(out, sweep, layers[n], static_cast<int>(n), bands);
    return out;
}

std::vector<PlotText> FlowTexts(const std::vector<ReadOutText>& texts, int width, int height,
                                int gap, const TextMetrics& metrics) {
    std::vector<PlotText> placed;
    for (double scale = 1.0; scale >= smallestReadOutScale; scale -= readOutScaleStep) {
        const TextMetrics scaled = metrics.Scaled(scale);
        placed = InRows(texts, width, gap, scaled);
        if (placed.empty()) break;
        const int rows = placed.back().Y + scaled.Height;
        for (PlotText& text : placed) {
            text.Scale = scale;
            text.Y += std::max(0, (height - rows) / 2);
        }
        if (rows <= height) break;
    }
    return placed;
}

}  // namespace ladderwise
