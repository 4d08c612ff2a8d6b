// The calculation from the design inputs to the analysed ladder: window-free, so that the main
// window and the console program run the very same steps. No Qt.
#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "analysis/SweepTables.h"
#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// Called after every analysis: 0 for the nominal ladder, 1 .. N for the worst-case runs.
using PlotRunCallback = std::function<void(int run)>;

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

/// A design with all that its calculation needs and leaves behind.
struct Calculation {
    DesignInputs Inputs{};
    FilterDesign Design{};
    SweepTables Tables{};
    WorstCaseResult WorstCase{};
    std::mt19937 SeedSource{};                 ///< gives each worst-case calculation its seed
    std::optional<std::uint32_t> FixedSeed{};  ///< set: every worst-case calculation uses this one
};

/// Seeds the generator, once at program start.
void SeedFromClock(Calculation& calculation);

/// Clears all 32 slots: no element, all values unused.
void ClearElements(ElementList& elements);

/// Sweep limits by SweepType, and the 1024 frequencies. The grid stops one step short of SweepF2;
/// a linear sweep starts at no less than 1 Hz.
void BuildSweepGrid(FilterDesign& design);

/// From the design inputs in `design` to the unanalysed ladder in Elements: clearing, sweep grid,
/// prototype, scaling. Where a stage is not built, the ladder stays empty and Flags.Missing tells.
void BuildLadder(FilterDesign& design, const MessageCallback& report);

/// De-embedding and standard values where asked for, analysis, plotRun(0); then, for a worst case,
/// plotRun(run) after each of the randomised runs. Afterwards Elements and Response hold the
/// nominal ladder again, whose read-outs a user expects. A null callback plots nothing.
void RunAnalysis(Calculation& calculation, const MessageCallback& report,
                 const PlotRunCallback& plotRun);

/// Analyses the ladder in Elements as it stands, edited by hand, and plots run 0.
void AnalyseAndPlot(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun);

/// Analyses and plots the ladder as it stands once more, with the very same worst-case runs as the
/// last time: for a picture that has to be painted anew.
void RepeatAnalysis(Calculation& calculation, const MessageCallback& report,
                    const PlotRunCallback& plotRun);

/// BuildLadder and RunAnalysis, and the marks that they leave in the boxes: everything between
/// ReadInputs and the picture.
void Calculate(Calculation& calculation, const MessageCallback& report,
               const PlotRunCallback& plotRun);

}  // namespace ladderwise
