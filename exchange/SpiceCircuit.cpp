// From the networks of the elements to parts and nodes.
#include "exchange/SpiceCircuit.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <numeric>

#include "design/Designators.h"
#include "design/ElementNetworks.h"

namespace ladderwise {

namespace {

constexpr int Ground = 0;

/// Disjoint sets of nodes (Tarjan 1975), the smallest node of a set standing for it.
class NodeSets {
public:
    int Find(int node) {
        Grow(node);
        while (parent[node] != node)
            node = parent[node] = parent[parent[node]];
        return node;
    }
    /// False if both were in one set before.
    bool Join(int a, int b) {
        a = Find(a);
        b = Find(b);
        if (a == b) return false;
        parent[std::max(a, b)] = std::min(a, b);
        return true;
    }

private:
    std::vector<int> parent;

    void Grow(int node) {
        const std::size_t before = parent.size();
        if (static_cast<std::size_t>(node) < before) return;
        parent.resize(static_cast<std::size_t>(node) + 1);
        std::iota(parent.begin() + static_cast<std::ptrdiff_t>(before), parent.end(),
                  static_cast<int>(before));
    }
};

/// A part between nodes that have no names yet.
struct NumberedPart {
    SpicePart Part;
    int A, B;
};

/// True for a value that the analysis takes for the smallest one.
bool IsZero(double value) {
    return !(value > SmallestPartValue);
}

class CircuitBuilder {
public:
    explicit CircuitBuilder(const FilterDesign& ofDesign) : design(ofDesign) {}

    SpiceCircuit Build(bool terminated, bool bothPorts) {
        const auto designators = DesignatorsOf(design);
        int node = in = NewNode();
        const int last = std::clamp(design.NumElements, 0, NumSlots - 1);
        for (int k = 1; k <= last; ++k) {
            slot = &design.Elements[k];
            names = &designators[k];
            const bool isShunt = InfoOf(slot->Type).Arm == ElementArm::Shunt;
            const int behind = isShunt ? Ground : NewNode();
            for (const Network& net : BuiltNetworksOf(design, k))
                Place(net, node, behind);
            if (!isShunt) node = behind;
        }
        out = node;
        if (bothPorts && wires.Find(in) == wires.Find(out)) {
            out = NewNode();
            Add(SpiceKind::Wire, "Vthrough", in, out, 0.0);
        }
        DropShorted();
        BreakLoops();
        GiveDirectPaths(terminated);
        return Named();
    }

private:
    const FilterDesign& design;
    const CircuitElement* slot = nullptr;
    const SlotDesignators* names = nullptr;
    std::vector<NumberedPart> parts;
    std::vector<std::string> remarks;
    NodeSets wires, sources;
    int nodes = Ground, in = Ground, out = Ground;

    int NewNode() { return ++nodes; }

    void Add(SpiceKind kind, const std::string& name, int a, int b, double value,
             double delay = 0.0) {
        parts.push_back({{kind, name, {}, {}, value, delay}, a, b});
    }

    void Place(const Network& net, int a, int b) {
        const std::string name = NameOf(*names, net);
        switch (net.Kind) {
            case NetworkKind::Inductor:
                return PlaceInductor(name, ValueOf(*slot, net), a, b);
            case NetworkKind::Capacitor:
                return PlaceCapacitor(name, ValueOf(*slot, net), a, b);
            case NetworkKind::Line:
                return PlaceLine(net, a, b, false);
            case NetworkKind::ShortedStub:
                return PlaceLine(net, a, Ground, false);
            case NetworkKind::OpenStub:
                return PlaceLine(net, a, NewNode(), true);
            case NetworkKind::InSeries:
                for (std::size_t i = 0; i < net.Members.size(); ++i) {
                    const int next = i + 1 < net.Members.size() ? NewNode() : b;
                    Place(net.Members[i], a, next);
                    a = next;
                }
                return;
            case NetworkKind::InParallel:
                for (const Network& member : net.Members)
                    Place(member, a, b);
                return;
        }
    }

    /// A wire from the ladder to ground must leave both their names: a source of 0 V.
    void PlaceWire(const std::string& name, int a, int b) {
        if (wires.Find(a) != Ground && wires.Find(b) != Ground) {
            wires.Join(a, b);
        } else if (sources.Join(wires.Find(a), wires.Find(b))) {
            Add(SpiceKind::Wire, "V" + name, a, b, 0.0);
        }
        remarks.push_back(name + " is zero: a wire");
    }

    void PlaceInductor(const std::string& name, double L, int a, int b) {
        if (IsZero(L)) return PlaceWire(name, a, b);
        const PartModel& model = design.PartModel;
        const double R = TwoPi * design.F0 * L / model.IndQ;
        const bool real = model.Choice != PartChoice::IdealParts;
        if (!real || !(R > 0.0) || !std::isfinite(R)) {
            Add(SpiceKind::Inductor, name, a, b, L);
        } else {
            const int middle = NewNode();
            Add(SpiceKind::Inductor, name, a, middle, L);
            Add(SpiceKind::SkinResistor, "R" + name, middle, b, R);
        }
        if (real && model.IndC > 0.0) Add(SpiceKind::Capacitor, "C" + name, a, b, model.IndC);
    }

    void PlaceCapacitor(const std::string& name, double C, int a, int b) {
        if (IsZero(C)) {
            remarks.push_back(name + " is zero: absent");
            return;
        }
        const PartModel& model = design.PartModel;
        const bool real = model.Choice != PartChoice::IdealParts;
        const bool hasL = real && model.CapL > 0.0, hasR = real && model.CapR > 0.0;
        int next = hasL || hasR ? NewNode() : b;
        Add(SpiceKind::Capacitor, name, a, next, C);
        if (hasL) {
            const int middle = next;
            next = hasR ? NewNode() : b;
            Add(SpiceKind::Inductor, "L" + name, middle, next, model.CapL);
        }
        if (hasR) Add(SpiceKind::Resistor, "R" + name, next, b, model.CapR);
    }

    void PlaceLine(const Network& net, int a, int b, bool open) {
        const std::string& name = (*names)[net.Row];
        const double length = slot->Value(net.Row);
        if (!(length > 0.0)) {
            remarks.push_back(name + " has no length");
            if (!open) PlaceWire(name, a, b);
            return;
        }
        Add(SpiceKind::Line, name, a, b, slot->Value(net.Row + 1), length / 360.0 / design.F0);
        if (open) Add(SpiceKind::Resistor, "R" + name, b, Ground, LargestResistor);
    }

    /// What lies between two nodes that a wire has made one.
    void DropShorted() {
        std::erase_if(parts, [&](const NumberedPart& part) {
            return part.Part.Kind != SpiceKind::Line && wires.Find(part.A) == wires.Find(part.B);
        });
    }

    /// Walks the inductors from the smallest up: the one that closes a loop is its largest.
    void BreakLoops() {
        NodeSets shorts;
        std::vector<std::size_t> inductors;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            const auto& [part, a, b] = parts[i];
            if (part.Kind == SpiceKind::Inductor) inductors.push_back(i);
            if (part.Kind == SpiceKind::Line || part.Kind == SpiceKind::Wire)
                shorts.Join(wires.Find(a), wires.Find(b));
        }
        std::stable_sort(inductors.begin(), inductors.end(), [&](std::size_t i, std::size_t k) {
            return parts[i].Part.Value < parts[k].Part.Value;
        });
        for (const std::size_t i : inductors) {
            if (shorts.Join(wires.Find(parts[i].A), wires.Find(parts[i].B))) continue;
            const int middle = NewNode(), b = parts[i].B;
            parts[i].B = middle;
            const double R = LoopLoss * TwoPi * design.F0 * parts[i].Part.Value;
            const std::string name = parts[i].Part.Name;
            Add(SpiceKind::Resistor, "R" + name, middle, b, R);
            remarks.push_back(name + " closes a loop of inductors: R" + name +
                              " is 1e-9 of its reactance at F0");
        }
    }

    /// Resistors to ground for what hangs on capacitors alone.
    void GiveDirectPaths(bool terminated) {
        NodeSets paths;
        if (terminated) {
            paths.Join(Ground, wires.Find(in));
            paths.Join(Ground, wires.Find(out));
        }
        for (const auto& [part, a, b] : parts)
            if (part.Kind != SpiceKind::Capacitor) paths.Join(wires.Find(a), wires.Find(b));
        const std::vector<NumberedPart> before = parts;
        int count = 0;
        for (const auto& [part, a, b] : before) {
            for (const int node : {wires.Find(a), wires.Find(b)}) {
                if (!terminated && (node == wires.Find(in) || node == wires.Find(out))) continue;
                if (!paths.Join(Ground, node)) continue;
                Add(SpiceKind::Resistor, "Rdc" + std::to_string(++count), node, Ground,
                    LargestResistor);
            }
        }
        if (count > 0) remarks.push_back("Rdc: paths for direct current");
    }

    SpiceCircuit Named() {
        std::map<int, std::string> known = {{Ground, "0"}};
        known[wires.Find(in)] = "in";
        known[wires.Find(out)] = "out";
        int number = 0;
        SpiceCircuit circuit{{}, remarks};
        for (const auto& [part, a, b] : parts) {
            circuit.Parts.push_back(part);
            for (const bool first : {true, false}) {
                const int node = wires.Find(first ? a : b);
                if (!known.contains(node)) known[node] = "n" + std::to_string(++number);
                (first ? circuit.Parts.back().A : circuit.Parts.back().B) = known[node];
            }
        }
        return circuit;
    }
};

}  // namespace

SpiceCircuit CircuitOf(const FilterDesign& design, bool terminated, bool bothPorts) {
    return CircuitBuilder(design).Build(terminated, bothPorts);
}

}  // namespace ladderwise
