// The history of a design document: whole states, the names of the steps between them, and which
// steps are one. No Qt.
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "design/LimitLine.h"
#include "design/MarkerState.h"
#include "design/MeasuredFile.h"
#include "files/FileStamp.h"
#include "pipeline/Calculation.h"
#include "pipeline/Choices.h"
#include "pipeline/ReferenceDesign.h"

namespace ladderwise {

/// The file that a design was opened from, or saved to since. All states from one opening to the
/// next share one: undoing a change does not undo the saving before it, but undoing an opening
/// returns to the file of before.
struct FileTie {
    std::string Path;                   ///< full; empty: none
    std::optional<DesignRecord> Saved;  ///< the design in it, or that the program started with
    /// The ladder kept with it, if that has values edited by hand.
    std::optional<ElementList> SavedEdits{};
    DesignStamps Stamps{};          ///< what the files of that name held then
    MeasuredFiles SavedMeasured{};  ///< shown with it
    LimitLines SavedLimits{};
    HeldParts SavedHeld{};
};

/// A document at one moment: all that cannot be calculated from the rest, to the last bit.
struct DesignSnapshot {
    DesignInputs Inputs;
    DesignState Design;
    ElementList IdealElements;
    ElementList ExactElements;
    std::optional<HandMadeDesign> Discarded;
    DesignInputs UsedInputs;
    bool DiscardedNow = false;
    bool CountChanged = false;
    std::vector<PartsRemark> Remarks{};
    std::optional<std::uint32_t> FixedSeed;
    std::optional<std::uint32_t> DrawnSeed;  ///< of the worst case shown
    std::uint64_t SynthesisMathErrors = 0;
    std::uint64_t AnalysisMathErrors = 0;
    MarkerState Markers;
    MeasuredFiles Measured;
    LimitLines Limits;
    ControlStates Controls;
    bool WasBandPass = false;
    std::shared_ptr<ReferenceDesign> Reference;
    bool ShowReference = false;
    std::shared_ptr<FileTie> Tie;
};

/// What distinguishes two neighbouring states: "N Poles", "3", "4".
struct StepLabel {
    std::string Thing;
    std::string Before;  ///< empty, as is After: the thing says it all
    std::string After;
    bool Merges = false;  ///< with a step of the same thing right before it

    /// "N Poles 3 → 4".
    std::string Text() const;
};

/// The difference between two states as their user sees it; nothing if the design, its markers,
/// its reference, its limits and the measured files are the same. What a box looks like is no
/// difference.
std::optional<StepLabel> DescribeStep(const DesignSnapshot& before, const DesignSnapshot& after);

inline constexpr std::size_t MostUndoSteps = 500;  ///< older ones are forgotten
inline constexpr double MergeSeconds = 1.0;        ///< between two steps of one box that are one

class DesignHistory {
public:
    using State = std::shared_ptr<const DesignSnapshot>;

    /// Notes the state after an action. If it is none other than the present one, it takes the
    /// place of that and nothing is forgotten; otherwise it is a step, and what was undone before
    /// cannot be redone any more.
    void Note(State state, double seconds);

    /// The present state is another one than it was noted as: no step, and what was undone before
    /// can be redone still.
    void Amend(State state);

    /// The state to return to, which is the present one from now on; null: there is none.
    State Undo();
    State Redo();

    std::string UndoName() const;
    std::string RedoName() const;
    std::size_t Steps() const { return entries.empty() ? 0 : entries.size() - 1; }

private:
    /// A state and the step that led to it.
    struct Entry {
        State After;
        StepLabel Step;
        double Seconds = 0.0;
    };
    bool MergesWithPresent(const StepLabel& step, double seconds) const;

    std::vector<Entry> entries;  ///< the first one's step is forgotten
    std::size_t present = 0;
};

}  // namespace ladderwise
