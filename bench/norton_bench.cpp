// Cost of the search for K and M of a Norton-transformed band-pass; the budget is 8 ms for 5 poles.
#include <benchmark/benchmark.h>

#include "norton/Nortonsearch.h"

namespace ladderwise {
namespace {

/// A 5-pole Butterworth of 200 MHz, 40 MHz, 50 ohm: centre, end and neighbour.
NortonBase FivePoles(NortonType type) {
    constexpr NortonHalf teeHalf{
        .EndL = 123e-9, .EndC = 5.2e-12, .NextL = 4.9e-9, .NextC = 129e-12, .Split = 2.0};
    constexpr NortonHalf piHalf{
        .EndL = 13e-9, .EndC = 49e-12, .NextL = 322e-9, .NextC = 2e-12, .Split = 2.0};
    if (type == NortonType::TCap || type == NortonType::TInd)
        return {5, 1.0, 1.0, 398e-9, 1.6e-12, teeHalf, teeHalf};
    return {5, 1.0, 1.0, 4e-9, 159e-12, piHalf, piHalf};
}

void SearchFivePoles(benchmark::State& state) {
    const auto type = static_cast<NortonType>(state.range(0));
    const NortonBase base = FivePoles(type);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            SearchEvenest(type, base, static_cast<NortonGoal>(state.range(1))));
}
BENCHMARK(SearchFivePoles)->ArgsProduct({{0, 1, 2, 3}, {0, 1}})->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ladderwise
