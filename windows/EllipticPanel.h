// The trap-type panel: the box with its arrows, and a small picture of each of the four forms that
// the traps of an elliptic band pass or notch can take. A click on a picture chooses its form.
#pragma once

#include <QWidget>

#include "windows/InputBinder.h"

class QButtonGroup;

namespace ladderwise {

class EllipticPanel : public QWidget {
    Q_OBJECT

public:
    /// As wide as the room left of the first schematic picture and as high as that picture.
    EllipticPanel(InputBinder& binder, QWidget* parent);

    /// Marks the form in use and shows the forms for the arm of the family's traps.
    void ShowForms(const FilterDesign& design);

private:
    void LayOut(ElementArm arm);

    ElementArm shown = ElementArm::None;
    QWidget* pictures;
    QButtonGroup* forms;  ///< ids 1 .. 4
};

}  // namespace ladderwise
