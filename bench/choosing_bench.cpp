// Time of the list of filters for a need, of the next one after a limit has moved, and of the
// slopes of a ladder's values.
#include <benchmark/benchmark.h>

#include <cmath>
#include <memory>

#include "analysis/Sensitivities.h"
#include "choosing/FilterChoices.h"

namespace {

using namespace ladderwise;
using enum LimitKind;

const LimitLines lowPassNeed = {{AttenMax, 0.0, 30e6, 0.5}, {AttenMin, 45e6, 300e6, 50.0}};
const LimitLines harmonicsNeed = {
    {AttenMax, 144e6, 148e6, 1.0}, {AttenMin, 288e6, 296e6, 45.0}, {AttenMin, 432e6, 444e6, 45.0}};
const LimitLines bandNeed = {
    {AttenMax, 95e6, 105e6, 2.0}, {AttenMin, 50e6, 85e6, 40.0}, {AttenMin, 118e6, 300e6, 40.0}};
const LimitLines notchNeed = {
    {AttenMin, 98e6, 102e6, 40.0}, {AttenMax, 30e6, 88e6, 1.0}, {AttenMax, 115e6, 250e6, 1.0}};

/// `next`: each list goes on from the last, the first stop limit moved a little.
void Choose(benchmark::State& state, PassType pass, PartChoice parts, const LimitLines& need,
            bool next) {
    ChoosingRequest request;
    request.Inputs.Choice(ChoiceId::Pass) = static_cast<int>(pass);
    request.Inputs.Choice(ChoiceId::Parts) = static_cast<int>(parts);
    request.Limits = need;
    request.MostRows = 200;  // as the window shows
    request.YieldRows = 0;
    request.DominatedRows = false;
    ChoosingMemory memory;
    FilterList list = ChooseFilters(request, memory);
    LimitLine& moved = request.Limits[need[0].Kind == AttenMin ? 0 : 1];
    const double unmoved = moved.Value;
    int step = 0;
    for (auto _ : state) {
        if (next)
            moved.Value = unmoved + 0.2 * (++step % 10);
        else
            memory = {.Prototypes = std::move(memory.Prototypes)};
        list = ChooseFilters(request, memory);
        benchmark::DoNotOptimize(list.Choices.data());
    }
    state.counters["candidates"] = list.Candidates;
    state.counters["analyses"] = double(list.Analyses);
}

void Slopes(benchmark::State& state, PartChoice parts) {
    FilterDesign design;
    design.F0 = 100e6;
    design.NumElements = NumSlots - 1;
    design.PartModel.Choice = parts;
    for (int k = 1; k < NumSlots; ++k) {
        CircuitElement& slot = design.Elements[static_cast<std::size_t>(k)];
        slot.Type = k % 2 == 1 ? ElementType::ShuntCap : ElementType::SeriesInd;
        (k % 2 == 1 ? slot.V2 : slot.V1) = k % 2 == 1 ? 40e-12 : 90e-9;
    }
    std::vector<double> freqs;
    for (int i = 0; i < 256; ++i)
        freqs.push_back(20e6 * std::pow(10.0, i / 256.0));
    for (auto _ : state) {
        const LadderSlopes slopes = SlopesOf(design, freqs);
        benchmark::DoNotOptimize(slopes.Attenuation.data());
    }
}

int RegisterChoosing() {
    const struct {
        const char* Name;
        PassType Pass;
        const LimitLines& Need;
    } needs[] = {{"low-pass", PassType::LowPass, lowPassNeed},
                 {"harmonics", PassType::LowPass, harmonicsNeed},
                 {"band", PassType::BandPassCanonical, bandNeed},
                 {"notch", PassType::Notch, notchNeed}};
    for (const auto& [name, pass, need] : needs)
        for (const PartChoice parts : {PartChoice::IdealParts, PartChoice::RealParts})
            for (const bool next : {false, true})
                benchmark::RegisterBenchmark(
                    (std::string("Choose/") + name +
                     (parts == PartChoice::IdealParts ? "/ideal" : "/real") +
                     (next ? "/next" : "/list"))
                        .c_str(),
                    Choose, pass, parts, need, next)
                    ->Unit(benchmark::kMillisecond);
    benchmark::RegisterBenchmark("Slopes31x256/ideal", Slopes, PartChoice::IdealParts)
        ->Unit(benchmark::kMicrosecond);
    benchmark::RegisterBenchmark("Slopes31x256/real", Slopes, PartChoice::RealParts)
        ->Unit(benchmark::kMicrosecond);
    return 0;
}

const int registeredChoosing = RegisterChoosing();

}  // namespace
