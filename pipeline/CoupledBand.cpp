// Measures the band of a direct-coupled band-pass.
#include "pipeline/CoupledBand.h"

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <memory>
#include <numbers>
#include <vector>

#include "analysis/Circuitanalysis.h"
#include "analysis/Results.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr double MostOff = 0.05;            ///< of the width, for width and centre
constexpr double MostRippleOffDb = 0.5;     ///< dB
constexpr double MostPeakLossDb = 0.5;      ///< dB; without losses a matched band has none
constexpr double RippleShare = 0.97;        ///< of the ripple band, whose very edges are steep
constexpr double BandDepthDb = 10.0;        ///< a dip this deep below the peak parts two bands
constexpr double FineSpan = 4.0;            ///< bandwidths on either side of F0 in even steps
constexpr int FinePoints = 1536;            ///< within them
constexpr int CoarsePoints = 128;           ///< beyond them, on either side
constexpr double Reach = 8.0;               ///< F0 / Reach .. Reach F0 is looked at
constexpr double SmallestFineStart = 0.02;  ///< of F0: where the even steps begin at the latest
constexpr double TurnTolerance = 1e-7;      ///< relative, of the frequency of a peak or dip
constexpr double TurnShare = 1e-2;  ///< of its bracket: near enough where the level is flat,
constexpr double FlatDb = 1e-5;     ///< which is within this many dB
constexpr double CrossingTolerance = 1e-12;  ///< relative, of an edge
constexpr int MostTurnSteps = 200;           ///< a guard: a few dozen are usual

/// A place of the response.
struct Place {
    double F = 0.0;      ///< Hz, or rad/s of a prototype
    double Level = 0.0;  ///< dB
    int Turn = 0;        ///< 1: a peak, -1: a dip, 0: neither
};

using LevelFunction = std::function<double(double)>;

/// The highest (sign 1) or lowest (sign -1) place between a and b, where there is one turn.
Place TurnWithin(const LevelFunction& level, double a, double b, int sign) {
    constexpr double Share = 2.0 - std::numbers::phi;  // golden section
    double x1 = a + Share * (b - a), x2 = b - Share * (b - a);
    double y1 = sign * level(x1), y2 = sign * level(x2);
    const double share = TurnShare * (b - a);
    for (int n = 0; n < MostTurnSteps && b - a > TurnTolerance * b; ++n) {
        if (b - a < share && std::abs(y1 - y2) < FlatDb) break;
        if (!(y1 < y2)) {
            b = x2, x2 = x1, y2 = y1;
            x1 = a + Share * (b - a), y1 = sign * level(x1);
        } else {
            a = x1, x1 = x2, y1 = y2;
            x2 = b - Share * (b - a), y2 = sign * level(x2);
        }
    }
    return y1 > y2 ? Place{x1, sign * y1, sign} : Place{x2, sign * y2, sign};
}

/// The samples of a response with its peaks and dips put among them.
std::vector<Place> WithTurns(const LevelFunction& level, const std::vector<Place>& samples) {
    std::vector<Place> places;
    const std::size_t count = samples.size();
    for (std::size_t i = 0; i < count; ++i) {
        places.push_back(samples[i]);
        if (i == 0 || i + 1 >= count) continue;
        const double before = samples[i - 1].Level, at = samples[i].Level;
        const double after = samples[i + 1].Level;
        const int sign = at >= before && at > after ? 1 : at <= before && at < after ? -1 : 0;
        if (sign == 0) continue;
        const Place turn = TurnWithin(level, samples[i - 1].F, samples[i + 1].F, sign);
        // Beside a turn the sample itself is none, whichever of the two stands higher.
        if (turn.F < samples[i].F)
            places.insert(places.end() - 1, turn);
        else
            places.push_back(turn);
    }
    return places;
}

double CrossingBetween(const LevelFunction& level, Place from, Place to, double target) {
    double a = from.F, b = to.F;
    const bool above = from.Level > target;
    for (int n = 0; n < MostTurnSteps && std::abs(b - a) > CrossingTolerance * std::abs(b); ++n) {
        const double middle = 0.5 * (a + b);
        ((level(middle) > target) == above ? a : b) = middle;
    }
    return 0.5 * (a + b);
}

/// A stretch of places, first and last included.
struct Stretch {
    std::size_t First = 0;
    std::size_t Last = 0;
};

/// The highest peak from `low` to `high` or, where there is none, the top uphill from there.
std::optional<std::size_t> TopNear(const std::vector<Place>& places, double low, double high) {
    std::optional<std::size_t> top;
    std::size_t highest = 0;
    double best = -std::numeric_limits<double>::infinity();
    for (std::size_t i = 0; i < places.size(); ++i) {
        const Place& place = places[i];
        if (place.F < low || place.F > high) continue;
        if (place.Level > best) best = place.Level, highest = i;
        if (place.Turn == 1 && (!top || place.Level > places[*top].Level)) top = i;
    }
    if (top) return top;
    const auto climb = [&](int direction) {
        std::size_t i = highest;
        while (i > 0 && i + 1 < places.size() && places[i + direction].Level >= places[i].Level)
            i += direction;
        return i;
    };
    const std::size_t down = climb(-1), up = climb(1);
    const std::size_t found = places[down].Level > places[up].Level ? down : up;
    if (places[found].Turn != 1) return {};
    return found;
}

/// As far as the level stays within BandDepthDb of the highest peak on the way; moves `top` there.
Stretch StretchAbout(const std::vector<Place>& places, std::size_t& top) {
    for (;;) {
        const double floor = places[top].Level - BandDepthDb;
        Stretch stretch{top, top};
        while (stretch.First > 0 && places[stretch.First - 1].Level > floor)
            --stretch.First;
        while (stretch.Last + 1 < places.size() && places[stretch.Last + 1].Level > floor)
            ++stretch.Last;
        std::size_t higher = top;
        for (std::size_t i = stretch.First; i <= stretch.Last; ++i)
            if (places[i].Turn == 1 && places[i].Level > places[higher].Level) higher = i;
        if (higher == top) return stretch;
        top = higher;
    }
}

std::optional<PassBand> BandAbout(const LevelFunction& level, const std::vector<Place>& places,
                                  std::size_t top, double rippleShare) {
    const Stretch stretch = StretchAbout(places, top);
    const double peak = places[top].Level, target = peak - HalfPowerDb;
    std::size_t first = stretch.First, last = stretch.Last;
    while (places[first].Level < target)
        ++first;
    while (places[last].Level < target)
        --last;
    if (first == 0 || last + 1 >= places.size()) return {};
    const double lower = CrossingBetween(level, places[first], places[first - 1], target);
    const double upper = CrossingBetween(level, places[last], places[last + 1], target);
    const double centre = 0.5 * (lower + upper), width = upper - lower;
    double lowest = peak;
    for (std::size_t i = first; i <= last; ++i)
        if (places[i].Turn == -1) lowest = std::min(lowest, places[i].Level);
    for (const double side : {-0.5, 0.5})
        if (rippleShare > 0.0)
            lowest = std::min(lowest, level(centre + side * rippleShare * width));
    return PassBand{centre, width, peak - lowest, -peak};
}

std::vector<double> FrequenciesAbout(double f0, double width) {
    const double low = std::max(f0 - FineSpan * width, SmallestFineStart * f0);
    const double high = f0 + FineSpan * width;
    std::vector<double> freqs;
    const auto spread = [&](double from, double to) {  // to is left out
        for (int k = 0; k < CoarsePoints && from < to; ++k)
            freqs.push_back(from * std::pow(to / from, double(k) / CoarsePoints));
    };
    spread(std::min(f0 / Reach, 0.5 * low), low);
    for (int k = 0; k < FinePoints; ++k)
        freqs.push_back(low + (high - low) * k / FinePoints);
    spread(high, std::max(Reach * f0, 2.0 * high));
    return freqs;
}

/// Level of the ladder with the g-values of a design between 1-ohm ends at w (rad/s), dB.
double PrototypeLevel(const FilterDesign& design, double w) {
    Complex v = 1.0, i = 1.0;  // at the load, from there to the source
    for (int k = design.NumPoles; k >= 1; --k) {
        const Complex x(0.0, w * design.G[k]);
        (k % 2 != 0 ? i += x* v : v += x * i);
    }
    return ComplexToDb(2.0 / (v + i));
}

std::string MHzText(double f) {
    return FormatWithPrefix(f, 3, "Hz");
}

std::string PercentText(double part) {
    return FormatFixed(100.0 * std::abs(part), std::abs(part) < 0.1 ? 1 : 0) + " %";
}

}  // namespace

PrototypeFigures MeasurePrototype(const FilterDesign& design) {
    constexpr int Points = 1000;
    constexpr double Highest = 10.0;  // rad/s; the half-power point of every table lies below 4
    const LevelFunction level = [&](double w) { return PrototypeLevel(design, w); };
    std::vector<Place> samples;
    for (int k = 0; k <= Points; ++k) {
        const double w = Highest * k / Points;
        samples.push_back({w, level(w), k == 0 ? 1 : 0});  // the curve mirrored at 0: a peak or dip
    }
    if (samples[1].Level > samples[0].Level) samples[0].Turn = -1;
    const std::vector<Place> places = WithTurns(level, samples);
    std::size_t top = 0;
    for (std::size_t i = 0; i < places.size(); ++i)
        if (places[i].Turn == 1 && places[i].Level > places[top].Level) top = i;
    const double target = places[top].Level - HalfPowerDb;
    std::size_t last = StretchAbout(places, top).Last;
    while (last > 0 && places[last].Level < target)
        --last;
    PrototypeFigures figures;
    figures.CornerLossDb = places[top].Level - level(1.0);
    if (last + 1 < places.size())
        figures.HalfPower = CrossingBetween(level, places[last], places[last + 1], target);
    for (std::size_t i = 0; i < last; ++i)
        if (places[i].Turn == -1)
            figures.RippleDb = std::max(figures.RippleDb, places[top].Level - places[i].Level);
    return figures;
}

PassBand AskedBand(const FilterDesign& design) {
    PassBand band{design.F0, design.BandWidth, 0.0, 0.0};
    switch (design.ResponseType) {
        case ResponseType::Butterworth:
            break;
        case ResponseType::Chebyshev:
            if (design.NumPoles > 1) band.RippleDb = design.RippleDb;
            break;
        case ResponseType::BesselFreq:
        case ResponseType::BesselDelay:
        case ResponseType::Papoulis:
        case ResponseType::Gauss:
        case ResponseType::LinearChebyshev:
        case ResponseType::CoefficientsFile: {
            const PrototypeFigures prototype = MeasurePrototype(design);
            band.Width *= prototype.HalfPower;
            band.RippleDb = prototype.RippleDb;
            break;
        }
        case ResponseType::EllipticA:  // never direct-coupled
        case ResponseType::EllipticB:
        case ResponseType::EllipticC:
        case ResponseType::EllipticD:
        case ResponseType::EllipticE:
            break;
    }
    return band;
}

std::optional<PassBand> MeasureBand(const FilterDesign& design, const ElementList& elements) {
    const auto lossless = std::make_unique<FilterDesign>(design);
    lossless->Elements = elements;
    lossless->PartModel.Choice = PartChoice::IdealParts;
    const std::vector<double> freqs = FrequenciesAbout(design.F0, design.BandWidth);
    std::vector<double> re(freqs.size()), im(freqs.size());
    SweepTables tables;
    BuildSweepTables(tables, freqs, design.F0);
    if (!AnalyseLadder(*lossless, tables, {}, re, im, {})) return {};
    std::vector<Place> samples;
    for (std::size_t i = 0; i < freqs.size(); ++i) {
        const double db = ComplexToDb({re[i], im[i]});
        if (!std::isnan(db)) samples.push_back({freqs[i], db});
    }
    const LevelFunction level = [&](double f) {
        return ComplexToDb(AnalysePoint(*lossless, design.F0, f).Transfer);
    };
    const std::vector<Place> places = WithTurns(level, samples);
    const auto top = TopNear(places, design.F0 - design.BandWidth, design.F0 + design.BandWidth);
    if (!top) return {};
    const bool rippled = design.ResponseType == ResponseType::Chebyshev && design.NumPoles > 1;
    return BandAbout(level, places, *top, rippled ? RippleShare * ReturnLossBandEdge(design) : 0.0);
}

std::string MissText(const PassBand& asked, const std::optional<PassBand>& made) {
    if (!made) return "it has no pass band with two edges about F0";
    std::string text;
    const auto add = [&](const std::string& more) { text += (text.empty() ? "" : ", ") + more; };
    const double wider = made->Width / asked.Width - 1.0;
    if (std::abs(wider) > MostOff)
        add(MHzText(made->Width) + " wide, not " + MHzText(asked.Width) + " (" +
            PercentText(wider) + (wider > 0.0 ? " more)" : " less)"));
    const double off = made->Centre - asked.Centre;
    if (std::abs(off) > MostOff * asked.Width)
        add("centre " + MHzText(made->Centre) + ", " + PercentText(off / asked.Width) +
            " of the width too " + (off > 0.0 ? "high" : "low"));
    if (std::abs(made->RippleDb - asked.RippleDb) > MostRippleOffDb)
        add("ripple " + FormatFixed(made->RippleDb, 2) + " dB, not " +
            FormatFixed(asked.RippleDb, 2) + " dB");
    if (made->PeakLossDb > MostPeakLossDb)
        add("at least " + FormatFixed(made->PeakLossDb, 2) + " dB lost by mismatch");
    return text;
}

}  // namespace ladderwise
