// The transform of Cooley and Tukey (Math. Comp. 19 (1965), 297): the input in bit-reversed order,
// then log2(N) stages of butterflies
//   a, b  ->  a + w b, a - w b,   w = exp(-j pi i / m),  i = 0 .. m - 1,  m = 1, 2, 4 .. N/2.
// The stages are done two at a time, which halves the traffic to the memory. Real and imaginary
// parts are kept apart so that neighbouring butterflies run in one vector register.
//
// An inverse transform is a forward one with real and imaginary parts exchanged on both sides, so
// that one set of tables serves both.
#include "analysis/FFTFunctions.h"

#include <bit>
#include <cmath>
#include <new>
#include <numbers>

#include "analysis/VectorLoops.h"

namespace ladderwise {

namespace {

/// Doubles between two arrays. Arrays a power of two apart would compete for the same few lines of
/// the cache.
constexpr int ArrayGap = 72;

}  // namespace

int FFTLog2(int N) {
    if (N < SmallestFFT || N > LargestFFT) return 0;
    const auto bits = static_cast<unsigned>(N);
    return std::has_single_bit(bits) ? std::countr_zero(bits) : 0;
}

bool FFTPlan::Prepare(int N) {
    if (size == N && N != 0) return true;
    size = 0;
    if (FFTLog2(N) == 0) return false;
    const std::size_t stride = static_cast<std::size_t>(N) + ArrayGap;
    memory.reset(new (std::nothrow) double[4 * stride]);
    reversed.reset(new (std::nothrow) int[static_cast<std::size_t>(N)]);
    if (!memory || !reversed) return false;
    re = memory.get();
    im = re + stride;
    cosine = im + stride;
    sine = cosine + stride;
    size = N;
    FillReversed();
    FillTwiddles();
    return true;
}

void FFTPlan::FillReversed() {
    reversed[0] = 0;
    for (int m = 1, half = size / 2; half >= 1; m *= 2, half /= 2)
        for (int i = 0; i < m; ++i)
            reversed[m + i] = reversed[i] + half;
}

/// The largest table from an eighth of the circle, each smaller one is every second entry of the
/// next.
void FFTPlan::FillTwiddles() {
    const int half = size / 2, quarter = size / 4;
    double* const c = cosine + half;
    double* const s = sine + half;
    for (int i = 0; i <= quarter / 2; ++i) {
        const double angle = i * (std::numbers::pi / half);
        c[i] = std::cos(angle);
        s[i] = -std::sin(angle);
        c[quarter - i] = -s[i];
        s[quarter - i] = -c[i];
    }
    for (int i = 1; i < quarter; ++i) {
        c[quarter + i] = s[i];
        s[quarter + i] = -c[i];
    }
    for (int m = quarter; m >= 1; m /= 2) {
        for (int i = 0; i < m; ++i) {
            cosine[m + i] = cosine[2 * m + 2 * i];
            sine[m + i] = sine[2 * m + 2 * i];
        }
    }
}

/// The input in bit-reversed order through the stages m = 1 and m = 2, whose factors are 1 and -j.
void FFTPlan::LoadReversed(const double* a, const double* b) {
    for (int i = 0; i < size; i += 4) {
        const std::size_t k0 = 2 * static_cast<std::size_t>(reversed[i]);
        const std::size_t k1 = k0 + static_cast<std::size_t>(size);  // reversed[i + 1], doubled
        const std::size_t quarter = static_cast<std::size_t>(size) / 2;
        const std::size_t k2 = k0 + quarter, k3 = k1 + quarter;
        const double sumRe = a[k0] + a[k1], sumIm = b[k0] + b[k1];
        const double difRe = a[k0] - a[k1], difIm = b[k0] - b[k1];
        const double sum2Re = a[k2] + a[k3], sum2Im = b[k2] + b[k3];
        const double dif2Re = a[k2] - a[k3], dif2Im = b[k2] - b[k3];
        re[i] = sumRe + sum2Re;
        im[i] = sumIm + sum2Im;
        re[i + 1] = difRe + dif2Im;
        im[i + 1] = difIm - dif2Re;
        re[i + 2] = sumRe - sum2Re;
        im[i + 2] = sumIm - sum2Im;
        re[i + 3] = difRe - dif2Im;
        im[i + 3] = difIm + dif2Re;
    }
}

/// The stages m and 2 m. The factor of the third and fourth output in stage 2 m is -j times that of
/// the first and second.
void FFTPlan::DoubleStage(int m) {
    const double *const c1 = cosine + m, *const s1 = sine + m;
    const double* const c2 = cosine + 2 * m;
    const double* const s2 = sine + 2 * m;
    for (int start = 0; start < size; start += 4 * m) {
        double *const r0 = re + start, *const i0 = im + start;
        double *const r1 = r0 + m, *const i1 = i0 + m;
        double *const r2 = r1 + m, *const i2 = i1 + m;
        double *const r3 = r2 + m, *const i3 = i2 + m;
        LADDER_INDEPENDENT
        for (int i = 0; i < m; ++i) {
            const double t1Re = c1[i] * r1[i] - s1[i] * i1[i];
            const double t1Im = c1[i] * i1[i] + s1[i] * r1[i];
            const double t3Re = c1[i] * r3[i] - s1[i] * i3[i];
            const double t3Im = c1[i] * i3[i] + s1[i] * r3[i];
            const double b0Re = r0[i] + t1Re, b0Im = i0[i] + t1Im;
            const double b1Re = r0[i] - t1Re, b1Im = i0[i] - t1Im;
            const double b2Re = r2[i] + t3Re, b2Im = i2[i] + t3Im;
            const double b3Re = r2[i] - t3Re, b3Im = i2[i] - t3Im;
            const double uRe = c2[i] * b2Re - s2[i] * b2Im, uIm = c2[i] * b2Im + s2[i] * b2Re;
            const double vRe = c2[i] * b3Re - s2[i] * b3Im, vIm = c2[i] * b3Im + s2[i] * b3Re;
            r0[i] = b0Re + uRe;
            i0[i] = b0Im + uIm;
            r1[i] = b1Re + vIm;
            i1[i] = b1Im - vRe;
            r2[i] = b0Re - uRe;
            i2[i] = b0Im - uIm;
            r3[i] = b1Re - vIm;
            i3[i] = b1Im + vRe;
        }
    }
}

/// The stage m = N/2, where the number of stages is odd.
void FFTPlan::LastStage(int m) {
    const double *const c = cosine + m, *const s = sine + m;
    double *const r0 = re, *const i0 = im;
    double *const r1 = r0 + m, *const i1 = i0 + m;
    LADDER_INDEPENDENT
    for (int i = 0; i < m; ++i) {
        const double tRe = c[i] * r1[i] - s[i] * i1[i], tIm = c[i] * i1[i] + s[i] * r1[i];
        const double aRe = r0[i], aIm = i0[i];
        r0[i] = aRe + tRe;
        i0[i] = aIm + tIm;
        r1[i] = aRe - tRe;
        i1[i] = aIm - tIm;
    }
}

void FFTPlan::Transform(double* data, int type) {
    const bool inverse = type == InverseFFT;
    double* const first = inverse ? data + 1 : data;
    double* const second = inverse ? data : data + 1;
    LoadReversed(first, second);
    int m = 4;
    for (; 2 * m < size; m *= 4)
        DoubleStage(m);
    if (m < size) LastStage(m);
    const double scale = inverse ? 1.0 : 1.0 / size;
    for (int i = 0; i < size; ++i) {
        first[2 * i] = re[i] * scale;
        second[2 * i] = im[i] * scale;
    }
}

void FFT(double* data, int N, int type, const MessageCallback& report) {
    const auto fail = [&report](const char* text) {
        if (report) report("FFT Error", text);
    };
    if (FFTLog2(N) == 0 || (type != ForwardFFT && type != InverseFFT))
        return fail("Invalid FFT type or size.");
    FFTPlan plan;
    if (!plan.Prepare(N)) return fail("FFT Memory Allocation Error");
    plan.Transform(data, type);
}

}  // namespace ladderwise
