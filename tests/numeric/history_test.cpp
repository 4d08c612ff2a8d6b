// The document and its history: random actions, undone and redone, against the states noted on the
// way; names and merging of steps; what a file holds.
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>

#include "files/FileReadSave.h"
#include "limits/LimitTable.h"
#include "pipeline/DesignDocument.h"
#include "pipeline/Keystrokes.h"
#include "pipeline/Notes.h"
#include "pipeline/ResultsText.h"
#include "pipeline/SavedDesigns.h"

using namespace ladderwise;

namespace {

/// True for words about what a calculation did: what was typed, discarded or counted before is no
/// part of the design that it left.
bool IsOfOneCalculation(const Note& note) {
    return note.Kind == NoteKind::Replaced || note.Kind == NoteKind::Discarded ||
           (note.Kind == NoteKind::Advice && note.Name == "poles");
}

/// A design to the last bit: its file's bytes, the ladder, the response and what is derived of it,
/// in numbers and in words, and markers.
std::string DesignBytesOf(const DesignDocument& document) {
    std::string bytes = EncodeRecord(document.Record({})) + document.File();
    const auto add = [&](const auto& values) {
        for (const double value : values) {
            // One NaN is as good as another.
            const double plain = std::isnan(value) ? std::nan("") : value;
            bytes.append(reinterpret_cast<const char*>(&plain), sizeof plain);
        }
    };
    const FilterDesign& design = document.Work.Design;
    for (int slot = 0; slot < NumSlots; ++slot) {
        const CircuitElement& e = design.Elements[slot];
        add(std::array{static_cast<double>(e.Type), e.V1, e.V2, e.V3, e.V4});
    }
    add(design.SweepFreqs);
    add(design.Response.TransferRe);
    add(design.Response.ReflectionDb);
    add(document.Work.Quantities.GroupDelay);
    add(document.Markers.FreqMarkers);
    add(std::array{document.Markers.RefFreq, design.GDFullScale, design.RLoad,
                   static_cast<double>(design.Flags.LoadMoved),
                   static_cast<double>(document.Markers.FreqMarkerCount),
                   static_cast<double>(document.Work.Discarded.has_value()),
                   static_cast<double>(document.ReferenceShown())});
    for (const auto& [name, figure] : DescribeResults(design, ResultsOf(design)))
        bytes += name + figure;
    for (const Note& note : CollectNotes(document.Work))
        if (!IsOfOneCalculation(note)) bytes += note.Text;
    if (document.Reference()) bytes += EncodeRecord(document.Reference()->Record);
    for (const HeldPart& part : document.Work.Inputs.Held)
        add(std::array{part.Place.Slot + 0.1 * part.Place.Row, part.Value, part.Tolerance});
    return bytes + LimitTableText(document.Limits);
}

/// With the draws of the worst case, all notes and the looks of the boxes: every bit that a user
/// could see.
std::string BytesOf(const DesignDocument& document) {
    std::string bytes = DesignBytesOf(document) +
                        std::to_string(document.Work.PendingSeed.value_or(0)) +
                        std::to_string(document.Work.Design.Flags.FellBack);
    for (const NumberBox& box : document.Work.Inputs.Boxes)
        bytes += box.Text + static_cast<char>(box.Colour) + box.ReplacedText.value_or("-");
    for (const Note& note : CollectNotes(document.Work))
        bytes += note.Text;
    return bytes;
}

bool SameLadder(const FilterDesign& a, const FilterDesign& b) {
    bool same = a.NumElements == b.NumElements;
    for (int slot = 1; slot <= a.NumElements; ++slot)
        for (int row = 0; row < 4; ++row)
            same = same && a.Elements[slot].Value(row) == b.Elements[slot].Value(row);
    return same;
}

/// A document with hands on it, one action a second, as the window would act.
class DocumentHands {
public:
    DocumentHands() {
        Document.SettleControls({});
        Document.Prepare({});
        Document.Begin();
    }
    void Calculate() {
        Document.SettleControls({});
        Document.Prepare({});
        Note();
    }
    void Note(double pause = 2.0) { Document.NoteStep(seconds += pause); }
    void Type(InputId id, const char* text) {
        Document.Work.Inputs.Box(id).Type(text);
        Calculate();
    }
    void Choose(ChoiceId id, int code) {
        Document.Choose({id, code});
        Calculate();
    }
    void Step(InputId id, double pause) {
        StepInput(id, Document.Work.Inputs, Document.Work.Design, {SpinDirection::Up}, {});
        Document.Prepare({});
        Note(pause);
    }
    void PressKey(FormKey key, int slot, int row) {
        if (ApplyFormKey(Document.Work, key, {slot, row}, {}) == KeyOutcome::Analyse) {
            Document.AnalyseEdits({});
            Note();
        } else {
            Calculate();
        }
    }
    DesignDocument Document;

private:
    double seconds = 0.0;
};

void ActAtRandom(DocumentHands& hands, std::mt19937& random) {
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    DesignDocument& document = hands.Document;
    switch (below(10)) {
        case 0:
        case 1: {
            static const char* const texts[] = {"1",   "7",       "145.825", "50",
                                                "0.5", "rubbish", "",        "1e9"};
            return hands.Type(static_cast<InputId>(below(NumInputs)), texts[below(8)]);
        }
        case 2:
        case 3: {
            const ChoiceTable& table = TableOf(static_cast<ChoiceId>(below(NumChoices)));
            const auto row = static_cast<std::size_t>(below(static_cast<int>(table.Rows.size())));
            if (table.Id == ChoiceId::FitWidth)  // it takes its time
                return hands.Choose(table.Id, below(8) == 0);
            return hands.Choose(table.Id, table.Rows[row].Code);
        }
        case 4:
        case 5:
            return hands.PressKey(static_cast<FormKey>(below(8)), 1 + below(10), below(4));
        case 6:
            document.Markers.FreqMarkerCount = 1 + below(5);
            document.Markers.FreqMarkers[1] = below(1000);
            return hands.Note();
        case 9:
            if (below(2) == 0) {
                document.Work.Inputs.Held.assign(
                    static_cast<std::size_t>(below(3)),
                    {{1, below(4)}, 1e-12 * below(9), 0.01 * (1 + below(9))});
                return hands.Calculate();
            }
            document.Limits.assign(static_cast<std::size_t>(below(3)),
                                   {LimitKind::AttenMin, 1e8 / 3, 1e9, 1.0 + below(50)});
            return hands.Note();
        case 7:
            document.SetReference({});
            return hands.Calculate();
        case 8:
            if (below(2) == 0) {
                document.ExchangeReference({});
                return hands.Calculate();
            }
            if (BringBackEdits(document.Work)) document.AnalyseEdits({});
            return hands.Note();
    }
}

/// Undoes and redoes all that a document remembers, against what it was after each step: the last
/// of `states` is how it is now.
void ExpectEveryStateAgain(DesignDocument& document, const std::vector<std::string>& states) {
    const std::size_t steps = document.Steps(), last = states.size() - 1;
    ASSERT_GT(steps, 100U);
    for (std::size_t i = 1; i <= steps; ++i) {
        ASSERT_FALSE(document.UndoName().empty());
        ASSERT_TRUE(document.Undo());
        ASSERT_TRUE(BytesOf(document) == states[last - i]) << "undo " << i;
    }
    EXPECT_FALSE(document.Undo());
    for (std::size_t i = steps; i-- > 0;) {
        ASSERT_TRUE(document.Redo());
        ASSERT_TRUE(BytesOf(document) == states[last - i]) << "redo to " << i;
    }
    EXPECT_FALSE(document.Redo());
}

/// Values edited by hand stand on what their inputs calculate.
void ExpectEditsOfTheirInputs(const Calculation& work) {
    if (!HasEdits(work.Design)) return;
    const auto fresh = std::make_unique<Calculation>();
    fresh->Inputs = work.Inputs;
    Calculate(*fresh, {});
    FilterDesign base = work.Design;
    base.Elements = *base.CalculatedElements;
    EXPECT_TRUE(SameLadder(base, fresh->Design));
    EXPECT_EQ(base.RLoad, fresh->Design.RLoad);
    EXPECT_EQ(base.F0, fresh->Design.F0);
}

/// What was kept of a document, read again by another one, is the same design.
void ExpectRecovered(const DesignDocument& document) {
    const auto work = DecodeWork(EncodeWork(document.Kept()));
    ASSERT_TRUE(work);
    const auto other = std::make_unique<DesignDocument>();
    ASSERT_TRUE(other->Recover(*work, {}));
    ASSERT_TRUE(DesignBytesOf(*other) == DesignBytesOf(document));
    EXPECT_EQ(other->Modified(), document.Modified());
    EXPECT_EQ(other->Work.Discarded.has_value(), document.Work.Discarded.has_value());
    if (document.Reference()) {
        EXPECT_TRUE(SameLadder(other->Reference()->Design, document.Reference()->Design));
        EXPECT_EQ(DescribeResults(other->Reference()->Design, other->Reference()->Results),
                  DescribeResults(document.Reference()->Design, document.Reference()->Results));
    }
}

}  // namespace

// LADDERWISE_HISTORY_ACTIONS sets the number of actions, LADDERWISE_HISTORY_SEED which they are.
TEST(History, UndoAndRedoReturnToEveryStateToTheLastBit) {
    constexpr int Round = 400;  // actions, fewer than the steps that are remembered
    const char* const asked = std::getenv("LADDERWISE_HISTORY_ACTIONS");
    const int actions = asked ? std::atoi(asked) : 5 * Round;
    const char* const seed = std::getenv("LADDERWISE_HISTORY_SEED");
    std::mt19937 random(seed ? static_cast<unsigned>(std::atoi(seed)) : 1U);
    DocumentHands hands;
    DesignDocument& document = hands.Document;
    // The state after each step; an action that changes nothing takes the place of the last.
    std::vector<std::string> states{BytesOf(document)};
    for (int i = 1; i <= actions && !testing::Test::HasFatalFailure(); ++i) {
        const std::string before = document.UndoName();
        const std::size_t steps = document.Steps();
        ActAtRandom(hands, random);
        if (document.Steps() > steps || document.UndoName() != before) states.emplace_back();
        states.back() = BytesOf(document);
        if (i % 20 == 0) ExpectRecovered(document);
        if (i % 5 == 0) ExpectEditsOfTheirInputs(document.Work);
        if (i % Round != 0) continue;
        ExpectEveryStateAgain(document, states);
        document.Begin();
        states = {BytesOf(document)};
    }
}

// A scale that suits the edited values alone, and what was said of the calculation that they
// follow.
TEST(UnsavedWork, KeepsWhatBelongsToEditedValues) {
    DocumentHands hands;
    DesignDocument& document = hands.Document;
    Calculation& work = document.Work;
    hands.Choose(ChoiceId::Pass, static_cast<int>(PassType::BandPassCanonical));
    hands.Choose(ChoiceId::Parts, static_cast<int>(PartChoice::RealParts));
    work.Inputs.Box(InputId::IndQ).Type("1");
    hands.Choose(ChoiceId::FitWidth, 1);
    hands.Choose(ChoiceId::AutoScale, 0);
    const auto cannotFit = [&work] {
        const std::vector<Note> notes = CollectNotes(work);
        return std::any_of(notes.begin(), notes.end(), [](const Note& note) {
            return note.Text.find("cannot be fitted") != note.Text.npos;
        });
    };
    EXPECT_TRUE(cannotFit());
    for (int i = 0; i < 200; ++i)
        hands.PressKey(FormKey::F2, 2, 0);
    work.Inputs.Box(InputId::Scale).Type("500E-6");
    document.AnalyseEdits({});
    EXPECT_EQ(work.Design.GDFullScale, 500e-6);
    ExpectRecovered(document);
    hands.Choose(ChoiceId::FitWidth, 0);
    EXPECT_FALSE(cannotFit());
    ASSERT_TRUE(BringBackEdits(work));
    document.AnalyseEdits({});
    hands.Note();
    EXPECT_TRUE(cannotFit());
    ExpectRecovered(document);
}

// A calculation discards the edited values of the design in hand: after an exchange those of the
// reference, to be brought back between its terminations, not those of the design before.
TEST(UnsavedWork, EditsOfAReferenceComeBackWithItsInputs) {
    DocumentHands hands;
    DesignDocument& document = hands.Document;
    Calculation& work = document.Work;
    hands.Type(InputId::RLoad, "200");
    hands.PressKey(FormKey::F2, 2, 0);
    const FilterDesign edited = work.Design;
    document.SetReference({});
    hands.Type(InputId::RLoad, "75");
    hands.Type(InputId::F0, "50");
    document.ExchangeReference({});
    hands.Calculate();
    EXPECT_FALSE(HasEdits(work.Design));
    ASSERT_TRUE(BringBackEdits(work));
    document.AnalyseEdits({});
    hands.Note();
    EXPECT_EQ(work.Design.RLoad, 200.0);
    EXPECT_EQ(work.Design.F0, edited.F0);
    EXPECT_TRUE(SameLadder(work.Design, edited));
    EXPECT_EQ(work.Design.Response.TransferRe, edited.Response.TransferRe);
    EXPECT_EQ(work.Inputs.Box(InputId::RLoad).Text, "200");
    ExpectEditsOfTheirInputs(work);
    ExpectRecovered(document);
}

TEST(UnsavedWork, WhatIsNotWholeIsNoWork) {
    DocumentHands hands;
    hands.Choose(ChoiceId::Pass, static_cast<int>(PassType::BandPassCanonical));
    hands.Document.SetReference({});
    hands.PressKey(FormKey::F1, 1, 0);
    hands.Document.Markers.FreqMarkers[hands.Document.Markers.FreqMarkerCount = 1] = 1e8;
    const std::string text = EncodeWork(hands.Document.Kept());
    EXPECT_TRUE(DecodeWork(text));
    for (std::size_t i = 0; i < text.size(); i += i + 300 < text.size() ? 83 : 1)
        ASSERT_FALSE(DecodeWork(text.substr(0, i))) << i;
    for (const char* const key : {"time ", "design ", "design-slot SeriesLC ", "reference "}) {
        std::string damaged = text;
        damaged.insert(damaged.find(key) + std::string_view(key).size(), "x");
        EXPECT_FALSE(DecodeWork(damaged)) << key;
    }
}

TEST(History, StepsAreNamedAndMerged) {
    DocumentHands hands;
    DesignDocument& document = hands.Document;
    hands.Type(InputId::NumPoles, "4");
    EXPECT_EQ(document.UndoName(), "N Poles 3 \u2192 4");
    hands.Step(InputId::NumPoles, 0.9);
    hands.Step(InputId::NumPoles, 0.9);
    EXPECT_EQ(document.UndoName(), "N Poles 3 \u2192 6");
    hands.Step(InputId::NumPoles, 1.1);
    EXPECT_EQ(document.UndoName(), "N Poles 6 \u2192 7");
    hands.Choose(ChoiceId::Response, static_cast<int>(ResponseType::Chebyshev));
    EXPECT_EQ(document.UndoName(), "Response Butterworth \u2192 Chebyshev");
    hands.Choose(ChoiceId::StdLCValues, 1);
    EXPECT_EQ(document.UndoName(), "Std LC Values off \u2192 on");
    hands.PressKey(FormKey::F2, 1, 1);
    EXPECT_TRUE(document.UndoName().starts_with("C1 ")) << document.UndoName();
    EXPECT_TRUE(document.Modified());
    hands.Calculate();
    EXPECT_EQ(document.UndoName(), "Calculated Values");
    ASSERT_TRUE(document.Undo() && document.Undo());
    EXPECT_EQ(document.RedoName().substr(0, 3), "C1 ");
    hands.Type(InputId::F0, "100");  // ends what could be redone
    EXPECT_EQ(document.RedoName(), "");
    EXPECT_EQ(document.UndoName(), "Fo MHz 200 \u2192 100");
    hands.Calculate();  // no step
    EXPECT_EQ(document.UndoName(), "Fo MHz 200 \u2192 100");
    document.Limits = {{LimitKind::AttenMax, 1e6, 2e6, 1.0}};
    hands.Note();
    EXPECT_EQ(document.UndoName(), "Limits 0 \u2192 1");
    document.Limits[0].Value = 0.5;
    hands.Note(0.1);
    EXPECT_EQ(document.UndoName(), "Limit to attenuation at most 0.5 dB from 1 MHz to 2 MHz");
    for (int i = 0; i < 600; ++i)
        hands.Type(InputId::F0, i % 2 == 0 ? "50" : "60");
    EXPECT_EQ(document.Steps(), MostUndoSteps);
}

TEST(Document, WhatAnOlderFileLacksIsAFreshProgramsOwn) {
    DesignRecord defaults;
    RefreshRecord(defaults, {});
    EXPECT_TRUE(SameDesign(defaults, DesignDocument().Record({})));
}

TEST(Document, FilesAreTiedToStates) {
    DocumentHands hands;
    DesignDocument& document = hands.Document;
    EXPECT_FALSE(document.Modified());
    hands.Type(InputId::F0, "145.825");
    EXPECT_TRUE(document.Modified());
    document.WasSavedTo("/a");
    EXPECT_FALSE(document.Modified());
    const std::string bytes = EncodeRecord(document.Record({}));
    hands.Type(InputId::F0, "7");
    EXPECT_FALSE(document.Load(std::string(bytes.size(), 'x'), "/bad"));
    EXPECT_EQ(document.File() + document.Work.Inputs.Box(InputId::F0).Text, "/a7");
    document.Limits = {{LimitKind::AttenMax, 1e6, 2e6, 1.0}};
    ASSERT_TRUE(document.Load(bytes, "/dir/b"));
    EXPECT_TRUE(document.Limits.empty());
    hands.Calculate();
    document.CountAsSaved();
    EXPECT_EQ(document.UndoName(), "Open b");
    EXPECT_EQ(document.Work.Design.F0, 145.825e6);
    EXPECT_FALSE(document.Modified());
    // Undoing the opening returns to the file of before, and to what was not saved in it; undoing
    // on, to what was.
    ASSERT_TRUE(document.Undo());
    EXPECT_EQ(document.File(), "/a");
    EXPECT_TRUE(document.Modified());
    ASSERT_TRUE(document.Undo());
    EXPECT_FALSE(document.Modified());
    // Values edited by hand count, as long as they are the ones that were saved.
    hands.PressKey(FormKey::F1, 1, 1);
    document.WasSavedTo("/a", false);
    EXPECT_TRUE(document.Modified());
    document.WasSavedTo("/a", true);
    EXPECT_FALSE(document.Modified());
    hands.PressKey(FormKey::F1, 1, 1);
    EXPECT_TRUE(document.Modified());
    // And so do limits.
    document.WasSavedTo("/a");
    document.Limits = {{LimitKind::AttenMax, 1e6, 2e6, 1.0}};
    EXPECT_TRUE(document.Modified());
    document.WasSavedTo("/a", false);
    EXPECT_TRUE(document.Modified());
    document.WasSavedTo("/a");
    EXPECT_FALSE(document.Modified());
    // And held parts.
    document.Work.Inputs.Held = {{{1, 1}, 2e-12}};
    hands.Note();
    EXPECT_EQ(document.UndoName(), "Hold C1");
    EXPECT_TRUE(document.Modified() && document.NeedsCompanion());
    document.WasSavedTo("/a");
    EXPECT_FALSE(document.Modified());
    ASSERT_TRUE(document.Undo());
    EXPECT_TRUE(document.Work.Inputs.Held.empty() && document.Modified());
    EXPECT_EQ(document.RedoName(), "Hold C1");
}
