// Norton transforms of a canonical band-pass of 3 or 5 resonators: its series and shunt resonators
// as the user's choice of four structures, whose coupling inductors (or capacitors) are scaled.
// Plain structs in and out; the design state is met only in the two functions at the end.
//
// An ideal transformer of ratio n next to a lone inductor or capacitor X is the same two-port as
// three elements of the same kind (E. L. Norton 1937; A. I. Zverev, Handbook of Filter Synthesis,
// 1967, chapter 10). Each half of the ladder has one or two such transformers, which the other half
// undoes, so that the response stays that of the canonical ladder. An impedance scalar A above 1
// lifts everything between the terminations by A: an L-section at either end matches it, exactly at
// F0 only.
//
//   symbol  variable         meaning, unit
//   A, a    A, InverseA      impedance scalar, 1 .. 100, and 1 / A
//   K       K                turns ratio of the first transformer of each half
//   M       M                turns ratio of the second one, 5 poles only
//   z       z                K^2 / M^2, level of the centre resonator
//   R       R                termination of a half, ohm
//   w0      w0               2 pi F0, rad/s
//   Le, Ce  EndL, EndC       end resonator of a half (slot 1 or NumPoles), H, F
//   Lm, Cm  NextL, NextC     its neighbour (slot 2 or 4), H, F; 5 poles only
//   L, C    CentreL, CentreC resonator in the middle (slot 2 or 3), H, F
//   s       Split            share of the centre that a half's transformer takes: Rs/RL + 1 at the
//                            source, RL/Rs + 1 at the load; 1/s of both halves add up to 1
#pragma once

#include "design/FilterDesign.h"

namespace ladderwise {

/// Three elements of one kind. Of a T: series at the first port, shunt, series at the second port.
/// Of a pi: shunt at the first port, series, shunt at the second port.
struct NortonTriple {
    double a;
    double b;
    double c;
};

/// A sum of a conversion that is exactly zero is taken for this, so that no zero is divided by.
inline constexpr double SmallestConversionSum = 1e-20;

/// The T that a shunt inductor x and a transformer n : 1 behind it make: a = (n - 1) x / n,
/// b = x / n, c = (1 - n) x / n^2, H. For n > 1 the last one is negative.
NortonTriple NortonIndTransform(double x, double n);

/// The same for a shunt capacitor x: a = x n / (n - 1), b = x n, c = x n^2 / (1 - n), F.
NortonTriple NortonCapTransform(double x, double n);

/// With S = a + b + c: ab / S, ac / S, bc / S. Inductors of a delta to those of a star, or, as
/// here, capacitors of a T to those of a pi.
NortonTriple DeltaToStar(const NortonTriple& t);

/// With S = ab + bc + ac: S / c, S / b, S / a. The inductors of a T to those of a pi.
NortonTriple StarToDelta(const NortonTriple& t);

/// One half of the canonical ladder, and what A makes of its termination.
struct NortonHalf {
    double EndL = 0.0;
    double EndC = 0.0;
    double NextL = 0.0;
    double NextC = 0.0;
    double Split = 0.0;
    double MatchL = 0.0;  ///< series inductor of the L-section of a pi, sqrt(A - 1) R / w0, H
    double MatchC = 0.0;  ///< shunt capacitor of the L-section of a T, sqrt(A - 1) / (R w0), F
    double ExtraL = 0.0;  ///< dL = sqrt(a - a^2) R / w0, absorbed by the end resonator of a T, H
    double ExtraC = 0.0;  ///< dC = sqrt(A - 1) / (A R w0), absorbed by that of a pi, F

    bool operator==(const NortonHalf&) const = default;
};

/// The canonical ladder with its terminations and A: all that stays while K and M change.
struct NortonBase {
    int NumPoles = 3;  ///< 3 or 5
    double A = 1.0;
    double InverseA = 1.0;
    double CentreL = 0.0;
    double CentreC = 0.0;
    NortonHalf Source{};
    NortonHalf Load{};

    bool operator==(const NortonBase&) const = default;
};

/// Element values from source to load. The inductors and the capacitors of a structure fill its
/// slots in this order.
struct NortonValues {
    std::array<double, MaxNortonValues> C{};  ///< F
    std::array<double, MaxNortonValues> L{};  ///< H
};

/// The eight transforms. Values may come out negative or not finite; they are returned as they are.
NortonValues ToTCap3Pole(const NortonBase& base, double K, double M);
NortonValues ToTInd3Pole(const NortonBase& base, double K, double M);
NortonValues ToPiCap3Pole(const NortonBase& base, double K, double M);
NortonValues ToPiInd3Pole(const NortonBase& base, double K, double M);
NortonValues ToTeeCapTeeInd5Pole(const NortonBase& base, double K, double M);
NortonValues ToTeeIndTeeCap5Pole(const NortonBase& base, double K, double M);
NortonValues ToPiCapPiInd5Pole(const NortonBase& base, double K, double M);
NortonValues ToPiIndPiCap5Pole(const NortonBase& base, double K, double M);

/// One of the eight: its transform and the slots that it fills.
struct NortonStructure {
    NortonValues (*Transform)(const NortonBase& base, double K, double M);
    int NumElements;                      ///< 9 or 11
    int NumC;                             ///< values of C in use
    int NumL;                             ///< values of L in use
    std::array<ElementType, 11> Types{};  ///< of slots 1 .. NumElements
};

/// The structure of a type for 3 or 5 poles; any other number counts as 3.
const NortonStructure& StructureOf(NortonType type, int numPoles);

/// The base of the ladder in NortonBaseElements (canonical, NumPoles = 3 or 5) with the
/// terminations and F0 of the design and an impedance scalar A >= 1.
NortonBase BaseOf(const FilterDesign& design, double A);

/// The transform that design.Norton asks for, of the ladder in NortonBaseElements: fills Elements
/// (clear before), NumElements and NortonResult.
void TransformNorton(FilterDesign& design);

}  // namespace ladderwise
