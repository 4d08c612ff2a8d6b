// Draws, and what they are drawn from.
#include "analysis/BoardDraws.h"

#include <algorithm>
#include <cmath>

#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"

namespace ladderwise {

namespace {

constexpr double deviationOfNormal = 1.0 / 3.0;  ///< of the tolerance
/// The same of what the cut leaves.
constexpr double deviationOfCutNormal = 0.328859464036;
constexpr double generatorRange = 4294967296.0;

/// 0 < u < 1
double UnitDraw(std::mt19937& generator) {
    return (generator() + 0.5) / generatorRange;
}

/// A standard normal number (Box and Muller, Ann. Math. Stat. 29 (1958)).
double NormalDraw(std::mt19937& generator) {
    const double radius = std::sqrt(-2.0 * std::log(UnitDraw(generator)));
    return radius * std::cos(TwoPi * UnitDraw(generator));
}

/// Of a part of `value` at a place of the ladder.
double ToleranceOf(const DesignState& design, const ValuePlace& place, double value) {
    for (const HeldPart& part : design.Held)
        if (part.Place == place && part.Tolerance > 0.0) return part.Tolerance;
    if (place.Row % 2 == 0) return design.PartModel.IndTolerance;
    if (design.Boards.CapAbsolute > 0.0 && value < BoardDraw::SmallCapacitor)
        return design.Boards.CapAbsolute / value;
    return design.PartModel.CapTolerance;
}

}  // namespace

double ToleranceAt(const DesignState& design, const ValuePlace& place) {
    const CircuitElement& slot = design.Elements[static_cast<std::size_t>(place.Slot)];
    if (!IsPart(InfoOf(slot.Type).Values[static_cast<std::size_t>(place.Row)])) return 0.0;
    return ToleranceOf(design, place, slot.Value(place.Row));
}

double SpreadAt(const DesignState& design, const ValuePlace& place) {
    const auto slot = static_cast<std::size_t>(place.Slot);
    if (!(design.Elements[slot].Value(place.Row) < LargestRandomisedValue)) return 0.0;
    const PairedPart* const pair = PairAt(design, place);
    if (!pair) return ToleranceAt(design, place);
    return std::hypot(pair->Larger * ToleranceOf(design, place, pair->Larger),
                      pair->Smaller * ToleranceOf(design, place, pair->Smaller)) /
           pair->Value;
}

double DeviationOfDraw(const BoardDraw& options) {
    constexpr double n = NumToleranceSteps;
    if (!options.Normal) return std::sqrt((n * n - 1.0) / 12.0) / ((n - 1.0) / 2.0);
    return deviationOfCutNormal;
}

BoardDrawer::BoardDrawer(const FilterDesign& design) : options(design.Boards) {
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValuePlace place{slot, row};
            const double whole = design.Elements[static_cast<std::size_t>(slot)].Value(row);
            if (!(whole < LargestRandomisedValue)) continue;
            const PairedPart* const pair = PairAt(design, place);
            const int index = pair ? static_cast<int>(pair - design.Pairs.data()) : -1;
            const auto add = [&](double value, bool continues) {
                members.push_back(
                    {place, value, value * ToleranceOf(design, place, value), continues, index});
            };
            add(pair ? pair->Larger : whole, false);
            if (pair) add(pair->Smaller, true);
        }
    for (std::size_t i = 0; i < members.size(); ++i) {
        const auto same = std::find_if(members.begin(), members.end(), [&](const Member& m) {
            return m.Value == members[i].Value && m.Place.Row % 2 == members[i].Place.Row % 2;
        });
        first.push_back(static_cast<int>(same - members.begin()));
    }
    draws.resize(members.size());
}

double BoardDrawer::DrawOne(std::mt19937& generator) const {
    if (!options.Normal) return 0.01 * DrawToleranceStep(generator);
    for (;;) {
        const double t = deviationOfNormal * NormalDraw(generator);
        if (std::abs(t) <= 1.0) return t;
    }
}

void BoardDrawer::Draw(std::mt19937& generator, FilterDesign& board) {
    for (std::size_t i = 0; i < members.size(); ++i) {
        draws[i] = DrawOne(generator);
        if (options.Reel > 0.0 && UnitDraw(generator) < options.Reel)
            draws[i] = draws[static_cast<std::size_t>(first[i])];
    }
    Place(draws, board);
}

void BoardDrawer::Place(const std::vector<double>& given, FilterDesign& board) const {
    for (std::size_t i = 0; i < members.size(); ++i) {
        const Member& member = members[i];
        double& value =
            board.Elements[static_cast<std::size_t>(member.Place.Slot)].Value(member.Place.Row);
        const double drawn = std::max(SmallestPartValue, member.Value + given[i] * member.Spread);
        value = member.Continues ? value + drawn : drawn;
        if (member.Pair < 0) continue;
        PairedPart& pair = board.Pairs[static_cast<std::size_t>(member.Pair)];
        (member.Continues ? pair.Smaller : pair.Larger) = drawn;
        pair.Value = value;
    }
}

void RandomiseParts(FilterDesign& design, std::mt19937& generator) {
    const ElementList drawn = design.Elements;
    design.Elements = design.NominalElements;
    BoardDrawer drawer(design);
    design.Elements = drawn;
    const std::vector<PairedPart> pairs = design.Pairs;
    drawer.Draw(generator, design);
    design.Pairs = pairs;
}

}  // namespace ladderwise
