// The vectorised form of the ladder sweep and of the levels and angles derived from it: plain
// arrays in, plain arrays out. One source (LadderKernel*.inc) is compiled twice, for any machine
// and for x86-64-v3; the better one that the processor can run is chosen at start-up. No Qt.
//
// This header is read by the files compiled for AVX2. It therefore holds plain data and
// declarations only: an inline function here could be emitted as AVX2 code and be kept by the
// linker for the whole program.
#pragma once

namespace ladderwise {

inline constexpr int KernelBlock = 256;  ///< frequencies per block; all arrays stay in L1 cache

/// Which form of the analysis runs. Everything but Automatic is for tests and benchmarks.
enum class KernelChoice { Automatic, Baseline, V3, Reference };

/// One of the four values of a slot, with the reciprocal that admittances need.
struct KernelValue {
    double X;    ///< a part value (H or F, at least SmallestPartValue), a length or an impedance
    double Inv;  ///< 1 / X
    /// Of a capacitor that is two in parallel, X being the larger one: 1; else 0.
    double Others;
    double OtherInv;  ///< 1 / the smaller one, F; else Inv
};

/// One ladder slot. Lines: a length is held in radians at F0.
struct KernelSlot {
    int Type;  ///< an ElementType code 0 .. 25
    KernelValue V1, V2, V3, V4;
};

/// One sweep of one ladder. Tables are padded to whole blocks, outputs are not.
struct KernelSweep {
    const KernelSlot* Slots;  ///< from the source to the load
    int NumSlots;
    bool Ideal;
    bool Paired;              ///< a value is two capacitors; never if Ideal
    double RSource, RLoad;    ///< ohm
    double TwiceRoot;         ///< 2 sqrt(RSource RLoad), ohm
    double InvIndQ;           ///< 1 / Q of every inductor at F0
    double IndC, CapR, CapL;  ///< F, ohm, H
    const double* Omega;      ///< SweepTables::Omega and so on
    const double* InvOmega;
    const double* SkinOmega;
    const double* RelativeF;
    const double* ZeroOrNaN;
    int Count;             ///< points
    double* TransferRe;    ///< out, Count points
    double* TransferIm;    ///< out, Count points
    double* ReflectionDb;  ///< out, Count points; null: not wanted
};

/// One group-delay pass over levels and angles.
struct KernelDelay {
    const double* LevelDb;
    const double* Angle;  ///< rad
    const double* Freqs;  ///< Hz
    int Count;
    double Threshold;    ///< dB
    double* GroupDelay;  ///< out, points 1 .. Count - 1
};

/// One compiled kernel.
struct KernelFunctions {
    /// Sweeps a ladder. Points that the kernel cannot do are left with NaN in TransferRe; true if
    /// there are any. They are those whose |H| or |Gamma| is zero, not finite or beyond the clamp,
    /// and those on (or within rounding of) a resonance that the reference form divides by.
    bool (*Sweep)(const KernelSweep& sweep);
    /// db[i] = 10 log10(re^2 + im^2) and angle[i] = atan2(im, re); null outputs are skipped. Odd
    /// points (power zero, subnormal, above 1e20 or NaN) get NaN in each; true if there are any.
    bool (*LevelsAndAngles)(const double* re, const double* im, int count, double* db,
                            double* angle);
    /// Group delay of points 1 .. Count - 1, with its blanks.
    void (*GroupDelays)(const KernelDelay& delay);
    /// The largest of start and values; NaN is ignored.
    double (*Largest)(const double* values, int count, double start);
    /// Over points 1 .. count - 1: lowers *smallest to the smallest delay whose level exceeds
    /// smallAbove, raises *largest to the largest delay whose level exceeds largeAbove.
    void (*DelayRange)(const double* delays, const double* levels, int count, double smallAbove,
                       double largeAbove, double* smallest, double* largest);
    /// low[i] = min(low[i], |H|^2), high[i] = max(high[i], |H|^2); NaN changes nothing.
    void (*Extremes)(const double* re, const double* im, int count, double* low, double* high);
    /// Of a least-squares fit: sums[j * width + k] += sum over r of rows[r * width + j] *
    /// rows[r * width + k] for j <= k < width, j < width - 1; what lies left of the diagonal is
    /// not touched.
    void (*AddProducts)(const double* rows, int count, int width, double* sums);
};

namespace kernel_baseline {
extern const KernelFunctions Functions;
}
#if defined(LADDERWISE_KERNEL_V3)
namespace kernel_v3 {
extern const KernelFunctions Functions;
}
/// Zeroes the upper halves of the AVX registers. Only where the processor has AVX.
void ClearUpperHalves();
#endif

/// True if `choice` can run here. Automatic, Baseline and Reference always can.
bool KernelAvailable(KernelChoice choice);

/// The kernel for `choice` (an unavailable one, and Reference, give the baseline), ready to be
/// called: where AVX exists the upper register halves are cleared. Code compiled for AVX that does
/// not clear them itself, the painting of the window toolkit above all, would otherwise slow the
/// SSE2 code of the baseline kernel two to four times. Ask again before every use.
const KernelFunctions& ReadyKernel(KernelChoice choice);

}  // namespace ladderwise
