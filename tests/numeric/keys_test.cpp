// Function keys on every value of every element type, and part values as typed into the grid.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "app/pipeline/Keystrokes.h"
#include "tests/numeric/format_separator.h"

namespace ladderwise {
namespace {

// E12 for inductors, E24 for capacitors. 32 nH snaps to 33 nH, 4.6 pF to 4.7 pF; the partners that
// keep 32 nH x 4.6 pF are 4.4606 pF, between 4.3 and 4.7, and 31.319 nH, between 27 and 33.
constexpr double inductance = 32e-9, standardInductance = 33e-9;
constexpr double capacitance = 4.6e-12, standardCapacitance = 4.7e-12;
constexpr double product = inductance * capacitance;
constexpr double standardBesideInductance = 4.3e-12, standardBesideCapacitance = 33e-9;
constexpr int numTypes = 26;

/// One slot of every type, code k in slot k + 1, whose used values are the ones above.
std::unique_ptr<Calculation> EveryType() {
    auto calculation = std::make_unique<Calculation>();
    FilterDesign& design = calculation->Design;
    design.NumElements = numTypes;
    for (int slot = 1; slot <= numTypes; ++slot) {
        CircuitElement& element = design.Elements[slot];
        element.Type = static_cast<ElementType>(slot - 1);
        for (int row = 0; row < 4; ++row)
            switch (InfoOf(element.Type).Values[row]) {
                case ValueKind::Unused:
                    break;
                case ValueKind::Inductance:
                    element.Value(row) = inductance;
                    break;
                case ValueKind::Capacitance:
                    element.Value(row) = capacitance;
                    break;
                case ValueKind::LengthDegrees:
                    element.Value(row) = 45.0;
                    break;
                case ValueKind::Impedance:
                    element.Value(row) = 60.0;
                    break;
            }
    }
    return calculation;
}

/// The slot as a key should leave it; 5 % change.
CircuitElement Wanted(CircuitElement element, FormKey key, int row) {
    const auto& kinds = InfoOf(element.Type).Values;
    const int other = row ^ 1;
    const bool ind = kinds[row] == ValueKind::Inductance;
    const bool part = ind || kinds[row] == ValueKind::Capacitance;
    const bool pair = part && (ind ? kinds[other] == ValueKind::Capacitance
                                   : kinds[other] == ValueKind::Inductance);
    if (kinds[row] == ValueKind::Unused) return element;
    if (key == FormKey::F1) element.Value(row) /= 1.05;
    if (key == FormKey::F2) element.Value(row) *= 1.05;
    if (!part || key == FormKey::F1 || key == FormKey::F2) return element;
    element.Value(row) = ind ? standardInductance : standardCapacitance;
    if (pair && key == FormKey::F5) element.Value(other) = product / element.Value(row);
    if (pair && key == FormKey::F6)
        element.Value(other) = ind ? standardBesideInductance : standardBesideCapacitance;
    return element;
}

TEST(FunctionKeys, OnEveryRowOfEveryType) {
    const auto nominal = EveryType();
    for (int slot = 1; slot <= numTypes; ++slot)
        for (int row = 0; row < 4; ++row)
            for (const FormKey key :
                 {FormKey::F1, FormKey::F2, FormKey::F3, FormKey::F5, FormKey::F6, FormKey::F8}) {
                auto calculation = std::make_unique<Calculation>(*nominal);
                FilterDesign& design = calculation->Design;
                const CircuitElement before = design.Elements[slot];
                const ValueKind kind = InfoOf(before.Type).Values[row];
                const bool snaps = key != FormKey::F1 && key != FormKey::F2;
                const bool acts = key != FormKey::F8 && (kind == ValueKind::Inductance ||
                                                         kind == ValueKind::Capacitance ||
                                                         (kind != ValueKind::Unused && !snaps));
                SCOPED_TRACE(std::string(InfoOf(before.Type).Name) + " row " + std::to_string(row) +
                             " F" + std::to_string(static_cast<int>(key) + 1));
                EXPECT_EQ(ApplyFormKey(*calculation, key, {slot, row}, {}),
                          acts ? KeyOutcome::Analyse : KeyOutcome::Nothing);
                const CircuitElement wanted = acts ? Wanted(before, key, row) : before;
                for (int r = 0; r < 4; ++r)
                    EXPECT_NEAR(
                        design.Elements[slot].Value(r), wanted.Value(r),
                        (wanted.Value(r) == before.Value(r) ? 0.0 : 1e-12) * wanted.Value(r));
                for (int s = 0; s < NumSlots; ++s)
                    for (int r = 0; r < 4 && s != slot; ++r)
                        EXPECT_EQ(design.Elements[s].Value(r),
                                  nominal->Design.Elements[s].Value(r));
                EXPECT_EQ(design.ResponseType, ResponseType::Butterworth);
                EXPECT_EQ(design.SweepType, SweepType::OneDecade);
            }
}

TEST(FunctionKeys, SnappingLeavesNoSenselessPartner) {
    for (const double value : {0.0, -32e-9}) {
        auto calculation = EveryType();
        CircuitElement& tank = calculation->Design.Elements[3];
        tank.V1 = value;  // has no standard value
        ApplyFormKey(*calculation, FormKey::F5, {3, 0}, {});
        EXPECT_EQ(tank.V1, value);
        EXPECT_EQ(tank.V2, capacitance);
    }
}

TEST(FunctionKeys, CellsOutsideTheLadderAreLeftAlone) {
    auto calculation = EveryType();
    const CellPosition cells[] = {{0, 0}, {-1, 1}, {numTypes + 1, 0}, {99, 0}, {1, -1}, {1, 4}};
    for (const CellPosition cell : cells)
        for (const FormKey key : {FormKey::F1, FormKey::F2, FormKey::F3, FormKey::F5, FormKey::F6})
            EXPECT_EQ(ApplyFormKey(*calculation, key, cell, {}), KeyOutcome::Nothing);
}

TEST(FunctionKeys, CyclesOfResponseAndSweep) {
    Calculation calculation;
    FilterDesign& design = calculation.Design;
    const struct {
        int Before, After;
    } responses[] = {{0, 1}, {6, 7}, {10, 11}, {11, 0}, {12, 0}, {13, 0}};
    for (const auto& r : responses) {
        design.ResponseType = static_cast<ResponseType>(r.Before);
        EXPECT_EQ(ApplyFormKey(calculation, FormKey::F4, {}, {}), KeyOutcome::FullCalculate);
        EXPECT_EQ(static_cast<int>(design.ResponseType), r.After);
    }
    for (int sweep = 0; sweep < 6; ++sweep) {
        design.SweepType = static_cast<SweepType>(sweep);
        EXPECT_EQ(ApplyFormKey(calculation, FormKey::F7, {}, {}), KeyOutcome::FullCalculate);
        EXPECT_EQ(static_cast<int>(design.SweepType), (sweep + 1) % 6);
    }
}

TEST(FunctionKeys, PercentChangeIsBounded) {
    const struct {
        const char* Typed;
        double Percent;
        bool Replaced;
    } cases[] = {{"0.01", 0.01, false}, {"100", 100.0, false}, {"7.5", 7.5, false},
                 {"0", 0.01, true},     {"-3", 0.01, true},    {"100.1", 100.0, true},
                 {"much", 5.0, true}};
    for (const auto& c : cases) {
        auto calculation = EveryType();
        NumberBox& box = calculation->Inputs.PercentChangeBox;
        box.Type(c.Typed);
        ApplyFormKey(*calculation, FormKey::F2, {1, 0}, {});
        EXPECT_NEAR(calculation->Design.Elements[1].V1, inductance * (1 + c.Percent / 100), 1e-22);
        EXPECT_EQ(box.Colour, c.Replaced ? BoxColour::Silver : BoxColour::Normal) << c.Typed;
    }
}

TEST(PartValueTexts, AsTypedIntoTheGrid) {
    const struct {
        const char* Text;
        std::optional<double> Value;
    } cases[] = {
        {"12E-9", 12e-9},   {"12n", 12e-9}, {" 12 nH ", 12e-9}, {"4.7pF", 4.7e-12}, {"50 ohm", 50},
        {"1.5 kohm", 1500}, {"75ohms", 75}, {"45 deg", 45},     {"3 F", 3},         {"3 f", 3e-15},
        {"2 mH", 2e-3},     {"2 M", 2e6},   {"1 uH", 1e-6},     {"-3 nH", -3e-9},   {".5 GHz", {}},
        {"1e-3 kH", 1.0},   {"", {}},       {" ", {}},          {"nH", {}},         {"n", {}},
        {"F", {}},          {"1 2 nH", {}}, {"1 nn", {}},       {"Not Used", {}},   {"1,2 nH", {}}};
    for (const auto& c : cases) {
        double value = -77.0;
        EXPECT_EQ(TryParsePartValue(c.Text, value), c.Value.has_value()) << c.Text;
        const double wanted = c.Value.value_or(-77.0);
        EXPECT_NEAR(value, wanted, 1e-15 * std::abs(wanted)) << c.Text;
    }
    const SeparatorScope comma(',');
    for (const char* const text : {"1,2 nH", "1.2 nH", "1,2E-9"}) {
        double value = 0.0;
        EXPECT_TRUE(TryParsePartValue(text, value)) << text;
        EXPECT_NEAR(value, 1.2e-9, 1e-24) << text;
    }
}

TEST(PartValueTexts, WhatTheGridShowsReadsBack) {
    for (const char separator : {'.', ','}) {
        const SeparatorScope scope(separator);
        for (int decade = -20; decade <= 14; ++decade)
            for (const char* const unit : {"H", "F", "ohm", "deg"}) {
                const double x = std::strtod(("-2.34e" + std::to_string(decade)).c_str(), nullptr);
                const std::string text = FormatWithPrefix(x, 2, unit);
                double value = 0.0;
                EXPECT_TRUE(TryParsePartValue(text, value)) << text;
                EXPECT_NEAR(value / x, 1.0, 1e-14) << text;
            }
    }
}

}  // namespace
}  // namespace ladderwise
