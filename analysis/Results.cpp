// Peak, edges, stop bands, return loss and attenuations of a ladder.
#include "analysis/Results.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/Circuitanalysis.h"
#include "analysis/ResponseSamples.h"

namespace ladderwise {
namespace {

constexpr double Infinite = std::numeric_limits<double>::infinity();

constexpr double EqualLevels = 1e-7;   // dB: what differs by less is equal but for rounding
constexpr double VisiblyLower = 1e-4;  // dB
constexpr double RippleWidths = 40.0;  // the width of a peak over the distance of that, at most
constexpr double LeastRise = 1e-9;     // dB: less is rounding
constexpr double PassBandX = 2.0;      // the peak is looked for at least this far around F0
constexpr double LowestBand = 0.5;     // of F0: parasitics make a band sink no further
constexpr double HighestBand = 1.5;    // of F0: above lie the next bands
constexpr double HighestOfLow = 2.0;   // of F0: so far a low-pass may have its peak
// The loss of coils still changes with the root of the lowest sample's frequency.
constexpr double TowardsZero = 1e-12;
constexpr double TopOfHighPass = 3.0;  // F0 times this ends a return-loss band that has no end

constexpr double OtherBandDepth = 6.0;    // dB: a response further down is no pass band
constexpr double NothingPasses = -200.0;  // dB: further down rounding decides
constexpr double MovedShare = 0.25;       // of BandWidth: less is no moving
constexpr double SkirtDepth = 60.0;       // dB
constexpr double SkirtReference = 6.0;    // dB
constexpr double OtherBandHeight = 30.0;  // dB below the peak: what bounces higher is another band
// By so much (dB) an equal-ripple stop band may exceed its attenuation by rounding.
constexpr double StopBandDoubt = 1e-5;

bool IsBandPass(PassType pass) {
    return HasBandWidth(pass) && pass != PassType::Notch;
}

BandRange WholeScan(const FilterDesign& design) {
    return {design.F0 / ScanReach, design.F0 * ScanReach};
}

/// An interior maximum of the level.
struct Maximum {
    double Frequency = 0.0;
    double Level = -Infinite;
    double Reach = 0.0;  ///< Hz, where it has visibly fallen; 0: an end of the samples
};

double DistanceFromF0(const FilterDesign& design, double f) {
    return std::abs(std::log(f / design.F0));
}

/// Hz to the nearer of the places where the level is VisiblyLower than at sample i, or rises again.
double ReachOf(const ResponseSamples& samples, int i) {
    const auto walk = [&](int direction) {
        int k = i + direction;
        while (k + direction >= 0 && k + direction < samples.Count() &&
               samples.Level[k] > samples.Level[i] - VisiblyLower &&
               samples.Level[k + direction] <= samples.Level[k] + EqualLevels)
            k += direction;
        return std::abs(samples.F[k] - samples.F[i]);
    };
    return std::min(walk(-1), walk(+1));
}

/// The highest interior maximum within `range` but not within `leftOut`; of several that are equal
/// the nearest to F0.
std::optional<Maximum> HighestWithin(const FilterDesign& design, const ResponseSamples& samples,
                                     const BandRange& range, const BandRange& leftOut = {}) {
    std::vector<Lobe> lobes =
        LobesBetween(samples.F, samples.Level, samples.At(range.Low), samples.At(range.High));
    std::erase_if(lobes, [&](const Lobe& lobe) { return leftOut.Holds(samples.F[lobe.Index]); });
    KeepHighest(lobes, samples.Level);
    std::sort(lobes.begin(), lobes.end(), [&](const Lobe& a, const Lobe& b) {
        return DistanceFromF0(design, a.Top) < DistanceFromF0(design, b.Top);
    });
    std::optional<Maximum> best;
    for (const Lobe& lobe : lobes) {
        if (best && lobe.Reach < best->Level + EqualLevels) continue;
        const double f = LargestWithin(samples.F[lobe.Index - 1], samples.F[lobe.Index + 1],
                                       [&](double at) { return LevelAt(design, at); });
        const double level = LevelAt(design, f);
        if (!best || level > best->Level + EqualLevels)
            best = Maximum{f, level, ReachOf(samples, lobe.Index)};
    }
    return best;
}

/// The interior maximum nearest to F0 within `range`.
std::optional<Maximum> NearestWithin(const FilterDesign& design, const ResponseSamples& samples,
                                     const BandRange& range) {
    const std::vector<Lobe> lobes =
        LobesBetween(samples.F, samples.Level, samples.At(range.Low), samples.At(range.High));
    const auto nearest =
        std::min_element(lobes.begin(), lobes.end(), [&](const Lobe& a, const Lobe& b) {
            return DistanceFromF0(design, a.Top) < DistanceFromF0(design, b.Top);
        });
    if (nearest == lobes.end()) return std::nullopt;
    const double f = samples.F[nearest->Index];
    return HighestWithin(design, samples, {f, f});
}

/// Of the pass bands that reach an end of the frequencies, the response at that end.
std::optional<Maximum> HighestEnd(const FilterDesign& design, const ResponseSamples& samples) {
    std::optional<Maximum> best;
    const auto take = [&](double f, double level) {
        if (!best || level > best->Level) best = Maximum{f, level, 0.0};
    };
    const bool down = design.PassType == PassType::LowPass || design.PassType == PassType::Notch;
    const bool up = design.PassType == PassType::HighPass || design.PassType == PassType::Notch;
    if (down) take(samples.F.front(), LevelAt(design, TowardsZero * samples.F.front()));
    if (up && design.PartModel.Choice == PartChoice::IdealParts)
        take(samples.F.back(), samples.Level.back());
    return best;
}

/// Up to where the pass band goes that begins in `range` above F0: until it has fallen by
/// OtherBandDepth, or has risen to what leaves half the power of its beginning out. What comes
/// then, far above, is made by parasitics.
double EndOfUpperBand(const FilterDesign& design, const ResponseSamples& samples,
                      const BandRange& range) {
    const double inside = FrequencyOf(design, PassBandX);
    double highest = -Infinite, lowest = Infinite;
    for (int i = samples.At(range.Low); i < samples.Count(); ++i) {
        const double level = samples.Level[i];
        highest = std::max(highest, level);
        if (samples.F[i] < inside) continue;
        if (level < highest - LeastRise) lowest = std::min(lowest, level);
        if (level < highest - OtherBandDepth || level > lowest + HalfPowerDb) return samples.F[i];
    }
    return Infinite;
}

BandRange RangeOfPeak(const FilterDesign& design, const ResponseSamples& samples) {
    BandRange range = BandAboutF0(design);
    if (design.PassType == PassType::Notch) range.Low = FrequencyOf(design, 1.0);
    if (design.PassType == PassType::Notch || design.PassType == PassType::HighPass)
        range.High = EndOfUpperBand(design, samples, range);
    if (design.PassType == PassType::Notch) range.Low = 0.0;
    return range;
}

std::optional<Maximum> FindPeak(const FilterDesign& design, const ResponseSamples& samples) {
    const BandRange range = RangeOfPeak(design, samples);
    std::optional<Maximum> peak = HighestWithin(design, samples, range);
    const std::optional<Maximum> end = HighestEnd(design, samples);
    if (end && (!peak || !(peak->Level > end->Level + LeastRise))) return end;
    if (!peak && IsBandPass(design.PassType))
        peak = NearestWithin(design, samples, WholeScan(design));
    if (peak && peak->Level < NothingPasses) peak.reset();
    return peak;
}

/// A maximum to the last digits that rounding leaves. The nearer edge tells its width; ripple that
/// is far narrower than the band has fallen visibly long before.
Maximum Polished(const FilterDesign& design, Maximum maximum, const ResponseEdges& edges) {
    if (maximum.Reach == 0.0) return maximum;
    double width = 2.0 * maximum.Frequency;
    for (const auto& edge : {edges.Lower, edges.Upper})
        if (edge) width = std::min(width, 2.0 * std::abs(*edge - maximum.Frequency));
    const double visible = RippleWidths * maximum.Reach;
    maximum.Frequency =
        PolishedPeak(design, maximum.Frequency, maximum.Reach, std::min(width, visible));
    maximum.Level = LevelAt(design, maximum.Frequency);
    return maximum;
}

/// Frequency and loss of a maximum; one at an end of the samples lies beyond them.
ResponsePeak PeakOf(const ResponseSamples& samples, const Maximum& maximum) {
    double f = maximum.Frequency;
    if (maximum.Reach == 0.0) f = f == samples.F.front() ? 0.0 : Infinite;
    return {f, -maximum.Level};
}

/// The deepest place of a notch; of several that let nothing pass, the nearest to F0.
std::optional<double> DeepestPlace(const FilterDesign& design, const ResponseSamples& samples) {
    const BandRange range = BandAboutF0(design);
    const int last = std::min(samples.At(range.High), samples.Count() - 1);
    int deepest = -1;
    const auto depth = [&](int i) { return std::max(samples.Level[i], NothingPasses); };
    const auto off = [&](int i) { return DistanceFromF0(design, samples.F[i]); };
    for (int i = samples.At(range.Low); i <= last; ++i)
        if (deepest < 0 || std::pair(depth(i), off(i)) < std::pair(depth(deepest), off(deepest)))
            deepest = i;
    if (deepest < 1 || deepest + 1 >= samples.Count()) return std::nullopt;
    return samples.F[deepest];
}

/// The crossings of `target` next to the peak; those of a notch are looked for from its deepest
/// place outwards.
ResponseEdges FindEdges(const FilterDesign& design, const ResponseSamples& samples, double peak,
                        double target) {
    ResponseEdges edges;
    const bool notch = design.PassType == PassType::Notch;
    if (notch) {
        const std::optional<double> deepest = DeepestPlace(design, samples);
        if (!deepest || !(LevelAt(design, *deepest) < target)) return edges;
        peak = *deepest;
    }
    if (design.PassType != PassType::LowPass)
        edges.Lower = FirstCrossing(design, samples, peak, -1, target, !notch);
    if (design.PassType != PassType::HighPass)
        edges.Upper = FirstCrossing(design, samples, peak, +1, target, !notch);
    return edges;
}

/// See ResponseResults::BandOffset.
std::optional<double> OffsetOf(const FilterDesign& design, const ResponseResults& results) {
    const auto& [lower, upper] = results.Edges;
    const double F0 = design.F0, peak = results.Peak->Frequency;
    if ((lower && *lower > F0) || (upper && *upper < F0)) return peak / F0 - 1.0;
    if (!lower || !upper) {
        if (std::abs(peak - F0) <= 0.5 * design.BandWidth) return std::nullopt;
        return peak / F0 - 1.0;
    }
    const double centre = FrequencyOf(design, 0.0), middle = std::sqrt(*lower * *upper);
    if (std::abs(middle - centre) <= MovedShare * design.BandWidth) return std::nullopt;
    return middle / centre - 1.0;
}

std::optional<ResponsePeak> FindOtherBand(const FilterDesign& design,
                                          const ResponseSamples& samples, const Maximum& peak) {
    BandRange own = BandAboutF0(design);
    // The samples on either side of the peak: one of them is where it was found.
    const int above = std::clamp(samples.At(peak.Frequency), 1, samples.Count() - 1);
    own.Low = design.PassType == PassType::LowPass ? 0.0 : std::min(own.Low, samples.F[above - 1]);
    own.High = std::max(own.High, samples.F[above]);
    const auto other = HighestWithin(design, samples, WholeScan(design), own);
    if (!other || other->Level < peak.Level - OtherBandDepth) return std::nullopt;
    return PeakOf(samples, Polished(design, *other, {}));
}

/// The largest reflection between two frequencies, ends included, raises `worst` (dB) and `at`.
void RaiseReflection(const FilterDesign& design, const ResponseSamples& samples, double low,
                     double high, double& worst, double& at) {
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
    std::vector<Lobe> lobes = LobesBetween(samples.F, samples.Reflection, first, last);
    KeepHighest(lobes, samples.Reflection);
    for (const Lobe& lobe : lobes)
        if (lobe.Reach > worst + EqualLevels) search(lobe.Index);
}

void FindReturnLoss(const FilterDesign& design, const ResponseSamples& samples, double bandEdge,
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

/// One skirt: the last crossing of `target` from the peak outwards, `direction` +1 or -1, beyond
/// which the response stays below it to the end of the scan; or why there is none.
struct Skirt {
    std::optional<double> Edge;
    SpoiledSkirt Spoiled;
};

Skirt FindSkirt(const FilterDesign& design, const ResponseSamples& samples, const Maximum& peak,
                int direction) {
    const BandRange scan = WholeScan(design);
    const double target = peak.Level - SkirtDepth;
    const int first = direction > 0 ? samples.At(peak.Frequency) : samples.At(peak.Frequency) - 1;
    const int end =
        direction > 0 ? std::min(samples.At(scan.High), samples.Count() - 1) : samples.At(scan.Low);
    Skirt skirt;
    double above = peak.Frequency;  // the last place known to lie above the target
    double under = peak.Frequency;  // the first one below it after that
    double highest = -Infinite;     // of what rises once more
    bool below = false, reached = false;
    for (int i = first; (end - i) * direction >= 0; i += direction) {
        double f = samples.F[i], level = samples.Level[i];
        // What rises between two samples of a stop band rises here.
        const auto lobe = LobeAt(samples.F, samples.Level, i);
        if (below && level <= target && lobe && lobe->Reach > target) {
            f = LargestWithin(samples.F[i - 1], samples.F[i + 1],
                              [&](double at) { return LevelAt(design, at); });
            level = LevelAt(design, f);
        }
        if (level > target) {
            below = false;
            above = f;
            if (!reached || level > highest) skirt.Spoiled = {f, peak.Level - level};
            if (reached) highest = std::max(highest, level);
        } else if (!below) {
            under = f;
            below = reached = true;
        }
    }
    if (below && highest <= peak.Level - OtherBandHeight)
        skirt.Edge = CrossingWithin(design, above, under, target);
    return skirt;
}

void FindShapeFactor(const FilterDesign& design, const ResponseSamples& samples,
                     const Maximum& peak, ResponseResults& results) {
    const Skirt lower = FindSkirt(design, samples, peak, -1);
    const Skirt upper = FindSkirt(design, samples, peak, +1);
    if (!lower.Edge || !upper.Edge) {
        const bool byUpper =
            lower.Edge || (!upper.Edge && upper.Spoiled.Attenuation < lower.Spoiled.Attenuation);
        results.NoShape = byUpper ? upper.Spoiled : lower.Spoiled;
        return;
    }
    const ResponseEdges at6 =
        FindEdges(design, samples, peak.Frequency, peak.Level - SkirtReference);
    if (at6.Lower && at6.Upper)
        results.ShapeFactor = (*upper.Edge - *lower.Edge) / (*at6.Upper - *at6.Lower);
}

/// The widest part of `range`, on a logarithmic scale, in which the attenuation holds.
std::optional<HeldBand> WidestHeld(const FilterDesign& design, const ResponseSamples& samples,
                                   const BandRange& range, double attenuation) {
    const double target = -attenuation;
    const int first = samples.At(range.Low), end = samples.At(range.High);
    std::optional<HeldBand> widest;
    double width = 0.0;
    double from = 0.0, inside = 0.0, outside = 0.0;
    bool held = false, openBelow = false;
    const auto close = [&](double to, bool openAbove) {
        if (!(std::log(to / from) > width)) return;
        width = std::log(to / from);
        widest = HeldBand{};
        if (!openBelow) widest->From = from;
        if (!openAbove) widest->To = to;
    };
    const auto take = [&](double f, double level) {
        if (!held && level <= target) {
            openBelow = outside == 0.0;
            from = openBelow ? f : CrossingWithin(design, outside, f, target).value_or(f);
            held = true;
        } else if (held && level > target + StopBandDoubt) {
            close(CrossingWithin(design, inside, f, target).value_or(inside), false);
            held = false;
        }
        if (level <= target) inside = f;
        if (!held) outside = f;
    };
    take(range.Low, LevelAt(design, range.Low));
    for (int i = first; i < end; ++i) {
        const std::vector<double>& level = samples.Level;
        const auto lobe = LobeAt(samples.F, level, i);
        if (held && level[i] <= target && lobe && lobe->Reach > target + StopBandDoubt) {
            const double top = LargestWithin(std::max(range.Low, samples.F[i - 1]),
                                             std::min(range.High, samples.F[i + 1]),
                                             [&](double f) { return LevelAt(design, f); });
            take(std::min(top, samples.F[i]), LevelAt(design, std::min(top, samples.F[i])));
            take(std::max(top, samples.F[i]), LevelAt(design, std::max(top, samples.F[i])));
        } else {
            take(samples.F[i], level[i]);
        }
    }
    take(range.High, LevelAt(design, range.High));
    if (held) close(range.High, true);
    return widest;
}

/// The stop bands of an elliptic design, on the ladder in hand.
void FindStopBands(const FilterDesign& design, const ResponseSamples& samples,
                   const std::optional<Maximum>& peak, ResponseResults& results) {
    if (design.Elliptic.NumTraps == 0) return;
    results.StopAttenuation = design.Elliptic.AttenUsedDb;
    const BandRange scan = WholeScan(design);
    const auto add = [&](const BandRange& range) {
        const auto held = WidestHeld(design, samples, range, results.StopAttenuation);
        if (held) results.StopBands.push_back(*held);
    };
    const ResponseEdges& edges = results.Edges;
    switch (design.PassType) {
        case PassType::LowPass:
            return add({edges.Upper.value_or(design.F0), scan.High});
        case PassType::HighPass:
            return add({scan.Low, edges.Lower.value_or(design.F0)});
        case PassType::Notch:
            if (edges.Lower && edges.Upper) add({*edges.Lower, *edges.Upper});
            return;
        case PassType::BandPassCanonical:
            if (!peak) return;
            if (peak->Level <= -results.StopAttenuation) return add(scan);
            add({scan.Low, peak->Frequency});
            add({peak->Frequency, scan.High});
            return;
        case PassType::DirectCoupled:
        case PassType::Norton:
            return;
    }
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

BandRange BandAboutF0(const FilterDesign& design) {
    const double bottom = LowestX * design.F0;
    switch (design.PassType) {
        case PassType::LowPass:
            return {bottom, HighestOfLow * design.F0};
        case PassType::HighPass:
            return {LowestBand * design.F0, Infinite};
        case PassType::Notch:
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            break;
    }
    return {std::min(LowestBand * design.F0, FrequencyOf(design, -PassBandX)),
            std::max(HighestBand * design.F0, FrequencyOf(design, PassBandX))};
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
    const ResponseSamples samples = TakeSamples(design);
    results.LossAtF0 = -LevelAt(design, design.F0);
    if (std::isnan(results.LossAtF0)) return results;
    results.Valid = true;
    std::optional<Maximum> peak = FindPeak(design, samples);
    if (peak) {
        results.Edges = FindEdges(design, samples, peak->Frequency, peak->Level - HalfPowerDb);
        peak = Polished(design, *peak, results.Edges);
        results.Peak = PeakOf(samples, *peak);
        if (IsBandPass(design.PassType)) {
            results.BandOffset = OffsetOf(design, results);
            FindShapeFactor(design, samples, *peak, results);
        }
        if (IsBandPass(design.PassType) || design.PassType == PassType::LowPass)
            results.OtherBand = FindOtherBand(design, samples, *peak);
    }
    FindStopBands(design, samples, peak, results);
    FindReturnLoss(design, samples, bandEdge, results);
    TakeAttenuations(design, results.Attenuations);
    return results;
}

}  // namespace ladderwise
