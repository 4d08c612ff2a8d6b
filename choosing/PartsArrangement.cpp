// Standard values and absorbed parasitics in the middle of a calculation.
#include "choosing/PartsArrangement.h"

#include <cmath>

#include "boards/Absorb.h"
#include "choosing/PartsTexts.h"
#include "design/Designators.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

/// Holds the parts that are named, in the place of what is held there.
void HoldAsked(Calculation& calculation, const PartsTask& task, std::string& error) {
    const FilterDesign& design = calculation.Design;
    HeldParts& held = calculation.Inputs.Held;
    const auto names = DesignatorsOf(design);
    for (const auto& [name, value] : task.Held) {
        bool found = false;
        for (const PartToChoose& part : PartsToChoose(design, {}, 0)) {
            if (names[static_cast<std::size_t>(part.Place.Slot)]
                     [static_cast<std::size_t>(part.Place.Row)] != name)
                continue;
            found = true;
            std::erase_if(held, [&](const HeldPart& one) { return one.Place == part.Place; });
            held.push_back({part.Place, value});
        }
        if (!found) error = "this ladder has no coil or capacitor \"" + name + "\"";
    }
}

std::string Decibels(double db) {
    constexpr int decimals = 2;
    return FormatFixed(db, decimals) + " dB";
}

PartsRemark Absorb(FilterDesign& design, const ElementList& ideal) {
    if (design.PartModel.Choice == PartChoice::IdealParts)
        return {"absorb", "Ideal parts have no parasitics to absorb."};
    const AbsorbedLadder absorbed = AbsorbParasitics(design, ideal);
    if (std::isnan(absorbed.MissDb))
        return {"absorb", "There is no pass band whose shape could be kept.", true};
    design.Elements = absorbed.Elements;
    const std::string shape =
        Decibels(absorbed.MissDb) + " of the ideal shape with " + Decibels(absorbed.LossDb) +
        " of loss; without it the values miss by " + Decibels(absorbed.MissedDb);
    if (absorbed.MissDb <= AbsorbedLadder::ShapeKeptDb)
        return {"absorb", "Parasitics absorbed: within " + shape + "."};
    constexpr int digits = 2;
    return {"absorb",
            "Q too low to absorb the parasitics: within " + shape + "." +
                (absorbed.NeededQ > 0.0
                     ? " It takes coils of Q " +
                           FormatPlain(RoundToSignificant(absorbed.NeededQ, digits), digits) + "."
                     : ""),
            true};
}

}  // namespace

std::vector<PartsRemark> PrepareParts(Calculation& calculation, const LimitLines& limits) {
    FilterDesign& design = calculation.Design;
    std::vector<PartsRemark> remarks;
    if (design.AbsorbParasitics) remarks.push_back(Absorb(design, calculation.IdealElements));
    calculation.ExactElements = design.Elements;
    if (design.StdLCValues && design.StdMethod == StdMethod::Yield && limits.empty())
        remarks.push_back(
            {"std",
             "A highest yield needs limits; without them the standard values are those of the "
             "closest response.",
             true});
    return remarks;
}

ArrangedParts ArrangeParts(Calculation& calculation, const PartsTask& asked) {
    FilterDesign& design = calculation.Design;
    ArrangedParts arranged;
    arranged.Remarks = PrepareParts(calculation, asked.Limits);
    if (!design.StdLCValues) {
        if (!asked.Held.empty())
            arranged.Error = "parts are held among standard values, which are off";
        return arranged;
    }
    StandardTask task;
    task.Method = design.StdMethod;
    HoldAsked(calculation, asked, arranged.Error);
    task.Held = calculation.Inputs.Held;
    task.Limits = asked.Limits;
    arranged.Standard = ChooseStandardParts(design, calculation.IdealElements, task);
    TakeParts(design, *arranged.Standard);
    if (const auto shape = ShapeRemark(design, *arranged.Standard))
        arranged.Remarks.push_back(*shape);
    return arranged;
}

}  // namespace ladderwise
