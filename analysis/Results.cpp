// Peak, edges, return loss and attenuations of a ladder.
//
//   x   frequency on the scale of the prototype: f / F0 for low-pass and high-pass; for band-pass
//   and
//       notch (f / Fc - Fc / f) Fc / BandWidth, negative below Fc. Corners lie at |x| = 1.
//   Fc  centre, Hz: F0 of a notch; of a band-pass the geometric mean of its edges F0 -+ BandWidth /
//   2 f   frequency, Hz
#include "analysis/Results.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {
namespace {

constexpr double LeastRise = 1e-9;                  // dB, over a sample: less is rounding
constexpr double GoldenShare = 0.3819660112501051;  // (3 - sqrt 5) / 2
constexpr double PeakTolerance = 1e-4;              // of a bracket
constexpr int MostPeakSteps = 60;                   // a guard: a dozen are usual
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

double FrequencyOf(const FilterDesign& design, double x) {
    if (!HasBandWidth(design.PassType)) return design.F0 * x;
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
    const bool band = HasBandWidth(design.PassType);
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

/// Where `value` is largest between a and b, in the logarithm of the frequency: parabolas, and the
/// golden section where they do not help (R. P. Brent, "Algorithms for Minimization without
/// Derivatives", 1973, chapter 5).
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

/// A local maximum of a sampled quantity between two samples, or one of these.
struct Lobe {
    int Index = 0;
    double Reach = 0.0;  ///< dB, beyond what the quantity itself comes to
    bool Whole = true;   ///< both neighbours lie between the two samples too
};

/// The lobes of `values` from sample `first` to `last` that may be the highest of the quantity
/// itself. A lobe rises over its sample by about as much as the parabola through it and its
/// neighbours, and certainly by no more than twice as much.
std::vector<Lobe> HighestLobes(const std::vector<double>& values, int first, int last) {
    std::vector<Lobe> lobes;
    double highest = -std::numeric_limits<double>::infinity();
    for (int i = first; i <= last; ++i) {
        const double y = values[i];
        if (std::isnan(y)) continue;
        Lobe lobe{i, y, i > first && i < last};
        if (lobe.Whole) {
            const double before = values[i - 1], after = values[i + 1];
            if (y < before || y < after) continue;
            const double curve = before - 2.0 * y + after;
            if (curve < 0.0)
                lobe.Reach -= 2.0 * (after - before) * (after - before) / (8.0 * curve);
        }
        lobes.push_back(lobe);
        highest = std::max(highest, y);
    }
    std::erase_if(lobes, [&](const Lobe& lobe) { return lobe.Reach < highest; });
    return lobes;
}

/// The largest level in the pass band and the sample nearest to it; Index -1 where there is none.
struct Peak {
    int Index = -1;
    double Frequency = 0.0;
    double Level = 0.0;
};

Peak PeakBetween(const FilterDesign& design, const Samples& samples, double low, double high) {
    const auto at = [&](double f) {
        return static_cast<int>(std::lower_bound(samples.F.begin(), samples.F.end(), f) -
                                samples.F.begin());
    };
    const int first = at(low), last = std::min(at(high), samples.Count() - 1);
    Peak peak;
    const auto raise = [&](int index, double f, double level) {
        if (peak.Index < 0 || level > peak.Level) peak = {index, f, level};
    };
    for (const Lobe& lobe : HighestLobes(samples.Level, first, last)) {
        const int i = lobe.Index;
        raise(i, samples.F[i], samples.Level[i]);
        if (!lobe.Whole || lobe.Reach < peak.Level + LeastRise) continue;
        const double f = LargestWithin(samples.F[i - 1], samples.F[i + 1],
                                       [&](double at) { return LevelAt(design, at); });
        raise(i, f, LevelAt(design, f));
    }
    return peak;
}

Peak FindPeak(const FilterDesign& design, const Samples& samples) {
    const double bottom = samples.F.front(), top = samples.F.back();
    switch (design.PassType) {
        case PassType::LowPass:
            return PeakBetween(design, samples, bottom, PeakX * design.F0);
        case PassType::HighPass:
            return PeakBetween(design, samples, design.F0 / PeakX, top);
        case PassType::Notch:
            return PeakBetween(design, samples, bottom, top);
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return PeakBetween(design, samples, FrequencyOf(design, -PeakX),
                               FrequencyOf(design, PeakX));
    }
    return {};
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
    // A lobe across an end of the band is searched for what of it lies inside.
    const auto search = [&](int i) {
        if (i < 1 || i + 1 >= samples.Count()) return;
        const std::vector<double>& level = samples.Reflection;
        if (level[i] < level[i - 1] || level[i] < level[i + 1]) return;
        raise(LargestWithin(std::max(low, samples.F[i - 1]), std::min(high, samples.F[i + 1]),
                            [&](double f) { return ReflectionAt(design, f); }));
    };
    const auto begin = samples.F.begin(), end = samples.F.end();
    const int first = static_cast<int>(std::lower_bound(begin, end, low) - begin);
    const int last = static_cast<int>(std::upper_bound(begin, end, high) - begin) - 1;
    raise(low);
    raise(high);
    if (first > last) return;
    for (const int i : {first - 1, first, last, last + 1})
        search(i);
    for (const Lobe& lobe : HighestLobes(samples.Reflection, first, last))
        if (lobe.Whole && lobe.Reach > worst + LeastRise) search(lobe.Index);
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
    if (HasBandWidth(design.PassType)) {
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
    if (design.Elliptic.NumTraps > 0) return design.Elliptic.PassBandEdge;
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
    const Peak peak = FindPeak(design, samples);
    results.LossAtF0 = -LevelAt(design, design.F0);
    if (peak.Index < 0 || std::isnan(results.LossAtF0)) return results;
    results.Valid = true;
    results.PeakFrequency = peak.Frequency;
    results.PeakLoss = -peak.Level;
    results.Edges = FindEdges(design, samples, peak.Index, -results.PeakLoss - HalfPowerDb);
    FindReturnLoss(design, samples, bandEdge, results);
    if (HasBandWidth(design.PassType)) FindShapeFactor(design, samples, peak.Index, results);
    TakeAttenuations(design, results.Attenuations);
    return results;
}

}  // namespace ladderwise
