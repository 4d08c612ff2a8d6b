// The writer. Both versions are those of the "Touchstone File Format Specification", version 2.0 of
// the IBIS Open Forum (2009).
#include "exchange/Touchstone.h"

#include <algorithm>
#include <cmath>

#include "design/ChoiceNames.h"
#include "design/Designators.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr int CommentDigits = 9;  ///< significant digits of a number in a comment

std::string Shown(double x, const char* unit) {
    return RoundedNumber(x, CommentDigits) + " " + unit;
}

std::string PartsComment(const FilterDesign& design) {
    const PartModel& model = design.PartModel;
    if (model.Choice == PartChoice::IdealParts) return "Ideal parts";
    std::string text = "Real parts: inductors of Q " + RoundedNumber(model.IndQ, CommentDigits) +
                       " at F0 (Q grows with the root of frequency) with " +
                       Shown(model.IndC, "F") + " in parallel, capacitors with " +
                       Shown(model.CapR, "ohm") + " and " + Shown(model.CapL, "H") + " in series";
    if (model.Choice == PartChoice::DeEmbed) text += "; values adjusted for these";
    return text;
}

std::string TouchstoneHead(const FilterDesign& design, std::size_t count,
                           const TouchstoneOptions& options) {
    std::string text;
    for (const std::string& line : DesignComments(design))
        text += "! " + line + "\n";
    text += options.WorstCaseRun > 0
                ? "! Values of worst-case run " + std::to_string(options.WorstCaseRun) + "\n"
                : std::string("! Nominal values\n");
    if (options.Version == TouchstoneVersion::One)
        return text + "# Hz S RI R " + ExactNumber(options.Reference) + "\n";
    return text + "[Version] 2.0\n# Hz S RI R " + ExactNumber(design.RSource) +
           "\n[Number of Ports] 2\n[Two-Port Data Order] 21_12\n[Number of Frequencies] " +
           std::to_string(count) + "\n[Reference] " + ExactNumber(design.RSource) + " " +
           ExactNumber(design.RLoad) + "\n[Network Data]\n";
}

std::string PointLine(double f, const SParameters& s) {
    std::string line = ExactNumber(f);
    if (f == std::floor(f) && f < 1e15) line = std::to_string(static_cast<long long>(f));
    for (const Complex& z : {s.S11, s.S21, s.S12, s.S22})
        line += " " + AlignedNumber(z.real()) + " " + AlignedNumber(z.imag());
    return line + "\n";
}

}  // namespace

std::vector<double> PointsOf(const FrequencyRange& range) {
    std::vector<double> freqs(static_cast<std::size_t>(std::max(range.Points, 0)), range.From);
    const double steps = range.Points - 1.0;
    for (std::size_t i = 1; i < freqs.size(); ++i) {
        const double part = static_cast<double>(i) / steps;
        freqs[i] = range.Logarithmic ? range.From * std::pow(range.To / range.From, part)
                                     : range.From + part * (range.To - range.From);
    }
    if (freqs.size() > 1) freqs.back() = range.To;
    return freqs;
}

std::string FaultOf(const FrequencyRange& range) {
    if (!(range.From > 0.0) || !std::isfinite(range.To)) return "the frequencies begin above 0";
    if (range.Points < 1) return "there is at least one point";
    if (range.Points > MostExportPoints)
        return "there are at most " + std::to_string(MostExportPoints) + " points";
    if (range.Points > 1 && !(range.To > range.From))
        return "the frequencies end above their start";
    return {};
}

std::vector<double> WrittenFrequencies(std::span<const double> freqs) {
    std::vector<double> whole(freqs.begin(), freqs.end());
    double last = 0.0;
    for (double& f : whole) {
        f = std::round(f);
        if (!(f > last)) return {freqs.begin(), freqs.end()};
        last = f;
    }
    return whole;
}

std::string ExportFault(const FilterDesign& design) {
    if (design.NumElements < 1) return "there is no ladder";
    const auto names = DesignatorsOf(design);
    for (int k = 1; k <= std::min(design.NumElements, NumSlots - 1); ++k) {
        const CircuitElement& slot = design.Elements[k];
        if (!IsElement(slot.Type)) return "slot " + std::to_string(k) + " holds no element";
        for (int row = 0; row < 4; ++row) {
            const bool used = InfoOf(slot.Type).Values[row] != ValueKind::Unused;
            if (used && !(std::fabs(slot.Value(row)) <= NotUsedLimit))
                return names[k][row] + " has no value";
        }
    }
    return {};
}

std::vector<std::string> DesignComments(const FilterDesign& design) {
    std::string frequency = "F0 " + Shown(design.F0, "Hz");
    if (HasBandWidth(design.PassType)) frequency += ", bandwidth " + Shown(design.BandWidth, "Hz");
    return {"Ladderwise: " + DesignTitle(design) + ", " + frequency,
            "Source (first port) " + Shown(design.RSource, "ohm") + ", load (second port) " +
                Shown(design.RLoad, "ohm"),
            PartsComment(design) + (design.StdLCValues ? "; standard values" : "")};
}

std::string TouchstoneText(const FilterDesign& design, std::span<const double> freqs,
                           const TouchstoneOptions& options) {
    if (!ExportFault(design).empty()) return {};
    const std::vector<double> written = WrittenFrequencies(freqs);
    const PortResistances ports = options.Version == TouchstoneVersion::Two
                                      ? PortResistances{design.RSource, design.RLoad}
                                      : PortResistances{options.Reference, options.Reference};
    const std::vector<SParameters> s = AnalyseSParameters(design, written, ports);
    std::string text = TouchstoneHead(design, written.size(), options);
    for (std::size_t i = 0; i < written.size(); ++i)
        text += PointLine(written[i], s[i]);
    if (options.Version == TouchstoneVersion::Two) text += "[End]\n";
    return text;
}

}  // namespace ladderwise
