// What a filter must do, turned into all filters that do it, best first. No Qt.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <vector>

#include "choosing/Candidate.h"
#include "choosing/ChoosingMemory.h"
#include "choosing/PlacementSearch.h"
#include "pipeline/DesignInputs.h"
#include "pipeline/LimitMargins.h"

namespace ladderwise {

/// Which ladder counts. AsSet: with the part model and the standard values that are set.
enum class WhatCounts { AsSet, Ideal, Parts, Standard };

/// What a filter costs: every part and every drawback counts so much. The practical ranges are of
/// the values that are at hand.
struct CostWeights {
    double Inductor = 2.0;
    double Capacitor = 1.0;
    double Impractical = 5.0;  ///< a value outside the practical range
    double OtherLoad = 5.0;    ///< a load that is not the user's
    double PerDbOfLoss = 1.0;
    ValueRange PracticalC{1e-12, 1e-7};  ///< F
    ValueRange PracticalL{2e-9, 1e-4};   ///< H
};

/// What is looked for: the pass type, terminations and part model of the inputs, and the limits.
/// Any kind of band-pass stands for all of them.
struct ChoosingRequest {
    DesignInputs Inputs{};
    DesignState Present{};  ///< for the coefficients that were read from a file
    LimitLines Limits{};
    WhatCounts Only = WhatCounts::AsSet;
    CostWeights Weights{};
    int MostRows = 200;
    /// Without it rows are left out than which another is as good in everything, by what the search
    /// knows of them, though they count as rows.
    bool DominatedRows = true;
    int YieldRows = 20;  ///< so many of the best are judged by boards too
    int Boards = 1000;
    std::uint32_t Seed = 1;
};

/// How far a limit would have to be relaxed for a filter to keep it.
struct RelaxedLimit {
    std::size_t Limit = 0;  ///< index into the limits
    double By = 0.0;        ///< dB, or s of a delay variation
};

inline constexpr int ThumbnailPoints = 96;

/// A filter of the list. The ladder is the one that would be built, judged on the analysis itself.
struct FilterChoice {
    Candidate What{};
    double F0 = 0.0;         ///< Hz
    double BandWidth = 0.0;  ///< Hz
    ElementList Elements{};
    int NumElements = 0;
    bool FormCLC = true;
    double RLoad = 0.0;      ///< ohm
    bool OtherLoad = false;  ///< it is not the user's
    PartCounts Parts{};
    ValueRange Inductors{};   ///< H
    ValueRange Capacitors{};  ///< F
    LimitReport Report{};
    std::optional<double> LossDb{};  ///< largest attenuation in the limits of attenuation at most
    double MarginDb = 0.0;           ///< smallest of the limits in dB
    double TightestHz = 0.0;         ///< where that is
    double SpreadDb = 0.0;  ///< standard deviation there by the tolerances, linear estimate
    double Cost = 0.0;
    bool Folded = false;  ///< another row is as good in everything and better in something
    std::optional<double> PassingShare{};  ///< of boards; of the best rows only
    KeptLimits Kept = KeptLimits::All;     ///< of a miss: the limits that hold
    std::vector<RelaxedLimit> Relax{};     ///< of a miss: what the others have to yield
};

/// The fewest inductors and the fewest parts of a kind of rows; empty if there are none.
struct FewestParts {
    std::optional<int> Inductors{};
    std::optional<int> Parts{};
};

struct FilterList {
    std::vector<FilterChoice> Choices{};  ///< by ascending cost, at most MostRows
    /// Where nothing meets the limits: what comes nearest with the pass limits kept, then with the
    /// stop limits kept, each by what has to be relaxed.
    std::vector<FilterChoice> NearestMisses{};
    FewestParts AtUsersLoad{}, AtOtherLoad{};
    int NotMade = 0;     ///< dominated rows that were not asked for
    int Candidates = 0;  ///< searched; what surely costs more than every row is not
    long Analyses = 0;
    bool Stopped = false;  ///< by the callback; the list is empty
};

/// Called now and then with the share done, 0 .. 1; false stops.
using ChoosingProgress = std::function<bool(double done)>;

/// The list for a request. All of it is done in this call, on this thread; math errors of
/// candidates that cannot be built do not come into the log. Without limits the list is empty.
FilterList ChooseFilters(const ChoosingRequest& request, ChoosingMemory& memory,
                         const ChoosingProgress& progress = nullptr);

/// What becomes of the last list at other limits, in a frame or two, while one of them is dragged:
/// its rows that are not folded and, of each group that came near, the best candidate, each
/// searched from where it was. No boards, no misses; `memory` is left for the list that follows.
FilterList ReviseChoices(const ChoosingRequest& request, const FilterList& last,
                         ChoosingMemory& memory);

/// The inputs that make a row, all else as in the request: as if they were typed and chosen.
DesignInputs InputsOf(const ChoosingRequest& request, const FilterChoice& choice);

/// All settings that make the row's ladder from those of a fresh program, by their console names:
/// numbers in the unit that is typed and with all their digits.
std::vector<std::pair<std::string, std::string>> SettingsOf(const ChoosingRequest& request,
                                                            const FilterChoice& choice);

/// Attenuation (dB) of a row at ThumbnailPoints frequencies from `low` to `high` (Hz), spaced by
/// equal factors.
std::array<float, ThumbnailPoints> ThumbnailOf(const ChoosingRequest& request,
                                               const FilterChoice& choice, double low, double high);

}  // namespace ladderwise
