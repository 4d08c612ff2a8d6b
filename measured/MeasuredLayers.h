// What a plot draws of a measured network: its traces between the terminations of a design as
// arrays over its own frequencies. No Qt.
#pragma once

#include <vector>

#include "design/MeasuredFile.h"
#include "display/TraceKinds.h"
#include "measured/MeasuredTraces.h"

namespace ladderwise {

/// Arrays of one length; those of what is not measured are empty.
///
/// Between two points of the file stand others, so that a line from one to the next shows what is
/// said of the places between them: magnitude, unwrapped phase and delay straight over the
/// frequency. They are so close that a line misses that by less than a pixel.
struct MeasuredArrays {
    std::vector<double> Hz{};            ///< ascending
    std::vector<double> MagnitudeDb{};   ///< dB
    std::vector<double> PhaseDeg{};      ///< degrees, -180 .. 180, or BlankMarker
    std::vector<double> GroupDelay{};    ///< s, or BlankMarker
    std::vector<double> ReturnLossDb{};  ///< dB
};

/// The delay at each point of the file, s: the slope of the unwrapped phase from the point before
/// it to the one behind it, -(dphi) / (2 pi df), at the ends of the file to the only neighbour.
/// BlankMarker where the level is below `threshold` (dB), and at a point that is alone.
std::vector<double> DelaysOf(const MeasuredTraces& traces, double threshold);

/// Phase and delay are blank where the level is below `threshold` (dB), as those of the design; the
/// delay is that of DelaysOf.
MeasuredArrays ArraysOf(const MeasuredTraces& traces, double threshold);

/// The layer of arrays that outlive it.
PlotLayer LayerOf(const MeasuredArrays& arrays, const MeasuredFile& file, const std::string& name,
                  const std::string& shortName);

/// What the files are called on the plot: their names without folder and ending, cut to a few
/// letters, and with a number where two would be the same.
std::vector<std::string> ShortNamesOf(const MeasuredFiles& files);

}  // namespace ladderwise
