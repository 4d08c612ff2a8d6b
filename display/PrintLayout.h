// Where things stand on a printed page: a line of title, the picture, a line at the foot. No Qt.
#pragma once

#include "display/PlotLayout.h"

namespace ladderwise {

/// Rectangles in the page's own units, from the upper left corner of its printable part.
struct PrintLayout {
    PlotRect Header;   ///< title to the left, date to the right
    PlotRect Picture;  ///< as large as fits, its proportions kept, in the middle
    PlotRect Footer;   ///< file name to the left, program to the right
};

/// Lays out a picture of pictureWidth x pictureHeight on a printable part of pageWidth x
/// pageHeight, lines of text lineHeight high. Sizes below 1 count as 1.
PrintLayout LayOutPrint(int pageWidth, int pageHeight, int pictureWidth, int pictureHeight,
                        int lineHeight);

}  // namespace ladderwise
