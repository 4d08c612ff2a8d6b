// Hypotheses, first looked at on few points, the likeliest fitted to the end.
#include "measured/BoardFaults.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "design/Designators.h"

namespace ladderwise {

namespace {

constexpr std::size_t hypothesisPoints = 60;
constexpr std::size_t likeliest = 8;     // of the hypotheses, fitted to the end
constexpr double plausibleSpread = 0.1;  // of ln value: what parts have that are as marked
constexpr double implausible = 0.3;      // of ln value: no tolerance
constexpr double convincing = 20.0;      // squares of the noise: how much likelier a fault must be
constexpr double alike = 9.0;            // and within how much two faults are the same
constexpr double alikeShare = 0.01;      // of the cost
constexpr double differs = 0.05;         // of ln value: parts that are worth swapping

struct Hypothesis {
    FaultKind Kind;
    std::vector<PartPlace> Places{};
};

struct Tried {
    Hypothesis What{};
    BoardExplanation How{};
    BoardState Glance{};
    double Likelihood = 0.0;  ///< of the glance, then of the end; small is likely
};

/// All parts of a kind in the order of the ladder.
std::vector<PartPlace> PartsOf(const DesignState& design, ValueKind kind) {
    std::vector<PartPlace> places;
    for (int slot = 1; slot <= SlotsInUse(design); ++slot)
        for (int row = 0; row < 4; ++row)
            if (InfoOf(design.Elements[slot].Type).Values[row] == kind)
                places.push_back({slot, row});
    return places;
}

double& ValueAt(DesignState& design, PartPlace place) {
    return design.Elements[place.Slot].Value(place.Row);
}

/// The hypotheses about misplaced parts, or all.
std::vector<Hypothesis> HypothesesFor(DesignState design, bool all) {
    std::vector<Hypothesis> list;
    for (const ValueKind kind : {ValueKind::Inductance, ValueKind::Capacitance}) {
        const std::vector<PartPlace> places = PartsOf(design, kind);
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (const FaultKind fault : {FaultKind::Missing, FaultKind::Shorted})
                if (all) list.push_back({fault, {places[i]}});
            for (const FaultKind fault : {FaultKind::Tenth, FaultKind::TenTimes})
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

/// The cost with parts pulled to their marked values as strongly as parts are near them.
double LikelihoodOf(const BoardModel& model, const BoardState& state) {
    double sum = state.Cost();
    for (std::size_t i = 0; i < state.X.size(); ++i) {
        const BoardUnknown& unknown = model.Unknowns()[i];
        if (unknown.Kind != BoardUnknownKind::Value) continue;
        const double off = state.X[i];
        sum +=
            off * off *
            (1.0 / (plausibleSpread * plausibleSpread) - 1.0 / (unknown.Spread * unknown.Spread));
    }
    return sum;
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

/// The fault of the first, with those that are alike: of the same single part's kind in one list,
/// others behind it in the text.
BoardFault FaultOf(const DesignState& design, const std::vector<const Hypothesis*>& same) {
    const auto names = DesignatorsOf(design);
    const auto namesOf = [&](const std::vector<PartPlace>& places) {
        std::vector<std::string> list;
        for (const PartPlace& place : places)
            list.push_back(names[place.Slot][place.Row]);
        return list;
    };
    BoardFault fault{same.front()->Kind, same.front()->Places, {}, {}};
    std::vector<std::string> others;
    for (std::size_t i = 1; i < same.size(); ++i) {
        if (same[i]->Kind == fault.Kind && same[i]->Places.size() == 1 && fault.Places.size() >= 1)
            fault.Places.push_back(same[i]->Places.front());
        else
            others.push_back(WordsFor(same[i]->Kind, namesOf(same[i]->Places)));
    }
    fault.Designators = namesOf(fault.Places);
    fault.Text = WordsFor(fault.Kind, fault.Designators);
    for (const std::string& other : others)
        fault.Text += ", or " + other;
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

bool Likelier(const Tried& a, const Tried& b) {
    return a.Likelihood < b.Likelihood;
}

/// All hypotheses, the likeliest first and fitted to the end.
std::vector<Tried> TryAll(const DesignState& design, const BoardData& data,
                          const BoardFreedom& freedom, bool all,
                          const std::function<void(double)>& progress) {
    std::vector<Tried> tried;
    const std::vector<Hypothesis> list = HypothesesFor(design, all);
    const auto tell = [&](double share) {
        if (progress) progress(share);
    };
    for (const Hypothesis& what : list) {
        Tried one{what, Under(design, data, freedom, &what), {}, 0.0};
        const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
        one.Glance = search.Glance(one.How.Model->Means(), hypothesisPoints);
        one.Likelihood = LikelihoodOf(*one.How.Model, one.Glance);
        tried.push_back(std::move(one));
        tell(0.7 * static_cast<double>(tried.size()) / static_cast<double>(list.size()));
    }
    std::sort(tried.begin(), tried.end(), Likelier);
    tried.resize(std::min(tried.size(), likeliest));
    for (std::size_t i = 0; i < tried.size(); ++i) {
        Tried& one = tried[i];
        const BoardSearch search(one.How.Design, *one.How.Model, one.How.Data);
        one.How.Solution = search.Finished(one.Glance);
        one.Likelihood = LikelihoodOf(*one.How.Model, one.How.Solution.State);
        tell(0.7 + 0.3 * static_cast<double>(i + 1) / static_cast<double>(tried.size()));
    }
    std::sort(tried.begin(), tried.end(), Likelier);
    return tried;
}

}  // namespace

BoardExplanation Explain(const DesignState& design, const BoardData& data,
                         const BoardFreedom& freedom, const std::function<void(double)>& progress) {
    BoardExplanation plain = Under(design, data, freedom, nullptr);
    plain.Solution = BoardSearch(plain.Design, *plain.Model, plain.Data).Solve();
    const bool holds = plain.Holds();
    if (holds && LargestDeviation(plain) < implausible) return plain;
    std::vector<Tried> tried = TryAll(design, data, freedom, !holds, progress);
    if (tried.empty() || !tried.front().How.Holds()) return plain;
    const double best = tried.front().Likelihood;
    if (holds && best + convincing > LikelihoodOf(*plain.Model, plain.Solution.State)) return plain;
    std::vector<const Hypothesis*> same;
    for (const Tried& one : tried)
        if (one.Likelihood <= best + alike + alikeShare * best) same.push_back(&one.What);
    BoardExplanation found = std::move(tried.front().How);
    found.Fault = FaultOf(design, same);
    return found;
}

}  // namespace ladderwise
