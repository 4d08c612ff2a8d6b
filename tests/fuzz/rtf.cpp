// Any bytes as a help text: no crash, no overrun, and never more text than is allowed.
#include <cstdint>
#include <cstdlib>

#include "files/RtfReader.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const ladderwise::RtfDocument document =
        ladderwise::ReadRtf({reinterpret_cast<const char*>(data), size});
    std::size_t text = 0;
    for (const ladderwise::RtfBlock& block : document.Blocks) {
        if (block.Cells.empty()) std::abort();
        text += block.PlainText().size();
    }
    if (!document.IsRtf && !document.Blocks.empty()) std::abort();
    if (text > ladderwise::MaxRtfText + 64 * document.Blocks.size()) std::abort();
    return 0;
}
