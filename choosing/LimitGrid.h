// Margins of a ladder at a few hundred frequencies: what a search asks thousands of times, and what
// a thousand boards are judged by. Extremes between two points are those of a parabola. No Qt.
#pragma once

#include <array>
#include <limits>
#include <vector>

#include "analysis/SweepTables.h"
#include "design/FilterDesign.h"
#include "design/LimitLine.h"

namespace ladderwise {

/// A margin where nothing is limited.
inline constexpr double NoLimitDb = 1e3;
/// The margin of a ladder that cannot be built or analysed.
inline constexpr double HopelessDb = -1e3;

/// True for what asks for a pass band: all but attenuation at least.
constexpr bool IsPassLimit(LimitKind kind) {
    return kind != LimitKind::AttenMin;
}

/// The margin of one limit, dB (of a delay variation ten times the share that is left), below and
/// above the centre of the band.
struct RowMargin {
    double Below = NoLimitDb;
    double Above = NoLimitDb;
    double At = 0.0;  ///< Hz, of the smaller one

    double Least() const { return Below < Above ? Below : Above; }
};

/// The margins of a ladder over all limits of a kind, or what they do not exceed.
struct KindMargins {
    double Pass = NoLimitDb;
    double Stop = NoLimitDb;
};

class LimitGrid {
public:
    /// `points` frequencies (at least a few for each limit) over the limits, dense at their ends.
    /// Limits that begin at 0 Hz begin at a small part of their end.
    LimitGrid(const LimitLines& limits, int points);

    /// Margins of the ladder in `design`, one for each limit; `centre` (Hz) parts those below from
    /// those above.
    const std::vector<RowMargin>& Judge(const FilterDesign& design, double centre);

    /// What the margins of Judge do not exceed, from a quarter of its points: most of the ladders
    /// around the best one need no more to be turned down. Limits of delay are left out.
    KindMargins MostOf(const FilterDesign& design);

    /// The margin at every point of the limits in dB, and one of each limit of delay, into `out`:
    /// what Judge takes the smallest of, but for extremes between points. False, and `out` of no
    /// use, where the ladder cannot be analysed.
    bool PointMargins(const FilterDesign& design, std::vector<double>& out);

    const LimitLines& Limits() const { return lines; }

private:
    struct Span {
        std::size_t First = 0, Count = 0;
    };
    /// Frequencies, what the kernel needs of them, and what it gave.
    struct Samples {
        std::vector<Span> Spans{};  ///< of each limit
        std::vector<double> Freqs{}, Re{}, Im{}, Power{}, Reflection{};
        SweepTables Tables{};
        std::vector<double> Skin{};  ///< SkinOmega of F0 1 Hz

        void Prepare(bool reflects);
        /// The tables for another F0: few of them depend on it.
        void Move(double f0);
        /// False where the ladder cannot be analysed.
        bool Analyse(const FilterDesign& design);
        double ExtremePower(const Span& span, bool largest, double& at) const;
        double LargestReflection(const Span& span, double& at) const;
        double DelayVariation(const Span& span, double& at) const;
    };
    double MarginOf(const LimitLine& line, const Span& span, double& at) const;

    LimitLines lines;
    Samples all{}, few{};
    bool reflects = false;
    std::vector<RowMargin> margins;
};

}  // namespace ladderwise
