// The part-definitions window.
#include "windows/PartDefinitionsWindow.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QSvgRenderer>

#include "controls/HelpButton.h"
#include "controls/ScrolledContent.h"
#include "controls/WindowPlacement.h"

namespace ladderwise {

namespace {

constexpr int PartsOffsetBelowOwner = 250;  ///< pixels from the owner's top

QLabel* Explanation(QWidget* parent, const char* text, const char* tip = "") {
    auto* const label = new QLabel(QString::fromLatin1(text), parent);
    label->setToolTip(QString::fromLatin1(tip));
    label->setWordWrap(true);
    label->setMinimumWidth(ExplanationWidth);
    return label;
}

/// A drawing from the resources at its own size, in the colour of the texts around it.
class ModelPicture : public QWidget {
public:
    ModelPicture(const char* path, const char* name, QWidget* parent)
        : QWidget(parent), drawing(QString::fromLatin1(path)) {
        setObjectName(QString::fromLatin1(name));
        setFixedSize(drawing.defaultSize());
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QImage ink(size() * devicePixelRatioF(), QImage::Format_ARGB32_Premultiplied);
        ink.fill(Qt::transparent);
        QPainter painter(&ink);
        painter.setRenderHint(QPainter::Antialiasing);
        drawing.render(&painter, ink.rect());
        painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
        painter.fillRect(ink.rect(), palette().windowText());
        painter.end();
        QPainter(this).drawImage(rect(), ink);
    }

private:
    QSvgRenderer drawing;
};

}  // namespace

PartDefinitionsWindow::PartDefinitionsWindow(DesignInputs& inputs, const InputActions& actions,
                                             QWidget* parent)
    : QDialog(parent), inputs(inputs), binder(inputs, actions) {
    setObjectName("PartDefinitionsWindow");
    setWindowTitle("L and C Model Definitions");
    auto* const scrolled = new ScrolledContent(this);
    auto* const grid = new QGridLayout(scrolled->Content());
    grid->addWidget(BuildInductorGroup(), 0, 0);
    grid->addWidget(BuildCapacitorGroup(), 0, 1);
    grid->addWidget(BuildToleranceGroup(), 1, 0);
    grid->addWidget(BuildButtons(), 1, 1, Qt::AlignRight | Qt::AlignBottom);
    // Exactly as large as its wrapped texts need: adjustSize() stops at two thirds of the screen.
    grid->setSizeConstraint(QLayout::SetFixedSize);
    // As in the main window: a click must not have a box read twice.
    for (auto* const button : findChildren<QAbstractButton*>())
        button->setFocusPolicy(Qt::TabFocus);
}

void PartDefinitionsWindow::PlaceInput(QGridLayout* grid, int row, InputId id) {
    QWidget* const group = grid->parentWidget();
    grid->addWidget(binder.AddBox(group, id), row, 1);
    grid->addWidget(binder.AddLabel(group, id), row, 0);
    if (QLabel* const unit = binder.AddUnit(group, id)) grid->addWidget(unit, row, 2);
}

QWidget* PartDefinitionsWindow::BuildInductorGroup() {
    auto* const group = new QGroupBox("Inductors", this);
    auto* const grid = new QGridLayout(group);
    grid->addWidget(new ModelPicture(":/models/inductor-model.svg", "InductorPicture", group), 2, 0,
                    1, 4, Qt::AlignHCenter);
    PlaceInput(grid, 0, InputId::IndQ);
    PlaceInput(grid, 1, InputId::IndC);
    grid->addWidget(
        Explanation(group,
                    "The simulator uses the same Q for all the inductors and calculates R as "
                    "shown.  f is the simulation frequency. Specify Q at F0."),
        3, 0, 1, 4);
    return group;
}

QWidget* PartDefinitionsWindow::BuildCapacitorGroup() {
    auto* const group = new QGroupBox("Capacitors", this);
    auto* const grid = new QGridLayout(group);
    grid->addWidget(new ModelPicture(":/models/capacitor-model.svg", "CapacitorPicture", group), 2,
                    0, 1, 4, Qt::AlignHCenter);
    PlaceInput(grid, 0, InputId::CapR);
    PlaceInput(grid, 1, InputId::CapL);
    grid->addWidget(Explanation(group,
                                "The capacitor parasitics are constant with frequency. 0.2 Ohms "
                                "and .25 nH are typical values for commercial grade capacitors."),
                    3, 0, 1, 4);
    grid->addWidget(
        Explanation(group,
                    "If the Adjust For Parasitics option is checked, the program accounts for the "
                    "parasitic C and L in the calculation of the element values. It has the effect "
                    "of reducing all component values. The parasitic resistance is not accounted "
                    "for however.",
                    "Adjust For Parasitics is the choice DeEmbed of the main window"),
        4, 0, 1, 4);
    return group;
}

QWidget* PartDefinitionsWindow::BuildToleranceColumn(const char* title, ChoiceId id) {
    auto* const column = new QWidget(this);
    auto* const layout = new QHBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const caption = new QLabel(QString::fromLatin1(title), column);
    caption->setMinimumWidth(caption->fontMetrics().horizontalAdvance("Capacitors  "));
    layout->addWidget(caption);
    auto* const group = new QButtonGroup(column);
    for (const ChoiceRow& row : TableOf(id).Rows) {
        QAbstractButton* const button = binder.AddChoice(column, id, row.Code);
        group->addButton(button);
        layout->addWidget(button);
    }
    layout->addStretch(1);
    return column;
}

QWidget* PartDefinitionsWindow::BuildToleranceGroup() {
    auto* const group = new QGroupBox("Tolerances", this);
    auto* const grid = new QGridLayout(group);
    grid->addWidget(BuildToleranceColumn("Capacitors", ChoiceId::CapTolerance), 0, 0, 1, 2);
    grid->addWidget(BuildToleranceColumn("Inductors", ChoiceId::IndTolerance), 1, 0, 1, 2);
    grid->addWidget(
        Explanation(group,
                    "The Percent settings are used in the Monte Carlo analysis and also control "
                    "the part values when the Std Value Box is checked.",
                    "The Std Value Box is Std LC Values in the main window"),
        2, 0, 1, 2);
    grid->addWidget(BuildToleranceColumn("Below 10 pF", ChoiceId::CapAbsolute), 3, 0, 1, 2);
    grid->addWidget(BuildToleranceColumn("Draws", ChoiceId::Draw), 4, 0, 1, 2);
    auto* const reel = binder.AddBox(group, InputId::Reel);
    grid->addWidget(binder.AddLabel(group, InputId::Reel), 5, 0);
    grid->addWidget(reel, 5, 1, Qt::AlignLeft);
    auto* const runs = binder.AddBox(group, InputId::WorstCaseSims);
    QLabel* const label = binder.AddLabel(group, InputId::WorstCaseSims);
    label->setText(label->text() + " <= 1000");
    grid->addWidget(label, 6, 0);
    grid->addWidget(runs, 6, 1, Qt::AlignLeft);
    grid->addWidget(BuildToleranceColumn("Worst case", ChoiceId::Overlay), 7, 0, 1, 2);
    return group;
}

QWidget* PartDefinitionsWindow::BuildButtons() {
    auto* const row = new QWidget(this);
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    auto* const calc = new QPushButton("C&alc", row);
    calc->setObjectName("PartCalcButton");
    calc->setDefault(true);
    calc->setToolTip("Recalculates with these part models");
    auto* const exit = new QPushButton("E&xit", row);
    exit->setObjectName("PartExitButton");
    exit->setAutoDefault(false);
    exit->setToolTip("Closes this window");
    layout->addStretch(1);
    layout->addWidget(calc);
    layout->addWidget(exit);
    layout->addWidget(NewHelpButton(row, "PartHelpButton", HelpPage::Start, "parts"));
    connect(calc, &QPushButton::clicked, this, [this] { binder.Actions().Calculate(); });
    connect(exit, &QPushButton::clicked, this, &QWidget::close);
    return row;
}

void PartDefinitionsWindow::ShowBesideOwner() {
    const QPoint owner = parentWidget()->window()->frameGeometry().topLeft();
    ShowOnScreen(this, owner + QPoint(0, PartsOffsetBelowOwner));
}

}  // namespace ladderwise
