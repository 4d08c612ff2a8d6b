// Measured traces on the plot: their ink, names and read-outs against an attenuator, whatever the
// sweep is and however many points there are.
#include <gtest/gtest.h>

#include <memory>

#include "display/Annotations.h"
#include "display/MarkerTable.h"
#include "display/PlotPainter.h"
#include "display/ReadOuts.h"
#include "measured/MeasuredSet.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {
namespace {

constexpr double From = 150e6, To = 250e6;  // Hz
constexpr double Level = -15.0;             // dB
const TextMetrics PadMetrics{
    [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};

/// An attenuator between 50 ohm, of so many points.
NetworkData Pad(int points) {
    NetworkData network;
    for (int i = 0; i < points; ++i) {
        network.Hz.push_back(From + (To - From) * i / (points - 1));
        const double through = std::pow(10.0, Level / 20.0);
        network.S.push_back({0.0, through, through, 0.0});
    }
    return network;
}

struct PadScene {
    Calculation Shown;
    MeasuredSet Set;
    MeasuredFiles Files;
    PlotLayout Layout = ComputePlotLayout({1280, 800, 150, 701}, {});

    PadScene(const char* sweep, int points) {
        for (const auto& [name, value] :
             {std::pair{"sweep", sweep}, {"bw", "40"}, {"pass", "band-pass"}})
            EXPECT_EQ(ApplySetting(Shown, name, value, {}), std::nullopt);
        Calculate(Shown, {});
        Set.Put({"pad.s2p", Pad(points), {}});
        Files.push_back(NewMeasuredFile("pad.s2p", {}));
    }
    double XOf(double f) const {
        const double f1 = Shown.Design.SweepF1, f2 = Shown.Design.SweepF2;
        const double share = Shown.Design.SweepType == SweepType::Linear
                                 ? (f - f1) / (f2 - f1)
                                 : std::log(f / f1) / std::log(f2 / f1);
        return Layout.PlotLeft + share * Layout.PlotWidth;
    }
    PlotContent Content(const TraceChoices& choices) {
        return ContentOf(Shown.Design, choices, Shown.Quantities,
                         Set.LayersOf(Files, Shown.Design));
    }
};

TEST(MeasuredPlot, InkLiesOnTheTraceOverItsOwnFrequenciesAlone) {
    for (const char* sweep : {"linear", "1-octave", "2-decades"})
        for (const int points : {2, 5, 3000, 20001}) {
            PadScene scene(sweep, points);
            const PlotLayout& layout = scene.Layout;
            const int y = layout.PlotTop + (10.0 - Level) / 100.0 * layout.PlotHeight + 0.5;
            const double left = std::max(scene.XOf(From), double(layout.PlotLeft));
            const double right = std::min(scene.XOf(To), double(layout.PlotRight));
            QImage image(1280, 800, QImage::Format_RGB32);
            image.fill(Qt::white);
            const auto work = std::make_unique<OverlayWork>();
            const PlotContent content = scene.Content({});
            ASSERT_EQ(content.Layers.size(), 2u);
            PaintLayerPixels(image, content.Layers[1], scene.Shown.Design, {}, layout,
                             ScalesOf(scene.Shown.Design), LayerLook::Plain, *work);
            for (int x = 0; x < image.width(); ++x) {
                int ink = 0;
                for (int row = 0; row < image.height(); ++row) {
                    if (image.pixel(x, row) == qRgb(255, 255, 255)) continue;
                    ++ink;
                    ASSERT_NEAR(row, y, 1) << sweep << points;
                    ASSERT_TRUE(x >= left - 2 && x <= right + 2) << sweep << points << " " << x;
                }
                const bool within = x > left + 1 && x < right - 1;
                ASSERT_EQ(ink, within ? 1 : ink) << "thin, and no gap: " << sweep << points;
            }
        }
}

TEST(MeasuredPlot, IsNamedAndReadBesideTheDesign) {
    PadScene scene("linear", 201);
    TraceChoices choices;
    choices.Phase = true;
    PlotContent content = scene.Content(choices);
    content.Markers.FreqMarkers[1] = 200e6;
    content.Markers.FreqMarkers[2] = 110e6;
    content.Markers.FreqMarkerCount = 2;
    const auto rows = BuildLegendRows(content);
    EXPECT_EQ(rows.back().Text, "pad.s2p");
    EXPECT_EQ(rows.back().Samples.size(), 1u);
    EXPECT_GT(LegendHeightBelow(content), 0);
    const auto work = std::make_unique<TracePoints>();
    const auto drawn = BuildAnnotations(content, scene.Layout, {}, PadMetrics, *work);
    int named = 0;
    for (const PlotText& label : drawn.Markers.Labels) {
        named += label.Text == "pad Mag" || label.Text == "pad Phase";
        EXPECT_EQ(label.Text.find("Ref"), std::string::npos) << label.Text;
    }
    EXPECT_EQ(named, 2);
    const auto sweep = SweepOf(content, scene.Layout, {});
    const auto at = [&](double f) {
        const auto& freqs = scene.Shown.Design.SweepFreqs;
        const auto index = std::lower_bound(freqs.begin(), freqs.end(), f) - freqs.begin();
        std::string texts;
        for (const TraceReadOut& trace :
             ReadCursor(static_cast<int>(index), 300, sweep, content.Layers, {}).Traces)
            texts += trace.Text.Text + "|";
        return texts;
    };
    EXPECT_NE(at(200e6).find("|pad Mag -15.00 dB (-15.00 dB off)|pad Phase 0.0\u00b0 ("),
              std::string::npos)
        << at(200e6);
    EXPECT_EQ(at(145e6).find("pad"), std::string::npos);
    std::string table;
    for (const MarkerReading& row : BuildMarkerTable(content))
        table += row.Name + ": " + row.OfDesign + "|" + row.OfReference + "\n";
    EXPECT_NE(table.find("Mag, pad: -15.00 dB (-15.00 dB off)|\n"), std::string::npos) << table;
    EXPECT_NE(table.find("M2 110.0 MHz, Mag, pad: none|\n"), std::string::npos) << table;
}

}  // namespace
}  // namespace ladderwise
