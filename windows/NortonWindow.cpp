// The Norton window.
#include "windows/NortonWindow.h"

#include <QGroupBox>
#include <QGuiApplication>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenuBar>
#include <QPainter>
#include <QPushButton>
#include <QRadioButton>
#include <QScrollArea>
#include <QScrollBar>
#include <utility>

#include "controls/HelpButton.h"
#include "controls/WindowPlacement.h"
#include "display/NortonValuePainter.h"
#include "display/PlotPainter.h"

namespace ladderwise {

namespace {

constexpr QSize SmallestGraph(320, 180);
constexpr int StartGraphHeight = 340;  ///< pixels
constexpr int MostColumns = 9;         ///< of a transformed ladder
constexpr int SearchNoteLines = 5;
constexpr int OffsetBelowOwner = 150;  ///< pixels from the owner's top: its boxes stay in view

/// The spin buttons of a box, from left to right.
struct SpinButton {
    const char* Suffix;
    double Step;
    const char* Caption;
};
constexpr SpinButton spinButtons[] = {{"1", 1.0, "1.0"}, {"2", 0.1, "0.1"}, {"3", 0.01, "0.01"}};

constexpr double KeyStep = 0.1;        ///< of Up, Down and the wheel
constexpr double CtrlKeyStep = 1.0;    ///< ten times as far, as everywhere
constexpr double ShiftKeyStep = 0.01;  ///< a tenth

/// What a factor is and which ladders it serves: the titles of the boxes name one ladder each.
const char* CaptionOf(InputId id) {
    if (id == InputId::NortonK) return "Turns ratio, for 3 and for 5 poles";
    if (id == InputId::NortonM) return "Second turns ratio, for 5 poles only";
    return "Level over the terminations";
}

/// The values of the transformed ladder.
class ValueGraph : public QWidget {
public:
    ValueGraph(const FilterDesign& design, QWidget* parent) : QWidget(parent), design(design) {
        setObjectName("Graph");
        setAccessibleName("Part values from source to load");
        setMinimumSize(SmallestGraph);
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    }
    /// Wide enough for a value beside each mark.
    QSize sizeHint() const override {
        return {(MostColumns + 2) * fontMetrics().horizontalAdvance("-100 pF_"), StartGraphHeight};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const NortonValuePlot plot =
            BuildNortonValuePlot(design.NortonResult, NortonDesignatorsOf(design), Title(), width(),
                                 height(), MetricsOf(painter));
        PaintNortonValuePlot(painter, plot, size());
    }

private:
    std::string Title() const {
        const int type = static_cast<int>(design.Norton.NortonType);
        return DesignTitle(design) + ", " + FindRow(ChoiceId::NortonType, type)->Title;
    }

    const FilterDesign& design;
};

}  // namespace

NortonWindow::NortonWindow(DesignInputs& inputs, const FilterDesign& design, NortonActions actions,
                           QWidget* parent)
    : QDialog(parent),
      inputs(inputs),
      design(design),
      actions(std::move(actions)),
      binder(inputs, {[this] { this->actions.Use(NortonControl::Box, nullptr); }, nullptr,
                      [this](const QObject* sender) { Choose(sender); },
                      [this](InputId) { this->actions.Use(NortonControl::Box, nullptr); }}) {
    setObjectName("TNortonForm");
    setWindowTitle("Norton TransForm");
    inputs.Choice(ChoiceId::AutoOptimize) = 1;  // the console has it off
    auto* const row = new QHBoxLayout(this);
    auto* const controls = new QWidget;
    auto* const column = new QVBoxLayout(controls);
    column->setContentsMargins(0, 0, 0, 0);
    BuildMenus();
    for (const InputId id : {InputId::NortonA, InputId::NortonK, InputId::NortonM})
        column->addWidget(BuildFactor(id));
    column->addWidget(BuildSearch());
    column->addWidget(NewHelpButton(this, "NortonHelpButton", HelpPage::Transform));
    column->addStretch(1);
    graph = new ValueGraph(design, this);
    auto* const scrolled = new QScrollArea(this);  // on a screen too low for them
    scrolled->setFrameShape(QFrame::NoFrame);
    scrolled->setFocusPolicy(Qt::NoFocus);
    scrolled->setWidgetResizable(true);
    scrolled->setWidget(controls);
    const QSize size = controls->sizeHint();
    scrolled->setFixedWidth(size.width() + scrolled->verticalScrollBar()->sizeHint().width());
    row->addWidget(scrolled);
    row->addWidget(graph, 1);
    // As in the main window: a click must not have a box read twice.
    for (auto* const button : findChildren<QAbstractButton*>())
        if (button->focusPolicy() != Qt::NoFocus) button->setFocusPolicy(Qt::TabFocus);
    const QMargins margins = row->contentsMargins();
    const int height =
        size.height() + margins.top() + margins.bottom() + row->menuBar()->sizeHint().height();
    resize(sizeHint().expandedTo({0, height}));
}

void NortonWindow::BuildMenus() {
    auto* const bar = new QMenuBar(this);
    QMenu* const file = bar->addMenu("&File  ");
    file->setObjectName("FileMenu");
    QAction* const exit = file->addAction("E&xit");
    exit->setObjectName("ExitMenu");
    connect(exit, &QAction::triggered, this, &QWidget::close);
    QMenu* const type = bar->addMenu("&Type  ");
    type->setObjectName("TypeMenu");
    type->setToolTipsVisible(true);
    for (const ChoiceRow& row : TableOf(ChoiceId::NortonType).Rows) {
        QAction* const entry = type->addAction(QString::fromLatin1(row.Caption));
        binder.AddChoice(entry, ChoiceId::NortonType, row.Code);
    }
    layout()->setMenuBar(bar);
}

QWidget* NortonWindow::BuildFactor(InputId id) {
    const InputRow& row = RowOf(id, inputs);
    auto* const group = new QGroupBox(QString::fromLatin1(row.Label), this);
    auto* const column = new QVBoxLayout(group);
    auto* const line = new QHBoxLayout;
    column->addLayout(line);
    auto* const caption = new QLabel(QString::fromLatin1(CaptionOf(id)), group);
    caption->setObjectName(QString::fromLatin1(row.Component) + "Caption");
    column->addWidget(caption);
    NumberEdit* const box = binder.AddBox(group, id);
    line->addWidget(box);
    connect(box, &NumberEdit::StepRequested, this, [this, id](bool up) { StepByKey(id, up); });
    auto* const buttons = new QWidget(group);
    auto* const places = new QHBoxLayout(buttons);
    places->setContentsMargins(0, 0, 0, 0);
    for (const SpinButton& spin : spinButtons) {
        auto* const arrow =
            new UpDownButton(QString::fromLatin1(row.Component) + spin.Suffix, buttons);
        arrow->setFixedHeight(box->sizeHint().height());
        arrow->setToolTip(QString("Steps of %1").arg(spin.Caption));
        arrow->Describe(box->accessibleName() + " by " + spin.Caption);
        connect(arrow, &UpDownButton::StepRequested, this,
                [this, id, step = spin.Step](bool up) { actions.Step(id, up ? step : -step); });
        places->addWidget(arrow);
        places->addWidget(new QLabel(QString::fromLatin1(spin.Caption), buttons));
    }
    QSizePolicy policy = buttons->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    buttons->setSizePolicy(policy);
    line->addWidget(buttons);
    line->addStretch(1);
    arrows.push_back({id, buttons});
    return group;
}

QWidget* NortonWindow::BuildSearch() {
    auto* const group = new QGroupBox("Even parts", this);
    auto* const column = new QVBoxLayout(group);
    for (const NortonGoal goal : {NortonGoal::Capacitors, NortonGoal::Inductors})
        column->addWidget(binder.AddChoice(group, ChoiceId::NortonGoal, static_cast<int>(goal)));
    column->addWidget(binder.AddChoice(group, ChoiceId::AutoOptimize));
    auto* const button = new QPushButton("&Optimize K and M", group);
    button->setObjectName("OptimizeButton");
    button->setAutoDefault(false);
    button->setToolTip("Searches the K and M that make these parts most alike");
    connect(button, &QPushButton::clicked, this,
            [this] { actions.Use(NortonControl::OptimizeButton, nullptr); });
    column->addWidget(button);
    searchNote = new QLabel(group);
    searchNote->setObjectName("SearchNote");
    searchNote->setWordWrap(true);
    // Its words take lines, not width, and their room stays while there are none.
    searchNote->setMinimumHeight(SearchNoteLines * searchNote->fontMetrics().lineSpacing());
    searchNote->setAlignment(Qt::AlignTop);
    column->addWidget(searchNote);
    return group;
}

bool NortonWindow::StepsShown(InputId id) const {
    if (id == InputId::NortonA) return true;
    if (inputs.IsOn(ChoiceId::AutoOptimize)) return false;
    return id == InputId::NortonK || design.NumPoles == 5;
}

void NortonWindow::StepByKey(InputId id, bool up) {
    if (!StepsShown(id)) return;
    const Qt::KeyboardModifiers keys = QGuiApplication::keyboardModifiers();
    const double step = keys.testFlag(Qt::ControlModifier) ? CtrlKeyStep
                        : keys.testFlag(Qt::ShiftModifier) ? ShiftKeyStep
                                                           : KeyStep;
    actions.Step(id, up ? step : -step);
}

void NortonWindow::Choose(const QObject* sender) {
    const auto chosen = ChosenBy(sender);
    if (!chosen) return;
    const NortonControl control = chosen->Id == ChoiceId::AutoOptimize
                                      ? NortonControl::AutoOptimizeBox
                                  : chosen->Id == ChoiceId::NortonGoal ? NortonControl::GoalButton
                                                                       : NortonControl::SpinButton;
    actions.Use(control, sender);
}

void NortonWindow::ShowBesideOwner() {
    if (isVisible()) {
        raise();
        activateWindow();
        return;
    }
    ShowOnScreen(
        this, parentWidget()->window()->frameGeometry().topRight() + QPoint(1, OffsetBelowOwner));
}

void NortonWindow::ShowInputs() {
    binder.ShowInputs(design);
    for (const Arrows& a : arrows)
        a.Row->setVisible(StepsShown(a.Id));
    searchNote->setText(QString::fromStdString(NortonSearchText(design)));
    graph->update();
}

}  // namespace ladderwise
