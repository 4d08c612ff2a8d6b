// Bytes that may be UTF-8. No Qt.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace ladderwise {

/// Length of the UTF-8 sequence at the start of `text`; 0 if it is none. Overlong forms, surrogates
/// and codes beyond U+10FFFF count as none (RFC 3629).
std::size_t SequenceLength(std::string_view text);

/// The text with U+FFFD for every byte that is no UTF-8.
std::string CleanUtf8(std::string_view text);

/// The UTF-8 of a code up to U+10FFFF; U+FFFD for a surrogate and beyond.
std::string Utf8Of(char32_t code);

}  // namespace ladderwise
