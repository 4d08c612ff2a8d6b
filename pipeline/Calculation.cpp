// The calculation, stage by stage.
#include "pipeline/Calculation.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>

#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "pipeline/DisplayScale.h"
#include "pipeline/NortonSequence.h"
#include "prototypes/Prototype.h"
#include "scaling/BandScaler.h"
#include "scaling/Protoscaler.h"

namespace ladderwise {

namespace {

constexpr double LowestSweepFrequency = 1.0;    ///< Hz; a linear sweep starts no lower
constexpr double LinearSpanInBandWidths = 2.5;  ///< on either side of F0

void SetSweepLimits(FilterDesign& design) {
    const double f0 = design.F0;
    const auto span = [&](double low, double high) {
        design.SweepF1 = low * f0;
        design.SweepF2 = high * f0;
    };
    switch (design.SweepType) {
        case SweepType::Linear:
            if (design.PassType == PassType::LowPass || design.PassType == PassType::HighPass) {
                span(0.0, 2.0);
            } else {
                design.SweepF1 = f0 - LinearSpanInBandWidths * design.BandWidth;
                if (design.SweepF1 <= 0.0) design.SweepF1 = LowestSweepFrequency;
                design.SweepF2 = f0 + LinearSpanInBandWidths * design.BandWidth;
            }
            return;
        case SweepType::OneOctave:
            return span(0.5, 2.0);
        case SweepType::TwoOctaves:
            return span(0.25, 4.0);
        case SweepType::ThreeOctaves:
            return span(0.125, 8.0);
        case SweepType::OneDecade:
            return span(0.1, 10.0);
        case SweepType::TwoDecades:
            return span(0.01, 100.0);
    }
}

void LeaveEmpty(FilterDesign& design, MissingStage missing) {
    ClearElements(design.Elements);
    design.NumElements = 0;
    design.Flags.Missing = missing;
}

void ScaleLadder(FilterDesign& design) {
    switch (design.PassType) {
        case PassType::LowPass:
            return ScaleLowPass(design);
        case PassType::HighPass:
            return ScaleHighPass(design);
        case PassType::BandPassCanonical:
            return ScaleBandPass(design);
        case PassType::Notch:
            return ScaleNotch(design);
        case PassType::DirectCoupled:
            return LeaveEmpty(design, MissingStage::DirectCoupledSynthesis);
        case PassType::Norton:
            return BuildNortonLadder(design);
    }
}

/// Index of the sweep point nearest to F0 at which both extremes are numbers.
int NearestUsablePoint(const FilterDesign& design, const WorstCaseResult& result) {
    int nearest = 0;
    double best = std::numeric_limits<double>::infinity();
    for (int i = 0; i < NumSweepPoints; ++i) {
        const double distance = std::abs(design.SweepFreqs[i] - design.F0);
        if (distance < best && result.LowDb[i] <= result.HighDb[i]) {
            best = distance;
            nearest = i;
        }
    }
    return nearest;
}

/// The worst case in two figures, for somebody who will build the filter.
void Summarise(const FilterDesign& design, const std::vector<double>& nominalDb,
               WorstCaseResult& result) {
    constexpr double PassBandDepthDb = 3.0;
    double peak = -std::numeric_limits<double>::infinity();
    for (const double level : nominalDb)
        peak = std::max(peak, std::isnan(level) ? peak : level);
    double lowest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < NumSweepPoints; ++i)
        if (nominalDb[i] >= peak - PassBandDepthDb) lowest = std::min(lowest, result.LowDb[i]);
    result.PassBandLossDb = -lowest;
    const int centre = NearestUsablePoint(design, result);
    result.SpreadAtF0Db = result.HighDb[centre] - result.LowDb[centre];
}

/// What the traces of a worst-case run draw.
NeededQuantities NeededFor(const TraceChoices& traces) {
    return {traces.Mag1dB || traces.Mag10dB, traces.Phase, traces.GroupDelay};
}

void Derive(const FilterDesign& design, NeededQuantities needed, DisplayQuantities& quantities) {
    DeriveDisplayQuantities(design.Response, design.SweepFreqs, design.PhaseGDThreshold, needed,
                            quantities);
}

std::vector<double> LevelsDb(const std::vector<double>& power) {
    std::vector<double> levels(power.size());
    ExtremesToDb(power, levels);
    return levels;
}

std::uint32_t NextSeed(Calculation& calculation) {
    return calculation.FixedSeed ? *calculation.FixedSeed
                                 : static_cast<std::uint32_t>(calculation.SeedSource());
}

void RunWorstCase(Calculation& calculation, std::uint32_t seed, const MessageCallback& report,
                  const PlotRunCallback& plotRun) {
    FilterDesign& design = calculation.Design;
    WorstCaseResult& result = calculation.WorstCase;
    result.Runs = design.PartModel.MonteCarloRuns;
    result.Seed = seed;
    std::mt19937 generator(result.Seed);
    design.NominalElements = design.Elements;
    const SweepResponse nominal = design.Response;
    std::vector<double> low(NumSweepPoints);
    std::vector<double> high(NumSweepPoints);
    ResetExtremes(low, high);
    AccumulateExtremes(nominal.TransferRe, nominal.TransferIm, low, high);
    const std::vector<double> nominalDb = LevelsDb(high);
    ResetExtremes(low, high);
    for (int run = 1; run <= result.Runs; ++run) {
        RandomiseParts(design, generator);
        AnalyseLadder(design, calculation.Tables, report);
        AccumulateExtremes(design.Response.TransferRe, design.Response.TransferIm, low, high);
        if (!plotRun) continue;
        Derive(design, NeededFor(calculation.Inputs.Traces()), calculation.RunQuantities);
        plotRun({run, calculation.RunQuantities, design.Response});
    }
    design.Elements = design.NominalElements;
    design.Response = nominal;
    result.LowDb = LevelsDb(low);
    result.HighDb = LevelsDb(high);
    Summarise(design, nominalDb, result);
}

/// What the stages overrode, into the inputs: the load that was moved shows in its box; a family
/// that cannot be built is given up, or every later calculation would say so again.
void MarkInputs(DesignInputs& inputs, const FilterDesign& design) {
    if (design.Flags.LoadMoved) {
        NumberBox& load = inputs.Box(InputId::RLoad);
        load.WriteValue(design.RLoad);
        load.Colour = BoxColour::Yellow;
    }
    if (design.Flags.FellBack)
        inputs.Choice(ChoiceId::Response) = static_cast<int>(design.ResponseType);
}

}  // namespace

void SeedFromClock(Calculation& calculation) {
    const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    std::seed_seq seed{static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
    calculation.SeedSource.seed(seed);
}

void ClearElements(ElementList& elements) {
    elements.fill(CircuitElement{});
}

void BuildSweepGrid(FilterDesign& design) {
    SetSweepLimits(design);
    const double f1 = design.SweepF1;
    const double f2 = design.SweepF2;
    if (design.SweepType == SweepType::Linear) {
        for (int i = 0; i < NumSweepPoints; ++i)
            design.SweepFreqs[i] = f1 + i * (f2 - f1) / NumSweepPoints;
        design.SweepFreqs[0] = std::max(design.SweepFreqs[0], LowestSweepFrequency);
    } else {
        const double logRatio = std::log(f2 / f1);
        for (int i = 0; i < NumSweepPoints; ++i)
            design.SweepFreqs[i] = f1 * std::exp(i * logRatio / NumSweepPoints);
    }
}

void BuildLadder(FilterDesign& design, const MessageCallback& report) {
    design.Flags = {};
    ClearElements(design.Elements);
    design.NortonResult = {};
    BuildSweepGrid(design);
    if (design.PassType == PassType::Norton) SetNortonForm(design, report);
    BuildPrototype(design, design.NumPoles, report);
    ScaleLadder(design);
}

void AnalyseAndPlot(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun) {
    FilterDesign& design = calculation.Design;
    BuildSweepTables(calculation.Tables, design.SweepFreqs, design.F0);
    AnalyseLadder(design, calculation.Tables, report);
    calculation.WorstCase = {};
    Derive(design, {}, calculation.Quantities);
    SettleGroupDelayScale(calculation.Inputs, design, calculation.Quantities.GDFullScale, report);
    if (plotRun) plotRun({0, calculation.Quantities, design.Response});
}

void RunAnalysis(Calculation& calculation, const MessageCallback& report,
                 const PlotRunCallback& plotRun) {
    FilterDesign& design = calculation.Design;
    if (design.PartModel.Choice == PartChoice::DeEmbed) DeEmbedParts(design);
    if (design.StdLCValues) SnapToStdValue(design);
    AnalyseAndPlot(calculation, report, plotRun);
    if (design.WorstCase) RunWorstCase(calculation, NextSeed(calculation), report, plotRun);
}

void RepeatAnalysis(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun) {
    const WorstCaseResult last = calculation.WorstCase;
    AnalyseAndPlot(calculation, report, plotRun);
    if (last.Runs > 0) RunWorstCase(calculation, last.Seed, report, plotRun);
}

void Calculate(Calculation& calculation, const MessageCallback& report,
               const PlotRunCallback& plotRun) {
    ReadInputs(calculation.Inputs, calculation.Design, report);
    if (calculation.Design.PassType == PassType::Norton)
        ReadNortonInputs(calculation.Inputs, calculation.Design, report);
    BuildLadder(calculation.Design, report);
    MarkInputs(calculation.Inputs, calculation.Design);
    RunAnalysis(calculation, report, plotRun);
}

}  // namespace ladderwise
