// The element values of the tabulated families, row n - 1 for order n, the source end first.
#include "prototypes/Coefficients.h"

#include <algorithm>

namespace ladderwise {

namespace {

using CoefficientRows = std::array<std::array<double, MaxPoles>, MaxPoles>;

// clang-format off
constexpr CoefficientRows besselFreq = {{
    {2.0},
    {2.1478055065, 0.575502751},
    {2.2034114362, 0.9705118162, 0.337421485},
    {2.2403786449, 1.0815160918, 0.67252481, 0.2334158032},
    {2.258217051, 1.1110331705, 0.8040111711, 0.5072406309, 0.1743193807},
    {2.264523638, 1.1126429944, 0.8537858651, 0.6391554024, 0.4001898379, 0.1364923846},
    {2.265900552, 1.105164436, 0.8690268432, 0.7020091536, 0.5248927291, 0.3258881312,
     0.1105624499},
    {2.2656071373, 1.0955592547, 0.8695003726, 0.7302566539, 0.593572677, 0.4409221408,
     0.2719107171, 0.0919055476},
    {2.2648789238, 1.0862838411, 0.8638734468, 0.7407329931, 0.630595165, 0.5107787008,
     0.3769865473, 0.2312912714, 0.0779654714},
    {2.26412616, 1.0780948329, 0.8560723826, 0.7420173503, 0.6493354737, 0.5528152742,
     0.4454426979, 0.3270699985, 0.2000102641, 0.0671556901},
}};

constexpr CoefficientRows besselDelay = {{
    {2.0},
    {1.5773502692, 0.4226497308},
    {1.2550242719, 0.5527864045, 0.1921893236},
    {1.0598230345, 0.5116169398, 0.3181414385, 0.1104185872},
    {0.9302987125, 0.4577030041, 0.3312217296, 0.2089636626, 0.0718128912},
    {0.8376591607, 0.4115724743, 0.3158198657, 0.2364269328, 0.1480323182, 0.0504892483},
    {0.7676537422, 0.3744134376, 0.2944134983, 0.2378303643, 0.1778259277, 0.1104061002,
     0.03745693},
    {0.71254084, 0.3445569617, 0.2734607054, 0.2296681013, 0.1866805445, 0.1386714525,
     0.0855168081, 0.0289045947},
    {0.6677723576, 0.3202777482, 0.2547027138, 0.2183962295, 0.1859234132, 0.1505969673,
     0.1111499572, 0.0681934544, 0.0229871832},
    {0.630503591, 0.3002229627, 0.238395157, 0.2066336286, 0.1808239996, 0.1539454919,
     0.1240448636, 0.0910809708, 0.0556979518, 0.0187012122},
}};

// Row 3 is never read: see PapoulisRow.
constexpr CoefficientRows papoulis = {{
    {2.0},
    {1.4142135624, 1.4142135624},
    {},
    {1.5643787973, 1.958519286, 1.4768461419, 1.082681197},
    {1.9990424732, 1.5395135129, 2.0672625675, 1.4779915807, 0.9512000529},
    {1.5763118669, 1.9040139855, 1.7442381095, 1.985745078, 1.4851963494, 0.9159874632},
    {1.8640432062, 1.5894515263, 2.150643023, 1.7269910712, 1.9393934201, 1.4769890663,
     0.839352016},
    {1.5563512766, 1.8500853036, 1.8411428583, 2.0514702618, 1.7671680756, 1.9114767019,
     1.4688302085, 0.8204601282},
    {1.764481227, 1.6134284249, 2.1584772888, 1.781616601, 2.0662265226, 1.7754866342,
     1.867405631, 1.4555339287, 0.76947492},
    {1.5283251015, 1.8124064549, 1.8950693309, 2.0410837936, 1.8450909367, 2.0328534518,
     1.7837880561, 1.8537513789, 1.4453410755, 0.7575192935},
}};

constexpr CoefficientRows gaussTo3Db = {{
    {2.0},
    {2.185, 0.4738},
    {2.2262, 0.8167, 0.2624},
    {2.245, 0.9321, 0.5302, 0.1772},
    {2.2533, 0.9782, 0.6485, 0.3896, 0.1312},
    {2.2568, 0.9982, 0.705, 0.5004, 0.3045, 0.1026},
    {2.2583, 1.0073, 0.7333, 0.5606, 0.4055, 0.2473, 0.0833},
    {2.259, 1.0116, 0.7479, 0.5942, 0.4658, 0.3388, 0.2065, 0.0695},
    {2.2593, 1.0137, 0.7556, 0.6134, 0.5025, 0.3973, 0.2892, 0.1761, 0.0591},
    {2.2594, 1.0147, 0.7597, 0.6244, 0.525, 0.4353, 0.3451, 0.2509, 0.1525, 0.0512},
}};

constexpr CoefficientRows linearChebyshev = {{
    {2.0},
    {1.98, 0.8245},
    {2.425, 1.0218, 0.5534},
    {2.0504, 1.2669, 0.7967, 0.4526},
    {2.4446, 1.0113, 0.9513, 0.6768, 0.3658},
    {2.0111, 1.2734, 0.7964, 0.839, 0.5984, 0.3313},
    {2.4404, 0.96, 0.9219, 0.6988, 0.7142, 0.5332, 0.2826},
    {1.9626, 1.3174, 0.7447, 0.8498, 0.6312, 0.68, 0.4999, 0.2718},
    {2.4332, 0.9255, 0.8944, 0.6552, 0.7027, 0.5747, 0.5914, 0.4493, 0.2347},
    {1.8431, 1.4317, 0.6869, 0.872, 0.5827, 0.7034, 0.5428, 0.5887, 0.4369, 0.2359},
}};
// clang-format on

// The row that a Papoulis filter of order n takes. Three poles take the four-pole row, whose first
// three values then make the ladder: a tradition of the tables that this family comes from, kept so
// that a filter agrees with those that others build from them. The row of its own would be 2.1801,
// 1.3538, 1.1737.
int PapoulisRow(int n) {
    return n == 3 ? 4 : n;
}

}  // namespace

void CopyCoefficients(ResponseType family, int n, std::array<double, NumGValues>& g) {
    if (n < 1 || n > MaxPoles) return;
    const auto copyRow = [&g](const CoefficientRows& rows, int row) {
        std::copy_n(rows[row - 1].begin(), row, g.begin() + 1);
    };
    switch (family) {
        case ResponseType::BesselFreq:
            return copyRow(besselFreq, n);
        case ResponseType::BesselDelay:
            return copyRow(besselDelay, n);
        case ResponseType::Papoulis:
            return copyRow(papoulis, PapoulisRow(n));
        case ResponseType::Gauss:
            return copyRow(gaussTo3Db, n);
        case ResponseType::LinearChebyshev:
            return copyRow(linearChebyshev, n);
        case ResponseType::Butterworth:
        case ResponseType::Chebyshev:
        case ResponseType::EllipticA:
        case ResponseType::EllipticB:
        case ResponseType::EllipticC:
        case ResponseType::EllipticD:
        case ResponseType::EllipticE:
        case ResponseType::CoefficientsFile:
            return;
    }
}

}  // namespace ladderwise
