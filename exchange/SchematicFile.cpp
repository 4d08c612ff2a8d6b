// Lays the networks of the elements out on a grid of 16 units and writes symbols and wires.
//
//   u    along an arm, from the source or from the line downwards
//   v    across it: upwards of a series arm, to the right of a shunt arm
#include "exchange/SchematicFile.h"

#include <algorithm>
#include <cmath>
#include <set>

#include "design/Designators.h"
#include "design/ElementNetworks.h"
#include "exchange/SpiceCircuit.h"
#include "numbers/Matherrmain.h"
#include "numbers/PlainNumbers.h"

namespace ladderwise {

namespace {

constexpr int ValueDigits = 9;
constexpr int PartLength = 128;    ///< along, wires included
constexpr int PartLead = 16;       ///< of wire before a symbol
constexpr int AcrossSeries = 112;  ///< room of one part of a series arm, with its texts
constexpr int AcrossShunt = 208;   ///< and of a shunt arm, whose texts stand at its right
constexpr int ArmGap = 32;

std::string Nine(double x) {
    return RoundedNumber(x, ValueDigits);
}

struct Extent {
    int Along, Across;
};

/// Writes the lines of the file.
class SheetWriter {
public:
    std::string Text;
    int Right = 0;

    void Wire(int x1, int y1, int x2, int y2) {
        if (x1 == x2 && y1 == y2) return;
        Text += "WIRE " + Four(x1, y1, x2, y2) + "\n";
        Right = std::max({Right, x1, x2});
    }
    void Flag(int x, int y, const std::string& net) {
        Text += "FLAG " + std::to_string(x) + " " + std::to_string(y) + " " + net + "\n";
    }
    void Symbol(const std::string& kind, int x, int y, const std::string& turn,
                const std::string& name, const std::string& value, const std::string& more = {}) {
        Text += "SYMBOL " + kind + " " + std::to_string(x) + " " + std::to_string(y) + " " + turn +
                "\n";
        if (turn == "R270") {  // name and value above and below the symbol, not turned with it
            const std::string middle = kind == "cap" ? "32" : "56";
            Text += "WINDOW 0 32 " + middle + " VTop 2\nWINDOW 3 0 " + middle + " VBottom 2\n";
        }
        Text += "SYMATTR InstName " + name + "\nSYMATTR Value " + value + "\n";
        if (!more.empty()) Text += "SYMATTR SpiceLine " + more + "\n";
    }
    void Note(int x, int y, const std::string& text) {
        Text += "TEXT " + std::to_string(x) + " " + std::to_string(y) + " Left 2 " + text + "\n";
    }

private:
    static std::string Four(int a, int b, int c, int d) {
        return std::to_string(a) + " " + std::to_string(b) + " " + std::to_string(c) + " " +
               std::to_string(d);
    }
};

/// Draws one arm: where it begins, and which way it runs.
class ArmWriter {
public:
    ArmWriter(SheetWriter& onSheet, const FilterDesign& ofDesign, const SpiceCircuit& asCircuit)
        : sheet(onSheet), design(ofDesign) {
        for (const SpicePart& part : asCircuit.Parts) {
            if (part.Kind == SpiceKind::Resistor && part.Name.starts_with("RL"))
                loops.insert(part.Name.substr(1));
            if (part.Name.starts_with("Rdc")) floating = true;
        }
    }

    void Begin(const CircuitElement& ofSlot, const SlotDesignators& called, int x, int y) {
        slot = &ofSlot;
        names = &called;
        shunt = InfoOf(ofSlot.Type).Arm == ElementArm::Shunt;
        x0 = x;
        y0 = y;
    }

    Extent ExtentOf(const Network& net) const {
        Extent sum{0, 0};
        const int across = shunt ? AcrossShunt : AcrossSeries;
        if (net.Members.empty()) return {PartLength, across};
        for (const Network& member : net.Members) {
            const Extent one = ExtentOf(member);
            const bool series = net.Kind == NetworkKind::InSeries;
            sum.Along = series ? sum.Along + one.Along : std::max(sum.Along, one.Along);
            sum.Across = series ? std::max(sum.Across, one.Across) : sum.Across + one.Across;
        }
        return sum;
    }

    /// Draws from (u, v) to (u + length, v).
    void Draw(const Network& net, int u, int v, int length) {
        if (net.Kind == NetworkKind::InSeries) {
            for (const Network& member : net.Members) {
                const int along = ExtentOf(member).Along;
                Draw(member, u, v, along);
                u += along;
                length -= along;
            }
            Join(u, v, u + length, v);
        } else if (net.Kind == NetworkKind::InParallel) {
            int across = v;
            for (const Network& member : net.Members) {
                Join(u, v, u, across);
                Join(u + length, v, u + length, across);
                Draw(member, u, across, length);
                v = across;
                across += ExtentOf(member).Across;
            }
        } else {
            DrawPart(net, u, v);
            if (net.Kind != NetworkKind::ShortedStub && net.Kind != NetworkKind::OpenStub)
                Join(u + PartLength, v, u + length, v);
        }
    }

private:
    SheetWriter& sheet;
    const FilterDesign& design;
    const CircuitElement* slot = nullptr;
    const SlotDesignators* names = nullptr;
    bool shunt = false, floating = false;
    int x0 = 0, y0 = 0;
    std::set<std::string> loops;  ///< inductors that close a loop of inductors

    int X(int u, int v) const { return x0 + (shunt ? v : u); }
    int Y(int u, int v) const { return y0 + (shunt ? u : -v); }
    void Join(int u1, int v1, int u2, int v2) {
        sheet.Wire(X(u1, v1), Y(u1, v1), X(u2, v2), Y(u2, v2));
    }
    bool IsReal() const { return design.PartModel.Choice != PartChoice::IdealParts; }

    void DrawPart(const Network& net, int u, int v) {
        const double value = ValueOf(*slot, net);
        const std::string name = NameOf(*names, net);
        const bool zero = !(value > SmallestPartValue);
        switch (net.Kind) {
            case NetworkKind::Inductor:
                if (zero) return Join(u, v, u + PartLength, v);
                return DrawTwoPole("ind", 80, 16, name, value, InductorLine(name, value), u, v);
            case NetworkKind::Capacitor:
                if (!zero) DrawTwoPole("cap", 64, 0, name, value, CapacitorLine(), u, v);
                return;
            case NetworkKind::Line:
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                return DrawLine(net, name, value, u, v);
            case NetworkKind::InSeries:
            case NetworkKind::InParallel:
                return;
        }
    }

    /// A symbol whose pins lie `span` apart, the first one `offset` below its own origin and 16 to
    /// the right of it; turned by R270 it lies with the first pin at the left.
    void DrawTwoPole(const char* kind, int span, int offset, const std::string& name, double value,
                     const std::string& more, int u, int v) {
        const int x = X(u + PartLead, v), y = Y(u + PartLead, v);
        Join(u, v, u + PartLead, v);
        Join(u + PartLead + span, v, u + PartLength, v);
        if (shunt)
            sheet.Symbol(kind, x - 16, y - offset, "R0", name, Nine(value), more);
        else
            sheet.Symbol(kind, x - offset, y + 16, "R270", name, Nine(value), more);
    }

    std::string InductorLine(const std::string& name, double L) const {
        const PartModel& model = design.PartModel;
        const double X0 = TwoPi * design.F0 * L, R = X0 / model.IndQ;
        std::string text = "Rser=";
        if (IsReal() && R > 0.0 && std::isfinite(R))
            text += Nine(R);
        else
            text += loops.contains(name) ? Nine(LoopLoss * X0) : "0";
        if (IsReal() && model.IndC > 0.0) text += " Cpar=" + Nine(model.IndC);
        return text;
    }

    std::string CapacitorLine() const {
        const PartModel& model = design.PartModel;
        std::string text;
        const auto add = [&](const std::string& word) { text += (text.empty() ? "" : " ") + word; };
        if (IsReal() && model.CapR > 0.0) add("Rser=" + Nine(model.CapR));
        if (IsReal() && model.CapL > 0.0) add("Lser=" + Nine(model.CapL));
        if (floating) add("Rpar=" + Nine(LargestResistor));
        return text;
    }

    /// A line's symbol has its four pins 48 before and behind its origin and 16 on either side; the
    /// lower, or left, conductor is ground.
    void DrawLine(const Network& net, const std::string& name, double length, int u, int v) {
        if (!(length > 0.0)) {
            if (net.Kind != NetworkKind::OpenStub) Join(u, v, u + PartLength, v);
            return;
        }
        const std::string value =
            "Td=" + Nine(length / 360.0 / design.F0) + " Z0=" + Nine(slot->Value(net.Row + 1));
        const int x = X(u, v), y = Y(u, v);
        Join(u, v, u + PartLead, v);
        if (!shunt) {
            sheet.Symbol("tline", x + 64, y + 16, "R0", name, value);
            sheet.Flag(x + 16, y + 32, "0");
            sheet.Flag(x + 112, y + 32, "0");
            return Join(u + 112, v, u + PartLength, v);
        }
        sheet.Symbol("tline", x - 16, y + 64, "R90", name, value);
        sheet.Flag(x - 32, y + 16, "0");
        sheet.Flag(x - 32, y + 112, "0");
        if (net.Kind == NetworkKind::ShortedStub) return Join(u + 112, v, u + PartLength, v);
        sheet.Symbol("res", x - 16, y + 96, "R0", "R" + name, Nine(LargestResistor));
        sheet.Flag(x, y + 192, "0");
    }
};

void WriteEnds(SheetWriter& sheet, const FilterDesign& design, int right) {
    sheet.Symbol("voltage", -256, 80, "R0", "Vsource", "AC 2");
    sheet.Flag(-256, 176, "0");
    sheet.Wire(-256, 96, -256, 0);
    sheet.Wire(-256, 0, -192, 0);
    sheet.Symbol("res", -208, 16, "R270", "Rsource", Nine(design.RSource));
    sheet.Wire(-112, 0, 0, 0);
    sheet.Wire(right, 0, right + 96, 0);
    sheet.Symbol("res", right + 80, 0, "R0", "Rload", Nine(design.RLoad));
    sheet.Wire(right + 96, 0, right + 96, 16);
    sheet.Flag(right + 96, 96, "0");
    sheet.Flag(right + 96, 0, "out");
}

void WriteNotes(SheetWriter& sheet, const FilterDesign& design, const FrequencyRange& sweep,
                int below) {
    const double perDecade = (sweep.Points - 1) / std::log10(sweep.To / sweep.From);
    const bool decades = sweep.Logarithmic && sweep.To > sweep.From;
    const std::string points =
        std::to_string(decades ? std::max(1L, std::lround(perDecade)) : sweep.Points);
    sheet.Note(-256, below,
               "!.ac " + std::string(decades ? "dec " : "lin ") + points + " " + Nine(sweep.From) +
                   " " + Nine(sweep.To));
    std::vector<std::string> lines = DesignComments(design);
    if (design.PartModel.Choice != PartChoice::IdealParts)
        lines.push_back(
            "Rser of the inductors is that at F0; in the design it grows with the root "
            "of the frequency");
    lines.push_back(design.RSource == design.RLoad
                        ? "V(out) is S21"
                        : "S21 is V(out) times " +
                              Nine(GuardedSqrt(design.RSource / design.RLoad)));
    for (const std::string& line : lines)
        sheet.Note(-256, below += 32, ";" + line);
}

}  // namespace

std::string SchematicFileText(const FilterDesign& design, const FrequencyRange& sweep) {
    if (!ExportFault(design).empty()) return {};
    SheetWriter sheet;
    ArmWriter arm(sheet, design, CircuitOf(design, true, false));
    const auto names = DesignatorsOf(design);
    int x = 0, deepest = 192;
    for (int k = 1; k <= std::min(design.NumElements, NumSlots - 1); ++k) {
        const CircuitElement& slot = design.Elements[k];
        const bool shunt = InfoOf(slot.Type).Arm == ElementArm::Shunt;
        for (const Network& net : BuiltNetworksOf(design, k)) {
            arm.Begin(slot, names[k], x, 0);
            const Extent extent = arm.ExtentOf(net);
            const bool open = net.Kind == NetworkKind::OpenStub;
            arm.Draw(net, 0, 0, extent.Along);
            if (shunt && !open) sheet.Flag(x, extent.Along, "0");
            const int step = ArmGap + (shunt ? extent.Across : extent.Along);
            sheet.Wire(shunt ? x : x + extent.Along, 0, x + step, 0);
            x += step;
            if (shunt) deepest = std::max(deepest, extent.Along + 64);
        }
    }
    WriteEnds(sheet, design, x);
    WriteNotes(sheet, design, sweep, deepest + 64);
    return "Version 4\nSHEET 1 " + std::to_string(x + 400) + " " + std::to_string(deepest + 400) +
           "\n" + sheet.Text;
}

}  // namespace ladderwise
