// A three-pole Butterworth low pass in closed form, for the plot's tests and benchmarks: real
// looking curves without the analysis. H(s) = 1 / ((s + 1)(s^2 + s + 1)), s = j f / F0.
#pragma once

#include <cmath>
#include <complex>
#include <vector>

#include "display/PlotContent.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

struct ButterworthResponse {
    FilterDesign Design;
    std::vector<double> MagnitudeDb, PhaseDeg, GroupDelay, Pulse, ReturnLossDb;

    PlotTraces Traces() const { return {MagnitudeDb, PhaseDeg, GroupDelay, Pulse, ReturnLossDb}; }
    PlotLayer Layer(bool reference = false) const {
        return {Traces(),
                reference ? ReferenceColours : CurrentColours,
                reference ? LayerRole::Reference : LayerRole::Design,
                {},
                reference ? "Ref" : "",
                {}};
    }
    PlotContent Content(const TraceChoices& choices) const {
        return {Design, choices, {Layer()}, {}};
    }
};

/// The curves for corner frequency `detune` times F0; the ladder in slots 1 .. 3 is the nominal
/// one, with g = 1, 2, 1.
inline ButterworthResponse MakeButterworth(SweepType sweep, double detune = 1.0) {
    ButterworthResponse made;
    FilterDesign& design = made.Design;
    design.SweepType = sweep;
    BuildSweepGrid(design);
    design.NumElements = 3;
    const double omega0 = TwoPi * design.F0;
    design.Elements[1] = {ElementType::ShuntCap, UnusedValue, 1 / (50 * omega0)};
    design.Elements[2] = {ElementType::SeriesInd, 2 * 50 / omega0};
    design.Elements[3] = design.Elements[1];
    design.GDFullScale = 6.0e-9;
    for (int i = 0; i < NumSweepPoints; ++i) {
        const double w = design.SweepFreqs[static_cast<std::size_t>(i)] / (design.F0 * detune);
        const std::complex<double> s(0.0, w);
        const double power = 1 / (1 + std::pow(w, 6));
        const bool blank = 10 * std::log10(power) < design.PhaseGDThreshold;
        const double delay = 1 / (1 + w * w) + (1 + w * w) / ((1 - w * w) * (1 - w * w) + w * w);
        made.MagnitudeDb.push_back(10 * std::log10(power));
        made.ReturnLossDb.push_back(10 * std::log10(1 - power + 1e-100));
        made.PhaseDeg.push_back(
            blank ? BlankMarker : std::arg(1.0 / ((s + 1.0) * (s * s + s + 1.0))) * 360 / TwoPi);
        made.GroupDelay.push_back(blank ? BlankMarker : delay / (omega0 * detune));
        const double t = 20.0 * (i % (NumSweepPoints / 2)) / NumSweepPoints;
        made.Pulse.push_back(i < NumSweepPoints / 2 ? 1 - std::exp(-t) : std::exp(-t));
    }
    return made;
}

}  // namespace ladderwise
