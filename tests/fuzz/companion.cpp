// Fuzzes the reader of the files beside designs: what is accepted is written and read again to the
// same text.
#include <cstdint>
#include <cstdlib>

#include "exchange/DesignCompanion.h"

using namespace ladderwise;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view bytes{reinterpret_cast<const char*>(data), size};
    const JsonResult json = ReadJson(bytes);
    if (json.Error.empty()) {
        const std::string text = WriteJson(json.Value);
        const JsonResult again = ReadJson(text);
        if (!again.Error.empty() || WriteJson(again.Value) != text) std::abort();
    }
    const CompanionResult read = ReadCompanion(bytes);
    if (!read.Error.empty()) return 0;
    const std::string text = CompanionText(read.Companion);
    const CompanionResult again = ReadCompanion(text);
    if (!again.Error.empty() || CompanionText(again.Companion) != text) std::abort();
    return 0;
}
