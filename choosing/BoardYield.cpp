// Boards that pass.
#include "choosing/BoardYield.h"

#include <algorithm>
#include <cmath>
#include <random>

#include "analysis/BoardDraws.h"

namespace ladderwise {

namespace {

constexpr double narrowDb = 0.1;

double SmallestMargin(LimitGrid& grid, const FilterDesign& design) {
    double least = NoLimitDb;
    for (const RowMargin& row : grid.Judge(design, 0.0))
        least = std::min(least, row.Least());
    return least;
}

}  // namespace

double PassingShare(FilterDesign& design, LimitGrid& coarse, LimitGrid& fine, int boards,
                    std::uint32_t seed) {
    std::mt19937 generator(seed);
    design.NominalElements = design.Elements;
    const std::vector<PairedPart> pairs = design.Pairs;
    BoardDrawer drawer(design);
    int passed = 0;
    for (int board = 0; board < boards; ++board) {
        drawer.Draw(generator, design);
        double margin = SmallestMargin(coarse, design);
        if (std::abs(margin) < narrowDb) margin = SmallestMargin(fine, design);
        if (margin >= 0.0) ++passed;
    }
    design.Elements = design.NominalElements;
    design.Pairs = pairs;
    return boards > 0 ? double(passed) / boards : 0.0;
}

}  // namespace ladderwise
