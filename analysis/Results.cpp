// Peak, edges, return loss and attenuations of a ladder.
//
//   x   frequency on the scale of the prototype: f / F0 for low-pass and high-pass; for band-pass
//   and
//       notch (f / Fc - Fc / f) Fc / BandWidth, negative below Fc. Corners lie at |x| = 1.
//   Fc  centre, Hz: F0 of a notch; of a band-pass the geometric mean of its edges F0 -+ BandWidth /
//   2 f   frequency, Hz
#include "analysis/Results.h"

#include <algorithm>
#include <cmath>
#include <functional>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {
namespace {

constexpr double GoldenShare = 0.3819660112501051;  // (3 - sqrt 5) / 2
constexpr int GoldenSteps = 30;                     // shrink a bracket 1.8 million times
constexpr int MostRootSteps = 100;                  // a guard: ten are usual
constexpr double RootTolerance = 1e-14;             // relative, of a crossing's frequency

constexpr double LowestX = 1e-6;       // of a low-pass or high-pass: as good as 0 Hz
constexpr double LinearX = 2.0;        // the grid is linear up to here, logarithmic beyond
constexpr double HighestX = 200.0;     // end of the grid
constexpr double LinearShare = 0.7;    // of the grid's points lie in its linear part
constexpr double PeakX = 2.0;          // the peak is looked for this far around the pass band
constexpr double TopOfHighPass = 3.0;  // F0 times this ends a return-loss band that has no end

// Deep enough below the peak that a dip between two samples is a trap, not ripple, dB.
constexpr double TrapDepth = 10.0;
constexpr double ResonanceNudge = 1e-12;  // relative step aside from an exact resonance

bool IsBand(PassType pass) {
    return pass != PassType::LowPass && pass != PassType::HighPass;
}

double FrequencyOf(const FilterDesign& design, double x) {
    if (!IsBand(design.PassType)) return design.F0 * x;
    const double edge = design.PassType == PassType::Notch ? 0.0 : 0.5 * design.BandWidth;
    const double centre = std::sqrt((design.F0 - edge) * (design.F0 + edge));
    const double half = 0.5 * std::abs(x) * design.BandWidth / centre;
    const double up = std::sqrt(1.0 + half * half) + half;
    return x < 0.0 ? centre / up : centre * up;
}

/// One quantity of the ladder at any frequency, dB. Exactly on a resonance of ideal parts, where
/// the analysis divides by zero, it is taken beside it.
double AtOrBeside(const FilterDesign& design, double f, Complex LadderPoint::*quantity) {
    double db = ComplexToDb(AnalysePoint(design, design.F0, f).*quantity);
    if (std::isnan(db))
        db = ComplexToDb(AnalysePoint(design, design.F0, f * (1.0 + ResonanceNudge)).*quantity);
    return db;
}

double LevelAt(const FilterDesign& design, double f) {
    return AtOrBeside(design, f, &LadderPoint::Transfer);
}

double ReflectionAt(const FilterDesign& design, double f) {
    return AtOrBeside(design, f, &LadderPoint::Reflection);
}

/// The ladder on the grid that brackets what is looked for; ascending frequencies.
struct Samples {
    std::vector<double> F, Level, Reflection;

    int Count() const { return static_cast<int>(F.size()); }
};

std::vector<double> GridOf(const FilterDesign& design) {
    const bool band = IsBand(design.PassType);
    const int side = band ? NumSweepPoints / 2 : NumSweepPoints;
    const int linear = static_cast<int>(LinearShare * side);
    std::vector<double> grid;
    grid.reserve(NumSweepPoints + 2);
    for (int k = 0; k < side; ++k) {
        const double x = k < linear ? LinearX * k / linear
                                    : LinearX * std::pow(HighestX / LinearX,
                                                         double(k - linear) / (side - 1 - linear));
        if (k > 0 || band) grid.push_back(FrequencyOf(design, x));
        if (k > 0 && band) grid.push_back(FrequencyOf(design, -x));
        if (k == 0 && !band) grid.push_back(FrequencyOf(design, LowestX));
    }
    // The far ends of the pass bands that have no end; real parts have theirs, where nobody looks.
    const bool openAbove =
        design.PassType == PassType::HighPass || design.PassType == PassType::Notch;
    if (design.PassType == PassType::Notch) grid.push_back(LowestX * design.F0);
    if (openAbove && design.PartModel.Choice == PartChoice::IdealParts)
        grid.push_back(design.F0 / LowestX);
    std::sort(grid.begin(), grid.end());
    return grid;
}

Samples TakeSamples(const FilterDesign& design) {
    Samples samples;
    samples.F = GridOf(design);
    samples.Level.resize(samples.F.size());
    samples.Reflection.resize(samples.F.size());
    std::vector<double> re(samples.F.size()), im(samples.F.size());
    SweepTables tables;
    BuildSweepTables(tables, samples.F, design.F0);
    AnalyseLadder(design, tables, {}, re, im, samples.Reflection);
    for (int i = 0; i < samples.Count(); ++i) {
        samples.Level[i] = ComplexToDb({re[i], im[i]});
        if (!std::isnan(samples.Level[i])) continue;
        samples.Level[i] = LevelAt(design, samples.F[i]);
        samples.Reflection[i] = ReflectionAt(design, samples.F[i]);
    }
    return samples;
}

/// Where `value` is largest between a and b, by golden section in the logarithm of the frequency.
double LargestWithin(double a, double b, const std::function<double(double)>& value) {
    double low = std::log(a), high = std::log(b);
    double left = low + GoldenShare * (high - low), right = high - GoldenShare * (high - low);
    double atLeft = value(std::exp(left)), atRight = value(std::exp(right));
    for (int step = 0; step < GoldenSteps; ++step) {
        if (atLeft >= atRight) {
            high = right;
            right = left;
            atRight = atLeft;
            left = low + GoldenShare * (high - low);
            atLeft = value(std::exp(left));
        } else {
            low = left;
            left = right;
            atLeft = atRight;
            right = high - GoldenShare * (high - low);
            atRight = value(std::exp(right));
        }
    }
    return std::exp(0.5 * (low + high));
}

/// The frequency between a and b at which the level crosses `target`, by Ridders' method (IEEE
/// Trans. Circuits Syst. 26 (1979) 979): the bracket at least halves with every step.
double CrossingWithin(const FilterDesign& design, double a, double b, double target) {
    const auto value = [&](double f) { return LevelAt(design, f) - target; };
    double atA = value(a), atB = value(b);
    // A sample right on the crossing may have been on its other side by the kernel's rounding.
    if (std::signbit(atA) == std::signbit(atB)) return std::abs(atA) < std::abs(atB) ? a : b;
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

/// The first crossing of `target` from sample `from` in steps of `direction`; `falling`: downwards.
/// Traps whose flanks both lie between two samples are found by looking into each deep dip.
std::optional<double> FirstCrossing(const FilterDesign& design, const Samples& samples, int from,
                                    int direction, double target, bool falling) {
    const double start = samples.Level[from];
    const auto beyond = [&](double level) { return falling ? level < target : level > target; };
    for (int i = from + direction; i >= 0 && i < samples.Count(); i += direction) {
        const double level = samples.Level[i];
        if (beyond(level))
            return CrossingWithin(design, samples.F[i - direction], samples.F[i], target);
        const int next = i + direction;
        if (!falling || level > start - TrapDepth || next < 0 || next >= samples.Count()) continue;
        if (level >= samples.Level[i - direction] || level >= samples.Level[next]) continue;
        const double dip = LargestWithin(std::min(samples.F[i - direction], samples.F[next]),
                                         std::max(samples.F[i - direction], samples.F[next]),
                                         [&](double f) { return -LevelAt(design, f); });
        if (beyond(LevelAt(design, dip)))
            return CrossingWithin(design, samples.F[i - direction], dip, target);
    }
    return std::nullopt;
}

/// Index of the largest level between two frequencies; -1 if none is a number.
int LargestSample(const Samples& samples, double low, double high) {
    int best = -1;
    for (int i = 0; i < samples.Count(); ++i) {
        if (samples.F[i] < low || samples.F[i] > high || std::isnan(samples.Level[i])) continue;
        if (best < 0 || samples.Level[i] > samples.Level[best]) best = i;
    }
    return best;
}

int FindPeak(const FilterDesign& design, const Samples& samples) {
    switch (design.PassType) {
        case PassType::LowPass:
            return LargestSample(samples, 0.0, PeakX * design.F0);
        case PassType::HighPass:
            return LargestSample(samples, design.F0 / PeakX, samples.F.back());
        case PassType::Notch:
            return LargestSample(samples, 0.0, samples.F.back());
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return LargestSample(samples, FrequencyOf(design, -PeakX), FrequencyOf(design, PeakX));
    }
    return -1;
}

/// The edges at `depth` dB below the peak. Those of a notch are looked for from F0 outwards.
ResponseEdges FindEdges(const FilterDesign& design, const Samples& samples, int peak,
                        double target) {
    ResponseEdges edges;
    const bool notch = design.PassType == PassType::Notch;
    int from = peak;
    if (notch) {
        from = static_cast<int>(std::lower_bound(samples.F.begin(), samples.F.end(), design.F0) -
                                samples.F.begin());
        from = std::min(from, samples.Count() - 1);
        if (samples.Level[from] > target) return edges;
    }
    if (design.PassType != PassType::LowPass)
        edges.Lower = FirstCrossing(design, samples, from, -1, target, !notch);
    if (design.PassType != PassType::HighPass)
        edges.Upper = FirstCrossing(design, samples, from, +1, target, !notch);
    return edges;
}

/// The largest reflection between two frequencies, ends included, raises `worst` (dB) and `at`.
void RaiseReflection(const FilterDesign& design, const Samples& samples, double low, double high,
                     double& worst, double& at) {
    if (!(low < high)) return;
    const auto raise = [&](double f) {
        const double db = ReflectionAt(design, f);
        if (db > worst) worst = db, at = f;
    };
    // The lobe whose parabola through three samples reaches highest is worth the search.
    int best = -1;
    double highest = 0.0;
    for (int i = 1; i + 1 < samples.Count(); ++i) {
        if (samples.F[i - 1] < low || samples.F[i + 1] > high) continue;
        const double y = samples.Reflection[i], before = samples.Reflection[i - 1],
                     after = samples.Reflection[i + 1];
        if (y < before || y < after) continue;
        const double curve = before - 2.0 * y + after;
        const double top =
            curve < 0.0 ? y - (after - before) * (after - before) / (8.0 * curve) : y;
        if (best < 0 || top > highest) best = i, highest = top;
    }
    raise(low);
    raise(high);
    if (best >= 0)
        raise(LargestWithin(samples.F[best - 1], samples.F[best + 1],
                            [&](double f) { return ReflectionAt(design, f); }));
}

void FindReturnLoss(const FilterDesign& design, const Samples& samples, double bandEdge,
                    ResponseResults& results) {
    double worst = ZeroPowerDb, at = 0.0;
    const double bottom = samples.F.front();
    ResponseEdges& band = results.ReturnLossBand;
    const auto topAbove = [&](double f) { return std::max(TopOfHighPass * design.F0, 2.0 * f); };
    const auto raise = [&](double low, double high) {
        RaiseReflection(design, samples, low, high, worst, at);
    };
    switch (design.PassType) {
        case PassType::LowPass:
            band.Upper = design.F0 * bandEdge;
            raise(bottom, *band.Upper);
            break;
        case PassType::HighPass:
            band.Lower = design.F0 / bandEdge;
            raise(*band.Lower, topAbove(*band.Lower));
            break;
        case PassType::Notch:
            band = {FrequencyOf(design, -1.0 / bandEdge), FrequencyOf(design, 1.0 / bandEdge)};
            raise(bottom, *band.Lower);
            raise(*band.Upper, topAbove(*band.Upper));
            break;
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            band = {FrequencyOf(design, -bandEdge), FrequencyOf(design, bandEdge)};
            raise(*band.Lower, *band.Upper);
            break;
    }
    results.WorstReturnLoss = -worst;
    results.WorstReturnLossAt = at;
}

void FindShapeFactor(const FilterDesign& design, const Samples& samples, int peak,
                     ResponseResults& results) {
    const auto width = [&](double depth) {
        const ResponseEdges edges = FindEdges(design, samples, peak, -results.PeakLoss - depth);
        const bool swept = edges.Lower && edges.Upper && *edges.Lower >= design.SweepF1 &&
                           *edges.Upper <= design.SweepF2;
        return swept ? *edges.Upper - *edges.Lower : 0.0;
    };
    const double at60 = width(60.0), at6 = at60 > 0.0 ? width(6.0) : 0.0;
    if (at6 > 0.0) results.ShapeFactor = at60 / at6;
}

void TakeAttenuations(const FilterDesign& design, std::vector<AttenuationAt>& attenuations) {
    const auto take = [&](const char* where, double f) {
        if (f > 0.0) attenuations.push_back({where, f, -LevelAt(design, f)});
    };
    const double F0 = design.F0, BW = design.BandWidth;
    if (IsBand(design.PassType)) {
        take("F0 - 2 BW", F0 - 2.0 * BW);
        take("F0 - BW", F0 - BW);
        take("F0 + BW", F0 + BW);
        take("F0 + 2 BW", F0 + 2.0 * BW);
    } else if (design.PassType == PassType::HighPass) {
        take("F0 / 3", F0 / 3.0);
        take("F0 / 2", F0 / 2.0);
    }
    take("2 F0", 2.0 * F0);
    take("3 F0", 3.0 * F0);
}

}  // namespace

std::optional<double> ResponseEdges::Width(PassType pass) const {
    if (pass == PassType::LowPass) return Upper;
    if (!Lower || !Upper) return std::nullopt;
    return *Upper - *Lower;
}

double ReturnLossBandEdge(const FilterDesign& design) {
    constexpr double InnerHalf = 0.5;
    if (design.ResponseType != ResponseType::Chebyshev) return InnerHalf;
    // Ripple edge over half-power edge: 1 / cosh(acosh(1 / epsilon) / n).
    const double epsilon = std::sqrt(std::pow(10.0, 0.1 * design.RippleDb) - 1.0);
    if (!(epsilon > 0.0) || epsilon >= 1.0 || design.NumPoles < 1) return 1.0;
    return 1.0 / std::cosh(std::acosh(1.0 / epsilon) / design.NumPoles);
}

ResponseResults ComputeResults(const FilterDesign& design, double bandEdge) {
    ResponseResults results;
    if (design.NumElements < 1 || !(design.F0 > 0.0)) return results;
    const Samples samples = TakeSamples(design);
    const int peak = FindPeak(design, samples);
    results.LossAtF0 = -LevelAt(design, design.F0);
    if (peak < 0 || std::isnan(results.LossAtF0)) return results;
    results.Valid = true;
    results.PeakFrequency = samples.F[peak];
    results.PeakLoss = -samples.Level[peak];
    if (peak > 0 && peak + 1 < samples.Count()) {
        const double f = LargestWithin(samples.F[peak - 1], samples.F[peak + 1],
                                       [&](double at) { return LevelAt(design, at); });
        const double loss = -LevelAt(design, f);
        if (loss < results.PeakLoss) results.PeakFrequency = f, results.PeakLoss = loss;
    }
    results.Edges = FindEdges(design, samples, peak, -results.PeakLoss - HalfPowerDb);
    FindReturnLoss(design, samples, bandEdge, results);
    if (IsBand(design.PassType)) FindShapeFactor(design, samples, peak, results);
    TakeAttenuations(design, results.Attenuations);
    return results;
}

}  // namespace ladderwise
