// Direct-coupled band-passes: against an independent evaluation of the synthesis, and by what the
// ladders do.
#include <gtest/gtest.h>

#include "directcoupled/DirectCoupled.h"
#include "numbers/Matherrmain.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/Notes.h"
#include "pipeline/TankValues.h"
#include "prototypes/Prototype.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

double GainDb(const FilterDesign& design, double f) {
    return ComplexToDb(AnalysePoint(design, design.F0, f).Transfer);
}

FilterDesign Coupled(TankType tank, InverterType inverter, TankUnits units, double value, int n) {
    FilterDesign design;
    design.NumPoles = n;
    design.DirectCoupled.TankType = tank;
    design.DirectCoupled.InverterType = inverter;
    design.DirectCoupled.TankUnits = units;
    design.DirectCoupled.TankValues.fill(value);
    return design;
}

struct Case {
    int Tank, Inverter, Units, Alternate, N;
    double Value;
    double GainDb[2];  ///< at 196 and 215 MHz
    const char *First, *Last;
};

// g = 1, 2, 1, 1.5, values rising by a tenth from tank to tank, 50 and 75 ohm, 20 MHz at 200 MHz.
// The numbers come from a model in Python that was written apart from this code.
TEST(DirectCoupled, EveryInverterTankAndUnit) {
    const Case cases[] = {
        {1, 0, 0, 1, 3, 20, {-0.015355423, -8.796177647}, "Min L1 = 4.96E-9", "Min L3 = 7.44E-9"},
        {5, 0, 2, 0, 2, 30, {-0.311664679, -6.121095727}, "Max C1 = 111E-12", "Max C2 = 147E-12"},
        {2, 1, 0, 1, 3, 20, {-0.003131403, -11.328694520}, "Min L1 = 4.82E-9", "Min L3 = 7.23E-9"},
        {6, 1, 2, 0, 4, 30, {-0.318229528, -14.812493957}, "Max C1 = 100E-12", "Max C4 = 100E-12"},
        {0, 2, 0, 1, 3, 300, {-0.031960878, -9.143472653}, "Max L1 = 359E-9", "Max L3 = 539E-9"},
        {0, 2, 2, 0, 1, 2, {-0.099055726, -1.561142829}, "Min C1 = 1.60E-12", "Min C1 = 1.06E-12"},
        {0, 3, 0, 0, 4, 300, {-0.457011564, -12.945739043}, "Max L1 = 396E-9", "Max L4 = 891E-9"},
        {0,
         3,
         3,
         1,
         2,
         .002,
         {-0.253389770, -7.170235202},
         "Min C1 = 1.77E-12",
         "Min C2 = 589E-15"},
        {3, 4, 0, 1, 3, 20, {-0.017418510, -12.054737735}, "Min L1 = 6.13E-9", "Min L3 = 9.19E-9"},
        {4, 4, 2, 0, 2, 30, {-0.287005816, -9.079162562}, "Max C1 = 99.8E-12", "Max C2 = 133E-12"},
        {9, 4, 4, 1, 3, 150, {-0.006464037, -13.440665365}, "Min R1 = 50.0E0", "Min R3 = 75.0E0"},
        {7, 1, 4, 0, 3, 150, {-0.010313086, -7.634601160}, "Min R1 = 50.0E0", "Min R3 = 75.0E0"},
        {8, 0, 4, 1, 2, 150, {-0.308940943, -8.798554601}, "Min R1 = 50.0E0", "Min R2 = 75.0E0"},
        {9, 1, 1, 0, 3, .02, {-0.021023219, -7.762146268}, "Min L1 = 3.99E-9", "Min L3 = 5.98E-9"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::Message() << c.Tank << " " << c.Inverter << " " << c.Units);
        FilterDesign design =
            Coupled(TankType(c.Tank), InverterType(c.Inverter), TankUnits(c.Units), c.Value, c.N);
        DirectCoupledSettings& settings = design.DirectCoupled;
        for (int i = 0; i < c.N; ++i)
            settings.TankValues[i] *= 1 + 0.1 * i;
        settings.AlternateMatch = c.Alternate;
        settings.TLINLength = 60;
        settings.TLSCLength = 50;
        settings.TLOCLength = 40;
        settings.TankFactor = 0.7;
        design.RLoad = 75;
        design.BandWidth = 20e6;
        design.G = {0, 1, 2, 1, 1.5};
        design.PartModel.IndC = 0.05e-12;
        design.PartModel.CapL = 0.1e-9;
        design.PartModel.Choice = PartChoice::DeEmbed;
        CalcDirectCoupled(design, {});
        design.PartModel.Choice = PartChoice::IdealParts;
        EXPECT_EQ(design.NumElements, 2 * c.N + 1);
        EXPECT_EQ(design.Elements[design.NumElements + 1].Type, ElementType::errorBitMap);
        EXPECT_NEAR(GainDb(design, 196e6), c.GainDb[0], 1e-8);
        EXPECT_NEAR(GainDb(design, 215e6), c.GainDb[1], 1e-8);
        EXPECT_EQ(design.DirectCoupledLimits.Readouts[SourceEnd], c.First);
        EXPECT_EQ(design.DirectCoupledLimits.Readouts[LoadEnd], c.Last);
    }
}

// A level on the wrong side is taken as the termination and leaves a small inverter; one that is
// far off earns the warning. Entering the termination itself does neither.
TEST(DirectCoupled, LimitsOfTheEndTanks) {
    FilterDesign design =
        Coupled(TankType::ShuntLC, InverterType::SeriesInductor, TankUnits::TankZ, 50, 2);
    design.G = {0, 1, 1};
    design.DirectCoupled.AlternateMatch = false;
    design.DirectCoupled.TankValues = {49, 1000};
    for (const bool clamped : {true, false}) {
        CalcDirectCoupled(design, {});
        const DirectCoupledResult& limits = design.DirectCoupledLimits;
        EXPECT_EQ(limits.Clamped, (std::array{clamped, false}));
        EXPECT_EQ(limits.WarningShown, (std::array{false, true}));
        EXPECT_NEAR(design.Elements[1].V1, 0.01 * 50 / (TwoPi * 201.0e6), 1e-14);
        design.DirectCoupled.TankValues[0] = 50;
    }
    // Types from a damaged file: the ladder keeps its length and its slots stay empty.
    Recorder recorder;
    design.DirectCoupled.TankType = TankType(10);
    design.DirectCoupled.InverterType = InverterType(-1);
    CalcDirectCoupled(design, recorder.Report());
    EXPECT_EQ(recorder.Messages, (std::vector<std::string>{
                                     "Error: Default case in Inverter Schematic in DirectCoupled",
                                     "Error: Default case in Tank Schematic in DirectCoupled"}));
    EXPECT_EQ(design.NumElements, 5);
}

// 10 MHz at 200 MHz with the unit of the inverter's own kind: matched, and where it was asked for.
TEST(DirectCoupled, BandwidthAndCentre) {
    for (int tank = 0; tank <= int(TankType::ShortedLine); ++tank)
        for (const int n : {3, 5})
            for (const bool capacitor : {false, true}) {
                const int inverter = (tank == 0 ? 2 : 0) + capacitor;
                FilterDesign design = Coupled(TankType(tank), InverterType(inverter),
                                              capacitor ? TankUnits::pF : TankUnits::nH, 50, n);
                if (inverter == 3) design.DirectCoupled.TankValues.fill(5);
                design.PassType = PassType::DirectCoupled;
                design.BandWidth = 10e6;
                BuildPrototype(design, n, {});
                CalcDirectCoupled(design, {});
                EXPECT_NEAR(GainDb(design, design.F0), 0, 0.01);
                const auto edge = [&](double step) {
                    double f = design.F0;
                    while (GainDb(design, f) > -3.0103)
                        f += step;
                    return f;
                };
                const double low = edge(-5e3), high = edge(5e3);
                EXPECT_NEAR((high - low) / 10e6, inverter == 0 ? 1.15 : 1, 0.05) << tank;
                EXPECT_NEAR((high + low) / 2, design.F0, 0.06 * 10e6) << tank;
            }
}

// From typed inputs to the ladder and the notes.
TEST(DirectCoupled, InputsByName) {
    Calculation calculation;
    const std::pair<const char*, const char*> settings[] = {
        {"pass", "direct-coupled"}, {"tank", "0"},  {"inverter", "capacitor"},
        {"tank-units", "pF"},       {"tlin", "60"}, {"tank-values", "2.5,,junk,4"}};
    for (const auto& [name, value] : settings)
        EXPECT_EQ(ApplySetting(calculation, name, value, {}), std::nullopt);
    Calculate(calculation, {});
    EXPECT_EQ(calculation.Design.DirectCoupled.InverterType, InverterType::ShuntCapacitor);
    EXPECT_EQ(TankValueList(calculation.Design), "2.5,50,50");
    EXPECT_EQ(calculation.Inputs.Box(TankValueId(2)).Colour, BoxColour::Normal);
    const std::vector<Note> notes = CollectNotes(calculation);
    ASSERT_EQ(notes.size(), 3u);
    EXPECT_EQ(notes[0].Kind, NoteKind::Missed);
    EXPECT_EQ(notes[1].Kind, NoteKind::EndTank);
    EXPECT_EQ(notes[2].Text, "Tank 3 \"junk\" is no number: 50 used.");
    EXPECT_NE(ApplySetting(calculation, "tank-values", "1,2,3,4,5,6,7,8,9,10,11", {}),
              std::nullopt);
    // A band as wide as its centre frequency: listed and named, and nothing breaks.
    const std::pair<const char*, const char*> wide[] = {{"bw-percent", "150"},
                                                        {"tank-units", "nF"}};
    for (const auto& [name, value] : wide)
        ApplySetting(calculation, name, value, {});
    const std::uint64_t errors = MathErrors().ErrorCount();
    Calculate(calculation, {});
    EXPECT_GT(MathErrors().ErrorCount(), errors);
    const std::vector<Note> wideNotes = CollectNotes(calculation);
    EXPECT_EQ(wideNotes[0].Kind, NoteKind::MathError);
    // A line of half a wave inverts nothing: its impedance is no more than a rounding error.
    const std::pair<const char*, const char*> half[] = {
        {"inverter", "line"}, {"tlin", "180"}, {"bw", "10"}};
    for (const auto& [name, value] : half)
        ApplySetting(calculation, name, value, {});
    Calculate(calculation, {});
    EXPECT_EQ(CollectNotes(calculation)[0].Kind, NoteKind::Unrealisable);
}

}  // namespace
}  // namespace ladderwise
