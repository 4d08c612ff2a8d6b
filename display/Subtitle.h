// The line below the plot's title: what was designed, in words and exact numbers. No Qt.
#pragma once

#include <string>

#include "design/FilterDesign.h"

namespace ladderwise {

/// A frequency with its SI prefix: three significant digits where they say it all, otherwise as
/// many decimals as it takes to be exact to the hertz ("145.825 MHz"), no fewer than
/// `leastDecimals`. `leastDecimals` is raised to the decimals used, so that a second frequency can
/// be given as finely.
std::string ExactFrequency(double f, int& leastDecimals);
std::string ExactFrequency(double f);

/// "145.825 MHz, 4.000 MHz wide, 50 Ω to 50 Ω, ripple 0.1 dB, real parts Q 80, E24". An elliptic
/// design begins with what its number counts: "2 traps, order 5, ".
std::string DesignSubtitle(const FilterDesign& design);

/// The same with what a division of the plot is: ", 2 MHz/div".
std::string PlotSubtitle(const FilterDesign& design);

}  // namespace ladderwise
