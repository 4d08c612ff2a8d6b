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
    double all = 0.0;
    for (const LimitLine& line : lines) {
        all += WeightOf(line);
        reflects = reflects || line.Kind == LimitKind::ReturnLossMin;
    }
    for (const LimitLine& line : lines) {
        std::size_t count = 1;
        if (line.To > line.From)
            count = std::max(fewestPoints, static_cast<std::size_t>(points * WeightOf(line) /
                                                                    std::max(all, 1.0)));
        spans.push_back({freqs.size(), count});
        const double from = line.From > 0.0 ? line.From : startOfZero * line.To;
        const bool linear = line.To < linearUpTo * from || line.From == 0.0;
        for (std::size_t i = 0; i < count; ++i) {
            const double part = count == 1 ? 0.0 : double(i) / double(count - 1);
            const double t = 0.5 - 0.5 * std::cos(0.5 * TwoPi * part);
            // The ends must be the limit's own.
            const double f = i + 1 == count ? line.To
                             : linear       ? from + (line.To - from) * t
                                            : from * std::pow(line.To / from, t);
            freqs.push_back(count == 1 ? line.From > 0.0 ? line.From : from : f);
        }
    }
    re.resize(freqs.size());
    im.resize(freqs.size());
    power.resize(freqs.size());
    if (reflects) reflection.resize(freqs.size());
    margins.resize(lines.size());
    BuildSweepTables(tables, freqs, 1.0);
    skin = tables.SkinOmega;
}

void LimitGrid::MoveTables(double f0) {
    if (f0 == tables.F0) return;
    const double root = std::sqrt(f0), inverse = 1.0 / f0;
    const std::size_t count = skin.size();
    const double *const perRoot = skin.data(), *const f = tables.Frequency.data();
    double *const omega = tables.SkinOmega.data(), *const relative = tables.RelativeF.data();
    for (std::size_t i = 0; i < count; ++i)
        omega[i] = root * perRoot[i];
    for (std::size_t i = 0; i < count; ++i)
        relative[i] = inverse * f[i];
    tables.F0 = f0;
}

double LimitGrid::ExtremePower(const Span& span, bool largest, double& at) const {
    const double* const p = power.data() + span.First;
    const double* const f = freqs.data() + span.First;
    const std::size_t extreme = IndexOfExtreme(p, span.Count, largest);
    at = f[extreme];
    if (extreme == 0 || extreme + 1 >= span.Count || std::isnan(p[extreme])) return p[extreme];
    const double top = ParabolaTop(f, p, extreme, at);
    return largest ? std::max(top, p[extreme]) : std::clamp(top, 0.5 * p[extreme], p[extreme]);
}

double LimitGrid::LargestReflection(const Span& span, double& at) const {
    const double* const r = reflection.data() + span.First;
    const double* const f = freqs.data() + span.First;
    std::size_t extreme = 0;
    for (std::size_t i = 0; i < span.Count; ++i) {
        if (std::isnan(r[i])) return r[i];
        if (r[i] > r[extreme]) extreme = i;
    }
    at = f[extreme];
    if (extreme == 0 || extreme + 1 >= span.Count) return r[extreme];
    return std::max(r[extreme], ParabolaTop(f, r, extreme, at));
}

double LimitGrid::DelayVariation(const Span& span, double& at) const {
    double most = -std::numeric_limits<double>::infinity(), least = -most;
    for (std::size_t i = span.First + 1; i < span.First + span.Count; ++i) {
        const Complex turn = Complex(re[i], im[i]) * std::conj(Complex(re[i - 1], im[i - 1]));
        const double delay = -std::arg(turn) / (TwoPi * (freqs[i] - freqs[i - 1]));
        if (delay > most) most = delay, at = freqs[i];
        least = std::min(least, delay);
    }
    return most - least;
}

double LimitGrid::MarginOf(const LimitLine& line, const Span& span, double& at) const {
    constexpr double tenth = 10.0;
    const auto attenuation = [](double x) {
        return -10.0 * std::log10(std::max(x, smallestPower));
    };
    switch (line.Kind) {
        case LimitKind::AttenMin:
            return attenuation(ExtremePower(span, true, at)) - line.Value;
        case LimitKind::AttenMax:
            return line.Value - attenuation(ExtremePower(span, false, at));
        case LimitKind::ReturnLossMin:
            return -LargestReflection(span, at) - line.Value;
        case LimitKind::DelayVariationMax:
            return tenth * (1.0 - DelayVariation(span, at) / line.Value);
    }
    return HopelessDb;
}

const std::vector<RowMargin>& LimitGrid::Judge(const FilterDesign& design, double centre) {
    MoveTables(design.F0);
    const bool done = AnalyseLadder(design, tables, {}, re, im, reflection);
    for (std::size_t i = 0; i < freqs.size(); ++i)
        power[i] = re[i] * re[i] + im[i] * im[i];
    for (std::size_t row = 0; row < lines.size(); ++row) {
        const Span& span = spans[row];
        RowMargin& margin = margins[row] = {};
        if (!done) {
            margin.Below = margin.Above = HopelessDb;
            continue;
        }
        const auto begin = freqs.begin() + static_cast<std::ptrdiff_t>(span.First);
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
