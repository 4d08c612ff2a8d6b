// The synthesis, step by step.
#include "directcoupled/DirectCoupled.h"

#include "directcoupled/Emission.h"
#include "directcoupled/Ends.h"
#include "directcoupled/Inverters.h"
#include "directcoupled/Tanks.h"

namespace ladderwise {

void CalcDirectCoupled(FilterDesign& design, const MessageCallback& report) {
    const CoupledBand band = BandOf(design);
    TankList tanks = TanksOf(design, band);
    InverterList inverters{};
    CoupleTanks(design, band, tanks, inverters);
    design.DirectCoupledLimits = MatchEnds(design, band, tanks, inverters);
    design.Elements.fill(CircuitElement{});
    EmitLadder(design, band, tanks, inverters, report);
}

}  // namespace ladderwise
