// The document of the main window: the inputs with the calculated design, values edited by hand,
// markers, the reference, the measured files shown with it, its limits and the file it is tied to;
// what it takes to save and open it, and its history. It knows neither a window nor the disk: bytes
// come in and go out. No Qt.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "design/MarkerState.h"
#include "pipeline/Calculation.h"
#include "pipeline/Choices.h"
#include "pipeline/DesignHistory.h"
#include "pipeline/ReferenceDesign.h"
#include "pipeline/UnsavedWork.h"

namespace ladderwise {

class DesignDocument {
public:
    DesignDocument();

    DesignDocument(const DesignDocument&) = delete;
    DesignDocument& operator=(const DesignDocument&) = delete;

    /// Inputs, design and results. What is done to the inputs counts with the next Prepare.
    Calculation Work;
    MarkerState Markers;
    MeasuredFiles Measured;  ///< shown with the design, in their order
    LimitLines Limits;       ///< what the design must do, in their order

    // --- choices and calculation

    /// Makes a choice, and what it brings with it.
    void Choose(ChoiceCode chosen);

    /// Settles what the choices forbid and enable: an elliptic band-pass that is coupled, the trap
    /// panel, the read-out reference, which ends where band-passes end.
    const ControlStates& SettleControls(const MessageCallback& report);
    const ControlStates& Controls() const { return controls; }

    /// The first half of a calculation: inputs to the nominal ladder. The second half, which plots
    /// and runs the worst case, is FinishCalculation. `amend` as for PrepareAmended.
    void Prepare(const MessageCallback& report, const std::function<bool()>& amend = {});

    /// Analyses the ladder as it stands, after values were edited.
    void AnalyseEdits(const MessageCallback& report);

    /// Puts a value edited by hand into the ladder.
    void Edit(int slot, int row, double value) { Work.Design.Elements[slot].Value(row) = value; }

    /// Runs of the worst case that is drawn, or about to be; 0: none.
    int WorstCaseRuns() const;

    /// Keeps the draws of the worst case on the screen for the calculations to come, or frees them.
    void FixSeed(bool fix);
    /// The seed that a user would want to change: the fixed one, or that of the last worst case.
    std::uint32_t PresentSeed() const;

    // --- reference

    /// The stored reference; null before the first SetReference.
    const ReferenceDesign* Reference() const { return reference.get(); }
    bool ReferenceShown() const { return reference && showReference; }
    void ShowReference(bool show) { showReference = show; }

    /// Keeps the finished design as the reference and shows it.
    void SetReference(const MessageCallback& report);

    /// Exchanges design and reference. A calculation has to follow.
    void ExchangeReference(const MessageCallback& report);

    /// The bytes of the reference's response that each drawing takes afresh.
    void RefreshReference(const MessageCallback& report);

    // --- file

    /// Full path; empty: the design has no file yet.
    const std::string& File() const { return tie->Path; }

    /// The design as its file would hold it.
    DesignRecord Record(const MessageCallback& report) const;

    /// True if there is something to save: the design, the values edited by hand in it, its
    /// limits, or the measured files shown with it differ from what was saved.
    bool Modified() const;

    /// From now on the design as it stands is the one without changes; `withCompanion`: and so is
    /// what its record has no room for, the values edited by hand, the measured files and the
    /// limits.
    void CountAsSaved(bool withCompanion = true);

    /// True if the design has something that its record has no room for.
    bool NeedsCompanion() const {
        return HasEdits(Work.Design) || !Measured.empty() || !Limits.empty() ||
               !Work.Inputs.Held.empty();
    }

    /// The first state: there is nothing to save and nothing to undo.
    void Begin();

    /// It was written to a file as it stands, `withCompanion` or without what that holds.
    void WasSavedTo(const std::string& path, bool withCompanion = true);

    /// What its file and the companion beside it held when they were read or written last.
    const DesignStamps& Stamps() const { return tie->Stamps; }
    void KeepStamps(const DesignStamps& stamps) { tie->Stamps = stamps; }

    /// Saving it failed: it is tied to no file any more.
    void LoseFile() { tie->Path.clear(); }

    /// Takes the bytes of a design file. False, and nothing changes, if they are none. A
    /// calculation has to follow; CountAsSaved after it.
    bool Load(std::string_view bytes, const std::string& path);

    // --- unsaved work

    /// True if the end of the program would lose something: what Modified tells, a reference or
    /// markers.
    bool HasUnsavedWork() const;

    /// All of that; its time is left to the caller.
    UnsavedWork Kept() const;

    /// Takes over what was kept, calculated and analysed, with its file but without a history. What
    /// is drawn of it has to follow. False if the catalogue lacks elements of a ladder that was
    /// edited by hand: then it is as calculated.
    bool Recover(const UnsavedWork& work, const MessageCallback& report);

    // --- history

    /// Notes what the last action changed; `seconds` is the time on any steady clock. Call it
    /// after every action.
    void NoteStep(double seconds) { history.Note(Snapshot(), seconds); }

    /// The last action has come to another state than was noted: better standard values were found
    /// since.
    void AmendStep() { history.Amend(Snapshot()); }

    std::size_t Steps() const { return history.Steps(); }

    /// What Undo and Redo would do, "N Poles 3 → 4"; empty: nothing to undo or redo.
    std::string UndoName() const { return history.UndoName(); }
    std::string RedoName() const { return history.RedoName(); }

    /// One step back, or forth again, to the very state of that moment. What is drawn of it, its
    /// worst case included, has to follow. False if there is no such step.
    bool Undo();
    bool Redo();

private:
    std::shared_ptr<const DesignSnapshot> Snapshot() const;
    void Restore(const DesignSnapshot& snapshot);

    bool EditsAreSaved() const;

    ControlStates controls;
    bool wasBandPass = false;  ///< when the controls were settled last
    std::shared_ptr<ReferenceDesign> reference;
    bool showReference = false;
    std::shared_ptr<FileTie> tie = std::make_shared<FileTie>();
    DesignHistory history;
};

}  // namespace ladderwise
