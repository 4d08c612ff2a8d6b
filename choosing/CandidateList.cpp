// Families by orders by forms by ripples by attenuations.
#include "choosing/CandidateList.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "choosing/PlacementSearch.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr double justBelowLargest = 0.999;  ///< of the largest ripple: all but equal ripple
/// Ripples (dB) and steps of attenuation (dB) that stay where they are when a limit moves, so that
/// prototypes and places that are known are asked for again.
constexpr std::array rippleRaster = {0.7, 0.4, 0.2, 0.1, 0.05, 0.02, 0.008, 0.003};
constexpr int ripplesOfRaster = 5;
constexpr double coarsestOfRaster = 0.85;  ///< of the largest
constexpr double attenRaster = 4.0, leastBelowNeed = 12.0, mostAboveNeed = 10.0;
constexpr double leastBelowOfFew = 28.0;
constexpr int fewTraps = 2;
constexpr double aboveRound = 0.02;  ///< dB: people ask for round numbers
constexpr double fallbackNeedDb = 40.0;
constexpr double wideReach = 4.0;       ///< To / From of a limit that no ripple is beside
constexpr double widestCoupled = 0.25;  ///< of the centre: beyond coupled resonators are off

constexpr std::array allPole = {ResponseType::Butterworth, ResponseType::BesselFreq,
                                ResponseType::BesselDelay, ResponseType::Papoulis,
                                ResponseType::Gauss,       ResponseType::LinearChebyshev};
constexpr std::array elliptic = {ResponseType::EllipticA, ResponseType::EllipticB,
                                 ResponseType::EllipticC, ResponseType::EllipticD,
                                 ResponseType::EllipticE};

class Lister {
public:
    Lister(const FilterDesign& design, const LimitLines& limits)
        : base(design),
          largestRipple(LargestRippleFor(limits, design.PassType, false)),
          widestRipple(LargestRippleFor(limits, design.PassType, true)),
          need(LargestNeedOf(limits)),
          narrowStops(!BandsOf(limits, design.PassType).NarrowStops.empty()) {}

    void AllPole(const Candidate& pattern, int fewest, int most, int stride) {
        for (int poles = fewest; poles <= most; poles += stride) {
            Candidate candidate = pattern;
            candidate.Poles = poles;
            for (const ResponseType family : allPole) {
                candidate.Response = family;
                list.push_back({candidate});
            }
            if (base.CoefFileRead &&
                base.CoefficientTable[static_cast<std::size_t>(poles)][0] > 0.0) {
                candidate.Response = ResponseType::CoefficientsFile;
                list.push_back({candidate});
            }
            candidate.Response = ResponseType::Chebyshev;
            Rippled(candidate, 0);
        }
    }

    void Elliptic(const Candidate& pattern, int fewest, int most) {
        for (int traps = fewest; traps <= most; ++traps) {
            for (const ResponseType family : elliptic) {
                Candidate candidate = pattern;
                candidate.Response = family;
                candidate.Poles = traps;
                candidate.FormCLC = base.FormCLC;
                // Few traps that sit in narrow limits do with much less beside them.
                const double below =
                    narrowStops && traps <= fewTraps ? leastBelowOfFew : leastBelowNeed;
                const int first = static_cast<int>(std::ceil((need - below) / attenRaster));
                const int last = static_cast<int>(std::floor((need + mostAboveNeed) / attenRaster));
                for (int step = first; step <= last; ++step) {
                    candidate.AttenDb =
                        std::clamp(step * attenRaster + aboveRound, LeastNeedDb, MostNeedDb);
                    Rippled(candidate, step);
                }
            }
        }
    }

    std::vector<ListedCandidate> list{};

private:
    void Rippled(Candidate candidate, int attenIndex) {
        const auto add = [&](double ripple, int index) {
            candidate.RippleDb = std::max(ripple, FinestRippleDb);
            list.push_back({candidate, index, attenIndex});
        };
        if (widestRipple > largestRipple) add(justBelowLargest * widestRipple, ofWidest);
        add(justBelowLargest * largestRipple, ofLargest);
        int taken = 0;
        for (std::size_t i = 0; i < rippleRaster.size() && taken < ripplesOfRaster; ++i) {
            if (rippleRaster[i] > coarsestOfRaster * widestRipple) continue;
            add(rippleRaster[i], static_cast<int>(i));
            if (rippleRaster[i] <= coarsestOfRaster * largestRipple) ++taken;
        }
    }

    static constexpr int ofLargest = -1, ofWidest = -2;  ///< indices beside the raster's

    const FilterDesign& base;
    double largestRipple, widestRipple, need;
    bool narrowStops;
};

bool IsBand(PassType pass) {
    return HasBandWidth(pass) && pass != PassType::Notch;
}

/// Whether a limit reaches over so much of the pass band that the ripple shows in it.
bool ReachesOverPassBand(const LimitLine& line, const NeedBands& bands, PassType pass) {
    if (IsBand(pass)) return line.From <= bands.PassLow && line.To >= bands.PassHigh;
    if (pass == PassType::Notch) return true;
    return line.To >= wideReach * line.From;
}

}  // namespace

double RoundedTyped(double decibels) {
    constexpr int typedDigits = 5;
    ReadPlainNumber(RoundedNumber(decibels, typedDigits), decibels);
    return decibels;
}

double LargestNeedOf(const LimitLines& limits) {
    double need = 0.0;
    for (const LimitLine& line : limits)
        if (line.Kind == LimitKind::AttenMin) need = std::max(need, line.Value);
    return need > 0.0 ? need : fallbackNeedDb;
}

double LargestRippleFor(const LimitLines& limits, PassType pass, bool widestOnly) {
    const NeedBands bands = BandsOf(limits, pass);
    double largest = CoarsestRippleDb;
    for (const LimitLine& line : limits) {
        if (widestOnly && !ReachesOverPassBand(line, bands, pass)) continue;
        if (line.Kind == LimitKind::AttenMax) largest = std::min(largest, line.Value);
        // What is reflected does not pass: A = -10 log10(1 - |Gamma|^2).
        if (line.Kind == LimitKind::ReturnLossMin)
            largest =
                std::min(largest, -10.0 * std::log10(1.0 - std::pow(10.0, -0.1 * line.Value)));
    }
    return std::max(largest, FinestRippleDb);
}

std::vector<ListedCandidate> ListCandidates(const FilterDesign& base, const LimitLines& limits,
                                            int fewestTraps, int mostTraps) {
    Lister lister(base, limits);
    Candidate pattern;
    pattern.Pass = IsBand(base.PassType) ? PassType::BandPassCanonical : base.PassType;
    if (fewestTraps <= 1)
        for (const bool form : {true, false}) {
            pattern.FormCLC = form;
            lister.AllPole(pattern, 1, MaxPoles, 1);
        }
    lister.Elliptic(pattern, fewestTraps, mostTraps);
    const NeedBands bands = BandsOf(limits, base.PassType);
    const double centre = 0.5 * (bands.PassLow + bands.PassHigh);
    if (fewestTraps > 1 || !IsBand(base.PassType) ||
        !(bands.PassHigh - bands.PassLow <= widestCoupled * centre))
        return lister.list;
    pattern.FormCLC = true;
    pattern.Pass = PassType::DirectCoupled;
    for (const InverterType inverter :
         {InverterType::SeriesInductor, InverterType::SeriesCapacitor}) {
        pattern.Inverter = inverter;
        lister.AllPole(pattern, 1, MaxPoles, 1);
    }
    pattern.Inverter = InverterType::SeriesInductor;
    pattern.Pass = PassType::Norton;
    for (const NortonType type :
         {NortonType::TCap, NortonType::TInd, NortonType::PiCap, NortonType::PiInd}) {
        pattern.NortonType = type;
        lister.AllPole(pattern, 3, 5, 2);
    }
    return lister.list;
}

}  // namespace ladderwise
