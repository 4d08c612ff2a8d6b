// De-embedding, preferred numbers and worst-case draws.
#include <gtest/gtest.h>

#include "analysis/PartValues.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

constexpr PartKind kinds[] = {PartKind::Inductor, PartKind::Capacitor};

PartModel ModelOf(int percent) {
    PartModel model;
    for (const PartKind kind : kinds)
        SetTolerance(model, kind, percent);
    return model;
}

/// A ladder with one slot of every code 0 .. 26, values told apart by slot and position.
FilterDesign EveryType() {
    FilterDesign design;
    design.NumElements = NumElementTypes;
    for (int k = 1; k <= NumElementTypes; ++k)
        design.Elements[k] = {static_cast<ElementType>(k - 1), (10 + k) * 1.03e-9,
                              (20 + k) * 1.03e-12, (30 + k) * 1.03e-9, (40 + k) * 1.03e-12};
    return design;
}

/// Whether the pair V1, V2 (0) or V3, V4 (1) of a code holds lines.
bool IsLinePair(int code, int pair) {
    return code == 10 || code == 13 || code == 14 || code == 25 || code == (pair == 0 ? 11 : 12);
}

// De-embedded parts react at F0 like the ideal ones; each kind snaps to its own series; lines stay.
TEST(PartValues, DeEmbeddingAndSnappingOfEveryType) {
    FilterDesign snapped = EveryType(), deEmbedded = snapped;
    const ElementList ideal = snapped.Elements;
    SetTolerance(snapped.PartModel, PartKind::Inductor, 10);
    SetTolerance(snapped.PartModel, PartKind::Capacitor, 1);
    SnapToStdValue(snapped);
    DeEmbedParts(deEmbedded);
    const PartModel& model = deEmbedded.PartModel;
    const double w = TwoPi * deEmbedded.F0;
    for (int k = 1; k <= NumElementTypes; ++k)
        for (int row = 0; row < 4; ++row) {
            const double before = ideal[k].Value(row), after = deEmbedded.Elements[k].Value(row);
            const double standard = SnapValue(snapped.PartModel, kinds[row % 2], before);
            const bool line = IsLinePair(k - 1, row / 2);
            EXPECT_EQ(snapped.Elements[k].Value(row), line ? before : standard) << k - 1;
            // Susceptance of L' beside IndC, or reactance of C' behind CapL.
            const double parasitic = line ? 0.0 : row % 2 == 0 ? model.IndC : model.CapL;
            EXPECT_NEAR((1 / (w * after) - w * parasitic) * w * before, 1, 1e-12) << k - 1;
        }
    const double first = ideal[1].V1;
    EXPECT_EQ(snapped.Elements[1].V1, SnapValue(ModelOf(10), PartKind::Inductor, first));
    EXPECT_NE(snapped.Elements[1].V1, SnapValue(ModelOf(1), PartKind::Inductor, first));
}

// Decades and strides are compared with an independent model elsewhere; these are its edges.
TEST(PartValues, SnappingAtTheEdges) {
    // clang-format off
    const struct { int Percent; double Value, Snapped; } cases[] = {
        {5, 1.25e-9, 1.2e-9},  // a tie goes down
        {10, 1.35, 1.5},       // no tie in binary: a hair closer to 1.5
        {10, 1.0, 1.0}, {10, 10.0, 10.0}, {10, 9.6, 10.0}, {10, 9.6e-9, 1e-8}, {5, 0.99, 1.0},
        {10, 1.32e-7, 1.2e-7}, {5, 1.32e-7, 1.3e-7}, {2, 1.36e-7, 1.4e-7}, {1, 1.36e-7, 1.35e-7},
        {3, 2.48, 2.7},        // no such choice: 10 % stays
        {5, 1e50, 1e50}, {5, 0.0, 0.0}, {5, -3.4e-9, -3.4e-9}};
    // clang-format on
    for (const auto& c : cases)
        for (const PartKind kind : kinds) {
            PartModel model = ModelOf(10);
            SetTolerance(model, kind, c.Percent);
            EXPECT_NEAR(SnapValue(model, kind, c.Value), c.Snapped, 1e-14 * std::abs(c.Snapped));
        }
    for (const double x : {Infinity, -Infinity})
        EXPECT_EQ(SnapValue(ModelOf(5), PartKind::Inductor, x), x);
    EXPECT_TRUE(std::isnan(SnapValue(ModelOf(5), PartKind::Inductor, NaN)));
    for (const double extreme : {5e-324, 1e-308, 1.7e308})
        EXPECT_GE(SnapValue(ModelOf(1), PartKind::Capacitor, extreme), 0);
    PartModel model;
    EXPECT_EQ(ToleranceText(model), "C 5%    L 10%");
    model.IndSeriesStep = 0;
    EXPECT_DOUBLE_EQ(SnapValue(model, PartKind::Inductor, 2.48), 2.475);
}

TEST(PartValues, DrawsAreUniformOverAllSteps) {
    std::mt19937 generator(4711);
    constexpr int draws = 100000;
    std::vector<int> counts(NumToleranceSteps, 0);
    for (int i = 0; i < draws; ++i)
        ++counts.at(DrawToleranceStep(generator) + 100);
    const double expected = static_cast<double>(draws) / NumToleranceSteps;
    double chiSquare = 0;
    for (const int count : counts)
        chiSquare += (count - expected) * (count - expected) / expected;
    // 200 degrees of freedom: 99.9 % of uniform samples lie below 267.5, 99.9 % above 143.8.
    EXPECT_LT(chiSquare, 267.5);
    EXPECT_GT(chiSquare, 143.8);
}

TEST(PartValues, WorstCaseRunDrawsInOrderFromTheNominalValues) {
    FilterDesign design = EveryType();
    design.Elements[2].V1 = 0.1;  // not below the bound: no draw
    design.Elements[2].V3 = UnusedValue;
    design.Elements[2].V4 = NaN;
    design.NominalElements = design.Elements;
    design.Elements[1].V1 *= 1.07;  // an earlier run leaves no trace
    std::mt19937 generator(99), replay(99);
    RandomiseParts(design, generator);
    for (int k = 1; k <= design.NumElements; ++k)
        for (int row = 0; row < 4; ++row) {
            if (k == 2 && row != 1) continue;
            const int step = 100 - static_cast<int>(replay() % 201);
            EXPECT_NEAR(design.Elements[k].Value(row) / design.NominalElements[k].Value(row),
                        1 + step / 100.0 * (row % 2 == 0 ? 0.1 : 0.05), 1e-14)
                << k << " row " << row;
        }
    EXPECT_EQ(design.Elements[2].V1, 0.1);
    EXPECT_EQ(design.Elements[2].V3, UnusedValue);
    EXPECT_TRUE(std::isnan(design.Elements[2].V4));
    EXPECT_EQ(generator, replay);
}

}  // namespace
}  // namespace ladderwise
