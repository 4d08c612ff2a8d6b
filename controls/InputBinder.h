// Binds the controls of a window to the inputs: makes them from the rows of the input and choice
// tables, takes their texts into the inputs and shows texts, colours, checks, tool tips and enabled
// states again.
#pragma once

#include <QString>
#include <functional>
#include <optional>
#include <vector>

#include "controls/NumberEdit.h"
#include "pipeline/DesignInputs.h"

class QAbstractButton;
class QAction;
class QComboBox;
class QLabel;

namespace ladderwise {

/// What the owner of the calculation does when a control is used. Calculate, Step and Choose end in
/// a calculation; Enter does where something was typed that a calculation reads.
struct InputActions {
    std::function<void()> Calculate;                    ///< the boxes of all windows are read
    std::function<void(InputId, bool up)> Step;         ///< an arrow, key or wheel steps a box
    std::function<void(const QObject* sender)> Choose;  ///< a control made by AddChoice was used
    std::function<void(InputId)> Enter;  ///< Enter in a box, or left with a changed text
};

class InputBinder {
public:
    InputBinder(DesignInputs& inputs, InputActions actions);

    /// The edit box of an input, named after its row and wide enough for its numbers.
    NumberEdit* AddBox(QWidget* parent, InputId id);

    /// As wide as the numbers of an input need in the box's font.
    static void SetWidth(NumberEdit* box);

    /// True if the input is stepped by arrows.
    bool HasArrows(InputId id) const;

    /// The arrows of an input, as high as its box, named after its row or as given. AddBox comes
    /// first.
    UpDownButton* AddArrows(QWidget* parent, InputId id, const char* name = nullptr);

    /// The caption of an input; its mnemonic moves the focus to the box. AddBox comes first.
    QLabel* AddLabel(QWidget* parent, InputId id);

    /// The unit of an input, to stand behind its box; null where the caption names it already.
    QLabel* AddUnit(QWidget* parent, InputId id);

    /// The radio button or, for a switch, check box of an entry of a choice. It takes no focus from
    /// a box by a click: a box that lost it would be read once for the focus and once more for the
    /// click, and the second reading would take the mark off a replaced entry.
    QAbstractButton* AddChoice(QWidget* parent, ChoiceId id, int code = 1);

    /// The ways in which a switch can be on, to stand beside its check box, which turns it on in
    /// the way shown here.
    QComboBox* AddKinds(QWidget* parent, ChoiceId id, const char* name);

    /// Lets a checkable menu entry stand for an entry of a choice, whose component name it gets.
    /// The entries of a choice exclude each other.
    void AddChoice(QAction* action, ChoiceId id, int code);

    /// Takes the texts of the boxes into the inputs. Choices are there already.
    void StoreInputs();

    /// Shows the inputs: texts, colours, tool tips, enabled states and checks, without a signal. A
    /// choice that the calculation overrode shows what is in use.
    void ShowInputs(const FilterDesign& design);

    const InputActions& Actions() const { return actions; }

private:
    struct BoundBox {
        InputId Id;
        NumberEdit* Edit;
        UpDownButton* Arrows;
        QLabel* Label;
        QLabel* Unit;
    };
    struct BoundChoice {
        ChoiceId Id;
        int Code;
        QObject* Control;
    };
    struct BoundKinds {
        ChoiceId Id;
        QComboBox* Menu;
    };
    BoundBox& Find(InputId id);
    void ShowKinds();

    DesignInputs& inputs;
    InputActions actions;
    std::vector<BoundBox> boxes;
    std::vector<BoundChoice> choices;
    std::vector<BoundKinds> kinds;
};

/// Enables a control, or disables it and lets its tool tip say what it is for.
template <typename Control>
void EnableFor(Control* control, bool enabled, const char* purpose) {
    const QString note = " (" + QString::fromLatin1(purpose) + ")";
    const QString tip = control->toolTip().remove(note);
    control->setEnabled(enabled);
    control->setToolTip(enabled ? tip : tip + note);
}

/// Which choice and code a control made by AddChoice or AddKinds asks for when it is used: a check
/// box that is now off asks for 0. Nothing for any other control.
std::optional<ChoiceCode> ChosenBy(const QObject* sender);

}  // namespace ladderwise
