// The search over all candidates, its refinement, and the order of what does.
#include "choosing/FilterChoices.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <set>

#include "choosing/BoardYield.h"
#include "choosing/CandidateList.h"
#include "choosing/Refinement.h"
#include "choosing/RowMaker.h"
#include "choosing/RowOrder.h"
#include "numbers/Matherrmain.h"

namespace ladderwise {

namespace {

constexpr int searchPoints = 256;  ///< of the analysis, which works in blocks of as many
constexpr int narrowPoints = 1024;
constexpr double narrowMarginDb = 0.05;  ///< margins closer to 0 are bracketed again
constexpr double doubtDb = 0.01;         ///< what a row may fail by on the points, to be judged
constexpr double beyondSteps = -4.0;     ///< dB: a margin that standard values do not make good
constexpr double surelyMetDb = 1e-6;     ///< a smaller margin is rounding
constexpr int usualTraps = 5, mostTraps = 10;
constexpr double refineBelowDb = 0.3, refineAboveDb = -6.0;  ///< margins that are refined
constexpr std::size_t mostHills = 4;                         ///< of a group that are climbed
constexpr double knownHopelessDb = -7.0;  ///< and below: of no use to a list after the next change
constexpr double knownFailedDb = -1.0;    ///< the same after refining
constexpr double trapFormsAboveDb = -0.5;
constexpr std::size_t mostMisses = 10;  ///< of each kind
constexpr std::size_t missesJudged = 60, missesSearched = 80;
constexpr int candidatesPerCall = 16;  ///< between two calls of the progress callback
constexpr double shareOfSearch = 0.8;
constexpr int rowsInReserve = 8;
constexpr std::size_t mostRevised = 40, mostRevisedSteps = 12;  ///< rows; of standard values
constexpr double revisedFromDb = -3.0;
constexpr double nominalF0 = 1e8, nominalWidth = 0.2;  ///< Hz, share: to count parts at

/// Puts the log back as it was: a candidate that cannot be built is nobody's error.
class QuietMathErrors {
public:
    QuietMathErrors() : before(MathErrors()) {}
    ~QuietMathErrors() { MathErrors() = before; }
    QuietMathErrors(const QuietMathErrors&) = delete;

private:
    const MathErrorLog before;
};

/// A candidate at the best place that was found.
struct Found {
    ListedCandidate Listed{};
    Placement At{};
    PartCounts Parts{};
    bool OtherLoad = false;
    double Cost = 0.0;  ///< with the loss on the points
};

class Chooser {
public:
    Chooser(const ChoosingRequest& asked, ChoosingMemory& kept, const ChoosingProgress& callback)
        : request(asked),
          memory(kept),
          progress(callback),
          rows(asked),
          maker(rows.Base(), kept.Prototypes),
          coarse(asked.Limits, searchPoints),
          fine(asked.Limits, narrowPoints),
          standard(rows.Base().StdLCValues),
          delays(std::any_of(
              asked.Limits.begin(), asked.Limits.end(),
              [](const LimitLine& line) { return line.Kind == LimitKind::DelayVariationMax; })),
          notIdeal(standard || rows.Base().PartModel.Choice != PartChoice::IdealParts),
          refiner(maker, coarse, kept, rows.Base().PassType, standard,
                  [this](Candidate& what, const Placement* start, double worthDb) {
                      return Place(what, KeptLimits::All, start, coarse, true, worthDb);
                  }) {}

    FilterList Run() {
        FilterList list;
        TakeUp(memory, rows.Base(), request.Limits);
        Search(list);
        if (!list.Stopped) {
            Refine();
            FinishRows(list);
            list.Candidates = static_cast<int>(found.size());
            if (list.Choices.empty() && !list.Stopped) FindMisses(list);
            list.Analyses = analyses + refiner.Analyses();
        }
        if (list.Stopped) list = {.Stopped = true};
        return list;
    }

    FilterList Revise(const FilterList& last) {
        std::set<ChoosingMemory::Group> known;
        std::vector<ChoosingMemory::Remembered> starts;
        for (const std::vector<FilterChoice>* const list : {&last.Choices, &last.NearestMisses})
            for (const FilterChoice& row : *list)
                if (!row.Folded) {
                    starts.push_back({row.What, {row.F0, row.BandWidth, row.MarginDb}});
                    known.insert(GroupOf(row.What));
                }
        starts.resize(std::min(starts.size(), standard ? mostRevisedSteps : mostRevised));
        if (!standard)
            for (ChoosingMemory::Remembered& near : NearestOfGroups(memory, known, revisedFromDb))
                starts.push_back(std::move(near));
        if (starts.size() > 2 * mostRevised) starts.resize(2 * mostRevised);
        for (ChoosingMemory::Remembered& start : starts) {
            if (!maker.Use(start.What)) continue;
            const Placement at = Place(start.What, KeptLimits::All, &start.At, coarse);
            if (at.Margin > HopelessDb)
                Note({.Listed = {start.What}, .At = at, .Parts = CountParts(maker.Design())});
        }
        FilterList list;
        FinishRows(list);
        list.Candidates = static_cast<int>(found.size());
        list.Analyses = analyses + refiner.Analyses();
        return list;
    }

private:
    bool Report(double done) const { return !progress || progress(done); }
    /// Searches one candidate, from `start` where there is one; only as far as it may come to more
    /// than `worthDb`.
    Placement Place(Candidate& candidate, KeptLimits kept, const Placement* start, LimitGrid& grid,
                    bool thorough = false, double worthDb = HopelessDb) {
        PlacementSearch search(maker, grid, candidate.Pass, kept, thorough);
        maker.UseStandardValues(false);
        Placement at;
        if (maker.Use(candidate)) {
            at = search.Find(candidate, start, standard ? HopelessDb : worthDb);
            // Steps of values make a response no better by as much as this.
            if (standard && at.Margin > (kept == KeptLimits::All ? beyondSteps : HopelessDb)) {
                maker.UseStandardValues(true);
                at = search.FindStandard(candidate, at);
            }
        }
        maker.UseStandardValues(standard);
        analyses += search.Analyses();
        return at;
    }

    /// Notes a candidate that `maker` has taken up, and what it costs.
    void Note(const Found& f) {
        found.push_back(f);
        Price(found.back());
        if (f.At.Margin >= narrowMarginDb) sureCosts.push_back(found.back().Cost);
    }

    void Price(Found& f) {
        f.OtherLoad = rows.IsOtherLoad(maker.Design().RLoad);
        if (maker.Place(f.At.F0, f.At.BandWidth))
            f.Cost = rows.CostOf(maker.Design()) + request.Weights.PerDbOfLoss * f.At.Loss;
    }

    /// The cost that rows of the list do not exceed: of the last of more than are shown that
    /// surely meet the limits.
    double MostCost() {
        const auto wanted = static_cast<std::size_t>(request.MostRows + rowsInReserve);
        if (sureCosts.size() < wanted) return std::numeric_limits<double>::infinity();
        const auto last = sureCosts.begin() + static_cast<std::ptrdiff_t>(wanted) - 1;
        std::nth_element(sureCosts.begin(), last, sureCosts.end());
        return *last;
    }

    /// The least that a candidate costs, whatever its values: its parts and its load.
    double LeastCost(const Candidate& what) {
        const CostWeights& weights = request.Weights;
        const double pair = weights.Inductor + weights.Capacitor;
        if (what.Pass == PassType::DirectCoupled)
            return what.Poles * pair +
                   (what.Poles - 1) * std::min(weights.Inductor, weights.Capacitor);
        if (what.Pass == PassType::Norton) return (what.Poles - 1) * pair;
        const auto [place, isNew] = memory.Parts.try_emplace(GroupOf(what));
        if (isNew && maker.Use(what)) {
            maker.Place(nominalF0, HasBandWidth(what.Pass) ? nominalWidth * nominalF0 : 0.0);
            place->second = CountParts(maker.Design());
        }
        const PartCounts& parts = place->second;
        return parts.Inductors * weights.Inductor + parts.Capacitors * weights.Capacitor;
    }

    /// A first place for what is made even at its place.
    bool Prepare(Candidate& candidate) {
        if (candidate.Pass != PassType::DirectCoupled && candidate.Pass != PassType::Norton)
            return true;
        const NeedBands bands = BandsOf(request.Limits, candidate.Pass);
        const double width = std::max(bands.PassHigh - bands.PassLow, 0.01 * bands.PassHigh);
        return maker.Use(candidate) &&
               maker.MakeEven(candidate, std::sqrt(bands.PassLow * bands.PassHigh), 1.15 * width);
    }

    void SearchOne(ListedCandidate listed) {
        const ChoosingMemory::Key key{GroupOf(listed.What), listed.RippleIndex, listed.AttenIndex};
        const auto remembered = memory.Places.find(key);
        const bool known = remembered != memory.Places.end();
        if (known) {
            listed.What.TankNanohenries = remembered->second.What.TankNanohenries;
            listed.What.NortonK = remembered->second.What.NortonK;
            listed.What.NortonM = remembered->second.What.NortonM;
        } else if (!Prepare(listed.What)) {
            return;
        }
        if (!maker.Use(listed.What)) return;
        // The terminations decide some forms, and attenuations are raised where they must be.
        Candidate made = listed.What;
        made.FormCLC = maker.Design().FormCLC;
        const double atten = IsElliptic(made.Response) ? maker.Design().Elliptic.AttenUsedDb : 0.0;
        const double ripple = HasRipple(made) ? made.RippleDb : 0.0;
        if (!seen.insert({GroupOf(made), ripple, atten}).second) return;
        listed.What.FormCLC = made.FormCLC;
        if (known && remembered->second.What == listed.What &&
            remembered->second.At.Margin + remembered->second.Grown < knownHopelessDb)
            return Note({listed, remembered->second.At, CountParts(maker.Design())});
        const Placement at =
            Place(listed.What, KeptLimits::All, known ? &remembered->second.At : nullptr, coarse);
        if (at.Margin == HopelessDb) return;
        Note({listed, at, CountParts(maker.Design())});
        memory.Places[key] = {listed.What, at};
        TryTrapForms(found.back());
    }

    /// Searches by rising cost, until there are more sure rows than are shown. False if the
    /// callback stops it.
    bool SearchList(const std::vector<ListedCandidate>& candidates) {
        std::vector<std::pair<double, ListedCandidate>> byCost;
        for (ListedCandidate listed : candidates) {
            listed.What.RippleDb = RoundedTyped(listed.What.RippleDb);
            listed.What.AttenDb = RoundedTyped(listed.What.AttenDb);
            byCost.emplace_back(LeastCost(listed.What), listed);
        }
        std::stable_sort(byCost.begin(), byCost.end(),
                         [](const auto& a, const auto& b) { return a.first < b.first; });
        int count = 0;
        double checked = -1.0;
        for (const auto& [leastCost, listed] : byCost) {
            if (++count % candidatesPerCall == 0 &&
                !Report(shareOfSearch * count / double(byCost.size())))
                return false;
            if (leastCost > checked && leastCost > MostCost()) break;
            checked = leastCost;
            SearchOne(listed);
        }
        return true;
    }

    void Search(FilterList& list) {
        const FilterDesign& base = rows.Base();
        list.Stopped = !SearchList(ListCandidates(base, request.Limits, 1, usualTraps));
        // More traps only for the families that have not met the limits and, as parts may lose more
        // than they give, that the last trap has brought nearer.
        std::map<ResponseType, double> fewer, most;
        for (const Found& f : found) {
            const Candidate& what = f.Listed.What;
            double& best = (what.Poles < usualTraps ? fewer : most)
                               .try_emplace(what.Response, HopelessDb)
                               .first->second;
            best = std::max(best, f.At.Margin);
        }
        std::vector<ListedCandidate> more =
            ListCandidates(base, request.Limits, usualTraps + 1, mostTraps);
        std::erase_if(more, [&](const auto& listed) {
            const ResponseType family = listed.What.Response;
            return fewer[family] > 0.0 || most[family] > 0.0 || most[family] < fewer[family];
        });
        if (!list.Stopped) list.Stopped = !SearchList(more);
    }

    /// The other forms of the traps of a band: other values, the same response but for what parts
    /// lose and for standard values.
    void TryTrapForms(const Found of) {
        const Candidate& what = of.Listed.What;
        if (!IsElliptic(what.Response) || !HasTrapPanel(what.Pass)) return;
        if (of.At.Margin < trapFormsAboveDb) return;
        for (int form = 2; form <= 4; ++form) {
            Found other = of;
            other.Listed.What.TrapType = form;
            if (notIdeal)
                other.At = Place(other.Listed.What, KeptLimits::All, &of.At, coarse);
            else
                maker.Use(other.Listed.What);
            if (other.At.Margin > HopelessDb) Note(other);
        }
    }

    /// True if the same family meets it with fewer inductors or parts and no more of the others.
    bool IsBehind(const Found& group) const {
        return std::any_of(found.begin(), found.end(), [&](const Found& f) {
            return f.At.Margin >= 0.0 && f.Listed.What.Pass == group.Listed.What.Pass &&
                   f.Listed.What.Response == group.Listed.What.Response &&
                   Fewer(f.Parts, group.Parts);
        });
    }

    /// Ripple and attenuation of each group near the front, beside those of the raster.
    void Refine() {
        std::map<ChoosingMemory::Group, std::vector<Found>> members;
        for (const Found& f : found)
            if (HasRipple(f.Listed.What)) members[GroupOf(f.Listed.What)].push_back(f);
        std::vector<std::vector<Found>> groups;
        for (auto& [group, of] : members) {
            std::stable_sort(of.begin(), of.end(), [](const Found& a, const Found& b) {
                return a.At.Margin > b.At.Margin;
            });
            const double best = of.front().At.Margin;
            if (best < refineBelowDb && best > refineAboveDb) groups.push_back(std::move(of));
        }
        std::stable_sort(groups.begin(), groups.end(), [](const auto& a, const auto& b) {
            return a.front().Parts.Both() < b.front().Parts.Both();
        });
        const bool anyMeets = std::any_of(found.begin(), found.end(), [](const Found& f) {
            return f.At.Margin >= narrowMarginDb;
        });
        for (const std::vector<Found>& group : groups)
            if (const Found& best = group.front(); LeastCost(best.Listed.What) <= MostCost() &&
                                                   !IsBehind(best) &&
                                                   !(anyMeets && HasFailedBefore(best)))
                RefineGroup(group);
    }

    /// True if all refining of the last lists left it failing by more than limits have moved.
    bool HasFailedBefore(const Found& group) const {
        const auto kept = memory.Refined.find(GroupOf(group.Listed.What));
        return kept != memory.Refined.end() &&
               kept->second.LargestRippleDb == refiner.LargestRipple() &&
               std::max(kept->second.At.Margin, group.At.Margin - kept->second.Grown) +
                       kept->second.Grown <
                   knownFailedDb;
    }

    /// The best beside the raster, from all hills of a group on it.
    void RefineGroup(const std::vector<Found>& group) {
        std::vector<PlacedCandidate> starts;
        for (const Found& f : group)
            if (IsHill(f, group)) starts.emplace_back(f.Listed.What, f.At);
        if (starts.size() > mostHills) starts.resize(mostHills);
        const std::optional<PlacedCandidate> refined = refiner.Refine(starts);
        if (!refined || !maker.Use(refined->first)) return;
        Found better = group.front();
        better.Listed.What = refined->first;
        better.At = refined->second;
        Note(better);
    }

    /// True for what does best among its neighbours in the raster, a group's best always.
    static bool IsHill(const Found& f, const std::vector<Found>& group) {
        return std::none_of(group.begin(), group.end(), [&](const Found& g) {
            return g.At.Margin > f.At.Margin &&
                   std::abs(g.Listed.RippleIndex - f.Listed.RippleIndex) <= 1 &&
                   std::abs(g.Listed.AttenIndex - f.Listed.AttenIndex) <= 1;
        });
    }

    /// Rows of everything that meets the limits, best first.
    void FinishRows(FilterList& list) {
        const double mostCost = MostCost();
        std::vector<const Found*> drafts;
        for (Found& f : found) {
            if (f.Cost > mostCost) continue;
            if (std::abs(f.At.Margin) < narrowMarginDb && !standard) {
                const Placement again = Place(f.Listed.What, KeptLimits::All, &f.At, fine);
                if (again.Margin > HopelessDb) f.At = again, Price(f);
            }
            if (f.At.Margin >= -doubtDb) drafts.push_back(&f);
        }
        std::stable_sort(drafts.begin(), drafts.end(),
                         [](const Found* a, const Found* b) { return a->Cost < b->Cost; });
        int count = 0, behind = 0;
        for (const Found* const draft : drafts) {
            // The loss of a draft is that on the points: a few more than are shown.
            if (std::ssize(list.Choices) + behind >= request.MostRows + rowsInReserve) break;
            if (++count % candidatesPerCall == 0 &&
                !Report(shareOfSearch + (1.0 - shareOfSearch) * count / double(drafts.size()))) {
                list.Stopped = true;
                return;
            }
            if (!request.DominatedRows && IsDominated(*draft, list.Choices)) {
                ++behind;
                continue;
            }
            FilterChoice row =
                rows.Make(maker, draft->Listed.What, draft->At.F0, draft->At.BandWidth);
            if (row.Report.Met() && row.MarginDb >= surelyMetDb)
                list.Choices.push_back(std::move(row));
        }
        list.NotMade = behind;
        Sort(list);
    }

    /// By what is known of a draft. Delays, of which margins in dB say nothing, are left to rows.
    bool IsDominated(const Found& draft, const std::vector<FilterChoice>& choices) const {
        return !delays && std::any_of(choices.begin(), choices.end(), [&](const auto& row) {
            return row.OtherLoad == draft.OtherLoad && AtLeastAsFew(row.Parts, draft.Parts) &&
                   row.MarginDb >= draft.At.Margin && row.LossDb.value_or(0.0) <= draft.At.Loss;
        });
    }

    void Sort(FilterList& list) {
        std::vector<FilterChoice>& choices = list.Choices;
        std::stable_sort(choices.begin(), choices.end(),
                         [](const FilterChoice& a, const FilterChoice& b) {
                             if (a.Cost != b.Cost) return a.Cost < b.Cost;
                             return a.MarginDb > b.MarginDb;
                         });
        CountFewest(list);
        if (choices.size() > static_cast<std::size_t>(request.MostRows))
            choices.resize(static_cast<std::size_t>(request.MostRows));
        FoldDominated(choices);
        const std::size_t judged =
            std::min(choices.size(), static_cast<std::size_t>(request.YieldRows));
        for (std::size_t i = 0; i < judged; ++i)
            if (maker.Use(choices[i].What) && maker.Place(choices[i].F0, choices[i].BandWidth))
                choices[i].PassingShare =
                    PassingShare(maker.Design(), coarse, fine, request.Boards, request.Seed);
    }

    /// What came nearest with all margins alike, no more than a few of each group.
    std::vector<Found> NearOnes() const {
        std::vector<Found> near = found;
        std::stable_sort(near.begin(), near.end(),
                         [](const Found& a, const Found& b) { return a.At.Margin > b.At.Margin; });
        std::map<decltype(GroupOf(Candidate{})), int> taken;
        std::erase_if(near, [&](const Found& f) { return ++taken[GroupOf(f.Listed.What)] > 3; });
        if (near.size() > missesSearched) near.resize(missesSearched);
        return near;
    }

    /// What comes nearest, with either kind of limits kept.
    void FindMisses(FilterList& list) {
        const std::vector<Found> near = NearOnes();
        for (const KeptLimits kept : {KeptLimits::Pass, KeptLimits::Stop}) {
            found.clear();
            for (Found f : near) {
                if (!Report(1.0)) {
                    list.Stopped = true;
                    return;
                }
                const Candidate& what = f.Listed.What;
                const auto [last, isNew] =
                    memory.Misses.try_emplace({GroupOf(what), what.RippleDb, what.AttenDb, kept});
                f.At = Place(f.Listed.What, kept, isNew ? nullptr : &last->second, coarse);
                last->second = f.At;
                if (f.At.Margin > HopelessDb) found.push_back(f);
            }
            const auto missing = [&](const Found& f) {
                return kept == KeptLimits::Pass ? f.At.Stop : f.At.Pass;
            };
            std::stable_sort(found.begin(), found.end(), [&](const Found& a, const Found& b) {
                return missing(a) > missing(b);
            });
            std::vector<FilterChoice> misses;
            for (std::size_t i = 0; i < found.size() && i < missesJudged; ++i) {
                FilterChoice row = MissOf(found[i], kept);
                if (!row.Relax.empty()) misses.push_back(std::move(row));
            }
            std::stable_sort(misses.begin(), misses.end(),
                             [](const FilterChoice& a, const FilterChoice& b) {
                                 return LargestRelaxed(a) < LargestRelaxed(b);
                             });
            if (misses.size() > mostMisses) misses.resize(mostMisses);
            for (FilterChoice& miss : misses)
                list.NearestMisses.push_back(std::move(miss));
        }
    }

    /// The row with what has to be relaxed; with nothing if a limit that was to be kept is not.
    FilterChoice MissOf(const Found& f, KeptLimits kept) {
        constexpr double reserve = 1.0 + 1e-9;  // lest rounding leaves the relaxed limit failed
        FilterChoice row = rows.Make(maker, f.Listed.What, f.At.F0, f.At.BandWidth);
        row.Kept = kept;
        for (std::size_t i = 0; i < row.Report.Rows.size(); ++i) {
            const LimitMargin& limit = row.Report.Rows[i];
            if (limit.Holds()) continue;
            if (!std::isfinite(limit.Margin) ||
                IsPassLimit(limit.Line.Kind) == (kept == KeptLimits::Pass)) {
                row.Relax.clear();
                return row;
            }
            row.Relax.push_back({i, -limit.Margin * reserve});
        }
        return row;
    }

    const ChoosingRequest& request;
    ChoosingMemory& memory;
    const ChoosingProgress& progress;
    RowMaker rows;
    LadderMaker maker;
    LimitGrid coarse, fine;
    bool standard, delays, notIdeal;
    Refinement refiner;
    std::vector<Found> found;
    std::vector<double> sureCosts;  ///< of what meets the limits by more than the points may miss
    std::set<std::tuple<ChoosingMemory::Group, double, double>> seen;
    long analyses = 0;
};

}  // namespace

FilterList ReviseChoices(const ChoosingRequest& request, const FilterList& last,
                         ChoosingMemory& memory) {
    if (request.Limits.empty()) return {};
    const QuietMathErrors quiet;
    ChoosingRequest quick = request;
    quick.YieldRows = 0;
    quick.DominatedRows = false;
    const ChoosingProgress none;
    const auto chooser = std::make_unique<Chooser>(quick, memory, none);
    return chooser->Revise(last);
}

FilterList ChooseFilters(const ChoosingRequest& request, ChoosingMemory& memory,
                         const ChoosingProgress& progress) {
    if (request.Limits.empty()) return {};
    const QuietMathErrors quiet;
    const auto chooser = std::make_unique<Chooser>(request, memory, progress);
    return chooser->Run();
}

}  // namespace ladderwise
