// Measured networks as traces beside a design: ports and cables put right, seen between the
// design's terminations, on their own frequencies. No Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "exchange/TouchstoneReader.h"

namespace ladderwise {

/// How a network was connected when it was measured.
struct MeasuredConnection {
    bool PortsSwapped = false;  ///< port 1 of the file is the load's
    double SourceDelay = 0.0;   ///< electrical length of a cable at the design's source, s, one way
    double LoadDelay = 0.0;     ///< and at its load
};

/// A measured network between the terminations of a design. An empty list is not measured.
struct MeasuredTraces {
    std::vector<double> Hz{};           ///< ascending
    std::vector<Complex> Transfer{};    ///< as the design's H
    std::vector<Complex> Reflection{};  ///< at the design's source
    std::vector<std::string> Notes{};   ///< what was assumed or is not measured, a sentence each
};

/// Swaps the ports, takes the cables away (they have the reference resistance of their port) and
/// renormalises to the design's terminations. Of a one-path measurement S22 is the design's own,
/// and S12 is S21, as of every passive ladder, which is noted; turned round it has no reflection.
/// One port is taken as terminated by the load of the design.
MeasuredTraces TracesBetweenTerminations(const NetworkData& network,
                                         const MeasuredConnection& connection,
                                         const FilterDesign& design);

/// The value of a trace at f (Hz), straight between its points in magnitude and in unwrapped phase;
/// nothing outside their range.
std::optional<Complex> InterpolatedAt(const std::vector<double>& freqs,
                                      const std::vector<Complex>& values, double f);

}  // namespace ladderwise
