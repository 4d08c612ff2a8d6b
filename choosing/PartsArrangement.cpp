// Absorbed parasitics and held parts in the middle of a calculation.
#include "choosing/PartsArrangement.h"

#include <algorithm>
#include <cmath>

#include "boards/Absorb.h"
#include "boards/StandardSeries.h"
#include "design/Designators.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

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

std::string SettleNamed(Calculation& calculation, const std::vector<NamedPart>& named) {
    const FilterDesign& design = calculation.Design;
    const auto names = DesignatorsOf(design);
    const std::vector<PartToChoose> parts = PartsToChoose(design, {}, 0);
    std::string error;
    for (const NamedPart& one : named) {
        const std::string option = one.Value > 0.0 ? "--hold: " : "--tolerance: ";
        if (one.Value > 0.0 && !design.StdLCValues)
            return option + "parts are held among standard values, which are off";
        const auto part = std::find_if(parts.begin(), parts.end(), [&](const PartToChoose& there) {
            return names[static_cast<std::size_t>(there.Place.Slot)]
                        [static_cast<std::size_t>(there.Place.Row)] == one.Name;
        });
        if (part == parts.end()) {
            error = option + "this ladder has no coil or capacitor \"" + one.Name + "\"";
            continue;
        }
        HeldPart settled = SettledAt(calculation.Inputs.Held, part->Place);
        if (one.Value > 0.0) settled.Value = one.Value;
        if (one.Tolerance > 0.0) settled.Tolerance = one.Tolerance;
        Settle(calculation.Inputs.Held, settled);
    }
    return error;
}

}  // namespace ladderwise
