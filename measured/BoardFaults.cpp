// Hypotheses, first looked at on few points, the likeliest fitted to the end.
#include "measured/BoardFaults.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "design/Designators.h"

namespace ladderwise {

namespace {

// Of the hypotheses so many are looked at closer, and so many of those fitted to the end.
constexpr std::size_t glanced = 14, likeliest = 6;
constexpr double largestPull = 40.0;  // of an explanation: more than chance has in store
constexpr double implausible = 0.3;   // of ln value: no tolerance
constexpr double convincing = 20.0;   // squares of the noise: how much likelier a fault must be
constexpr double alike = 9.0;         // and within how much two faults are the same
constexpr std::size_t retries = 1;
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

/// True if the hypotheses are names of one fault: of one kind, all about one slot, whose parts a
/// narrow look cannot tell apart, or a swap and the ports. Where others explain the data as well,
/// none of them is known to be true.
bool AreOneFault(const std::vector<const Hypothesis*>& same) {
    if (same.size() == 1) return true;
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

/// The likeliest hypotheses, the best first, fitted to the end.
std::vector<Tried> TryAll(const DesignState& design, const BoardData& data,
                          const BoardFreedom& freedom,
                          const std::function<void(double)>& progress) {
    std::vector<Tried> tried;
    const std::vector<Hypothesis> list = HypothesesFor(design);
    const double whole = static_cast<double>(list.size() + glanced + likeliest);
    double done = 0.0;
    const auto tell = [&] {
        if (progress) progress(std::min(1.0, ++done / whole));
    };
    for (const Hypothesis& what : list) {
        Tried one{what, Under(design, data, freedom, &what), {}, 0.0};
        one.Glance = BoardSearch(one.How.Design, *one.How.Model, one.How.Data).Screened();
        one.Cost = one.Glance.Cost();
        tried.push_back(std::move(one));
        tell();
    }
    KeepCheapest(tried, glanced);
    for (Tried& one : tried) {
        const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
        one.Glance = search.Glance(IsNarrow(design) ? one.How.Model->Means() : one.Glance.X);
        one.Cost = one.Glance.Cost();
        tell();
    }
    KeepCheapest(tried, likeliest);
    for (Tried& one : tried) {
        const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
        one.How.Solution = search.Finished(one.Glance);
        one.Cost = one.How.Solution.State.Cost();
        tell();
    }
    std::sort(tried.begin(), tried.end(), Cheaper);
    return tried;
}

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
        BoardSolution again = search.Finished(search.Glance(x));
        if (again.State.Cost() < plain.Solution.State.Cost()) plain.Solution = std::move(again);
    }
}

}  // namespace

BoardExplanation Explain(const DesignState& design, const BoardData& data,
                         const BoardFreedom& freedom, const std::function<void(double)>& progress) {
    BoardExplanation plain = Under(design, data, freedom, nullptr);
    plain.Solution = BoardSearch(plain.Design, *plain.Model, plain.Data).Solve();
    const bool holds = plain.Holds();
    if (holds && LargestDeviation(plain) < implausible) return plain;
    std::vector<Tried> tried = TryAll(design, data, freedom, progress);
    if (tried.empty() || !tried.front().How.Holds() ||
        tried.front().How.Solution.State.Pull > largestPull)
        return plain;
    const double best = tried.front().Cost;
    if (holds && best + convincing > plain.Solution.State.Cost()) return plain;
    RetryFrom(tried, plain);
    if (plain.Holds() && best + convincing > plain.Solution.State.Cost()) return plain;
    std::vector<const Hypothesis*> same;
    for (const Tried& one : tried)
        if (one.Cost <= best + alike) same.push_back(&one.What);
    if (!AreOneFault(same)) return plain;
    BoardExplanation found = std::move(tried.front().How);
    found.Fault = FaultOf(design, same);
    return found;
}

}  // namespace ladderwise
