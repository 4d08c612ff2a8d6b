// Preferred numbers about a value, by their places in the table of one decade.
#include "boards/StandardSeries.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

namespace ladderwise {

namespace {

constexpr double sameSum = 1e-9;  ///< relative; two sums of decimal numbers that are one

int StrideOf(const PartModel& model, PartKind kind) {
    return std::max(1, kind == PartKind::Inductor ? model.IndSeriesStep : model.CapSeriesStep);
}

/// The values of a series between two values, both included as far as rounding lets them.
std::vector<double> SeriesBetween(const PartModel& model, PartKind kind, double low, double high) {
    std::vector<double> mantissas;
    for (int i = 0; i < NumStandardValues; i += StrideOf(model, kind)) {
        const double x = StandardValues[static_cast<std::size_t>(i)];
        if (x < 10.0) mantissas.push_back(x);
    }
    std::vector<double> values;
    const int first = static_cast<int>(std::floor(std::log10(low) + sameSum));
    const int last = static_cast<int>(std::floor(std::log10(high) + sameSum));
    for (int decade = first; decade <= last; ++decade)
        for (const double mantissa : mantissas) {
            const double value = SnapValue(model, kind, mantissa * std::pow(10.0, decade));
            if (value >= low * (1.0 - sameSum) && value <= high * (1.0 + sameSum))
                values.push_back(value);
        }
    std::sort(values.begin(), values.end());
    return values;
}

int IndexOf(const std::vector<SeriesValue>& choices, double value) {
    int nearest = 0;
    for (int i = 1; i < static_cast<int>(choices.size()); ++i)
        if (std::abs(choices[static_cast<std::size_t>(i)].Value - value) <
            std::abs(choices[static_cast<std::size_t>(nearest)].Value - value))
            nearest = i;
    return nearest;
}

void FillChoices(const PartModel& model, PartToChoose& part, int reach) {
    constexpr double decades = 100.0;  // more than the reach in the coarsest series
    const double nearest = SnapValue(model, part.Kind, part.Exact);
    const std::vector<double> series =
        SeriesBetween(model, part.Kind, nearest / decades, nearest * decades);
    std::vector<SeriesValue> all;
    for (const double value : series)
        all.push_back({value});
    const int at = IndexOf(all, nearest);
    const int first = std::max(0, at - reach);
    const int last = std::min(static_cast<int>(all.size()) - 1, at + reach);
    part.Choices.assign(all.begin() + first, all.begin() + last + 1);
    part.Nearest = at - first;
    part.Choices[static_cast<std::size_t>(part.Nearest)].Value = nearest;  // to the last bit
}

}  // namespace

std::vector<PartToChoose> PartsToChoose(const DesignState& exact, const std::vector<HeldPart>& held,
                                        int reach) {
    std::vector<PartToChoose> parts;
    for (const ValuePlace& place : ValuesInUse(exact)) {
        const CircuitElement& slot = exact.Elements[static_cast<std::size_t>(place.Slot)];
        const ValueKind kind = InfoOf(slot.Type).Values[static_cast<std::size_t>(place.Row)];
        const double value = slot.Value(place.Row);
        if (!IsPart(kind) || !(value > SmallestPartValue) || !(value < LargestRandomisedValue))
            continue;
        const bool coil = kind == ValueKind::Inductance;
        PartToChoose part;
        part.Place = place;
        part.Kind = coil ? PartKind::Inductor : PartKind::Capacitor;
        part.Exact = value;
        const auto found = std::find_if(held.begin(), held.end(), [&](const HeldPart& h) {
            return h.Place == place && h.HoldsValue();
        });
        part.Held = found != held.end();
        if (part.Held)
            part.Choices = {{found->Value}};
        else
            FillChoices(exact.PartModel, part, reach);
        parts.push_back(std::move(part));
    }
    return parts;
}

void AddPairs(const PartModel& model, std::vector<PartToChoose>& parts) {
    for (PartToChoose& part : parts) {
        if (part.Held || part.Kind != PartKind::Capacitor) continue;
        const double nearest = part.Choices[static_cast<std::size_t>(part.Nearest)].Value;
        const double low = (1.0 - PairReach) * part.Exact, high = (1.0 + PairReach) * part.Exact;
        std::vector<SeriesValue> all = part.Choices;
        const std::vector<double> series =
            SeriesBetween(model, part.Kind, 0.5 * SmallestOfPair * low, high);
        for (const double larger : series)
            for (const double smaller : series)
                if (smaller <= larger && smaller >= SmallestOfPair * larger &&
                    larger + smaller >= low && larger + smaller <= high)
                    all.push_back({larger + smaller, larger, smaller});
        std::sort(all.begin(), all.end(), [](const SeriesValue& a, const SeriesValue& b) {
            return std::tie(a.Value, a.Larger) < std::tie(b.Value, b.Larger);
        });
        part.Choices.clear();
        for (const SeriesValue& value : all) {
            const bool isNew =
                part.Choices.empty() || value.Value > part.Choices.back().Value * (1.0 + sameSum);
            if (isNew)
                part.Choices.push_back(value);
            else if (!value.IsPair())
                part.Choices.back() = value;
        }
        part.Nearest = IndexOf(part.Choices, nearest);
    }
}

}  // namespace ladderwise
