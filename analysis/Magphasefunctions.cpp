// Response quantities: levels, phases and group delays of a sweep.
#include "analysis/Magphasefunctions.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <vector>

#include "numbers/Formatfunctions.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {
namespace {

constexpr double OneOverPi = 0.3183098861837907;

// Where the searches of the full scale begin: beyond any level (dB) and any delay (s).
constexpr double BelowAnyLevel = -1e30;
constexpr double AboveAnyDelay = 1e30;
constexpr double BelowAnyDelay = -1e30;

double Degrees(double angle) {
    return angle * 180.0 * OneOverPi;
}

/// A NaN level is not below the threshold.
double BlankBelow(double level, double threshold, double value) {
    return level < threshold ? BlankMarker : value;
}

double FullScale(std::span<const double> levels, std::span<const double> groupDelay,
                 const KernelFunctions& kernel) {
    const int count = static_cast<int>(std::min(levels.size(), groupDelay.size()));
    const double peak = kernel.Largest(levels.data(), count, BelowAnyLevel);
    double smallest3 = AboveAnyDelay, largest20 = BelowAnyDelay;
    kernel.DelayRange(groupDelay.data(), levels.data(), count, peak - 3.0, peak - 20.0, &smallest3,
                      &largest20);
    double scale = 10.0 * smallest3 * 0.5;
    if (largest20 > scale) scale = 10.0 * largest20 * 0.125;
    return RoundToSignificant(scale, 2);
}

/// Points that the kernel left undone hold NaN in the levels.
void FinishOddPoints(const SweepResponse& response, std::size_t count, DisplayQuantities& out) {
    for (std::size_t i = 0; i < count; ++i) {
        if (!std::isnan(out.MagnitudeDb[i])) continue;
        const Complex H(response.TransferRe[i], response.TransferIm[i]);
        out.MagnitudeDb[i] = ComplexToDb(H);
        out.Angle[i] = PhaseRad(H);
    }
}

}  // namespace

double PhaseDeg(Complex z) {
    return Degrees(PhaseRad(z));
}

double PhaseRad(Complex z) {
    if (z.real() == 0.0 && z.imag() == 0.0) return 0.0;
    return GuardedAtan2(z.imag(), z.real());
}

double Magnitude(Complex z) {
    return GuardedSqrt(z.real() * z.real() + z.imag() * z.imag());
}

void MagnitudeArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                    MagnitudeMode mode) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        const Complex H(re[i], im[i]);
        out[i] = mode == MagnitudeMode::Linear ? 9.0 * Magnitude(H) - 9.0 : ComplexToDb(H);
    }
}

void PhaseArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                double threshold) {
    for (std::size_t i = 0; i < out.size(); ++i) {
        const Complex H(re[i], im[i]);
        out[i] = BlankBelow(ComplexToDb(H), threshold, PhaseDeg(H));
    }
}

void GroupDelayArray(std::span<const double> re, std::span<const double> im, std::span<double> out,
                     std::span<const double> freqs, double threshold) {
    if (out.empty()) return;
    constexpr std::size_t chunk = 256;
    std::array<double, chunk + 1> level, angle;
    out[0] = BlankMarker;
    for (std::size_t start = 0; start + 1 < out.size(); start += chunk) {
        const std::size_t count = std::min(chunk + 1, out.size() - start);
        for (std::size_t i = 0; i < count; ++i) {
            const Complex H(re[start + i], im[start + i]);
            level[i] = ComplexToDb(H);
            angle[i] = PhaseRad(H);
        }
        ReadyKernel(KernelChoice::Automatic)
            .GroupDelays({level.data(), angle.data(), freqs.data() + start, static_cast<int>(count),
                          threshold, out.data() + start});
    }
    if (out.size() > 1) out[0] = out[1];
}

double GroupDelayFullScale(std::span<const double> re, std::span<const double> im,
                           std::span<const double> groupDelay) {
    std::vector<double> levels(re.size());
    MagnitudeArray(re, im, levels, MagnitudeMode::Decibels);
    return FullScale(levels, groupDelay, ReadyKernel(KernelChoice::Automatic));
}

void DeriveDisplayQuantities(const SweepResponse& response, std::span<const double> freqs,
                             double threshold, NeededQuantities needed, DisplayQuantities& out,
                             KernelChoice choice) {
    const std::size_t count = std::min<std::size_t>(freqs.size(), NumSweepPoints);
    const int n = static_cast<int>(count);
    const bool angles = needed.Phase || needed.GroupDelay;
    if (n == 0 || !(angles || needed.Magnitude)) return;
    const KernelFunctions& kernel = ReadyKernel(choice);
    if (kernel.LevelsAndAngles(response.TransferRe.data(), response.TransferIm.data(), n,
                               out.MagnitudeDb.data(), angles ? out.Angle.data() : nullptr))
        FinishOddPoints(response, count, out);
    if (needed.Phase) {
        for (std::size_t i = 0; i < count; ++i)
            out.PhaseDeg[i] = BlankBelow(out.MagnitudeDb[i], threshold, Degrees(out.Angle[i]));
    }
    if (needed.GroupDelay) {
        kernel.GroupDelays({out.MagnitudeDb.data(), out.Angle.data(), freqs.data(), n, threshold,
                            out.GroupDelay.data()});
        out.GroupDelay[0] = n > 1 ? out.GroupDelay[1] : BlankMarker;
        out.GDFullScale = FullScale(std::span(out.MagnitudeDb).first(count),
                                    std::span(out.GroupDelay).first(count), kernel);
    }
}

void ResetExtremes(std::span<double> lowPower, std::span<double> highPower) {
    std::fill(lowPower.begin(), lowPower.end(), std::numeric_limits<double>::infinity());
    std::fill(highPower.begin(), highPower.end(), -std::numeric_limits<double>::infinity());
}

void AccumulateExtremes(std::span<const double> re, std::span<const double> im,
                        std::span<double> lowPower, std::span<double> highPower,
                        KernelChoice choice) {
    const std::size_t count = std::min({re.size(), im.size(), lowPower.size(), highPower.size()});
    ReadyKernel(choice).Extremes(re.data(), im.data(), static_cast<int>(count), lowPower.data(),
                                 highPower.data());
}

void ExtremesToDb(std::span<const double> power, std::span<double> db) {
    for (std::size_t i = 0; i < db.size(); ++i) {
        const double p = power[i];
        if (std::isfinite(p))
            db[i] = p > 0.0 ? 10.0 * GuardedLog10(p) : ZeroPowerDb;
        else
            db[i] = std::numeric_limits<double>::quiet_NaN();
    }
}

}  // namespace ladderwise
