// Everything that a user can type, check or choose, without a screen: the state of the main
// window's and the part-definitions window's controls. The windows show it, the console program
// fills it from its arguments, and ReadInputs turns it into the design state. No Qt.
#pragma once

#include "design/FilterDesign.h"
#include "design/Messages.h"
#include "design/TraceChoices.h"
#include "numbers/NumberBox.h"

namespace ladderwise {

/// The controls of a fresh program. Choices of pass type, response, form and sweep have no field
/// here: their menus write into FilterDesign at once.
struct DesignInputs {
    NumberBox NumPolesBox{"3"};
    NumberBox RippleBox{"0.2"};             ///< dB
    NumberBox F0Box{"200"};                 ///< MHz
    NumberBox BandWidthBox{"40"};           ///< MHz, or % of F0
    NumberBox RSBox{"50"};                  ///< ohm
    NumberBox RLBox{"50"};                  ///< ohm
    NumberBox EllipticAttenBox{"50"};       ///< dB
    NumberBox TrapTypeBox{"1"};             ///< 1 .. 4
    NumberBox ScaleBox{""};                 ///< s, full scale of the group-delay axis
    NumberBox PercentChangeBox{"5.0"};      ///< %, step of the function keys
    NumberBox GDPhaseThresholdBox{"20.0"};  ///< dB; a positive entry counts as negative

    NumberBox IndQBox{"35"};
    NumberBox IndCBox{".25"};   ///< pF
    NumberBox CapRBox{"0.25"};  ///< ohm
    NumberBox CapLBox{".5"};    ///< nH
    NumberBox WorstCaseSimsBox{"100"};
    int CapTolerancePercent = 5;   ///< 1, 2, 5 or 10
    int IndTolerancePercent = 10;  ///< 1, 2, 5 or 10

    bool BandWidthInPercent = false;
    bool LowPassPrototype = false;  ///< the "Low Pass Prototype" entry is the checked one
    PartChoice Parts = PartChoice::IdealParts;
    bool StdLCValues = false;
    bool WorstCase = false;
    bool AutoScale = true;
    TraceChoices Traces{};
};

/// Reads "% Change" and returns it as a fraction: the step of the keys F1 and F2.
double ReadPercentChange(DesignInputs& inputs, const MessageCallback& report);

/// Reads every box into the design, cleaning the boxes as it goes, and forces the load from the
/// source where the response asks for it: equal for the tabulated families, Elliptic C to E and a
/// coefficients file, twice the source for Elliptic A, half of it for Elliptic B.
void ReadInputs(DesignInputs& inputs, FilterDesign& design, const MessageCallback& report);

}  // namespace ladderwise
