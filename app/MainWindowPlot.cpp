// The main window: the picture, the value grid and where they stand.
#include <QApplication>
#include <QHeaderView>
#include <QProgressBar>
#include <QScrollArea>
#include <QScrollBar>
#include <QStatusBar>
#include <QTableWidget>
#include <algorithm>

#include "app/MainWindow.h"
#include "controls/BitMapView.h"
#include "controls/FittedCells.h"
#include "windows/EllipticPanel.h"

namespace ladderwise {

namespace {

constexpr int AxisLabelHeight = 18;  ///< pixels
constexpr int RepaintInterval = 40;  ///< ms between two looks at a growing overlay
const QColor labelBackground(225, 225, 225);
const QColor editedColour(255, 208, 160);
const QColor rejectedColour(192, 192, 192);

/// The item of a cell, made when there is none yet.
QTableWidgetItem* ItemAt(QTableWidget* grid, int row, int column) {
    if (!grid->item(row, column)) grid->setItem(row, column, new QTableWidgetItem);
    return grid->item(row, column);
}

}  // namespace

PlotPlacement MainWindow::Placement() const {
    return {panelView->height(), GridTop(), stripBar->isVisibleTo(client) ? stripBar->value() : 0};
}

int MainWindow::GridTop() const {
    return valueGrid->y();
}

PlotRunCallback MainWindow::Painter() {
    return [this](const AnalysedRun& run) { PlotRun(run); };
}

void MainWindow::PlotRun(const AnalysedRun& run) {
    if (run.Number > 0) {
        plot.PaintOverlay(TracesOf(run.Quantities, run.Response));
        return ShowProgress(run.Number);
    }
    LayOutClient();
    if (ReferenceShown()) RefreshReference(*reference, calculation, report);
    plot.PaintContent(Content(), Placement());
    PlaceGroupDelayControls();
    ShowValueGrid();
    bitMap->update();
}

void MainWindow::PlotPrepared() {
    comingRuns = calculation.PendingSeed ? calculation.Design.PartModel.MonteCarloRuns : 0;
    FinishCalculation(calculation, report, Painter());
    if (calculation.WorstCase.Runs == 0) return;
    plot.FinishOverlay(Content());
    bitMap->update();
}

void MainWindow::ShowProgress(int run) {
    const int runs = calculation.WorstCase.Runs;
    if (run == 1) {
        QApplication::setOverrideCursor(Qt::WaitCursor);
        progress->setRange(0, runs);
        sinceRepaint.start();
    }
    if (sinceRepaint.elapsed() >= RepaintInterval && run < runs) {
        progress->setValue(run);
        progress->show();
        statusBar()->repaint();
        bitMap->repaint();
        sinceRepaint.restart();
    }
    if (run == runs) {
        progress->hide();
        bitMap->update();
        QApplication::restoreOverrideCursor();
    }
}

void MainWindow::SizePlot(double pixelRatio) {
    // The labels of the frequency axis stand between the plot and the names of the parts.
    plot.SetFont(FontThatFits(panel->findChild<QLabel*>("FontLabel")->font(), {}, QWIDGETSIZE_MAX,
                              AxisLabelHeight));
    plot.Resize(client->width(), client->height(), pixelRatio);
    bitMap->setGeometry(0, 0, client->width(), client->height());
}

void MainWindow::ResizePlot() {
    bitMap->setGeometry(0, 0, client->width(), client->height());
    resized = true;
    AskForRepeat(calculation);
    Draw();
}

void MainWindow::LayOutClient() {
    const int width = client->width();
    const int elements = ShownElements(calculation.Design);
    const QSize panelSize = panel->minimumSizeHint();
    const int panelBar =
        width < panelSize.width() ? panelView->horizontalScrollBar()->sizeHint().height() : 0;
    panelView->setGeometry(0, 0, width, panelSize.height() + panelBar);
    const bool scrolled = ValueGridNeedsScrollBar(elements, width);
    const int barHeight = scrolled ? stripBar->sizeHint().height() : 0;
    const int gridHeight = ValueGridRows * valueGrid->verticalHeader()->defaultSectionSize();
    const int gridWidth = ValueGridWidth(elements);
    stripBar->setGeometry(0, client->height() - barHeight, width, barHeight);
    stripBar->setVisible(scrolled);
    const QSignalBlocker blocker(stripBar);
    stripBar->setRange(0, std::max(0, ValueGridLeft + gridWidth - width));
    stripBar->setPageStep(width);
    stripBar->setSingleStep(SchematicWidth);
    const int scroll = scrolled ? stripBar->value() : 0;
    valueGrid->setGeometry(ValueGridLeft - scroll, client->height() - barHeight - gridHeight,
                           gridWidth, gridHeight);
    ellipticPanel->PlaceAt(valueGrid->pos());
}

void MainWindow::ScrollStrip(int position) {
    LightPart(0);
    valueGrid->move(ValueGridLeft - position, valueGrid->y());
    ellipticPanel->PlaceAt(valueGrid->pos());
    plot.ScrollStrip(calculation.Design, position);
    bitMap->update();
}

void MainWindow::RevealColumn(int column) {
    if (column < 0 || !stripBar->isVisibleTo(client)) return;
    // The first element brings the label column with it.
    const int left = column <= 1 ? 0 : ValueGridLeft + valueGrid->columnViewportPosition(column);
    const int right =
        ValueGridLeft + valueGrid->columnViewportPosition(column) + valueGrid->columnWidth(column);
    stripBar->setValue(std::min(left, std::max(stripBar->value(), right - client->width())));
}

void MainWindow::PlaceGroupDelayControls() {
    const bool delay = calculation.Inputs.IsOn(ChoiceId::TraceGroupDelay);
    panel->AutoScaleCheckBox->setVisible(delay);
    const PlotRect place = ScaleBoxRect(plot.Layout(), scaleBox->sizeHint().height());
    scaleBox->setGeometry(place.Left, place.Top, place.Width, place.Height);
    scaleBox->setVisible(delay && !calculation.Inputs.IsOn(ChoiceId::AutoScale));
}

/// The looks of a cell beyond its text: edited by hand, or rejected and still to be seen.
void MainWindow::MarkCell(QTableWidgetItem* item, const GridCell& cell, CellPosition at) {
    item->setBackground(cell.Edited ? QBrush(editedColour) : palette().base());
    item->setForeground(cell.Edited ? QBrush(Qt::black) : palette().text());
    for (const RejectedCell& reject : rejected) {
        if (reject.At.Slot != at.Slot || reject.At.Row != at.Row) continue;
        item->setText(reject.Text);
        item->setData(Qt::UserRole, reject.Text);
        item->setBackground(rejectedColour);
        item->setForeground(QBrush(Qt::black));
        item->setToolTip("\"" + reject.Text +
                         "\" is no value; in use: " + QString::fromStdString(cell.ToolTip));
    }
}

void MainWindow::ShowValueGrid() {
    showingGrid = true;
    const std::vector<GridColumn> columns = BuildValueGrid(calculation.Design);
    valueGrid->setColumnCount(1 + static_cast<int>(columns.size()));
    for (int row = 0; row < ValueGridRows; ++row) {
        QTableWidgetItem* const label = ItemAt(valueGrid, row, 0);
        label->setText(GridRowLabels[row]);
        label->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        const bool used = IsRowUsed(columns, row);
        label->setBackground(used ? labelBackground : ToQColor(BackgroundColour));
        label->setForeground(used ? QColor(Qt::black) : ToQColor(UnusedLabelColour));
        for (int column = 1; column < valueGrid->columnCount(); ++column) {
            const GridCell& cell = columns[column - 1][row];
            QTableWidgetItem* const item = ItemAt(valueGrid, row, column);
            const QString text = QString::fromStdString(cell.Text);
            item->setText(text);
            item->setData(Qt::UserRole, text);
            item->setToolTip(QString::fromStdString(cell.ToolTip));
            MarkCell(item, cell, {column, row});
            // A row that no element uses is blended into what lies around the grid.
            if (!used) item->setBackground(ToQColor(BackgroundColour));
            Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
            if (!text.isEmpty()) flags |= Qt::ItemIsEditable;
            item->setFlags(flags);
        }
    }
    showingGrid = false;
}

}  // namespace ladderwise
