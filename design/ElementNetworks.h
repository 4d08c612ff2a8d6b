// What each ladder element is made of, as nested series and parallel networks. Pictures are laid
// out from this description, S-parameters are computed and netlists are written from it, so none
// can differ from the others. Ground floor, no Qt.
#pragma once

#include <string>
#include <vector>

#include "design/Designators.h"
#include "design/ElementCatalogue.h"
#include "design/FilterDesign.h"

namespace ladderwise {

/// What a network is: one of the drawn symbols, or several networks joined.
enum class NetworkKind { Inductor, Capacitor, Line, ShortedStub, OpenStub, InSeries, InParallel };

/// A symbol, or several networks in series or in parallel.
struct Network {
    NetworkKind Kind = NetworkKind::InSeries;
    int Row =
        0;  ///< value row of a symbol, 0 .. 3 for V1 .. V4; lines and stubs: row of the length
    std::vector<Network> Members;  ///< of InSeries and InParallel; in parallel the uppermost first
    double Own = 0.0;   ///< of one of two capacitors that make a value, F; 0: the slot's value
    char Letter = 'a';  ///< 'a' the larger one of them, 'b' the smaller one
};

/// The networks of an element's picture, from the source side. A series or line element has one,
/// placed in the through line. A shunt element has one for each arm that leaves the through line;
/// its arms are in parallel. errorBitMap, and a code outside 0 .. 26, has none.
std::vector<Network> NetworksOf(ElementType type);

/// The networks of a slot, 1 .. NumElements, as they are built: a capacitor that is to be made of
/// two (PairAt) is both of them in parallel, each a part with parasitics of its own.
std::vector<Network> BuiltNetworksOf(const DesignState& design, int slot);

/// The value of a symbol among the networks of `slot`: H, F, of lines and stubs the length.
double ValueOf(const CircuitElement& slot, const Network& symbol);

/// Its designator, "C3", of two capacitors "C3a" and "C3b".
std::string NameOf(const SlotDesignators& names, const Network& symbol);

}  // namespace ladderwise
