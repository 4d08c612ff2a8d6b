// Words for the networks of the elements.
#include "design/Connections.h"

#include <algorithm>

#include "design/ElementNetworks.h"

namespace ladderwise {

namespace {

std::string NetworkWords(const Network& net, const SlotDesignators& names, bool nested) {
    std::string words;
    switch (net.Kind) {
        case NetworkKind::Inductor:
        case NetworkKind::Capacitor:
        case NetworkKind::Line:
            return names[net.Row];
        case NetworkKind::ShortedStub:
            return "shorted " + names[net.Row];
        case NetworkKind::OpenStub:
            return "open " + names[net.Row];
        case NetworkKind::InSeries:
            words = "series";
            break;
        case NetworkKind::InParallel:
            words = "parallel";
            break;
    }
    for (const Network& member : net.Members)
        words += " " + NetworkWords(member, names, true);
    return nested ? "(" + words + ")" : words;
}

bool Holds(const Network& net, int row) {
    if (net.Members.empty()) return net.Row == row;
    return std::any_of(net.Members.begin(), net.Members.end(),
                       [row](const Network& member) { return Holds(member, row); });
}

/// The networks that stand for themselves: two tanks one behind the other are two.
std::vector<Network> ArmsOf(ElementType type) {
    std::vector<Network> arms = NetworksOf(type);
    if (arms.size() != 1 || arms[0].Kind != NetworkKind::InSeries ||
        InfoOf(type).Arm == ElementArm::Shunt)
        return arms;
    const std::vector<Network> members = arms[0].Members;
    const bool allJoined = std::none_of(members.begin(), members.end(),
                                        [](const Network& net) { return net.Members.empty(); });
    return allJoined ? members : arms;
}

std::string ArmWords(const Network& arm, ElementType type, const SlotDesignators& names) {
    return NetworkWords(arm, names, false) +
           (InfoOf(type).Arm == ElementArm::Shunt ? " to ground" : " in the line");
}

}  // namespace

std::string ConnectionText(ElementType type, const SlotDesignators& names) {
    std::string text;
    for (const Network& arm : ArmsOf(type))
        text += (text.empty() ? "" : ", ") + ArmWords(arm, type, names);
    return text;
}

std::string ConnectionOfPart(ElementType type, const SlotDesignators& names, int row) {
    for (const Network& arm : ArmsOf(type))
        if (Holds(arm, row)) return ArmWords(arm, type, names);
    return {};
}

}  // namespace ladderwise
