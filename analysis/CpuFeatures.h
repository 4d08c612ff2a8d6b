// What the processor at hand can do: the one place that asks it.
// No Qt. Used when the ladder kernel is chosen.
#pragma once

namespace ladderwise {

/// The features that the compiled kernels need, usable by the operating system as well.
struct CpuFeatures {
    bool Avx = false;        ///< 256-bit registers, whose upper halves can be left dirty
    bool X86Level3 = false;  ///< AVX2, FMA, BMI1 and BMI2, as in the x86-64-v3 level
};

/// The features of this processor, asked once. All false where the processor is not an x86.
const CpuFeatures& HostCpuFeatures();

}  // namespace ladderwise
