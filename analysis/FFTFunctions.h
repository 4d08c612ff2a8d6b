// Complex fast Fourier transform of 8 to 1048576 points, radix 2, decimation in time. No Qt.
//
//   forward   X[k] = 1/N  sum over n of x[n] exp(-2 pi j k n / N)
//   inverse   x[n] =      sum over k of X[k] exp(+2 pi j k n / N)
#pragma once

#include <cstddef>
#include <memory>

#include "design/Messages.h"

namespace ladderwise {

inline constexpr int ForwardFFT = 0;
inline constexpr int InverseFFT = 1;

inline constexpr int SmallestFFT = 8;
inline constexpr int LargestFFT = 1048576;

/// log2(N) for a power of two SmallestFFT <= N <= LargestFFT, otherwise 0.
int FFTLog2(int N);

/// The tables and work space of transforms of one size, of either type.
class FFTPlan {
public:
    FFTPlan() = default;
    /// A copy is ready for nothing: it makes tables of its own when it is used.
    FFTPlan(const FFTPlan&) {}
    FFTPlan& operator=(const FFTPlan&) { return *this; }

    /// Makes the plan ready for N points; a plan that is ready for N already is left alone. False
    /// (and ready for nothing) if N is no size of a transform or there is no memory.
    bool Prepare(int N);

    int Size() const { return size; }

    /// Transforms Size() complex numbers (real, imaginary, real, ...) in place. Allocates nothing.
    void Transform(double* data, int type);

private:
    std::unique_ptr<double[]> memory;
    double *re = nullptr, *im = nullptr;  ///< the work space
    /// exp(-j pi i / m) for the butterflies of span m, i = 0 .. m - 1, at index m + i.
    double *cosine = nullptr, *sine = nullptr;
    std::unique_ptr<int[]> reversed;  ///< the bits of the index in reverse order
    int size = 0;

    void FillReversed();
    void FillTwiddles();
    void LoadReversed(const double* a, const double* b);
    void DoubleStage(int m);
    void LastStage(int m);
};

/// Transforms N complex numbers, interleaved doubles (real, imaginary), in place; type ForwardFFT
/// or InverseFFT. A size that FFTLog2 does not know, another type and want of memory are reported
/// and leave the data unchanged. Repeated transforms of one size are faster with an FFTPlan.
void FFT(double* data, int N, int type, const MessageCallback& report);

}  // namespace ladderwise
