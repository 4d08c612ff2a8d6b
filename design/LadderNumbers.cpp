// Numbers of a ladder.
#include "design/LadderNumbers.h"

#include <cstring>

namespace ladderwise {

std::vector<double> LadderNumbers(const FilterDesign& design) {
    const PartModel& model = design.PartModel;
    std::vector<double> numbers = {
        design.F0,      design.BandWidth, static_cast<double>(design.PassType),
        design.RSource, design.RLoad,     static_cast<double>(model.Choice),
        model.IndQ,     model.IndC,       model.CapR,
        model.CapL};
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        numbers.push_back(static_cast<double>(design.Elements[slot].Type));
        for (int row = 0; row < 4; ++row)
            numbers.push_back(design.Elements[slot].Value(row));
    }
    for (const PairedPart& pair : design.Pairs)
        if (PairAt(design, pair.Place))
            numbers.insert(numbers.end(), {static_cast<double>(pair.Place.Slot),
                                           static_cast<double>(pair.Place.Row), pair.Smaller});
    return numbers;
}

bool SameLadderNumbers(const std::vector<double>& a, const std::vector<double>& b) {
    return a.size() == b.size() && std::memcmp(a.data(), b.data(), a.size() * sizeof(double)) == 0;
}

}  // namespace ladderwise
