// The window "L and C Model Definitions": parasitics, tolerances and the number of Monte Carlo
// runs.
#pragma once

#include <QDialog>
#include <functional>
#include <vector>

#include "pipeline/DesignInputs.h"
#include "windows/NumberEdit.h"

class QLabel;
class QRadioButton;

namespace ladderwise {

/// Shows and edits the part-model part of the inputs. It knows the inputs and one callback.
class PartDefinitionsWindow : public QDialog {
    Q_OBJECT

public:
    /// `recalculate` runs the main calculation, which reads the boxes along with all other inputs.
    PartDefinitionsWindow(DesignInputs& inputs, std::function<void()> recalculate, QWidget* parent);

    /// Takes the texts and choices of the controls into the inputs.
    void StoreInputs();

    /// Shows the inputs: texts, colours, checks and tool tips.
    void ShowInputs();

    /// Shows the window at its owner's left edge, 250 pixels below its top, but always on screen.
    void ShowBesideOwner();

private:
    struct BoundBox {
        NumberEdit* Edit;
        NumberBox DesignInputs::*Box;
        QString Tip;
    };
    struct BoundTolerance {
        QRadioButton* Button;
        int DesignInputs::*Percent;
        int Value;
    };

    QWidget* BuildInductorGroup();
    QWidget* BuildCapacitorGroup();
    QWidget* BuildToleranceGroup();
    QWidget* BuildButtons();
    QWidget* BuildToleranceColumn(const char* title, const char* suffix,
                                  int DesignInputs::*percent);
    NumberEdit* AddBox(QWidget* parent, const char* name, NumberBox DesignInputs::*box,
                       const QString& tip);
    void Recalculate();

    DesignInputs& inputs;
    std::function<void()> recalculate;
    std::vector<BoundBox> boxes;
    std::vector<BoundTolerance> tolerances;
};

}  // namespace ladderwise
