// A picture for reports, painted on any device: pixels, a vector file or paper.
#pragma once

#include <QFont>
#include <QImage>
#include <QPainter>
#include <QSizeF>
#include <string>

#include "display/PictureFile.h"
#include "display/PictureLayout.h"

namespace ladderwise {

/// In 96ths of an inch.
QSizeF ExtentOf(const PictureSize& size);

/// Pixels of a pixel picture: 300 to the inch where the size is in millimetres.
QSize PixelsOf(const PictureSize& size);

/// Paints the picture into 0, 0 .. extent, in 96ths of an inch, which the painter counts in. One
/// larger than 1280 x 800 is that of a screen enlarged: everything grows with it.
void PaintPicture(QPainter& painter, QSizeF extent, const PictureContent& content,
                  const PictureLook& look, const QFont& font);

/// A picture of this extent in so many pixels; a null image where the memory does not hold it.
QImage PictureImage(QSizeF extent, QSize pixels, const PictureContent& content,
                    const PictureLook& look, const QFont& font);

/// The picture as a file, as MakePictureFile does.
PlotFile PaintPictureFile(const std::string& path, const PictureSize& size,
                          const PictureContent& content, const PictureLook& look,
                          const QFont& font);

}  // namespace ladderwise
