// Pass bands by the prototype's ripple, or by the analysis.
#include "pipeline/DesignPromise.h"

#include <algorithm>
#include <optional>

#include "analysis/ResponseSamples.h"

namespace ladderwise {

namespace {

constexpr double plainLoss = 1.0;  // dB, of a response without ripple

bool HasPromisedRipple(const FilterDesign& design) {
    return design.Elliptic.NumTraps > 0 || design.ResponseType == ResponseType::Chebyshev;
}

/// The edges at which the ladder has fallen by `plainLoss` below its peak, coming from within.
ResponseEdges PlainEdges(const FilterDesign& design, const ResponsePeak& peak, double farthest) {
    const ResponseSamples samples = TakeSamples(design);
    const double target = -peak.Loss - plainLoss;
    const auto crossing = [&](double from, int direction) {
        return FirstCrossing(design, samples, from, direction, target, true);
    };
    const double low = samples.F.front();
    switch (design.PassType) {
        case PassType::LowPass:
            return {{}, crossing(low, +1)};
        case PassType::HighPass:
            return {crossing(farthest, -1), {}};
        case PassType::Notch:
            return {crossing(low, +1), crossing(farthest, -1)};
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return {crossing(peak.Frequency, -1), crossing(peak.Frequency, +1)};
    }
    return {};
}

}  // namespace

DesignPromise PromiseOf(const Calculation& calculation) {
    const FilterDesign& design = calculation.Design;
    const ResponseResults& results = calculation.Results;
    DesignPromise promise;
    promise.Operating = design.F0;
    if (!results.Valid || !results.Peak) return promise;
    const bool ripple = HasPromisedRipple(design);
    promise.Loss = ripple ? design.RippleDb : plainLoss;
    constexpr double octave = 2.0, farOff = 3.0;  // as the return-loss band
    const double farthest = farOff * design.F0;
    const ResponseEdges edges =
        ripple ? results.ReturnLossBand : PlainEdges(design, *results.Peak, farthest);
    const auto end = [&](double from) { return std::max(farthest, octave * from); };
    switch (design.PassType) {
        case PassType::LowPass:
            if (edges.Upper) promise.Pass = {{0.0, *edges.Upper}};
            break;
        case PassType::HighPass:
            if (edges.Lower) promise.Pass = {{*edges.Lower, end(*edges.Lower)}};
            break;
        case PassType::Notch:
            if (edges.Lower && edges.Upper)
                promise.Pass = {{0.0, *edges.Lower}, {*edges.Upper, end(*edges.Upper)}};
            break;
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            if (edges.Lower && edges.Upper) promise.Pass = {{*edges.Lower, *edges.Upper}};
            break;
    }
    promise.HoldsHarmonics =
        design.PassType != PassType::HighPass && design.PassType != PassType::Notch;
    return promise;
}

}  // namespace ladderwise
