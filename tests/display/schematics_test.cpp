// The schematic pictures: that they show the catalogue's networks, join to one circuit, and stand
// in the resources at both sizes as the drawing program makes them.
#include <gtest/gtest.h>

#include <QImage>
#include <QSvgRenderer>
#include <algorithm>
#include <array>
#include <cmath>
#include <complex>
#include <cstdlib>
#include <functional>

#include "app/design/ElementCatalogue.h"
#include "resources/Resources.h"
#include "resources/schematics/SchematicNetworks.h"
#include "resources/schematics/SchematicPainter.h"

namespace ladderwise {
namespace {

using Complex = std::complex<double>;
using Values = std::array<double, 4>;

constexpr double Omega = 1.3;  // rad/s; no resonance of the values below
const Complex j{0.0, 1.0};

Complex ZL(double l) {
    return j * Omega * l;
}
Complex ZC(double c) {
    return 1.0 / (j * Omega * c);
}
Complex ZShorted(double theta, double z0) {
    return j * z0 * std::tan(theta);
}
Complex ZOpen(double theta, double z0) {
    return -j * z0 / std::tan(theta);
}
Complex Par(Complex a, Complex b) {
    return a * b / (a + b);
}

Complex ImpedanceOf(const Network& network, const Values& v) {
    const double own = v[static_cast<std::size_t>(network.Row)];
    const double next = v[static_cast<std::size_t>(network.Row + 1) % v.size()];
    switch (network.Kind) {
        case NetworkKind::Inductor:
            return ZL(own);
        case NetworkKind::Capacitor:
            return ZC(own);
        case NetworkKind::ShortedStub:
            return ZShorted(own, next);
        case NetworkKind::OpenStub:
            return ZOpen(own, next);
        case NetworkKind::Line:
            ADD_FAILURE() << "a line has no single impedance";
            return 0.0;
        case NetworkKind::InSeries:
        case NetworkKind::InParallel:
            break;
    }
    Complex sum = 0.0;
    const bool parallel = network.Kind == NetworkKind::InParallel;
    for (const Network& member : network.Members) {
        const Complex z = ImpedanceOf(member, v);
        sum += parallel ? 1.0 / z : z;
    }
    return parallel ? 1.0 / sum : sum;
}

struct ArmCase {
    ElementType Type;
    std::function<Complex(double, double, double, double)> Impedance;  // of V1 .. V4
};

// Written out from the element catalogue, not from the pictures' description.
TEST(SchematicNetworks, HaveTheCataloguesImpedance) {
    using enum ElementType;
    const ArmCase cases[] = {
        {SeriesInd, [](auto a, auto, auto, auto) { return ZL(a); }},
        {SeriesCap, [](auto, auto b, auto, auto) { return ZC(b); }},
        {SeriesLC, [](auto a, auto b, auto, auto) { return Par(ZL(a), ZC(b)); }},
        {ShuntInd, [](auto a, auto, auto, auto) { return ZL(a); }},
        {ShuntCap, [](auto, auto b, auto, auto) { return ZC(b); }},
        {ShuntLC, [](auto a, auto b, auto, auto) { return ZL(a) + ZC(b); }},
        {ShuntParLC, [](auto a, auto b, auto, auto) { return Par(ZL(a), ZC(b)); }},
        {ShuntSerParLC,
         [](auto a, auto b, auto c, auto d) { return ZL(a) + ZC(b) + Par(ZL(c), ZC(d)); }},
        {SeriesSerLC, [](auto a, auto b, auto, auto) { return ZL(a) + ZC(b); }},
        {SerSerParLC,
         [](auto a, auto b, auto c, auto d) { return Par(ZL(a) + ZC(b), Par(ZL(c), ZC(d))); }},
        {ShuntTLSCC, [](auto a, auto b, auto, auto d) { return Par(ZShorted(a, b), ZC(d)); }},
        {ShuntLTLOC, [](auto a, auto, auto c, auto d) { return Par(ZL(a), ZOpen(c, d)); }},
        {ShuntTLSCTLOC,
         [](auto a, auto b, auto c, auto d) { return Par(ZShorted(a, b), ZOpen(c, d)); }},
        {ShuntTLOC, [](auto a, auto b, auto, auto) { return ZOpen(a, b); }},
        {DualShuntLC,
         [](auto a, auto b, auto c, auto d) { return Par(ZL(a) + ZC(b), ZL(c) + ZC(d)); }},
        {DualSeriesLC,
         [](auto a, auto b, auto c, auto d) { return Par(ZL(a), ZC(b)) + Par(ZL(c), ZC(d)); }},
        {SeriesElliptic2,
         [](auto a, auto b, auto c, auto d) { return Par(ZC(d), ZL(c) + Par(ZL(a), ZC(b))); }},
        {SeriesElliptic3,
         [](auto a, auto b, auto c, auto d) { return Par(ZL(c), ZC(b) + Par(ZL(a), ZC(d))); }},
        {ShuntElliptic2,
         [](auto a, auto b, auto c, auto d) { return ZL(a) + Par(ZC(b), ZL(c) + ZC(d)); }},
        {ShuntElliptic3,
         [](auto a, auto b, auto c, auto d) { return ZC(b) + Par(ZL(a), ZL(c) + ZC(d)); }},
        {ThreeShuntCapSerLC,
         [](auto a, auto b, auto, auto d) { return Par(ZC(b), ZL(a) + ZC(d)); }},
        {ThreeShuntIndSerLC,
         [](auto a, auto b, auto c, auto) { return Par(ZL(a), ZL(c) + ZC(b)); }},
        {ThreeShuntTappedC, [](auto a, auto b, auto, auto d) { return ZC(d) + Par(ZL(a), ZC(b)); }},
        {ThreeShuntTappedL, [](auto a, auto b, auto c, auto) { return ZL(c) + Par(ZL(a), ZC(b)); }},
        {ShuntTLSC, [](auto a, auto b, auto, auto) { return ZShorted(a, b); }},
    };
    ASSERT_EQ(std::size(cases), 25u);  // every type but the line and the error picture
    const Values v{0.7, 1.9, 0.45, 2.3};
    for (const ArmCase& one : cases) {
        const Network drawn{NetworkKind::InParallel, 0, NetworksOf(one.Type)};
        const Complex expected = one.Impedance(v[0], v[1], v[2], v[3]);
        EXPECT_LT(std::abs(ImpedanceOf(drawn, v) - expected), 1e-12 * std::abs(expected))
            << InfoOf(one.Type).Name;
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

/// Mean and largest difference of two pictures over all pixels and colours, in levels of 255.
struct Difference {
    double Mean = 0.0;
    int Largest = 0;
};
Difference Compare(const QImage& a, const QImage& b) {
    Difference result;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y);
            const QRgb q = b.pixel(x, y);
            for (const int d : {qRed(p) - qRed(q), qGreen(p) - qGreen(q), qBlue(p) - qBlue(q)}) {
                result.Mean += std::abs(d) / (3.0 * a.width() * a.height());
                result.Largest = std::max(result.Largest, std::abs(d));
            }
        }
    }
    return result;
}

class SchematicBitmap : public testing::TestWithParam<int> {
protected:
    ElementType Type() const { return static_cast<ElementType>(GetParam()); }
};

// Neighbours stand edge to edge, so nothing but the through line may touch the sides.
TEST_P(SchematicBitmap, JoinsItsNeighboursByTheThroughLineAlone) {
    for (const int scale : {1, 2}) {
        const QImage image = Load(Type(), scale);
        ASSERT_EQ(image.size(), QSize(64, 96) * scale);
        for (const int x : {0, image.width() - 1}) {
            for (int y = 0; y < image.height(); ++y) {
                const bool onLine = y >= 21 * scale && y < 23 * scale;
                const bool background = image.pixelColor(x, y) == QColor(234, 234, 234);
                EXPECT_EQ(background, !onLine) << "x " << x << " y " << y << " scale " << scale;
            }
        }
        for (int x = 0; x < image.width(); ++x) {  // neither the plot nor the grid is touched
            EXPECT_EQ(image.pixelColor(x, 0), SchematicBackground);
            EXPECT_EQ(image.pixelColor(x, image.height() - 1), SchematicBackground);
        }
    }
}

TEST_P(SchematicBitmap, ShowsTheSamePictureAtBothSizes) {
    const QImage halved =
        Load(Type(), 2).scaled(64, 96, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    const Difference difference = Compare(Load(Type(), 1), halved);
    EXPECT_LT(difference.Mean, 0.3);
    EXPECT_LT(difference.Largest, 50);  // straight edges lie on pixel borders; arcs may round
}

// Fails when the drawing has been changed and the committed bitmaps have not been drawn anew. Small
// differences are left to the rasteriser of another Qt version.
TEST_P(SchematicBitmap, IsWhatTheDrawingProgramMakes) {
    for (const int scale : {1, 2}) {
        EXPECT_LT(Compare(Load(Type(), scale), DrawSchematic(Type(), scale)).Mean, 0.3) << scale;
    }
}

INSTANTIATE_TEST_SUITE_P(
    AllTypes, SchematicBitmap, testing::Range(0, NumElementTypes), [](const auto& info) {
        return SchematicName(static_cast<ElementType>(info.param)).toStdString();
    });

TEST(Resources, PathOfATypeOutsideTheCatalogueIsTheErrorBitmap) {
    EXPECT_EQ(SchematicPath(ElementType::SeriesInd), ":/schematics/0SeriesInd.bmp");
    for (const int code : {-1, 26, 27, 1 << 30}) {
        EXPECT_EQ(SchematicPath(static_cast<ElementType>(code)), ":/schematics/26errorBitMap.bmp");
    }
}

TEST(Resources, DrawingsAndIconsCanBeRead) {
    InitResources();
    for (const char* path : {":/models/inductor-model.svg", ":/models/capacitor-model.svg",
                             ":/icons/ladderwise.svg"}) {
        EXPECT_TRUE(QSvgRenderer(QString(path)).isValid()) << path;
    }
    EXPECT_EQ(QImage(":/icons/ladderwise-64.png").size(), QSize(64, 64));
    EXPECT_EQ(QImage(":/icons/ladderwise-256.png").size(), QSize(256, 256));
}

}  // namespace
}  // namespace ladderwise
