// The file beside a design file: what the record has no room for, as JSON. Measured files, values
// edited by hand and limits; members that this program does not know are kept. No Qt, no disk: what
// touches the disk reads and writes the text at CompanionPath.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "design/FilterDesign.h"
#include "design/LimitLine.h"
#include "design/MeasuredFile.h"
#include "design/ValuePlace.h"
#include "exchange/Json.h"

namespace ladderwise {

/// A value of the ladder changed by hand.
struct EditedValue {
    int Slot = 1;             ///< from 1
    int Row = 0;              ///< 0 .. 3 for V1 .. V4
    std::string Type;         ///< of the slot, by the catalogue's name
    double Calculated = 0.0;  ///< what the calculation had there, SI units
    double Value = 0.0;       ///< what the user put in its place
};

struct DesignCompanion {
    MeasuredFiles Measured{};  ///< their paths relative to the design's in the text
    std::vector<EditedValue> Edited{};
    LimitLines Limits{};
    HeldParts Held{};     ///< among standard values
    JsonObject Others{};  ///< members that are not known, in their order

    bool IsEmpty() const {
        return Measured.empty() && Edited.empty() && Limits.empty() && Held.empty() &&
               Others.empty();
    }
};

/// More bytes than this are no companion file.
inline constexpr std::size_t MaxCompanionBytes = 16u << 20;

/// "filter.tk_ldfilt" has "filter.tk_ldfilt.json" beside it.
std::string CompanionPath(const std::string& designPath);

struct CompanionResult {
    DesignCompanion Companion{};
    std::string Error{};   ///< what is damaged; empty if Companion holds the text
    std::string Remark{};  ///< limits that are none, which Companion is without; or empty
};

/// Reads the text of a companion file. Whatever is damaged, all of it counts as damaged, but for
/// limits: what is no limit is left out alone.
CompanionResult ReadCompanion(std::string_view text);

/// The text of a companion file.
std::string CompanionText(const DesignCompanion& companion);

/// Makes the paths of measured files relative to `folder` where they can be, or absolute from
/// there; both by their texts alone, as absolute paths in UTF-8.
void MakePathsRelative(DesignCompanion& companion, const std::string& folder);
void MakePathsAbsolute(DesignCompanion& companion, const std::string& folder);

/// The values of the ladder that differ from what the last calculation left.
std::vector<EditedValue> EditsOf(const FilterDesign& design);

/// Puts edited values into a freshly calculated ladder; a new analysis has to follow. All or none:
/// false, and nothing is changed, where the ladder is another than the one that was edited.
bool ApplyEdits(FilterDesign& design, const std::vector<EditedValue>& edits);

}  // namespace ladderwise
