// Points over limits, and the extremes at them.
#include "choosing/LimitGrid.h"

#include <algorithm>
#include <cmath>

#include "analysis/Circuitanalysis.h"

namespace ladderwise {

namespace {

constexpr double startOfZero = 1e-4;  ///< a limit from 0 Hz begins at this part of its end
constexpr double linearUpTo = 3.0;    ///< of To / From; wider limits have geometric points
constexpr double narrowRow = 1.15;    ///< To / From, of the limits that need few points
constexpr std::size_t fewestPoints = 9;
constexpr double smallestPower = 1e-40;
constexpr std::size_t fewStride = 4;  ///< every such point is one of the few

double AttenuationOf(double power) {
    return -10.0 * std::log10(std::max(power, smallestPower));
}

/// How many points a limit deserves.
double WeightOf(const LimitLine& line) {
    if (line.From == line.To) return 0.0;
    const bool narrow = line.From > 0.0 && line.To < narrowRow * line.From;
    return IsPassLimit(line.Kind) ? 1.0 : narrow ? 0.25 : 1.0;
}

/// The height over sample k (0 < k < count - 1) of the parabola through it and its neighbours.
double ParabolaTop(const double* f, const double* y, std::size_t k, double& at) {
    const double a = f[k] - f[k - 1], b = f[k + 1] - f[k];
    if (!(a > 0.0) || !(b > 0.0)) return y[k];
    const double left = (y[k] - y[k - 1]) / a, right = (y[k + 1] - y[k]) / b;
    const double curve = (right - left) / (a + b);
    if (curve == 0.0 || !std::isfinite(curve)) return y[k];
    const double slope = (left * b + right * a) / (a + b);
    const double step = std::clamp(-slope / (2.0 * curve), -a, b);
    at = f[k] + step;
    return y[k] + step * (slope + curve * step);
}

/// The first of the largest, or smallest, of `count` values, or of those that are NaN. Four at a
/// time: the compares wait for each other otherwise.
std::size_t IndexOfExtreme(const double* p, std::size_t count, bool largest) {
    constexpr std::size_t lanes = 4;
    const double sign = largest ? 1.0 : -1.0;
    double most[lanes], sum[lanes] = {};
    std::fill(std::begin(most), std::end(most), sign * p[0]);
    std::size_t i = 0;
    for (; i + lanes <= count; i += lanes)
        for (std::size_t lane = 0; lane < lanes; ++lane) {
            const double x = sign * p[i + lane];
            most[lane] = x > most[lane] ? x : most[lane];
            sum[lane] += x;
        }
    for (; i < count; ++i) {
        most[0] = std::max(most[0], sign * p[i]);
        sum[0] += p[i];
    }
    const bool nan = std::isnan(sum[0] + sum[1] + sum[2] + sum[3]);
    const double top = sign * std::max(std::max(most[0], most[1]), std::max(most[2], most[3]));
    for (i = 0; i + 1 < count; ++i)
        if (nan ? std::isnan(p[i]) : p[i] == top) break;
    return i;
}

}  // namespace

LimitGrid::LimitGrid(const LimitLines& limits, int points) : lines(limits) {
    double weights = 0.0;
    for (const LimitLine& line : lines) {
        weights += WeightOf(line);
        reflects = reflects || line.Kind == LimitKind::ReturnLossMin;
    }
    for (const LimitLine& line : lines) {
        std::size_t count = 1;
        if (line.To > line.From)
            count = std::max(fewestPoints, static_cast<std::size_t>(points * WeightOf(line) /
                                                                    std::max(weights, 1.0)));
        all.Spans.push_back({all.Freqs.size(), count});
        few.Spans.push_back({few.Freqs.size(), 0});
        const double from = line.From > 0.0 ? line.From : startOfZero * line.To;
        const bool linear = line.To < linearUpTo * from || line.From == 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            const double part = count == 1 ? 0.0 : double(i) / double(count - 1);
            const double t = 0.5 - 0.5 * std::cos(0.5 * TwoPi * part);
            // The ends must be the limit's own.
            const double f = i + 1 == count ? line.To
                             : linear       ? from + (line.To - from) * t
                                            : from * std::pow(line.To / from, t);
            all.Freqs.push_back(count == 1 ? line.From > 0.0 ? line.From : from : f);
            if (i % fewStride == 0 || i + 1 == count) few.Freqs.push_back(all.Freqs.back());
        }
        few.Spans.back().Count = few.Freqs.size() - few.Spans.back().First;
    }
    all.Prepare(reflects);
    few.Prepare(reflects);
    margins.resize(lines.size());
}

void LimitGrid::Samples::Prepare(bool reflects) {
    Re.resize(Freqs.size());
    Im.resize(Freqs.size());
    Power.resize(Freqs.size());
    if (reflects) Reflection.resize(Freqs.size());
    BuildSweepTables(Tables, Freqs, 1.0);
    Skin = Tables.SkinOmega;
}

void LimitGrid::Samples::Move(double f0) {
    if (f0 == Tables.F0) return;
    const double root = std::sqrt(f0), inverse = 1.0 / f0;
    const std::size_t count = Skin.size();
    const double *const perRoot = Skin.data(), *const f = Tables.Frequency.data();
    double *const omega = Tables.SkinOmega.data(), *const relative = Tables.RelativeF.data();
    for (std::size_t i = 0; i < count; ++i)
        omega[i] = root * perRoot[i];
    for (std::size_t i = 0; i < count; ++i)
        relative[i] = inverse * f[i];
    Tables.F0 = f0;
}

bool LimitGrid::Samples::Analyse(const FilterDesign& design) {
    Move(design.F0);
    const bool done = AnalyseLadder(design, Tables, {}, Re, Im, Reflection);
    for (std::size_t i = 0; i < Freqs.size(); ++i)
        Power[i] = Re[i] * Re[i] + Im[i] * Im[i];
    return done;
}

double LimitGrid::Samples::ExtremePower(const Span& span, bool largest, double& at) const {
    const double* const p = Power.data() + span.First;
    const double* const f = Freqs.data() + span.First;
    const std::size_t extreme = IndexOfExtreme(p, span.Count, largest);
    at = f[extreme];
    if (extreme == 0 || extreme + 1 >= span.Count || std::isnan(p[extreme])) return p[extreme];
    const double top = ParabolaTop(f, p, extreme, at);
    return largest ? std::max(top, p[extreme]) : std::clamp(top, 0.5 * p[extreme], p[extreme]);
}

double LimitGrid::Samples::LargestReflection(const Span& span, double& at) const {
    const double* const r = Reflection.data() + span.First;
    const double* const f = Freqs.data() + span.First;
    std::size_t extreme = 0;
    for (std::size_t i = 0; i < span.Count; ++i) {
        if (std::isnan(r[i])) return r[i];
        if (r[i] > r[extreme]) extreme = i;
    }
    at = f[extreme];
    if (extreme == 0 || extreme + 1 >= span.Count) return r[extreme];
    return std::max(r[extreme], ParabolaTop(f, r, extreme, at));
}

double LimitGrid::Samples::DelayVariation(const Span& span, double& at) const {
    double most = -std::numeric_limits<double>::infinity(), least = -most;
    for (std::size_t i = span.First + 1; i < span.First + span.Count; ++i) {
        const Complex turn = Complex(Re[i], Im[i]) * std::conj(Complex(Re[i - 1], Im[i - 1]));
        const double delay = -std::arg(turn) / (TwoPi * (Freqs[i] - Freqs[i - 1]));
        if (delay > most) most = delay, at = Freqs[i];
        least = std::min(least, delay);
    }
    return most - least;
}

double LimitGrid::MarginOf(const LimitLine& line, const Span& span, double& at) const {
    constexpr double tenth = 10.0;
    switch (line.Kind) {
        case LimitKind::AttenMin:
            return AttenuationOf(all.ExtremePower(span, true, at)) - line.Value;
        case LimitKind::AttenMax:
            return line.Value - AttenuationOf(all.ExtremePower(span, false, at));
        case LimitKind::ReturnLossMin:
            return -all.LargestReflection(span, at) - line.Value;
        case LimitKind::DelayVariationMax:
            return tenth * (1.0 - all.DelayVariation(span, at) / line.Value);
    }
    return HopelessDb;
}

KindMargins LimitGrid::MostOf(const FilterDesign& design) {
    KindMargins most;
    if (!few.Analyse(design)) return {HopelessDb, HopelessDb};
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const LimitLine& line = lines[row];
        const Span& span = few.Spans[row];
        const auto extreme = [&](const std::vector<double>& of, bool largest) {
            const double* const samples = of.data() + span.First;
            return samples[IndexOfExtreme(samples, span.Count, largest)];
        };
        double margin = NoLimitDb;
        switch (line.Kind) {
            case LimitKind::AttenMin:
                margin = AttenuationOf(extreme(few.Power, true)) - line.Value;
                break;
            case LimitKind::AttenMax:
                margin = line.Value - AttenuationOf(extreme(few.Power, false));
                break;
            case LimitKind::ReturnLossMin:
                margin = -extreme(few.Reflection, true) - line.Value;
                break;
            case LimitKind::DelayVariationMax:
                break;
        }
        double& least = IsPassLimit(line.Kind) ? most.Pass : most.Stop;
        least = std::isnan(margin) ? HopelessDb : std::min(least, margin);
    }
    return most;
}

bool LimitGrid::PointMargins(const FilterDesign& design, std::vector<double>& out) {
    out.clear();
    if (!all.Analyse(design)) return false;
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const Span& span = all.Spans[row];
        const bool whole = lines[row].Kind == LimitKind::DelayVariationMax;
        double at = 0.0;
        if (whole) out.push_back(MarginOf(lines[row], span, at));
        for (std::size_t i = 0; i < span.Count && !whole; ++i)
            out.push_back(MarginOf(lines[row], {span.First + i, 1}, at));
    }
    return std::all_of(out.begin(), out.end(), [](double margin) { return std::isfinite(margin); });
}

const std::vector<RowMargin>& LimitGrid::Judge(const FilterDesign& design, double centre) {
    const bool done = all.Analyse(design);
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const Span& span = all.Spans[row];
        RowMargin& margin = margins[row] = {};
        if (!done) {
            margin.Below = margin.Above = HopelessDb;
            continue;
        }
        const auto begin = all.Freqs.begin() + static_cast<std::ptrdiff_t>(span.First);
        const auto end = begin + static_cast<std::ptrdiff_t>(span.Count);
        const bool whole = lines[row].Kind == LimitKind::DelayVariationMax;
        const auto split = whole ? begin : std::lower_bound(begin, end, centre);
        const auto below = static_cast<std::size_t>(split - begin);
        double atBelow = 0.0, atAbove = 0.0;
        // Both parts have the points beside the centre, lest an extreme is lost between them.
        if (below > 0)
            margin.Below =
                MarginOf(lines[row], {span.First, std::min(below + 1, span.Count)}, atBelow);
        if (below < span.Count) {
            const std::size_t first = below > 0 ? below - 1 : 0;
            margin.Above = MarginOf(lines[row], {span.First + first, span.Count - first}, atAbove);
        }
        if (whole) margin.Below = margin.Above;
        for (double* const m : {&margin.Below, &margin.Above})
            if (std::isnan(*m)) *m = HopelessDb;
        margin.At = margin.Below < margin.Above ? atBelow : atAbove;
    }
    return margins;
}

}  // namespace ladderwise
