// The reference design beside another design: its ink, labels and read-outs against its own
// response in closed form, wherever the plot's sweep lies.
#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <memory>

#include "display/Annotations.h"
#include "display/PlotPainter.h"
#include "display/ReadOuts.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/ReferenceDesign.h"

namespace ladderwise {
namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

constexpr double ReferenceF0 = 200e6;
const TextMetrics LabelMetrics{
    [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};

std::unique_ptr<Calculation> Calculated(const Settings& settings) {
    auto calculation = std::make_unique<Calculation>();
    for (const auto& [name, value] : settings)
        EXPECT_EQ(ApplySetting(*calculation, name, value, {}), std::nullopt) << name;
    Calculate(*calculation, {});
    return calculation;
}

/// H of the three-pole Butterworth low-pass that is the reference, s = j f / F0.
std::complex<double> TransferAt(double f) {
    const std::complex<double> s(0.0, f / ReferenceF0);
    return 1.0 / ((s + 1.0) * (s * s + s + 1.0));
}

double LevelAt(double f) {
    return 20.0 * std::log10(std::abs(TransferAt(f)));
}

/// A reference of 200 MHz, kept with a sweep of its own, and the design that is shown now.
struct Scene {
    std::unique_ptr<Calculation> Shown;
    ReferenceDesign Reference;
    PlotLayer Layer;
    PlotLayout Layout;

    Scene(const char* sweep, const Settings& shown, const TraceChoices& choices = {})
        : Shown(Calculated(shown)),
          Reference(StoreReference(*Calculated({{"f0", "200"}, {"sweep", sweep}}), {})),
          Layer(LayerOf(Reference.Design, Reference.Quantities, LayerRole::Reference,
                        ReferenceName(Reference, Shown->Design))),
          Layout(ComputePlotLayout({1280, 800, 150, 701}, choices)) {}

    const FilterDesign& Design() const { return Shown->Design; }
    double FrequencyAt(double x) const {
        const double share = (x - Layout.PlotLeft) / Layout.PlotWidth;
        const double f1 = Design().SweepF1, f2 = Design().SweepF2;
        return Design().SweepType == SweepType::Linear ? f1 + share * (f2 - f1)
                                                       : f1 * std::pow(f2 / f1, share);
    }
    PlotContent Content(const TraceChoices& choices) const {
        return ContentOf(Design(), choices, Shown->Quantities, {Layer});
    }
    QImage Ink(const TraceChoices& choices) const {
        QImage image(1280, 800, QImage::Format_RGB32);
        image.fill(Qt::white);
        const auto work = std::make_unique<OverlayWork>();
        PaintLayerPixels(image, Layer, Design(), choices, Layout, ScalesOf(Design()),
                         LayerLook::Plain, *work);
        return image;
    }
};

const struct {
    const char* ReferenceSweep;
    Settings Shown;
} Scenes[] = {
    {"1-decade", {{"f0", "200"}}},
    {"1-decade", {{"f0", "400"}}},
    {"1-decade", {{"f0", "35"}, {"sweep", "2-decades"}}},
    {"linear", {{"f0", "400"}, {"sweep", "1-decade"}}},
    {"2-decades", {{"f0", "300"}, {"sweep", "linear"}}},
    {"1-decade", {{"pass", "band-pass"}, {"f0", "210"}, {"bw", "10"}, {"sweep", "linear"}}},
    {"2-decades", {{"pass", "band-pass"}, {"f0", "210"}, {"bw", "0.4"}, {"sweep", "linear"}}},
    {"1-octave", {{"pass", "notch"}, {"f0", "90"}, {"bw", "9"}, {"sweep", "3-octaves"}}},
    {"1-octave", {{"f0", "3000"}, {"sweep", "1-octave"}}},
};

TEST(ReferencePlot, InkLiesOnTheResponseOverItsOwnFrequenciesAlone) {
    for (const auto& s : Scenes) {
        const Scene scene(s.ReferenceSweep, s.Shown);
        SCOPED_TRACE(scene.Layer.Name);
        const PlotLayout& layout = scene.Layout;
        const QImage ink = scene.Ink({});
        const double first = scene.Reference.Design.SweepFreqs.front();
        const double last = scene.Reference.Design.SweepFreqs.back();
        int gap = 0;
        for (int x = 0; x < ink.width(); ++x) {
            const auto yAt = [&](double at) {
                const double down = (10.0 - LevelAt(scene.FrequencyAt(at))) / 100.0;
                return layout.PlotTop + std::clamp(down, 0.0, 1.0) * layout.PlotHeight;
            };
            bool inked = false;
            for (int y = 0; y < ink.height(); ++y) {
                if (ink.pixel(x, y) == qRgb(255, 255, 255)) continue;
                inked = true;
                ASSERT_TRUE(x >= layout.PlotLeft - 1 && x <= layout.PlotRight + 1) << x;
                ASSERT_TRUE(scene.FrequencyAt(x + 2) >= first && scene.FrequencyAt(x - 2) <= last);
                ASSERT_TRUE(y >= yAt(x - 2) - 2.5 && y <= yAt(x + 2) + 2.5) << x << " " << y;
            }
            const bool known = x > layout.PlotLeft && x < layout.PlotRight &&
                               scene.FrequencyAt(x) > first && scene.FrequencyAt(x) < last;
            gap = inked || !known ? 0 : gap + 1;
            ASSERT_LT(gap, 12) << x;
        }
    }
}

TEST(ReferencePlot, LinesThatLeaveThePlotEndAtItsEdge) {
    // A step from far left to far right of the frame, at the values that the line has there.
    const PlotLayout layout = ComputePlotLayout({1280, 800, 150, 701}, {});
    auto points = std::make_unique<TracePoints>();
    const double places[] = {-2000, -1024, 2048, 9000}, values[] = {0, 0, -30, -60};
    MapTraceAt(places, values, TraceKind::Mag10dB, false, layout, {}, *points);
    ASSERT_EQ(points->NumRuns, 1);
    const TraceRun run = points->Runs[0];
    EXPECT_EQ(run.Last, run.First + 1);
    EXPECT_EQ(points->X[run.First], layout.PlotLeft);
    EXPECT_EQ(points->X[run.Last], layout.PlotRight);
    EXPECT_EQ(points->Y[run.First], layout.PlotTop + 20 * layout.PlotHeight / 100);
    EXPECT_EQ(points->Y[run.Last], layout.PlotTop + 30 * layout.PlotHeight / 100);
    // A wrap of the phase is no line, at the edge neither.
    const double phases[] = {-170, -175, 175, 170};
    MapTraceAt(places, phases, TraceKind::Phase, false, layout, {}, *points);
    EXPECT_EQ(points->NumRuns, 0);
}

TEST(ReferencePlot, ReadOutsAreThoseOfTheCursorsFrequency) {
    TraceChoices choices;
    choices.Phase = choices.ReturnLoss = true;
    for (const auto& s : Scenes) {
        const Scene scene(s.ReferenceSweep, s.Shown, choices);
        SCOPED_TRACE(scene.Layer.Name);
        const FilterDesign& own = scene.Reference.Design;
        const PlotContent content = scene.Content(choices);
        const MarkedSweep sweep = SweepOf(content, scene.Layout, ScalesOf(scene.Design()));
        // A line between two points 0.9 % apart is 1e-3 dB off the response, over a decade less.
        for (int i = 0; i < NumSweepPoints; i += 31) {
            const double f = scene.Design().SweepFreqs[i];
            int read = 0;
            for (const auto& trace : ReadCursor(i, 300, sweep, content.Layers, {}).Traces) {
                if (trace.Layer != 1) continue;
                ++read;
                const double rho = std::sqrt(1.0 - std::norm(TransferAt(f)));
                const double phase = std::arg(TransferAt(f)) * 360 / TwoPi;
                if (trace.Kind == TraceKind::Mag10dB) {
                    EXPECT_NEAR(trace.Value, LevelAt(f), 3e-3) << f;
                    EXPECT_EQ(trace.Text.Text.substr(0, 8), "Ref Mag ");
                } else if (trace.Kind == TraceKind::Phase) {
                    EXPECT_NEAR(std::remainder(trace.Value - phase, 360.0), 0.0, 0.05) << f;
                } else if (rho > 1e-3) {
                    EXPECT_NEAR(trace.Value, 20.0 * std::log10(rho), 3e-3) << f;
                }
            }
            const bool known = f >= own.SweepFreqs.front() && f <= own.SweepFreqs.back();
            // The phase is blank below the threshold of 20 dB.
            EXPECT_LE(read, known ? 3 : 0) << f;
            EXPECT_GE(read, !known ? 0 : LevelAt(f) > -19.9 ? 3 : 2) << f;
        }
    }
}

TEST(ReferencePlot, LabelsStandAtItsOwnFrequencies) {
    for (const auto& s : Scenes) {
        const Scene scene(s.ReferenceSweep, s.Shown);
        SCOPED_TRACE(scene.Layer.Name);
        const FilterDesign &own = scene.Reference.Design, &shown = scene.Design();
        // 1 + w^6 = 10^((6 - peak) / 10) at 6 dB below the highest inner point of its own sweep,
        // whatever is shown beside it: 239.9 MHz for a peak of 0 dB.
        const double depth = (6.0 - LevelAt(own.SweepFreqs[1])) / 10.0;
        const double edge = ReferenceF0 * std::pow(std::pow(10.0, depth) - 1.0, 1.0 / 6.0);
        const double marked = shown.SweepFreqs[700];
        PlotContent content = scene.Content({});
        content.Markers.FreqMarkerCount = content.Markers.DbMarkerCount = 1;
        content.Markers.FreqMarkers[1] = marked;
        content.Markers.DbMarkers[1] = -6.0;
        PlotCover cover(scene.Layout);
        MarkerDrawing drawing;
        AppendTraceMarkers(content.Markers,
                           SweepOf(content, scene.Layout, ScalesOf(scene.Design())), scene.Layer,
                           true, LabelMetrics, cover, drawing);
        std::vector<std::string> texts;
        for (const PlotText& label : drawing.Labels)
            texts.push_back(label.Text);
        std::vector<std::string> expected;
        std::vector<double> frequencies;
        if (marked >= own.SweepFreqs.front() && marked <= own.SweepFreqs.back()) {
            expected.push_back(TraceValueText(TraceKind::Mag10dB, LevelAt(marked)));
            frequencies.push_back(marked);
        }
        if (edge >= shown.SweepF1 && edge <= shown.SweepF2) {
            const std::string f = SweepFrequencyText(edge, own.SweepFreqs);
            EXPECT_EQ(f.substr(0, 5), own.SweepType == SweepType::OneOctave ? "240.8" : "239.9");
            expected.insert(expected.end(), {"L1 -6.00 dB " + f, "6 dB Freq = " + f});
            frequencies.insert(frequencies.end(), {edge, edge});
        }
        EXPECT_EQ(texts, expected);
        ASSERT_EQ(drawing.Dots.size(), frequencies.size());
        for (std::size_t n = 0; n < frequencies.size(); ++n) {
            EXPECT_LE(scene.FrequencyAt(drawing.Dots[n].X - 1), frequencies[n]);
            EXPECT_GE(scene.FrequencyAt(drawing.Dots[n].X + 1), frequencies[n]);
        }
        for (const PlotLine& line : drawing.Lines) {
            if (shown.SweepFreqs == own.SweepFreqs) break;  // from edge to edge
            EXPECT_GE(scene.FrequencyAt(line.X1 + 1), own.SweepFreqs.front());
            EXPECT_LE(scene.FrequencyAt(line.X2 - 1), own.SweepFreqs.back());
        }
    }
}

// The pulse of a design of twice the frequency is the same in half the time.
TEST(ReferencePlot, PulseIsCalculatedUnaskedAndDrawnAgainstItsOwnTime) {
    TraceChoices choices;
    choices.Pulse = true;
    const Scene scene("1-decade", {{"f0", "400"}, {"traces", "pulse"}}, choices);
    const auto& pulse = scene.Shown->Quantities.Pulse;
    EXPECT_GT(*std::max_element(pulse.begin(), pulse.end()), 0.8);
    for (int i = 0; i < NumSweepPoints; ++i)
        ASSERT_NEAR(scene.Reference.Quantities.Pulse[i], pulse[i], 1e-9) << i;
    EXPECT_DOUBLE_EQ(scene.Reference.Design.PulseTimeStep, 2.0 * scene.Design().PulseTimeStep);
    auto points = std::make_unique<TracePoints>();
    const PlotLayout& layout = scene.Layout;
    MapLayerTrace(scene.Layer, TraceKind::Pulse, scene.Design(), layout, {}, *points, [] {});
    for (int n = 0; n < NumSweepPoints / 2; ++n) {
        ASSERT_NEAR(points->X[n], layout.PlotLeft + 2.0 * n * layout.PlotWidth / 1024, 0.51) << n;
        ASSERT_NEAR(points->Y[n], layout.PlotBottom - pulse[n] * layout.PlotHeight, 0.51) << n;
    }
    EXPECT_LE(points->Runs[points->NumRuns - 1].Last, NumSweepPoints / 2 + 1);
    const PlotContent content = scene.Content(choices);
    const auto read = ReadCursor(300, 300, SweepOf(content, layout, {}), content.Layers, {});
    ASSERT_EQ(read.Traces.size(), 4u);
    EXPECT_NEAR(read.Traces.back().Value, pulse[150], 1e-9);
    EXPECT_EQ(read.Traces.back().Text.Text,
              "Ref Pulse " + FormatFixed((pulse[150] - 0.2) / 0.6, 3) + " at 18.75 ns");
}

TEST(ReferencePlot, LegendSaysTheRangeWhereItDiffers) {
    const struct {
        Settings Shown;
        const char* Name;
    } cases[] = {{{{"f0", "200"}, {"pass", "high-pass"}}, "Ref: 3 Pole Butterworth LPF"},
                 {{{"f0", "400"}}, "Ref: 3 Pole Butterworth LPF, swept 20.0 MHz to 2.00 GHz"},
                 {{{"f0", "9000"}, {"sweep", "1-octave"}},
                  "Ref: 3 Pole Butterworth LPF, outside this plot: 20.0 MHz to 2.00 GHz"}};
    for (const auto& c : cases)
        EXPECT_EQ(Scene("1-decade", c.Shown).Layer.Name, c.Name);
}

}  // namespace
}  // namespace ladderwise
