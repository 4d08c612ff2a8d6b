// Margins over a grid, and what may lie between its points.
#include "boards/BoardJudge.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>

#include "analysis/Circuitanalysis.h"
#include "analysis/ResponseSamples.h"

namespace ladderwise {

namespace {

constexpr double delayStepOfGrid = 1e-6;  ///< relative, to either side
constexpr double wideRatio = 10.0;        ///< from here on a limit is sampled over ln f
constexpr double shareInDb = 10.0;        ///< the whole of a limit of delay variation
constexpr double overshootGuard = 4.0;    ///< a dip may be this much deeper than its parabola
constexpr double roundingDb = 0.002;

bool IsDelay(const LimitLine& line) {
    return line.Kind == LimitKind::DelayVariationMax;
}

/// `count` frequencies from `from` to `to`, as the cosine of equal angles.
std::vector<double> LimitPoints(double from, double to, int count) {
    if (!(to > from)) return {from};
    const bool wide = to > wideRatio * from && from > LowestX * to;
    std::vector<double> points;
    for (int k = 0; k < count; ++k) {
        const double t = 0.5 * (1.0 - std::cos(0.5 * TwoPi * k / (count - 1.0)));
        points.push_back(wide ? from * std::pow(to / from, t) : from + (to - from) * t);
    }
    points.back() = to;
    return points;
}

constexpr double lowestPower = 1e-300;  ///< beyond these the reference form takes the level
constexpr double highestPower = 1e20;

/// The smallest of `count` numbers, without an order of comparisons that would hold it up; NaN if
/// one of them is.
double LeastOf(const double* x, std::size_t count) {
    constexpr std::size_t lanes = 4;
    std::array<double, lanes> least, taint{};
    least.fill(std::numeric_limits<double>::infinity());
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t k = 0; k < lanes; ++k) {
            least[k] = x[i + k] < least[k] ? x[i + k] : least[k];
            taint[k] += x[i + k];
        }
    for (; i < count; ++i) {
        least[0] = x[i] < least[0] ? x[i] : least[0];
        taint[0] += x[i];
    }
    const double sum = (taint[0] + taint[1]) + (taint[2] + taint[3]);
    if (std::isnan(sum)) return sum;
    return std::min(std::min(least[0], least[1]), std::min(least[2], least[3]));
}

/// The next point after `from` that is no larger than its neighbours; `end - 1` if there is none
/// before it. Eight points are asked at once, since hardly any of them is one.
std::size_t NextLow(const std::vector<double>& x, std::size_t from, std::size_t end) {
    constexpr std::size_t lanes = 8;
    std::size_t i = from + 1;
    for (; i + lanes < end; i += lanes) {
        const double* const at = x.data() + i;
        std::int64_t any = 0;
        for (std::size_t k = 0; k < lanes; ++k)
            any |= static_cast<std::int64_t>(at[k] <= at[k - 1]) &
                   static_cast<std::int64_t>(at[k] <= at[k + 1]);
        if (any != 0) break;
    }
    while (i + 1 < end && (x[i] > x[i - 1] || x[i] > x[i + 1]))
        ++i;
    return i;
}

double PowerToDb(double power) {
    return 10.0 * std::log10(power);
}

}  // namespace

JudgeGrid::JudgeGrid(const LimitLines& lines, double F0, int count) {
    constexpr int fewest = 4;
    std::size_t wide = 0;
    for (const LimitLine& line : lines)
        wide += line.To > line.From ? 1 : 0;
    const auto single = static_cast<int>(lines.size() - wide);
    const int each = wide == 0 ? 1 : std::max(fewest, (count - single) / static_cast<int>(wide));
    for (const LimitLine& line : lines) {
        const double from = std::max(line.From, LowestX * F0);
        Row row{line, Freqs.size(), 0};
        for (const double f : LimitPoints(from, std::max(line.To, from),
                                          IsDelay(line) ? std::max(fewest, each / 2) : each)) {
            if (IsDelay(line)) Freqs.push_back(f * (1.0 - delayStepOfGrid));
            Freqs.push_back(IsDelay(line) ? f * (1.0 + delayStepOfGrid) : f);
        }
        row.Count = Freqs.size() - row.First;
        Rows.push_back(row);
    }
}

BoardJudge::Judge::Judge(const LimitLines& lines, double F0, int count)
    : grid(lines, F0, count), re(grid.Freqs.size()), im(re.size()), rising(re.size()) {
    BuildSweepTables(tables, grid.Freqs, F0);
    for (const LimitLine& line : lines)
        if (line.Kind == LimitKind::ReturnLossMin) reflection.resize(re.size());
    leasts.resize(grid.Rows.size());
}

/// Of a delay variation, in tenths of the limit.
double BoardJudge::Judge::DelayMargin(const JudgeGrid::Row& row) const {
    double low = std::numeric_limits<double>::infinity(), high = -low;
    for (std::size_t i = row.First; i + 1 < row.First + row.Count; i += 2) {
        const Complex ratio = Complex(re[i + 1], im[i + 1]) / Complex(re[i], im[i]);
        const double turn = std::remainder(std::arg(ratio), 0.5 * TwoPi);
        const double delay = -turn / (TwoPi * (grid.Freqs[i + 1] - grid.Freqs[i]));
        low = std::min(low, delay), high = std::max(high, delay);
    }
    return shareInDb * (row.Line.Value - (high - low)) / row.Line.Value;
}

/// The smallest margin of a row, dB. What grows with the margin is compared in place of it, which
/// takes one logarithm for all points: the power that comes through under an upper limit of the
/// attenuation, less that power over a lower one, less the reflection for a return loss.
double BoardJudge::Judge::LeastMargin(const JudgeGrid::Row& row, const FilterDesign& board) {
    const std::size_t end = row.First + row.Count;
    double* const x = rising.data();
    if (row.Line.Kind == LimitKind::ReturnLossMin) {
        for (std::size_t i = row.First; i < end; ++i)
            x[i] = -reflection[i];
        return LeastOf(x + row.First, row.Count) - row.Line.Value;
    }
    const bool upper = row.Line.Kind == LimitKind::AttenMax;
    const double sign = upper ? 1.0 : -1.0;
    for (std::size_t i = row.First; i < end; ++i)
        x[i] = sign * (re[i] * re[i] + im[i] * im[i]);
    const double least = sign * LeastOf(x + row.First, row.Count);
    if (!(least > lowestPower && least < highestPower)) return LeastByLevels(row, board);
    return sign * (PowerToDb(least) + row.Line.Value);
}

/// The same where the power is none or no number at its extreme.
double BoardJudge::Judge::LeastByLevels(const JudgeGrid::Row& row, const FilterDesign& board) {
    const double sign = row.Line.Kind == LimitKind::AttenMax ? 1.0 : -1.0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t i = row.First; i < row.First + row.Count; ++i) {
        const double power = re[i] * re[i] + im[i] * im[i];
        const bool plain = power > lowestPower && power < highestPower;
        const double level = plain ? PowerToDb(power) : LevelAt(board, grid.Freqs[i]);
        const double margin = sign * (level + row.Line.Value);
        if (!(margin >= least)) least = margin;  // NaN wins
    }
    return least;
}

/// Of a row that is no delay, dB, at a frequency with an ordinary power.
double BoardJudge::Judge::MarginAt(const JudgeGrid::Row& row, std::size_t point) const {
    const double x = rising[point];
    switch (row.Line.Kind) {
        case LimitKind::AttenMax:
            return PowerToDb(x) + row.Line.Value;
        case LimitKind::AttenMin:
            return -(PowerToDb(-x) + row.Line.Value);
        case LimitKind::ReturnLossMin:
            return x - row.Line.Value;
        case LimitKind::DelayVariationMax:
            break;
    }
    return std::nan("");
}

/// True if the margins, all positive, may be negative between two points: next to a smallest one by
/// the parabola through it and its neighbours.
bool BoardJudge::Judge::MayDip(const JudgeGrid::Row& row) const {
    const std::size_t end = row.First + row.Count;
    for (std::size_t i = NextLow(rising, row.First, end); i + 1 < end;
         i = NextLow(rising, i, end)) {
        const double m = MarginAt(row, i);
        const double before = MarginAt(row, i - 1), after = MarginAt(row, i + 1);
        const double bend = before - 2.0 * m + after, slope = after - before;
        if (!std::isfinite(bend)) return true;  // beside a zero of transmission
        const double deeper = bend > 0.0 ? slope * slope / (8.0 * bend) : 0.0;
        if (m - overshootGuard * (deeper + 0.125 * bend) < roundingDb && m < bend + roundingDb)
            return true;
    }
    return false;
}

bool BoardJudge::Judge::MayFailBetween() const {
    constexpr double safeShare = 0.5;  // of a delay variation, in tenths of the limit
    for (std::size_t r = 0; r < grid.Rows.size(); ++r) {
        const JudgeGrid::Row& row = grid.Rows[r];
        if (IsDelay(row.Line) ? leasts[r] < safeShare : MayDip(row)) return true;
    }
    return false;
}

/// Where the margin of a row is smallest, Hz.
double BoardJudge::Judge::HzOf(const JudgeGrid::Row& row, double margin) const {
    if (IsDelay(row.Line) || std::isnan(margin)) return 0.0;
    const auto first = rising.begin() + static_cast<std::ptrdiff_t>(row.First);
    const auto last = first + static_cast<std::ptrdiff_t>(row.Count);
    return grid.Freqs[static_cast<std::size_t>(std::min_element(first, last) - rising.begin())];
}

BoardVerdict BoardJudge::Judge::Of(const FilterDesign& board) {
    AnalyseLadder(board, tables, {}, re, im, reflection);
    BoardVerdict verdict;
    for (std::size_t r = 0; r < grid.Rows.size(); ++r) {
        const JudgeGrid::Row& row = grid.Rows[r];
        const double least = IsDelay(row.Line) ? DelayMargin(row) : LeastMargin(row, board);
        leasts[r] = least;
        if (verdict.Row < 0 || !(least >= verdict.Margin))
            verdict = {static_cast<int>(r), least, 0.0};
    }
    if (verdict.Row >= 0)
        verdict.Hz = HzOf(grid.Rows[static_cast<std::size_t>(verdict.Row)], verdict.Margin);
    return verdict;
}

BoardJudge::BoardJudge(const FilterDesign& design, const LimitLines& limits, int points)
    : coarse(limits, design.F0, points), fine(limits, design.F0, CloseBoardPoints) {}

BoardVerdict BoardJudge::Of(const FilterDesign& board) {
    const BoardVerdict verdict = coarse.Of(board);
    return verdict.Passes() && coarse.MayFailBetween() ? fine.Of(board) : verdict;
}

BoardVerdict BoardJudge::Roughly(const FilterDesign& board) {
    return coarse.Of(board);
}

BoardVerdict BoardJudge::Closely(const FilterDesign& board) {
    return fine.Of(board);
}

}  // namespace ladderwise
