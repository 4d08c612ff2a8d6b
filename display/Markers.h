// Markers and the read-out reference on the plot: what the commands of the pop-up menu store, and
// the lines, dots and labels that show it. Plain structs, no Qt.
#pragma once

#include <limits>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "design/MarkerState.h"
#include "display/PlotAxis.h"
#include "display/PlotCover.h"
#include "display/PlotFrame.h"
#include "display/TraceKinds.h"

namespace ladderwise {

/// The depth of the read-outs "6 dB Freq" and "6 dB BW" below the peak, dB.
inline constexpr double ReadOutDepthDb = 6.0;

/// A turn of a phase, degrees.
inline constexpr double WholeTurn = 360.0;

inline constexpr BandRange AllFrequencies{0.0, std::numeric_limits<double>::infinity()};

/// What markers refer to: the sweep that the plot shows and how it shows it.
struct MarkedSweep {
    PassType Pass = PassType::LowPass;
    std::span<const double> Freqs;  ///< Hz, ascending, one for each point of the traces
    TraceChoices Choices;
    PlotLayout Layout;
    PlotScales Scales;
    double PulseTimeStep = 0.0;       ///< between two samples of the pulse, s
    PlotAxis Axis{};                  ///< asked only for layers with a sweep of their own
    BandRange Band = AllFrequencies;  ///< where the design's pass band is looked for
};

/// Sweep point under x: the integer part of its share of the plot's width times `count`, kept
/// within 0 .. count - 1.
int SweepIndexAt(int x, int count, const PlotLayout& layout);

/// The kind whose scale levels are read on: the 1 dB scale where it is the only magnitude shown,
/// the 10 dB scale otherwise.
TraceKind LevelScaleKind(const TraceChoices& choices);

/// The level at y on that scale, dB.
double LevelAtY(int y, const MarkedSweep& sweep);

/// Index of the largest level over the inner points (neither the first nor the last); 0 if there
/// is none.
int PeakIndex(std::span<const double> levels);

/// The commands of the plot's menu.
enum class MarkerCommand {
    SetRefToF0,
    SetRefAtPeak,
    SetRefAtCursor,
    ClearReference,
    AddFreqMarker,
    AddDbMarker,
    ClearMarkers,
};

/// Carries out a command. `levels` (dB) is the nominal magnitude.
void ApplyMarkerCommand(MarkerCommand command, MarkerState& markers, const MarkedSweep& sweep,
                        double F0, std::span<const double> levels);

void SetRefToF0(MarkerState& markers, double F0);
void SetRefAtPeak(MarkerState& markers);
/// Takes frequency and level at ClickX, ClickY.
void SetRefAtCursor(MarkerState& markers, const MarkedSweep& sweep);
/// Marks the sweep point at ClickX. Of a full list the last marker is replaced.
void AddFreqMarker(MarkerState& markers, const MarkedSweep& sweep);
/// Marks the level at ClickY, relative to the peak of `levels` (dB).
void AddDbMarker(MarkerState& markers, const MarkedSweep& sweep, std::span<const double> levels);
void ClearMarkers(MarkerState& markers);

/// The read-out reference in force; the peak is looked for in `levels`. Empty without one.
struct ReadOutReference {
    double Frequency = 0.0;  ///< Hz
    double LevelDb = 0.0;
};
std::optional<ReadOutReference> ReferenceOf(const MarkerState& markers,
                                            std::span<const double> freqs,
                                            std::span<const double> levels);

/// A place between two sweep points: `Index` counts points from 0 with a fraction.
struct SweepPlace {
    double Index = 0.0;
    double Frequency = 0.0;  ///< Hz
};

/// Where a frequency lies among ascending ones; empty outside of them.
std::optional<SweepPlace> PlaceOf(double f, std::span<const double> freqs);

/// A value of a trace at a place, interpolated linearly between its neighbours; a phase the shorter
/// way round. Not a number where a neighbour is missing or blank.
double ValueAt(std::span<const double> values, TraceKind kind, double index);

/// The value of a layer's trace at a place of its own sweep: ValueAt, but of what is measured a
/// level straight in its magnitude, as its phase is straight in degrees.
double LayerValueAt(const PlotLayer& layer, TraceKind kind, double index);

/// Where levels cross `target`, ascending, interpolated linearly between neighbouring points.
std::vector<SweepPlace> LevelCrossings(std::span<const double> levels,
                                       std::span<const double> freqs, double target);

/// The crossings ReadOutDepthDb below the peak: of a low-pass the first one above the peak, of a
/// high-pass the first below it, of a band-pass those around it, of a notch those around its
/// minimum. The peak is the highest in `band`; of a band-pass whose band the sweep does not show,
/// the highest maximum that it does.
struct DepthReadOut {
    /// Hz; of the band, if another one in the sweep is higher or the design's own is not in it.
    std::optional<double> NamedBand;
    std::optional<SweepPlace> Lower;
    std::optional<SweepPlace> Upper;
};
DepthReadOut FindDepthReadOut(std::span<const double> levels, std::span<const double> freqs,
                              PassType pass, const BandRange& band = AllFrequencies);

/// A frequency of the sweep with as many digits as its steps are fine, at least four.
std::string SweepFrequencyText(double f, std::span<const double> freqs);

/// A value of a trace as people read it: "-3.01 dB", "45.0°", "12.3 ns", "0.950".
std::string TraceValueText(TraceKind kind, double value);

/// A text with "+" before it where its value is positive.
std::string SignedText(double value, std::string text);

/// A difference of two values of a trace, "+0.09 dB", of phases the shorter way round.
std::string DifferenceText(TraceKind kind, double difference);

/// A dot's shape tells its trace, whatever the colours look like: the magnitudes squares, the
/// return loss circles, the phase triangles, the group delay diamonds.
struct MarkerDot {
    int X = 0;
    int Y = 0;
    PlotColour Colour;
    TraceKind Kind = TraceKind::Mag10dB;
};

/// Lines are dotted ones of markers; leaders join dots with labels that stand further off.
struct MarkerDrawing {
    std::vector<PlotLine> Lines;
    std::vector<MarkerDot> Dots;
    std::vector<PlotLine> Leaders;
    std::vector<PlotText> Labels;
};

/// Name of a marker on the plot and in the table: "M1" on a frequency, "L1" on a level; k counts
/// from 1.
std::string FrequencyMarkerName(int k);
std::string LevelMarkerName(int k);

/// Appends what stands once on the plot: the frequency markers' lines and frequencies, and the
/// read-out reference. `levels` (dB) is the nominal magnitude. Labels keep off what `cover` holds.
void AppendMarkerLines(const MarkerState& markers, const MarkedSweep& sweep,
                       std::span<const double> levels, const TextMetrics& metrics, PlotCover& cover,
                       MarkerDrawing& drawing);

/// Appends the annotations of each chosen trace of a layer, in its colour: values at the frequency
/// markers; on the magnitudes the crossings of the level markers, and once the 6 dB read-outs. All
/// are found at the layer's own frequencies; those that lie off the plot are left out. Without
/// labels only lines and dots are appended: the values of what is drawn beside the design stand in
/// its table.
void AppendTraceMarkers(const MarkerState& markers, const MarkedSweep& sweep,
                        const PlotLayer& layer, bool labelled, const TextMetrics& metrics,
                        PlotCover& cover, MarkerDrawing& drawing);

/// Appends the name of a trace at its end, kept off what `cover` holds.
void AppendTraceName(const std::string& name, const MarkerDot& end, const TextMetrics& metrics,
                     PlotCover& cover, MarkerDrawing& drawing);

}  // namespace ladderwise
