// What each menu entry and radio button sets, and which controls a choice enables: the window-free
// half of the main window's common handler. No Qt.
#pragma once

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// A pass-type entry. Direct-coupled and Norton band-passes turn an elliptic response silently into
/// Chebyshev. Leaves the "Low Pass Prototype" entry.
void ChoosePassType(DesignInputs& inputs, FilterDesign& design, PassType pass);

/// "Low Pass Prototype": 1 ohm at both ends, F0 = 1 / 2 pi Hz, ideal parts, no standard values.
void ChooseLowPassPrototype(DesignInputs& inputs, FilterDesign& design);

/// A response entry. A coefficients file counts as not read until a reader says so.
void ChooseResponse(FilterDesign& design, ResponseType response);

/// The "BW MHz" and "BW %" radio buttons: the box is rewritten in the new unit from the stored
/// bandwidth.
void ChooseBandWidthUnit(DesignInputs& inputs, const FilterDesign& design, bool inPercent);

/// Turns an elliptic response of a direct-coupled or Norton band-pass back into Butterworth, with
/// one message. True if it did.
bool ForbidEllipticCoupling(FilterDesign& design, const MessageCallback& report);

/// Which controls are enabled or shown for the current choices.
struct ControlStates {
    bool PulseEnabled = true;
    bool BandWidthEnabled = false;
    bool RippleEnabled = false;
    bool AttenEnabled = false;
    bool CountsTraps = false;  ///< the label reads "N Traps" rather than "N Poles"
    bool TrapPanelVisible = false;
    bool RefAtPeakEnabled = false;  ///< "Set Ref at BPF Peak" needs a band-pass
};

/// The states for the present choices. `trapPanelVisible` is what the trap panel is now: an
/// elliptic low-pass or high-pass leaves it as it was.
ControlStates StatesFor(const DesignInputs& inputs, const FilterDesign& design,
                        bool trapPanelVisible);

}  // namespace ladderwise
