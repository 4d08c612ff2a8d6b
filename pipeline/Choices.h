// What a choice brings with it, and which controls it enables: the window-free half of the main
// window's common handler. No Qt.
#pragma once

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// Makes a choice as a menu entry, radio button or check box does:
/// a direct-coupled or Norton band-pass turns an elliptic response silently into Chebyshev; "Low
/// Pass Prototype" means 1 ohm at both ends, F0 = 1 / 2 pi Hz, ideal parts and no standard values;
/// a coefficients file counts as not read until a reader says so; another bandwidth unit rewrites
/// the bandwidth's box from the stored bandwidth, or from what was typed since; a line inverter
/// turns series tanks into shunt tanks, and series tanks turn a line into an inductor. Everything
/// else only stores the code.
void Choose(DesignInputs& inputs, FilterDesign& design, ChoiceId id, int code);

/// Turns an elliptic response of a direct-coupled or Norton band-pass back into Butterworth, with
/// one message. True if it did.
bool ForbidEllipticCoupling(DesignInputs& inputs, const MessageCallback& report);

/// What controls look like for the current choices, beyond what the rows of the inputs say.
struct ControlStates {
    bool PulseEnabled = true;
    bool CountsTraps = false;  ///< the label reads "N Traps" rather than "N Poles"
    bool TrapPanelVisible = false;
    bool RefAtPeakEnabled = false;  ///< "Set Ref at BPF Peak" needs a band-pass
};

/// The states for the present choices. `trapPanelVisible` is what the trap panel is now: an
/// elliptic low-pass or high-pass leaves it as it was.
ControlStates StatesFor(const DesignInputs& inputs, bool trapPanelVisible);

}  // namespace ladderwise
