// The input panel.
#include "app/MainPanel.h"

#include <QButtonGroup>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QIcon>
#include <QLineEdit>
#include <QPainter>
#include <QPixmap>
#include <algorithm>

#include "analysis/PartValues.h"
#include "display/PlotPainter.h"
#include "numbers/Formatfunctions.h"

namespace ladderwise {

namespace {

constexpr int Gap = 6;                      ///< pixels between controls
constexpr double FontStep = 0.25;           ///< points
constexpr double SmallestFontScale = 0.75;  ///< of the normal font
constexpr int SwatchDensity = 2;            ///< pixels of a swatch per logical pixel

QGridLayout* GridOf(QGroupBox* group) {
    auto* const grid = new QGridLayout(group);
    grid->setContentsMargins(Gap, 2, Gap, Gap);
    grid->setHorizontalSpacing(Gap);
    grid->setVerticalSpacing(3);
    return grid;
}

QLabel* AddLabel(QWidget* parent, const char* name, const char* caption) {
    auto* const label = new QLabel(QString::fromLatin1(caption), parent);
    label->setObjectName(QString::fromLatin1(name));
    return label;
}

/// A button that is no input: as those of the inputs, it takes no focus by a click.
template <typename Button>
Button* AddButton(QWidget* parent, const char* name, const char* caption, const char* tip) {
    auto* const button = new Button(QString::fromLatin1(caption), parent);
    button->setObjectName(QString::fromLatin1(name));
    button->setToolTip(QString::fromLatin1(tip));
    button->setFocusPolicy(Qt::TabFocus);
    return button;
}

/// A swatch in the colour of its trace beside the caption, which any desktop theme leaves readable.
void AddSwatch(QAbstractButton* box, TraceKind kind) {
    const int side = box->fontMetrics().ascent();
    QPixmap swatch(QSize(side, side) * SwatchDensity);
    swatch.setDevicePixelRatio(SwatchDensity);
    swatch.fill(QColor(160, 160, 160));  // an outline: dark colours on dark desktops
    QPainter painter(&swatch);
    painter.fillRect(1, 1, side - 2, side - 2, ToQColor(TraceColour(kind)));
    painter.end();
    box->setIcon(QIcon(swatch));
    box->setIconSize(QSize(side, side));
}

/// The check box of a trace and where it stands.
struct TracePlace {
    ChoiceId Id;
    TraceKind Kind;
    int Row;
    int Column;
};
constexpr TracePlace tracePlaces[] = {
    {ChoiceId::TraceMag10dB, TraceKind::Mag10dB, 0, 0},
    {ChoiceId::TraceMag1dB, TraceKind::Mag1dB, 1, 0},
    {ChoiceId::TraceReturnLoss, TraceKind::ReturnLoss, 2, 0},
    {ChoiceId::TracePhase, TraceKind::Phase, 3, 0},
    {ChoiceId::TraceGroupDelay, TraceKind::GroupDelay, 0, 1},
    {ChoiceId::TracePulse, TraceKind::Pulse, 2, 1},
};

}  // namespace

MainPanel::MainPanel(InputBinder& binder, QWidget* parent) : QWidget(parent), binder(binder) {
    setObjectName("MainPanel");
    setAutoFillBackground(true);
    auto* const row = new QHBoxLayout(this);
    row->setContentsMargins(Gap, 2, Gap, 2);
    row->setSpacing(Gap);
    row->addWidget(BuildDesignGroup());
    row->addWidget(BuildPartsGroup());
    row->addWidget(BuildTracesGroup());
    row->addStretch(1);
    AlignRows();
    BuildHiddenControls();
    SetTabOrder();
}

void MainPanel::AddInput(QGridLayout* grid, int row, int column, InputId id) {
    QWidget* const group = grid->parentWidget();
    NumberEdit* const box = binder.AddBox(group, id);
    grid->addWidget(binder.AddLabel(group, id), row, column, Qt::AlignRight | Qt::AlignVCenter);
    grid->addWidget(box, row, column + 1);
    const bool arrows = binder.HasArrows(id);
    if (arrows) grid->addWidget(binder.AddArrows(group, id), row, column + 2);
    // The bandwidth's unit is a choice below its box.
    QLabel* const unit = id == InputId::BandWidth ? nullptr : binder.AddUnit(group, id);
    if (unit) grid->addWidget(unit, row, column + (arrows ? 3 : 2), 1, arrows ? 1 : 2);
    tabOrder.push_back(box);
}

QWidget* MainPanel::BuildDesignGroup() {
    auto* const group = new QGroupBox("Filter", this);
    QGridLayout* const grid = GridOf(group);
    AddInput(grid, 0, 0, InputId::F0);
    AddInput(grid, 1, 0, InputId::BandWidth);
    bandWidthUnits = BuildBandWidthUnits(group);
    grid->addWidget(bandWidthUnits, 2, 0, 1, 3, Qt::AlignRight);
    AddInput(grid, 3, 0, InputId::NumPoles);
    polesLabel = group->findChild<QLabel*>("NumPolesLabel");
    polesLabel->setObjectName("PolesLabel");
    AddInput(grid, 0, 4, InputId::RSource);
    AddInput(grid, 1, 4, InputId::RLoad);
    AddInput(grid, 2, 4, InputId::Ripple);
    AddInput(grid, 3, 4, InputId::EllipticAtten);
    CalcButton =
        AddButton<QPushButton>(group, "CalcButton", "&Calc", "Reads every box and recalculates");
    CalcButton->setDefault(true);
    CalcButton->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Minimum);
    grid->addWidget(CalcButton, 0, 8, 2, 1);
    tabOrder.push_back(CalcButton);
    for (const int spacer : {3, 7})
        grid->setColumnMinimumWidth(spacer, Gap);
    return group;
}

QWidget* MainPanel::BuildBandWidthUnits(QWidget* group) {
    auto* const units = new QWidget(group);
    auto* const row = new QHBoxLayout(units);
    row->setContentsMargins(0, 0, 0, 0);
    auto* const choice = new QButtonGroup(units);
    for (const int code : {BandWidthInMHz, BandWidthInPercent}) {
        QAbstractButton* const button = binder.AddChoice(units, ChoiceId::BandWidthUnit, code);
        row->addWidget(button);
        choice->addButton(button);
        tabOrder.push_back(button);
    }
    return units;
}

QWidget* MainPanel::BuildPartsGroup() {
    auto* const group = new QGroupBox("Parts", this);
    QGridLayout* const grid = GridOf(group);
    for (const PartChoice parts :
         {PartChoice::IdealParts, PartChoice::RealParts, PartChoice::DeEmbed}) {
        const int code = static_cast<int>(parts);
        tabOrder.push_back(binder.AddChoice(group, ChoiceId::Parts, code));
        grid->addWidget(tabOrder.back(), code, 0);
    }
    AddInput(grid, 3, 0, InputId::PercentChange);
    toleranceLabel = AddLabel(group, "ToleranceLabel", "");
    toleranceLabel->setToolTip("Tolerances; set them in Part Definitions");
    const auto place = [&](QWidget* control, int row, int column) {
        grid->addWidget(control, row, column);
        tabOrder.push_back(control);
    };
    place(binder.AddChoice(group, ChoiceId::StdLCValues), 0, 1);
    QComboBox* const methods = binder.AddKinds(group, ChoiceId::StdLCValues, "StdMethodBox");
    methods->setAccessibleName("Choice of the standard values");
    place(methods, 1, 1);
    place(binder.AddChoice(group, ChoiceId::Absorb), 2, 1);
    place(binder.AddChoice(group, ChoiceId::FitWidth), 2, 2);
    place(binder.AddChoice(group, ChoiceId::WorstCase), 0, 2);
    grid->addWidget(toleranceLabel, 1, 2);
    indQLabel = AddLabel(group, "IndQLabel", "");
    indCLabel = AddLabel(group, "IndCLabel", "");
    capRLabel = AddLabel(group, "CapRLabel", "");
    capLLabel = AddLabel(group, "CapLLabel", "");
    int row = 0;
    for (QLabel* const label : {indQLabel, indCLabel, capRLabel, capLLabel})
        grid->addWidget(label, row++, 3);
    return group;
}

QWidget* MainPanel::BuildTracesGroup() {
    auto* const group = new QGroupBox("Traces", this);
    QGridLayout* const grid = GridOf(group);
    const auto place = [&](QWidget* control, int row, int column) {
        grid->addWidget(control, row, column);
        tabOrder.push_back(control);
    };
    for (const TracePlace& trace : tracePlaces) {
        QAbstractButton* const box = binder.AddChoice(group, trace.Id);
        place(box, trace.Row, trace.Column);
        if (trace.Id == ChoiceId::TracePulse) plotPulseBox = box;
        AddSwatch(box, trace.Kind);
        if (trace.Id != ChoiceId::TraceGroupDelay) continue;
        AutoScaleCheckBox = binder.AddChoice(group, ChoiceId::AutoScale);
        place(AutoScaleCheckBox, 1, 1);
    }
    PlotReferenceBox = AddButton<QCheckBox>(group, "PlotReferenceBox", "Plot &Ref",
                                            "Draws the stored reference design beside this one");
    SetRefButton = AddButton<QPushButton>(group, "SetRefButton", "Se&t Ref",
                                          "Stores this design as the reference to compare with");
    ExchangeRefButton = AddButton<QPushButton>(group, "ExchangeRefButton", "E&xhange Ref",
                                               "Exchanges this design and the reference");
    place(PlotReferenceBox, 3, 1);
    place(SetRefButton, 0, 2);
    place(ExchangeRefButton, 1, 2);
    QSizePolicy keepsPlace = AutoScaleCheckBox->sizePolicy();
    keepsPlace.setRetainSizeWhenHidden(true);
    AutoScaleCheckBox->setSizePolicy(keepsPlace);
    ShowReference(false, false);
    return group;
}

void MainPanel::ShowReference(bool stored, bool shown) {
    const QSignalBlocker blocker(PlotReferenceBox);
    PlotReferenceBox->setChecked(shown);
    for (QWidget* const control :
         std::initializer_list<QWidget*>{PlotReferenceBox, ExchangeRefButton})
        EnableFor(control, stored, "after Set Ref");
}

void MainPanel::ShowControls(const ControlStates& states, const DesignInputs& inputs) {
    const InputRow& bandWidth = RowOf(InputId::BandWidth, inputs);
    for (auto* const unit : bandWidthUnits->findChildren<QAbstractButton*>())
        EnableFor(unit, IsEnabled(bandWidth, inputs), bandWidth.WhenDisabled);
    EnableFor(plotPulseBox, states.PulseEnabled, "not in a worst case");
    polesLabel->setText(states.CountsTraps ? "&N Traps" : "&N Poles");
}

void MainPanel::ShowPartModel(const PartModel& model) {
    constexpr int digits = 3;  // significant
    const auto show = [](QLabel* label, const char* caption, double value, const char* unit) {
        label->setText(caption + QString::fromStdString(FormatPlain(value, digits)) + unit);
    };
    show(indQLabel, "Ind Qo =  ", model.IndQ, "");
    show(indCLabel, "Ind C  =   ", model.IndC * 1e12, " pF");
    show(capRLabel, "Cap Ro = ", model.CapR, " ohm");
    show(capLLabel, "Cap L  =  ", model.CapL * 1e9, " nH");
    toleranceLabel->setText(QString::fromStdString(ToleranceText(model)));
}

void MainPanel::FitInto(int width) {
    const double normal = font().pointSizeF();
    const auto boxes = findChildren<NumberEdit*>();
    for (double size = normal; minimumSizeHint().width() > width; size -= FontStep) {
        if (size < SmallestFontScale * normal) return;
        QFont smaller = font();
        smaller.setPointSizeF(size);
        setFont(smaller);
        for (NumberEdit* const box : boxes)
            InputBinder::SetWidth(box);
        AlignRows();
        layout()->activate();
    }
}

/// One height for the rows of all groups, so that they stand on common lines, and one width for the
/// labels that change.
void MainPanel::AlignRows() {
    const auto groups = findChildren<QGroupBox*>(Qt::FindDirectChildrenOnly);
    int height = 0;
    for (const QGroupBox* const group : groups)
        for (const auto* const control : group->findChildren<QWidget*>(Qt::FindDirectChildrenOnly))
            if (control != CalcButton) height = std::max(height, control->sizeHint().height());
    for (const QGroupBox* const group : groups) {
        auto* const grid = static_cast<QGridLayout*>(group->layout());
        for (int row = 0; row < grid->rowCount(); ++row)
            grid->setRowMinimumHeight(row, height);
        // The labels of the part models must not move the traces.
        if (group == capRLabel->parentWidget())
            grid->setColumnMinimumWidth(3, fontMetrics().horizontalAdvance("Cap Ro = 0.0000 ohm"));
    }
}

void MainPanel::BuildHiddenControls() {
    QLabel* const reminder =
        AddLabel(this, "ReminderLabel",
                 "REMEMBER Button Names are stored in the circ file so they can't be changed.");
    reminder->setStyleSheet("color: red");
    QLabel* const font = AddLabel(this, "FontLabel", "This is the font label for the Bitmap");
    auto* const sampling = new QLineEdit("Here for FileReadSave.cpp", this);
    sampling->setObjectName("SamplingFrequencyBox");
    sampling->setAccessibleName("Sampling frequency");
    for (QWidget* const hidden : std::initializer_list<QWidget*>{reminder, font, sampling})
        hidden->hide();
}

void MainPanel::SetTabOrder() {
    for (std::size_t i = 1; i < tabOrder.size(); ++i)
        QWidget::setTabOrder(tabOrder[i - 1], tabOrder[i]);
}

}  // namespace ladderwise
