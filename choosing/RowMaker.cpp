// Rows of the list.
#include "choosing/RowMaker.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "analysis/Sensitivities.h"
#include "numbers/PlainNumbers.h"
#include "pipeline/Calculation.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/TankValues.h"

namespace ladderwise {

namespace {

constexpr double typedMegahertz = 1e6;
constexpr int placeDigitsTyped = 9;  ///< of F0 and bandwidth
constexpr int rippleDigitsTyped = 5;

double RoundedTo(double x, int digits) {
    ReadPlainNumber(RoundedNumber(x, digits), x);
    return x;
}

/// F0 or a bandwidth (Hz) as it will be read.
double AsTyped(double hz) {
    return RoundedTo(hz / typedMegahertz, placeDigitsTyped) * typedMegahertz;
}

/// The shortest text that is read as exactly `si`.
std::string TypedText(double si, double factor) {
    const double typed = si / factor;
    for (const int digits : {6, 9, 12, 15, 16}) {
        std::string text = RoundedNumber(typed, digits);
        double read = 0.0;
        if (ReadPlainNumber(text, read) == NumberFault::None && read * factor == si) return text;
    }
    for (const double near :
         {typed, std::nextafter(typed, 0.0), std::nextafter(typed, 2.0 * typed)})
        if (near * factor == si) return ExactNumber(near);
    return ExactNumber(typed);
}

/// Standard deviation of the attenuation (or return loss) at a frequency by the tolerances, dB.
double SpreadAt(const FilterDesign& design, double f, LimitKind kind) {
    const bool reflected = kind == LimitKind::ReturnLossMin;
    const LadderSlopes slopes = SlopesOf(design, {&f, 1}, reflected);
    double squares = 0.0;
    for (std::size_t i = 0; i < slopes.Places.size(); ++i) {
        const auto [slot, row] = slopes.Places[i];
        const ValueKind of = InfoOf(design.Elements[static_cast<std::size_t>(slot)].Type)
                                 .Values[static_cast<std::size_t>(row)];
        const double tolerance = of == ValueKind::Inductance    ? design.PartModel.IndTolerance
                                 : of == ValueKind::Capacitance ? design.PartModel.CapTolerance
                                                                : 0.0;
        const double slope = (reflected ? slopes.ReturnLossOf(i) : slopes.AttenuationOf(i))[0];
        if (std::isfinite(slope)) squares += std::pow(slope * tolerance, 2);
    }
    return std::sqrt(squares / 3.0);  // of a uniform distribution over +- the tolerance
}

}  // namespace

DesignInputs InputsFor(const ChoosingRequest& request) {
    DesignInputs inputs = request.Inputs;
    int& parts = inputs.Choice(ChoiceId::Parts);
    switch (request.Only) {
        case WhatCounts::AsSet:
            break;
        case WhatCounts::Ideal:
            parts = static_cast<int>(PartChoice::IdealParts);
            inputs.Choice(ChoiceId::StdLCValues) = 0;
            break;
        case WhatCounts::Parts:
            if (parts == static_cast<int>(PartChoice::IdealParts))
                parts = static_cast<int>(PartChoice::RealParts);
            inputs.Choice(ChoiceId::StdLCValues) = 0;
            break;
        case WhatCounts::Standard:
            inputs.Choice(ChoiceId::StdLCValues) = 1;
            break;
    }
    // Rows are judged with the nearest standard values, and as they are designed.
    int& standard = inputs.Choice(ChoiceId::StdLCValues);
    standard = std::min(standard, 1);
    inputs.Choice(ChoiceId::Absorb) = inputs.Choice(ChoiceId::FitWidth) = 0;
    inputs.Choice(ChoiceId::WorstCase) = 0;
    inputs.Choice(ChoiceId::AutoOptimize) = 0;
    return inputs;
}

double UsersLoad(const DesignInputs& inputs, const FilterDesign& design) {
    const NumberBox& box = inputs.Box(InputId::RLoad);
    return box.Moved ? box.Moved->Wanted : design.RLoad;
}

RowMaker::RowMaker(const ChoosingRequest& asked) : request(asked) {
    static_cast<DesignState&>(base) = asked.Present;
    DesignInputs inputs = InputsFor(asked);
    ReadInputs(inputs, base, {});
    base.RLoad = UsersLoad(inputs, base);
    work = base;
}

FilterDesign& RowMaker::Build(const FilterChoice& row) {
    DesignInputs inputs = InputsOf(request, row);
    ReadInputs(inputs, work, {});
    ReadNortonInputs(inputs, work, {});
    BuildLadder(work, {});
    if (work.PartModel.Choice == PartChoice::DeEmbed) DeEmbedParts(work);
    if (work.StdLCValues) SnapToStdValue(work);
    work.CalculatedElements = work.Elements;
    return work;
}

double RowMaker::CostOf(const DesignState& design) const {
    const CostWeights& weights = request.Weights;
    double cost = 0.0;
    ForEachPart(design, [&](ValueKind kind, double value) {
        const bool coil = kind == ValueKind::Inductance;
        const ValueRange& range = coil ? weights.PracticalL : weights.PracticalC;
        cost += coil ? weights.Inductor : weights.Capacitor;
        if (value < range.Smallest || value > range.Largest) cost += weights.Impractical;
    });
    if (IsOtherLoad(design.RLoad)) cost += weights.OtherLoad;
    return cost;
}

FilterChoice RowMaker::Make(LadderMaker& maker, const Candidate& candidate, double f0,
                            double bandWidth) const {
    FilterChoice row;
    row.What = candidate;
    row.F0 = AsTyped(f0);
    row.BandWidth = AsTyped(bandWidth);
    if (!maker.Use(candidate) || !maker.Place(row.F0, row.BandWidth)) return row;
    const FilterDesign& design = maker.Design();
    row.Elements = design.Elements;
    row.NumElements = design.NumElements;
    row.FormCLC = design.FormCLC;
    row.RLoad = design.RLoad;
    row.OtherLoad = IsOtherLoad(design.RLoad);
    row.Parts = CountParts(design);
    row.Inductors = RangeOf(design, ValueKind::Inductance);
    row.Capacitors = RangeOf(design, ValueKind::Capacitance);
    row.Report = JudgeLimits(design, request.Limits);
    row.MarginDb = NoLimitDb;
    LimitKind tightest = LimitKind::AttenMin;
    for (const LimitMargin& limit : row.Report.Rows) {
        if (limit.Line.Kind == LimitKind::DelayVariationMax) continue;
        if (limit.Line.Kind == LimitKind::AttenMax)
            row.LossDb = std::max(row.LossDb.value_or(0.0), limit.Line.Value - limit.Margin);
        if (!(limit.Margin >= row.MarginDb)) {
            row.MarginDb = limit.Margin;
            row.TightestHz = limit.At;
            tightest = limit.Line.Kind;
        }
    }
    if (row.TightestHz > 0.0) row.SpreadDb = SpreadAt(design, row.TightestHz, tightest);
    row.Cost =
        CostOf(design) + request.Weights.PerDbOfLoss * std::max(0.0, row.LossDb.value_or(0.0));
    return row;
}

DesignInputs InputsOf(const ChoosingRequest& request, const FilterChoice& choice) {
    DesignInputs inputs = InputsFor(request);
    const Candidate& what = choice.What;
    const auto choose = [&](ChoiceId id, auto code) { inputs.Choice(id) = static_cast<int>(code); };
    const auto type = [&](InputId id, const std::string& text) { inputs.Box(id).Type(text); };
    NumberBox& load = inputs.Box(InputId::RLoad);
    if (load.Moved) load.WriteValue(load.Moved->Wanted), load.Moved.reset();
    choose(ChoiceId::Pass, what.Pass);
    choose(ChoiceId::Response, what.Response);
    choose(ChoiceId::Form, what.FormCLC);
    choose(ChoiceId::BandWidthUnit, BandWidthInMHz);
    type(InputId::NumPoles, std::to_string(what.Poles));
    type(InputId::F0, TypedText(choice.F0, typedMegahertz));
    if (HasBandWidth(what.Pass))
        type(InputId::BandWidth, TypedText(choice.BandWidth, typedMegahertz));
    if (HasRipple(what)) type(InputId::Ripple, RoundedNumber(what.RippleDb, rippleDigitsTyped));
    if (IsElliptic(what.Response)) {
        type(InputId::EllipticAtten, RoundedNumber(what.AttenDb, rippleDigitsTyped));
        type(InputId::TrapType, std::to_string(what.TrapType));
    }
    if (what.Pass == PassType::DirectCoupled) {
        choose(ChoiceId::TankType, TankType::ShuntLC);
        choose(ChoiceId::InverterType, what.Inverter);
        choose(ChoiceId::TankUnits, TankUnits::nH);
        for (int tank = 1; tank <= MaxTanks; ++tank)
            type(TankValueId(tank), ExactNumber(what.TankNanohenries));
    }
    if (what.Pass == PassType::Norton) {
        choose(ChoiceId::NortonType, what.NortonType);
        type(InputId::NortonA, "1");
        type(InputId::NortonK, ExactNumber(what.NortonK));
        if (what.Poles > 3) type(InputId::NortonM, ExactNumber(what.NortonM));
    }
    return inputs;
}

std::vector<std::pair<std::string, std::string>> SettingsOf(const ChoosingRequest& request,
                                                            const FilterChoice& choice) {
    RowMaker maker(request);
    const auto calculation = std::make_unique<Calculation>();
    calculation->Inputs = InputsOf(request, choice);
    calculation->Design = maker.Build(choice);
    std::vector<std::pair<std::string, std::string>> settings;
    for (const SettingInUse& setting : SettingsInUse(*calculation)) {
        // What shows a design or repeats its runs makes no ladder; the bandwidth is in MHz.
        constexpr const char* leftOut[] = {"bw-percent", "gd-scale", "traces", "seed",
                                           CoefficientsSetting};
        if (std::any_of(std::begin(leftOut), std::end(leftOut),
                        [&](const char* name) { return setting.Name == name; }))
            continue;
        if (const auto* const word = std::get_if<std::string>(&setting.Value)) {
            settings.emplace_back(setting.Name, *word);
        } else if (const double* const number = std::get_if<double>(&setting.Value)) {
            const auto& rows = InputRows();
            const auto row = std::find_if(rows.begin(), rows.end(), [&](const InputRow& input) {
                return setting.Name == input.Name;
            });
            settings.emplace_back(setting.Name,
                                  TypedText(*number, row != rows.end() ? row->Factor : 1.0));
        }
    }
    return settings;
}

std::array<float, ThumbnailPoints> ThumbnailOf(const ChoosingRequest& request,
                                               const FilterChoice& choice, double low,
                                               double high) {
    const RowMaker maker(request);
    const auto design = std::make_unique<FilterDesign>(maker.Base());
    design->PassType = choice.What.Pass;
    design->F0 = choice.F0;
    design->RLoad = choice.RLoad;
    design->Elements = choice.Elements;
    design->NumElements = choice.NumElements;
    std::vector<double> freqs(ThumbnailPoints), re(ThumbnailPoints), im(ThumbnailPoints);
    for (std::size_t i = 0; i < freqs.size(); ++i)
        freqs[i] = low * std::pow(high / low, double(i) / double(freqs.size() - 1));
    SweepTables tables;
    BuildSweepTables(tables, freqs, design->F0);
    AnalyseLadder(*design, tables, {}, re, im, {});
    std::array<float, ThumbnailPoints> samples{};
    for (std::size_t i = 0; i < samples.size(); ++i)
        samples[i] = static_cast<float>(-10.0 * std::log10(re[i] * re[i] + im[i] * im[i]));
    return samples;
}

}  // namespace ladderwise
