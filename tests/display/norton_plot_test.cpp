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
                                       [name = name](const PlotText& t) { return t.Text == name; });
        ASSERT_NE(text, plot.Texts.end()) << name;
        EXPECT_NEAR(text->X + 8, plot.Points[column].X, 1) << name;
        EXPECT_GT(text->Y, bottom) << name;
    }
    EXPECT_EQ(std::count_if(plot.Texts.begin(), plot.Texts.end(),
                            [](const PlotText& t) { return t.Text == "2 values cannot be built"; }),
              1);
}

// 1 to 100 pF and 1 to 100 nH: two decades each, a hundred of whose steps are the height.
TEST(NortonValuePlot, LinesAndMarksOfTheScalesStandAtTheirValues) {
    NortonResult result;
    result.NortonCapCount = 4;
    result.NortonIndCount = 3;
    result.Capacitors = {1e-12, 3e-12, -20e-12, 100e-12};
    result.Inductors = {100e-9, 1e-9, 10e-9};
    const int wide = 800;
    for (const int high : {400, 160}) {
        const NortonValuePlot plot =
            BuildNortonValuePlot(result, {{"C1", "C2", "C3", "C4"}, {"L1", "L2", "L3"}}, "A title",
                                 wide, high, eightPixelLetters);
        const PlotRect& frame = plot.Border;
        const int right = frame.Left + frame.Width, bottom = frame.Top + frame.Height;
        EXPECT_EQ(frame.Left, wide - right);
        EXPECT_TRUE(frame.Left > 48 && frame.Left < 70);  // "100 pF" stands in the margin
        EXPECT_TRUE(frame.Top > 28 && high - bottom > 42 && frame.Height > high / 3);
        const auto yOf = [&](double pico) { return bottom - std::log10(pico) / 2 * frame.Height; };
        const auto xOf = [&](double column) {
            return frame.Left + (column + 0.5) * frame.Width / 4;
        };
        std::vector<double> minor, major, columns, joins;
        for (const PlotLine& line : plot.Lines) {
            const bool horizontal = line.Y1 == line.Y2 && line.X1 == frame.Left && line.X2 == right;
            if (line.Colour == CapacitorColour || line.Colour == InductorColour) {
                joins.push_back((line.X1 + line.X2) / 2.0);
                for (const auto& [x, y] : {std::pair{line.X1, line.Y1}, {line.X2, line.Y2}})
                    EXPECT_TRUE(std::any_of(
                        plot.Points.begin(), plot.Points.end(), [&, x = x, y = y](const auto& p) {
                            return p.X == x && p.Y == y && p.Colour == line.Colour;
                        }));
            } else if (horizontal) {
                (line.Colour == GridColour ? major : minor).push_back(line.Y1);
            } else {
                EXPECT_TRUE(line.X1 == line.X2 && line.Y1 == bottom && line.Y2 == frame.Top);
                columns.push_back(line.X1);
            }
        }
        // C1 to C2 and the coils; C3 cannot be built, so no line leads to C4.
        ASSERT_EQ(joins.size(), 3u);
        for (std::size_t n = 0; n < joins.size(); ++n)
            EXPECT_NEAR(joins[n], xOf(n == 2 ? 1.5 : 0.5), 1) << n;
        ASSERT_EQ(major.size(), 1u);
        EXPECT_NEAR(major[0], yOf(10), 1);
        ASSERT_EQ(minor.size(), high == 400 ? 16u : 0u);
        for (std::size_t n = 0; n < minor.size(); ++n)
            EXPECT_NEAR(minor[n], yOf((n < 8 ? 1 : 10) * (2.0 + n % 8)), 1) << n;
        ASSERT_EQ(columns.size(), 4u);
        for (int n = 0; n < 4; ++n)
            EXPECT_NEAR(columns[n], xOf(n), 1);
        // Every text at its place: centred (0), or with its left (-1) or right (1) end there.
        struct Placed {
            const char* Text;
            int Side;
            double X, Y;  // of the middle of its line
            PlotColour Colour;
        };
        const Placed texts[] = {{"1 pF", 1, frame.Left - 5.0, yOf(1), CapacitorColour},
                                {"10 pF", 1, frame.Left - 5.0, yOf(10), CapacitorColour},
                                {"100 pF", 1, frame.Left - 5.0, yOf(100), CapacitorColour},
                                {"1 nH", -1, right + 5.0, yOf(1), InductorColour},
                                {"10 nH", -1, right + 5.0, yOf(10), InductorColour},
                                {"100 nH", -1, right + 5.0, yOf(100), InductorColour},
                                {"A title", 0, wide / 2.0, 9, Black},
                                {"Capacitors", -1, 1.0 * frame.Left, 25, CapacitorColour},
                                {"Inductors", 1, 1.0 * right, 25, InductorColour},
                                {"1 value cannot be built", 0, wide / 2.0, 25, UnrealisableColour},
                                {"C2", 0, xOf(1), bottom + 12.0, CapacitorColour},
                                {"L3", 0, xOf(2), bottom + 26.0, InductorColour},
                                {"Parts from source to load", 0, wide / 2.0, bottom + 40.0, Black}};
        for (const Placed& placed : texts) {
            const auto text =
                std::find_if(plot.Texts.begin(), plot.Texts.end(),
                             [&](const PlotText& one) { return one.Text == placed.Text; });
            ASSERT_NE(text, plot.Texts.end()) << placed.Text;
            const double width = 8.0 * text->Text.size();
            EXPECT_NEAR(text->X + (1 + placed.Side) / 2.0 * width, placed.X, 1) << placed.Text;
            EXPECT_NEAR(text->Y + 7, placed.Y, 2) << placed.Text;
            EXPECT_EQ(text->Colour, placed.Colour) << placed.Text;
        }
    }
    // A scale of many decades has marks as far as there is room, one of none a decade.
    result.Inductors = {1e-15, 1.0, 1e-3};
    const NortonValuePlot crowded =
        BuildNortonValuePlot(result, {}, "", wide, 200, eightPixelLetters);
    EXPECT_EQ(crowded.InductorScale.High, 0);
    EXPECT_EQ(crowded.InductorScale.Low, -12);  // the topmost ones
    EXPECT_EQ(crowded.CapacitorScale.High - crowded.CapacitorScale.Low, 12);
    int marks = 0;
    for (const PlotText& text : crowded.Texts)
        marks += text.X > crowded.Border.Left + crowded.Border.Width;
    EXPECT_TRUE(marks > 3 && marks * 14 <= crowded.Border.Height + 14) << marks;
    EXPECT_EQ(ScaleOf({}).High - ScaleOf({}).Low, 1);
    const double zero[] = {0.0, 0.0}, one[] = {0.0, 1e-12, std::nan("")};
    EXPECT_EQ(ScaleOf(zero).Low, -12);
    EXPECT_EQ(ScaleOf(one).Low, -12);
    EXPECT_EQ(ScaleOf(one).High, -11);
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
