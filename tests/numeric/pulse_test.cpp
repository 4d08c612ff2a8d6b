// The Fourier transform against its definition, and the pulse response against closed forms.
#include <gtest/gtest.h>

#include <numeric>

#include "analysis/FFTFunctions.h"
#include "analysis/PulseResponse.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

using Samples = std::vector<Complex>;

Samples Transformed(Samples data, int type) {
    FFT(reinterpret_cast<double*>(data.data()), static_cast<int>(data.size()), type, {});
    return data;
}

double Energy(const Samples& x) {
    return std::accumulate(x.begin(), x.end(), 0.0,
                           [](double sum, Complex z) { return sum + std::norm(z); });
}

TEST(Fft, AgreesWithTheDefinitionAndWithParseval) {
    std::mt19937 random(9);
    std::normal_distribution<double> normal;
    for (int N = 8; N <= 4096; N *= 2) {
        Samples x(N), circle(N);
        for (int i = 0; i < N; ++i) {
            x[i] = {normal(random), normal(random)};
            circle[i] = Complex(std::polar(1.0L, 2 * std::numbers::pi_v<long double> * i / N));
        }
        const Samples forward = Transformed(x, ForwardFFT), inverse = Transformed(x, InverseFFT);
        double worst = 0.0;
        for (int k = 0; k < N; ++k) {
            Complex down = 0.0, up = 0.0;
            for (int n = 0; n < N; ++n) {
                const Complex w = circle[k * n % N];
                down += x[n] * std::conj(w);
                up += x[n] * w;
            }
            worst = std::max({worst, std::abs(down / double(N) - forward[k]) * std::sqrt(N),
                              std::abs(up - inverse[k]) / std::sqrt(N)});
        }
        EXPECT_LT(worst, 1e-12) << N;
        EXPECT_NEAR(Energy(forward) * N / Energy(x), 1.0, 1e-12) << N;
        EXPECT_NEAR(Energy(inverse) / N / Energy(x), 1.0, 1e-12) << N;
    }
    const Samples constant = Transformed(Samples(64, 1.0), ForwardFFT);
    EXPECT_EQ(constant[0], 1.0);
    EXPECT_EQ(Energy(constant), 1.0);
}

TEST(Fft, SizesAndTypesThatItRefuses) {
    const struct {
        int N, Log2;
    } sizes[] = {{8, 3},       {4096, 12},   {1048576, 20}, {4, 0},
                 {2097152, 0}, {1048575, 0}, {0, 0},        {-8, 0}};
    for (const auto& s : sizes)
        EXPECT_EQ(FFTLog2(s.N), s.Log2) << s.N;
    std::vector<double> data(24, 3.0);
    Recorder log;
    FFT(data.data(), 12, ForwardFFT, log.Report());
    FFT(data.data(), 8, 2, log.Report());
    FFT(data.data(), 8, -1, log.Report());
    EXPECT_EQ(log.Messages, std::vector<std::string>(3, "FFT Error: Invalid FFT type or size."));
    EXPECT_EQ(data, std::vector<double>(24, 3.0));
}

/// What a plot shows of exp(-a t) steps up at 0 and down at tau, summed over the pulse grid as far
/// as its span reaches: transfer a / (a + s), or s / (a + s) if `high`.
double OnePole(double a, bool high, double F0, double tau, double t) {
    const double step = 20.0 * F0 / 2048.0;
    double sum = 0.0;
    for (int k = 0; k <= 2048; ++k) {
        const Complex s(0.0, TwoPi * step * (k == 0 ? 0.1 : k));
        Complex X = (high ? s : a) / (a + s) * (1.0 - std::exp(-s * tau)) / s;
        if (k == 0 || k == 2048) X = std::copysign(std::abs(X), X.real()) / 2.0;
        sum += 2.0 * (X * std::polar(1.0, TwoPi * k * step * t)).real() * step;
    }
    return sum;
}

TEST(Pulse, OnePoleLadders) {
    // A shunt capacitor between equal resistances and a series one: poles at 2 / (R C), 1 / (2 R C)
    // and a factor of 1 on their pass band.
    const double R = 50.0, a = TwoPi * TestF0 / 3.0, tau = 12.8 / TestF0;
    PulseWork work;
    std::array<double, NumSweepPoints> samples;
    for (const bool high : {false, true}) {
        CircuitElement slot;
        slot.Type = high ? ElementType::SeriesCap : ElementType::ShuntCap;
        slot.V2 = high ? 1.0 / (2.0 * R * a) : 2.0 / (R * a);
        FilterDesign design = MakeDesign({slot});
        design.PassType = high ? PassType::HighPass : PassType::LowPass;
        const FilterDesign before = design;
        CalcPulseResponse(design, PulseWidth, work, samples, {});
        EXPECT_DOUBLE_EQ(design.PulseTimeStep, 1.0 / (40.0 * TestF0));
        EXPECT_EQ(design.SweepFreqs, before.SweepFreqs);
        EXPECT_EQ(design.Response.TransferRe, before.Response.TransferRe);
        for (int i = 0; i < NumSweepPoints; i += 7) {
            const double t = i * design.PulseTimeStep, v = (samples[i] - (high ? 0.5 : 0.2)) / 0.6;
            EXPECT_NEAR(v, OnePole(a, high, TestF0, tau, t), 1e-12) << i;
            // The low pass in time, away from the edges, where the missing band shows.
            if (high || std::abs(t - tau) < 1.0 / TestF0 || t < 1.0 / TestF0) continue;
            const double rise = 1.0 - std::exp(-a * t), fall = 1.0 - std::exp(-a * (t - tau));
            EXPECT_NEAR(v, rise - (t < tau ? 0.0 : fall), 2e-4) << i;
        }
    }
}

TEST(Pulse, WhatHasNoElementKeepsTheOldTrace) {
    PulseWork work;
    std::array<double, NumSweepPoints> samples;
    FilterDesign through = MakeDesign({}), broken = MakeDesign({CircuitElement{}});
    CalcPulseResponse(through, PulseWidth, work, samples, {});
    EXPECT_NEAR(samples[400], 0.8, 1e-3);
    Recorder log;
    CalcPulseResponse(broken, PulseWidth, work, samples, log.Report());
    EXPECT_NEAR(samples[400], 0.8, 1e-3);
    EXPECT_TRUE(log.Messages.empty());
}

}  // namespace
}  // namespace ladderwise
