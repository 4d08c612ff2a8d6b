// From typed inputs to the analysed ladder: sweep grid, limits, forced loads, worst case, notes and
// the scale of the group delay.
#include <gtest/gtest.h>

#include <algorithm>
#include <memory>

#include "analysis/Magphasefunctions.h"
#include "pipeline/Choices.h"
#include "pipeline/DisplayScale.h"
#include "pipeline/NamedSettings.h"
#include "pipeline/NortonSequence.h"
#include "pipeline/Notes.h"
#include "pipeline/ResultsText.h"
#include "pipeline/Updownfunctions.h"
#include "tests/numeric/support.h"

namespace ladderwise {
namespace {

/// A calculation with the messages that it gave.
struct Session : Recorder {
    const std::unique_ptr<Calculation> Owner = std::make_unique<Calculation>();
    Calculation& Calc = *Owner;
    DesignInputs& Inputs = Calc.Inputs;
    FilterDesign& Design = Calc.Design;

    void Set(const Settings& settings) {
        for (const auto& [name, value] : settings)
            EXPECT_EQ(ApplySetting(Calc, name, value, Report()), std::nullopt) << name;
    }
    void Read(const Settings& settings = {}) {
        Set(settings);
        ReadInputs(Inputs, Design, Report());
    }
    void Choose(ChoiceId id, int code) { ladderwise::Choose(Inputs, Design, id, code); }
    void Run(const Settings& settings, const PlotRunCallback& plotRun = {}) {
        Set(settings);
        Calculate(Calc, Report(), plotRun);
    }
    std::string Status() {
        const StatusLine status = DescribeStatus(Calc);
        return status.Warnings + status.Hints;
    }
    double InUse(const std::string& name) {
        for (const SettingInUse& setting : SettingsInUse(Calc))
            if (setting.Name == name && std::holds_alternative<double>(setting.Value))
                return std::get<double>(setting.Value);
        return NaN;
    }
};

/// Calls `check` with a fresh session of every pass type and response.
template <typename Check>
void ForEveryFilter(const Check& check) {
    for (int pass = 0; pass < 6; ++pass)
        for (const int response : {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 13}) {
            SCOPED_TRACE(testing::Message() << "pass " << pass << " response " << response);
            Session session;
            session.Inputs.Choice(ChoiceId::Pass) = pass;
            session.Inputs.Choice(ChoiceId::Response) = response;
            check(session, pass, response);
        }
}

// Grids are compared with an independent model elsewhere; these are their lowest frequencies.
TEST(Pipeline, SweepsStartAtOneHertz) {
    // clang-format off
    const struct { PassType Pass; double BandWidth, F1, F0; } cases[] = {  // Hz
        {PassType::HighPass, 40e6, 0.0, 1.0}, {PassType::Norton, 100e6, 1.0, 1.0},
        {PassType::BandPassCanonical, 80e6, 1.0, 1.0},  // just zero
        {PassType::Notch, 40e6, 100e6, 100e6}};
    // clang-format on
    FilterDesign design;  // F0 200 MHz
    design.SweepType = SweepType::Linear;
    for (const auto& c : cases) {
        design.PassType = c.Pass;
        design.BandWidth = c.BandWidth;
        BuildSweepGrid(design);
        EXPECT_EQ(design.SweepF1, c.F1);
        EXPECT_EQ(design.SweepFreqs[0], c.F0);
    }
    design.PassType = PassType::LowPass;
    design.F0 = 0.159;  // 1 Hz lies beyond the whole sweep
    BuildSweepGrid(design);
    EXPECT_LT(design.SweepFreqs[0], design.SweepFreqs[1]);
}

TEST(Pipeline, HandMadeValuesCanBeBroughtBack) {
    Session session;
    session.Run({});
    session.Design.Elements[2].V1 = 1e-9;
    AnalyseAndPlot(session.Calc, session.Report(), {});
    EXPECT_TRUE(DesignTitle(session.Design).ends_with("(edited)"));
    session.Run({{"traces", "gd"}});
    EXPECT_NE(session.Design.Elements[2].V1, 1e-9);
    EXPECT_EQ(CollectNotes(session.Calc).at(0).Kind, NoteKind::Discarded);
    EXPECT_TRUE(BringBackEdits(session.Calc));
    AnalyseAndPlot(session.Calc, session.Report(), {});
    EXPECT_EQ(session.Design.Elements[2].V1, 1e-9);
    EXPECT_EQ(CollectNotes(session.Calc).at(0).Kind, NoteKind::Edited);
    EXPECT_FALSE(BringBackEdits(session.Calc));
}

TEST(Pipeline, LimitsAndDelayScaleAsTyped) {
    const Settings atTheLimit[] = {{{"f0", "35"}, {"bw", "0.175"}},
                                   {{"f0", "57"}, {"bw", "113.43"}}};
    for (const Settings& settings : atTheLimit) {
        Session session;
        session.Run({{"pass", "band-pass"}});
        session.Run(settings);
        EXPECT_EQ(session.Inputs.Box(InputId::BandWidth).Colour, BoxColour::Normal);
    }
    Session session;
    session.Run({{"traces", "gd"}, {"gd-scale", "5n"}});
    EXPECT_EQ(session.Design.GDFullScale, 5e-9);
    EXPECT_EQ(session.Inputs.Box(InputId::Scale).Text, "5n");
}

TEST(Pipeline, BandWidthUnitsAndNortonPoles) {
    Session session;
    session.Read({{"pass", "norton"}, {"poles", "10"}, {"f0", "145.825"}, {"bw", "12.3456"}});
    EXPECT_EQ(session.Design.NumPoles, 5);
    session.Inputs.Box(InputId::NumPoles).Type("10");
    StepInput(InputId::NumPoles, session.Inputs, session.Design, {SpinDirection::Down}, {});
    EXPECT_EQ(session.Design.NumPoles, 3);
    session.Choose(ChoiceId::BandWidthUnit, BandWidthInPercent);
    EXPECT_EQ(session.Inputs.Box(InputId::BandWidth).Text, "8.47");  // 12.3456 / 145.825
    session.Read({{"f0", "291.65"}});                                // twice: percents follow F0
    EXPECT_NEAR(session.Design.BandWidth, 24.6912e6, 1e-7);
    session.Choose(ChoiceId::BandWidthUnit, BandWidthInMHz);
    session.Read({{"f0", "100"}});  // megahertz stay
    EXPECT_NEAR(session.Design.BandWidth, 24.6912e6, 1e-7);
}

TEST(Pipeline, LoadOfEveryFilter) {
    ForEveryFilter([](Session& session, int, int response) {
        session.Read({{"r-source", "75"}, {"r-load", "20"}});
        const double load = response <= 1 ? 20.0 : response == 7 ? 150 : response == 8 ? 37.5 : 75;
        EXPECT_EQ(session.Design.RLoad, load);
        EXPECT_EQ(session.Inputs.Box(InputId::RLoad).ExactValue, load);
    });
}

TEST(Pipeline, NoEllipticCoupledBandPass) {
    for (const std::string pass : {"direct-coupled", "norton"}) {
        Session passFirst, responseFirst;
        passFirst.Read({{"pass", pass}, {"response", "elliptic-c"}});
        EXPECT_EQ(passFirst.Design.ResponseType, ResponseType::Butterworth);
        ASSERT_EQ(passFirst.Messages.size(), 1u);
        EXPECT_EQ(passFirst.Messages[0].rfind("Program Info: Direct Coupled and Norton", 0), 0u);
        responseFirst.Read({{"response", "elliptic-e"}, {"pass", pass}});
        EXPECT_EQ(responseFirst.Design.ResponseType, ResponseType::Chebyshev);
        EXPECT_TRUE(responseFirst.Messages.empty());
    }
}

TEST(Pipeline, NortonReadsItsBoxes) {
    // clang-format off
    const struct { Settings Set; int Poles; double A, K, M; const char* Replaced; } cases[] = {
        {{}, 3, 1, 2, 1, ""},
        {{{"poles", "4"}, {"response", "chebyshev"}}, 3, 1, 2, 1, "poles"},  // an even one would move the load
        {{{"a", "200"}, {"k", "1"}}, 3, 100, 1.001, 1, "ak"},
        {{{"poles", "5"}}, 5, 1, 2, 1.001, ""},  // nobody typed the M of 3 poles
        {{{"poles", "5"}, {"m", "1.00"}}, 5, 1, 2, 1.001, "m"},
        {{{"poles", "9"}, {"a", "x"}, {"m", "7.5"}}, 5, 1, 2, 7.5, "polesa"}};
    // clang-format on
    for (const auto& c : cases) {
        Session session;
        session.Run({{"pass", "norton"}});
        session.Run(c.Set);
        EXPECT_EQ(session.Inputs.Box(InputId::NumPoles).Text, std::to_string(c.Poles));
        EXPECT_EQ(session.Design.RLoad, 50.0);
        const NortonResult& result = session.Design.NortonResult;
        EXPECT_EQ(std::tuple(result.A, result.K, result.M), std::tuple(c.A, c.K, c.M));
        std::string replaced;
        for (const Note& note : CollectNotes(session.Calc))
            if (note.Kind == NoteKind::Replaced) replaced += note.Name;
        EXPECT_EQ(replaced, c.Replaced);
    }
}

TEST(Pipeline, NortonSaysWhatTerminationsForbid) {
    for (const char* const type : {"t-cap", "t-ind", "pi-cap", "pi-ind"})
        for (const char* const response : {"butterworth", "chebyshev"})
            for (const char* const load : {"40", "50", "60"}) {
                Session session;
                session.Run({{"pass", "norton"},
                             {"norton-type", type},
                             {"response", response},
                             {"r-load", load}});
                const bool tee = type[0] == 't', smallerLoad = tee == (response[0] == 'b');
                const bool forbidden = load == std::string(smallerLoad ? "60" : "40");
                EXPECT_EQ(!NortonFault(session.Design).empty(), forbidden);
                ASSERT_EQ(session.Messages.size(), forbidden ? 1u : 0u) << type << load;
                if (!forbidden) continue;
                const std::string wanted = std::string(tee ? "T Ind" : "Pi Ind") +
                                           " structure, set R_Load " + (smallerLoad ? "<=" : ">=");
                EXPECT_NE(session.Messages[0].find(wanted), std::string::npos);
            }
}

TEST(Pipeline, NortonStepsAndSearches) {
    Session session;
    session.Run({{"pass", "norton"}, {"k", "1.5"}});
    const auto step = [&](InputId id, double by) {
        StepNortonInput(id, by, session.Inputs, session.Design, session.Report());
        session.Run({});
        return session.Inputs.Box(id).Text;
    };
    EXPECT_EQ(step(InputId::NortonA, 0.1), "1.10");
    EXPECT_EQ(step(InputId::NortonA, -1.0), "1.00");
    EXPECT_EQ(step(InputId::NortonK, -1.0), "1.001");  // held, shown as 1.00, read as the bound
    session.Run({{"auto-optimize", "on"}, {"k", "3"}, {"poles", "5"}, {"norton-type", "pi-ind"}});
    EXPECT_TRUE(ApplyNortonControl(NortonControl::Box, session.Inputs, session.Design));
    EXPECT_EQ(session.Inputs.Box(InputId::NortonK).Text, "3");  // a search would undo it
    session.Set({{"a", "1.01"}});
    EXPECT_TRUE(ApplyNortonControl(NortonControl::Box, session.Inputs, session.Design));
    EXPECT_NE(session.Inputs.Box(InputId::NortonK).Text, "3");
    session.Run({{"a", "1"}});
    EXPECT_TRUE(ApplyNortonControl(NortonControl::SpinButton, session.Inputs, session.Design));
    EXPECT_EQ(session.Inputs.Box(InputId::NortonK).Text, "31.87");
    EXPECT_EQ(session.Inputs.Box(InputId::NortonM).Text, "12.82");
    // Whether the values shown are those of the search; any change that moves it says so.
    const auto remark = [&](const Settings& settings) {
        session.Run(settings);
        return NortonSearchText(session.Design);
    };
    EXPECT_EQ(remark({}), "");
    const std::string text = remark({{"f0", "100"}});
    ASSERT_NE(text.find("K 31.87 and M 12.82 are not optimised"), std::string::npos) << text;
    EXPECT_TRUE(ApplyNortonControl(NortonControl::OptimizeButton, session.Inputs, session.Design));
    EXPECT_EQ(remark({}), "");
    EXPECT_TRUE(text.ends_with("gives K " + session.Inputs.Box(InputId::NortonK).Text + " and M " +
                               session.Inputs.Box(InputId::NortonM).Text + "."));
    EXPECT_NE(remark({{"poles", "3"}}), "");
    EXPECT_EQ(remark({{"auto-optimize", "off"}}), "");
    // The grid of the search goes further than the box.
    session.Run({{"bw-percent", "0.63"}, {"a", "68"}, {"optimize", "c"}});
    OptimizeNorton(session.Inputs, session.Design);
    session.Run({});
    EXPECT_NE(DescribeStatus(session.Calc)
                  .Warnings.find("The search chose K 152.35, but it goes no higher "
                                 "than 100: 100 used."),
              std::string::npos);
}

TEST(Pipeline, LowPassPrototypeHasTheGValues) {
    Session session;
    session.Read({{"parts", "real"}, {"std", "on"}, {"pass", "low-pass-prototype"}});
    for (int calculation = 1; calculation <= 2; ++calculation) {
        session.Run({});
        EXPECT_EQ(session.Inputs.Box(InputId::F0).Colour, BoxColour::Normal);
        // 1, 2, 1 between 1 ohm; the given F0 differs from 1 / 2 pi by 3.1e-5.
        EXPECT_NEAR(session.Design.Elements[2].V1, 2.0, 8e-5);
    }
    session.Run({{"pass", "high-pass"}});
    EXPECT_NEAR(session.Design.F0, 1e3, 1e-9);
    EXPECT_EQ(session.Inputs.Box(InputId::F0).Colour, BoxColour::Silver);
}

TEST(Pipeline, SlotsBeyondTheLadderStayEmpty) {
    ForEveryFilter([](Session& session, int, int response) {
        FilterDesign& design = session.Design;
        design.Elements.fill({ElementType::ShuntLC, 1.0, 2.0, 3.0, 4.0});  // from before
        session.Run({{"parts", response % 2 ? "ideal" : "deembed"},
                     {"std", response % 2 ? "off" : "on"},
                     {"worst-case", "on"},
                     {"runs", "2"}});
        ASSERT_GT(design.NumElements, 0);
        for (int slot = design.NumElements + 1; slot < NumSlots; ++slot) {
            EXPECT_EQ(static_cast<int>(design.Elements[slot].Type), 26);
            for (int row = 0; row < 4; ++row)
                EXPECT_EQ(design.Elements[slot].Value(row), 1e50);
        }
    });
}

const Settings bandPassWorstCase = {{"pass", "band-pass"}, {"response", "chebyshev"},
                                    {"poles", "3"},        {"parts", "real"},
                                    {"worst-case", "on"},  {"runs", "12"}};

TEST(WorstCase, ExtremesBracketEveryRunAndTheNominalLadderReturns) {
    Session session;
    const FilterDesign& design = session.Design;
    FilterDesign nominal;
    std::vector<std::vector<double>> runs;  // levels, dB
    DisplayQuantities quantities;
    session.Run(bandPassWorstCase, [&](const AnalysedRun& run) {
        EXPECT_EQ(run.Number, static_cast<int>(runs.size()));
        if (run.Number == 0) nominal = design, quantities = run.Quantities;
        EXPECT_EQ(design.Elements[1].V1 == nominal.Elements[1].V1, run.Number == 0);
        runs.emplace_back(NumSweepPoints);
        MagnitudeArray(run.Response.TransferRe, run.Response.TransferIm, runs.back(),
                       MagnitudeMode::Decibels);
    });
    EXPECT_EQ(session.Calc.Quantities.MagnitudeDb, quantities.MagnitudeDb);
    EXPECT_EQ(session.Calc.Quantities.GroupDelay, quantities.GroupDelay);
    ASSERT_EQ(runs.size(), 13u);
    for (int row = 0; row < 4; ++row)
        EXPECT_EQ(design.Elements[2].Value(row), nominal.Elements[2].Value(row));
    EXPECT_EQ(design.Response.TransferRe, nominal.Response.TransferRe);
    EXPECT_EQ(design.Response.ReflectionDb, nominal.Response.ReflectionDb);
    const WorstCaseResult& result = session.Calc.WorstCase;
    double loss = 0.0;
    // The pass band is the one that the same filter has before its parts are chosen.
    Session ideal;
    ideal.Run(bandPassWorstCase);
    ideal.Run({{"parts", "ideal"}, {"std", "off"}, {"worst-case", "off"}});
    const auto& wanted = ideal.Calc.Quantities.MagnitudeDb;
    const double peak = *std::max_element(wanted.begin(), wanted.end());
    for (int i = 0; i < NumSweepPoints; ++i) {
        double low = 1e9, high = -1e9;
        for (std::size_t run = 1; run < runs.size(); ++run) {
            low = std::min(low, runs[run][i]);
            high = std::max(high, runs[run][i]);
        }
        EXPECT_NEAR(result.LowDb[i], low, 1e-9);
        EXPECT_NEAR(result.HighDb[i], high, 1e-9);
        if (wanted[i] >= peak - 3.0) loss = std::max(loss, -low);
    }
    EXPECT_NEAR(design.SweepFreqs[512], design.F0, 1.0);
    EXPECT_NEAR(result.SpreadAtF0Db, result.HighDb[512] - result.LowDb[512], 1e-12);
    EXPECT_NEAR(result.PassBandLossDb, loss, 1e-9);
}

TEST(WorstCase, TheSeedRepeatsTheRuns) {
    Session first, second;
    SeedFromClock(first.Calc);
    first.Run(bandPassWorstCase);
    const WorstCaseResult original = first.Calc.WorstCase;
    AskForRepeat(first.Calc);
    FinishCalculation(first.Calc, {}, {});
    EXPECT_EQ(first.Calc.WorstCase.LowDb, original.LowDb);
    for (const std::uint32_t seed : {original.Seed, original.Seed ^ 1u}) {
        second.Read({{"seed", std::to_string(seed)}});
        second.Run(bandPassWorstCase);
        EXPECT_EQ(second.Calc.WorstCase.LowDb == original.LowDb, seed == original.Seed);
    }
    first.Run({});  // another calculation draws another seed
    EXPECT_NE(first.Calc.WorstCase.Seed, original.Seed);
    first.Run({{"worst-case", "off"}});
    EXPECT_EQ(first.Calc.WorstCase.Runs, 0);
}

/// "kind name" of every note, in brackets where it is idle or nothing is wrong.
std::vector<std::string> NotesOf(const Calculation& calculation) {
    std::vector<std::string> notes;
    for (const Note& note : CollectNotes(calculation)) {
        const std::string text = std::string(NameOf(note.Kind)) + " " + note.Name;
        const bool harmless = note.Idle || (note.Advice && note.Kind != NoteKind::Advice);
        notes.push_back(harmless ? "(" + text + ")" : text);
    }
    return notes;
}

TEST(Notes, ABandThatHasMovedIsToldWithItsCause) {
    // clang-format off
    const std::pair<Settings, std::string> cases[] = {
        {{}, ""},
        {{{"parts", "real"}}, "Band lies 21.6 % low: parasitics; DeEmbed brings it back."},
        {{{"parts", "deembed"}}, ""},
        {{{"pass", "notch"}, {"parts", "real"}}, ""},
        {{{"bw-percent", "2"}, {"std", "on"}}, "Band lies 1.0 % high: standard values."}};
    // clang-format on
    for (const auto& [settings, text] : cases) {
        Session session;
        session.Run({{"pass", "band-pass"}, {"bw-percent", "5"}});
        session.Run(settings);
        std::string told;
        for (const Note& note : CollectNotes(session.Calc))
            if (note.Kind == NoteKind::BandMoved) told += note.Text;
        EXPECT_EQ(told, text);
    }
}

TEST(Notes, WhatABuilderMustKnow) {
    // clang-format off
    const std::pair<Settings, std::vector<std::string>> cases[] = {
        {{}, {}},
        {{{"response", "chebyshev"}, {"poles", "4"}}, {"load-moved r-load"}},
        {{{"r-load", "25"}}, {"form-forced form", "advice r-load"}},
        {{{"r-load", "25"}, {"form", "lcl"}}, {"advice r-load"}},
        {{{"pass", "notch"}, {"r-load", "100"}}, {"advice r-load"}},
        {{{"response", "papoulis"}}, {"missed response"}},
        {{{"response", "papoulis"}, {"poles", "5"}}, {}},
        {{{"pass", "band-pass"}, {"f0", "10.7"}, {"bw", "0.3"}, {"parts", "real"}, {"ind-q", "71"}}, {"band-moved f0", "too-lossy ind-q"}},
        {{{"pass", "band-pass"}, {"f0", "10.7"}, {"bw", "0.3"}, {"parts", "real"}, {"ind-q", "72"}}, {"band-moved f0"}},
        {{{"pass", "direct-coupled"}}, {"missed pass", "end-tank tank-values"}},
        {{{"pass", "direct-coupled"}, {"tank", "5"}}, {"unrealisable C4, C8, C12", "(end-tank tank-values)"}},
        {{{"f0", "?"}, {"bw", "40"}}, {"replaced f0"}},  // 1 MHz; 40 MHz that play no part
        {{{"f0", "?"}}, {"replaced f0"}},  // 40 MHz that nobody typed
        {{{"bw-percent", "?"}, {"pass", "notch"}}, {"replaced bw-percent"}},
        {{{"ripple", "9"}}, {"(replaced ripple)"}},
        {{{"ripple", "9"}, {"response", "chebyshev"}}, {"replaced ripple"}},
        {{{"response", "elliptic-c"}, {"trap", "7"}}, {"(replaced trap)"}},
        {{{"response", "elliptic-a"}}, {"load-moved r-load"}},
        {{{"response", "elliptic-c"}, {"ripple", "0.1"}, {"atten", "10"}}, {"atten-raised atten"}},
        {{{"pass", "norton"}, {"runs", "0"}}, {"replaced runs"}},
        {{{"traces", "pulse"}}, {}}};
    // clang-format on
    for (const auto& [settings, notes] : cases) {
        Session session;
        session.Run(settings);
        EXPECT_EQ(NotesOf(session.Calc), notes);
        const bool silent = notes.empty() || notes[0][0] == '(';
        const bool warns = !silent && notes[0].rfind("advice", 0) != 0;
        EXPECT_EQ(!DescribeStatus(session.Calc).Warnings.empty(), warns);
        EXPECT_EQ(session.Status().empty(), silent);
    }
}

TEST(Notes, ValuesThatCannotBeBuilt) {
    // clang-format off
    const std::pair<double, std::string> cases[] = {
        {-3e-9, "L2 = -3.00 nH is negative."}, {0.0, "L2 is 0 H."}, {9e-19, "is too small to build"}, {3e-9, ""},
        {UnusedValue, "beyond all bounds"}, {NaN, "gave no number"}, {-Infinity, "is negative"},
        {400.0, "is beyond reach"}};
    // clang-format on
    for (const auto& [value, fault] : cases) {
        Session session;
        session.Run({});
        session.Design.Elements[2].V1 = value;
        AnalyseAndPlot(session.Calc, session.Report(), {});
        const std::vector<Note> notes = CollectNotes(session.Calc);
        ASSERT_EQ(notes.size(), fault.empty() ? 1u : 2u) << value;
        EXPECT_EQ(notes.back().Kind, NoteKind::Edited);
        if (fault.empty()) continue;
        EXPECT_EQ(notes[0].Text.rfind("L2 ", 0), 0u);
        EXPECT_NE(notes[0].Text.find(fault), std::string::npos) << notes[0].Text;
    }
}

TEST(Notes, ALoadThatNothingAsksForIsToldAndBroughtBack) {
    // clang-format off
    const std::array<Settings, 2> routes[] = {
        {{{{"response", "chebyshev"}, {"poles", "6"}}, {{"poles", "7"}}}},
        {{{{"response", "bessel-freq"}, {"r-load", "80"}}, {{"response", "butterworth"}}}},
        {{{{"response", "elliptic-a"}}, {{"response", "chebyshev"}}}}};
    // clang-format on
    const char* movers[] = {"even-order Chebyshev", "equal ends", "elliptic"};
    for (std::size_t route = 0; route < std::size(routes); ++route) {
        Session session;
        session.Run(routes[route][0]);
        EXPECT_FALSE(BringBackLoad(session.Inputs, session.Design));
        EXPECT_NE(session.Status().find("was moved to"), std::string::npos);
        const double moved = session.Design.RLoad;
        session.Run(routes[route][1]);
        EXPECT_EQ(session.Design.RLoad, moved);
        const std::string left = session.Status();
        EXPECT_NE(left.find("R Load is still the "), std::string::npos) << left;
        EXPECT_NE(left.find(movers[route]), std::string::npos) << left;
        EXPECT_TRUE(BringBackLoad(session.Inputs, session.Design));
        session.Run({});
        EXPECT_EQ(session.Design.RLoad, route == 1 ? 80.0 : 50.0);
        EXPECT_EQ(session.Status().find("R Load"), std::string::npos);
    }
}

TEST(Notes, AChangeBetweenFamiliesTellsWhatTheNumberCounts) {
    const auto tells = [](Session& session, const Settings& settings, const std::string& text) {
        session.Run(settings);
        return session.Status().find(text) != std::string::npos;
    };
    Session session;
    EXPECT_FALSE(tells(session, {{"poles", "2"}}, "number counts"));
    EXPECT_TRUE(
        tells(session, {{"response", "elliptic-c"}}, "counts traps now: 2 traps, order 5."));
    EXPECT_FALSE(tells(session, {{"response", "elliptic-e"}}, "number counts"));
    EXPECT_TRUE(tells(session, {{"response", "gauss"}}, "counts poles again: 2 poles."));
    EXPECT_FALSE(tells(session, {}, "number counts"));
}

TEST(Pipeline, TheLoadMovedByChebyshevKeepsItsExactValue) {
    Session session;
    session.Run({{"response", "chebyshev"}, {"poles", "4"}});
    const NumberBox& box = session.Inputs.Box(InputId::RLoad);
    const double moved = session.Design.RLoad;
    EXPECT_LT(moved, 50.0);
    EXPECT_EQ(box.Colour, BoxColour::Yellow);
    session.Run({{"poles", "3"}});
    EXPECT_EQ(session.Design.RLoad, moved);
    EXPECT_EQ(box.Colour, BoxColour::Normal);
}

TEST(Pipeline, EllipticDesignsShowTheirLoadAndStopBand) {
    // clang-format off
    const struct { Settings Given; std::string Load; BoxColour Colour; std::string Status; ResultTexts Figures; } cases[] = {
        {{{"response", "elliptic-b"}, {"poles", "1"}, {"atten", "40"}}, "32.5", BoxColour::Yellow,
         "R Load was moved to 32.498 ohm, the one that this elliptic ladder needs; 50 ohm was asked for.",
         {{"stop band", "40.00 dB from 338.41 MHz"}, {"shape, stop to pass", "1.692"}, {"traps", "367.04 MHz"}}},
        {{{"response", "elliptic-c"}, {"ripple", "0.1"}, {"atten", "10"}}, "50.0", BoxColour::Normal,
         "Attenuation 16.04 dB used: no ladder with positive parts below.",
         {{"stop band", "16.04 dB from 200.90 MHz"}, {"shape, stop to pass", "1.005"},
          {"traps", "267.49 MHz, 201.37 MHz, 208.53 MHz"}}}};
    // clang-format on
    for (const auto& c : cases) {
        Session session;
        session.Run(c.Given);
        EXPECT_EQ(session.Inputs.Box(InputId::RLoad).Text, c.Load);
        EXPECT_EQ(session.Inputs.Box(InputId::RLoad).Colour, c.Colour);
        EXPECT_EQ(session.Status(), c.Status);
        ResultTexts figures = DescribeResults(session.Design, session.Calc.Results);
        figures.erase(figures.begin(), figures.end() - 3);
        EXPECT_EQ(figures, c.Figures);
    }
}

TEST(Pipeline, GroupDelayScale) {
    const double computed = 5.04e-8;
    Session session;
    NumberBox& box = session.Inputs.Box(InputId::Scale);
    const auto settle = [&](bool automatic) {
        session.Inputs.Choice(ChoiceId::AutoScale) = automatic;
        SettleGroupDelayScale(session.Inputs, session.Design, computed, session.Report());
        return session.Design.GDFullScale;
    };
    EXPECT_EQ(settle(true), computed);
    EXPECT_EQ(box.Text, "50E-9");
    EXPECT_EQ(settle(false), computed);  // still the program's own text
    // clang-format off
    const struct { const char* Typed; double Scale; const char* Shown; } cases[] = {
        {"1e-7", 1e-7, "1e-7"}, {"5.0E-6", 5e-6, "5.0E-6"}, {"1", 5e-6, "5.0E-6"},
        {"0", 5e-10, "500E-12"}, {"x", 5e-8, "50E-9"}};
    // clang-format on
    for (const auto& c : cases) {
        box.Type(c.Typed);
        EXPECT_NEAR(settle(false), c.Scale, 1e-15 * c.Scale) << c.Typed;
        EXPECT_EQ(box.Text, c.Shown);
    }
    session.Inputs.Choice(ChoiceId::TraceGroupDelay) =
        1;  // the box plays a part, and was just replaced
    EXPECT_EQ(NotesOf(session.Calc), std::vector<std::string>{"replaced gd-scale"});
    EXPECT_EQ(settle(true), computed);
    EXPECT_EQ(box.Colour, BoxColour::Normal);
    EXPECT_TRUE(NotesOf(session.Calc).empty());

    EXPECT_TRUE(session.Messages.empty());
}

}  // namespace
}  // namespace ladderwise
