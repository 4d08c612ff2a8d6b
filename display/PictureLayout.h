// A picture for a report: title and subtitle, the plot, the drawn ladder, the results beneath.
// Where each of them stands. Plain structs, no Qt.
#pragma once

#include <string>
#include <vector>

#include "display/PlotContent.h"
#include "display/PlotLayout.h"
#include "schematic/SchematicDrawing.h"

namespace ladderwise {

enum class PictureParts { Plot, Schematic, Both };

/// What a picture shows and on what.
struct PictureLook {
    PictureParts Parts = PictureParts::Both;
    bool White = false;  ///< in place of the background of the screen
};

/// Pixels, 96 to the inch on paper, or millimetres.
struct PictureSize {
    double Width = 1280.0;
    double Height = 800.0;
    bool Millimetres = false;
};

inline constexpr double LogicalDotsPerInch = 96.0;  ///< of a picture in pixels
inline constexpr double MillimetresPerInch = 25.4;
/// Pixels to the inch of a pixel picture whose size is in millimetres.
inline constexpr double DotsOfMillimetres = 300.0;

/// Why there is no picture of this size, as a sentence without its end; empty if there is.
std::string FaultOf(const PictureSize& size);

/// A line of the results; the last text is that of a reference beside the design, or empty.
struct PictureRow {
    std::string Name;
    std::string OfDesign;
    std::string OfReference{};
};

struct PictureContent {
    PlotContent Plot;
    std::vector<PictureRow> Results;
};

/// The fonts of a picture. The ladder is laid out in a font of its own, of which TextPixels of the
/// picture are `LadderScale` of its units.
struct PictureMetrics {
    TextMetrics Title;
    TextMetrics Body;
    TextMetrics Ladder;
    double LadderScale = 1.0;
};

/// A line of text at its left top corner, in the font of the title or that of the body.
struct PictureLine {
    int X = 0;
    int Y = 0;
    std::string Text;
    bool IsTitle = false;
    double Scale = 1.0;  ///< of that font
};

struct PictureLayout {
    std::vector<PictureLine> Lines;
    bool HasPlot = false;
    PlotLayout Plot;
    SchematicDrawing Ladder;  ///< empty: none
    double LadderScale = 1.0;
    double LadderLeft = 0.0;
    double LadderTop = 0.0;
};

/// Lays out a picture of width x height pixels. The ladder takes what it needs, with a plot no more
/// than half of what texts leave; the plot takes the rest. Results for which there is no room are
/// left out as a whole.
PictureLayout LayOutPicture(const PictureContent& content, PictureParts parts, int width,
                            int height, const PictureMetrics& metrics);

}  // namespace ladderwise
