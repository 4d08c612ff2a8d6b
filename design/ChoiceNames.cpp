// The table of choices.
#include "design/ChoiceNames.h"

namespace ladderwise {

namespace {

/// Put and InUse of a member of the design that holds an enumeration, a number or a switch.
template <auto Member>
struct Field {
    static void Put(FilterDesign& design, int code) {
        using Type = std::remove_reference_t<decltype(design.*Member)>;
        design.*Member = static_cast<Type>(code);
    }
    static int Get(const FilterDesign& design) { return static_cast<int>(design.*Member); }
};

void PutPass(FilterDesign& design, int code) {
    design.PassType = code == PrototypePassCode ? PassType::LowPass : static_cast<PassType>(code);
}
void PutParts(FilterDesign& design, int code) {
    design.PartModel.Choice = static_cast<PartChoice>(code);
}

/// Put and InUse of a member of the direct-coupled settings.
template <auto Member>
struct CoupledField {
    static void Put(FilterDesign& design, int code) {
        auto& member = design.DirectCoupled.*Member;
        member = static_cast<std::remove_reference_t<decltype(member)>>(code);
    }
};

/// The code names the inverter's kind, by its form between shunt tanks. The tank type is put first.
void PutInverter(FilterDesign& design, int code) {
    DirectCoupledSettings& settings = design.DirectCoupled;
    settings.InverterType =
        InverterFor(static_cast<ladderwise::InverterType>(code), settings.TankType);
}

void PutNortonType(FilterDesign& design, int code) {
    design.Norton.NortonType = static_cast<ladderwise::NortonType>(code);
}

void PutStandard(FilterDesign& design, int code) {
    design.StdLCValues = code != 0;
    design.StdMethod = code != 0 ? static_cast<ladderwise::StdMethod>(code) : StdMethod::Nearest;
}

/// The codes of the absolute tolerance count these, F.
constexpr double capAbsolutes[] = {0.0, 0.1e-12, 0.25e-12, 0.5e-12};

void PutCapAbsolute(FilterDesign& design, int code) {
    design.Boards.CapAbsolute = capAbsolutes[code];
}
void PutDraw(FilterDesign& design, int code) {
    design.Boards.Normal = code != 0;
}

constexpr auto none = nullptr;

/// A check box: one component, checked by code 1.
ChoiceTable Switch(ChoiceId id, const char* name, ConsoleForm form, int initial,
                   void (*put)(FilterDesign&, int), const char* word, const char* component,
                   const char* caption, const char* tip) {
    return {id,
            name,
            form,
            initial,
            put,
            none,
            {{0, "off", "", "", ""}, {1, word, component, caption, tip}},
            component};
}

using enum ChoiceId;
using enum ConsoleForm;
using D = FilterDesign;
using DC = DirectCoupledSettings;

// clang-format off
const std::vector<ChoiceTable> tables = {
    {Pass, "pass", Word, 0, PutPass, none, {
        {0, "low-pass", "LowPassMenu", "&Low Pass", " LPF"},
        {1, "high-pass", "HighPassMenu", "&High Pass", " HPF"},
        {3, "notch", "NotchMenu", "&Notch", " NOTCH"},
        {2, "band-pass", "BandPassMenu", "&Band Pass Canonical", " BPF"},
        {4, "direct-coupled", "DirectCoupledMenu", "Band Pass  &Direct Coupled", " Direct BPF"},
        {5, "norton", "NortonMenu", "Band Pass  N&orton", " Norton BPF"},
        {PrototypePassCode, "low-pass-prototype", "LowPassPrototypeMenu", "Low Pass &Prototype ( F0 = 1/2Pi  Hz)", " LPF"}}, "PassItem", "PassType"},
    {Response, "response", Word, 0, Field<&D::ResponseType>::Put, Field<&D::ResponseType>::Get, {
        {0, "butterworth", "ButterworthMenu", "&Butterworth", " Pole Butterworth", " Pole Butterworth"},
        {1, "chebyshev", "ChebyshevMenu", "&Chebyshev", " Pole Chebyshev", " Pole Chebyshev"},
        {2, "bessel-freq", "BesselFreqMenu", "Bessel (&Freq) ", " Pole Bessel Freq", " Pole Bessel"},
        {3, "bessel-delay", "BesselDelayMenu", "Bessel (&Delay)", " Pole Bessel Delay", " Pole Bessel"},
        {4, "papoulis", "PapoulisMenu", "&Papoulis", " Pole Papoulis", " Pole Papoulis"},
        {5, "gauss", "GaussMenu", "&Gauss to 3 dB", " Pole Gauss", " Pole Gaussian"},
        {6, "linear-chebyshev", "LinearChebyshevMenu", "&Linear Chebyshev", " Pole Linear Cheby", " Pole Linear Chebyshev"},
        {7, "elliptic-a", "EllipticAMenu", "Elliptic &A  (R Load  > R Source)", " Pole Elliptic A", " Pole EllipticA"},
        {8, "elliptic-b", "EllipticBMenu", "Elliptic &B  (R Load <  R Source)", " Pole Elliptic B", " Pole EllipticB"},
        {9, "elliptic-c", "EllipticCMenu", "Elliptic &C  (R Load  = R Source)", " Pole Elliptic C", " Pole EllipticC"},
        {10, "elliptic-d", "EllipticDMenu", "Elliptic &D  (R Load  = R Source)", " Pole Elliptic D", " Pole EllipticD"},
        {11, "elliptic-e", "EllipticEMenu", "Elliptic &E  (R Load  = R Source)", " Pole Elliptic E", " Pole EllipticE"},
        {13, "coefficients", "CoefficientsFileMenu", "Co&efficients File (*.csv)", " Pole Coefficients File", " Pole Coefficients"}}, "ResponseItem", "ResponseType"},
    {Form, "form", Word, 1, Field<&D::FormCLC>::Put, Field<&D::FormCLC>::Get, {
        {1, "clc", "FormCLCMenu", "For&m = CLC", ""},
        {0, "lcl", "FormLCLMenu", "F&orm = LCL", ""}}, "FormItem", "FormCLC"},
    {Sweep, "sweep", Word, 4, Field<&D::SweepType>::Put, Field<&D::SweepType>::Get, {
        {0, "linear", "LinearMenu", "&Linear", ""},
        {1, "1-octave", "OneOctaveMenu", "&1 Octave", ""},
        {2, "2-octaves", "TwoOctavesMenu", "&2 Octaves", ""},
        {3, "3-octaves", "ThreeOctavesMenu", "&3 Octaves", ""},
        {4, "1-decade", "OneDecadeMenu", "1 &Decade", ""},
        {5, "2-decades", "TwoDecadesMenu", "2 D&ecades", ""}}, "SweepItem", "SweepType"},
    {BandWidthUnit, "bw-unit", Hidden, BandWidthInMHz, none, none, {
        {BandWidthInMHz, "MHz", "BWMHzButton", "BW MH&z", "Bandwidth in MHz"},
        {BandWidthInPercent, "%", "BWPercentButton", "BW &%", "Bandwidth in % of Fo"}}, "BandWidthUnitItem"},
    {Parts, "parts", Word, 0, PutParts, none, {
        {0, "ideal", "IdealPartsButton", "&Ideal Parts", "Analyse with ideal inductors and capacitors"},
        {1, "real", "RealPartsButton", "&Real Parts", "Analyse with the losses and parasitics of the part definitions"},
        {2, "deembed", "DeEmbedButton", "DeEm&bed", "As Real Parts, with every L and C reduced to make up for its parasitics at Fo"}}, "PartsItem"},
    {CapTolerance, "cap-tol", Number, 5, none, none, {
        {10, "10", "TenPercentCap", "1&0 %", "Capacitors: tolerance and standard series of 10 %"},
        {5, "5", "FivePercentCap", "&5 %", "Capacitors: tolerance and standard series of 5 %"},
        {2, "2", "TwoPercentCap", "&2 %", "Capacitors: tolerance and standard series of 2 %"},
        {1, "1", "OnePercentCap", "&1 %", "Capacitors: tolerance and standard series of 1 %"}}, "CapToleranceItem"},
    {IndTolerance, "ind-tol", Number, 10, none, none, {
        {10, "10", "TenPercentInd", "1&0 %", "Inductors: tolerance and standard series of 10 %"},
        {5, "5", "FivePercentInd", "&5 %", "Inductors: tolerance and standard series of 5 %"},
        {2, "2", "TwoPercentInd", "&2 %", "Inductors: tolerance and standard series of 2 %"},
        {1, "1", "OnePercentInd", "&1 %", "Inductors: tolerance and standard series of 1 %"}}, "IndToleranceItem"},
    {StdLCValues, "std", Word, 0, PutStandard, none, {
        {0, "off", "", "", ""},
        {1, "on", "StdValuesBox", "Std LC &Values", "Snap every L and C to its standard series"},
        {1, "nearest", "", "nearest", "Each part has the standard value nearest to its own"},
        {2, "together", "", "together", "All values are chosen together, for the closest response"},
        {3, "pairs", "", "with pairs", "As together, and any capacitor may be two in parallel"},
        {4, "yield", "", "highest yield", "The values of which most boards keep the limits"}}, "StdValuesBox", "StdMethod"},
    Switch(WorstCase, "worst-case", Word, 0, Field<&D::WorstCase>::Put, "on", "WorstCaseBox", "&Worst Case",
           "Overlay runs with every L and C at random within its tolerance"),
    Switch(AutoScale, "auto-scale", Hidden, 1, none, "on", "AutoScaleCheckBox", "Auto Sca&le",
           "Choose the scale of the group delay from the response; off: type it at the plot"),
    Switch(TraceMag1dB, "traces", Hidden, 0, none, "mag1", "PlotMag1dBBox", "Mag   &1 dB",
           "Magnitude, 1 dB per division: +1 dB at the top, -9 dB at the bottom"),
    Switch(TraceMag10dB, "traces", Hidden, 1, none, "mag10", "PlotMagBox", "Mag 1&0 dB", "Magnitude, 10 dB per division"),
    Switch(TracePhase, "traces", Hidden, 0, none, "phase", "PlotPhaseBox", "Pha&se", "Phase, +180 to -180 degrees"),
    Switch(TraceGroupDelay, "traces", Hidden, 0, none, "gd", "PlotGDBox", "Group Dela&y", "Group delay"),
    Switch(TracePulse, "traces", Hidden, 0, none, "pulse", "PlotPulseBox", "S&q Pulse",
           "Response to a square pulse, 12.8 periods of F0 long; the time axis stands below the plot"),
    Switch(TraceReturnLoss, "traces", Hidden, 0, none, "rl", "PlotReturnLossBox", "Return &Loss",
           "Return loss, 10 dB per division"),
    {TankType, "tank", Number, 1, CoupledField<&DC::TankType>::Put, none, {
        {0, "0", "SeriesLCTankMenu_1", "&1 Series LC",
         "Large coils and small capacitors; no zeros and no further pass bands; the loss of its coils"},
        {1, "1", "ShuntLCTankMenu_2", "&2 Shunt  LC",
         "Fewest parts, small coils and large capacitors; no zeros and no further pass bands; the loss of its coils"},
        {5, "5", "ShuntLCParCTankMenu_3", "&3 Shunt   LC   //   C",
         "Coil 1/F times the tank's L; a zero below the band at F0 times the root of 1 - F; with inductor inverters a further pass band below it; the loss of its coils"},
        {6, "6", "ShuntLCParLTankMenu_4", "&4 Shunt   LC   //   L",
         "Capacitor F times the tank's C; a zero above the band at F0 over the root of 1 - F; with capacitor inverters further pass bands above it; the loss of its coils"},
        {7, "7", "ShuntTappedCTankMenu_5", "&5 Shunt   L//C     C",
         "The response of tank 3 with a smaller coil and larger capacitors; the loss of its coils"},
        {8, "8", "ShuntTappedLTankMenu_6", "&6 Shunt   L//C     L",
         "The response of tank 4 with smaller coils and a larger capacitor; the loss of its coils"},
        {2, "2", "ShuntIndTLOCTankMenu_7", "&7 Shunt Ind Open T Line",
         "An open stub for the capacitor: at 45 degrees a zero at 2 F0 and the next pass band near 4 F0; a part of the coil's loss, for the line counts as lossless"},
        {3, "3", "ShuntCapTLSCTankMenu_8", "&8 Shunt Cap Shorted T Line",
         "A shorted stub for the coil: at 45 degrees a zero at 4 F0 and the next pass band just above it; no coil's loss, but the capacitor's"},
        {4, "4", "TLOCTLSCTankMenu_9", "&9 Open and Shorted T Lines",
         "No lumped parts: at 45 degrees zeros at 2 and 4 F0, further pass bands near 3 and 5 F0; no loss, for lines count as lossless"},
        {9, "9", "TLSCTankMenu_10", "1&0 Shorted T Line",
         "One line of about a quarter wave: zeros near 2 and 4 F0, further pass bands near 3 and 5 F0; no loss, for lines count as lossless"}}, "TankTypeItem"},
    {InverterType, "inverter", Word, 0, PutInverter, none, {
        {0, "inductor", "InductorInverterMenu_1", "&1 Inductor", ""},
        {1, "capacitor", "CapacitorInverterMenu_2", "&2 Capacitor", ""},
        {4, "line", "TLINInverterMenu_3", "&3 T Line", ""}}, "InverterTypeItem"},
    {TankUnits, "tank-units", Word, 0, CoupledField<&DC::TankUnits>::Put, none, {
        {0, "nH", "nHButton", "&nH", "Tank values are inductances in nH"},
        {1, "uH", "uHButton", "&uH", "Tank values are inductances in uH"},
        {2, "pF", "pFButton", "&pF", "Tank values are capacitances in pF"},
        {3, "nF", "nFButton", "n&F", "Tank values are capacitances in nF"},
        {4, "ohms", "OhmsButton", "Tank &Z", "Tank values are levels in ohms, from which L and C follow"}}, "TankUnitsItem"},
    Switch(AlternateMatch, "alternate-match", Word, 1, CoupledField<&DC::AlternateMatch>::Put, "on", "AltInverterBox",
           "&Alternate Match", "Match both ends by the dual inverter: a capacitor for an inductor and the reverse"),
    {NortonType, "norton-type", Word, 0, PutNortonType, none, {
        {0, "t-cap", "TCapMenu", "&T  Cap", "T  Cap"},
        {1, "t-ind", "TIndMenu", "T  &Ind", "T  Ind"},
        {2, "pi-cap", "PiCapMenu", "&Pi Cap", "Pi Cap"},
        {3, "pi-ind", "PiIndMenu", "Pi I&nd", "Pi Ind"}}, "NortonTypeItem"},
    {NortonGoal, "optimize", Word, 1, none, none, {
        {0, "c", "OptimizeCButton", "Optimize &C's", "Make the capacitors as even as possible"},
        {1, "l", "OptimizeLButton", "Optimize &L's", "Make the inductors as even as possible"}}, "OptimizeItem"},
    Switch(AutoOptimize, "auto-optimize", Word, 0, none, "on", "AutoOptimizeBox", "&Auto Optimize",
           "Optimize on every change in this window; off: K and M have spin buttons of their own"),
    Switch(Absorb, "absorb", Word, 0, Field<&D::AbsorbParasitics>::Put, "on", "AbsorbBox", "Absorb Parasitics (&K)",
           "Refit every L and C so that real parts give the ideal shape with constant loss"),
    Switch(FitWidth, "fit-width", Word, 0, Field<&D::FitWidth>::Put, "on", "FitWidthBox", "Fit Width (&J)",
           "Adjust what the synthesis is given until centre and width are what was asked for"),
    {CapAbsolute, "cap-abs", Word, 0, PutCapAbsolute, none, {
        {0, "off", "CapAbsOffButton", "&Off", "Capacitors below 10 pF have the tolerance of all"},
        {1, "0.1", "CapAbs01Button", "0.1 &pF", "Capacitors below 10 pF: within 0.1 pF"},
        {2, "0.25", "CapAbs025Button", "0.25 p&F", "Capacitors below 10 pF: within 0.25 pF"},
        {3, "0.5", "CapAbs05Button", "0.5 pF (&J)", "Capacitors below 10 pF: within 0.5 pF"}}, "CapAbsItem"},
    {Draw, "draw", Word, 0, PutDraw, none, {
        {0, "uniform", "UniformButton", "&Uniform", "All values within the tolerance are equally likely"},
        {1, "normal", "NormalButton", "Nor&mal", "Normal with a standard deviation of a third of the tolerance, cut there"}}, "DrawItem"},
    {Overlay, "overlay", Word, 0, Field<&D::Overlay>::Put, none, {
        {0, "both", "OverlayBothButton", "&Both", "Over the traces lie the runs, their lowest and highest, and the range of 90 % of them"},
        {1, "runs", "OverlayRunsButton", "Run&s", "Over the traces lie the runs alone"},
        {2, "bands", "OverlayBandsButton", "Ban&ds", "Over the traces lie the lowest and highest of the runs and the range of 90 % of them"}}, "OverlayItem"},
};
// clang-format on

}  // namespace

const std::vector<ChoiceTable>& ChoiceTables() {
    return tables;
}

const ChoiceTable& TableOf(ChoiceId id) {
    return tables[static_cast<std::size_t>(id)];
}

bool IsSwitch(ChoiceId id) {
    return !*TableOf(id).Rows.front().Component;
}

const ChoiceRow* FindRow(ChoiceId id, int code) {
    for (const ChoiceRow& row : TableOf(id).Rows)
        if (row.Code == code) return &row;
    return nullptr;
}

std::optional<int> CodeOfWord(ChoiceId id, std::string_view word) {
    for (const ChoiceRow& row : TableOf(id).Rows)
        if (row.Word == word) return row.Code;
    return {};
}

std::optional<ChoiceCode> FindComponent(std::string_view component) {
    for (const ChoiceTable& table : tables)
        for (const ChoiceRow& row : table.Rows)
            if (*row.Component && row.Component == component) return ChoiceCode{table.Id, row.Code};
    return {};
}

std::string DesignTitle(const FilterDesign& design) {
    const ChoiceRow* const family = FindRow(Response, static_cast<int>(design.ResponseType));
    const ChoiceRow* const pass = FindRow(Pass, static_cast<int>(design.PassType));
    return std::to_string(design.NumPoles) + (family ? family->Title : " Pole Butterworth") +
           (pass ? pass->Title : "") + (HasEdits(design) ? " (edited)" : "");
}

std::string OrderText(const FilterDesign& design) {
    if (!IsElliptic(design.ResponseType)) return {};
    return std::to_string(design.NumPoles) + (design.NumPoles == 1 ? " trap" : " traps") +
           ", order " + std::to_string(OrderOf(design.ResponseType, design.NumPoles));
}

}  // namespace ladderwise
