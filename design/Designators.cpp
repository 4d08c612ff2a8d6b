// Numbers the parts of a ladder.
#include "design/Designators.h"

#include <algorithm>

namespace ladderwise {

namespace {

std::string Numbered(const char* letters, int number) {
    std::string name = letters;
    return name += std::to_string(number);
}

}  // namespace

std::array<SlotDesignators, NumSlots> DesignatorsOf(const DesignState& design) {
    std::array<SlotDesignators, NumSlots> names;
    const int last = SlotsInUse(design);
    int number = 0;
    for (int slot = 1; slot <= last; ++slot) {
        const ElementInfo& info = InfoOf(design.Elements[slot].Type);
        for (int row = 0; row < 4; ++row) {
            switch (info.Values[row]) {
                case ValueKind::Unused:
                    break;
                case ValueKind::Inductance:
                    names[slot][row] = Numbered("L", ++number);
                    break;
                case ValueKind::Capacitance:
                    names[slot][row] = Numbered("C", ++number);
                    break;
                case ValueKind::LengthDegrees:
                    names[slot][row] = Numbered("TL", ++number);
                    break;
                case ValueKind::Impedance:  // of the line whose length stands in the row above
                    if (row > 0) names[slot][row] = names[slot][row - 1];
                    break;
            }
        }
    }
    return names;
}

}  // namespace ladderwise
