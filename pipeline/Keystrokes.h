// The function keys: cycling response and sweep, nudging and snapping single part values. No Qt.
#pragma once

#include "pipeline/Calculation.h"

namespace ladderwise {

enum class FormKey { F1, F2, F3, F4, F5, F6, F7, F8 };

/// True if the key changes a value of the ladder in place.
constexpr bool ChangesValue(FormKey key) {
    return key != FormKey::F4 && key != FormKey::F7 && key != FormKey::F8;
}

/// What the window has to do after a key.
enum class KeyOutcome {
    Nothing,       ///< the cell holds no value that the key could change
    Analyse,       ///< element values changed in place: analyse and plot run 0
    FullCalculate  ///< an input changed: a full calculation
};

/// A cell of the value grid: ladder slot 1 .. NumElements, row 0 .. 3 for V1 .. V4.
struct CellPosition {
    int Slot = 1;
    int Row = 0;
};

/// Carries out a key on the cell. F1 and F2 divide and multiply the value by 1 + t, t being the
/// "% Change" box; F3 snaps it to its standard series; F5 snaps it and changes its partner so that
/// their product, the resonance, is kept; F6 snaps the partner too; F4 cycles the response through
/// the codes 0 .. 11, F7 the sweep; F8 only reads the "% Change" box. Cells that the slot's type
/// does not use, or that hold no part value, are left alone. F3, F5 and F6 act on inductances and
/// capacitances only.
KeyOutcome ApplyFormKey(Calculation& calculation, FormKey key, CellPosition cell,
                        const MessageCallback& report);

}  // namespace ladderwise
