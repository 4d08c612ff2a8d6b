// "--boards 1000", "--hold C3=1e-10", "--tolerance C3=1".
#include "cli/BoardArguments.h"

#include <charconv>
#include <cmath>

#include "numbers/PlainNumbers.h"

namespace ladderwise {

bool IsBoardOption(const std::string& option) {
    return option == "--boards" || option == "--hold" || option == "--tolerance";
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
    double x = 0.0;
    const bool readable = equals != std::string::npos && equals != 0 &&
                          ReadPlainNumber(value.substr(equals + 1), x) == NumberFault::None &&
                          x > 0.0;
    const std::string name = value.substr(0, equals);
    if (option == "--tolerance") {
        if (!readable || !(x <= MostPercentOfPart))
            return "--tolerance takes PART=PERCENT, at most 50, as in C3=1, not \"" + value + "\"";
        boards.Held.push_back({name, 0.0, x / 100.0});
        return {};
    }
    if (!readable || !std::isfinite(x))
        return "--hold takes PART=VALUE in henries or farads, as in C3=1e-10, not \"" + value +
               "\"";
    boards.Held.push_back({name, x, 0.0});
    return {};
}

}  // namespace ladderwise
