// Asks the processor for the vector features, by the compiler's own means.
// MSVC has only the raw CPUID instruction; GCC and Clang bring a checked query.
#include "analysis/CpuFeatures.h"

#if defined(_MSC_VER) && !defined(__clang__) && (defined(_M_X64) || defined(_M_IX86))
#define LADDERWISE_CPUID_MSVC 1
#include <immintrin.h>
#include <intrin.h>
#elif defined(__x86_64__) || defined(__i386__)
#define LADDERWISE_CPUID_BUILTIN 1
#endif

namespace ladderwise {
namespace {

#if defined(LADDERWISE_CPUID_MSVC)
CpuFeatures Detect() {
    constexpr auto has = [](int word, int bit) { return ((word >> bit) & 1) != 0; };
    int leaf0[4], leaf1[4], leaf7[4] = {};
    __cpuid(leaf0, 0);
    __cpuid(leaf1, 1);
    if (leaf0[0] >= 7) __cpuidex(leaf7, 7, 0);
    // ECX of leaf 1: 27 OSXSAVE, 28 AVX, 12 FMA; EBX of leaf 7: 3 BMI1, 5 AVX2, 8 BMI2.
    // XCR0 bits 1 and 2: the system saves the SSE and AVX state of a thread.
    const bool osSavesAvx = has(leaf1[2], 27) && (_xgetbv(0) & 6) == 6;
    CpuFeatures found;
    found.Avx = osSavesAvx && has(leaf1[2], 28);
    found.X86Level3 =
        found.Avx && has(leaf1[2], 12) && has(leaf7[1], 3) && has(leaf7[1], 5) && has(leaf7[1], 8);
    return found;
}
#elif defined(LADDERWISE_CPUID_BUILTIN)
CpuFeatures Detect() {
    __builtin_cpu_init();
    CpuFeatures found;
    found.Avx = __builtin_cpu_supports("avx");
    found.X86Level3 = found.Avx && __builtin_cpu_supports("avx2") &&
                      __builtin_cpu_supports("fma") && __builtin_cpu_supports("bmi") &&
                      __builtin_cpu_supports("bmi2");
    return found;
}
#else
CpuFeatures Detect() {
    return {};
}
#endif

}  // namespace

const CpuFeatures& HostCpuFeatures() {
    static const CpuFeatures features = Detect();
    return features;
}

}  // namespace ladderwise
