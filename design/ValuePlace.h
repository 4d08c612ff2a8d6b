// Where a value of a ladder stands, and values that are held there. Ground floor, no Qt.
#pragma once

#include <vector>

namespace ladderwise {

struct ValuePlace {
    int Slot = 0;  ///< from 1
    int Row = 0;   ///< 0 .. 3 for V1 .. V4

    bool operator==(const ValuePlace&) const = default;
};

/// A part that somebody has already: among standard values its own is not chosen.
struct HeldPart {
    ValuePlace Place{};
    double Value = 0.0;  ///< H or F

    bool operator==(const HeldPart&) const = default;
};

using HeldParts = std::vector<HeldPart>;

/// A capacitor that is to be made of two in parallel.
struct PairedPart {
    ValuePlace Place{};
    double Value = 0.0;  ///< of both together, as it stands in the ladder, F
    double Larger = 0.0;
    double Smaller = 0.0;
};

}  // namespace ladderwise
