// What has to survive the end of a program that was not asked to save: the last state of a
// document, as a text that is whole or no text at all. No Qt, no disk.
#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/FilterDesign.h"
#include "design/LimitLine.h"
#include "design/MarkerState.h"
#include "design/MeasuredFile.h"
#include "design/ValuePlace.h"
#include "files/FileReadSave.h"
#include "files/FileStamp.h"

namespace ladderwise {

/// One slot of a ladder: its type by the catalogue's name, and its values in SI units.
struct KeptSlot {
    std::string Type;
    std::array<double, 4> Values{};
};

/// A design as a calculation finds it again.
struct KeptDesign {
    DesignRecord Record{};
    /// Slots 1 .. of a ladder with values edited by hand; empty: it is as calculated.
    std::vector<KeptSlot> Ladder{};
    HeldParts Held{};
    /// The same slots as the calculation left them which the edits were made on: where inputs were
    /// read since without a calculation, a new one makes another ladder. Empty: not known.
    std::vector<KeptSlot> Calculated{};
};

struct UnsavedWork {
    std::int64_t Time = 0;              ///< when it was kept, seconds since 1970 UTC
    std::string Name;                   ///< of the design, as saving would propose it
    std::string File;                   ///< full path, UTF-8; empty: none
    std::optional<KeptDesign> Saved{};  ///< the design in that file
    DesignStamps Stamps{};              ///< and what the files of that name held
    KeptDesign Design{};
    std::optional<KeptDesign> Discarded{};  ///< what can be brought back
    std::optional<KeptDesign> Reference{};
    bool ReferenceShown = false;
    MarkerState Markers{};
    MeasuredFiles Measured{};       ///< shown with the design
    MeasuredFiles SavedMeasured{};  ///< and with that in the file
    LimitLines Limits{};            ///< of the design
    LimitLines SavedLimits{};       ///< and of that in the file
};

/// More bytes than this are no kept work.
inline constexpr std::size_t MaxUnsavedWorkBytes = 1u << 20;

/// Slots 1 .. `count` of a ladder.
std::vector<KeptSlot> KeptSlotsOf(const ElementList& elements, int count);

/// The ladder of a design with values edited by hand; empty if it has none.
std::vector<KeptSlot> KeptLadderOf(const DesignState& design);

/// The ladder that its edits were made on; empty if it has none.
std::vector<KeptSlot> CalculatedLadderOf(const DesignState& design);

/// The other way round. Types that the catalogue does not have are no elements.
ElementList ElementsOf(const std::vector<KeptSlot>& slots);

/// Puts the ladder of a kept design in the place of the calculated one, which may have other
/// elements (values that were brought back); an analysis has to follow. False, and nothing is
/// changed, where the catalogue does not have its elements.
bool PutBackLadder(DesignState& design, const KeptDesign& kept);

/// Lines of a key and its value: bytes as pairs of hexadecimal digits, numbers with all their
/// digits. The last line tells that the text is whole.
std::string EncodeWork(const UnsavedWork& work);

/// Nothing if the text is not whole, or of another version of the form.
std::optional<UnsavedWork> DecodeWork(std::string_view text);

}  // namespace ladderwise
