// Between which values the runs of a worst case lie at each frequency: the lowest and the highest,
// and those that 5 and 95 % of the runs stay below. Plain structs, no Qt.
#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "display/TraceKinds.h"

namespace ladderwise {

/// The four lines of a band, each of which lies above the one before it.
enum class BandLine { Lowest, Low, High, Highest };
inline constexpr std::size_t NumBandLines = 4;

inline constexpr double LowBandShare = 0.05;   ///< of the runs that lie below BandLine::Low
inline constexpr double HighBandShare = 0.95;  ///< and below BandLine::High

/// One value of each line for each sweep point; not a number where fewer than half of the runs
/// have a value. A phase counts from that of the design in hand: a line may leave -180 .. 180
/// degrees at the other end.
class TraceBands {
public:
    /// A line as the traces of a layer; empty for traces that were not collected.
    PlotTraces Line(BandLine line) const;

    /// Runs that the bands were made of.
    int Runs() const { return runs; }

private:
    friend class BandCollector;

    /// Of one quantity.
    using Lines = std::array<std::vector<double>, NumBandLines>;

    static constexpr std::size_t quantities = 5;  ///< the members of PlotTraces
    std::array<Lines, quantities> lines;
    int runs = 0;
};

/// Takes runs as they are drawn.
class BandCollector {
public:
    /// Of the traces that are chosen from here on; nothing has been taken.
    void Begin(const TraceChoices& choices);
    void Take(const PlotTraces& run);

    /// The bands of what was taken about the design in hand, `nominal`. A percentile is straight
    /// between two runs in order: the one at share p of n runs is number p (n - 1), from 0.
    TraceBands Finish(const PlotTraces& nominal) const;

private:
    TraceChoices choices;
    /// By quantity, run after run. Seven digits are more than a plot or a read-out shows.
    std::array<std::vector<float>, TraceBands::quantities> taken;
    int runs = 0;
};

/// "5–95 %: -19.40 … -18.10 dB" and "all runs: -20.31 … -17.90 dB" at a place of the sweep that
/// `index` counts in points; empty where there is no band.
struct BandTexts {
    std::string Most;
    std::string All;
};
BandTexts BandTextsAt(const TraceBands& bands, TraceKind kind, double index);

/// The names of the two ranges, as legend and tables have them.
inline constexpr const char* MostRunsName = "5\u201395 %";
inline constexpr const char* AllRunsName = "all runs";

}  // namespace ladderwise
