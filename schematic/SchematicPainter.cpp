// Layout and symbols of the schematic pictures.
//
// A network is laid out in a local frame: it runs along +x from the origin, "above" is -y. A shunt
// arm is the same network turned by 90 degrees, so that +x points down and "above" to the right.
// All coordinates are whole units and every stroke is two units wide, which puts straight edges on
// pixel borders at every whole scale.
#include "schematic/SchematicPainter.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <vector>

#include "design/ElementNetworks.h"

namespace ladderwise {

namespace {

constexpr QColor Ink{24, 28, 36};
constexpr QColor LineFill{255, 255, 255};
constexpr QColor Warning{200, 24, 24};

constexpr int StrokeWidth = 2;
constexpr int PlateGap = 6;        // between the axes of a capacitor's plates
constexpr int PlateHalf = 7;       // half the length of a plate
constexpr int LineHalf = 6;        // half the thickness of a line section
constexpr int LineCap = 3;         // half the width of a line section's end ellipse
constexpr int LineLength = 30;     // of a line section
constexpr int BusLead = 3;         // from the bus of a parallel network to a single symbol
constexpr int SeriesGap = 5;       // least wire between networks in series
constexpr int EdgeLead = 4;        // least wire between a series network and the picture's edge
constexpr int GroundY = 86;        // where shunt arms meet ground
constexpr int DotRadius = 3;       // of a junction on the through line
constexpr int OpenEndRadius = 3;   // of the ring that ends an open stub
constexpr int OpenEndLead = 9;     // from an open stub to the centre of its ring
constexpr int TwoArmsOffset = 16;  // of each of two shunt arms from the middle

/// How large the coils are drawn and how far the members of a parallel network stand apart.
struct Style {
    int Turns = 4;       // bumps of a coil
    int TurnLength = 8;  // of one bump along the axis, even
    int MemberGap = 6;   // clear space between the members of a parallel network
    int SeriesLead = 5;  // from the bus of a parallel network to a member that is a series
};

/// A painter that keeps where it drew the symbols.
class SymbolPainter : public QPainter {
public:
    using QPainter::QPainter;

    /// Notes a symbol of `extent` at the origin of the present frame. A line stands for two rows.
    void Note(const Network& network, const QRect& extent) {
        const bool part =
            network.Kind == NetworkKind::Inductor || network.Kind == NetworkKind::Capacitor;
        const QRect place = worldTransform().mapRect(extent);
        for (int row = network.Row; row <= network.Row + (part ? 0 : 1); ++row)
            Symbols[static_cast<std::size_t>(row)] = place;
    }

    SymbolRects Symbols;
};

/// Room that a network takes: along its axis, and to each side of it.
struct Extent {
    int Length = 0;
    int Above = 0;
    int Below = 0;
};

/// Shunt arms have more room across and less along their axis.
constexpr Style ArmStyle{4, 8, 10, 3};

int CoilHeight(const Style& style) {
    return style.TurnLength / 2 + 1;
}

Extent Measure(const Network& network, const Style& style);

/// Axes of the members of a parallel network, relative to the network's own axis: that of the
/// middle member, or half-way between the first and the last of an even number.
std::vector<int> MemberAxes(const Network& network, const Style& style) {
    std::vector<int> axes{0};
    for (std::size_t i = 1; i < network.Members.size(); ++i) {
        const int step = Measure(network.Members[i - 1], style).Below + style.MemberGap +
                         Measure(network.Members[i], style).Above;
        axes.push_back(axes.back() + step);
    }
    const bool odd = axes.size() % 2 == 1;
    const int middle = odd ? axes[axes.size() / 2] : axes.back() / 2;
    for (int& axis : axes) {
        axis -= middle;
    }
    return axes;
}

Extent MeasureJoined(const Network& network, const Style& style) {
    const bool parallel = network.Kind == NetworkKind::InParallel;
    const std::vector<int> axes =
        parallel ? MemberAxes(network, style) : std::vector<int>(network.Members.size(), 0);
    Extent all;
    for (std::size_t i = 0; i < network.Members.size(); ++i) {
        Extent one = Measure(network.Members[i], style);
        if (parallel) {
            const bool series = network.Members[i].Kind == NetworkKind::InSeries;
            one.Length += 2 * (series ? style.SeriesLead : BusLead);
        }
        all.Length = parallel ? std::max(all.Length, one.Length) : all.Length + one.Length;
        all.Above = std::max(all.Above, one.Above - axes[i]);
        all.Below = std::max(all.Below, one.Below + axes[i]);
    }
    if (!parallel) all.Length += SeriesGap * (static_cast<int>(axes.size()) - 1);
    return all;
}

Extent Measure(const Network& network, const Style& style) {
    switch (network.Kind) {
        case NetworkKind::Inductor:
            return {style.Turns * style.TurnLength, CoilHeight(style) + 1, 1};
        case NetworkKind::Capacitor:
            return {PlateGap, PlateHalf, PlateHalf};
        case NetworkKind::Line:
        case NetworkKind::ShortedStub:
        case NetworkKind::OpenStub:
            return {LineLength, LineHalf, LineHalf};
        case NetworkKind::InSeries:
        case NetworkKind::InParallel:
            return MeasureJoined(network, style);
    }
    return {};
}

/// A wire along the axis; none when its ends coincide.
void DrawWire(SymbolPainter& painter, int from, int to) {
    if (from != to) painter.drawLine(from, 0, to, 0);
}

void DrawCoil(SymbolPainter& painter, const Style& style) {
    QPainterPath coil;
    for (int turn = 0; turn < style.Turns; ++turn) {
        const QRectF bump(turn * style.TurnLength, -CoilHeight(style), style.TurnLength,
                          2 * CoilHeight(style));
        coil.arcMoveTo(bump, 180);
        coil.arcTo(bump, 180, -180);
    }
    painter.drawPath(coil);
}

void DrawPlates(SymbolPainter& painter) {
    for (const int x : {0, PlateGap}) {
        painter.drawLine(x, 1 - PlateHalf, x, PlateHalf - 1);  // the square cap adds one unit
    }
}

/// A length of coaxial line, seen slightly from the source's side.
void DrawLineSection(SymbolPainter& painter) {
    const QRectF nearEnd(0, -LineHalf, 2 * LineCap, 2 * LineHalf);
    const QRectF farEnd(LineLength - 2 * LineCap, -LineHalf, 2 * LineCap, 2 * LineHalf);
    QPainterPath body;
    body.arcMoveTo(nearEnd, 90);
    body.arcTo(nearEnd, 90, 180);
    body.arcTo(farEnd, 270, 180);
    body.closeSubpath();
    painter.save();
    painter.setBrush(LineFill);
    painter.drawPath(body);
    painter.drawEllipse(nearEnd);
    painter.restore();
    DrawWire(painter, 0, LineCap);
}

void DrawNetwork(SymbolPainter& painter, const Network& network, int length, const Style& style);

void DrawInSeries(SymbolPainter& painter, const Network& network, int length, const Style& style) {
    int slack = length;
    for (const Network& member : network.Members) {
        slack -= Measure(member, style).Length;
    }
    const int gaps = static_cast<int>(network.Members.size()) + 1;
    int x = 0;
    for (int i = 0; i + 1 < gaps; ++i) {
        const int gap = slack * (i + 1) / gaps - slack * i / gaps;
        DrawWire(painter, x, x + gap);
        const Network& member = network.Members[static_cast<std::size_t>(i)];
        const int own = Measure(member, style).Length;
        painter.save();
        painter.translate(x + gap, 0);
        DrawNetwork(painter, member, own, style);
        painter.restore();
        x += gap + own;
    }
    DrawWire(painter, x, length);
}

void DrawInParallel(SymbolPainter& painter, const Network& network, int length,
                    const Style& style) {
    const std::vector<int> axes = MemberAxes(network, style);
    for (const int x : {0, length}) {
        painter.drawLine(x, axes.front(), x, axes.back());
    }
    for (std::size_t i = 0; i < axes.size(); ++i) {
        painter.save();
        painter.translate(0, axes[i]);
        DrawNetwork(painter, network.Members[i], length, style);
        painter.restore();
    }
}

/// One symbol at the origin, without its leads.
void DrawSymbol(SymbolPainter& painter, const Network& network, const Style& style) {
    const Extent extent = Measure(network, style);
    painter.Note(network, {0, -extent.Above, extent.Length, extent.Above + extent.Below});
    switch (network.Kind) {
        case NetworkKind::Inductor:
            return DrawCoil(painter, style);
        case NetworkKind::Capacitor:
            return DrawPlates(painter);
        case NetworkKind::Line:
        case NetworkKind::ShortedStub:
        case NetworkKind::OpenStub:
            return DrawLineSection(painter);
        case NetworkKind::InSeries:
        case NetworkKind::InParallel:
            return;
    }
}

/// The network from the origin to (length, 0): wires lead to a symbol in the middle, members in
/// series share the spare length, a parallel network is stretched.
void DrawNetwork(SymbolPainter& painter, const Network& network, int length, const Style& style) {
    if (network.Kind == NetworkKind::InSeries) return DrawInSeries(painter, network, length, style);
    if (network.Kind == NetworkKind::InParallel) {
        return DrawInParallel(painter, network, length, style);
    }
    const int own = Measure(network, style).Length;
    const int lead = (length - own) / 2;
    DrawWire(painter, 0, lead);
    DrawWire(painter, lead + own, length);
    painter.save();
    painter.translate(lead, 0);
    DrawSymbol(painter, network, style);
    painter.restore();
}

/// The network in the middle of a wire from the origin to (length, 0).
void DrawCentred(SymbolPainter& painter, const Network& network, int length, const Style& style) {
    // A parallel network would fill the length; as the only member of a series it keeps its own.
    const bool alone = network.Kind != NetworkKind::InSeries;
    DrawInSeries(painter, alone ? Network{NetworkKind::InSeries, 0, {network}} : network, length,
                 style);
}

/// Three bars, at the end of an arm that runs along +x.
void DrawGround(SymbolPainter& painter, int x) {
    for (int bar = 0; bar < 3; ++bar) {
        const int half = 9 - 3 * bar;
        painter.drawLine(x + 4 * bar, 1 - half, x + 4 * bar, half - 1);
    }
}

/// The largest coils with which the network fits into the length, the rest as in the given style.
Style LargestCoils(const Network& network, int length, Style style) {
    for (const int turnLength : {8, 6}) {
        style.Turns = 4;
        style.TurnLength = turnLength;
        if (Measure(network, style).Length + 2 * SeriesGap <= length) return style;
    }
    style.Turns = 3;
    return style;
}

void DrawDot(SymbolPainter& painter) {
    painter.save();
    painter.setPen(Qt::NoPen);
    painter.setBrush(Ink);
    painter.drawEllipse(QPoint(0, 0), DotRadius, DotRadius);
    painter.restore();
}

/// An open stub in the middle of the length, as a shorted one would stand, and its open end.
void DrawOpenStub(SymbolPainter& painter, const Network& stub, int length) {
    const int lead = (length - LineLength) / 2;
    DrawWire(painter, 0, lead);
    painter.translate(lead, 0);
    DrawSymbol(painter, stub, ArmStyle);
    DrawWire(painter, LineLength, LineLength + OpenEndLead - OpenEndRadius);
    painter.drawEllipse(QPoint(LineLength + OpenEndLead, 0), OpenEndRadius, OpenEndRadius);
}

/// A shunt arm in its turned frame, from the through line down to ground or to an open end.
void DrawArm(SymbolPainter& painter, const Network& network) {
    const int length = GroundY - ThroughLineY;
    DrawDot(painter);
    if (network.Kind == NetworkKind::OpenStub) return DrawOpenStub(painter, network, length);
    DrawCentred(painter, network, length, LargestCoils(network, length, ArmStyle));
    DrawGround(painter, length);
}

/// A through line that is cut, with a cross in the gap.
void DrawError(SymbolPainter& painter) {
    const int middle = SchematicWidth / 2;
    const int half = 9;
    const int cut = 16;
    DrawWire(painter, 0, cut - 2 * OpenEndRadius);
    DrawWire(painter, SchematicWidth - cut + 2 * OpenEndRadius, SchematicWidth);
    painter.drawEllipse(QPoint(cut - OpenEndRadius, 0), OpenEndRadius, OpenEndRadius);
    painter.drawEllipse(QPoint(SchematicWidth - cut + OpenEndRadius, 0), OpenEndRadius,
                        OpenEndRadius);
    painter.setPen(QPen(Warning, 4, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(middle - half, -half, middle + half, half);
    painter.drawLine(middle - half, half, middle + half, -half);
}

/// The whole picture; the origin is where the through line enters.
void DrawPicture(SymbolPainter& painter, ElementType type) {
    const std::vector<Network> arms = NetworksOf(type);
    if (arms.empty()) return DrawError(painter);
    if (InfoOf(type).Arm != ElementArm::Shunt) {
        const Style style = LargestCoils(arms.front(), SchematicWidth - 2 * EdgeLead, Style{});
        return DrawCentred(painter, arms.front(), SchematicWidth, style);
    }
    DrawWire(painter, 0, SchematicWidth);
    for (std::size_t i = 0; i < arms.size(); ++i) {
        const int offset = arms.size() == 1 ? 0 : i == 0 ? -TwoArmsOffset : TwoArmsOffset;
        painter.save();
        painter.translate(SchematicWidth / 2 + offset, 0);
        painter.rotate(90);
        DrawArm(painter, arms[i]);
        painter.restore();
    }
}

SymbolRects DrawOnto(QImage& image, ElementType type, int scale) {
    SymbolPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Ink, StrokeWidth, Qt::SolidLine, Qt::SquareCap, Qt::RoundJoin));
    painter.scale(scale, scale);
    painter.translate(0, ThroughLineY);
    DrawPicture(painter, type);
    return painter.Symbols;
}

QImage EmptyPicture(int scale) {
    QImage image(SchematicWidth * scale, SchematicHeight * scale, QImage::Format_RGB32);
    image.fill(SchematicBackground);
    return image;
}

}  // namespace

QImage DrawSchematic(ElementType type, int scale) {
    QImage image = EmptyPicture(scale);
    DrawOnto(image, type, scale);
    return image;
}

SymbolRects SymbolsOf(ElementType type) {
    QImage image = EmptyPicture(1);
    return DrawOnto(image, type, 1);
}

}  // namespace ladderwise
