// Picture, cursor, strip and the hand on limits.
#include "app/PlotArea.h"

#include <algorithm>
#include <utility>

#include "controls/BitMapView.h"
#include "display/Annotations.h"
#include "schematic/SchematicPainter.h"

namespace ladderwise {

namespace {

constexpr int leastDrag = 3;     ///< pixels that the mouse moves until it drags
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
    connect(view, &BitMapView::Hovered, this, [this](QPoint at, bool held) {
        if (heldLimit && !held) Release(at);
        if (heldLimit)
            Drag(at);
        else
            ShowGrip(at);
        FollowMouse(at);
    });
    connect(view, &BitMapView::Released, this, &PlotArea::Release);
    connect(view, &BitMapView::Escaped, this, &PlotArea::AbandonDrag);
    connect(view, &BitMapView::Stepped, this, &PlotArea::StepCursor);
    connect(view, &BitMapView::Left, this, [this] {
        cursor.reset();
        ShowCursor();
        emit PointedAt(0, -1);
    });
    connect(view, &BitMapView::Pressed, this, &PlotArea::Press);
}

/// The left button takes a limit; anything else opens a menu.
void PlotArea::Press(QPoint at, bool held) {
    AbandonDrag();
    if (held)
        if (const auto grip = GripAt(plot.Limits(), at.x(), at.y())) {
            const LimitReport limits = content().Limits;
            if (grip->Edge.Limit < limits.Rows.size()) {
                heldLimit = HeldLimit{{*grip, limits.Rows[grip->Edge.Limit]}, at};
                return;
            }
        }
    if (Within(plot.Layout(), at)) emit Pressed(at, view->mapToGlobal(at));
}

void PlotArea::Drag(QPoint at) {
    const QPoint way = at - heldLimit->From;
    heldLimit->Moved = heldLimit->Moved || way.manhattanLength() >= leastDrag;
    if (!heldLimit->Moved) return;
    heldLimit->Drag.DeltaX = way.x();
    heldLimit->Drag.DeltaY = way.y();
    const LimitDrag& drag = heldLimit->Drag;
    emit LimitDragged(drag.Grip.Edge.Limit,
                      DraggedLimit(drag, content().Design, plot.Layout(), plot.Scales()));
}

/// A click on an edge that moved nothing is one on the plot.
void PlotArea::Release(QPoint at) {
    const auto held = std::exchange(heldLimit, {});
    if (!held) return;
    if (held->Moved)
        emit LimitDropped(true);
    else if (Within(plot.Layout(), at))
        emit Pressed(at, view->mapToGlobal(at));
    ShowGrip(at);
}

void PlotArea::AbandonDrag() {
    const auto held = std::exchange(heldLimit, {});
    if (held && held->Moved) emit LimitDropped(false);
}

/// The cursor tells what the mouse would take hold of.
void PlotArea::ShowGrip(QPoint at) {
    const auto grip = GripAt(plot.Limits(), at.x(), at.y());
    if (!grip) return view->unsetCursor();
    view->setCursor(grip->Part == LimitGripPart::Value ? Qt::SizeVerCursor : Qt::SizeHorCursor);
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
                   ReferenceOf(now.Markers, sweep.Freqs, now.Layers.front().Values.MagnitudeDb),
                   now.Bands.get()));
}

}  // namespace ladderwise
