// Designs in records: component names never change, and saving and opening loses nothing.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <memory>
#include <random>

#include "cli/JsonOutput.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Choices.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/Notes.h"
#include "pipeline/ReferenceDesign.h"
#include "pipeline/SavedDesigns.h"

using namespace ladderwise;

namespace {

/// Every component that a design file may name. Files of all users hold these: names may be added
/// here, but none may be changed or removed.
// clang-format off
const char* const frozenComponents[] = {
    "LowPassMenu", "HighPassMenu", "NotchMenu", "BandPassMenu", "DirectCoupledMenu", "NortonMenu",
    "LowPassPrototypeMenu", "ButterworthMenu", "ChebyshevMenu", "BesselFreqMenu", "BesselDelayMenu",
    "PapoulisMenu", "GaussMenu", "LinearChebyshevMenu", "EllipticAMenu", "EllipticBMenu",
    "EllipticCMenu", "EllipticDMenu", "EllipticEMenu", "CoefficientsFileMenu", "FormCLCMenu",
    "FormLCLMenu", "LinearMenu", "OneOctaveMenu", "TwoOctavesMenu", "ThreeOctavesMenu",
    "OneDecadeMenu", "TwoDecadesMenu", "BWMHzButton", "BWPercentButton", "IdealPartsButton",
    "RealPartsButton", "DeEmbedButton", "TenPercentCap", "FivePercentCap", "TwoPercentCap",
    "OnePercentCap", "TenPercentInd", "FivePercentInd", "TwoPercentInd", "OnePercentInd",
    "AbsorbBox", "FitWidthBox", "CapAbsOffButton", "CapAbs01Button", "CapAbs025Button",
    "CapAbs05Button", "UniformButton", "NormalButton", "OverlayBothButton",
    "OverlayRunsButton", "OverlayBandsButton", "StdValuesBox", "WorstCaseBox", "AutoScaleCheckBox", "PlotMag1dBBox", "PlotMagBox",
    "PlotPhaseBox", "PlotGDBox", "SeriesLCTankMenu_1", "ShuntLCTankMenu_2", "ShuntLCParCTankMenu_3",
    "ShuntLCParLTankMenu_4", "ShuntTappedCTankMenu_5", "ShuntTappedLTankMenu_6",
    "ShuntIndTLOCTankMenu_7", "ShuntCapTLSCTankMenu_8", "TLOCTLSCTankMenu_9", "TLSCTankMenu_10",
    "InductorInverterMenu_1", "CapacitorInverterMenu_2", "TLINInverterMenu_3", "nHButton",
    "uHButton", "pFButton", "nFButton", "OhmsButton", "AltInverterBox", "PlotPulseBox",
    "PlotReturnLossBox", "TCapMenu", "TIndMenu", "PiCapMenu", "PiIndMenu", "OptimizeCButton",
    "OptimizeLButton", "AutoOptimizeBox"};
// clang-format on

constexpr int randomStates = 40;

std::string Json(const Calculation& calculation) {
    return JsonText(calculation, {});
}

/// What the programs do where "Auto Optimize" is asked for: the search, then the calculation.
void Design(Calculation& calculation) {
    if (calculation.Inputs.Pass() == PassType::Norton &&
        calculation.Inputs.IsOn(ChoiceId::AutoOptimize))
        OptimizeNorton(calculation.Inputs, calculation.Design);
    Calculate(calculation, {});
}

/// Designs until no entry has to be replaced: what the first calculation corrected is the design.
void Settle(Calculation& calculation) {
    const auto unsettled = [&calculation] {
        const auto notes = CollectNotes(calculation);
        return std::any_of(notes.begin(), notes.end(), [](const Note& note) {
            return note.Kind == NoteKind::Replaced || note.Kind == NoteKind::Discarded ||
                   note.Kind == NoteKind::NoSuchOrder;
        });
    };
    Design(calculation);
    if (unsettled()) Design(calculation);
    if (unsettled()) Calculate(calculation, {});  // a search that finds no K within its bounds
}

/// Random choices and g-values everywhere, and random numbers within the bounds, as typed.
void Randomise(Calculation& calculation, std::mt19937& random) {
    const auto below = [&](std::size_t n) { return static_cast<std::size_t>(random()) % n; };
    const auto part = [&] { return static_cast<double>(random()) / 4294967295.0; };
    DesignInputs& inputs = calculation.Inputs;
    if (below(2) == 0) UseCoefficients(calculation, "3,1,2,1\n4,.7,1.8,1.8,.7\n5,1,1,2,1,0.3");
    for (const ChoiceTable& table : ChoiceTables())
        inputs.Choice(table.Id) = table.Rows[below(table.Rows.size())].Code;
    // A width that is fitted takes its time: one in eight.
    if (below(4) > 0) inputs.Choice(ChoiceId::FitWidth) = 0;
    ForbidEllipticCoupling(inputs, {});
    ReadInputs(inputs, calculation.Design, {});
    for (const InputRow& row : InputRows()) {
        if (&row != &RowOf(row.Id, inputs)) continue;
        const BoxLimits limits = LimitsOf(row, inputs, calculation.Design);
        double low = row.Id == InputId::Scale ? 1e-9 : std::stod(limits.Minimum);
        double high = row.Id == InputId::Scale ? 1e-7 : std::stod(limits.Maximum);
        if (row.Id == InputId::WorstCaseSims) high = 3;
        if (row.Id == InputId::RLoad && below(2) == 0) low = 10, high = 100;  // near the source's
        if (row.Id == InputId::RSource && below(2) == 0) low = high = 50;
        const double value = low + (high - low) * part();
        inputs.Box(row.Id).Type(row.Back == WriteBack::Whole ? FormatFixed(value, 0)
                                                             : FormatFullPrecision(value));
        if (!row.ReadLater) StepInput(row.Id, inputs, calculation.Design, {}, {});
    }
    calculation.FixedSeed = static_cast<std::uint32_t>(random());
}

}  // namespace

TEST(SavedDesigns, ComponentNamesAreFrozen) {
    for (const char* const name : frozenComponents)
        EXPECT_TRUE(FindComponent(name)) << name;
    for (const ChoiceTable& table : ChoiceTables()) {
        EXPECT_TRUE(FindField(table.Record)) << table.Name;
        for (const ChoiceRow& row : table.Rows)
            EXPECT_TRUE(!*row.Component ||
                        std::find_if(std::begin(frozenComponents), std::end(frozenComponents),
                                     [&](std::string_view name) {
                                         return name == row.Component;
                                     }) != std::end(frozenComponents))
                << row.Component << " is new: add it";
    }
}

TEST(SavedDesigns, AFreshProgramHasTheDefaultsOfTheTable) {
    EXPECT_EQ(EncodeRecord(RecordOf(*std::make_unique<Calculation>())), EncodeRecord({}));
}

TEST(SavedDesigns, EveryInputAndChoiceHasItsField) {
    EXPECT_EQ(RecordFault(InputRows(), ChoiceTables()), "");
    InputRow input = InputRows().front();
    input.Name = "new";
    for (const char* const unfit : {"NewBox", "PassItem", "Reserved1"}) {
        input.Component = unfit;
        const std::string fault = RecordFault({InputRows().front(), input}, {});
        EXPECT_EQ(fault.rfind("The input \"new\" has no field", 0), 0u) << fault;
    }
    ChoiceTable choice = ChoiceTables().front();
    choice.RecordCode = "NewCode";
    EXPECT_NE(RecordFault({}, {choice}).find("NewCode"), std::string::npos);
}

TEST(SavedDesigns, TheReasonOfAMovedLoadIsACodeAndOnceWasASentence) {
    const auto saved = std::make_unique<Calculation>();
    saved->Inputs.Choice(ChoiceId::Response) = static_cast<int>(ResponseType::BesselFreq);
    saved->Inputs.Box(InputId::RLoad).Type("75");
    Calculate(*saved, {});
    DesignRecord record = RecordOf(*saved);
    EXPECT_EQ(record.Number("RLReason"), 1);
    EXPECT_EQ(record.Text("RLWhy"), "");
    const auto wanted = [&] {
        Calculation opened;
        LoadRecord(record, opened);
        const auto& moved = opened.Inputs.Box(InputId::RLoad).Moved;
        return moved && moved->Why == LoadReason::Equal ? moved->Wanted : 0.0;
    };
    EXPECT_EQ(wanted(), 75);
    record.Number("RLReason") = 0;
    EXPECT_EQ(wanted(), 0);
    record.Text("RLWhy") = "equal to R Source, as this response needs it";
    EXPECT_EQ(wanted(), 75);
    record.Number("RLReason") = 6;
    EXPECT_EQ(wanted(), 0);
}

// The file holds what was asked for; opened with an odd order nothing moves it, and nothing is
// told.
TEST(SavedDesigns, ALoadThatIsNotMovedAnyMoreIsNotToldAsMoved) {
    const auto saved = std::make_unique<Calculation>(), opened = std::make_unique<Calculation>();
    saved->Inputs.Choice(ChoiceId::Response) = static_cast<int>(ResponseType::Chebyshev);
    saved->Inputs.Box(InputId::NumPoles).Type("6");
    Calculate(*saved, {});
    EXPECT_NE(saved->Design.RLoad, 50);
    LoadRecord(RecordOf(*saved), *opened);
    opened->Inputs.Box(InputId::NumPoles).Type("7");
    Calculate(*opened, {});
    EXPECT_EQ(opened->Design.RLoad, 50);
    EXPECT_EQ(DescribeStatus(*opened).Warnings.find("R Load"), std::string::npos);
}

TEST(SavedDesigns, AZeroKeepsItsSign) {
    const auto saved = std::make_unique<Calculation>(), opened = std::make_unique<Calculation>();
    saved->Inputs.Box(InputId::GDPhaseThreshold).Type("-0");
    Calculate(*saved, {});
    LoadRecord(RecordOf(*saved), *opened);
    Calculate(*opened, {});
    EXPECT_TRUE(std::signbit(opened->Design.PhaseGDThreshold));
}

TEST(SavedDesigns, SavingAndOpeningLosesNothing) {
    std::mt19937 random(20261);
    for (int i = 0; i < randomStates; ++i) {
        const auto saved = std::make_unique<Calculation>(),
                   opened = std::make_unique<Calculation>();
        Randomise(*saved, random);
        Settle(*saved);
        const std::string wanted = Json(*saved);
        const DesignRecord record = RecordOf(*saved);
        const auto read = DecodeRecord(EncodeRecord(record));
        ASSERT_TRUE(read);
        LoadRecord(*read, *opened);
        Calculate(*opened, {});  // opening searches nothing
        EXPECT_TRUE(Json(*opened) == wanted) << "state " << i;
        EXPECT_EQ(EncodeRecord(RecordOf(*opened)), EncodeRecord(record)) << "state " << i;
    }
}

TEST(SavedDesigns, ExchangingTwiceReturnsEverything) {
    std::mt19937 random(20262);
    for (int i = 0; i < randomStates / 2; ++i) {
        const auto calculation = std::make_unique<Calculation>();
        Randomise(*calculation, random);
        Settle(*calculation);
        const std::string first = Json(*calculation);
        ReferenceDesign reference = StoreReference(*calculation, {});
        Randomise(*calculation, random);
        Settle(*calculation);
        const std::string second = Json(*calculation);
        for (const std::string& wanted : {first, second}) {
            ExchangeReference(reference, *calculation, {});
            Calculate(*calculation, {});
            Calculate(*calculation, {});  // the first one may tell that a number counts traps now
            EXPECT_TRUE(Json(*calculation) == wanted) << "state " << i;
        }
    }
}

TEST(SavedDesigns, WhatARecordSaysIsJudgedByTheBoxes) {
    DesignRecord record;
    record.Text("PassItem") = "HighPassMen";
    record.Number("PassType") = 3;
    record.Text("ResponseItem") = record.Text("SweepItem") = "PlotMagBox";
    record.Number("ResponseType") = 12;
    record.Number("SweepType") = -1;
    record.Text("PlotMagBox") = "Something";
    record.Number("NumPoles") = 2147483647;
    record.Number("F0") = -1e308;
    record.Number("BandWidth") = 1e308;
    record.Number("CoefFileRead") = 1;
    record.Number("CoefficientTable", 12) = -3;
    record.Number("Seed") = 1e300;
    const auto opened = std::make_unique<Calculation>();
    LoadRecord(record, *opened);
    Calculate(*opened, {});
    EXPECT_EQ(opened->Design.PassType, PassType::Notch);
    EXPECT_EQ(opened->Design.ResponseType, ResponseType::Butterworth);
    EXPECT_EQ(opened->Design.SweepType, SweepType::OneDecade);
    EXPECT_TRUE(opened->Inputs.IsOn(ChoiceId::TraceMag10dB));
    EXPECT_EQ(opened->Design.NumPoles, MaxPoles);
    EXPECT_EQ(opened->Design.F0, 1000.0);
    EXPECT_DOUBLE_EQ(opened->Design.BandWidth, 1990.0);
    EXPECT_FALSE(opened->Design.CoefFileRead);
    EXPECT_FALSE(opened->FixedSeed);
}
