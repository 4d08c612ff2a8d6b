// Bracketing of F0, centre and width.
#include "choosing/PlacementSearch.h"

#include <algorithm>
#include <cmath>

#include "analysis/Results.h"

namespace ladderwise {

namespace {

constexpr double narrowStop = 1.5;      ///< To / From of a stop limit that a trap may sit in
constexpr double keptFirst = 1e5;       ///< weight of the limits that must hold
constexpr double keptReserve = 2e-3;    ///< dB that they hold by
constexpr double plateauWeight = 1e-3;  ///< of the larger margin, where the smaller stays
constexpr double plateauMost = 5.0;     ///< dB of it that count
constexpr double compressed = 10.0;     ///< dB: differences beyond are flattened for the bracketing
constexpr double closeEnough = 1e-4;    ///< dB between the two margins of a narrow pass
constexpr double closeShare = 0.02;     ///< of the margin, where there is much of it
constexpr double hopelessShare = 0.1;   ///< of a margin that no other place makes good
constexpr double hopelessBelowDb = -2.0;
constexpr double closeAtMost = 0.5;  ///< dB
constexpr double trustedDb = 0.3;    ///< out of balance: still an edge
constexpr double movedDb = 1.5;
constexpr double decidesFromDb = -0.3, decidesToDb = 0.02;
constexpr double leastStep = 1e-9;  ///< relative
constexpr int cornerSteps = 12, cornerStepsFromStart = 5;
constexpr int widthSteps = 9, widthStepsFromStart = 4, decidingSteps = 8;
constexpr int goldenMore = 3;
constexpr int centreSteps = 6, centreStepsFromStart = 4;
constexpr double centringDoubt = 0.1;                        ///< dB
constexpr double centreReach = 0.25, centreReachMost = 0.3;  ///< of the limits that it lies in
constexpr double middlesFromDb = -4.0;  ///< a margin that two limits in balance may make good
constexpr double middlesReach = 1.5;
constexpr double polishedFromDb = -1.0, refinedToDb = 0.3;  ///< margins that a trap may decide
constexpr int middleSteps = 20;
constexpr double justInside = 1.0 + 1e-7;
constexpr double smallestRatio = 0.005, largestRatio = 1.99;  ///< BandWidth / F0
constexpr double widestNotch = 1.9;                           ///< the same, to begin with

/// Whether what gains and what loses are alike enough.
bool Balanced(double difference, const Placement& at) {
    const double allowed =
        at.Margin < hopelessBelowDb
            ? -hopelessShare * at.Margin
            : std::clamp(closeShare * std::abs(at.Margin), closeEnough, closeAtMost);
    return std::abs(difference) < allowed;
}

/// Whether a margin is so small that more looking may change what it says.
bool Decides(double margin) {
    return margin > decidesFromDb && margin < decidesToDb;
}

/// Whether a search that went on from `start` has found about what was there: limits that have
/// moved farther ask for the whole search, and so does a margin that decides.
bool IsNear(const Placement& found, const Placement& start) {
    return !Decides(found.Margin) && std::abs(found.Margin - start.Margin) < movedDb;
}

/// Bracketing by the Illinois rule of regula falsi on flattened values, halving every third step.
class Bracket {
public:
    Bracket(double x0, double y0, double x1, double y1)
        : a(x0), b(x1), ya(Flat(y0)), yb(Flat(y1)) {}

    double Next() {
        if (++count % 3 == 0 || !(yb - ya != 0.0)) return 0.5 * (a + b);
        const double x = (a * yb - b * ya) / (yb - ya);
        const double edge = 0.02 * (b - a);
        return std::clamp(x, std::min(a + edge, b - edge), std::max(a + edge, b - edge));
    }
    void Take(double x, double y) {
        const double flat = Flat(y);
        if ((flat < 0.0) == (ya < 0.0)) {
            if (side == -1) yb *= 0.5;
            a = x, ya = flat, side = -1;
        } else {
            if (side == 1) ya *= 0.5;
            b = x, yb = flat, side = 1;
        }
    }
    bool Closed() const { return std::abs(b - a) < leastStep; }

private:
    static double Flat(double y) { return y / (1.0 + std::abs(y) / compressed); }

    double a, b, ya, yb;
    int side = 0, count = 0;
};

}  // namespace

NeedBands BandsOf(const LimitLines& limits, PassType pass) {
    NeedBands bands;
    const auto widen = [](double from, double to, double& low, double& high) {
        if (high == 0.0) low = from, high = to;
        low = std::min(low, from);
        high = std::max(high, to);
    };
    for (const LimitLine& line : limits) {
        if (IsPassLimit(line.Kind))
            widen(line.From, line.To, bands.PassLow, bands.PassHigh);
        else
            widen(line.From, line.To, bands.StopLow, bands.StopHigh);
        if (!IsPassLimit(line.Kind) && line.From > 0.0 && line.To < narrowStop * line.From)
            bands.NarrowStops.push_back(std::sqrt(line.From * line.To));
    }
    const bool notch = pass == PassType::Notch;
    const double centre = notch ? std::sqrt(bands.StopLow * bands.StopHigh)
                                : std::sqrt(bands.PassLow * bands.PassHigh);
    for (const LimitLine& line : limits) {
        if (IsPassLimit(line.Kind) != notch) continue;
        if (line.To < centre) bands.StopBelow = std::max(bands.StopBelow, line.To);
        if (line.From > centre && (bands.StopAbove == 0.0 || line.From < bands.StopAbove))
            bands.StopAbove = line.From;
    }
    if (notch)
        std::swap(bands.InnerLow, bands.StopBelow), std::swap(bands.InnerHigh, bands.StopAbove);
    return bands;
}

PlacementSearch::PlacementSearch(LadderMaker& ladders, LimitGrid& limits, PassType pass,
                                 KeptLimits keptLimits, bool toTheLast)
    : maker(ladders),
      grid(limits),
      bands(BandsOf(limits.Limits(), pass)),
      band(HasBandWidth(pass)),
      upward(pass != PassType::HighPass && pass != PassType::Notch),
      thorough(toTheLast),
      kept(keptLimits) {}

double PlacementSearch::Weighed(double margin, bool isPass) const {
    const bool first = kept == (isPass ? KeptLimits::Pass : KeptLimits::Stop);
    return first && margin < NoLimitDb ? keptFirst * (margin - keptReserve) : margin;
}

double PlacementSearch::ScoreOf(const KindMargins& margins) const {
    const double a = Weighed(margins.Pass, true), b = Weighed(margins.Stop, false);
    return std::min(a, b) + plateauWeight * std::min(std::max(a, b), plateauMost);
}

bool PlacementSearch::IsNoBetterBetween(const Placement& a, const Placement& b,
                                        double doubt) const {
    const double most = std::min(std::max(a.Pass, b.Pass), std::max(a.Stop, b.Stop));
    return kept == KeptLimits::All && most + doubt <= std::max(best.Margin, worth);
}

PlacementSearch::Seen PlacementSearch::Look(double f0, double bandWidth) {
    Seen seen;
    seen.At.F0 = f0;
    seen.At.BandWidth = bandWidth;
    if (!maker.Place(f0, bandWidth)) return seen;
    ++analyses;
    const double centre = !band ? 0.0
                          : upward
                              ? std::sqrt(std::max(f0 * f0 - 0.25 * bandWidth * bandWidth, 0.0))
                              : f0;
    const std::vector<RowMargin>& rows = grid.Judge(maker.Design(), centre);
    double pass = NoLimitDb, stop = NoLimitDb;
    // As they count for the search: of the pass limits and of the others, below and above.
    struct Sides {
        double Below = NoLimitDb, Above = NoLimitDb;

        double Most() const { return std::max(Below, Above); }
    } passSides, stopSides;
    for (std::size_t i = 0; i < rows.size(); ++i) {
        const bool isPass = IsPassLimit(grid.Limits()[i].Kind);
        double& least = isPass ? pass : stop;
        least = std::min(least, rows[i].Least());
        if (grid.Limits()[i].Kind == LimitKind::AttenMax)
            seen.At.Loss = std::max(seen.At.Loss, grid.Limits()[i].Value - rows[i].Least());
        Sides& sides = isPass ? passSides : stopSides;
        sides.Below = std::min(sides.Below, Weighed(rows[i].Below, isPass));
        sides.Above = std::min(sides.Above, Weighed(rows[i].Above, isPass));
    }
    const double a = Weighed(pass, true), b = Weighed(stop, false);
    seen.At.Pass = pass;
    seen.At.Stop = stop;
    seen.At.Margin = std::min(pass, stop);
    seen.At.Score = ScoreOf({pass, stop});
    // A pass band that moves up covers more above its centre, a stop band clears what is below.
    const Sides &up = upward ? passSides : stopSides, &down = upward ? stopSides : passSides;
    seen.Rising = std::min(up.Above, down.Below) - std::min(up.Below, down.Above);
    seen.Widening = a - b;
    const double unbalanced = std::abs(seen.Rising);
    if (band && unbalanced < std::max(trustedDb, -hopelessShare * seen.At.Margin) &&
        std::abs(seen.Widening) <= unbalanced + closeEnough)
        // Pass and stop limit of one edge alone are balanced at any width. A narrower filter is
        // steeper there, down to where the other edge has no more to give either.
        seen.Widening = upward ? passSides.Most() - b : a - stopSides.Most();
    Keep(seen);
    return seen;
}

void PlacementSearch::LookIfBetter(double f0, double bandWidth) {
    if (best.Score > HopelessDb && maker.Place(f0, bandWidth) &&
        ScoreOf(grid.MostOf(maker.Design())) <= best.Score) {
        ++analyses;
        return;
    }
    Look(f0, bandWidth);
}

void PlacementSearch::Keep(const Seen& seen) {
    if (seen.At.Score > best.Score) best = seen.At;
}

bool PlacementSearch::BracketCorner(double low, double high, int steps) {
    // In ln F0; with F0 a low-pass widens, a high-pass narrows.
    double a = std::log(low), b = std::log(high);
    if (!upward) std::swap(a, b);
    const Seen first = Look(std::exp(a), 0.0), last = Look(std::exp(b), 0.0);
    if (first.At.Margin == HopelessDb || last.At.Margin == HopelessDb) return false;
    if (first.Widening > 0.0 || last.Widening < 0.0) return false;  // one end does best
    Bracket bracket(a, first.Widening, b, last.Widening);
    for (int step = 0; step < steps && !bracket.Closed(); ++step) {
        const double x = bracket.Next();
        const Seen seen = Look(std::exp(x), 0.0);
        if (Balanced(seen.Widening, seen.At)) break;
        bracket.Take(x, seen.Widening);
    }
    return true;
}

void PlacementSearch::TryTraps(double low, double high) {
    constexpr double aside[] = {1.0, 0.985, 1.015};
    const EllipticResult& elliptic = maker.Design().Elliptic;
    for (int trap = 0; trap < elliptic.NumTraps; ++trap) {
        const double w = elliptic.TrapFreqs[static_cast<std::size_t>(trap)];
        for (const double stop : bands.NarrowStops) {
            const double f0 = upward ? stop / w : stop * w;
            if (!(f0 > low) || !(f0 < high)) continue;
            for (const double factor : aside)
                Look(f0 * factor, 0.0);
        }
    }
}

void PlacementSearch::FindCorner(const Candidate& candidate, const Placement* start) {
    const double edge = ReturnLossBandEdge(maker.Design());
    if (start) {
        constexpr double nearby = 1.03;
        Look(start->F0, 0.0);
        const bool enclosed =
            BracketCorner(start->F0 / nearby, start->F0 * nearby, cornerStepsFromStart);
        if (IsElliptic(candidate.Response) && thorough)
            FindTraps(start->F0 / nearby, start->F0 * nearby);
        if (enclosed || IsNear(best, *start)) return;
    }
    // Families that are not normalised to 3 dB have their corner within a few times F0.
    constexpr double farther = 5.0, far = 1.6;
    const double reach = candidate.Response == ResponseType::BesselDelay ? farther : far;
    double low = upward ? bands.PassHigh : bands.StopHigh;
    double high = upward ? bands.StopLow : bands.PassLow;
    if (!(low > 0.0)) low = 0.2 * high;
    if (!(high > 0.0)) high = 5.0 * low;
    if (high < low) std::swap(low, high);
    low /= reach, high *= reach;
    if (HasRipple(candidate) && bands.PassHigh > 0.0) {
        // The ripple band just covers the pass limits.
        const double f0 =
            upward ? bands.PassHigh / edge * justInside : bands.PassLow * edge / justInside;
        if (f0 > 0.0) Look(f0, 0.0);
    }
    BracketCorner(low, high, cornerSteps);
    if (IsElliptic(candidate.Response)) FindTraps(low, high);
}

// With a trap inside a stop limit either end of that limit may be what is balanced against the
// pass band, and both together at the top.
void PlacementSearch::PolishCorner() {
    constexpr double beside = 0.01;
    constexpr int rounds = 6, each = 3;
    double reach = beside;
    for (int round = 0; round < rounds; ++round, reach /= each) {
        if (best.Margin < polishedFromDb / (1 + round) || best.Margin > refinedToDb) return;
        const double middle = best.F0;
        for (int i = -each; i <= each; ++i)
            if (i != 0) Look(middle * (1.0 + reach * i / each), 0.0);
    }
}

void PlacementSearch::FindTraps(double low, double high) {
    constexpr double likely = 0.5, lost = -25.0;
    if (bands.NarrowStops.empty() || best.Margin > likely || best.Margin < lost) return;
    const Placement before = best;
    TryTraps(low, high);
    if (best.F0 != before.F0) {
        constexpr double beside = 1.012;
        BracketCorner(best.F0 / beside, best.F0 * beside, cornerStepsFromStart);
    }
    if (thorough) PolishCorner();
}

PlacementSearch::Seen PlacementSearch::LookAt(double centre, double width) {
    // F0 is the middle of the edges, whose geometric mean the resonances are at; of a notch both.
    const double f0 = upward ? std::sqrt(centre * centre + 0.25 * width * width) : centre;
    if (!(width > smallestRatio * f0) || !(width < largestRatio * f0)) return {};
    return Look(f0, width);
}

PlacementSearch::Seen PlacementSearch::Centred(double& centre, double width, int steps) {
    // Where all limits fail by far, what gains leads astray.
    const double low = upward ? bands.PassLow : bands.StopLow;
    const double high = upward ? bands.PassHigh : bands.StopHigh;
    if (centre < low || centre > high) centre = std::sqrt(low * high);
    const double reach = 1.0 + std::min(centreReach * width / centre, centreReachMost);
    const double lowest = std::log(low / reach), highest = std::log(high * reach);
    double x = std::log(centre);
    Seen seen = LookAt(centre, width), bestHere = seen;
    const auto note = [&](const Seen& s, double at) {
        if (s.At.Score > bestHere.At.Score) bestHere = s, centre = std::exp(at);
    };
    if (seen.At.Margin == HopelessDb || Balanced(seen.Rising, seen.At)) return seen;
    // Outwards until the sign changes.
    double step = 0.05 * width / centre * (seen.Rising < 0.0 ? 1.0 : -1.0);
    Seen other = seen;
    double y = x;
    int used = 0;
    for (; used < steps; ++used) {
        y = std::clamp(x + step, lowest, highest);
        if (y == x) return bestHere;
        other = LookAt(std::exp(y), width);
        if (other.At.Margin == HopelessDb) return bestHere;
        note(other, y);
        if ((other.Rising < 0.0) != (seen.Rising < 0.0)) break;
        x = y, seen = other, step *= 2.5;
    }
    if ((other.Rising < 0.0) == (seen.Rising < 0.0)) return bestHere;
    Bracket bracket(x, seen.Rising, y, other.Rising);
    for (; used < steps && !bracket.Closed(); ++used) {
        const double z = bracket.Next();
        const Seen s = LookAt(std::exp(z), width);
        if (s.At.Margin == HopelessDb) break;
        note(s, z);
        if (Balanced(s.Rising, s.At)) break;
        bracket.Take(z, s.Rising);
    }
    return bestHere;
}

bool PlacementSearch::BracketWidth(double low, double high, double& centre, int steps) {
    const double sign = upward ? 1.0 : -1.0;  // a wider notch takes from the pass limits
    const int inner = steps == widthSteps ? centreSteps : centreStepsFromStart;
    double a = std::log(low), b = std::log(high);
    Seen first = Centred(centre, low, inner), last = Centred(centre, high, inner);
    for (int tries = 0; tries < 3 && last.At.Margin == HopelessDb; ++tries) {
        b = 0.5 * (a + b);
        last = Centred(centre, std::exp(b), inner);
    }
    for (int tries = 0; tries < 3 && first.At.Margin == HopelessDb; ++tries) {
        a = 0.5 * (a + b);
        first = Centred(centre, std::exp(a), inner);
    }
    if (first.At.Margin == HopelessDb || last.At.Margin == HopelessDb) return false;
    // With limits on one side alone the centre balances them at any width.
    const bool bothSides = upward ? bands.StopBelow > 0.0 && bands.StopAbove > 0.0
                                  : bands.InnerLow > 0.0 && bands.InnerHigh > 0.0;
    if (!bothSides || sign * first.Widening > 0.0 || sign * last.Widening < 0.0) {
        if (steps == widthSteps) GoldenWidth(a, b, centre, steps + goldenMore, inner);
        return false;
    }
    Bracket bracket(a, sign * first.Widening, b, sign * last.Widening);
    for (int step = 0; step < steps + (Decides(best.Margin) ? decidingSteps : 0); ++step) {
        if (bracket.Closed()) break;
        if (worth > HopelessDb && IsNoBetterBetween(first.At, last.At, centringDoubt)) break;
        const double x = bracket.Next();
        const Seen seen = Centred(centre, std::exp(x), inner);
        if (seen.At.Margin == HopelessDb || Balanced(seen.Widening, seen.At)) break;
        bracket.Take(x, sign * seen.Widening);
        (sign * seen.Widening < 0.0 ? first : last) = seen;
    }
    return true;
}

void PlacementSearch::GoldenWidth(double a, double b, double& centre, int steps, int inner) {
    constexpr double golden = 0.6180339887498949;
    const auto score = [&](double x) { return Centred(centre, std::exp(x), inner).At.Score; };
    double x = b - golden * (b - a), y = a + golden * (b - a);
    double atX = score(x), atY = score(y);
    for (int step = 0; step < steps; ++step) {
        if (atX > atY) {
            b = y, y = x, atY = atX;
            x = b - golden * (b - a);
            atX = score(x);
        } else {
            a = x, x = y, atX = atY;
            y = a + golden * (b - a);
            atY = score(y);
        }
    }
}

void PlacementSearch::FindBand(const Candidate& candidate, const Placement* start) {
    const double low = upward ? bands.PassLow : bands.StopLow;
    const double high = upward ? bands.PassHigh : bands.StopHigh;
    if (!(low > 0.0)) return;
    if (start) {
        constexpr double nearby = 1.05;
        double centre = start->F0;
        if (upward)
            centre = std::sqrt(start->F0 * start->F0 - 0.25 * start->BandWidth * start->BandWidth);
        Centred(centre, start->BandWidth, centreStepsFromStart);
        if (BracketWidth(start->BandWidth / nearby, start->BandWidth * nearby, centre,
                         widthStepsFromStart) ||
            IsNear(best, *start))
            return;
    }
    double centre = std::sqrt(low * high);
    const double least = std::max(high - low, 2.0 * smallestRatio * centre);
    // Up to where the limits on the other side stand.
    const double below = upward ? bands.StopBelow : bands.InnerLow;
    const double above = upward ? bands.StopAbove : bands.InnerHigh;
    double most = 4.0 * least;
    if (below > 0.0 || above > 0.0)
        most = std::max(below > 0.0 ? centre * centre / below - below : 0.0,
                        above > 0.0 ? above - centre * centre / above : 0.0);
    most = std::max(most, 1.1 * least);
    const double edge = ReturnLossBandEdge(maker.Design());
    if (HasRipple(candidate) && upward && high > low) {
        double middle = centre;
        Centred(middle, (high - low) / edge * justInside, centreSteps);
    }
    constexpr double farther = 3.0, far = 1.3;
    const double reach = candidate.Response == ResponseType::BesselDelay ? farther : far;
    const double widest = upward ? most * reach : std::min(most * reach, widestNotch * centre);
    if (BracketWidth(least / reach, widest, centre, widthSteps)) TryWider(centre);
}

void PlacementSearch::TryWider(double centre) {
    constexpr double narrower = 1.02, wider = 1.3;
    constexpr double worthItDb = -2.5, enoughDb = 1.0;
    constexpr int steps = 5;
    if (maker.Design().PartModel.Choice == PartChoice::IdealParts) return;
    if (best.Margin < worthItDb || best.Margin > enoughDb) return;
    const double width = best.BandWidth;
    GoldenWidth(std::log(width / narrower), std::log(width * wider), centre, steps,
                centreStepsFromStart);
}

// At the best place three limits meet as a rule: both of the pass and one stop limit, or both stop
// limits and one of the pass. The two that belong together are balanced at the geometric mean of
// their edges, whatever the width. Bracketing centre and width in turn can miss it where decibels
// of a pass limit count for little beside those of the stop band.
void PlacementSearch::TryMiddles() {
    if (kept != KeptLimits::All) return;
    if (best.Margin < middlesFromDb || best.Margin > decidesToDb) return;
    const double below = upward ? bands.StopBelow : bands.InnerLow;
    const double above = upward ? bands.StopAbove : bands.InnerHigh;
    const double low = upward ? bands.PassLow : bands.StopLow;
    const double high = upward ? bands.PassHigh : bands.StopHigh;
    for (const double square : {low * high, below * above})
        if (square > 0.0) TryMiddle(std::sqrt(square), high - low);
}

void PlacementSearch::TryMiddle(double centre, double least) {
    const double sign = upward ? 1.0 : -1.0;
    const auto gain = [&](const Seen& seen) { return sign * (seen.At.Pass - seen.At.Stop); };
    const double most = middlesReach * std::max(least, best.BandWidth);
    const double a = std::log(least / middlesReach);
    const double b = std::log(upward ? most : std::min(most, widestNotch * centre));
    Seen narrow = LookAt(centre, std::exp(a)), wide = LookAt(centre, std::exp(b));
    if (narrow.At.Margin == HopelessDb || wide.At.Margin == HopelessDb) return;
    if (!(gain(narrow) < 0.0) || !(gain(wide) > 0.0)) return;
    Bracket bracket(a, gain(narrow), b, gain(wide));
    for (int step = 0; step < middleSteps && !bracket.Closed(); ++step) {
        if (IsNoBetterBetween(narrow.At, wide.At, 0.0)) return;
        const double x = bracket.Next();
        const Seen seen = LookAt(centre, std::exp(x));
        if (seen.At.Margin == HopelessDb || std::abs(gain(seen)) < closeEnough) return;
        bracket.Take(x, gain(seen));
        (gain(seen) < 0.0 ? narrow : wide) = seen;
    }
}

Placement PlacementSearch::Find(const Candidate& candidate, const Placement* start,
                                double worthDb) {
    best = {};
    worth = worthDb;
    if (band) {
        FindBand(candidate, start);
        TryMiddles();
    } else
        FindCorner(candidate, start);
    return best;
}

Placement PlacementSearch::FindStandard(const Candidate&, const Placement& around) {
    best = {};
    worth = HopelessDb;
    Look(around.F0, around.BandWidth);
    constexpr int cornerTries = 24, widthTries = 5, centreTries = 7;
    constexpr double cornerReach = 0.12, widthReach = 0.15, centreReach = 0.25;
    if (!band) {
        for (int i = -cornerTries; i <= cornerTries; ++i)
            if (i != 0) LookIfBetter(around.F0 * std::exp(cornerReach * i / cornerTries), 0.0);
        return best;
    }
    for (int w = -widthTries; w <= widthTries; ++w) {
        const double width = around.BandWidth * std::exp(widthReach * w / widthTries);
        for (int c = -centreTries; c <= centreTries; ++c) {
            const double f0 = around.F0 + centreReach * width * c / centreTries;
            if (w == 0 && c == 0) continue;
            if (width > smallestRatio * f0 && width < largestRatio * f0) LookIfBetter(f0, width);
        }
    }
    return best;
}

}  // namespace ladderwise
