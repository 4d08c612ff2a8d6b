// Cost of the plot: a worst-case overlay of 1001 runs, by spans of pixels as the window draws it
// and by the toolkit's lines for comparison, and the repaint of run 0. The budgets of the overlay
// at 1280 x 800: 25 ms for one trace, 100 ms for all, 250 ms for all at twice the density.
#include <benchmark/benchmark.h>

#include <memory>
#include <vector>

#include "bench/BenchApplication.h"
#include "display/Plot.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

constexpr int Runs = 1001;
constexpr int Variants = 50;  // different curves, so that no run finds its pixels in the cache
constexpr PlotPlacement Placement{150, 700, 0};
constexpr TraceChoices OneTrace{};
constexpr TraceChoices AllTraces{true, true, true, true, true, true};

const std::vector<ButterworthResponse>& Responses() {
    static const std::vector<ButterworthResponse> made = [] {
        std::vector<ButterworthResponse> responses;
        for (int k = 0; k < Variants; ++k) {
            responses.push_back(
                MakeButterworth(SweepType::OneDecade, 0.9 + 0.2 * k / (Variants - 1)));
        }
        return responses;
    }();
    return made;
}

std::unique_ptr<Plot> MakePlot(double ratio) {
    NeedApplication();
    auto plot = std::make_unique<Plot>();
    plot->Resize(1280, 800, ratio);
    return plot;
}

void Overlay(benchmark::State& state, const TraceChoices& choices) {
    const auto plot = MakePlot(static_cast<double>(state.range(0)));
    const auto& responses = Responses();
    for (auto _ : state) {
        plot->PaintContent(responses[0].Content(choices), Placement);
        for (int run = 1; run < Runs; ++run)
            plot->PaintOverlay(responses[static_cast<std::size_t>(run % Variants)].Traces());
    }
}

void OverlayOneTrace(benchmark::State& state) {
    Overlay(state, OneTrace);
}
void OverlayAllTraces(benchmark::State& state) {
    Overlay(state, AllTraces);
}

// The same picture with every run painted as run 0 is.
void OverlayLines(benchmark::State& state, const TraceChoices& choices) {
    const auto plot = MakePlot(static_cast<double>(state.range(0)));
    const auto& responses = Responses();
    PlotContent content = responses[0].Content(choices);
    for (int run = 1; run < Runs; ++run)
        content.Layers.push_back({responses[static_cast<std::size_t>(run % Variants)].Traces()});
    for (auto _ : state)
        plot->PaintContent(content, Placement);
}

void OverlayOneTraceAsLines(benchmark::State& state) {
    OverlayLines(state, OneTrace);
}
void OverlayAllTracesAsLines(benchmark::State& state) {
    OverlayLines(state, AllTraces);
}

void MapOnly(benchmark::State& state) {
    const auto& responses = Responses();
    const PlotLayout layout = ComputePlotLayout({1280, 800, 150, 700}, {});
    const auto points = std::make_unique<TracePoints>();
    for (auto _ : state) {
        for (int run = 0; run < Runs; ++run) {
            MapTrace(responses[static_cast<std::size_t>(run % Variants)].MagnitudeDb,
                     TraceKind::Mag10dB, false, layout, {}, *points);
            benchmark::DoNotOptimize(points->NumRuns);
        }
    }
}

void RunZero(benchmark::State& state) {
    const auto plot = MakePlot(static_cast<double>(state.range(0)));
    const ButterworthResponse& response = Responses()[0];
    const PlotContent content = response.Content(AllTraces);
    for (auto _ : state)
        plot->PaintContent(content, Placement);
}

// The argument is the device pixel ratio.
BENCHMARK(OverlayOneTrace)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(OverlayAllTraces)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(OverlayOneTraceAsLines)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(OverlayAllTracesAsLines)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);
BENCHMARK(MapOnly)->Unit(benchmark::kMillisecond);
BENCHMARK(RunZero)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace ladderwise
