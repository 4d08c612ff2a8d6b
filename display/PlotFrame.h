// The frame of the plot as positions, texts and colours: grid, border, frequency labels, scale
// marks and title. What measures a text comes from the caller, so no Qt is needed.
#pragma once

#include <string>
#include <vector>

#include "design/FilterDesign.h"
#include "display/PlotLayout.h"
#include "schematic/Shapes.h"

namespace ladderwise {

struct PlotFrame {
    std::vector<PlotLine> Lines;  ///< in drawing order: horizontal, then vertical
    PlotRect Border;              ///< its right and bottom lines lie at Left + Width, Top + Height
    std::vector<PlotText> FrequencyLabels;  ///< start, middle, stop
    std::vector<PlotLine> TimeTicks;        ///< with the pulse trace: at round times from zero
    std::vector<PlotText> TimeLabels;       ///< one for each tick, below the frequency labels
    std::vector<PlotText>
        GroupDelayMarks;                   ///< top to bottom: 11, fewer in a very low plot, or none
    std::vector<PlotText> MagnitudeMarks;  ///< top to bottom: 11, fewer in a very low plot, or none
    std::vector<PlotText> PhaseMarks;      ///< top to bottom: 11, fewer in a very low plot, or none
    std::vector<PlotText> MoreFrequencyLabels;  ///< at grid lines, where they fit between those
    std::vector<PlotText> AxisUnits;            ///< "dB" and "deg" above their columns of marks
    PlotText Title;
    PlotText Subtitle;  ///< empty where the margin has room for one line only
};

/// A list "a, b, c" without as many of its last members as it takes to fit into `width` pixels.
std::string FittingList(std::string list, int width, const TextMetrics& metrics);

/// Builds the frame of a design for the chosen traces.
PlotFrame BuildPlotFrame(const FilterDesign& design, const TraceChoices& choices,
                         const PlotLayout& layout, const TextMetrics& metrics);

}  // namespace ladderwise
