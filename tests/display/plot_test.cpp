// The painted plot: pixels of the frame and traces, overlays, sizes, and the exported files.
#include <gtest/gtest.h>

#include <QPainter>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <memory>

#include "display/Plot.h"
#include "display/PlotExport.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr int Width = 1280;
constexpr int Height = 800;
constexpr PlotPlacement Placement{150, 701, 0};

QRgb Pixel(PlotColour colour) {
    return qRgb(colour.Red, colour.Green, colour.Blue);
}

std::unique_ptr<Plot> Painted(const ButterworthResponse& made, const TraceChoices& choices,
                              double ratio = 1.0) {
    auto plot = std::make_unique<Plot>();
    plot->Resize(Width, Height, ratio);
    plot->PaintContent(made.Content(choices), Placement);
    return plot;
}

int CountPixels(const QImage& image, QRgb colour) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == colour;
    return count;
}

TEST(Plot, FrameAndTracePixels) {
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    TraceChoices choices;
    auto plot = Painted(made, choices);
    const QImage& image = plot->Image();
    // Right of the last grid line the trace is far below 0 dB.
    EXPECT_EQ(image.pixel(1210, 225), Pixel(Black));
    EXPECT_EQ(image.pixel(1210, 265), Pixel(GridColour));
    EXPECT_EQ(image.pixel(1210, 245), Pixel(BackgroundColour));
    EXPECT_EQ(image.pixel(700, 586), Pixel(Black));
    const PlotColour red = TraceColour(TraceKind::Mag10dB);
    EXPECT_EQ(image.pixel(640, 237), Pixel(red));  // -3.01 dB at the corner frequency

    const QRgb blue = Pixel(TraceColour(TraceKind::Phase));
    EXPECT_EQ(CountPixels(image, blue), 0);

    choices.Mag10dB = false;
    choices.Phase = true;
    plot = Painted(made, choices);
    EXPECT_EQ(plot->Image().pixel(1210, 225), Pixel(GridColour));
    EXPECT_EQ(CountPixels(plot->Image(), Pixel(red)), 0);
    // -135 degrees at the corner frequency
    EXPECT_EQ(plot->Image().pixel(640, 535), blue);
}

TEST(Plot, OverlaysDrawOverAndKeepTheScalesOfRunZero) {
    const TraceChoices choices{false, true, false, true, false, false};
    const ButterworthResponse nominal = MakeButterworth(SweepType::OneDecade);
    auto plot = Painted(nominal, choices);
    const QImage before = plot->Image().copy();
    const double scale = plot->Scales().GDFullScale;

    ButterworthResponse other = MakeButterworth(SweepType::OneDecade, 1.3);
    other.Design.GDFullScale = 1.0;
    other.Design.NumElements = 0;
    plot->PaintOverlay(other.Traces());
    EXPECT_EQ(plot->Scales().GDFullScale, scale);
    const QImage& after = plot->Image();
    for (const TraceKind kind : {TraceKind::Mag10dB, TraceKind::GroupDelay}) {
        const QRgb colour = Pixel(TraceColour(kind));
        EXPECT_GT(CountPixels(after, colour), CountPixels(before, colour) + 200);
    }
    EXPECT_EQ(CountPixels(after, Pixel(TraceColour(TraceKind::ReturnLoss))), 0);
    EXPECT_EQ(after.copy(0, 605, Width, 195), before.copy(0, 605, Width, 195));

    plot->PaintContent(nominal.Content(choices), Placement);
    EXPECT_EQ(plot->Image(), before);
}

TEST(Plot, DenseScreenDrawsTheSamePlotFinerAndAReferenceInItsOwnColours) {
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    const auto plot = Painted(made, {}, 2.0);
    const QImage& image = plot->Image();
    EXPECT_EQ(image.size(), QSize(2 * Width, 2 * Height));
    EXPECT_EQ(plot->Layout().PlotRight, 1220);
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(image.pixel(2 * 1210 - k % 2, 2 * 225 - k / 2), Pixel(Black));
        EXPECT_EQ(image.pixel(2 * 640 - k % 2, 2 * 237 - k / 2),
                  Pixel(TraceColour(TraceKind::Mag10dB)));
    }
    const QRgb colour = Pixel(ReferenceColours[1]);  // of the 10 dB magnitude
    EXPECT_EQ(CountPixels(image, colour), 0);
    const ButterworthResponse reference = MakeButterworth(SweepType::OneDecade, 0.5);
    plot->PaintContent({made.Design, {}, {made.Layer(), reference.Layer(true)}, {}}, Placement);
    EXPECT_GT(CountPixels(image, colour), 300);
}

TEST(Plot, EmptyLadderSaysWhy) {
    ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    made.Design.NumElements = 0;
    for (int stage = 0; stage <= static_cast<int>(MissingStage::DirectCoupledSynthesis); ++stage) {
        made.Design.Flags.Missing = static_cast<MissingStage>(stage);
        const QImage band = Painted(made, {})->Image().copy(0, 605, Width, SchematicHeight);
        const bool blank = CountPixels(band, Pixel(BackgroundColour)) == Width * SchematicHeight;
        EXPECT_EQ(blank, stage == 0);
    }
}

TEST(PlotExport, PaintsWhatTheWindowPaints) {
    const auto calculation = std::make_unique<Calculation>();
    DesignInputs& inputs = calculation->Inputs;
    for (const ChoiceId on : {ChoiceId::WorstCase, ChoiceId::TracePhase, ChoiceId::TraceGroupDelay})
        inputs.Choice(on) = 1;
    inputs.Box(InputId::WorstCaseSims).Type("20");
    calculation->FixedSeed = 7;
    const QSize size(1000, 700);
    Plot window;
    window.Resize(size.width(), size.height());
    std::vector<OverlayRun> runs;
    Calculate(*calculation, {}, [&](const AnalysedRun& run) {
        if (run.Number > 0) {
            window.PaintOverlay(TracesOf(run.Quantities, run.Response));
            runs.push_back({run.Quantities, run.Response});
        } else {
            window.PaintContent(ContentOf(calculation->Design, inputs.Traces(), run.Quantities, {}),
                                {0, TableTop(size), 0});
        }
    });
    PlotContent content =
        ContentOf(calculation->Design, inputs.Traces(), calculation->Quantities, {});
    for (const OverlayRun& run : runs)
        content.Overlays.push_back(run.Traces());
    QImage exported(size, QImage::Format_RGB32);
    QPainter painter(&exported);
    PaintPlot(painter, size, content, QFont());
    painter.end();
    const QRect plot(0, 0, size.width(), window.Layout().PlotBottom + 2);
    EXPECT_EQ(exported.copy(plot), window.Image().copy(plot));
}

// Formats and failing folders are tested with the console program.
TEST(PlotExport, HasTheSizeAskedForAndBothTraces) {
    const QTemporaryDir folder;
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    const ButterworthResponse reference = MakeButterworth(SweepType::OneDecade, 0.5);
    const PlotContent content{made.Design, {}, {made.Layer(), reference.Layer(true)}, {}};
    const QSize size(1000, 700);
    ASSERT_TRUE(WritePlotFile(folder.filePath("plot.png"), size, content, QFont()));
    const QImage png(folder.filePath("plot.png"));
    EXPECT_EQ(png.size(), size);
    for (const TraceColours& colours : {CurrentColours, ReferenceColours})
        EXPECT_GT(CountPixels(png, Pixel(colours[1])), 100);
    ASSERT_TRUE(WritePlotFile(folder.filePath("plot.svg"), size, content, QFont()));
    EXPECT_EQ(QSvgRenderer(folder.filePath("plot.svg")).viewBox().size(), size);
    EXPECT_FALSE(WritePlotFile(folder.filePath("plot.png"), QSize(0, 700), content, QFont()));
}

}  // namespace
}  // namespace ladderwise
