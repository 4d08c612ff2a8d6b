// Climbs, what the last list came to, and for standard values a compass search.
#include "choosing/Refinement.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "choosing/CandidateList.h"

namespace ladderwise {

namespace {

constexpr int compassTries = 26;
constexpr double worthMoreDb = -2.0;    ///< margins that are worth more tries
constexpr double nearLargest = 0.9999;  ///< of the largest ripple
constexpr double firstRipple = 0.35;    ///< of a compass, ln of the ripple
constexpr double firstAtten = 3.0;      ///< the same, dB
constexpr double smallestRipple = 0.01;

}  // namespace

Refinement::Refinement(LadderMaker& ladders, LimitGrid& limits, ChoosingMemory& kept, PassType pass,
                       bool snapped, PlaceFunction placeOf)
    : maker(ladders),
      grid(limits),
      memory(kept),
      standard(snapped),
      narrowStops(!BandsOf(limits.Limits(), pass).NarrowStops.empty()),
      largestRipple(LargestRippleFor(limits.Limits(), pass, true)),
      largestInside(LargestRippleFor(limits.Limits(), pass, false)),
      need(LargestNeedOf(limits.Limits())),
      place(std::move(placeOf)),
      climb(ladders, limits, nearLargest * largestRipple) {}

bool Refinement::TakeIfBetter(PlacedCandidate& best, Candidate what, const Placement* start) {
    const Placement at = place(what, start, best.second.Margin);
    if (!(at.Margin > best.second.Margin)) return false;
    best = {what, at};
    return true;
}

// What passes by little has the attenuation that is asked for and no more: a ridge as narrow as
// the margin.
bool Refinement::TakeNeedItself(PlacedCandidate& best) {
    constexpr double aboveNeed[] = {0.02, 0.1};
    constexpr double ofLargest[] = {0.85, 0.95, 0.99};
    bool better = false;
    for (const double above : aboveNeed)
        for (const double share : ofLargest) {
            Candidate what = best.first;
            what.RippleDb = RoundedTyped(std::max(share * largestInside, FinestRippleDb));
            what.AttenDb = RoundedTyped(std::clamp(need + above, LeastNeedDb, MostNeedDb));
            better = TakeIfBetter(best, what, nullptr) || better;
        }
    return better;
}

// What the last list came to beside the raster: tried as it was, and as the limits have moved.
// False if there was none.
bool Refinement::TakeRefined(PlacedCandidate& best, bool& better) {
    const auto kept = memory.Refined.find(GroupOf(best.first));
    if (kept == memory.Refined.end()) return false;
    const ChoosingMemory::RefinedPlace& last = kept->second;
    Candidate asItWas = best.first, moved = asItWas;
    asItWas.RippleDb = std::min(last.What.RippleDb, RoundedTyped(nearLargest * largestRipple));
    asItWas.AttenDb = last.What.AttenDb;
    moved.RippleDb = RoundedTyped(std::max(
        last.What.RippleDb * std::min(largestRipple / last.LargestRippleDb, 1.0), FinestRippleDb));
    moved.AttenDb =
        RoundedTyped(std::clamp(last.What.AttenDb + need - last.NeedDb, LeastNeedDb, MostNeedDb));
    better = TakeIfBetter(best, asItWas, &last.At) || better;
    if (!(moved == asItWas)) better = TakeIfBetter(best, moved, &last.At) || better;
    return true;
}

bool Refinement::ClimbFrom(PlacedCandidate& best, const PlacedCandidate& start) {
    const ClimbPlace top =
        climb.From({start.first, start.second.F0, start.second.BandWidth, start.second.Margin});
    if (!(top.Margin > best.second.Margin) || !maker.Use(top.What)) return false;
    PlacementSearch search(maker, grid, top.What.Pass, KeptLimits::All);
    const Placement at = search.At(top.F0, top.BandWidth);
    analyses += search.Analyses();
    if (!(at.Margin > best.second.Margin)) return false;
    best = {top.What, at};
    return true;
}

// In the logarithm of the ripple and in the attenuation, from the whole steps or from half of them.
bool Refinement::SearchAround(PlacedCandidate& best, double share) {
    const bool traps = IsElliptic(best.first.Response);
    double stepRipple = share * firstRipple, stepAtten = share * firstAtten;
    bool better = false;
    int tries = 0;
    // Traps that keep to a place are traded for the ripple along both diagonals.
    const int mostTries =
        narrowStops && best.second.Margin > worthMoreDb ? 2 * compassTries : compassTries;
    while (tries < mostTries && stepRipple > smallestRipple) {
        bool moved = false;
        const std::array<std::pair<double, double>, 8> moves = {{{-stepRipple, 0.0},
                                                                 {stepRipple, 0.0},
                                                                 {0.0, stepAtten},
                                                                 {0.0, -stepAtten},
                                                                 {-stepRipple, stepAtten},
                                                                 {stepRipple, -stepAtten},
                                                                 {-stepRipple, -stepAtten},
                                                                 {stepRipple, stepAtten}}};
        for (const auto& [ripple, atten] : moves) {
            if (!traps && atten != 0.0) continue;
            if (!narrowStops && ripple * atten > 0.0) continue;
            Candidate what = best.first;
            what.RippleDb = RoundedTyped(std::clamp(what.RippleDb * std::exp(ripple),
                                                    FinestRippleDb, nearLargest * largestRipple));
            what.AttenDb = RoundedTyped(std::clamp(what.AttenDb + atten, LeastNeedDb, MostNeedDb));
            if (what == best.first) continue;
            ++tries;
            const Placement start = best.second;
            if (!TakeIfBetter(best, what, &start)) continue;
            moved = better = true;
            break;
        }
        if (!moved) stepRipple *= 0.5, stepAtten *= 0.5;
    }
    return better;
}

std::optional<PlacedCandidate> Refinement::Refine(const std::vector<PlacedCandidate>& starts) {
    constexpr double nearby = 0.5;
    PlacedCandidate best = starts.front();
    bool better = false;
    const bool known = TakeRefined(best, better);
    if (standard) {
        if (!known && IsElliptic(best.first.Response)) better = TakeNeedItself(best);
        better = SearchAround(best, known ? nearby : 1.0) || better;
    } else {
        if (better) ClimbFrom(best, PlacedCandidate(best));
        for (const PlacedCandidate& start : starts)
            better = ClimbFrom(best, start) || better;
    }
    memory.Refined[GroupOf(best.first)] = {best.first, best.second, largestRipple, need};
    if (!better) return std::nullopt;
    return best;
}

}  // namespace ladderwise
