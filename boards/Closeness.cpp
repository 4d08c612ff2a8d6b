// Weighted deviations over two grids: one for searching, a denser one of the pass band alone.
#include "boards/Closeness.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <utility>

#include "analysis/Circuitanalysis.h"
#include "analysis/ResponseSamples.h"

namespace ladderwise {

namespace {

constexpr int searchPassPoints = 180;
constexpr int searchSkirtPoints = KernelBlock - searchPassPoints;  // one block of the kernel
constexpr int densePoints = 4 * KernelBlock;
constexpr double limitWithoutRippleDb = 1.0;
constexpr double limitSlackDb = 1e-6;  ///< ripple maxima are at the limit but for rounding
constexpr double weightScaleDb = 3.0;
constexpr double rmsShare = 0.2;

double LimitOf(const FilterDesign& design) {
    const bool rippled =
        design.ResponseType == ResponseType::Chebyshev || IsElliptic(design.ResponseType);
    return rippled ? design.RippleDb : limitWithoutRippleDb;
}

std::vector<double> Joined(std::vector<double> a, const std::vector<double>& b) {
    a.insert(a.end(), b.begin(), b.end());
    std::sort(a.begin(), a.end());
    return a;
}

std::vector<double> SearchPoints(const DesignBand& band) {
    if (!band.IsValid()) return {};
    return Joined(PassBandPoints(band, searchPassPoints), SkirtPoints(band, searchSkirtPoints));
}

/// The dense points of the pass band at which the ideal ladder is within its limit.
std::vector<double> WithinLimit(const FilterDesign& ideal, const DesignBand& band) {
    if (!band.IsValid()) return {};
    LadderGrid all(PassBandPoints(band, densePoints), ideal.F0);
    const std::vector<double>& attenuation = all.AttenuationOf(ideal);
    std::vector<double> freqs;
    for (std::size_t i = 0; i < attenuation.size(); ++i)
        if (attenuation[i] - band.LeastLoss <= LimitOf(ideal) + limitSlackDb)
            freqs.push_back(all.Freqs()[i]);
    return freqs;
}

}  // namespace

LadderGrid::LadderGrid(std::vector<double> given, double F0)
    : freqs(std::move(given)), re(freqs.size()), im(freqs.size()), attenuation(freqs.size()) {
    BuildSweepTables(tables, freqs, F0);
}

const std::vector<double>& LadderGrid::AttenuationOf(const FilterDesign& design) {
    AnalyseLadder(design, tables, {}, re, im, {});
    const int count = static_cast<int>(freqs.size());
    const bool odd = ReadyKernel(KernelChoice::Automatic)
                         .LevelsAndAngles(re.data(), im.data(), count, attenuation.data(), nullptr);
    for (std::size_t i = 0; odd && i < freqs.size(); ++i)
        if (std::isnan(attenuation[i])) attenuation[i] = LevelAt(design, freqs[i]);
    for (double& a : attenuation)
        a = -a > DeepestDb ? DeepestDb : -a;
    return attenuation;
}

Closeness::Closeness(const FilterDesign& exact, const ElementList& ideal)
    : Closeness(
          exact, *[&] {
              auto design = std::make_unique<FilterDesign>(exact);
              design->Elements = ideal;
              design->PartModel.Choice = PartChoice::IdealParts;
              return design;
          }()) {}

Closeness::Closeness(const FilterDesign& exact, const FilterDesign& ideal)
    : band(DesignBandOf(ideal)),
      limit(LimitOf(ideal)),
      grid(SearchPoints(band), exact.F0),
      pass(WithinLimit(ideal, band), exact.F0) {
    for (const double a : grid.AttenuationOf(ideal))
        weights.push_back(1.0 / (1.0 + std::max(0.0, a - band.LeastLoss - limit) / weightScaleDb));
    target = grid.AttenuationOf(exact);
    passTarget = pass.AttenuationOf(exact);
}

double Closeness::Cost(const FilterDesign& ladder) {
    const std::vector<double>& attenuation = grid.AttenuationOf(ladder);
    double largest = 0.0, squares = 0.0;
    for (std::size_t i = 0; i < attenuation.size(); ++i) {
        const double d = weights[i] * std::abs(attenuation[i] - target[i]);
        largest = d > largest ? d : largest;
        squares += d * d;
    }
    if (std::isnan(squares)) return std::numeric_limits<double>::infinity();
    return largest + rmsShare * std::sqrt(squares / static_cast<double>(attenuation.size()));
}

double Closeness::WorstDeviation(const FilterDesign& ladder) {
    const std::vector<double>& attenuation = pass.AttenuationOf(ladder);
    double largest = 0.0;
    for (std::size_t i = 0; i < attenuation.size(); ++i) {
        const double d = std::abs(attenuation[i] - passTarget[i]);
        if (!(d <= largest)) largest = d;  // NaN wins
    }
    return largest;
}

}  // namespace ladderwise
