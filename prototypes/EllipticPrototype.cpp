// From the elliptic function to the elements of its ladder. Frequencies are kept as x = w^2 and
// their differences as products, and the elements are taken off from both ends, each from the
// reactance and its slope at the traps alone: of the digits of EllipticReal twenty-three elements
// keep all but the last six.
//
//   symbol  here                 meaning
//   x_j     X[j]                 w^2 of trap j, the farthest first; the pass band ends at x = 1
//   v, d    EndData::V, D        Y/s or Z/s of an open or shorted end at x_j, and its slope by x
//   r                            resistance ratio of a type b ladder, (sqrt(1 + e^2) + e)^2
#include "prototypes/EllipticPrototype.h"

#include <algorithm>
#include <cmath>
#include <complex>
#include <vector>

#include "prototypes/EllipticApproximation.h"
#include "prototypes/Mathfunctions.h"

namespace ladderwise {

namespace {

// A trap this close to the band edge in z leaves no transition band to speak of.
constexpr double nearestTrap = 1e-3;
// An end element below this (1 ohm, 1 rad/s) is about to turn negative.
constexpr double smallestEndElement = 0.01;

constexpr EllipticReal one = 1;

/// What makes the families differ. All are first built with their traps in series arms.
struct FamilyForm {
    int ZerosAtInfinity = 2;
    bool ZeroAtDC = false;        ///< type c: the lowest reflection zero moved to zero frequency
    bool UnequalEnds = false;     ///< type b: the loss of the ripple at zero frequency
    bool SourceInductor = false;  ///< a series inductor ends the ladder
    bool LoadInductor = true;
    bool Dual = false;  ///< built dual: traps in shunt arms
};

FamilyForm FormOf(ResponseType family) {
    if (family == ResponseType::EllipticA) return {.UnequalEnds = true, .Dual = true};
    if (family == ResponseType::EllipticB) return {.UnequalEnds = true};
    if (family == ResponseType::EllipticC) return {.ZerosAtInfinity = 1, .LoadInductor = false};
    if (family == ResponseType::EllipticD) return {.ZeroAtDC = true};
    return {.ZerosAtInfinity = 3, .SourceInductor = true, .Dual = true};  // EllipticE
}

// ---- From z to real frequencies ------------------------------------------------------------

/// x = w^2 of the transformed z: 1 / (1 - z^2), or for type c (z^2 + Y) / ((1 - z^2) Y), which is
/// zero at the lowest reflection zero z^2 = -Y. Differences are kept as products.
class FrequencyMap {
public:
    FrequencyMap(bool zeroAtDC, EllipticReal lowestZero)
        : zeroAtDC(zeroAtDC), y2(lowestZero * lowestZero) {}

    EllipticReal Square(EllipticReal z) const {
        const EllipticReal x = 1 / ((1 - z) * (1 + z));
        return zeroAtDC ? (z * z + y2) / y2 * x : x;
    }
    EllipticComplex Square(EllipticComplex z) const {
        const EllipticComplex x = one / ((one - z) * (one + z));
        return zeroAtDC ? (z * z + y2) / y2 * x : x;
    }
    /// Square(a) - Square(b)
    EllipticReal Difference(EllipticReal a, EllipticReal b) const {
        return scale() * (a - b) * (a + b) / ((1 - a) * (1 + a)) / ((1 - b) * (1 + b));
    }
    EllipticComplex Difference(EllipticReal a, EllipticComplex b) const {
        const EllipticComplex squares((a - b.real()) * (a + b.real()) + b.imag() * b.imag(),
                                      -2 * b.real() * b.imag());
        return scale() * squares / (((1 - a) * (1 + a)) * (one - b) * (one + b));
    }

private:
    EllipticReal scale() const { return zeroAtDC ? (1 + y2) / y2 : 1; }

    bool zeroAtDC;
    EllipticReal y2;
};

/// What either end of the ladder looks like at a trap: v = X / w of the reactance or susceptance X,
/// and its slope d = dv/dx.
struct EndData {
    std::vector<EllipticReal> V{};
    std::vector<EllipticReal> D{};
    EllipticReal AtInfinity = 0;  ///< v there, of the form with a pole at infinity
};

struct Synthesis {
    std::vector<EllipticReal> X{};                        ///< w^2 of the traps
    std::vector<std::vector<EllipticReal>> Separation{};  ///< X[i] - X[j]
    EndData End{};
    EllipticReal Corner = 0;        ///< w of the 3 dB point; the band edge is 1
    EllipticReal StopBandEdge = 0;  ///< w
};

/// The end data: with the phase psi and the delay tau of the natural modes at w, v = cot(psi/2)/w.
EndData DataAtTraps(const EllipticApproximation& made, const FrequencyMap& map,
                    const std::vector<EllipticReal>& x, const std::vector<EllipticComplex>& modes) {
    EndData data;
    const EllipticReal sigma0 = RealNaturalMode(made);
    EllipticReal sumOfModes = sigma0;
    std::vector<EllipticComplex> poles;
    for (const EllipticComplex z : modes) {
        EllipticComplex pole = std::sqrt(-map.Square(z));
        if (pole.real() > 0) pole = -pole;
        poles.push_back(pole);
        sumOfModes -= 2 * pole.real();
    }
    for (size_t j = 0; j < x.size(); ++j) {
        const EllipticReal w = std::sqrt(x[j]);
        EllipticReal psi = 0, tau = 0;
        if (sigma0 > 0) {
            psi = std::atan2(sigma0, w);
            tau = sigma0 / (x[j] + sigma0 * sigma0);
        }
        for (size_t k = 0; k < poles.size(); ++k) {
            const EllipticReal sigma = -poles[k].real();
            const EllipticComplex distance = map.Difference(made.Traps[j], modes[k]);  // x + p^2
            psi += std::atan2(2 * w * sigma, distance.real() - 2 * sigma * sigma);
            tau += 2 * sigma * (x[j] + std::norm(poles[k])) / std::norm(distance);
        }
        const EllipticReal sine = std::sin(psi / 2), cotangent = std::cos(psi / 2) / sine;
        data.V.push_back(cotangent / w);
        data.D.push_back((tau / (2 * w * sine * sine) - cotangent / x[j]) / (2 * w));
    }
    data.AtInfinity = 2 / sumOfModes;
    return data;
}

Synthesis Synthesise(const EllipticApproximation& made, bool zeroAtDC) {
    const std::vector<EllipticReal> zeros = ReflectionZeros(made);
    std::vector<EllipticComplex> modes;
    for (size_t k = 0; k < zeros.size(); ++k)
        modes.push_back(NaturalMode(made, zeros[k], static_cast<int>(k)));
    const FrequencyMap map(zeroAtDC, zeros.back());
    Synthesis data;
    for (const EllipticReal m : made.Traps) {
        data.X.push_back(map.Square(m));
        std::vector<EllipticReal>& row = data.Separation.emplace_back();
        for (const EllipticReal other : made.Traps)
            row.push_back(map.Difference(m, other));
    }
    data.Corner = std::sqrt(map.Square(EdgeAtLevel(made, made.CornerLevel)));
    data.StopBandEdge = std::sqrt(map.Square(EdgeAtLevel(made, made.ValleyLevel)));
    data.End = DataAtTraps(made, map, data.X, modes);
    return data;
}

// ---- Extraction ----------------------------------------------------------------------------

struct Tank {
    EllipticReal L;
    EllipticReal C;
};

/// One end of the ladder while its elements are taken off, as v = Y / s (of Z / s before a pole at
/// infinity is taken off).
class LadderEnd {
public:
    LadderEnd(const Synthesis& synthesis, EllipticReal impedance) : synthesis(synthesis) {
        data = synthesis.End;
        data.AtInfinity *= impedance;
        for (EllipticReal& v : data.V)
            v *= impedance;
        for (EllipticReal& d : data.D)
            d *= impedance;
    }

    /// Takes off the whole pole of Z at infinity; what is left is an admittance.
    EllipticReal TakeInductor() {
        for (size_t j = 0; j < data.V.size(); ++j) {
            const EllipticReal x = synthesis.X[j], rest = data.V[j] - data.AtInfinity;
            data.D[j] = (rest + x * data.D[j]) / (x * rest * x * rest);
            data.V[j] = -1 / (x * rest);
        }
        return data.AtInfinity;
    }

    /// The shunt capacitor that leaves a zero of Y at trap i.
    EllipticReal CapacitorBefore(size_t i) const { return data.V[i]; }

    /// Takes off that capacitor and then trap i, which resonates where the zero is.
    Tank TakeTrap(size_t i) {
        const EllipticReal capacitor = data.V[i], slope = data.D[i], xi = synthesis.X[i];
        const EllipticReal c = xi * slope;
        for (size_t j = 0; j < data.V.size(); ++j) {
            if (j == i) continue;
            const EllipticReal y = data.V[j] - capacitor;
            const EllipticReal q = c * synthesis.Separation[i][j];
            const EllipticReal v = 1 / (1 / y + synthesis.X[j] / q);
            data.D[j] = v * v * (data.D[j] / (y * y) - xi * c / (q * q));
            data.V[j] = v;
        }
        return {1 / (xi * c), c};
    }

private:
    const Synthesis& synthesis;
    EndData data{};
};

/// The ladder with its traps in series arms, band edge at 1 rad/s: [SourceL] C[0] Tanks[0] C[1] ...
/// Tanks[N-1] C[N] [LoadL]; an inductor of 0 is not there.
struct SeriesTrapLadder {
    EllipticReal SourceL = 0;
    std::vector<EllipticReal> C{};
    std::vector<Tank> Tanks{};
    std::vector<size_t> Order{};  ///< Order[k]: index of the trap of Tanks[k]
    EllipticReal LoadL = 0;
};

/// 0, 2, 4, ..., 5, 3, 1: the nearest traps in the middle, where they cost the least spread.
std::vector<size_t> TrapOrder(int traps) {
    std::vector<size_t> order;
    for (int i = 0; i < traps; i += 2)
        order.push_back(i);
    for (int i = traps - 1 - traps % 2; i > 0; i -= 2)
        order.push_back(i);
    return order;
}

/// Extracts half of the traps from either end, so that rounding errors do not run through the whole
/// ladder. `load` is the load's resistance.
SeriesTrapLadder Extract(const Synthesis& synthesis, EllipticReal load, const FamilyForm& form) {
    const size_t traps = synthesis.X.size();
    SeriesTrapLadder ladder;
    ladder.Order = TrapOrder(static_cast<int>(traps));
    ladder.C.resize(traps + 1);
    ladder.Tanks.resize(traps);
    LadderEnd fromSource(synthesis, 1), fromLoad(synthesis, load);
    if (form.SourceInductor) ladder.SourceL = fromSource.TakeInductor();
    if (form.LoadInductor) ladder.LoadL = fromLoad.TakeInductor();
    const size_t half = traps / 2;
    for (size_t k = 0; k < half; ++k) {
        ladder.C[k] = fromSource.CapacitorBefore(ladder.Order[k]);
        ladder.Tanks[k] = fromSource.TakeTrap(ladder.Order[k]);
    }
    ladder.C[half] = fromSource.CapacitorBefore(ladder.Order[half]);
    for (size_t k = traps; k-- > half;) {
        ladder.C[k + 1] = fromLoad.CapacitorBefore(ladder.Order[k]);
        ladder.Tanks[k] = fromLoad.TakeTrap(ladder.Order[k]);
    }
    return ladder;
}

// ---- The finished ladder -------------------------------------------------------------------

/// Fills the slots of a ladder, dualised if asked for: the same numbers, henries and farads and the
/// arms exchanged.
class SlotWriter {
public:
    SlotWriter(EllipticLadder& ladder, bool dual) : ladder(ladder), dual(dual) {}

    void ShuntCapacitor(EllipticReal value) { Single(!dual, value); }
    void SeriesInductor(EllipticReal value) { Single(dual, value); }
    void SeriesTank(const Tank& tank) {
        CircuitElement& slot = ladder.Elements[++ladder.NumElements];
        slot.Type = dual ? ElementType::ShuntLC : ElementType::SeriesLC;
        slot.V1 = static_cast<double>(dual ? tank.C : tank.L);
        slot.V2 = static_cast<double>(dual ? tank.L : tank.C);
    }

private:
    void Single(bool capacitor, EllipticReal value) {
        CircuitElement& slot = ladder.Elements[++ladder.NumElements];
        slot.Type = capacitor ? ElementType::ShuntCap : ElementType::SeriesInd;
        (capacitor ? slot.V2 : slot.V1) = static_cast<double>(value);
    }

    EllipticLadder& ladder;
    bool dual;
};

/// The band edge of 1 rad/s moves to 1 / corner, so that the 3 dB point comes to lie at 1.
void ScaleToCorner(SeriesTrapLadder& ladder, EllipticReal corner) {
    ladder.SourceL *= corner;
    ladder.LoadL *= corner;
    for (EllipticReal& c : ladder.C)
        c *= corner;
    for (Tank& tank : ladder.Tanks)
        tank = {tank.L * corner, tank.C * corner};
}

/// Whether the ladder can be built: every part positive and finite, no end element about to
/// vanish.
bool IsGood(const SeriesTrapLadder& ladder) {
    const auto isPart = [](EllipticReal value) { return value > 0 && std::isfinite(value); };
    return ladder.C.front() >= smallestEndElement && ladder.C.back() >= smallestEndElement &&
           ladder.SourceL >= 0 && ladder.LoadL >= 0 &&
           std::all_of(ladder.C.begin(), ladder.C.end(), isPart) &&
           std::all_of(ladder.Tanks.begin(), ladder.Tanks.end(),
                       [&](const Tank& tank) { return isPart(tank.L) && isPart(tank.C); });
}

/// The ladder of exactly `attenDb`; no elements if it is not a good one.
EllipticLadder BuildAt(const EllipticRequest& request, double attenDb) {
    const FamilyForm form = FormOf(request.Family);
    const EllipticApproximation made =
        ApproximateElliptic(request.Traps, form.ZerosAtInfinity, request.RippleDb, attenDb);
    if (!(made.Traps.back() >= nearestTrap)) return {};
    const Synthesis synthesis = Synthesise(made, form.ZeroAtDC);
    const EllipticReal r = form.UnequalEnds ? std::exp(2 * std::asinh(made.Epsilon)) : one;
    SeriesTrapLadder parts = Extract(synthesis, 1 / r, form);
    ScaleToCorner(parts, synthesis.Corner);
    EllipticLadder ladder;
    if (!IsGood(parts)) return ladder;

    SlotWriter slots(ladder, form.Dual);
    ladder.Result.NumTraps = request.Traps;
    if (form.SourceInductor) slots.SeriesInductor(parts.SourceL);
    slots.ShuntCapacitor(parts.C[0]);
    for (int k = 0; k < request.Traps; ++k) {
        slots.SeriesTank(parts.Tanks[k]);
        slots.ShuntCapacitor(parts.C[k + 1]);
        ladder.Result.TrapFreqs[k] =
            static_cast<double>(std::sqrt(synthesis.X[parts.Order[k]]) / synthesis.Corner);
    }
    if (form.LoadInductor) slots.SeriesInductor(parts.LoadL);
    ladder.Result.AttenUsedDb = attenDb;
    ladder.Result.PassBandEdge = static_cast<double>(1 / synthesis.Corner);
    ladder.Result.StopBandEdge = static_cast<double>(synthesis.StopBandEdge / synthesis.Corner);
    ladder.Result.LoadRatio = static_cast<double>(form.Dual ? r : 1 / r);
    return ladder;
}

/// `value` within low .. high; low for NaN.
double Bounded(double value, double low, double high) {
    return value >= low ? std::min(value, high) : low;
}

}  // namespace

ElementArm TrapArm(ResponseType family) {
    return FormOf(family).Dual ? ElementArm::Shunt : ElementArm::Series;
}

EllipticLadder BuildEllipticLadder(const EllipticRequest& request) {
    if (!IsElliptic(request.Family) || request.Traps < 1 || request.Traps > MaxPoles) return {};
    EllipticRequest bounded = request;
    bounded.RippleDb = Bounded(request.RippleDb, SmallestRippleDb, LargestRippleDb);
    bounded.AttenDb = Bounded(request.AttenDb, SmallestEllipticAttenDb, LargestEllipticAttenDb);
    EllipticLadder ladder = BuildAt(bounded, bounded.AttenDb);
    if (ladder.NumElements > 0) return ladder;

    // The lowest good step above: more attenuation always helps.
    const auto atStep = [&](int step) {
        return BuildAt(bounded, std::min(bounded.AttenDb + step * EllipticAttenStepDb,
                                         LargestEllipticAttenDb));
    };
    int bad = 0;
    int good = static_cast<int>(
        std::ceil((LargestEllipticAttenDb - bounded.AttenDb) / EllipticAttenStepDb));
    ladder = atStep(good);
    while (good - bad > 1) {
        const int middle = bad + (good - bad) / 2;
        EllipticLadder tried = atStep(middle);
        if (tried.NumElements > 0) {
            good = middle;
            ladder = tried;
        } else {
            bad = middle;
        }
    }
    ladder.Result.AttenRaised = ladder.NumElements > 0;
    return ladder;
}

}  // namespace ladderwise
