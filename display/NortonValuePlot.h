// The picture of a Norton-transformed ladder's values: capacitors and inductors in their order
// from source to load, on logarithmic scales, as positions, texts and colours. No Qt.
#pragma once

#include <span>

#include "display/PlotFrame.h"

namespace ladderwise {

inline constexpr PlotColour CapacitorColour{255, 0, 0};     ///< trace, and marks at the left
inline constexpr PlotColour InductorColour{0, 0, 255};      ///< trace, and marks at the right
inline constexpr PlotColour UnrealisableColour{176, 0, 0};  ///< what cannot be built
inline constexpr int ValueMarkSize = 7;                     ///< pixels, odd

/// How a value is marked: a capacitor by a square, an inductor by a disc, zero (a part that is left
/// out) by an open one, and what is negative or not finite by a cross.
enum class ValueMark { Capacitor, Inductor, LeftOut, Unrealisable };

struct ValuePoint {
    int X = 0;
    int Y = 0;  ///< of the magnitude; the bottom for zero, the top for what is not finite
    ValueMark Mark = ValueMark::Capacitor;
    PlotColour Colour;
};

/// A logarithmic scale of whole decades: powers of ten at the bottom and at the top.
struct DecadeScale {
    int Low = 0;
    int High = 1;
};

struct NortonValuePlot {
    std::vector<PlotLine> Lines;  ///< grid, then the lines that join values that can be built
    PlotRect Border;
    std::vector<PlotText> Texts;  ///< title, legends, scale marks, designators, values, warning
    std::vector<ValuePoint> Points;
    DecadeScale CapacitorScale;  ///< of F, at the left
    DecadeScale InductorScale;   ///< of H, at the right; as many decades
};

/// Whole decades that hold the magnitudes of all finite values but zero, at least one and at most
/// 12, the topmost ones.
DecadeScale ScaleOf(std::span<const double> values);

/// What the parts of a transformed ladder are called, from source to load as in its NortonResult.
struct NortonDesignators {
    std::vector<std::string> Capacitors;
    std::vector<std::string> Inductors;
};
NortonDesignators NortonDesignatorsOf(const FilterDesign& design);

/// Lays out the values under a title in a picture of `width` x `height` pixels. Values are written
/// beside their marks where they fit,
/// the designators of capacitors and inductors in two rows below the columns.
NortonValuePlot BuildNortonValuePlot(const NortonResult& result, const NortonDesignators& names,
                                     const std::string& title, int width, int height,
                                     const TextMetrics& metrics);

}  // namespace ladderwise
