// Dispatch over the response families, and the ladder slots made of the g-values.
#include "prototypes/Prototype.h"

#include <algorithm>

#include "prototypes/Coefficients.h"
#include "prototypes/EllipticPrototype.h"
#include "prototypes/Mathfunctions.h"

namespace ladderwise {

namespace {

/// True if a coefficients file was read and has the order.
bool HasFileCoefficients(const FilterDesign& design, int n) {
    return design.CoefFileRead && n <= MaxPoles && design.CoefficientTable[n][0] > 0.0;
}

void CopyFileCoefficients(FilterDesign& design, int n) {
    std::copy_n(design.CoefficientTable[n].begin(), n, design.G.begin() + 1);
}

// The prototype of a family that cannot be built.
void FallBackToButterworth(FilterDesign& design, int n) {
    ButterworthPrototype(design, n);
    design.ResponseType = ResponseType::Butterworth;
    design.Flags.FellBack = true;
}

void ComputeGValues(FilterDesign& design, int n, const MessageCallback& report) {
    switch (design.ResponseType) {
        case ResponseType::Butterworth:
            return ButterworthPrototype(design, n);
        case ResponseType::Chebyshev:
            return ChebyshevPrototype(design, n);
        case ResponseType::BesselFreq:
        case ResponseType::BesselDelay:
        case ResponseType::Papoulis:
        case ResponseType::Gauss:
        case ResponseType::LinearChebyshev:
            return CopyCoefficients(design.ResponseType, n, design.G);
        case ResponseType::EllipticA:
        case ResponseType::EllipticB:
        case ResponseType::EllipticC:
        case ResponseType::EllipticD:
        case ResponseType::EllipticE:
            return;  // has its own ladder
        case ResponseType::CoefficientsFile:
            if (HasFileCoefficients(design, n)) return CopyFileCoefficients(design, n);
            FallBackToButterworth(design, n);
            if (report) report("Error", "The file read failed. \n Defaulted to Butterworth");
            return;
    }
    FallBackToButterworth(design, n);  // a code that stands for no family
}

void FillSlots(FilterDesign& design, int n) {
    design.NumElements = n;
    for (int k = 1; k <= n; ++k) {
        CircuitElement& slot = design.Elements[k];
        const bool capacitor = (k % 2 != 0) == design.FormCLC;
        slot.Type = capacitor ? ElementType::ShuntCap : ElementType::SeriesInd;
        (capacitor ? slot.V2 : slot.V1) = design.G[k];
    }
}

/// The ladder of an elliptic family, and the load that it is built for.
void BuildElliptic(FilterDesign& design, int traps) {
    const EllipticLadder ladder =
        BuildEllipticLadder({design.ResponseType, traps, design.RippleDb, design.EllipticAtten});
    if (ladder.NumElements == 0) return;
    design.Elliptic = ladder.Result;
    design.NumElements = ladder.NumElements;
    for (int k = 1; k <= ladder.NumElements; ++k) {
        const CircuitElement& slot = design.Elements[k] = ladder.Elements[k];
        design.G[k] = slot.Type == ElementType::ShuntCap ? slot.V2 : slot.V1;
    }
    design.RLoad = ladder.Result.LoadRatio * design.RSource;
    design.Flags.LoadOfFamily = design.ResponseType != ResponseType::EllipticD &&
                                design.ResponseType != ResponseType::EllipticE;
}

}  // namespace

void BuildPrototype(FilterDesign& design, int n, const MessageCallback& report) {
    design.NumElements = 0;
    design.Elliptic = {};
    if (IsElliptic(design.ResponseType)) return BuildElliptic(design, n);
    if (n < 1 || n >= NumSlots) return;
    ComputeGValues(design, n, report);
    FillSlots(design, n);
}

}  // namespace ladderwise
