// Picture, cursor and strip.
#include "app/PlotArea.h"

#include <algorithm>
#include <utility>

#include "controls/BitMapView.h"
#include "display/Annotations.h"
#include "schematic/SchematicPainter.h"

namespace ladderwise {

namespace {

constexpr int symbolMargin = 4;  ///< pixels around a symbol that belong to it

QRect Around(const QRect& symbol) {
    return symbol.adjusted(-symbolMargin, -symbolMargin, symbolMargin, symbolMargin);
}

/// The value whose symbol lies at a point of an element's picture; -1 if none does.
int RowAt(QPoint at, ElementType type) {
    const SymbolRects symbols = SymbolsOf(type);
    for (int row = 0; row < ValueGridRows; ++row)
        if (!symbols[row].isEmpty() && Around(symbols[row]).contains(at)) return row;
    return -1;
}

bool Within(const PlotLayout& layout, QPoint at) {
    return at.x() >= layout.PlotLeft && at.x() <= layout.PlotRight && at.y() >= layout.PlotTop &&
           at.y() <= layout.PlotBottom;
}

}  // namespace

PlotArea::PlotArea(std::function<PlotContent()> content, QWidget* parent)
    : QWidget(parent), content(std::move(content)), view(new BitMapView(plot, this)) {
    setObjectName("PlotArea");
    connect(view, &BitMapView::Hovered, this, &PlotArea::FollowMouse);
    connect(view, &BitMapView::Stepped, this, &PlotArea::StepCursor);
    connect(view, &BitMapView::Left, this, [this] {
        cursor.reset();
        ShowCursor();
        emit PointedAt(0, -1);
    });
    connect(view, &BitMapView::Pressed, this, [this](QPoint at) {
        if (Within(plot.Layout(), at)) emit Pressed(at, view->mapToGlobal(at));
    });
}

QWidget* PlotArea::View() const {
    return view;
}

void PlotArea::RepaintNow() {
    view->repaint();
}

void PlotArea::resizeEvent(QResizeEvent*) {
    view->setGeometry(rect());
}

bool PlotArea::Fits() const {
    return plot.HasSize(width(), height(), devicePixelRatioF());
}

void PlotArea::SizePicture(double pixelRatio) {
    plot.Resize(width(), height(), pixelRatio);
}

void PlotArea::PlotRun(const AnalysedRun& run, const PlotPlacement& newPlacement) {
    if (run.Number > 0) return plot.PaintOverlay(TracesOf(run.Quantities, run.Response));
    placement = newPlacement;
    plot.PaintContent(content(), placement);
    view->update();
}

void PlotArea::FinishOverlay() {
    plot.FinishOverlay(content());
    view->update();
}

void PlotArea::ShowMarkers() {
    plot.Annotate(content());
    view->update();
}

void PlotArea::ShowShares(std::vector<StripShare> shares) {
    plot.ShowShares(std::move(shares));
    ScrollStrip(placement.StripScroll);
}

void PlotArea::ScrollStrip(int scroll) {
    placement.StripScroll = scroll;
    plot.ScrollStrip(content().Design, scroll);
    view->update();
}

QRect PlotArea::PictureOf(int slot) const {
    return {ValueGridLeft + SchematicWidth * slot - placement.StripScroll,
            placement.GridTop - SchematicHeight, SchematicWidth, SchematicHeight};
}

void PlotArea::Light(int slot, int row) {
    if (slot <= 0) return view->Light({});
    const SymbolRects symbols = SymbolsOf(content().Design.Elements[slot].Type);
    const QRect picture = PictureOf(slot);
    view->Light(row >= 0 && !symbols[row].isEmpty()
                    ? Around(symbols[row]).translated(picture.topLeft())
                    : picture);
}

void PlotArea::FollowMouse(QPoint at) {
    const PlotLayout& layout = plot.Layout();
    cursor.reset();
    if (Within(layout, at))
        cursor = PlotCursor{SweepIndexAt(at.x(), NumSweepPoints, layout), at.y()};
    ShowCursor();
    const FilterDesign& design = content().Design;
    const int slot = SlotAt(at.x(), at.y(), design, placement.GridTop, placement.StripScroll);
    emit PointedAt(
        slot, slot > 0 ? RowAt(at - PictureOf(slot).topLeft(), design.Elements[slot].Type) : -1);
}

void PlotArea::StepCursor(int points) {
    const PlotLayout& layout = plot.Layout();
    if (!cursor) cursor = PlotCursor{NumSweepPoints / 2, layout.PlotTop + layout.PlotHeight / 2};
    cursor->Index = std::clamp(cursor->Index + points, 0, NumSweepPoints - 1);
    ShowCursor();
}

void PlotArea::ShowCursor() {
    const PlotContent now = content();
    if (!cursor || now.Design.NumElements < 1) return view->ShowReadOuts({});
    const MarkedSweep sweep = SweepOf(now, plot.Layout(), plot.Scales());
    view->ShowReadOuts(
        ReadCursor(cursor->Index, cursor->Y, sweep, now.Layers,
                   ReferenceOf(now.Markers, sweep.Freqs, now.Layers.front().Values.MagnitudeDb)));
}

}  // namespace ladderwise
