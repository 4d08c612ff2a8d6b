// Fuzzes the reader of Touchstone files: what it accepts is finite, in order and complete, and what
// it refuses names its line.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "exchange/TouchstoneReader.h"

using namespace ladderwise;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto [network, error] = ReadTouchstone({reinterpret_cast<const char*>(data), size});
    if (!error.empty()) {
        if (!error.starts_with("line ") || !network.Hz.empty()) std::abort();
        return 0;
    }
    if (network.Hz.empty() || network.S.size() != network.Hz.size()) std::abort();
    for (std::size_t i = 0; i < network.Hz.size(); ++i) {
        if (!std::isfinite(network.Hz[i]) || (i > 0 && !(network.Hz[i] > network.Hz[i - 1])))
            std::abort();
        const SParameters& s = network.S[i];
        for (const Complex& z : {s.S11, s.S21, s.S12, s.S22})
            if (!std::isfinite(z.real()) || !std::isfinite(z.imag())) std::abort();
        Renormalised(s, network.Reference, {50.0, 75.0});
    }
    return 0;
}
