// De-embedding, preferred numbers and worst-case draws.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>

#include "analysis/BoardDraws.h"
#include "analysis/PartValues.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

constexpr PartKind kinds[] = {PartKind::Inductor, PartKind::Capacitor};

/// A ladder with one slot of every code 0 .. 26, values told apart by slot and position.
FilterDesign DesignOfEveryType() {
    FilterDesign design;
    design.NumElements = NumElementTypes;
    for (int k = 1; k <= NumElementTypes; ++k)
        design.Elements[k] = {static_cast<ElementType>(k - 1), (10 + k) * 1.03e-9,
                              (20 + k) * 1.03e-12, (30 + k) * 1.03e-9, (40 + k) * 1.03e-12};
    return design;
}

// De-embedded parts react at F0 like the ideal ones; each kind snaps to its own series; lines stay.
TEST(PartValues, DeEmbeddingAndSnappingOfEveryType) {
    FilterDesign snapped = DesignOfEveryType(), deEmbedded = snapped;
    const ElementList ideal = snapped.Elements;
    PartModel tenPercent, onePercent;
    for (const PartKind kind : kinds) {
        SetTolerance(tenPercent, kind, 10);
        SetTolerance(onePercent, kind, 1);
    }
    SetTolerance(snapped.PartModel, PartKind::Inductor, 10);
    SetTolerance(snapped.PartModel, PartKind::Capacitor, 1);
    SnapToStdValue(snapped);
    DeEmbedParts(deEmbedded);
    const PartModel& model = deEmbedded.PartModel;
    const double w = TwoPi * deEmbedded.F0;
    for (int k = 1; k <= NumElementTypes; ++k)
        for (int row = 0; row < 4; ++row) {
            const double before = ideal[k].Value(row), after = deEmbedded.Elements[k].Value(row);
            const double standard =
                SnapValue(row % 2 == 0 ? tenPercent : onePercent, kinds[row % 2], before);
            const ValueKind kind = InfoOf(static_cast<ElementType>(k - 1)).Values[row];
            const bool line = !IsPart(kind);
            if (kind == ValueKind::Unused) continue;
            EXPECT_EQ(snapped.Elements[k].Value(row), line ? before : standard) << k - 1;
            // Susceptance of L' beside IndC, or reactance of C' behind CapL.
            const double parasitic = line ? 0.0 : row % 2 == 0 ? model.IndC : model.CapL;
            EXPECT_NEAR((1 / (w * after) - w * parasitic) * w * before, 1, 1e-12) << k - 1;
        }
}

// Whole designs are compared with an independent model elsewhere; these are the edges.
TEST(PartValues, SnappingAtTheEdges) {
    // clang-format off
    const struct { int Percent; double Value, Snapped; } cases[] = {
        {5, 1.25e-9, 1.2e-9},  // a tie goes down
        {10, 1.35, 1.5},       // no tie in binary: a hair closer to 1.5
        {10, 1.0, 1.0}, {10, 10.0, 10.0}, {10, 9.6, 10.0}, {10, 9.6e-9, 1e-8}, {5, 0.99, 1.0},
        {3, 2.48, 2.7},        // no such choice: 10 % stays
        {5, 0.0, 0.0}, {5, -3.4e-9, -3.4e-9}, {5, 1e50, 1e50}};
    // clang-format on
    for (const auto& c : cases)
        for (const PartKind kind : kinds) {
            PartModel model;
            SetTolerance(model, kind, 10);
            SetTolerance(model, kind, c.Percent);
            EXPECT_NEAR(SnapValue(model, kind, c.Value), c.Snapped, 1e-14 * std::abs(c.Snapped));
            for (const double x : {Infinity, -Infinity})
                EXPECT_EQ(SnapValue(model, kind, x), x);
            EXPECT_TRUE(std::isnan(SnapValue(model, kind, NaN)));
        }
    EXPECT_EQ(ToleranceText({}), "C 5%    L 10%");
}

// Chi-square over the 201 steps: 200 degrees of freedom, so mean 200 and deviation 20.
TEST(PartValues, DrawsAreUniform) {
    constexpr int Draws = 100000, Steps = 201;
    std::mt19937 generator(1);
    std::array<int, Steps> counts{};
    for (int draw = 0; draw < Draws; ++draw)
        ++counts.at(static_cast<std::size_t>(DrawToleranceStep(generator) + 100));
    double chiSquare = 0.0;
    for (const int count : counts)
        chiSquare += std::pow(count - double(Draws) / Steps, 2) / (double(Draws) / Steps);
    EXPECT_NEAR(chiSquare, 200.0, 5 * 20.0);
}

// Each draw is one of 201 steps, -100 .. 100 per cent of the tolerance.
TEST(PartValues, WorstCaseRunDrawsInOrderFromTheNominalValues) {
    FilterDesign design = DesignOfEveryType();
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
