// The main window: from its controls to the inputs and back, control states, tool tips, status.
#include <QTableWidget>

#include "analysis/PartValues.h"
#include "app/BitMapView.h"
#include "app/MainWindow.h"
#include "display/PlotFrame.h"
#include "numbers/Formatfunctions.h"
#include "pipeline/Notes.h"
#include "windows/CheckedNames.h"
#include "windows/ElidedLabel.h"
#include "windows/PartDefinitionsWindow.h"

namespace ladderwise {

namespace {

constexpr int ToolTipDigits = 11;  ///< significant digits of the value in use
constexpr int LabelDigits = 3;     ///< significant digits of the part-model labels

/// "Bandwidth: 1 to 398 MHz. In use: 40 MHz".
QString BoxTip(const char* what, const BoxLimits& limits, const char* unit, double inUse) {
    const std::string value = FormatPlain(inUse, ToolTipDigits);
    return QString("%1: %2%3. In use: %4%3")
        .arg(QString::fromLatin1(what), QString::fromStdString(RangeText(limits)),
             *unit ? " " + QString::fromLatin1(unit) : QString(), QString::fromStdString(value));
}

std::string WithUnit(const char* label, double value, const char* unit) {
    return std::string(label) + FormatPlain(value, LabelDigits) + unit;
}

bool IsChecked(const MenuEntry& entry, const Calculation& calculation) {
    const FilterDesign& design = calculation.Design;
    const bool prototype = calculation.Inputs.LowPassPrototype;
    switch (entry.Choice) {
        case MenuChoice::PassType:
            return !prototype && entry.Code == static_cast<int>(design.PassType);
        case MenuChoice::Prototype:
            return prototype;
        case MenuChoice::Response:
            return entry.Code == static_cast<int>(design.ResponseType);
        case MenuChoice::Form:
            return (entry.Code != 0) == design.FormCLC;
        case MenuChoice::Sweep:
            return entry.Code == static_cast<int>(design.SweepType);
        case MenuChoice::Command:
            return false;
    }
    return false;
}

}  // namespace

void MainWindow::StoreInputs() {
    DesignInputs& inputs = calculation.Inputs;
    for (const BoundBox& bound : boxes)
        (inputs.*bound.Box).Text = bound.Edit->TakeText();
    for (const BoundSwitch& bound : switches)
        *bound.Value = bound.Button->isChecked();
    inputs.Parts = panel->IdealPartsButton->isChecked()  ? PartChoice::IdealParts
                   : panel->RealPartsButton->isChecked() ? PartChoice::RealParts
                                                         : PartChoice::DeEmbed;
    partDefinitions->StoreInputs();
}

void MainWindow::ShowInputs() {
    const DesignInputs& inputs = calculation.Inputs;
    for (const BoundBox& bound : boxes)
        bound.Edit->Show(inputs.*bound.Box);
    for (const BoundSwitch& bound : switches) {
        const QSignalBlocker blocker(bound.Button);
        bound.Button->setChecked(*bound.Value);
    }
    SetButtonCheckedSilently(panel, "IdealPartsButton", inputs.Parts == PartChoice::IdealParts);
    SetButtonCheckedSilently(panel, "RealPartsButton", inputs.Parts == PartChoice::RealParts);
    SetButtonCheckedSilently(panel, "DeEmbedButton", inputs.Parts == PartChoice::DeEmbed);
    SetButtonCheckedSilently(panel, "BWMHzButton", !inputs.BandWidthInPercent);
    SetButtonCheckedSilently(panel, "BWPercentButton", inputs.BandWidthInPercent);
    ShowMenuChecks();
    ShowLabels();
    ShowToolTips();
    partDefinitions->ShowInputs();
}

void MainWindow::ShowMenuChecks() {
    for (const MenuAction& item : menuActions)
        if (item.Entry.Choice != MenuChoice::Command)
            SetMenuCheckedSilently(this, item.Action->objectName(),
                                   IsChecked(item.Entry, calculation));
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

void MainWindow::ShowToolTips() {
    const DesignInputs& inputs = calculation.Inputs;
    const FilterDesign& design = calculation.Design;
    const bool percent = inputs.BandWidthInPercent;
    panel->F0Box->setToolTip(
        BoxTip("Corner or centre frequency", F0Limits(inputs), "MHz", design.F0 * 1e-6));
    panel->BandWidthBox->setToolTip(
        BoxTip("Bandwidth", BandWidthLimits(inputs, design), percent ? "%" : "MHz",
               percent ? design.BandWidth / design.F0 * 100.0 : design.BandWidth * 1e-6));
    panel->NumPolesBox->setToolTip(
        BoxTip(IsElliptic(design.ResponseType) ? "Number of traps" : "Number of poles",
               NumPolesLimits(), "", design.NumPoles));
    panel->RippleBox->setToolTip(BoxTip("Pass-band ripple", RippleLimits(), "dB", design.RippleDb));
    panel->EllipticAttenBox->setToolTip(
        BoxTip("Stop-band attenuation", EllipticAttenLimits(), "dB", design.EllipticAtten));
    panel->RSBox->setToolTip(
        BoxTip("Source resistance", ResistanceLimits(), "ohm", design.RSource));
    panel->RLBox->setToolTip(BoxTip("Load resistance", ResistanceLimits(), "ohm", design.RLoad));
    trapTypeBox->setToolTip(
        BoxTip("Form of the elliptic traps", TrapTypeLimits(), "", design.TrapType));
    panel->PercentChangeBox->setToolTip(
        QString("Step of F1 and F2 on a part value: %1 %. F1, F2: smaller, larger; F3: standard "
                "value; F5, F6: standard value, resonance kept")
            .arg(QString::fromStdString(RangeText(PercentChangeLimits()))));
    scaleBox->setToolTip(
        QString("Full scale of the group delay in seconds, a hundredth to a hundred times the "
                "automatic one. In use: %1")
            .arg(QString::fromStdString(FormatWithPrefix(design.GDFullScale, 5, "s"))));
}

void MainWindow::ShowStatus() {
    const StatusLine status = DescribeStatus(calculation);
    statusLabel->SetText(
        QString::fromStdString(
            status.Text.empty() ? PlotTitle(calculation.Design) + ", " +
                                      std::to_string(calculation.Design.NumElements) + " elements"
                                : status.Text),
        status.Warning);
}

void MainWindow::SetControlStates() {
    ForbidEllipticCoupling(calculation.Design, report);
    const ControlStates states =
        StatesFor(calculation.Inputs, calculation.Design, ellipticPanel->isVisibleTo(client));
    for (QWidget* const control :
         std::initializer_list<QWidget*>{panel->BandWidthBox, panel->BandWidthUpDown,
                                         panel->BWMHzButton, panel->BWPercentButton})
        control->setEnabled(states.BandWidthEnabled);
    for (QWidget* const control :
         std::initializer_list<QWidget*>{panel->RippleBox, panel->RippleUpDown, panel->RippleLabel})
        control->setEnabled(states.RippleEnabled);
    for (QWidget* const control : std::initializer_list<QWidget*>{
             panel->EllipticAttenBox, panel->EllipticAttenUpDown, panel->EllipticAttenLabel})
        control->setEnabled(states.AttenEnabled);
    panel->PolesLabel->setText(states.CountsTraps ? "&N Traps" : "&N Poles");
    ellipticPanel->setVisible(states.TrapPanelVisible);
}

}  // namespace ladderwise
