// Which traces the plot shows. Ground floor, no Qt.
#pragma once

namespace ladderwise {

/// One switch per trace; the initial ones are those of a fresh program.
struct TraceChoices {
    bool Mag1dB = false;
    bool Mag10dB = true;
    bool Phase = false;
    bool GroupDelay = false;
    bool Pulse = false;
    bool ReturnLoss = false;
};

}  // namespace ladderwise
