// What the markers on the plot read, as rows of a table: those of the design in hand, and of what
// is drawn beside it. Plain structs, no Qt.
#pragma once

#include <string>
#include <vector>

#include "display/Markers.h"
#include "display/PlotContent.h"

namespace ladderwise {

/// One trace at one marker.
struct MarkerReading {
    std::string Name;         ///< "M1 200.0 MHz, Return loss", "L2 -3.0 dB"
    std::string OfDesign;     ///< "-3.01 dB"; of a level the frequencies of all crossings
    std::string OfReference;  ///< empty without one
};

/// For each frequency marker a row for each chosen trace but the pulse, then one for each level
/// marker on the magnitude; after each a row for each measurement, "M1 200.0 MHz, Mag, board1",
/// with its value and how far that is from the design's, "-3.10 dB (-0.09 dB off)". Levels count
/// from each layer's own peak, and every value is found at the layer's own frequencies. "none"
/// where the layer has no value there. In a worst case two rows more tell where its runs lie, "M1
/// 200.0 MHz, Mag, 5–95 %" with "-3.40 … -2.71 dB".
std::vector<MarkerReading> BuildMarkerTable(const PlotContent& content);

}  // namespace ladderwise
