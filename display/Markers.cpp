// Marker commands, and the drawing of markers as lines, dots and labels.
#include "display/Markers.h"

#include <algorithm>
#include <cmath>

#include "numbers/Formatfunctions.h"
#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr double BelowAnyLevel = -1e10;  // dB; where the search for the peak begins
constexpr PlotColour MarkerLineColour{96, 96, 96};
constexpr PlotColour ReferenceMarkColour{0, 0, 0};
constexpr int ReferenceMarkArm = 6;       // pixels
constexpr std::size_t MostCrossings = 8;  // of one level marker on one trace: ripple has more
constexpr int LeastFrequencyDigits = 3;   // after the first one
constexpr int MostFrequencyDigits = 8;
constexpr int LeaderFrom = 12;  // pixels; closer labels need no leader

bool Drawable(TraceKind kind, double value) {
    const bool blankable = kind == TraceKind::Phase || kind == TraceKind::GroupDelay;
    return !std::isnan(value) && !(blankable && value == BlankMarker);
}

int XOf(double index, const MarkedSweep& sweep) {
    const double step = static_cast<double>(sweep.Layout.PlotWidth) / sweep.Freqs.size();
    return sweep.Layout.PlotLeft + NearestInt(index * step);
}

/// Whose frequencies, and what pass type, the annotations of a layer are found by.
struct AnnotatedSweep {
    std::span<const double> Freqs;
    PassType Pass;
    BandRange Band;
    bool OfPlot;
};

AnnotatedSweep SweepOf(const PlotLayer& layer, const MarkedSweep& sweep) {
    const bool ofPlot = HasPlotSweep(layer.Sweep, sweep.Freqs);
    return {ofPlot ? sweep.Freqs : layer.Sweep.Freqs, layer.Sweep.Pass.value_or(sweep.Pass),
            layer.Sweep.Band.value_or(sweep.Band), ofPlot};
}

/// x of a place of a layer; empty off the plot.
std::optional<int> XOf(const SweepPlace& place, const AnnotatedSweep& own,
                       const MarkedSweep& sweep) {
    if (own.OfPlot) return XOf(place.Index, sweep);
    const double onAxis = AxisPlace(place.Frequency, sweep.Axis);
    if (!IsOnPlot(onAxis)) return std::nullopt;
    return MapPlace(onAxis, sweep.Layout);
}

/// The piece of a level's line over the frequencies that a layer has; empty if none is on the plot.
std::optional<PlotLine> LevelLine(int y, const AnnotatedSweep& own, const MarkedSweep& sweep,
                                  PlotColour colour) {
    const PlotLayout& layout = sweep.Layout;
    if (own.OfPlot) return PlotLine{layout.PlotLeft, y, layout.PlotRight, y, colour};
    const double from = AxisPlace(own.Freqs.front(), sweep.Axis);
    const double to = AxisPlace(own.Freqs.back(), sweep.Axis);
    if (!(from <= NumSweepPoints && to >= 0.0)) return std::nullopt;
    return PlotLine{MapPlace(from, layout), y, MapPlace(to, layout), y, colour};
}

std::optional<SweepPlace> CrossingBetween(std::span<const double> levels,
                                          std::span<const double> freqs, std::size_t i,
                                          double target) {
    const double a = levels[i] - target, b = levels[i + 1] - target;
    if (!((a < 0.0) != (b < 0.0)) || std::isnan(a) || std::isnan(b)) return std::nullopt;
    const double share = a / (a - b);
    return SweepPlace{static_cast<double>(i) + share, freqs[i] + share * (freqs[i + 1] - freqs[i])};
}

/// The first crossing from point `from` upwards (+1) or downwards (-1).
std::optional<SweepPlace> FirstCrossing(std::span<const double> levels,
                                        std::span<const double> freqs, int from, int direction,
                                        double target) {
    const int count = static_cast<int>(std::min(levels.size(), freqs.size()));
    for (int i = from; i + direction >= 0 && i + direction < count; i += direction) {
        const auto place = CrossingBetween(
            levels, freqs, static_cast<std::size_t>(std::min(i, i + direction)), target);
        if (place) return place;
    }
    return std::nullopt;
}

/// Index of the highest interior maximum in `band`.
std::optional<int> HighestMaximum(std::span<const double> levels, std::span<const double> freqs,
                                  const BandRange& band) {
    std::optional<std::size_t> highest;
    for (std::size_t i = 1; i + 1 < levels.size(); ++i) {
        const bool top = levels[i] >= levels[i - 1] && levels[i] >= levels[i + 1];
        if (top && band.Holds(freqs[i]) && (!highest || levels[i] > levels[*highest])) highest = i;
    }
    return highest ? std::optional<int>(static_cast<int>(*highest)) : std::nullopt;
}

/// Index of the smallest level that is a number.
int LowestIndex(std::span<const double> levels) {
    int lowest = 0;
    for (std::size_t i = 0; i < levels.size(); ++i)
        if (levels[i] < levels[static_cast<std::size_t>(lowest)]) lowest = static_cast<int>(i);
    return lowest;
}

/// Puts labels where there is room, and a leader where that is further off.
class Annotator {
public:
    Annotator(const TextMetrics& textMetrics, PlotCover& plotCover, MarkerDrawing& target,
              bool withLabels = true)
        : metrics(textMetrics), cover(plotCover), drawing(target), labelled(withLabels) {}

    void Label(int x, int y, const std::string& text, PlotColour colour, bool leftFirst = false) {
        if (!labelled) return;
        const int width = metrics.Width(text);
        const PlotRect place = cover.PlaceLabel(x, y, width, metrics.Height, leftFirst);
        drawing.Labels.push_back({place.Left, place.Top, text, colour});
        const int nearX = std::clamp(x, place.Left, place.Left + place.Width);
        const int nearY = std::clamp(y, place.Top, place.Top + place.Height);
        if (std::max(std::abs(nearX - x), std::abs(nearY - y)) >= LeaderFrom)
            drawing.Leaders.push_back({x, y, nearX, nearY, colour});
    }

    void DotWithLabel(const MarkerDot& dot, const std::string& text, bool leftFirst = false) {
        drawing.Dots.push_back(dot);
        Label(dot.X, dot.Y, text, dot.Colour, leftFirst);
    }

    MarkerDrawing& Drawing() { return drawing; }

private:
    const TextMetrics& metrics;
    PlotCover& cover;
    MarkerDrawing& drawing;
    bool labelled;
};

struct AnnotatedTrace {
    std::span<const double> Values;
    TraceKind Kind;
    PlotColour Colour;
    TraceScale Scale;
    const AnnotatedSweep& Sweep;
};

void AnnotateFrequencies(const MarkerState& markers, const MarkedSweep& sweep,
                         const AnnotatedTrace& trace, Annotator& annotator) {
    for (int k = 1; k <= markers.FreqMarkerCount; ++k) {
        const double f = markers.FreqMarkers[static_cast<std::size_t>(k)];
        const auto place = PlaceOf(f, trace.Sweep.Freqs);
        const auto x = place ? XOf(*place, trace.Sweep, sweep) : std::nullopt;
        if (!x) continue;
        const double value = ValueAt(trace.Values, trace.Kind, place->Index);
        if (std::isnan(value)) continue;
        annotator.DotWithLabel(
            {*x, MapValue(value, trace.Scale, sweep.Layout), trace.Colour, trace.Kind},
            TraceValueText(trace.Kind, value));
    }
}

void AnnotateLevels(const MarkerState& markers, const MarkedSweep& sweep,
                    const AnnotatedTrace& trace, Annotator& annotator) {
    if (markers.DbMarkerCount < 1) return;
    const double peak = trace.Values[static_cast<std::size_t>(PeakIndex(trace.Values))];
    const PlotLayout& layout = sweep.Layout;
    for (int k = 1; k <= markers.DbMarkerCount; ++k) {
        const double relative = markers.DbMarkers[static_cast<std::size_t>(k)];
        const int y = MapValue(peak + relative, trace.Scale, layout);
        const auto line = LevelLine(y, trace.Sweep, sweep, trace.Colour);
        if (line && y > layout.PlotTop && y < layout.PlotBottom)
            annotator.Drawing().Lines.push_back(*line);
        const std::string level = LevelMarkerName(k) + " " + FormatNumber(relative, 2) + " dB ";
        std::size_t shown = 0;
        for (const SweepPlace& place :
             LevelCrossings(trace.Values, trace.Sweep.Freqs, peak + relative)) {
            const auto x = XOf(place, trace.Sweep, sweep);
            if (!x || shown++ >= MostCrossings) continue;
            annotator.DotWithLabel({*x, y, trace.Colour, trace.Kind},
                                   level + SweepFrequencyText(place.Frequency, trace.Sweep.Freqs));
        }
    }
}

void AnnotateDepth(const MarkedSweep& sweep, const AnnotatedTrace& trace, Annotator& annotator) {
    const AnnotatedSweep& own = trace.Sweep;
    const DepthReadOut readOut = FindDepthReadOut(trace.Values, own.Freqs, own.Pass, own.Band);
    // The lower edge has its label on its left, the upper one on its right.
    const double at = readOut.Upper ? readOut.Upper->Index : 0.0;
    std::optional<int> lastX;
    int lastY = 0;
    for (const auto& edge : {readOut.Lower, readOut.Upper}) {
        const auto x = edge ? XOf(*edge, own, sweep) : std::nullopt;
        if (!x) continue;
        const double value = ValueAt(trace.Values, trace.Kind, edge->Index);
        lastX = x;
        lastY = MapValue(value, trace.Scale, sweep.Layout);
        annotator.DotWithLabel({*x, lastY, trace.Colour, trace.Kind},
                               "6 dB Freq = " + SweepFrequencyText(edge->Frequency, own.Freqs),
                               edge->Index < at);
    }
    if (!lastX || !readOut.Lower || !readOut.Upper) return;
    const double width = readOut.Upper->Frequency - readOut.Lower->Frequency;
    annotator.Label(*lastX, lastY,
                    "6 dB BW = " + FormatWithPrefix(width, LeastFrequencyDigits, "Hz") +
                        (readOut.NamedBand ? " of the band at " +
                                                 SweepFrequencyText(*readOut.NamedBand, own.Freqs)
                                           : ""),
                    trace.Colour);
}

}  // namespace

int SweepIndexAt(int x, int count, const PlotLayout& layout) {
    const double share = static_cast<double>(x - layout.PlotLeft) / layout.PlotWidth;
    return static_cast<int>(std::clamp(share * count, 0.0, count - 1.0));
}

TraceKind LevelScaleKind(const TraceChoices& choices) {
    return choices.Mag1dB && !choices.Mag10dB ? TraceKind::Mag1dB : TraceKind::Mag10dB;
}

double LevelAtY(int y, const MarkedSweep& sweep) {
    const TraceScale scale = ScaleOf(LevelScaleKind(sweep.Choices), sweep.Layout, sweep.Scales);
    return scale.Reference + (scale.Origin - y) / scale.Factor;
}

int PeakIndex(std::span<const double> levels) {
    int index = 0;
    double peak = BelowAnyLevel;
    for (std::size_t i = 1; i + 1 < levels.size(); ++i) {
        if (!(levels[i] > peak)) continue;
        peak = levels[i];
        index = static_cast<int>(i);
    }
    return index;
}

void ApplyMarkerCommand(MarkerCommand command, MarkerState& markers, const MarkedSweep& sweep,
                        double F0, std::span<const double> levels) {
    switch (command) {
        case MarkerCommand::SetRefToF0:
            return SetRefToF0(markers, F0);
        case MarkerCommand::SetRefAtPeak:
            return SetRefAtPeak(markers);
        case MarkerCommand::SetRefAtCursor:
            return SetRefAtCursor(markers, sweep);
        case MarkerCommand::ClearReference:
            return markers.ClearReference();
        case MarkerCommand::AddFreqMarker:
            return AddFreqMarker(markers, sweep);
        case MarkerCommand::AddDbMarker:
            return AddDbMarker(markers, sweep, levels);
        case MarkerCommand::ClearMarkers:
            return ClearMarkers(markers);
    }
}

void SetRefToF0(MarkerState& markers, double F0) {
    markers.RefDb = 0.0;
    markers.RefFreq = F0;
    markers.RefAtPeak = false;
}

void SetRefAtPeak(MarkerState& markers) {
    markers.RefAtPeak = true;
}

void SetRefAtCursor(MarkerState& markers, const MarkedSweep& sweep) {
    const int index =
        SweepIndexAt(markers.ClickX, static_cast<int>(sweep.Freqs.size()), sweep.Layout);
    markers.RefDb = LevelAtY(markers.ClickY, sweep);
    markers.RefFreq = sweep.Freqs[static_cast<std::size_t>(index)];
    markers.RefAtPeak = false;
}

void AddFreqMarker(MarkerState& markers, const MarkedSweep& sweep) {
    const int index =
        SweepIndexAt(markers.ClickX, static_cast<int>(sweep.Freqs.size()), sweep.Layout);
    markers.FreqMarkerCount = std::min(markers.FreqMarkerCount + 1, MaxMarkers);
    markers.FreqMarkers[static_cast<std::size_t>(markers.FreqMarkerCount)] =
        sweep.Freqs[static_cast<std::size_t>(index)];
}

void AddDbMarker(MarkerState& markers, const MarkedSweep& sweep, std::span<const double> levels) {
    const double peak = levels.empty() ? 0.0 : levels[static_cast<std::size_t>(PeakIndex(levels))];
    markers.DbMarkerCount = std::min(markers.DbMarkerCount + 1, MaxMarkers);
    markers.DbMarkers[static_cast<std::size_t>(markers.DbMarkerCount)] =
        LevelAtY(markers.ClickY, sweep) - peak;
}

void ClearMarkers(MarkerState& markers) {
    markers.FreqMarkerCount = 0;
    markers.DbMarkerCount = 0;
}

std::optional<ReadOutReference> ReferenceOf(const MarkerState& markers,
                                            std::span<const double> freqs,
                                            std::span<const double> levels) {
    if (!markers.HasReference()) return std::nullopt;
    if (!markers.RefAtPeak) return ReadOutReference{markers.RefFreq, markers.RefDb};
    if (levels.empty() || freqs.size() < levels.size()) return std::nullopt;
    const auto peak = static_cast<std::size_t>(PeakIndex(levels));
    return ReadOutReference{freqs[peak], levels[peak]};
}

std::optional<SweepPlace> PlaceOf(double f, std::span<const double> freqs) {
    if (freqs.empty() || !(f >= freqs.front() && f <= freqs.back())) return std::nullopt;
    const auto above = std::lower_bound(freqs.begin(), freqs.end(), f);
    const auto i = static_cast<std::size_t>(above - freqs.begin());
    if (*above == f) return SweepPlace{static_cast<double>(i), f};
    const double share = (f - freqs[i - 1]) / (freqs[i] - freqs[i - 1]);
    return SweepPlace{static_cast<double>(i) - 1.0 + share, f};
}

double ValueAt(std::span<const double> values, TraceKind kind, double index) {
    const auto i = static_cast<std::size_t>(index);
    const double share = index - static_cast<double>(i);
    const double missing = std::nan("");
    if (i >= values.size() || !Drawable(kind, values[i])) return missing;
    if (share == 0.0) return values[i];
    if (i + 1 >= values.size() || !Drawable(kind, values[i + 1])) return missing;
    double step = values[i + 1] - values[i];
    if (kind == TraceKind::Phase) step = std::remainder(step, WholeTurn);
    const double value = values[i] + share * step;
    return kind == TraceKind::Phase ? std::remainder(value, WholeTurn) : value;
}

double LayerValueAt(const PlotLayer& layer, TraceKind kind, double index) {
    const std::span<const double> values = ValuesOf(layer.Values, kind);
    const double straight = ValueAt(values, kind, index);
    const bool level = IsMagnitude(kind) || kind == TraceKind::ReturnLoss;
    const auto i = static_cast<std::size_t>(index);
    const double share = index - static_cast<double>(i);
    if (layer.Role != LayerRole::Measurement || !level || share == 0.0 || std::isnan(straight))
        return straight;
    // Counted from the higher of the two, so that no power of ten runs out of its range.
    const double top = std::max(values[i], values[i + 1]);
    const auto part = [&](double dB) { return std::pow(10.0, (dB - top) / 20.0); };
    return top + 20.0 * std::log10((1.0 - share) * part(values[i]) + share * part(values[i + 1]));
}

std::vector<SweepPlace> LevelCrossings(std::span<const double> levels,
                                       std::span<const double> freqs, double target) {
    std::vector<SweepPlace> places;
    for (std::size_t i = 0; i + 1 < std::min(levels.size(), freqs.size()); ++i)
        if (const auto place = CrossingBetween(levels, freqs, i, target)) places.push_back(*place);
    return places;
}

DepthReadOut FindDepthReadOut(std::span<const double> levels, std::span<const double> freqs,
                              PassType pass, const BandRange& band) {
    DepthReadOut readOut;
    if (levels.empty() || freqs.size() < levels.size()) return readOut;
    int peak = PeakIndex(levels);
    if (HasBandWidth(pass) && pass != PassType::Notch) {
        const auto own = HighestMaximum(levels, freqs, band);
        const auto any = own ? own : HighestMaximum(levels, freqs, AllFrequencies);
        if (!any) return readOut;
        const auto index = static_cast<std::size_t>(*any);
        if (!own || levels[static_cast<std::size_t>(peak)] > levels[index])
            readOut.NamedBand = freqs[index];
        peak = *any;
    }
    const int from = pass == PassType::Notch ? LowestIndex(levels) : peak;
    const double target = levels[static_cast<std::size_t>(peak)] - ReadOutDepthDb;
    if (pass == PassType::Notch && !(levels[static_cast<std::size_t>(from)] < target))
        return readOut;
    if (pass != PassType::LowPass) readOut.Lower = FirstCrossing(levels, freqs, from, -1, target);
    if (pass != PassType::HighPass) readOut.Upper = FirstCrossing(levels, freqs, from, +1, target);
    return readOut;
}

std::string SweepFrequencyText(double f, std::span<const double> freqs) {
    int digits = LeastFrequencyDigits;
    const auto place = PlaceOf(f, freqs);
    if (place && freqs.size() > 1) {
        const auto i = std::min(static_cast<std::size_t>(place->Index), freqs.size() - 2);
        const double ratio = f / (freqs[i + 1] - freqs[i]);
        if (ratio > 1.0)
            digits = std::clamp(static_cast<int>(std::ceil(std::log10(ratio))),
                                LeastFrequencyDigits, MostFrequencyDigits);
    }
    return FormatWithPrefix(f, digits, "Hz");
}

std::string TraceValueText(TraceKind kind, double value) {
    switch (kind) {
        case TraceKind::Mag1dB:
            return FormatFixed(value, 3) + " dB";
        case TraceKind::Mag10dB:
        case TraceKind::ReturnLoss:
            return FormatFixed(value, 2) + " dB";
        case TraceKind::Phase:
            return FormatFixed(value, 1) + "\u00b0";
        case TraceKind::GroupDelay:
            return FormatWithPrefix(value, 3, "s");
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            return FormatFixed(value, 3);
    }
    return {};
}

std::string SignedText(double value, std::string text) {
    if (value > 0.0) text.insert(text.begin(), '+');
    return text;
}

std::string DifferenceText(TraceKind kind, double difference) {
    if (kind == TraceKind::Phase) difference = std::remainder(difference, WholeTurn);
    return SignedText(difference, TraceValueText(kind, difference));
}

std::string FrequencyMarkerName(int k) {
    return "M" + std::to_string(k);
}

std::string LevelMarkerName(int k) {
    return "L" + std::to_string(k);
}

void AppendTraceName(const std::string& name, const MarkerDot& end, const TextMetrics& metrics,
                     PlotCover& cover, MarkerDrawing& drawing) {
    Annotator(metrics, cover, drawing).Label(end.X, end.Y, name, end.Colour, true);
}

void AppendMarkerLines(const MarkerState& markers, const MarkedSweep& sweep,
                       std::span<const double> levels, const TextMetrics& metrics, PlotCover& cover,
                       MarkerDrawing& drawing) {
    Annotator annotator(metrics, cover, drawing);
    const PlotLayout& layout = sweep.Layout;
    for (int k = 1; k <= markers.FreqMarkerCount; ++k) {
        const double f = markers.FreqMarkers[static_cast<std::size_t>(k)];
        const auto place = PlaceOf(f, sweep.Freqs);
        if (!place) continue;
        const int x = XOf(place->Index, sweep);
        drawing.Lines.push_back({x, layout.PlotTop, x, layout.PlotBottom, MarkerLineColour});
        annotator.Label(x, layout.PlotBottom,
                        FrequencyMarkerName(k) + " " + SweepFrequencyText(f, sweep.Freqs),
                        MarkerLineColour);
    }
    const auto reference = ReferenceOf(markers, sweep.Freqs, levels);
    const auto place = reference ? PlaceOf(reference->Frequency, sweep.Freqs) : std::nullopt;
    if (!place) return;
    const TraceKind kind = LevelScaleKind(sweep.Choices);
    const int x = XOf(place->Index, sweep);
    const int y = MapValue(reference->LevelDb, ScaleOf(kind, layout, sweep.Scales), layout);
    const PlotColour colour = ReferenceMarkColour;
    drawing.Leaders.push_back({x - ReferenceMarkArm, y, x + ReferenceMarkArm, y, colour});
    drawing.Leaders.push_back({x, y - ReferenceMarkArm, x, y + ReferenceMarkArm, colour});
    annotator.Label(x, y,
                    "Ref " + SweepFrequencyText(reference->Frequency, sweep.Freqs) + ", " +
                        TraceValueText(kind, reference->LevelDb),
                    colour);
}

void AppendTraceMarkers(const MarkerState& markers, const MarkedSweep& sweep,
                        const PlotLayer& layer, bool labelled, const TextMetrics& metrics,
                        PlotCover& cover, MarkerDrawing& drawing) {
    Annotator annotator(metrics, cover, drawing, labelled);
    const AnnotatedSweep own = SweepOf(layer, sweep);
    bool depthShown = false;
    for (const TraceKind kind : TraceDrawOrder) {
        if (!IsChosen(sweep.Choices, kind) || kind == TraceKind::Pulse) continue;
        const AnnotatedTrace trace{ValuesOf(layer.Values, kind), kind,
                                   layer.Colours[static_cast<std::size_t>(kind)],
                                   ScaleOf(kind, sweep.Layout, sweep.Scales), own};
        if (trace.Values.size() < 2 || trace.Values.size() != own.Freqs.size()) continue;
        AnnotateFrequencies(markers, sweep, trace, annotator);
        if (!IsMagnitude(kind)) continue;
        AnnotateLevels(markers, sweep, trace, annotator);
        if (!depthShown) AnnotateDepth(sweep, trace, annotator);
        depthShown = true;
    }
}

}  // namespace ladderwise
