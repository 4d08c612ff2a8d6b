// The input panel of the main window: boxes, spin buttons, radio buttons and check boxes, in the
// order in which an engineer works: what to design, which parts, which traces.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QWidget>
#include <vector>

#include "controls/InputBinder.h"

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

    /// The two controls of a stored reference.
    void EnableReference(bool stored);

    QLabel* PolesLabel;
    QWidget* BandWidthUnits;  ///< "BW MHz" and "BW %"
    QPushButton* CalcButton;

    QLabel* ToleranceLabel;
    QLabel* IndQLabel;
    QLabel* IndCLabel;
    QLabel* CapRLabel;
    QLabel* CapLLabel;

    QAbstractButton* PlotPulseBox;
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
    std::vector<QWidget*> tabOrder;  ///< in the order in which an engineer works
};

}  // namespace ladderwise
