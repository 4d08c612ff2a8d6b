// The scale of the prototype laid through the edges that the ideal ladder has.
#include "boards/BoardPoints.h"

#include <algorithm>
#include <cmath>

#include "analysis/ResponseSamples.h"
#include "analysis/Results.h"

namespace ladderwise {

namespace {

constexpr double skirtDepthDb = 40.0;
constexpr double farthestSkirt = 10.0;  ///< where 40 dB are never reached
constexpr double notchReach = 0.1;      ///< 1 / p at five bandwidths from the centre
constexpr double nearZero = 1e-3;       ///< of the corner: a low-pass is as at 0 Hz

/// Where the samples cross `level` between i and i + 1, Hz.
double CrossingAt(const ResponseSamples& samples, int i, double level) {
    const auto at = static_cast<std::size_t>(i);
    const double a = samples.Level[at], b = samples.Level[at + 1];
    const double t = a != b ? std::clamp((level - a) / (b - a), 0.0, 1.0) : 0.5;
    return samples.F[at] + (std::isfinite(t) ? t : 0.5) * (samples.F[at + 1] - samples.F[at]);
}

/// The crossing of `level` next to sample `from` in steps of `step`; 0 if there is none. `above`:
/// on which side of it the samples are until then.
double CrossingFrom(const ResponseSamples& samples, int from, int step, double level, bool above) {
    for (int i = from; i + step >= 0 && i + step < samples.Count(); i += step) {
        const double next = samples.Level[static_cast<std::size_t>(i + step)];
        if ((next >= level) == above) continue;
        return CrossingAt(samples, std::min(i, i + step), level);
    }
    return 0.0;
}

/// f (Hz) at p, from -1 at the lower to 1 at the upper edge: the root of
/// (f / fc - fc / f) fc / (upper - lower) = p, fc the geometric mean of the edges.
double BandFrequency(const DesignBand& band, double p) {
    const double centre = std::sqrt(band.Lower * band.Upper);
    const double half = 0.5 * p * (band.Upper - band.Lower);
    return half + std::sqrt(half * half + centre * centre);
}

double FrequencyAt(const DesignBand& band, double p) {
    switch (band.Pass) {
        case PassType::LowPass:
            return std::max(p, nearZero) * band.Upper;
        case PassType::HighPass:
            return band.Lower / std::max(p, nearZero);
        case PassType::Notch:
            return BandFrequency(band, 1.0 / p);
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return BandFrequency(band, p);
    }
    return 0.0;
}

/// The inverse of FrequencyAt.
double PlaceOf(const DesignBand& band, double f) {
    switch (band.Pass) {
        case PassType::LowPass:
            return f / band.Upper;
        case PassType::HighPass:
            return band.Lower / f;
        case PassType::Notch:
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            break;
    }
    const double x = (f - band.Lower * band.Upper / f) / (band.Upper - band.Lower);
    return band.Pass == PassType::Notch ? 1.0 / x : x;
}

bool HasTwoSides(PassType pass) {
    return HasBandWidth(pass);
}

void TakeSkirts(const ResponseSamples& samples, int peak, DesignBand& band) {
    const double deep = -band.LeastLoss - skirtDepthDb;
    const auto reach = [&](int from, int step) {
        const double f = CrossingFrom(samples, from, step, deep, true);
        const double p = f > 0.0 ? std::abs(PlaceOf(band, f)) : farthestSkirt;
        return std::isfinite(p) ? std::clamp(p, 1.0 + nearZero, farthestSkirt) : farthestSkirt;
    };
    const bool notch = band.Pass == PassType::Notch;
    band.SkirtLow = reach(notch ? 0 : peak, notch ? 1 : -1);
    band.SkirtHigh = reach(notch ? samples.Count() - 1 : peak, notch ? -1 : 1);
    if (band.Pass == PassType::HighPass) band.SkirtHigh = band.SkirtLow;
}

}  // namespace

DesignBand DesignBandOf(const FilterDesign& ideal) {
    const ResponseSamples samples = TakeSamples(ideal);
    DesignBand band;
    band.Pass = ideal.PassType;
    if (samples.Count() < 2) return band;
    const bool notch = band.Pass == PassType::Notch;
    const BandRange about = BandAboutF0(ideal);
    int peak = -1, dip = -1;
    for (int i = 0; i < samples.Count(); ++i) {
        const auto at = static_cast<std::size_t>(i);
        if (std::isnan(samples.Level[at])) continue;
        if (dip < 0 || samples.Level[at] < samples.Level[static_cast<std::size_t>(dip)])
            if (about.Holds(samples.F[at])) dip = i;
        if (!notch && !about.Holds(samples.F[at]) && HasTwoSides(band.Pass)) continue;
        if (peak < 0 || samples.Level[at] > samples.Level[static_cast<std::size_t>(peak)]) peak = i;
    }
    if (peak < 0 || (notch && dip < 0)) return band;
    band.LeastLoss = -samples.Level[static_cast<std::size_t>(peak)];
    const double edge = -band.LeastLoss - HalfPowerDb;
    const int from = notch ? dip : peak;
    band.Lower = CrossingFrom(samples, from, -1, edge, !notch);
    band.Upper = CrossingFrom(samples, from, 1, edge, !notch);
    const bool needsLower = band.Pass != PassType::LowPass;
    const bool needsUpper = band.Pass != PassType::HighPass;
    if ((needsLower && !(band.Lower > 0.0)) || (needsUpper && !(band.Upper > 0.0))) return band;
    TakeSkirts(samples, peak, band);
    return band;
}

std::vector<double> PassBandPoints(const DesignBand& band, int count) {
    std::vector<double> freqs;
    const bool two = HasTwoSides(band.Pass), notch = band.Pass == PassType::Notch;
    for (int i = 0; i < count; ++i) {
        if (notch) {  // each half from its edge out to five bandwidths
            const int half = count / 2, k = i % half;
            const double p = std::cos(0.25 * TwoPi * k / (half - 1.0));
            const double side = i < half ? -1.0 : 1.0;
            freqs.push_back(FrequencyAt(band, side * std::max(p, notchReach)));
        } else {
            const double turn = two ? 0.5 : 0.25;
            freqs.push_back(FrequencyAt(band, std::cos(turn * TwoPi * i / (count - 1.0))));
        }
    }
    std::sort(freqs.begin(), freqs.end());
    return freqs;
}

std::vector<double> SkirtPoints(const DesignBand& band, int count) {
    std::vector<double> freqs;
    const bool two = HasTwoSides(band.Pass);
    const int each = two ? count / 2 : count;
    const auto add = [&](double side, double reach) {
        for (int i = 1; i <= each; ++i)
            freqs.push_back(FrequencyAt(band, side * std::pow(reach, double(i) / each)));
    };
    if (two) add(-1.0, band.SkirtLow);
    add(1.0, band.SkirtHigh);
    std::sort(freqs.begin(), freqs.end());
    return freqs;
}

}  // namespace ladderwise
