// The calculation, stage by stage.
#include "pipeline/Calculation.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/BoardDraws.h"
#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "directcoupled/DirectCoupled.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/DisplayScale.h"
#include "pipeline/FitBandWidth.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/ResultsText.h"
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

/// True for the sweep points of the pass band of `levels`: those within 3 dB of the peak that join
/// the one nearest to F0; for a notch, which has a pass band on either side, all of them.
std::vector<bool> PassBandOf(const FilterDesign& design, const std::vector<double>& levels) {
    constexpr double PassBandDepthDb = 3.0;
    double peak = -std::numeric_limits<double>::infinity();
    for (const double level : levels)
        peak = std::max(peak, std::isnan(level) ? peak : level);
    const auto passes = [&](int i) { return levels[i] >= peak - PassBandDepthDb; };
    std::vector<bool> band(NumSweepPoints, false);
    if (design.PassType == PassType::Notch) {
        for (int i = 0; i < NumSweepPoints; ++i)
            band[i] = passes(i);
        return band;
    }
    int nearest = -1;
    const auto distance = [&](int i) { return std::abs(design.SweepFreqs[i] - design.F0); };
    for (int i = 0; i < NumSweepPoints; ++i)
        if (passes(i) && (nearest < 0 || distance(i) < distance(nearest))) nearest = i;
    for (int i = nearest; i >= 0 && passes(i); --i)
        band[i] = true;
    for (int i = nearest; i >= 0 && i < NumSweepPoints && passes(i); ++i)
        band[i] = true;
    return band;
}

std::vector<double> LevelsDb(const std::vector<double>& power) {
    std::vector<double> levels(power.size());
    ExtremesToDb(power, levels);
    return levels;
}

/// The pass band that the ideal ladder promises: standard values and lossy parts may detune a
/// narrow filter so far that its own pass band says nothing about the one wanted.
std::vector<bool> IdealPassBand(Calculation& calculation, const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    const ElementList elements = design.Elements;
    const SweepResponse response = design.Response;
    const PartChoice parts = design.PartModel.Choice;
    design.Elements = calculation.IdealElements;
    design.PartModel.Choice = PartChoice::IdealParts;
    AnalyseLadder(design, calculation.Tables, report);
    std::vector<double> low(NumSweepPoints), power(NumSweepPoints);
    ResetExtremes(low, power);
    AccumulateExtremes(design.Response.TransferRe, design.Response.TransferIm, low, power);
    const std::vector<bool> band = PassBandOf(design, LevelsDb(power));
    design.Elements = elements;
    design.Response = response;
    design.PartModel.Choice = parts;
    return band;
}

/// The worst case in two figures, for somebody who will build the filter.
void Summarise(const FilterDesign& design, const std::vector<bool>& passBand,
               WorstCaseResult& result) {
    double lowest = std::numeric_limits<double>::infinity();
    for (int i = 0; i < NumSweepPoints; ++i)
        if (passBand[i]) lowest = std::min(lowest, result.LowDb[i]);
    result.PassBandLossDb = -lowest;
    const int centre = NearestUsablePoint(design, result);
    result.SpreadAtF0Db = result.HighDb[centre] - result.LowDb[centre];
}

/// What the traces of a worst-case run draw.
NeededQuantities NeededFor(const TraceChoices& traces) {
    return {traces.Mag1dB || traces.Mag10dB, traces.Phase, traces.GroupDelay};
}

void Derive(Calculation& calculation, NeededQuantities needed, DisplayQuantities& quantities,
            const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    DeriveDisplayQuantities(design.Response, design.SweepFreqs, design.PhaseGDThreshold, needed,
                            quantities);
    if (ShownTraces(calculation).Pulse)
        CalcPulseResponse(design, PulseWidth, calculation.Pulse, quantities.Pulse, report);
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
    const std::vector<PairedPart> pairs = design.Pairs;
    BoardDrawer drawer(design);
    const SweepResponse nominal = design.Response;
    std::vector<double> low(NumSweepPoints);
    std::vector<double> high(NumSweepPoints);
    ResetExtremes(low, high);
    for (int run = 1; run <= result.Runs; ++run) {
        drawer.Draw(generator, design);
        AnalyseLadder(design, calculation.Tables, report);
        AccumulateExtremes(design.Response.TransferRe, design.Response.TransferIm, low, high);
        if (!plotRun) continue;
        Derive(calculation, NeededFor(calculation.Inputs.Traces()), calculation.RunQuantities,
               report);
        plotRun({run, calculation.RunQuantities, design.Response});
    }
    design.Elements = design.NominalElements;
    design.Pairs = pairs;
    design.Response = nominal;
    result.LowDb = LevelsDb(low);
    result.HighDb = LevelsDb(high);
    Summarise(design, IdealPassBand(calculation, report), result);
}

/// What the stages overrode, into the inputs: the load that was moved shows in its box, one of an
/// elliptic family with one decimal; a family that cannot be built is given up, or every later
/// calculation would say so again.
void MarkInputs(DesignInputs& inputs, const FilterDesign& design) {
    NumberBox& load = inputs.Box(InputId::RLoad);
    if (design.Flags.LoadMoved) {
        load.MoveTo(design.RLoad, LoadReason::Chebyshev);
        load.Colour = BoxColour::Yellow;
    }
    if (design.Flags.LoadOfFamily) {
        load.MoveTo(design.RLoad, LoadReason::Elliptic);
        load.WriteText(FormatFixed(design.RLoad, 1), design.RLoad);
        if (design.RLoad != design.RSource) load.Colour = BoxColour::Yellow;
    }
    // A file holds what stood there before the move; the design may not need the move any more.
    if (load.Moved && load.ExactValue == load.Moved->Wanted) load.Moved.reset();
    if (design.Flags.FellBack)
        inputs.Choice(ChoiceId::Response) = static_cast<int>(design.ResponseType);
}

/// From the scaled ladder to the analysed one of parts that can be bought; `errorsBefore` is the
/// number of math errors in the log when its synthesis began.
void PrepareAnalysis(Calculation& calculation, std::uint64_t errorsBefore,
                     const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    calculation.IdealElements = design.Elements;
    if (design.PartModel.Choice == PartChoice::DeEmbed) DeEmbedParts(design);
    // What a search for values tries is no fault of the ladder that it comes to.
    calculation.SynthesisMathErrors = MathErrors().ErrorCount() - errorsBefore;
    if (calculation.ArrangeParts) {
        const auto remarks = calculation.ArrangeParts(calculation);
        calculation.Remarks.insert(calculation.Remarks.end(), remarks.begin(), remarks.end());
    } else if (design.StdLCValues) {
        SnapToStdValue(design);
    }
    design.CalculatedElements = design.Elements;
    AnalyseAsItStands(calculation, report);
    if (design.WorstCase) calculation.PendingSeed = NextSeed(calculation);
}

HandMadeDesign PresentDesign(const Calculation& calculation) {
    return {calculation.UsedInputs, calculation.Design, calculation.IdealElements,
            calculation.SynthesisMathErrors, calculation.Remarks};
}

/// The inputs that change no part value, as they are.
void KeepWhatOnlyShows(const DesignInputs& shown, Calculation& calculation) {
    using enum ChoiceId;
    FilterDesign& design = calculation.Design;
    for (const ChoiceId id : {Sweep, AutoScale, TraceMag1dB, TraceMag10dB, TracePhase,
                              TraceGroupDelay, TracePulse, TraceReturnLoss, Overlay}) {
        calculation.Inputs.Choice(id) = shown.Choice(id);
        if (TableOf(id).Put) TableOf(id).Put(design, shown.Choice(id));
    }
    for (const InputId id : {InputId::Scale, InputId::PercentChange, InputId::GDPhaseThreshold}) {
        calculation.Inputs.Box(id) = shown.Box(id);
        if (id != InputId::Scale) StepInput(id, calculation.Inputs, design, {}, {});
    }
}

}  // namespace

void SeedFromClock(Calculation& calculation) {
    const auto ticks = std::chrono::system_clock::now().time_since_epoch().count();
    std::seed_seq seed{static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)};
    calculation.SeedSource.seed(seed);
}

TraceChoices ShownTraces(const Calculation& calculation) {
    TraceChoices traces = calculation.Inputs.Traces();
    if (!calculation.PulseInWorstCase && calculation.Inputs.IsOn(ChoiceId::WorstCase))
        traces.Pulse = false;
    return traces;
}

std::uint64_t MathErrorCount(const Calculation& calculation) {
    return calculation.SynthesisMathErrors + calculation.AnalysisMathErrors;
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
        // Of a filter for millihertz 1 Hz would be no start but a jump: the first step is halved.
        double& start = design.SweepFreqs[0];
        if (LowestSweepFrequency < design.SweepFreqs[1])
            start = std::max(start, LowestSweepFrequency);
        else if (start <= 0.0)
            start = 0.5 * design.SweepFreqs[1];
    } else {
        const double logRatio = GuardedLog(f2 / f1);
        for (int i = 0; i < NumSweepPoints; ++i)
            design.SweepFreqs[i] = f1 * GuardedExp(i * logRatio / NumSweepPoints);
    }
}

void ScaleLadder(FilterDesign& design, const MessageCallback& report) {
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
            return CalcDirectCoupled(design, report);
        case PassType::Norton:
            return BuildNortonLadder(design);
    }
}

void BuildLadder(FilterDesign& design, const MessageCallback& report) {
    design.Flags = {};
    ClearElements(design.Elements);
    design.Pairs.clear();
    design.NortonResult = {};
    BuildSweepGrid(design);
    if (design.PassType == PassType::Norton) SetNortonForm(design, report);
    BuildPrototype(design, design.NumPoles, report);
    ScaleLadder(design, report);
}

void AnalyseAsItStands(Calculation& calculation, const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    calculation.FirstMathError = MathErrors().ErrorCount();
    BuildSweepTables(calculation.Tables, design.SweepFreqs, design.F0);
    AnalyseLadder(design, calculation.Tables, report);
    calculation.WorstCase = {};
    calculation.PendingSeed.reset();
    calculation.DiscardedNow = false;
    Derive(calculation, {}, calculation.Quantities, report);
    calculation.Results = ResultsOf(design);
    SettleGroupDelayScale(calculation.Inputs, design, calculation.Quantities.GDFullScale, report);
    calculation.AnalysisMathErrors = MathErrors().ErrorCount() - calculation.FirstMathError;
}

void AnalyseAndPlot(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun) {
    AnalyseAsItStands(calculation, report);
    FinishCalculation(calculation, report, plotRun);
}

void FinishCalculation(Calculation& calculation, const MessageCallback& report,
                       const PlotRunCallback& plotRun) {
    if (plotRun) plotRun({0, calculation.Quantities, calculation.Design.Response});
    const auto seed = std::exchange(calculation.PendingSeed, std::nullopt);
    if (!seed) return;
    const std::uint64_t errorsBefore = MathErrors().ErrorCount();
    RunWorstCase(calculation, *seed, report, plotRun);
    calculation.AnalysisMathErrors += MathErrors().ErrorCount() - errorsBefore;
}

void AskForRepeat(Calculation& calculation) {
    if (calculation.WorstCase.Runs > 0) calculation.PendingSeed = calculation.WorstCase.Seed;
}

bool BringBackEdits(Calculation& calculation) {
    if (!calculation.Discarded) return false;
    FilterDesign& design = calculation.Design;
    const HandMadeDesign back = *std::exchange(calculation.Discarded, std::nullopt);
    if (HasEdits(design)) calculation.Discarded = PresentDesign(calculation);
    const DesignInputs shown = calculation.Inputs;
    calculation.Inputs = calculation.UsedInputs = back.Inputs;
    static_cast<DesignState&>(design) = back.Design;
    calculation.IdealElements = back.IdealElements;
    calculation.SynthesisMathErrors = back.SynthesisMathErrors;
    calculation.CountChanged = false;
    calculation.Remarks = back.Remarks;
    KeepWhatOnlyShows(shown, calculation);
    BuildSweepGrid(design);
    return true;
}

void PrepareCalculation(Calculation& calculation, const MessageCallback& report) {
    FilterDesign& design = calculation.Design;
    const std::uint64_t errorsBefore = MathErrors().ErrorCount();
    const bool discards = HasEdits(design);
    if (discards) calculation.Discarded = PresentDesign(calculation);
    const bool first = design.NumElements == 0, traps = IsElliptic(design.ResponseType);
    const int count = design.NumPoles;
    ReadInputs(calculation.Inputs, design, report);
    ReadNortonInputs(calculation.Inputs, design, report);
    BuildLadder(design, report);
    calculation.Remarks.clear();
    if (design.FitWidth) calculation.Remarks = FitBandWidth(design);
    LookForEvenest(calculation.Inputs, design);
    MarkInputs(calculation.Inputs, design);
    PrepareAnalysis(calculation, errorsBefore, report);
    calculation.UsedInputs = calculation.Inputs;
    calculation.DiscardedNow = discards;
    calculation.CountChanged =
        !first && IsElliptic(design.ResponseType) != traps && design.NumPoles == count;
}

void PrepareAmended(Calculation& calculation, const std::function<bool()>& amend,
                    const MessageCallback& report) {
    const NumberBox scale = calculation.Inputs.Box(InputId::Scale);
    PrepareCalculation(calculation, report);
    if (!amend || !amend()) return;
    calculation.Inputs.Box(InputId::Scale) = scale;
    AnalyseAsItStands(calculation, report);
}

void Calculate(Calculation& calculation, const MessageCallback& report,
               const PlotRunCallback& plotRun) {
    PrepareCalculation(calculation, report);
    FinishCalculation(calculation, report, plotRun);
}

}  // namespace ladderwise
