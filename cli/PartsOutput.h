// Which parts to buy and how many boards pass, for the console program: between the calculation and
// its JSON.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "boards/StandardParts.h"
#include "boards/Yield.h"
#include "cli/BoardArguments.h"
#include "design/LimitLine.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

/// The choice of parts of one calculation and what comes of it.
struct BoardWork {
    BoardArguments Asked{};
    LimitLines Limits{};
    std::optional<StandardParts> Standard{};
    std::optional<YieldResult> Yield{};         ///< of the boards asked for
    std::optional<YieldResult> NearestYield{};  ///< of the same boards with the nearest values
    std::string Error{};                        ///< a part to be held that there is not
};

/// Lets `calculation` take its parts by `work`, which must outlive it.
void ChooseParts(Calculation& calculation, BoardWork& work);

/// Draws the boards that were asked for, once the ladder stands, by the seed in use.
void BuildBoards(const Calculation& calculation, BoardWork& work);

/// The members "std" and "yield" of the JSON, where there are such; by their names.
std::vector<std::pair<std::string, std::string>> BoardMembers(const Calculation& calculation,
                                                              const BoardWork& work);

/// "987 of 1000 boards pass: 98.7 % (97.8 to 99.2 %)" for the table; empty without boards.
std::string BoardText(const BoardWork& work);

}  // namespace ladderwise
