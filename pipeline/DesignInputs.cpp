// From the boxes to the design state: the first step of every calculation.
#include "pipeline/DesignInputs.h"

#include "analysis/PartValues.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Updownfunctions.h"

namespace ladderwise {

namespace {

constexpr double FaradsPerPicofarad = 1e-12;
constexpr double HenriesPerNanohenry = 1e-9;
constexpr double EllipticALoadRatio = 2.0;  ///< RLoad / RSource
constexpr double EllipticBLoadRatio = 0.5;

double ReadBox(NumberBox& box, const BoxLimits& limits, const MessageCallback& report) {
    return EditBoxToDouble(box, limits.Minimum, limits.Default, limits.Maximum, report);
}

/// The load that a response prescribes for a source; Butterworth and Chebyshev keep the user's.
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

void ReadTerminations(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report) {
    design.RSource = ReadBox(inputs.RSBox, ResistanceLimits(), report);
    design.RLoad = LoadFor(design.ResponseType, design.RSource,
                           ReadBox(inputs.RLBox, ResistanceLimits(), report));
    inputs.RSBox.WriteValue(design.RSource);
    inputs.RLBox.WriteValue(design.RLoad);
}

void ReadPartModel(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report) {
    PartModel& model = design.PartModel;
    model.IndQ = ReadBox(inputs.IndQBox, IndQLimits(), report);
    model.IndC = ReadBox(inputs.IndCBox, IndCLimits(), report) * FaradsPerPicofarad;
    model.CapL = ReadBox(inputs.CapLBox, CapLLimits(), report) * HenriesPerNanohenry;
    model.CapR = ReadBox(inputs.CapRBox, CapRLimits(), report);
    model.Choice = inputs.Parts;
    SetTolerance(model, PartKind::Capacitor, inputs.CapTolerancePercent);
    SetTolerance(model, PartKind::Inductor, inputs.IndTolerancePercent);
    const BoxLimits runs = WorstCaseSimsLimits();
    model.MonteCarloRuns =
        EditBoxToInt(inputs.WorstCaseSimsBox, runs.Minimum, runs.Default, runs.Maximum, report);
}

}  // namespace

double ReadPercentChange(DesignInputs& inputs, const MessageCallback& report) {
    constexpr double FractionPerPercent = 0.01;
    return ReadBox(inputs.PercentChangeBox, PercentChangeLimits(), report) * FractionPerPercent;
}

void ReadInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report) {
    NumPolesUpDownClick(inputs, design, {}, report);
    RippleUpDownClick(inputs, design, {}, report);
    F0UpDownClick(inputs, design, {}, report);
    BandWidthUpDownClick(inputs, design, {}, report);
    EllipticAttenUpDownClick(inputs, design, {}, report);
    EllipticFormUpDownClick(inputs, design, {}, report);
    ReadTerminations(inputs, design, report);
    ReadPartModel(inputs, design, report);
    const double threshold = ReadBox(inputs.GDPhaseThresholdBox, ThresholdLimits(), report);
    design.PhaseGDThreshold = threshold > 0.0 ? -threshold : threshold;
    ReadPercentChange(inputs, report);  // only the keys use it, but no box keeps a bad text
    design.StdLCValues = inputs.StdLCValues;
    design.WorstCase = inputs.WorstCase;
}

}  // namespace ladderwise
