// Choice, array and colour of each trace kind.
#include "display/TraceKinds.h"

namespace ladderwise {

bool IsChosen(const TraceChoices& choices, TraceKind kind) {
    switch (kind) {
        case TraceKind::Mag1dB:
            return choices.Mag1dB;
        case TraceKind::Mag10dB:
            return choices.Mag10dB;
        case TraceKind::Phase:
            return choices.Phase;
        case TraceKind::GroupDelay:
            return choices.GroupDelay;
        case TraceKind::Pulse:
            return choices.Pulse;
        case TraceKind::Normalised:
            return false;
        case TraceKind::ReturnLoss:
            return choices.ReturnLoss;
    }
    return false;
}

bool IsMagnitude(TraceKind kind) {
    return kind == TraceKind::Mag1dB || kind == TraceKind::Mag10dB;
}

const char* TraceShortName(TraceKind kind) {
    switch (kind) {
        case TraceKind::Mag1dB:
            return "Mag 1 dB";
        case TraceKind::Mag10dB:
            return "Mag";
        case TraceKind::Phase:
            return "Phase";
        case TraceKind::GroupDelay:
            return "GD";
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            return "Pulse";
        case TraceKind::ReturnLoss:
            return "RL";
    }
    return "";
}

std::span<const double> ValuesOf(const PlotTraces& traces, TraceKind kind) {
    switch (kind) {
        case TraceKind::Mag1dB:
        case TraceKind::Mag10dB:
            return traces.MagnitudeDb;
        case TraceKind::Phase:
            return traces.PhaseDeg;
        case TraceKind::GroupDelay:
            return traces.GroupDelay;
        case TraceKind::Pulse:
            return traces.Pulse;
        case TraceKind::Normalised:
            return {};
        case TraceKind::ReturnLoss:
            return traces.ReturnLossDb;
    }
    return {};
}

// Normalised takes the colour of Pulse.
const TraceColours CurrentColours = {{{128, 0, 0},
                                      {255, 0, 0},
                                      {0, 0, 255},
                                      {0, 96, 0},
                                      {255, 128, 0},
                                      {255, 128, 0},
                                      {240, 0, 240}}};
const TraceColours ReferenceColours = {{{192, 0, 0},
                                        {205, 38, 38},
                                        {0, 0, 128},
                                        {0, 173, 0},
                                        {255, 193, 37},
                                        {255, 193, 37},
                                        {240, 0, 176}}};

PlotColour TraceColour(TraceKind kind) {
    return CurrentColours[static_cast<std::size_t>(kind)];
}

PlotColour BandColour(TraceKind kind) {
    const PlotColour own = TraceColour(kind);
    const auto dark = [](std::uint8_t part) { return static_cast<std::uint8_t>(part / 5); };
    return {dark(own.Red), dark(own.Green), dark(own.Blue)};
}

}  // namespace ladderwise
