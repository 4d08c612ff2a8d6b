// The trace kinds of the response plot: their numbers, arrays, colours and drawing order.
// Shared by the frame, the mapping and the painting; plain structs, no Qt.
#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "design/TraceChoices.h"

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

/// The arrays of one design, one entry per sweep point; an empty array draws nothing.
struct PlotTraces {
    std::span<const double> MagnitudeDb;   ///< dB, for both magnitude kinds
    std::span<const double> PhaseDeg;      ///< degrees, -180 .. 180, or BlankMarker
    std::span<const double> GroupDelay;    ///< seconds, or BlankMarker
    std::span<const double> Pulse;         ///< 0 .. 1
    std::span<const double> ReturnLossDb;  ///< dB
};

struct PlotColour {
    std::uint8_t Red = 0;
    std::uint8_t Green = 0;
    std::uint8_t Blue = 0;

    bool operator==(const PlotColour&) const = default;
};

inline constexpr PlotColour BackgroundColour{234, 234, 234};
inline constexpr PlotColour GridColour{128, 128, 128};
inline constexpr PlotColour Black{0, 0, 0};

/// Kinds in the order in which they are drawn: later ones lie on top.
inline constexpr std::array<TraceKind, 6> TraceDrawOrder = {
    TraceKind::Mag10dB,    TraceKind::Mag1dB,     TraceKind::Phase,
    TraceKind::GroupDelay, TraceKind::ReturnLoss, TraceKind::Pulse};

/// True if the trace of this kind is on; never for Normalised.
bool IsChosen(const TraceChoices& choices, TraceKind kind);

/// The array that a kind draws; empty for Normalised.
std::span<const double> ValuesOf(const PlotTraces& traces, TraceKind kind);

/// Colour of a trace: of the current design or, darker or lighter, of the reference design.
/// Normalised takes the colours of Pulse.
PlotColour TraceColour(TraceKind kind, bool reference);

}  // namespace ladderwise
