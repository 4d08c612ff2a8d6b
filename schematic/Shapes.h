// What drawings are made of before anything is painted: colours, lines, rectangles and texts in
// whole pixels, and the measures of the schematic strip and the value grid below it. No Qt.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace ladderwise {

inline constexpr int SchematicWidth = 64;   ///< pixels of one schematic picture
inline constexpr int SchematicHeight = 96;  ///< pixels of one schematic picture
inline constexpr int ValueGridLeft = 50;    ///< x of the value grid's left edge, unscrolled
inline constexpr int ValueGridPitch = 65;   ///< pixels per grid column, its line included
inline constexpr int ValueGridRows = 4;     ///< one row per element value

struct PlotColour {
    std::uint8_t Red = 0;
    std::uint8_t Green = 0;
    std::uint8_t Blue = 0;

    bool operator==(const PlotColour&) const = default;
};

inline constexpr PlotColour BackgroundColour{234, 234, 234};
inline constexpr PlotColour GridColour{128, 128, 128};
inline constexpr PlotColour Black{0, 0, 0};
/// Label of a row of the value grid that no element uses.
inline constexpr PlotColour UnusedLabelColour{170, 170, 170};

struct PlotRect {
    int Left = 0;
    int Top = 0;
    int Width = 0;
    int Height = 0;

    bool operator==(const PlotRect&) const = default;
};

/// Extents of texts in the plot's font, in pixels.
struct TextMetrics {
    std::function<int(const std::string&)> Width;  ///< advance of a UTF-8 text
    int Height = 0;                                ///< of any line of text

    /// Of a font `scale` times as large; refers to this one.
    TextMetrics Scaled(double scale) const;
};

/// A line of width 1; both end points are drawn.
struct PlotLine {
    int X1 = 0;
    int Y1 = 0;
    int X2 = 0;
    int Y2 = 0;
    PlotColour Colour;
};

/// A text whose left top corner is at X, Y.
struct PlotText {
    int X = 0;
    int Y = 0;
    std::string Text;  ///< UTF-8
    PlotColour Colour;
    double Scale = 1.0;  ///< of the plot's font
};

}  // namespace ladderwise
