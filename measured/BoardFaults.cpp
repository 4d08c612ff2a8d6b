// Hypotheses, first looked at on few points, the likeliest fitted to the end.
#include "measured/BoardFaults.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include "design/Designators.h"

namespace ladderwise {

namespace {

// Of the hypotheses so many are looked at closer, fitted roughly, and fitted to the end.
constexpr std::size_t glanced = 14, roughed = 8, likeliest = 6;
constexpr double unlikelyCost = 9.0;  // beside that of the best, of rough fits
constexpr double largestPull = 40.0;  // of an explanation: more than chance has in store
constexpr double implausible = 0.3;   // of ln value: no tolerance
constexpr double convincing = 20.0;   // squares of the noise: how much likelier a fault must be
constexpr double alike = 9.0;         // and within how much two faults are the same
constexpr std::size_t retries = 1, triedAgain = 3;
constexpr double differs = 0.05;  // of ln value: parts that are worth swapping

struct Hypothesis {
    FaultKind Kind;
    std::vector<PartPlace> Places{};
};

struct Tried {
    Hypothesis What{};
    BoardExplanation How{};
    BoardState Glance{};
    double Cost = 0.0;  ///< of the glance, then of the end
};

/// All parts of a kind in the order of the ladder.
std::vector<PartPlace> PartsOf(const DesignState& design, ValueKind kind) {
    std::vector<PartPlace> places;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        for (int row = 0; row < 4; ++row)
            if (InfoOf(design.Elements[slot].Type).Values[row] == kind &&
                design.Elements[slot].Value(row) > SmallestPartValue)
                places.push_back({slot, row});
    return places;
}

double& ValueAt(DesignState& design, PartPlace place) {
    return design.Elements[place.Slot].Value(place.Row);
}

/// What can be wrong with a board.
std::vector<Hypothesis> HypothesesFor(DesignState design) {
    std::vector<Hypothesis> list;
    for (const ValueKind kind : {ValueKind::Inductance, ValueKind::Capacitance}) {
        const std::vector<PartPlace> places = PartsOf(design, kind);
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (const FaultKind fault :
                 {FaultKind::Missing, FaultKind::Shorted, FaultKind::Tenth, FaultKind::TenTimes})
                list.push_back({fault, {places[i]}});
            if (i + 1 < places.size() &&
                std::fabs(std::log(ValueAt(design, places[i]) / ValueAt(design, places[i + 1]))) >
                    differs)
                list.push_back({FaultKind::Swapped, {places[i], places[i + 1]}});
        }
    }
    list.push_back({FaultKind::PortsSwapped, {}});
    return list;
}

/// The ladder and the data under a hypothesis, not yet fitted.
BoardExplanation Under(const DesignState& design, const BoardData& data,
                       const BoardFreedom& freedom, const Hypothesis* what) {
    BoardExplanation how;
    how.Design = design;
    how.Data = data;
    PartFault fault = PartFault::None;
    PartPlace place;
    if (what) {
        if (!what->Places.empty()) place = what->Places.front();
        switch (what->Kind) {
            case FaultKind::Missing:
                fault = PartFault::Missing;
                break;
            case FaultKind::Shorted:
                fault = PartFault::Shorted;
                break;
            case FaultKind::Swapped:
                std::swap(ValueAt(how.Design, place), ValueAt(how.Design, what->Places[1]));
                break;
            case FaultKind::Tenth:
                ValueAt(how.Design, place) *= 0.1;
                break;
            case FaultKind::TenTimes:
                ValueAt(how.Design, place) *= 10.0;
                break;
            case FaultKind::PortsSwapped:
                how.Data.Turned = !how.Data.Turned;
                break;
        }
    }
    how.Model =
        std::make_unique<BoardModel>(how.Design, how.Data.LadderPorts(), freedom, fault, place);
    return how;
}

std::string Listed(const std::vector<std::string>& names, const std::string& joint) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "" : i + 1 == names.size() ? " " + joint + " " : ", ") + names[i];
    return text;
}

std::string WordsFor(FaultKind kind, const std::vector<std::string>& names) {
    switch (kind) {
        case FaultKind::Missing:
            return Listed(names, "or") + " is missing";
        case FaultKind::Shorted:
            return Listed(names, "or") + " is shorted";
        case FaultKind::Swapped:
            return Listed(names, "and") + " are swapped";
        case FaultKind::Tenth:
            return Listed(names, "or") + " has a tenth of its value";
        case FaultKind::TenTimes:
            return Listed(names, "or") + " has ten times its value";
        case FaultKind::PortsSwapped:
            return "the ports are swapped";
    }
    return {};
}

/// The slot in which all hypotheses see the fault; none if they disagree. A swap is in both slots.
std::optional<int> SlotOf(const std::vector<const Hypothesis*>& same) {
    for (const PartPlace& place : same.front()->Places) {
        const auto isThere = [&](const Hypothesis* what) {
            return std::any_of(what->Places.begin(), what->Places.end(),
                               [&](const PartPlace& other) { return other.Slot == place.Slot; });
        };
        if (std::all_of(same.begin(), same.end(), isThere)) return place.Slot;
    }
    return {};
}

/// True if the hypotheses are names of one fault: of one part, whatever is wrong with it, or of one
/// kind, all about one slot, whose parts a narrow look cannot tell apart, or a swap and the ports.
/// Where others explain the data as well, none of them is known to be true.
bool AreOneFault(const std::vector<const Hypothesis*>& same) {
    const std::vector<PartPlace>& first = same.front()->Places;
    const auto isFirst = [&](const Hypothesis* what) { return what->Places == first; };
    if (std::all_of(same.begin(), same.end(), isFirst)) return true;
    const auto count = [&](FaultKind kind) {
        return static_cast<std::size_t>(std::count_if(
            same.begin(), same.end(), [&](const Hypothesis* what) { return what->Kind == kind; }));
    };
    if (count(FaultKind::PortsSwapped) == 1)
        return same.size() == 2 && count(FaultKind::Swapped) == 1;
    const FaultKind kind = same.front()->Kind;
    return kind != FaultKind::Swapped && count(kind) == same.size() && SlotOf(same);
}

/// The rows of a network whose being open, or shorted, nobody can tell from the same of row `row`:
/// members of one joint in series, or in parallel.
std::vector<int> AlikeIn(const Network& network, NetworkKind joint, int row) {
    std::vector<int> rows;
    bool holds = false;
    for (const Network& member : network.Members) {
        const std::vector<int> deeper = AlikeIn(member, joint, row);
        if (!deeper.empty()) return deeper;
        const bool isPart =
            member.Kind == NetworkKind::Inductor || member.Kind == NetworkKind::Capacitor;
        if (isPart && network.Kind == joint) rows.push_back(member.Row);
        holds = holds || (isPart && network.Kind == joint && member.Row == row);
    }
    return holds ? rows : std::vector<int>{};
}

/// A hypothesis about a part that is missing or shorted, with all parts that it can be as well.
Hypothesis WithAlike(const DesignState& design, Hypothesis what) {
    if (what.Kind != FaultKind::Missing && what.Kind != FaultKind::Shorted) return what;
    const PartPlace place = what.Places.front();
    const NetworkKind joint =
        what.Kind == FaultKind::Missing ? NetworkKind::InSeries : NetworkKind::InParallel;
    for (const Network& network : NetworksOf(design.Elements[place.Slot].Type))
        for (const int row : AlikeIn(network, joint, place.Row))
            if (row != place.Row) what.Places.push_back({place.Slot, row});
    return what;
}

/// The fault of the first, with those that are alike: the parts of its slot in one list, and what
/// they can be in the text.
BoardFault FaultOf(const DesignState& design, const std::vector<const Hypothesis*>& same) {
    const auto names = DesignatorsOf(design);
    const auto namesOf = [&](const std::vector<PartPlace>& places) {
        std::vector<std::string> list;
        for (const PartPlace& place : places)
            list.push_back(names[place.Slot][place.Row]);
        return list;
    };
    const Hypothesis& first = *same.front();
    BoardFault fault{first.Kind, first.Places, {}, {}};
    const auto add = [](std::vector<PartPlace>& places, PartPlace place) {
        if (std::find(places.begin(), places.end(), place) == places.end()) places.push_back(place);
    };
    std::vector<Hypothesis> kinds;  // each with all its parts, but a swap by itself
    for (const Hypothesis* const one : same) {
        const bool isSingle = one->Places.size() == 1;
        const Hypothesis what = WithAlike(design, *one);
        const auto like = std::find_if(kinds.begin(), kinds.end(), [&](const Hypothesis& other) {
            return isSingle && other.Kind == what.Kind;
        });
        Hypothesis& kind = like == kinds.end() ? kinds.emplace_back(what) : *like;
        for (const PartPlace& place : what.Places) {
            if (isSingle) add(kind.Places, place);
            if (isSingle && first.Places.size() == 1) add(fault.Places, place);
        }
    }
    fault.Designators = namesOf(fault.Places);
    for (const Hypothesis& what : kinds)
        fault.Text +=
            (fault.Text.empty() ? "" : ", or ") + WordsFor(what.Kind, namesOf(what.Places));
    return fault;
}

/// The largest deviation that the data tell: of ln value.
double LargestDeviation(const BoardExplanation& how) {
    double largest = 0.0;
    for (std::size_t i = 0; i < how.Solution.State.X.size(); ++i)
        if (how.Model->Unknowns()[i].Kind == BoardUnknownKind::Value)
            largest = std::max(largest, std::fabs(how.Solution.State.X[i]));
    return largest;
}

bool Cheaper(const Tried& a, const Tried& b) {
    return a.Cost < b.Cost;
}

void KeepCheapest(std::vector<Tried>& tried, std::size_t count) {
    std::sort(tried.begin(), tried.end(), Cheaper);
    tried.resize(std::min(tried.size(), count));
}

/// True if a hypothesis explains the data, and without much that nobody expects.
bool IsLikely(const Tried& one) {
    return one.How.Holds() && one.How.Solution.State.Pull <= largestPull;
}

/// A start for a hypothesis from where the design without a fault came to: all unknowns that both
/// have, but values that are beyond any tolerance.
std::vector<double> StartFrom(const BoardExplanation& plain, const BoardModel& model) {
    std::vector<double> x = model.Means();
    const std::vector<BoardUnknown>& from = plain.Model->Unknowns();
    for (std::size_t i = 0; i < x.size(); ++i) {
        const BoardUnknown& own = model.Unknowns()[i];
        const auto same = std::find_if(from.begin(), from.end(), [&](const BoardUnknown& other) {
            return other.Kind == own.Kind && other.Slot == own.Slot && other.Row == own.Row &&
                   other.Mean == own.Mean && other.Free == own.Free;
        });
        if (same == from.end()) continue;
        const auto index = static_cast<int>(same - from.begin());
        double off = plain.Solution.State.X[static_cast<std::size_t>(index)];
        if (own.Kind == BoardUnknownKind::Value) {
            off += std::log(plain.Model->Nominal(index) / model.Nominal(static_cast<int>(i)));
            if (std::fabs(off) > implausible) off = 0.0;
        }
        x[i] = off;
    }
    return x;
}

/// What has been tried, ever fewer hypotheses ever closer.
class Trial {
public:
    Trial(const BoardExplanation& explained, const std::function<void(double)>& told)
        : plain(explained), progress(told) {}

    /// The likeliest hypotheses, the best first, fitted to the end.
    std::vector<Tried> Run(const BoardFreedom& freedom) {
        const std::vector<Hypothesis> list = HypothesesFor(plain.Design);
        whole = static_cast<double>(list.size() + glanced + roughed + likeliest);
        for (const Hypothesis& what : list)
            tried.push_back({what, Under(plain.Design, plain.Data, freedom, &what), {}, 0.0});
        const bool narrow = IsNarrow(plain.Design);
        Each([&](Tried& one, const BoardSearch& search) {
            one.Glance = search.Screened();
            if (narrow) Consider(one, search.Screened(StartFrom(plain, *one.How.Model)));
        });
        KeepCheapest(tried, glanced);
        Each([&](Tried& one, const BoardSearch& search) {
            const BoardState screened = one.Glance;
            one.Glance = narrow ? search.Glance(one.How.Model->Means()) : search.Settled(screened);
            if (narrow) Consider(one, search.Settled(screened));
        });
        KeepCheapest(tried, roughed);
        Each(
            [](Tried& one, const BoardSearch& search) { one.Glance = search.Roughed(one.Glance); });
        KeepCheapest(tried, likeliest);
        while (tried.size() > 1 && tried.back().Cost > unlikelyCost * tried.front().Cost)
            tried.pop_back();
        Each([](Tried& one, const BoardSearch& search) {
            one.How.Solution = search.Finished(one.Glance);
            one.Glance = one.How.Solution.State;
        });
        if (!IsLikely(tried.front())) TryAgain();
        if (IsLikely(tried.front())) TryNeighbours(list, freedom);
        return std::move(tried);
    }

private:
    template <class Improve>
    void Each(Improve improve) {
        for (Tried& one : tried) {
            improve(one, BoardSearch(one.How.Design, *one.How.Model, one.How.Data));
            one.Cost = one.Glance.Cost();
            if (progress) progress(std::min(1.0, ++done / whole));
        }
        std::sort(tried.begin(), tried.end(), Cheaper);
    }
    static void Consider(Tried& one, BoardState other) {
        if (other.Cost() < one.Glance.Cost()) one.Glance = std::move(other);
    }
    /// The best few from other starts: none of them need be where it belongs.
    void TryAgain() {
        for (std::size_t k = 0; k < std::min(triedAgain, tried.size()); ++k) {
            Tried& one = tried[k];
            const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
            if (!IsNarrow(plain.Design))
                KeepBetter(one.How.Solution, search.From(one.How.Model->Means(), true));
            if (!IsLikely(one)) KeepBetter(one.How.Solution, search.FromBare());
            one.Cost = one.How.Solution.State.Cost();
        }
        std::sort(tried.begin(), tried.end(), Cheaper);
    }

    /// What else could be wrong about the slot of the best, from where that came to: with many
    /// points, since a part of ten times its value is nearly a short.
    void TryNeighbours(const std::vector<Hypothesis>& list, const BoardFreedom& freedom) {
        const Hypothesis best = tried.front().What;
        std::vector<Tried> more;
        for (const Hypothesis& what : list) {
            const auto isTried = [&](const Tried& one) {
                return one.What.Kind == what.Kind && one.What.Places == what.Places;
            };
            if (!SlotOf({&best, &what}) || std::any_of(tried.begin(), tried.end(), isTried))
                continue;
            Tried one{what, Under(plain.Design, plain.Data, freedom, &what), {}, 0.0};
            const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
            one.Glance = search.Settled({StartFrom(tried.front().How, *one.How.Model)});
            if (one.Glance.Cost() > unlikelyCost * tried.front().Cost) continue;
            one.How.Solution = search.Finished(search.Roughed(one.Glance));
            one.Cost = one.How.Solution.State.Cost();
            more.push_back(std::move(one));
        }
        std::move(more.begin(), more.end(), std::back_inserter(tried));
        std::sort(tried.begin(), tried.end(), Cheaper);
    }

    const BoardExplanation& plain;
    const std::function<void(double)>& progress;
    std::vector<Tried> tried;
    double whole = 1.0, done = 0.0;
};

/// The design without a fault once more, from the values that its hypotheses led to where those are
/// within any tolerance: what explains the data as well without a fault is none.
void RetryFrom(const std::vector<Tried>& tried, BoardExplanation& plain) {
    const BoardSearch search(plain.Design, *plain.Model, plain.Data);
    for (std::size_t k = 0; k < std::min(retries, tried.size()); ++k) {
        const BoardExplanation& how = tried[k].How;
        std::vector<double> x = plain.Model->Means();
        for (std::size_t i = 0; i < x.size(); ++i) {
            const BoardUnknown& unknown = plain.Model->Unknowns()[i];
            if (unknown.Kind != BoardUnknownKind::Value) continue;
            const int there = how.Model->ValueAt({unknown.Slot, unknown.Row});
            const double off =
                std::log(how.Model->Nominal(there) / plain.Model->Nominal(static_cast<int>(i))) +
                how.Solution.State.X[static_cast<std::size_t>(there)];
            if (std::fabs(off) < implausible) x[i] = off;
        }
        KeepBetter(plain.Solution, search.From(std::move(x)));
    }
}

/// True if the best of the hypotheses explains the data, and so much better than the design
/// without a fault that it must be true.
bool IsConvincing(const std::vector<Tried>& tried, const BoardExplanation& plain) {
    if (tried.empty()) return false;
    return IsLikely(tried.front()) &&
           (!plain.Holds() || tried.front().Cost + convincing < plain.Solution.State.Cost());
}

}  // namespace

BoardExplanation Explain(const DesignState& design, const BoardData& data,
                         const BoardFreedom& freedom, const std::function<void(double)>& progress) {
    BoardExplanation plain = Under(design, data, freedom, nullptr);
    const BoardSearch search(plain.Design, *plain.Model, plain.Data);
    plain.Solution = search.Solve();
    if (IsNarrow(design)) search.SolveThoroughly(plain.Solution);
    if (plain.Holds()) search.AddEquals(plain.Solution);
    if (plain.Holds() && LargestDeviation(plain) < implausible) return plain;
    const auto withoutFault = [&] {
        if (!IsNarrow(design)) search.SolveThoroughly(plain.Solution);
        if (plain.Holds() && plain.Solution.Equals.empty()) search.AddEquals(plain.Solution);
        return std::move(plain);
    };
    std::vector<Tried> tried = Trial(plain, progress).Run(freedom);
    if (!IsConvincing(tried, plain)) return withoutFault();
    RetryFrom(tried, plain);
    if (!IsConvincing(tried, plain)) return withoutFault();
    std::vector<const Hypothesis*> same;
    for (const Tried& one : tried)
        if (one.Cost <= tried.front().Cost + alike) same.push_back(&one.What);
    if (!AreOneFault(same)) {
        BoardExplanation open = withoutFault();
        if (IsConvincing(tried, open)) open.Suspicion = FaultOf(design, same).Text;
        return open;
    }
    BoardExplanation found = std::move(tried.front().How);
    found.Fault = FaultOf(design, same);
    return found;
}

}  // namespace ladderwise
