// draw-schematics: writes the schematic bitmaps and the icon's pixel forms into the source tree.
// Run by hand after a change of the drawings; its output is committed.
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>
#include <cstdio>

#include "schematic/SchematicPainter.h"

namespace {

bool Save(const QImage& image, const QString& path) {
    if (image.save(path)) return true;
    std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
    return false;
}

bool SaveSchematics(const QString& folder) {
    bool saved = true;
    for (int code = 0; code < ladderwise::NumElementTypes; ++code) {
        const auto type = static_cast<ladderwise::ElementType>(code);
        for (const int scale : {1, 2}) {
            // The few shades fit a palette, which makes the files a third of the size.
            const QImage image = ladderwise::DrawSchematic(type, scale)
                                     .convertToFormat(QImage::Format_Indexed8, Qt::ThresholdDither);
            const QString ending = scale == 1 ? QStringLiteral(".bmp") : QStringLiteral("@2x.bmp");
            saved =
                Save(image, folder + '/' + QString::fromStdString(ladderwise::PictureName(type)) +
                                ending) &&
                saved;
        }
    }
    return saved;
}

bool SaveIcons(const QString& folder) {
    QSvgRenderer drawing(folder + "/ladderwise.svg");
    if (!drawing.isValid()) {
        std::fprintf(stderr, "cannot read %s/ladderwise.svg\n", qPrintable(folder));
        return false;
    }
    bool saved = true;
    for (const int size : {64, 256}) {
        QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        QPainter painter(&image);
        drawing.render(&painter);
        painter.end();
        saved = Save(image, QStringLiteral("%1/ladderwise-%2.png").arg(folder).arg(size)) && saved;
    }
    return saved;
}

}  // namespace

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QGuiApplication application(argc, argv);
    if (argc != 2) {
        std::fprintf(stderr, "usage: draw-schematics RESOURCES-FOLDER\n");
        return 2;
    }
    const QString folder = QString::fromLocal8Bit(argv[1]);
    const bool bitmaps = SaveSchematics(folder + "/bitmaps");
    const bool icons = SaveIcons(folder + "/icons");
    return bitmaps && icons ? 0 : 1;
}
