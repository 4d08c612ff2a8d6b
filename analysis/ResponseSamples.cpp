// Where a response is sampled.
//
//   x   frequency on the scale of the prototype      f   frequency, Hz
#include "analysis/ResponseSamples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/Circuitanalysis.h"
#include "analysis/Resonances.h"

namespace ladderwise {
namespace {

constexpr double LinearX = 2.0;      // the grid of x is linear up to here, logarithmic beyond
constexpr double HighestX = 200.0;   // its end
constexpr double LinearShare = 0.7;  // of its points lie in its linear part
constexpr int PointsOverX = 640;
constexpr int PointsAbove = 160;   // from HighestX to the far end of a pass band that has none
constexpr int PointsOfScan = 320;  // from F0 / ScanReach to ScanReach F0

// Places about a resonance of an arm, relative. Those of traps lie close to peaks as narrow.
constexpr std::array<double, 5> AboutResonance = {-1e-3, -3e-5, 0.0, 3e-5, 1e-3};

// Those of lines come in clusters as wide as the pass band, far from it.
constexpr std::array<double, 11> AboutLineResonance = {-0.02, -0.01, -5e-3, -2e-3, -5e-4, 0.0,
                                                       5e-4,  2e-3,  5e-3,  0.01,  0.02};

// Across a resonance the phase turns by pi, by half of that within its half-power width. Where it
// turns by less than this (rad) between two samples, no resonance stands between them.
constexpr double MostTurn = 0.7;
// An even number of resonances between two samples turns it by nothing, but stands out, dB.
constexpr double SteepTop = 2.0;
// Losses take most of the turn of a resonance; its flank promises more than the next sample shows,
// dB.
constexpr double MostPromised = 0.5;
constexpr double NarrowestGap = 1e-7;        // relative: closer samples are not parted any more
constexpr double DeepestOfInterest = 110.0;  // dB: no figure is taken further below the pass band
constexpr int MostRefinements = 6;           // a gap becomes 4^6 times narrower
constexpr std::size_t MostGapsAtOnce = 85;   // three samples into each: a block of the kernel
constexpr int TopPasses = 4;
constexpr double TopShare = 0.05;         // of a gap: how close the samples at a top stand
constexpr double WorthSharpening = 1e-8;  // dB that a maximum may rise over its sample
constexpr double ResonanceNudge = 1e-12;  // relative step aside from an exact resonance

/// One quantity of the ladder at any frequency, dB.
double AtOrBeside(const FilterDesign& design, double f, Complex LadderPoint::*quantity) {
    double db = ComplexToDb(AnalysePoint(design, design.F0, f).*quantity);
    if (std::isnan(db))
        db = ComplexToDb(AnalysePoint(design, design.F0, f * (1.0 + ResonanceNudge)).*quantity);
    return db;
}

void AddPointsOverX(const FilterDesign& design, std::vector<double>& grid) {
    const bool band = HasBandWidth(design.PassType);
    const int side = band ? PointsOverX / 2 : PointsOverX;
    const int linear = static_cast<int>(LinearShare * side);
    for (int k = 0; k < side; ++k) {
        const double x = k < linear ? LinearX * k / linear
                                    : LinearX * std::pow(HighestX / LinearX,
                                                         double(k - linear) / (side - 1 - linear));
        if (k > 0 || band) grid.push_back(FrequencyOf(design, x));
        if (k > 0 && band) grid.push_back(FrequencyOf(design, -x));
        if (k == 0 && !band) grid.push_back(FrequencyOf(design, LowestX));
    }
    // The far ends of the pass bands that have no end; those of real parts end somewhere above.
    const bool openAbove =
        design.PassType == PassType::HighPass || design.PassType == PassType::Notch;
    if (design.PassType == PassType::Notch) grid.push_back(LowestX * design.F0);
    if (!openAbove) return;
    const bool ideal = design.PartModel.Choice == PartChoice::IdealParts;
    for (int k = ideal ? PointsAbove : 1; k <= PointsAbove; ++k)
        grid.push_back(HighestX * design.F0 *
                       std::pow(1.0 / (LowestX * HighestX), double(k) / PointsAbove));
}

std::vector<double> GridOf(const FilterDesign& design, const std::vector<double>& places) {
    std::vector<double> grid = places;
    AddPointsOverX(design, grid);
    const double lowest = design.F0 / ScanReach, highest = design.F0 * ScanReach;
    const double step = std::pow(highest / lowest, 1.0 / (PointsOfScan - 1));
    double f = lowest;
    for (int i = 0; i < PointsOfScan; ++i, f *= step)
        grid.push_back(f);
    const auto addAbout = [&](double resonance, const auto& places) {
        if (resonance > lowest && resonance < highest)
            for (const double aside : places)
                grid.push_back(resonance * (1.0 + aside));
    };
    for (const double resonance : ElementResonances(design))
        addAbout(resonance, AboutResonance);
    for (const double resonance : LineResonances(design, highest))
        addAbout(resonance, AboutLineResonance);
    std::sort(grid.begin(), grid.end());
    grid.erase(std::unique(grid.begin(), grid.end()), grid.end());
    return grid;
}

ResponseSamples Analysed(const FilterDesign& design, std::vector<double> grid) {
    ResponseSamples samples;
    samples.F = std::move(grid);
    const std::size_t count = samples.F.size();
    samples.Level.resize(count);
    samples.Reflection.resize(count);
    samples.Angle.resize(count);
    std::vector<double> re(count), im(count);
    SweepTables tables;
    BuildSweepTables(tables, samples.F, design.F0);
    AnalyseLadder(design, tables, {}, re, im, samples.Reflection);
    ReadyKernel(KernelChoice::Automatic)
        .LevelsAndAngles(re.data(), im.data(), static_cast<int>(count), samples.Level.data(),
                         samples.Angle.data());
    for (std::size_t i = 0; i < count; ++i) {
        if (!std::isnan(samples.Level[i])) continue;
        samples.Level[i] = LevelAt(design, samples.F[i]);
        samples.Reflection[i] = ReflectionAt(design, samples.F[i]);
        samples.Angle[i] = std::isnan(re[i]) ? 0.0 : std::atan2(im[i], re[i]);
    }
    return samples;
}

/// By how much (dB) the level would rise between samples i and i + 1 above both of them if it went
/// on as in the gaps before and after: the cubic through both samples with those slopes, at the
/// thirds.
double PromisedRise(const ResponseSamples& samples, int i) {
    if (i < 1 || i + 2 >= samples.Count()) return 0.0;
    const std::vector<double>&f = samples.F, &level = samples.Level;
    const auto rise = [&](int k) { return level[k + 1] - level[k]; };
    const auto gap = [&](int k) { return f[k + 1] - f[k]; };
    const double before = rise(i - 1) * gap(i) / gap(i - 1) - rise(i);
    const double after = rise(i) - rise(i + 1) * gap(i) / gap(i + 1);
    const double over = 4.0 * before + 2.0 * after, under = 2.0 * before + 4.0 * after;
    const double top = std::max(over / 27.0 + rise(i) / 3.0, under / 27.0 + rise(i) * 2.0 / 3.0);
    return top - std::max(0.0, rise(i));
}

/// The gaps between samples in which there may be more than the samples show, highest levels first.
std::vector<int> CoarseGaps(const ResponseSamples& samples, double F0) {
    std::vector<int> gaps;
    const auto isSteepTop = [&](int i) {
        if (i < 1 || i + 1 >= samples.Count()) return false;
        const double over = samples.Level[i] - SteepTop;
        return over > samples.Level[i - 1] && over > samples.Level[i + 1];
    };
    const auto height = [&](int i) { return std::max(samples.Level[i], samples.Level[i + 1]); };
    double floor = -std::numeric_limits<double>::infinity();
    for (int i = samples.At(0.5 * F0); i < samples.At(2.0 * F0); ++i)
        floor = std::max(floor, samples.Level[i] - DeepestOfInterest);
    for (int i = 0; i + 1 < samples.Count(); ++i) {
        if (height(i) < floor) continue;
        const double turn =
            std::abs(std::remainder(samples.Angle[i + 1] - samples.Angle[i], TwoPi));
        const bool coarse = turn > MostTurn || isSteepTop(i) || isSteepTop(i + 1) ||
                            PromisedRise(samples, i) > MostPromised;
        if (coarse && samples.F[i + 1] - samples.F[i] > NarrowestGap * samples.F[i])
            gaps.push_back(i);
    }
    if (gaps.size() <= MostGapsAtOnce) return gaps;
    std::partial_sort(gaps.begin(), gaps.begin() + MostGapsAtOnce, gaps.end(),
                      [&](int a, int b) { return height(a) > height(b); });
    gaps.resize(MostGapsAtOnce);
    std::sort(gaps.begin(), gaps.end());
    return gaps;
}

/// Places at and beside the tops of all maxima, closer to each other at every call.
std::vector<double> PlacesAtTops(const ResponseSamples& samples) {
    std::vector<double> places;
    for (const std::vector<double>* values : {&samples.Level, &samples.Reflection}) {
        for (const Lobe& lobe : LobesBetween(samples.F, *values, 1, samples.Count() - 2)) {
            const int i = lobe.Index;
            if (!(lobe.Reach - (*values)[i] > WorthSharpening)) continue;
            const double left = samples.F[i] - samples.F[i - 1];
            const double right = samples.F[i + 1] - samples.F[i];
            const double aside = TopShare * std::max(left, right);
            for (const double f : {lobe.Top - aside, lobe.Top, lobe.Top + aside})
                if (f > samples.F[i - 1] && f < samples.F[i + 1] && f != samples.F[i])
                    places.push_back(f);
        }
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

/// Both, in ascending order.
ResponseSamples Merged(const ResponseSamples& a, const ResponseSamples& b) {
    ResponseSamples all;
    const std::size_t count = a.F.size() + b.F.size();
    for (auto* values : {&all.F, &all.Level, &all.Reflection, &all.Angle})
        values->reserve(count);
    for (std::size_t i = 0, k = 0; i < a.F.size() || k < b.F.size();) {
        const bool first = k == b.F.size() || (i < a.F.size() && a.F[i] < b.F[k]);
        const ResponseSamples& from = first ? a : b;
        const std::size_t at = first ? i++ : k++;
        all.F.push_back(from.F[at]);
        all.Level.push_back(from.Level[at]);
        all.Reflection.push_back(from.Reflection[at]);
        all.Angle.push_back(from.Angle[at]);
    }
    return all;
}

}  // namespace

double FrequencyOf(const FilterDesign& design, double x) {
    if (!HasBandWidth(design.PassType)) return design.F0 * x;
    const double edge = design.PassType == PassType::Notch ? 0.0 : 0.5 * design.BandWidth;
    const double centre = std::sqrt((design.F0 - edge) * (design.F0 + edge));
    const double half = 0.5 * std::abs(x) * design.BandWidth / centre;
    const double up = std::sqrt(1.0 + half * half) + half;
    return x < 0.0 ? centre / up : centre * up;
}

double LevelAt(const FilterDesign& design, double f) {
    return AtOrBeside(design, f, &LadderPoint::Transfer);
}

double ReflectionAt(const FilterDesign& design, double f) {
    return AtOrBeside(design, f, &LadderPoint::Reflection);
}

int ResponseSamples::At(double f) const {
    return static_cast<int>(std::lower_bound(F.begin(), F.end(), f) - F.begin());
}

ResponseSamples TakeSamples(const FilterDesign& design, const std::vector<double>& places) {
    ResponseSamples samples = Analysed(design, GridOf(design, places));
    for (int pass = 0; pass < MostRefinements; ++pass) {
        std::vector<double> more;
        for (const int i : CoarseGaps(samples, design.F0)) {
            const double from = samples.F[i], quarter = 0.25 * (samples.F[i + 1] - from);
            for (int part = 1; part <= 3; ++part)
                more.push_back(from + part * quarter);
        }
        if (more.empty()) break;
        samples = Merged(samples, Analysed(design, std::move(more)));
    }
    for (int pass = 0; pass < TopPasses; ++pass) {
        std::vector<double> tops = PlacesAtTops(samples);
        if (tops.empty()) break;
        samples = Merged(samples, Analysed(design, std::move(tops)));
    }
    return samples;
}

}  // namespace ladderwise
