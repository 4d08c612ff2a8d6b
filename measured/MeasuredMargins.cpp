// Margins at the points of a file, and at the ends of limits between them.
#include "measured/MeasuredMargins.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "analysis/Magphasefunctions.h"
#include "measured/MeasuredLayers.h"

namespace ladderwise {

namespace {

constexpr double NoNumber = std::numeric_limits<double>::quiet_NaN();

/// A quantity at the points of a file and between them.
struct MeasuredQuantity {
    const std::vector<double>& Hz;
    std::vector<double> Values;         ///< at Hz; empty: not measured
    const std::vector<Complex>* Exact;  ///< of a level, which is straight in its magnitude

    double At(double f) const {
        if (Exact) return ComplexToDb(*InterpolatedAt(Hz, *Exact, f));
        const auto above = std::lower_bound(Hz.begin(), Hz.end(), f);
        const auto i = static_cast<std::size_t>(above - Hz.begin());
        if (*above == f) return Values[i];
        const double part = (f - Hz[i - 1]) / (Hz[i] - Hz[i - 1]);
        return Values[i - 1] + part * (Values[i] - Values[i - 1]);
    }
};

MeasuredQuantity LevelsOf(const std::vector<double>& hz, const std::vector<Complex>& values) {
    MeasuredQuantity levels{hz, {}, &values};
    for (const Complex& value : values)
        levels.Values.push_back(ComplexToDb(value));
    return levels;
}

MeasuredQuantity QuantityOf(LimitKind kind, const MeasuredTraces& traces) {
    switch (kind) {
        case LimitKind::AttenMin:
        case LimitKind::AttenMax:
            return LevelsOf(traces.Hz, traces.Transfer);
        case LimitKind::ReturnLossMin:
            return LevelsOf(traces.Hz, traces.Reflection);
        case LimitKind::DelayVariationMax:
            return {traces.Hz, DelaysOf(traces, -std::numeric_limits<double>::infinity()), nullptr};
    }
    return {traces.Hz, {}, nullptr};
}

struct MeasuredExtremes {
    double Least = std::numeric_limits<double>::infinity(), LeastAt = 0.0;
    double Most = -std::numeric_limits<double>::infinity(), MostAt = 0.0;

    void Take(double value, double f) {
        if (value < Least) Least = value, LeastAt = f;
        if (value > Most) Most = value, MostAt = f;
    }
};

MeasuredExtremes ExtremesBetween(const MeasuredQuantity& quantity, double from, double to) {
    MeasuredExtremes extremes;
    extremes.Take(quantity.At(from), from);
    extremes.Take(quantity.At(to), to);
    for (std::size_t i = 0; i < quantity.Hz.size(); ++i)
        if (quantity.Hz[i] > from && quantity.Hz[i] < to)
            extremes.Take(quantity.Values[i], quantity.Hz[i]);
    return extremes;
}

LimitMargin MeasuredMargin(const LimitLine& line, const MeasuredTraces& traces) {
    const LimitMargin nothing{line, NoNumber, line.From, 0.0, LimitReach::Nothing};
    const MeasuredQuantity quantity = QuantityOf(line.Kind, traces);
    const bool delay = line.Kind == LimitKind::DelayVariationMax;
    if (quantity.Values.size() != traces.Hz.size() || traces.Hz.empty()) return nothing;
    const double from = std::max(line.From, traces.Hz.front());
    const double to = std::min(line.To, traces.Hz.back());
    if (from > to || (delay && from == to)) return nothing;
    const bool whole = from == line.From && to == line.To;
    const LimitReach reach = whole ? LimitReach::Whole : LimitReach::Part;
    const MeasuredExtremes found = ExtremesBetween(quantity, from, to);
    switch (line.Kind) {
        case LimitKind::AttenMin:
        case LimitKind::ReturnLossMin:
            return {line, -found.Most - line.Value, found.MostAt, 0.0, reach};
        case LimitKind::AttenMax:
            return {line, line.Value + found.Least, found.LeastAt, 0.0, reach};
        case LimitKind::DelayVariationMax:
            return {line, line.Value - (found.Most - found.Least), found.MostAt,
                    0.5 * (found.Most + found.Least), reach};
    }
    return nothing;
}

}  // namespace

LimitReport JudgeMeasured(const MeasuredTraces& traces, const LimitLines& lines) {
    LimitReport report;
    for (const LimitLine& line : lines)
        report.Rows.push_back(MeasuredMargin(line, traces));
    return report;
}

}  // namespace ladderwise
