// What the function keys do to the design.
#include "pipeline/Keystrokes.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cmath>
#include <string>
#include <string_view>
#include <utility>

#include "analysis/PartValues.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Choices.h"

namespace ladderwise {

namespace {

constexpr std::array<int, 4> PartnerRow = {1, 0, 3, 2};  ///< the other half of the same resonator
constexpr int NumCycledResponses = 12;                   ///< F4 never reaches the coefficients file
constexpr int NumSweepTypes = 6;

/// Units that take a prefix, and how people write them.
constexpr std::pair<std::string_view, std::string_view> baseUnits[] = {
    {"Hz", "Hz"}, {"H", "H"}, {"F", "F"}, {"ohm", "ohms"}, {"ohm", "ohm"}, {"ohm", "\u03a9"}};

ValueKind KindAt(const FilterDesign& design, CellPosition cell) {
    if (cell.Slot < 1 || cell.Slot > design.NumElements || cell.Row < 0 || cell.Row > 3)
        return ValueKind::Unused;
    return InfoOf(design.Elements[cell.Slot].Type).Values[cell.Row];
}

bool IsPart(ValueKind kind) {
    return kind == ValueKind::Inductance || kind == ValueKind::Capacitance;
}

double Snapped(const FilterDesign& design, ValueKind kind, double value) {
    return SnapValue(design.PartModel,
                     kind == ValueKind::Inductance ? PartKind::Inductor : PartKind::Capacitor,
                     value);
}

/// F5 and F6: the selected value goes to its standard value, the partner keeps their product.
KeyOutcome SnapResonator(FilterDesign& design, CellPosition cell, bool snapPartner) {
    const ValueKind kind = KindAt(design, cell);
    if (!IsPart(kind)) return KeyOutcome::Nothing;
    double& selected = design.Elements[cell.Slot].Value(cell.Row);
    const double old = selected;
    selected = Snapped(design, kind, old);
    const CellPosition partnerCell{cell.Slot, PartnerRow[cell.Row]};
    const ValueKind partnerKind = KindAt(design, partnerCell);
    if (IsPart(partnerKind)) {
        double& partner = design.Elements[cell.Slot].Value(partnerCell.Row);
        const bool moved = std::isfinite(old) && selected != old;  // zero has no standard value
        if (moved) partner = old * partner / selected;
        if (snapPartner) partner = Snapped(design, partnerKind, partner);
    }
    return KeyOutcome::Analyse;
}

KeyOutcome ScaleValue(FilterDesign& design, CellPosition cell, double factor) {
    if (KindAt(design, cell) == ValueKind::Unused) return KeyOutcome::Nothing;
    design.Elements[cell.Slot].Value(cell.Row) *= factor;
    return KeyOutcome::Analyse;
}

KeyOutcome NudgeDown(FilterDesign& design, CellPosition cell, double fraction) {
    if (KindAt(design, cell) == ValueKind::Unused) return KeyOutcome::Nothing;
    double& value = design.Elements[cell.Slot].Value(cell.Row);
    value = value / (1.0 + fraction);
    return KeyOutcome::Analyse;
}

KeyOutcome SnapSelected(FilterDesign& design, CellPosition cell) {
    const ValueKind kind = KindAt(design, cell);
    if (!IsPart(kind)) return KeyOutcome::Nothing;
    double& value = design.Elements[cell.Slot].Value(cell.Row);
    value = Snapped(design, kind, value);
    return KeyOutcome::Analyse;
}

/// The next code of a choice, from the last back to the first.
KeyOutcome NextCode(Calculation& calculation, ChoiceId id, int count) {
    const int next = calculation.Inputs.Choice(id) + 1;
    Choose(calculation.Inputs, calculation.Design, id, next >= count ? 0 : next);
    return KeyOutcome::FullCalculate;
}

/// Takes a unit and the blanks around it off the end of a text.
std::string_view Without(std::string_view text, std::string_view unit) {
    const auto trim = [&text] {
        while (!text.empty() && text.back() == ' ')
            text.remove_suffix(1);
    };
    trim();
    if (text.size() > unit.size() && text.ends_with(unit)) text.remove_suffix(unit.size());
    trim();
    return text;
}

/// Beyond the prefixes the grid itself writes a blank and an exponent: "2.34 E-18F".
bool TryParseSpacedExponent(std::string_view text, double& value) {
    std::string joined(text);
    const auto blank = joined.find(" E");
    if (blank != std::string::npos) joined.erase(blank, 1);
    return TryParseDouble(joined, value);
}

}  // namespace

KeyOutcome ApplyFormKey(Calculation& calculation, FormKey key, CellPosition cell,
                        const MessageCallback& report) {
    // F4 and F7 end in a full calculation, which reads the box along with all others.
    const bool calculates = key == FormKey::F4 || key == FormKey::F7;
    const double fraction =
        calculates ? 0.0 : ReadPercentChange(calculation.Inputs, calculation.Design, report);
    FilterDesign& design = calculation.Design;
    switch (key) {
        case FormKey::F1:
            return NudgeDown(design, cell, fraction);
        case FormKey::F2:
            return ScaleValue(design, cell, 1.0 + fraction);
        case FormKey::F3:
            return SnapSelected(design, cell);
        case FormKey::F4:
            return NextCode(calculation, ChoiceId::Response, NumCycledResponses);
        case FormKey::F5:
            return SnapResonator(design, cell, false);
        case FormKey::F6:
            return SnapResonator(design, cell, true);
        case FormKey::F7:
            return NextCode(calculation, ChoiceId::Sweep, NumSweepTypes);
        case FormKey::F8:
            return KeyOutcome::Nothing;
    }
    return KeyOutcome::Nothing;
}

bool TryParseWithPrefix(std::string_view text, std::string_view unit, double& value) {
    text = Without(text, "");
    if (TryParseDouble(text, value)) return true;
    text = Without(text, unit);
    constexpr std::array<std::pair<char, double>, 8> prefixes = {{{'f', 1e-15},
                                                                  {'p', 1e-12},
                                                                  {'n', 1e-9},
                                                                  {'u', 1e-6},
                                                                  {'m', 1e-3},
                                                                  {'k', 1e3},
                                                                  {'M', 1e6},
                                                                  {'G', 1e9}}};
    for (const auto& [prefix, scale] : prefixes)
        if (!text.empty() && text.back() == prefix) {
            double number = 0.0;
            if (!TryParseDouble(text.substr(0, text.size() - 1), number)) return false;
            value = number * scale;
            return true;
        }
    return TryParseSpacedExponent(text, value);
}

bool TryParseInUnit(std::string_view text, std::string_view unit, double factor, double& value) {
    text = Without(text, "");
    const std::string_view tail = text.substr(text.size() - std::min(unit.size(), text.size()));
    const bool named = std::equal(
        tail.begin(), tail.end(), unit.begin(), unit.end(),
        [](unsigned char a, unsigned char b) { return std::tolower(a) == std::tolower(b); });
    if (named && TryParseDouble(text.substr(0, text.size() - unit.size()), value)) return true;
    for (const auto& [base, spelling] : baseUnits) {
        if (!unit.ends_with(base) || !TryParseWithPrefix(text, spelling, value)) continue;
        // Through its 15 digits: no rounding of the conversion is left.
        return TryParseDouble(FormatGeneral(value / factor), value);
    }
    return false;
}

bool TryParsePartValue(std::string_view text, double& value) {
    for (const std::string_view unit : {"ohms", "ohm", "deg", "H", "F"})
        if (Without(text, unit) != Without(text, "")) return TryParseWithPrefix(text, unit, value);
    return TryParseWithPrefix(text, "", value);
}

}  // namespace ladderwise
