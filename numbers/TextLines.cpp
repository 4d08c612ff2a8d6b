// Lines of text files.
#include "numbers/TextLines.h"

#include <algorithm>

namespace ladderwise {

std::vector<std::string_view> LinesOf(std::string_view text) {
    constexpr std::string_view byteOrderMark = "\xef\xbb\xbf";
    if (text.starts_with(byteOrderMark)) text.remove_prefix(byteOrderMark.size());
    std::vector<std::string_view> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back(text.substr(0, end));
        const bool pair = text.substr(end).starts_with("\r\n");
        text.remove_prefix(std::min(text.size(), end + (pair ? 2 : 1)));
    }
    return lines;
}

std::string_view Trimmed(std::string_view text) {
    constexpr std::string_view blanks = " \t";
    const std::size_t first = text.find_first_not_of(blanks);
    if (first == std::string_view::npos) return {};
    return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

}  // namespace ladderwise
