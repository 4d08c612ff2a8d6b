// What a picture shows, read from its pixels alone: where a text stands, where ink of a colour
// lies.
#pragma once

#include <QFont>
#include <QFontMetrics>
#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cstdlib>
#include <vector>

namespace ladderwise {

/// Pixels of logical coordinates, of a picture with one pixel to each.
class Picture {
public:
    Picture(const QImage& picture, const QFont& textFont, QColor paper = QColor(234, 234, 234))
        : image(picture.convertToFormat(QImage::Format_RGB32)), font(textFont), background(paper) {}

    QRect Rect() const { return image.rect(); }
    bool Has(int x, int y, QColor colour, int tolerance = 0) const {
        if (!image.rect().contains(x, y)) return false;
        return Near(image.pixel(x, y), colour.rgb(), tolerance);
    }
    /// How many pixels of a rectangle are of a colour.
    int Ink(const QRect& rect, QColor colour, int tolerance = 0) const {
        int count = 0;
        for (int y = rect.top(); y <= rect.bottom(); ++y)
            for (int x = rect.left(); x <= rect.right(); ++x)
                count += Has(x, y, colour, tolerance);
        return count;
    }
    /// How many pixels of a rectangle are not of the background.
    int Ink(const QRect& rect) const {
        return rect.width() * rect.height() - Ink(rect, background, 12);
    }

    /// Whether a rectangle holds as much ink as a text takes, wherever between pixels it begins.
    bool HasInkOf(const QString& text, QColor colour, const QRect& area) const {
        const Picture wanted(Written(text, colour), font, background);
        return 4 * Ink(area, colour, InkTolerance) >=
               3 * wanted.Ink(wanted.Rect(), colour, InkTolerance);
    }

    /// The rectangles of all places within an area (empty: anywhere) where a text stands, whole and
    /// in a colour: its advance wide and a line high. Lines of a grid may run through it.
    QList<QRect> Find(const QString& text, QColor colour = Qt::black, QRect area = {}) const {
        area = area.isEmpty() ? image.rect() : area & image.rect();
        const Picture wanted(Written(text, colour), font, background);
        // Ink of the picture and of the text; a rim that is neither ink nor blank may be either.
        std::vector<char> inked(static_cast<std::size_t>(image.width()) * image.height());
        for (int y = area.top(); y <= area.bottom(); ++y)
            for (int x = area.left(); x <= area.right(); ++x)
                inked[y * image.width() + x] = Has(x, y, colour, InkTolerance);
        std::vector<int> ink, blank;  // offsets from a text's left top corner
        int last = 0;
        for (int y = 0; y < wanted.Rect().height(); ++y)
            for (int x = 0; x < wanted.Rect().width(); ++x)
                if (wanted.Has(x, y, colour, InkTolerance))
                    ink.push_back(last = y * image.width() + x);
        if (ink.empty()) return {};
        for (int y = ink.front() / image.width(); y <= last / image.width(); ++y)
            for (int x = 0; x < wanted.Rect().width(); ++x)
                if (wanted.Has(x, y, background)) blank.push_back(y * image.width() + x);
        QList<QRect> found;
        for (int y = area.top(); y + wanted.Rect().height() - 1 <= area.bottom(); ++y)
            for (int x = area.left(); x + wanted.Rect().width() - 1 <= area.right(); ++x) {
                const char* const at = &inked[y * image.width() + x];
                const auto is = [at](int offset) { return at[offset] != 0; };
                if (!std::all_of(ink.begin(), ink.end(), is)) continue;
                const auto other = std::count_if(blank.begin(), blank.end(), is);
                if (static_cast<std::size_t>(other) * 100 <= blank.size())
                    found << wanted.Rect().translated(x, y);
            }
        return found;
    }

private:
    static constexpr int InkTolerance = 80;  // levels of 255: the rim of a letter is paler

    static bool Near(QRgb a, QRgb b, int tolerance) {
        return std::abs(qRed(a) - qRed(b)) <= tolerance &&
               std::abs(qGreen(a) - qGreen(b)) <= tolerance &&
               std::abs(qBlue(a) - qBlue(b)) <= tolerance;
    }

    QImage Written(const QString& text, QColor colour) const {
        const QFontMetrics metrics(font);
        QImage wanted(metrics.horizontalAdvance(text), metrics.height(), QImage::Format_RGB32);
        wanted.fill(background);
        QPainter painter(&wanted);
        painter.setFont(font);
        painter.setPen(colour);
        painter.drawText(0, metrics.ascent(), text);
        return wanted;
    }

    QImage image;
    QFont font;
    QColor background;
};

}  // namespace ladderwise
