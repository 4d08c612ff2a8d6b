// From typed inputs to the analysed ladder: sweep grid, bounds of every box, forced loads, control
// states, worst case, notes and the scale of the group delay.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "app/pipeline/Choices.h"
#include "app/pipeline/NamedSettings.h"
#include "app/pipeline/Notes.h"
#include "app/pipeline/PlotQuantities.h"
#include "app/pipeline/Updownfunctions.h"

namespace ladderwise {
namespace {

using Settings = std::vector<std::pair<std::string, std::string>>;

/// A calculation with the messages that it gave.
struct Session {
    std::unique_ptr<Calculation> Calc = std::make_unique<Calculation>();
    std::vector<std::string> Messages{};

    MessageCallback Report() {
        return [this](const std::string& caption, const std::string& text) {
            Messages.push_back(caption + ": " + text);
        };
    }
    void Set(const Settings& settings) {
        for (const auto& [name, value] : settings)
            EXPECT_EQ(ApplySetting(*Calc, name, value, Report()), std::nullopt) << name;
    }
    void Read() { ReadInputs(Calc->Inputs, Calc->Design, Report()); }
    void Run(const Settings& settings, const PlotRunCallback& plotRun = {}) {
        Set(settings);
        Read();
        Calculate(*Calc, Report(), plotRun);
    }
    double InUse(const std::string& name) {
        for (const SettingInUse& setting : SettingsInUse(*Calc))
            if (setting.Name == name && std::holds_alternative<double>(setting.Value))
                return std::get<double>(setting.Value);
        return std::numeric_limits<double>::quiet_NaN();
    }
};

constexpr PassType passes[] = {PassType::LowPass,           PassType::HighPass,
                               PassType::BandPassCanonical, PassType::Notch,
                               PassType::DirectCoupled,     PassType::Norton};
constexpr int responseCodes[] = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13};

TEST(Pipeline, SweepGridOfEveryType) {
    const struct {
        SweepType Sweep;
        PassType Pass;
        double BandWidth, F1, F2;  ///< Hz; F0 is 200 MHz
    } cases[] = {{SweepType::Linear, PassType::LowPass, 40e6, 0.0, 400e6},
                 {SweepType::Linear, PassType::HighPass, 40e6, 0.0, 400e6},
                 {SweepType::Linear, PassType::Notch, 40e6, 100e6, 300e6},
                 {SweepType::Linear, PassType::BandPassCanonical, 80e6, 1.0, 400e6},  // just zero
                 {SweepType::Linear, PassType::Norton, 100e6, 1.0, 450e6},
                 {SweepType::OneOctave, PassType::LowPass, 40e6, 100e6, 400e6},
                 {SweepType::TwoOctaves, PassType::Notch, 40e6, 50e6, 800e6},
                 {SweepType::ThreeOctaves, PassType::LowPass, 40e6, 25e6, 1.6e9},
                 {SweepType::OneDecade, PassType::HighPass, 40e6, 20e6, 2e9},
                 {SweepType::TwoDecades, PassType::LowPass, 40e6, 2e6, 20e9}};
    const auto design = std::make_unique<FilterDesign>();
    const auto& f = design->SweepFreqs;
    for (const auto& c : cases) {
        SCOPED_TRACE(static_cast<int>(c.Sweep));
        design->SweepType = c.Sweep;
        design->PassType = c.Pass;
        design->BandWidth = c.BandWidth;
        BuildSweepGrid(*design);
        EXPECT_NEAR(design->SweepF1, c.F1, 1e-15 * c.F1);
        EXPECT_NEAR(design->SweepF2, c.F2, 1e-15 * c.F2);
        EXPECT_NEAR(f[0], std::max(c.F1, 1.0), 1e-15 * c.F2);
        const bool linear = c.Sweep == SweepType::Linear;
        const double step = linear ? f[513] - f[512] : f[513] / f[512];
        for (int i = 2; i < NumSweepPoints; ++i)
            ASSERT_NEAR(linear ? f[i] - f[i - 1] : f[i] / f[i - 1], step, 1e-11 * step);
        const double next = linear ? f[1023] + step : f[1023] * step;  // one step short of F2
        EXPECT_NEAR(next, c.F2, 1e-11 * c.F2);
    }
}

TEST(Pipeline, BoundsAndDefaultOfEveryBox) {
    // Values in use are in SI units; F0 is 200 MHz but where it is set itself.
    const struct {
        const char *Name, *TooLow;
        double Minimum;
        double Default;
        const char* TooHigh;
        double Maximum;
        const char* Fit;
        double InUse;
    } cases[] = {{"poles", "0", 1, 3, "11", 10, "10", 10},
                 {"ripple", "0.0009", 0.001, 0.2, "1.01", 1, "1", 1},
                 {"f0", "0.0009", 1e3, 1e6, "100001", 1e11, "145.825", 145.825e6},
                 {"bw", "0.9", 1e6, 20e6, "398.1", 398e6, "39.876", 39.876e6},
                 {"bw-percent", "0.4", 0.5, 10, "199.1", 199, "12.3456", 12.3456},
                 {"atten", "4.9", 5, 40, "101", 100, "55.55", 55.55},
                 {"trap", "0", 1, 1, "5", 4, "4", 4},
                 {"r-source", "0", 0.001, 50, "1.1e6", 1e6, "75.25", 75.25},
                 {"r-load", "-50", 0.001, 50, "1e400", 1e6, "0.001", 0.001},
                 {"ind-q", "0", 0.1, 35, "1e10", 1e9, "123.4", 123.4},
                 {"ind-c", "-1", 0, 0.25e-12, "1e7", 1e-6, "0", 0},
                 {"cap-l", "-1", 0, 0.5e-9, "1e7", 1e-3, "1.25", 1.25e-9},
                 {"cap-r", "-1", 0, 0.25, "1e7", 1e6, "0", 0},
                 {"runs", "0", 1, 100, "1001", 1000, "1000", 1000},
                 {"threshold", "-201", -200, -20, "201", -200, "-30.5", -30.5}};
    std::set<std::string> tested = {"gd-scale", "percent-change"};  // read by other stages
    for (const auto& c : cases) {
        tested.insert(c.Name);
        const struct {
            const char* Typed;
            double InUse;
            bool Replaced;
        } entries[] = {{c.TooLow, c.Minimum, true},
                       {"", c.Default, true},
                       {"nan", c.Default, true},
                       {c.TooHigh, c.Maximum, true},
                       {c.Fit, c.InUse, false}};
        for (const auto& e : entries) {
            SCOPED_TRACE(std::string(c.Name) + " \"" + e.Typed + "\"");
            Session session;
            session.Set({{c.Name, e.Typed}});
            session.Read();
            const double value = session.InUse(c.Name);
            EXPECT_NEAR(value, e.InUse, 1e-14 * std::abs(e.InUse));
            bool named = false;
            for (const NamedBox& box : NamedBoxes(session.Calc->Inputs)) {
                if (std::string(box.Name) != c.Name) continue;
                named = true;
                EXPECT_EQ(box.Box->Colour == BoxColour::Silver, e.Replaced);
                EXPECT_EQ(box.Box->ReplacedText.value_or("-"), e.Replaced ? e.Typed : "-");
            }
            EXPECT_TRUE(named);
            session.Read();  // what was written back keeps its exact value
            EXPECT_EQ(session.InUse(c.Name), value);
        }
    }
    for (const NamedBox& box : NamedBoxes(DesignInputs{}))
        EXPECT_TRUE(tested.count(box.Name)) << box.Name << " has no row here";
}

TEST(Pipeline, ThresholdIsNeverPositive) {
    for (const auto& [typed, level] :
         {std::pair{"20", -20.0}, {"-20", -20.0}, {"0", 0.0}, {"0.5", -0.5}, {"200", -200.0}}) {
        Session session;
        session.Set({{"threshold", typed}});
        session.Read();
        EXPECT_EQ(session.Calc->Design.PhaseGDThreshold, level);
    }
}

TEST(Pipeline, LoadForcedByTheResponse) {
    for (const int code : responseCodes) {
        Session session;
        session.Set({{"r-source", "75"}, {"r-load", "20"}});
        session.Calc->Design.ResponseType = static_cast<ResponseType>(code);
        session.Read();
        const double wanted = code <= 1 ? 20.0 : code == 7 ? 150.0 : code == 8 ? 37.5 : 75.0;
        EXPECT_EQ(session.Calc->Design.RLoad, wanted) << code;
        EXPECT_EQ(session.Calc->Inputs.RLBox.ExactValue, wanted) << code;
        EXPECT_EQ(session.Calc->Design.RSource, 75.0);
    }
}

TEST(Pipeline, BandWidthUnits) {
    Session session;
    DesignInputs& inputs = session.Calc->Inputs;
    FilterDesign& design = session.Calc->Design;
    session.Set({{"pass", "band-pass"}, {"f0", "145.825"}, {"bw", "12.3456"}});
    session.Read();
    ChooseBandWidthUnit(inputs, design, true);
    EXPECT_EQ(inputs.BandWidthBox.Text, "8.47");  // 12.3456 / 145.825
    session.Read();
    EXPECT_NEAR(design.BandWidth, 12.3456e6, 1e-8);
    session.Set({{"f0", "291.65"}});  // twice: percents follow F0
    session.Read();
    EXPECT_NEAR(design.BandWidth, 24.6912e6, 1e-7);
    ChooseBandWidthUnit(inputs, design, false);
    EXPECT_EQ(inputs.BandWidthBox.Text, "24.7");
    session.Set({{"f0", "100"}});  // megahertz stay
    session.Read();
    EXPECT_NEAR(design.BandWidth, 24.6912e6, 1e-7);
}

TEST(Pipeline, ControlStates) {
    for (const PassType pass : passes)
        for (const int code : responseCodes)
            for (const bool flag : {false, true}) {
                Session session;
                FilterDesign& design = session.Calc->Design;
                design.PassType = pass;
                design.ResponseType = static_cast<ResponseType>(code);
                session.Calc->Inputs.WorstCase = flag;
                const ControlStates states = StatesFor(session.Calc->Inputs, design, flag);
                const int p = static_cast<int>(pass);
                SCOPED_TRACE("pass " + std::to_string(p) + " response " + std::to_string(code));
                const bool traps = code >= 7 && code <= 11;
                EXPECT_EQ(states.PulseEnabled, !flag);
                EXPECT_EQ(states.BandWidthEnabled, p >= 2);
                EXPECT_EQ(states.RippleEnabled, traps || code == 1);
                EXPECT_EQ(states.AttenEnabled, traps);
                EXPECT_EQ(states.CountsTraps, traps);
                EXPECT_EQ(states.TrapPanelVisible, traps && (p == 2 || p == 3 || flag));
                EXPECT_EQ(states.RefAtPeakEnabled, p == 2 || p == 4 || p == 5);
            }
}

TEST(Pipeline, NoEllipticCoupledBandPass) {
    const std::string refusal =
        "Program Info: Direct Coupled and Norton Transform filters can't use an Elliptic "
        "prototype. \nUsing a Butterworth prototype instead. \nIf you want an Elliptic Bandpass, "
        "choose Band Pass Canonical. \nThen choose an Elliptic prototype.";
    for (const std::string pass : {"direct-coupled", "norton"}) {
        Session passFirst, responseFirst;
        passFirst.Set({{"pass", pass}, {"response", "elliptic-c"}});
        EXPECT_EQ(passFirst.Calc->Design.ResponseType, ResponseType::Butterworth);
        EXPECT_EQ(passFirst.Messages, std::vector{refusal});
        responseFirst.Set({{"response", "elliptic-e"}, {"pass", pass}});
        EXPECT_EQ(responseFirst.Calc->Design.ResponseType, ResponseType::Chebyshev);
        EXPECT_TRUE(responseFirst.Messages.empty());
    }
}

TEST(Pipeline, LowPassPrototypeHasTheGValues) {
    Session session;
    session.Run({{"parts", "real"}, {"std", "on"}, {"pass", "low-pass-prototype"}});
    const FilterDesign& design = session.Calc->Design;
    for (int calculation = 1; calculation <= 2; ++calculation) {
        EXPECT_NEAR(design.F0, 0.15915, 1e-9);
        EXPECT_EQ(design.RSource, 1.0);
        EXPECT_EQ(design.RLoad, 1.0);
        EXPECT_EQ(session.Calc->Inputs.F0Box.Colour, BoxColour::Normal);
        // 3-pole Butterworth: 1, 2, 1; the given F0 differs from 1 / 2 pi by 3.1e-5.
        EXPECT_NEAR(design.Elements[1].V2, 1.0, 4e-5);
        EXPECT_NEAR(design.Elements[2].V1, 2.0, 8e-5);
        EXPECT_NEAR(design.Elements[3].V2, 1.0, 4e-5);
        session.Run({});
    }
    session.Run({{"pass", "high-pass"}});
    EXPECT_NEAR(design.F0, 1e3, 1e-9);
    EXPECT_EQ(session.Calc->Inputs.F0Box.Colour, BoxColour::Silver);
}

TEST(Pipeline, SlotsBeyondTheLadderStayEmpty) {
    for (const PassType pass : passes)
        for (const int code : responseCodes)
            for (const char* const parts : {"ideal", "deembed"}) {
                Session session;
                session.Set({{"parts", parts},
                             {"std", parts == std::string("ideal") ? "off" : "on"},
                             {"poles", "5"},
                             {"worst-case", "on"},
                             {"runs", "2"}});
                FilterDesign& design = session.Calc->Design;
                design.PassType = pass;
                design.ResponseType = static_cast<ResponseType>(code);
                design.Elements.fill({ElementType::ShuntLC, 1.0, 2.0, 3.0, 4.0});  // from before
                session.Run({});
                SCOPED_TRACE("pass " + std::to_string(static_cast<int>(pass)) + " response " +
                             std::to_string(code));
                ASSERT_EQ(design.NumElements == 0, design.Flags.Missing != MissingStage::None);
                for (int slot = design.NumElements + 1; slot < NumSlots; ++slot) {
                    EXPECT_EQ(static_cast<int>(design.Elements[slot].Type), 26);
                    for (int row = 0; row < 4; ++row)
                        EXPECT_EQ(design.Elements[slot].Value(row), 1e50);
                }
            }
}

const Settings bandPassWorstCase = {{"pass", "band-pass"}, {"response", "chebyshev"},
                                    {"poles", "3"},        {"parts", "real"},
                                    {"worst-case", "on"},  {"runs", "12"}};

bool SameElements(const ElementList& a, const ElementList& b) {
    for (int slot = 0; slot < NumSlots; ++slot)
        for (int row = 0; row < 4; ++row)
            if (a[slot].Value(row) != b[slot].Value(row)) return false;
    return true;
}

TEST(WorstCase, ExtremesBracketEveryRunAndTheNominalLadderReturns) {
    Session session;
    const FilterDesign& design = session.Calc->Design;
    std::vector<double> low(NumSweepPoints, 1e9), high(NumSweepPoints, -1e9);
    std::vector<int> runs;
    ElementList nominal;
    SweepResponse nominalResponse;
    session.Run(bandPassWorstCase, [&](int run) {
        runs.push_back(run);
        if (run == 0) {
            nominal = design.Elements;
            nominalResponse = design.Response;
            return;
        }
        EXPECT_FALSE(SameElements(design.Elements, nominal));
        for (int i = 0; i < NumSweepPoints; ++i) {
            const double db = 20 * std::log10(std::hypot(design.Response.TransferRe[i],
                                                         design.Response.TransferIm[i]));
            low[i] = std::min(low[i], db);
            high[i] = std::max(high[i], db);
        }
    });
    ASSERT_EQ(runs.size(), 13u);
    for (int k = 0; k <= 12; ++k)
        EXPECT_EQ(runs[k], k);
    EXPECT_TRUE(SameElements(design.Elements, nominal));
    EXPECT_EQ(design.Response.TransferRe, nominalResponse.TransferRe);
    EXPECT_EQ(design.Response.ReflectionDb, nominalResponse.ReflectionDb);
    const WorstCaseResult& result = session.Calc->WorstCase;
    EXPECT_EQ(result.Runs, 12);
    int centre = 0;
    for (int i = 0; i < NumSweepPoints; ++i) {
        EXPECT_NEAR(result.LowDb[i], low[i], 1e-9);
        EXPECT_NEAR(result.HighDb[i], high[i], 1e-9);
        const auto& f = design.SweepFreqs;
        if (std::abs(f[i] - design.F0) < std::abs(f[centre] - design.F0)) centre = i;
    }
    EXPECT_NEAR(result.SpreadAtF0Db, high[centre] - low[centre], 1e-9);
    EXPECT_GT(result.PassBandLossDb, 0.0);
}

TEST(WorstCase, TheSeedRepeatsTheRuns) {
    Session first, second, other;
    SeedFromClock(*first.Calc);
    first.Run(bandPassWorstCase);
    const WorstCaseResult original = first.Calc->WorstCase;
    second.Set({{"seed", std::to_string(original.Seed)}});
    second.Run(bandPassWorstCase);
    EXPECT_EQ(second.Calc->WorstCase.LowDb, original.LowDb);
    EXPECT_EQ(second.Calc->WorstCase.HighDb, original.HighDb);
    RepeatAnalysis(*first.Calc, {}, {});
    EXPECT_EQ(first.Calc->WorstCase.LowDb, original.LowDb);
    other.Set({{"seed", std::to_string(original.Seed ^ 1u)}});
    other.Run(bandPassWorstCase);
    EXPECT_NE(other.Calc->WorstCase.LowDb, original.LowDb);
    first.Run({});  // another calculation draws another seed
    EXPECT_NE(first.Calc->WorstCase.Seed, original.Seed);
    first.Run({{"worst-case", "off"}});
    EXPECT_EQ(first.Calc->WorstCase.Runs, 0);
}

/// "kind name" of every note, idle ones in brackets.
std::vector<std::string> NotesOf(const Calculation& calculation) {
    std::vector<std::string> notes;
    for (const Note& note : CollectNotes(calculation)) {
        const std::string text = std::string(NameOf(note.Kind)) + " " + note.Name;
        notes.push_back(note.Idle ? "(" + text + ")" : text);
        EXPECT_FALSE(note.Text.empty());
    }
    return notes;
}

TEST(Notes, WhatABuilderMustKnow) {
    const struct {
        Settings Set;
        std::vector<std::string> Notes;
    } cases[] = {
        {{}, {}},
        {{{"response", "chebyshev"}, {"poles", "4"}}, {"load-moved r-load"}},
        {{{"r-load", "25"}}, {"form-forced form"}},
        {{{"r-load", "25"}, {"form", "lcl"}}, {}},
        {{{"f0", "?"}}, {"replaced f0", "(replaced bw)"}},  // 1 MHz, 40 MHz wide
        {{{"bw", "?"}}, {"(replaced bw)"}},
        {{{"bw-percent", "?"}, {"pass", "notch"}}, {"replaced bw-percent"}},
        {{{"ripple", "9"}}, {"(replaced ripple)"}},
        {{{"ripple", "9"}, {"response", "chebyshev"}}, {"replaced ripple"}},
        {{{"atten", ""}, {"trap", "7"}}, {"(replaced atten)", "(replaced trap)"}},
        {{{"response", "elliptic-c"}, {"trap", "7"}}, {"missing response", "(replaced trap)"}},
        {{{"pass", "norton"}}, {"missing pass"}},
        {{{"pass", "direct-coupled"}, {"runs", "0"}}, {"missing pass", "replaced runs"}},
        {{{"traces", "pulse"}}, {"missing traces"}},
    };
    for (const auto& c : cases) {
        Session session;
        session.Run(c.Set);
        EXPECT_EQ(NotesOf(*session.Calc), c.Notes);
        const bool warns = std::any_of(c.Notes.begin(), c.Notes.end(),
                                       [](const std::string& n) { return n.front() != '('; });
        const StatusLine status = DescribeStatus(*session.Calc);
        EXPECT_EQ(status.Warning, warns);
        EXPECT_EQ(status.Text.empty(), !warns);
    }
}

TEST(Notes, ValuesThatCannotBeBuilt) {
    const struct {
        double Value;
        const char* Fault;  ///< empty: it can
    } cases[] = {{-3e-9, "is negative"},
                 {0.0, "is zero"},
                 {9e-19, "is too small to build"},
                 {UnusedValue, "is not finite"},
                 {-std::numeric_limits<double>::infinity(), "is negative"},
                 {std::numeric_limits<double>::quiet_NaN(), "is not a number"},
                 {3e-9, ""}};
    for (const auto& c : cases) {
        Session session;
        session.Run({});
        session.Calc->Design.Elements[2].V1 = c.Value;
        AnalyseAndPlot(*session.Calc, session.Report(), {});
        const std::vector<Note> notes = CollectNotes(*session.Calc);
        ASSERT_EQ(notes.empty(), std::string(c.Fault).empty()) << c.Value;
        if (notes.empty()) continue;
        EXPECT_EQ(notes[0].Name, "slot 2");
        EXPECT_NE(notes[0].Text.find("Slot 2 SeriesInd: L = "), std::string::npos);
        EXPECT_NE(notes[0].Text.find(c.Fault), std::string::npos) << notes[0].Text;
    }
}

TEST(Pipeline, TheLoadMovedByChebyshevKeepsItsExactValue) {
    Session session;
    session.Run({{"response", "chebyshev"}, {"poles", "4"}});
    const NumberBox& box = session.Calc->Inputs.RLBox;
    const double moved = session.Calc->Design.RLoad;
    EXPECT_LT(moved, 50.0);
    EXPECT_EQ(box.Colour, BoxColour::Yellow);
    EXPECT_EQ(box.ExactValue, moved);
    session.Run({{"poles", "3"}});
    EXPECT_EQ(session.Calc->Design.RLoad, moved);
    EXPECT_EQ(box.Colour, BoxColour::Normal);
}

TEST(Pipeline, GroupDelayScale) {
    const double computed = 5.04e-8;
    Session session;
    DesignInputs& inputs = session.Calc->Inputs;
    FilterDesign& design = session.Calc->Design;
    NumberBox& box = inputs.ScaleBox;
    const auto settle = [&](bool automatic) {
        inputs.AutoScale = automatic;
        SettleGroupDelayScale(inputs, design, computed, session.Report());
        return design.GDFullScale;
    };
    EXPECT_EQ(settle(true), computed);
    EXPECT_EQ(box.Text, "50E-9");
    EXPECT_EQ(settle(false), computed);  // still the program's own text
    const struct {
        const char* Typed;
        double Scale;
        const char* Shown;
    } cases[] = {{"1e-7", 1e-7, "1e-7"},        {"5.0E-6", 5e-6, "5.0E-6"}, {"1", 5e-6, "5.0E-6"},
                 {"500E-12", 5e-10, "500E-12"}, {"0", 5e-10, "500E-12"},    {"x", 5e-8, "50E-9"}};
    for (const auto& c : cases) {
        box.Type(c.Typed);
        EXPECT_NEAR(settle(false), c.Scale, 1e-15 * c.Scale) << c.Typed;
        EXPECT_EQ(box.Text, c.Shown);
        EXPECT_EQ(box.Colour == BoxColour::Silver, box.Text != c.Typed);
    }
    inputs.Traces.GroupDelay = true;  // the box plays a part, and was just replaced
    EXPECT_EQ(NotesOf(*session.Calc), std::vector<std::string>{"replaced gd-scale"});
    EXPECT_EQ(settle(true), computed);
    EXPECT_EQ(box.Colour, BoxColour::Normal);
    EXPECT_TRUE(NotesOf(*session.Calc).empty());
    EXPECT_TRUE(session.Messages.empty());
}

TEST(Pipeline, AnEmptyLadderHasNoGroupDelayScale) {
    Session session;
    session.Run({{"pass", "direct-coupled"}});
    const auto quantities = std::make_unique<DisplayQuantities>();
    for (const bool automatic : {true, false}) {
        session.Calc->Inputs.AutoScale = automatic;
        DerivePlotQuantities(*session.Calc, 0, *quantities, session.Report());
        EXPECT_EQ(session.Calc->Design.GDFullScale, 0.0);
    }
    EXPECT_TRUE(session.Messages.empty());
}

}  // namespace
}  // namespace ladderwise
