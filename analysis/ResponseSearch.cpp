// Searches between the samples of a response, on the analysis itself.
#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "analysis/ResponseSamples.h"

namespace ladderwise {
namespace {

constexpr double GoldenShare = 0.3819660112501051;  // (3 - sqrt 5) / 2
constexpr double PeakTolerance = 1e-4;              // of a bracket
constexpr int MostPeakSteps = 60;                   // a guard: a dozen are usual
constexpr int MostRootSteps = 100;                  // a guard: ten are usual
constexpr double RootTolerance = 1e-14;             // relative, of a crossing's frequency

// A lobe rises over its sample by no more than this times what the parabola does.
constexpr double MostRise = 4.0;

// Deep enough below the peak that a dip between two samples is a trap, not ripple, dB.
constexpr double TrapDepth = 10.0;

// The kernel's levels differ from those of the analysis by less than this, dB; only where a sample
// is as close to a target is the analysis asked on which side it lies.
constexpr double KernelDoubt = 1e-6;

// The slope of a peak is taken over steps of this share of its width, or shorter ones at which the
// level has fallen by SlopeDrop (dB): there rounding, of some 1e-14 dB, and the next terms of the
// series move its zero by about as little.
constexpr double SlopeShare = 1.25e-3;
constexpr double SlopeDrop = 1e-5;
constexpr double FlatCurve = 1e-12;        // dB over such steps: there is no one place of the top
constexpr int MostPolishSteps = 6;         // a guard: two are usual
constexpr double PolishTolerance = 1e-13;  // relative

/// Three places of a search in the logarithm of the frequency, the best one first.
struct Trials {
    std::array<double, 3> X{};
    std::array<double, 3> Value{};

    /// Takes a place among the three if it belongs there.
    void Take(double x, double value) {
        std::size_t rank = 0;
        while (rank < X.size() && !(value >= Value[rank]))
            ++rank;
        for (std::size_t k = X.size() - 1; k > rank; --k)
            X[k] = X[k - 1], Value[k] = Value[k - 1];
        if (rank < X.size()) X[rank] = x, Value[rank] = value;
    }

    /// Step from the best place to the top of the parabola through the three; NaN if there is none.
    double ToTop() const {
        const double r = (X[0] - X[1]) * (Value[0] - Value[2]);
        const double q = (X[0] - X[2]) * (Value[0] - Value[1]);
        return ((X[0] - X[1]) * r - (X[0] - X[2]) * q) / (2.0 * (q - r));
    }
};

/// Level and slope by five points at distance h; the curve of the second derivative in `curve`.
double SlopeAt(const FilterDesign& design, double f, double h, double& curve) {
    const auto level = [&](int step) { return LevelAt(design, f + step * h); };
    const double low2 = level(-2), low = level(-1), up = level(1), up2 = level(2);
    curve = (16.0 * (up + low) - (up2 + low2) - 30.0 * level(0)) / (12.0 * h * h);
    return (8.0 * (up - low) - (up2 - low2)) / (12.0 * h);
}

}  // namespace

std::optional<Lobe> LobeAt(const std::vector<double>& freqs, const std::vector<double>& values,
                           int i) {
    if (i < 1 || i + 1 >= static_cast<int>(values.size())) return std::nullopt;
    const double y = values[i];
    if (!(y >= values[i - 1] && y >= values[i + 1])) return std::nullopt;
    const double left = freqs[i] - freqs[i - 1], right = freqs[i + 1] - freqs[i];
    const double up = (y - values[i - 1]) / left, down = (values[i + 1] - y) / right;
    const double slope = (up * right + down * left) / (left + right);
    const double curve = (down - up) / (left + right);  // half the second derivative
    if (!(curve < 0.0)) return Lobe{i, y, freqs[i]};
    return Lobe{i, y - MostRise * slope * slope / (4.0 * curve), freqs[i] - slope / (2.0 * curve)};
}

std::vector<Lobe> LobesBetween(const std::vector<double>& freqs, const std::vector<double>& values,
                               int first, int last) {
    std::vector<Lobe> lobes;
    last = std::min(last, static_cast<int>(values.size()) - 2);
    for (int i = std::max(first, 1); i <= last; ++i)
        if (const auto lobe = LobeAt(freqs, values, i)) lobes.push_back(*lobe);
    return lobes;
}

void KeepHighest(std::vector<Lobe>& lobes, const std::vector<double>& values) {
    double highest = -std::numeric_limits<double>::infinity();
    for (const Lobe& lobe : lobes)
        highest = std::max(highest, values[lobe.Index]);
    std::erase_if(lobes, [&](const Lobe& lobe) { return lobe.Reach < highest; });
}

// In the logarithm of the frequency: parabolas, and the golden section where they do not help (R.
// P. Brent, "Algorithms for Minimization without Derivatives", 1973, chapter 5).
double LargestWithin(double a, double b, const std::function<double(double)>& value) {
    double low = std::log(a), high = std::log(b);
    const double tolerance = PeakTolerance * (high - low);
    const double start = low + GoldenShare * (high - low), first = value(std::exp(start));
    constexpr double none = -std::numeric_limits<double>::infinity();
    Trials trials{{start, start, start}, {first, none, none}};
    double step = 0.0, before = 0.0;  // the last step and the one before it
    for (int n = 0; n < MostPeakSteps; ++n) {
        const double x = trials.X[0], middle = 0.5 * (low + high);
        if (std::abs(x - middle) <= 2.0 * tolerance - 0.5 * (high - low)) break;
        const double top = trials.ToTop();
        // Steps must halve every second time, or the parabolas lead nowhere.
        if (std::abs(before) > tolerance && std::abs(top) < 0.5 * std::abs(before) &&
            x + top > low + tolerance && x + top < high - tolerance) {
            before = step;
            step = top;
        } else {
            before = (x < middle ? high : low) - x;
            step = GoldenShare * before;
        }
        const double u = x + (std::abs(step) < tolerance ? std::copysign(tolerance, step) : step);
        const double atU = value(std::exp(u));
        const bool better = atU >= trials.Value[0];
        ((u < x) == better ? high : low) = better ? x : u;
        trials.Take(u, atU);
    }
    return std::exp(trials.X[0]);
}

double PolishedPeak(const FilterDesign& design, double f, double reach, double width) {
    double h = SlopeShare * width, curve = 0.0;
    SlopeAt(design, f, h, curve);
    if (!(-curve * h * h > FlatCurve)) return f;
    h = std::min(h, std::sqrt(2.0 * SlopeDrop / -curve));
    double place = f;
    for (int step = 0; step < MostPolishSteps; ++step) {
        const double slope = SlopeAt(design, place, h, curve);
        if (!(curve < 0.0)) return f;
        const double change = -slope / curve;
        place += change;
        if (!(std::abs(place - f) < reach)) return f;
        if (std::abs(change) < PolishTolerance * place) break;
    }
    return place;
}

// Ridders' method (IEEE Trans. Circuits Syst. 26 (1979) 979): the bracket at least halves with
// every step.
std::optional<double> CrossingWithin(const FilterDesign& design, double a, double b,
                                     double target) {
    const auto value = [&](double f) { return LevelAt(design, f) - target; };
    double atA = value(a), atB = value(b);
    if (atA == 0.0) return a;
    if (atB == 0.0) return b;
    if (!((atA < 0.0) != (atB < 0.0)) || std::isnan(atA) || std::isnan(atB)) return std::nullopt;
    for (int step = 0; step < MostRootSteps && std::abs(b - a) > RootTolerance * a; ++step) {
        const double middle = 0.5 * (a + b), atMiddle = value(middle);
        if (atMiddle == 0.0) return middle;
        const double root = std::sqrt(atMiddle * atMiddle - atA * atB);
        const double f = root > 0.0
                             ? middle + (middle - a) * (atA > atB ? 1.0 : -1.0) * atMiddle / root
                             : middle;
        const double atF = value(f);
        if (atF == 0.0) return f;
        // Of the four points keep the two neighbours that enclose the crossing.
        if (std::signbit(atMiddle) != std::signbit(atF)) {
            a = middle, atA = atMiddle;
            b = f, atB = atF;
        } else if (std::signbit(atA) != std::signbit(atF)) {
            b = f, atB = atF;
        } else {
            a = f, atA = atF;
        }
    }
    return 0.5 * (a + b);
}

std::optional<double> FirstCrossing(const FilterDesign& design, const ResponseSamples& samples,
                                    double from, int direction, double target, bool falling) {
    const auto beyond = [&](double level) { return falling ? level < target : level > target; };
    const auto level = [&](int i) {
        const double sampled = samples.Level[i];
        return std::abs(sampled - target) < KernelDoubt ? LevelAt(design, samples.F[i]) : sampled;
    };
    const int count = samples.Count();
    int i = samples.At(from);
    if (direction < 0) --i;
    if (direction > 0 && i < count && samples.F[i] == from) ++i;
    const double start = LevelAt(design, from);
    double before = from;
    for (; i >= 0 && i < count; before = samples.F[i], i += direction) {
        if (beyond(level(i))) return CrossingWithin(design, before, samples.F[i], target);
        const int next = i + direction;
        if (!falling || samples.Level[i] > start - TrapDepth || next < 0 || next >= count) continue;
        if (i - direction < 0 || i - direction >= count) continue;
        if (samples.Level[i] >= samples.Level[i - direction] ||
            samples.Level[i] >= samples.Level[next])
            continue;
        const double dip =
            LargestWithin(std::min(before, samples.F[next]), std::max(before, samples.F[next]),
                          [&](double f) { return -LevelAt(design, f); });
        if (beyond(LevelAt(design, dip))) return CrossingWithin(design, before, dip, target);
    }
    return std::nullopt;
}

}  // namespace ladderwise
