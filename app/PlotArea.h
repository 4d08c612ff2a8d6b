// The area of the plot: the picture with traces, strip, markers and reference, the cursor over it,
// and the hand on its limits. It keeps the picture of a worst case, so that neither a marker nor
// the cursor calculates.
#pragma once

#include <QWidget>
#include <functional>
#include <optional>

#include "display/Plot.h"
#include "pipeline/Calculation.h"

namespace ladderwise {

class BitMapView;

class PlotArea : public QWidget {
    Q_OBJECT

public:
    /// `content` gives what is to be shown now. The area itself is transparent to the keyboard:
    /// its view takes the focus.
    PlotArea(std::function<PlotContent()> content, QWidget* parent);

    /// Font of the labels from the next run 0 on.
    void SetLabelFont(const QFont& font) { plot.SetFont(font); }

    /// Values at the designators, from the next run 0 on.
    void ShowPartValues(bool shown) { plot.ShowPartValues(shown); }

    /// Bars at the symbols of the strip, at once.
    void ShowShares(std::vector<StripShare> shares);

    /// True if the picture is as large and as dense as the area. Any other has to be drawn anew.
    bool Fits() const;

    /// Makes the picture as large as the area at a density, ready for run 0.
    void SizePicture(double pixelRatio);

    /// Draws a run: 0 paints all of the content, the others lie over it.
    void PlotRun(const AnalysedRun& run, const PlotPlacement& placement);

    /// After the last run of a worst case: the nominal design on top.
    void FinishOverlay();

    /// Limits, markers and legend anew over the traces that are there.
    void ShowMarkers();

    /// The cursor's read-outs again, of what is shown now.
    void ShowCursor();

    void ScrollStrip(int scroll);

    /// Lights the symbol of a value in the strip, or, with row -1, of the whole slot; slot 0: none.
    void Light(int slot, int row);

    /// What markers refer to.
    MarkedSweep Sweep() const { return SweepOf(content(), plot.Layout(), plot.Scales()); }

    /// The edges of the limits that are drawn.
    const std::vector<LimitEdge>& LimitEdges() const { return plot.Limits(); }
    const PlotLayout& Layout() const { return plot.Layout(); }

    /// Lets go of a limit, as it was before, if the mouse holds one.
    void AbandonDrag();

    /// The widget that takes the focus.
    QWidget* View() const;

    /// Shows at once what has been drawn.
    void RepaintNow();

signals:
    void PointedAt(int slot, int row);  ///< in the strip; slot 0: at no element, row -1: all of it
    void Pressed(QPoint at, QPoint global);  ///< on the plot, where no limit was dragged
    /// A limit is being dragged: its place in the list, and what it is now.
    void LimitDragged(std::size_t limit, const LimitLine& line);
    /// Its end: it stays as it was told last, or as it was before.
    void LimitDropped(bool taken);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void Press(QPoint at, bool held);
    void Drag(QPoint at);
    void Release(QPoint at);
    void ShowGrip(QPoint at);
    void FollowMouse(QPoint at);
    void StepCursor(int points);
    QRect PictureOf(int slot) const;

    /// Where the crosshair stands: sweep point and height, in pixels.
    struct PlotCursor {
        int Index;
        int Y;
    };

    std::function<PlotContent()> content;
    Plot plot;
    PlotPlacement placement;  ///< of the last run 0
    BitMapView* view;
    std::optional<PlotCursor> cursor;

    /// The limit that the mouse holds, from where.
    struct HeldLimit {
        LimitDrag Drag;
        QPoint From;
        bool Moved = false;
    };
    std::optional<HeldLimit> heldLimit;
};

}  // namespace ladderwise
