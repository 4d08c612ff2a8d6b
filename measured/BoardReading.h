// What a measured board says: every part's actual value with its interval, how its resonators are
// tuned, what is wrong with it, and what to turn. No Qt.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "design/LimitLine.h"
#include "measured/BoardSearch.h"

namespace ladderwise {

/// The words when the ladder does not explain the data.
inline constexpr const char* NotUnderstoodText =
    "not understood: wrong schematic, a short, or data out of range";

/// The words when it does, and so do ladders with other values of every part.
inline constexpr const char* ResonancesToldText =
    "understood: resonances are told, no coil or capacitor by itself";
inline constexpr const char* NothingToldText =
    "understood, but no value is told: measure more points where the filter passes";

/// The beginning of the words when more than one fault explains them.
inline constexpr const char* SeveralFaultsText = "a fault, but the data do not tell which: ";

/// A value with its 95 % interval.
struct Estimate {
    double Actual = 0.0;
    double Low = 0.0;
    double High = 0.0;
    bool Undetermined = false;  ///< the data do not tell it: the half-width is over 10 %
};

/// A value of the ladder as it was found: mounted, so that a pad beside a capacitor to ground and a
/// via in line with a coil to ground belong to it.
struct BoardPart {
    std::string Designator;
    PartPlace Place{};
    ValueKind Kind = ValueKind::Unused;
    double Nominal = 0.0;
    Estimate Value{};
    std::optional<double> Q{};  ///< of a coil; none if it shows no loss

    double Deviation() const { return Value.Actual / Nominal - 1.0; }
};

struct BoardResonator {
    int Slot = 0;
    std::string Name{};    ///< "L1 C2", its coil and its capacitor
    double Nominal = 0.0;  ///< Hz
    Estimate Tuning{};     ///< Hz

    double Detuning() const { return Tuning.Actual - Nominal; }  ///< Hz
};

enum class FaultKind { Missing, Shorted, Swapped, Tenth, TenTimes, PortsSwapped };

/// "missing", "shorted", "swapped", "tenth", "ten-times", "ports-swapped".
const char* NameOf(FaultKind kind);

/// A gross fault that explains the data.
struct BoardFault {
    FaultKind Kind = FaultKind::Missing;
    std::vector<PartPlace> Places{};         ///< of the parts at fault
    std::vector<std::string> Designators{};  ///< of those; of parts that nobody can tell apart all
    std::string Text{};                      ///< what it is, and what it is as well
};

/// What to turn: one part, after those before it.
struct BoardTurn {
    std::string Designator;
    PartPlace Place{};
    double Change = 0.0;  ///< of the value that it has
    double Gain = 0.0;    ///< dB by which the largest deviation lessens, or the margin grows
    std::string Text{};
};

/// What a user can adjust.
enum class Adjustable { Coils, Capacitors, Any };

struct BoardOptions {
    BoardFreedom Freedom{};
    LimitLines Limits{};  ///< the aim; without any it is the design with the Q that was found
    Adjustable Turned = Adjustable::Any;
    std::function<void(double)> Progress{};  ///< told the share of the work that is done
};

struct BoardReading {
    bool Understood = false;
    std::string Text{};  ///< in a sentence
    std::optional<BoardFault> Fault{};
    double ResidualDb = 0.0;            ///< rms of model minus data
    double ResidualAt = 0.0;            ///< Hz, where it is largest
    double Excess = 0.0;                ///< the same over the noise
    std::optional<double> Q{};          ///< of all coils
    std::array<double, 2> PortDelay{};  ///< s, one way, at the design's source and load
    std::vector<BoardPart> Parts{};     ///< none if not understood
    std::vector<BoardResonator> Resonators{};
    std::vector<BoardTurn> Next{};
};

/// Fits the ladder of `design` as it stands to a measured network. A fit that does not reach the
/// noise gives no values, unless a gross fault explains it; nor does one that a fault is far
/// likelier than, if several kinds are: the text names them. Nothing is understood of a network
/// with fewer than LeastBoardPoints points, or of a ladder without parts.
BoardReading ReadBoard(const NetworkData& network, const FilterDesign& design,
                       const BoardOptions& options = {});

/// The ladder as it was measured: actual values where they are determined, nominal ones elsewhere.
ElementList MeasuredLadder(const BoardReading& reading, const DesignState& design);

}  // namespace ladderwise
