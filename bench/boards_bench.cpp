// Choice of standard values and yield: what a user waits for.
#include <benchmark/benchmark.h>

#include <memory>

#include "boards/StandardParts.h"
#include "boards/Yield.h"
#include "pipeline/NamedSettings.h"

namespace ladderwise {
namespace {

std::unique_ptr<Calculation> BoardsDesign(bool narrow) {
    auto calculation = std::make_unique<Calculation>();
    const auto set = [&](const char* name, const char* value) {
        ApplySetting(*calculation, name, value, {});
    };
    for (const char* const tolerance : {"cap-tol", "ind-tol"})
        set(tolerance, "5");
    set("response", "chebyshev");
    set("poles", "5");
    set("pass", narrow ? "band-pass" : "low-pass");
    set("bw-percent", "4");
    Calculate(*calculation, {});
    return calculation;
}

LimitLines MaskOf(const FilterDesign& design) {
    return {{LimitKind::AttenMax, 0.0, 0.9 * design.F0, 1.0},
            {LimitKind::AttenMin, 2.0 * design.F0, 10.0 * design.F0, 38.0}};
}

void Choose(benchmark::State& state, StdMethod method, bool narrow, bool first) {
    const auto calculation = BoardsDesign(narrow);
    StandardTask task;
    task.Method = method;
    task.FirstAnswer = first;
    if (method == StdMethod::Yield) task.Limits = MaskOf(calculation->Design);
    for (auto _ : state)
        benchmark::DoNotOptimize(
            ChooseStandardParts(calculation->Design, calculation->IdealElements, task));
}

/// Target: 50 ms.
void BM_ClosestValues(benchmark::State& state) {
    Choose(state, StdMethod::Together, false, false);
}
BENCHMARK(BM_ClosestValues)->Unit(benchmark::kMillisecond);

/// Target: 20 ms beyond the closest single values, which it starts from too.
void BM_PairedValues(benchmark::State& state) {
    Choose(state, StdMethod::Pairs, true, false);
}
BENCHMARK(BM_PairedValues)->Unit(benchmark::kMillisecond);

/// Targets: 30 ms for the first answer, 250 ms for the last.
void BM_HighestYield(benchmark::State& state) {
    Choose(state, StdMethod::Yield, false, state.range(0) != 0);
}
BENCHMARK(BM_HighestYield)->Arg(1)->Arg(0)->Unit(benchmark::kMillisecond);

/// Targets: 10 000 boards 30 ms, 100 000 boards 300 ms.
void BM_Boards(benchmark::State& state) {
    const auto calculation = BoardsDesign(false);
    const YieldTask task{MaskOf(calculation->Design), static_cast<int>(state.range(0)), 1};
    for (auto _ : state)
        benchmark::DoNotOptimize(YieldOf(calculation->Design, task));
}
BENCHMARK(BM_Boards)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ladderwise
