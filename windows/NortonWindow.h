// The window "Norton TransForm": structure, impedance scalar and turns ratios of a
// Norton-transformed band-pass, the search for even values, and the picture of the values.
#pragma once

#include <QDialog>

#include "controls/InputBinder.h"
#include "pipeline/NortonSequence.h"

class QGroupBox;
class QLabel;

namespace ladderwise {

/// What the owner of the calculation does for this window. Each ends in a calculation, unless the
/// control does nothing.
struct NortonActions {
    std::function<void(InputId, double step)> Step;  ///< adds a step to A, K or M
    /// A control was used; `chosen` is one made by AddChoice, or null.
    std::function<void(NortonControl, const QObject* chosen)> Use;
};

class NortonWindow : public QDialog {
    Q_OBJECT

public:
    /// `design` is the one that the calculation writes, for the picture.
    NortonWindow(DesignInputs& inputs, const FilterDesign& design, NortonActions actions,
                 QWidget* parent);

    /// Takes the texts of the boxes into the inputs.
    void StoreInputs() { binder.StoreInputs(); }

    /// Shows inputs, spin buttons and values.
    void ShowInputs();

    /// Shows the window at its owner's right edge, on its screen.
    void ShowBesideOwner();

private:
    void BuildMenus();
    QWidget* BuildFactor(InputId id);
    QWidget* BuildSearch();
    bool StepsShown(InputId id) const;
    void StepByKey(InputId id, bool up);
    void Choose(const QObject* sender);

    DesignInputs& inputs;
    const FilterDesign& design;
    NortonActions actions;
    InputBinder binder;
    QWidget* graph;
    QLabel* searchNote;  ///< that the values shown are not the optimised ones
    struct Arrows {
        InputId Id;
        QWidget* Row;
    };
    std::vector<Arrows> arrows;
};

}  // namespace ladderwise
