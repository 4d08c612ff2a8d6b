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
constexpr PlotColour hintColour{160, 64, 0};

bool HasBandWidth(PassType pass) {
    return pass != PassType::LowPass && pass != PassType::HighPass;
}

int SamplesWidth(const LegendRow& row) {
    return static_cast<int>(row.Samples.size()) * (sampleLength + sampleGap);
}

/// Samples of those chosen traces that the layer has values for.
std::vector<LegendSample> SamplesOf(const PlotLayer& layer, const TraceChoices& choices) {
    std::vector<LegendSample> samples;
    for (const TraceKind kind : TraceDrawOrder)
        if (IsChosen(choices, kind) && !ValuesOf(layer.Values, kind).empty())
            samples.push_back({layer.Colours[static_cast<std::size_t>(kind)], layer.Dashed});
    return samples;
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
            rows.push_back({{{TraceColour(kind), false}}, TraceLegendText(kind, scales)});
    if (content.WorstCaseRuns > 0)
        rows.push_back(
            {{},
             "Worst case of " + std::to_string(content.WorstCaseRuns) + " runs, nominal darker"});
    for (std::size_t n = 1; n < content.Layers.size(); ++n)
        rows.push_back({SamplesOf(content.Layers[n], content.Choices), content.Layers[n].Name});
    const int points = PointsInBandWidth(design);
    if (points < FewestBandWidthPoints && design.NumElements > 0)
        rows.push_back({{},
                        "Coarse: " + std::to_string(points) + (points == 1 ? " point" : " points") +
                            " in the bandwidth (F7 changes the sweep)"});
    return rows;
}

Legend PlaceLegend(const std::vector<LegendRow>& rows, const TextMetrics& metrics,
                   PlotCover& cover) {
    Legend legend;
    if (rows.empty()) return legend;
    int width = 0;
    for (const LegendRow& row : rows)
        width = std::max(width, SamplesWidth(row) + metrics.Width(row.Text));
    legend.Box = cover.PlaceInCorner(width + 2 * padding,
                                     static_cast<int>(rows.size()) * metrics.Height + 2 * padding,
                                     cornerMargin);
    int y = legend.Box.Top + padding;
    for (const LegendRow& row : rows) {
        int x = legend.Box.Left + padding;
        const int middle = y + metrics.Height / 2;
        for (const LegendSample& sample : row.Samples) {
            legend.Samples.push_back(
                {{x, middle, x + sampleLength, middle, sample.Colour}, sample.Dashed});
            x += sampleLength + sampleGap;
        }
        legend.Texts.push_back({x, y, row.Text, row.Samples.empty() ? hintColour : Black});
        y += metrics.Height;
    }
    return legend;
}

}  // namespace ladderwise
