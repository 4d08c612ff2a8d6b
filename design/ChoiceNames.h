// The one table of everything that is chosen rather than typed: menu entries, radio buttons and
// check boxes, with their codes, console words, component names and captions, and the member of the
// design that a choice ends in. Ground floor, no Qt.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "design/FilterDesign.h"

namespace ladderwise {

/// Every choice; a check box is a choice between 0 (off) and 1 (on).
enum class ChoiceId {
    Pass,
    Response,
    Form,
    Sweep,
    BandWidthUnit,
    Parts,
    CapTolerance,
    IndTolerance,
    StdLCValues,
    WorstCase,
    AutoScale,
    TraceMag1dB,
    TraceMag10dB,
    TracePhase,
    TraceGroupDelay,
    TracePulse,
    TraceReturnLoss,
    TankType,
    InverterType,
    TankUnits,
    AlternateMatch,
    NortonType,
    NortonGoal,
    AutoOptimize,
    Absorb,
    FitWidth,
    CapAbsolute,
    Draw,
    Overlay,
    Count
};
inline constexpr int NumChoices = static_cast<int>(ChoiceId::Count);

/// Code of the pass entry "Low Pass Prototype": a low-pass of 1 rad/s between 1-ohm terminations.
inline constexpr int PrototypePassCode = 6;
inline constexpr int BandWidthInMHz = 0;      ///< codes of ChoiceId::BandWidthUnit
inline constexpr int BandWidthInPercent = 1;  ///< of F0

/// One entry of a choice.
struct ChoiceRow {
    int Code;
    const char* Word;       ///< on the console
    const char* Component;  ///< name of the control; stands in design files and never changes
    const char* Caption;    ///< of the control, with its mnemonic
    /// In the title of a plot; the control's tool tip where none is shown; of a tank what it is
    /// good for: the values that it needs, its zeros and further pass bands, the loss that it adds.
    const char* Title;
    const char* FileTitle = "";  ///< of a response, in the file name that saving proposes
};

/// How the console shows and takes a choice.
enum class ConsoleForm {
    Word,    ///< one of the words
    Number,  ///< the words are whole numbers
    Hidden,  ///< part of another setting
};

/// One choice with its entries in the order in which menus show them.
struct ChoiceTable {
    ChoiceId Id;
    const char* Name;  ///< on the console
    ConsoleForm Form;
    int Initial;                           ///< code in a fresh program
    void (*Put)(FilterDesign&, int code);  ///< null: the design has no such member
    int (*InUse)(const FilterDesign&);     ///< code after the calculation; null: as chosen
    std::vector<ChoiceRow> Rows;
    const char* Record;           ///< field of design files with the component that is checked
    const char* RecordCode = "";  ///< field with the code, for files whose component is unknown
};

/// Every choice, in the order of ChoiceId.
const std::vector<ChoiceTable>& ChoiceTables();

const ChoiceTable& TableOf(ChoiceId id);

/// True for a check box: "off" has no control of its own.
bool IsSwitch(ChoiceId id);

/// The row of a code; null if there is none.
const ChoiceRow* FindRow(ChoiceId id, int code);

/// Code of a console word; nothing if there is no such word.
std::optional<int> CodeOfWord(ChoiceId id, std::string_view word);

/// A choice and code of a component name; nothing if no choice has such a control.
struct ChoiceCode {
    ChoiceId Id;
    int Code;
};
std::optional<ChoiceCode> FindComponent(std::string_view component);

/// "3 Pole Butterworth LPF": poles (or traps), family and pass type in use.
std::string DesignTitle(const FilterDesign& design);

/// What the number in the title of an elliptic design counts: "2 traps, order 5"; empty for the
/// other families, whose poles are their order.
std::string OrderText(const FilterDesign& design);

}  // namespace ladderwise
