// "--boards 1000", "--hold C3=1e-10".
#include "cli/BoardArguments.h"

#include <charconv>
#include <cmath>

#include "numbers/PlainNumbers.h"

namespace ladderwise {

bool IsBoardOption(const std::string& option) {
    return option == "--boards" || option == "--hold";
}

std::string TakeBoardValue(BoardArguments& boards, const std::string& option,
                           const std::string& value) {
    if (option == "--boards") {
        const char* const end = value.data() + value.size();
        const auto result = std::from_chars(value.data(), end, boards.Boards);
        if (result.ec == std::errc() && result.ptr == end && boards.Boards >= 1 &&
            boards.Boards <= MostBoards)
            return {};
        return "--boards takes a number from 1 to " + std::to_string(MostBoards) + ", not \"" +
               value + "\"";
    }
    const auto equals = value.find('=');
    double held = 0.0;
    if (equals == std::string::npos || equals == 0 ||
        ReadPlainNumber(value.substr(equals + 1), held) != NumberFault::None || !(held > 0.0) ||
        !std::isfinite(held))
        return "--hold takes PART=VALUE in henries or farads, as in C3=1e-10, not \"" + value +
               "\"";
    boards.Held.emplace_back(value.substr(0, equals), held);
    return {};
}

}  // namespace ladderwise
