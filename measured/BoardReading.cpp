// From a fit to what is said of it: intervals by the covariance of all unknowns, those of the board
// and the analyser included, which marginalises over them.
#include "measured/BoardReading.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <utility>

#include "design/Designators.h"
#include "measured/BoardFaults.h"
#include "measured/BoardNext.h"

namespace ladderwise {

namespace {

constexpr double standardDeviations = 1.96;  // of a 95 % interval
constexpr double undeterminedWidth = 0.1;    // half, in ln value
constexpr std::size_t mostLags = 30;         // of the residuals' autocorrelation
constexpr double noLoss = 1e-5;              // of a coil, 1 / Q
constexpr double leastResidual = 1e-30;
constexpr double ownPart = 1.33;  // as far from its nominal value may a part of this filter be

using Residuals = std::vector<std::array<Complex, NumBoardParameters>>;

/// By how much the covariance of white noise of the estimated strength falls short: where the
/// residuals are larger than the noise, and where they are alike from point to point.
double VarianceFactor(const Residuals& residuals, const BoardData& data) {
    double factor = 1.0;
    for (std::size_t p = 0; p < NumBoardParameters; ++p) {
        if (!data.IsThere[p]) continue;
        const std::size_t n = residuals.size();
        const auto product = [&](std::size_t lag) {
            double sum = 0.0;
            for (std::size_t i = lag; i < n; ++i)
                sum += (residuals[i][p] * std::conj(residuals[i - lag][p])).real();
            return sum;
        };
        const double square = product(0);
        double alike = 1.0;
        for (std::size_t lag = 1; lag < std::min(n / 2, mostLags); ++lag) {
            const double share = product(lag) / std::max(square, leastResidual);
            if (!(share > 2.0 / std::sqrt(static_cast<double>(n)))) break;
            alike += 2.0 * share;
        }
        const double excess =
            square / (2.0 * static_cast<double>(n) * data.Noise[p] * data.Noise[p]);
        factor = std::max(factor, excess * alike);
    }
    return factor;
}

/// Everything that intervals are made of.
struct Fitted {
    const BoardModel& Model;
    const BoardSolution& Solution;
    std::vector<double> Covariance;

    double Own(const std::vector<double>& x, int unknown) const {
        return Model.Nominal(unknown) * std::exp(x[static_cast<std::size_t>(unknown)]);
    }
    /// A value as mounted.
    double Mounted(const std::vector<double>& x, int unknown) const {
        const int with = Model.MountedWith(unknown);
        return Own(x, unknown) + (with < 0 ? 0.0 : Model.Whole(x, with));
    }
    /// Adds `weight` times the derivative of ln(value as mounted) by the unknowns.
    void AddSlope(std::vector<double>& slope, int unknown, double weight) const {
        const std::vector<double>& x = Solution.State.X;
        const double mounted = Mounted(x, unknown);
        slope[static_cast<std::size_t>(unknown)] += weight * Own(x, unknown) / mounted;
        const int with = Model.MountedWith(unknown);
        if (with < 0) return;
        const BoardUnknown& extra = Model.Unknowns()[static_cast<std::size_t>(with)];
        slope[static_cast<std::size_t>(with)] += weight / mounted;
        slope[static_cast<std::size_t>(extra.Common)] += extra.Share * weight / mounted;
    }
    double Variance(const std::vector<double>& slope) const {
        double sum = 0.0;
        for (std::size_t i = 0; i < slope.size(); ++i)
            for (std::size_t k = 0; slope[i] != 0.0 && k < slope.size(); ++k)
                sum += slope[i] * slope[k] * Covariance[i * slope.size() + k];
        return sum;
    }
    /// An estimate of the product of values as mounted, each to its power, times a constant.
    Estimate Of(const std::vector<std::pair<int, double>>& powers, double constant) const {
        const std::vector<double>& x = Solution.State.X;
        std::vector<double> slope(x.size(), 0.0);
        const auto product = [&](const std::vector<double>& at) {
            double value = constant;
            for (const auto& [unknown, power] : powers)
                value *= std::pow(Mounted(at, unknown), power);
            return value;
        };
        bool isHeld = false;
        for (const auto& [unknown, power] : powers) {
            AddSlope(slope, unknown, power);
            isHeld = isHeld || !Model.Unknowns()[static_cast<std::size_t>(unknown)].Free;
        }
        const double half = standardDeviations * std::sqrt(std::max(0.0, Variance(slope)));
        Estimate estimate{product(x), 0.0, 0.0, isHeld || !(half < undeterminedWidth)};
        estimate.Low = estimate.Actual * std::exp(-half);
        estimate.High = estimate.Actual * std::exp(half);
        for (const BoardState& other : Solution.Equals) {
            const double there = product(other.X);
            if (!(there > estimate.Low && there < estimate.High)) estimate.Undetermined = true;
        }
        return estimate;
    }
};

/// Learns from the data how good the analyser's calibration was: the sum of squares of its errors
/// over the number of those that the data tell (MacKay, "Bayesian interpolation", Neural
/// Computation 4 (1992), eq. 4.2 ff.), three errors of the usual size taken for granted.
void LearnCalibration(BoardExplanation& found) {
    constexpr BoardStage stage{true, 0.0, 6, 1e-5};
    constexpr double least = 2e-4, most = 5e-3;
    constexpr double granted = 3.0;
    const BoardFit fit(*found.Model, found.Data);
    const std::vector<double>& x = found.Solution.State.X;
    const std::vector<double> covariance = fit.Covariance(x);
    double sum = granted * UsualCalibrationSpread * UsualCalibrationSpread, told = granted;
    for (std::size_t i = 0; i < x.size(); ++i) {
        const BoardUnknown& unknown = found.Model->Unknowns()[i];
        if (unknown.Kind != BoardUnknownKind::Calibration) continue;
        sum += x[i] * x[i];
        told += 1.0 - covariance[i * x.size() + i] / (unknown.Spread * unknown.Spread);
    }
    found.Model->SetCalibrationSpread(std::clamp(std::sqrt(sum / told), least, most));
    found.Solution.State = fit.Improved(std::move(found.Solution.State), stage);
    found.Solution.Excess = std::sqrt(found.Solution.State.Misfit / fit.Count());
}

std::vector<BoardPart> PartsOf(const Fitted& fitted, const DesignState& design) {
    std::vector<BoardPart> parts;
    const auto names = DesignatorsOf(design);
    const std::vector<double>& x = fitted.Solution.State.X;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
        for (int row = 0; row < 4; ++row) {
            const int unknown = fitted.Model.ValueAt({slot, row});
            if (unknown < 0) continue;
            BoardPart part{names[slot][row],
                           {slot, row},
                           InfoOf(design.Elements[slot].Type).Values[row],
                           design.Elements[slot].Value(row),
                           fitted.Of({{unknown, 1.0}}, 1.0),
                           {}};
            const auto next = static_cast<std::size_t>(unknown) + 1;
            if (fitted.Model.Unknowns()[next].Kind == BoardUnknownKind::CoilLoss &&
                x[next] > noLoss)
                part.Q = 1.0 / x[next];
            parts.push_back(std::move(part));
        }
    }
    return parts;
}

std::vector<BoardResonator> ResonatorsOf(const Fitted& fitted, const DesignState& design) {
    std::vector<BoardResonator> resonators;
    const auto names = DesignatorsOf(design);
    for (const BoardModel::Resonator& tank : fitted.Model.Resonators()) {
        const auto placeOf = [&](int unknown) -> const BoardUnknown& {
            return fitted.Model.Unknowns()[static_cast<std::size_t>(unknown)];
        };
        const auto nominal = [&](int unknown) {
            return design.Elements[placeOf(unknown).Slot].Value(placeOf(unknown).Row);
        };
        const auto name = [&](int unknown) {
            return names[placeOf(unknown).Slot][placeOf(unknown).Row];
        };
        resonators.push_back(
            {tank.Slot, name(tank.Coil) + " " + name(tank.Capacitor),
             OneOverTwoPi / std::sqrt(nominal(tank.Coil) * nominal(tank.Capacitor)),
             fitted.Of({{tank.Coil, -0.5}, {tank.Capacitor, -0.5}}, OneOverTwoPi)});
    }
    return resonators;
}

/// What a board is called that has no gross fault.
std::string TextOf(const BoardReading& reading) {
    const auto& parts = reading.Parts;
    const auto& tanks = reading.Resonators;
    const bool part = std::any_of(parts.begin(), parts.end(),
                                  [](const auto& one) { return !one.Value.Undetermined; });
    const bool tank = std::any_of(tanks.begin(), tanks.end(),
                                  [](const auto& one) { return !one.Tuning.Undetermined; });
    return part ? "understood" : tank ? ResonancesToldText : NothingToldText;
}

/// Whether the data show another filter: several parts are far from what the design has, and none
/// that is told is near. The few resonances of another filter can be fitted to the noise by parts
/// that they leave free and others far off.
bool ShowAnother(const std::vector<BoardPart>& parts) {
    const auto near = [](const BoardPart& part) {
        return part.Value.Low < part.Nominal * ownPart && part.Value.High > part.Nominal / ownPart;
    };
    const auto far = std::count_if(parts.begin(), parts.end(), std::not_fn(near));
    return far > 1 && std::none_of(parts.begin(), parts.end(), [&](const BoardPart& part) {
               return !part.Value.Undetermined && near(part);
           });
}

/// One Q for all coils: their losses averaged by how well each is told.
std::optional<double> QOf(const Fitted& fitted) {
    double sum = 0.0, weights = 0.0;
    const std::size_t n = fitted.Model.Unknowns().size();
    for (std::size_t i = 0; i < n; ++i) {
        const BoardUnknown& unknown = fitted.Model.Unknowns()[i];
        if (unknown.Kind != BoardUnknownKind::CoilLoss) continue;
        const double variance =
            unknown.Free ? fitted.Covariance[i * n + i] : unknown.Spread * unknown.Spread;
        const double weight = 1.0 / std::max(variance, leastResidual);
        sum += weight * fitted.Solution.State.X[i];
        weights += weight;
    }
    if (!(sum > noLoss * weights)) return {};
    return weights / sum;
}

void SetResidual(BoardReading& reading, const Residuals& residuals, const BoardData& data) {
    double sum = 0.0, worst = -1.0;
    const auto there = std::count(data.IsThere.begin(), data.IsThere.end(), true);
    for (std::size_t i = 0; i < residuals.size(); ++i) {
        double square = 0.0;
        for (const Complex& residual : residuals[i])
            square += std::norm(residual);
        if (square > worst) worst = square, reading.ResidualAt = data.Hz[i];
        sum += square;
    }
    const double mean = sum / (static_cast<double>(there) * static_cast<double>(residuals.size()));
    reading.ResidualDb = 10.0 * std::log10(std::max(mean, leastResidual));
}

bool CanBeRead(const BoardData& data, const DesignState& design) {
    if (data.Hz.size() < LeastBoardPoints || SlotsInUse(design) < 1) return false;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        for (int row = 0; row < 4; ++row)
            if (InfoOf(design.Elements[slot].Type).Values[row] != ValueKind::Unused &&
                !(design.Elements[slot].Value(row) >= 0.0 &&
                  design.Elements[slot].Value(row) < NotUsedLimit))
                return false;
    for (const auto& point : data.S)
        for (const Complex& s : point)
            if (!std::isfinite(s.real()) || !std::isfinite(s.imag())) return false;
    return data.Ports.Source > 0.0 && data.Ports.Load > 0.0 && design.F0 > 0.0;
}

}  // namespace

const char* NameOf(FaultKind kind) {
    switch (kind) {
        case FaultKind::Missing:
            return "missing";
        case FaultKind::Shorted:
            return "shorted";
        case FaultKind::Swapped:
            return "swapped";
        case FaultKind::Tenth:
            return "tenth";
        case FaultKind::TenTimes:
            return "ten-times";
        case FaultKind::PortsSwapped:
            return "ports-swapped";
    }
    return "";
}

BoardReading ReadBoard(const NetworkData& network, const FilterDesign& design,
                       const BoardOptions& options) {
    BoardReading reading;
    reading.Text = NotUnderstoodText;
    const BoardData data = DataOfNetwork(network, design);
    if (!CanBeRead(data, design)) return reading;
    BoardExplanation found = Explain(design, data, options.Freedom, options.Progress);
    const bool understood = found.Holds() && found.Suspicion.empty();
    if (understood) {
        LearnCalibration(found);
        const bool turned =
            found.Data.Turned;  // and once more on more points, which are less noise
        found.Data = DataOfNetwork(network, design, MostFinalPoints);
        found.Data.Turned = turned;
        LearnCalibration(found);
    }
    const BoardFit fit(*found.Model, found.Data);
    const std::vector<double>& x = found.Solution.State.X;
    const Residuals residuals = fit.Residuals(x);
    SetResidual(reading, residuals, found.Data);
    reading.Excess = found.Solution.Excess;
    reading.Understood = understood;
    if (!found.Suspicion.empty()) reading.Text = SeveralFaultsText + found.Suspicion;
    if (!reading.Understood) return reading;
    reading.Fault = found.Fault;
    Fitted fitted{*found.Model, found.Solution, fit.Covariance(x)};
    const double factor = VarianceFactor(residuals, found.Data);
    for (double& entry : fitted.Covariance)
        entry *= factor;
    reading.Parts = PartsOf(fitted, design);
    if (found.Fault &&
        (found.Fault->Kind == FaultKind::Missing || found.Fault->Kind == FaultKind::Shorted))
        for (BoardPart& part : reading.Parts)
            for (const PartPlace& place : found.Fault->Places)
                if (part.Place == place) part.Value.Undetermined = true;
    if (ShowAnother(reading.Parts)) {
        BoardReading refused;
        refused.Text = NotUnderstoodText;
        refused.ResidualDb = reading.ResidualDb;
        refused.ResidualAt = reading.ResidualAt;
        refused.Excess = reading.Excess;
        return refused;
    }
    reading.Resonators = ResonatorsOf(fitted, design);
    reading.Text = found.Fault ? found.Fault->Text : TextOf(reading);
    reading.Q = QOf(fitted);
    std::size_t port = 0;
    for (std::size_t i = 0; i < x.size(); ++i)
        if (found.Model->Unknowns()[i].Kind == BoardUnknownKind::PortDelay)
            reading.PortDelay[port++] = x[i];
    if (!found.Fault)
        reading.Next = TurnsFor(design, *found.Model, x, data.Hz, reading.Parts, options);
    return reading;
}

ElementList MeasuredLadder(const BoardReading& reading, const DesignState& design) {
    ElementList ladder = design.Elements;
    for (const BoardPart& part : reading.Parts)
        if (!part.Value.Undetermined)
            ladder[part.Place.Slot].Value(part.Place.Row) = part.Value.Actual;
    return ladder;
}

}  // namespace ladderwise
