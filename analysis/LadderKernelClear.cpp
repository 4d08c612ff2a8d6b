// One instruction, in a file of its own because it is compiled for AVX.
#include <immintrin.h>

#include "analysis/LadderKernel.h"

namespace ladderwise {

void ClearUpperHalves() {
    _mm256_zeroupper();
}

}  // namespace ladderwise
