// Limits on the plot: the ink of their edges at the pixels that the axes give, what the mouse takes
// hold of, and what a drag makes of it.
#include <gtest/gtest.h>

#include <QImage>
#include <cmath>
#include <memory>

#include "display/AnnotationPainter.h"
#include "display/Annotations.h"
#include "display/PlotExport.h"
#include "display/PlotPainter.h"
#include "pipeline/LimitMargins.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {
namespace {

const TextMetrics LimitMetrics{
    [](const std::string& text) { return 6 * static_cast<int>(text.size()); }, 13};
constexpr LimitKind StopKind = LimitKind::AttenMin, PassKind = LimitKind::AttenMax;

/// A plot of 1120 x 380 pixels, 100 dB or 10 dB high.
struct LimitScene {
    Calculation Shown;
    PlotLayout Layout = ComputePlotLayout({1280, 800, 150, 701}, {});
    TraceChoices Choices{};
    LimitLines Lines;

    explicit LimitScene(const char* sweep, LimitLines lines) : Lines(std::move(lines)) {
        for (const auto& [name, value] : {std::pair{"sweep", sweep}, {"f0", "100"}})
            EXPECT_EQ(ApplySetting(Shown, name, value, {}), std::nullopt);
        Calculate(Shown, {});
    }
    PlotContent Content() const {
        PlotContent content = ContentOf(Shown.Design, Choices, Shown.Quantities, {});
        content.Limits = JudgeLimits(Shown.Design, Lines);
        return content;
    }
    PlotScales Scales() const { return ScalesOf(Shown.Design); }
    std::vector<LimitEdge> Edges() const { return BuildLimitEdges(Content(), Layout, Scales()); }
    double XOf(double f) const {
        const double f1 = Shown.Design.SweepF1, f2 = Shown.Design.SweepF2;
        const double share = Shown.Design.SweepType == SweepType::Linear
                                 ? (f - f1) / (f2 - f1)
                                 : std::log(f / f1) / std::log(f2 / f1);
        return Layout.PlotLeft + share * Layout.PlotWidth;
    }
    /// Of a share of the height from the top.
    double YOf(double share) const { return Layout.PlotTop + share * Layout.PlotHeight; }
    double DelayY(double delay) const {
        return Layout.PlotBottom - delay / Scales().GDFullScale * Layout.PlotHeight;
    }
    LimitLine Dragged(const LimitGrip& grip, int dx, int dy) const {
        return DraggedLimit({grip, Content().Limits.Rows[grip.Edge.Limit], dx, dy}, Shown.Design,
                            Layout, Scales());
    }
};

QImage Painted(const LimitEdge& edge) {
    QImage image(1280, 800, QImage::Format_RGB32);
    image.fill(Qt::white);
    QPainter painter(&image);
    PaintLimits(painter, {edge});
    return image;
}

/// Rows of ink in the column x of an edge painted alone, from .. to; -1: none.
std::pair<int, int> InkIn(const QImage& image, int x) {
    int first = -1, last = -1;
    for (int y = 0; y < image.height(); ++y) {
        if (qGray(image.pixel(x, y)) > 128) continue;
        if (first < 0) first = y;
        last = y;
    }
    return {first, last};
}

TEST(LimitPlot, EdgesLieWhereTheirAxisSays) {
    for (const char* sweep : {"linear", "1-decade", "3-octaves"}) {
        LimitScene scene(sweep, {{StopKind, 120e6, 150e6, 33.0},
                                 {PassKind, 0.0, 80e6, 1.0},
                                 {LimitKind::ReturnLossMin, 60e6, 90e6, 21.5},
                                 {LimitKind::DelayVariationMax, 60e6, 90e6, 1e-9}});
        scene.Choices.ReturnLoss = scene.Choices.GroupDelay = scene.Choices.Mag1dB = true;
        scene.Layout = ComputePlotLayout({1280, 800, 150, 701}, scene.Choices);
        const LimitMargin delay = scene.Content().Limits.Rows[3];
        // 10 dB at the top of a scale of 100 dB, 1 dB at that of 10 dB: 33 dB lie below the latter.
        const struct {
            double Y, From, To;
            bool Above;
        } expected[] = {{scene.YOf(0.43), 120e6, 150e6, true},
                        {scene.YOf(0.11), scene.Shown.Design.SweepF1, 80e6, false},
                        {scene.YOf(0.2), scene.Shown.Design.SweepF1, 80e6, false},
                        {scene.YOf(0.315), 60e6, 90e6, true},
                        {scene.DelayY(delay.Middle + 0.5e-9), 60e6, 90e6, true},
                        {scene.DelayY(delay.Middle - 0.5e-9), 60e6, 90e6, false}};
        const std::vector<LimitEdge> edges = scene.Edges();
        ASSERT_EQ(edges.size(), std::size(expected)) << sweep;
        for (std::size_t i = 0; i < edges.size(); ++i) {
            const auto& [y, from, to, above] = expected[i];
            const QImage image = Painted(edges[i]);
            const double left = scene.XOf(from), right = scene.XOf(to);
            // Between two hatches nothing but the edge, on its forbidden side.
            int thinnest = 100, at = 0;
            for (int x = static_cast<int>(left) + 9; x < right - 9; ++x) {
                const auto [first, last] = InkIn(image, x);
                ASSERT_GE(first, 0) << sweep << i;
                const double edge = above ? last : first;
                ASSERT_NEAR(edge, y, 0.51) << sweep << i << " " << x;
                if (last - first < thinnest) thinnest = last - first, at = x;
            }
            EXPECT_LE(thinnest, 4) << at;
            EXPECT_EQ(InkIn(image, static_cast<int>(left) - 3).first, -1);
            EXPECT_EQ(InkIn(image, static_cast<int>(right) + 3).first, -1);
        }
        scene.Choices.ReturnLoss = scene.Choices.GroupDelay = scene.Choices.Mag10dB = false;
        EXPECT_EQ(scene.Edges().size(), 1u);
    }
    // Beyond the sweep or the scale there is nothing; one frequency is a few pixels.
    EXPECT_TRUE(LimitScene("1-octave", {{StopKind, 2e9, 3e9, 50}}).Edges().empty());
    EXPECT_TRUE(LimitScene("1-octave", {{StopKind, 1e8, 1.2e8, 95}}).Edges().empty());
    const LimitScene point("1-octave", {{StopKind, 12e7, 12e7, 50}});
    ASSERT_EQ(point.Edges().size(), 1u);
    EXPECT_NEAR(0.5 * (point.Edges()[0].Left + point.Edges()[0].Right), point.XOf(12e7), 0.51);
}

TEST(LimitPlot, LegendAndLabelsKeepOffTheEdges) {
    LimitScene scene("1-decade", {{StopKind, 200e6, 900e6, 5.0}});
    const auto work = std::make_unique<TracePoints>();
    const PlotAnnotations drawn =
        BuildAnnotations(scene.Content(), scene.Layout, scene.Scales(), LimitMetrics, *work);
    ASSERT_EQ(drawn.Limits.size(), 1u);
    const LimitEdge& edge = drawn.Limits[0];
    const PlotRect& key = drawn.Key.Box;
    EXPECT_FALSE(key.Top <= edge.Y && key.Top + key.Height >= edge.Y && key.Left < edge.Right &&
                 key.Left + key.Width > edge.Left);
    std::string text;
    for (const PlotText& label : drawn.Markers.Labels)
        if (label.Text.find("5 dB: ") != std::string::npos) text = label.Text;
    // A third-order Butterworth response loses 10 log10(1 + 2^6) dB an octave above its corner.
    EXPECT_EQ(text, "atten \u2265 5 dB: holds by 13.13 dB");
}

TEST(LimitPlot, FilesShowThem) {
    const LimitScene scene("1-decade", {{StopKind, 200e6, 400e6, 25.0}});
    const QSize size(1280, 800);
    QImage image(size, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintPlot(painter, size, scene.Content(), QFont());
    painter.end();
    const PlotLayout layout = ComputePlotLayout(
        {size.width(), size.height(), 0, TableTop(size, scene.Shown.Design), 0}, {});
    const std::vector<LimitEdge> edges = BuildLimitEdges(scene.Content(), layout, scene.Scales());
    ASSERT_EQ(edges.size(), 1u);
    EXPECT_NEAR(edges[0].Y, layout.PlotTop + 0.35 * layout.PlotHeight, 0.51);
    for (int x = edges[0].Left; x <= edges[0].Right; ++x)
        ASSERT_EQ(image.pixel(x, edges[0].Y), ToQColor(edges[0].Colour).rgb()) << x;
}

TEST(LimitPlot, DragsMoveWhatTheMouseHolds) {
    LimitScene scene("linear", {{StopKind, 120e6, 150e6, 33.0},
                                {LimitKind::DelayVariationMax, 60e6, 90e6, 1e-9}});
    scene.Choices.GroupDelay = true;
    scene.Layout = ComputePlotLayout({1280, 800, 150, 701}, scene.Choices);
    const std::vector<LimitEdge> edges = scene.Edges();
    ASSERT_EQ(edges.size(), 3u);
    const LimitEdge& edge = edges[0];
    const auto grip = [&](int x, int y) { return GripAt(edges, x, y); };
    const int middle = (edge.Left + edge.Right) / 2;
    const auto value = grip(middle, edge.Y + 3), from = grip(edge.Left - 3, edge.Y),
               to = grip(edge.Right + 3, edge.Y - 2);
    ASSERT_TRUE(value && from && to);
    EXPECT_FALSE(grip(middle, edge.Y + 8) || grip(edge.Left - 9, edge.Y));
    EXPECT_EQ(value->Part, LimitGripPart::Value);
    // A tenth of the height is 10 dB; up is less attenuation.
    const int tenth = scene.Layout.PlotHeight / 10;
    EXPECT_NEAR(scene.Dragged(*value, 500, -tenth).Value, 23.0, 0.21);
    EXPECT_NEAR(scene.Dragged(*value, 0, 2 * tenth).Value, 53.0, 0.21);
    EXPECT_GT(scene.Dragged(*value, 0, -9 * tenth).Value, 0.0);  // still a limit
    EXPECT_EQ(scene.Dragged(*value, 500, 0), scene.Lines[0]);
    const double pixel =
        (scene.Shown.Design.SweepF2 - scene.Shown.Design.SweepF1) / scene.Layout.PlotWidth;
    EXPECT_NEAR(scene.Dragged(*from, 40, 99).From, 120e6 + 40 * pixel, pixel);
    EXPECT_EQ(scene.Dragged(*from, 40, 99).Value, 33.0);
    EXPECT_EQ(scene.Dragged(*from, 4000, 0).From, 150e6);  // no further than its other end
    EXPECT_NEAR(scene.Dragged(*to, -40, 0).To, 150e6 - 40 * pixel, pixel);
    // The edges of a delay variation go apart together, either one dragged.
    const double perPixel = scene.Scales().GDFullScale / scene.Layout.PlotHeight;
    for (const std::size_t k : {1u, 2u})
        EXPECT_NEAR(
            scene.Dragged({edges[k], LimitGripPart::Value}, 0, edges[k].ForbidsAbove ? -30 : 30)
                .Value,
            1e-9 + 60 * perPixel, perPixel);
}

}  // namespace
}  // namespace ladderwise
