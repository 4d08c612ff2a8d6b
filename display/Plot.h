// The response plot on its off-screen image. Run 0 repaints everything; worst-case runs draw their
// traces over it, so that the spread builds up.
#pragma once

#include <QFont>
#include <QImage>

#include "display/Annotations.h"
#include "display/PlotContent.h"
#include "display/PlotPainter.h"

namespace ladderwise {

/// Where the plot stands among its neighbours in the window, in logical pixels.
struct PlotPlacement {
    int PanelHeight = 0;  ///< of the input panel above the plot
    int GridTop = 0;      ///< y of the value grid
    int StripScroll = 0;  ///< how far strip and grid are scrolled to the left
};

class Plot {
public:
    Plot();

    /// Makes the image as large as the client area (logical pixels, at least 1 x 1) at a density
    /// (device pixels per logical pixel; below 1 or NaN counts as 1). The image is blank until the
    /// next run 0.
    void Resize(int clientWidth, int clientHeight, double devicePixelRatio = 1.0);

    /// True if Resize of that size and density would change nothing.
    bool HasSize(int clientWidth, int clientHeight, double devicePixelRatio) const;

    /// Font of labels, marks and title from the next run 0 on.
    void SetFont(const QFont& labelFont);

    /// Values at the designators of the strip, from the next run 0 on.
    void ShowPartValues(bool shown) { partValues = shown; }

    /// Bars at the symbols, from the next run 0 or ScrollStrip on.
    void ShowShares(std::vector<StripShare> shown) { shares = std::move(shown); }

    /// Run 0: repaints frame, strip, the chosen traces of all layers, markers and legend, and fixes
    /// layout, scales and choices.
    void PaintContent(const PlotContent& content, const PlotPlacement& placement);

    /// A worst-case run: draws the chosen traces over those that are there, with layout, scales and
    /// choices of the last run 0, by PaintOverlayRun.
    void PaintOverlay(const PlotTraces& run);

    /// After the last worst-case run: their bands, and the layers of the content of run 0 once
    /// more, the design in hand darker, then markers and legend.
    void FinishOverlay(const PlotContent& content);

    /// Limits, markers and legend of a content over the traces that are there, a worst case
    /// included: nothing is analysed or drawn anew for them.
    void Annotate(const PlotContent& content);

    /// Repaints the strip alone at another scroll position; traces and overlays stay.
    void ScrollStrip(const FilterDesign& design, int scroll);

    /// The picture: the traces under markers and legend. Keeping a copy of it makes the next one
    /// copy all pixels once.
    const QImage& Image() const;
    const QFont& Font() const { return font; }
    /// Layout and scales of the last run 0.
    const PlotLayout& Layout() const { return layout; }
    const PlotScales& Scales() const { return scales; }
    /// The edges of the limits, as Annotate placed them.
    const std::vector<LimitEdge>& Limits() const { return annotations.Limits; }

private:
    void PaintBackground(const PlotContent& content);
    bool Doubled() const { return traces.devicePixelRatio() > 1.0; }

    QImage traces;         ///< all but limits, markers and legend
    mutable QImage image;  ///< with them, put together when it is looked at
    mutable bool composed = false;
    QFont font;
    PlotLayout layout;
    PlotScales scales;
    TraceChoices choices;
    bool runsShown = true;
    bool partValues = false;
    std::vector<StripShare> shares;
    PlotPlacement placement;
    OverlayWork work;
    PlotAnnotations annotations;
    SchematicPictures pictures;
};

}  // namespace ladderwise
