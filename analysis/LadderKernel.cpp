// Chooses the compiled kernel that this processor can run.
#include "analysis/LadderKernel.h"

#include "analysis/CpuFeatures.h"

namespace ladderwise {

#if defined(LADDERWISE_KERNEL_V3)

bool KernelAvailable(KernelChoice choice) {
    return choice != KernelChoice::V3 || HostCpuFeatures().X86Level3;
}

const KernelFunctions& ReadyKernel(KernelChoice choice) {
    const CpuFeatures& host = HostCpuFeatures();
    if (host.Avx) ClearUpperHalves();
    const bool v3 = choice == KernelChoice::V3 || choice == KernelChoice::Automatic;
    return v3 && host.X86Level3 ? kernel_v3::Functions : kernel_baseline::Functions;
}

#else

bool KernelAvailable(KernelChoice choice) {
    return choice != KernelChoice::V3;
}

const KernelFunctions& ReadyKernel(KernelChoice) {
    return kernel_baseline::Functions;
}

#endif

}  // namespace ladderwise
