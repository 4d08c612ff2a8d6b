// The main window: from its controls to the inputs and back, control states, tool tips, status.
#include <QAction>
#include <QTableWidget>
#include <QToolButton>

#include "analysis/PartValues.h"
#include "app/MainWindow.h"
#include "controls/BitMapView.h"
#include "controls/ElidedLabel.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Notes.h"
#include "pipeline/ResultsText.h"
#include "windows/DirectCoupledWindow.h"
#include "windows/EllipticPanel.h"
#include "windows/MathErrWindow.h"
#include "windows/OptionsWindow.h"
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
    directCoupled->StoreInputs();
    norton->StoreInputs();
    options->Binder().StoreInputs();
}

void MainWindow::ShowInputs() {
    binder.ShowInputs(calculation.Design);
    partDefinitions->Binder().ShowInputs(calculation.Design);
    directCoupled->ShowInputs();
    ellipticPanel->ShowForms(calculation.Design);
    norton->ShowInputs();
    options->Binder().ShowInputs(calculation.Design);
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

void MainWindow::ShowCommands() {
    const auto command = [this](const char* name) { return findChild<QAction*>(name); };
    EnableFor(command("BringBackMenu"), calculation.Discarded.has_value(),
              "after a calculation that discarded values changed by hand");
    QAction* const fix = command("FixSeedMenu");
    fix->setChecked(calculation.FixedSeed.has_value());
    const bool known = calculation.FixedSeed || calculation.WorstCase.Runs > 0;
    const std::uint32_t seed = calculation.FixedSeed.value_or(calculation.WorstCase.Seed);
    fix->setText("&Fix Worst-Case Seed" + (known ? QString(" (%1)").arg(seed) : QString()));
}

void MainWindow::ShowStatus() {
    StatusLine status = DescribeStatus(calculation);
    if (!rejected.empty()) {
        status.Text = RejectedText() + status.Text;
        status.Warning = true;
    }
    const FilterDesign& design = calculation.Design;
    const ResponseResults& results = calculation.Results;
    const std::string line = ResultsLine(design, results);
    if (status.Text.empty() && line.empty()) status.Text = DesignTitle(design) + ", no elements";
    std::string list = status.Text;
    for (const auto& [name, value] : ReferenceShown() ? BesideReference(design, results, *reference)
                                                      : DescribeResults(design, results))
        list += (list.empty() ? "" : "\n") + name + ": " + value;
    if (!status.Text.empty() && !line.empty()) status.Text += "  ";
    statusLabel->SetText(QString::fromStdString(status.Text + line), status.Warning,
                         QString::fromStdString(list));
    const auto errors = MathErrors().ErrorCount();
    mathErrorButton->setText("Math errors: " + QString::number(errors));
    mathErrorButton->setVisible(errors > 0);
    mathErrors->Refresh();
}

void MainWindow::SetControlStates() {
    DesignInputs& inputs = calculation.Inputs;
    if (inputs.Pass() != PassType::DirectCoupled) directCoupled->close();
    if (inputs.Pass() != PassType::Norton) norton->close();
    ForbidEllipticCoupling(inputs, report);
    const ControlStates states = StatesFor(inputs, ellipticPanel->isVisibleTo(client));
    UpdateMarkerMenu(states.RefAtPeakEnabled);
    const InputRow& bandWidth = RowOf(InputId::BandWidth, inputs);
    for (auto* const unit : panel->BandWidthUnits->findChildren<QAbstractButton*>())
        EnableFor(unit, IsEnabled(bandWidth, inputs), bandWidth.WhenDisabled);
    EnableFor(panel->PlotPulseBox, states.PulseEnabled, "not in a worst case");
    panel->PolesLabel->setText(states.CountsTraps ? "&N Traps" : "&N Poles");
    ellipticPanel->setVisible(states.TrapPanelVisible);
}

}  // namespace ladderwise
