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

PlotColour TraceColour(TraceKind kind, bool reference) {
    switch (kind) {
        case TraceKind::Mag1dB:
            return reference ? PlotColour{192, 0, 0} : PlotColour{128, 0, 0};
        case TraceKind::Mag10dB:
            return reference ? PlotColour{205, 38, 38} : PlotColour{255, 0, 0};
        case TraceKind::Phase:
            return reference ? PlotColour{0, 0, 128} : PlotColour{0, 0, 255};
        case TraceKind::GroupDelay:
            return reference ? PlotColour{0, 173, 0} : PlotColour{0, 96, 0};
        case TraceKind::Pulse:
        case TraceKind::Normalised:
            return reference ? PlotColour{255, 193, 37} : PlotColour{255, 128, 0};
        case TraceKind::ReturnLoss:
            return reference ? PlotColour{240, 0, 176} : PlotColour{240, 0, 240};
    }
    return Black;
}

}  // namespace ladderwise
