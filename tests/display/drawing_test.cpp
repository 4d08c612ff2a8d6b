// The drawn ladder: that the drawing is the circuit, that nothing in it lies on anything else, and
// that pictures show it.
#include <gtest/gtest.h>

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/Circuitanalysis.h"
#include "design/Designators.h"
#include "display/Picture.h"
#include "schematic/DrawingPainter.h"
#include "tests/Picture.h"
#include "tests/display/ButterworthResponse.h"

namespace ladderwise {
namespace {

const TextMetrics Wide{[](const std::string& text) { return 62 * static_cast<int>(text.size()); },
                       117};

/// `count` slots of the type between series inductors.
FilterDesign LadderOf(ElementType type, int count) {
    FilterDesign design;
    design.F0 = 1.0;
    design.RSource = design.RLoad = 1.0;
    design.NumElements = 2 * count + 1;
    for (int slot = 1; slot <= design.NumElements; ++slot) {
        const double x = 1.0 + 0.07 * slot;
        design.Elements[slot] = {slot % 2 == 0 ? type : ElementType::SeriesInd, 0.7 * x, 1.9 / x,
                                 0.45 * x, 2.3 / x};
    }
    return design;
}

/// The drawing as a circuit: which points are one node, and what lies between them.
class DrawnCircuit {
public:
    explicit DrawnCircuit(const SchematicDrawing& shown) : drawing(shown) {
        for (const DrawnLine& wire : drawing.Wires) {
            Add(wire.From);
            Add(wire.To);
        }
        for (const DrawnPart& part : drawing.Parts) {
            Add(part.A);
            Add(part.B);
        }
        for (const DrawnPoint& ground : drawing.Grounds)
            Add(ground);
        Add(drawing.SourceEnd);
        Add(drawing.LoadEnd);
        parent.resize(points.size());
        std::iota(parent.begin(), parent.end(), 0);
        for (const DrawnLine& wire : drawing.Wires)
            for (std::size_t i = 0; i < points.size(); ++i)
                if (LiesOn(points[i], wire)) Join(i, IndexOf(wire.From));
        for (const DrawnPoint& ground : drawing.Grounds)
            Join(IndexOf(ground), IndexOf(drawing.Grounds.front()));
    }

    /// V(load) between 1 ohm at both ends, of a source of 2 V.
    Complex Transfer(const FilterDesign& design, double F) {
        matrix.assign(points.size(), std::vector<Complex>(points.size() + 1));
        for (const DrawnPart& part : drawing.Parts)
            Stamp(design.Elements[part.Slot], part, F);
        const std::size_t in = NodeAt(drawing.SourceEnd), out = NodeAt(drawing.LoadEnd);
        matrix[in][in] += 1.0;
        matrix[in][points.size()] += 2.0;
        matrix[out][out] += 1.0;
        for (std::size_t i = 0; i < points.size(); ++i) {
            const bool alone = matrix[i][i] == 0.0;  // between source and resistor
            if (Find(i) == i && i != Ground() && !alone) continue;
            std::fill(matrix[i].begin(), matrix[i].end(), Complex());
            matrix[i][i] = 1.0;
        }
        return Solve(out);
    }

private:
    const SchematicDrawing& drawing;
    std::vector<DrawnPoint> points;
    std::vector<std::size_t> parent;
    std::vector<std::vector<Complex>> matrix;

    static bool Same(DrawnPoint a, DrawnPoint b) { return std::hypot(a.X - b.X, a.Y - b.Y) < 1e-6; }
    static bool LiesOn(DrawnPoint p, const DrawnLine& wire) {
        const double length = std::hypot(wire.To.X - wire.From.X, wire.To.Y - wire.From.Y);
        const double detour = std::hypot(p.X - wire.From.X, p.Y - wire.From.Y) +
                              std::hypot(p.X - wire.To.X, p.Y - wire.To.Y);
        return detour - length < 1e-6;
    }
    void Add(DrawnPoint p) {
        if (std::none_of(points.begin(), points.end(), [&](DrawnPoint q) { return Same(p, q); }))
            points.push_back(p);
    }
    std::size_t IndexOf(DrawnPoint p) const {
        return std::find_if(points.begin(), points.end(),
                            [&](DrawnPoint q) { return Same(p, q); }) -
               points.begin();
    }
    std::size_t Find(std::size_t i) const { return parent[i] == i ? i : Find(parent[i]); }
    void Join(std::size_t a, std::size_t b) { parent[Find(a)] = Find(b); }
    std::size_t NodeAt(DrawnPoint p) const { return Find(IndexOf(p)); }
    std::size_t Ground() const { return NodeAt(drawing.Grounds.front()); }

    void Stamp(const CircuitElement& element, const DrawnPart& part, double F) {
        const std::size_t a = NodeAt(part.A), b = NodeAt(part.B);
        const Complex s(0.0, TwoPi * F);
        const double value = element.Value(part.Row);
        const ValueKind kind = InfoOf(element.Type).Values[static_cast<std::size_t>(part.Row)];
        Complex own, mutual;
        if (kind == ValueKind::LengthDegrees) {  // y11 = -j cot / Z0, y12 = j / (Z0 sin)
            const double angle = value / 360.0 * TwoPi * F, Z0 = element.Value(part.Row + 1);
            own = Complex(0.0, -1.0 / (std::tan(angle) * Z0));
            mutual = Complex(0.0, 1.0 / (std::sin(angle) * Z0));
        } else {
            own = kind == ValueKind::Inductance ? 1.0 / (s * value) : s * value;
            mutual = -own;
        }
        matrix[a][a] += own;
        matrix[b][b] += own;
        matrix[a][b] += mutual;
        matrix[b][a] += mutual;
    }

    Complex Solve(std::size_t wanted) {
        const std::size_t n = matrix.size();
        for (std::size_t k = 0; k < n; ++k) {
            std::size_t pivot = k;
            for (std::size_t i = k; i < n; ++i)
                if (std::abs(matrix[i][k]) > std::abs(matrix[pivot][k])) pivot = i;
            std::swap(matrix[k], matrix[pivot]);
            for (std::size_t i = 0; i < n; ++i) {
                if (i == k) continue;
                const Complex factor = matrix[i][k] / matrix[k][k];
                for (std::size_t j = k; factor != 0.0 && j <= n; ++j)
                    matrix[i][j] -= factor * matrix[k][j];
            }
        }
        return matrix[wanted][n] / matrix[wanted][wanted];
    }
};

bool Overlap(const DrawnRect& a, const DrawnRect& b) {
    return a.Left < b.Right() && b.Left < a.Right() && a.Top < b.Bottom() && b.Top < a.Bottom();
}

DrawnRect BoxOf(const DrawnLine& line) {
    return {std::min(line.From.X, line.To.X), std::min(line.From.Y, line.To.Y),
            std::abs(line.From.X - line.To.X), std::abs(line.From.Y - line.To.Y)};
}

bool Inside(const DrawnRect& outer, const DrawnRect& rect) {
    constexpr double nearly = 1e-6;
    return rect.Width >= 0.0 && rect.Height >= 0.0 && rect.Left > outer.Left - nearly &&
           rect.Top > outer.Top - nearly && rect.Right() < outer.Right() + nearly &&
           rect.Bottom() < outer.Bottom() + nearly;
}

/// Each text off all else, all of it on the page, and what belongs to a symbol within its frame.
void ExpectNothingOnTexts(const SchematicDrawing& drawing, const std::string& what) {
    const DrawnRect page{0.0, 0.0, drawing.Width, drawing.Height};
    for (const DrawnArc& arc : drawing.Arcs)
        EXPECT_TRUE(Inside(page, arc.Frame)) << what << ": an arc";
    for (const auto* const lines : {&drawing.Wires, &drawing.Lines})
        for (const DrawnLine& line : *lines)
            EXPECT_TRUE(Inside(page, BoxOf(line))) << what << ": a line";
    std::vector<DrawnRect> others = drawing.Boxes;
    for (const DrawnPart& part : drawing.Parts)
        others.push_back(part.Symbol);
    for (const DrawnArc& arc : drawing.Arcs)
        if (arc.Span == 360.0) others.push_back(arc.Frame);
    for (const auto* const lines : {&drawing.Wires, &drawing.Lines})
        for (const DrawnLine& line : *lines)
            others.push_back(BoxOf(line));
    for (std::size_t i = 0; i < drawing.Texts.size(); ++i) {
        const DrawnText& text = drawing.Texts[i];
        const DrawnRect& place = text.Place;
        EXPECT_TRUE(place.Left >= page.Left && place.Right() <= page.Right() &&
                    place.Top >= page.Top && place.Bottom() <= page.Bottom())
            << what << ": " << text.Text;
        for (std::size_t j = i + 1; j < drawing.Texts.size(); ++j)
            EXPECT_FALSE(Overlap(place, drawing.Texts[j].Place))
                << what << ": " << text.Text << " and " << drawing.Texts[j].Text;
        for (const DrawnRect& other : others)
            EXPECT_FALSE(Overlap(place, other)) << what << ": " << text.Text;
    }
}

// Every type, in one row and in several: the transfer of what is drawn is that of the analysis.
TEST(SchematicDrawing, IsTheCircuitOfTheAnalysis) {
    constexpr double F = 1.3 / TwoPi;
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        const FilterDesign design = LadderOf(static_cast<ElementType>(code), 3);
        const Complex expected = AnalysePoint(design, 1.0, F).Transfer;
        for (const double width : {1e5, 2000.0}) {
            const SchematicDrawing drawing = DrawLadder(design, width, 4000.0, Wide);
            const char* const name = InfoOf(static_cast<ElementType>(code)).Name;
            EXPECT_LT(std::abs(DrawnCircuit(drawing).Transfer(design, F) - expected), 1e-9)
                << name << " " << width;
            ExpectNothingOnTexts(drawing, name);
        }
    }
}

TEST(SchematicDrawing, WrapsALongLadderAndNamesEveryPart) {
    FilterDesign design = LadderOf(ElementType::ShuntParLC, 15);
    ASSERT_EQ(design.NumElements, 31);
    // The lower half of A4 across, in texts of 9 points.
    const SchematicDrawing drawing = DrawLadder(design, 9000.0, 3000.0, Wide);
    ExpectNothingOnTexts(drawing, "31 elements");
    EXPECT_LT(std::max(drawing.Width / 9000.0, drawing.Height / 3000.0), 1.6);  // 5.6 points
    const auto names = DesignatorsOf(design);
    for (int slot = 1; slot <= 31; ++slot)
        for (const std::string& name : names[slot]) {
            const auto count = std::count_if(drawing.Texts.begin(), drawing.Texts.end(),
                                             [&](const auto& text) { return text.Text == name; });
            EXPECT_EQ(count, name.empty() ? 0 : 1) << name;
        }
    design.NumElements = 0;
    EXPECT_TRUE(DrawLadder(design, 9000.0, 3000.0, Wide).Wires.empty());
}

double Distance(DrawnPoint a, DrawnPoint b) {
    return std::hypot(a.X - b.X, a.Y - b.Y);
}

/// The point of an arc at a share of its span.
DrawnPoint OnArc(const DrawnArc& arc, double share) {
    const double angle = (arc.Start + share * arc.Span) / 360.0 * TwoPi;
    return {arc.Frame.Left + arc.Frame.Width * 0.5 * (1.0 + std::cos(angle)),
            arc.Frame.Top + arc.Frame.Height * 0.5 * (1.0 - std::sin(angle))};
}

/// The strokes whose middle lies in a part's rectangle, in coordinates of the part: along from its
/// first end (0) to its second (1), and across, in pixels, to the side where it is written.
struct PartStrokes {
    const DrawnPart& Part;
    const bool Shunt;
    const double Length = Distance(Part.A, Part.B);
    std::vector<DrawnArc> Arcs{};
    std::vector<DrawnLine> Lines{};

    PartStrokes(const SchematicDrawing& drawing, const DrawnPart& part)
        : Part(part), Shunt(std::abs(part.A.X - part.B.X) < 1e-6) {
        const auto within = [&](DrawnPoint p) { return Inside(part.Symbol, {p.X, p.Y, 0.0, 0.0}); };
        for (const DrawnArc& arc : drawing.Arcs)
            if (within(OnArc(arc, 0.5))) Arcs.push_back(arc);
        for (const DrawnLine& line : drawing.Lines)
            if (within({(line.From.X + line.To.X) / 2.0, (line.From.Y + line.To.Y) / 2.0}))
                Lines.push_back(line);
    }
    DrawnPoint Own(DrawnPoint p) const {
        const double x = p.X - Part.A.X, y = p.Y - Part.A.Y;
        return Shunt ? DrawnPoint{y / Length, x} : DrawnPoint{x / Length, -y};
    }
    double Half() const {
        return Shunt ? Part.Symbol.Right() - Part.A.X : Part.A.Y - Part.Symbol.Top;
    }
};

bool Near(DrawnPoint a, DrawnPoint b) {
    return Distance(a, b) < 1e-6;
}

/// Four bumps from end to end, all to one side.
void ExpectCoil(const PartStrokes& coil) {
    ASSERT_EQ(coil.Arcs.size(), 4u);
    EXPECT_TRUE(coil.Lines.empty());
    for (std::size_t k = 0; k < 4; ++k) {
        const auto at = [&](double share) { return coil.Own(OnArc(coil.Arcs[k], share)); };
        EXPECT_TRUE(Near(at(0.0), {k / 4.0, 0.0})) << k;
        EXPECT_TRUE(Near(at(0.5), {(k + 0.5) / 4.0, coil.Half()})) << k;
        EXPECT_TRUE(Near(at(1.0), {(k + 1.0) / 4.0, 0.0})) << k;
    }
}

/// Two plates, one at each end, as far to both sides.
void ExpectPlates(const PartStrokes& plates) {
    ASSERT_EQ(plates.Lines.size(), 2u);
    EXPECT_TRUE(plates.Arcs.empty());
    for (std::size_t k = 0; k < 2; ++k) {
        EXPECT_TRUE(Near(plates.Own(plates.Lines[k].From), {double(k), -plates.Half()}));
        EXPECT_TRUE(Near(plates.Own(plates.Lines[k].To), {double(k), plates.Half()}));
    }
}

/// A tube: an ellipse at the near end, into the middle of which the wire leads, two sides, and half
/// an ellipse that closes it at the far end.
void ExpectTube(const PartStrokes& tube) {
    ASSERT_EQ(tube.Arcs.size(), 2u);
    ASSERT_EQ(tube.Lines.size(), 3u);
    const auto at = [&](int arc, double share) { return tube.Own(OnArc(tube.Arcs[arc], share)); };
    EXPECT_EQ(tube.Arcs[0].Span, 360.0);
    const DrawnPoint middle = tube.Own(tube.Lines[2].To);
    EXPECT_TRUE(Near(tube.Own(tube.Lines[2].From), {0.0, 0.0}));
    EXPECT_NEAR(middle.Y, 0.0, 1e-6);
    for (const double share : {0.0, 0.25, 0.5, 0.75}) {
        const DrawnPoint p = at(0, share), opposite = at(0, share + 0.5);
        EXPECT_TRUE(Near({(p.X + opposite.X) / 2.0, (p.Y + opposite.Y) / 2.0}, middle));
    }
    for (const double side : {-1.0, 1.0}) {
        const DrawnLine& line = tube.Lines[side < 0.0 ? 0 : 1];
        EXPECT_TRUE(Near(tube.Own(line.From), {middle.X, side * tube.Half()}));
        EXPECT_TRUE(Near(tube.Own(line.To), {1.0 - middle.X, side * tube.Half()}));
        EXPECT_TRUE(Near(tube.Own(line.To), at(1, 0.0)) || Near(tube.Own(line.To), at(1, 1.0)));
    }
    EXPECT_TRUE(Near(at(1, 0.5), {1.0, 0.0}));
    EXPECT_TRUE(middle.X > 0.0 && middle.X < 0.2);
}

/// Designator first, value last, beside the symbol of a shunt arm and above that of a series arm.
void ExpectLabel(const SchematicDrawing& drawing, const PartStrokes& part,
                 const std::string& name) {
    const auto text = std::find_if(drawing.Texts.begin(), drawing.Texts.end(),
                                   [&](const DrawnText& one) { return one.Text == name; });
    ASSERT_NE(text, drawing.Texts.end()) << name;
    const DrawnRect& symbol = part.Part.Symbol;
    const double em = text->Place.Height;
    double bottom = text->Place.Bottom();  // of the lines below it
    for (const DrawnText& line : drawing.Texts)
        if (std::abs(line.Place.Top - bottom) < 1e-6 &&
            (part.Shunt ? line.Place.Left == text->Place.Left
                        : std::abs(line.Place.Left + line.Place.Right() - text->Place.Left -
                                   text->Place.Right()) < 1e-6))
            bottom += em;
    EXPECT_GT(bottom, text->Place.Bottom() + 0.9 * em) << name << ": a value below it";
    if (part.Shunt) {
        EXPECT_NEAR((text->Place.Top + bottom) / 2.0, symbol.Top + symbol.Height / 2.0, 1e-6);
        EXPECT_NEAR(text->Place.Left - symbol.Right(), 0.2 * em, 0.1 * em) << name;
    } else {
        EXPECT_NEAR(text->Place.Left + text->Place.Width / 2.0, symbol.Left + symbol.Width / 2.0,
                    1e-6);
        EXPECT_LT(symbol.Top - bottom, em) << name;
    }
}

TEST(SchematicDrawing, SymbolsAreWholeAndNamedBesideThem) {
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        const FilterDesign design = LadderOf(static_cast<ElementType>(code), 3);
        const auto names = DesignatorsOf(design);
        for (const double width : {1e5, 2000.0}) {
            const SchematicDrawing drawing = DrawLadder(design, width, 4000.0, Wide);
            SCOPED_TRACE(InfoOf(static_cast<ElementType>(code)).Name);
            for (const DrawnPart& part : drawing.Parts) {
                const PartStrokes strokes(drawing, part);
                const auto row = static_cast<std::size_t>(part.Row);
                const ValueKind kind = InfoOf(design.Elements[part.Slot].Type).Values[row];
                if (kind == ValueKind::Inductance) ExpectCoil(strokes);
                if (kind == ValueKind::Capacitance) ExpectPlates(strokes);
                if (kind == ValueKind::LengthDegrees) ExpectTube(strokes);
                ExpectLabel(drawing, strokes, names[part.Slot][row]);
            }
        }
    }
}

TEST(SchematicDrawing, SourceLoadAndGroundsAreDrawn) {
    for (const ElementType type : {ElementType::ShuntCap, ElementType::ShuntTLOC}) {
        const SchematicDrawing drawing = DrawLadder(LadderOf(type, 3), 1e5, 4000.0, Wide);
        const auto hasWireEnd = [&](DrawnPoint p) {
            return std::any_of(drawing.Wires.begin(), drawing.Wires.end(), [&](const auto& wire) {
                return Near(wire.From, p) || Near(wire.To, p);
            });
        };
        // A circle between two wires, and a period of a sine in it, from up to down.
        const auto circle = std::find_if(
            drawing.Arcs.begin(), drawing.Arcs.end(),
            [](const DrawnArc& arc) { return arc.Span == 360.0 && arc.Frame.Left < 1e-6; });
        ASSERT_NE(circle, drawing.Arcs.end());
        const DrawnRect& round = circle->Frame;
        const DrawnPoint centre{round.Width / 2.0, round.Top + round.Height / 2.0};
        EXPECT_NEAR(round.Width, round.Height, 1e-6);
        EXPECT_TRUE(hasWireEnd({centre.X, round.Top}) && hasWireEnd({centre.X, round.Bottom()}));
        std::vector<DrawnArc> sine;
        for (const DrawnArc& arc : drawing.Arcs)
            if (arc.Span != 360.0 && Inside(round, arc.Frame)) sine.push_back(arc);
        ASSERT_EQ(sine.size(), 2u);
        EXPECT_TRUE(Near(OnArc(sine[0], 1.0), centre) && Near(OnArc(sine[1], 0.0), centre));
        const double reach = centre.X - OnArc(sine[0], 0.0).X;
        EXPECT_TRUE(reach > 0.4 * centre.X && reach < 0.9 * centre.X);
        EXPECT_NEAR(OnArc(sine[1], 1.0).X - centre.X, reach, 1e-6);
        EXPECT_LT(OnArc(sine[0], 0.5).Y, centre.Y - 0.2 * reach);
        EXPECT_GT(OnArc(sine[1], 0.5).Y, centre.Y + 0.2 * reach);
        // The resistors lie between wires that end in the middle of their ends.
        ASSERT_EQ(drawing.Boxes.size(), 2u);
        const DrawnRect &source = drawing.Boxes[0], &load = drawing.Boxes[1];
        EXPECT_TRUE(hasWireEnd({source.Left, source.Top + source.Height / 2.0}));
        EXPECT_TRUE(hasWireEnd({source.Right(), source.Top + source.Height / 2.0}));
        EXPECT_TRUE(hasWireEnd({load.Left + load.Width / 2.0, load.Top}));
        EXPECT_TRUE(hasWireEnd({load.Left + load.Width / 2.0, load.Bottom()}));
        EXPECT_NEAR(source.Width, load.Height, 1e-6);
        EXPECT_NEAR(source.Height, load.Width, 1e-6);
        EXPECT_GT(source.Width, 2.0 * source.Height);
        // Source, load and each shunted capacitor, not the open stubs; three bars each, ever
        // shorter.
        EXPECT_EQ(drawing.Grounds.size(), type == ElementType::ShuntCap ? 5u : 2u);
        for (const DrawnPoint& ground : drawing.Grounds) {
            EXPECT_TRUE(hasWireEnd(ground));
            std::vector<double> halves, heights;
            for (const DrawnLine& line : drawing.Lines)
                if (line.From.Y == line.To.Y && line.From.Y > ground.Y - 1e-6 &&
                    std::abs(line.From.X + line.To.X - 2.0 * ground.X) < 1e-6) {
                    halves.push_back(line.To.X - ground.X);
                    heights.push_back(line.From.Y - ground.Y);
                }
            ASSERT_EQ(halves.size(), 3u);
            EXPECT_NEAR(heights[0], 0.0, 1e-6);
            for (int k = 1; k < 3; ++k) {
                EXPECT_NEAR(heights[k], k * heights[1], 1e-6);
                EXPECT_NEAR(halves[k], halves[0] * (3 - k) / 3.0, 1e-6);
            }
        }
        // An open stub ends in a ring.
        int rings = 0;
        for (const DrawnPart& part : drawing.Parts)
            for (const DrawnArc& arc : drawing.Arcs)
                rings += arc.Span == 360.0 && arc.Frame.Top > part.B.Y &&
                         std::abs(arc.Frame.Left + arc.Frame.Width / 2.0 - part.B.X) < 1e-6;
        EXPECT_EQ(rings, type == ElementType::ShuntTLOC ? 3 : 0);
        // No room is left around what is drawn.
        DrawnRect all = drawing.Texts.front().Place;
        const auto include = [&all](const DrawnRect& rect) {
            const double right = std::max(all.Right(), rect.Right());
            const double bottom = std::max(all.Bottom(), rect.Bottom());
            all.Left = std::min(all.Left, rect.Left);
            all.Top = std::min(all.Top, rect.Top);
            all.Width = right - all.Left;
            all.Height = bottom - all.Top;
        };
        for (const DrawnText& text : drawing.Texts)
            include(text.Place);
        for (const DrawnLine& line : drawing.Lines)
            include(BoxOf(line));
        include(round);
        const double em = Wide.Height;
        EXPECT_TRUE(all.Left < 1e-6 && all.Top < 0.7 * em);
        EXPECT_LT(drawing.Width - all.Right(), 0.6 * em);
        EXPECT_LT(drawing.Height - all.Bottom(), 0.3 * em);
    }
    FilterDesign design = LadderOf(ElementType::ShuntCap, 1);
    design.Elements[2].Type = ElementType::errorBitMap;
    // A cross, as high as wide, in a line that is cut.
    const SchematicDrawing broken = DrawLadder(design, 1e5, 4000.0, Wide);
    std::vector<DrawnLine> cross;
    for (const DrawnLine& line : broken.Lines)
        if (line.From.X != line.To.X && line.From.Y != line.To.Y) cross.push_back(line);
    ASSERT_EQ(cross.size(), 2u);
    EXPECT_NEAR(cross[0].To.X - cross[0].From.X, std::abs(cross[0].To.Y - cross[0].From.Y), 1e-6);
    EXPECT_NEAR(cross[0].From.Y, cross[1].To.Y, 1e-6);
    EXPECT_NEAR(cross[0].From.X, cross[1].From.X, 1e-6);
    const double y = (cross[0].From.Y + cross[0].To.Y) / 2.0, x = cross[0].From.X;
    EXPECT_NEAR(y, broken.SourceEnd.Y, 1e-6);
    for (const DrawnLine& wire : broken.Wires)
        EXPECT_FALSE(std::abs(wire.From.Y - y) < 1e-6 && std::abs(wire.To.Y - y) < 1e-6 &&
                     wire.From.X < x + 1.0 && wire.To.X > x);
}

int InkIn(const QImage& image, const QRect& place) {
    int ink = 0;
    for (int y = place.top(); y <= place.bottom(); ++y)
        for (int x = place.left(); x <= place.right(); ++x)
            ink += qGray(image.pixel(x, y)) < 128;
    return ink;
}

// Each part of the picture has its ink; traces are where the plot has them, on either ground.
TEST(Picture, ShowsPlotLadderAndResults) {
    const ButterworthResponse made = MakeButterworth(SweepType::OneDecade);
    std::string remark = "begins here,";  // longer than a line: it is wrapped, beneath the table
    for (int i = 0; i < 40; ++i)
        remark += " and goes on";
    remark += ", and ends there";
    const PictureContent content{made.Content({}),
                                 {{"Loss at Fo", "3.01 dB", ""}, {"Remark", remark, ""}}};
    const QSize size(1280, 800);
    for (const bool white : {false, true})
        for (const PictureParts parts :
             {PictureParts::Plot, PictureParts::Schematic, PictureParts::Both}) {
            const QImage image = PictureImage(size, size, content, {parts, white}, QFont());
            EXPECT_EQ(qRed(image.pixel(2, 2)), white ? 255 : 234);
            EXPECT_GT(InkIn(image, {0, 0, 1280, 50}), 300);    // the title
            EXPECT_GT(InkIn(image, {0, 760, 1280, 40}), 100);  // the results
            const bool plot = parts != PictureParts::Schematic;
            int red = 0;
            for (int x = 100; x < 1200; ++x)
                for (int y = 60; y < 700; ++y)
                    red += qRed(image.pixel(x, y)) > 200 && qGreen(image.pixel(x, y)) < 60;
            EXPECT_EQ(red > 800, plot) << red;
            if (parts == PictureParts::Both) {
                EXPECT_GT(InkIn(image, {400, 600, 480, 150}), 500);  // the ladder
            }
            const QColor paper = image.pixelColor(2, 2);
            const Picture seen(image, QFont(), paper);
            QList<QRect> places;
            for (const char* const text : {"Loss at Fo", "Remark: begins here,", "there"}) {
                const QList<QRect> found = seen.Find(text, Qt::black, {0, 690, 700, 110});
                places += found;
                EXPECT_EQ(found.size(), 1) << text;
            }
            for (int i = 1; i < places.size(); ++i)
                EXPECT_GT(places[i].top(), places[i - 1].bottom() - 1);
            if (parts == PictureParts::Schematic) {
                // Alone it stands larger, in the middle.
                QRect ladder;
                for (int y = 60; y < 640; ++y)
                    for (int x = 0; x < 1280; ++x)
                        if (image.pixelColor(x, y) != paper) ladder |= QRect(x, y, 1, 1);
                EXPECT_GT(ladder.width(), 500);  // three symbols, over twice their usual size
                EXPECT_NEAR(ladder.center().x(), 640, 40);
                EXPECT_NEAR(ladder.center().y(), (50 + 690) / 2, 60);
            }
        }
}

}  // namespace
}  // namespace ladderwise
