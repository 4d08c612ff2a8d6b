// The search for even values.
#include "norton/Nortonsearch.h"

#include <algorithm>

namespace ladderwise {

double EvennessOf(const NortonValues& values, const NortonStructure& structure, NortonGoal goal) {
    const bool capacitors = goal == NortonGoal::Capacitors;
    const auto& list = capacitors ? values.C : values.L;
    const auto end = list.begin() + (capacitors ? structure.NumC : structure.NumL);
    double largest = list[0];
    double sum = 0.0;
    for (auto value = list.begin(); value != end; ++value) {
        largest = *value > largest ? *value : largest;
        sum += *value > 0.0 ? *value : 0.0;
    }
    return sum == 0.0 ? 0.0 : sum / largest;
}

NortonChoice SearchEvenest(NortonType type, const NortonBase& base, NortonGoal goal) {
    const NortonStructure& structure = StructureOf(type, base.NumPoles);
    const int outerPasses = base.NumPoles == 5 ? SearchPasses : 1;
    NortonChoice best;
    double M = SearchStart;
    for (int outer = 0; outer < outerPasses; ++outer) {
        M *= SearchRatio;
        double K = SearchStart;
        for (int inner = 0; inner < SearchPasses; ++inner) {
            K *= SearchRatio;
            const double score = EvennessOf(structure.Transform(base, K, M), structure, goal);
            if (score > best.Score) best = {K, M, score};
        }
    }
    return best;
}

}  // namespace ladderwise
