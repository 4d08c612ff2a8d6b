// Where things stand in the client area, and what of them moves together.
#include "app/ClientArea.h"

#include <QLabel>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>

#include "app/MainPanel.h"
#include "app/PlotArea.h"
#include "app/ResultsPanel.h"
#include "app/ValueGrid.h"
#include "controls/FittedCells.h"
#include "schematic/SchematicPainter.h"
#include "windows/EllipticPanel.h"

namespace ladderwise {

namespace {

constexpr int SmallestClientHeight = 480;  ///< a lower client area is scrolled
constexpr int AxisLabelHeight = 18;        ///< pixels

}  // namespace

ClientArea::ClientArea(InputBinder& binder, const FilterDesign& design,
                       std::function<PlotContent()> content,
                       std::function<void(std::vector<GridColumn>&)> annotate, QWidget* parent)
    : QWidget(parent), design(design), annotate(std::move(annotate)) {
    setObjectName("Client");
    setMinimumHeight(SmallestClientHeight);
    plotArea = new PlotArea(std::move(content), this);
    panel = new MainPanel(binder, this);
    panelView = new QScrollArea(this);
    panelView->setObjectName("PanelView");
    panelView->setFrameShape(QFrame::NoFrame);
    panelView->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    panelView->setWidgetResizable(true);
    panelView->setFocusPolicy(Qt::NoFocus);
    panelView->setWidget(panel);
    valueGrid = new ValueGrid(this);
    BuildScrolling(binder);
    results = new ResultsPanel(this);
    ellipticPanel = new EllipticPanel(binder, this);
    ellipticPanel->hide();
    connect(plotArea, &PlotArea::PointedAt, this, &ClientArea::LightPart);
    connect(valueGrid, &ValueGrid::PointedAt, this, &ClientArea::LightPart);
    connect(valueGrid, &QTableWidget::currentCellChanged, this,
            [this](int, int column) { RevealColumn(column); });
}

void ClientArea::BuildScrolling(InputBinder& binder) {
    stripBar = new QScrollBar(Qt::Horizontal, this);
    stripBar->setObjectName("StripScrollBar");
    stripBar->setAccessibleName("Schematic and part values");
    connect(stripBar, &QScrollBar::valueChanged, this, &ClientArea::ScrollStrip);
    scaleBox = binder.AddBox(this, InputId::Scale);  // as wide as the plot's left margin
    scaleBox->setMinimumWidth(0);
    scaleBox->setMaximumWidth(QWIDGETSIZE_MAX);
    scaleBox->hide();
}

void ClientArea::SetTabOrder(QWidget* last) {
    QWidget* before = panel->ExchangeRefButton;
    auto* const trapBox = findChild<NumberEdit*>("TrapTypeBox");
    for (QWidget* const next :
         std::initializer_list<QWidget*>{scaleBox, plotArea->View(), trapBox, valueGrid,
                                         results->findChild<QAbstractButton*>("ResultsTab"),
                                         results->findChild<QTableWidget*>("ResultsTable"), last}) {
        QWidget::setTabOrder(before, next);
        before = next;
    }
}

void ClientArea::ShowTraps(bool visible) {
    ellipticPanel->setVisible(visible);
    ellipticPanel->ShowForms(design);
}

int ClientArea::Scroll() const {
    return stripBar->isVisibleTo(this) ? stripBar->value() : 0;
}

PlotPlacement ClientArea::Placement() const {
    return {panelView->height(), valueGrid->y(), Scroll()};
}

void ClientArea::PlotRun(const AnalysedRun& run, bool groupDelay, bool autoScale) {
    if (run.Number == 0) {
        ShowValues();  // their rows decide how much room is left
        LayOut();
    }
    plotArea->PlotRun(run, Placement());
    if (run.Number == 0) PlaceGroupDelayControls(groupDelay, autoScale);
}

void ClientArea::ShowValues() {
    std::vector<GridColumn> columns = BuildValueGrid(design);
    annotate(columns);
    valueGrid->ShowColumns(columns);
}

void ClientArea::LayOut() {
    const int elements = SlotsInUse(design);
    const QSize panelSize = panel->minimumSizeHint();
    const int panelBar =
        width() < panelSize.width() ? panelView->horizontalScrollBar()->sizeHint().height() : 0;
    panelView->setGeometry(0, 0, width(), panelSize.height() + panelBar);
    const int ladder = LadderWidth(elements);
    const bool folded = width() - ladder < ResultsPanel::LeastWidth;
    const int whole = ladder + (folded ? results->TabWidth() : 0);
    const bool scrolled = whole > width();
    const int barHeight = scrolled ? stripBar->sizeHint().height() : 0;
    const int gridWidth = ValueGridWidth(elements);
    stripBar->setGeometry(0, height() - barHeight, width(), barHeight);
    stripBar->setVisible(scrolled);
    const QSignalBlocker blocker(stripBar);
    stripBar->setRange(0, std::max(0, whole - width()));
    stripBar->setPageStep(width());
    stripBar->setSingleStep(SchematicWidth);
    const int gridHeight = valueGrid->RowsHeight();
    valueGrid->setGeometry(ValueGridLeft - Scroll(), height() - barHeight - gridHeight, gridWidth,
                           gridHeight);
    valueGrid->KeepHeaders(Scroll());
    const int stripTop = valueGrid->y() - SchematicHeight, left = folded ? 0 : ladder;
    results->PlaceIn({left, stripTop, width() - left, SchematicHeight + gridHeight}, folded);
    ellipticPanel->PlaceAt(valueGrid->pos());
}

void ClientArea::ScrollStrip(int position) {
    LightPart(0);
    valueGrid->move(ValueGridLeft - position, valueGrid->y());
    valueGrid->KeepHeaders(position);
    ellipticPanel->PlaceAt(valueGrid->pos());
    plotArea->ScrollStrip(position);
}

void ClientArea::RevealColumn(int column) {
    if (column < 0 || !stripBar->isVisibleTo(this)) return;
    // The first element brings the label column with it.
    const int place = ValueGridLeft + valueGrid->columnViewportPosition(column);
    const int left = column <= 1 ? 0 : place - valueGrid->HeaderWidth();
    const int right = place + valueGrid->columnWidth(column);
    const int seen = width() - results->Covers();
    stripBar->setValue(std::min(left, std::max(stripBar->value(), right - seen)));
}

void ClientArea::PlaceGroupDelayControls(bool groupDelay, bool autoScale) {
    panel->AutoScaleCheckBox->setVisible(groupDelay);
    const PlotRect place = ScaleBoxRect(plotArea->Layout(), scaleBox->sizeHint().height());
    scaleBox->setGeometry(place.Left, place.Top, place.Width, place.Height);
    scaleBox->setVisible(groupDelay && !autoScale);
}

void ClientArea::SizePicture() {
    // The labels of the frequency axis stand between the plot and the names of the parts.
    plotArea->SetLabelFont(FontThatFits(panel->findChild<QLabel*>("FontLabel")->font(), {},
                                        QWIDGETSIZE_MAX, AxisLabelHeight));
    plotArea->setGeometry(rect());
    plotArea->SizePicture(devicePixelRatioF());
}

void ClientArea::resizeEvent(QResizeEvent*) {
    plotArea->setGeometry(rect());
    emit Resized();
}

void ClientArea::ShowShares(const std::vector<ShareRow>& rows) {
    std::vector<StripShare> shares;
    for (const ShareRow& row : rows)
        shares.push_back({row.Share.Slot, row.Share.Row, row.Share.Share});
    plotArea->ShowShares(std::move(shares));
}

void ClientArea::LightPart(int slot, int row) {
    if (slot < 0 || slot > SlotsInUse(design)) slot = 0;
    if (slot == litSlot && row == litRow) return;
    litSlot = slot;
    litRow = row;
    plotArea->Light(slot, row);
    // Values that share a symbol are lit together.
    std::array<bool, ValueGridRows> rows{};
    const SymbolRects symbols = SymbolsOf(design.Elements[slot].Type);
    for (int other = 0; other < ValueGridRows; ++other)
        rows[other] = row < 0 || other == row || symbols[other] == symbols[row];
    valueGrid->Light(slot, rows);
}

}  // namespace ladderwise
