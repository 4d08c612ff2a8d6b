// The window "L and C Model Definitions": parasitics, tolerances and the number of Monte Carlo
// runs.
#pragma once

#include <QDialog>

#include "controls/InputBinder.h"

class QGridLayout;

namespace ladderwise {

/// Shows and edits the part-model part of the inputs.
class PartDefinitionsWindow : public QDialog {
    Q_OBJECT

public:
    PartDefinitionsWindow(DesignInputs& inputs, const InputActions& actions, QWidget* parent);

    /// The binder of this window's controls.
    InputBinder& Binder() { return binder; }

    /// Shows the window at its owner's left edge, 250 pixels below its top, but always on screen.
    void ShowBesideOwner();

private:
    QWidget* BuildInductorGroup();
    QWidget* BuildCapacitorGroup();
    QWidget* BuildToleranceGroup();
    QWidget* BuildButtons();
    QWidget* BuildToleranceColumn(const char* title, ChoiceId id);
    void PlaceInput(QGridLayout* grid, int row, InputId id);

    DesignInputs& inputs;
    InputBinder binder;
};

}  // namespace ladderwise
