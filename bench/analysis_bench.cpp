// Time of the ladder sweep: the kernels against the reference form, per slot and frequency, and of
// the quantities derived from a sweep. Run the whole file to compare within one run.
#include <benchmark/benchmark.h>

#include "analysis/Circuitanalysis.h"
#include "analysis/Magphasefunctions.h"

#include <cmath>
#include <memory>

namespace {

using namespace ladderwise;

enum class Ladder { Tanks, LowPass, Traps, Stubs };

constexpr int NumBenchSlots = 21;

/// Odd and even slots of a ladder; the values are near 50 ohms at 100 MHz.
FilterDesign MakeDesign(Ladder ladder, PartChoice parts) {
    const double F0 = 100e6, L = 50.0 / (TwoPi * F0), C = 1.0 / (TwoPi * F0 * 50.0);
    FilterDesign design;
    design.F0 = F0;
    design.NumElements = NumBenchSlots;
    design.PartModel.Choice = parts;
    for (int k = 1; k <= NumBenchSlots; ++k) {
        const bool odd = k % 2 == 1;
        const double u = 1.0 + 0.01 * k;
        CircuitElement& slot = design.Elements[k];
        slot = {ElementType::SeriesCap, L * u, C * u, L / u, 1.1 * C};
        switch (ladder) {
            case Ladder::Tanks:
                slot.Type = odd ? ElementType::SeriesCap : ElementType::ShuntParLC;
                break;
            case Ladder::LowPass:
                slot.Type = odd ? ElementType::ShuntCap : ElementType::SeriesInd;
                break;
            case Ladder::Traps:
                slot.Type = odd ? ElementType::SerSerParLC : ElementType::ShuntSerParLC;
                break;
            case Ladder::Stubs:
                if (!odd) slot = {ElementType::ShuntTLSCC, 30.0 + k, 50.0 * u, UnusedValue, C};
                break;
        }
    }
    for (int i = 0; i < NumSweepPoints; ++i)
        design.SweepFreqs[i] = 0.1 * F0 * std::pow(100.0, i / double(NumSweepPoints));
    return design;
}

void Analyse(benchmark::State& state, Ladder ladder, PartChoice parts, KernelChoice choice) {
    if (!KernelAvailable(choice)) {
        state.SkipWithError("this processor cannot run the kernel");
        return;
    }
    FilterDesign design = MakeDesign(ladder, parts);
    SweepTables tables;
    BuildSweepTables(tables, design.SweepFreqs, design.F0);
    SweepResponse& out = design.Response;
    for (auto _ : state) {
        AnalyseLadder(design, tables, {}, out.TransferRe, out.TransferIm, out.ReflectionDb, choice);
        benchmark::DoNotOptimize(out.TransferRe.data());
        benchmark::ClobberMemory();
    }
    state.counters["per_slot_freq"] = benchmark::Counter(
        double(NumBenchSlots) * NumSweepPoints,
        benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

/// A whole worst-case calculation: nominal and 1000 runs, each with new values and its extremes.
void WorstCase(benchmark::State& state, Ladder ladder, PartChoice parts) {
    FilterDesign design = MakeDesign(ladder, parts);
    const ElementList nominal = design.Elements;
    SweepTables tables;
    std::array<double, NumSweepPoints> low, high;
    for (auto _ : state) {
        BuildSweepTables(tables, design.SweepFreqs, design.F0);
        ResetExtremes(low, high);
        for (int run = 0; run <= 1000; ++run) {
            design.Elements[1 + run % NumBenchSlots].V2 =
                nominal[1 + run % NumBenchSlots].V2 * (1.0 + 1e-5 * run);
            AnalyseLadder(design, tables, {});
            AccumulateExtremes(design.Response.TransferRe, design.Response.TransferIm, low, high);
        }
        benchmark::DoNotOptimize(low.data());
        benchmark::DoNotOptimize(high.data());
    }
}

void Derive(benchmark::State& state, NeededQuantities needed, KernelChoice choice) {
    FilterDesign design = MakeDesign(Ladder::LowPass, PartChoice::IdealParts);
    SweepTables tables;
    BuildSweepTables(tables, design.SweepFreqs, design.F0);
    AnalyseLadder(design, tables, {});
    const auto out = std::make_unique<DisplayQuantities>();
    for (auto _ : state) {
        DeriveDisplayQuantities(design.Response, design.SweepFreqs, -20.0, needed, *out, choice);
        benchmark::ClobberMemory();
    }
}

void Tables(benchmark::State& state) {
    const FilterDesign design = MakeDesign(Ladder::Tanks, PartChoice::IdealParts);
    SweepTables tables;
    for (auto _ : state) {
        BuildSweepTables(tables, design.SweepFreqs, design.F0);
        benchmark::ClobberMemory();
    }
}

int RegisterAll() {
    const std::pair<const char*, Ladder> ladders[] = {{"tanks", Ladder::Tanks},
                                                      {"lowpass", Ladder::LowPass},
                                                      {"traps", Ladder::Traps},
                                                      {"stubs", Ladder::Stubs}};
    const std::pair<const char*, PartChoice> parts[] = {{"ideal", PartChoice::IdealParts},
                                                        {"real", PartChoice::RealParts}};
    const std::pair<const char*, KernelChoice> kernels[] = {{"reference", KernelChoice::Reference},
                                                            {"baseline", KernelChoice::Baseline},
                                                            {"v3", KernelChoice::V3}};
    for (const auto& [ladderName, ladder] : ladders) {
        for (const auto& [partsName, choice] : parts) {
            const std::string name = std::string("/") + ladderName + "/" + partsName;
            for (const auto& [kernelName, kernel] : kernels)
                benchmark::RegisterBenchmark(("Analyse" + name + "/" + kernelName).c_str(), Analyse,
                                             ladder, choice, kernel)
                    ->Unit(benchmark::kMicrosecond);
            benchmark::RegisterBenchmark(("WorstCase1001" + name).c_str(), WorstCase, ladder,
                                         choice)
                ->Unit(benchmark::kMillisecond);
        }
    }
    for (const auto& [kernelName, kernel] : kernels) {
        if (kernel == KernelChoice::Reference) continue;
        const std::string tail = std::string("/") + kernelName;
        benchmark::RegisterBenchmark(("Derive/all" + tail).c_str(), Derive, NeededQuantities{},
                                     kernel)
            ->Unit(benchmark::kMicrosecond);
        benchmark::RegisterBenchmark(("Derive/magnitude" + tail).c_str(), Derive,
                                     NeededQuantities{true, false, false}, kernel)
            ->Unit(benchmark::kMicrosecond);
    }
    benchmark::RegisterBenchmark("Tables", Tables)->Unit(benchmark::kMicrosecond);
    return 0;
}

const int registered = RegisterAll();

}  // namespace
