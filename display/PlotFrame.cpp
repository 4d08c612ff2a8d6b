// Grid, labels, marks and title of the plot.
#include "display/PlotFrame.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "design/ChoiceNames.h"
#include "display/Subtitle.h"
#include "display/TraceMap.h"
#include "numbers/Formatfunctions.h"
#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr int middlePoint = NumSweepPoints / 2;  // its frequency stands below the plot's middle
constexpr int labelGap = 5;                      // between the plot and a frequency label
constexpr double labelShare = 0.9;               // of a line's height that its letters take
constexpr int timeTickLength = 6;                // pixels upwards from the plot's bottom
constexpr int mostTimeSteps = 15;
constexpr double timeTolerance = 1e-9;  // a last tick that rounding puts beyond the plot's end
constexpr int markDrop = 5;             // a mark's bottom lies this far below its line
constexpr int groupDelayMarkGap = 8;    // right end of the marks to the plot
constexpr int groupDelayMarkGapBesideMag = 30;
constexpr int magMarkOffset = 22;
constexpr int leastMarkGap = 2;  // from a mark to what stands beside it
constexpr int phaseMarkOffset = 6;
constexpr int leastLabelDigits = 2;  // of a frequency label, after the first
constexpr int mostLabelDigits = 6;
constexpr double labelTolerance = 0.02;  // of a division
constexpr int frequencyLabelGap = 14;    // least, between two frequency labels

// Major vertical divisions; a decade sweep spans two or four decades, an octave sweep two, four
// or six octaves.
int MajorDivisions(SweepType sweep) {
    switch (sweep) {
        case SweepType::Linear:
            return 10;
        case SweepType::OneOctave:
        case SweepType::OneDecade:
            return 2;
        case SweepType::TwoOctaves:
        case SweepType::TwoDecades:
            return 4;
        case SweepType::ThreeOctaves:
            return 6;
    }
    return 2;
}

int LineY(const PlotLayout& layout, int i) {
    return layout.PlotTop + i * layout.PlotHeight / PlotDivisions;
}

void AddHorizontalLines(const FilterDesign& design, const TraceChoices& choices,
                        const PlotLayout& layout, PlotFrame& frame) {
    for (int i = 1; i < PlotDivisions; ++i) {
        const bool zeroDb = choices.Mag10dB && design.MagTopRef - 10.0 * i == 0.0;
        const int y = LineY(layout, i);
        frame.Lines.push_back(
            {layout.PlotLeft, y, layout.PlotRight, y, zeroDb ? Black : GridColour});
    }
}

void AddVerticalLines(SweepType sweep, const PlotLayout& layout, PlotFrame& frame) {
    const int divisions = MajorDivisions(sweep);
    const bool linear = sweep == SweepType::Linear;
    const bool decades = sweep == SweepType::OneDecade || sweep == SweepType::TwoDecades;
    const auto add = [&](int x) {
        frame.Lines.push_back({x, layout.PlotBottom, x, layout.PlotTop, GridColour});
    };
    for (int j = linear ? 1 : 0; j < divisions; ++j) {
        const int x0 = layout.PlotLeft + j * layout.PlotWidth / divisions;
        add(x0);
        for (int k = 2; decades && k <= 9; ++k) {
            add(x0 + NearestInt(std::log10(k) * layout.PlotWidth / divisions));
        }
    }
}

// A large font is made smaller where rows of labels would reach into the strip below the plot.
double LabelScale(const PlotLayout& layout, int rows, const TextMetrics& metrics) {
    const int room = LegendTop(layout) - layout.PlotBottom - labelGap;
    const double needed = labelShare * rows * metrics.Height;
    return room > 0 && room < needed ? room / needed : 1.0;
}

void AddFrequencyLabels(const FilterDesign& design, const PlotLayout& layout,
                        const TextMetrics& metrics, PlotFrame& frame) {
    const int y = layout.PlotBottom + labelGap;
    const auto add = [&](double frequency, double shareLeft) {
        const std::string text = FormatWithPrefix(frequency, 2, "Hz");
        // The label's own share of its width lies left of the same share of the plot's width.
        const double x = shareLeft * (layout.PlotWidth - metrics.Width(text));
        frame.FrequencyLabels.push_back({layout.PlotLeft + NearestInt(x), y, text, Black});
    };
    add(design.SweepFreqs[0], 0.0);
    add(design.SweepFreqs[middlePoint], 0.5);
    add(design.SweepF2, 1.0);
}

// The smallest 1, 2 or 5 times a power of ten that is at least `least`; 0 if that is no positive
// number.
double RoundStep(double least) {
    if (!(least > 0.0) || !std::isfinite(least)) return 0.0;
    const double decade = std::pow(10.0, std::floor(std::log10(least)));
    for (const double factor : {1.0, 2.0, 5.0})
        if (factor * decade >= least) return factor * decade;
    return 10.0 * decade;
}

// The time axis of the pulse: sample n stands where sweep point n does, so that the plot is
// NumSweepPoints steps wide.
void AddTimeAxis(const FilterDesign& design, const PlotLayout& layout, const TextMetrics& metrics,
                 PlotFrame& frame) {
    const PlotColour colour = TraceColour(TraceKind::Pulse);
    const double span = NumSweepPoints * design.PulseTimeStep;
    // As wide as any label is, and as much again between two.
    const double room = 2.0 * metrics.Width("0000 ms") / layout.PlotWidth;
    const double step = RoundStep(span * std::max(room, 1.0 / mostTimeSteps));
    if (step == 0.0) return;
    const int y = layout.PlotBottom + labelGap + metrics.Height;
    for (int i = 0; i * step <= span * (1.0 + timeTolerance); ++i) {
        const int x = layout.PlotLeft + NearestInt(i * step / span * layout.PlotWidth);
        const std::string text = i == 0 ? "0 s" : FormatWithPrefix(i * step, 2, "s");
        frame.TimeTicks.push_back(
            {x, layout.PlotBottom, x, layout.PlotBottom - timeTickLength, colour});
        frame.TimeLabels.push_back({x - metrics.Width(text) / 2, y, text, colour});
    }
}

// Grid lines that may carry a label beside the three fixed ones: the major divisions, then the
// lines of each decade in the order of their usefulness.
std::vector<int> MoreLabelLines(SweepType sweep) {
    const bool decades = sweep == SweepType::OneDecade || sweep == SweepType::TwoDecades;
    return decades ? std::vector{1, 5, 2, 3, 7, 4, 6, 8} : std::vector{1};
}

// A frequency with as many digits as tell it to within `tolerance`, at least three.
std::string LabelText(double f, double tolerance) {
    int digits = leastLabelDigits;
    for (; digits < mostLabelDigits; ++digits) {
        const double power = f > 0.0 ? std::pow(10.0, digits - std::floor(std::log10(f))) : 1.0;
        if (std::abs(std::round(f * power) / power - f) <= tolerance) break;
    }
    return FormatWithPrefix(f, digits, "Hz");
}

void AddMoreFrequencyLabels(const FilterDesign& design, const PlotLayout& layout,
                            const TextMetrics& metrics, PlotFrame& frame) {
    const int divisions = MajorDivisions(design.SweepType);
    const bool linear = design.SweepType == SweepType::Linear;
    const double span = design.SweepF2 - design.SweepF1;
    std::vector<std::pair<int, int>> taken;  // left and right ends of the labels
    const auto take = [&](const PlotText& label) {
        taken.emplace_back(label.X, label.X + metrics.Width(label.Text));
    };
    for (const PlotText& label : frame.FrequencyLabels)
        take(label);
    for (const int k : MoreLabelLines(design.SweepType)) {
        for (int j = 0; j < divisions; ++j) {
            const double share = (j + std::log10(k)) / divisions;
            const double f =
                linear ? design.SweepF1 + share * span
                       : design.SweepF1 * std::pow(design.SweepF2 / design.SweepF1, share);
            const std::string text = LabelText(f, labelTolerance * (linear ? span / divisions : f));
            const int width = metrics.Width(text);
            const int x = layout.PlotLeft + NearestInt(share * layout.PlotWidth) - width / 2;
            const bool free = std::none_of(taken.begin(), taken.end(), [&](const auto& other) {
                return x < other.second + frequencyLabelGap &&
                       x + width + frequencyLabelGap > other.first;
            });
            if (!free) continue;
            frame.MoreFrequencyLabels.push_back({x, layout.PlotBottom + labelGap, text, Black});
            take(frame.MoreFrequencyLabels.back());
        }
    }
}

// Every mark where there is room, else every second, fifth or tenth: in a very low plot the marks
// would overlap. Digits take about three quarters of a line's height.
int MarkStride(const PlotLayout& layout, const TextMetrics& metrics) {
    const int division = layout.PlotHeight / PlotDivisions;
    for (int stride : {1, 2, 5}) {
        if (4 * division * stride >= 3 * metrics.Height) return stride;
    }
    return PlotDivisions;
}

int WidestOf(const std::vector<PlotText>& texts, const TextMetrics& metrics) {
    int widest = 0;
    for (const PlotText& text : texts)
        widest = std::max(widest, metrics.Width(text.Text));
    return widest;
}

// The marks of the levels begin magMarkOffset left of the plot; in a large font further left, so
// that they end before it.
int MagnitudeMarkOffset(const std::vector<PlotText>& marks, const TextMetrics& metrics) {
    return std::max(magMarkOffset, WidestOf(marks, metrics) + leastMarkGap);
}

// Ends the marks of the group delay `gap` before the plot, smaller where the margin is too narrow.
void AlignGroupDelayMarks(const PlotLayout& layout, int gap, const TextMetrics& metrics,
                          std::vector<PlotText>& marks) {
    const int room = layout.PlotLeft - gap - leastMarkGap, widest = WidestOf(marks, metrics);
    const double scale = widest > room ? static_cast<double>(room) / widest : 1.0;
    for (PlotText& mark : marks) {
        mark.Scale = scale;
        mark.X = layout.PlotLeft - gap - NearestInt(scale * metrics.Width(mark.Text));
        mark.Y += NearestInt((1.0 - scale) * metrics.Height);
    }
}

void AddScaleMarks(const FilterDesign& design, const TraceChoices& choices,
                   const PlotLayout& layout, const TextMetrics& metrics, PlotFrame& frame) {
    const double fullScale = ScalesOf(design).GDFullScale;
    const int stride = MarkStride(layout, metrics);
    for (int i = 0; i <= PlotDivisions; i += stride) {
        const int y = LineY(layout, i) - metrics.Height + markDrop;
        if (choices.GroupDelay)
            frame.GroupDelayMarks.push_back({0, y,
                                             FormatWithPrefix(fullScale * 0.1 * (10 - i), 1, "s"),
                                             TraceColour(TraceKind::GroupDelay)});
        if (choices.Mag10dB)
            frame.MagnitudeMarks.push_back({0, y, FormatNumber(design.MagTopRef - 10.0 * i, 0),
                                            TraceColour(TraceKind::Mag10dB)});
        if (choices.Phase)
            frame.PhaseMarks.push_back({layout.PlotRight + phaseMarkOffset, y,
                                        FormatNumber(180.0 - 36.0 * i, 0),
                                        TraceColour(TraceKind::Phase)});
    }
    const int offset = MagnitudeMarkOffset(frame.MagnitudeMarks, metrics);
    for (PlotText& mark : frame.MagnitudeMarks)
        mark.X = layout.PlotLeft - offset;
    const int gap =
        choices.Mag10dB ? groupDelayMarkGapBesideMag + offset - magMarkOffset : groupDelayMarkGap;
    AlignGroupDelayMarks(layout, gap, metrics, frame.GroupDelayMarks);
}

void AddAxisUnits(const TraceChoices& choices, const PlotLayout& layout, const TextMetrics& metrics,
                  PlotFrame& frame) {
    const int y =
        std::max(LineY(layout, 0) - 2 * metrics.Height + markDrop, layout.Area.PanelHeight);
    if (choices.Mag10dB)
        frame.AxisUnits.push_back(
            {frame.MagnitudeMarks.front().X, y, "dB", TraceColour(TraceKind::Mag10dB)});
    if (choices.Phase)
        frame.AxisUnits.push_back(
            {layout.PlotRight + phaseMarkOffset, y, "deg", TraceColour(TraceKind::Phase)});
}

// Title and subtitle one above the other, or one after the other where the font is too large.
void AddTitles(const FilterDesign& design, const PlotLayout& layout, const TextMetrics& metrics,
               PlotFrame& frame) {
    const int panel = layout.Area.PanelHeight, margin = layout.PlotTop - panel;
    const bool twoLines = 2 * metrics.Height <= margin;
    frame.Title.Text = DesignTitle(design);
    frame.Subtitle.Text = PlotSubtitle(design);
    if (!twoLines) {
        frame.Title.Text += ", " + frame.Subtitle.Text;
        frame.Subtitle.Text.clear();
    }
    int y = panel + (margin - (twoLines ? 2 : 1) * metrics.Height) / 2;
    for (PlotText* const line : {&frame.Title, &frame.Subtitle}) {
        line->Text = FittingList(line->Text, layout.PlotWidth, metrics);
        line->X = layout.PlotLeft + (layout.PlotWidth - metrics.Width(line->Text)) / 2;
        line->Y = y;
        line->Colour = Black;
        y += metrics.Height;
    }
}

}  // namespace

std::string FittingList(std::string list, int width, const TextMetrics& metrics) {
    while (metrics.Width(list) > width) {
        const std::size_t comma = list.rfind(", ");
        if (comma == std::string::npos) break;
        list.resize(comma);
    }
    return list;
}

PlotFrame BuildPlotFrame(const FilterDesign& design, const TraceChoices& choices,
                         const PlotLayout& layout, const TextMetrics& metrics) {
    PlotFrame frame;
    AddHorizontalLines(design, choices, layout, frame);
    AddVerticalLines(design.SweepType, layout, frame);
    const double scale = LabelScale(layout, choices.Pulse ? 2 : 1, metrics);
    const TextMetrics labelMetrics = metrics.Scaled(scale);
    AddFrequencyLabels(design, layout, labelMetrics, frame);
    AddMoreFrequencyLabels(design, layout, labelMetrics, frame);
    if (choices.Pulse) AddTimeAxis(design, layout, labelMetrics, frame);
    for (auto* const labels :
         {&frame.FrequencyLabels, &frame.MoreFrequencyLabels, &frame.TimeLabels})
        for (PlotText& label : *labels)
            label.Scale = scale;
    // One pixel below the plot, so that a trace lying on the bottom edge stays visible.
    frame.Border = {layout.PlotLeft, layout.PlotTop, layout.PlotWidth, layout.PlotHeight + 1};
    AddScaleMarks(design, choices, layout, metrics, frame);
    AddAxisUnits(choices, layout, metrics, frame);
    AddTitles(design, layout, metrics, frame);
    return frame;
}

}  // namespace ladderwise
