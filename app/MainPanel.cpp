// The input panel.
#include "app/MainPanel.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>

#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr int BoxWidthInDigits = 8;  ///< of an edit box, in widths of the digit 0
constexpr int Gap = 6;               ///< pixels between controls

/// A click leaves the focus where it is: a box that lost it would be read once for the focus and
/// once more for the click, and the second reading would take the mark off a replaced entry.
template <typename Button>
Button* AddButton(QWidget* parent, const char* name, const char* caption, const char* tip) {
    auto* const button = new Button(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

QGridLayout* GridOf(QGroupBox* group) {
    auto* const grid = new QGridLayout(group);
    grid->setContentsMargins(Gap, 2, Gap, Gap);
    grid->setHorizontalSpacing(Gap);
    grid->setVerticalSpacing(3);
    return grid;
}

NumberEdit* AddBox(QWidget* parent, const char* name) {
    auto* const box = new NumberEdit(QString::fromLatin1(name), parent);
    box->setFixedWidth(box->fontMetrics().horizontalAdvance('0') * BoxWidthInDigits);
    return box;
}

/// Puts label, box and (if any) arrows into three neighbouring columns of a row; the label's
/// mnemonic moves the focus to the box.
void PlaceBox(QGridLayout* grid, int row, int column, QLabel* label, NumberEdit* box,
              UpDownButton* arrows) {
    label->setBuddy(box);
    grid->addWidget(label, row, column, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(box, row, column + 1);
    if (arrows) {
        arrows->setFixedHeight(box->sizeHint().height());
        grid->addWidget(arrows, row, column + 2);
    }
}

QLabel* AddLabel(QWidget* parent, const char* name, const char* caption) {
    auto* const label = new QLabel(QString::fromLatin1(caption), parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

}  // namespace

MainPanel::MainPanel(QWidget* parent) : QWidget(parent) {
    setObjectName("MainPanel");
    setAutoFillBackground(true);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(Gap, 2, Gap, 2);
    row->setSpacing(Gap);
    row->addWidget(BuildDesignGroup());
    row->addWidget(BuildPartsGroup());
    row->addWidget(BuildTracesGroup());
    row->addStretch(1);
    BuildHiddenControls();
    SetTabOrder();
}

QWidget* MainPanel::BuildDesignGroup() {
    auto* const group = new QGroupBox("Filter", this);
    QGridLayout* const grid = GridOf(group);
    F0Box = AddBox(group, "F0Box");
    F0UpDown = new UpDownButton("F0UpDown", group);
    PlaceBox(grid, 0, 0, AddLabel(group, "F0Label", "Fo  &MHz"), F0Box, F0UpDown);
    BandWidthBox = AddBox(group, "BandWidthBox");
    BandWidthUpDown = new UpDownButton("BandWidthUpDown", group);
    PlaceBox(grid, 1, 0, AddLabel(group, "BandWidthLabel", "Band&width"), BandWidthBox,
             BandWidthUpDown);
    grid->addLayout(BuildBandWidthUnits(group), 2, 0, 1, 3);
    NumPolesBox = AddBox(group, "NumPolesBox");
    NumPolesUpDown = new UpDownButton("NumPolesUpDown", group);
    PolesLabel = AddLabel(group, "PolesLabel", "&N Poles");
    PlaceBox(grid, 3, 0, PolesLabel, NumPolesBox, NumPolesUpDown);
    RSBox = AddBox(group, "RSBox");
    PlaceBox(grid, 0, 4, AddLabel(group, "RSLabel", "R So&urce"), RSBox, nullptr);
    RLBox = AddBox(group, "RLBox");
    PlaceBox(grid, 1, 4, AddLabel(group, "RLLabel", "R &Load"), RLBox, nullptr);
    RippleBox = AddBox(group, "RippleBox");
    RippleUpDown = new UpDownButton("RippleUpDown", group);
    RippleLabel = AddLabel(group, "RippleLabel", "R&ipple  dB");
    PlaceBox(grid, 2, 4, RippleLabel, RippleBox, RippleUpDown);
    EllipticAttenBox = AddBox(group, "EllipticAttenBox");
    EllipticAttenUpDown = new UpDownButton("EllipticAttenUpDown", group);
    EllipticAttenLabel = AddLabel(group, "EllipticAttenLabel", "Elliptic A&tten");
    PlaceBox(grid, 3, 4, EllipticAttenLabel, EllipticAttenBox, EllipticAttenUpDown);
    CalcButton =
        AddButton<QPushButton>(group, "CalcButton", "&Calc", "Reads every box and recalculates");
    CalcButton->setDefault(true);
    CalcButton->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
    grid->addWidget(CalcButton, 0, 8, 2, 1);
    for (const int spacer : {3, 7})
        grid->setColumnMinimumWidth(spacer, Gap);
    return group;
}

QLayout* MainPanel::BuildBandWidthUnits(QWidget* group) {
    BWMHzButton = AddButton<QRadioButton>(group, "BWMHzButton", "BW MHz", "Bandwidth in MHz");
    BWPercentButton =
        AddButton<QRadioButton>(group, "BWPercentButton", "BW %", "Bandwidth in % of Fo");
    auto* const units = new QHBoxLayout;
    units->addStretch(1);
    units->addWidget(BWMHzButton);
    units->addWidget(BWPercentButton);
    auto* const choice = new QButtonGroup(group);
    choice->addButton(BWMHzButton);
    choice->addButton(BWPercentButton);
    return units;
}

QWidget* MainPanel::BuildPartsGroup() {
    auto* const group = new QGroupBox("Parts", this);
    QGridLayout* const grid = GridOf(group);
    IdealPartsButton = AddButton<QRadioButton>(group, "IdealPartsButton", "Ideal Parts",
                                               "Analyse with ideal inductors and capacitors");
    RealPartsButton =
        AddButton<QRadioButton>(group, "RealPartsButton", "Real Parts",
                                "Analyse with the losses and parasitics of the part definitions");
    DeEmbedButton = AddButton<QRadioButton>(
        group, "DeEmbedButton", "DeEmbed",
        "As Real Parts, with every L and C reduced to make up for its parasitics at Fo");
    grid->addWidget(IdealPartsButton, 0, 0);
    grid->addWidget(RealPartsButton, 1, 0);
    grid->addWidget(DeEmbedButton, 2, 0);
    StdValuesBox = AddButton<QCheckBox>(group, "StdValuesBox", "Std LC Values",
                                        "Snap every L and C to its standard series");
    WorstCaseBox =
        AddButton<QCheckBox>(group, "WorstCaseBox", "Worst Case",
                             "Overlay runs with every L and C at random within its tolerance");
    ToleranceLabel = AddLabel(group, "ToleranceLabel", "");
    ToleranceLabel->setToolTip("Tolerances; set them in Part Definitions");
    grid->addWidget(StdValuesBox, 0, 1);
    grid->addWidget(WorstCaseBox, 1, 1);
    grid->addWidget(ToleranceLabel, 2, 1);
    IndQLabel = AddLabel(group, "IndQLabel", "");
    IndCLabel = AddLabel(group, "IndCLabel", "");
    CapRLabel = AddLabel(group, "CapRLabel", "");
    CapLLabel = AddLabel(group, "CapLLabel", "");
    int row = 0;
    for (QLabel* const label : {IndQLabel, IndCLabel, CapRLabel, CapLLabel})
        grid->addWidget(label, row++, 2);
    PercentChangeBox = AddBox(group, "PercentChangeBox");
    QLabel* const percentLabel = AddLabel(group, "PercentChangeLabel", "% Chan&ge");
    percentLabel->setBuddy(PercentChangeBox);
    grid->addWidget(percentLabel, 3, 0, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(PercentChangeBox, 3, 1);
    grid->setColumnMinimumWidth(2, group->fontMetrics().horizontalAdvance("Cap Ro = 0.000000 ohm"));
    return group;
}

QWidget* MainPanel::BuildTracesGroup() {
    auto* const group = new QGroupBox("Traces", this);
    QGridLayout* const grid = GridOf(group);
    const auto trace = [&](const char* name, const char* caption, const char* tip, int row,
                           int column) {
        auto* const box = AddButton<QCheckBox>(group, name, caption, tip);
        grid->addWidget(box, row, column);
        return box;
    };
    const auto paint = [](QCheckBox* box, TraceKind kind) {
        QPalette colours = box->palette();
        colours.setColor(QPalette::Active, QPalette::WindowText,
                         ToQColor(TraceColour(kind, false)));
        colours.setColor(QPalette::Inactive, QPalette::WindowText,
                         ToQColor(TraceColour(kind, false)));
        box->setPalette(colours);
    };
    PlotMagBox = trace("PlotMagBox", "Mag 10 dB", "Magnitude, 10 dB per division", 0, 0);
    PlotMag1dBBox =
        trace("PlotMag1dBBox", "Mag   1 dB",
              "Magnitude, 1 dB per division: +1 dB at the top, -9 dB at the bottom", 1, 0);
    PlotReturnLossBox =
        trace("PlotReturnLossBox", "Return Loss", "Return loss, 10 dB per division", 2, 0);
    PlotPhaseBox = trace("PlotPhaseBox", "Phase", "Phase, +180 to -180 degrees", 3, 0);
    PlotGDBox = trace("PlotGDBox", "Group Delay", "Group delay", 0, 1);
    AutoScaleCheckBox = trace(
        "AutoScaleCheckBox", "Auto Scale",
        "Choose the scale of the group delay from the response; off: type it at the plot", 1, 1);
    PlotPulseBox = trace("PlotPulseBox", "Sq Pulse",
                         "Will show the response to a square pulse (not built yet)", 2, 1);
    PlotReferenceBox = trace("PlotReferenceBox", "Plot Ref",
                             "Will draw the stored reference design (not built yet)", 3, 1);
    SetRefButton =
        AddButton<QPushButton>(group, "SetRefButton", "Set Ref",
                               "Will store this design as the reference (not built yet)");
    ExchangeRefButton =
        AddButton<QPushButton>(group, "ExchangeRefButton", "Exhange Ref",
                               "Will exchange this design and the reference (not built yet)");
    grid->addWidget(SetRefButton, 0, 2);
    grid->addWidget(ExchangeRefButton, 1, 2);
    paint(PlotMagBox, TraceKind::Mag10dB);
    paint(PlotMag1dBBox, TraceKind::Mag1dB);
    paint(PlotReturnLossBox, TraceKind::ReturnLoss);
    paint(PlotPhaseBox, TraceKind::Phase);
    paint(PlotGDBox, TraceKind::GroupDelay);
    QSizePolicy keepsPlace = AutoScaleCheckBox->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    AutoScaleCheckBox->setSizePolicy(keepsPlace);
    for (QWidget* const later : std::initializer_list<QWidget*>{PlotPulseBox, PlotReferenceBox,
                                                                SetRefButton, ExchangeRefButton})
        later->setEnabled(false);
    return group;
}

void MainPanel::BuildHiddenControls() {
    QLabel* const reminder =
        AddLabel(this, "ReminderLabel",
                 "REMEMBER Button Names are stored in the circ file so they can't be changed.");
    reminder->setStyleSheet("color: red");
    QLabel* const font = AddLabel(this, "FontLabel", "This is the font label for the Bitmap");
    auto* const sampling = new QLineEdit("Here for FileReadSave.cpp", this);
    sampling->setObjectName("SamplingFrequencyBox");
    for (QWidget* const hidden : std::initializer_list<QWidget*>{reminder, font, sampling})
        hidden->hide();
}

void MainPanel::SetTabOrder() {
    QWidget* const order[] = {F0Box,
                              BandWidthBox,
                              BWMHzButton,
                              BWPercentButton,
                              NumPolesBox,
                              RSBox,
                              RLBox,
                              RippleBox,
                              EllipticAttenBox,
                              CalcButton,
                              IdealPartsButton,
                              RealPartsButton,
                              DeEmbedButton,
                              PercentChangeBox,
                              StdValuesBox,
                              WorstCaseBox,
                              PlotMagBox,
                              PlotMag1dBBox,
                              PlotReturnLossBox,
                              PlotPhaseBox,
                              PlotGDBox,
                              AutoScaleCheckBox,
                              PlotPulseBox,
                              PlotReferenceBox,
                              SetRefButton,
                              ExchangeRefButton};
    for (std::size_t i = 1; i < std::size(order); ++i)
        QWidget::setTabOrder(order[i - 1], order[i]);
}

}  // namespace ladderwise
