// The painted plot: overlays, dense screens, and the exported files.
#include <gtest/gtest.h>

#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <random>

#include "analysis/BoardDraws.h"
#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "display/MarkerTable.h"
#include "display/Plot.h"
#include "display/PlotExport.h"
#include "display/ReadOuts.h"
#include "tests/Picture.h"
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

/// The levels that the worst case's own draws have at a frequency, by the reference analysis and
/// without anything that the plot collects, ascending. Of 61 runs numbers 3 and 57 are the 5 and
/// 95 % ones.
std::vector<double> LevelsOfRuns(const Calculation& calculation, double f, bool reflected) {
    const auto design = std::make_unique<FilterDesign>(calculation.Design);
    design->NominalElements = design->Elements;
    std::mt19937 generator(calculation.WorstCase.Seed);
    std::vector<double> levels;
    for (int run = 0; run < calculation.WorstCase.Runs; ++run) {
        RandomiseParts(*design, generator);
        const LadderPoint point = AnalysePoint(*design, design->F0, f);
        levels.push_back(20.0 *
                         std::log10(std::abs(reflected ? point.Reflection : point.Transfer)));
    }
    std::sort(levels.begin(), levels.end());
    return levels;
}

TEST(PlotBands, LieWhereTheRunsAreAndAreRead) {
    const auto calculation = std::make_unique<Calculation>();
    DesignInputs& inputs = calculation->Inputs;
    inputs.Choice(ChoiceId::WorstCase) = 1;
    inputs.Choice(ChoiceId::TraceReturnLoss) = 1;
    inputs.Choice(ChoiceId::Overlay) = static_cast<int>(OverlayLook::Bands);
    inputs.Box(InputId::WorstCaseSims).Type("61");
    calculation->FixedSeed = 11;
    BandCollector collector;
    collector.Begin(inputs.Traces());
    const auto plot = std::make_unique<Plot>();
    plot->Resize(Width, Height);
    Calculate(*calculation, {}, [&](const AnalysedRun& run) {
        const PlotTraces traces = TracesOf(run.Quantities, run.Response);
        if (run.Number == 0)
            return plot->PaintContent(
                ContentOf(calculation->Design, inputs.Traces(), run.Quantities, {}), Placement);
        plot->PaintOverlay(traces);
        collector.Take(traces);
    });
    const FilterDesign& design = calculation->Design;
    PlotContent content = ContentOf(design, inputs.Traces(), calculation->Quantities, {});
    content.WorstCaseRuns = calculation->WorstCase.Runs;
    content.Bands =
        std::make_shared<const TraceBands>(collector.Finish(content.Layers.front().Values));
    plot->FinishOverlay(content);
    const PlotLayout& layout = plot->Layout();
    // Near black a pixel from where each line has to be; the dashes leave a part of the columns.
    const auto isDark = [&](int x, double level) {
        const double y = layout.PlotTop + (10.0 - level) / 100.0 * layout.PlotHeight;
        for (int row = qRound(y) - 1; row <= qRound(y) + 1; ++row)
            if (qGray(plot->Image().pixel(x, row)) < 70) return true;
        return false;
    };
    std::array<int, 4> dark{};
    int between = 0, columns = 0;
    for (int i = 40; i < 200; i += 4, ++columns) {
        const int x = layout.PlotLeft + qRound(i * layout.PlotWidth / double(NumSweepPoints));
        const auto levels = LevelsOfRuns(*calculation, design.SweepFreqs[i], true);
        ASSERT_GT(levels[57] - levels[3], 3.0);
        const double lines[] = {levels.front(), levels[3], levels[57], levels.back()};
        for (std::size_t line = 0; line < dark.size(); ++line)
            dark[line] += isDark(x, lines[line]);
        between += isDark(x, 0.25 * levels[3] + 0.75 * levels[57]);
    }
    EXPECT_GE(dark[0], columns - 1);
    EXPECT_GE(dark[3], columns - 1);
    for (const int line : {1, 2}) {
        EXPECT_GT(dark[line], columns / 3) << line;
        EXPECT_LT(dark[line], columns) << line;
    }
    EXPECT_LT(between, columns / 3);  // no runs, but the design in hand and the grid may be there
    // At the cursor and at a marker the same is read.
    constexpr int at = 700;
    const auto levels = LevelsOfRuns(*calculation, design.SweepFreqs[at], false);
    const auto range = [](double low, double high) {
        return QString("%1 \u2026 %2 dB").arg(low, 0, 'f', 2).arg(high, 0, 'f', 2).toStdString();
    };
    const std::string most = range(levels[3], levels[57]);
    const std::string all = range(levels.front(), levels.back());
    const auto read = ReadCursor(at, 300, SweepOf(content, layout, plot->Scales()), content.Layers,
                                 {}, content.Bands.get());
    EXPECT_NE(read.Traces[0].Text.Text.find(" (5\u201395 %: " + most + "; all runs: " + all + ")"),
              std::string::npos)
        << read.Traces[0].Text.Text;
    content.Markers.FreqMarkerCount = 1;
    content.Markers.FreqMarkers[1] = design.SweepFreqs[at];
    const auto rows = BuildMarkerTable(content);
    ASSERT_EQ(rows.size(), 6u);
    EXPECT_EQ(rows[1].OfDesign, most);
    EXPECT_EQ(rows[2].OfDesign, all);
    EXPECT_NE(rows[1].Name.find(", Mag, 5\u201395 %"), std::string::npos) << rows[1].Name;
}

// A phase counts from that of the design: what turns over the edge stays beside it.
TEST(PlotBands, APhaseKeepsTogetherOverItsEdge) {
    const std::vector<double> nominal(4, 179.0);
    BandCollector collector;
    collector.Begin({false, false, true, false, false, false});
    for (const double phase : {170.0, 175.0, 179.0, -178.0, -171.0}) {
        const std::vector<double> run{phase, phase, BlankMarker, phase};
        collector.Take({{}, run, {}, {}, {}});
    }
    const TraceBands bands = collector.Finish({{}, nominal, {}, {}, {}});
    const auto of = [&](BandLine line) { return bands.Line(line).PhaseDeg; };
    EXPECT_NEAR(of(BandLine::Lowest)[0], 170.0, 1e-4);
    EXPECT_NEAR(of(BandLine::Highest)[3], -171.0, 1e-4);
    EXPECT_NEAR(of(BandLine::High)[1], -172.4, 1e-4);  // 0.8 of the way from -178
    EXPECT_TRUE(std::isnan(of(BandLine::Low)[2]));
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
    // The runs of a worst case stand over the grid as a picture of their own.
    FilterDesign design = made.Design;
    design.Overlay = OverlayLook::Runs;
    PlotContent worst{design, {}, {made.Layer()}, {}};
    worst.Overlays.push_back(reference.Traces());
    const auto drawn = [&](const PlotContent& shown) {
        QImage image(size, QImage::Format_RGB32);
        image.fill(Qt::white);
        QPainter painter(&image);
        const std::string svg = PaintPlotFile("a.svg", size, shown, QFont()).Bytes;
        QSvgRenderer(QByteArray::fromStdString(svg)).render(&painter, QRectF(image.rect()));
        return Picture(image, QFont());
    };
    const auto gridLines = [&](const PlotContent& shown) {
        const Picture picture = drawn(shown);
        int lines = 0;
        bool before = false;
        for (int y = 200; y < 500; ++y) {
            const bool line = picture.Ink(QRect(100, y, 300, 1), QColor(234, 234, 234), 8) < 60;
            lines += line && !before;
            before = line;
        }
        return lines;
    };
    EXPECT_GE(gridLines(content), 4);
    EXPECT_EQ(gridLines(worst), gridLines(content));
    EXPECT_TRUE(painted("plot.pdf").trimmed().endsWith("%%EOF"));
    EXPECT_EQ(PaintPlotFile("a.gif", size, content, QFont()).Error,
              "cannot write a.gif: a plot is a .png, .svg or .pdf file");
    EXPECT_EQ(PaintPlotFile("a.png", QSize(1 << 20, 1 << 20), content, QFont()).Error,
              "cannot write a.png: no memory for a picture of 1048576 x 1048576 pixels");
}

}  // namespace
}  // namespace ladderwise
