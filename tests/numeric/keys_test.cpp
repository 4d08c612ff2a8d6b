// Function keys on every value of every element type, and part values as typed into the grid.
#include <gtest/gtest.h>

#include <memory>
#include <optional>

#include "numbers/UnitTexts.h"
#include "pipeline/Keystrokes.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

// E12 for inductors, E24 for capacitors. 32 nH snaps to 33 nH, 4.6 pF to 4.7 pF; the partners that
// keep 32 nH x 4.6 pF are 4.4606 pF, between 4.3 and 4.7, and 31.319 nH, between 27 and 33.
constexpr double inductance = 32e-9, capacitance = 4.6e-12, line = 60.0;  // degrees and ohms
constexpr int numTypes = 26;

/// One slot of every type, code k in slot k + 1, whose used values are the ones above.
std::unique_ptr<Calculation> EveryType() {
    auto calculation = std::make_unique<Calculation>();
    calculation->Design.NumElements = numTypes;
    for (int slot = 1; slot <= numTypes; ++slot)
        calculation->Design.Elements[slot] = SlotOf(ElementType(slot - 1), [](ValueKind kind) {
            return kind == ValueKind::Inductance    ? inductance
                   : kind == ValueKind::Capacitance ? capacitance
                                                    : line;
        });
    return calculation;
}

// Of a resonator, of a pair across resonators, of a lone part beside a line, and of a line.
TEST(FunctionKeys, OnValuesOfAllKindsAndOutside) {
    constexpr double L = inductance, C = capacitance, snapL = 33e-9, snapC = 4.7e-12;
    using enum FormKey;
    // clang-format off
    const struct { int Slot, Row; FormKey Key; double Value, Partner; } cases[] = {
        {3, 0, F1, L / 1.05, C}, {3, 1, F2, C * 1.05, L}, {3, 0, F3, snapL, C},
        {3, 1, F3, snapC, L}, {3, 0, F5, snapL, L * C / snapL}, {3, 1, F5, snapC, L * C / snapC},
        {3, 0, F6, snapL, 4.3e-12}, {3, 1, F6, snapC, 33e-9},
        {8, 2, F5, snapL, L * C / snapL}, {8, 3, F6, snapC, 33e-9},
        {11, 1, F1, line / 1.05, line}, {11, 0, F2, line * 1.05, line},
        {12, 3, F6, snapC, UnusedValue}, {26, 1, F2, line * 1.05, line}};
    // clang-format on
    const auto nominal = EveryType()->Design.Elements;
    const auto expectAfter = [](FormKey key, CellPosition cell, const ElementList& wanted,
                                KeyOutcome outcome) {
        SCOPED_TRACE(testing::Message() << cell.Slot << " row " << cell.Row << " key " << int(key));
        const auto calculation = EveryType();
        EXPECT_EQ(ApplyFormKey(*calculation, key, cell, {}), outcome);
        for (int s = 0; s < NumSlots; ++s)
            for (int r = 0; r < 4; ++r) {
                const double x = wanted[s].Value(r);
                EXPECT_NEAR(calculation->Design.Elements[s].Value(r), x, 1e-12 * x)
                    << s << " " << r;
            }
    };
    for (const auto& c : cases) {
        ElementList wanted = nominal;
        wanted[c.Slot].Value(c.Row) = c.Value;
        wanted[c.Slot].Value(c.Row ^ 1) = c.Partner;
        expectAfter(c.Key, {c.Slot, c.Row}, wanted, KeyOutcome::Analyse);
    }
    const CellPosition idle[] = {{0, 0}, {27, 0}, {99, 0}, {1, -1}, {1, 4}, {1, 1}, {3, 2}};
    for (const FormKey key : {F1, F2, F3, F5, F6, F8})
        for (const CellPosition cell : idle)
            expectAfter(key, cell, nominal, KeyOutcome::Nothing);
    expectAfter(F3, {26, 0}, nominal, KeyOutcome::Nothing);
    expectAfter(F6, {26, 0}, nominal, KeyOutcome::Nothing);
    const auto calculation = EveryType();
    CircuitElement& tank = calculation->Design.Elements[3];
    tank.V1 = 0.0;  // has no standard value: the partner stays
    ApplyFormKey(*calculation, F5, {3, 0}, {});
    EXPECT_EQ(tank.V1, 0.0);
    EXPECT_EQ(tank.V2, C);
}

TEST(FunctionKeys, PercentChangeIsBounded) {
    const std::pair<const char*, double> cases[] = {
        {"7.5", 7.5}, {"0", 0.01}, {"100.1", 100.0}, {"much", 5.0}};
    for (const auto& [typed, percent] : cases) {
        const auto calculation = EveryType();
        calculation->Inputs.Box(InputId::PercentChange).Type(typed);
        ApplyFormKey(*calculation, FormKey::F2, {1, 0}, {});
        EXPECT_NEAR(calculation->Design.Elements[1].V1, inductance * (1 + percent / 100), 1e-22);
    }
}

TEST(PartValueTexts, AsTypedIntoTheGridAndAsShown) {
    // clang-format off
    std::vector<std::pair<std::string, std::optional<double>>> cases = {
        {"12E-9", 12e-9}, {"12n", 12e-9}, {" 12 nH ", 12e-9}, {"4.7pF", 4.7e-12}, {"50 ohm", 50},
        {"1.5 kohm", 1500}, {"75ohms", 75}, {"45 deg", 45}, {"3 F", 3}, {"3 f", 3e-15},
        {"2 M", 2e6}, {"-3 nH", -3e-9}, {"1e-3 kH", 1.0}, {".5 GHz", {}}, {"", {}}, {" ", {}},
        {"nH", {}}, {"n", {}}, {"F", {}}, {"1 2 nH", {}}, {"1 nn", {}}, {"Not Used", {}}};
    // clang-format on
    for (const char separator : {'.', ','}) {
        const SeparatorScope scope(separator);
        const bool comma = separator == ',';
        cases.push_back({"1,2 nH", comma ? std::optional(1.2e-9) : std::nullopt});
        for (int decade = -20; decade <= 14; ++decade)
            for (const char* const unit : {"H", "F", "ohm", "deg"}) {
                const double x = std::strtod(("-2.34e" + std::to_string(decade)).c_str(), nullptr);
                cases.push_back({FormatWithPrefix(x, 2, unit), x});
            }
        for (const auto& [text, wanted] : cases) {
            double value = -77.0;
            EXPECT_EQ(TryParsePartValue(text, value), wanted.has_value()) << text;
            EXPECT_NEAR(value, wanted.value_or(-77.0), 1e-14 * std::abs(value)) << text;
        }
        cases.resize(22);
    }
}

}  // namespace
}  // namespace ladderwise
