// D. W. Marquardt, "An algorithm for least-squares estimation of nonlinear parameters", J. SIAM 11
// (1963) 431-441. Unknowns are the logarithms of the values.
#include "boards/Absorb.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <vector>

#include "analysis/Sensitivities.h"
#include "boards/Closeness.h"
#include "boards/StandardSeries.h"

namespace ladderwise {

namespace {

constexpr double startDamping = 1e-3;
constexpr double dampingStep = 10.0;
constexpr double mostDamping = 1e8;
constexpr double nextRefitQ = 1.25;
constexpr double highestRefitQ = 3e3;
constexpr double lossQuantile = 0.25;

std::unique_ptr<FilterDesign> IdealOf(const FilterDesign& design, const ElementList& ideal) {
    auto made = std::make_unique<FilterDesign>(design);
    made->Elements = ideal;
    made->PartModel.Choice = PartChoice::IdealParts;
    return made;
}

/// Solves the symmetric system A x = b of size n by Cholesky's decomposition; false if A is not
/// positive definite. A is overwritten, b becomes x.
bool SolveSymmetric(std::vector<double>& A, std::vector<double>& b) {
    const std::size_t n = b.size();
    for (std::size_t i = 0; i < n; ++i) {
        for (std::size_t j = 0; j <= i; ++j) {
            double sum = A[i * n + j];
            for (std::size_t k = 0; k < j; ++k)
                sum -= A[i * n + k] * A[j * n + k];
            if (i == j && !(sum > 0.0)) return false;
            A[i * n + j] = i == j ? std::sqrt(sum) : sum / A[j * n + j];
        }
        for (std::size_t k = 0; k < i; ++k)
            b[i] -= A[i * n + k] * b[k];
        b[i] /= A[i * n + i];
    }
    for (std::size_t i = n; i-- > 0;) {
        for (std::size_t k = i + 1; k < n; ++k)
            b[i] -= A[k * n + i] * b[k];
        b[i] /= A[i * n + i];
    }
    return true;
}

class Refit {
public:
    Refit(const FilterDesign& design, const ElementList& ideal)
        : work(std::make_unique<FilterDesign>(design)),
          judge(*IdealOf(design, ideal), ideal),
          parts(PartsToChoose(design, {}, 0)) {
        for (std::size_t i = 0; i < judge.Target().size(); ++i)
            if (judge.Target()[i] - judge.Band().LeastLoss <= judge.LimitDb()) inBand.push_back(i);
    }

    bool IsValid() const { return judge.IsValid() && !inBand.empty() && !parts.empty(); }
    double Loss() const { return loss; }
    const ElementList& Elements() const { return work->Elements; }

    void Run() {
        std::vector<double> x(parts.size(), 0.0);
        double cost = CostAt(x), damping = startDamping;
        for (int step = 0; step < RefitSteps && damping < mostDamping;) {
            std::vector<double> next = x;
            CostAt(x);  // the residuals that the step is taken from
            if (!Step(damping, next)) break;
            const double tried = CostAt(next);
            ++step;
            if (tried < cost) {
                x = next;
                cost = tried;
                damping /= dampingStep;
            } else {
                damping *= dampingStep;
            }
        }
        CostAt(x);
    }

    /// The largest |A - A0 - c| of the pass band, as the ladder stands.
    double Miss() {
        Residuals();
        double largest = 0.0;
        for (const std::size_t i : inBand)
            largest = std::max(largest, std::abs(shape[i]));
        return largest;
    }

private:
    /// shape = A - A0 - c.
    void Residuals() {
        const std::vector<double>& attenuation = judge.Grid().AttenuationOf(*work);
        shape.resize(attenuation.size());
        for (std::size_t i = 0; i < shape.size(); ++i)
            shape[i] = attenuation[i] - judge.Target()[i];
        std::vector<double> excess;
        for (const std::size_t i : inBand)
            excess.push_back(shape[i]);
        const auto quarter =
            excess.begin() + static_cast<std::ptrdiff_t>(lossQuantile * double(excess.size() - 1));
        std::nth_element(excess.begin(), quarter, excess.end());
        loss = *quarter;
        for (double& each : shape)
            each -= loss;
    }

    double CostAt(const std::vector<double>& x) {
        for (std::size_t k = 0; k < parts.size(); ++k)
            work->Elements[static_cast<std::size_t>(parts[k].Place.Slot)].Value(
                parts[k].Place.Row) = parts[k].Exact * std::exp(x[k]);
        Residuals();
        double sum = 0.0;
        for (std::size_t i = 0; i < shape.size(); ++i)
            sum += std::pow(judge.Weights()[i] * shape[i], 2);
        return sum;
    }

    /// x to the minimum of the damped quadratic, within the bounds.
    bool Step(double damping, std::vector<double>& x) {
        const LadderSlopes slopes = SlopesOf(*work, judge.Grid().Freqs());
        const std::size_t n = parts.size(), points = shape.size();
        std::vector<std::vector<double>> columns;
        std::vector<double> A(n * n, 0.0), b(n, 0.0);
        for (const PartToChoose& part : parts) {
            const auto place = std::find(slopes.Places.begin(), slopes.Places.end(), part.Place);
            const auto of =
                slopes.AttenuationOf(static_cast<std::size_t>(place - slopes.Places.begin()));
            columns.emplace_back(points);
            for (std::size_t i = 0; i < points; ++i)
                columns.back()[i] = std::isfinite(of[i]) ? judge.Weights()[i] * of[i] : 0.0;
        }
        for (std::size_t k = 0; k < n; ++k) {
            for (std::size_t i = 0; i < points; ++i)
                b[k] -= columns[k][i] * judge.Weights()[i] * shape[i];
            for (std::size_t l = 0; l <= k; ++l)
                for (std::size_t i = 0; i < points; ++i)
                    A[k * n + l] += columns[k][i] * columns[l][i];
        }
        double largest = 0.0;
        for (std::size_t k = 0; k < n; ++k)
            largest = std::max(largest, A[k * n + k]);
        for (std::size_t k = 0; k < n; ++k)
            A[k * n + k] += damping * (A[k * n + k] + 1e-6 * largest);
        if (!SolveSymmetric(A, b)) return false;
        const double bound = std::log(LargestRefit);
        for (std::size_t k = 0; k < n; ++k)
            x[k] = std::clamp(x[k] + b[k], -bound, bound);
        return true;
    }

    std::unique_ptr<FilterDesign> work;
    Closeness judge;
    std::vector<PartToChoose> parts;
    std::vector<std::size_t> inBand;
    std::vector<double> shape;
    double loss = 0.0;
};

double MissWithQ(FilterDesign design, const ElementList& ideal, double q) {
    design.PartModel.IndQ = q;
    Refit refit(design, ideal);
    refit.Run();
    return refit.Miss();
}

}  // namespace

AbsorbedLadder AbsorbParasitics(const FilterDesign& design, const ElementList& ideal) {
    AbsorbedLadder absorbed;
    absorbed.Elements = design.Elements;
    absorbed.MissDb = absorbed.MissedDb = std::nan("");
    Refit refit(design, ideal);
    if (!refit.IsValid()) return absorbed;
    absorbed.MissedDb = refit.Miss();
    refit.Run();
    absorbed.MissDb = refit.Miss();
    absorbed.Elements = refit.Elements();
    absorbed.LossDb = refit.Loss();
    if (absorbed.MissDb <= AbsorbedLadder::ShapeKeptDb) return absorbed;
    for (double q = design.PartModel.IndQ * nextRefitQ; q < highestRefitQ; q *= nextRefitQ)
        if (MissWithQ(design, ideal, q) <= AbsorbedLadder::ShapeKeptDb) {
            absorbed.NeededQ = q;
            break;
        }
    return absorbed;
}

}  // namespace ladderwise
