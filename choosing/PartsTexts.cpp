// Rows and sentences.
#include "choosing/PartsTexts.h"

#include <algorithm>
#include <numeric>

#include "design/ChoiceNames.h"
#include "limits/LimitTable.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

std::string Db(double db) {
    constexpr int decimals = 2;
    return FormatFixed(db, decimals) + " dB";
}

/// Without decimals where the share is all or none of them, with more where it would be told as
/// that.
std::string Percent(double share) {
    constexpr int mostDecimals = 4;
    if (share == 0.0 || share == 1.0) return FormatFixed(100.0 * share, 0);
    const auto text = [share](int decimals) { return FormatFixed(100.0 * share, decimals); };
    int decimals = 1;
    while (decimals < mostDecimals && (text(decimals) == FormatFixed(0.0, decimals) ||
                                       text(decimals) == FormatFixed(100.0, decimals)))
        ++decimals;
    return text(decimals);
}

std::string Hertz(double f) {
    constexpr int digits = 3;
    return FormatWithPrefix(f, digits - 1, "Hz");
}

/// "10 000"
std::string CountText(int count) {
    std::string text = std::to_string(count);
    constexpr std::size_t group = 3, fewest = 5;
    if (text.size() >= fewest) text.insert(text.size() - group, " ");
    return text;
}

/// "Butterworth", of " Pole Butterworth".
std::string ResponseName(const FilterDesign& design) {
    const ChoiceRow* const row = FindRow(ChoiceId::Response, static_cast<int>(design.ResponseType));
    const std::string title = row ? row->Title : "", pole = " Pole ";
    return title.compare(0, pole.size(), pole) == 0 ? title.substr(pole.size()) : title;
}

bool IsRippled(ResponseType type) {
    return type == ResponseType::Chebyshev || IsElliptic(type);
}

std::string SetText(const FilterDesign& design, const PartsChoice& choice) {
    switch (choice.Showing()) {
        case PartsChoice::Shown::Unchosen:
            return {};
        case PartsChoice::Shown::Nearest:
            return "each the nearest, until they are chosen";
        case PartsChoice::Shown::FirstAnswer:
            return "a first answer, until they are chosen";
        case PartsChoice::Shown::Choice:
            break;
    }
    switch (design.StdMethod) {
        case StdMethod::Nearest:
            return "each the nearest, but for held ones";
        case StdMethod::Together:
            return "chosen together";
        case StdMethod::Pairs:
            return "chosen together, with pairs";
        case StdMethod::Yield:
            return choice.Present()->ByYield ? "chosen for the highest yield" : "chosen together";
    }
    return {};
}

}  // namespace

std::string ShareText(const YieldResult& boards) {
    return Percent(boards.Share()) + " % (" + Percent(boards.Interval.Low) + " to " +
           Percent(boards.Interval.High) + ")";
}

std::string PairText(const PairedPart& pair) {
    constexpr int digits = 3;
    return FormatWithPrefix(pair.Larger, digits - 1, "F") + " and " +
           FormatWithPrefix(pair.Smaller, digits - 1, "F") + " in parallel";
}

std::string FailuresText(const YieldResult& boards, const LimitLines& limits) {
    const int failed = boards.Boards - boards.Passed;
    std::vector<std::size_t> order(boards.Failures.size());
    std::iota(order.begin(), order.end(), 0);
    std::stable_sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
        return boards.Failures[a] > boards.Failures[b];
    });
    std::string text;
    for (const std::size_t i : order) {
        if (boards.Failures[i] == 0) break;
        const double f = boards.FailureHz[i];
        text += (text.empty() ? "" : ", ") + FormatFixed(100.0 * boards.Failures[i] / failed, 0) +
                " % at " + (f > 0.0 ? Hertz(f) : ShortTextOf(limits[i]));
    }
    return text;
}

std::vector<ComparedResult> DescribeParts(const FilterDesign& design, const PartsChoice& choice) {
    const StandardParts* const parts = choice.Present();
    if (!parts || HasEdits(design)) return {};
    std::vector<ComparedResult> rows{{"standard values", SetText(design, choice), ""}};
    const bool chosen = choice.Showing() != PartsChoice::Shown::Nearest;
    if (!(parts->NearestDeviation >= 0.0)) return rows;  // no pass band
    std::string text = Db(chosen ? parts->ChosenDeviation : parts->NearestDeviation);
    if (chosen) text += " (nearest values " + Db(parts->NearestDeviation) + ")";
    rows.push_back({"off the exact response", text, ""});
    return rows;
}

std::vector<ComparedResult> DescribeBoards(const YieldWatch& yields, const LimitLines& limits) {
    const YieldResult* const boards = yields.Result();
    if (!boards || boards->Boards < 1) return {};
    std::vector<ComparedResult> rows{
        {"boards that pass", ShareText(*boards) + ", " + CountText(boards->Boards) + " built", ""}};
    if (yields.Nearest())
        rows.push_back({"with the nearest values", ShareText(*yields.Nearest()), ""});
    const std::string failures = FailuresText(*boards, limits);
    if (!failures.empty()) rows.push_back({"of the failures", failures, ""});
    const BoardVerdict& worst = boards->WorstVerdict;
    if (worst.Hz > 0.0)
        rows.push_back({"worst board",
                        (worst.Passes() ? "holds by " : "fails by ") +
                            Db(worst.Passes() ? worst.Margin : -worst.Margin) + " at " +
                            Hertz(worst.Hz),
                        ""});
    return rows;
}

double ShapeBoundDb(const FilterDesign& design) {
    constexpr double withoutRipple = 0.5;
    return IsRippled(design.ResponseType) ? std::max(design.RippleDb, LeastShapeDb) : withoutRipple;
}

std::optional<PartsRemark> ShapeRemark(const FilterDesign& design, const StandardParts& parts) {
    if (design.StdMethod == StdMethod::Nearest) return {};
    if (!(parts.ChosenDeviation > ShapeBoundDb(design))) return {};
    const bool vowel = std::string("AE").find(ResponseName(design).front()) != std::string::npos;
    return PartsRemark{"std",
                       "With these standard values the pass band is " + Db(parts.ChosenDeviation) +
                           " off: no longer " + (vowel ? "an " : "a ") + ResponseName(design) +
                           " response (nearest values: " + Db(parts.NearestDeviation) + ").",
                       true};
}

}  // namespace ladderwise
