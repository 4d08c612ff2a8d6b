// Where a candidate does best: the F0, and the bandwidth, that make its smallest margin largest. No
// Qt.
#pragma once

#include <optional>
#include <vector>

#include "choosing/Candidate.h"
#include "choosing/LimitGrid.h"

namespace ladderwise {

/// Which limits must hold first. All: all margins count alike.
enum class KeptLimits { All, Pass, Stop };

/// A candidate at its place.
struct Placement {
    double F0 = 0.0;             ///< Hz
    double BandWidth = 0.0;      ///< Hz; of low-pass and high-pass not in use
    double Margin = HopelessDb;  ///< smallest, dB
    double Pass = HopelessDb;    ///< smallest of the pass limits, dB
    double Stop = HopelessDb;    ///< smallest of the stop limits
    double Score = HopelessDb;   ///< what was made largest
    double Loss = 0.0;           ///< largest attenuation in the limits of attenuation at most, dB
};

/// The frequencies of a need, from which searches start.
struct NeedBands {
    double PassLow = 0.0, PassHigh = 0.0;     ///< Hz, all pass limits; 0: none
    double StopLow = 0.0, StopHigh = 0.0;     ///< Hz, all stop limits; 0: none
    double StopBelow = 0.0, StopAbove = 0.0;  ///< the ends next to the pass band; 0: none
    double InnerLow = 0.0, InnerHigh = 0.0;   ///< of a notch: the pass limits next to the stop band
    std::vector<double> NarrowStops{};        ///< centres of stop limits that a trap may sit in
};
NeedBands BandsOf(const LimitLines& limits, PassType pass);

class PlacementSearch {
public:
    /// `thorough`: traps are put into narrow limits to the last hundredths of a dB.
    PlacementSearch(LadderMaker& maker, LimitGrid& grid, PassType pass, KeptLimits kept,
                    bool thorough = false);

    /// Searches for the candidate that `maker` has taken up; from `start` with fewer analyses.
    /// A low-pass or high-pass is bracketed in F0: one kind of limit gains what the other loses. A
    /// band is centred, by what gains as it moves up against what loses, at each width; the width
    /// is bracketed between too narrow for the pass limits and too wide for the others, or, with
    /// limits on one side of it alone, searched by golden section, and so it is, about there, for
    /// parts with losses.
    /// What surely comes to no more than `worthDb` is given up.
    Placement Find(const Candidate& candidate, const Placement* start = nullptr,
                   double worthDb = HopelessDb);

    /// The margins of what `maker` has taken up at one place.
    Placement At(double f0, double bandWidth) { return Look(f0, bandWidth).At; }

    /// Looks around a placement for one whose standard values do better.
    Placement FindStandard(const Candidate& candidate, const Placement& around);

    /// How many ladders were analysed so far.
    long Analyses() const { return analyses; }

private:
    struct Seen {
        Placement At{};
        double Widening = 0.0;  ///< what gains as the pass band widens, less what loses
        double Rising = 0.0;    ///< what gains as the band moves up, less what loses
    };

    Seen Look(double f0, double bandWidth);
    /// The same for what may be the best yet, and nothing for the others.
    void LookIfBetter(double f0, double bandWidth);
    /// What is made largest: the smaller of both kinds' margins, of limits to be kept first.
    double ScoreOf(const KindMargins& margins) const;
    double Weighed(double margin, bool isPass) const;
    /// Whether what lies between two placements, of which one has the larger margin of the pass
    /// limits and the other that of the stop limits, is no better than what is known. `doubt`, dB:
    /// how far their balances may be off.
    bool IsNoBetterBetween(const Placement& a, const Placement& b, double doubt) const;
    Seen LookAt(double centre, double width);
    void Keep(const Seen& seen);
    void FindCorner(const Candidate& candidate, const Placement* start);
    /// False if the ends do not enclose a balance.
    bool BracketCorner(double low, double high, int steps);
    void TryTraps(double low, double high);
    void PolishCorner();
    /// Of limits so narrow that a trap may sit in them.
    void FindTraps(double low, double high);
    void FindBand(const Candidate& candidate, const Placement* start);
    Seen Centred(double& centre, double width, int steps);
    void GoldenWidth(double a, double b, double& centre, int steps, int inner);
    bool BracketWidth(double low, double high, double& centre, int steps);
    /// Parts that lose let through more as the band widens, which may be worth the flatter edges.
    void TryWider(double centre);
    void TryMiddles();
    void TryMiddle(double centre, double least);

    LadderMaker& maker;
    LimitGrid& grid;
    NeedBands bands;
    bool band, upward, thorough;
    KeptLimits kept;
    Placement best{};
    double worth = HopelessDb;  ///< dB
    long analyses = 0;
};

}  // namespace ladderwise
