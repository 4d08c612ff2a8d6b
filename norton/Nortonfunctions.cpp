// The four helpers on a triple, the halves of the eight transforms, and their structures.
#include "norton/Nortonfunctions.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

namespace {

using enum ElementType;

double NonZero(double sum) {
    return sum == 0.0 ? SmallestConversionSum : sum;
}

/// Two capacitors in series, or two inductors in parallel.
double InSeries(double x, double y) {
    return 1.0 / (1.0 / x + 1.0 / y);
}

/// z: the centre resonator stands behind one transformer up and one down.
double CentreLevel(double K, double M) {
    return K * K / (M * M);
}

// Each half below is that of the source, first element at the source. The other half's split turns
// up where the centre is divided into two elements in series (inductors) or in parallel
// (capacitors) the other way round.

/// The triple of a half of ToPiCap3Pole: shunt capacitor of the end, series capacitor, shunt
/// capacitor next to the coupling inductor.
NortonTriple PiCapHalf(const NortonBase& base, const NortonHalf& h, double otherSplit, double K) {
    const double x = base.CentreC / base.A * K * K * otherSplit;
    NortonTriple t = NortonCapTransform(h.EndC / base.A + h.ExtraC, K);
    t.c = InSeries(t.c, x);
    return DeltaToStar(t);
}

/// The same of ToPiInd3Pole, with inductors.
NortonTriple PiIndHalf(const NortonBase& base, const NortonHalf& h, double otherSplit, double K) {
    const double x = base.CentreL * base.A / (K * K) / otherSplit;
    NortonTriple t = NortonIndTransform(h.EndL * base.A, K);
    t.c += x;
    return StarToDelta(t);
}

/// A 5-pole half of two steps: the pi at the centre and the pi at the end.
struct TwoSteps {
    NortonTriple Centre;
    NortonTriple End;
};

TwoSteps PiIndPiCapHalf(const NortonBase& base, const NortonHalf& h, double K, double M) {
    TwoSteps s;
    s.Centre = NortonCapTransform(base.CentreC / (base.A * CentreLevel(K, M)) / h.Split, K);
    s.Centre.c = InSeries(s.Centre.c, h.NextC * M * M / base.A);
    s.Centre = DeltaToStar(s.Centre);
    s.End = NortonIndTransform(h.EndL * base.A, M);
    s.End.c += h.NextL * base.A / (M * M);
    s.End = StarToDelta(s.End);
    return s;
}

TwoSteps PiCapPiIndHalf(const NortonBase& base, const NortonHalf& h, double K, double M) {
    TwoSteps s;
    s.Centre = NortonIndTransform(base.CentreL * base.A * CentreLevel(K, M) * h.Split, K);
    s.Centre.c += h.NextL * base.A / (M * M);
    s.Centre = StarToDelta(s.Centre);
    s.End = NortonCapTransform(h.EndC / base.A + h.ExtraC, M);
    s.End.c = InSeries(s.End.c, h.NextC * M * M / base.A);
    s.End = DeltaToStar(s.End);
    return s;
}

// In a T the transformers stand beside the neighbours: both of a half split one resonator.

TwoSteps TeeIndTeeCapHalf(const NortonBase& base, const NortonHalf& h, double K, double M) {
    return {NortonCapTransform(h.NextC / (base.InverseA * M * M), K),
            NortonIndTransform(h.NextL * base.InverseA * M * M, M)};
}

TwoSteps TeeCapTeeIndHalf(const NortonBase& base, const NortonHalf& h, double K, double M) {
    return {NortonIndTransform(h.NextL * base.InverseA * M * M, K),
            NortonCapTransform(h.NextC / (base.InverseA * M * M), M)};
}

/// End capacitor of a T whose transformer leaves `rest` in series with it.
double TeeEndC(const NortonBase& base, const NortonHalf& h, double rest) {
    return 1.0 / (1.0 / rest + base.InverseA / h.EndC);
}

/// End inductor of a T before anything of a transformer is added.
double TeeEndL(const NortonBase& base, const NortonHalf& h) {
    return h.ExtraL + h.EndL * base.InverseA;
}

/// Both halves from a function of one.
template <typename OfHalf>
auto BothHalves(const NortonBase& base, OfHalf ofHalf) {
    using Result = decltype(ofHalf(base.Source));
    return std::pair<Result, Result>(ofHalf(base.Source), ofHalf(base.Load));
}

const std::array<NortonStructure, 4> threePoleStructures = {{
    {ToTCap3Pole,
     9,
     8,
     3,
     {ShuntCap, SeriesSerLC, ShuntCap, SeriesCap, ShuntInd, SeriesCap, ShuntCap, SeriesSerLC,
      ShuntCap}},
    {ToTInd3Pole,
     9,
     5,
     6,
     {ShuntCap, SeriesSerLC, ShuntInd, SeriesInd, ShuntCap, SeriesInd, ShuntInd, SeriesSerLC,
      ShuntCap}},
    {ToPiCap3Pole,
     9,
     6,
     5,
     {SeriesInd, ShuntParLC, SeriesCap, ShuntCap, SeriesInd, ShuntCap, SeriesCap, ShuntParLC,
      SeriesInd}},
    {ToPiInd3Pole,
     9,
     3,
     8,
     {SeriesInd, ShuntParLC, SeriesInd, ShuntInd, SeriesCap, ShuntInd, SeriesInd, ShuntParLC,
      SeriesInd}},
}};

const std::array<NortonStructure, 4> fivePoleStructures = {{
    {ToTeeCapTeeInd5Pole,
     11,
     9,
     7,
     {ShuntCap, SeriesSerLC, ShuntCap, SeriesSerLC, ShuntInd, SeriesSerLC, ShuntInd, SeriesSerLC,
      ShuntCap, SeriesSerLC, ShuntCap}},
    {ToTeeIndTeeCap5Pole,
     11,
     9,
     7,
     {ShuntCap, SeriesSerLC, ShuntInd, SeriesSerLC, ShuntCap, SeriesSerLC, ShuntCap, SeriesSerLC,
      ShuntInd, SeriesSerLC, ShuntCap}},
    {ToPiCapPiInd5Pole,
     11,
     7,
     9,
     {SeriesInd, ShuntParLC, SeriesCap, ShuntParLC, SeriesInd, ShuntParLC, SeriesInd, ShuntParLC,
      SeriesCap, ShuntParLC, SeriesInd}},
    {ToPiIndPiCap5Pole,
     11,
     7,
     9,
     {SeriesInd, ShuntParLC, SeriesInd, ShuntParLC, SeriesCap, ShuntParLC, SeriesCap, ShuntParLC,
      SeriesInd, ShuntParLC, SeriesInd}},
}};

}  // namespace

// Divisions are what a search spends its time on; that is why the first three have one each.

NortonTriple NortonIndTransform(double x, double n) {
    const double inverse = 1.0 / n;
    const double shunt = x * inverse;
    return {(n - 1.0) * shunt, shunt, (1.0 - n) * shunt * inverse};
}

NortonTriple NortonCapTransform(double x, double n) {
    const double shunt = x * n;
    const double series = shunt / (n - 1.0);
    return {series, shunt, -series * n};
}

NortonTriple DeltaToStar(const NortonTriple& t) {
    const double inverse = 1.0 / NonZero(t.a + t.b + t.c);
    return {t.a * t.b * inverse, t.a * t.c * inverse, t.b * t.c * inverse};
}

NortonTriple StarToDelta(const NortonTriple& t) {
    const double sum = NonZero(t.a * t.b + t.b * t.c + t.a * t.c);
    return {sum / t.c, sum / t.b, sum / t.a};
}

NortonValues ToTCap3Pole(const NortonBase& base, double K, double) {
    const double k2 = K * K;
    const auto [s, l] = BothHalves(base, [&](const NortonHalf& h) {
        return NortonCapTransform(base.CentreC / base.InverseA / k2 / h.Split, K);
    });
    return {
        {base.Source.MatchC, TeeEndC(base, base.Source, s.c), s.b, s.a, l.a, l.b,
         TeeEndC(base, base.Load, l.c), base.Load.MatchC},
        {TeeEndL(base, base.Source), base.CentreL * base.InverseA * k2, TeeEndL(base, base.Load)}};
}

NortonValues ToTInd3Pole(const NortonBase& base, double K, double) {
    const double k2 = K * K;
    const auto [s, l] = BothHalves(base, [&](const NortonHalf& h) {
        return NortonIndTransform(base.CentreL * base.InverseA * k2 * h.Split, K);
    });
    return {{base.Source.MatchC, base.Source.EndC / base.InverseA,
             base.CentreC / (base.InverseA * k2), base.Load.EndC / base.InverseA, base.Load.MatchC},
            {TeeEndL(base, base.Source) + s.c, s.b, s.a, l.a, l.b, TeeEndL(base, base.Load) + l.c}};
}

NortonValues ToPiCap3Pole(const NortonBase& base, double K, double) {
    const NortonTriple s = PiCapHalf(base, base.Source, base.Load.Split, K);
    const NortonTriple l = PiCapHalf(base, base.Load, base.Source.Split, K);
    return {{s.a, s.b, s.c, l.c, l.b, l.a},
            {base.Source.MatchL, base.Source.EndL * base.A, base.CentreL * base.A / (K * K),
             base.Load.EndL * base.A, base.Load.MatchL}};
}

NortonValues ToPiInd3Pole(const NortonBase& base, double K, double) {
    const NortonTriple s = PiIndHalf(base, base.Source, base.Load.Split, K);
    const NortonTriple l = PiIndHalf(base, base.Load, base.Source.Split, K);
    return {{base.Source.EndC / base.A + base.Source.ExtraC, base.CentreC * (K * K) / base.A,
             base.Load.EndC / base.A + base.Load.ExtraC},
            {base.Source.MatchL, s.a, s.b, s.c, l.c, l.b, l.a, base.Load.MatchL}};
}

NortonValues ToPiIndPiCap5Pole(const NortonBase& base, double K, double M) {
    const auto [s, l] =
        BothHalves(base, [&](const NortonHalf& h) { return PiIndPiCapHalf(base, h, K, M); });
    return {
        {base.Source.EndC / base.A + base.Source.ExtraC, s.Centre.c, s.Centre.b,
         s.Centre.a + l.Centre.a, l.Centre.b, l.Centre.c,
         base.Load.EndC / base.A + base.Load.ExtraC},
        {base.Source.MatchL, s.End.a, s.End.b, s.End.c, base.CentreL * base.A * CentreLevel(K, M),
         l.End.c, l.End.b, l.End.a, base.Load.MatchL}};
}

NortonValues ToPiCapPiInd5Pole(const NortonBase& base, double K, double M) {
    const auto [s, l] =
        BothHalves(base, [&](const NortonHalf& h) { return PiCapPiIndHalf(base, h, K, M); });
    return {{s.End.a, s.End.b, s.End.c, base.CentreC / (base.A * CentreLevel(K, M)), l.End.c,
             l.End.b, l.End.a},
            {base.Source.MatchL, base.Source.EndL * base.A, s.Centre.c, s.Centre.b,
             InSeries(s.Centre.a, l.Centre.a), l.Centre.b, l.Centre.c, base.Load.EndL * base.A,
             base.Load.MatchL}};
}

NortonValues ToTeeIndTeeCap5Pole(const NortonBase& base, double K, double M) {
    const double a = base.InverseA;
    const double z = CentreLevel(K, M);
    const auto [s, l] =
        BothHalves(base, [&](const NortonHalf& h) { return TeeIndTeeCapHalf(base, h, K, M); });
    const double centreC = 1.0 / (a / (base.CentreC * z) + 1.0 / s.Centre.c + 1.0 / l.Centre.c);
    return {{base.Source.MatchC, base.Source.EndC / a, s.Centre.a, s.Centre.b, centreC, l.Centre.b,
             l.Centre.a, base.Load.EndC / a, base.Load.MatchC},
            {TeeEndL(base, base.Source) + s.End.c, s.End.b, s.End.a, base.CentreL * a / z, l.End.a,
             l.End.b, TeeEndL(base, base.Load) + l.End.c}};
}

NortonValues ToTeeCapTeeInd5Pole(const NortonBase& base, double K, double M) {
    const double a = base.InverseA;
    const double z = CentreLevel(K, M);
    const auto [s, l] =
        BothHalves(base, [&](const NortonHalf& h) { return TeeCapTeeIndHalf(base, h, K, M); });
    return {{base.Source.MatchC, TeeEndC(base, base.Source, s.End.c), s.End.b, s.End.a,
             base.CentreC * z / a, l.End.a, l.End.b, TeeEndC(base, base.Load, l.End.c),
             base.Load.MatchC},
            {TeeEndL(base, base.Source), s.Centre.a, s.Centre.b,
             base.CentreL * a / z + s.Centre.c + l.Centre.c, l.Centre.b, l.Centre.a,
             TeeEndL(base, base.Load)}};
}

const NortonStructure& StructureOf(NortonType type, int numPoles) {
    const auto index = static_cast<std::size_t>(type);
    return numPoles == 5 ? fivePoleStructures[index] : threePoleStructures[index];
}

NortonBase BaseOf(const FilterDesign& design, double A) {
    const ElementList& slots = design.NortonBaseElements;
    const double w0 = TwoPi * design.F0;
    const double inverse = 1.0 / A;
    const auto half = [&](int end, int next, double r, double otherR) {
        return NortonHalf{.EndL = slots[end].V1,
                          .EndC = slots[end].V2,
                          .NextL = slots[next].V1,
                          .NextC = slots[next].V2,
                          .Split = r / otherR + 1.0,
                          .MatchL = std::sqrt(A - 1.0) * r / w0,
                          .MatchC = std::sqrt(A - 1.0) / (r * w0),
                          .ExtraL = std::sqrt(inverse - inverse * inverse) * r / w0,
                          .ExtraC = std::sqrt(A - 1.0) / (A * r * w0)};
    };
    const int n = design.NumPoles;
    const CircuitElement& centre = slots[(n + 1) / 2];
    return {.NumPoles = n,
            .A = A,
            .InverseA = inverse,
            .CentreL = centre.V1,
            .CentreC = centre.V2,
            .Source = half(1, 2, design.RSource, design.RLoad),
            .Load = half(n, n - 1, design.RLoad, design.RSource)};
}

void TransformNorton(FilterDesign& design) {
    const NortonSettings& settings = design.Norton;
    const NortonStructure& structure = StructureOf(settings.NortonType, design.NumPoles);
    const NortonValues values = structure.Transform(BaseOf(design, settings.ImpedanceScalar),
                                                    settings.NortonK, settings.NortonM);
    auto nextL = values.L.begin();
    auto nextC = values.C.begin();
    design.NumElements = structure.NumElements;
    for (int k = 1; k <= structure.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        slot.Type = structure.Types[k - 1];
        const ElementInfo& info = InfoOf(slot.Type);
        if (info.Values[0] == ValueKind::Inductance) slot.V1 = *nextL++;
        if (info.Values[1] == ValueKind::Capacitance) slot.V2 = *nextC++;
    }
    design.NortonResult = {
        settings.ImpedanceScalar, settings.NortonK, settings.NortonM, structure.NumC,
        structure.NumL,           values.C,         values.L};
}

}  // namespace ladderwise
