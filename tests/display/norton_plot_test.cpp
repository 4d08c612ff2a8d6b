// The value plot of a Norton-transformed ladder: scales, places and marks, without a window.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cmath>

#include "display/NortonValuePainter.h"
#include "display/NortonValuePlot.h"
#include "display/PlotPainter.h"

namespace ladderwise {
namespace {

const TextMetrics eightPixelLetters{
    [](const std::string& text) { return 8 * static_cast<int>(text.size()); }, 14};

TEST(NortonValuePlot, MarksStandAtTheirValues) {
    NortonResult result;
    result.NortonCapCount = 4;
    result.NortonIndCount = 2;
    result.Capacitors = {0.0, 1e-12, -100e-12, std::nan("")};
    result.Inductors = {1e-9, std::sqrt(10.0) * 1e-9};
    const NortonValuePlot plot = BuildNortonValuePlot(
        result, {{"C1", "C4", "C6", "C7"}, {"L2", "L3"}}, "title", 800, 400, eightPixelLetters);
    const int top = plot.Border.Top, bottom = top + plot.Border.Height;
    const std::pair<ValueMark, int> wanted[] = {{ValueMark::LeftOut, bottom},
                                                {ValueMark::Capacitor, bottom},
                                                {ValueMark::Unrealisable, top},
                                                {ValueMark::Unrealisable, top},
                                                {ValueMark::Inductor, (top + bottom) / 2},
                                                {ValueMark::Inductor, (3 * top + bottom) / 4}};
    ASSERT_EQ(plot.Points.size(), std::size(wanted));
    for (std::size_t k = 0; k < std::size(wanted); ++k) {
        EXPECT_EQ(plot.Points[k].Mark, wanted[k].first) << k;
        EXPECT_NEAR(plot.Points[k].Y, wanted[k].second, 1) << k;
        EXPECT_EQ(plot.Points[k].X, plot.Points[k % 4].X) << k;
    }
    EXPECT_EQ(std::count_if(plot.Texts.begin(), plot.Texts.end(),
                            [](const PlotText& t) { return t.Text == "0"; }),
              1);
    // Every part is named below its mark.
    const std::pair<const char*, int> names[] = {{"C1", 0}, {"C7", 3}, {"L2", 0}, {"L3", 1}};
    for (const auto& [name, column] : names) {
        const auto text = std::find_if(plot.Texts.begin(), plot.Texts.end(),
                                       [&](const PlotText& t) { return t.Text == name; });
        ASSERT_NE(text, plot.Texts.end()) << name;
        EXPECT_NEAR(text->X + 8, plot.Points[column].X, 1) << name;
        EXPECT_GT(text->Y, bottom) << name;
    }
    EXPECT_EQ(std::count_if(plot.Texts.begin(), plot.Texts.end(),
                            [](const PlotText& t) { return t.Text == "2 values cannot be built"; }),
              1);
}

// What cannot be built is crossed out.
TEST(NortonValuePlot, MarksAreInked) {
    NortonResult result;
    result.NortonCapCount = result.NortonIndCount = 2;
    result.Capacitors = {1e-12, -100e-12};
    result.Inductors = {1e-9, 2e-9};
    const NortonValuePlot plot = BuildNortonValuePlot(result, {{"C1", "C4"}, {"L2", "L3"}}, "title",
                                                      800, 400, eightPixelLetters);
    QImage image(800, 400, QImage::Format_RGB32);
    QPainter painter(&image);
    PaintNortonValuePlot(painter, plot, image.size());
    painter.end();
    for (const ValuePoint& point : plot.Points) {
        const int reach = ValueMarkSize / 2 - 1;
        const bool crossed = point.Mark == ValueMark::Unrealisable;
        const QColor ink = crossed ? QColor(176, 0, 0) : ToQColor(point.Colour);
        for (const auto& [x, y] :
             {std::pair{0, 0}, {-reach, -reach}, {reach, -reach}, {-reach, reach}, {reach, reach}})
            if (crossed || (x == 0 && y == 0)) {
                const QColor seen = image.pixelColor(point.X + x, point.Y + y);
                EXPECT_NEAR(seen.red(), ink.red(), 20) << x << " " << y;
                EXPECT_NEAR(seen.green(), ink.green(), 60) << x << " " << y;
            }
    }
}

// Marks of both kinds stand on each other, on three scales; the plot is low or high.
TEST(NortonValuePlot, NoTextLiesOnAnother) {
    for (const int height : {300, 900})
        for (const double most : {5.0, 5e3, 5e9}) {
            NortonResult result;
            result.Capacitors = {2e-12, 3e-12, most * 1e-12};
            result.Inductors = {2e-9, 3e-9, most * 1e-9};
            result.NortonCapCount = result.NortonIndCount = 3;
            const NortonValuePlot plot =
                BuildNortonValuePlot(result, {{"C1", "C2", "C3"}, {"L1", "L2", "L3"}}, "title", 800,
                                     height, eightPixelLetters);
            int atTop = 0, atBottom = 0;
            for (std::size_t i = 0; i < plot.Texts.size(); ++i) {
                const PlotText& a = plot.Texts[i];
                const bool outside = a.X < plot.Border.Left || a.X > 800 - plot.Border.Left;
                atTop += outside && a.Y == plot.Border.Top - 7;
                atBottom += outside && a.Y == plot.Border.Top + plot.Border.Height - 7;
                for (std::size_t j = i + 1; j < plot.Texts.size(); ++j) {
                    const PlotText& b = plot.Texts[j];
                    const int endOfA = a.X + 8 * static_cast<int>(a.Text.size());
                    const int endOfB = b.X + 8 * static_cast<int>(b.Text.size());
                    EXPECT_FALSE(a.X < endOfB && b.X < endOfA && std::abs(a.Y - b.Y) < 14)
                        << height << " " << most << ": " << a.Text << " and " << b.Text;
                }
            }
            EXPECT_EQ(atBottom, 2) << most;
            EXPECT_EQ(atTop, 2) << most;
            // Amid a high plot each of the two stands at its mark.
            for (const char* const value :
                 {"3.00 pF", "3.00 nH", "title", "Parts from source to load"}) {
                const auto text = std::find_if(plot.Texts.begin(), plot.Texts.end(),
                                               [&](const PlotText& t) { return t.Text == value; });
                ASSERT_NE(text, plot.Texts.end());
                const int away = std::abs(text->Y + 7 - plot.Points[1].Y);
                const bool isValue = value[0] == '3';
                EXPECT_TRUE(away < 14 || height == 300 || !isValue) << value << " " << away;
            }
        }
}

}  // namespace
}  // namespace ladderwise
