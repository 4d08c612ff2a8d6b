// Paints frame, traces, schematic strip and value grid with a QPainter onto any device: the
// off-screen image of the window or an exported picture.
#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QSize>
#include <array>
#include <vector>

#include "display/PlotAxis.h"
#include "display/PlotFrame.h"
#include "display/TraceBands.h"
#include "display/TraceSpans.h"
#include "display/TraceStrokes.h"
#include "schematic/SchematicStrip.h"
#include "schematic/ValueGridContent.h"

namespace ladderwise {

/// Logical pixels of one row of the value grid drawn as a table.
inline constexpr int TableRowHeight = 20;
/// Columns of that table lie exactly below the schematic pictures.
inline constexpr int TablePitch = SchematicWidth;

/// The schematic pictures, each read once, at single and at double density.
class SchematicPictures {
public:
    /// The picture of a type (0 .. 26); a null image if there is none. `doubled` asks for the
    /// picture of twice the pixels, for dense screens and for printing.
    const QImage& Of(ElementType type, bool doubled);

private:
    struct Entry {
        bool Read = false;
        QImage Picture;
    };
    std::array<std::array<Entry, NumElementTypes>, 2> entries;
};

QColor ToQColor(PlotColour colour);

/// Extents of texts in the painter's current font.
TextMetrics MetricsOf(const QPainter& painter);

/// A text at its place, in its colour and the painter's font, which it may scale.
void PaintText(QPainter& painter, const PlotText& text);

/// Grid, border, labels, marks and title upon a background that is there, in the painter's font.
void PaintFrame(QPainter& painter, const PlotFrame& frame);

/// How layers are drawn: as they are; on top of a worst case, where the design, which has its
/// colours, is darker and twice as wide. Thin is what a measurement looks like.
enum class LayerLook { Plain, Darker, Thin };

/// The runs of a mapped trace as polylines, for vector pictures; `width` is that of a plain trace.
void PaintTrace(QPainter& painter, const TracePoints& points, PlotColour colour, LayerLook look,
                double width);

/// The chosen traces of a layer in drawing order on the axes of `design`, mapped through `work`,
/// for vector pictures: they are finer than the pixels of `layout`.
void PaintLayer(QPainter& painter, const PlotLayer& layer, const FilterDesign& design,
                const TraceChoices& choices, const PlotLayout& layout, const PlotScales& scales,
                LayerLook look, TracePoints& work);

/// What drawing traces onto pixels needs again and again.
struct OverlayWork {
    TracePoints Points;
    TraceSpans Spans;
    TraceStrokes Strokes;
};

/// The chosen traces of a layer onto the pixels of a picture of Format_RGB32, antialiased, one
/// logical pixel wide if plain, on the axes of `design`. They are mapped to the picture's own
/// pixels at any density.
void PaintLayerPixels(QImage& image, const PlotLayer& layer, const FilterDesign& design,
                      const TraceChoices& choices, const PlotLayout& layout,
                      const PlotScales& scales, LayerLook look, OverlayWork& work,
                      PlotColour background = BackgroundColour);

/// The chosen traces of a worst-case run over what a picture of Format_RGB32 shows, by filling
/// spans of its pixels: many times as fast as lines.
void PaintOverlayRun(QImage& image, const PlotTraces& run, const TraceChoices& choices,
                     const PlotLayout& layout, const PlotScales& scales, OverlayWork& work);

/// The bands of the runs of a worst case: the lowest and the highest as dark lines, what 5 and 95 %
/// of them stay below as dashes, which have the background on either side so as to stand out from
/// a cloud of runs whatever its colour is. For vector pictures, and onto pixels.
void PaintBands(QPainter& painter, const TraceBands& bands, const TraceChoices& choices,
                const PlotLayout& layout, const PlotScales& scales, TracePoints& work,
                PlotColour background = BackgroundColour);
void PaintBandPixels(QImage& image, const TraceBands& bands, const TraceChoices& choices,
                     const PlotLayout& layout, const PlotScales& scales, OverlayWork& work,
                     PlotColour background = BackgroundColour);

/// The schematic strip, or the notice that the ladder is empty. A picture that is missing is
/// replaced by a box with the type's name.
struct StripLook {
    bool Doubled = false;              ///< pictures of twice the density
    bool WithValues = false;           ///< at the designators
    std::vector<StripShare> Shares{};  ///< bars at the symbols
};
void PaintStrip(QPainter& painter, const FilterDesign& design, int gridTop, int scroll,
                const StripLook& look, SchematicPictures& pictures);

/// Pixels that the designators reach above the pictures.
inline constexpr int StripOverhang = 4;

/// The value grid as a table with its left top corner at ValueGridLeft, gridTop.
void PaintValueTable(QPainter& painter, const std::vector<GridColumn>& columns, int gridTop);

}  // namespace ladderwise
