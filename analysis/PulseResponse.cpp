// The pulse response: grid, spectrum and inverse transform.
#include "analysis/PulseResponse.h"

#include <cmath>
#include <new>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {

namespace {

constexpr double SpanInF0 = 20.0;  ///< Fs / F0
constexpr int NumSteps = NumPulseFreqs - 1;

// The lowest frequency, in steps: no element sees 0 Hz, where a transfer may have no value.
constexpr double InsteadOfZero = 0.1;

constexpr double LevelScale = 0.6;  ///< of the plot's height, for the height of the pulse
constexpr double OffsetWithDC = 0.2;
constexpr double OffsetWithoutDC = 0.5;

double LevelOffset(PassType passType) {
    return passType == PassType::LowPass || passType == PassType::Notch ? OffsetWithDC
                                                                        : OffsetWithoutDC;
}

/// The pulse grid and the transform of the pulse over it, for one F0 and one width.
void Tabulate(PulseWork& work, double F0, int width) {
    work.F0 = 0.0;
    for (auto* values : {&work.PulseRe, &work.PulseIm, &work.TransferRe, &work.TransferIm})
        values->resize(NumPulseFreqs);
    work.Spectrum.resize(2 * NumPulsePoints);
    if (!work.Plan.Prepare(NumPulsePoints)) throw std::bad_alloc();

    std::vector<double>& freqs = work.TransferRe;  // free until the analysis
    for (int k = 0; k < NumPulseFreqs; ++k)
        freqs[k] = (k == 0 ? InsteadOfZero : k) * (SpanInF0 * F0 / NumSteps);
    BuildSweepTables(work.Tables, freqs, F0);
    const double tau = width / (4.0 * SpanInF0 * F0);
    for (int k = 0; k < NumPulseFreqs; ++k) {
        const double w = work.Tables.Omega[k];
        const Complex edges(1.0 - std::cos(w * tau), std::sin(w * tau));
        const Complex pulse = GuardedDivide(edges, Complex(0.0, w));
        work.PulseRe[k] = pulse.real();
        work.PulseIm[k] = pulse.imag();
    }
    work.F0 = F0;
    work.Width = width;
}

/// The value at index 0 or NumSteps, which stands for itself on both sides of the spectrum and must
/// be real.
double RealEnd(double re, double im) {
    const double magnitude = std::hypot(re, im);
    return re < 0.0 ? -magnitude : magnitude;
}

/// Transfer times pulse for positive frequencies, its conjugate for negative ones.
void FillSpectrum(PulseWork& work) {
    double* const up = work.Spectrum.data();
    double* const down = up + 2 * NumPulsePoints;
    for (int k = 0; k < NumPulseFreqs; ++k) {
        const double hRe = work.TransferRe[k], hIm = work.TransferIm[k];
        const double pRe = work.PulseRe[k], pIm = work.PulseIm[k];
        const double re = hRe * pRe - hIm * pIm, im = hRe * pIm + hIm * pRe;
        up[2 * k] = re;
        up[2 * k + 1] = im;
        if (k == 0) continue;
        down[-2 * k] = re;
        down[-2 * k + 1] = -im;
    }
    for (const int k : {0, NumSteps}) {
        up[2 * k] = RealEnd(up[2 * k], up[2 * k + 1]);
        up[2 * k + 1] = 0.0;
    }
}

}  // namespace

void CalcPulseResponse(FilterDesign& design, int width, PulseWork& work,
                       std::span<double, NumSweepPoints> samples, const MessageCallback& report) {
    const bool ready = work.Plan.Size() == NumPulsePoints && work.F0 == design.F0;
    if (!ready || work.Width != width) {
        try {
            Tabulate(work, design.F0, width);
        } catch (const std::bad_alloc&) {
            if (report) report("Error", "Unable to Allocate Memory in CalcPulseResponse");
            return;
        }
    }
    if (!AnalyseLadder(design, work.Tables, {}, work.TransferRe, work.TransferIm, {})) return;
    FillSpectrum(work);
    work.Plan.Transform(work.Spectrum.data(), InverseFFT);

    const double span = SpanInF0 * design.F0;
    const double scale = LevelScale * (span / NumSteps), offset = LevelOffset(design.PassType);
    for (int i = 0; i < NumSweepPoints; ++i)
        samples[i] = scale * work.Spectrum[2 * i] + offset;
    design.PulseTimeStep = static_cast<double>(width) / NumSteps / span;
}

double PulseLevel(PassType pass, double height) {
    return (height - LevelOffset(pass)) / LevelScale;
}

}  // namespace ladderwise
