// Words for the figures of a finished design.
#include "pipeline/ResultsText.h"

#include <algorithm>
#include <cmath>

#include "analysis/Resonances.h"
#include "design/ChoiceNames.h"
#include "numbers/Formatfunctions.h"
#include "scaling/BandScaler.h"

namespace ladderwise {

namespace {

constexpr int frequencyDigits = 4;  // after the first
constexpr int levelDecimals = 2;
constexpr int stopBandDigits = 4;          // decimals of a stop-band edge
constexpr int shapeDecimals = 3;           // of the shape factor of an elliptic design
constexpr double differingEdge = 1e-3;     // relative, between a stop-band edge and the ideal one
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

std::string PeakText(const ResponsePeak& peak) {
    const std::string where = std::isinf(peak.Frequency) ? "far above Fo"
                              : peak.Frequency == 0.0    ? "at 0 Hz"
                                                         : "at " + Hz(peak.Frequency);
    return Db(peak.Loss) + " " + where;
}

std::string Pair(const std::optional<double>& lower, const std::optional<double>& upper) {
    return (lower ? Hz(*lower) : "none") + " and " + (upper ? Hz(*upper) : "none");
}

void AddEdges(const FilterDesign& design, const ResponseResults& results, ResultTexts& rows) {
    const ResponseEdges& edges = results.Edges;
    switch (design.PassType) {
        case PassType::LowPass:
            rows.push_back({"-3 dB edge", edges.Upper ? Hz(*edges.Upper) : "none"});
            return;
        case PassType::HighPass:
            rows.push_back({"-3 dB edge", edges.Lower ? Hz(*edges.Lower) : "none"});
            return;
        case PassType::BandPassCanonical:
        case PassType::Notch:
        case PassType::DirectCoupled:
        case PassType::Norton:
            rows.push_back({"-3 dB edges", Pair(edges.Lower, edges.Upper)});
            if (const auto width = edges.Width(design.PassType))
                rows.push_back({"width", Hz(*width)});
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

/// All figures but the attenuations.
ResultTexts Figures(const FilterDesign& design, const ResponseResults& results) {
    ResultTexts rows;
    rows.push_back({"loss at Fo", Db(results.LossAtF0)});
    rows.push_back({"least loss", results.Peak ? PeakText(*results.Peak) : "none about Fo"});
    AddEdges(design, results, rows);
    rows.push_back({"return loss at least",
                    Db(results.WorstReturnLoss) + " " + BandText(design, results.ReturnLossBand)});
    const std::string shape = "shape factor 60/6 dB";
    if (results.ShapeFactor)
        rows.push_back({shape, FormatFixed(*results.ShapeFactor, levelDecimals)});
    else if (results.NoShape)
        rows.push_back({shape, "none: loss " +
                                   Db(results.NoShape->Attenuation + results.Peak->Loss) + " at " +
                                   Hz(results.NoShape->Frequency)});
    if (results.OtherBand)
        rows.push_back({results.OtherBand->Frequency > design.F0 ? "re-entrant pass band"
                                                                 : "further pass band",
                        PeakText(*results.OtherBand)});
    return rows;
}

/// "2 F0" as the windows spell it: "attenuation at 2 Fo".
std::string AttenuationName(std::string where) {
    std::replace(where.begin(), where.end(), '0', 'o');
    return "attenuation at " + where;
}

void AddAttenuations(const ResponseResults& results, ResultTexts& rows) {
    for (const AttenuationAt& at : results.Attenuations)
        rows.push_back({AttenuationName(at.Where), Db(at.Attenuation)});
}

std::string StopHz(double f) {
    return FormatWithPrefix(f, stopBandDigits, "Hz");
}

/// "from 1 MHz to 2 MHz", with one end "up to" or "from".
std::string HeldText(const HeldBand& band) {
    if (band.From && band.To) return "from " + StopHz(*band.From) + " to " + StopHz(*band.To);
    if (band.To) return "up to " + StopHz(*band.To);
    return band.From ? "from " + StopHz(*band.From) : "at all frequencies";
}

std::string HeldText(const std::vector<HeldBand>& bands) {
    std::string text;
    for (const HeldBand& band : bands)
        text += (text.empty() ? "" : " and ") + HeldText(band);
    return text.empty() ? "nowhere" : text;
}

/// Where the stop band of ideal parts lies.
std::vector<HeldBand> IdealStopBands(const FilterDesign& design) {
    const std::vector<double> edges = ScaledFrequencies(design, design.Elliptic.StopBandEdge);
    switch (design.PassType) {
        case PassType::LowPass:
            return {{edges[0], {}}};
        case PassType::HighPass:
            return {{{}, edges[0]}};
        case PassType::BandPassCanonical:
            return {{{}, edges[0]}, {edges[1], {}}};
        case PassType::Notch:
            return {{edges[0], edges[1]}};
        case PassType::DirectCoupled:
        case PassType::Norton:
            break;
    }
    return {};
}

/// True if every edge of the ideal bands is one of the measured ones.
bool SameEdges(const std::vector<HeldBand>& ideal, const std::vector<HeldBand>& measured) {
    const auto same = [](const std::optional<double>& a, const std::optional<double>& b) {
        return !a || (b && std::abs(*b - *a) <= differingEdge * *a);
    };
    if (ideal.size() != measured.size()) return false;
    for (std::size_t i = 0; i < ideal.size(); ++i)
        if (!same(ideal[i].From, measured[i].From) || !same(ideal[i].To, measured[i].To))
            return false;
    return true;
}

/// Stop band over pass band, or, of a high-pass and a notch, the reverse.
std::optional<double> EllipticShape(const FilterDesign& design, const ResponseResults& results) {
    const ResponseEdges& edges = results.Edges;
    const std::vector<HeldBand>& stop = results.StopBands;
    if (stop.empty()) return std::nullopt;
    std::optional<double> wide, narrow;
    switch (design.PassType) {
        case PassType::LowPass:
            wide = stop[0].From;
            narrow = edges.Upper;
            break;
        case PassType::HighPass:
            wide = edges.Lower;
            narrow = stop[0].To;
            break;
        case PassType::BandPassCanonical:
            if (stop.size() == 2 && stop[0].To && stop[1].From) wide = *stop[1].From - *stop[0].To;
            narrow = edges.Width(design.PassType);
            break;
        case PassType::Notch:
            wide = edges.Width(design.PassType);
            if (stop[0].From && stop[0].To) narrow = *stop[0].To - *stop[0].From;
            break;
        case PassType::DirectCoupled:
        case PassType::Norton:
            break;
    }
    if (!wide || !narrow) return std::nullopt;
    return *wide / *narrow;
}

/// Where an elliptic ladder holds its attenuation, and its traps.
void AddStopBand(const FilterDesign& design, const ResponseResults& results, ResultTexts& rows) {
    rows.push_back({"stop band", Db(results.StopAttenuation) + " " + HeldText(results.StopBands)});
    const std::vector<HeldBand> ideal = IdealStopBands(design);
    if (!SameEdges(ideal, results.StopBands))
        rows.push_back({"stop band, ideal parts", HeldText(ideal)});
    if (const auto shape = EllipticShape(design, results))
        rows.push_back({"shape, stop to pass", FormatFixed(*shape, shapeDecimals)});
    std::string traps;
    for (const double f : MeasuredTraps(design))
        traps += (traps.empty() ? "" : ", ") + Hz(f);
    rows.push_back({"traps", traps});
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

std::vector<double> MeasuredTraps(const FilterDesign& design) {
    std::vector<double> traps = TrapFrequencies(design);
    if (traps.empty()) return traps;
    std::vector<TransmissionZero> zeros = TransmissionZeros(design);
    // Values that were adjusted to the parasitics resonate where they should only with them.
    const bool adjusted = design.PartModel.Choice == PartChoice::DeEmbed;
    for (double& trap : traps) {
        const auto off = [&](const TransmissionZero& zero) {
            return std::abs(std::log((adjusted ? zero.Frequency : zero.Ideal) / trap));
        };
        const auto nearest =
            std::min_element(zeros.begin(), zeros.end(),
                             [&](const auto& a, const auto& b) { return off(a) < off(b); });
        if (nearest == zeros.end()) break;
        trap = nearest->Frequency;
        zeros.erase(nearest);  // every trap is another one
    }
    return traps;
}

ResultTexts DescribeResults(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return {};
    ResultTexts rows = Figures(design, results);
    AddAttenuations(results, rows);
    if (design.Elliptic.NumTraps > 0) AddStopBand(design, results, rows);
    return rows;
}

ResultTexts DescribeWorstCase(const WorstCaseResult& result) {
    if (result.Runs == 0) return {};
    return {
        {"worst case", std::to_string(result.Runs) + " runs, seed " + std::to_string(result.Seed)},
        {"pass-band loss", "up to " + Db(result.PassBandLossDb)},
        {"spread at Fo", Db(result.SpreadAtF0Db)}};
}

std::string ChiefFigures(const FilterDesign& design, const ResponseResults& results) {
    if (!results.Valid) return {};
    ResultTexts texts = {{"Loss at Fo", Db(results.LossAtF0)}};
    AddEdges(design, results, texts);
    std::erase_if(texts, [](const auto& row) { return row.first == "width"; });
    texts.emplace_back("return loss at least", Db(results.WorstReturnLoss));
    std::string line;
    for (const auto& [name, value] : texts)
        line += (line.empty() ? "" : ", ") + name + " " + value;
    return line;
}

}  // namespace ladderwise
