// The catalogue of ladder elements: codes, names, arms and what each of the four values means.
// Ground floor, no Qt. Used by the analysis, the value grid, the schematic strip and the exports.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace ladderwise {

/// Ladder element codes. Each is also the name and number of its schematic bitmap.
/// Any 32-bit code can stand in a slot; codes outside 0 .. 25 are no element.
enum class ElementType : std::int32_t {
    SeriesInd = 0,
    SeriesCap = 1,
    SeriesLC = 2,
    ShuntInd = 3,
    ShuntCap = 4,
    ShuntLC = 5,
    ShuntParLC = 6,
    ShuntSerParLC = 7,
    SeriesSerLC = 8,
    SerSerParLC = 9,
    SeriesTLIN = 10,
    ShuntTLSCC = 11,
    ShuntLTLOC = 12,
    ShuntTLSCTLOC = 13,
    ShuntTLOC = 14,
    DualShuntLC = 15,
    DualSeriesLC = 16,
    SeriesElliptic2 = 17,
    SeriesElliptic3 = 18,
    ShuntElliptic2 = 19,
    ShuntElliptic3 = 20,
    ThreeShuntCapSerLC = 21,
    ThreeShuntIndSerLC = 22,
    ThreeShuntTappedC = 23,
    ThreeShuntTappedL = 24,
    ShuntTLSC = 25,
    errorBitMap = 26,
};

inline constexpr int NumElementTypes = 27;  ///< codes 0 .. 26, the error bitmap included

/// What one of a slot's four values holds.
enum class ValueKind { Unused, Inductance, Capacitance, LengthDegrees, Impedance };

/// Whether such a value is that of an inductor or a capacitor, and not of a line.
constexpr bool IsPart(ValueKind kind) {
    return kind == ValueKind::Inductance || kind == ValueKind::Capacitance;
}

/// Which arm of the ladder an element fills.
enum class ElementArm { None, Series, Shunt, Line };

/// One row of the catalogue.
struct ElementInfo {
    const char* Name;
    ElementArm Arm;
    std::array<ValueKind, 4> Values;  ///< index 0 .. 3 for V1 .. V4
};

/// The catalogue row of a type; a code outside 0 .. 26 gives the row of errorBitMap.
const ElementInfo& InfoOf(ElementType type);

/// The name of a type's schematic picture without its ending: the code, then the name, as in
/// "0SeriesInd". A code outside 0 .. 26 gives "26errorBitMap".
std::string PictureName(ElementType type);

/// True for codes 0 .. 25. The test is unsigned, so a negative code is no element either.
bool IsElement(ElementType type);

/// The unit of a value: "H", "F", "deg", "ohm", and an empty text for an unused one.
const char* UnitOf(ValueKind kind);

/// "L", "C", "Length" or "Z0" for messages and tables; empty for an unused value.
const char* SymbolOf(ValueKind kind);

}  // namespace ladderwise
