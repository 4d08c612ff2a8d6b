// What of the plot's area is taken: by traces, by labels, by the legend. Finds room for the next
// label. Cells of a few pixels, no Qt.
#pragma once

#include <cstdint>
#include <vector>

#include "display/PlotLayout.h"
#include "display/TraceMap.h"

namespace ladderwise {

class PlotCover {
public:
    /// An empty plot.
    explicit PlotCover(const PlotLayout& layout);

    /// Takes the cells that a mapped trace runs through.
    void AddTrace(const TracePoints& points);

    /// Takes the cells of a label or the legend; they weigh more than traces.
    void AddBlock(const PlotRect& block);

    /// How much of a rectangle is taken; 0: nothing. What lies outside the plot counts as nothing.
    int Cost(const PlotRect& rect) const;

    /// The place of a width x height label beside an anchor point: the first free one of a series
    /// of positions around it, near ones first; where none is free, the least taken one. It lies
    /// within the plot (its left top corner does, if it is larger than the plot) and is taken from
    /// now on.
    /// `leftFirst` prefers its left side.
    PlotRect PlaceLabel(int anchorX, int anchorY, int width, int height, bool leftFirst = false);

    /// Whether a width x height block fits in, `margin` pixels off the frame.
    bool HasRoomFor(int width, int height, int margin) const;

    /// The corner of the plot, `margin` pixels off its frame, where a width x height block hides
    /// least: top right, bottom left, top left, bottom right on equal terms. Where no corner is
    /// free, the free place nearest to one, if there is any.
    PlotRect FindCorner(int width, int height, int margin) const;

private:
    /// The place for `block` that is taken least, nearest to a corner; its left top corner may be
    /// anywhere in `corners`.
    PlotRect PlaceNearCorner(const PlotRect& corners, const PlotRect& block) const;
    PlotRect Inside(PlotRect rect) const;

    PlotRect area;
    int columns = 0;
    int rows = 0;
    std::vector<std::uint8_t> cells;
};

}  // namespace ladderwise
