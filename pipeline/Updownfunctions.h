// The numeric inputs, one row of a table for each: its names, unit, limits, step, box and place in
// the design; and the spin buttons made of those rows. Each handler reads its box within its
// bounds, steps it, writes it back and stores it; without a direction it is the box's reader. No
// Qt.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "design/FilterDesign.h"
#include "design/Messages.h"
#include "numbers/NumberBox.h"

namespace ladderwise {

struct DesignInputs;

/// Every input box, in the order in which they are read.
enum class InputId {
    NumPoles,
    Ripple,
    F0,
    BandWidth,
    EllipticAtten,
    TrapType,
    RSource,
    RLoad,
    IndQ,
    IndC,
    CapL,
    CapR,
    WorstCaseSims,
    GDPhaseThreshold,
    PercentChange,
    Scale,
    TLIN,
    TLSC,
    TLOC,
    Factor,
    TankValue1,
    TankValue10 = TankValue1 + MaxTanks - 1,
    NortonA,
    NortonK,
    NortonM,
    Reel,
    Count
};
inline constexpr int NumInputs = static_cast<int>(InputId::Count);

/// The bounds of a box as texts, as its reader takes them and its tool tip shows them.
struct BoxLimits {
    std::string Minimum;
    std::string Default;
    std::string Maximum;
};

/// What a reader writes back into its box.
enum class WriteBack {
    Nothing,      ///< the text stays as typed
    Significant,  ///< BoxDigits significant digits, the exact value behind them
    Decimals,     ///< one or two decimals, the exact value behind them
    Whole         ///< a whole number
};

/// One input. A box whose unit can be chosen has a row for each unit.
struct InputRow {
    InputId Id;
    const char* Name;       ///< on the console and in notes
    const char* Component;  ///< of its controls: Component + "Box", "UpDown", "Label"; and its
                            ///< field in design files
    const char* Label;      ///< beside the box, with its mnemonic
    const char* Meaning;    ///< in tool tips and help
    const char* Unit;       ///< as typed
    const char* Initial;    ///< text in a fresh program
    BoxLimits Limits;
    double Step;    ///< of the spin buttons, in the unit typed; 0: none
    double Factor;  ///< SI units per unit typed
    WriteBack Back;
    double (*Get)(const FilterDesign&);        ///< the value in use, SI; null: the design has none
    void (*Put)(FilterDesign&, double value);  ///< stores a value in SI units
    bool (*Enabled)(const DesignInputs&) = nullptr;  ///< null: always
    const char* WhenDisabled = "";                   ///< "for band-pass and notch"
    int UnitCode = -1;       ///< of ChoiceId::BandWidthUnit, if the row is for one unit
    bool ReadLater = false;  ///< the stage that it belongs to reads it
    BoxLimits (*ComputedLimits)(const DesignInputs&, const FilterDesign&) = nullptr;
    double (*Stepped)(const DesignInputs&, double value, int direction) = nullptr;  ///< own rule
};

/// The table, in the order of InputId.
const std::vector<InputRow>& InputRows();

/// The row of a box for the unit chosen.
const InputRow& RowOf(InputId id, const DesignInputs& inputs);

/// The label as messages name it: without mnemonic, with the unit: "Ripple dB", "Bandwidth MHz".
std::string PlainLabel(const InputRow& row);

/// The bounds in force.
BoxLimits LimitsOf(const InputRow& row, const DesignInputs& inputs, const FilterDesign& design);

/// True if the input plays a part in the present design.
bool IsEnabled(const InputRow& row, const DesignInputs& inputs);

/// What an input holds, SI units, while it plays no part and its bounds move with other inputs: as
/// it was typed, whatever those bounds are now. Nothing for any other input.
std::optional<double> KeptEntry(InputId id, const DesignInputs& inputs);

/// The range of a box for people: "0.001 to 100000".
std::string RangeText(const BoxLimits& limits);

/// What a tool tip says: "Bandwidth: 1 to 398 MHz. In use: 40 MHz", or for what it is there.
std::string InputTip(InputId id, const DesignInputs& inputs, const FilterDesign& design);

/// Turns a text with a unit or a prefix behind its number ("145.825 MHz", "145825k", "50 ohm") into
/// the number alone, in the unit of the box.
void UnderstandUnit(InputId id, DesignInputs& inputs);

/// None: only read, write back and store.
enum class SpinDirection { None, Up, Down };

/// A press of a spin button. TenTimes: the Ctrl key is held.
struct SpinStep {
    SpinDirection Direction = SpinDirection::None;
    bool TenTimes = false;
};

/// Reads a box within its limits, steps it, writes it back and stores it. The stepped value is
/// clamped only by the next read, which then shows the box as replaced. A KeptEntry is stored
/// within the limits too, but its box stays as it is, to be judged when it plays a part again.
void StepInput(InputId id, DesignInputs& inputs, FilterDesign& design, SpinStep spin,
               const MessageCallback& report);

/// F0 of a low-pass prototype in MHz: 1 rad/s.
inline constexpr const char* PrototypeF0Text = "159.15e-9";

}  // namespace ladderwise
