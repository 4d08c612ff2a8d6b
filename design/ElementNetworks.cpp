// The networks of the 27 element types, one line for each.
#include "design/ElementNetworks.h"

#include <utility>

namespace ladderwise {

namespace {

Network Ind(int value) {
    return {NetworkKind::Inductor, value - 1, {}};
}
Network Cap(int value) {
    return {NetworkKind::Capacitor, value - 1, {}};
}
Network ShortedStub(int value) {
    return {NetworkKind::ShortedStub, value - 1, {}};
}
Network OpenStub(int value) {
    return {NetworkKind::OpenStub, value - 1, {}};
}
Network Series(std::vector<Network> members) {
    return {NetworkKind::InSeries, 0, std::move(members)};
}
Network Parallel(std::vector<Network> members) {
    return {NetworkKind::InParallel, 0, std::move(members)};
}

/// Puts both capacitors of a pair in the place of one.
void SplitPairs(const DesignState& design, int slot, Network& network) {
    for (Network& member : network.Members)
        SplitPairs(design, slot, member);
    if (network.Kind != NetworkKind::Capacitor) return;
    const PairedPart* const pair = PairAt(design, {slot, network.Row});
    if (!pair) return;
    Network larger = network, smaller = network;
    larger.Own = pair->Larger;
    smaller.Own = pair->Smaller;
    smaller.Letter = 'b';
    network = Parallel({larger, smaller});
}

}  // namespace

// Ind(1) is the inductor whose value is V1, Cap(2) the capacitor whose value is V2, and so on.
std::vector<Network> NetworksOf(ElementType type) {
    switch (type) {
        case ElementType::SeriesInd:
        case ElementType::ShuntInd:
            return {Ind(1)};
        case ElementType::SeriesCap:
        case ElementType::ShuntCap:
            return {Cap(2)};
        case ElementType::SeriesLC:
        case ElementType::ShuntParLC:
            return {Parallel({Ind(1), Cap(2)})};
        case ElementType::ShuntLC:
        case ElementType::SeriesSerLC:
            return {Series({Ind(1), Cap(2)})};
        case ElementType::ShuntSerParLC:
            return {Series({Ind(1), Cap(2), Parallel({Ind(3), Cap(4)})})};
        case ElementType::SerSerParLC:
            return {Parallel({Ind(3), Series({Ind(1), Cap(2)}), Cap(4)})};
        case ElementType::SeriesTLIN:
            return {{NetworkKind::Line, 0, {}}};
        case ElementType::ShuntTLSCC:
            return {ShortedStub(1), Cap(4)};
        case ElementType::ShuntLTLOC:
            return {Ind(1), OpenStub(3)};
        case ElementType::ShuntTLSCTLOC:
            return {ShortedStub(1), OpenStub(3)};
        case ElementType::ShuntTLOC:
            return {OpenStub(1)};
        case ElementType::DualShuntLC:
            return {Series({Ind(1), Cap(2)}), Series({Ind(3), Cap(4)})};
        case ElementType::DualSeriesLC:
            return {Series({Parallel({Ind(1), Cap(2)}), Parallel({Ind(3), Cap(4)})})};
        case ElementType::SeriesElliptic2:
            return {Parallel({Cap(4), Series({Ind(3), Parallel({Ind(1), Cap(2)})})})};
        case ElementType::SeriesElliptic3:
            return {Parallel({Ind(3), Series({Cap(2), Parallel({Ind(1), Cap(4)})})})};
        case ElementType::ShuntElliptic2:
            return {Series({Ind(1), Parallel({Series({Ind(3), Cap(4)}), Cap(2)})})};
        case ElementType::ShuntElliptic3:
            return {Series({Cap(2), Parallel({Series({Ind(3), Cap(4)}), Ind(1)})})};
        case ElementType::ThreeShuntCapSerLC:
            return {Parallel({Series({Ind(1), Cap(4)}), Cap(2)})};
        case ElementType::ThreeShuntIndSerLC:
            return {Parallel({Series({Ind(3), Cap(2)}), Ind(1)})};
        case ElementType::ThreeShuntTappedC:
            return {Series({Cap(4), Parallel({Ind(1), Cap(2)})})};
        case ElementType::ThreeShuntTappedL:
            return {Series({Ind(3), Parallel({Ind(1), Cap(2)})})};
        case ElementType::ShuntTLSC:
            return {ShortedStub(1)};
        case ElementType::errorBitMap:
            return {};
    }
    return {};
}

std::vector<Network> BuiltNetworksOf(const DesignState& design, int slot) {
    std::vector<Network> networks =
        NetworksOf(design.Elements[static_cast<std::size_t>(slot)].Type);
    for (Network& network : networks)
        SplitPairs(design, slot, network);
    return networks;
}

double ValueOf(const CircuitElement& slot, const Network& symbol) {
    return symbol.Own > 0.0 ? symbol.Own : slot.Value(symbol.Row);
}

std::string NameOf(const SlotDesignators& names, const Network& symbol) {
    std::string name = names[static_cast<std::size_t>(symbol.Row)];
    if (symbol.Own > 0.0) name += symbol.Letter;
    return name;
}

}  // namespace ladderwise
