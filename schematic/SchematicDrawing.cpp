// Lays the networks of the elements out as vectors.
//
//   u    along an arm: of a series arm from the source, of a shunt arm down from the line
//   v    across it: upwards of a series arm, to the right of a shunt arm
//   em   height of a line of text, the unit of all sizes below
#include "schematic/SchematicDrawing.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "design/Designators.h"
#include "design/ElementNetworks.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

/// Sizes in em.
struct Em {
    static constexpr double stroke = 0.09;
    static constexpr double turnLength = 0.5;
    static constexpr double turnHeight = 0.38;
    static constexpr int turns = 4;
    static constexpr double plateGap = 0.36;
    static constexpr double plateHalf = 0.62;
    static constexpr double lineLength = 2.2;  // of a line section
    static constexpr double lineHalf = 0.36;
    static constexpr double lineCap = 0.14;  // half the width of the ellipse at its end
    static constexpr double resistorLength = 1.8;
    static constexpr double resistorHalf = 0.3;
    static constexpr double sourceRadius = 0.75;
    static constexpr double partLead = 0.3;    // least wire on each side of a symbol
    static constexpr double textGap = 0.2;     // between a symbol and its text
    static constexpr double textSpace = 0.6;   // between texts beside each other
    static constexpr double memberGap = 0.35;  // between members of a parallel network
    static constexpr double blockGap = 0.5;    // between arms
    static constexpr double armLead =
        0.5;  // least wire between the line and a shunt arm, and ground
    static constexpr double groundHeight = 0.6;
    static constexpr double openRing = 0.18;  // radius of the ring that ends an open stub
    static constexpr double dotRadius = 0.16;
    static constexpr double rowGap = 0.7;  // on each side of the wire between two rows
    static constexpr double crossHalf = 0.5;
};

constexpr int drawnValueDigits = 2;  // after the first
constexpr int drawnResistorDigits = 5;
constexpr const char* ohm = "\u03a9";

/// Room of a network: along its arm and to both sides of its axis.
struct Room {
    double Length = 0.0;
    double Above = 0.0;  ///< towards positive v
    double Below = 0.0;
};

/// What one slot's parts are called.
using Label = std::vector<std::string>;
using SlotLabels = std::array<Label, 4>;

std::string ValueText(ValueKind kind, double value) {
    return FormatWithPrefix(value, drawnValueDigits,
                            kind == ValueKind::Impedance ? ohm : UnitOf(kind));
}

SlotLabels LabelsOf(const CircuitElement& element, const SlotDesignators& names) {
    SlotLabels labels;
    const ElementInfo& info = InfoOf(element.Type);
    for (std::size_t row = 0; row < 4; ++row) {
        const ValueKind kind = info.Values[row];
        if (kind == ValueKind::Unused || kind == ValueKind::Impedance) continue;
        labels[row] = {names[row]};
        if (kind == ValueKind::LengthDegrees)  // its impedance is in the row behind
            labels[row].push_back(
                ValueText(ValueKind::Impedance, element.Value(static_cast<int>(row) + 1)));
        labels[row].push_back(ValueText(kind, element.Value(static_cast<int>(row))));
    }
    return labels;
}

/// One arm: what stands between two places of the line, or hangs from it.
struct Arm {
    int Slot = 0;
    bool Shunt = false;
    Network Net;
    Room Size{};
    double Width = 0.0;  ///< along the line
};

/// Which arms stand in a row: from First to Last, and where its line runs.
struct Row {
    std::size_t First = 0;
    std::size_t Last = 0;  ///< one behind
    double Line = 0.0;     ///< y
    double Bottom = 0.0;
};

class LadderDrawer {
public:
    LadderDrawer(const DesignState& forDesign, const TextMetrics& withMetrics)
        : design(forDesign), metrics(withMetrics), em(withMetrics.Height) {
        const auto names = DesignatorsOf(design);
        for (int slot = 1; slot <= SlotsInUse(design); ++slot) {
            const auto s = static_cast<std::size_t>(slot);
            labels[s] = LabelsOf(design.Elements[s], names[s]);
            AddArms(slot);
        }
        sourceWidth = (2.0 * Em::sourceRadius + 2.0 * Em::partLead) * em +
                      std::max(Em::resistorLength * em, WidthOfLabel(SourceLabel()));
        loadWidth =
            (Em::blockGap + 2.0 * Em::resistorHalf + Em::textGap) * em + WidthOfLabel(LoadLabel());
        MeasureRows();
    }

    SchematicDrawing Draw(double width, double height) {
        if (arms.empty()) return {};
        BestRows(width, height);
        drawing.Stroke = Em::stroke * em;
        drawing.DotRadius = Em::dotRadius * em;
        drawing.Width = WidthOf(rows);
        drawing.Height = rows.back().Bottom;
        for (std::size_t r = 0; r < rows.size(); ++r)
            DrawRow(r);
        return std::move(drawing);
    }

private:
    const DesignState& design;
    const TextMetrics& metrics;
    const double em;
    std::array<SlotLabels, NumSlots> labels;
    std::vector<Arm> arms;
    std::vector<double> ends{0.0};  ///< [k]: width of the first k arms with their gaps
    double sourceWidth = 0.0;
    double loadWidth = 0.0;
    double above = 0.0;  ///< room above the line of a row, and below it down to ground
    double below = 0.0;
    std::vector<Row> rows;
    SchematicDrawing drawing;

    // The arm in hand: its slot and where u = v = 0 lies.
    int slot = 0;
    bool shunt = false;
    DrawnPoint origin{};

    // --- sizes

    void AddArms(int number) {
        const CircuitElement& element = design.Elements[static_cast<std::size_t>(number)];
        slot = number;
        shunt = InfoOf(element.Type).Arm == ElementArm::Shunt;
        std::vector<Network> networks = NetworksOf(element.Type);
        if (networks.empty()) networks.push_back({});  // no element: in series, of nothing
        for (const Network& net : networks) {
            Arm arm{number, shunt, net, Measure(net)};
            arm.Width = shunt ? arm.Size.Above + arm.Size.Below : arm.Size.Length;
            arms.push_back(arm);
            ends.push_back(ends.back() + arm.Width + Em::blockGap * em);
        }
    }

    void MeasureRows() {
        above = Em::plateHalf * em + LabelHeight(SourceLabel());
        below = (2.0 * Em::armLead + 2.0 * Em::sourceRadius + Em::groundHeight) * em;
        for (const Arm& arm : arms) {
            const double leads = (2.0 * Em::armLead + Em::groundHeight) * em;
            above = std::max(above, arm.Shunt ? 0.0 : arm.Size.Above);
            below = std::max(below, arm.Shunt ? arm.Size.Length + leads : arm.Size.Below);
        }
    }

    double WidthOfLabel(const Label& label) const {
        int widest = 0;
        for (const std::string& line : label)
            widest = std::max(widest, metrics.Width(line));
        return widest;
    }
    double LabelHeight(const Label& label) const {
        return static_cast<double>(label.size()) * em + Em::textGap * em;
    }
    Label SourceLabel() const {
        return {"R Source", FormatPlain(design.RSource, drawnResistorDigits) + " " + ohm};
    }
    Label LoadLabel() const {
        return {"R Load", FormatPlain(design.RLoad, drawnResistorDigits) + " " + ohm};
    }

    static double SymbolLength(NetworkKind kind) {
        switch (kind) {
            case NetworkKind::Inductor:
                return Em::turns * Em::turnLength;
            case NetworkKind::Capacitor:
                return Em::plateGap;
            case NetworkKind::Line:
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                return Em::lineLength;
            case NetworkKind::InSeries:
            case NetworkKind::InParallel:
                break;
        }
        return 0.0;
    }
    /// To one side of its axis; a coil has all of it at one side.
    static double SymbolHalf(NetworkKind kind) {
        switch (kind) {
            case NetworkKind::Inductor:
                return Em::turnHeight;
            case NetworkKind::Capacitor:
                return Em::plateHalf;
            case NetworkKind::Line:
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                return Em::lineHalf;
            case NetworkKind::InSeries:
            case NetworkKind::InParallel:
                break;
        }
        return 0.0;
    }

    Room MeasureSymbol(const Network& net) const {
        const Label& label =
            labels[static_cast<std::size_t>(slot)][static_cast<std::size_t>(net.Row)];
        const double half = SymbolHalf(net.Kind) * em;
        Room room{(SymbolLength(net.Kind) + 2.0 * Em::partLead) * em, half,
                  net.Kind == NetworkKind::Inductor ? Em::stroke * em : half};
        const double width = WidthOfLabel(label), height = LabelHeight(label);
        room.Length = std::max(room.Length, shunt ? height : width + Em::textSpace * em);
        room.Above = shunt ? half + Em::textGap * em + width : Em::plateHalf * em + height;
        return room;
    }

    /// Of the axes of the members of a parallel network from the first, which lies furthest above.
    std::vector<double> MemberAxes(const Network& net) const {
        std::vector<double> axes{0.0};
        for (std::size_t i = 1; i < net.Members.size(); ++i)
            axes.push_back(axes.back() - Measure(net.Members[i - 1]).Below - Em::memberGap * em -
                           Measure(net.Members[i]).Above);
        const bool odd = axes.size() % 2 == 1;
        const double middle = odd ? axes[axes.size() / 2] : axes.back() / 2.0;
        for (double& axis : axes)
            axis -= middle;
        return axes;
    }

    Room Measure(const Network& net) const {
        if (net.Kind != NetworkKind::InSeries && net.Kind != NetworkKind::InParallel)
            return MeasureSymbol(net);
        if (net.Members.empty())
            return {4.0 * Em::crossHalf * em, Em::crossHalf * em, Em::crossHalf * em};
        Room all;
        const bool parallel = net.Kind == NetworkKind::InParallel;
        const std::vector<double> axes =
            parallel ? MemberAxes(net) : std::vector<double>(net.Members.size(), 0.0);
        for (std::size_t i = 0; i < net.Members.size(); ++i) {
            const Room one = Measure(net.Members[i]);
            all.Length = parallel ? std::max(all.Length, one.Length) : all.Length + one.Length;
            all.Above = std::max(all.Above, one.Above + axes[i]);
            all.Below = std::max(all.Below, one.Below - axes[i]);
        }
        // The wires to the two ends of a parallel network.
        if (parallel) all.Length += 2.0 * Em::partLead * em;
        return all;
    }

    // --- rows

    double IndentOf(std::size_t row) const {
        return row == 0 ? sourceWidth : (Em::stroke + Em::rowGap) * em;
    }
    /// Behind the last arm of a row: the load, or the wire to the next row.
    double TailOf(const Row& row) const {
        return row.Last == arms.size() ? loadWidth : Em::rowGap * em;
    }
    double WidthOf(std::size_t first, std::size_t last, std::size_t row) const {
        return IndentOf(row) + ends[last] - ends[first] + Em::blockGap * em + TailOf({first, last});
    }
    double WidthOf(const std::vector<Row>& all) const {
        double widest = 0.0;
        for (std::size_t r = 0; r < all.size(); ++r)
            widest = std::max(widest, WidthOf(all[r].First, all[r].Last, r));
        return widest;
    }

    /// Rows no wider than `width`, or of one arm.
    std::vector<Row> RowsWithin(double width) const {
        std::vector<Row> all;
        for (std::size_t first = 0; first < arms.size();) {
            std::size_t last = first + 1;
            while (last < arms.size() && WidthOf(first, last + 1, all.size()) <= width)
                ++last;
            all.push_back({first, last});
            first = last;
        }
        for (std::size_t r = 0; r < all.size(); ++r) {
            const double top = r == 0 ? 0.0 : all[r - 1].Bottom + 2.0 * Em::rowGap * em;
            all[r].Line = top + above;
            all[r].Bottom = all[r].Line + below;
        }
        return all;
    }

    /// Tries all widths at which a row could end. Of the rows that have to be shrunk least, or
    /// little more, the fewest, and these as even as can be.
    void BestRows(double placeWidth, double placeHeight) {
        constexpr double littleMore = 1.25;
        std::vector<double> widths;
        for (std::size_t first = 0; first < arms.size(); ++first)
            for (std::size_t last = first + 1; last <= arms.size(); ++last)
                for (const std::size_t row : {std::size_t{0}, std::size_t{1}})
                    widths.push_back(WidthOf(first, last, row));
        std::sort(widths.begin(), widths.end());
        const auto shrinkOf = [&](const std::vector<Row>& tried) {
            return std::max({WidthOf(tried) / placeWidth, tried.back().Bottom / placeHeight, 1.0});
        };
        double least = std::numeric_limits<double>::infinity();
        for (const double width : widths)
            least = std::min(least, shrinkOf(RowsWithin(width)));
        for (const double width : widths) {
            const std::vector<Row> tried = RowsWithin(width);
            const bool fewer = rows.empty() || tried.size() < rows.size();
            if (fewer && shrinkOf(tried) <= least * littleMore) rows = tried;
        }
    }

    // --- drawing

    DrawnPoint At(double u, double v) const {
        return shunt ? DrawnPoint{origin.X + v, origin.Y + u}
                     : DrawnPoint{origin.X + u, origin.Y - v};
    }
    DrawnRect Frame(double u1, double v1, double u2, double v2) const {
        const DrawnPoint a = At(u1, v1), b = At(u2, v2);
        return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::abs(a.X - b.X), std::abs(a.Y - b.Y)};
    }
    void Wire(DrawnPoint from, DrawnPoint to) {
        if (!(from == to)) drawing.Wires.push_back({from, to});
    }
    void Wire(double u1, double v1, double u2, double v2) { Wire(At(u1, v1), At(u2, v2)); }

    /// Lines of text, centred about `x` or beginning there.
    void Write(const Label& label, double x, double top, bool centred) {
        for (const std::string& line : label) {
            const double width = metrics.Width(line);
            drawing.Texts.push_back({{centred ? x - width / 2.0 : x, top, width, em}, line});
            top += em;
        }
    }

    /// A length of coaxial line, seen slightly from the source's side.
    void DrawLineSection(double u, double v) {
        const double half = Em::lineHalf * em, cap = Em::lineCap * em;
        const double near = u + cap, far = u + Em::lineLength * em - cap;
        for (const double side : {v - half, v + half})
            drawing.Lines.push_back({At(near, side), At(far, side)});
        drawing.Arcs.push_back({Frame(near - cap, v - half, near + cap, v + half)});
        drawing.Arcs.push_back({Frame(far - cap, v - half, far + cap, v + half),
                                shunt ? 180.0 : 90.0, shunt ? 180.0 : -180.0});
        drawing.Lines.push_back({At(u, v), At(near, v)});
    }

    void DrawSymbol(const Network& net, double u, double v) {
        const double length = SymbolLength(net.Kind) * em, half = SymbolHalf(net.Kind) * em;
        switch (net.Kind) {
            case NetworkKind::Inductor:
                for (int turn = 0; turn < Em::turns; ++turn) {
                    const double from = u + turn * Em::turnLength * em;
                    drawing.Arcs.push_back(
                        {Frame(from, v - half, from + Em::turnLength * em, v + half),
                         shunt ? 90.0 : 180.0, -180.0});
                }
                break;
            case NetworkKind::Capacitor:
                for (const double plate : {u, u + length})
                    drawing.Lines.push_back({At(plate, v - half), At(plate, v + half)});
                break;
            case NetworkKind::Line:
            case NetworkKind::ShortedStub:
            case NetworkKind::OpenStub:
                DrawLineSection(u, v);
                break;
            case NetworkKind::InSeries:
            case NetworkKind::InParallel:
                return;
        }
        const bool coil = net.Kind == NetworkKind::Inductor;
        drawing.Parts.push_back({slot, net.Row, At(u, v), At(u + length, v),
                                 Frame(u, coil ? v : v - half, u + length, v + half)});
    }

    void WriteLabel(const Network& net, double u, double v) {
        const Label& label =
            labels[static_cast<std::size_t>(slot)][static_cast<std::size_t>(net.Row)];
        const double length = SymbolLength(net.Kind) * em, half = SymbolHalf(net.Kind) * em;
        // All texts above the line stand at one height.
        const double side = shunt ? half : Em::plateHalf * em;
        const DrawnPoint at = At(u + length / 2.0, v + side + Em::textGap * em);
        const double height = static_cast<double>(label.size()) * em;
        Write(label, at.X, shunt ? at.Y - height / 2.0 : at.Y - height, !shunt);
    }

    void DrawSingle(const Network& net, double u, double v, double length) {
        const double own = SymbolLength(net.Kind) * em, lead = (length - own) / 2.0;
        Wire(u, v, u + lead, v);
        DrawSymbol(net, u + lead, v);
        WriteLabel(net, u + lead, v);
        Wire(u + lead + own, v, u + length, v);
    }

    void DrawInSeries(const Network& net, double u, double v, double length) {
        const double spare =
            (length - Measure(net).Length) / static_cast<double>(net.Members.size());
        for (const Network& member : net.Members) {
            const double own = Measure(member).Length + spare;
            DrawNetwork(member, u, v, own);
            u += own;
        }
    }

    void DrawInParallel(const Network& net, double u, double v, double length) {
        const std::vector<double> axes = MemberAxes(net);
        const double lead = Em::partLead * em, end = u + length;
        Wire(u, v, u + lead, v);
        Wire(end - lead, v, end, v);
        for (const double bus : {u + lead, end - lead}) {
            Wire(bus, v + axes.front(), bus, v + axes.back());
            drawing.Dots.push_back(At(bus, v));
        }
        for (std::size_t i = 0; i < axes.size(); ++i)
            DrawNetwork(net.Members[i], u + lead, v + axes[i], length - 2.0 * lead);
    }

    /// From (u, v) to (u + length, v).
    void DrawNetwork(const Network& net, double u, double v, double length) {
        if (net.Kind == NetworkKind::InParallel) return DrawInParallel(net, u, v, length);
        if (net.Kind != NetworkKind::InSeries) return DrawSingle(net, u, v, length);
        if (!net.Members.empty()) return DrawInSeries(net, u, v, length);
        const double half = Em::crossHalf * em, middle = u + length / 2.0;
        drawing.Lines.push_back({At(middle - half, v - half), At(middle + half, v + half)});
        drawing.Lines.push_back({At(middle - half, v + half), At(middle + half, v - half)});
    }

    void Ground(DrawnPoint at) {
        drawing.Grounds.push_back(at);
        for (int bar = 0; bar < 3; ++bar) {
            const double half = (0.6 - 0.2 * bar) * em, y = at.Y + 0.2 * bar * em;
            drawing.Lines.push_back({{at.X - half, y}, {at.X + half, y}});
        }
    }

    void DrawShunt(const Arm& arm, double line) {
        const double depth = below - Em::groundHeight * em;
        drawing.Dots.push_back(origin);
        if (arm.Net.Kind == NetworkKind::OpenStub) {
            Wire(0.0, 0.0, Em::armLead * em, 0.0);
            DrawNetwork(arm.Net, Em::armLead * em, 0.0, arm.Size.Length);
            const double ring = Em::openRing * em;
            const DrawnPoint end = At(Em::armLead * em + arm.Size.Length, 0.0);
            drawing.Arcs.push_back({{end.X - ring, end.Y, 2.0 * ring, 2.0 * ring}});
            return;
        }
        Wire(0.0, 0.0, Em::armLead * em, 0.0);
        DrawNetwork(arm.Net, Em::armLead * em, 0.0, depth - 2.0 * Em::armLead * em);
        Wire(depth - Em::armLead * em, 0.0, depth, 0.0);
        Ground({origin.X, line + depth});
    }

    /// The line through the arms of a row from x; returns where it ends.
    double DrawArms(const Row& row, double x) {
        for (std::size_t i = row.First; i < row.Last; ++i) {
            const Arm& arm = arms[i];
            slot = arm.Slot;
            shunt = arm.Shunt;
            const double from = x + Em::blockGap * em;
            if (shunt) {
                origin = {from + arm.Size.Below, row.Line};
                Wire({x, row.Line}, origin);
                Wire(origin, {from + arm.Width, row.Line});
                DrawShunt(arm, row.Line);
            } else {
                origin = {from, row.Line};
                Wire({x, row.Line}, origin);
                DrawNetwork(arm.Net, 0.0, 0.0, arm.Width);
            }
            x = from + arm.Width;
        }
        return x;
    }

    double DrawSource(const Row& row) {
        const double x = Em::sourceRadius * em, radius = Em::sourceRadius * em;
        const double ground = row.Line + below - Em::groundHeight * em;
        const double middle = (row.Line + ground) / 2.0;
        const DrawnPoint corner{x, row.Line};
        Wire(corner, {x, middle - radius});
        Wire({x, middle + radius}, {x, ground});
        Ground({x, ground});
        drawing.Arcs.push_back({{0.0, middle - radius, 2.0 * radius, 2.0 * radius}});
        const double wave = radius / 2.0;  // one period of a sine
        drawing.Arcs.push_back({{x - wave, middle - wave / 2.0, wave, wave}, 180.0, -180.0});
        drawing.Arcs.push_back({{x, middle - wave / 2.0, wave, wave}, 180.0, 180.0});
        const double length = Em::resistorLength * em, half = Em::resistorHalf * em;
        const double room = sourceWidth - 2.0 * Em::sourceRadius * em;
        const double from = 2.0 * Em::sourceRadius * em + (room - length) / 2.0;
        Wire(corner, {from, row.Line});
        drawing.Boxes.push_back({from, row.Line - half, length, 2.0 * half});
        const Label label = SourceLabel();
        Write(label, from + length / 2.0, row.Line - Em::plateHalf * em - LabelHeight(label), true);
        drawing.SourceEnd = {from + length, row.Line};
        Wire(drawing.SourceEnd, {sourceWidth, row.Line});
        return sourceWidth;
    }

    void DrawLoad(const Row& row, double x) {
        const double axis = x + (Em::blockGap + Em::resistorHalf) * em,
                     half = Em::resistorHalf * em;
        const double ground = row.Line + below - Em::groundHeight * em,
                     length = Em::resistorLength * em;
        const double middle = (row.Line + ground) / 2.0;
        Wire({x, row.Line}, {axis, row.Line});
        drawing.LoadEnd = {axis, middle - length / 2.0};
        Wire({axis, row.Line}, drawing.LoadEnd);
        drawing.Boxes.push_back({axis - half, drawing.LoadEnd.Y, 2.0 * half, length});
        Wire({axis, middle + length / 2.0}, {axis, ground});
        Ground({axis, ground});
        const Label label = LoadLabel();
        Write(label, axis + half + Em::textGap * em,
              middle - static_cast<double>(label.size()) * em / 2.0, false);
    }

    /// From the end of a row below it to the beginning of the next one.
    void DrawReturn(const Row& row, const Row& next, double x) {
        const double right = x + Em::rowGap * em, left = Em::stroke * em,
                     y = row.Bottom + Em::rowGap * em;
        const DrawnPoint corners[] = {{x, row.Line}, {right, row.Line}, {right, y},
                                      {left, y},     {left, next.Line}, {IndentOf(1), next.Line}};
        for (std::size_t i = 1; i < std::size(corners); ++i)
            Wire(corners[i - 1], corners[i]);
    }

    void DrawRow(std::size_t r) {
        const double end = DrawArms(rows[r], r == 0 ? DrawSource(rows[r]) : IndentOf(r));
        if (r + 1 == rows.size()) return DrawLoad(rows[r], end);
        DrawReturn(rows[r], rows[r + 1], end);
    }
};

}  // namespace

SchematicDrawing DrawLadder(const DesignState& design, double width, double height,
                            const TextMetrics& metrics) {
    return LadderDrawer(design, metrics).Draw(std::max(width, 1.0), std::max(height, 1.0));
}

}  // namespace ladderwise
