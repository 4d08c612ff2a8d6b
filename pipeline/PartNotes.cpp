// Notes about single parts.
#include <cmath>
#include <map>

#include "analysis/PartValues.h"
#include "design/Designators.h"
#include "directcoupled/Tanks.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/NoteSources.h"

namespace ladderwise {

namespace {

constexpr int PartDigits = 2;  ///< decimals of values in notes

/// No part has more henries or farads, not even in a prototype for 1 ohm and 1 rad/s.
constexpr double LargestPartValue = 100.0;

/// Line impedances beyond these, ohm, come of a line of 180 or a stub of 90 degrees, whose tangent
/// or sine rounding keeps from infinity or zero.
constexpr double HighestLineImpedance = 1e9;
constexpr double LowestLineImpedance = 1e-9;

constexpr double StubLimit = 90.0;       ///< degrees: there a stub stands for no L or C any more
constexpr double InverterLimit = 180.0;  ///< degrees: there a line inverts nothing
constexpr double LeastWire = 0.1;        ///< F; a tap of an untapped tank is larger

/// What is wrong with a value, the worst first.
enum class PartFault {
    None,
    NoNumber,
    Unbounded,
    Negative,
    Zero,
    TooHigh,
    TooLow,
    TooSmall,
    TooLarge,
    Wire,
};

/// Why it is.
enum class FaultCause { Unknown, FactorOne, LongStub, LongInverter, OverCoupled };

struct PartPlace {
    int Slot;
    int Row;
    ValueKind Kind;
    double Value;
};

/// A tapped tank whose factor taps nothing off.
bool IsUntapped(const FilterDesign& design, TankType a, TankType b) {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    return design.PassType == PassType::DirectCoupled && settings.TankFactor == 1.0 &&
           (settings.TankType == a || settings.TankType == b);
}

/// The capacitor that a factor of 1 leaves of the tap of tanks 3 and 5.
bool IsTransparentTap(const FilterDesign& design, const PartPlace& part) {
    return part.Row == 3 && part.Kind == ValueKind::Capacitance && part.Value >= LeastWire &&
           part.Slot % 2 == 0 && IsUntapped(design, TankType::ShuntCSeriesLC, TankType::TappedByC);
}

/// The L-sections at the ends of a Norton band-pass at the level of its terminations: no parts.
bool IsLeftOut(const FilterDesign& design, const PartPlace& part) {
    return design.PassType == PassType::Norton && part.Value == 0.0 &&
           (part.Slot == 1 || part.Slot == design.NumElements);
}

PartFault FaultOf(const FilterDesign& design, const PartPlace& part) {
    const double value = part.Value;
    if (std::isnan(value)) return PartFault::NoNumber;
    if (value > NotUsedLimit) return PartFault::Unbounded;
    if (IsLeftOut(design, part)) return PartFault::None;
    if (value < 0.0) return PartFault::Negative;
    if (value == 0.0) return PartFault::Zero;
    if (part.Kind == ValueKind::Impedance && value > HighestLineImpedance)
        return PartFault::TooHigh;
    if (part.Kind == ValueKind::Impedance && value < LowestLineImpedance) return PartFault::TooLow;
    if (!IsPart(part.Kind)) return PartFault::None;
    if (IsTransparentTap(design, part)) return PartFault::Wire;
    if (value < SmallestPartValue) return PartFault::TooSmall;
    return value > LargestPartValue ? PartFault::TooLarge : PartFault::None;
}

FaultCause CauseOf(const FilterDesign& design, const PartPlace& part, PartFault fault) {
    if (design.PassType != PassType::DirectCoupled || HasEdits(design)) return FaultCause::Unknown;
    const bool tank = part.Slot % 2 == 0;
    if (fault == PartFault::Wire) return FaultCause::FactorOne;
    if (fault == PartFault::Zero && tank && part.Row == 2 &&
        IsUntapped(design, TankType::ShuntLSeriesLC, TankType::TappedByL))
        return FaultCause::FactorOne;
    if (part.Kind == ValueKind::Impedance) {
        const double length = design.Elements[part.Slot].Value(part.Row - 1);
        if (tank && length >= StubLimit &&
            InfoOf(design.Elements[part.Slot].Type).Arm != ElementArm::Line &&
            design.DirectCoupled.TankType != TankType::ShortedLine)
            return FaultCause::LongStub;
        if (!tank && length >= InverterLimit) return FaultCause::LongInverter;
    }
    if (fault == PartFault::Negative && tank && IsPart(part.Kind) && BandOf(design).Q > 0.0)
        return FaultCause::OverCoupled;
    return FaultCause::Unknown;
}

std::string ShownValue(const PartPlace& part) {
    return FormatWithPrefix(part.Value, PartDigits, UnitOf(part.Kind));
}

/// "is negative", "are negative", ...
std::string Predicate(PartFault fault, bool many, const PartPlace& part) {
    const std::string are = many ? "are " : "is ", have = many ? "have " : "has ";
    switch (fault) {
        case PartFault::None:
            break;
        case PartFault::NoNumber:
            return have + "no value: the calculation gave no number";
        case PartFault::Unbounded:
            return have + "no value: it grew beyond all bounds";
        case PartFault::Negative:
            return are + "negative";
        case PartFault::Zero:
            return are + "0 " + UnitOf(part.Kind);
        case PartFault::TooHigh:
            return are + "too high to build";
        case PartFault::TooLow:
            return are + "too low to build";
        case PartFault::TooSmall:
            return are + "too small to build; the response counts it as 1E-18";
        case PartFault::TooLarge:
            return are + "beyond reach (a value is typed as 400p or 400E-12)";
        case PartFault::Wire:
            return are + ShownValue(part);
    }
    return {};
}

std::string CauseText(FaultCause cause, bool many) {
    switch (cause) {
        case FaultCause::Unknown:
            return {};
        case FaultCause::FactorOne:
            return many ? ": the factor is 1, wires stand in their places"
                        : ": the factor is 1, a wire stands in its place";
        case FaultCause::LongStub:
            return ": a stub of 90 degrees or more stands for no L or C";
        case FaultCause::LongInverter:
            return ": a line of 180 degrees inverts nothing";
        case FaultCause::OverCoupled:
            return ": the inverters take more from the tank than it holds";
    }
    return {};
}

/// A value is told where it says more than the fault does.
bool TellsValue(PartFault fault) {
    return fault == PartFault::Negative || fault == PartFault::TooHigh ||
           fault == PartFault::TooLow || fault == PartFault::TooSmall ||
           fault == PartFault::TooLarge;
}

/// Calls `take(part)` for every value that the ladder uses.
template <typename Take>
void ForEveryValue(const FilterDesign& design, Take take) {
    for (int slot = 1; slot <= design.NumElements; ++slot)
        for (int row = 0; row < 4; ++row) {
            const ValueKind kind = InfoOf(design.Elements[slot].Type).Values[row];
            if (kind != ValueKind::Unused)
                take(PartPlace{slot, row, kind, design.Elements[slot].Value(row)});
        }
}

/// Parts with a common fault: "C4, C8", and "C4 = -1.20 pF, C8 = -2.00 pF".
struct PartList {
    std::string Names{};
    std::string Values{};
    int Count = 0;
    PartPlace First{};

    void Add(const PartPlace& part, const std::string& designator) {
        if (Count++ == 0) First = part;
        const std::string comma = Names.empty() ? "" : ", ";
        Names += comma + designator;
        Values += comma + designator + " = " + ShownValue(part);
    }
};

/// The designator of a value; of a line's impedance "Z0 of TL4".
std::string NameOfPart(const std::array<SlotDesignators, NumSlots>& names, const PartPlace& part) {
    const std::string& name = names[part.Slot][part.Row];
    return part.Kind == ValueKind::Impedance ? "Z0 of " + name : name;
}

}  // namespace

bool AddFaultyParts(const FilterDesign& design, std::vector<Note>& notes) {
    const auto names = DesignatorsOf(design);
    std::map<std::tuple<PartFault, FaultCause, ValueKind>, PartList> faults;
    bool hopeless = false;
    ForEveryValue(design, [&](const PartPlace& part) {
        const PartFault fault = FaultOf(design, part);
        if (fault == PartFault::None) return;
        const FaultCause cause = CauseOf(design, part, fault);
        hopeless = hopeless || cause != FaultCause::FactorOne;
        faults[{fault, cause, part.Kind}].Add(part, NameOfPart(names, part));
    });
    for (const auto& [key, list] : faults) {
        const auto& [fault, cause, kind] = key;
        const bool many = list.Count > 1;
        notes.push_back({NoteKind::Unrealisable, list.Names,
                         (TellsValue(fault) ? list.Values : list.Names) + " " +
                             Predicate(fault, many, list.First) + CauseText(cause, many) + "."});
    }
    return hopeless;
}

void AddNotVaried(const Calculation& calculation, std::vector<Note>& notes) {
    if (calculation.WorstCase.Runs == 0) return;
    const auto names = DesignatorsOf(calculation.Design);
    PartList list;
    ForEveryValue(calculation.Design, [&](const PartPlace& part) {
        if (!IsPart(part.Kind) || !(part.Value >= LargestRandomisedValue) ||
            part.Value > NotUsedLimit)
            return;
        list.Add(part, names[part.Slot][part.Row]);
    });
    if (list.Count > 0)
        notes.push_back({NoteKind::NotVaried, list.Names,
                         list.Values + (list.Count > 1 ? " do" : " does") +
                             " not vary in a worst case: only values below 0.1 do."});
}

}  // namespace ladderwise
