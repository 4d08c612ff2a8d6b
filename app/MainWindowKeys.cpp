// The main window: function keys, Enter on the value grid, start-up and resizing events.
#include <QApplication>
#include <QKeyEvent>
#include <QTableWidget>
#include <QWheelEvent>
#include <QWindow>
#include <optional>

#include "app/MainWindow.h"
#include "design/Designators.h"
#include "numbers/UnitTexts.h"

namespace ladderwise {

namespace {

std::optional<FormKey> FormKeyOf(int key) {
    constexpr FormKey keys[] = {FormKey::F1, FormKey::F2, FormKey::F3, FormKey::F4,
                                FormKey::F5, FormKey::F6, FormKey::F7, FormKey::F8};
    if (key < Qt::Key_F1 || key > Qt::Key_F8) return {};
    return keys[key - Qt::Key_F1];
}

}  // namespace

bool MainWindow::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress && watched->isWidgetType()) {
        auto* const key = static_cast<QKeyEvent*>(event);
        const bool ours = static_cast<QWidget*>(watched)->window() == this;
        const bool plain = !(key->modifiers() & ~Qt::KeypadModifier);
        if (ours && plain && HandleKey(watched, key->key())) return true;
    }
    if (watched == valueGrid->viewport()) {
        if (event->type() == QEvent::Leave) LightPart(0);
        if (event->type() == QEvent::Wheel) {
            auto* const wheel = static_cast<QWheelEvent*>(event);
            if (StepCell(wheel->position().toPoint(), wheel->angleDelta().y())) return true;
        }
    }
    if (watched == client && event->type() == QEvent::Resize && started) ResizePlot();
    return QMainWindow::eventFilter(watched, event);
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (started) return;
    started = true;
    // A screen of another density needs a picture of another density.
    connect(windowHandle(), &QWindow::screenChanged, this, [this] { ResizePlot(); });
    resized = true;
    FilterMenuClick(nullptr);
}

bool MainWindow::HandleKey(QObject* target, int key) {
    if (const auto formKey = FormKeyOf(key)) {
        FormKeyDown(*formKey);
        return true;
    }
    const bool enter = key == Qt::Key_Return || key == Qt::Key_Enter;
    // An open cell editor lets Enter through to the grid before it hands its text over; simulating
    // now would write the old text into it. The text that it hands over is simulated by itself.
    const bool editing = valueGrid->isAncestorOf(QApplication::focusWidget());
    if (enter && !editing && (target == valueGrid || target == valueGrid->viewport())) {
        SimulateGrid();
        return true;
    }
    return false;
}

CellPosition MainWindow::SelectedCell() {
    if (valueGrid->currentColumn() < 1)
        valueGrid->setCurrentCell(std::max(0, valueGrid->currentRow()), 1);
    return {valueGrid->currentColumn(), valueGrid->currentRow()};
}

void MainWindow::FormKeyDown(FormKey key) {
    if (valueGrid->isAncestorOf(QApplication::focusWidget())) valueGrid->setFocus();
    StoreInputs();
    switch (ApplyFormKey(calculation, key, SelectedCell(), report)) {
        case KeyOutcome::Nothing:
            ShowInputs();
            ShowStatus();
            return;
        case KeyOutcome::Analyse:
            rejected.clear();
            return AnalyseAndDraw();
        case KeyOutcome::FullCalculate:
            SetControlStates();
            return Recalculate();
    }
}

void MainWindow::SimulateGrid() {
    StoreInputs();
    ReadGrid();
}

void MainWindow::ReadGrid() {
    std::vector<RejectedCell> unreadable;
    for (int slot = 1; slot < valueGrid->columnCount(); ++slot)
        for (int row = 0; row < ValueGridRows; ++row)
            if (!ReadCell(slot, row))
                unreadable.push_back({{slot, row}, valueGrid->item(row, slot)->text()});
    rejected = unreadable;
    AnalyseAndDraw();
}

/// False if the cell's text is no value, now or since an earlier reading.
bool MainWindow::ReadCell(int slot, int row) {
    const QTableWidgetItem* const item = valueGrid->item(row, slot);
    for (const RejectedCell& reject : rejected)
        if (reject.At.Slot == slot && reject.At.Row == row && reject.Text == item->text())
            return false;
    // The exact value stands behind the program's own text, unless it was typed anew.
    if (item->text() == item->data(Qt::UserRole).toString()) return true;
    return TryParsePartValue(item->text().toStdString(),
                             calculation.Design.Elements[slot].Value(row));
}

std::string MainWindow::RejectedText() const {
    std::string text;
    const auto designators = DesignatorsOf(calculation.Design);
    for (const RejectedCell& reject : rejected) {
        const CircuitElement& element = calculation.Design.Elements[reject.At.Slot];
        text += designators[reject.At.Slot][reject.At.Row] + ": \"" + reject.Text.toStdString() +
                "\" is no value, " + CellOf(element, reject.At.Row).ToolTip + " is used.  ";
    }
    return text;
}

void MainWindow::AnalyseAndDraw() {
    drawing.stop();
    AnalyseAsItStands(calculation, report);
    ShowInputs();
    Draw();
}

}  // namespace ladderwise
