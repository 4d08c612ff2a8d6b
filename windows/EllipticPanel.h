// The trap-type panel: a small picture of each of the four forms that the traps of an elliptic band
// pass or notch can take, and the box with its arrows. A click on a picture chooses its form.
#pragma once

#include <QWidget>

#include "controls/InputBinder.h"

class QButtonGroup;

namespace ladderwise {

/// The pictures fill the room between the source's wire and the label column of the value grid. The
/// entry, a widget of its own in the same parent, stands left of the grid: so nothing of the
/// schematic is covered.
class EllipticPanel : public QWidget {
    Q_OBJECT

public:
    EllipticPanel(InputBinder& binder, QWidget* parent);

    /// Moves pictures and entry to the left top corner of the value grid.
    void PlaceAt(QPoint gridCorner);

    /// Shows or hides pictures and entry.
    void setVisible(bool visible) override;

    /// Marks the form in use and shows the forms for the arm of the family's traps.
    void ShowForms(const FilterDesign& design);

private:
    QWidget* BuildEntry(InputBinder& binder);
    void LayOut(ElementArm arm);

    ElementArm shown = ElementArm::None;
    QWidget* entry;
    QButtonGroup* forms;  ///< ids 1 .. 4
};

}  // namespace ladderwise
