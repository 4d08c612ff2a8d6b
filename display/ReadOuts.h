// What the cursor reads off the plot: frequency, level and each trace's value at a sweep point.
// Looked up in the quantities of each layer; nothing is calculated anew. Plain structs, no Qt.
#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "display/Markers.h"
#include "display/TraceBands.h"

namespace ladderwise {

/// A short text in a colour.
struct ReadOutText {
    std::string Text;
    PlotColour Colour;
};

/// One trace at the cursor.
struct TraceReadOut {
    TraceKind Kind = TraceKind::Mag10dB;
    int Layer = 0;       ///< 0: the design in hand
    double Value = 0.0;  ///< in the trace's unit
    int Y = 0;           ///< where the trace stands at the crosshair, pixels
    ReadOutText Text;
};

/// The read-outs at one place of the plot.
struct CursorReadOuts {
    int Index = 0;                         ///< sweep point
    int X = 0;                             ///< of the crosshair: where that point is drawn
    int Y = 0;                             ///< of the crosshair: the cursor's own
    double Frequency = 0.0;                ///< Hz
    double LevelDb = 0.0;                  ///< at Y, on the scale of the magnitudes
    std::optional<double> DeltaFrequency;  ///< less the reference's, Hz
    std::optional<double> DeltaDb;         ///< level less the reference's, dB
    std::vector<ReadOutText> Cursor;       ///< frequency, level and differences, ready to show
    std::vector<TraceReadOut> Traces;      ///< those with a value here, in drawing order
};

/// VSWR of a reflection in dB: (1 + rho) / (1 - rho), rho = 10^(dB / 20); infinite for rho >= 1.
double VswrOf(double reflectionDb);

/// `bands`, if there are any, tell where the runs of a worst case lie beside the design in hand.
/// Reads the plot at sweep point `index` (kept within the sweep) and height y. `layers` are
/// those of the plot, the design in hand first; one with a sweep of its own is read at the cursor's
/// frequency (the pulse at its time), between its points, and not at all outside of them.
/// `readOutReference` is that of ReferenceOf.
CursorReadOuts ReadCursor(int index, int y, const MarkedSweep& sweep,
                          std::span<const PlotLayer> layers,
                          const std::optional<ReadOutReference>& readOutReference,
                          const TraceBands* bands = nullptr);

/// Texts laid side by side in rows of `width` pixels, `gap` between two texts, in the middle of
/// `height` pixels; X and Y count from 0. Where the rows are too many for the height, all texts are
/// made smaller, down to half the font. A text that is wider than a row has one of its own.
std::vector<PlotText> FlowTexts(const std::vector<ReadOutText>& texts, int width, int height,
                                int gap, const TextMetrics& metrics);

}  // namespace ladderwise
