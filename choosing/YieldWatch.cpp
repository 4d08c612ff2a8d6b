// Boards in portions.
#include "choosing/YieldWatch.h"

#include <algorithm>

#include "design/LadderNumbers.h"

namespace ladderwise {

namespace {

constexpr int boardsAtATime = 250;

std::vector<double> BoardNumbers(const BoardsAsked& asked) {
    const FilterDesign& design = asked.Design;
    std::vector<double> numbers = LadderNumbers(design);
    const BoardDraw& draw = design.Boards;
    numbers.insert(numbers.end(),
                   {design.PartModel.IndTolerance, design.PartModel.CapTolerance, draw.CapAbsolute,
                    draw.Reel, draw.Normal ? 1.0 : 0.0, static_cast<double>(asked.Seed)});
    for (const LimitLine& line : asked.Limits)
        numbers.insert(numbers.end(),
                       {static_cast<double>(line.Kind), line.From, line.To, line.Value});
    for (const HeldPart& part : design.Held)
        numbers.insert(numbers.end(), {static_cast<double>(part.Place.Slot),
                                       static_cast<double>(part.Place.Row), part.Tolerance});
    numbers.push_back(asked.Parts ? 1.0 : 0.0);
    if (!asked.Parts) return numbers;
    for (const CircuitElement& slot : asked.Parts->Nearest)
        for (int row = 0; row < 4; ++row)
            numbers.push_back(slot.Value(row));
    return numbers;
}

}  // namespace

void YieldWatch::Note(const BoardsAsked& asked) {
    std::vector<double> now = BoardNumbers(asked);
    if (SameLadderNumbers(now, key)) return;
    key = std::move(now);
    shown.reset();
    nearest.reset();
    wanted = 0;
    stopped = false;
    if (asked.Limits.empty() || SlotsInUse(asked.Design) < 1) return;
    shown = std::make_unique<BoardCount>(asked.Design, asked.Limits, asked.Seed);
    if (asked.Parts) {
        const auto before = std::make_unique<FilterDesign>(asked.Design);
        before->Elements = asked.Parts->Nearest;
        before->Pairs.clear();
        nearest = std::make_unique<BoardCount>(*before, asked.Limits, asked.Seed);
    }
    wanted = UsualBoards;
    Build(UsualBoards);
}

void YieldWatch::WantAtLeast(int boards) {
    if (shown && !stopped) wanted = std::max(wanted, boards);
}

void YieldWatch::Ask(int boards) {
    stopped = false;
    WantAtLeast(boards);
}

void YieldWatch::Stop() {
    stopped = true;
    if (shown) wanted = shown->Result().Boards;
}

bool YieldWatch::Advance() {
    if (IsBuilding()) Build(std::min(boardsAtATime, wanted - shown->Result().Boards));
    return IsBuilding();
}

void YieldWatch::Build(int boards) {
    shown->Build(boards);
    if (nearest) nearest->Build(boards);
}

}  // namespace ladderwise
