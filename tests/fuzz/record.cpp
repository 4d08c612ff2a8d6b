// Fuzzes the reader of design files: what it accepts survives being written and read again.
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "files/FileReadSave.h"

using namespace ladderwise;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    auto record = DecodeRecord({reinterpret_cast<const char*>(data), size});
    if (!record) return 0;
    for (const auto& [name, values] : record->Numbers)
        for (const double value : values)
            if (!std::isfinite(value)) std::abort();
    RefreshRecord(*record, {});
    const std::string bytes = EncodeRecord(*record);
    const auto again = DecodeRecord(bytes);
    if (!again || EncodeRecord(*again) != bytes) std::abort();
    return 0;
}
