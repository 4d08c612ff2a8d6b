// Starts and the order in which they are tried.
#include "measured/BoardSearch.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <random>
#include <utility>

namespace ladderwise {

namespace {

constexpr double narrowBand = 0.15;  // relative bandwidth
constexpr std::array<double, 6> smoothings = {0.1, 0.05, 0.02, 0.01, 0.004, 0.001};
constexpr BoardStage smoothedStage{false, 0.0, 8, 1e-2};
constexpr BoardStage heldStage{false, 0.0, 30, 1e-3};
constexpr BoardStage roughStage{true, 0.0, 60, 2e-3};
constexpr BoardStage freeStage{true, 0.0, 60, 1e-5};
constexpr double hopeless = 20.0;  // Excess after the rough stage, beyond which nothing is refined

constexpr std::size_t glancePoints = 150, smoothedPoints = 80;
constexpr std::size_t screenPoints = 50;
constexpr std::array<double, 4> screenSmoothings = {0.05, 0.02, 0.005, 0.0};
constexpr int screenSteps = 5;

constexpr int randomStarts = 400;
constexpr std::size_t fittedStarts = 24, heldStarts = 8, finishedStarts = 4;
constexpr BoardStage briefStage{false, 0.0, 6, 1e-3};
constexpr std::size_t randomPoints = 100;
constexpr double tuningSpread = 0.05;    // of a random start, in ln of sqrt(L C)
constexpr double impedanceSpread = 0.1;  // and of sqrt(C / L), and of single parts
constexpr unsigned startSeed = 20011;    // the same board gives the same answer

constexpr double likelyCost = 4.0;         // of a glance, beside that of the best solution
constexpr double equalCost = 9.0;          // squares of the noise: three standard deviations
constexpr double farthestExchange = 0.25;  // of ln value, from nominal: no part is so far off

}  // namespace

void KeepBetter(BoardSolution& best, BoardSolution other) {
    if (other.State.Cost() < best.State.Cost()) best = std::move(other);
}

bool IsNarrow(const DesignState& design) {
    return HasBandWidth(design.PassType) && design.BandWidth < narrowBand * design.F0;
}

BoardSearch::BoardSearch(const DesignState& built, const BoardModel& fitted,
                         const BoardData& measured)
    : design(built), model(fitted), data(measured) {}

BoardState BoardSearch::Screened() const {
    const BoardData few = Thinned(data, screenPoints);
    const BoardFit fit(model, few);
    BoardState state{model.Means()};
    for (const double width : screenSmoothings)
        if (IsNarrow(design) || width == 0.0)
            state = fit.Improved(std::move(state), {false, width, screenSteps, 1e-2});
    return state;
}

BoardState BoardSearch::Screened(std::vector<double> start) const {
    const BoardData few = Thinned(data, screenPoints);
    return BoardFit(model, few).Improved({std::move(start)}, {false, 0.0, screenSteps, 1e-2});
}

BoardState BoardSearch::Settled(BoardState state) const {
    const BoardData few = Thinned(data, glancePoints);
    return BoardFit(model, few).Improved(std::move(state), heldStage);
}

BoardState BoardSearch::Glance(std::vector<double> start, bool smoothed) const {
    BoardState state{std::move(start)};
    if (smoothed || IsNarrow(design)) {
        const BoardData few = Thinned(data, smoothedPoints);
        const BoardFit fit(model, few);
        for (const double width : smoothings) {
            BoardStage stage = smoothedStage;
            stage.Smoothing = width;
            state = fit.Improved(std::move(state), stage);
        }
    }
    return Settled(std::move(state));
}

BoardState BoardSearch::Roughed(const BoardState& glance) const {
    const BoardData few = Thinned(data, glancePoints);
    return BoardFit(model, few).Improved(glance, roughStage);
}

BoardSolution BoardSearch::Finished(const BoardState& rough) const {
    const BoardFit fit(model, data);
    const auto excess = [&](const BoardState& state) {
        return std::sqrt(state.Misfit / fit.Count());
    };
    BoardSolution solution{fit.At(rough.X)};
    if (excess(solution.State) < hopeless)
        solution.State = fit.Improved(std::move(solution.State), freeStage);
    solution.Excess = excess(solution.State);
    return solution;
}

/// The nominal ladder as it is drawn: in a narrow band the parasitics that are expected may detune
/// it by more than the bandwidth, and a calculated file has none.
std::vector<double> BoardSearch::WithoutParasitics() const {
    std::vector<double> x = model.Means();
    for (std::size_t i = 0; i < x.size(); ++i)
        if (model.Unknowns()[i].Free) x[i] = 0.0;
    return x;
}

/// Random values about the nominal ones, the best of which are fitted; those in their order.
std::vector<BoardState> BoardSearch::BestOfRandom(const BoardState& best) const {
    const BoardData few = Thinned(data, randomPoints);
    const BoardFit fit(model, few);
    std::mt19937 random(startSeed);
    std::normal_distribution<double> normal;
    std::vector<BoardState> starts;
    for (int i = 0; i < randomStarts; ++i) {
        std::vector<double> x = model.Means();
        for (std::size_t k = 0; k < x.size(); ++k) {
            const BoardUnknown& unknown = model.Unknowns()[k];
            if (unknown.Kind == BoardUnknownKind::Value && unknown.Free)
                x[k] = impedanceSpread * normal(random);
            else if (unknown.Kind == BoardUnknownKind::CoilLoss ||
                     unknown.Kind == BoardUnknownKind::PortDelay)
                x[k] = best.X[k];
        }
        for (const BoardModel::Resonator& tank : model.Resonators()) {
            const double tuning = tuningSpread * normal(random),
                         impedance = impedanceSpread * normal(random);
            x[static_cast<std::size_t>(tank.Coil)] = tuning - impedance;
            x[static_cast<std::size_t>(tank.Capacitor)] = tuning + impedance;
        }
        starts.push_back(fit.At(std::move(x)));
    }
    const auto cheaper = [](const BoardState& a, const BoardState& b) {
        return a.Cost() < b.Cost();
    };
    const auto fitBest = [&](std::size_t count, const BoardStage& stage) {
        std::sort(starts.begin(), starts.end(), cheaper);
        starts.resize(count);
        for (BoardState& start : starts)
            start = fit.Improved(std::move(start), stage);
    };
    fitBest(fittedStarts, briefStage);
    fitBest(heldStarts, heldStage);
    std::sort(starts.begin(), starts.end(), cheaper);
    return starts;
}

/// The state with the values of two slots of one type exchanged, for all such pairs; with
/// `commuting` only of those that can change places without anybody noticing: two arms in a row,
/// and traps, since a ladder can have its transmission zeros in any order: those exchange tuning.
std::vector<std::vector<double>> BoardSearch::Exchanged(const BoardState& state,
                                                        bool commuting) const {
    std::vector<std::vector<double>> starts;
    const auto exchange = [&](PartPlace a, PartPlace b, std::vector<double>& x) {
        const int one = model.ValueAt(a), other = model.ValueAt(b);
        if (one < 0 || other < 0) return;
        const double ratio = std::log(model.Nominal(one) / model.Nominal(other));
        x[static_cast<std::size_t>(one)] = state.X[static_cast<std::size_t>(other)] - ratio;
        x[static_cast<std::size_t>(other)] = state.X[static_cast<std::size_t>(one)] + ratio;
    };
    const auto tune = [&](int slot, int like, std::vector<double>& x) {  // with nominal C / L
        double sum = 0.0;
        for (int row = 0; row < 2; ++row) {
            const int own = model.ValueAt({slot, row}), other = model.ValueAt({like, row});
            if (own < 0 || other < 0) return;
            sum += std::log(model.Nominal(other) / model.Nominal(own)) +
                   state.X[static_cast<std::size_t>(other)];
        }
        for (int row = 0; row < 2; ++row)
            x[static_cast<std::size_t>(model.ValueAt({slot, row}))] = 0.5 * sum;
    };
    const auto keep = [&](std::vector<double> x) {
        for (std::size_t k = 0; k < x.size(); ++k)
            if (model.Unknowns()[k].Kind == BoardUnknownKind::Value &&
                std::fabs(x[k]) > farthestExchange)
                return;
        starts.push_back(std::move(x));
    };
    for (int a = 1; a <= SlotsInUse(design); ++a) {
        const ElementType type = design.Elements[a].Type;
        if (type == ElementType::DualSeriesLC || type == ElementType::DualShuntLC) {
            std::vector<double> x = state.X;
            exchange({a, 0}, {a, 2}, x);
            exchange({a, 1}, {a, 3}, x);
            keep(std::move(x));
        }
        const bool isTrap = type == ElementType::SeriesLC || type == ElementType::ShuntLC;
        for (int b = a + 1; b <= SlotsInUse(design); ++b) {
            if (design.Elements[b].Type != type || (commuting && !isTrap && b > a + 1)) continue;
            std::vector<double> x = state.X;
            if (isTrap) {
                tune(a, b, x);
                tune(b, a, x);
            } else {
                for (int row = 0; row < 4; ++row)
                    exchange({a, row}, {b, row}, x);
            }
            keep(std::move(x));
        }
    }
    return starts;
}

/// What a glance shows to be far from explaining the data is not fitted to the end.
void BoardSearch::AddEquals(BoardSolution& solution) const {
    std::vector<std::vector<double>> starts = Exchanged(solution.State, true);
    const double likely = starts.empty() ? 0.0 : likelyCost * Glance(solution.State.X).Cost();
    for (const std::vector<double>& start : starts) {
        const BoardState glance = Glance(start);
        if (glance.Cost() > likely) continue;
        BoardSolution other = Finished(Roughed(glance));
        if (other.State.Cost() < solution.State.Cost()) {
            std::swap(other.State, solution.State);
            solution.Excess = other.Excess;
        }
        solution.Equals.push_back(std::move(other.State));
    }
    std::erase_if(solution.Equals, [&](const BoardState& other) {
        return other.Cost() > solution.State.Cost() + equalCost;
    });
}

BoardSolution BoardSearch::Solve() const {
    BoardSolution best = From(model.Means());
    if (!Explains(best)) KeepBetter(best, FromBare());
    if (IsNarrow(design)) return best;
    if (!Explains(best)) KeepBetter(best, From(model.Means(), true));
    if (!Explains(best) && best.Excess < hopeless)
        for (const std::vector<double>& start : Exchanged(best.State, true))
            if (!Explains(best)) KeepBetter(best, From(start));
    return best;
}

void BoardSearch::SolveThoroughly(BoardSolution& best) const {
    if (Explains(best)) return;
    const std::vector<BoardState> random = BestOfRandom(best.State);
    const std::size_t tried = IsNarrow(design) ? finishedStarts : 1;
    for (std::size_t i = 0; i < tried && !Explains(best); ++i)
        KeepBetter(best, Finished(Roughed(random[i])));
    if (!IsNarrow(design)) return;
    for (const std::vector<double>& start : Exchanged(best.State, false))
        if (!Explains(best)) KeepBetter(best, From(start));
}

}  // namespace ladderwise
