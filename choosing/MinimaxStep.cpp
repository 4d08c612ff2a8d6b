// The simplex method on a small table.
#include "choosing/MinimaxStep.h"

#include <algorithm>
#include <limits>

namespace ladderwise {

namespace {

constexpr std::size_t columns = MostUnknowns + 1;  ///< the steps from the lower corner; what rises
constexpr std::size_t rightSide = columns;
constexpr int mostExchanges = 200;
constexpr double noGain = 1e-12, noSlope = 1e-12;
constexpr std::size_t none = std::numeric_limits<std::size_t>::max();

using TableRow = std::array<double, columns + 1>;

double ValueAt(const LinearFunction& of, const std::array<double, MostUnknowns>& step) {
    double value = of.Value;
    for (std::size_t j = 0; j < MostUnknowns; ++j)
        value += of.Slope[j] * step[j];
    return value;
}

double SmallestAt(const std::vector<LinearFunction>& functions,
                  const std::array<double, MostUnknowns>& step) {
    double smallest = std::numeric_limits<double>::infinity();
    for (const LinearFunction& of : functions)
        smallest = std::min(smallest, ValueAt(of, step));
    return smallest;
}

/// What is basic by what is not: each row is its right side less the sum of its row times what its
/// columns stand for. Unknowns are named by their number, slacks by those beyond. The last row is
/// what is to be largest.
class Table {
public:
    /// u[j] = step[j] + reach[j] >= 0 and s = smallest - floor >= 0, with the floor such that both
    /// may be 0 at the lower corner of the box: s - slope u <= value there - floor, u <= 2 reach.
    Table(const std::vector<LinearFunction>& functions,
          const std::array<double, MostUnknowns>& reach) {
        std::array<double, MostUnknowns> corner;
        for (std::size_t j = 0; j < MostUnknowns; ++j)
            corner[j] = -reach[j];
        const double floor = SmallestAt(functions, corner);
        for (const LinearFunction& of : functions) {
            TableRow& row = rows.emplace_back();
            for (std::size_t j = 0; j < MostUnknowns; ++j)
                row[j] = -of.Slope[j];
            row[MostUnknowns] = 1.0;
            row[rightSide] = ValueAt(of, corner) - floor;
        }
        for (std::size_t j = 0; j < MostUnknowns; ++j) {
            TableRow& row = rows.emplace_back();
            row[j] = 1.0;
            row[rightSide] = 2.0 * reach[j];
        }
        rows.emplace_back()[MostUnknowns] = -1.0;
        for (std::size_t i = 0; i + 1 < rows.size(); ++i)
            ofRow.push_back(columns + i);
        for (std::size_t j = 0; j < columns; ++j)
            ofColumn[j] = j;
    }

    void Solve() {
        for (int count = 0; count < mostExchanges; ++count) {
            const std::size_t column = Entering();
            if (column == none) break;
            const std::size_t row = Leaving(column);
            if (row == none) break;
            Exchange(row, column);
        }
    }

    double ValueOf(std::size_t unknown) const {
        for (std::size_t i = 0; i < ofRow.size(); ++i)
            if (ofRow[i] == unknown) return rows[i][rightSide];
        return 0.0;
    }

private:
    /// The column by which the last row gains most; `none` at the top.
    std::size_t Entering() const {
        const TableRow& goal = rows.back();
        const auto most = std::min_element(goal.begin(), goal.begin() + columns);
        return *most < -noGain ? static_cast<std::size_t>(most - goal.begin()) : none;
    }

    /// The row that binds first as `column` grows.
    std::size_t Leaving(std::size_t column) const {
        std::size_t leaving = none;
        double least = std::numeric_limits<double>::infinity();
        for (std::size_t i = 0; i < ofRow.size(); ++i) {
            if (!(rows[i][column] > noSlope)) continue;
            const double ratio = rows[i][rightSide] / rows[i][column];
            if (ratio < least) least = ratio, leaving = i;
        }
        return leaving;
    }

    void Exchange(std::size_t row, std::size_t column) {
        TableRow& pivotRow = rows[row];
        const double pivot = pivotRow[column];
        for (double& x : pivotRow)
            x /= pivot;
        pivotRow[column] = 1.0 / pivot;
        for (std::size_t i = 0; i < rows.size(); ++i) {
            const double factor = rows[i][column];
            if (i == row || factor == 0.0) continue;
            for (std::size_t j = 0; j <= columns; ++j)
                if (j != column) rows[i][j] -= factor * pivotRow[j];
            rows[i][column] = -factor / pivot;
        }
        std::swap(ofRow[row], ofColumn[column]);
    }

    std::vector<TableRow> rows;
    std::vector<std::size_t> ofRow;
    std::array<std::size_t, columns> ofColumn{};
};

}  // namespace

MinimaxStep LargestSmallest(const std::vector<LinearFunction>& functions,
                            const std::array<double, MostUnknowns>& reach) {
    Table table(functions, reach);
    table.Solve();
    MinimaxStep found;
    for (std::size_t j = 0; j < MostUnknowns; ++j)
        found.Step[j] = std::clamp(table.ValueOf(j) - reach[j], -reach[j], reach[j]);
    found.Smallest = SmallestAt(functions, found.Step);
    return found;
}

}  // namespace ladderwise
