// The main window: cursor read-outs, the marker menu, the reference design, and the link between
// schematic strip and value grid.
#include <QApplication>
#include <QClipboard>
#include <QMenu>
#include <QTableWidget>
#include <QToolButton>
#include <algorithm>

#include "app/MainWindow.h"
#include "controls/BitMapView.h"
#include "design/ChoiceNames.h"
#include "display/Annotations.h"
#include "schematic/SchematicPainter.h"

namespace ladderwise {

namespace {

constexpr int symbolMargin = 4;  ///< pixels around a symbol that belong to it

/// Behind a value that is pointed at: lighter than light cells' text, darker than that of dark
/// ones.
QColor LitCell(const QPalette& palette) {
    constexpr int middle = 128;
    return palette.base().color().lightness() < middle ? QColor(96, 78, 16) : QColor(255, 238, 180);
}

QRect PictureOf(int slot, const PlotPlacement& placement) {
    return {ValueGridLeft + SchematicWidth * slot - placement.StripScroll,
            placement.GridTop - SchematicHeight, SchematicWidth, SchematicHeight};
}

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

struct GridCommand {
    FormKey Key;
    const char* Text;
};

constexpr GridCommand gridCommands[] = {
    {FormKey::F1, "&Smaller by %1 %\tF1"},
    {FormKey::F2, "&Larger by %1 %\tF2"},
    {FormKey::F3, "S&tandard Value\tF3"},
    {FormKey::F5, "Standard Value, Keep &Resonance\tF5"},
    {FormKey::F6, "Standard Values of &Both\tF6"},
    {FormKey::F4, "Next R&esponse\tF4"},
};

}  // namespace

void MainWindow::ConnectPlot() {
    connect(bitMap, &BitMapView::Hovered, this, &MainWindow::FollowMouse);
    connect(bitMap, &BitMapView::Left, this, [this] {
        cursor.reset();
        ShowCursor();
        LightPart(0);
    });
    connect(bitMap, &BitMapView::Pressed, this, &MainWindow::OpenMarkerMenu);
    connect(bitMap, &BitMapView::Stepped, this, &MainWindow::StepCursor);
    for (QAction* const action : markerMenu->actions())
        connect(action, &QAction::triggered, this,
                [this, action] { RunMarkerCommand(action->objectName()); });
    connect(panel->PlotReferenceBox, &QAbstractButton::clicked, this,
            [this] { FilterMenuClick(panel->PlotReferenceBox); });
    connect(panel->SetRefButton, &QAbstractButton::clicked, this, &MainWindow::SetReference);
    connect(panel->ExchangeRefButton, &QAbstractButton::clicked, this,
            &MainWindow::ExchangeWithReference);
    QWidget* before = panel->ExchangeRefButton;
    for (QWidget* const next : std::initializer_list<QWidget*>{
             scaleBox, bitMap, findChild<NumberEdit*>("TrapTypeBox"), valueGrid, mathErrorButton}) {
        setTabOrder(before, next);
        before = next;
    }
    valueGrid->setMouseTracking(true);
    connect(valueGrid, &QTableWidget::cellEntered, this,
            [this](int row, int column) { LightPart(column, row); });
    valueGrid->setContextMenuPolicy(Qt::CustomContextMenu);
    connect(valueGrid, &QWidget::customContextMenuRequested, this, &MainWindow::OpenGridMenu);
}

PlotContent MainWindow::Content() const {
    PlotContent content = ContentOf(calculation.Design, ShownTraces(calculation),
                                    calculation.Quantities, ReferenceLayers());
    content.Markers = markers;
    content.WorstCaseRuns = comingRuns;
    return content;
}

void MainWindow::FollowMouse(QPoint at) {
    const PlotLayout& layout = plot.Layout();
    cursor.reset();
    if (Within(layout, at))
        cursor = PlotCursor{SweepIndexAt(at.x(), NumSweepPoints, layout), at.y()};
    ShowCursor();
    const PlotPlacement placement = Placement();
    const int slot =
        SlotAt(at.x(), at.y(), calculation.Design, placement.GridTop, placement.StripScroll);
    LightPart(slot, slot > 0 ? RowAt(at - PictureOf(slot, placement).topLeft(),
                                     calculation.Design.Elements[slot].Type)
                             : -1);
}

void MainWindow::StepCursor(int points) {
    const PlotLayout& layout = plot.Layout();
    if (!cursor) cursor = PlotCursor{NumSweepPoints / 2, layout.PlotTop + layout.PlotHeight / 2};
    cursor->Index = std::clamp(cursor->Index + points, 0, NumSweepPoints - 1);
    ShowCursor();
}

void MainWindow::ShowCursor() {
    if (!cursor || calculation.Design.NumElements < 1) return bitMap->ShowReadOuts({});
    const PlotContent content = Content();
    const MarkedSweep sweep = SweepOf(content, plot.Layout(), plot.Scales());
    bitMap->ShowReadOuts(
        ReadCursor(cursor->Index, cursor->Y, sweep, content.Layers,
                   ReferenceOf(markers, sweep.Freqs, calculation.Quantities.MagnitudeDb)));
}

void MainWindow::OpenMarkerMenu(QPoint at) {
    if (!Within(plot.Layout(), at)) return;
    FinishDrawing();
    markers.ClickX = at.x();
    markers.ClickY = at.y();
    markerMenu->popup(bitMap->mapToGlobal(at));
}

void MainWindow::RunMarkerCommand(const QString& name) {
    const PlotContent content = Content();
    const MarkedSweep sweep = SweepOf(content, plot.Layout(), plot.Scales());
    if (name == "SetRefF0Menu") SetRefToF0(markers, calculation.Design.F0);
    if (name == "SetRefPeakMenu") SetRefAtPeak(markers);
    if (name == "SetRefCursorMenu") SetRefAtCursor(markers, sweep);
    if (name == "ClearRefMenu") ClearReference(markers);
    if (name == "FreqMarkerMenu") AddFreqMarker(markers, sweep);
    if (name == "DbMarkerMenu") AddDbMarker(markers, sweep, calculation.Quantities.MagnitudeDb);
    if (name == "ClearMarkersMenu") ClearMarkers(markers);
    Replot();
}

/// Paints once more what has been calculated, a worst case with the very same draws.
void MainWindow::Replot() {
    AskForRepeat(calculation);
    Draw();
}

/// The reference at the peak goes where there is no band-pass; any reference goes with a band-pass.
void MainWindow::UpdateMarkerMenu(bool bandPass) {
    if (!bandPass && (wasBandPass || markers.RefAtPeak)) ClearReference(markers);
    wasBandPass = bandPass;
    EnableFor(findChild<QAction*>("SetRefPeakMenu"), bandPass, "for band-pass");
}

std::vector<PlotLayer> MainWindow::ReferenceLayers() const {
    if (!ReferenceShown()) return {};
    return {LayerOf(reference->Design, reference->Quantities, ReferenceColours, true,
                    ReferenceName(*reference, calculation.Design))};
}

bool MainWindow::ReferenceShown() const {
    return reference && panel->PlotReferenceBox->isEnabled() &&
           panel->PlotReferenceBox->isChecked();
}

void MainWindow::SetReference() {
    CalcIfTyped();
    FinishDrawing();
    reference = std::make_unique<ReferenceDesign>(StoreReference(calculation, report));
    panel->EnableReference(true);
    const QSignalBlocker blocker(panel->PlotReferenceBox);
    panel->PlotReferenceBox->setChecked(true);
    SetControlStates();
    Recalculate();
}

void MainWindow::ExchangeWithReference() {
    CalcIfTyped();
    FinishDrawing();
    const PassType before = calculation.Inputs.Pass();
    ExchangeReference(*reference, calculation, report);
    ShowInputs();
    // The window of a pass type comes with the type; one that was closed stays so.
    if (calculation.Inputs.Pass() != before) return FilterMenuClick(nullptr);
    SetControlStates();
    Recalculate();
}

void MainWindow::LightPart(int slot, int row) {
    if (slot < 0 || slot > ShownElements(calculation.Design)) slot = 0;
    if (slot == litSlot && row == litRow) return;
    QRect part;
    SymbolRects symbols;
    if (slot > 0) {
        part = PictureOf(slot, Placement());
        symbols = SymbolsOf(calculation.Design.Elements[slot].Type);
        if (row >= 0 && !symbols[row].isEmpty())
            part = Around(symbols[row]).translated(part.topLeft());
    }
    bitMap->Light(part);
    showingGrid = true;
    const QColor lit = LitCell(palette());
    for (int r = 0; r < ValueGridRows; ++r) {
        QTableWidgetItem* const old = litSlot > 0 ? valueGrid->item(r, litSlot) : nullptr;
        if (old && old->background().color() == lit) old->setBackground(palette().base());
    }
    for (int r = 0; r < ValueGridRows; ++r) {
        QTableWidgetItem* const item = slot > 0 ? valueGrid->item(r, slot) : nullptr;
        const bool meant = row < 0 || r == row || (slot > 0 && symbols[r] == symbols[row]);
        if (item && meant && !item->text().isEmpty() && item->background() == palette().base())
            item->setBackground(lit);
    }
    showingGrid = false;
    litSlot = slot;
    litRow = row;
}

void MainWindow::OpenGridMenu(QPoint at) {
    const QTableWidgetItem* const item = valueGrid->itemAt(at);
    QMenu menu(this);
    menu.setObjectName("ValueGridMenu");
    const bool part = item && item->column() > 0 && !item->text().isEmpty();
    if (part) valueGrid->setCurrentCell(item->row(), item->column());
    const QString percent =
        QString::fromStdString(calculation.Inputs.Box(InputId::PercentChange).Text);
    for (const GridCommand& command : gridCommands) {
        QString text = QString::fromLatin1(command.Text);
        if (text.contains("%1")) text = text.arg(percent);
        const FormKey key = command.Key;
        menu.addAction(text, this, [this, key] { FormKeyDown(key); })->setEnabled(part);
    }
    menu.addSeparator();
    const QString exact = part ? item->toolTip() : QString();
    menu.addAction("&Copy Value", this, [exact] { QApplication::clipboard()->setText(exact); })
        ->setEnabled(part);
    menu.addAction("Copy &Parts Table", this, [this] {
        QApplication::clipboard()->setText(
            QString::fromStdString(PartsTableText(calculation.Design)));
    });
    menu.exec(valueGrid->viewport()->mapToGlobal(at));
}

/// A turn of the wheel over a cell is the key F2 or F1 on it. False if there is no value.
bool MainWindow::StepCell(QPoint at, int angle) {
    const QTableWidgetItem* const item = valueGrid->itemAt(at);
    if (!item || item->column() < 1 || item->text().isEmpty() || angle == 0) return false;
    valueGrid->setCurrentCell(item->row(), item->column());
    FormKeyDown(angle > 0 ? FormKey::F2 : FormKey::F1);
    return true;
}

}  // namespace ladderwise
