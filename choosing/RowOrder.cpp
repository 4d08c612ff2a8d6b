// Comparisons of rows.
#include "choosing/RowOrder.h"

#include <algorithm>
#include <map>
#include <optional>

namespace ladderwise {

bool AtLeastAsFew(const PartCounts& a, const PartCounts& b) {
    return a.Inductors <= b.Inductors && a.Both() <= b.Both();
}

bool Fewer(const PartCounts& a, const PartCounts& b) {
    return AtLeastAsFew(a, b) && (a.Inductors < b.Inductors || a.Both() < b.Both());
}

void CountFewest(FilterList& list) {
    for (const FilterChoice& row : list.Choices) {
        FewestParts& fewest = row.OtherLoad ? list.AtOtherLoad : list.AtUsersLoad;
        const auto lower = [](std::optional<int>& least, int value) {
            least = least ? std::min(*least, value) : value;
        };
        lower(fewest.Inductors, row.Parts.Inductors);
        lower(fewest.Parts, row.Parts.Both());
    }
}

void FoldDominated(std::vector<FilterChoice>& choices) {
    std::vector<const FilterChoice*> front;
    for (FilterChoice& row : choices) {
        row.Folded = std::any_of(front.begin(), front.end(), [&](const FilterChoice* other) {
            return other->OtherLoad == row.OtherLoad && AtLeastAsFew(other->Parts, row.Parts) &&
                   other->MarginDb >= row.MarginDb &&
                   other->LossDb.value_or(0.0) <= row.LossDb.value_or(0.0);
        });
        if (!row.Folded) front.push_back(&row);
    }
}

double LargestRelaxed(const FilterChoice& row) {
    double largest = 0.0;
    for (const RelaxedLimit& relaxed : row.Relax) {
        const LimitLine& line = row.Report.Rows[relaxed.Limit].Line;
        constexpr double tenth = 10.0;
        const bool delay = line.Kind == LimitKind::DelayVariationMax;
        largest = std::max(largest, delay ? tenth * relaxed.By / line.Value : relaxed.By);
    }
    return largest;
}

std::vector<ChoosingMemory::Remembered> NearestOfGroups(
    const ChoosingMemory& memory, const std::set<ChoosingMemory::Group>& known,
    double leastMarginDb) {
    std::map<ChoosingMemory::Group, ChoosingMemory::Remembered> best;
    for (const auto& [key, remembered] : memory.Places) {
        const ChoosingMemory::Group& group = std::get<0>(key);
        if (known.contains(group) || remembered.At.Margin < leastMarginDb) continue;
        const auto [place, isNew] = best.try_emplace(group, remembered);
        if (!isNew && remembered.At.Margin > place->second.At.Margin) place->second = remembered;
    }
    std::vector<ChoosingMemory::Remembered> nearest;
    for (const auto& [group, remembered] : best)
        nearest.push_back(remembered);
    const auto order = [](const ChoosingMemory::Remembered& one) {
        return OrderOf(one.What.Response, one.What.Poles);
    };
    std::sort(nearest.begin(), nearest.end(),
              [&](const auto& a, const auto& b) { return order(a) < order(b); });
    return nearest;
}

}  // namespace ladderwise
