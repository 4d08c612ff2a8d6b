// Rows and placement of the legend.
#include "display/Legend.h"

#include <algorithm>
#include <cmath>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int sampleLength = 22;  // pixels
constexpr int sampleGap = 6;      // between samples, and to the text
constexpr int padding = 6;        // within the box
constexpr int cornerMargin = 6;   // from the plot's frame to the box
constexpr int columnGap = 14;     // between two columns of rows
constexpr int mostColumns = 3;
constexpr double smallestLegendScale = 0.6;  // of a large font, where that finds a free place
constexpr double legendScaleStep = 0.2;
constexpr int leastLineHeight = 13;   // pixels
constexpr int heightBelow = 22;       // pixels of a legend below the plot, and what keeps it off
constexpr int gapBelow = 4;           // the box's own border
constexpr int secondLine = 16;        // pixels more for a legend of two lines
constexpr long mostInOneLine = 7;     // rows; more stand in two lines where one is too long
constexpr long mostTracesWithin = 5;  // more are named below the plot
constexpr int thresholdDigits = 4;
constexpr PlotColour hintColour{160, 64, 0};

int SamplesWidth(const LegendRow& row) {
    return static_cast<int>(row.Samples.size()) * (sampleLength + sampleGap);
}

/// Samples of those chosen traces that the layer has values for; of measured ones, which have one
/// colour, a single one.
std::vector<LegendSample> SamplesOf(const PlotLayer& layer, const TraceChoices& choices) {
    std::vector<LegendSample> samples;
    const bool single = layer.Role == LayerRole::Measurement;
    for (const TraceKind kind : TraceDrawOrder)
        if (IsChosen(choices, kind) && !ValuesOf(layer.Values, kind).empty() &&
            !(single && !samples.empty()))
            samples.push_back({layer.Colours[static_cast<std::size_t>(kind)], layer.Dashed()});
    return samples;
}

/// Of the lines of the bands a sample each, in the colour of the trace that is drawn first.
void AddWorstCaseRows(const PlotContent& content, std::vector<LegendRow>& rows) {
    if (content.WorstCaseRuns < 1) return;
    rows.push_back(
        {{}, "Worst case of " + std::to_string(content.WorstCaseRuns) + " runs, nominal darker"});
    const auto kind = std::find_if(TraceDrawOrder.begin(), TraceDrawOrder.end(),
                                   [&](auto one) { return IsChosen(content.Choices, one); });
    if (!ShowsBands(content.Design) || kind == TraceDrawOrder.end()) return;
    const PlotColour colour = BandColour(*kind);
    rows.push_back({{{colour, true}}, std::string(MostRunsName) + " of the runs"});
    rows.push_back({{{colour, false}}, "Lowest and highest run"});
}

/// Rows in columns, filled one after the other.
struct LegendForm {
    int InAColumn = 0;
    std::vector<int> Columns;  ///< their widths
    int Width = 0;             ///< of the whole box
    int Height = 0;
};

LegendForm FormOf(const std::vector<LegendRow>& rows, int columns, const TextMetrics& metrics) {
    const int count = static_cast<int>(rows.size());
    LegendForm form;
    form.InAColumn = (count + columns - 1) / columns;
    for (int n = 0; n < count; ++n) {
        if (n % form.InAColumn == 0) form.Columns.push_back(0);
        const LegendRow& row = rows[static_cast<std::size_t>(n)];
        form.Columns.back() =
            std::max(form.Columns.back(), SamplesWidth(row) + metrics.Width(row.Text));
    }
    for (const int width : form.Columns)
        form.Width += width + columnGap;
    form.Width += 2 * padding - columnGap;
    form.Height = form.InAColumn * metrics.Height + 2 * padding;
    return form;
}

Legend LayOut(const std::vector<LegendRow>& rows, const LegendForm& form, const PlotRect& box,
              const TextMetrics& metrics) {
    Legend legend;
    legend.Box = box;
    int left = box.Left + padding;
    for (std::size_t n = 0; n < rows.size(); ++n) {
        const auto inAColumn = static_cast<std::size_t>(form.InAColumn);
        if (n > 0 && n % inAColumn == 0) left += form.Columns[n / inAColumn - 1] + columnGap;
        int x = left;
        const int margin = (box.Height - form.InAColumn * metrics.Height) / 2;
        const int y = box.Top + margin + static_cast<int>(n % inAColumn) * metrics.Height;
        const int middle = y + metrics.Height / 2;
        for (const LegendSample& sample : rows[n].Samples) {
            legend.Samples.push_back(
                {{x, middle, x + sampleLength, middle, sample.Colour}, sample.Dashed});
            x += sampleLength + sampleGap;
        }
        legend.Texts.push_back({x, y, rows[n].Text, rows[n].Samples.empty() ? hintColour : Black});
    }
    return legend;
}

/// What is to be said of a trace that has no point to draw.
std::string BlankRemark(const PlotContent& content, TraceKind kind) {
    const bool blankable = kind == TraceKind::Phase || kind == TraceKind::GroupDelay;
    if (!blankable || content.Layers.empty()) return {};
    const std::span<const double> values = ValuesOf(content.Layers.front().Values, kind);
    const bool blank = std::all_of(values.begin(), values.end(),
                                   [](double value) { return value == BlankMarker; });
    if (values.empty() || !blank) return {};
    return ": below " + FormatPlain(content.Design.PhaseGDThreshold, thresholdDigits) + " dB";
}

}  // namespace

std::string TraceLegendText(TraceKind kind, const PlotScales& scales) {
    switch (kind) {
        case TraceKind::Mag1dB:
            return "Mag 1 dB/div";
        case TraceKind::Mag10dB:
            return "Mag 10 dB/div";
        case TraceKind::Phase:
            return "Phase 36\u00b0/div";
        case TraceKind::GroupDelay:
            return "Group delay " + FormatWithPrefix(scales.GDFullScale * 0.1, 1, "s") + "/div";
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            return "Sq pulse " + FormatPlain(0.1, 1) + "/div";
        case TraceKind::ReturnLoss:
            return "Return loss 10 dB/div";
    }
    return {};
}

int PointsInBandWidth(const FilterDesign& design) {
    if (!HasBandWidth(design.PassType)) return NumSweepPoints;
    const auto at = [&](double f) {
        return std::lower_bound(design.SweepFreqs.begin(), design.SweepFreqs.end(), f);
    };
    return static_cast<int>(at(design.F0 + 0.5 * design.BandWidth) -
                            at(design.F0 - 0.5 * design.BandWidth));
}

std::vector<LegendRow> BuildLegendRows(const PlotContent& content) {
    const FilterDesign& design = content.Design;
    std::vector<LegendRow> rows;
    const PlotScales scales = ScalesOf(design);
    for (const TraceKind kind : TraceDrawOrder)
        if (IsChosen(content.Choices, kind))
            rows.push_back({{{TraceColour(kind), false}},
                            TraceLegendText(kind, scales) + BlankRemark(content, kind)});
    AddWorstCaseRows(content, rows);
    for (std::size_t n = 1; n < content.Layers.size(); ++n) {
        const std::vector<LegendSample> samples = SamplesOf(content.Layers[n], content.Choices);
        rows.push_back(
            {samples, content.Layers[n].Name + (samples.empty() ? ": none of these traces" : "")});
    }
    const int points = PointsInBandWidth(design);
    if (points < FewestBandWidthPoints && design.NumElements > 0)
        rows.push_back({{},
                        "Coarse: " + std::to_string(points) + (points == 1 ? " point" : " points") +
                            " in the band (F7)"});
    return rows;
}

int LegendHeightBelow(const PlotContent& content) {
    if (content.Design.NumElements < 1) return 0;
    const auto traces = std::count_if(TraceDrawOrder.begin(), TraceDrawOrder.end(),
                                      [&](auto kind) { return IsChosen(content.Choices, kind); });
    const long others = std::max<long>(0, static_cast<long>(content.Layers.size()) - 1);
    if (traces <= mostTracesWithin && others == 0) return 0;
    return traces + others > mostInOneLine ? heightBelow + secondLine : heightBelow;
}

Legend LayLegendBelow(const std::vector<LegendRow>& rows, const PlotLayout& layout,
                      const TextMetrics& metrics) {
    const int room = layout.Area.LegendHeight;
    if (room <= 0 || rows.empty()) return {};
    const int count = static_cast<int>(rows.size());
    for (double scale = 1.0; scale >= smallestLegendScale; scale -= legendScaleStep / 2) {
        const TextMetrics scaled = metrics.Scaled(scale);
        for (const int columns : {count, (count + 1) / 2}) {
            const LegendForm form = FormOf(rows, columns, scaled);
            if (form.Width > layout.PlotWidth || form.InAColumn * scaled.Height > room - gapBelow)
                continue;
            const int height = std::min(room - 2, form.InAColumn * scaled.Height + gapBelow);
            const PlotRect box{layout.PlotLeft + (layout.PlotWidth - form.Width) / 2,
                               LegendTop(layout), form.Width, height};
            Legend legend = LayOut(rows, form, box, scaled);
            for (PlotText& text : legend.Texts)
                text.Scale = scale;
            return legend;
        }
    }
    return {};
}

Legend PlaceLegend(const std::vector<LegendRow>& rows, const TextMetrics& metrics,
                   PlotCover& cover) {
    Legend best;
    int least = -1;
    for (double scale = 1.0; least != 0 && scale >= smallestLegendScale; scale -= legendScaleStep) {
        const TextMetrics scaled = metrics.Scaled(scale);
        if (scale < 1.0 && scaled.Height < leastLineHeight) break;
        for (int columns = 1; columns <= mostColumns && least != 0; ++columns) {
            const LegendForm form = FormOf(rows, columns, scaled);
            if (rows.empty() || !cover.HasRoomFor(form.Width, form.Height, cornerMargin)) continue;
            const PlotRect box = cover.FindCorner(form.Width, form.Height, cornerMargin);
            const int cost = cover.Cost(box);
            // Other forms are worse to read, or lie across the plot: only where they hide nothing.
            if (least >= 0 && cost > 0) continue;
            best = LayOut(rows, form, box, scaled);
            for (PlotText& text : best.Texts)
                text.Scale = scale;
            least = cost;
        }
    }
    if (least >= 0) cover.AddBlock(best.Box);
    return best;
}

}  // namespace ladderwise
