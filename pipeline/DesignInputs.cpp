// From boxes and choices to the design state: the first step of every calculation.
#include "pipeline/DesignInputs.h"

#include "analysis/PartValues.h"
#include "pipeline/TankValues.h"

namespace ladderwise {

namespace {

constexpr double EllipticALoadRatio = 2.0;  ///< RLoad / RSource
constexpr double EllipticBLoadRatio = 0.5;

bool ForcesLoad(ResponseType response) {
    return response != ResponseType::Butterworth && response != ResponseType::Chebyshev;
}

void ForceLoad(DesignInputs& inputs, FilterDesign& design) {
    NumberBox& box = inputs.Box(InputId::RLoad);
    const ResponseType response = design.ResponseType;
    box.WriteValue(design.RLoad);
    if (!ForcesLoad(response)) return;
    design.RLoad = LoadFor(response, design.RSource, design.RLoad);
    box.MoveTo(design.RLoad, response == ResponseType::EllipticA   ? LoadReason::Twice
                             : response == ResponseType::EllipticB ? LoadReason::Half
                                                                   : LoadReason::Equal);
}

}  // namespace

double LoadFor(ResponseType response, double source, double load) {
    switch (response) {
        case ResponseType::Butterworth:
        case ResponseType::Chebyshev:
            return load;
        case ResponseType::BesselFreq:
        case ResponseType::BesselDelay:
        case ResponseType::Papoulis:
        case ResponseType::Gauss:
        case ResponseType::LinearChebyshev:
        case ResponseType::EllipticC:
        case ResponseType::EllipticD:
        case ResponseType::EllipticE:
        case ResponseType::CoefficientsFile:
            return source;
        case ResponseType::EllipticA:
            return EllipticALoadRatio * source;
        case ResponseType::EllipticB:
            return EllipticBLoadRatio * source;
    }
    return load;
}

const char* TextOf(LoadReason why) {
    switch (why) {
        case LoadReason::Equal:
            return "equal to R Source, as this response needs it";
        case LoadReason::Twice:
            return "twice R Source, as this response needs it";
        case LoadReason::Half:
            return "half of R Source, as this response needs it";
        case LoadReason::Chebyshev:
            return "the limit of an even-order Chebyshev";
        case LoadReason::Elliptic:
            return "the one that this elliptic ladder needs";
    }
    return "";
}

std::optional<double> LoadToBringBack(const DesignInputs& inputs, const FilterDesign& design) {
    const NumberBox& box = inputs.Box(InputId::RLoad);
    const bool asked =
        ForcesLoad(design.ResponseType) || design.Flags.LoadMoved || design.Flags.LoadOfFamily;
    if (!box.Moved || asked) return {};
    return box.Moved->Wanted;
}

bool BringBackLoad(DesignInputs& inputs, const FilterDesign& design) {
    const auto wanted = LoadToBringBack(inputs, design);
    if (!wanted) return false;
    NumberBox& box = inputs.Box(InputId::RLoad);
    box.WriteValue(*wanted);
    box.Moved.reset();
    return true;
}

std::string MoverOf(const MovedEntry& moved) {
    switch (moved.Why) {
        case LoadReason::Equal:
            return "a response with equal ends";
        case LoadReason::Chebyshev:
            return "an even-order Chebyshev";
        case LoadReason::Twice:
        case LoadReason::Half:
        case LoadReason::Elliptic:
            return "an elliptic response";
    }
    return {};
}

DesignInputs::DesignInputs() {
    for (const InputRow& row : InputRows())
        Box(row.Id).Text = row.Initial;
    for (const ChoiceTable& table : ChoiceTables())
        Choice(table.Id) = table.Initial;
}

TraceChoices DesignInputs::Traces() const {
    TraceChoices traces;
    traces.Mag1dB = IsOn(ChoiceId::TraceMag1dB);
    traces.Mag10dB = IsOn(ChoiceId::TraceMag10dB);
    traces.Phase = IsOn(ChoiceId::TracePhase);
    traces.GroupDelay = IsOn(ChoiceId::TraceGroupDelay);
    traces.Pulse = IsOn(ChoiceId::TracePulse);
    traces.ReturnLoss = IsOn(ChoiceId::TraceReturnLoss);
    return traces;
}

double ReadPercentChange(DesignInputs& inputs, FilterDesign& design,
                         const MessageCallback& report) {
    StepInput(InputId::PercentChange, inputs, design, {}, report);
    return design.KeyStepFraction;
}

void ReadInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report) {
    for (const ChoiceTable& table : ChoiceTables())
        if (table.Put) table.Put(design, inputs.Choice(table.Id));
    FillEmptyTankValues(inputs);
    for (const InputRow& row : InputRows())
        if (!row.ReadLater && &row == &RowOf(row.Id, inputs))
            StepInput(row.Id, inputs, design, {}, report);
    ForceLoad(inputs, design);
    PartModel& model = design.PartModel;
    SetTolerance(model, PartKind::Capacitor, inputs.Choice(ChoiceId::CapTolerance));
    SetTolerance(model, PartKind::Inductor, inputs.Choice(ChoiceId::IndTolerance));
    design.Held = inputs.Held;
}

}  // namespace ladderwise
