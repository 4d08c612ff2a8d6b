// The layout of a printed page.
#include "display/PrintLayout.h"

#include <algorithm>
#include <cmath>

namespace ladderwise {

PrintLayout LayOutPrint(int pageWidth, int pageHeight, int pictureWidth, int pictureHeight,
                        int lineHeight) {
    const int width = std::max(1, pageWidth), height = std::max(1, pageHeight);
    const int line = std::clamp(lineHeight, 1, height), gap = line / 2;
    const int top = line + gap;
    const int room = std::max(1, height - 2 * top);
    const double w = std::max(1, pictureWidth), h = std::max(1, pictureHeight);
    const double scale = std::min(width / w, room / h);
    const int drawnWidth = static_cast<int>(std::lround(w * scale));
    const int drawnHeight = static_cast<int>(std::lround(h * scale));
    return {{0, 0, width, line},
            {(width - drawnWidth) / 2, top, drawnWidth, drawnHeight},
            {0, height - line, width, line}};
}

}  // namespace ladderwise
