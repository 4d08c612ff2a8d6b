// One search at a time, and what the last ones came to.
#include "choosing/PartsChoice.h"

#include <algorithm>
#include <utility>

#include "analysis/PartValues.h"
#include "choosing/PartsArrangement.h"
#include "choosing/PartsTexts.h"
#include "design/LadderNumbers.h"

namespace ladderwise {

namespace {

constexpr std::size_t mostKnown = 50;  ///< choices; a few kilobytes each

void AppendElements(const ElementList& elements, std::vector<double>& numbers) {
    for (const CircuitElement& slot : elements) {
        numbers.push_back(static_cast<double>(slot.Type));
        for (int row = 0; row < 4; ++row)
            numbers.push_back(slot.Value(row));
    }
}

/// All that a choice of standard values for `exact` depends on.
std::vector<double> ChoiceNumbers(const FilterDesign& exact, const ElementList& ideal,
                                  const StandardTask& task) {
    std::vector<double> numbers = LadderNumbers(exact);
    AppendElements(ideal, numbers);
    const BoardDraw& draw = exact.Boards;
    numbers.insert(numbers.end(),
                   {static_cast<double>(task.Method), static_cast<double>(exact.ResponseType),
                    exact.RippleDb, exact.PartModel.IndTolerance, exact.PartModel.CapTolerance,
                    draw.CapAbsolute, draw.Reel, draw.Normal ? 1.0 : 0.0});
    for (const HeldPart& part : task.Held)
        numbers.insert(numbers.end(),
                       {static_cast<double>(part.Place.Slot), static_cast<double>(part.Place.Row),
                        part.Value, part.Tolerance});
    if (task.Method == StdMethod::Yield)
        for (const LimitLine& line : task.Limits)
            numbers.insert(numbers.end(),
                           {static_cast<double>(line.Kind), line.From, line.To, line.Value});
    return numbers;
}

bool SameValues(const ElementList& a, const ElementList& b) {
    std::vector<double> ofA, ofB;
    AppendElements(a, ofA);
    AppendElements(b, ofB);
    return SameLadderNumbers(ofA, ofB);
}

/// Whether each value is to be the nearest one, which takes no search.
bool IsNearestAlone(const Calculation& calculation) {
    const HeldParts& held = calculation.Inputs.Held;
    return calculation.Design.StdMethod == StdMethod::Nearest &&
           std::none_of(held.begin(), held.end(),
                        [](const HeldPart& part) { return part.HoldsValue(); });
}

/// Lets go of parts that the ladder has no more.
void ReleaseMissing(const FilterDesign& design, HeldParts& held) {
    const std::vector<PartToChoose> there = PartsToChoose(design, {}, 0);
    std::erase_if(held, [&there](const HeldPart& part) {
        return std::none_of(there.begin(), there.end(),
                            [&part](const PartToChoose& one) { return one.Place == part.Place; });
    });
}

}  // namespace

void PartsChoice::Stop() {
    search.reset();
    key.clear();
    shown = Shown::Unchosen;
}

/// For the exact values of `calculation`; a search for the same goes on.
void PartsChoice::Begin(const Calculation& calculation, const LimitLines& limits) {
    const auto exact = std::make_unique<FilterDesign>(calculation.Design);
    exact->Elements = calculation.ExactElements;
    StandardTask task;
    task.Method = exact->StdMethod;
    task.Limits = limits;
    task.Held = calculation.Inputs.Held;
    std::vector<double> wanted = ChoiceNumbers(*exact, calculation.IdealElements, task);
    if (IsChosen() && SameLadderNumbers(wanted, key)) return;
    Stop();
    key = std::move(wanted);
    for (const Known& one : known)
        if (SameLadderNumbers(one.Key, key)) {
            present = one.Parts;
            shown = Shown::Choice;
            return;
        }
    search = std::make_unique<StandardSearch>(*exact, calculation.IdealElements, task);
    present = search->Present();
    shown = Shown::Nearest;
    if (present.Final) Finish();
}

bool PartsChoice::Advance() {
    if (!search) return false;
    const bool goesOn = search->Advance();
    const StandardParts& found = search->Present();
    const bool first = found.ByYield && shown == Shown::Nearest;
    if (goesOn && !first) return false;
    present = found;
    shown = goesOn ? Shown::FirstAnswer : Shown::Choice;
    if (goesOn) return true;
    search.reset();
    known.push_back({key, present});
    if (known.size() > mostKnown) known.erase(known.begin());
    return true;
}

void PartsChoice::Finish() {
    while (IsSearching())
        Advance();
}

std::vector<PartsRemark> PartsChoice::Arrange(Calculation& calculation, const LimitLines& limits,
                                              bool whole) {
    std::vector<PartsRemark> remarks = PrepareParts(calculation, limits);
    FilterDesign& design = calculation.Design;
    if (!calculation.Inputs.Held.empty()) ReleaseMissing(design, calculation.Inputs.Held);
    design.Held = calculation.Inputs.Held;
    if (!design.StdLCValues || IsNearestAlone(calculation)) {
        if (design.StdLCValues) SnapToStdValue(design);
        Stop();
        return remarks;
    }
    Begin(calculation, limits);
    if (whole) Finish();
    TakeParts(design, present);
    const auto shape = ShapeRemark(design, present);
    if (shape && shown == Shown::Choice) remarks.push_back(*shape);
    return remarks;
}

bool PartsChoice::Resume(const Calculation& calculation, const LimitLines& limits) {
    const FilterDesign& design = calculation.Design;
    if (!design.StdLCValues || IsNearestAlone(calculation) || HasEdits(design)) {
        Stop();
        return false;
    }
    Begin(calculation, limits);
    return !SameValues(design.Elements, present.Chosen);
}

void PartsChoice::Put(Calculation& calculation) const {
    TakeParts(calculation.Design, present);
    calculation.Design.CalculatedElements = present.Chosen;
    const auto shape = ShapeRemark(calculation.Design, present);
    if (shape && shown == Shown::Choice) calculation.Remarks.push_back(*shape);
}

}  // namespace ladderwise
