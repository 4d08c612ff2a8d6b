// What the painted plot shows, against plain numbers: a three-pole Butterworth low-pass in closed
// form, the frequencies of its sweeps and the scales of its axes. Texts are found by their ink.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>

#include "display/Plot.h"
#include "numbers/Formatfunctions.h"
#include "tests/Picture.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr double F0 = 200e6;  // Hz
const QSize size(1280, 800);
constexpr PlotPlacement placement{150, 701, 0};
// The plot's frame, without and with a second column of marks on its left, and with a time axis.
const QRect plain(QPoint(60, 185), QPoint(1220, 585));

struct Axis {
    SweepType Sweep;
    double First, Last;  ///< Hz
    std::vector<std::pair<double, const char*>> Labels;
};
const Axis axes[] = {
    {SweepType::Linear,
     0.0,
     400e6,
     {{0.0, "1.00 Hz"}, {120e6, "120 MHz"}, {200e6, "200 MHz"}, {400e6, "400 MHz"}}},
    {SweepType::OneOctave,
     100e6,
     400e6,
     {{100e6, "100 MHz"}, {200e6, "200 MHz"}, {400e6, "400 MHz"}}},
    {SweepType::TwoOctaves,
     50e6,
     800e6,
     {{50e6, "50.0 MHz"}, {100e6, "100 MHz"}, {400e6, "400 MHz"}, {800e6, "800 MHz"}}},
    {SweepType::ThreeOctaves,
     25e6,
     1600e6,
     {{25e6, "25.0 MHz"}, {50e6, "50.0 MHz"}, {800e6, "800 MHz"}, {1600e6, "1.60 GHz"}}},
    {SweepType::OneDecade,
     20e6,
     2000e6,
     {{20e6, "20.0 MHz"}, {100e6, "100 MHz"}, {40e6, "40.0 MHz"}, {2000e6, "2.00 GHz"}}},
    {SweepType::TwoDecades,
     2e6,
     20e9,
     {{2e6, "2.00 MHz"}, {20e6, "20.0 MHz"}, {2e9, "2.00 GHz"}, {20e9, "20.0 GHz"}}}};

double FrequencyAt(const Axis& axis, double share) {
    return axis.Sweep == SweepType::Linear ? axis.First + share * (axis.Last - axis.First)
                                           : axis.First * std::pow(axis.Last / axis.First, share);
}
double ShareOf(const Axis& axis, double f) {
    return axis.Sweep == SweepType::Linear
               ? (f - axis.First) / (axis.Last - axis.First)
               : std::log(f / axis.First) / std::log(axis.Last / axis.First);
}

double LevelDb(double f) {
    return -10.0 * std::log10(1.0 + std::pow(f / F0, 6));
}

/// A trace as a user knows it: its colour, what its legend says, and how far down the plot it is (0
/// at the top line, 1 at the bottom one) at a frequency.
struct Trace {
    bool TraceChoices::*Choice;
    QColor Colour;
    const char* Legend;
    std::function<double(double)> Down;
};
const Trace traces[] = {
    {&TraceChoices::Mag10dB, QColor(255, 0, 0), "Mag 10 dB/div",
     [](double f) { return (10.0 - LevelDb(f)) / 100.0; }},
    {&TraceChoices::Mag1dB, QColor(128, 0, 0), "Mag 1 dB/div",
     [](double f) { return (1.0 - LevelDb(f)) / 10.0; }},
    {&TraceChoices::Phase, QColor(0, 0, 255), "Phase 36\u00b0/div",
     [](double f) {
         const std::complex<double> s(0.0, f / F0);
         return 0.5 - std::arg(1.0 / ((s + 1.0) * (s * s + s + 1.0))) / TwoPi;
     }},
    {&TraceChoices::ReturnLoss, QColor(240, 0, 240), "Return loss 10 dB/div",
     [](double f) {
         const double x = std::pow(f / F0, 6);
         return (10.0 - 10.0 * std::log10(x / (1.0 + x) + 1e-100)) / 100.0;
     }},
    {&TraceChoices::GroupDelay, QColor(0, 96, 0), "Group delay 600 ps/div", [](double f) {
         const double w = f / F0, d = (1 - w * w) * (1 - w * w) + w * w;
         return 1.0 - (1 / (1 + w * w) + (1 + w * w) / d) / (TwoPi * F0) / 6e-9;
     }}};

TraceChoices Only(bool TraceChoices::*chosen) {
    TraceChoices choices{};
    choices.Mag10dB = false;
    choices.*chosen = true;
    return choices;
}

Picture PictureOf(const PlotContent& content, double ratio = 1.0) {
    Plot plot;
    plot.Resize(size.width(), size.height(), ratio);
    plot.ShowPartValues(true);
    plot.PaintContent(content, placement);
    return Picture(plot.Image().copy(), plot.Font());
}

/// The one place of a text within an area.
QRect PlaceOf(const Picture& picture, const QString& text, const QRect& area = {}) {
    const QList<QRect> places = picture.Find(text, Qt::black, area);
    EXPECT_EQ(places.size(), 1) << text.toStdString();
    return places.value(0);
}

// Every column of the plot: ink where the response has it, and none anywhere else.
TEST(Pictures, ATraceRunsWhereItsResponseDoes) {
    for (const Axis& axis : {axes[0], axes[1], axes[5]})
        for (const Trace& trace : traces) {
            SCOPED_TRACE(std::string(trace.Legend) + " " + axis.Labels.front().second);
            const ButterworthResponse made = MakeButterworth(axis.Sweep);
            const Picture picture = PictureOf(made.Content(Only(trace.Choice)));
            QRect legend = PlaceOf(picture, trace.Legend, plain);
            EXPECT_GT(picture.Ink(legend.translated(-28, 0), trace.Colour, 40), 30);
            EXPECT_GT(picture.Ink(QRect(legend.left(), legend.top() - 8, legend.width(), 5),
                                  QColor(128, 128, 128)),
                      9 * legend.width() / 10);  // its frame
            legend.adjust(-40, -8, 8, 8);
            // The read-out at 6 dB, 1 + w^6 = 10^0.6, names its place.
            const QRect dot(qRound(plain.left() + 1160 * ShareOf(axis, 239.87e6)) - 7,
                            qRound(plain.top() + 400 * trace.Down(239.87e6)) - 7, 15, 15);
            QRect label = picture.Find("6 dB Freq = ", trace.Colour, plain).value(0);
            if (trace.Choice == &TraceChoices::Mag10dB || trace.Choice == &TraceChoices::Mag1dB) {
                EXPECT_GT(picture.Ink(dot, trace.Colour), 30);
                EXPECT_TRUE(label.intersects(dot.adjusted(-80, -30, 30, 30)));
            }
            label = label.isEmpty() ? dot : label.adjusted(0, 0, label.width(), 0).united(dot);
            for (int x = plain.left() + 2; x < plain.right() - 1; ++x) {
                double top = 1e9, bottom = -1e9, least = 1e9;
                for (const double at : {-1.6, -0.8, 0.0, 0.8, 1.6}) {
                    const double f = FrequencyAt(axis, (x + at - plain.left()) / 1160.0);
                    const double down = plain.top() + 400.0 * std::clamp(trace.Down(f), 0.0, 1.0);
                    top = std::min(top, down - 1.7);
                    bottom = std::max(bottom, down + 1.7);
                    least = std::min(least, LevelDb(f));
                }
                // Phase and delay are blank below the threshold of 20 dB; the phase turns round.
                const bool blankable = trace.Choice == &TraceChoices::Phase ||
                                       trace.Choice == &TraceChoices::GroupDelay;
                const bool known = !blankable || least > -19.9;
                int ink = 0;
                for (int y = plain.top() + 1; y < plain.bottom(); ++y) {
                    // Between two rows of pixels a line is half as strong in both.
                    ink += picture.Has(x, y, trace.Colour, 125);
                    if (!picture.Has(x, y, trace.Colour, 50) || legend.contains(x, y) ||
                        dot.contains(x, y) || label.contains(x, y))
                        continue;
                    ASSERT_TRUE(y >= top && y <= bottom && (known || least > -20.8))
                        << x << " " << y;
                }
                const bool within = top > plain.top() && bottom < plain.bottom();
                ASSERT_TRUE(ink > 0 || !known || !within || legend.intersects(QRect(x, top, 1, 9)))
                    << x << ": none about " << top;
            }
        }
}

TEST(Pictures, FrequenciesStandBelowTheirPlaces) {
    for (const Axis& axis : axes) {
        const Picture picture = PictureOf(MakeButterworth(axis.Sweep).Content({}));
        for (const auto& [f, text] : axis.Labels) {
            const QRect place = PlaceOf(picture, text, QRect(0, 580, 1280, 60));
            const double share = ShareOf(axis, f), x = plain.left() + share * 1160;
            // Those at the ends begin and end with the plot.
            const double anchor = share <= 0.0   ? place.left()
                                  : share >= 1.0 ? place.right() + 1
                                                 : place.center().x() + 0.5;
            EXPECT_NEAR(anchor, x, 1.6) << text;
            EXPECT_GE(place.top(), plain.bottom()) << text;
            EXPECT_LT(place.bottom(), 701 - 96) << text;
            if (share <= 0.0 || share >= 1.0) continue;
            EXPECT_GT(picture.Ink(QRect(qRound(x) - 1, 300, 3, 100), QColor(128, 128, 128)), 90)
                << "no line above " << text;
        }
    }
}

TEST(Pictures, MarksStandAtTheirLines) {
    TraceChoices choices;
    choices.Phase = choices.GroupDelay = true;
    const Picture picture = PictureOf(MakeButterworth(SweepType::OneDecade).Content(choices));
    const QColor red(255, 0, 0), blue(0, 0, 255), green(0, 96, 0);
    const std::tuple<const char*, QColor, int, int> marks[] = {
        // text, from, to x, y of its line
        {"10", red, 60, 185},      {"-50", red, 60, 425},     {"-90", red, 60, 585},
        {"180", blue, 1221, 185},  {"36", blue, 1221, 345},   {"-180", blue, 1221, 585},
        {"6.0 ns", green, 0, 185}, {"2.4 ns", green, 0, 425}, {"600 ps", green, 0, 545},
        {"dB", red, 60, 172},      {"deg", blue, 1221, 172}};
    for (const auto& [text, colour, left, y] : marks) {
        bool there = false;
        for (const QRect& place : picture.Find(text, colour))
            there = there || (place.left() >= left && place.right() < (left < 600 ? 85 : 1280) &&
                              std::abs(place.center().y() - y) <= 5);
        EXPECT_TRUE(there) << text;
    }
    const QColor grey(128, 128, 128);
    for (int line = 1; line < 10; ++line)
        EXPECT_GT(picture.Ink(QRect(820, 185 + 40 * line, 100, 1), line == 1 ? Qt::black : grey),
                  70)
            << line;
    for (const QRect& edge : {QRect(85, 185, 1135, 1), QRect(85, 586, 1135, 1),
                              QRect(85, 185, 1, 400), QRect(1220, 185, 1, 400)})
        EXPECT_GT(picture.Ink(edge, Qt::black), 395);
    const QRect title = PlaceOf(picture, "3 Pole Butterworth LPF");
    const QRect below =
        PlaceOf(picture, "200 MHz, 50 \u03a9 to 50 \u03a9, ideal parts, 1 decade/div");
    EXPECT_NEAR(title.center().x(), (85 + 1220) / 2, 1);
    EXPECT_NEAR(below.center().x(), (85 + 1220) / 2, 1);
    EXPECT_TRUE(title.top() >= 150 && title.bottom() <= below.top() && below.bottom() < 185);
}

TEST(Pictures, TheLadderStandsBelowThePlot) {
    const Picture picture = PictureOf(MakeButterworth(SweepType::OneDecade).Content({}));
    // Slots of 64 pixels from 114 on; 1 / (50 w0) = 15.9 pF and 2 x 50 / w0 = 79.6 nH
    const QFont font = Plot().Font();
    QFont small = font;
    small.setPixelSize(std::max(10, QFontInfo(font).pixelSize() * 5 / 6));
    Plot plot;
    plot.Resize(size.width(), size.height());
    plot.PaintContent(MakeButterworth(SweepType::OneDecade).Content({}), placement);
    const Picture names(plot.Image().copy(), small);
    for (const auto& [name, slot] : {std::pair{"C1", 1}, {"L2", 2}, {"C3", 3}})
        EXPECT_NEAR(PlaceOf(names, name).center().x(), 50 + 64 * slot + 32, 2) << name;
    EXPECT_EQ(names.Find("50 \u03a9").size(), 2);
    EXPECT_LT(names.Find("50 \u03a9").value(0).right(), 114);
    EXPECT_GT(names.Find("50 \u03a9").value(1).left(), 114 + 3 * 64);
    const QColor ink(24, 28, 36);
    // The wire from the source to the load without a gap, and both returns to the ground.
    const int wire = 701 - 96 + 22;
    for (int x = 14; x < 114 + 3 * 64 + 14; ++x) {
        int dark = 0;
        for (int y = wire - 8; y <= wire + 12; ++y)
            dark += picture.Has(x, y, ink, 60);
        ASSERT_GT(dark, 0) << x;
    }
    for (const int x : {14, 114 + 3 * 64 + 14})
        for (int y = wire; y < 701 - 10; ++y) {
            int dark = 0;
            for (int k = -9; k <= 9; ++k)
                dark += picture.Has(x + k, y, ink, 60);
            ASSERT_GT(dark, 0) << x << " " << y;
        }
}

}  // namespace
}  // namespace ladderwise
