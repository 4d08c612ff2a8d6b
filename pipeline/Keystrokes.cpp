// What the function keys do to the design.
#include "pipeline/Keystrokes.h"

#include <array>
#include <cmath>

#include "analysis/PartValues.h"
#include "pipeline/Choices.h"

namespace ladderwise {

namespace {

constexpr std::array<int, 4> PartnerRow = {1, 0, 3, 2};  ///< the other half of the same resonator
constexpr int NumCycledResponses = 12;                   ///< F4 never reaches the coefficients file
constexpr int NumSweepTypes = 6;

ValueKind KindAt(const FilterDesign& design, CellPosition cell) {
    if (cell.Slot < 1 || cell.Slot > design.NumElements || cell.Row < 0 || cell.Row > 3)
        return ValueKind::Unused;
    return InfoOf(design.Elements[cell.Slot].Type).Values[cell.Row];
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

}  // namespace ladderwise
