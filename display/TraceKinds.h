// The trace kinds of the response plot: their numbers, arrays, colours and drawing order.
// Shared by the frame, the mapping and the painting; plain structs, no Qt.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>

#include "analysis/Results.h"
#include "design/FilterDesign.h"
#include "design/TraceChoices.h"
#include "schematic/Shapes.h"

namespace ladderwise {

/// Trace kinds by number. Normalised (5) is drawn like Pulse and has no check box of its own.
enum class TraceKind : int {
    Mag1dB = 0,
    Mag10dB = 1,
    Phase = 2,
    GroupDelay = 3,
    Pulse = 4,
    Normalised = 5,
    ReturnLoss = 6,
};
inline constexpr int NumTraceKinds = 7;

/// The arrays of one design, one entry per sweep point; an empty array draws nothing.
struct PlotTraces {
    std::span<const double> MagnitudeDb;   ///< dB, for both magnitude kinds
    std::span<const double> PhaseDeg;      ///< degrees, -180 .. 180, or BlankMarker
    std::span<const double> GroupDelay;    ///< seconds, or BlankMarker
    std::span<const double> Pulse;         ///< 0 .. 1
    std::span<const double> ReturnLossDb;  ///< dB
};

/// Kinds in the order in which they are drawn: later ones lie on top.
inline constexpr std::array<TraceKind, 6> TraceDrawOrder = {
    TraceKind::Mag10dB,    TraceKind::Mag1dB,     TraceKind::Phase,
    TraceKind::GroupDelay, TraceKind::ReturnLoss, TraceKind::Pulse};

/// True if the trace of this kind is on; never for Normalised.
bool IsChosen(const TraceChoices& choices, TraceKind kind);

/// True for the two traces that show one quantity, the magnitude.
bool IsMagnitude(TraceKind kind);

/// A name for the end of a trace, for markers and read-outs: "Mag", "Mag 1 dB", "RL", ...
const char* TraceShortName(TraceKind kind);

/// The array that a kind draws; empty for Normalised.
std::span<const double> ValuesOf(const PlotTraces& traces, TraceKind kind);

/// One colour for each trace kind, by its number.
using TraceColours = std::array<PlotColour, NumTraceKinds>;

/// Colours of the design in hand.
extern const TraceColours CurrentColours;
/// Colours of the reference design: each near the current design's, darker or lighter.
extern const TraceColours ReferenceColours;

/// Colour of a trace of the design in hand.
PlotColour TraceColour(TraceKind kind);

/// Colour of the band that the runs of a worst case lie in: near black, so as to stand out from
/// the runs themselves.
PlotColour BandColour(TraceKind kind);

/// Where the points of a layer lie, if not at those of the sweep that the plot shows.
struct LayerSweep {
    std::span<const double> Freqs{};  ///< Hz, ascending; empty: the plot's own
    double PulseTimeStep = 0.0;       ///< s; 0: the plot's own
    std::optional<PassType> Pass{};   ///< of the layer's design; empty: the plot's own
    std::optional<BandRange> Band{};  ///< where its pass band is looked for; empty: as Pass
};

/// What a layer is, and thereby how it looks: the reference dashed, a measurement thin.
enum class LayerRole { Design, Reference, Measurement };

/// What is drawn of one design: the one in hand, the reference, a measurement.
struct PlotLayer {
    PlotTraces Values;
    TraceColours Colours = CurrentColours;
    LayerRole Role = LayerRole::Design;
    std::string Name{};       ///< in the legend
    std::string ShortName{};  ///< before the names of its traces; empty for the design in hand
    LayerSweep Sweep{};

    bool Dashed() const { return Role == LayerRole::Reference; }
};

}  // namespace ladderwise
