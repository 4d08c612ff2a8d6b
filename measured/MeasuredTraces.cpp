// Measured networks between the terminations of a design.
#include "measured/MeasuredTraces.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace ladderwise {

namespace {

/// The network with the design's source at port 1 and nothing between its ports and the filter.
void PutRight(NetworkData& network, const MeasuredConnection& connection) {
    if (connection.PortsSwapped && network.Ports == 2) {
        std::swap(network.Reference.Source, network.Reference.Load);
        for (SParameters& s : network.S) {
            std::swap(s.S11, s.S22);
            std::swap(s.S21, s.S12);
        }
    }
    for (std::size_t i = 0; i < network.Hz.size(); ++i) {
        const double w = TwoPi * network.Hz[i];
        const Complex source = std::polar(1.0, w * connection.SourceDelay);
        const Complex load = std::polar(1.0, w * connection.LoadDelay);
        SParameters& s = network.S[i];
        s.S11 *= source * source;
        s.S22 *= load * load;
        s.S21 *= source * load;
        s.S12 *= source * load;
    }
}

/// Fills the two parameters that a one-path instrument leaves at zero; turned round they are S11
/// and S21.
void CompleteOnePath(NetworkData& network, bool swapped, const FilterDesign& design) {
    const std::vector<SParameters> own = AnalyseSParameters(design, network.Hz, network.Reference);
    for (std::size_t i = 0; i < network.S.size(); ++i) {
        SParameters& s = network.S[i];
        (swapped ? s.S21 : s.S12) = swapped ? s.S12 : s.S21;
        (swapped ? s.S11 : s.S22) = swapped ? own[i].S11 : own[i].S22;
    }
}

}  // namespace

MeasuredTraces TracesBetweenTerminations(const NetworkData& network,
                                         const MeasuredConnection& connection,
                                         const FilterDesign& design) {
    MeasuredTraces traces;
    NetworkData right = network;
    PutRight(right, connection);
    const PortResistances ends{design.RSource, design.RLoad};
    const bool swapped = connection.PortsSwapped && network.Ports == 2;
    if (right.OnePath) {
        CompleteOnePath(right, swapped, design);
        const std::string missing = swapped ? "S11" : "S22";
        traces.Notes.push_back(
            missing + " is not measured" +
            (right.Reference == ends
                 ? "."
                 : "; for the design's terminations that of the design was used."));
    }
    traces.Hz = right.Hz;
    for (const SParameters& s : right.S) {
        const SParameters seen = Renormalised(
            s, right.Reference, {ends.Source, right.Ports == 1 ? right.Reference.Load : ends.Load});
        if (right.Ports == 2) traces.Transfer.push_back(seen.S21);
        if (!(right.OnePath && swapped)) traces.Reflection.push_back(seen.S11);
    }
    return traces;
}

std::optional<Complex> InterpolatedAt(const std::vector<double>& freqs,
                                      const std::vector<Complex>& values, double f) {
    if (freqs.empty() || values.size() != freqs.size()) return {};
    if (!(f >= freqs.front()) || !(f <= freqs.back())) return {};
    const auto above = std::lower_bound(freqs.begin(), freqs.end(), f);
    const auto i = static_cast<std::size_t>(above - freqs.begin());
    if (*above == f) return values[i];
    const double part = (f - freqs[i - 1]) / (freqs[i] - freqs[i - 1]);
    const Complex a = values[i - 1], b = values[i];
    const double magnitude = std::abs(a) + part * (std::abs(b) - std::abs(a));
    // The shorter way round is the unwrapped phase.
    const double turn = std::arg(b * std::conj(a));
    return std::polar(magnitude, std::arg(a) + part * turn);
}

}  // namespace ladderwise
