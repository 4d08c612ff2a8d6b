// De-embedding, preferred numbers and worst-case draws.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <vector>

#include "analysis/PartValues.h"

namespace ladderwise {
namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();

PartModel ModelOf(int percent) {
    PartModel model;
    SetTolerance(model, PartKind::Inductor, percent);
    SetTolerance(model, PartKind::Capacitor, percent);
    return model;
}

// A ladder with one slot of every code 0 .. 26, values told apart by slot and position.
FilterDesign EveryType() {
    FilterDesign design;
    design.NumElements = NumElementTypes;
    for (int k = 1; k <= NumElementTypes; ++k) {
        design.Elements[k] = {static_cast<ElementType>(k - 1), (10 + k) * 1.03e-9,
                              (20 + k) * 1.03e-12, (30 + k) * 1.03e-9, (40 + k) * 1.03e-12};
    }
    return design;
}

// Whether the pair V1, V2 (0) or V3, V4 (1) of a code holds lines.
bool IsLinePair(int code, int pair) {
    return code == 10 || code == 13 || code == 14 || code == 25 || code == (pair == 0 ? 11 : 12);
}

TEST(PartValues, DeEmbeddedPartsReactLikeIdealOnesAtF0) {
    FilterDesign design = EveryType();
    const ElementList ideal = design.Elements;
    DeEmbedParts(design);
    const double w = 2 * 3.141592653589793 * design.F0;
    for (int k = 1; k <= NumElementTypes; ++k) {
        for (int row = 0; row < 4; ++row) {
            const double before = ideal[k].Value(row), after = design.Elements[k].Value(row);
            if (IsLinePair(k - 1, row / 2)) {
                EXPECT_EQ(after, before) << k - 1;
                continue;
            }
            // Susceptance of L' beside IndC, or reactance of C' behind CapL.
            const double parasitic = row % 2 == 0 ? design.PartModel.IndC : design.PartModel.CapL;
            EXPECT_NEAR((1 / (w * after) - w * parasitic) * w * before, 1, 1e-12) << k - 1;
        }
    }
    design.Elements = ideal;
    design.PartModel.IndC = design.PartModel.CapL = 0;
    DeEmbedParts(design);
    EXPECT_EQ(design.Elements[10].V1, ideal[10].V1);
}

TEST(PartValues, SeriesAreThePreferredNumbers) {
    // IEC 60063: E12 and E24.
    const std::vector<double> e12 = {1.0, 1.2, 1.5, 1.8, 2.2, 2.7, 3.3,
                                     3.9, 4.7, 5.6, 6.8, 8.2, 10.0};
    const std::vector<double> e24 = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2,
                                     2.4, 2.7, 3.0, 3.3, 3.6, 3.9, 4.3, 4.7, 5.1,
                                     5.6, 6.2, 6.8, 7.5, 8.2, 9.1, 10.0};
    for (std::size_t i = 0; i < e12.size(); ++i)
        EXPECT_EQ(StandardValues[8 * i], e12[i]);
    for (std::size_t i = 0; i < e24.size(); ++i)
        EXPECT_EQ(StandardValues[4 * i], e24[i]);
    const struct {
        int Index;
        double Value;
    } between[] = {{1, 1.025}, {2, 1.05}, {3, 1.075}, {37, 2.475}, {95, 9.775}, {109, 10.0}};
    for (const auto& b : between)
        EXPECT_DOUBLE_EQ(StandardValues[b.Index], b.Value);
}

TEST(PartValues, Snapping) {
    const struct {
        int Percent;
        double Value;
        double Snapped;
    } cases[] = {
        {5, 4.55e-12, 4.7e-12},  {5, 1.25e-9, 1.2e-9},  // a tie goes down
        {10, 1.35, 1.5},                                // no tie in binary: a hair closer to 1.5
        {10, 1.0, 1.0},          {10, 10.0, 10.0},
        {10, 9.6, 10.0},  // up into the next decade
        {10, 9.6e-9, 1e-8},      {10, 9.0e-9, 8.2e-9},
        {10, 1.32e-7, 1.2e-7},   {5, 1.32e-7, 1.3e-7},
        {2, 1.36e-7, 1.4e-7},    {1, 1.36e-7, 1.35e-7},
        {1, 33.2, 33.0},         {10, 4.4e3, 4.7e3},
        {5, 0.99, 1.0},          {5, 1e50, 1e50},
        {5, 0.0, 0.0},           {5, -3.4e-9, -3.4e-9},
        {5, infinity, infinity}, {5, -infinity, -infinity},
    };
    for (const auto& c : cases) {
        const PartModel model = ModelOf(c.Percent);
        for (PartKind kind : {PartKind::Inductor, PartKind::Capacitor}) {
            const double snapped = SnapValue(model, kind, c.Value);
            if (std::isfinite(c.Snapped)) {
                EXPECT_NEAR(snapped, c.Snapped, 1e-14 * std::abs(c.Snapped)) << c.Value;
            } else {
                EXPECT_EQ(snapped, c.Snapped);
            }
        }
    }
    EXPECT_TRUE(std::isnan(SnapValue(ModelOf(5), PartKind::Inductor, NAN)));
    for (double extreme : {5e-324, 1e-308, 1.7e308}) {
        EXPECT_GE(SnapValue(ModelOf(1), PartKind::Capacitor, extreme), 0);
    }
    PartModel noStride;
    noStride.IndSeriesStep = 0;
    EXPECT_DOUBLE_EQ(SnapValue(noStride, PartKind::Inductor, 2.48), 2.475);
}

TEST(PartValues, EachKindSnapsToItsOwnSeries) {
    FilterDesign design = EveryType();
    SetTolerance(design.PartModel, PartKind::Inductor, 10);
    SetTolerance(design.PartModel, PartKind::Capacitor, 1);
    const ElementList before = design.Elements;
    SnapToStdValue(design);
    for (int k = 1; k <= NumElementTypes; ++k) {
        for (int row = 0; row < 4; ++row) {
            const double x = before[k].Value(row);
            const PartKind kind = row % 2 == 0 ? PartKind::Inductor : PartKind::Capacitor;
            const bool line = IsLinePair(k - 1, row / 2);
            EXPECT_EQ(design.Elements[k].Value(row),
                      line ? x : SnapValue(design.PartModel, kind, x))
                << k - 1 << " row " << row;
        }
    }
    EXPECT_NE(design.Elements[1].V1, before[1].V1);
    EXPECT_NE(design.Elements[1].V1, SnapValue(ModelOf(1), PartKind::Inductor, before[1].V1));
}

TEST(PartValues, ToleranceChoices) {
    PartModel model;
    EXPECT_EQ(ToleranceText(model), "C 5%    L 10%");
    SetTolerance(model, PartKind::Capacitor, 2);
    SetTolerance(model, PartKind::Inductor, 1);
    SetTolerance(model, PartKind::Inductor, 3);  // no such choice
    EXPECT_EQ(ToleranceText(model), "C 2%    L 1%");
    EXPECT_EQ(model.CapTolerance, 0.02);
    EXPECT_EQ(model.CapSeriesStep, 2);
    EXPECT_EQ(model.IndTolerance, 0.01);
    EXPECT_EQ(model.IndSeriesStep, 1);
}

TEST(PartValues, DrawsAreUniformOverAllSteps) {
    std::mt19937 generator(4711);
    constexpr int draws = 100000;
    std::vector<int> counts(NumToleranceSteps, 0);
    for (int i = 0; i < draws; ++i) {
        const int step = DrawToleranceStep(generator);
        ASSERT_LE(std::abs(step), 100);
        ++counts[step + 100];
    }
    const double expected = static_cast<double>(draws) / NumToleranceSteps;
    double chiSquare = 0;
    for (int count : counts)
        chiSquare += (count - expected) * (count - expected) / expected;
    // 200 degrees of freedom: 99.9 % of uniform samples lie below 267.5, 99.9 % above 143.8.
    EXPECT_LT(chiSquare, 267.5);
    EXPECT_GT(chiSquare, 143.8);
}

TEST(PartValues, WorstCaseRunDrawsInOrderFromTheNominalValues) {
    FilterDesign design = EveryType();
    design.Elements[2].V1 = 0.1;  // not below the bound: no draw
    design.Elements[2].V3 = UnusedValue;
    design.Elements[2].V4 = NAN;
    design.NominalElements = design.Elements;
    design.Elements[1].V1 *= 1.07;  // an earlier run leaves no trace
    std::mt19937 generator(99), replay(99);
    RandomiseParts(design, generator);
    for (int k = 1; k <= design.NumElements; ++k) {
        for (int row = 0; row < 4; ++row) {
            const double nominal = design.NominalElements[k].Value(row);
            const double value = design.Elements[k].Value(row);
            if (k == 2 && row != 1) continue;
            const double tolerance = row % 2 == 0 ? 0.1 : 0.05;
            const int step = 100 - static_cast<int>(replay() % 201);
            EXPECT_NEAR(value / nominal, 1 + step / 100.0 * tolerance, 1e-14) << k << " " << row;
        }
    }
    EXPECT_EQ(design.Elements[2].V1, 0.1);
    EXPECT_EQ(design.Elements[2].V3, UnusedValue);
    EXPECT_TRUE(std::isnan(design.Elements[2].V4));
    EXPECT_EQ(generator, replay);
}

}  // namespace
}  // namespace ladderwise
