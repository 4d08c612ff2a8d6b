// De-embedding, preferred numbers and random draws of part values.
#include "analysis/PartValues.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

namespace {

constexpr std::array<double, NumStandardValues> MakeStandardValues() {
    // IEC 60063, "Preferred number series for resistors and capacitors", table 1.
    constexpr std::array<double, 25> e24 = {1.0, 1.1, 1.2, 1.3, 1.5, 1.6, 1.8, 2.0, 2.2,
                                            2.4, 2.7, 3.0, 3.3, 3.6, 3.9, 4.3, 4.7, 5.1,
                                            5.6, 6.2, 6.8, 7.5, 8.2, 9.1, 10.0};
    std::array<double, NumStandardValues> values{};
    for (std::size_t i = 0; i + 1 < e24.size(); ++i) {
        const double a = e24[i];
        const double b = e24[i + 1];
        values[4 * i] = a;
        values[4 * i + 1] = a + (b - a) / 4;
        values[4 * i + 2] = a + (b - a) / 2;
        values[4 * i + 3] = a + 3 * (b - a) / 4;
    }
    for (std::size_t i = 4 * (e24.size() - 1); i < values.size(); ++i)
        values[i] = 10.0;
    return values;
}

// A tolerance that the user can choose, and the stride that visits its preferred numbers.
struct ToleranceChoice {
    int Percent;
    double Fraction;
    int Stride;
};

constexpr ToleranceChoice toleranceChoices[] = {
    {10, 0.1, 8}, {5, 0.05, 4}, {2, 0.02, 2}, {1, 0.01, 1}};

std::string PercentText(double fraction) {
    return std::to_string(std::lround(100 * fraction)) + "%";
}

bool IsLineOnly(ElementType type) {
    return type == ElementType::SeriesTLIN || type == ElementType::ShuntTLSCTLOC ||
           type == ElementType::ShuntTLOC || type == ElementType::ShuntTLSC;
}

// Puts change(kind, value) in the place of every value that stands where an L or a C stands.
template <typename Change>
void ChangeParts(FilterDesign& design, const Change& change) {
    for (int k = 1; k <= design.NumElements; ++k) {
        CircuitElement& slot = design.Elements[k];
        if (IsLineOnly(slot.Type)) continue;
        if (slot.Type != ElementType::ShuntTLSCC) {
            slot.V1 = change(PartKind::Inductor, slot.V1);
            slot.V2 = change(PartKind::Capacitor, slot.V2);
        }
        if (slot.Type != ElementType::ShuntLTLOC) {
            slot.V3 = change(PartKind::Inductor, slot.V3);
            slot.V4 = change(PartKind::Capacitor, slot.V4);
        }
    }
}

/// The index of the first standard value that is not below x. Halving without branches, which no
/// processor foresees: lists of filters ask for millions.
int FirstNotBelow(double x) {
    const double* first = StandardValues.data();
    int count = NumStandardValues;
    while (count > 1) {
        const int half = count / 2;
        first += first[half - 1] < x ? half : 0;
        count -= half;
    }
    return static_cast<int>(first - StandardValues.data()) + (*first < x ? 1 : 0);
}

}  // namespace

const std::array<double, NumStandardValues> StandardValues = MakeStandardValues();

void DeEmbedParts(FilterDesign& design) {
    const double w02 = TwoPiSquared * (design.F0 * design.F0);
    const PartModel& model = design.PartModel;
    ChangeParts(design, [&](PartKind kind, double x) {
        const double parasitic = kind == PartKind::Inductor ? model.IndC : model.CapL;
        return x / (x * w02 * parasitic + 1);
    });
}

double SnapValue(const PartModel& model, PartKind kind, double x) {
    if (!(x > 0) || x > NotUsedLimit) return x;
    const int stride =
        std::max(1, kind == PartKind::Inductor ? model.IndSeriesStep : model.CapSeriesStep);
    // Ties and the last bit of the result depend on reaching the decade step by step.
    double multiplier = 1;
    if (x <= 1) {
        while (x < 1) {
            x = 10 * x;
            multiplier = 0.1 * multiplier;
        }
    } else {
        while (x > 10) {
            x = 0.1 * x;
            multiplier = 10 * multiplier;
        }
    }
    // The series rises: of its values the nearest is the last below x or the next one; of two as
    // near the lower.
    const int index = FirstNotBelow(x);
    const int next = (index + stride - 1) / stride * stride;
    const auto valueAt = [](int i) { return StandardValues[static_cast<std::size_t>(i)]; };
    double nearest = valueAt(std::max(next - stride, 0));
    if (next < NumStandardValues && std::abs(x - valueAt(next)) < std::abs(x - nearest))
        nearest = valueAt(next);
    return nearest * multiplier;
}

void SnapToStdValue(FilterDesign& design) {
    ChangeParts(design, [&design](PartKind kind, double x) {
        return SnapValue(design.PartModel, kind, x);
    });
}

void SetTolerance(PartModel& model, PartKind kind, int percent) {
    for (const ToleranceChoice& choice : toleranceChoices) {
        if (choice.Percent != percent) continue;
        const bool inductor = kind == PartKind::Inductor;
        (inductor ? model.IndTolerance : model.CapTolerance) = choice.Fraction;
        (inductor ? model.IndSeriesStep : model.CapSeriesStep) = choice.Stride;
    }
}

std::string ToleranceText(const PartModel& model) {
    return "C " + PercentText(model.CapTolerance) + "    L " + PercentText(model.IndTolerance);
}

int DrawToleranceStep(std::mt19937& generator) {
    return 100 - static_cast<int>(generator() % NumToleranceSteps);
}

}  // namespace ladderwise
