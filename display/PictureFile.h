// Picture files in memory: from what paints a picture to the bytes of a PNG, SVG or PDF.
#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QSizeF>
#include <functional>
#include <string>

namespace ladderwise {

/// A picture file in memory, or why there is none, as a sentence for the user.
struct PlotFile {
    std::string Bytes;
    std::string Error;
};

/// What a file of any kind is made from.
struct PictureSource {
    QSizeF Extent;      ///< in 96ths of an inch, which the painter counts in
    std::string Title;  ///< of the file
    QFont Font;         ///< without it, there is no picture
    std::function<void(QPainter& painter)> Paint;
    std::function<QImage()> Pixels;  ///< a null image: no memory
};

/// The same font with its size in logical pixels: it looks the same on every device.
QFont InPixels(const QFont& font);

/// A file of the kind that the ending of `path` names: .png, .svg or .pdf in any case of letters.
/// Fails for another ending, an empty extent, where the memory does not hold it, and where no font
/// is installed: a response without scales is worse than none.
PlotFile MakePictureFile(const std::string& path, const PictureSource& source);

}  // namespace ladderwise
