// Fuzzes the reader of coefficients files: rows are complete and positive, or there is a message.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "files/CoefficientsFile.h"

using namespace ladderwise;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CoefficientsResult result = ReadCoefficients({reinterpret_cast<const char*>(data), size});
    for (int order = 1; order <= MaxPoles; ++order) {
        const auto& row = result.Rows[static_cast<std::size_t>(order)];
        if (!result.Error.empty() && HasOrder(result.Rows, order)) std::abort();
        for (int k = 0; k < order && HasOrder(result.Rows, order); ++k)
            if (!(row[static_cast<std::size_t>(k)] > 0.0)) std::abort();
    }
    if (result.Error.size() > 200) std::abort();
    return 0;
}
