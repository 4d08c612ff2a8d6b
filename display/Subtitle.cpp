// The words and numbers of the subtitle.
#include "display/Subtitle.h"

#include <algorithm>
#include <cmath>

#include "design/ChoiceNames.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr const char* ohmSign = "\u03a9";
constexpr int significantDigits = 3;
constexpr int plainDigits = 6;      // of resistances, ripple and attenuation
constexpr double halfHertz = 0.5;   // frequencies are exact to the hertz
constexpr double divisions = 10.0;  // of a linear sweep

struct Prefix {
    double Factor;
    const char* Text;
    int Decimals;  ///< that reach the hertz
};

// Below 1 kHz a filter's frequencies are given to a millihertz.
constexpr Prefix prefixes[] = {{1e9, "GHz", 9}, {1e6, "MHz", 6}, {1e3, "kHz", 3}, {1.0, "Hz", 3}};

const Prefix& PrefixOf(double f) {
    const Prefix* prefix = std::begin(prefixes);
    while (prefix->Factor > 1.0 && std::abs(f) < prefix->Factor)
        ++prefix;
    return *prefix;
}

std::string Plain(double x) {
    return FormatPlain(x, plainDigits);
}

std::string Series(int step) {
    constexpr int numbersInADecade = 96;  // of the table of standard values
    std::string series = "E";
    return series += std::to_string(numbersInADecade / std::max(step, 1));
}

/// "2 MHz/div".
std::string PerDivision(double f) {
    const Prefix& prefix = PrefixOf(f);
    return Plain(f / prefix.Factor) + " " + prefix.Text + "/div";
}

std::string SweepText(const FilterDesign& design) {
    switch (design.SweepType) {
        case SweepType::Linear:
            return PerDivision((design.SweepF2 - design.SweepF1) / divisions);
        case SweepType::OneOctave:
        case SweepType::TwoOctaves:
        case SweepType::ThreeOctaves:
            return "1 octave/div";
        case SweepType::OneDecade:
        case SweepType::TwoDecades:
            return "1 decade/div";
    }
    return {};
}

/// The part models, with the standard series in use.
std::string PartsText(const FilterDesign& design) {
    const PartModel& model = design.PartModel;
    std::string text;
    switch (model.Choice) {
        case PartChoice::IdealParts:
            text = "ideal parts";
            break;
        case PartChoice::RealParts:
            text = "real parts Q " + Plain(model.IndQ);
            break;
        case PartChoice::DeEmbed:
            text = "de-embedded parts Q " + Plain(model.IndQ);
            break;
    }
    if (!design.StdLCValues) return text;
    const std::string inductors = Series(model.IndSeriesStep);
    const std::string capacitors = Series(model.CapSeriesStep);
    return text +
           (inductors == capacitors ? ", " + inductors : ", L " + inductors + ", C " + capacitors);
}

}  // namespace

std::string ExactFrequency(double f, int& leastDecimals) {
    const Prefix& prefix = PrefixOf(f);
    const double scaled = f / prefix.Factor;
    // Prototypes lie far below the hertz.
    if (!(std::abs(scaled) >= 1.0)) return FormatWithPrefix(f, significantDigits - 1, "Hz");
    const int whole = static_cast<int>(std::log10(std::abs(scaled))) + 1;
    int decimals = std::max(significantDigits - whole, 0);
    const double exactWithin = prefix.Factor > 1.0 ? halfHertz / prefix.Factor : halfHertz * 1e-3;
    while (decimals < prefix.Decimals) {
        const double power = std::pow(10.0, decimals);
        if (std::abs(std::round(scaled * power) / power - scaled) < exactWithin) break;
        ++decimals;
    }
    decimals = std::clamp(leastDecimals, decimals, std::max(decimals, prefix.Decimals));
    leastDecimals = decimals;
    return FormatFixed(scaled, decimals) + " " + prefix.Text;
}

std::string ExactFrequency(double f) {
    int decimals = 0;
    return ExactFrequency(f, decimals);
}

std::string DesignSubtitle(const FilterDesign& design) {
    int decimals = 0;
    std::string text = ExactFrequency(design.F0, decimals);
    if (HasBandWidth(design.PassType)) {
        // As finely as F0, where both stand in the same unit.
        const std::string unit = text.substr(text.rfind(' '));
        std::string width = ExactFrequency(design.BandWidth);
        if (width.ends_with(unit)) width = ExactFrequency(design.BandWidth, decimals);
        text += ", " + width + " wide";
    }
    text +=
        ", " + Plain(design.RSource) + " " + ohmSign + " to " + Plain(design.RLoad) + " " + ohmSign;
    const bool elliptic = IsElliptic(design.ResponseType);
    if (elliptic || design.ResponseType == ResponseType::Chebyshev)
        text += ", ripple " + Plain(design.RippleDb) + " dB";
    if (elliptic) text += ", stop band " + Plain(design.EllipticAtten) + " dB";
    if (elliptic) text = OrderText(design) + ", " + text;
    return text + ", " + PartsText(design);
}

std::string PlotSubtitle(const FilterDesign& design) {
    return DesignSubtitle(design) + ", " + SweepText(design);
}

}  // namespace ladderwise
