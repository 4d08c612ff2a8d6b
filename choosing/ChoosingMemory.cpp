// What a memory keeps, and for how long.
#include "choosing/ChoosingMemory.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace ladderwise {

namespace {

constexpr std::size_t mostPrototypes = 8000;
constexpr std::size_t mostMissPlaces = 8000;

/// What a margin gains at most as limits change, dB: no more than a value does, at any place.
double LargestGain(const LimitLines& before, const LimitLines& after) {
    constexpr double unknown = std::numeric_limits<double>::infinity();
    if (before.size() != after.size()) return unknown;
    double largest = 0.0;
    for (std::size_t i = 0; i < after.size(); ++i) {
        LimitLine moved = before[i];
        moved.Value = after[i].Value;
        if (moved != after[i]) return unknown;
        if (before[i] == after[i]) continue;
        if (after[i].Kind == LimitKind::DelayVariationMax) return unknown;
        largest = std::max(largest, std::abs(after[i].Value - before[i].Value));
    }
    return largest;
}

}  // namespace

void TakeUp(ChoosingMemory& memory, const FilterDesign& base, const LimitLines& limits) {
    const PartModel& model = base.PartModel;
    std::vector<double> signature = {double(base.PassType),
                                     base.RSource,
                                     base.RLoad,
                                     double(model.Choice),
                                     double(base.StdLCValues),
                                     model.IndQ,
                                     model.IndC,
                                     model.CapR,
                                     model.CapL,
                                     double(model.CapSeriesStep),
                                     double(model.IndSeriesStep)};
    if (signature != memory.Signature) {
        memory.Places.clear();
        memory.Refined.clear();
        memory.Parts.clear();
        memory.Misses.clear();
    }
    memory.Signature = std::move(signature);
    if (memory.Prototypes.size() > mostPrototypes) memory.Prototypes.clear();
    if (memory.Misses.size() > mostMissPlaces) memory.Misses.clear();
    const double grown = LargestGain(memory.Limits, limits);
    for (auto& [key, remembered] : memory.Places)
        remembered.Grown += grown;
    for (auto& [group, refined] : memory.Refined)
        refined.Grown += grown;
    memory.Limits = limits;
}

}  // namespace ladderwise
