// draw-schematics: writes the schematic bitmaps and the icons' pixel forms into the source tree.
// Run by hand after a change of the drawings; its output is committed.
#include <QBuffer>
#include <QDataStream>
#include <QFile>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>
#include <array>
#include <cstdio>

#include "schematic/SchematicPainter.h"

namespace {

constexpr int LargestIcon = 256;
constexpr std::array IconSizes = {16, 20, 24, 32, 48, 64, LargestIcon};

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

QImage PixelsOf(QSvgRenderer& drawing, int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    drawing.render(&painter);
    return image;
}

/// One picture of an icon file: pixels as they are, bottom row first, with an empty mask, since
/// their transparency lies in themselves; the largest as PNG, which keeps the file small.
QByteArray IconEntry(const QImage& image) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    if (image.width() == LargestIcon) {
        image.save(&buffer, "PNG");
        return bytes;
    }
    const QImage pixels = image.convertToFormat(QImage::Format_ARGB32);
    QDataStream out(&buffer);
    out.setByteOrder(QDataStream::LittleEndian);
    // BITMAPINFOHEADER; its height counts the mask's rows too.
    out << quint32(40) << qint32(image.width()) << qint32(2 * image.height()) << quint16(1)
        << quint16(32);
    for (int unused = 0; unused < 6; ++unused)
        out << quint32(0);
    for (int y = image.height() - 1; y >= 0; --y)
        for (int x = 0; x < image.width(); ++x)
            out << quint32(pixels.pixel(x, y));
    const int maskRow = (image.width() + 31) / 32 * 4;
    bytes.append(QByteArray(maskRow * image.height(), '\0'));
    return bytes;
}

/// The drawing as an icon of Windows, in the sizes that its desktop asks for.
bool SaveIconFile(QSvgRenderer& drawing, const QString& path) {
    constexpr int headerSize = 6, entrySize = 16;
    QList<QByteArray> entries;
    for (const int size : IconSizes)
        entries << IconEntry(PixelsOf(drawing, size));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly)) {
        std::fprintf(stderr, "cannot write %s\n", qPrintable(path));
        return false;
    }
    QDataStream out(&file);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint16(0) << quint16(1) << quint16(entries.size());
    quint32 offset = headerSize + entrySize * static_cast<quint32>(entries.size());
    for (qsizetype i = 0; i < entries.size(); ++i) {
        const auto side = static_cast<quint8>(IconSizes[static_cast<std::size_t>(i)]);  // 256: 0
        const auto length = static_cast<quint32>(entries[i].size());
        out << side << side << quint16(0) << quint16(1) << quint16(32) << length << offset;
        offset += length;
    }
    for (const QByteArray& entry : entries)
        out.writeRawData(entry.constData(), static_cast<int>(entry.size()));
    return out.status() == QDataStream::Ok;
}

bool SaveIcons(const QString& folder, const QString& name) {
    const QString path = folder + '/' + name;
    QSvgRenderer drawing(path + ".svg");
    if (!drawing.isValid()) {
        std::fprintf(stderr, "cannot read %s.svg\n", qPrintable(path));
        return false;
    }
    bool saved = SaveIconFile(drawing, path + ".ico");
    for (const int size : {64, LargestIcon})
        saved =
            Save(PixelsOf(drawing, size), QStringLiteral("%1-%2.png").arg(path).arg(size)) && saved;
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
    const bool program = SaveIcons(folder + "/icons", "ladderwise");
    const bool design = SaveIcons(folder + "/icons", "ladderwise-design");
    return bitmaps && program && design ? 0 : 1;
}
