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
