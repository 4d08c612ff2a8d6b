// Sweep analysis of the ladder: complex transfer and input reflection at every frequency.
// The reference form (one point at a time, chain matrices) says what is right; AnalyseLadder does
// the whole sweep with the vectorised kernel and falls back on it point by point. No Qt.
#pragma once

#include <complex>
#include <span>

#include "analysis/LadderKernel.h"
#include "analysis/SweepTables.h"
#include "design/FilterDesign.h"
#include "design/Messages.h"

namespace ladderwise {

using Complex = std::complex<double>;

/// Each part of a complex number is clamped to +- this before its level is taken.
inline constexpr double LargestLevelPart = 1e10;

/// num / den by the scaled method of Smith (Comm. ACM 5 (1962), algorithm 116). An exactly zero
/// denominator or a NaN in any part gives (NaN, NaN).
Complex GuardedDivide(Complex num, Complex den);

/// 10 log10(re^2 + im^2), dB, each part clamped to +-LargestLevelPart; ZeroPowerDb for zero power,
/// NaN for a NaN part.
double ComplexToDb(Complex z);

/// x as the part models use it: raised to SmallestPartValue if it is below it or NaN.
constexpr double GuardedPartValue(double x) {
    return x >= SmallestPartValue ? x : SmallestPartValue;
}

/// What a part's impedance depends on beside its value and the frequency.
struct PartContext {
    const PartModel& Model;
    double F0;  ///< Hz, where a coil has its Q
};

/// Impedance (ohm) and admittance (S) of an inductor of L henries and a capacitor of C farads at
/// s = j w (rad/s) and f (Hz), under the part model: ideal parts, or
///   coil       R + s L with R = 2 pi sqrt(F0 f) L / IndQ, shunted by IndC
///   capacitor  C, CapL and CapR in series
/// R grows with the root of f because current flows in a skin whose depth falls with it (Wheeler,
/// "Formulas for the skin effect", Proc. IRE 30 (1942)), and at F0 it is w0 L / IndQ.
Complex InductorZ(const PartContext& parts, Complex s, double f, double L);
Complex InductorY(const PartContext& parts, Complex s, double f, double L);
Complex CapacitorZ(const PartContext& parts, Complex s, double f, double C);
Complex CapacitorY(const PartContext& parts, Complex s, double f, double C);

/// An impedance as N / D (ohm), which an open circuit (D = 0) and a short one have alike.
struct ImpedanceRatio {
    Complex N, D;
};

/// The impedances of the same parts as ratios.
ImpedanceRatio InductorRatio(const PartContext& parts, Complex s, double f, double L);
ImpedanceRatio CapacitorRatio(const PartContext& parts, Complex s, double C);

/// A chain (ABCD) matrix, the identity at first: V1 = A V2 + B I2, I1 = C V2 + D I2.
struct ChainMatrix {
    Complex A{1.0}, B{0.0}, C{0.0}, D{1.0};
};

/// The running product, source to load, and the section to be multiplied onto it.
struct Chain {
    ChainMatrix Running;
    ChainMatrix Section;
};

/// Running := Running * Section, then Section := identity.
void ChainMultiply(Chain& chain);

/// The length in radians at f of a line of `lengthDeg` degrees at F0.
double LineAngle(double F0, double f, double lengthDeg);

/// The chain matrix of a lossless line of `lengthDeg` degrees at F0 and Z0 ohms, at f (Hz).
ChainMatrix LineSection(double F0, double f, double lengthDeg, double Z0);

/// Transfer H (1 for a lossless match) and input reflection coefficient at one frequency.
struct LadderPoint {
    Complex Transfer;
    Complex Reflection;
};

/// The reference form: the ladder of `design` at f (Hz), with F0 as the frequency of line lengths
/// and Q. All slots in use must hold elements. NaN where a denominator is exactly zero.
LadderPoint AnalysePoint(const FilterDesign& design, double F0, double f);

/// Analyses the ladder of `design` over the grid of `tables`: H into re and im, the input
/// reflection in dB into reflectionDb. Spans shorter than the grid shorten the sweep; an empty
/// reflectionDb is not computed. Slots 1 .. NumElements (at most 31) from source to load; F0 is
/// that of the tables. A code outside 0 .. 25 in a slot is reported once and nothing is changed;
/// the result is then false.
/// The kernel agrees with the reference form to about 1e-12 of H for lossy parts and 1e-8 at
/// resonances of ideal ones.
bool AnalyseLadder(const FilterDesign& design, const SweepTables& tables,
                   const MessageCallback& report, std::span<double> re, std::span<double> im,
                   std::span<double> reflectionDb, KernelChoice choice = KernelChoice::Automatic);

/// The same over the design's own grid, into design.Response.
void AnalyseLadder(FilterDesign& design, const SweepTables& tables, const MessageCallback& report);

}  // namespace ladderwise
