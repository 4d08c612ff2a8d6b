// Standard values that take a search: the nearest ones are shown at once, better ones are looked
// for between the events of the window and shown when they are found.
#include <QGuiApplication>
#include <QScopedValueRollback>

#include "app/ClientArea.h"
#include "app/DesignSession.h"
#include "app/StatusView.h"
#include "app/ValueGrid.h"

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

/// A slice of the search. What it finds waits until typing is read, which it would write over.
void DesignSession::ImproveParts() {
    if (!parts.IsSearching()) return;
    if (IsTypingUnread() || views.Client->Grid()->IsEditing()) return noEventWaits.start(TypingMs);
    QElapsedTimer slice;
    slice.start();
    bool found = false;
    while (!found && parts.IsSearching() && slice.elapsed() < SliceMs)
        found = parts.Advance();
    if (found) return TakeChosen();
    ShowChoosing();
    noEventWaits.start(0);
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
