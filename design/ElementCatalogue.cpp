// The rows of the element catalogue.
#include "design/ElementCatalogue.h"

namespace ladderwise {

namespace {

constexpr ValueKind no = ValueKind::Unused;
constexpr ValueKind L = ValueKind::Inductance;
constexpr ValueKind C = ValueKind::Capacitance;
constexpr ValueKind deg = ValueKind::LengthDegrees;
constexpr ValueKind ohm = ValueKind::Impedance;

constexpr std::array<ElementInfo, NumElementTypes> catalogue = {{
    {"SeriesInd", ElementArm::Series, {L, no, no, no}},
    {"SeriesCap", ElementArm::Series, {no, C, no, no}},
    {"SeriesLC", ElementArm::Series, {L, C, no, no}},
    {"ShuntInd", ElementArm::Shunt, {L, no, no, no}},
    {"ShuntCap", ElementArm::Shunt, {no, C, no, no}},
    {"ShuntLC", ElementArm::Shunt, {L, C, no, no}},
    {"ShuntParLC", ElementArm::Shunt, {L, C, no, no}},
    {"ShuntSerParLC", ElementArm::Shunt, {L, C, L, C}},
    {"SeriesSerLC", ElementArm::Series, {L, C, no, no}},
    {"SerSerParLC", ElementArm::Series, {L, C, L, C}},
    {"SeriesTLIN", ElementArm::Line, {deg, ohm, no, no}},
    {"ShuntTLSCC", ElementArm::Shunt, {deg, ohm, no, C}},
    {"ShuntLTLOC", ElementArm::Shunt, {L, no, deg, ohm}},
    {"ShuntTLSCTLOC", ElementArm::Shunt, {deg, ohm, deg, ohm}},
    {"ShuntTLOC", ElementArm::Shunt, {deg, ohm, no, no}},
    {"DualShuntLC", ElementArm::Shunt, {L, C, L, C}},
    {"DualSeriesLC", ElementArm::Series, {L, C, L, C}},
    {"SeriesElliptic2", ElementArm::Series, {L, C, L, C}},
    {"SeriesElliptic3", ElementArm::Series, {L, C, L, C}},
    {"ShuntElliptic2", ElementArm::Shunt, {L, C, L, C}},
    {"ShuntElliptic3", ElementArm::Shunt, {L, C, L, C}},
    {"ThreeShuntCapSerLC", ElementArm::Shunt, {L, C, no, C}},
    {"ThreeShuntIndSerLC", ElementArm::Shunt, {L, C, L, no}},
    {"ThreeShuntTappedC", ElementArm::Shunt, {L, C, no, C}},
    {"ThreeShuntTappedL", ElementArm::Shunt, {L, C, L, no}},
    {"ShuntTLSC", ElementArm::Shunt, {deg, ohm, no, no}},
    {"errorBitMap", ElementArm::None, {no, no, no, no}},
}};

}  // namespace

const ElementInfo& InfoOf(ElementType type) {
    return catalogue[IsElement(type) ? static_cast<std::size_t>(type) : catalogue.size() - 1];
}

std::string PictureName(ElementType type) {
    const ElementType shown = IsElement(type) ? type : ElementType::errorBitMap;
    return std::to_string(static_cast<int>(shown)) + InfoOf(shown).Name;
}

bool IsElement(ElementType type) {
    return static_cast<std::uint32_t>(type) <= static_cast<std::uint32_t>(ElementType::ShuntTLSC);
}

const char* UnitOf(ValueKind kind) {
    switch (kind) {
        case ValueKind::Unused:
            return "";
        case ValueKind::Inductance:
            return "H";
        case ValueKind::Capacitance:
            return "F";
        case ValueKind::LengthDegrees:
            return "deg";
        case ValueKind::Impedance:
            return "ohm";
    }
    return "";
}

const char* SymbolOf(ValueKind kind) {
    switch (kind) {
        case ValueKind::Unused:
            return "";
        case ValueKind::Inductance:
            return "L";
        case ValueKind::Capacitance:
            return "C";
        case ValueKind::LengthDegrees:
            return "Length";
        case ValueKind::Impedance:
            return "Z0";
    }
    return "";
}

}  // namespace ladderwise
