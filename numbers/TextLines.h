// Lines of text files that may come from any system or editor. No Qt.
#pragma once

#include <string_view>
#include <vector>

namespace ladderwise {

/// The lines of a text without their ends (LF, CR LF or CR) and without a byte-order mark. An end
/// at the end of the text starts no further line.
std::vector<std::string_view> LinesOf(std::string_view text);

/// Without blanks and tabs at both ends.
std::string_view Trimmed(std::string_view text);

}  // namespace ladderwise
