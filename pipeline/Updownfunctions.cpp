// The table of inputs, and what a step does.
#include "pipeline/Updownfunctions.h"

#include <algorithm>
#include <cmath>

#include "numbers/Formatfunctions.h"
#include "numbers/UnitTexts.h"
#include "numbers/UtilityFunctions.h"
#include "pipeline/DesignInputs.h"

namespace ladderwise {

namespace {

constexpr double Hertz = 1e6;        ///< per MHz
constexpr double Farads = 1e-12;     ///< per pF
constexpr double Henries = 1e-9;     ///< per nH
constexpr double CtrlFactor = 10.0;  ///< a held Ctrl key multiplies the step
constexpr int NortonFewestPoles = 3;
constexpr int NortonMostPoles = 5;
constexpr int NortonPoleStep = 2;
constexpr int MostTrapTypes = 4;
constexpr double StopToCornerRatio = 1.2;  ///< EllipticStopFreq over F0
constexpr double LeastBandWidth = 0.005;   ///< of F0
constexpr double UsualBandWidth = 0.1;     ///< of F0
constexpr double WidestBandWidth = 1.99;   ///< of F0
constexpr double Fraction = 0.01;          ///< per percent

/// Get and Put of a member of the design.
template <auto Member>
struct Field {
    static double Get(const FilterDesign& design) { return static_cast<double>(design.*Member); }
    static void Put(FilterDesign& design, double value) {
        design.*Member = static_cast<std::remove_reference_t<decltype(design.*Member)>>(value);
    }
};

/// Get and Put of a member of a part of the design.
template <auto Part, auto Member>
struct PartField {
    static double Get(const FilterDesign& design) {
        return static_cast<double>(design.*Part.*Member);
    }
    static void Put(FilterDesign& design, double value) {
        auto& member = design.*Part.*Member;
        member = static_cast<std::remove_reference_t<decltype(member)>>(value);
    }
};
template <auto Member>
using ModelField = PartField<&FilterDesign::PartModel, Member>;
template <auto Member>
using NortonField = PartField<&FilterDesign::Norton, Member>;

template <auto Member>
using CoupledField = PartField<&FilterDesign::DirectCoupled, Member>;

/// Get, Put and Enabled of the value of tank Index + 1.
template <std::size_t Index>
struct TankField {
    static double Get(const FilterDesign& design) { return design.DirectCoupled.TankValues[Index]; }
    static void Put(FilterDesign& design, double value) {
        design.DirectCoupled.TankValues[Index] = value;
    }
    static bool Enabled(const DesignInputs& inputs) {
        int poles = 0;
        TryParseInt(inputs.Box(InputId::NumPoles).Text, poles);
        return inputs.Pass() == PassType::DirectCoupled && static_cast<int>(Index) < poles;
    }
};

bool HasBand(const DesignInputs& inputs) {
    return HasBandWidth(inputs.Pass());
}
bool IsRippled(const DesignInputs& inputs) {
    return inputs.Response() == ResponseType::Chebyshev || IsElliptic(inputs.Response());
}
bool HasTraps(const DesignInputs& inputs) {
    return IsElliptic(inputs.Response());
}
bool HasTrapForms(const DesignInputs& inputs) {
    return HasTraps(inputs) && HasTrapPanel(inputs.Pass());
}
bool HasTank(const DesignInputs& inputs, std::initializer_list<TankType> types) {
    const auto tank = static_cast<TankType>(inputs.Choice(ChoiceId::TankType));
    return inputs.Pass() == PassType::DirectCoupled &&
           std::find(types.begin(), types.end(), tank) != types.end();
}
bool HasLineInverters(const DesignInputs& inputs) {
    return inputs.Pass() == PassType::DirectCoupled &&
           inputs.Choice(ChoiceId::InverterType) == static_cast<int>(InverterType::SeriesLine);
}
bool HasShortedStubs(const DesignInputs& inputs) {
    return HasTank(inputs, {TankType::ShuntCapShortedLine, TankType::OpenAndShortedLines});
}
bool HasOpenStubs(const DesignInputs& inputs) {
    return HasTank(inputs, {TankType::ShuntIndOpenLine, TankType::OpenAndShortedLines});
}
bool HasTaps(const DesignInputs& inputs) {
    return HasTank(inputs, {TankType::ShuntCSeriesLC, TankType::ShuntLSeriesLC, TankType::TappedByC,
                            TankType::TappedByL});
}
bool IsNorton(const DesignInputs& inputs) {
    return inputs.Pass() == PassType::Norton;
}
bool IsFivePoleNorton(const DesignInputs& inputs) {
    int poles = 0;
    return IsNorton(inputs) && TryParseInt(inputs.Box(InputId::NumPoles).Text, poles) &&
           poles == NortonMostPoles;
}
bool TypesScale(const DesignInputs& inputs) {
    return inputs.IsOn(ChoiceId::TraceGroupDelay) && !inputs.IsOn(ChoiceId::AutoScale);
}

/// The prototype's own F0 is the minimum while the "Low Pass Prototype" entry is the checked one.
BoxLimits F0Limits(const DesignInputs& inputs, const FilterDesign&) {
    return {inputs.IsPrototype() ? PrototypeF0Text : ".001", "1.0", "1.0E5"};
}

BoxLimits BandWidthLimits(const DesignInputs&, const FilterDesign& design) {
    const double f0 = design.F0 / Hertz;
    return {FormatFullPrecision(LeastBandWidth * f0), FormatFullPrecision(UsualBandWidth * f0),
            FormatFullPrecision(WidestBandWidth * f0)};
}

double StepPoles(const DesignInputs& inputs, double poles, int direction) {
    if (inputs.Pass() != PassType::Norton) return poles + direction;
    const double held = std::clamp<double>(poles, NortonFewestPoles, NortonMostPoles);
    return std::clamp<double>(held + NortonPoleStep * direction, NortonFewestPoles,
                              NortonMostPoles);
}

double StepTrapType(const DesignInputs&, double type, int direction) {
    return std::clamp<double>(type + direction, 1, MostTrapTypes);
}

void PutAtten(FilterDesign& design, double value) {
    design.EllipticAtten = value;
    design.EllipticStopFreq = StopToCornerRatio * design.F0;
}
void PutThreshold(FilterDesign& design, double value) {
    design.PhaseGDThreshold = value > 0.0 ? -value : value;
}
double GetBandWidthPercent(const FilterDesign& design) {
    return design.BandWidth / design.F0 * Percent;
}
void PutBandWidthPercent(FilterDesign& design, double value) {
    design.BandWidth = Fraction * value * design.F0;
}

double GetPercentChange(const FilterDesign& design) {
    return design.KeyStepFraction * Percent;
}
void PutPercentChange(FilterDesign& design, double value) {
    design.KeyStepFraction = Fraction * value;
}

using enum InputId;
using enum WriteBack;
using D = FilterDesign;
using M = PartModel;
using DC = DirectCoupledSettings;
using N = NortonSettings;
constexpr const char* nortonOnly = "for a Norton band-pass";
constexpr const char* bandOnly = "for band-pass and notch";

// clang-format off
const std::vector<InputRow> singleRows = {
    {NumPoles, "poles", "NumPoles", "&N Poles", "Number of poles, or of traps for an elliptic response", "", "3",
     {"1", "3", "10"}, 1, 1, Whole, Field<&D::NumPoles>::Get, Field<&D::NumPoles>::Put,
     nullptr, "", -1, false, nullptr, StepPoles},
    {Ripple, "ripple", "Ripple", "R&ipple  dB", "Pass-band ripple", "dB", "0.2",
     {"0.001", "0.20", "1.00"}, 0.01, 1, Significant, Field<&D::RippleDb>::Get, Field<&D::RippleDb>::Put,
     IsRippled, "for Chebyshev and elliptic responses"},
    {F0, "f0", "F0", "Fo  &MHz", "Corner or centre frequency", "MHz", "200",
     {".001", "1.0", "1.0E5"}, 1, Hertz, Significant, Field<&D::F0>::Get, Field<&D::F0>::Put,
     nullptr, "", -1, false, F0Limits},
    {BandWidth, "bw", "BandWidth", "Band&width", "Bandwidth", "MHz", "40",
     {}, 0.1, Hertz, Significant, Field<&D::BandWidth>::Get, Field<&D::BandWidth>::Put,
     HasBand, bandOnly, BandWidthInMHz, false, BandWidthLimits},
    {BandWidth, "bw-percent", "BandWidth", "Band&width", "Bandwidth in % of Fo", "%", "40",
     {"0.5", "10.0", "199.0"}, 0.1, 1, Significant, GetBandWidthPercent, PutBandWidthPercent,
     HasBand, bandOnly, BandWidthInPercent},
    {EllipticAtten, "atten", "EllipticAtten", "Elliptic A&tten", "Stop-band attenuation", "dB", "50",
     {"5.0", "40.0", "100.0"}, 1, 1, Significant, Field<&D::EllipticAtten>::Get, PutAtten,
     HasTraps, "for elliptic responses"},
    {TrapType, "trap", "TrapType", "Trap T&ype", "Form of the elliptic traps", "", "1",
     {"1", "1", "4"}, 1, 1, Whole, Field<&D::TrapType>::Get, Field<&D::TrapType>::Put,
     HasTrapForms, "for elliptic band-pass and notch", -1, false, nullptr, StepTrapType},
    {RSource, "r-source", "RS", "R So&urce", "Source resistance", "ohm", "50",
     {"0.001", "50", "1.0E6"}, 0, 1, Significant, Field<&D::RSource>::Get, Field<&D::RSource>::Put},
    {RLoad, "r-load", "RL", "R Loa&d", "Load resistance", "ohm", "50",
     {"0.001", "50", "1.0E6"}, 0, 1, Significant, Field<&D::RLoad>::Get, Field<&D::RLoad>::Put},
    {IndQ, "ind-q", "IndQ", "Inductor &Q", "Unloaded Q of every inductor at F0", "", "35",
     {"0.1", "35", "1.0E9"}, 0, 1, Nothing, ModelField<&M::IndQ>::Get, ModelField<&M::IndQ>::Put},
    {IndC, "ind-c", "IndC", "Inductor &C", "Capacitance in parallel with every inductor", "pF", ".25",
     {"0", ".25", "1.0E6"}, 0, Farads, Nothing, ModelField<&M::IndC>::Get, ModelField<&M::IndC>::Put},
    {CapL, "cap-l", "CapL", "Capacitor &L", "Inductance in series with every capacitor", "nH", ".5",
     {"0", ".5", "1.0E6"}, 0, Henries, Nothing, ModelField<&M::CapL>::Get, ModelField<&M::CapL>::Put},
    {CapR, "cap-r", "CapR", "Capacitor &R", "Resistance in series with every capacitor", "ohm", "0.25",
     {"0", "0.25", "1.0E6"}, 0, 1, Nothing, ModelField<&M::CapR>::Get, ModelField<&M::CapR>::Put},
    {WorstCaseSims, "runs", "WorstCaseSims", "&Number of Monte Carlo Simulations", "Analyses of a worst case", "", "100",
     {"1", "100", "1000"}, 0, 1, Whole, ModelField<&M::MonteCarloRuns>::Get, ModelField<&M::MonteCarloRuns>::Put},
    {GDPhaseThreshold, "threshold", "GDPhaseThreshold", "Cutoff for Phase and &Group delay plots",
     "Level below which phase and group delay are not drawn; a positive number counts as negative", "dB", "20.0",
     {"-200.0", "20.0", "200.0"}, 0, 1, Nothing, Field<&D::PhaseGDThreshold>::Get, PutThreshold},
    {PercentChange, "percent-change", "PercentChange", "% Chan&ge",
     "Step of F1 and F2 on a part value. F1, F2: smaller, larger; F3: standard value; F5, F6: standard value, "
     "resonance kept", "%", "5.0",
     {"0.01", "5.0", "100.0"}, 0, 1, Nothing, GetPercentChange, PutPercentChange},
    {Scale, "gd-scale", "Scale", "Group delay scale",
     "Full scale of the group delay, a hundredth to a hundred times the automatic one", "s", "",
     {}, 0, 1, Nothing, Field<&D::GDFullScale>::Get, Field<&D::GDFullScale>::Put,
     TypesScale, "while Auto Scale is on", -1, true},
    {TLIN, "tlin", "TLIN", "In&verter line", "Length of line inverters at Fo", "deg", "45",
     {"1.0", "45.0", "180.0"}, 1, 1, Decimals, CoupledField<&DC::TLINLength>::Get, CoupledField<&DC::TLINLength>::Put,
     HasLineInverters, "for line inverters"},
    {TLSC, "tlsc", "TLSC", "&Shorted line", "Length of shorted stubs in tanks at Fo", "deg", "45",
     {"1.0", "45.0", "180.0"}, 1, 1, Decimals, CoupledField<&DC::TLSCLength>::Get, CoupledField<&DC::TLSCLength>::Put,
     HasShortedStubs, "for tanks 8 and 9"},
    {TLOC, "tloc", "TLOC", "&Open line", "Length of open stubs in tanks at Fo", "deg", "45",
     {"1.0", "45.0", "180.0"}, 1, 1, Decimals, CoupledField<&DC::TLOCLength>::Get, CoupledField<&DC::TLOCLength>::Put,
     HasOpenStubs, "for tanks 7 and 9"},
    {Factor, "factor", "Factor", "Facto&r 0.2 - 1.0", "Tapping factor of three-element tanks", "", "1.0",
     {"0.2", "0.50", "1.0"}, 0.02, 1, Decimals, CoupledField<&DC::TankFactor>::Get, CoupledField<&DC::TankFactor>::Put,
     HasTaps, "for tanks 3 to 6"},
    {NortonA, "a", "A", "&Impedance Scalar", "Level of the ladder over its terminations", "", "1.00",
     {"1.0", "1.0", "100"}, 0, 1, Nothing, NortonField<&N::ImpedanceScalar>::Get, NortonField<&N::ImpedanceScalar>::Put,
     IsNorton, nortonOnly, -1, true},
    {NortonK, "k", "K", "3 Pole &K", "Turns ratio of the first transform of each half", "", "2.00",
     {"1.001", "1.001", "100"}, 0, 1, Nothing, NortonField<&N::NortonK>::Get, NortonField<&N::NortonK>::Put,
     IsNorton, nortonOnly, -1, true},
    {NortonM, "m", "M", "5 Pole &M", "Turns ratio of the second transform of each half", "", "1.00",
     {"1.001", "1.001", "100"}, 0, 1, Nothing, NortonField<&N::NortonM>::Get, NortonField<&N::NortonM>::Put,
     IsFivePoleNorton, "for a Norton band-pass of 5 poles", -1, true},
};
// clang-format on

/// A row that stands behind those of the tanks.
const InputRow reelRow = {InputId::Reel,
                          "reel",
                          "Reel",
                          "R&eel",
                          "Chance that a part takes the draw of the first one of its value",
                          "",
                          "0",
                          {"0", "0", "1"},
                          0,
                          1,
                          Nothing,
                          PartField<&FilterDesign::Boards, &BoardDraw::Reel>::Get,
                          PartField<&FilterDesign::Boards, &BoardDraw::Reel>::Put};

/// The row of the value of tank Index + 1. All ten share one console name, which takes a list.
template <std::size_t Index>
InputRow TankRow() {
    static const std::string number = std::to_string(Index + 1);
    static const std::string component = "TankValue" + number, label = "Tank " + number;
    using Field = TankField<Index>;
    return {static_cast<InputId>(static_cast<std::size_t>(TankValue1) + Index),
            "tank-values",
            component.c_str(),
            label.c_str(),
            "Value of this tank",
            "",
            "50",
            {"0.001", "50", "1.0E6"},
            0,
            1,
            Nothing,
            Field::Get,
            Field::Put,
            Field::Enabled,
            "for direct-coupled band-passes with as many poles"};
}

template <std::size_t... Index>
std::vector<InputRow> WithTankRows(std::vector<InputRow> rows, std::index_sequence<Index...>) {
    (rows.push_back(TankRow<Index>()), ...);
    rows.push_back(reelRow);
    return rows;
}

const std::vector<InputRow> rows = WithTankRows(singleRows, std::make_index_sequence<MaxTanks>());

/// "45.0", "0.98".
std::string OneOrTwoDecimals(double value) {
    constexpr int Most = 2;
    std::string text = FormatFixed(value, Most);
    if (text.back() == '0') text.pop_back();
    return text;
}

std::string WithUnit(std::string text, const char* unit) {
    return *unit ? text + " " + unit : text;
}

/// What a number in the box of an input counts: "MHz", 1e6.
struct TypedUnit {
    const char* Unit;
    double Factor;
};

TypedUnit UnitOf(const InputRow& row, const DesignInputs& inputs) {
    if (row.Id < TankValue1 || row.Id > TankValue10) return {row.Unit, row.Factor};
    switch (static_cast<TankUnits>(inputs.Choice(ChoiceId::TankUnits))) {
        case TankUnits::nH:
            return {"nH", Henries};
        case TankUnits::uH:
            return {"uH", 1e-6};
        case TankUnits::pF:
            return {"pF", Farads};
        case TankUnits::nF:
            return {"nF", 1e-9};
        case TankUnits::TankZ:
            return {"ohm", 1};
    }
    return {"", 1};
}

/// The number in a box, in the unit typed, whatever its limits; nothing if there is none.
std::optional<double> NumberIn(const NumberBox& box) {
    double value = 0.0;
    if (box.HoldsExactValue()) return box.ExactValue;
    if (TryParseDouble(box.Text, value) && std::isfinite(value)) return value;
    return {};
}

/// True if the box is to be left alone by its reader.
bool IsKept(const InputRow& row, const DesignInputs& inputs) {
    return row.ComputedLimits && !IsEnabled(row, inputs) && NumberIn(inputs.Box(row.Id));
}

double ReadBox(NumberBox& box, const BoxLimits& limits, bool whole, const MessageCallback& report) {
    if (whole) return EditBoxToInt(box, limits.Minimum, limits.Default, limits.Maximum, report);
    return EditBoxToDouble(box, limits.Minimum, limits.Default, limits.Maximum, report);
}

}  // namespace

const std::vector<InputRow>& InputRows() {
    return rows;
}

const InputRow& RowOf(InputId id, const DesignInputs& inputs) {
    const int unit = inputs.Choice(ChoiceId::BandWidthUnit);
    return *std::find_if(rows.begin(), rows.end(), [&](const InputRow& row) {
        return row.Id == id && (row.UnitCode < 0 || row.UnitCode == unit);
    });
}

std::string PlainLabel(const InputRow& row) {
    std::string label;
    for (const char* c = row.Label; *c; ++c)
        if (*c != '&' && !(*c == ' ' && !label.empty() && label.back() == ' ')) label += *c;
    if (label.find(row.Unit) == std::string::npos) label += " " + std::string(row.Unit);
    return label;
}

BoxLimits LimitsOf(const InputRow& row, const DesignInputs& inputs, const FilterDesign& design) {
    return row.ComputedLimits ? row.ComputedLimits(inputs, design) : row.Limits;
}

bool IsEnabled(const InputRow& row, const DesignInputs& inputs) {
    return !row.Enabled || row.Enabled(inputs);
}

std::string RangeText(const BoxLimits& limits) {
    constexpr int Digits = 11;  // significant: more than any limit has
    double minimum = 0.0, maximum = 0.0;
    TryParseDouble(limits.Minimum, minimum);
    TryParseDouble(limits.Maximum, maximum);
    return FormatPlain(minimum, Digits) + " to " + FormatPlain(maximum, Digits);
}

std::string InputTip(InputId id, const DesignInputs& inputs, const FilterDesign& design) {
    constexpr int Digits = 11;  // significant, of the value in use
    const InputRow& row = RowOf(id, inputs);
    std::string tip = row.Meaning;
    const BoxLimits limits = LimitsOf(row, inputs, design);
    if (!limits.Minimum.empty()) tip += ": " + WithUnit(RangeText(limits), row.Unit);
    if (row.Get && !KeptEntry(id, inputs))
        tip += ". In use: " + WithUnit(FormatPlain(row.Get(design) / row.Factor, Digits), row.Unit);
    if (const auto& moved = inputs.Box(id).Moved)
        tip += ". Moved: " + WithUnit(FormatPlain(moved->Wanted, Digits), row.Unit) +
               " was asked for, the value in use is " +
               (LoadToBringBack(inputs, design) ? "left over from " + MoverOf(*moved)
                                                : std::string(TextOf(moved->Why)));
    if (!IsEnabled(row, inputs)) tip += " (" + std::string(row.WhenDisabled) + ")";
    return tip;
}

void UnderstandUnit(InputId id, DesignInputs& inputs) {
    NumberBox& box = inputs.Box(id);
    const TypedUnit typed = UnitOf(RowOf(id, inputs), inputs);
    double value = 0.0;
    if (box.HoldsExactValue() || TryParseDouble(box.Text, value)) return;
    if (TryParseInUnit(box.Text, typed.Unit, typed.Factor, value))
        box.WriteText(FormatGeneral(value), value);
}

std::optional<double> KeptEntry(InputId id, const DesignInputs& inputs) {
    const InputRow& row = RowOf(id, inputs);
    if (!IsKept(row, inputs)) return {};
    return *NumberIn(inputs.Box(id)) * row.Factor;
}

void StepInput(InputId id, DesignInputs& inputs, FilterDesign& design, SpinStep spin,
               const MessageCallback& report) {
    const InputRow& row = RowOf(id, inputs);
    UnderstandUnit(id, inputs);
    NumberBox& box = inputs.Box(id);
    if (IsKept(row, inputs)) {
        box.Colour = BoxColour::Normal;
        box.ReplacedText.reset();
        NumberBox read = box;
        row.Put(design, ReadBox(read, LimitsOf(row, inputs, design), false, report) * row.Factor);
        return;
    }
    const bool whole = row.Back == Whole;
    double value = ReadBox(box, LimitsOf(row, inputs, design), whole, report);
    const int direction = spin.Direction == SpinDirection::Up     ? 1
                          : spin.Direction == SpinDirection::Down ? -1
                                                                  : 0;
    const double read = value;
    if (row.Stepped)
        value = row.Stepped(inputs, value, direction);
    else if (direction != 0)
        value += direction * (spin.TenTimes ? CtrlFactor : 1.0) * row.Step;
    if (row.Back == Significant) box.WriteValue(value);
    if (row.Back == Decimals) box.WriteText(OneOrTwoDecimals(value), value);
    if (whole) {
        const std::string text = std::to_string(static_cast<int>(value));
        if (direction == 0 && value != read)
            box.Replace(value, text);
        else
            box.WriteText(text, value);
    }
    row.Put(design, value * row.Factor);
}

}  // namespace ladderwise
