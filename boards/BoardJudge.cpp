// Margins over a grid, and what may lie between its points.
#include "boards/BoardJudge.h"

#include <algorithm>
#include <cmath>
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

/// True if the margins, all positive, may be negative between two points.
bool MayDip(const double* margins, std::size_t count) {
    for (std::size_t i = 1; i + 1 < count; ++i) {
        const double m = margins[i], before = margins[i - 1], after = margins[i + 1];
        if (m > before || m > after) continue;
        const double bend = before - 2.0 * m + after, slope = after - before;
        const double deeper = bend > 0.0 ? slope * slope / (8.0 * bend) : 0.0;
        if (m - overshootGuard * (deeper + 0.125 * bend) < roundingDb && m < bend + roundingDb)
            return true;
    }
    return false;
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
    : Grid(lines, F0, count),
      Re(Grid.Freqs.size()),
      Im(Re.size()),
      Attenuation(Re.size()),
      Margins(Re.size()) {
    BuildSweepTables(Tables, Grid.Freqs, F0);
    for (const LimitLine& line : lines)
        Reflects = Reflects || line.Kind == LimitKind::ReturnLossMin;
    if (Reflects) Reflection.resize(Re.size());
}

BoardVerdict BoardJudge::Judge::Of(const FilterDesign& board, bool* narrow) {
    AnalyseLadder(board, Tables, {}, Re, Im, Reflection);
    const int count = static_cast<int>(Re.size());
    const bool odd = ReadyKernel(KernelChoice::Automatic)
                         .LevelsAndAngles(Re.data(), Im.data(), count, Attenuation.data(), nullptr);
    for (std::size_t i = 0; odd && i < Re.size(); ++i)
        if (std::isnan(Attenuation[i])) Attenuation[i] = LevelAt(board, Grid.Freqs[i]);
    BoardVerdict verdict;
    for (std::size_t r = 0; r < Grid.Rows.size(); ++r) {
        const auto& [line, first, points] = Grid.Rows[r];
        double* const m = Margins.data() + first;
        double least = std::numeric_limits<double>::infinity();
        if (IsDelay(line)) {
            double low = least, high = -least;
            for (std::size_t i = first; i + 1 < first + points; i += 2) {
                const Complex ratio = Complex(Re[i + 1], Im[i + 1]) / Complex(Re[i], Im[i]);
                const double turn = std::remainder(std::arg(ratio), 0.5 * TwoPi);
                const double delay = -turn / (TwoPi * (Grid.Freqs[i + 1] - Grid.Freqs[i]));
                low = std::min(low, delay), high = std::max(high, delay);
            }
            least = shareInDb * (line.Value - (high - low)) / line.Value;
            if (narrow && least >= 0.0 && least < 0.5) *narrow = true;
        } else {
            const bool reflected = line.Kind == LimitKind::ReturnLossMin;
            const double* const level = (reflected ? Reflection : Attenuation).data() + first;
            const double sign = line.Kind == LimitKind::AttenMax ? 1.0 : -1.0;
            const double offset = sign * line.Value;
            for (std::size_t i = 0; i < points; ++i) {
                m[i] = sign * level[i] + offset;
                least = m[i] >= least ? least : m[i];  // NaN wins
            }
            if (narrow && least >= 0.0 && MayDip(m, points)) *narrow = true;
        }
        if (verdict.Row < 0 || !(least >= verdict.Margin))
            verdict = {static_cast<int>(r), least, 0.0};
    }
    if (verdict.Row < 0) return verdict;
    const JudgeGrid::Row& row = Grid.Rows[static_cast<std::size_t>(verdict.Row)];
    if (IsDelay(row.Line)) return verdict;
    const auto first = Margins.begin() + static_cast<std::ptrdiff_t>(row.First);
    const auto last = first + static_cast<std::ptrdiff_t>(row.Count);
    const auto at = std::find(first, last, verdict.Margin);
    if (at != last) verdict.Hz = Grid.Freqs[static_cast<std::size_t>(at - Margins.begin())];
    return verdict;
}

BoardJudge::BoardJudge(const FilterDesign& design, const LimitLines& limits)
    : coarse(limits, design.F0, BoardPoints), fine(limits, design.F0, CloseBoardPoints) {}

BoardVerdict BoardJudge::Of(const FilterDesign& board) {
    bool narrow = false;
    const BoardVerdict verdict = coarse.Of(board, &narrow);
    return verdict.Passes() && narrow ? fine.Of(board, nullptr) : verdict;
}

BoardVerdict BoardJudge::Closely(const FilterDesign& board) {
    return fine.Of(board, nullptr);
}

}  // namespace ladderwise
