// The calculation from the design inputs to the analysed ladder: window-free, so that the main
// window and the console program run the very same steps. No Qt.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "analysis/Magphasefunctions.h"
#include "analysis/PulseResponse.h"
#include "analysis/Results.h"
#include "analysis/SweepTables.h"
#include "numbers/Matherrmain.h"
#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// One analysed run with what its traces draw: 0 for the nominal ladder, with all quantities, 1 ..
/// N for the worst-case runs, with the quantities that the chosen traces need.
struct AnalysedRun {
    int Number = 0;
    const DisplayQuantities& Quantities;
    const SweepResponse& Response;
};

/// Called after every analysis, to paint it; it changes nothing of the calculation.
using PlotRunCallback = std::function<void(const AnalysedRun& run)>;

/// What a worst-case calculation found; empty (Runs = 0) when none was asked for.
struct WorstCaseResult {
    int Runs = 0;
    std::uint32_t Seed = 0;      ///< repeats the runs
    std::vector<double> LowDb;   ///< lowest magnitude of the randomised runs at each point, dB
    std::vector<double> HighDb;  ///< highest magnitude, dB
    double PassBandLossDb =
        0.0;  ///< worst loss where the nominal response is within 3 dB of its peak
    double SpreadAtF0Db = 0.0;  ///< highest less lowest at the sweep point nearest to F0
};

/// What the choice of parts has to say, a sentence each.
struct PartsRemark {
    std::string Name{};  ///< the console program's name of the input
    std::string Text{};
    bool Wrong = false;  ///< a demand that is not met; else good to know
};

struct Calculation;

/// Puts parts that can be bought, or that make up for their parasitics, in the place of those in
/// Design.Elements, and notes those that standard values take the place of as ExactElements.
using PartsArranger = std::function<std::vector<PartsRemark>(Calculation& calculation)>;

/// A design whose values were changed by hand, with the inputs that it was calculated from.
struct HandMadeDesign {
    DesignInputs Inputs{};
    DesignState Design{};
    ElementList IdealElements{};
    std::uint64_t SynthesisMathErrors = 0;
    std::vector<PartsRemark> Remarks{};  ///< of that calculation
};

/// A design with all that its calculation needs and leaves behind.
struct Calculation {
    DesignInputs Inputs{};
    FilterDesign Design{};
    SweepTables Tables{};
    DisplayQuantities Quantities{};     ///< of the nominal ladder, whenever a calculation returns
    ResponseResults Results{};          ///< of the nominal ladder too
    DisplayQuantities RunQuantities{};  ///< of the worst-case run in hand
    PulseWork Pulse{};                  ///< tables of the pulse response, shared by all runs
    /// False where the control of the pulse trace is disabled while a worst case is chosen.
    bool PulseInWorstCase = true;
    /// How many math errors it brought to come to the ladder, before any value was edited by hand.
    std::uint64_t SynthesisMathErrors = 0;
    /// Number, in the log, of the first one since.
    std::uint64_t FirstMathError = MathErrors().ErrorCount();
    std::uint64_t AnalysisMathErrors = 0;  ///< and how many analysis and worst case brought
    WorstCaseResult WorstCase{};
    /// Seed of the worst case that the last calculation asks for and that has not run yet.
    std::optional<std::uint32_t> PendingSeed{};
    /// Standard values beyond the nearest ones and absorbed parasitics; without it each value is
    /// snapped to the nearest one.
    PartsArranger ArrangeParts{};
    std::vector<PartsRemark> Remarks{};  ///< of the last calculation
    ElementList IdealElements{};         ///< as scaled, before de-embedding and standard values
    ElementList ExactElements{};         ///< what ArrangeParts chose standard values for
    /// The last values changed by hand that a calculation has discarded.
    std::optional<HandMadeDesign> Discarded{};
    DesignInputs UsedInputs{};  ///< of the last calculation, and as it left them
    bool DiscardedNow = false;  ///< by the last calculation
    bool CountChanged = false;  ///< the last calculation went from poles to traps, or back
    std::mt19937 SeedSource{};  ///< gives each worst-case calculation its seed
    std::optional<std::uint32_t> FixedSeed{};  ///< set: every worst-case calculation uses this one
};

/// Seeds the generator, once at program start.
void SeedFromClock(Calculation& calculation);

/// The traces that are drawn of the present choices: all that are chosen, but no pulse in a worst
/// case where that cannot be chosen.
TraceChoices ShownTraces(const Calculation& calculation);

/// How many math errors there are of the ladder in hand: of its synthesis, analysis and worst case.
std::uint64_t MathErrorCount(const Calculation& calculation);

/// Clears all 32 slots: no element, all values unused.
void ClearElements(ElementList& elements);

/// Sweep limits by SweepType, and the 1024 frequencies. The grid stops one step short of SweepF2;
/// a linear sweep starts at no less than 1 Hz.
void BuildSweepGrid(FilterDesign& design);

/// The prototype in Elements to the ladder of the design's pass type.
void ScaleLadder(FilterDesign& design, const MessageCallback& report);

/// From the design inputs in `design` to the unanalysed ladder in Elements: clearing, sweep grid,
/// prototype, scaling.
void BuildLadder(FilterDesign& design, const MessageCallback& report);

/// Analyses the ladder in Elements as it stands, edited by hand, and settles what the plot shows of
/// it; there is no worst case of it.
void AnalyseAsItStands(Calculation& calculation, const MessageCallback& report);

/// AnalyseAsItStands, and plots run 0.
void AnalyseAndPlot(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun);

/// Lets the next FinishCalculation plot the last analysis once more, with the very same worst-case
/// runs: for a picture that has to be painted anew.
void AskForRepeat(Calculation& calculation);

/// Puts the discarded hand-made design in the place of the present one, unanalysed, with the inputs
/// that it belongs to; if the present one is made by hand too, they change places. What only shows
/// a design (traces, sweep, scale, "% Change") stays as it is. False if there is none.
bool BringBackEdits(Calculation& calculation);

/// The first half of Calculate, which leaves the state of the inputs and of the nominal ladder as
/// the whole does but plots nothing: a worst case that is asked for is left pending. Steps that
/// follow each other quickly are prepared one by one and finished once.
void PrepareCalculation(Calculation& calculation, const MessageCallback& report);

/// The first half for a design whose ladder `amend` then changes (it tells whether it did): a
/// group-delay scale that was typed for the changed ladder is bounded by that one alone.
void PrepareAmended(Calculation& calculation, const std::function<bool()>& amend,
                    const MessageCallback& report);

/// The second half: plots run 0 and runs the pending worst case.
void FinishCalculation(Calculation& calculation, const MessageCallback& report,
                       const PlotRunCallback& plotRun);

/// The whole calculation, from the boxes and choices to the analysed ladder and its display
/// quantities: ReadInputs, BuildLadder, de-embedding and standard values where asked for, the
/// analysis, and the marks that they leave in the boxes; plotRun of run 0; then, for a worst case,
/// plotRun of each of the randomised runs. Afterwards Elements, Response and Quantities are those
/// of the nominal ladder again.
/// Values changed by hand are discarded and kept in Discarded. A callback only paints.
void Calculate(Calculation& calculation, const MessageCallback& report,
               const PlotRunCallback& plotRun = nullptr);

}  // namespace ladderwise
