// The schematic pictures: that they show the catalogue's networks, join to one circuit, and stand
// in the resources at both sizes as the drawing program makes them.
#include <gtest/gtest.h>

#include <QImage>
#include <QSvgRenderer>
#include <cmath>
#include <cstdlib>

#include "analysis/Circuitanalysis.h"
#include "design/ElementNetworks.h"
#include "resources/Resources.h"
#include "schematic/SchematicPainter.h"

namespace ladderwise {
namespace {

constexpr double F = 1.3 / TwoPi;  ///< Hz; no resonance of the values below
const CircuitElement Slot{ElementType::SeriesInd, 0.7, 1.9, 0.45, 2.3};

Complex ImpedanceOf(const Network& network) {
    const double own = Slot.Value(network.Row), next = Slot.Value((network.Row + 1) % 4);
    const Complex s(0.0, TwoPi * F), tan(0.0, std::tan(LineAngle(1.0, F, own)));
    switch (network.Kind) {
        case NetworkKind::Inductor:
            return s * own;
        case NetworkKind::Capacitor:
            return 1.0 / (s * own);
        case NetworkKind::ShortedStub:
            return next * tan;
        case NetworkKind::OpenStub:
            return next / tan;
        case NetworkKind::Line:
            ADD_FAILURE() << "a line has no single impedance";
            return 0.0;
        case NetworkKind::InSeries:
        case NetworkKind::InParallel:
            break;
    }
    Complex sum = 0.0;
    const bool parallel = network.Kind == NetworkKind::InParallel;
    for (const Network& member : network.Members)
        sum += parallel ? 1.0 / ImpedanceOf(member) : ImpedanceOf(member);
    return parallel ? 1.0 / sum : sum;
}

// The lone arm between 1-ohm terminations: H = 2 / (2 + Z) in series, 2 / (2 + 1 / Z) in shunt.
TEST(ElementNetworks, HaveTheImpedanceOfTheAnalysis) {
    for (int code = 0; code < NumElementTypes - 1; ++code) {
        FilterDesign design;
        design.NumElements = 1;
        design.RSource = design.RLoad = 1.0;
        design.Elements[1] = Slot;
        const ElementType type = design.Elements[1].Type = static_cast<ElementType>(code);
        if (type == ElementType::SeriesTLIN) continue;
        const Complex z = ImpedanceOf({NetworkKind::InParallel, 0, NetworksOf(type)});
        const Complex h = 2.0 / (2.0 + (InfoOf(type).Arm == ElementArm::Series ? z : 1.0 / z));
        EXPECT_LT(std::abs(AnalysePoint(design, 1.0, F).Transfer - h), 1e-12) << InfoOf(type).Name;
    }
}

QImage Load(ElementType type, int scale) {
    InitResources();
    QString path = SchematicPath(type);
    if (scale == 2) path.replace(".bmp", "@2x.bmp");
    QImage image = QImage(path).convertToFormat(QImage::Format_RGB32);
    image.setDevicePixelRatio(1.0);
    return image;
}

/// Mean difference of two pictures over all pixels, in levels of 255.
double Difference(const QImage& a, const QImage& b) {
    double sum = 0.0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            for (const int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)})
                sum += std::abs(d);
        }
    return sum / (3.0 * a.width() * a.height());
}

// Neighbours stand edge to edge, so nothing but the through line may touch the sides. Both sizes
// show the same picture, and the one that the drawing program makes: else the drawing has been
// changed and the bitmaps have not been drawn anew. Small differences are left to the rasteriser.
TEST(SchematicBitmaps, JoinTheirNeighboursAndAreDrawnAnew) {
    for (int code = 0; code < NumElementTypes; ++code) {
        const auto type = static_cast<ElementType>(code);
        SCOPED_TRACE(code);
        const SymbolRects symbols = SymbolsOf(type);
        for (std::size_t row = 0; row < symbols.size(); ++row)
            EXPECT_EQ(QRect(0, 0, 64, 96).contains(symbols[row]),
                      InfoOf(type).Values[row] != ValueKind::Unused);
        for (const int scale : {1, 2}) {
            const QImage image = Load(type, scale);
            ASSERT_EQ(image.size(), QSize(64, 96) * scale);
            for (int y = 0; y < image.height(); ++y)
                for (int x = 0; x < image.width(); ++x) {
                    const bool side = x == 0 || x == image.width() - 1;
                    if (!side && y > 0 && y < image.height() - 1) continue;
                    const bool onLine = side && y >= 21 * scale && y < 23 * scale;
                    EXPECT_EQ(image.pixelColor(x, y) == QColor(234, 234, 234), !onLine)
                        << "x " << x << " y " << y << " scale " << scale;
                }
            EXPECT_LT(Difference(image, DrawSchematic(type, scale)), 0.3) << scale;
        }
        const QImage doubled = Load(type, 2);
        EXPECT_LT(Difference(Load(type, 1), doubled.scaled(64, 96, Qt::IgnoreAspectRatio,
                                                           Qt::SmoothTransformation)),
                  0.3);
    }
}

TEST(Resources, CanBeReadAndUnknownTypesAreTheErrorBitmap) {
    InitResources();
    for (const char* path : {":/models/inductor-model.svg", ":/models/capacitor-model.svg"})
        EXPECT_TRUE(QSvgRenderer(QString(path)).isValid()) << path;
    EXPECT_EQ(QImage(":/icons/ladderwise.png").width(), 256);
    EXPECT_EQ(QImage(":/icons/ladderwise-64.png").width(), 64);
    EXPECT_EQ(SchematicPath(static_cast<ElementType>(27)), ":/schematics/26errorBitMap.bmp");
}

}  // namespace
}  // namespace ladderwise
