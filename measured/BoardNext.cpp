// One-dimensional searches over each part that can be adjusted.
#include "measured/BoardNext.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <optional>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr double largestChange = 0.25;
constexpr double aimDepthDb = 6.0;
constexpr double edgeDepthDb = 3.0103;
constexpr std::size_t aimPoints = 60, limitPoints = 24;
constexpr int coarseSteps = 5;   // to either side
constexpr int refinements = 10;  // of a golden section
constexpr std::size_t mostTurns = 4;
constexpr double leastGainDb = 0.02;
constexpr double compensatingShare = 0.8;  // what help by turning a good part counts for
constexpr double delayStep = 1e-4;         // relative
constexpr double delayDb = 10.0;  // dB that a delay variation of all that is allowed counts for
constexpr double goldenShare = 0.6180339887498949;

double LevelOf(const BoardModel& model, std::span<const double> x, double f) {
    return 20.0 * std::log10(std::abs(model.At(x, f, nullptr, true).S21) + 1e-50);
}

/// How far a board is from its aim, dB; small is good. From `enough` upwards it need not be exact:
/// whoever looks for the least does not want to know how much farther others are.
using Distance = std::function<double(std::span<const double>, double enough)>;
constexpr double exactly = std::numeric_limits<double>::infinity();

double DelayAt(const BoardModel& model, std::span<const double> x, double f) {
    const Complex above = model.At(x, f * (1.0 + delayStep), nullptr, true).S21;
    const Complex below = model.At(x, f * (1.0 - delayStep), nullptr, true).S21;
    return -std::arg(above / below) / (TwoPi * f * 2.0 * delayStep);
}

/// The margin that a board has to one limit, dB.
double MarginTo(const LimitLine& line, const BoardModel& model, std::span<const double> x) {
    double worst = std::numeric_limits<double>::infinity(), least = worst, most = -worst;
    for (std::size_t i = 0; i < limitPoints; ++i) {
        const double from = std::max(line.From, 1.0);
        const double f = from * std::pow(std::max(line.To, from) / from,
                                         static_cast<double>(i) / (limitPoints - 1));
        switch (line.Kind) {
            case LimitKind::AttenMin:
                worst = std::min(worst, -LevelOf(model, x, f) - line.Value);
                break;
            case LimitKind::AttenMax:
                worst = std::min(worst, line.Value + LevelOf(model, x, f));
                break;
            case LimitKind::ReturnLossMin:
                worst = std::min(
                    worst, -20.0 * std::log10(std::abs(model.At(x, f, nullptr, true).S11) + 1e-50) -
                               line.Value);
                break;
            case LimitKind::DelayVariationMax: {
                const double delay = DelayAt(model, x, f);
                least = std::min(least, delay);
                most = std::max(most, delay);
                worst = delayDb * (1.0 - (most - least) / line.Value);
                break;
            }
        }
    }
    return worst;
}

/// The nominal ladder with the losses that were found, which nobody can turn away, and with the
/// coils' capacitance and the capacitors' inductance that the design counts on: none if it is
/// ideal.
std::vector<double> AimOf(const FilterDesign& design, const BoardModel& board,
                          std::span<const double> x) {
    const bool ideal = design.PartModel.Choice == PartChoice::IdealParts;
    std::vector<double> aim = board.Means();
    for (std::size_t i = 0; i < aim.size(); ++i) {
        switch (board.Unknowns()[i].Kind) {
            case BoardUnknownKind::CoilLoss:
            case BoardUnknownKind::CapacitorResistance:
                aim[i] = x[i];
                break;
            case BoardUnknownKind::CoilCapacitance:
            case BoardUnknownKind::CapacitorInductance:
                if (ideal) aim[i] = 0.0;
                break;
            case BoardUnknownKind::Pad:
            case BoardUnknownKind::Via:
                aim[i] = 0.0;
                break;
            case BoardUnknownKind::Value:
            case BoardUnknownKind::PortDelay:
            case BoardUnknownKind::Calibration:
                break;
        }
    }
    return aim;
}

Distance DistanceTo(const FilterDesign& design, const BoardModel& board, std::span<const double> x,
                    const std::vector<double>& freqs, const LimitLines& limits) {
    if (!limits.empty())
        return [&board, limits](std::span<const double> at, double enough) {
            double worst = std::numeric_limits<double>::infinity();
            for (std::size_t i = 0; i < limits.size() && -worst < enough; ++i)
                worst = std::min(worst, MarginTo(limits[i], board, at));
            return -worst;
        };
    const std::vector<double> aim = AimOf(design, board, x);
    std::vector<double> levels;
    for (const double f : freqs)
        levels.push_back(LevelOf(board, aim, f));
    const double peak = *std::max_element(levels.begin(), levels.end());
    std::vector<std::pair<double, double>> points;
    for (std::size_t i = 0; i < freqs.size(); ++i)
        if (levels[i] > peak - aimDepthDb) points.emplace_back(freqs[i], levels[i]);
    const std::size_t stride = std::max<std::size_t>(1, points.size() / aimPoints);
    std::vector<std::pair<double, double>> few;
    for (std::size_t i = 0; i < points.size(); i += stride)
        few.push_back(points[i]);
    // The last board's worst point, likely the next one's too, comes first.
    return [&board, few](std::span<const double> at, double enough) mutable {
        double worst = 0.0;
        std::size_t worstPoint = 0;
        for (std::size_t i = 0; i < few.size() && worst < enough; ++i) {
            const auto& [f, level] = few[i];
            const double away = std::fabs(LevelOf(board, at, f) - level);
            if (away > worst) worst = away, worstPoint = i;
        }
        if (!few.empty()) std::swap(few.front(), few[worstPoint]);
        return worst;
    };
}

/// The unknowns with a part of another value as mounted.
std::vector<double> Turned(const BoardModel& board, std::span<const double> x,
                           const BoardPart& part, double change) {
    std::vector<double> turned(x.begin(), x.end());
    const int unknown = board.ValueAt(part.Place);
    const auto at = static_cast<std::size_t>(unknown);
    const double own = board.Nominal(unknown) * std::exp(x[at]);
    const int with = board.MountedWith(unknown);
    const double extra = with < 0 ? 0.0 : board.Whole(x, with);
    const double next = std::max((own + extra) * (1.0 + change) - extra, 0.01 * own);
    turned[at] = std::log(next / board.Nominal(unknown));
    return turned;
}

struct Best {
    double Change = 0.0;
    double Distance = std::numeric_limits<double>::infinity();
};

/// The change that brings a part's board nearest: a coarse scan, then a golden section.
Best BestChange(const std::function<double(double, double)>& distance) {
    Best best;
    const auto look = [&](double change, double enough) {
        const double here = distance(change, enough);
        if (here < best.Distance) best = {change, here};
        return here;
    };
    constexpr double step = largestChange / coarseSteps;
    for (int i = -coarseSteps; i <= coarseSteps; ++i)
        look(i * step, best.Distance);
    double low = std::max(best.Change - step, -largestChange);
    double high = std::min(best.Change + step, largestChange);
    double a = high - goldenShare * (high - low), b = low + goldenShare * (high - low);
    // Of two changes the one that is nearer stays, so that its distance is always exact.
    double atA = look(a, exactly), atB = look(b, atA);
    for (int i = 0; i < refinements; ++i) {
        if (atA < atB) {
            high = b, b = a, atB = atA;
            atA = look(a = high - goldenShare * (high - low), atB);
        } else {
            low = a, a = b, atA = atB;
            atB = look(b = low + goldenShare * (high - low), atA);
        }
    }
    return best;
}

/// Where the level leaves the band, on its upper side or its lower one, between the frequencies;
/// nothing if it does not.
std::optional<double> EdgeOf(const BoardModel& board, std::span<const double> x,
                             const std::vector<double>& freqs, bool upper) {
    std::vector<double> levels;
    for (const double f : freqs)
        levels.push_back(LevelOf(board, x, f));
    const double depth = *std::max_element(levels.begin(), levels.end()) - edgeDepthDb;
    const std::size_t last = freqs.size() - 1;
    for (std::size_t k = 0; k < last; ++k) {
        const std::size_t inner = upper ? last - 1 - k : k + 1, outer = upper ? last - k : k;
        if (!(levels[inner] >= depth && levels[outer] < depth)) continue;
        double in = freqs[inner], out = freqs[outer];
        for (int i = 0; i < 40; ++i) {
            const double middle = 0.5 * (in + out);
            (LevelOf(board, x, middle) >= depth ? in : out) = middle;
        }
        return in;
    }
    return {};
}

/// "L3 4.1 % high: lower it by 3.9 % (spread its turns); the -3 dB edge moves up 90 kHz"
std::string WordsOf(const BoardTurn& turn, const BoardPart& part, double moved,
                    const std::string& edge) {
    const double off = 100.0 * part.Deviation();
    const bool raise = turn.Change > 0.0;
    std::string text = turn.Designator;
    if (!part.Value.Undetermined && std::fabs(off) >= 0.05)
        text += " " + FormatFixed(std::fabs(off), 1) + (off > 0.0 ? " % high" : " % low");
    text += std::string(": ") + (raise ? "raise" : "lower") + " it by " +
            FormatFixed(std::fabs(100.0 * turn.Change), 1) + " %";
    if (part.Kind == ValueKind::Inductance)
        text += raise ? " (squeeze its turns)" : " (spread its turns)";
    if (moved != 0.0)
        text += "; the " + edge + " moves " + (moved > 0.0 ? "up " : "down ") +
                FormatWithPrefix(std::fabs(moved), 1, "Hz");
    return text;
}

/// True if a change brings a part no nearer to its nominal value.
bool LeadsAway(const BoardPart& part, double change) {
    const double off = part.Deviation();
    return std::fabs((1.0 + off) * (1.0 + change) - 1.0) >= std::fabs(off);
}

bool CanTurn(const BoardPart& part, Adjustable what) {
    switch (what) {
        case Adjustable::Coils:
            return part.Kind == ValueKind::Inductance;
        case Adjustable::Capacitors:
            return part.Kind == ValueKind::Capacitance;
        case Adjustable::Any:
            return IsPart(part.Kind);
    }
    return false;
}

}  // namespace

std::vector<BoardTurn> TurnsFor(const FilterDesign& design, const BoardModel& fitted,
                                std::span<const double> x, const std::vector<double>& freqs,
                                const std::vector<BoardPart>& parts, const BoardOptions& options) {
    BoardModel board = fitted;
    board.SetPorts({design.RSource, design.RLoad});
    const Distance distance = DistanceTo(design, board, x, freqs, options.Limits);
    const bool upper = design.PassType != PassType::HighPass;
    const std::string edge = !HasBandWidth(design.PassType) ? "-3 dB edge" : "upper -3 dB edge";
    std::vector<double> now(x.begin(), x.end());
    std::vector<BoardTurn> turns;
    std::vector<bool> done(parts.size(), false);
    while (turns.size() < mostTurns) {
        const double before = distance(now, exactly);
        Best best;
        double mostGain = leastGainDb;
        std::size_t which = parts.size();
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (done[i] || parts[i].Value.Undetermined || !CanTurn(parts[i], options.Turned))
                continue;
            const Best found = BestChange([&](double change, double enough) {
                return distance(Turned(board, now, parts[i], change), enough);
            });
            // Of two parts that help about alike the one that is off is to blame.
            const double gain =
                (before - found.Distance) *
                (options.Limits.empty() && LeadsAway(parts[i], found.Change) ? compensatingShare
                                                                             : 1.0);
            if (gain > mostGain) mostGain = gain, best = found, which = i;
        }
        if (which == parts.size()) break;
        done[which] = true;
        const auto edgeBefore = EdgeOf(board, now, freqs, upper);
        now = Turned(board, now, parts[which], best.Change);
        const auto edgeAfter = EdgeOf(board, now, freqs, upper);
        BoardTurn turn{
            parts[which].Designator, parts[which].Place, best.Change, before - best.Distance, {}};
        const double moved = edgeBefore && edgeAfter && design.PassType != PassType::Notch
                                 ? *edgeAfter - *edgeBefore
                                 : 0.0;
        turn.Text = WordsOf(turn, parts[which], moved, edge);
        turns.push_back(std::move(turn));
    }
    return turns;
}

}  // namespace ladderwise
