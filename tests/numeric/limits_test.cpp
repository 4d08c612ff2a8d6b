// Limit lines: their table, and margins against dense searches and closed forms.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <random>

#include "analysis/Circuitanalysis.h"
#include "analysis/Magphasefunctions.h"
#include "analysis/ResponseSamples.h"
#include "limits/LimitPresets.h"
#include "limits/LimitTable.h"
#include "measured/MeasuredMargins.h"
#include "pipeline/LimitMargins.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

TEST(LimitTables, OfAllKindsReadAndWriteTheSame) {
    const LimitLines lines = {{LimitKind::AttenMax, 0.0, 30e6, 0.5},
                              {LimitKind::AttenMin, 60e6, 60e6, 45.0},
                              {LimitKind::ReturnLossMin, 1.8e6, 29.7e6, 16.5},
                              {LimitKind::DelayVariationMax, 28e6, 29.7e6, 2.5e-9}};
    const std::string text =
        "kind,from_mhz,to_mhz,value\natten-max,0,30,0.5\natten-min,60,60,45\n"
        "return-loss-min,1.8,29.7,16.5\ndelay-variation-max,28,29.7,2.5\n";
    EXPECT_EQ(LimitTableText(lines), text);
    const char* const same[] = {
        "\xEF\xBB\xBFKind;From_MHz;To_MHz;Value\r\natten-max;0;30;0,5\r\n\r\natten-min;60;60;45\r\n"
        "# two more\r\nreturn-loss-min;1,8;29,7;16,5\r\ndelay-variation-max;28;29,7;2,5;;\r\n",
        "kind\tfrom_mhz\tto_mhz\tvalue\natten-max\t0\t30\t0.5\natten-min\t60\t60\t45\n"
        "return-loss-min\t1.8\t29.7\t16.5\n delay-variation-max\t2.8e1\t29.7\t2.5",
        "\"kind\",\"from_mhz\",\"to_mhz\",\"value\"\natten-max, 0 ,30,.5\natten-min,60,60,+45\n"
        "\"return-loss-min\",1.8,29.7,16.5\ndelay-variation-max,28,29.7,2.5\n"};
    EXPECT_EQ(ReadLimitTable(text).Lines, lines);
    for (const char* const variant : same) {
        const LimitTable read = ReadLimitTable(variant);
        EXPECT_EQ(read.Error, "");
        EXPECT_EQ(read.Lines, lines);
    }
    EXPECT_EQ(ReadLimitTable(LimitTableText(lines, ';')).Lines, lines);
}

TEST(LimitTables, AreRefusedWithTheLine) {
    const std::string header = "kind,from_mhz,to_mhz,value\n";
    // clang-format off
    const std::pair<std::string, std::string> cases[] = {
        {"", "line 1: no header"}, {"\n\natten-min,1,2,3\n", "line 3: no header"},
        {header + "atten,1,2,3\n", "line 2: \"atten\" is none of"},
        {header + "# a\natten-min,1,2\n", "line 3: 3 fields"},
        {header + "atten-min,1,2,3,4\n", "line 2: 5 fields"},
        {header + "atten-min,1,2x,3\n", "\"2x\" is no number"},
        {header + "atten-min,1,,3\n", "a number is missing"},
        {header + "atten-min,1,inf,3\n", "out of range"},
        {header + "atten-min,-1,2,3\n", "out of range"}, {header + "atten-min,0,0,3\n", "out of range"},
        {header + "atten-min,2,1,3\n", "ends below its beginning"},
        {header + "atten-min,1,2,nan\n", "no number"}, {header + "return-loss-min,1,2,0\n", "not above 0"},
        {header + "atten-max,1,2,-1\n", "below 0"}, {header + "delay-variation-max,1,1,3\n", "two frequencies"}};
    // clang-format on
    for (const auto& [text, reason] : cases) {
        const LimitTable read = ReadLimitTable(text);
        EXPECT_NE(read.Error.find(reason), std::string::npos) << text << read.Error;
        EXPECT_TRUE(read.Lines.empty());
    }
}

TEST(LimitPresets, LieWhereTheTaskPutsThem) {
    const LimitLines harmonics = {{LimitKind::AttenMax, 144e6, 148e6, 1.0},
                                  {LimitKind::AttenMin, 288e6, 296e6, 45.0},
                                  {LimitKind::AttenMin, 432e6, 444e6, 45.0}};
    EXPECT_EQ(HarmonicsOfTransmitter({144e6, 148e6}, 1.0, 45.0), harmonics);
    // 98 MHz heard with 10.7 MHz: the image is 21.4 MHz away.
    EXPECT_EQ(ImageAndIntermediate({97e6, 99e6}, 10.7e6, true, 2.0, 50.0)[1],
              (LimitLine{LimitKind::AttenMin, 118.4e6, 120.4e6, 50.0}));
    EXPECT_EQ(PromiseOfDesign({{0, 30e6}}, 0.2, 28e6, 40).back(),
              (LimitLine{LimitKind::AttenMin, 84e6, 84e6, 40.0}));
    EXPECT_EQ(ImageAndIntermediate({97e6, 99e6}, 10.7e6, false, 2.0, 50.0)[1].To, 77.6e6);
    EXPECT_EQ(ImageAndIntermediate({9e6, 10e6}, 10.7e6, false, 2.0, 50.0).size(), 2u);
}

// 10 log10(1 + x^6) of a Butterworth response of third order; the delay of one of first order is
// 1 / (w0 (1 + x^2)).
TEST(LimitMargins, AreThoseOfClosedForms) {
    const auto third = Designed({{"poles", "3"}});
    const auto loss = [](double x) { return 10.0 * std::log10(1.0 + std::pow(x, 6)); };
    const LimitReport report =
        JudgeLimits(third->Design, {{LimitKind::AttenMin, 400e6, 400e6, 18},
                                    {LimitKind::AttenMin, 300e6, 2e9, 10},
                                    {LimitKind::AttenMax, 0, 150e6, 1},
                                    {LimitKind::ReturnLossMin, 0, 100e6, 20}});
    const std::pair<double, double> expected[] = {{loss(2) - 18, 400e6},
                                                  {loss(1.5) - 10, 300e6},
                                                  {1 - loss(0.75), 150e6},
                                                  {10 * std::log10(1 + 64.0) - 20, 100e6}};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        EXPECT_NEAR(report.Rows[i].Margin, expected[i].first, 1e-9) << i;
        EXPECT_NEAR(report.Rows[i].At, expected[i].second, 1.0) << i;
    }
    EXPECT_FALSE(report.Met());
    EXPECT_EQ(report.Tightest(), &report.Rows[3]);
    const auto first = Designed({{"poles", "1"}});
    const LimitMargin delay =
        JudgeLimits(first->Design, {{LimitKind::DelayVariationMax, 50e6, 400e6, 1e-9}}).Rows[0];
    const double unit = 1.0 / (TwoPi * 200e6);
    EXPECT_NEAR(delay.Margin, 1e-9 - unit * (1 / (1 + 1.0 / 16) - 1 / (1 + 4.0)), 1e-15);
    EXPECT_EQ(delay.At, 50e6);
    EXPECT_EQ(TextOf(delay).rfind("holds by 0.41 ns at 50", 0), 0u) << TextOf(delay);
    EXPECT_TRUE(std::isnan(JudgeLimits(FilterDesign{}, {{}}).Rows[0].Margin));
}

/// The smallest margin at many frequencies, independent of where the response was sampled.
double DenseMargin(const FilterDesign& design, const LimitLine& line) {
    constexpr int count = 20000;
    double least = HUGE_VAL, most = -HUGE_VAL, delayed = HUGE_VAL;
    for (int k = 0; k <= count; ++k) {
        const double f = line.From * std::pow(line.To / line.From, double(k) / count);
        switch (line.Kind) {
            case LimitKind::AttenMin:
                least = std::min(least, -LevelAt(design, f) - line.Value);
                break;
            case LimitKind::AttenMax:
                least = std::min(least, line.Value + LevelAt(design, f));
                break;
            case LimitKind::ReturnLossMin:
                least = std::min(least, -ReflectionAt(design, f) - line.Value);
                break;
            case LimitKind::DelayVariationMax: {
                const double h = 1e-5 * f;
                const double turn =
                    std::remainder(std::arg(AnalysePoint(design, design.F0, f + h).Transfer /
                                            AnalysePoint(design, design.F0, f - h).Transfer),
                                   0.5 * TwoPi);
                const double delay = -turn / (2.0 * TwoPi * h);
                most = std::max(most, delay);
                delayed = std::min(delayed, delay);
                least = line.Value - (most - delayed);
                break;
            }
        }
    }
    return least;
}

TEST(LimitMargins, AreThoseOfADenseSearch) {
    std::mt19937 random(20);
    const auto uniform = [&](double low, double high) {
        return std::uniform_real_distribution<double>(low, high)(random);
    };
    const char* const passes[] = {"low-pass", "high-pass", "band-pass", "notch", "direct-coupled"};
    const char* const responses[] = {"chebyshev", "elliptic-c", "butterworth"};
    for (int n = 0; n < 60; ++n) {
        const auto calculation =
            Designed({{"pass", passes[n % 5]},
                      {"response", n % 5 == 4 ? "chebyshev" : responses[n % 3]},
                      {"poles", std::to_string(1 + n % 4)},
                      {"parts", n % 2 ? "real" : "ideal"},
                      {"bw-percent", std::to_string(5 + n % 30)}});
        const FilterDesign& design = calculation->Design;
        const auto kind = static_cast<LimitKind>(n / 5 % 4);
        const double from = design.F0 * std::exp(uniform(-2.0, 1.0));
        LimitLine line = {kind, from, from * std::exp(uniform(0.001, 1.5)), 20.0};
        if (kind == LimitKind::DelayVariationMax) line.Value = 1e-8;
        const double margin = JudgeLimits(design, {line}).Rows[0].Margin;
        const double dense = DenseMargin(design, line);
        SCOPED_TRACE(testing::Message() << n << " " << TextOf(line));
        // Ideal traps in a pass band lie between any two points.
        const bool deep = kind == LimitKind::AttenMax && dense < -60.0;
        const double allowed = kind == LimitKind::DelayVariationMax ? 1e-3 * std::abs(dense) : 1e-2;
        EXPECT_LE(margin,
                  dense + 1e-12 + 1e-3 * (kind == LimitKind::DelayVariationMax) * std::abs(dense));
        if (!deep) {
            EXPECT_GE(margin, dense - allowed);
        }
    }
}

// Magnitude straight from 1 over 0.5 to 0.6; phases of 0, -0.1 and -0.3 make delays of 1, 1.5 and 2
// tenths of 0.1 / (2 pi 10^8).
TEST(LimitMargins, OfMeasuredDataReachAsFarAsThat) {
    const MeasuredTraces traces{
        {1e8, 2e8, 3e8},
        {std::polar(1.0, 0.0), std::polar(0.5, -0.1), std::polar(0.6, -0.3)},
        {},
        {}};
    const double tenth = 0.1 / (2.0 * std::acos(-1.0) * 1e8);
    const LimitReport report =
        JudgeMeasured(traces, {{LimitKind::AttenMax, 1.5e8, 4e8, 7.0},
                               {LimitKind::AttenMin, 1.2e8, 1.8e8, 1.0},
                               {LimitKind::ReturnLossMin, 1e8, 2e8, 10.0},
                               {LimitKind::AttenMax, 0.0, 9e7, 1.0},
                               {LimitKind::DelayVariationMax, 1e8, 2.5e8, tenth}});
    const struct {
        double Margin, At;
        LimitReach Reach;
    } expected[] = {{7.0 + 20.0 * std::log10(0.5), 2e8, LimitReach::Part},
                    {-20.0 * std::log10(0.9) - 1.0, 1.2e8, LimitReach::Whole},
                    {std::nan(""), 1e8, LimitReach::Nothing},
                    {std::nan(""), 0.0, LimitReach::Nothing},
                    {0.25 * tenth, 2.5e8, LimitReach::Whole}};
    for (std::size_t i = 0; i < std::size(expected); ++i) {
        const LimitMargin& row = report.Rows[i];
        EXPECT_EQ(row.Reach, expected[i].Reach) << i;
        EXPECT_EQ(std::isnan(row.Margin), std::isnan(expected[i].Margin)) << i;
        if (std::isnan(row.Margin)) continue;
        EXPECT_NEAR(row.Margin, expected[i].Margin, 1e-9 * (i < 4 ? 1.0 : tenth)) << i;
        EXPECT_NEAR(row.At, expected[i].At, 1.0) << i;
    }
    EXPECT_FALSE(JudgeMeasured(traces, {{LimitKind::AttenMax, 1.5e8, 4e8, 7.0}}).Met());
    EXPECT_EQ(SummaryOf(report).substr(0, 14), "1 of 5 fails b");
}

TEST(LimitMargins, WhatIsKeptOfThemIsThatOfTheLadderInHand) {
    const auto design = Designed({{"poles", "3"}});
    LimitJudge judge;
    LimitLines lines;
    std::mt19937 random(1);
    for (int n = 0; n < 60; ++n) {
        const double f = 1e6 * static_cast<double>(150 + random() % 300);
        const std::size_t at = lines.empty() ? 0 : random() % lines.size();
        if (lines.size() < 4)
            lines.insert(lines.begin() + static_cast<long>(at), {LimitKind::AttenMin, f, f, 20.0});
        else if (n % 3 == 0)
            lines.erase(lines.begin() + static_cast<long>(at));
        else
            lines[at].To = lines[at].From = f;
        if (n % 4 == 0) design->Design.Elements[2].V1 *= 1.01;
        const LimitReport fresh = JudgeLimits(design->Design, lines);
        const LimitReport& kept = judge.Judge(design->Design, lines);
        ASSERT_EQ(kept.Rows.size(), lines.size());
        for (std::size_t i = 0; i < lines.size(); ++i) {
            ASSERT_EQ(kept.Rows[i].Line, lines[i]) << n;
            // A limit alone has other samples about it.
            ASSERT_NEAR(kept.Rows[i].Margin, fresh.Rows[i].Margin, 1e-9) << n;
        }
    }
}

}  // namespace
}  // namespace ladderwise
