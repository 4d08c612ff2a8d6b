// Menu choices and the control states that follow from them.
#include "pipeline/Choices.h"

#include "pipeline/Updownfunctions.h"

namespace ladderwise {

namespace {

bool IsCoupledBandPass(PassType pass) {
    return pass == PassType::DirectCoupled || pass == PassType::Norton;
}

bool HasBandWidth(PassType pass) {
    return pass != PassType::LowPass && pass != PassType::HighPass;
}

}  // namespace

void ChoosePassType(DesignInputs& inputs, FilterDesign& design, PassType pass) {
    inputs.LowPassPrototype = false;
    design.PassType = pass;
    if (IsCoupledBandPass(pass) && IsElliptic(design.ResponseType))
        design.ResponseType = ResponseType::Chebyshev;
}

void ChooseLowPassPrototype(DesignInputs& inputs, FilterDesign& design) {
    inputs.RLBox.Type("1");
    inputs.RSBox.Type("1");
    inputs.F0Box.Type(PrototypeF0Text);
    inputs.LowPassPrototype = true;
    inputs.Parts = PartChoice::IdealParts;
    inputs.StdLCValues = false;
    design.PassType = PassType::LowPass;
}

void ChooseResponse(FilterDesign& design, ResponseType response) {
    design.ResponseType = response;
    if (response == ResponseType::CoefficientsFile) design.CoefFileRead = false;
}

void ChooseBandWidthUnit(DesignInputs& inputs, const FilterDesign& design, bool inPercent) {
    inputs.BandWidthInPercent = inPercent;
    inputs.BandWidthBox.WriteValue(inPercent ? design.BandWidth / design.F0 * 100.0
                                             : design.BandWidth * 1e-6);
}

bool ForbidEllipticCoupling(FilterDesign& design, const MessageCallback& report) {
    if (!IsElliptic(design.ResponseType) || !IsCoupledBandPass(design.PassType)) return false;
    design.ResponseType = ResponseType::Butterworth;
    if (report)
        report("Program Info",
               "Direct Coupled and Norton Transform filters can't use an Elliptic prototype. \n"
               "Using a Butterworth prototype instead. \n"
               "If you want an Elliptic Bandpass, choose Band Pass Canonical. \n"
               "Then choose an Elliptic prototype.");
    return true;
}

ControlStates StatesFor(const DesignInputs& inputs, const FilterDesign& design,
                        bool trapPanelVisible) {
    const bool elliptic = IsElliptic(design.ResponseType);
    const PassType pass = design.PassType;
    ControlStates states;
    states.PulseEnabled = !inputs.WorstCase;
    states.BandWidthEnabled = HasBandWidth(pass);
    states.RippleEnabled = elliptic || design.ResponseType == ResponseType::Chebyshev;
    states.AttenEnabled = elliptic;
    states.CountsTraps = elliptic;
    if (!elliptic)
        states.TrapPanelVisible = false;
    else if (pass == PassType::BandPassCanonical || pass == PassType::Notch)
        states.TrapPanelVisible = true;
    else
        states.TrapPanelVisible = trapPanelVisible;
    states.RefAtPeakEnabled = pass == PassType::BandPassCanonical || IsCoupledBandPass(pass);
    return states;
}

}  // namespace ladderwise
