// Options of the console program about parts that are bought and boards that are built.
#pragma once

#include <string>
#include <vector>

#include "choosing/PartsArrangement.h"

namespace ladderwise {

inline constexpr int MostBoards = 1000000;
inline constexpr double MostPercentOfPart = 50.0;  ///< a tolerance

/// What was asked for.
struct BoardArguments {
    int Boards = 0;  ///< --boards N; 0: none
    std::vector<NamedPart> Held;
};

/// True for the options that TakeBoardValue takes.
bool IsBoardOption(const std::string& option);

/// Their value into its place; the reason if it is unfit.
std::string TakeBoardValue(BoardArguments& boards, const std::string& option,
                           const std::string& value);

}  // namespace ladderwise
