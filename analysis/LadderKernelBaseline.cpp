// The kernel for every machine of the target architecture (SSE2 on x86-64).
#define LADDER_KERNEL_NAMESPACE kernel_baseline
#include "analysis/LadderKernel.inc"
