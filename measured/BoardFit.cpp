// Normal equations and their steps.
//
//   z = (x - mean) / spread   each unknown as it is solved for, so that its pull is z^2
//   rows                      derivatives of the residuals by z, over the noise; the last column
//                             is the residual itself
//   A, g                      A dz = g of the whole cost
// A coil and the capacitor that it resonates with are turned to the sum and the difference of their
// logarithms, of which the first is told far better than the second.
#include "measured/BoardFit.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "analysis/LadderKernel.h"

namespace ladderwise {

namespace {

constexpr double largestPartStep = 0.05;  // of ln value
constexpr double largestOtherStep = 1.5;  // of its spread
constexpr double firstDamping = 1e-2;
constexpr double leastDamping = 1e-9;
constexpr double easedBy = 0.15;
constexpr double tightenedBy = 6.0;
constexpr double hardlyDamped = 1e-3;
constexpr int mostTries = 9;           // of one step
constexpr double leastGain = 0.01;     // of the cost, in squares of the noise
constexpr double barelyPulled = 1e-8;  // in place of the pull of a part, so that A has an inverse

/// The lower triangle L of A = L L^T in place (n x n by rows); false if A is not positive.
bool Factorise(std::vector<double>& A, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        double* const row = &A[i * n];
        for (std::size_t j = 0; j <= i; ++j) {
            const double* const other = &A[j * n];
            double sum = row[j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= row[k] * other[k];
            if (i == j) {
                if (!(sum > 0.0)) return false;
                row[i] = std::sqrt(sum);
            } else {
                row[j] = sum / other[j];
            }
        }
    }
    return true;
}

/// Solves L L^T x = b in place.
void Solve(const std::vector<double>& L, std::size_t n, std::vector<double>& b) {
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t k = 0; k < i; ++k)
            b[i] -= L[i * n + k] * b[k];
        b[i] /= L[i * n + i];
    }
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t k = i + 1; k < n; ++k)
            b[i] -= L[k * n + i] * b[k];
        b[i] /= L[i * n + i];
    }
}

/// A pair of columns that is turned: both by 45 degrees.
using Pairs = std::vector<std::pair<std::size_t, std::size_t>>;

void Turn(double& one, double& other) {
    const double half = std::sqrt(0.5);
    const double sum = half * (one + other), difference = half * (other - one);
    one = sum;
    other = difference;
}

void TurnBack(double& sum, double& difference) {
    const double half = std::sqrt(0.5);
    const double one = half * (sum - difference), other = half * (sum + difference);
    sum = one;
    difference = other;
}

}  // namespace

struct BoardFit::Normal {
    std::size_t N = 0;
    std::vector<double> A{}, G{};
    Pairs Turned{};

    void Rotate() {
        for (const auto& [one, other] : Turned) {
            Turn(G[one], G[other]);
            for (std::size_t k = 0; k < N; ++k)
                Turn(A[k * N + one], A[k * N + other]);
            for (std::size_t k = 0; k < N; ++k)
                Turn(A[one * N + k], A[other * N + k]);
        }
    }
};

double BoardFit::Count() const {
    return 2.0 * static_cast<double>(Measured().size() * data.Hz.size());
}

std::vector<std::array<Complex, NumBoardParameters>> BoardFit::Residuals(
    const std::vector<double>& x) const {
    std::vector<std::array<Complex, NumBoardParameters>> residuals(data.Hz.size());
    for (std::size_t i = 0; i < data.Hz.size(); ++i) {
        const auto seen = data.InOrder(model.At(x, data.Hz[i]));
        for (std::size_t p = 0; p < NumBoardParameters; ++p)
            residuals[i][p] = data.IsThere[p] ? seen[p] - data.S[i][p] : Complex(0.0);
    }
    return residuals;
}

/// Which unknowns a stage moves.
std::vector<int> BoardFit::Columns(const BoardStage& stage) const {
    std::vector<int> columns;
    const std::vector<BoardUnknown>& unknowns = model.Unknowns();
    for (std::size_t i = 0; i < unknowns.size(); ++i) {
        const BoardUnknownKind kind = unknowns[i].Kind;
        const bool early = kind == BoardUnknownKind::Value || kind == BoardUnknownKind::CoilLoss ||
                           kind == BoardUnknownKind::PortDelay;
        if (unknowns[i].Free && (early || stage.Parasitics)) columns.push_back(static_cast<int>(i));
    }
    return columns;
}

/// The parameters that were measured.
std::vector<std::size_t> BoardFit::Measured() const {
    std::vector<std::size_t> list;
    for (std::size_t p = 0; p < NumBoardParameters; ++p)
        if (data.IsThere[p]) list.push_back(p);
    return list;
}

/// Rows of derivatives and residual: of each measured parameter all real parts, then all imaginary
/// ones.
std::vector<double> BoardFit::RowsAt(const std::vector<double>& x,
                                     const std::vector<int>& columns) const {
    const std::size_t width = columns.size() + 1, points = data.Hz.size();
    const std::vector<std::size_t> measured = Measured();
    std::vector<double> rows(2 * measured.size() * points * width);
    BoardSlopes slopes;
    slopes.Wanted.assign(x.size(), 0);
    for (const int column : columns)
        slopes.Wanted[static_cast<std::size_t>(column)] = 1;
    for (std::size_t i = 0; i < points; ++i) {
        const auto seen =
            data.InOrder(model.At(x, data.Hz[i], columns.empty() ? nullptr : &slopes));
        for (std::size_t m = 0; m < measured.size(); ++m) {
            const std::size_t p = measured[m];
            const std::size_t which = data.Turned ? NumBoardParameters - 1 - p : p;
            const std::vector<Complex>& list = which == 0   ? slopes.S11
                                               : which == 1 ? slopes.S21
                                                            : slopes.S22;
            const double weight = 1.0 / data.Noise[p];
            double* const re = &rows[(2 * m * points + i) * width];
            double* const im = &rows[((2 * m + 1) * points + i) * width];
            for (std::size_t k = 0; k < columns.size(); ++k) {
                const auto column = static_cast<std::size_t>(columns[k]);
                const double scale = weight * model.Unknowns()[column].Spread;
                re[k] = list[column].real() * scale;
                im[k] = list[column].imag() * scale;
            }
            const Complex residual = weight * (seen[p] - data.S[i][p]);
            re[columns.size()] = residual.real();
            im[columns.size()] = residual.imag();
        }
    }
    return rows;
}

/// The weights of a Lorentzian over ln f of a full relative width at half its height, a row for
/// each point; empty for none. Smoothing so is the same as adding loss to every part.
std::vector<double> BoardFit::Smoother(double width) const {
    if (!(width > 0.0)) return {};
    const std::size_t n = data.Hz.size();
    std::vector<double> smoother(n * n), share(n);
    for (std::size_t i = 0; i < n; ++i)
        share[i] = std::log(data.Hz[std::min(i + 1, n - 1)] / data.Hz[i > 0 ? i - 1 : 0]);
    for (std::size_t i = 0; i < n; ++i) {
        double sum = 0.0;
        for (std::size_t j = 0; j < n; ++j) {
            const double away = std::log(data.Hz[i] / data.Hz[j]) / (0.5 * width);
            sum += smoother[i * n + j] = share[j] / (1.0 + away * away);
        }
        for (std::size_t j = 0; j < n; ++j)
            smoother[i * n + j] /= sum;
    }
    return smoother;
}

std::vector<double> BoardFit::Smoothed(const std::vector<double>& rows, std::size_t width,
                                       const std::vector<double>& smoother) const {
    const std::size_t n = data.Hz.size();
    std::vector<double> out(rows.size(), 0.0);
    for (std::size_t block = 0; block < rows.size() / (n * width); ++block) {
        for (std::size_t i = 0; i < n; ++i) {
            double* const to = &out[(block * n + i) * width];
            for (std::size_t j = 0; j < n; ++j) {
                const double weight = smoother[i * n + j];
                const double* const from = &rows[(block * n + j) * width];
                for (std::size_t k = 0; k < width; ++k)
                    to[k] += weight * from[k];
            }
        }
    }
    return out;
}

BoardFit::Normal BoardFit::NormalAt(const std::vector<double>& x, const std::vector<int>& columns,
                                    const std::vector<double>& smoother) const {
    const std::size_t n = columns.size(), width = n + 1;
    std::vector<double> rows = RowsAt(x, columns);
    if (!smoother.empty()) rows = Smoothed(rows, width, smoother);
    std::vector<double> sums(width * width, 0.0);
    ReadyKernel(KernelChoice::Automatic)
        .AddProducts(rows.data(), static_cast<int>(rows.size() / width), static_cast<int>(width),
                     sums.data());
    Normal normal{n, std::vector<double>(n * n), std::vector<double>(n), {}};
    std::vector<std::size_t> columnOf(model.Unknowns().size(), n);
    for (std::size_t j = 0; j < n; ++j) {
        for (std::size_t k = j; k < n; ++k)
            normal.A[j * n + k] = normal.A[k * n + j] = sums[j * width + k];
        const auto column = static_cast<std::size_t>(columns[j]);
        const BoardUnknown& unknown = model.Unknowns()[column];
        normal.A[j * n + j] += 1.0;
        normal.G[j] = -sums[j * width + n] - (x[column] - unknown.Mean) / unknown.Spread;
        columnOf[column] = j;
    }
    for (const BoardModel::Resonator& tank : model.Resonators()) {
        const std::size_t coil = columnOf[static_cast<std::size_t>(tank.Coil)];
        const std::size_t capacitor = columnOf[static_cast<std::size_t>(tank.Capacitor)];
        if (coil < n && capacitor < n) normal.Turned.emplace_back(coil, capacitor);
    }
    return normal;
}

BoardState BoardFit::Judged(std::vector<double> x, const std::vector<double>& smoother) const {
    BoardState state;
    std::vector<double> rows = RowsAt(x, {});
    if (!smoother.empty()) rows = Smoothed(rows, 1, smoother);
    for (const double residual : rows)
        state.Misfit += residual * residual;
    if (!std::isfinite(state.Misfit)) state.Misfit = std::numeric_limits<double>::max();
    for (std::size_t i = 0; i < x.size(); ++i) {
        const BoardUnknown& unknown = model.Unknowns()[i];
        const double z = (x[i] - unknown.Mean) / unknown.Spread;
        state.Pull += z * z;
    }
    state.X = std::move(x);
    return state;
}

BoardState BoardFit::At(std::vector<double> x) const {
    return Judged(std::move(x), {});
}

/// The state's unknowns after a damped step, shortened so that nothing moves too far.
std::vector<double> BoardFit::Moved(const BoardState& state, const Normal& normal,
                                    const std::vector<int>& columns, double damping) const {
    const std::size_t n = normal.N;
    std::vector<double> A = normal.A, step = normal.G;
    for (std::size_t i = 0; i < n; ++i)
        A[i * n + i] *= 1.0 + damping;
    if (!Factorise(A, n)) return {};
    Solve(A, n, step);
    for (const auto& [one, other] : normal.Turned)
        TurnBack(step[one], step[other]);
    double share = 1.0;
    for (std::size_t i = 0; i < n; ++i) {
        const BoardUnknown& unknown = model.Unknowns()[static_cast<std::size_t>(columns[i])];
        const double most = unknown.Kind == BoardUnknownKind::Value
                                ? largestPartStep / unknown.Spread
                                : largestOtherStep;
        if (std::fabs(step[i]) * share > most) share = most / std::fabs(step[i]);
    }
    std::vector<double> x = state.X;
    for (std::size_t i = 0; i < n; ++i) {
        const auto column = static_cast<std::size_t>(columns[i]);
        x[column] += share * step[i] * model.Unknowns()[column].Spread;
    }
    return x;
}

/// One step downwards; false if there is none.
bool BoardFit::Step(BoardState& state, Normal& normal, const std::vector<int>& columns,
                    const std::vector<double>& smoother, double& damping) const {
    normal.Rotate();
    for (int tries = 0; tries < mostTries; ++tries) {
        std::vector<double> x = Moved(state, normal, columns, damping);
        if (!x.empty()) {
            BoardState next = Judged(std::move(x), smoother);
            if (next.Cost() < state.Cost()) {
                state = std::move(next);
                damping = std::max(leastDamping, damping * easedBy);
                return true;
            }
        }
        damping *= tightenedBy;
    }
    return false;
}

BoardState BoardFit::Improved(BoardState state, const BoardStage& stage) const {
    const std::vector<int> columns = Columns(stage);
    const std::vector<double> smoother = Smoother(stage.Smoothing);
    state = Judged(std::move(state.X), smoother);
    double damping = firstDamping;
    int idle = 0;
    for (int step = 0; step < stage.Steps && idle < 2; ++step) {
        const double before = state.Cost();
        Normal normal = NormalAt(state.X, columns, smoother);
        if (!Step(state, normal, columns, smoother, damping)) break;
        if (before - state.Cost() >= stage.Enough * before + leastGain)
            idle = 0;
        else  // a step that was hardly damped has nothing behind it
            idle += damping < hardlyDamped ? 2 : 1;
    }
    return smoother.empty() ? state : Judged(std::move(state.X), {});
}

std::vector<double> BoardFit::Covariance(const std::vector<double>& x) const {
    const std::vector<int> columns = Columns({});
    Normal normal = NormalAt(x, columns, {});
    const std::size_t n = normal.N, all = x.size();
    for (std::size_t i = 0; i < n; ++i)
        if (model.Unknowns()[static_cast<std::size_t>(columns[i])].Kind == BoardUnknownKind::Value)
            normal.A[i * n + i] -= 1.0 - barelyPulled;
    std::vector<double> covariance(all * all, 0.0);
    if (!Factorise(normal.A, n)) return covariance;
    for (std::size_t i = 0; i < n; ++i) {
        std::vector<double> unit(n, 0.0);
        unit[i] = 1.0;
        Solve(normal.A, n, unit);
        const auto row = static_cast<std::size_t>(columns[i]);
        for (std::size_t k = 0; k < n; ++k) {
            const auto column = static_cast<std::size_t>(columns[k]);
            covariance[row * all + column] =
                unit[k] * model.Unknowns()[row].Spread * model.Unknowns()[column].Spread;
        }
    }
    return covariance;
}

}  // namespace ladderwise
