// Two unknowns, ln F0 and ln BandWidth of the synthesis, by Broyden's method.
//
// C. G. Broyden, "A class of methods for solving nonlinear simultaneous equations", Math. Comp. 19
// (1965) 577-593. The first guess of the derivatives is the identity: the band follows what the
// synthesis is given.
#include "pipeline/FitBandWidth.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <optional>

#include "analysis/PartValues.h"
#include "analysis/Results.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/CoupledBand.h"

namespace ladderwise {

namespace {

constexpr int mostFitSteps = 12;
constexpr double mostMove = 1.0;  ///< of ln F0 and ln BandWidth, from what was asked for
constexpr double mostFitStep = 0.3;
constexpr double nextQ = 1.5;  ///< Q is tried in these steps
constexpr double highestQ = 3e3;
constexpr int fitDigits = 4;
constexpr int fitQDigits = 2;

using Two = std::array<double, 2>;

class BandFit {
public:
    explicit BandFit(const FilterDesign& given)
        : asked(given), aim(AskedBand(given)), trial(std::make_unique<FilterDesign>(given)) {}

    /// The synthesis' ln F0 and ln BandWidth that make the band; nothing if none do.
    std::optional<Two> Solve() {
        const Two start = {std::log(asked.F0), std::log(asked.BandWidth)};
        Two x = start;
        auto f = ErrorAt(x);
        Two a = {1.0, 0.0}, b = {0.0, 1.0};  // rows of the inverse derivative
        for (int step = 0; f && step < mostFitSteps; ++step) {
            if (std::abs((*f)[0]) <= FitTolerance && std::abs((*f)[1]) <= FitTolerance) return x;
            Two d = {-(a[0] * (*f)[0] + a[1] * (*f)[1]), -(b[0] * (*f)[0] + b[1] * (*f)[1])};
            for (double& move : d)
                move = std::clamp(move, -mostFitStep, mostFitStep);
            const Two next = {x[0] + d[0], x[1] + d[1]};
            if (std::abs(next[0] - start[0]) > mostMove || std::abs(next[1] - start[1]) > mostMove)
                return {};
            const auto g = ErrorAt(next);
            if (!g) return {};
            Update(a, b, d, {(*g)[0] - (*f)[0], (*g)[1] - (*f)[1]});
            x = next;
            f = g;
        }
        return {};
    }

    /// The ladder for these, into `out`, whose F0 and BandWidth stay.
    void Build(const Two& x, FilterDesign& out) const {
        out.F0 = std::exp(x[0]);
        out.BandWidth = std::exp(x[1]);
        BuildLadder(out, {});  // has said before what there is to say
        const double ratio = asked.F0 / out.F0;
        for (int k = 1; k <= SlotsInUse(out); ++k) {
            CircuitElement& slot = out.Elements[static_cast<std::size_t>(k)];
            for (int row = 0; row < 4; ++row)
                if (InfoOf(slot.Type).Values[static_cast<std::size_t>(row)] ==
                    ValueKind::LengthDegrees)
                    slot.Value(row) *= ratio;
        }
        out.F0 = asked.F0;
        out.BandWidth = asked.BandWidth;
        BuildSweepGrid(out);
    }

    FilterDesign& Trial() { return *trial; }

private:
    /// Broyden's update of the inverse: J += (d - J y) d' J / (d' J y).
    static void Update(Two& a, Two& b, const Two& d, const Two& y) {
        const Two Jy = {a[0] * y[0] + a[1] * y[1], b[0] * y[0] + b[1] * y[1]};
        const Two dJ = {d[0] * a[0] + d[1] * b[0], d[0] * a[1] + d[1] * b[1]};
        const double along = d[0] * Jy[0] + d[1] * Jy[1];
        if (!(std::abs(along) > 0.0)) return;
        for (int k = 0; k < 2; ++k) {
            const auto at = static_cast<std::size_t>(k);
            a[at] += (d[0] - Jy[0]) * dJ[at] / along;
            b[at] += (d[1] - Jy[1]) * dJ[at] / along;
        }
    }

    std::optional<Two> ErrorAt(const Two& x) {
        Build(x, *trial);
        double low = 0.0, high = 0.0;
        if (trial->PartModel.Choice == PartChoice::IdealParts) {
            const auto made = MeasureBand(*trial, trial->Elements);
            if (!made) return {};
            low = made->Centre - 0.5 * made->Width;
            high = made->Centre + 0.5 * made->Width;
        } else {
            if (trial->PartModel.Choice == PartChoice::DeEmbed) DeEmbedParts(*trial);
            const ResponseResults results = ComputeResults(*trial, ReturnLossBandEdge(*trial));
            if (!results.Edges.Lower || !results.Edges.Upper) return {};
            low = *results.Edges.Lower;
            high = *results.Edges.Upper;
        }
        if (!(high > low)) return {};
        return Two{std::log(0.5 * (low + high) / aim.Centre), std::log((high - low) / aim.Width)};
    }

    const FilterDesign& asked;
    const PassBand aim;
    std::unique_ptr<FilterDesign> trial;
};

/// The lowest Q, in steps of nextQ, with which the fit comes to an end; 0 if none does.
double NeededQ(const FilterDesign& design) {
    for (double q = design.PartModel.IndQ * nextQ; q < highestQ; q *= nextQ) {
        BandFit fit(design);
        fit.Trial().PartModel.IndQ = q;
        if (fit.Solve()) return q;
    }
    return 0.0;
}

std::string FrequencyWords(double f) {
    return FormatWithPrefix(f, fitDigits - 1, "Hz");
}

PartsRemark CannotFit(const FilterDesign& design) {
    const bool lossy = design.PartModel.Choice != PartChoice::IdealParts;
    const double q = lossy ? NeededQ(design) : 0.0;
    const std::string what = FrequencyWords(design.BandWidth) + " about " +
                             FrequencyWords(design.F0) + " cannot be fitted";
    if (q > 0.0)
        return {"fit-width",
                what + ": Q too low. It takes coils of about Q " +
                    FormatPlain(RoundToSignificant(q, fitQDigits), fitQDigits) + ".",
                true};
    return {"fit-width", what + " with these parts; the band is that of the synthesis.", true};
}

}  // namespace

std::vector<PartsRemark> FitBandWidth(FilterDesign& design) {
    if (!HasBandWidth(design.PassType) || design.PassType == PassType::Notch ||
        design.NumElements < 1)
        return {};
    const FilterDesign asked = design;
    BandFit fit(asked);
    const auto found = fit.Solve();
    if (!found) return {CannotFit(asked)};
    fit.Build(*found, design);
    return {{"fit-width", "The synthesis was given " + FrequencyWords(std::exp((*found)[1])) +
                              " at " + FrequencyWords(std::exp((*found)[0])) +
                              ", so that the band is as wide and where it was asked for."}};
}

}  // namespace ladderwise
