// Spin steps and box bounds of the main window.
#include "pipeline/Updownfunctions.h"

#include <algorithm>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr double HzPerMHz = 1e6;
constexpr double MHzPerHz = 1e-6;
constexpr double CtrlFactor = 10.0;  ///< a held Ctrl key multiplies the step
constexpr int NortonFewestPoles = 3;
constexpr int NortonMostPoles = 5;
constexpr int NortonPoleStep = 2;
constexpr double StopToCornerRatio = 1.2;  ///< EllipticStopFreq over F0

/// Reads a box within its limits, steps it and writes the value back. The stepped value is clamped
/// only by the next read, which then shows the box as replaced.
double StepBox(NumberBox& box, const BoxLimits& limits, double step, SpinStep spin,
               const MessageCallback& report) {
    double value = EditBoxToDouble(box, limits.Minimum, limits.Default, limits.Maximum, report);
    if (spin.TenTimes) step *= CtrlFactor;
    if (spin.Direction == SpinDirection::Up) value += step;
    if (spin.Direction == SpinDirection::Down) value -= step;
    box.WriteValue(value);
    return value;
}

int DirectionSign(SpinStep spin) {
    return spin.Direction == SpinDirection::Up ? 1 : spin.Direction == SpinDirection::Down ? -1 : 0;
}

}  // namespace

std::string RangeText(const BoxLimits& limits) {
    constexpr int Digits = 11;  // significant: more than any limit has
    double minimum = 0.0, maximum = 0.0;
    TryParseDouble(limits.Minimum, minimum);
    TryParseDouble(limits.Maximum, maximum);
    return FormatPlain(minimum, Digits) + " to " + FormatPlain(maximum, Digits);
}

BoxLimits NumPolesLimits() {
    return {"1", "3", "10"};
}
BoxLimits RippleLimits() {
    return {"0.001", "0.20", "1.00"};
}

BoxLimits F0Limits(const DesignInputs& inputs) {
    return {inputs.LowPassPrototype ? PrototypeF0Text : ".001", "1.0", "1.0E5"};
}

BoxLimits BandWidthLimits(const DesignInputs& inputs, const FilterDesign& design) {
    if (inputs.BandWidthInPercent) return {"0.5", "10.0", "199.0"};
    const double f0 = design.F0 * MHzPerHz;
    return {FormatFullPrecision(0.005 * f0), FormatFullPrecision(0.1 * f0),
            FormatFullPrecision(1.99 * f0)};
}

BoxLimits EllipticAttenLimits() {
    return {"5.0", "40.0", "100.0"};
}
BoxLimits ResistanceLimits() {
    return {"0.001", "50", "1.0E6"};
}
BoxLimits TrapTypeLimits() {
    return {"1", "1", "4"};
}
BoxLimits PercentChangeLimits() {
    return {"0.01", "5.0", "100.0"};
}
BoxLimits ThresholdLimits() {
    return {"-200.0", "20.0", "200.0"};
}
BoxLimits IndQLimits() {
    return {"0.1", "35", "1.0E9"};
}
BoxLimits IndCLimits() {
    return {"0", ".25", "1.0E6"};
}
BoxLimits CapRLimits() {
    return {"0", "0.25", "1.0E6"};
}
BoxLimits CapLLimits() {
    return {"0", ".5", "1.0E6"};
}
BoxLimits WorstCaseSimsLimits() {
    return {"1", "100", "1000"};
}

void NumPolesUpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                         const MessageCallback& report) {
    const BoxLimits limits = NumPolesLimits();
    int poles =
        EditBoxToInt(inputs.NumPolesBox, limits.Minimum, limits.Default, limits.Maximum, report);
    if (design.PassType == PassType::Norton) {
        poles = std::clamp(poles, NortonFewestPoles, NortonMostPoles);
        poles += NortonPoleStep * DirectionSign(spin);
        poles = std::clamp(poles, NortonFewestPoles, NortonMostPoles);
    } else {
        poles += DirectionSign(spin);
    }
    inputs.NumPolesBox.WriteText(std::to_string(poles), poles);
    design.NumPoles = poles;
}

void RippleUpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                       const MessageCallback& report) {
    design.RippleDb = StepBox(inputs.RippleBox, RippleLimits(), 0.01, spin, report);
}

void F0UpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                   const MessageCallback& report) {
    design.F0 = StepBox(inputs.F0Box, F0Limits(inputs), 1.0, spin, report) * HzPerMHz;
}

void BandWidthUpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                          const MessageCallback& report) {
    const double value =
        StepBox(inputs.BandWidthBox, BandWidthLimits(inputs, design), 0.1, spin, report);
    design.BandWidth = inputs.BandWidthInPercent ? 0.01 * value * design.F0 : value * HzPerMHz;
}

void EllipticAttenUpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                              const MessageCallback& report) {
    design.EllipticAtten =
        StepBox(inputs.EllipticAttenBox, EllipticAttenLimits(), 1.0, spin, report);
    design.EllipticStopFreq = StopToCornerRatio * design.F0;
}

void EllipticFormUpDownClick(DesignInputs& inputs, FilterDesign& design, SpinStep spin,
                             const MessageCallback& report) {
    const BoxLimits limits = TrapTypeLimits();
    const int read =
        EditBoxToInt(inputs.TrapTypeBox, limits.Minimum, limits.Default, limits.Maximum, report);
    design.TrapType = std::clamp(read + DirectionSign(spin), 1, 4);
    inputs.TrapTypeBox.WriteText(std::to_string(design.TrapType), design.TrapType);
}

}  // namespace ladderwise
