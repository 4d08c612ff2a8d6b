// Standard values that take a search: the nearest ones are shown at once, better ones are looked
// for between the events of the window and shown when they are found.
#include <QGuiApplication>
#include <QScopedValueRollback>

#include "analysis/BoardDraws.h"
#include "app/ClientArea.h"
#include "app/DesignSession.h"
#include "app/StatusView.h"
#include "app/ValueGrid.h"
#include "choosing/PartsTexts.h"

namespace ladderwise {

namespace {

constexpr int SliceMs = 8;            ///< of a search: half a frame
constexpr int ProgressAfterMs = 100;  ///< what is done sooner shows none
constexpr int TypingMs = 100;         ///< between two looks whether typing has come to an end

}  // namespace

void DesignSession::ArrangeDocument() {
    Document.Work.ArrangeParts = [this](Calculation& calculation) {
        choosing.start();
        if (&calculation == &Document.Work)
            return parts.Arrange(calculation, Document.Limits, choosesAtOnce);
        PartsChoice others;  // a design that is kept beside the one in hand
        return others.Arrange(calculation, Document.Limits, true);
    };
}

bool DesignSession::Recover(const UnsavedWork& work) {
    const QScopedValueRollback<bool> whole(choosesAtOnce, true);
    return Document.Recover(work, report);
}

/// A slice of what takes longer than a frame. What a search finds waits until typing is read, which
/// it would write over.
void DesignSession::WorkOn() {
    if (!parts.IsSearching()) return WorkOnBoards();
    if (IsTypingUnread() || views.Client->Grid()->IsEditorOpen())
        return noEventWaits.start(TypingMs);
    QElapsedTimer slice;
    slice.start();
    bool found = false;
    while (!found && parts.IsSearching() && slice.elapsed() < SliceMs)
        found = parts.Advance();
    if (found) return TakeChosen();
    ShowChoosing();
    noEventWaits.start(0);
}

void DesignSession::WorkOnBoards() {
    if (!yields.IsBuilding()) return;
    QElapsedTimer slice;
    slice.start();
    while (yields.IsBuilding() && slice.elapsed() < SliceMs)
        yields.Advance();
    if (yields.IsBuilding() && building.elapsed() < ProgressAfterMs) return noEventWaits.start(0);
    building.restart();
    ShowResults();
}

/// Of the design as it is shown.
const YieldWatch& DesignSession::Boards() const {
    const Calculation& work = Document.Work;
    constexpr std::uint32_t usualSeed = 1;  // the same boards at every change tell changes apart
    yields.Note({work.Design, ShownLimits(), work.FixedSeed.value_or(usualSeed), parts.Present()});
    if (work.Design.WorstCase) yields.WantAtLeast(YieldWatch::WorstCaseBoards);
    return yields;
}

void DesignSession::ShowBoards() {
    const YieldResult* const boards = yields.Result();
    const int built = boards ? boards->Boards : 0;
    views.Status->ShowBoards(built, yields.Wanted());
    if (yields.IsBuilding() && !noEventWaits.isActive()) noEventWaits.start(0);
}

void DesignSession::BuildManyBoards() {
    ReadEntries();
    FinishChoosing();
    yields.Ask(YieldWatch::MostBoards);
    building.start();
    ShowResults();
}

void DesignSession::StopBoards() {
    yields.Stop();
    ShowResults();
}

void DesignSession::TakeWorstBoard() {
    ReadEntries();
    FinishChoosing();
    FinishDrawing();
    const YieldResult* const boards = Boards().Result();
    if (!boards || boards->Boards < 1) return;
    Document.Work.Design.Elements = boards->Worst;
    Document.Work.Design.Pairs = boards->WorstPairs;
    AnalyseAndDraw();
}

void DesignSession::HoldPart(ValuePlace place, bool hold) {
    const auto slot = static_cast<std::size_t>(place.Slot);
    StoreInputs();
    HeldPart part = SettledAt(Document.Work.Inputs.Held, place);
    part.Value = hold ? Document.Work.Design.Elements[slot].Value(place.Row) : 0.0;
    SettlePart(part);
}

void DesignSession::SetTolerance(ValuePlace place, double tolerance) {
    StoreInputs();
    HeldPart part = SettledAt(Document.Work.Inputs.Held, place);
    part.Tolerance = tolerance;
    SettlePart(part);
}

/// Values edited by hand stay until the next calculation.
void DesignSession::SettlePart(const HeldPart& part) {
    Calculation& work = Document.Work;
    Settle(work.Inputs.Held, part);
    if (!HasEdits(work.Design)) return Recalculate();
    work.Design.Held = work.Inputs.Held;
    AnalyseAndDraw();
    ShowInputs();
}

void DesignSession::Annotate(std::vector<GridColumn>& columns) const {
    const Calculation& work = Document.Work;
    const auto cellAt = [&columns](const ValuePlace& place) -> GridCell* {
        const auto column = static_cast<std::size_t>(place.Slot) - 1;
        if (column >= columns.size()) return nullptr;
        return &columns[column][static_cast<std::size_t>(place.Row)];
    };
    for (const PartToChoose& part : PartsToChoose(work.Design, {}, 0)) {
        GridCell* const cell = cellAt(part.Place);
        if (!cell) continue;
        const HeldPart settled = SettledAt(work.Inputs.Held, part.Place);
        cell->MayBeHeld = work.Design.StdLCValues;
        cell->Held = cell->MayBeHeld && settled.HoldsValue();
        if (cell->Held) cell->ToolTip += ", held";
        cell->Tolerance = ToleranceAt(work.Design, part.Place);
        cell->HasOwnTolerance = settled.Tolerance > 0.0;
        if (cell->HasOwnTolerance) cell->ToolTip += ", tolerance of its own";
    }
    if (!work.Design.StdLCValues) return;
    for (const PairedPart& pair : work.Design.Pairs)
        if (GridCell* const cell = PairAt(work.Design, pair.Place) ? cellAt(pair.Place) : nullptr)
            cell->ToolTip += ", " + PairText(pair);
}

void DesignSession::ShowChoosing() {
    const bool shows = parts.IsSearching() && choosing.elapsed() >= ProgressAfterMs;
    views.Status->ShowChoosing(shows ? parts.DoneShare() : 1.0);
}

/// The best set found, analysed; a worst case has the same draws.
void DesignSession::PutChosen() {
    Calculation& work = Document.Work;
    const bool discarded = work.DiscardedNow;
    auto seed = work.PendingSeed;
    if (!seed && work.WorstCase.Runs > 0) seed = work.WorstCase.Seed;
    parts.Put(work);
    Document.AnalyseEdits(report);
    work.DiscardedNow = discarded;
    work.PendingSeed = seed;
}

/// It belongs to the step that asked for it.
void DesignSession::TakeChosen() {
    Hold();
    PutChosen();
    ShowInputs();
    Document.AmendStep();
    Draw(Waiting::Traces);
}

void DesignSession::FinishChoosing() {
    if (!parts.IsSearching()) return;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    while (parts.IsSearching())
        parts.Advance();
    QGuiApplication::restoreOverrideCursor();
    TakeChosen();
}

}  // namespace ladderwise
