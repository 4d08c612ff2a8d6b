// The document: what its operations do to the state.
#include "pipeline/DesignDocument.h"

#include <utility>

#include "pipeline/SavedDesigns.h"

namespace ladderwise {

namespace {

/// Slots of a ladder up to its last element.
int CountOf(const ElementList& elements) {
    int count = NumSlots - 1;
    while (count > 0 && !IsElement(elements[count].Type))
        --count;
    return count;
}

KeptDesign KeptOf(const HandMadeDesign& design) {
    const auto scratch = std::make_unique<Calculation>();
    scratch->Inputs = design.Inputs;
    static_cast<DesignState&>(scratch->Design) = design.Design;
    KeptDesign kept{RecordOf(*scratch), KeptLadderOf(design.Design), design.Inputs.Held,
                    CalculatedLadderOf(design.Design)};
    RefreshRecord(kept.Record, {});
    return kept;
}

}  // namespace

DesignDocument::DesignDocument() : controls(StatesFor(Work.Inputs, false)) {}

void DesignDocument::Choose(ChoiceCode chosen) {
    ladderwise::Choose(Work.Inputs, Work.Design, chosen.Id, chosen.Code);
}

const ControlStates& DesignDocument::SettleControls(const MessageCallback& report) {
    ForbidEllipticCoupling(Work.Inputs, report);
    controls = StatesFor(Work.Inputs, controls.TrapPanelVisible);
    const bool bandPass = controls.RefAtPeakEnabled;
    if (!bandPass && (wasBandPass || Markers.RefAtPeak)) Markers.ClearReference();
    wasBandPass = bandPass;
    return controls;
}

void DesignDocument::Prepare(const MessageCallback& report, const std::function<bool()>& amend) {
    PrepareAmended(Work, amend, report);
}

void DesignDocument::AnalyseEdits(const MessageCallback& report) {
    AnalyseAsItStands(Work, report);
}

int DesignDocument::WorstCaseRuns() const {
    return Work.PendingSeed ? Work.Design.PartModel.MonteCarloRuns : Work.WorstCase.Runs;
}

void DesignDocument::FixSeed(bool fix) {
    if (!fix)
        Work.FixedSeed.reset();
    else if (Work.WorstCase.Runs > 0)
        Work.FixedSeed = Work.WorstCase.Seed;
    else
        Work.FixedSeed = static_cast<std::uint32_t>(Work.SeedSource());
}

std::uint32_t DesignDocument::PresentSeed() const {
    return Work.FixedSeed.value_or(Work.WorstCase.Runs > 0 ? Work.WorstCase.Seed : 1);
}

void DesignDocument::SetReference(const MessageCallback& report) {
    reference = std::make_shared<ReferenceDesign>(StoreReference(Work, report));
    showReference = true;
}

void DesignDocument::ExchangeReference(const MessageCallback& report) {
    if (!reference) return;
    // States of the history keep theirs as it was.
    reference = std::make_shared<ReferenceDesign>(*reference);
    ladderwise::ExchangeReference(*reference, Work, report);
}

void DesignDocument::RefreshReference(const MessageCallback& report) {
    if (ReferenceShown()) ladderwise::RefreshReference(*reference, Work, report);
}

DesignRecord DesignDocument::Record(const MessageCallback& report) const {
    DesignRecord record = RecordOf(Work);
    RefreshRecord(record, report);
    return record;
}

bool DesignDocument::EditsAreSaved() const {
    const FilterDesign& design = Work.Design;
    if (!tie->SavedEdits || !HasEdits(design)) return !tie->SavedEdits && !HasEdits(design);
    DesignState saved;
    saved.NumElements = design.NumElements;
    saved.Elements = design.Elements;
    saved.CalculatedElements = tie->SavedEdits;
    return !HasEdits(saved);
}

bool DesignDocument::Modified() const {
    return !EditsAreSaved() || Measured != tie->SavedMeasured || Limits != tie->SavedLimits ||
           Work.Inputs.Held != tie->SavedHeld ||
           (tie->Saved && !SameDesign(Record({}), *tie->Saved));
}

void DesignDocument::CountAsSaved(bool withCompanion) {
    tie->Saved = Record({});
    tie->SavedEdits.reset();
    tie->SavedMeasured.clear();
    tie->SavedLimits.clear();
    tie->SavedHeld.clear();
    if (withCompanion && HasEdits(Work.Design)) tie->SavedEdits = Work.Design.Elements;
    if (!withCompanion) return;
    tie->SavedMeasured = Measured;
    tie->SavedLimits = Limits;
    tie->SavedHeld = Work.Inputs.Held;
}

void DesignDocument::Begin() {
    CountAsSaved();
    history = {};
    NoteStep(0.0);
}

void DesignDocument::WasSavedTo(const std::string& path, bool withCompanion) {
    tie->Path = path;
    CountAsSaved(withCompanion);
}

bool DesignDocument::Load(std::string_view bytes, const std::string& path) {
    const auto record = DecodeRecord(bytes);
    if (!record) return false;
    tie = std::make_shared<FileTie>(FileTie{path, {}, {}, {}, {}, {}, {}});
    LoadRecord(*record, Work);
    Work.Inputs.Held.clear();
    // Values edited in the design of before, what was measured of it and what it must do are no
    // part of this one.
    Work.Discarded.reset();
    Work.Design.CalculatedElements.reset();
    Measured.clear();
    Limits.clear();
    return true;
}

bool DesignDocument::HasUnsavedWork() const {
    const bool marked = Markers.FreqMarkerCount > 0 || Markers.DbMarkerCount > 0;
    return Modified() || reference || marked || Markers.HasReference();
}

UnsavedWork DesignDocument::Kept() const {
    UnsavedWork work;
    work.Name = ProposedFileName(Work.Design);
    work.File = tie->Path;
    if (tie->Saved) work.Saved = KeptDesign{*tie->Saved, {}, tie->SavedHeld, {}};
    work.Stamps = tie->Stamps;
    if (tie->Saved && tie->SavedEdits)
        work.Saved->Ladder = KeptSlotsOf(*tie->SavedEdits, CountOf(*tie->SavedEdits));
    work.Design = {Record({}), KeptLadderOf(Work.Design), Work.Inputs.Held,
                   CalculatedLadderOf(Work.Design)};
    if (Work.Discarded) work.Discarded = KeptOf(*Work.Discarded);
    if (reference) {
        work.Reference = KeptDesign{reference->Record, KeptLadderOf(reference->Design),
                                    reference->Held, CalculatedLadderOf(reference->Design)};
        RefreshRecord(work.Reference->Record, {});
    }
    work.ReferenceShown = showReference;
    work.Markers = Markers;
    work.Measured = Measured;
    work.SavedMeasured = tie->SavedMeasured;
    work.Limits = Limits;
    work.SavedLimits = tie->SavedLimits;
    return work;
}

bool DesignDocument::Recover(const UnsavedWork& work, const MessageCallback& report) {
    bool fits = true;
    const auto calculate = [&](const KeptDesign& kept, Calculation& calculation) {
        LoadRecord(kept.Record, calculation);
        calculation.Inputs.Held = kept.Held;
        const auto putBack = [&] {
            if (kept.Ladder.empty()) return false;
            fits = PutBackLadder(calculation.Design, kept) && fits;
            return true;
        };
        PrepareAmended(calculation, putBack, report);
    };
    Limits = work.Limits;  // the values of the highest yield are chosen by them
    reference.reset();
    if (work.Reference) {
        const auto scratch = std::make_unique<Calculation>();
        scratch->ArrangeParts = Work.ArrangeParts;
        calculate(*work.Reference, *scratch);
        reference = std::make_shared<ReferenceDesign>(StoreReference(*scratch, report));
        reference->Record = work.Reference->Record;
    }
    showReference = work.ReferenceShown;
    tie = std::make_shared<FileTie>(
        FileTie{work.File, {}, {}, work.Stamps, work.SavedMeasured, work.SavedLimits, {}});
    if (work.Saved) tie->Saved = work.Saved->Record;
    if (work.Saved) tie->SavedHeld = work.Saved->Held;
    if (work.Saved && !work.Saved->Ladder.empty()) tie->SavedEdits = ElementsOf(work.Saved->Ladder);
    calculate(work.Design, Work);
    SettleControls(report);
    Markers = work.Markers;
    Measured = work.Measured;
    Work.Discarded.reset();
    if (work.Discarded) {
        const auto scratch = std::make_unique<Calculation>();
        scratch->ArrangeParts = Work.ArrangeParts;
        calculate(*work.Discarded, *scratch);
        Work.Discarded = HandMadeDesign{scratch->Inputs, scratch->Design, scratch->IdealElements,
                                        scratch->SynthesisMathErrors, scratch->Remarks};
    }
    history = {};
    NoteStep(0.0);
    return fits;
}

bool DesignDocument::Undo() {
    const DesignHistory::State state = history.Undo();
    if (state) Restore(*state);
    return state != nullptr;
}

bool DesignDocument::Redo() {
    const DesignHistory::State state = history.Redo();
    if (state) Restore(*state);
    return state != nullptr;
}

std::shared_ptr<const DesignSnapshot> DesignDocument::Snapshot() const {
    auto snapshot = std::make_shared<DesignSnapshot>();
    snapshot->Inputs = Work.Inputs;
    snapshot->Design = Work.Design;
    snapshot->IdealElements = Work.IdealElements;
    snapshot->ExactElements = Work.ExactElements;
    snapshot->Discarded = Work.Discarded;
    snapshot->UsedInputs = Work.UsedInputs;
    snapshot->DiscardedNow = Work.DiscardedNow;
    snapshot->CountChanged = Work.CountChanged;
    snapshot->Remarks = Work.Remarks;
    snapshot->FixedSeed = Work.FixedSeed;
    snapshot->DrawnSeed = Work.PendingSeed;
    if (!snapshot->DrawnSeed && Work.WorstCase.Runs > 0) snapshot->DrawnSeed = Work.WorstCase.Seed;
    snapshot->SynthesisMathErrors = Work.SynthesisMathErrors;
    snapshot->AnalysisMathErrors = Work.AnalysisMathErrors;
    snapshot->Markers = Markers;
    snapshot->Measured = Measured;
    snapshot->Limits = Limits;
    snapshot->Controls = controls;
    snapshot->WasBandPass = wasBandPass;
    snapshot->Reference = reference;
    snapshot->ShowReference = showReference;
    snapshot->Tie = tie;
    return snapshot;
}

/// The sweep and its analysis follow from the state; what they write into boxes stands in the
/// snapshot already, so it has the last word.
void DesignDocument::Restore(const DesignSnapshot& snapshot) {
    const auto restoreState = [&] {
        Work.Inputs = snapshot.Inputs;
        static_cast<DesignState&>(Work.Design) = snapshot.Design;
    };
    restoreState();
    BuildSweepGrid(Work.Design);
    AnalyseAsItStands(Work, {});
    restoreState();
    Work.IdealElements = snapshot.IdealElements;
    Work.ExactElements = snapshot.ExactElements;
    Work.Discarded = snapshot.Discarded;
    Work.UsedInputs = snapshot.UsedInputs;
    Work.DiscardedNow = snapshot.DiscardedNow;
    Work.CountChanged = snapshot.CountChanged;
    Work.Remarks = snapshot.Remarks;
    Work.FixedSeed = snapshot.FixedSeed;
    Work.PendingSeed = snapshot.DrawnSeed;
    Work.SynthesisMathErrors = snapshot.SynthesisMathErrors;
    Work.AnalysisMathErrors = snapshot.AnalysisMathErrors;
    Markers = snapshot.Markers;
    Measured = snapshot.Measured;
    Limits = snapshot.Limits;
    controls = snapshot.Controls;
    wasBandPass = snapshot.WasBandPass;
    reference = snapshot.Reference;
    showReference = snapshot.ShowReference;
    tie = snapshot.Tie;
}

}  // namespace ladderwise
