// Extremes between the ends of limits.
#include "pipeline/LimitMargins.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>

#include "analysis/Circuitanalysis.h"
#include "analysis/ResponseSamples.h"
#include "design/LadderNumbers.h"

namespace ladderwise {

namespace {

constexpr double delayStep = 1e-6;  // relative, to either side

struct Extreme {
    double Value = -std::numeric_limits<double>::infinity();
    double At = 0.0;

    void Take(double value, double at) {
        if (!(value <= Value)) Value = value, At = at;  // NaN wins
    }
};

/// A quantity and its samples, which stand at samples.F.
struct Sampled {
    std::vector<double> Values;
    std::function<double(double)> Exact;
};

/// The largest value between the frequencies `from` and `to`: at an end, at a sample, or at the top
/// of a lobe that may rise over all of them.
Extreme LargestBetween(const ResponseSamples& samples, const Sampled& quantity, double from,
                       double to) {
    Extreme largest;
    largest.Take(quantity.Exact(from), from);
    if (to > from) largest.Take(quantity.Exact(to), to);
    const int first = samples.At(from), last = samples.At(to);
    for (int i = first; i < last; ++i)
        largest.Take(quantity.Values[i], samples.F[i]);
    for (const Lobe& lobe : LobesBetween(samples.F, quantity.Values, first - 1, last)) {
        if (lobe.Reach < largest.Value) continue;
        const double low = std::max(samples.F[lobe.Index - 1], from);
        const double high = std::min(samples.F[lobe.Index + 1], to);
        if (!(low < high)) continue;
        const double top = LargestWithin(low, high, quantity.Exact);
        largest.Take(quantity.Exact(top), top);
    }
    return largest;
}

std::vector<double> Negated(std::vector<double> values) {
    for (double& value : values)
        value = -value;
    return values;
}

/// What a design may miss a limit by and still keep it, dB or s: its own ripple, which it reaches
/// to the last digits of the analysis.
double RoundingOf(const LimitLine& line) {
    constexpr double rounding = 1e-9;
    return line.Kind == LimitKind::DelayVariationMax ? rounding * line.Value : rounding;
}

class Judge {
public:
    Judge(const FilterDesign& judged, const LimitLines& lines)
        : design(judged), samples(TakeSamples(judged, PlacesIn(lines))) {}

    LimitMargin Of(const LimitLine& line) const {
        const double from = std::max(line.From, LowestX * design.F0);
        const double to = std::max(line.To, from);
        const auto level = [&](double f) { return LevelAt(design, f); };
        const auto reflection = [&](double f) { return ReflectionAt(design, f); };
        const auto largest = [&](std::vector<double> values, std::function<double(double)> exact) {
            return LargestBetween(samples, {std::move(values), std::move(exact)}, from, to);
        };
        Extreme worst;
        switch (line.Kind) {
            case LimitKind::AttenMin:
                worst = largest(samples.Level, level);
                return {line, -worst.Value - line.Value, worst.At};
            case LimitKind::AttenMax:
                worst = largest(Negated(samples.Level), [&](double f) { return -level(f); });
                return {line, line.Value - worst.Value, worst.At};
            case LimitKind::ReturnLossMin:
                worst = largest(samples.Reflection, reflection);
                return {line, -worst.Value - line.Value, worst.At};
            case LimitKind::DelayVariationMax:
                return OfDelay(line, from, to);
        }
        return {line, worst.Value, worst.At};
    }

private:
    /// Enough places in each limit for what lies beyond the samples about F0.
    static std::vector<double> PlacesIn(const LimitLines& lines) {
        constexpr int places = 64;
        std::vector<double> all;
        for (const LimitLine& line : lines)
            for (int k = 0; k <= places && line.From > 0.0; ++k)
                all.push_back(line.From * std::pow(line.To / line.From, double(k) / places));
        return all;
    }

    LimitMargin OfDelay(const LimitLine& line, double from, double to) const {
        std::vector<double> delays(samples.F.size(), std::numeric_limits<double>::quiet_NaN());
        const int last = std::min(samples.At(to) + 1, samples.Count());
        for (int i = std::max(samples.At(from) - 2, 0); i < last; ++i)
            delays[static_cast<std::size_t>(i)] = GroupDelayAt(design, samples.F[i]);
        const auto exact = [&](double f) { return GroupDelayAt(design, f); };
        const Extreme most = LargestBetween(samples, {delays, exact}, from, to);
        const Extreme least = LargestBetween(
            samples, {Negated(delays), [&](double f) { return -exact(f); }}, from, to);
        return {line, line.Value - (most.Value + least.Value), most.At,
                0.5 * (most.Value - least.Value)};
    }

    const FilterDesign& design;
    ResponseSamples samples;
};

}  // namespace

double GroupDelayAt(const FilterDesign& design, double f) {
    const auto transfer = [&](double at) { return AnalysePoint(design, design.F0, at).Transfer; };
    const double below = f * (1.0 - delayStep), above = f * (1.0 + delayStep);
    const Complex ratio = transfer(above) / transfer(below);
    // At a zero on the axis the phase jumps by half a turn, which is no delay.
    const double turn = std::remainder(std::arg(ratio), 0.5 * TwoPi);
    return -turn / (TwoPi * (above - below));
}

LimitReport JudgeLimits(const FilterDesign& design, const LimitLines& lines) {
    LimitReport report;
    if (lines.empty()) return report;
    if (design.NumElements < 1 || !(design.F0 > 0.0)) {
        for (const LimitLine& line : lines)
            report.Rows.push_back({line, std::numeric_limits<double>::quiet_NaN(), line.From});
        return report;
    }
    const Judge judge(design, lines);
    for (const LimitLine& line : lines) {
        LimitMargin margin = judge.Of(line);
        if (margin.Margin < 0.0 && margin.Margin > -RoundingOf(line)) margin.Margin = 0.0;
        report.Rows.push_back(margin);
    }
    return report;
}

const LimitReport& LimitJudge::Judge(const FilterDesign& design, const LimitLines& lines) {
    std::vector<double> now = LadderNumbers(design);
    const bool same = SameLadderNumbers(now, numbers);
    numbers = std::move(now);
    LimitReport judged;
    LimitLines missing;
    for (const LimitLine& line : lines) {
        const auto known = std::find_if(report.Rows.begin(), report.Rows.end(),
                                        [&](const auto& row) { return row.Line == line; });
        if (same && known != report.Rows.end())
            judged.Rows.push_back(*known);
        else
            missing.push_back(line);
    }
    const LimitReport fresh = JudgeLimits(design, missing);
    for (std::size_t i = 0, k = 0; i < lines.size(); ++i)
        if (i >= judged.Rows.size() || !(judged.Rows[i].Line == lines[i]))
            judged.Rows.insert(judged.Rows.begin() + static_cast<long>(i), fresh.Rows[k++]);
    report = std::move(judged);
    return report;
}

}  // namespace ladderwise
