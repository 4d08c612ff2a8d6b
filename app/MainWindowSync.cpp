// The main window: from its controls to the inputs and back, control states, tool tips, status.
#include <QTableWidget>

#include "analysis/PartValues.h"
#include "app/BitMapView.h"
#include "app/MainWindow.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Notes.h"
#include "windows/ElidedLabel.h"
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

namespace {

constexpr int LabelDigits = 3;  ///< significant digits of the part-model labels

std::string WithUnit(const char* label, double value, const char* unit) {
    return std::string(label) + FormatPlain(value, LabelDigits) + unit;
}

}  // namespace

void MainWindow::StoreInputs() {
    binder.StoreInputs();
    partDefinitions->Binder().StoreInputs();
    norton->StoreInputs();
}

void MainWindow::ShowInputs() {
    binder.ShowInputs(calculation.Design);
    partDefinitions->Binder().ShowInputs(calculation.Design);
    norton->ShowInputs();
    ShowLabels();
}

void MainWindow::ShowLabels() {
    const PartModel& model = calculation.Design.PartModel;
    const auto show = [](QLabel* label, const std::string& text) {
        label->setText(QString::fromStdString(text));
    };
    show(panel->IndQLabel, WithUnit("Ind Qo =  ", model.IndQ, ""));
    show(panel->IndCLabel, WithUnit("Ind C  =   ", model.IndC * 1e12, " pF"));
    show(panel->CapRLabel, WithUnit("Cap Ro = ", model.CapR, " ohm"));
    show(panel->CapLLabel, WithUnit("Cap L  =  ", model.CapL * 1e9, " nH"));
    show(panel->ToleranceLabel, ToleranceText(model));
}

void MainWindow::ShowStatus() {
    const StatusLine status = DescribeStatus(calculation);
    statusLabel->SetText(
        QString::fromStdString(
            status.Text.empty() ? DesignTitle(calculation.Design) + ", " +
                                      std::to_string(calculation.Design.NumElements) + " elements"
                                : status.Text),
        status.Warning);
}

void MainWindow::SetControlStates() {
    DesignInputs& inputs = calculation.Inputs;
    if (inputs.Pass() != PassType::Norton) norton->close();
    ForbidEllipticCoupling(inputs, report);
    const ControlStates states = StatesFor(inputs, ellipticPanel->isVisibleTo(client));
    panel->BandWidthUnits->setEnabled(IsEnabled(RowOf(InputId::BandWidth, inputs), inputs));
    panel->PolesLabel->setText(states.CountsTraps ? "&N Traps" : "&N Poles");
    ellipticPanel->setVisible(states.TrapPanelVisible);
}

}  // namespace ladderwise
