// Choices and the control states that follow from them.
#include "pipeline/Choices.h"

#include <memory>

#include "numbers/Formatfunctions.h"
#include "numbers/UtilityFunctions.h"

namespace ladderwise {

namespace {

constexpr double HzPerMHz = 1e6;

bool IsCoupledBandPass(PassType pass) {
    return pass == PassType::DirectCoupled || pass == PassType::Norton;
}

void ChoosePrototype(DesignInputs& inputs) {
    inputs.Box(InputId::RLoad).Type("1");
    inputs.Box(InputId::RSource).Type("1");
    inputs.Box(InputId::F0).Type(PrototypeF0Text);
    inputs.Choice(ChoiceId::Parts) = static_cast<int>(PartChoice::IdealParts);
    inputs.Choice(ChoiceId::StdLCValues) = 0;
}

/// From the stored bandwidth, once what was typed is read. What does not fit its limits is only
/// converted, so that the next calculation replaces it and says so; what is no number stays.
void RewriteBandWidth(DesignInputs& inputs, const FilterDesign& design, int before) {
    const int after = inputs.Choice(ChoiceId::BandWidthUnit);
    const auto perUnit = [](int unit, double f0) {
        return unit == BandWidthInPercent ? f0 / Percent : HzPerMHz;
    };
    NumberBox& box = inputs.Box(InputId::BandWidth);
    if (box.HoldsExactValue() && inputs.Box(InputId::F0).HoldsExactValue())
        return box.WriteValue(design.BandWidth / perUnit(after, design.F0));
    DesignInputs read = inputs;
    read.Choice(ChoiceId::BandWidthUnit) = before;
    const auto scratch = std::make_unique<FilterDesign>(design);
    StepInput(InputId::F0, read, *scratch, {}, {});
    StepInput(InputId::BandWidth, read, *scratch, {}, {});
    const auto& unfit = read.Box(InputId::BandWidth).ReplacedText;
    double typed = 0.0;
    if (!unfit)
        box.WriteValue(scratch->BandWidth / perUnit(after, scratch->F0));
    else if (TryParseDouble(*unfit, typed))
        box.Type(FormatPlain(typed * perUnit(before, scratch->F0) / perUnit(after, scratch->F0),
                             BoxDigits));
}

/// A line inverter needs shunt tanks: of the two choices the one made last stays.
void KeepLinesBesideShuntTanks(DesignInputs& inputs, ChoiceId last) {
    int& tank = inputs.Choice(ChoiceId::TankType);
    int& inverter = inputs.Choice(ChoiceId::InverterType);
    if (tank != static_cast<int>(TankType::SeriesLC) ||
        inverter != static_cast<int>(InverterType::SeriesLine))
        return;
    if (last == ChoiceId::InverterType) tank = static_cast<int>(TankType::ShuntLC);
    if (last == ChoiceId::TankType) inverter = static_cast<int>(InverterType::SeriesInductor);
}

}  // namespace

void Choose(DesignInputs& inputs, FilterDesign& design, ChoiceId id, int code) {
    const int before = inputs.Choice(id);
    inputs.Choice(id) = code;
    if (id == ChoiceId::Pass && inputs.IsPrototype()) ChoosePrototype(inputs);
    if (id == ChoiceId::Pass && IsCoupledBandPass(inputs.Pass()) && IsElliptic(inputs.Response()))
        inputs.Choice(ChoiceId::Response) = static_cast<int>(ResponseType::Chebyshev);
    if (id == ChoiceId::Response && inputs.Response() == ResponseType::CoefficientsFile)
        design.CoefFileRead = false;
    KeepLinesBesideShuntTanks(inputs, id);
    if (id == ChoiceId::BandWidthUnit && code != before) RewriteBandWidth(inputs, design, before);
}

bool ForbidEllipticCoupling(DesignInputs& inputs, const MessageCallback& report) {
    if (!IsElliptic(inputs.Response()) || !IsCoupledBandPass(inputs.Pass())) return false;
    inputs.Choice(ChoiceId::Response) = static_cast<int>(ResponseType::Butterworth);
    if (report)
        report("Program Info",
               "Direct Coupled and Norton Transform filters can't use an Elliptic prototype. \n"
               "Using a Butterworth prototype instead. \n"
               "If you want an Elliptic Bandpass, choose Band Pass Canonical. \n"
               "Then choose an Elliptic prototype.");
    return true;
}

ControlStates StatesFor(const DesignInputs& inputs, bool trapPanelVisible) {
    const bool elliptic = IsElliptic(inputs.Response());
    const PassType pass = inputs.Pass();
    ControlStates states;
    states.PulseEnabled = !inputs.IsOn(ChoiceId::WorstCase);
    states.CountsTraps = elliptic;
    states.TrapPanelVisible = elliptic && (HasTrapPanel(pass) || trapPanelVisible);
    states.RefAtPeakEnabled = pass == PassType::BandPassCanonical || IsCoupledBandPass(pass);
    return states;
}

}  // namespace ladderwise
