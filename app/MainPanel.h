// The input panel of the main window: boxes, spin buttons, radio buttons and check boxes, in the
// order in which an engineer works: what to design, which parts, which traces.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "controls/InputBinder.h"
#include "pipeline/Choices.h"

class QGridLayout;

namespace ladderwise {

/// The panel owns its controls, which `binder` makes and binds; those that are no plain input are
/// members. Every control carries its component name as object name.
class MainPanel : public QWidget {
    Q_OBJECT

public:
    explicit MainPanel(InputBinder& binder, QWidget* parent = nullptr);

    /// Makes the font smaller, but not much, where the panel would be wider than that.
    void FitInto(int width);

    /// The two controls of a stored reference, and whether it is plotted.
    void ShowReference(bool stored, bool shown);

    /// What choices enable beyond the rows of the inputs.
    void ShowControls(const ControlStates& states, const DesignInputs& inputs);

    /// The labels of the part models.
    void ShowPartModel(const PartModel& model);

    QPushButton* CalcButton;
    QCheckBox* PlotReferenceBox;
    QAbstractButton* AutoScaleCheckBox;
    QPushButton* SetRefButton;
    QPushButton* ExchangeRefButton;

private:
    QWidget* BuildDesignGroup();
    QWidget* BuildBandWidthUnits(QWidget* group);
    QWidget* BuildPartsGroup();
    QWidget* BuildTracesGroup();
    void AddInput(QGridLayout* grid, int row, int column, InputId id);
    void BuildHiddenControls();
    void AlignRows();
    void SetTabOrder();

    InputBinder& binder;
    QLabel* polesLabel;
    QWidget* bandWidthUnits;  ///< "BW MHz" and "BW %"
    QLabel* toleranceLabel;
    QLabel* indQLabel;
    QLabel* indCLabel;
    QLabel* capRLabel;
    QLabel* capLLabel;
    QAbstractButton* plotPulseBox;
    std::vector<QWidget*> tabOrder;  ///< in the order in which an engineer works
};

}  // namespace ladderwise
