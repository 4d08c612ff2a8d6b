// Impedance and frequency scaling of the prototype ladder for low pass and high pass.
#include "scaling/Protoscaler.h"

namespace ladderwise {

void ScaleLowPass(FilterDesign& design) {
    for (int k = 1; k <= design.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        slot.V1 = slot.V1 * design.RSource * OneOverTwoPi / design.F0;
        slot.V2 = slot.V2 / design.RSource * OneOverTwoPi / design.F0;
    }
}

void ScaleHighPass(FilterDesign& design) {
    const auto toCapacitor = [&design](double gL) {
        return (1 / gL) / design.RSource * OneOverTwoPi / design.F0;
    };
    const auto toInductor = [&design](double gC) {
        return design.RSource / gC * OneOverTwoPi / design.F0;
    };
    for (int k = 1; k <= design.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        if (slot.Type == ElementType::SeriesInd) {
            slot.Type = ElementType::SeriesCap;
            slot.V2 = toCapacitor(slot.V1);
        } else if (slot.Type == ElementType::ShuntCap) {
            slot.Type = ElementType::ShuntInd;
            slot.V1 = toInductor(slot.V2);
        } else if (slot.Type == ElementType::SeriesLC || slot.Type == ElementType::ShuntLC) {
            const double gL = slot.V1;
            slot.V1 = toInductor(slot.V2);
            slot.V2 = toCapacitor(gL);
        }
    }
}

}  // namespace ladderwise
