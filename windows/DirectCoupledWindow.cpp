// The direct-coupled window.
#include "windows/DirectCoupledWindow.h"

#include <QApplication>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLabel>
#include <QMenuBar>
#include <QProxyStyle>
#include <QPushButton>
#include <QRadioButton>
#include <QTableWidget>

#include "controls/ElidedLabel.h"
#include "controls/FittedCells.h"
#include "controls/HelpButton.h"
#include "controls/ScrolledContent.h"
#include "directcoupled/Emission.h"
#include "pipeline/TankValues.h"
#include "resources/Resources.h"
#include "schematic/SchematicPainter.h"

namespace ladderwise {

namespace {

constexpr int NumberColumn = 0;
constexpr int ValueColumn = 1;
constexpr int PictureColumns = 3;
constexpr int TankNoteLines = 5;     ///< of what a tank is good for
constexpr int GridRowHeight = 22;    ///< pixels
constexpr int NumberWidth = 44;      ///< pixels of the column of tank numbers
constexpr int ValueWidth = 96;       ///< pixels of the column of values
constexpr int MenuPictureSize = 60;  ///< pixels: ten entries fit a small screen
const QColor replacedColour(192, 192, 192);

/// Menu entries with pictures of MenuPictureSize in place of the small icons of the style.
class PictureMenuStyle : public QProxyStyle {
public:
    int pixelMetric(PixelMetric metric, const QStyleOption* option,
                    const QWidget* widget) const override {
        if (metric == PM_SmallIconSize) return MenuPictureSize;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
};

QIcon PictureOf(ElementType type) {
    return QIcon(SchematicPath(type));
}

QLabel* AddPicture(QGridLayout* grid, int column, const char* name, const char* caption) {
    auto* const picture = new QLabel(grid->parentWidget());
    picture->setObjectName(QString::fromLatin1(name));
    picture->setFixedSize(SchematicWidth, SchematicHeight);
    auto* const label = new QLabel(QString::fromLatin1(caption), grid->parentWidget());
    // A wider caption would tear the pictures apart.
    label->setFont(FontThatFits(label->font(), label->text(), SchematicWidth, QWIDGETSIZE_MAX));
    grid->addWidget(picture, 0, column, Qt::AlignHCenter);
    grid->addWidget(label, 1, column, Qt::AlignHCenter);
    return picture;
}

void ShowPicture(QLabel* label, ElementType type) {
    label->setPixmap(PictureOf(type).pixmap(QSize(SchematicWidth, SchematicHeight)));
    label->setToolTip(QString::fromLatin1(InfoOf(type).Name));
}

/// The inverter that a choice of kind means beside tanks of a type.
ElementType InverterPicture(int code, TankType tank) {
    return ElementOf(InverterFor(static_cast<InverterType>(code), tank));
}

/// What a tank is good for.
QString TankText(int code) {
    return QString::fromLatin1(FindRow(ChoiceId::TankType, code)->Title);
}

}  // namespace

DirectCoupledWindow::DirectCoupledWindow(DesignInputs& inputs, const FilterDesign& design,
                                         const InputActions& actions, QWidget* parent)
    : QDialog(parent), inputs(inputs), design(design), binder(inputs, actions) {
    setObjectName("TDCForm");
    setWindowTitle("Direct Coupled Filters");
    auto* const scrolled = new ScrolledContent(this);
    auto* const grid = new QGridLayout(scrolled->Content());
    BuildMenus();
    grid->addWidget(BuildTankValues(), 0, 0, 3, 1);
    grid->addWidget(BuildPictures(), 0, 1);
    grid->addWidget(BuildBoxes(), 1, 1);
    grid->addWidget(BuildReadouts(), 2, 1);
    grid->addWidget(BuildButtons(), 3, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);
}

void DirectCoupledWindow::BuildMenus() {
    auto* const bar = new QMenuBar(this);
    tankTypeMenu = BuildChoiceMenu(bar, "&Tanks   ", "TankTypeMenu", ChoiceId::TankType);
    inverterTypeMenu =
        BuildChoiceMenu(bar, "&Inverter   ", "InverterTypeMenu", ChoiceId::InverterType);
    for (QAction* const entry : tankTypeMenu->actions()) {
        const int code = entry->data().toInt();
        entry->setIcon(PictureOf(ElementOf(static_cast<TankType>(code))));
        entry->setToolTip(TankText(code));
        entry->setStatusTip(TankText(code));
    }
    tankTypeMenu->setToolTipsVisible(true);
    layout()->setMenuBar(bar);
}

QMenu* DirectCoupledWindow::BuildChoiceMenu(QMenuBar* bar, const char* title, const char* name,
                                            ChoiceId id) {
    QMenu* const menu = bar->addMenu(QString::fromLatin1(title));
    menu->setObjectName(QString::fromLatin1(name));
    auto* const style = new PictureMenuStyle;
    style->setParent(menu);
    menu->setStyle(style);
    for (const ChoiceRow& row : TableOf(id).Rows) {
        QAction* const entry = menu->addAction(QString::fromLatin1(row.Caption));
        entry->setData(row.Code);
        binder.AddChoice(entry, id, row.Code);
    }
    return menu;
}

QWidget* DirectCoupledWindow::BuildTankValues() {
    auto* const group = new QGroupBox("Tank values", this);
    auto* const grid = new QGridLayout(group);
    tankValue = new QTableWidget(0, 2, group);
    tankValue->setObjectName("TankValue");
    tankValue->verticalHeader()->hide();
    tankValue->verticalHeader()->setDefaultSectionSize(GridRowHeight);
    tankValue->horizontalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    tankValue->horizontalHeader()->setHighlightSections(false);
    tankValue->setColumnWidth(NumberColumn, NumberWidth);
    tankValue->setColumnWidth(ValueColumn, ValueWidth);
    tankValue->setSelectionMode(QAbstractItemView::SingleSelection);
    tankValue->setTabKeyNavigation(false);
    tankValue->setAccessibleName("Tank values");
    tankValue->setItemDelegate(new FittedCells(tankValue));
    tankValue->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    const int frame = 2 * tankValue->frameWidth();
    tankValue->setFixedSize(
        NumberWidth + ValueWidth + frame,
        tankValue->horizontalHeader()->sizeHint().height() + MaxTanks * GridRowHeight + frame);
    tankValue->installEventFilter(this);
    connect(tankValue, &QTableWidget::itemChanged, this, [this] {
        if (!showing) binder.Actions().Calculate();
    });
    grid->addWidget(tankValue, 0, 0, 1, 2);
    int place = 2;
    for (const ChoiceRow& row : TableOf(ChoiceId::TankUnits).Rows) {
        QAbstractButton* const button = binder.AddChoice(group, ChoiceId::TankUnits, row.Code);
        grid->addWidget(button, place / 2, place % 2);
        ++place;
    }
    // The grid above does not hand on Enter, so that the button needs no default of its own.
    auto* const all = new QPushButton("S&et all tanks", group);
    all->setObjectName("SetAllTanksButton");
    all->setAutoDefault(false);
    all->setFocusPolicy(Qt::TabFocus);
    all->setToolTip("Gives every tank the value of the one that is selected");
    connect(all, &QPushButton::clicked, this, &DirectCoupledWindow::SetAll);
    ++place;
    grid->addWidget(all, (place + 1) / 2, 0, 1, 2);
    grid->setRowStretch(place, 1);
    return group;
}

QWidget* DirectCoupledWindow::BuildPictures() {
    auto* const group = new QGroupBox("From the source", this);
    auto* const grid = new QGridLayout(group);
    endInverterPicture = AddPicture(grid, 0, "EndInverterPicture", "End");
    tankPicture = AddPicture(grid, 1, "TankPicture", "Tank");
    inverterPicture = AddPicture(grid, 2, "InverterPicture", "Inverter");
    // Edge to edge, the pictures join to the beginning of the ladder.
    grid->setHorizontalSpacing(0);
    grid->setColumnStretch(PictureColumns, 1);
    altInverterBox = binder.AddChoice(group, ChoiceId::AlternateMatch);
    grid->addWidget(altInverterBox, 3, 0, 1, PictureColumns + 1);
    tankNote = new QLabel(group);
    tankNote->setObjectName("TankNote");
    tankNote->setWordWrap(true);
    tankNote->setFixedHeight(TankNoteLines * tankNote->fontMetrics().lineSpacing());
    tankNote->setAlignment(Qt::AlignTop);
    grid->addWidget(tankNote, 2, 0, 1, PictureColumns + 1);
    return group;
}

QWidget* DirectCoupledWindow::BuildBoxes() {
    auto* const group = new QGroupBox("Lengths at Fo, and tapping", this);
    auto* const grid = new QGridLayout(group);
    int row = 0;
    for (const InputId id : {InputId::TLIN, InputId::TLSC, InputId::TLOC, InputId::Factor}) {
        NumberEdit* const box = binder.AddBox(group, id);
        grid->addWidget(binder.AddLabel(group, id), row, 0);
        grid->addWidget(box, row, 1);
        grid->addWidget(binder.AddArrows(group, id), row, 2);
        if (QLabel* const unit = binder.AddUnit(group, id)) grid->addWidget(unit, row, 3);
        ++row;
    }
    grid->setColumnStretch(0, 1);
    return group;
}

QWidget* DirectCoupledWindow::BuildReadouts() {
    auto* const group = new QGroupBox("Limits of the end tanks", this);
    auto* const grid = new QGridLayout(group);
    constexpr const char* warnings[] = {"First Tank Z is Large.", "Last Tank Z is Large."};
    for (const std::size_t end : {SourceEnd, LoadEnd}) {
        const QString number = QString::number(end + 1);
        minLabels[end] = new QLabel("Min", group);
        minLabels[end]->setObjectName("minLabel" + number);
        distortionLabels[end] = new QLabel(QString::fromLatin1(warnings[end]), group);
        distortionLabels[end]->setObjectName("DistortionLabel" + number);
        QSizePolicy policy = distortionLabels[end]->sizePolicy();
        policy.setRetainSizeWhenHidden(true);
        distortionLabels[end]->setSizePolicy(policy);
        grid->addWidget(minLabels[end], static_cast<int>(end), 0);
        grid->addWidget(distortionLabels[end], static_cast<int>(end), 1);
    }
    return group;
}

QWidget* DirectCoupledWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const calc = new QPushButton("&Calc", row);
    calc->setObjectName("DCCalcButton");
    calc->setDefault(true);
    calc->setToolTip("Calculates the filter with these values");
    auto* const close = new QPushButton("C&lose", row);
    close->setObjectName("CloseButton");
    close->setAutoDefault(false);
    for (QPushButton* const button : {calc, close})
        button->setFocusPolicy(Qt::TabFocus);
    layout->addStretch(1);
    layout->addWidget(calc);
    layout->addWidget(close);
    layout->addWidget(NewHelpButton(row, "DCHelpButton", HelpPage::DirectCoupled));
    connect(calc, &QPushButton::clicked, this, [this] { binder.Actions().Calculate(); });
    connect(close, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

void DirectCoupledWindow::StoreInputs() {
    binder.StoreInputs();
    for (int row = 0; row < tankValue->rowCount(); ++row)
        inputs.Box(TankValueId(row + 1)).Text =
            tankValue->item(row, ValueColumn)->text().toStdString();
}

void DirectCoupledWindow::ShowInputs() {
    binder.ShowInputs(design);
    ShowTankValues();
    ShowPictures();
    ShowReadouts();
}

void DirectCoupledWindow::ShowTankValues() {
    showing = true;
    const int before = tankValue->rowCount();
    tankValue->setRowCount(std::min(design.NumPoles, MaxTanks));
    for (int row = before; row < tankValue->rowCount(); ++row) {
        auto* const number = new QTableWidgetItem(QString::number(row + 1));
        number->setFlags(Qt::ItemIsEnabled | Qt::ItemIsSelectable);
        tankValue->setItem(row, NumberColumn, number);
        tankValue->setItem(row, ValueColumn, new QTableWidgetItem);
    }
    if (tankValue->currentRow() < 0) tankValue->setCurrentCell(0, ValueColumn);
    for (int row = 0; row < tankValue->rowCount(); ++row) {
        const InputId id = TankValueId(row + 1);
        QTableWidgetItem* const item = tankValue->item(row, ValueColumn);
        const NumberBox& box = inputs.Box(id);
        item->setText(QString::fromStdString(box.Text));
        item->setToolTip(QString::fromStdString(InputTip(id, inputs, design)));
        const bool replaced = box.Colour == BoxColour::Silver;
        item->setBackground(replaced ? QBrush(replacedColour) : QBrush());
        item->setForeground(replaced ? QBrush(Qt::black) : QBrush());
    }
    const ChoiceRow* const unit = FindRow(ChoiceId::TankUnits, inputs.Choice(ChoiceId::TankUnits));
    tankValue->setHorizontalHeaderLabels({"Tank", QString::fromLatin1(unit->Word)});
    showing = false;
}

void DirectCoupledWindow::ShowPictures() {
    const DirectCoupledSettings& settings = design.DirectCoupled;
    EnableFor(altInverterBox, DualOf(settings.InverterType) != settings.InverterType,
              "for inductor and capacitor inverters");
    const PictureChoice choice{settings.TankType, settings.InverterType, EndTypeOf(settings)};
    if (shownPictures == choice) return;
    shownPictures = choice;
    for (QAction* const entry : inverterTypeMenu->actions())
        entry->setIcon(PictureOf(InverterPicture(entry->data().toInt(), settings.TankType)));
    ShowPicture(tankPicture, ElementOf(settings.TankType));
    tankNote->setText(TankText(static_cast<int>(settings.TankType)));
    ShowPicture(inverterPicture, ElementOf(settings.InverterType));
    ShowPicture(endInverterPicture, ElementOf(EndTypeOf(settings)));
}

void DirectCoupledWindow::ShowReadouts() {
    const DirectCoupledResult& limits = design.DirectCoupledLimits;
    for (const std::size_t end : {SourceEnd, LoadEnd}) {
        minLabels[end]->setText(QString::fromStdString(limits.Readouts[end]));
        distortionLabels[end]->setVisible(limits.WarningShown[end]);
        QPalette colours = palette();
        if (limits.Clamped[end]) colours.setColor(QPalette::WindowText, WarningColour(colours));
        minLabels[end]->setPalette(colours);
        distortionLabels[end]->setPalette(colours);
        minLabels[end]->setToolTip(
            limits.Clamped[end]
                ? "The value is beyond this limit: the tank's level counts as the termination"
                : "The value of the end tank at which its level equals the termination");
    }
}

void DirectCoupledWindow::SetAll() {
    if (tankValue->rowCount() == 0) return;
    tankValue->setFocus();  // an open editor hands over its text
    StoreInputs();
    SetAllTanks(inputs, std::max(0, tankValue->currentRow()) + 1);
    ShowTankValues();  // the calculation reads the cells
    binder.Actions().Calculate();
}

void DirectCoupledWindow::StepCurrentTank(bool larger) {
    if (tankValue->rowCount() == 0) return;
    if (tankValue->currentColumn() != ValueColumn)
        tankValue->setCurrentCell(std::max(0, tankValue->currentRow()), ValueColumn);
    StoreInputs();
    StepTankValue(inputs, design, tankValue->currentRow() + 1, larger, nullptr);
    ShowTankValues();  // the calculation reads the cells
    binder.Actions().Calculate();
}

bool DirectCoupledWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched != tankValue || event->type() != QEvent::KeyPress)
        return QDialog::eventFilter(watched, event);
    // An open editor hands Enter on after it has handed over its text, which calculates by itself.
    const bool editing = tankValue->isPersistentEditorOpen(tankValue->currentItem()) ||
                         tankValue->isAncestorOf(QApplication::focusWidget());
    switch (static_cast<QKeyEvent*>(event)->key()) {
        case Qt::Key_F1:
        case Qt::Key_F2:
            if (editing) tankValue->setFocus();
            StepCurrentTank(static_cast<QKeyEvent*>(event)->key() == Qt::Key_F2);
            return true;
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (!editing) binder.Actions().Calculate();
            return true;
    }
    return false;
}

}  // namespace ladderwise
