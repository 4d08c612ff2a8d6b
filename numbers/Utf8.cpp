// UTF-8 as RFC 3629 has it.
#include "numbers/Utf8.h"

#include <algorithm>

namespace ladderwise {

namespace {

constexpr const char* ReplacementCharacter = "\xef\xbf\xbd";  // U+FFFD

}  // namespace

std::size_t SequenceLength(std::string_view text) {
    const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
    const unsigned lead = byte(0);
    const std::size_t length = lead < 0x80                    ? 1
                               : lead >= 0xc2 && lead <= 0xdf ? 2
                               : lead >= 0xe0 && lead <= 0xef ? 3
                               : lead >= 0xf0 && lead <= 0xf4 ? 4
                                                              : 0;
    if (length == 0 || length > text.size()) return 0;
    for (std::size_t i = 1; i < length; ++i)
        if ((byte(i) & 0xc0) != 0x80) return 0;
    const unsigned second = length > 1 ? byte(1) : 0;
    const bool unfit = (lead == 0xe0 && second < 0xa0) || (lead == 0xed && second > 0x9f) ||
                       (lead == 0xf0 && second < 0x90) || (lead == 0xf4 && second > 0x8f);
    return unfit ? 0 : length;
}

std::string CleanUtf8(std::string_view text) {
    std::string clean;
    while (!text.empty()) {
        const std::size_t length = SequenceLength(text);
        clean += length > 0 ? std::string(text.substr(0, length)) : ReplacementCharacter;
        text.remove_prefix(std::max<std::size_t>(length, 1));
    }
    return clean;
}

std::string Utf8Of(char32_t code) {
    if ((code >= 0xd800 && code < 0xe000) || code > 0x10ffff) return ReplacementCharacter;
    const auto tail = [code](int shift) {
        return static_cast<char>(0x80 | ((code >> shift) & 0x3f));
    };
    if (code < 0x80) return {static_cast<char>(code)};
    if (code < 0x800) return {static_cast<char>(0xc0 | (code >> 6)), tail(0)};
    if (code < 0x10000) return {static_cast<char>(0xe0 | (code >> 12)), tail(6), tail(0)};
    return {static_cast<char>(0xf0 | (code >> 18)), tail(12), tail(6), tail(0)};
}

}  // namespace ladderwise
