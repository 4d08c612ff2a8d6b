// Controls made from the tables of inputs and choices.
#include "controls/InputBinder.h"

#include <QAction>
#include <QActionGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QRadioButton>
#include <QSignalBlocker>
#include <algorithm>
#include <utility>

namespace ladderwise {

namespace {

constexpr const char* choiceProperty = "choice";  ///< of a menu of kinds: the choice that it is of
constexpr const char* kindProperty = "kind";      ///< of a switch: the code that it turns on
constexpr int BoxWidthInDigits = 8;               ///< of an edit box, in widths of the digit 0

QString ComponentName(const InputRow& row, const char* kind) {
    return QString::fromLatin1(row.Component) + QString::fromLatin1(kind);
}

}  // namespace

InputBinder::InputBinder(DesignInputs& inputs, InputActions actions)
    : inputs(inputs), actions(std::move(actions)) {}

InputBinder::BoundBox& InputBinder::Find(InputId id) {
    for (BoundBox& bound : boxes)
        if (bound.Id == id) return bound;
    qFatal("no box of this input");
}

NumberEdit* InputBinder::AddBox(QWidget* parent, InputId id) {
    auto* const box = new NumberEdit(ComponentName(RowOf(id, inputs), "Box"), parent);
    SetWidth(box);
    QObject::connect(box, &NumberEdit::CalculationRequested, box,
                     [this, id] { actions.Enter(id); });
    box->setAccessibleName(QString::fromStdString(PlainLabel(RowOf(id, inputs))));
    boxes.push_back({id, box, nullptr, nullptr, nullptr});
    if (HasArrows(id))
        QObject::connect(box, &NumberEdit::StepRequested, box,
                         [this, id](bool up) { actions.Step(id, up); });
    return box;
}

void InputBinder::SetWidth(NumberEdit* box) {
    box->setFixedWidth(box->fontMetrics().horizontalAdvance('0') * BoxWidthInDigits);
}

bool InputBinder::HasArrows(InputId id) const {
    return RowOf(id, inputs).Step > 0;
}

UpDownButton* InputBinder::AddArrows(QWidget* parent, InputId id, const char* name) {
    BoundBox& bound = Find(id);
    bound.Arrows = new UpDownButton(
        name ? QString::fromLatin1(name) : ComponentName(RowOf(id, inputs), "UpDown"), parent);
    bound.Arrows->setFixedHeight(bound.Edit->sizeHint().height());
    bound.Arrows->Describe(bound.Edit->accessibleName());
    QObject::connect(bound.Arrows, &UpDownButton::StepRequested, bound.Arrows,
                     [this, id](bool up) { actions.Step(id, up); });
    return bound.Arrows;
}

QLabel* InputBinder::AddLabel(QWidget* parent, InputId id) {
    BoundBox& bound = Find(id);
    const InputRow& row = RowOf(id, inputs);
    bound.Label = new QLabel(QString::fromLatin1(row.Label), parent);
    bound.Label->setObjectName(ComponentName(row, "Label"));
    bound.Label->setBuddy(bound.Edit);
    return bound.Label;
}

QLabel* InputBinder::AddUnit(QWidget* parent, InputId id) {
    const InputRow& row = RowOf(id, inputs);
    if (QString::fromLatin1(row.Label).contains(QString::fromLatin1(row.Unit))) return nullptr;
    BoundBox& bound = Find(id);
    bound.Unit = new QLabel(QString::fromLatin1(row.Unit), parent);
    return bound.Unit;
}

QAbstractButton* InputBinder::AddChoice(QWidget* parent, ChoiceId id, int code) {
    const ChoiceRow& row = *FindRow(id, code);
    const QString caption = QString::fromLatin1(row.Caption);
    QAbstractButton* button = nullptr;
    if (IsSwitch(id))
        button = new QCheckBox(caption, parent);
    else
        button = new QRadioButton(caption, parent);
    button->setObjectName(QString::fromLatin1(row.Component));
    button->setToolTip(QString::fromLatin1(row.Title));
    button->setFocusPolicy(Qt::TabFocus);
    QObject::connect(button, &QAbstractButton::clicked, button,
                     [this, button] { actions.Choose(button); });
    choices.push_back({id, code, button});
    return button;
}

QComboBox* InputBinder::AddKinds(QWidget* parent, ChoiceId id, const char* name) {
    auto* const menu = new QComboBox(parent);
    menu->setObjectName(QString::fromLatin1(name));
    menu->setProperty(choiceProperty, static_cast<int>(id));
    menu->setFocusPolicy(Qt::TabFocus);
    for (const ChoiceRow& row : TableOf(id).Rows) {
        if (row.Code == 0 || *row.Component) continue;  // off, and on as such
        menu->addItem(QString::fromLatin1(row.Caption), row.Code);
        menu->setItemData(menu->count() - 1, QString::fromLatin1(row.Title), Qt::ToolTipRole);
    }
    QObject::connect(menu, &QComboBox::activated, menu, [this, menu] { actions.Choose(menu); });
    kinds.push_back({id, menu});
    return menu;
}

void InputBinder::AddChoice(QAction* action, ChoiceId id, int code) {
    action->setObjectName(QString::fromLatin1(FindRow(id, code)->Component));
    action->setCheckable(true);
    const auto sibling = std::find_if(choices.begin(), choices.end(), [id](const auto& bound) {
        return bound.Id == id && qobject_cast<QAction*>(bound.Control);
    });
    action->setActionGroup(sibling == choices.end()
                               ? new QActionGroup(action->parent())
                               : static_cast<QAction*>(sibling->Control)->actionGroup());
    QObject::connect(action, &QAction::triggered, action,
                     [this, action] { actions.Choose(action); });
    choices.push_back({id, code, action});
}

void InputBinder::StoreInputs() {
    for (const BoundBox& bound : boxes)
        bound.Edit->Take(inputs.Box(bound.Id));
}

void InputBinder::ShowInputs(const FilterDesign& design) {
    for (const BoundBox& bound : boxes) {
        bound.Edit->Show(inputs.Box(bound.Id));
        bound.Edit->setToolTip(QString::fromStdString(InputTip(bound.Id, inputs, design)));
        const bool enabled = IsEnabled(RowOf(bound.Id, inputs), inputs);
        for (QWidget* const control :
             std::initializer_list<QWidget*>{bound.Edit, bound.Arrows, bound.Label, bound.Unit})
            if (control) control->setEnabled(enabled);
    }
    for (const BoundChoice& bound : choices) {
        const QSignalBlocker blocker(bound.Control);
        const ChoiceTable& table = TableOf(bound.Id);
        const int shown = table.InUse ? table.InUse(design) : inputs.Choice(bound.Id);
        // A switch that is on in another way than its own is on.
        const bool on = IsSwitch(bound.Id) ? shown != 0 : shown == bound.Code;
        bound.Control->setProperty("checked", on);
        // The Tab key stops at the one in use; the arrow keys go on from there.
        if (auto* const radio = qobject_cast<QRadioButton*>(bound.Control))
            radio->setFocusPolicy(shown == bound.Code ? Qt::TabFocus : Qt::NoFocus);
    }
    ShowKinds();
}

/// A switch that is off keeps the way that it was on in last.
void InputBinder::ShowKinds() {
    for (const BoundKinds& bound : kinds) {
        const QSignalBlocker blocker(bound.Menu);
        const int code = inputs.Choice(bound.Id);
        if (code != 0) bound.Menu->setCurrentIndex(bound.Menu->findData(code));
        bound.Menu->setEnabled(code != 0);
        bound.Menu->setToolTip(bound.Menu->currentData(Qt::ToolTipRole).toString());
        for (const BoundChoice& choice : choices)
            if (choice.Id == bound.Id)
                choice.Control->setProperty(kindProperty, bound.Menu->currentData());
    }
}

std::optional<ChoiceCode> ChosenBy(const QObject* sender) {
    if (const auto* const menu = qobject_cast<const QComboBox*>(sender)) {
        const QVariant id = menu->property(choiceProperty);
        if (!id.isValid()) return {};
        return ChoiceCode{static_cast<ChoiceId>(id.toInt()), menu->currentData().toInt()};
    }
    auto found = FindComponent(sender->objectName().toStdString());
    if (!found || !IsSwitch(found->Id)) return found;
    const QVariant kind = sender->property(kindProperty);
    if (!sender->property("checked").toBool())
        found->Code = 0;
    else if (kind.isValid())
        found->Code = kind.toInt();
    return found;
}

}  // namespace ladderwise
