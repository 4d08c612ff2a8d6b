// The kernel for x86-64-v3. Compiled with AVX2, FMA and BMI: nothing but the kernel may be in this
// file, and nothing in it may be called before the processor has been asked.
#define LADDER_KERNEL_NAMESPACE kernel_v3
#include "analysis/LadderKernel.inc"
