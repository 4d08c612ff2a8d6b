// A three-pole Butterworth low pass in closed form, for the plot's tests and benchmarks: real
// looking curves without the analysis. H(s) = 1 / ((s + 1)(s^2 + s + 1)), s = j f / F0.
#pragma once

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "app/design/FilterDesign.h"
#include "display/TraceChoices.h"

namespace ladderwise {

struct ButterworthResponse {
    FilterDesign Design;
    std::vector<double> MagnitudeDb, PhaseDeg, GroupDelay, Pulse, ReturnLossDb;

    PlotTraces Traces() const { return {MagnitudeDb, PhaseDeg, GroupDelay, Pulse, ReturnLossDb}; }
};

inline void FillSweep(FilterDesign& design) {
    double ratio = 0.0;  // 0 stands for the linear sweep
    switch (design.SweepType) {
        case SweepType::Linear:
            break;
        case SweepType::OneOctave:
            ratio = 2;
            break;
        case SweepType::TwoOctaves:
            ratio = 4;
            break;
        case SweepType::ThreeOctaves:
            ratio = 8;
            break;
        case SweepType::OneDecade:
            ratio = 10;
            break;
        case SweepType::TwoDecades:
            ratio = 100;
            break;
    }
    design.SweepF1 = ratio > 0 ? design.F0 / ratio : 0.0;
    design.SweepF2 = design.F0 * std::max(ratio, 2.0);
    for (int i = 0; i < NumSweepPoints; ++i) {
        const double share = static_cast<double>(i) / NumSweepPoints;
        design.SweepFreqs[static_cast<std::size_t>(i)] =
            ratio > 0 ? design.SweepF1 * std::pow(ratio * ratio, share)
                      : std::max(1.0, design.SweepF2 * share);
    }
}

/// The curves for corner frequency `detune` times F0; the ladder in slots 1 .. 3 is the nominal
/// one, with g = 1, 2, 1.
inline ButterworthResponse MakeButterworth(SweepType sweep, double detune = 1.0) {
    ButterworthResponse made;
    FilterDesign& design = made.Design;
    design.SweepType = sweep;
    FillSweep(design);
    design.NumElements = 3;
    const double omega0 = TwoPi * design.F0;
    for (std::size_t k = 1; k <= 3; ++k) {
        CircuitElement& element = design.Elements[k];
        element.Type = k == 2 ? ElementType::SeriesInd : ElementType::ShuntCap;
        if (k == 2) element.V1 = 2 * 50 / omega0;
        if (k != 2) element.V2 = 1 / (50 * omega0);
    }
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
