// Linearised margins, and steps within a box.
#include "choosing/MarginClimb.h"

#include <algorithm>
#include <cmath>

#include "choosing/CandidateList.h"

namespace ladderwise {

namespace {

enum Unknown : std::size_t { frequency, width, ripple, attenuation };

/// What a whole box reaches to: ln F0, ln of the bandwidth, ln of the ripple, dB.
constexpr std::array<double, MostUnknowns> wholeBox = {0.03, 0.06, 0.5, 4.0};
/// Of a box, for differences; more than rounding to typed digits makes.
constexpr double difference = 2e-3;
constexpr double smallestBox = 1e-3, largestBox = 1.0;
constexpr double enoughPromised = 1e-4;  ///< dB: less is the top
constexpr double keptPromise = 0.5, brokenPromise = 0.1;
constexpr double farthest =
    2.0;  ///< whole boxes of what is promised now: what failed by more fails
constexpr int mostSteps = 30;
constexpr double countsWithinDb = 60.0;  ///< of the smallest margin: larger ones do not bind

}  // namespace

MarginClimb::MarginClimb(LadderMaker& ladders, LimitGrid& limits, double largestRipple)
    : maker(ladders), grid(limits), mostRipple(largestRipple) {}

ClimbPlace MarginClimb::Moved(const ClimbPlace& from,
                              const std::array<double, MostUnknowns>& step) const {
    ClimbPlace to = from;
    Candidate& what = to.What;
    const auto by = [&](Unknown unknown) { return step[unknown] * wholeBox[unknown]; };
    to.F0 *= std::exp(by(frequency));
    to.BandWidth *= std::exp(by(width));
    if (HasRipple(what))
        what.RippleDb = RoundedTyped(
            std::clamp(what.RippleDb * std::exp(by(ripple)), FinestRippleDb, mostRipple));
    if (IsElliptic(what.Response))
        what.AttenDb =
            RoundedTyped(std::clamp(what.AttenDb + by(attenuation), LeastNeedDb, MostNeedDb));
    to.Margin = HopelessDb;
    return to;
}

bool MarginClimb::Judge(ClimbPlace& place, std::vector<double>& margins) {
    place.Margin = HopelessDb;
    if (!maker.Use(place.What) || !maker.Place(place.F0, place.BandWidth)) return false;
    ++analyses;
    if (!grid.PointMargins(maker.Design(), margins)) return false;
    place.Margin = *std::min_element(margins.begin(), margins.end());
    return true;
}

bool MarginClimb::Linearise(const ClimbPlace& at, const std::vector<double>& margins) {
    functions.clear();
    for (const double margin : margins)
        functions.push_back({.Value = margin});
    free = {};
    for (std::size_t j = 0; j < MostUnknowns; ++j) {
        if (j == width && !HasBandWidth(at.What.Pass)) continue;
        if (j == ripple && !HasRipple(at.What)) continue;
        if (j == attenuation && !IsElliptic(at.What.Response)) continue;
        for (const double to : {difference, -difference}) {
            std::array<double, MostUnknowns> step{};
            step[j] = to;
            ClimbPlace moved = Moved(at, step);
            // At an end of what may be typed there is one side alone.
            if (j >= ripple && moved.What == at.What) continue;
            if (!Judge(moved, beside)) continue;
            for (std::size_t i = 0; i < functions.size(); ++i)
                functions[i].Slope[j] = (beside[i] - margins[i]) / to;
            free[j] = 1.0;
            break;
        }
    }
    std::erase_if(functions,
                  [&](const LinearFunction& of) { return of.Value > at.Margin + countsWithinDb; });
    return std::any_of(free.begin(), free.end(), [](double x) { return x > 0.0; });
}

ClimbPlace MarginClimb::From(const ClimbPlace& start) {
    ClimbPlace best = start;
    std::vector<double> margins, tried;
    if (!Judge(best, margins)) return start;
    double box = 0.25;
    bool isNew = true;
    for (int step = 0; step < mostSteps && box > smallestBox; ++step) {
        if (isNew && !Linearise(best, margins)) break;
        isNew = false;
        std::array<double, MostUnknowns> reach;
        for (std::size_t j = 0; j < MostUnknowns; ++j)
            reach[j] = box * free[j];
        const MinimaxStep promised = LargestSmallest(functions, reach);
        const double gain = promised.Smallest - best.Margin;
        if (gain < enoughPromised || best.Margin + farthest * gain / box < 0.0) break;
        ClimbPlace next = Moved(best, promised.Step);
        const bool built = Judge(next, tried);
        const double got = built ? next.Margin - best.Margin : -gain;
        if (got > 0.0) best = next, margins = tried, isNew = true;
        if (got > keptPromise * gain)
            box = std::min(2.0 * box, largestBox);
        else if (got < brokenPromise * gain)
            box *= 0.3;
    }
    return best;
}

}  // namespace ladderwise
