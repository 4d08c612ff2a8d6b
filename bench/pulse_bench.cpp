// Time of the Fourier transform and of the pulse response. Where the FFTW library is installed its
// transform of the same data is timed beside ours, in the same run.
#include <benchmark/benchmark.h>

#include "analysis/Circuitanalysis.h"
#include "analysis/FFTFunctions.h"
#include "analysis/PulseResponse.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>
#if defined(LADDERWISE_BENCH_FFTW)
#include <fftw3.h>
#endif

namespace {

using namespace ladderwise;

/// Noise-like numbers of size 1; two transforms, there and back, keep their size.
std::vector<double> Numbers(int N) {
    std::vector<double> data(2 * static_cast<std::size_t>(N));
    for (std::size_t i = 0; i < data.size(); ++i)
        data[i] = std::sin(1.0 + 0.7 * static_cast<double>(i * i % 1009));
    return data;
}

/// Two transforms of NumPulsePoints points, with tables and work space made for each.
void WholeFft(benchmark::State& state) {
    std::vector<double> data = Numbers(NumPulsePoints);
    for (auto _ : state) {
        FFT(data.data(), NumPulsePoints, ForwardFFT, {});
        FFT(data.data(), NumPulsePoints, InverseFFT, {});
        benchmark::ClobberMemory();
    }
}
BENCHMARK(WholeFft)->Name("Fft/4096/there_and_back")->Unit(benchmark::kMicrosecond);

void PlannedFft(benchmark::State& state) {
    std::vector<double> data = Numbers(NumPulsePoints);
    FFTPlan plan;
    plan.Prepare(NumPulsePoints);
    for (auto _ : state) {
        plan.Transform(data.data(), ForwardFFT);
        plan.Transform(data.data(), InverseFFT);
        benchmark::ClobberMemory();
    }
}
BENCHMARK(PlannedFft)->Name("Fft/4096/planned/there_and_back")->Unit(benchmark::kMicrosecond);

#if defined(LADDERWISE_BENCH_FFTW)
/// Plans of FFTW by rule of thumb, or as it measured them to be fastest; the factor 1/N is ours.
void FftwFft(benchmark::State& state, unsigned effort) {
    std::vector<double> data = Numbers(NumPulsePoints);
    auto* const z = reinterpret_cast<fftw_complex*>(data.data());
    const fftw_plan forward = fftw_plan_dft_1d(NumPulsePoints, z, z, FFTW_FORWARD, effort);
    const fftw_plan inverse = fftw_plan_dft_1d(NumPulsePoints, z, z, FFTW_BACKWARD, effort);
    const std::vector<double> numbers = Numbers(NumPulsePoints);
    std::copy(numbers.begin(), numbers.end(), data.begin());  // measuring has overwritten them
    for (auto _ : state) {
        fftw_execute(forward);
        for (double& x : data)
            x *= 1.0 / NumPulsePoints;
        fftw_execute(inverse);
        benchmark::ClobberMemory();
    }
    fftw_destroy_plan(forward);
    fftw_destroy_plan(inverse);
}
BENCHMARK_CAPTURE(FftwFft, estimated, FFTW_ESTIMATE)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(FftwFft, measured, FFTW_MEASURE)->Unit(benchmark::kMicrosecond);
#endif

/// The pulse response of a 10-slot low-pass; `movingF0`: with new tables each time.
void Pulse(benchmark::State& state, PartChoice parts, bool movingF0) {
    FilterDesign design;
    design.F0 = 100e6;
    design.PartModel.Choice = parts;
    design.NumElements = 10;
    for (int k = 1; k <= design.NumElements; ++k) {
        design.Elements[k].Type = k % 2 == 1 ? ElementType::ShuntCap : ElementType::SeriesInd;
        design.Elements[k].V1 = 50.0 / (TwoPi * design.F0) * (1.0 + 0.01 * k);
        design.Elements[k].V2 = 1.0 / (TwoPi * design.F0 * 50.0);
    }
    PulseWork work;
    std::array<double, NumSweepPoints> samples;
    for (auto _ : state) {
        if (movingF0) design.F0 = design.F0 == 100e6 ? 101e6 : 100e6;
        CalcPulseResponse(design, PulseWidth, work, samples, {});
        benchmark::ClobberMemory();
    }
}
BENCHMARK_CAPTURE(Pulse, ideal, PartChoice::IdealParts, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Pulse, real, PartChoice::RealParts, false)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Pulse, real_new_F0, PartChoice::RealParts, true)->Unit(benchmark::kMicrosecond);

}  // namespace
