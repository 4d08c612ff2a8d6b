// Candidates to ladders.
#include "choosing/Candidate.h"

#include <algorithm>
#include <cmath>

#include "analysis/PartValues.h"
#include "norton/Nortonsearch.h"
#include "numbers/PlainNumbers.h"
#include "pipeline/Calculation.h"
#include "pipeline/NortonSequence.h"
#include "prototypes/Prototype.h"

namespace ladderwise {

namespace {

constexpr double perNanohenry = 1e9;
constexpr int evenDigits = 4;  ///< of values that are chosen for evenness
constexpr double leastTransformer = 1.001;
constexpr double mostTransformer = 100.0;

bool AllCanBeBuilt(const DesignState& design) {
    bool good = design.NumElements > 0;
    ForEachPart(design, [&](ValueKind, double value) {
        good = good && value > SmallestPartValue && std::isfinite(value);
    });
    return good;
}

double Rounded(double x) {
    double rounded = x;
    ReadPlainNumber(RoundedNumber(x, evenDigits), rounded);
    return rounded;
}

/// Transformers from leastTransformer to mostTransformer by equal ratios, rounded.
std::vector<double> TransformersTried() {
    constexpr double ratio = 1.08, first = 1.02;
    std::vector<double> tried;
    for (double k = first; k < mostTransformer; k *= ratio)
        tried.push_back(std::max(Rounded(k), leastTransformer));
    return tried;
}

/// How uneven a ladder is: the squares of the ratios' logarithms, of both kinds.
double UnevennessOf(const DesignState& design) {
    double sum = 0.0;
    for (const ValueKind kind : {ValueKind::Inductance, ValueKind::Capacitance}) {
        const ValueRange range = RangeOf(design, kind);
        if (range.Smallest > 0.0) sum += std::pow(std::log(range.Largest / range.Smallest), 2);
    }
    return sum;
}

}  // namespace

bool HasRipple(const Candidate& candidate) {
    return candidate.Response == ResponseType::Chebyshev || IsElliptic(candidate.Response);
}

std::tuple<int, int, int, bool, int, int, int> GroupOf(const Candidate& candidate) {
    return {static_cast<int>(candidate.Pass),
            static_cast<int>(candidate.Response),
            candidate.Poles,
            candidate.FormCLC,
            candidate.TrapType,
            static_cast<int>(candidate.Inverter),
            static_cast<int>(candidate.NortonType)};
}

LadderMaker::LadderMaker(const FilterDesign& base, PrototypeStore& prototypes)
    : work(base), userLoad(base.RLoad), store(prototypes) {}

bool LadderMaker::Use(const Candidate& candidate) {
    work.PassType = candidate.Pass;
    work.ResponseType = candidate.Response;
    work.NumPoles = candidate.Poles;
    work.FormCLC = candidate.FormCLC;
    work.RippleDb = candidate.RippleDb;
    work.EllipticAtten = candidate.AttenDb;
    work.TrapType = candidate.TrapType;
    work.RLoad = LoadFor(candidate.Response, work.RSource, userLoad);
    work.Flags = {};
    work.DirectCoupled.TankType = TankType::ShuntLC;
    work.DirectCoupled.InverterType = candidate.Inverter;
    work.DirectCoupled.TankUnits = TankUnits::nH;
    work.DirectCoupled.TankValues.fill(candidate.TankNanohenries);
    work.Norton.NortonType = candidate.NortonType;
    work.Norton.ImpedanceScalar = 1.0;
    work.Norton.NortonK = candidate.NortonK;
    work.Norton.NortonM = candidate.NortonM;
    ClearElements(work.Elements);
    if (candidate.Pass == PassType::Norton) SetNortonForm(work, {});
    const auto build = [&] {
        BuildPrototype(work, candidate.Poles, {});
        return StoredPrototype{work.Elements, work.G,        work.NumElements, work.RLoad,
                               work.FormCLC,  work.RippleDb, work.Elliptic,    work.Flags};
    };
    if (IsElliptic(candidate.Response)) {
        const auto [place, isNew] =
            store.try_emplace({candidate.Response, candidate.Poles, candidate.RippleDb,
                               candidate.AttenDb, work.RSource});
        if (isNew) place->second = build();
        const bool form = work.FormCLC;
        prototype = place->second;
        prototype.FormCLC = form;  // no matter to an elliptic ladder
    } else {
        prototype = build();
    }
    work.G = prototype.G;
    work.RLoad = prototype.RLoad;
    work.FormCLC = prototype.FormCLC;
    work.Elliptic = prototype.Elliptic;
    work.Flags = prototype.Flags;
    return prototype.NumElements > 0 && !prototype.Flags.FellBack;
}

bool LadderMaker::PlaceUnchanged(double f0, double bandWidth) {
    work.F0 = f0;
    work.BandWidth = bandWidth;
    work.Elements = prototype.Elements;
    work.NumElements = prototype.NumElements;
    ScaleLadder(work, {});
    return AllCanBeBuilt(work);
}

bool LadderMaker::Place(double f0, double bandWidth) {
    if (!PlaceUnchanged(f0, bandWidth)) return false;
    if (work.PartModel.Choice != PartChoice::DeEmbed && !work.StdLCValues) return true;
    if (work.PartModel.Choice == PartChoice::DeEmbed) DeEmbedParts(work);
    if (work.StdLCValues) SnapToStdValue(work);
    return AllCanBeBuilt(work);
}

bool LadderMaker::MakeTanksEven(Candidate& candidate, double f0, double bandWidth) {
    // Levels of tanks beside the termination, in steps of about the root of two.
    constexpr double lowest = 0.005, highest = 12.0, ratio = 1.4;
    double best = 0.0, chosen = 0.0;
    for (double level = lowest; level < highest; level *= ratio) {
        const double nH = Rounded(level * work.RSource / (TwoPi * f0) * perNanohenry);
        work.DirectCoupled.TankValues.fill(nH);
        if (!PlaceUnchanged(f0, bandWidth)) continue;
        const DirectCoupledResult& ends = work.DirectCoupledLimits;
        if (ends.Clamped[SourceEnd] || ends.Clamped[LoadEnd]) continue;
        const double uneven = UnevennessOf(work);
        if (chosen == 0.0 || uneven < best) best = uneven, chosen = nH;
    }
    candidate.TankNanohenries = chosen;
    return chosen > 0.0 && Use(candidate);
}

bool LadderMaker::MakeTransformersEven(Candidate& candidate, double f0, double bandWidth) {
    PlaceUnchanged(f0, bandWidth);
    const NortonBase base = BaseOf(work, work.Norton.ImpedanceScalar);
    const NortonStructure& structure = StructureOf(candidate.NortonType, candidate.Poles);
    const auto noneNegative = [](const auto& values, int count) {
        return std::all_of(values.begin(), values.begin() + count,
                           [](double x) { return x >= 0.0 && std::isfinite(x); });
    };
    const bool two = candidate.Poles > 3;
    double best = 0.0;
    static const std::vector<double> tried = TransformersTried();
    static const std::vector<double> one = {1.0};
    for (const double K : tried) {
        for (const double M : two ? tried : one) {
            const NortonValues values = structure.Transform(base, K, M);
            if (!noneNegative(values.C, structure.NumC) || !noneNegative(values.L, structure.NumL))
                continue;
            const double score =
                EvennessOf(values, structure, NortonGoal::Capacitors) / structure.NumC +
                EvennessOf(values, structure, NortonGoal::Inductors) / structure.NumL;
            if (score > best) best = score, candidate.NortonK = K, candidate.NortonM = M;
        }
    }
    return best > 0.0 && Use(candidate);
}

bool LadderMaker::MakeEven(Candidate& candidate, double f0, double bandWidth) {
    if (candidate.Pass == PassType::DirectCoupled) return MakeTanksEven(candidate, f0, bandWidth);
    if (candidate.Pass == PassType::Norton) return MakeTransformersEven(candidate, f0, bandWidth);
    return true;
}

PartCounts CountParts(const DesignState& design) {
    PartCounts counts;
    ForEachPart(design, [&](ValueKind kind, double) {
        ++(kind == ValueKind::Inductance ? counts.Inductors : counts.Capacitors);
    });
    return counts;
}

ValueRange RangeOf(const DesignState& design, ValueKind kind) {
    ValueRange range;
    ForEachPart(design, [&](ValueKind of, double value) {
        if (of != kind) return;
        range.Smallest = range.Smallest > 0.0 ? std::min(range.Smallest, value) : value;
        range.Largest = std::max(range.Largest, value);
    });
    return range;
}

}  // namespace ladderwise
