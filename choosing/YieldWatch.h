// How many boards of the design in hand keep its limits, said while its user goes on typing: a
// thousand boards at once, more of them as there is time. No Qt.
#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "boards/StandardParts.h"
#include "boards/Yield.h"

namespace ladderwise {

/// What is to be built.
struct BoardsAsked {
    const FilterDesign& Design;
    LimitLines Limits{};
    std::uint32_t Seed = 1;
    const StandardParts* Parts = nullptr;  ///< chosen for it; then their nearest set is built too
};

class YieldWatch {
public:
    static constexpr int UsualBoards = 1000;       ///< at every change
    static constexpr int WorstCaseBoards = 10000;  ///< while a worst case is shown
    static constexpr int MostBoards = 100000;      ///< when they are asked for

    /// Builds UsualBoards at once if anything that they depend on has changed.
    void Note(const BoardsAsked& asked);

    /// So many of them are wanted in the end, unless they were stopped.
    void WantAtLeast(int boards);
    /// The user asks for so many: it goes on after a stop too.
    void Ask(int boards);
    /// No more than there are, until boards are asked for or are others.
    void Stop();

    int Wanted() const { return wanted; }
    bool IsBuilding() const { return shown && shown->Result().Boards < wanted; }
    /// Builds for a millisecond or two. False: there are as many as are wanted.
    bool Advance();

    /// Of the design as it is shown, and of the nearest standard values in its place; null: without
    /// limits, or where no other set was chosen.
    const YieldResult* Result() const { return shown ? &shown->Result() : nullptr; }
    const YieldResult* Nearest() const { return nearest ? &nearest->Result() : nullptr; }

private:
    void Build(int boards);

    std::vector<double> key;  ///< all that the boards depend on
    std::unique_ptr<BoardCount> shown, nearest;
    int wanted = 0;
    bool stopped = false;
};

}  // namespace ladderwise
