// Words for the figures of a finished design.
#include "pipeline/ResultsText.h"

#include <cmath>

#include "numbers/Formatfunctions.h"
#include "scaling/BandScaler.h"

namespace ladderwise {

namespace {

constexpr int frequencyDigits = 4;  // after the first
constexpr int levelDecimals = 2;
constexpr double differingDb = 0.1;        // between the loss at F0 and the least one
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

/// All figures but the attenuations; `brief` leaves out where the return loss was looked for.
ResultTexts Figures(const FilterDesign& design, const ResponseResults& results, bool brief) {
    ResultTexts texts;
    texts.emplace_back("Loss at F0", Db(results.LossAtF0));
    const bool bandPass = HasBandWidth(design.PassType) && design.PassType != PassType::Notch;
    if (bandPass && results.LossAtF0 - results.PeakLoss > differingDb)
        texts.emplace_back("least loss", Db(results.PeakLoss) + " at " + Hz(results.PeakFrequency));
    AddEdges(design, results, texts);
    texts.emplace_back("return loss at least",
                       Db(results.WorstReturnLoss) +
                           (brief ? "" : " " + BandText(design, results.ReturnLossBand)));
    if (results.ShapeFactor)
        texts.emplace_back("shape factor 60/6 dB",
                           FormatFixed(*results.ShapeFactor, levelDecimals));
    return texts;
}

void AddAttenuations(const ResponseResults& results, ResultTexts& texts) {
    for (const AttenuationAt& at : results.Attenuations)
        texts.emplace_back("at " + at.Where, Db(at.Attenuation));
}

/// The attenuations with both sides of the pass band in one, the nearer ones first.
void AddPairedAttenuations(const ResponseResults& results, ResultTexts& texts) {
    const auto add = [&](const std::string& where, const std::string& name) {
        for (const AttenuationAt& at : results.Attenuations) {
            if (at.Where != where) continue;
            if (!texts.empty() && texts.back().first == name)
                texts.back().second += " / " + Db(at.Attenuation);
            else
                texts.emplace_back(name, Db(at.Attenuation));
        }
    };
    for (const std::string off : {"BW", "2 BW"}) {
        add("F0 - " + off, "F0 -/+ " + off);
        add("F0 + " + off, "F0 -/+ " + off);
    }
    for (const std::string harmonic : {"2 F0", "3 F0"})
        add(harmonic, harmonic);
}

}  // namespace

ResponseResults ResultsOf(const FilterDesign& design) {
    return ComputeResults(design, ReturnLossBandEdge(design));
}

std::vector<double> TrapFrequencies(const FilterDesign& design) {
    std::vector<double> traps;
    for (int k = 0; k < design.Elliptic.NumTraps; ++k)
        for (const double f : ScaledFrequencies(design, design.Elliptic.TrapFreqs[k]))
            traps.push_back(f);
    return traps;
}

ResultTexts DescribeTraps(const FilterDesign& design) {
    std::string list;
    for (const double f : TrapFrequencies(design))
        list += (list.empty() ? "" : ", ") + Hz(f);
    if (list.empty()) return {};
    const bool ideal = design.PartModel.Choice == PartChoice::IdealParts && !design.StdLCValues &&
                       !HasEdits(design);
    return {{ideal ? "traps" : "traps as designed", list}};
}

ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return {};
    ResultTexts texts = Figures(design, results, false);
    AddAttenuations(results, texts);
    return texts;
}

std::string ResultsLine(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return {};
    const bool band = HasBandWidth(design.PassType);
    ResultTexts texts = Figures(design, results, band);
    if (band)
        AddPairedAttenuations(results, texts);
    else
        AddAttenuations(results, texts);
    std::string line;
    for (const auto& [name, value] : texts)
        line += (line.empty() ? "" : ", ") + name + " " + value;
    return line;
}

std::string ChiefFigures(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return {};
    ResultTexts texts = {{"Loss at F0", Db(results.LossAtF0)}};
    AddEdges(design, results, texts);
    texts.resize(2);  // without the width
    texts.emplace_back("return loss at least", Db(results.WorstReturnLoss));
    std::string line;
    for (const auto& [name, value] : texts)
        line += (line.empty() ? "" : ", ") + name + " " + value;
    return line;
}

}  // namespace ladderwise
