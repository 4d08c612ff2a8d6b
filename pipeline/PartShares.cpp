// Linear shares by the adjoint, and by samples where a response has no slope.
#include "pipeline/PartShares.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <memory>
#include <random>
#include <utility>

#include "analysis/BoardDraws.h"
#include "analysis/Circuitanalysis.h"
#include "analysis/PartValues.h"
#include "analysis/ResponseSamples.h"
#include "analysis/Sensitivities.h"
#include "design/Designators.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr double percentOfValue = 0.01;
constexpr int sampledBoards = 1000;
constexpr std::uint32_t boardSeed = 1;
constexpr int stepStride = 5;  ///< of the tolerance steps of a part that is varied alone
constexpr double enoughOfSpread = 0.5;
constexpr double noSpreadDb = 1e-9;  ///< a standard deviation below this is rounding
constexpr double delayStepInLn = 1e-4;
constexpr double sameFrequency = 1e-9;  ///< relative

/// A quantity at a frequency, dB.
struct WatchedPlace {
    double At = 0.0;
    LimitKind Kind = LimitKind::AttenMin;  ///< attenuation, return loss or delay variation
    LimitLine Line{};                      ///< of a delay variation

    double Of(const FilterDesign& design) const {
        switch (Kind) {
            case LimitKind::AttenMin:
            case LimitKind::AttenMax:
                return -LevelAt(design, At);
            case LimitKind::ReturnLossMin:
                return -ReflectionAt(design, At);
            case LimitKind::DelayVariationMax:
                break;
        }
        constexpr double tenth = 10.0;
        return -tenth * JudgeLimits(design, {Line}).Rows.front().Margin / Line.Value;
    }
};

std::vector<WatchedPlace> PlacesToWatch(const FilterDesign& design, const ResponseResults& results,
                                        const LimitReport& limits) {
    if (const LimitMargin* const tightest = limits.Tightest())
        return {{tightest->At, tightest->Line.Kind, tightest->Line}};
    std::vector<WatchedPlace> places;
    const auto add = [&](double f) {
        for (const WatchedPlace& place : places)
            if (std::abs(place.At - f) <= sameFrequency * f) return;
        places.push_back({f});
    };
    if (design.PassType != PassType::Notch) add(design.F0);
    for (const auto& edge : {results.Edges.Lower, results.Edges.Upper})
        if (edge) add(*edge);
    return places;
}

struct Spread {
    double First = 0.0, Sum = 0.0, Squares = 0.0;
    int Count = 0;

    /// Counted from the first: of levels themselves, the difference of their squares would be
    /// their rounding, of which the root is a millionth of a dB.
    void Take(double x) {
        if (!std::isfinite(x)) return;
        if (Count == 0) First = x;
        Sum += x - First, Squares += (x - First) * (x - First), ++Count;
    }
    double Deviation() const {
        if (Count == 0) return 0.0;
        const double mean = Sum / Count;
        return std::sqrt(std::max(0.0, Squares / Count - mean * mean));
    }
};

class ShareFinder {
public:
    explicit ShareFinder(const FilterDesign& given)
        : nominal(given), places(ValuesInUse(given)), work(std::make_unique<FilterDesign>(given)) {
        for (const ValuePlace& place : places)
            tolerances.push_back(SpreadAt(given, place));
    }

    void At(const WatchedPlace& watched, std::vector<PartShare>& shares) {
        std::vector<double> slopes = SlopesAt(watched);
        bool bySamples = false;
        const double linear = Deviation(slopes);
        if (watched.Kind != LimitKind::DelayVariationMax) {
            const double sampled = SampledDeviation(watched);
            bySamples = sampled > noSpreadDb && !(linear >= enoughOfSpread * sampled);
        }
        if (bySamples) slopes = SampledSlopes(watched);
        Emit(watched, slopes, bySamples, shares);
    }

private:
    double& ValueOf(const ValuePlace& place) {
        return work->Elements[static_cast<std::size_t>(place.Slot)].Value(place.Row);
    }

    /// The watched quantity with one value multiplied by `factor`.
    double With(const WatchedPlace& watched, const ValuePlace& place, double factor) {
        double& value = ValueOf(place);
        const double kept = value;
        value *= factor;
        const double result = watched.Of(*work);
        value = kept;
        return result;
    }

    std::vector<double> SlopesAt(const WatchedPlace& watched) {
        std::vector<double> slopes(places.size());
        if (watched.Kind == LimitKind::DelayVariationMax) {
            const double up = std::exp(delayStepInLn);
            for (std::size_t i = 0; i < places.size(); ++i)
                slopes[i] = (With(watched, places[i], up) - With(watched, places[i], 1.0 / up)) /
                            (2.0 * delayStepInLn);
            return slopes;
        }
        const bool reflected = watched.Kind == LimitKind::ReturnLossMin;
        const LadderSlopes all = SlopesOf(nominal, {&watched.At, 1}, reflected);
        for (std::size_t i = 0; i < places.size(); ++i)
            slopes[i] = reflected ? all.ReturnLossOf(i)[0] : all.AttenuationOf(i)[0];
        return slopes;
    }

    /// Of the watched quantity by its slopes, dB; NaN if one is none.
    double Deviation(const std::vector<double>& slopes) const {
        double squares = 0.0;
        for (std::size_t i = 0; i < slopes.size(); ++i)
            if (tolerances[i] > 0.0) squares += std::pow(slopes[i] * tolerances[i], 2);
        return DeviationOfDraw(nominal.Boards) * std::sqrt(squares);
    }

    double SampledDeviation(const WatchedPlace& watched) {
        std::mt19937 generator(boardSeed);
        BoardDrawer drawer(nominal);
        Spread spread;
        for (int board = 0; board < sampledBoards; ++board) {
            drawer.Draw(generator, *work);
            spread.Take(watched.Of(*work));
        }
        work->Elements = nominal.Elements;
        return spread.Deviation();
    }

    /// Slopes that would make the deviations which the parts make one by one.
    std::vector<double> SampledSlopes(const WatchedPlace& watched) {
        std::vector<double> slopes(places.size(), 0.0);
        constexpr int most = NumToleranceSteps / 2;
        for (std::size_t i = 0; i < places.size(); ++i) {
            if (tolerances[i] == 0.0) continue;
            Spread spread;
            for (int step = -most; step <= most; step += stepStride)
                spread.Take(With(watched, places[i], 1.0 + tolerances[i] * step / most));
            slopes[i] = spread.Deviation() / (tolerances[i] * DeviationOfDraw({}));
        }
        return slopes;
    }

    void Emit(const WatchedPlace& watched, const std::vector<double>& slopes, bool bySamples,
              std::vector<PartShare>& shares) const {
        const auto names = DesignatorsOf(nominal);
        const double deviation = Deviation(slopes);
        const double squares = std::pow(deviation / DeviationOfDraw(nominal.Boards), 2);
        for (std::size_t i = 0; i < places.size(); ++i) {
            const auto& [slot, row] = places[i];
            const double part = std::pow(slopes[i] * tolerances[i], 2);
            const bool counts = tolerances[i] > 0.0 && deviation > noSpreadDb;
            shares.push_back({names[static_cast<std::size_t>(slot)][static_cast<std::size_t>(row)],
                              slot, row, counts ? part / squares : 0.0, slopes[i] * percentOfValue,
                              watched.At, bySamples, tolerances[i]});
        }
    }

    const FilterDesign& nominal;
    std::vector<ValuePlace> places;
    std::vector<double> tolerances;
    std::unique_ptr<FilterDesign> work;
};

constexpr int shareDigits = 1;
constexpr int slopeDigits = 3;
constexpr int spreadDigits = 2;
constexpr int valueDigitsAfterFirst = 2;
constexpr double hundred = 100.0;
constexpr double deviationsShown = 2.0;
constexpr double onePercent = 0.01;

bool IsAt(double a, double b) {
    return std::abs(a - b) <= sameFrequency * b;
}

/// What is looked at, and where: "attenuation at 13.2 MHz, -3 dB edge".
std::string PlaceText(const FilterDesign& design, const ResponseResults& results,
                      const LimitReport& limits, double at) {
    constexpr int digits = 4;
    const std::string frequency = FormatWithPrefix(at, digits, "Hz");
    if (const LimitMargin* const tightest = limits.Tightest()) {
        switch (tightest->Line.Kind) {
            case LimitKind::AttenMin:
            case LimitKind::AttenMax:
                return "attenuation at " + frequency + ", the tightest limit";
            case LimitKind::ReturnLossMin:
                return "return loss at " + frequency + ", the tightest limit";
            case LimitKind::DelayVariationMax:
                return "delay variation up to " + frequency + ", the tightest limit";
        }
    }
    for (const auto& edge : {results.Edges.Lower, results.Edges.Upper})
        if (edge && IsAt(at, *edge)) return "attenuation at " + frequency + ", -3 dB edge";
    return "attenuation at " + frequency + (IsAt(at, design.F0) ? ", Fo" : "");
}

/// Variance in dB^2 that a part of a tolerance makes.
double VarianceOf(const FilterDesign& design, const PartShare& share, double tolerance) {
    return std::pow(share.DbPerPercent * hundred * tolerance * DeviationOfDraw(design.Boards), 2);
}

std::string SpreadText(double variance) {
    return "\u00b1" +
           FormatFixed(deviationsShown * std::sqrt(std::max(0.0, variance)), spreadDigits) + " dB";
}

ShareRow RowOf(const FilterDesign& design, const PartShare& share, double variance, bool isDb) {
    const CircuitElement& slot = design.Elements[static_cast<std::size_t>(share.Slot)];
    const ValueKind kind = InfoOf(slot.Type).Values[static_cast<std::size_t>(share.Row)];
    ShareRow row;
    row.Share = share;
    row.Value = FormatWithPrefix(slot.Value(share.Row), valueDigitsAfterFirst, UnitOf(kind));
    if (share.Tolerance > 0.0) row.Tolerance = FormatPlain(hundred * share.Tolerance, 3) + " %";
    row.Percent = FormatFixed(hundred * share.Share, shareDigits) + " %";
    if (!isDb) return row;
    if (!share.BySamples) row.PerPercent = FormatFixed(share.DbPerPercent, slopeDigits) + " dB";
    if (share.Tolerance > onePercent)
        row.WithOne = SpreadText(variance - VarianceOf(design, share, share.Tolerance) +
                                 VarianceOf(design, share, onePercent));
    return row;
}

}  // namespace

std::vector<ShareTable> DescribeShares(const FilterDesign& design, const ResponseResults& results,
                                       const LimitReport& limits,
                                       const std::vector<PartShare>& shares) {
    const LimitMargin* const tightest = limits.Tightest();
    const bool isDb = !tightest || tightest->Line.Kind != LimitKind::DelayVariationMax;
    std::vector<ShareTable> tables;
    for (std::size_t first = 0, end = 0; first < shares.size(); first = end) {
        double variance = 0.0;
        for (end = first; end < shares.size() && shares[end].At == shares[first].At; ++end)
            variance += VarianceOf(design, shares[end], shares[end].Tolerance);
        ShareTable table;
        table.Place = PlaceText(design, results, limits, shares[first].At);
        if (isDb) table.Spread = "95 % of the boards lie within " + SpreadText(variance);
        if (shares[first].BySamples) table.Spread += ", by samples";
        for (std::size_t i = first; i < end; ++i)
            table.Rows.push_back(RowOf(design, shares[i], variance, isDb));
        std::stable_sort(
            table.Rows.begin(), table.Rows.end(),
            [](const ShareRow& a, const ShareRow& b) { return a.Share.Share > b.Share.Share; });
        tables.push_back(std::move(table));
    }
    return tables;
}

std::vector<PartShare> SharesOf(const FilterDesign& design, const ResponseResults& results,
                                const LimitReport& limits) {
    std::vector<PartShare> shares;
    if (!results.Valid) return shares;
    ShareFinder finder(design);
    for (const WatchedPlace& watched : PlacesToWatch(design, results, limits))
        finder.At(watched, shares);
    return shares;
}

}  // namespace ladderwise
