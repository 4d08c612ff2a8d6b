// The spin buttons: each handler reads its box within its bounds, steps it, writes it back and
// stores it. Without a direction a handler is the box's reader. No Qt.
#pragma once

#include "pipeline/DesignInputs.h"

namespace ladderwise {

/// None: only read, write back and store.
enum class SpinDirection { None, Up, Down };

/// A press of a spin button. TenTimes: the Ctrl key is held.
struct SpinStep {
    SpinDirection Direction = SpinDirection::None;
    bool TenTimes = false;
};

/// The bounds of a box as texts, as its reader takes them and its tool tip shows them.
struct BoxLimits {
    std::string Minimum;
    std::string Default;
    std::string Maximum;
};

/// The range of a box for people: "0.001 to 100000".
std::string RangeText(const BoxLimits& limits);

/// F0 of a low-pass prototype in MHz: 1 rad/s.
inline constexpr const char* PrototypeF0Text = "159.15e-9";

BoxLimits NumPolesLimits();
BoxLimits RippleLimits();
/// The prototype's own F0 is the minimum while the "Low Pass Prototype" entry is the checked one.
BoxLimits F0Limits(const DesignInputs& inputs);
/// In % of F0, or in MHz computed from the stored F0.
BoxLimits BandWidthLimits(const DesignInputs& inputs, const FilterDesign& design);
BoxLimits EllipticAttenLimits();
BoxLimits ResistanceLimits();
BoxLimits TrapTypeLimits();
BoxLimits PercentChangeLimits();
BoxLimits ThresholdLimits();
BoxLimits IndQLimits();
/// Parasitics: zero switches one off.
BoxLimits IndCLimits();
BoxLimits CapRLimits();
BoxLimits CapLLimits();
BoxLimits WorstCaseSimsLimits();

/// Poles or traps, in steps of 1; for a Norton band-pass held in 3 .. 5 and stepped by 2.
void NumPolesUpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// Ripple in dB, in steps of 0.01.
void RippleUpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// F0 in MHz, in steps of 1.
void F0UpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// Bandwidth in MHz or %, in steps of 0.1.
void BandWidthUpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// Elliptic attenuation in dB, in steps of 1; EllipticStopFreq follows as 1.2 F0.
void EllipticAttenUpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// Trap type 1 .. 4; the box never leaves its range.
void EllipticFormUpDownClick(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);
/// Any of the handlers above.
using SpinHandler = void (*)(DesignInputs&, FilterDesign&, SpinStep, const MessageCallback&);

}  // namespace ladderwise
