// The painted plot: overlays, dense screens, and the exported files.
#include <gtest/gtest.h>

#include <QPainter>
#include <QSvgRenderer>
#include <cmath>
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

// A text drawn smaller is as small, whichever way the size of the font is given.
TEST(PlotText, ShrinksInPixelsAndInPoints) {
    const auto widthOf = [](const QFont& font) {
        QImage image(400, 60, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setFont(font);
        PaintText(painter, {10, 10, "1.65 kohm", PlotColour{0, 0, 0}, 0.5});
        EXPECT_EQ(painter.font(), font);
        int last = 0;
        for (int x = 0; x < image.width(); ++x)
            for (int y = 0; y < image.height(); ++y)
                if (qGray(image.pixel(x, y)) < 128) last = x;
        return last - 10;
    };
    QFont pixels, points;
    pixels.setPixelSize(40);
    points.setPointSizeF(40 * 72.0 / QImage(1, 1, QImage::Format_RGB32).logicalDpiY());
    QFont half = pixels;
    half.setPixelSize(20);
    EXPECT_NEAR(widthOf(pixels), QFontMetrics(half).horizontalAdvance("1.65 kohm"), 4);
    EXPECT_NEAR(widthOf(points), widthOf(pixels), 2);
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

// Spans of pixels are not exactly the smooth lines, but one logical pixel aside at most.
TEST(Plot, OverlayFollowsThePaintedLines) {
    ButterworthResponse nominal = MakeButterworth(SweepType::OneDecade);
    nominal.Design.NumElements = 0;  // neither legend nor labels
    ButterworthResponse other = MakeButterworth(SweepType::TwoDecades, 1.3);
    for (const int gap : {100, 101, 400, 500})
        other.MagnitudeDb[gap] = std::nan("");
    const TraceChoices all{true, true, true, true, true, true};
    for (const double ratio : {1.0, 1.5, 2.0, 3.0}) {
        const auto spans = Painted(nominal, all, ratio);
        const QImage before = spans->Image().copy();
        spans->PaintOverlay(other.Traces());
        PlotContent both = nominal.Content(all);
        both.Layers.push_back({other.Traces()});
        const auto lines = std::make_unique<Plot>();
        lines->Resize(Width, Height, ratio);
        lines->PaintContent(both, Placement);
        const int reach = static_cast<int>(std::ceil(ratio)), side = 2 * reach + 1;
        // How many pixels one of them draws, and how many of those the other is nowhere near.
        const auto farFrom = [&](const QImage& one, const QImage& other) {
            int drawn = 0, far = 0;
            for (int at = 0; at < one.width() * one.height(); ++at) {
                const QPoint here(at % one.width(), at / one.width());
                if (one.pixel(here) == before.pixel(here)) continue;
                ++drawn;
                const auto same = [&](QPoint p) { return other.pixel(p) == before.pixel(p); };
                int k = 0;
                while (k < side * side && same(here + QPoint(k % side - reach, k / side - reach)))
                    ++k;
                far += k == side * side;
            }
            return std::pair(drawn, far);
        };
        const auto [drawn, far] = farFrom(spans->Image(), lines->Image());
        const auto [wanted, missing] = farFrom(lines->Image(), spans->Image());
        EXPECT_LE(missing, wanted / 20) << ratio;
        EXPECT_LE(far, drawn / 20) << ratio;
        EXPECT_GT(drawn, 2000 * ratio) << ratio;
    }
}

TEST(Plot, DenseScreenDrawsTheSamePlotFinerAndAReferenceInItsOwnColours) {
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    const auto plot = Painted(made, {}, 2.0);
    const QImage image = plot->Image();
    EXPECT_EQ(image.size(), QSize(2 * Width, 2 * Height));
    EXPECT_EQ(plot->Layout().PlotRight, 1220);
    for (int k = 0; k < 4; ++k) {
        EXPECT_EQ(image.pixel(2 * 1210 - k % 2, 2 * 225 - k / 2), Pixel(Black));
        EXPECT_LT(qGreen(image.pixel(2 * 640 - k % 2, 2 * 237 - k / 2)), 60);  // smooth, red
    }
    const QRgb colour = Pixel(ReferenceColours[1]);  // of the 10 dB magnitude
    EXPECT_EQ(CountPixels(image, colour), 0);
    const ButterworthResponse reference = MakeButterworth(SweepType::OneDecade, 0.5);
    plot->PaintContent({made.Design, {}, {made.Layer(), reference.Layer(true)}, {}}, Placement);
    EXPECT_GT(CountPixels(plot->Image(), colour), 300);
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
                                {0, TableTop(size, calculation->Design), 0});
        }
    });
    PlotContent content =
        ContentOf(calculation->Design, inputs.Traces(), calculation->Quantities, {});
    window.FinishOverlay(content);
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
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    const ButterworthResponse reference = MakeButterworth(SweepType::OneDecade, 0.5);
    const PlotContent content{made.Design, {}, {made.Layer(), reference.Layer(true)}, {}};
    const QSize size(1000, 700);
    const auto painted = [&](const char* name) {
        return QByteArray::fromStdString(PaintPlotFile(name, size, content, QFont()).Bytes);
    };
    const QImage png = QImage::fromData(painted("plot.PNG"));
    EXPECT_EQ(png.size(), size);
    for (const TraceColours& colours : {CurrentColours, ReferenceColours})
        EXPECT_GT(CountPixels(png, Pixel(colours[1])), 100);
    EXPECT_EQ(QSvgRenderer(painted("plot.svg")).viewBox().size(), size);
    EXPECT_TRUE(painted("plot.pdf").trimmed().endsWith("%%EOF"));
    EXPECT_EQ(PaintPlotFile("a.gif", size, content, QFont()).Error,
              "cannot write a.gif: a plot is a .png, .svg or .pdf file");
    EXPECT_EQ(PaintPlotFile("a.png", QSize(1 << 20, 1 << 20), content, QFont()).Error,
              "cannot write a.png: no memory for a picture of 1048576 x 1048576 pixels");
}

}  // namespace
}  // namespace ladderwise
