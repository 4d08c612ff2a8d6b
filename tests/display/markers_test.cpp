// Markers, read-outs, legend and subtitle as plain structs, on a Butterworth in closed form.
#include <gtest/gtest.h>

#include "display/Legend.h"
#include "display/MarkerTable.h"
#include "display/ReadOuts.h"
#include "display/Subtitle.h"
#include "numbers/Formatfunctions.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

const ButterworthResponse Response = MakeButterworth(SweepType::OneDecade);
const TextMetrics Metrics{[](const std::string& text) { return 6 * static_cast<int>(text.size()); },
                          13};

// PlotLeft 60, PlotTop 185, PlotWidth 1160, PlotHeight 400.
MarkedSweep PlotSweep(const TraceChoices& choices, PassType pass = PassType::LowPass) {
    return {pass, Response.Design.SweepFreqs, choices,
            ComputePlotLayout({1280, 800, 150, 701}, choices), ScalesOf(Response.Design)};
}

TEST(Markers, CommandsStoreWhatWasClicked) {
    const MarkedSweep sweep = PlotSweep({});
    MarkerState markers;
    EXPECT_FALSE(markers.HasReference());
    markers.ClickX = 60 + 580;  // the middle: point 512
    markers.ClickY = 185 + 120;
    SetRefAtPeak(markers);
    SetRefAtCursor(markers, sweep);
    EXPECT_DOUBLE_EQ(markers.RefFreq, sweep.Freqs[512]);
    EXPECT_DOUBLE_EQ(markers.RefDb, -20.0);
    EXPECT_FALSE(markers.RefAtPeak);
    SetRefToF0(markers, 123.0);
    EXPECT_EQ(ReferenceOf(markers, sweep.Freqs, Response.MagnitudeDb)->Frequency, 123.0);
    markers.ClearReference();
    EXPECT_EQ(markers.RefFreq, 1e100);
    EXPECT_EQ(markers.RefDb, 1e100);

    for (int n = 1; n <= 20; ++n) {
        markers.ClickX = 60 + 10 * n;
        AddFreqMarker(markers, sweep);
        AddDbMarker(markers, sweep, Response.MagnitudeDb);
    }
    EXPECT_EQ(markers.FreqMarkerCount, 19);
    EXPECT_EQ(markers.FreqMarkers[18], sweep.Freqs[1024 * 180 / 1160]);
    EXPECT_EQ(markers.FreqMarkers[19], sweep.Freqs[1024 * 200 / 1160]);
    EXPECT_EQ(markers.DbMarkerCount, 19);
    EXPECT_NEAR(markers.DbMarkers[19], -20.0, 1e-5);
    ClearMarkers(markers);
    EXPECT_EQ(markers.FreqMarkerCount + markers.DbMarkerCount, 0);
    EXPECT_EQ(SweepIndexAt(-50, 1024, sweep.Layout), 0);
    EXPECT_EQ(SweepIndexAt(5000, 1024, sweep.Layout), 1023);
    TraceChoices fine;
    fine.Mag1dB = true;
    fine.Mag10dB = false;
    EXPECT_DOUBLE_EQ(LevelAtY(185 + 120, PlotSweep(fine)), -2.0);
}

TEST(Markers, SixDbReadOutsOfEveryPassType) {
    // 1 + w^6 = 10^0.6 at the corner of the low-pass; the others from levels made of it.
    const double w6 = std::pow(std::pow(10.0, 0.6) - 1.0, 1.0 / 6.0), f0 = Response.Design.F0;
    std::vector<double> lowPass = Response.MagnitudeDb, highPass, bandPass, notch;
    for (int i = 0; i < NumSweepPoints; ++i) {
        const double w = Response.Design.SweepFreqs[i] / f0, x = 3.0 * (w - 1.0 / w);
        highPass.push_back(-10.0 * std::log10(1.0 + std::pow(w, -6)));
        bandPass.push_back(-10.0 * std::log10(1.0 + std::pow(x, 6)));
        notch.push_back(-10.0 * std::log10(1.0 + std::pow(std::abs(x) + 1e-9, -6)));
    }
    const auto edge = [](double x) { return std::sqrt(1.0 + x * x / 36.0) + x / 6.0; };
    const struct {
        PassType Pass;
        const std::vector<double>& Levels;
        double Lower, Upper;
    } cases[] = {{PassType::LowPass, lowPass, 0.0, w6},
                 {PassType::HighPass, highPass, 1.0 / w6, 0.0},
                 {PassType::Norton, bandPass, 1.0 / edge(w6), edge(w6)},
                 {PassType::Notch, notch, 1.0 / edge(1.0 / w6), edge(1.0 / w6)}};
    for (const auto& c : cases) {
        const auto found = FindDepthReadOut(c.Levels, Response.Design.SweepFreqs, c.Pass);
        EXPECT_NEAR(found.Lower.value_or(SweepPlace{}).Frequency, c.Lower * f0, 1e-4 * f0);
        EXPECT_NEAR(found.Upper.value_or(SweepPlace{}).Frequency, c.Upper * f0, 1e-4 * f0);
    }
}

TEST(Markers, DepthReadOutsAreOfTheBandAboutF0) {
    // Butterworth bands of 10 %, one at F0, and higher ones at 3 F0 and F0 / 3, the flank of which
    // falls into the range of the first.
    const double f0 = Response.Design.F0;
    const auto& freqs = Response.Design.SweepFreqs;
    std::vector<double> levels;
    const auto band = [](double w) {
        return -10.0 * std::log10(1.0 + std::pow(10.0 * (w - 1.0 / w), 6));
    };
    for (const double f : freqs)
        levels.push_back(
            std::max({band(f / f0) - 60.0, band(f / (3.0 * f0)), band(3.0 * f / f0) - 1.0}));
    const BandRange own{0.4 * f0, 1.5 * f0}, beyond{20.0 * f0, 30.0 * f0};
    for (const auto& [range, centre] : {std::pair{own, f0}, std::pair{beyond, 3.0 * f0}}) {
        const auto found = FindDepthReadOut(levels, freqs, PassType::BandPassCanonical, range);
        ASSERT_TRUE(found.Lower && found.Upper && found.NamedBand);
        EXPECT_NEAR(*found.NamedBand, centre, 0.01 * centre);
        EXPECT_NEAR((found.Upper->Frequency - found.Lower->Frequency) / centre, 0.12, 0.01);
    }
    // The one band of a sweep needs no name.
    for (std::size_t i = 0; i < levels.size(); ++i)
        levels[i] = band(freqs[i] / f0);
    EXPECT_FALSE(FindDepthReadOut(levels, freqs, PassType::Norton, own).NamedBand);
}

bool Overlap(const PlotText& a, const PlotText& b) {
    return a.X < b.X + Metrics.Width(b.Text) && b.X < a.X + Metrics.Width(a.Text) &&
           a.Y < b.Y + Metrics.Height && b.Y < a.Y + Metrics.Height;
}

TEST(Markers, AnnotationsStandOnTheirTracesAndOffEachOther) {
    TraceChoices choices;
    choices.ReturnLoss = choices.GroupDelay = choices.Pulse = true;
    const MarkedSweep sweep = PlotSweep(choices);
    MarkerState markers;
    markers.FreqMarkerCount = 3;
    for (const int k : {1, 2, 3})
        markers.FreqMarkers[k] = sweep.Freqs[500 + 4 * k];
    markers.DbMarkerCount = 1;
    markers.DbMarkers[1] = -20.0;
    PlotCover cover(sweep.Layout);
    MarkerDrawing drawing;
    AppendMarkerLines(markers, sweep, Response.MagnitudeDb, Metrics, cover, drawing);
    AppendTraceMarkers(markers, sweep, {Response.Traces()}, true, Metrics, cover, drawing);
    ASSERT_EQ(drawing.Labels.size(), 3u + 3u * 3u + 1u + 1u);
    EXPECT_EQ(drawing.Lines[0].X1, MapIndex(504, 1024, sweep.Layout));
    EXPECT_EQ(drawing.Dots[0].X, drawing.Lines[0].X1);
    EXPECT_EQ(drawing.Labels[3].Text,
              TraceValueText(TraceKind::Mag10dB, Response.MagnitudeDb[504]));
    // w^6 = 99 at -20 dB, 10^0.6 - 1 at -6 dB.
    EXPECT_EQ(drawing.Labels[6].Text, "L1 -20.00 dB 430.2 MHz");
    EXPECT_EQ(drawing.Labels[7].Text, "6 dB Freq = 239.9 MHz");
    for (std::size_t a = 0; a < drawing.Labels.size(); ++a)
        for (std::size_t b = 0; b < a; ++b)
            EXPECT_FALSE(Overlap(drawing.Labels[a], drawing.Labels[b])) << a << " " << b;
}

TEST(Markers, TableReadsDesignAndReference) {
    const double f0 = Response.Design.F0;
    const ButterworthResponse half = MakeButterworth(SweepType::OneDecade, 0.5);
    TraceChoices choices;
    choices.Mag1dB = choices.Pulse = true;
    PlotContent content{Response.Design, choices, {Response.Layer(), half.Layer(true)}, {}};
    content.Markers.FreqMarkerCount = content.Markers.DbMarkerCount = 1;
    const double f = content.Markers.FreqMarkers[1] = Response.Design.SweepFreqs[500];
    content.Markers.DbMarkers[1] = -20.0;
    const auto level = [f](double corner) {
        return FormatFixed(-10.0 * std::log10(1.0 + std::pow(f / corner, 6.0)), 3) + " dB";
    };
    const auto rows = BuildMarkerTable(content);
    ASSERT_EQ(rows.size(), 2u);  // one magnitude, and no pulse
    EXPECT_EQ(rows[0].OfDesign, level(f0));
    EXPECT_EQ(rows[0].OfReference, level(0.5 * f0));
    EXPECT_EQ(rows[1].Name, "L1 -20.00 dB");
    EXPECT_EQ(rows[1].OfDesign, "430.2 MHz");  // w^6 = 99 at -20 dB
    EXPECT_EQ(rows[1].OfReference, "215.1 MHz");
    // A reference that was not swept there has no value.
    content.Layers[1].Sweep.Freqs = std::span(half.Design.SweepFreqs).first(100);
    EXPECT_EQ(BuildMarkerTable(content)[0].OfReference, "none");
}

TEST(Markers, LegendOfTwoDesignsStandsBelowThePlot) {
    const PlotContent alone{Response.Design, {}, {Response.Layer()}, {}};
    const PlotContent two{Response.Design, {}, {Response.Layer(), Response.Layer(true)}, {}};
    EXPECT_EQ(LegendHeightBelow(alone), 0);
    const PlotLayout layout =
        ComputePlotLayout({1280, 800, 150, 701, LegendHeightBelow(two)}, two.Choices);
    const Legend legend = LayLegendBelow(BuildLegendRows(two), layout, Metrics);
    EXPECT_GT(legend.Box.Top, layout.PlotBottom + Metrics.Height);
    EXPECT_LT(legend.Box.Top + legend.Box.Height, 701 - SchematicHeight);
    for (const PlotText& text : legend.Texts)
        EXPECT_EQ(text.Y, legend.Texts.front().Y);
    // The letters of the labels end above it, in large fonts too.
    for (const double scale : {1.0, 1.5, 2.0}) {
        const TextMetrics font = Metrics.Scaled(scale);
        const int top = LayLegendBelow(BuildLegendRows(two), layout, font).Box.Top;
        const PlotFrame frame = BuildPlotFrame(Response.Design, two.Choices, layout, font);
        for (const PlotText& label : frame.FrequencyLabels)
            EXPECT_LE(label.Y + 0.85 * font.Height * label.Scale, top) << scale;
    }
}

TEST(ReadOuts, CursorReadsTheTracesAndTheReference) {
    TraceChoices choices;
    choices.ReturnLoss = choices.GroupDelay = true;
    const MarkedSweep sweep = PlotSweep(choices);
    const PlotLayer layers[] = {{Response.Traces()}};
    const auto read =
        ReadCursor(512, 305, sweep, layers, ReadOutReference{sweep.Freqs[512] - 1e6, -5.0});
    std::vector<std::string> texts;
    for (const ReadOutText& text : read.Cursor)
        texts.push_back(text.Text);
    for (const TraceReadOut& trace : read.Traces)
        texts.push_back(trace.Text.Text);
    EXPECT_EQ(texts, (std::vector<std::string>{
                         "200.0 MHz", "-20.00 dB at the cursor", "Δf +1.000 MHz", "Δ-15.00 dB",
                         "Mag -3.01 dB (Δ+1.99)", "GD 1.989 ns", "RL -3.01 dB, VSWR 5.83"}));
    EXPECT_EQ(read.Traces[0].Y, 237);
    // Far above the corner the delay is blank.
    EXPECT_EQ(ReadCursor(4000, 0, sweep, layers, {}).Traces.size(), 2u);
    EXPECT_DOUBLE_EQ(VswrOf(20.0 * std::log10(0.5)), 3.0);
}

TEST(ReadOuts, FlowIntoTheRowsThatFit) {
    const std::vector<ReadOutText> texts(9, {"0123456789", Black});
    for (const int width : {70, 212, 400, 1000}) {
        const std::vector<PlotText> placed = FlowTexts(texts, width, 39, 16, Metrics);
        ASSERT_EQ(placed.size(), texts.size());
        const double scale = placed[0].Scale;
        const int own = TextMetrics(Metrics.Scaled(scale)).Width("0123456789");
        const int inARow = std::max(1, (width + 16) / (own + 16));
        for (std::size_t n = 0; n < placed.size(); ++n) {
            EXPECT_EQ(placed[n].X, static_cast<int>(n % inARow) * (own + 16)) << width;
            EXPECT_EQ(placed[n].Y > placed[n - n % inARow].Y, false) << width;
            if (n < static_cast<std::size_t>(inARow)) continue;
            EXPECT_GT(placed[n].Y, placed[n - inARow].Y) << width;
        }
        // Nine rows of 13 pixels are too high for 39; three of three, or one, are not.
        EXPECT_EQ(scale == 1.0, width >= 212) << width;
    }
}

TEST(Legend, StandsWhereNoTraceRuns) {
    TraceChoices choices;
    choices.ReturnLoss = true;
    FilterDesign design = Response.Design;
    const MarkedSweep sweep = PlotSweep(choices);
    auto points = std::make_unique<TracePoints>();
    PlotCover cover(sweep.Layout);
    for (const TraceKind kind : {TraceKind::Mag10dB, TraceKind::ReturnLoss}) {
        MapTrace(ValuesOf(Response.Traces(), kind), kind, false, sweep.Layout, sweep.Scales,
                 *points);
        cover.AddTrace(*points);
    }
    const PlotLayer reference{Response.Traces(), ReferenceColours, LayerRole::Reference,
                              "Ref: other", "Ref"};
    const auto rows = BuildLegendRows({design, choices, {{Response.Traces()}, reference}, {}});
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[2].Samples.size(), 2u);
    PlotCover before = cover;
    const Legend legend = PlaceLegend(rows, Metrics, cover);
    EXPECT_EQ(before.Cost(legend.Box), 0);
    EXPECT_GT(cover.Cost(legend.Box), 0);
    // Where all corners and edges are taken, in what is left.
    PlotCover crowded(sweep.Layout);
    for (const PlotRect& block : {PlotRect{60, 185, 500, 400}, PlotRect{860, 185, 360, 400},
                                  PlotRect{560, 185, 300, 80}, PlotRect{560, 460, 300, 125}})
        crowded.AddBlock(block);
    const PlotCover taken = crowded;
    EXPECT_EQ(taken.Cost(PlaceLegend(rows, Metrics, crowded).Box), 0);
    design.PassType = PassType::BandPassCanonical;
    EXPECT_EQ(BuildLegendRows({design, choices, {{Response.Traces()}}, {}}).size(), 2u);
    // 0.9 MHz between the points at 200 MHz.
    for (const auto& [width, told] :
         {std::pair{1e6, "1 point in"}, std::pair{3e6, "3 points in"}}) {
        design.BandWidth = width;
        EXPECT_EQ(BuildLegendRows({design, choices, {{Response.Traces()}}, {}}).back().Text,
                  "Coarse: " + std::string(told) + " the band (F7)");
    }
}

TEST(Subtitle, FrequenciesAreExactToTheHertz) {
    FilterDesign design;
    design.PassType = PassType::BandPassCanonical;
    design.ResponseType = ResponseType::Chebyshev;
    design.RippleDb = 0.1;
    design.F0 = 145.825e6;
    design.BandWidth = 4e6;
    design.PartModel.Choice = PartChoice::RealParts;
    design.PartModel.IndQ = 80;
    design.PartModel.IndSeriesStep = design.PartModel.CapSeriesStep = 4;
    design.StdLCValues = true;
    design.SweepType = SweepType::Linear;
    BuildSweepGrid(design);
    EXPECT_EQ(PlotSubtitle(design),
              "145.825 MHz, 4.000 MHz wide, 50 Ω to 50 Ω, ripple 0.1 dB, real parts Q 80, E24, "
              "2 MHz/div");
    design.PartModel.Choice = PartChoice::DeEmbed;
    EXPECT_NE(PlotSubtitle(design).find(", de-embedded parts Q 80, E24"), std::string::npos);
    design.RSource = 123.456;
    EXPECT_NE(PlotSubtitle(design).find("123.456 Ω to 50 Ω"), std::string::npos);
    for (const auto& [f, text] : {std::pair{30e6, "30.0 MHz"},
                                  {1e9, "1.00 GHz"},
                                  {10.700001e6, "10.700001 MHz"},
                                  {100e6 + 0.52, "100.000001 MHz"},
                                  {100e6 + 0.48, "100 MHz"},
                                  {455e3, "455 kHz"},
                                  {OneOverTwoPi, "159 mHz"},
                                  {1234.5678e6, "1.2345678 GHz"}})
        EXPECT_EQ(ExactFrequency(f), text);
}

}  // namespace
}  // namespace ladderwise
