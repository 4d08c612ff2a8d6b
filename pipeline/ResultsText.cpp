// Words for the figures of a finished design.
#include "pipeline/ResultsText.h"

#include <cmath>

#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int frequencyDigits = 4;  // after the first
constexpr int levelDecimals = 2;
constexpr double mostShownDb = 200.0;      // beyond it, rounding decides
constexpr double smallestShownDb = 0.005;  // would round to 0.00, or to -0.00 of a peak

std::string Db(double value) {
    if (value > mostShownDb) return "over " + FormatFixed(mostShownDb, 0) + " dB";
    if (std::abs(value) < smallestShownDb) value = 0.0;
    return FormatFixed(value, levelDecimals) + " dB";
}

std::string Hz(double f) {
    return FormatWithPrefix(f, frequencyDigits, "Hz");
}

std::string Pair(const std::optional<double>& lower, const std::optional<double>& upper) {
    return (lower ? Hz(*lower) : "none") + " and " + (upper ? Hz(*upper) : "none");
}

void AddEdges(const FilterDesign& design, const ResponseResults& results, ResultTexts& texts) {
    const ResponseEdges& edges = results.Edges;
    switch (design.PassType) {
        case PassType::LowPass:
            texts.emplace_back("-3 dB edge", edges.Upper ? Hz(*edges.Upper) : "none");
            return;
        case PassType::HighPass:
            texts.emplace_back("-3 dB edge", edges.Lower ? Hz(*edges.Lower) : "none");
            return;
        case PassType::BandPassCanonical:
        case PassType::Notch:
        case PassType::DirectCoupled:
        case PassType::Norton:
            texts.emplace_back("-3 dB edges", Pair(edges.Lower, edges.Upper));
            if (const auto width = edges.Width(design.PassType))
                texts.emplace_back("width", Hz(*width));
            return;
    }
}

std::string BandText(const FilterDesign& design, const ResponseEdges& band) {
    switch (design.PassType) {
        case PassType::LowPass:
            return "up to " + Hz(*band.Upper);
        case PassType::HighPass:
            return "from " + Hz(*band.Lower);
        case PassType::Notch:
            return "outside " + Pair(band.Lower, band.Upper);
        case PassType::BandPassCanonical:
        case PassType::DirectCoupled:
        case PassType::Norton:
            return "from " + Hz(*band.Lower) + " to " + Hz(*band.Upper);
    }
    return {};
}

}  // namespace

ResponseResults ResultsOf(const FilterDesign& design) {
    return ComputeResults(design, ReturnLossBandEdge(design));
}

ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results) {
    ResultTexts texts;
    if (!results.Valid) return texts;
    texts.emplace_back("Loss at F0", Db(results.LossAtF0));
    AddEdges(design, results, texts);
    texts.emplace_back("return loss at least", Db(results.WorstReturnLoss) + " " +
                                                   BandText(design, results.ReturnLossBand));
    if (results.ShapeFactor)
        texts.emplace_back("shape factor 60/6 dB",
                           FormatFixed(*results.ShapeFactor, levelDecimals));
    for (const AttenuationAt& at : results.Attenuations)
        texts.emplace_back("at " + at.Where, Db(at.Attenuation));
    return texts;
}

std::string ResultsLine(const FilterDesign& design) {
    std::string line;
    for (const auto& [name, value] : DescribeResults(design, ResultsOf(design))) {
        if (!line.empty()) line += ", ";
        line += name + " " + value;
    }
    return line;
}

}  // namespace ladderwise
