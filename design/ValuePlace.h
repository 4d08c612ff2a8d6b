// Where a value of a ladder stands, and values that are held there. Ground floor, no Qt.
#pragma once

#include <vector>

namespace ladderwise {

struct ValuePlace {
    int Slot = 0;  ///< from 1
    int Row = 0;   ///< 0 .. 3 for V1 .. V4

    bool operator==(const ValuePlace&) const = default;
};

/// What is settled about one part: a value that somebody has already and that is not chosen among
/// standard ones, a tolerance of its own, or both.
struct HeldPart {
    ValuePlace Place{};
    double Value = 0.0;      ///< H or F; 0: chosen as the others are
    double Tolerance = 0.0;  ///< fraction; 0: that of its kind

    bool HoldsValue() const { return Value > 0.0; }
    bool operator==(const HeldPart&) const = default;
};

using HeldParts = std::vector<HeldPart>;

/// What is settled about a part; nothing yet: its place alone.
inline HeldPart SettledAt(const HeldParts& held, const ValuePlace& place) {
    for (const HeldPart& part : held)
        if (part.Place == place) return part;
    return {place};
}

/// Takes the place of what was settled before; of nothing settled there is no entry.
inline void Settle(HeldParts& held, const HeldPart& settled) {
    std::erase_if(held, [&](const HeldPart& part) { return part.Place == settled.Place; });
    if (settled.HoldsValue() || settled.Tolerance > 0.0) held.push_back(settled);
}

/// A capacitor that is to be made of two in parallel.
struct PairedPart {
    ValuePlace Place{};
    double Value = 0.0;  ///< of both together, as it stands in the ladder, F
    double Larger = 0.0;
    double Smaller = 0.0;
};

}  // namespace ladderwise
