// The input panel of the main window: boxes, spin buttons, radio buttons and check boxes, in the
// order in which an engineer works: what to design, which parts, which traces.
#pragma once

#include <QCheckBox>
#include <QLabel>
#include <QPushButton>
#include <QRadioButton>
#include <QWidget>

#include "windows/NumberEdit.h"

class QGridLayout;
class QLayout;

namespace ladderwise {

/// The panel owns its controls; the main window connects them. Every control carries its component
/// name as object name.
class MainPanel : public QWidget {
    Q_OBJECT

public:
    explicit MainPanel(QWidget* parent = nullptr);

    NumberEdit* F0Box;
    NumberEdit* BandWidthBox;
    NumberEdit* NumPolesBox;
    NumberEdit* RippleBox;
    NumberEdit* EllipticAttenBox;
    NumberEdit* RSBox;
    NumberEdit* RLBox;
    NumberEdit* PercentChangeBox;
    UpDownButton* F0UpDown;
    UpDownButton* BandWidthUpDown;
    UpDownButton* NumPolesUpDown;
    UpDownButton* RippleUpDown;
    UpDownButton* EllipticAttenUpDown;
    QLabel* PolesLabel;
    QLabel* RippleLabel;
    QLabel* EllipticAttenLabel;
    QRadioButton* BWMHzButton;
    QRadioButton* BWPercentButton;
    QPushButton* CalcButton;

    QRadioButton* IdealPartsButton;
    QRadioButton* RealPartsButton;
    QRadioButton* DeEmbedButton;
    QCheckBox* StdValuesBox;
    QCheckBox* WorstCaseBox;
    QLabel* ToleranceLabel;
    QLabel* IndQLabel;
    QLabel* IndCLabel;
    QLabel* CapRLabel;
    QLabel* CapLLabel;

    QCheckBox* PlotMag1dBBox;
    QCheckBox* PlotMagBox;
    QCheckBox* PlotPhaseBox;
    QCheckBox* PlotGDBox;
    QCheckBox* PlotPulseBox;
    QCheckBox* PlotReturnLossBox;
    QCheckBox* PlotReferenceBox;
    QCheckBox* AutoScaleCheckBox;
    QPushButton* SetRefButton;
    QPushButton* ExchangeRefButton;

private:
    QWidget* BuildDesignGroup();
    QLayout* BuildBandWidthUnits(QWidget* group);
    QWidget* BuildPartsGroup();
    QWidget* BuildTracesGroup();
    void BuildHiddenControls();
    void SetTabOrder();
};

}  // namespace ladderwise
