// Margins compared and put into words.
#include "limits/LimitMargin.h"

#include <algorithm>
#include <cmath>

#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int marginDecimals = 2;
constexpr int closeDecimals = 4;  // of a margin that two decimals would show as nothing

/// For comparing margins of both kinds: dB; of a delay variation ten times the share that is left.
double Comparable(const LimitMargin& margin) {
    constexpr double tenth = 10.0;
    return margin.Line.Kind == LimitKind::DelayVariationMax
               ? tenth * margin.Margin / margin.Line.Value
               : margin.Margin;
}

std::string AmountOf(const LimitMargin& margin) {
    const double shown = std::abs(margin.Margin) / UnitFactor(margin.Line.Kind);
    const int decimals = shown < CloseMarginDb ? closeDecimals : marginDecimals;
    return FormatFixed(shown, decimals) + " " + UnitOf(margin.Line.Kind);
}

}  // namespace

bool LimitReport::Met() const {
    return std::all_of(Rows.begin(), Rows.end(), [](const auto& row) {
        return row.Holds() && row.Reach == LimitReach::Whole;
    });
}

const LimitMargin* LimitReport::Tightest() const {
    const LimitMargin* tightest = nullptr;
    for (const LimitMargin& row : Rows)
        if (!tightest || !(Comparable(row) >= Comparable(*tightest))) tightest = &row;
    return tightest;
}

std::string VerdictOf(const LimitMargin& margin) {
    if (margin.Reach == LimitReach::Nothing) return "not measured there";
    if (std::isnan(margin.Margin)) return "cannot be judged";
    if (margin.Close()) return "holds by less than " + FormatPlain(CloseMarginDb, 1) + " dB";
    return (margin.Holds() ? "holds by " : "fails by ") + AmountOf(margin);
}

std::string TextOf(const LimitMargin& margin) {
    std::string text = VerdictOf(margin);
    if (std::isnan(margin.Margin)) return text;
    if (margin.Close()) text += " (" + AmountOf(margin) + ")";
    text += " at " + PlainFrequency(margin.At);
    return margin.Reach == LimitReach::Part ? text + ", as far as it is measured" : text;
}

std::string SummaryOf(const LimitReport& report) {
    const LimitMargin* const tightest = report.Tightest();
    if (!tightest) return {};
    if (report.Rows.size() == 1) return TextOf(*tightest);
    const auto count = [&](auto is) {
        return std::count_if(report.Rows.begin(), report.Rows.end(), is);
    };
    const auto failed = count([](const LimitMargin& row) { return row.Margin < 0.0; });
    const auto unjudged = count([](const LimitMargin& row) { return std::isnan(row.Margin); });
    const std::string all = std::to_string(report.Rows.size());
    if (unjudged == static_cast<long>(report.Rows.size())) return VerdictOf(report.Rows.front());
    const LimitMargin* worst = nullptr;
    for (const LimitMargin& row : report.Rows)
        if (!std::isnan(row.Margin) && (!worst || Comparable(row) < Comparable(*worst)))
            worst = &row;
    const std::string where = AmountOf(*worst) + " at " + PlainFrequency(worst->At);
    if (failed > 0)
        return std::to_string(failed) + " of " + all +
               (failed == 1 ? " fails by " : " fail, the worst by ") + where;
    if (unjudged > 0)
        return std::to_string(unjudged) + " of " + all + " not judged, the others hold by " + where;
    return "all hold by " + where;
}

}  // namespace ladderwise
